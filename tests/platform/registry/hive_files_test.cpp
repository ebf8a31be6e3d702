// The hives on disk: durability, damage, links and private folders, and two processes writing one
// hive.

#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <random>
#include <set>

#include "platform/registry/hive_text.h"
#include "platform/registry/private_files.h"
#include "platform/registry/registry_fixture.h"

namespace kw::registry::testing {
namespace {

std::string Name(const char* prefix, int i) {
    return prefix + std::to_string(i);
}

using Durability = RegistryTest;

// Every write renames a finished file into place (that each value is in the file when its call
// returns is shown by the value-line table); a write that cannot finish changes nothing.
TEST_F(Durability, NoTemporaryFileIsLeftAndAFailedWriteChangesNothing) {
    HKEY key = Create(HKEY_CURRENT_USER, kUserKey);
    ASSERT_EQ(SetDword(key, "v", 1), ERROR_SUCCESS);
    const auto files = FilesInDir();
    EXPECT_EQ(std::set<std::string>(files.begin(), files.end()),
              (std::set<std::string>{"user.reg", "user.reg.lock"}))
        << "no temporary file is left behind";
    EXPECT_EQ(Mode(userHive_ + ".lock"), 0600u);

    const std::string before = ReadFile(userHive_);
    // A folder where the temporary file should go makes the write fail, even for root.
    ASSERT_EQ(::mkdir((userHive_ + ".tmp").c_str(), 0700), 0);
    EXPECT_EQ(SetString(key, "UserName", "bob"), ERROR_REGISTRY_IO_FAILED);
    EXPECT_FALSE(Query(key, "UserName"));
    EXPECT_EQ(ReadFile(userHive_), before);
    ASSERT_EQ(::rmdir((userHive_ + ".tmp").c_str()), 0);
    EXPECT_EQ(SetString(key, "UserName", "bob"), ERROR_SUCCESS);
    EXPECT_EQ(QueryString(key, "UserName"), "bob");
    RegCloseKey(key);
}

// The program writes some values at every start whether or not they changed: an unchanged write
// leaves the file alone, with no rewrite and no fsync.
TEST_F(Durability, AnUnchangedWriteLeavesTheFileAloneAndAChangedOneRewritesIt) {
    const auto identity = [this] {
        struct stat st {};
        EXPECT_EQ(::stat(userHive_.c_str(), &st), 0);
        return st.st_ino;  // every real write renames a new file over the old one
    };
    HKEY key = Create(HKEY_CURRENT_USER, kUserKey);
    ASSERT_EQ(SetString(key, "Password", ""), ERROR_SUCCESS);
    const ino_t first = identity();
    ASSERT_EQ(SetString(key, "Password", ""), ERROR_SUCCESS);
    EXPECT_EQ(identity(), first) << "the same type and bytes";
    ASSERT_EQ(SetString(key, "Password", "", REG_EXPAND_SZ), ERROR_SUCCESS);
    EXPECT_NE(identity(), first) << "another type is a change";
    EXPECT_EQ(Query(key, "Password")->type, REG_EXPAND_SZ);
    RegCloseKey(key);
}

TEST_F(Durability, AHiveThatIsALinkStaysOneAndItsTargetTakesTheWrite) {
    namespace fs = std::filesystem;
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

TEST_F(Durability, PrivateFoldersAreMadeAndTightenedWhateverTheUmask) {
    const mode_t saved = ::umask(022);
    ASSERT_TRUE(MakePrivateFolder(dir_ + "/new/deeper"));
    std::filesystem::create_directories(dir_ + "/loose");
    std::filesystem::permissions(dir_ + "/loose", std::filesystem::perms::all);
    ASSERT_TRUE(MakePrivateFolder(dir_ + "/loose"));
    ::umask(saved);
    for (const char* folder : {"/new", "/new/deeper", "/loose"}) {
        EXPECT_EQ(Mode(dir_ + folder), 0700u) << folder;
    }
}

using DamagedFile = RegistryTest;

// Garbage, or a hive cut off inside its hex data, is set aside once as it was, under the time the
// program's clock gives, with one line naming it; a key open on it goes with it, and the store
// carries on with a proper hive.
TEST_F(DamagedFile, IsSetAsideOnceAndNotWrittenOver) {
    SetWallClock([] { return std::int64_t{1773480413}; });  // 2026-03-14 09:26:53 UTC
    const std::string aside = "user.reg.corrupt-20260314T092653";
    for (bool truncated : {false, true}) {
        SCOPED_TRACE(truncated);
        for (const auto& f : FilesInDir()) std::filesystem::remove(dir_ + "/" + f);
        Restart();
        HKEY key = Create(HKEY_CURRENT_USER, kUserKey);
        ASSERT_EQ(SetBytes(key, "Blob", REG_BINARY, std::vector<BYTE>(300, 0xab)), ERROR_SUCCESS);
        const std::string whole = ReadFile(userHive_);
        const std::string damaged = truncated ? whole.substr(0, whole.find(",\\\n") + 3)
                                              : "\x89PNG\r\n\x1a\n this is not a hive\n";
        WriteFile(userHive_, damaged);
        ::testing::internal::CaptureStderr();
        EXPECT_EQ(SetString(key, "UserName", "ann"), ERROR_KEY_DELETED);
        RegCloseKey(key);
        key = nullptr;
        EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, kUserKey, 0, KEY_READ, &key),
                  ERROR_FILE_NOT_FOUND);
        key = Create(HKEY_CURRENT_USER, kUserKey);
        EXPECT_FALSE(Query(key, "Blob"));
        ASSERT_EQ(SetString(key, "UserName", "ann"), ERROR_SUCCESS);
        EXPECT_EQ(QueryString(key, "UserName"), "ann");
        const std::string printed = ::testing::internal::GetCapturedStderr();

        const auto files = FilesInDir();
        EXPECT_EQ(std::count_if(files.begin(), files.end(),
                                [](const std::string& f) { return f.find("corrupt") != f.npos; }),
                  1);
        EXPECT_EQ(ReadFile(dir_ + "/" + aside), damaged) << "kept as it was";
        EXPECT_NE(printed.find(aside), std::string::npos) << printed;
        EXPECT_EQ(std::count(printed.begin(), printed.end(), '\n'), 1) << printed;
        EXPECT_TRUE(text::Parse(ReadFile(userHive_))) << "the new hive is a proper one";
        RegCloseKey(key);
    }
}

using TwoProcesses = RegistryTest;

TEST_F(TwoProcesses, ConcurrentWritersLoseNothingAndEachSeesTheOthersWrites) {
    constexpr int kEach = 2000;
    HKEY key = Create(HKEY_CURRENT_USER, kUserKey);
    ASSERT_EQ(SetString(key, "Before", "x"), ERROR_SUCCESS);
    ASSERT_EQ(QueryString(key, "Before"), "x");  // this process now holds the hive

    std::fflush(nullptr);
    std::vector<pid_t> writers;
    for (const char* prefix : {"client", "engine"}) {
        const pid_t pid = ::fork();
        if (pid == 0) {
            HKEY k = Create(HKEY_CURRENT_USER, kUserKey);
            for (int i = 0; i < kEach; ++i) {
                if (SetDword(k, Name(prefix, i).c_str(), static_cast<DWORD>(i)) != 0)
                    ::_exit(1);
            }
            ::_exit(0);
        }
        writers.push_back(pid);
    }
    for (pid_t pid : writers) {
        int status = 0;
        ::waitpid(pid, &status, 0);
        ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    ASSERT_EQ(SetString(key, "After", "y"), ERROR_SUCCESS);
    for (bool restarted : {false, true}) {
        if (restarted)
            Restart();
        int missing = 0;
        for (const char* prefix : {"client", "engine"}) {
            for (int i = 0; i < kEach; ++i) {
                auto v = Query(key, Name(prefix, i).c_str());
                if (!v || v->bytes != Bytes({i & 0xff, (i >> 8) & 0xff, 0, 0}))
                    ++missing;
            }
        }
        EXPECT_EQ(missing, 0) << restarted;
        EXPECT_EQ(QueryString(key, "Before"), "x");
        EXPECT_EQ(QueryString(key, "After"), "y");
    }
    RegCloseKey(key);
}

TEST_F(TwoProcesses, AWriterKilledAtAnyMomentLeavesEveryReturnedWrite) {
    constexpr int kRounds = 12;
    std::mt19937 random(20261122);
    HKEY key = Create(HKEY_CURRENT_USER, kUserKey);
    ASSERT_EQ(SetString(key, "Padding", std::string(2000, 'p')), ERROR_SUCCESS);
    std::vector<std::string> confirmed;

    for (int round = 0; round < kRounds; ++round) {
        int fds[2];
        ASSERT_EQ(::pipe(fds), 0);
        std::fflush(nullptr);
        const pid_t pid = ::fork();
        if (pid == 0) {
            ::close(fds[0]);
            HKEY k = Create(HKEY_CURRENT_USER, kUserKey);
            for (int i = 0;; ++i) {
                const std::string name = "r" + std::to_string(round) + "_" + std::to_string(i);
                if (SetString(k, name.c_str(), name) != ERROR_SUCCESS)
                    ::_exit(1);
                const std::string line = name + "\n";
                if (::write(fds[1], line.data(), line.size()) < 0)
                    ::_exit(2);
            }
        }
        ::close(fds[1]);
        std::uniform_int_distribution<int> delay(2000, 60000);
        ::usleep(static_cast<useconds_t>(delay(random)));
        ::kill(pid, SIGKILL);
        int status = 0;
        ::waitpid(pid, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the writer failed on its own in round " << round;

        std::string reported;
        char buf[4096];
        for (ssize_t n; (n = ::read(fds[0], buf, sizeof buf)) > 0;)
            reported.append(buf, static_cast<std::size_t>(n));
        ::close(fds[0]);
        // A report cut off by the kill ends without its newline.
        for (std::size_t start = 0, end; (end = reported.find('\n', start)) != std::string::npos;
             start = end + 1) {
            confirmed.push_back(reported.substr(start, end - start));
        }

        text::ParseError why;
        ASSERT_TRUE(text::Parse(ReadFile(userHive_), &why))
            << "round " << round << ", line " << why.line << ": " << why.reason;
        for (const auto& name : confirmed) {
            ASSERT_EQ(QueryString(key, name.c_str()), name) << "lost after round " << round;
        }
    }
    for (auto& f : FilesInDir()) {
        EXPECT_EQ(f.find("corrupt"), std::string::npos) << f;
    }
    EXPECT_GT(confirmed.size(), static_cast<std::size_t>(kRounds));
    RegCloseKey(key);
}

}  // namespace
}  // namespace kw::registry::testing
