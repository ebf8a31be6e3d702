#include "platform/automation/strings.h"

#include <cctype>

#include "platform/automation/failure.h"

namespace kw::automation {
namespace {

[[noreturn]] void Fail(int number) {
    throw Failure(number);
}

std::size_t Size(long n) {
    return static_cast<std::size_t>(n);
}

}  // namespace

std::string Trim(std::string_view s) {
    const auto first = s.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return std::string();
    return std::string(s.substr(first, s.find_last_not_of(' ') - first + 1));
}

std::string Left(std::string_view s, long length) {
    if (length < 0)
        Fail(err::kInvalidCall);
    return std::string(s.substr(0, Size(length)));
}

std::string Mid(std::string_view s, long start) {
    if (start < 1)
        Fail(err::kInvalidCall);
    if (Size(start) > s.size())
        return {};
    return std::string(s.substr(Size(start) - 1));
}

std::string Mid(std::string_view s, long start, long length) {
    if (start < 1 || length < 0)
        Fail(err::kInvalidCall);
    if (Size(start) > s.size())
        return {};
    return std::string(s.substr(Size(start) - 1, Size(length)));
}

long InStr(std::string_view s, std::string_view find) {
    return InStr(1, s, find);
}

long InStr(long start, std::string_view s, std::string_view find) {
    if (start < 1)
        Fail(err::kInvalidCall);
    if (Size(start) > s.size())
        return 0;
    if (find.empty())
        return start;
    const auto at = s.find(find, Size(start) - 1);
    return at == std::string_view::npos ? 0 : static_cast<long>(at) + 1;
}

std::string LCase(std::string_view s) {
    std::string out(s);
    for (char& c : out) {
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    }
    return out;
}

}  // namespace kw::automation
