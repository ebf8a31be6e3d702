#include "platform/automation/strings.h"

#include <cctype>

#include "platform/automation/failure.h"
#include "platform/automation/number_text.h"

namespace kw::automation {
namespace {

[[noreturn]] void Fail(int number) {
    throw Failure(number);
}

std::size_t Size(long n) {
    return static_cast<std::size_t>(n);
}

}  // namespace

std::string LTrim(std::string_view s) {
    const auto first = s.find_first_not_of(' ');
    return first == std::string_view::npos ? std::string() : std::string(s.substr(first));
}

std::string RTrim(std::string_view s) {
    const auto last = s.find_last_not_of(' ');
    return last == std::string_view::npos ? std::string() : std::string(s.substr(0, last + 1));
}

std::string Trim(std::string_view s) {
    return LTrim(RTrim(s));
}

std::string Left(std::string_view s, long length) {
    if (length < 0)
        Fail(err::kInvalidCall);
    return std::string(s.substr(0, Size(length)));
}

std::string Right(std::string_view s, long length) {
    if (length < 0)
        Fail(err::kInvalidCall);
    if (Size(length) >= s.size())
        return std::string(s);
    return std::string(s.substr(s.size() - Size(length)));
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

long InStrRev(std::string_view s, std::string_view find) {
    return InStrRev(s, find, -1);
}

long InStrRev(std::string_view s, std::string_view find, long start) {
    if (start == -1)
        start = Len(s);
    else if (start < 1)
        Fail(err::kInvalidCall);
    if (s.empty() || Size(start) > s.size())
        return 0;
    if (find.empty())
        return start;
    if (find.size() > Size(start))
        return 0;
    const auto at = s.substr(0, Size(start)).rfind(find);
    return at == std::string_view::npos ? 0 : static_cast<long>(at) + 1;
}

std::string UCase(std::string_view s) {
    std::string out(s);
    for (char& c : out) {
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    }
    return out;
}

std::string LCase(std::string_view s) {
    std::string out(s);
    for (char& c : out) {
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    }
    return out;
}

long Len(std::string_view s) {
    return static_cast<long>(s.size());
}

// An empty find leaves the text as it is.
std::string Replace(std::string_view s, std::string_view find, std::string_view with) {
    if (find.empty())
        return std::string(s);
    std::string out;
    std::size_t from = 0;
    for (auto at = s.find(find); at != std::string_view::npos; at = s.find(find, from)) {
        out.append(s.substr(from, at - from));
        out.append(with);
        from = at + find.size();
    }
    out.append(s.substr(from));
    return out;
}

double Val(std::string_view s) {
    std::string packed;
    for (char c : s) {
        if (c != ' ' && c != '\t' && c != '\n')
            packed += c;
    }
    std::size_t length = 0;
    const auto n = detail::ScanNumber(packed, length);
    if (!n)
        return 0.0;
    if (n->overflow)
        Fail(err::kOverflow);
    return n->value;
}

}  // namespace kw::automation
