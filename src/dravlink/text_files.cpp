#include "dravlink/text_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <algorithm>
#include <cctype>
#include <cerrno>
#include <fstream>
#include <sstream>

#include "platform/automation/failure.h"
#include "platform/registry/private_files.h"

namespace dravlink {

namespace fs = std::filesystem;

DataError::DataError(const fs::path& file, int line, const std::string& message)
    : std::runtime_error(file.filename().string() + ", line " + std::to_string(line) + ": " +
                         message + " (" + file.string() + ")") {}

void CannotWrite(const fs::path& file, std::error_code why) {
    namespace err = kw::automation::err;
    int number = err::kDeviceIo;
    if (why == std::errc::permission_denied || why == std::errc::operation_not_permitted ||
        why == std::errc::read_only_file_system) {
        number = err::kPermissionDenied;
    } else if (why == std::errc::no_space_on_device) {
        number = err::kDiskFull;
    } else if (why == std::errc::is_a_directory || why == std::errc::not_a_directory) {
        number = err::kPathFileAccess;
    } else if (why == std::errc::no_such_file_or_directory) {
        number = err::kPathNotFound;
    }
    throw kw::automation::Failure(number, "Dravlink cannot save " + file.filename().string() +
                                              ": " + why.message() + " (" + file.string() + ")");
}

std::string Excerpt(const std::string& s) {
    constexpr std::size_t kLength = 80;
    if (s.size() <= kLength) {
        return s;
    }
    std::size_t cut = kLength;
    while (cut > 0 && (static_cast<unsigned char>(s[cut]) & 0xC0) == 0x80) {
        --cut;  // not inside a character
    }
    return s.substr(0, cut) + "\u2026";
}

std::string TrimBlanks(const std::string& s) {
    const auto first = s.find_first_not_of(" \t\r");
    if (first == std::string::npos) {
        return "";
    }
    const auto last = s.find_last_not_of(" \t\r");
    return s.substr(first, last - first + 1);
}

bool SameText(const std::string& a, const std::string& b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return std::tolower(static_cast<unsigned char>(x)) ==
                      std::tolower(static_cast<unsigned char>(y));
           });
}

std::vector<std::string> SplitList(const std::string& s, char separator) {
    std::vector<std::string> parts;
    std::string part;
    std::istringstream in(s);
    while (std::getline(in, part, separator)) {
        parts.push_back(TrimBlanks(part));
    }
    if (!s.empty() && s.back() == separator) {
        parts.emplace_back();
    }
    return parts;
}

std::string IniSection::Get(const std::string& key, const std::string& fallback) const {
    for (auto it = entries.rbegin(); it != entries.rend(); ++it) {
        if (SameText(it->key, key)) {
            return it->value;
        }
    }
    return fallback;
}

bool IniSection::Has(const std::string& key) const {
    return std::any_of(entries.begin(), entries.end(),
                       [&](const IniEntry& e) { return SameText(e.key, key); });
}

namespace {

std::vector<std::string> ReadLines(const fs::path& path) {
    // A folder opens as an empty stream: it would read as a file with nothing in it.
    std::error_code error;
    if (fs::is_directory(path, error)) {
        throw DataError(path.filename().string() + " is a folder, not a file (" + path.string() +
                        ")");
    }
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        throw DataError("cannot read " + path.string());
    }
    std::vector<std::string> lines;
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        // Every text the engine hands on is cut at a NUL by someone: refuse it here, where the
        // line can still be named.
        if (line.find('\0') != std::string::npos) {
            throw DataError(path, static_cast<int>(lines.size()) + 1,
                            "the line holds a NUL character");
        }
        lines.push_back(line);
    }
    return lines;
}

bool IsComment(const std::string& trimmed) {
    return trimmed.empty() || trimmed[0] == '#' || trimmed[0] == ';';
}

