#pragma once

// Small helpers that belong to no form. Their edges are kept as the forms expect them, several of
// which differ from what the names suggest.

#include <cstdint>
#include <string>

namespace kw::forms {
class ComboBox;
}

namespace kw::dialer {

// What follows the last separator ("\" or "/"); the whole text when there is none, "" when the
// path ends in a separator.
std::string FileNameFromPath(const std::string& path);

// Everything up to and including the last ":", "\" or "/"; "" when there is none. So "C:x.log"
// gives "C:".
std::string DirectoryFromPath(const std::string& path);

// The index of the first entry equal to `text`, or 0 when none is: the callers treat a miss like
// the first entry.
std::int16_t FindComboEntry(const forms::ComboBox& combo, const std::string& text);

// "UNITED STATES (1)" gives "UNITED STATES": the text before the blank before the first "(". An
// entry without "(" or starting with it fails with 5.
std::string CountryNameFromText(const std::string& entry);

// A colour with red in the lowest byte, into its three parts.
void SplitColour(std::int32_t color, std::int16_t& red, std::int16_t& green, std::int16_t& blue);

}  // namespace kw::dialer
