#pragma once

// Files that hold a user's settings, calls or credentials are the user's alone: 0600 in 0700
// folders, whatever the umask and whatever mode the file had where it was copied from.

#include <string>

#include "platform/registry/registry.h"

namespace kw::registry {

// Makes `dir` and its missing parents (0700), and makes `dir` itself 0700 when it exists looser.
// False, with the reason in `why`, when that cannot be done.
bool MakePrivateFolder(const std::string& dir, std::string* why = nullptr);

// Makes an existing file of the user's 0600; false when it cannot.
bool MakePrivateFile(const std::string& path);

// Why the file of `root` cannot be used as the user's settings (a folder in its place, a file
// that cannot be read, a folder that cannot be made); "" when nothing stands in the way.
std::string HiveProblem(HKEY root);

}  // namespace kw::registry