void AddSection(IniFile& file, const std::string& line, int number) {
    if (line.back() != ']' || line.size() < 3) {
        throw DataError(file.path, number, "a section name must stand in [brackets]");
    }
    std::string name = TrimBlanks(line.substr(1, line.size() - 2));
    for (const auto& s : file.sections) {
        if (SameText(s.name, name)) {
            throw DataError(
                file.path, number,
                "section [" + name + "] repeats the one on line " + std::to_string(s.line));
        }
    }
    file.sections.push_back(IniSection{name, number, {}});
}

void AddEntry(IniFile& file, const std::string& line, int number) {
    const auto eq = line.find('=');
    if (eq == std::string::npos || eq == 0) {
        throw DataError(file.path, number,
                        "expected \"key = value\" or a [section], found \"" + Excerpt(line) + "\"");
    }
    if (file.sections.empty()) {
        throw DataError(file.path, number, "\"" + Excerpt(line) + "\" stands before any [section]");
    }
    file.sections.back().entries.push_back(
        IniEntry{TrimBlanks(line.substr(0, eq)), TrimBlanks(line.substr(eq + 1)), number});
}

void WriteWhole(const fs::path& path, const std::string& text) {
    std::error_code error;
    std::string unused;
    if (!kw::registry::MakePrivateFolder(path.parent_path().string(), &unused)) {
        CannotWrite(path, std::error_code(errno != 0 ? errno : EIO, std::generic_category()));
    }
    const fs::path temp = path.string() + ".tmp" + std::to_string(::getpid());
    {
        // Made 0600 before a byte is in it: the engine's files hold logins and passwords.
        errno = 0;
        const int fd = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        if (fd < 0 || ::fchmod(fd, 0600) != 0) {
            const int why = errno != 0 ? errno : EIO;
            if (fd >= 0) {
                ::close(fd);
            }
            CannotWrite(path, std::error_code(why, std::generic_category()));
        }
        ::close(fd);
        errno = 0;
        std::ofstream out(temp, std::ios::binary | std::ios::trunc);
        out << text;
        out.flush();
        if (!out) {
            const int why = errno != 0 ? errno : EIO;
            fs::remove(temp, error);
            CannotWrite(path, std::error_code(why, std::generic_category()));
        }
    }
    fs::rename(temp, path, error);
    if (error) {
        const std::error_code why = error;
        fs::remove(temp, error);
        CannotWrite(path, why);
    }
}

}  // namespace

IniFile ReadIni(const fs::path& path) {
    IniFile file{path, {}};
    const auto lines = ReadLines(path);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const int number = static_cast<int>(i) + 1;
        const std::string line = TrimBlanks(lines[i]);
        if (IsComment(line)) {
            continue;
        }
        if (line.front() == '[') {
            AddSection(file, line, number);
        } else {
            AddEntry(file, line, number);
        }
    }
    return file;
}

TableFile ReadTable(const fs::path& path, std::size_t fieldCount) {
    TableFile file{path, {}, 0};
    const auto lines = ReadLines(path);
    file.lastLine = static_cast<int>(lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const int number = static_cast<int>(i) + 1;
        const std::string line = TrimBlanks(lines[i]);
        if (IsComment(line)) {
            continue;
        }
        auto fields = SplitList(line, '|');
        if (fields.size() != fieldCount) {
            throw DataError(path, number,
                            "expected " + std::to_string(fieldCount) +
                                " fields separated by \"|\", found " +
                                std::to_string(fields.size()));
        }
        file.rows.push_back(TableRow{std::move(fields), number});
    }
    return file;
}

void WriteIni(const fs::path& path, const std::string& header,
              const std::vector<IniSection>& sections) {
    std::ostringstream out;
    out << header;
    for (const auto& section : sections) {
        out << "\n[" << section.name << "]\n";
        for (const auto& entry : section.entries) {
            out << entry.key << " = " << entry.value << "\n";
        }
    }
    WriteWhole(path, out.str());
}

void WriteTable(const fs::path& path, const std::string& header,
                const std::vector<std::vector<std::string>>& rows) {
    std::ostringstream out;
    out << header;
    for (const auto& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            out << (i ? " | " : "") << row[i];
        }
        out << "\n";
    }
    WriteWhole(path, out.str());
}

}  // namespace dravlink
