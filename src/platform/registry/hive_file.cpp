#include "platform/registry/hive_file.h"
#include "platform/registry/registry.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <ctime>

namespace kw::registry {
namespace {

constexpr std::int32_t kAccessDenied = 5;
constexpr std::int32_t kIoFailed = 1016;  // ERROR_REGISTRY_IO_FAILED

std::int32_t StatusFromErrno(int e) {
    return (e == EACCES || e == EPERM || e == EROFS) ? kAccessDenied : kIoFailed;
}

std::int64_t Nanoseconds(const timespec& t) {
    return static_cast<std::int64_t>(t.tv_sec) * 1000000000 + t.tv_nsec;
}

std::string Folder(const std::string& path) {
    const auto cut = path.rfind('/');
    if (cut == std::string::npos)
        return ".";
    if (cut == 0)
        return "/";
    return path.substr(0, cut);
}

// Creates the missing folders of `dir`, private to the user.
bool MakeFolders(const std::string& dir) {
    struct stat st {};
    if (::stat(dir.c_str(), &st) == 0)
        return S_ISDIR(st.st_mode);
    const std::string parent = Folder(dir);
    if (parent != dir && !MakeFolders(parent))
        return false;
    return ::mkdir(dir.c_str(), 0700) == 0 || errno == EEXIST;
}

bool WriteAll(int fd, const std::string& data) {
    std::size_t done = 0;
    while (done < data.size()) {
        const ssize_t n = ::write(fd, data.data() + done, data.size() - done);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        done += static_cast<std::size_t>(n);
    }
    return true;
}

bool ReadAll(int fd, std::string& out) {
    out.clear();
    char buf[16384];
    while (true) {
        const ssize_t n = ::read(fd, buf, sizeof buf);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        if (n == 0)
            return true;
        out.append(buf, static_cast<std::size_t>(n));
    }
}

void SyncFolder(const std::string& dir) {
    const int fd = ::open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return;
    ::fsync(fd);
    ::close(fd);
}

bool Exists(const std::string& path) {
    struct stat st {};
    return ::lstat(path.c_str(), &st) == 0;
}

// The file a write replaces: a hive that is a symbolic link stays one, and its target changes.
std::string WriteTarget(const std::string& path) {
    std::string target = path;
    for (int hops = 0; hops < 40; ++hops) {
        struct stat st {};
        if (::lstat(target.c_str(), &st) != 0 || !S_ISLNK(st.st_mode))
            return target;
        std::string link(static_cast<std::size_t>(st.st_size > 0 ? st.st_size : 4096), '\0');
        const ssize_t n = ::readlink(target.c_str(), link.data(), link.size());
        if (n <= 0)
            return target;
        link.resize(static_cast<std::size_t>(n));
        target = link.front() == '/' ? link : Folder(target) + "/" + link;
    }
    return target;
}

}  // namespace

HiveFile::HiveFile(std::string path, std::string relativeTo)
    : path_(std::move(path)), relativeTo_(std::move(relativeTo)) {}

HiveFile::~HiveFile() {
    Forget();
}

void HiveFile::Forget() {
    if (heldFd_ >= 0)
        ::close(heldFd_);
    heldFd_ = -1;
    id_ = Identity{};
}

void HiveFile::Hold(int fd, const Identity& id) {
    if (heldFd_ >= 0)
        ::close(heldFd_);
    heldFd_ = fd;
    id_ = id;
}

bool HiveFile::UpToDate() const {
    if (!loaded_)
        return false;
    struct stat st {};
    if (::stat(path_.c_str(), &st) != 0)
        return errno == ENOENT && !id_.exists;
    return Identity{true,
                    st.st_dev,
                    st.st_ino,
                    st.st_size,
                    Nanoseconds(st.st_mtim),
                    Nanoseconds(st.st_ctim)} == id_;
}

const text::Document& HiveFile::Current() {
    if (UpToDate())
        return doc_;

    const int fd = ::open(path_.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0 && errno == ENOENT) {
        Forget();
        doc_ = text::NewDocument(relativeTo_);
        loaded_ = true;
        return doc_;
    }
    struct stat opened {};
    std::string content;
    if (fd < 0 || ::fstat(fd, &opened) != 0 || !ReadAll(fd, content)) {
        if (fd >= 0)
            ::close(fd);
        // Unreadable for now: behave as empty and look again next time.
        Forget();
        doc_ = text::NewDocument(relativeTo_);
        loaded_ = false;
        return doc_;
    }
    text::ParseError why;
    if (auto parsed = text::Parse(content, &why)) {
        doc_ = *std::move(parsed);
        loaded_ = true;
        Hold(fd, Identity{true, opened.st_dev, opened.st_ino, opened.st_size,
                          Nanoseconds(opened.st_mtim), Nanoseconds(opened.st_ctim)});
        return doc_;
    }
    ::close(fd);
    // Damaged: set it aside under the lock, where no writer can be replacing it meanwhile.
    const int lock = LockExclusive();
    int ignored = 0;
    if (lock < 0 || !LoadLocked(ignored)) {
        Forget();
        doc_ = text::NewDocument(relativeTo_);
        loaded_ = false;
    }
    if (lock >= 0)
        ::close(lock);
    return doc_;
}

int HiveFile::LockExclusive() {
    if (!MakeFolders(Folder(path_)))
        return -1;
    const std::string lockPath = path_ + ".lock";
    // A fresh descriptor each time: a forked process must not share our lock's open file.
    const int fd = ::open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0)
        return -1;
    while (::flock(fd, LOCK_EX) != 0) {
        if (errno != EINTR) {
            const int e = errno;
            ::close(fd);
            errno = e;
            return -1;
        }
    }
    return fd;
}

