#include "platform/registry/private_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace kw::registry {

namespace {

std::string Parent(const std::string& path) {
    const auto cut = path.find_last_not_of('/') == std::string::npos
                         ? std::string::npos
                         : path.rfind('/', path.find_last_not_of('/'));
    if (cut == std::string::npos)
        return ".";
    return cut == 0 ? "/" : path.substr(0, cut);
}

bool Fail(std::string* why, const std::string& text) {
    if (why != nullptr)
        *why = text;
    return false;
}

// Creates the missing folders of `dir` with mode 0700; folders that exist are left as they are.
bool MakeMissing(const std::string& dir, std::string* why) {
    struct stat st {};
    if (::stat(dir.c_str(), &st) == 0) {
        return S_ISDIR(st.st_mode) || Fail(why, dir + " is not a folder");
    }
    if (errno != ENOENT)
        return Fail(why, dir + ": " + std::strerror(errno));
    const std::string parent = Parent(dir);
    if (parent != dir && !MakeMissing(parent, why))
        return false;
    if (::mkdir(dir.c_str(), 0700) != 0 && errno != EEXIST)
        return Fail(why, dir + ": " + std::strerror(errno));
    return true;
}

}  // namespace

bool MakePrivateFolder(const std::string& dir, std::string* why) {
    if (!MakeMissing(dir, why))
        return false;
    struct stat st {};
    if (::stat(dir.c_str(), &st) != 0)
        return Fail(why, dir + ": " + std::strerror(errno));
    if ((st.st_mode & 077) != 0 && ::chmod(dir.c_str(), st.st_mode & 0700) != 0)
        return Fail(why, dir + ": " + std::strerror(errno));
    return true;
}

bool MakePrivateFile(const std::string& path) {
    struct stat st {};
    if (::stat(path.c_str(), &st) != 0 || !S_ISREG(st.st_mode))
        return false;
    return (st.st_mode & 07777) == 0600 || ::chmod(path.c_str(), 0600) == 0;
}

std::string HiveProblem(HKEY root) {
    const std::string path = HivePath(root);
    if (path.empty())
        return "";
    struct stat st {};
    if (::stat(path.c_str(), &st) != 0) {
        // A missing hive is made at the first write; one of its folders being a file is not.
        if (errno == ENOENT)
            return "";
        if (errno == ENOTDIR)
            return "a folder on its path is a file";
        return std::string("it cannot be reached: ") + std::strerror(errno);
    }
    if (S_ISDIR(st.st_mode))
        return "it is a folder, not a settings file";
    if (!S_ISREG(st.st_mode))
        return "it is not a plain file";
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return std::string("it cannot be read: ") + std::strerror(errno);
    ::close(fd);
    return "";
}

}  // namespace kw::registry
