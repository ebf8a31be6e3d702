#include "platform/automation/number_text.h"

#include <charconv>
#include <cstdint>
#include <string>
#include <system_error>

namespace kw::automation::detail {
namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

int DigitValue(char c, int base) {
    int d = -1;
    if (c >= '0' && c <= '9')
        d = c - '0';
    else if (c >= 'a' && c <= 'f')
        d = c - 'a' + 10;
    else if (c >= 'A' && c <= 'F')
        d = c - 'A' + 10;
    return d < base ? d : -1;
}

// &H and &O forms follow the literal rules: up to 16 bits is an Integer, up to 32 a Long, both
// read as two's complement (&HFFFF is -1, &H10000 is 65536).
std::optional<NumberText> ScanRadix(std::string_view t, std::size_t& length) {
    std::size_t pos = 1;
    int base = 8;
    if (pos < t.size() && (t[pos] == 'H' || t[pos] == 'h')) {
        base = 16;
        ++pos;
    } else if (pos < t.size() && (t[pos] == 'O' || t[pos] == 'o')) {
        ++pos;
    }
    const std::size_t first = pos;
    std::uint64_t value = 0;
    bool overflow = false;
    for (; pos < t.size(); ++pos) {
        const int d = DigitValue(t[pos], base);
        if (d < 0)
            break;
        value = value * static_cast<std::uint64_t>(base) + static_cast<std::uint64_t>(d);
        if (value > 0xFFFFFFFFu)
            overflow = true;
        if (overflow)
            value = 0xFFFFFFFFu;
    }
    if (pos == first)
        return std::nullopt;
    length = pos;
    NumberText n;
    n.overflow = overflow;
    if (!overflow) {
        if (value <= 0xFFFFu)
            n.value = static_cast<std::int16_t>(static_cast<std::uint16_t>(value));
        else
            n.value = static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
    }
    return n;
}

std::optional<NumberText> ScanDecimal(std::string_view t, std::size_t& length) {
    std::size_t pos = 0;
    bool negative = false;
    if (pos < t.size() && (t[pos] == '+' || t[pos] == '-')) {
        negative = t[pos] == '-';
        ++pos;
    }
    std::string clean;
    std::size_t integerDigits = 0;
    while (pos < t.size() && IsDigit(t[pos])) {
        clean += t[pos++];
        ++integerDigits;
    }
    std::size_t fractionDigits = 0;
    if (pos < t.size() && t[pos] == '.') {
        std::size_t p = pos + 1;
        std::string fraction;
        while (p < t.size() && IsDigit(t[p])) fraction += t[p++];
        fractionDigits = fraction.size();
        if (integerDigits + fractionDigits > 0) {
            clean += '.';
            clean += fraction;
            pos = p;
        }
    }
    if (integerDigits + fractionDigits == 0)
        return std::nullopt;

    // The exponent belongs to the number only when digits follow the letter.
    long long exponent = 0;
    if (pos < t.size() && (t[pos] == 'E' || t[pos] == 'e' || t[pos] == 'D' || t[pos] == 'd')) {
        std::size_t p = pos + 1;
        bool expNegative = false;
        if (p < t.size() && (t[p] == '+' || t[p] == '-')) {
            expNegative = t[p] == '-';
            ++p;
        }
        if (p < t.size() && IsDigit(t[p])) {
            for (; p < t.size() && IsDigit(t[p]); ++p) {
                if (exponent < 100000)
                    exponent = exponent * 10 + (t[p] - '0');
            }
            if (expNegative)
                exponent = -exponent;
            clean += 'e';
            clean += std::to_string(exponent);
            pos = p;
        }
    }
    length = pos;

    NumberText n;
    double value = 0.0;
    const auto [end, ec] = std::from_chars(clean.data(), clean.data() + clean.size(), value,
                                           std::chars_format::general);
    (void)end;
    if (ec == std::errc::result_out_of_range) {
        // Too large or too small: tell them apart by where the first significant digit sits.
        long long magnitude = exponent;
        std::size_t i = 0;
        while (i < clean.size() && (clean[i] == '0' || clean[i] == '.')) ++i;
        const std::size_t point = clean.find('.');
        const std::size_t intEnd = point == std::string::npos ? integerDigits : point;
        if (i < intEnd)
            magnitude += static_cast<long long>(intEnd - i);
        else
            magnitude -= static_cast<long long>(i - intEnd - 1);
        if (magnitude > 0)
            n.overflow = true;
        value = 0.0;
    } else if (ec != std::errc()) {
        return std::nullopt;
    }
    n.value = negative ? -value : value;
    return n;
}

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}

}  // namespace

std::optional<NumberText> ScanNumber(std::string_view text, std::size_t& length) {
    length = 0;
    if (!text.empty() && text.front() == '&')
        return ScanRadix(text, length);
    return ScanDecimal(text, length);
}

std::optional<NumberText> ParseNumber(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
    std::size_t length = 0;
    auto n = ScanNumber(text, length);
    if (!n || length != text.size())
        return std::nullopt;
    return n;
}

}  // namespace kw::automation::detail
