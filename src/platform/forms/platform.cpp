#include "platform/forms/platform.h"

#include <cstdlib>

#include "platform/automation/failure.h"

namespace kw::forms {

int Platform::MsgBox(const std::string& text, int flags, const std::string& caption) {
    MessageBoxRequest request;
    request.text = text;
    request.flags = flags;
    request.caption = caption;
    return MessageBox(request);
}

void Platform::ReportUnhandledFailure(const automation::Failure& failure) {
    MessageBoxRequest request;
    request.text =
        "Run-time error '" + std::to_string(failure.Number()) + "':\n\n" + failure.Description();
    request.flags = mb::kOkOnly | mb::kCritical;
    request.caption = applicationTitle_;
    MessageBox(request);
    EndProcess(1);
    std::abort();  // EndProcess never returns; this keeps the promise for the compiler
}

void Platform::Dispatch(const std::function<void()>& reaction) {
    try {
        reaction();
    } catch (const automation::Failure& failure) {
        ReportUnhandledFailure(failure);
    }
}

}  // namespace kw::forms
