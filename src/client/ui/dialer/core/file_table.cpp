#include "client/ui/dialer/core/file_table.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "platform/automation/failure.h"

namespace kw::dialer {

using automation::Failure;

FileTable::~FileTable() {
    for (auto& [number, open] : files_) {
        std::fclose(open.file);
    }
}

int FileTable::FreeFile() const {
    int number = 1;
    while (files_.count(number) != 0) {
        ++number;
    }
    return number;
}

void FileTable::OpenForAppend(int number, const std::string& path) {
    if (files_.count(number) != 0) {
        throw Failure(automation::err::kFileAlreadyOpen);
    }
    const std::filesystem::path p(path);
    std::error_code ec;
    if (path.empty() ||
        (p.has_parent_path() && !std::filesystem::is_directory(p.parent_path(), ec))) {
        throw Failure(automation::err::kPathNotFound, "Path not found: " + path);
    }
    // The logs hold a user's calls: a file made here is the user's alone, whatever the umask.
    const int fd = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
    if (fd >= 0) {
        // One an older version left readable by others is closed to them too (when it is ours).
        ::fchmod(fd, 0600);
    }
    std::FILE* file = fd < 0 ? nullptr : ::fdopen(fd, "ab");
    if (file == nullptr && fd >= 0) {
        ::close(fd);
    }
    if (file == nullptr) {
        throw Failure(automation::err::kPathFileAccess, "Path/File access error: " + path);
    }
    files_[number] = OpenFile{file, path};
}

void FileTable::PrintLine(int number, const std::string& text) {
    auto it = files_.find(number);
    if (it == files_.end()) {
        throw Failure(automation::err::kBadFileNameOrNumber);
    }
    const std::string line = text + "\r\n";
    // Every line reaches the file at once: a log is read while the call goes on.
    if (std::fwrite(line.data(), 1, line.size(), it->second.file) != line.size() ||
        std::fflush(it->second.file) != 0) {
        throw Failure(automation::err::kDeviceIo);
    }
}

void FileTable::Close(int number) {
    auto it = files_.find(number);
    if (it == files_.end()) {
        return;
    }
    std::fclose(it->second.file);
    files_.erase(it);
}

const std::string& FileTable::PathOf(int number) const {
    static const std::string kNone;
    auto it = files_.find(number);
    return it != files_.end() ? it->second.path : kNone;
}

std::string LogDateText(const forms::LocalTime& moment) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02d %02d:%02d:%02d", moment.year, moment.month,
                  moment.day, moment.hour, moment.minute, moment.second);
    return buffer;
}

}  // namespace kw::dialer