bool HiveFile::LoadLocked(int& errnoOut) {
    const int fd = ::open(path_.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        if (errno != ENOENT) {
            errnoOut = errno;
            return false;
        }
        Forget();
        doc_ = text::NewDocument(relativeTo_);
        loaded_ = true;
        return true;
    }
    struct stat st {};
    std::string content;
    if (::fstat(fd, &st) != 0 || !ReadAll(fd, content)) {
        errnoOut = errno;
        ::close(fd);
        return false;
    }
    text::ParseError why;
    if (auto parsed = text::Parse(content, &why)) {
        doc_ = *std::move(parsed);
        loaded_ = true;
        Hold(fd, Identity{true, st.st_dev, st.st_ino, st.st_size, Nanoseconds(st.st_mtim),
                          Nanoseconds(st.st_ctim)});
        return true;
    }
    ::close(fd);
    if (!MoveAside(why, errnoOut))
        return false;
    Forget();
    doc_ = text::NewDocument(relativeTo_);
    loaded_ = true;
    return true;
}

bool HiveFile::MoveAside(const text::ParseError& why, int& errnoOut) {
    char stamp[32];
    const auto t = static_cast<std::time_t>(WallClock());
    std::tm utc{};
    ::gmtime_r(&t, &utc);
    std::strftime(stamp, sizeof stamp, "%Y%m%dT%H%M%S", &utc);
    std::string aside = path_ + ".corrupt-" + stamp;
    for (int n = 1; Exists(aside); ++n) {
        aside = path_ + ".corrupt-" + stamp + "-" + std::to_string(n);
    }
    if (::rename(path_.c_str(), aside.c_str()) != 0) {
        errnoOut = errno;
        std::fprintf(stderr,
                     "Kestrelway: settings file %s is damaged (line %d: %s) and could "
                     "not be moved aside; it is left untouched\n",
                     path_.c_str(), why.line, why.reason.c_str());
        return false;
    }
    SyncFolder(Folder(path_));
    std::fprintf(stderr,
                 "Kestrelway: settings file %s is damaged (line %d: %s); kept as %s, "
                 "starting with empty settings\n",
                 path_.c_str(), why.line, why.reason.c_str(), aside.c_str());
    return true;
}

std::int32_t HiveFile::Modify(
    const std::function<std::int32_t(text::Document&, bool& changed)>& change) {
    const int lock = LockExclusive();
    if (lock < 0)
        return StatusFromErrno(errno);
    struct Unlock {
        int fd;
        ~Unlock() { ::close(fd); }
    } unlock{lock};

    // Start from the file as it is now: the other process may have written since.
    int e = 0;
    if (!UpToDate() && !LoadLocked(e)) {
        loaded_ = false;
        return StatusFromErrno(e);
    }
    bool changed = false;
    const std::int32_t status = change(doc_, changed);
    if (status != 0 || !changed)
        return status;

    const std::string data = text::Serialize(doc_);
    const std::string target = WriteTarget(path_);
    const std::string temp = target + ".tmp";  // only the lock holder ever writes it
    const int fd = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    struct stat st {};
    if (fd < 0 || ::fchmod(fd, 0600) != 0 || !WriteAll(fd, data) || ::fsync(fd) != 0 ||
        ::rename(temp.c_str(), target.c_str()) != 0) {
        e = errno;
        if (fd >= 0)
            ::close(fd);
        ::unlink(temp.c_str());
        Forget();
        loaded_ = false;  // the change stays out of memory too: re-read next time
        return StatusFromErrno(e);
    }
    SyncFolder(Folder(target));
    // Taken after the rename, which changes the inode's ctime on some file systems.
    if (::fstat(fd, &st) != 0)
        st = {};
    Hold(fd, Identity{true, st.st_dev, st.st_ino, st.st_size, Nanoseconds(st.st_mtim),
                      Nanoseconds(st.st_ctim)});
    return 0;
}

}  // namespace kw::registry
