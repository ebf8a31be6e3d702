#include "platform/automation/number_format.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <vector>

namespace kw::automation {
namespace {

// One section of a format, taken apart.
struct Section {
    std::string prefix;      // literals before the first digit place
    std::string afterInt;    // literals among and after the integer digit places
    int intZeros = 0;        // "0" places from the first "0" to the decimal point
    bool hasDigits = false;  // any digit place at all
    bool grouping = false;
    bool point = false;
    std::string fraction;  // the "0" and "#" places after the point
    std::string suffix;    // literals after the fraction places
};

bool IsPlace(char c) {
    return c == '0' || c == '#';
}

std::vector<std::string_view> SplitSections(std::string_view format) {
    std::vector<std::string_view> sections;
    std::size_t start = 0;
    for (std::size_t i = 0; i <= format.size(); ++i) {
        if (i == format.size() || format[i] == ';') {
            sections.push_back(format.substr(start, i - start));
            start = i + 1;
        }
    }
    return sections;
}

void ParseInteger(std::string_view text, std::size_t& i, Section& s) {
    bool seenZero = false;
    for (; i < text.size() && text[i] != '.'; ++i) {
        const char c = text[i];
        if (IsPlace(c)) {
            seenZero = seenZero || c == '0';
            s.intZeros += seenZero ? 1 : 0;
            s.hasDigits = true;
        } else if (c == ',' && s.hasDigits && i + 1 < text.size() && IsPlace(text[i + 1])) {
            s.grouping = true;
        } else if (!s.hasDigits) {
            s.prefix += c;
        } else {
            s.afterInt += c;
        }
    }
}

Section ParseSection(std::string_view text) {
    Section s;
    std::size_t i = 0;
    ParseInteger(text, i, s);
    if (i < text.size() && text[i] == '.') {
        s.point = true;
        for (++i; i < text.size() && IsPlace(text[i]); ++i) {
            s.fraction += text[i];
        }
        s.suffix = std::string(text.substr(i));
    }
    return s;
}

std::string Group(const std::string& digits) {
    std::string out;
    const std::size_t n = digits.size();
    for (std::size_t k = 0; k < n; ++k) {
        if (k > 0 && (n - k) % 3 == 0) {
            out += ',';
        }
        out += digits[k];
    }
    return out;
}

// The magnitude rounded half away from zero to the places given, as its integer digits and its
// fraction digits.
void Digits(double magnitude, int places, std::string& integer, std::string& fraction) {
    const double scaled = std::round(magnitude * std::pow(10.0, places));
    char buffer[400];
    const auto result =
        std::to_chars(buffer, buffer + sizeof buffer, scaled, std::chars_format::fixed, 0);
    std::string all(buffer, result.ptr);
    if (static_cast<int>(all.size()) <= places) {
        all.insert(0, static_cast<std::size_t>(places + 1) - all.size(), '0');
    }
    integer = all.substr(0, all.size() - static_cast<std::size_t>(places));
    fraction = all.substr(all.size() - static_cast<std::size_t>(places));
}

std::string FormatMagnitude(double magnitude, const Section& s) {
    if (!s.hasDigits && !s.point) {
        return s.prefix;
    }
    std::string integer;
    std::string fraction;
    Digits(magnitude, static_cast<int>(s.fraction.size()), integer, fraction);
    integer.erase(0, std::min(integer.find_first_not_of('0'), integer.size()));
    if (static_cast<int>(integer.size()) < s.intZeros) {
        integer.insert(0, static_cast<std::size_t>(s.intZeros) - integer.size(), '0');
    }
    // Trailing "#" places drop their zeros; the point itself stays, as it always did.
    std::size_t keep = fraction.size();
    while (keep > 0 && s.fraction[keep - 1] == '#' && fraction[keep - 1] == '0') {
        --keep;
    }
    fraction.resize(keep);
    std::string out = s.prefix + (s.grouping ? Group(integer) : integer) + s.afterInt;
    if (s.point) {
        out += '.' + fraction + s.suffix;
    }
    return out;
}

}  // namespace

std::string Format(double value, std::string_view format) {
    const std::vector<std::string_view> sections = SplitSections(format);
    if (value < 0 && sections.size() >= 2 && !sections[1].empty()) {
        return FormatMagnitude(-value, ParseSection(sections[1]));
    }
    if (value == 0 && sections.size() >= 3 && !sections[2].empty()) {
        return FormatMagnitude(0, ParseSection(sections[2]));
    }
    const std::string text = FormatMagnitude(std::fabs(value), ParseSection(sections[0]));
    return value < 0 ? "-" + text : text;
}

std::string Str(double value) {
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, std::fabs(value),
                                      std::chars_format::general, 15);
    std::string text(buffer, result.ptr);
    std::replace(text.begin(), text.end(), 'e', 'E');
    if (text.size() > 1 && text[0] == '0' && text[1] == '.') {
        text.erase(0, 1);
    }
    return (value < 0 ? "-" : " ") + text;
}

}  // namespace kw::automation
