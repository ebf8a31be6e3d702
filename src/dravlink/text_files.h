#pragma once

#include <filesystem>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace dravlink {

// The engine's files are plain text a person can edit: INI-like files of sections with
// "key = value" lines, and tables of "|"-separated fields, one record a line. Blank lines and
// lines starting with "#" or ";" are comments. A malformed line is reported with the file's
// name and the line's number, so that a hand edit gone wrong is easy to find.

struct IniEntry {
    std::string key;
    std::string value;
    int line = 0;
};

struct IniSection {
    std::string name;
    int line = 0;
    std::vector<IniEntry> entries;  // in file order; a key may repeat

    // The last value of key (keys compare without regard to case), or fallback.
    std::string Get(const std::string& key, const std::string& fallback = "") const;
    bool Has(const std::string& key) const;
};

struct IniFile {
    std::filesystem::path path;
    std::vector<IniSection> sections;
};

struct TableRow {
    std::vector<std::string> fields;
    int line = 0;
};

struct TableFile {
    std::filesystem::path path;
    std::vector<TableRow> rows;
    int lastLine = 0;  // the number of lines, comments included
};

// Thrown for a file that cannot be read or does not parse; what() names the file and the line.
class DataError : public std::runtime_error {
  public:
    DataError(const std::filesystem::path& file, int line, const std::string& message);
    explicit DataError(const std::string& message) : std::runtime_error(message) {}
};

// A write the engine could not make, as the failure its callers report: the classic file error
// number that fits the system's reason, and a description naming the file.
[[noreturn]] void CannotWrite(const std::filesystem::path& file, std::error_code why);

IniFile ReadIni(const std::filesystem::path& path);
// Every row must have exactly fieldCount fields.
TableFile ReadTable(const std::filesystem::path& path, std::size_t fieldCount);

// Written whole to a temporary file and renamed over the old one, so a reader never sees half;
// a write that fails throws the Failure of CannotWrite, never anything of the file system's own.
void WriteIni(const std::filesystem::path& path, const std::string& header,
              const std::vector<IniSection>& sections);
void WriteTable(const std::filesystem::path& path, const std::string& header,
                const std::vector<std::vector<std::string>>& rows);

// A piece of a file for an error message: the first 80 characters of it at most, and "…" when
// it goes on. A damaged line can be megabytes long; its start is enough to find it.
std::string Excerpt(const std::string& s);
std::string TrimBlanks(const std::string& s);
bool SameText(const std::string& a, const std::string& b);  // case-insensitive
std::vector<std::string> SplitList(const std::string& s, char separator);

}  // namespace dravlink
