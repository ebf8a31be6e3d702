// A write that would store what is stored already leaves the hive's file alone: no rewrite, no
// fsync. The program writes some values at every start whether or not they changed.
#include <sys/stat.h>

#include "platform/registry/registry_fixture.h"

namespace kw::registry::testing {
namespace {

using UnchangedWrite = RegistryTest;

ino_t FileIdentity(const std::string& path) {
    struct stat st {};
    EXPECT_EQ(::stat(path.c_str(), &st), 0) << path;
    return st.st_ino;  // every real write renames a new file over the old one
}

TEST_F(UnchangedWrite, LeavesTheFileAloneAndAChangedOneRewritesIt) {
    HKEY key = Create(HKEY_CURRENT_USER, "Software\\Ostvarra\\Kestrelway");
    ASSERT_EQ(SetString(key, "Password", ""), ERROR_SUCCESS);
    const ino_t first = FileIdentity(userHive_);
    ASSERT_EQ(SetString(key, "Password", ""), ERROR_SUCCESS);
    EXPECT_EQ(FileIdentity(userHive_), first) << "the same type and bytes";
    ASSERT_EQ(SetString(key, "Password", "", REG_EXPAND_SZ), ERROR_SUCCESS);
    EXPECT_NE(FileIdentity(userHive_), first) << "another type is a change";
    EXPECT_EQ(Query(key, "Password")->type, REG_EXPAND_SZ);
    RegCloseKey(key);
}

}  // namespace
}  // namespace kw::registry::testing
