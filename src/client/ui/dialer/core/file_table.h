#pragma once

#include <cstdio>
#include <map>
#include <string>

#include "platform/forms/platform.h"

namespace kw::dialer {

// The program's open text files by number, as the log writers keep them: a free number, a file
// opened for appending, lines written with CR LF, closed by number.
class FileTable {
  public:
    FileTable() = default;
    ~FileTable();
    FileTable(const FileTable&) = delete;
    FileTable& operator=(const FileTable&) = delete;

    // The lowest number not in use, from 1.
    int FreeFile() const;
    // Opens (creating when missing) for appending; fails with 55 when the number is in use, 76
    // when the folder does not exist, 75 when the file cannot be opened.
    void OpenForAppend(int number, const std::string& path);
    // Writes text and CR LF; fails with 52 for a number that is not open.
    void PrintLine(int number, const std::string& text);
    // Closing a number that is not open does nothing.
    void Close(int number);
    bool IsOpen(int number) const { return files_.count(number) != 0; }
    const std::string& PathOf(int number) const;

  private:
    struct OpenFile {
        std::FILE* file;
        std::string path;
    };
    std::map<int, OpenFile> files_;
};

// A moment as the logs write it: "YYYY-MM-DD HH:MM:SS".
std::string LogDateText(const forms::LocalTime& moment);

}  // namespace kw::dialer
