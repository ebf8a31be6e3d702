#pragma once

// One hive on disk, shared with other processes. See registry.h for the rules it keeps.

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <string>

#include "platform/registry/hive_text.h"

namespace kw::registry {

class HiveFile {
  public:
    // `relativeTo` goes into the header comment of a new file.
    HiveFile(std::string path, std::string relativeTo);
    ~HiveFile();
    HiveFile(const HiveFile&) = delete;
    HiveFile& operator=(const HiveFile&) = delete;

    const std::string& Path() const { return path_; }

    // The hive as the file holds it now; re-read only when the file was replaced or edited.
    const text::Document& Current();

    // One change under the hive's lock, applied to the file as it is on disk at that moment.
    // `change` returns a status and says whether it changed anything; when it returns 0 with a
    // change, the hive is written and made durable before Modify returns. Gives the change's
    // status, or 5 / 1016 when the file could not be written (nothing is changed then).
    std::int32_t Modify(const std::function<std::int32_t(text::Document&, bool& changed)>& change);

  private:
    struct Identity {
        bool exists = false;
        dev_t dev = 0;
        ino_t ino = 0;
        off_t size = 0;
        std::int64_t mtimeNs = 0;
        std::int64_t ctimeNs = 0;
        bool operator==(const Identity&) const = default;
    };

    // True when the copy in memory is the file as it is now.
    bool UpToDate() const;
    // Reads the file under the lock; a damaged file is moved aside. False when a damaged file
    // could not be moved aside (then it must not be written over).
    bool LoadLocked(int& errnoOut);
    bool MoveAside(const text::ParseError& why, int& errnoOut);
    void Forget();
    void Hold(int fd, const Identity& id);
    int LockExclusive();

    std::string path_;
    std::string relativeTo_;
    text::Document doc_;
    bool loaded_ = false;
    Identity id_;
    // The file we last read stays open, so its inode cannot be reused by a later file and a
    // matching inode number really means the same file.
    int heldFd_ = -1;
};

}  // namespace kw::registry
