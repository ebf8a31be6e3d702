// What the settings store leaves on disk: a link stays a link, and files and folders are the
// user's alone whatever the umask.
#include <sys/stat.h>

#include "platform/registry/private_files.h"
#include "registry_fixture.h"

namespace kw::registry::testing {
namespace {

namespace fs = std::filesystem;

using HiveOnDisk = RegistryTest;

TEST_F(HiveOnDisk, AHiveThatIsALinkStaysOneAndItsTargetTakesTheWrite) {
    const std::string target = dir_ + "/dotfiles/kestrelway.reg";
    HKEY key = Create(HKEY_CURRENT_USER, kUserKey);
    ASSERT_EQ(SetString(key, "First", "1"), ERROR_SUCCESS);
    RegCloseKey(key);
    fs::create_directories(dir_ + "/dotfiles");
    fs::rename(userHive_, target);
    fs::create_symlink("dotfiles/kestrelway.reg", userHive_);
    Restart();

    key = Create(HKEY_CURRENT_USER, kUserKey);
    ASSERT_EQ(SetString(key, "Second", "2"), ERROR_SUCCESS);
    RegCloseKey(key);
    EXPECT_TRUE(fs::is_symlink(userHive_));
    std::ifstream in(target);
    const std::string text((std::istreambuf_iterator<char>(in)), {});
    EXPECT_NE(text.find("\"First\"=\"1\""), std::string::npos) << text;
    EXPECT_NE(text.find("\"Second\"=\"2\""), std::string::npos) << text;
}

mode_t ModeOf(const std::string& path) {
    struct stat st {};
    EXPECT_EQ(::stat(path.c_str(), &st), 0) << path;
    return st.st_mode & 07777;
}

TEST_F(HiveOnDisk, FilesAndFoldersAreTheUsersAloneUnderAnOpenUmask) {
    const mode_t saved = ::umask(022);
    userHive_ = dir_ + "/new/deeper/user.reg";
    Restart();
    HKEY key = Create(HKEY_CURRENT_USER, kUserKey);
    SetString(key, "UserName", "ana");
    RegCloseKey(key);
    ASSERT_TRUE(MakePrivateFolder(dir_ + "/loose"));
    fs::permissions(dir_ + "/loose", fs::perms::all);
    ASSERT_TRUE(MakePrivateFolder(dir_ + "/loose"));
    ::umask(saved);

    EXPECT_EQ(ModeOf(userHive_), 0600u);
    EXPECT_EQ(ModeOf(dir_ + "/new/deeper"), 0700u);
    EXPECT_EQ(ModeOf(dir_ + "/new"), 0700u);
    EXPECT_EQ(ModeOf(dir_ + "/loose"), 0700u) << "an existing looser folder is tightened";
}

}  // namespace
}  // namespace kw::registry::testing
