// What the settings store leaves on disk: a link stays a link, and folders are the user's alone
// whatever the umask.
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
    const std::string text = ReadFile(target);
    EXPECT_NE(text.find("\"First\"=\"1\""), std::string::npos) << text;
    EXPECT_NE(text.find("\"Second\"=\"2\""), std::string::npos) << text;
}

TEST_F(HiveOnDisk, PrivateFoldersAreMadeAndTightenedWhateverTheUmask) {
    const mode_t saved = ::umask(022);
    ASSERT_TRUE(MakePrivateFolder(dir_ + "/new/deeper"));
    fs::create_directories(dir_ + "/loose");
    fs::permissions(dir_ + "/loose", fs::perms::all);
    ASSERT_TRUE(MakePrivateFolder(dir_ + "/loose"));
    ::umask(saved);
    for (const char* folder : {"/new", "/new/deeper", "/loose"}) {
        EXPECT_EQ(Mode(dir_ + folder), 0700u) << folder;
    }
}

}  // namespace
}  // namespace kw::registry::testing
