#include "client/ui/dialer/core/utilities.h"

#include "platform/automation/strings.h"
#include "platform/forms/controls.h"

namespace kw::dialer {

namespace {
bool IsSeparator(char c) {
    return c == '\\' || c == '/';
}
}  // namespace

std::string FileNameFromPath(const std::string& path) {
    for (std::size_t i = path.size(); i > 0; --i) {
        if (IsSeparator(path[i - 1])) {
            return path.substr(i);
        }
    }
    return path;
}

std::string DirectoryFromPath(const std::string& path) {
    for (std::size_t i = path.size(); i > 0; --i) {
        const char c = path[i - 1];
        if (c == ':' || IsSeparator(c)) {
            return path.substr(0, i);
        }
    }
    return "";
}

std::int16_t FindComboEntry(const forms::ComboBox& combo, const std::string& text) {
    const int count = combo.ListCount();
    for (int i = 0; i < count; ++i) {
        if (combo.List(i) == text) {
            return static_cast<std::int16_t>(i);
        }
    }
    return 0;
}

std::string CountryNameFromText(const std::string& entry) {
    // Left with a negative length is what fails for an entry without "(" or starting with it.
    return automation::Left(entry, automation::InStr(entry, "(") - 2);
}

void SplitColour(std::int32_t color, std::int16_t& red, std::int16_t& green, std::int16_t& blue) {
    red = static_cast<std::int16_t>(color % 256);
    green = static_cast<std::int16_t>((color / 256) % 256);
    blue = static_cast<std::int16_t>(color / 65536);
}

}  // namespace kw::dialer
