#include "platform/forms/platform.h"

#include <cstdlib>

#include "platform/automation/failure.h"

namespace kw::forms {

std::string QuotedForBox(const std::string& text, std::size_t limit) {
    // A byte that does not continue a sequence starts a character.
    auto starts = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; };
    std::size_t characters = 0;
    std::size_t cut = text.size();
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (starts(text[i])) {
            if (characters == limit) {
                cut = i;
            }
            ++characters;
        }
    }
    if (characters <= limit) {
        return text;
    }
    return text.substr(0, cut) + "\u2026 (" + std::to_string(characters) + " characters)";
}

int Platform::MessageBox(const MessageBoxRequest& request) {
    if (request.text.size() <= kBoxTextLimit) {
        return ShowMessageBox(request);
    }
    MessageBoxRequest quoted = request;
    quoted.text = QuotedForBox(request.text, kBoxTextLimit);
    return ShowMessageBox(quoted);
}

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
