// The one-instance channel against what another local user can put at its name: it must neither
// make Kestrelway quit at start nor let two instances run.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <utility>

#include "platform/qt/instance_channel.h"
#include "qt_app.h"

namespace kw::qt {
namespace {

namespace fs = std::filesystem;

enum class Attack { kAnswersOk, kSilentListener, kPlainFile };

// Leaves at `path` what another user could: a file, or a listener in a child process. Run as
// root, the listener really is another user's; otherwise the test's channel expects a user other
// than the test's own, which is what the listener then is.
pid_t Occupy(const std::string& path, Attack attack) {
    if (attack == Attack::kPlainFile) {
        std::ofstream(path) << "not a socket\n";
        return -1;
    }
    const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    EXPECT_EQ(::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    int ready[2];
    EXPECT_EQ(::pipe(ready), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        // The peer's user is the one that starts listening.
        if (::geteuid() == 0 &&
            (::setresgid(65534, 65534, 65534) || ::setresuid(65534, 65534, 65534)))
            ::_exit(1);
        if (::listen(fd, 8) != 0 || ::write(ready[1], "r", 1) != 1)
            ::_exit(1);
        for (char line[64]; attack == Attack::kAnswersOk;) {
            const int client = ::accept(fd, nullptr, nullptr);
            if (::read(client, line, sizeof line) > 0 && ::write(client, "ok\n", 3) != 3)
                ::_exit(1);
            ::close(client);
        }
        ::pause();
        ::_exit(0);
    }
    ::close(fd);
    char byte = 0;
    EXPECT_EQ(::read(ready[0], &byte, 1), 1) << "the other user's listener did not start";
    ::close(ready[0]);
    ::close(ready[1]);
    return child;
}

class InstanceChannelTest : public ::testing::Test {
  protected:
    void SetUp() override {
        testing::App();
        dir_ = fs::temp_directory_path() / ("kw-channel-" + std::to_string(::getpid()));
        fs::remove_all(dir_);
        fs::create_directories(dir_);
        fs::permissions(dir_, fs::perms::owner_all);
        path_ = QString::fromStdString((dir_ / "kestrelway").string());
    }
    void TearDown() override { fs::remove_all(dir_); }

    fs::path dir_;
    QString path_;
    int raised_ = 0;
};

TEST_F(InstanceChannelTest, WhatAnotherUserLeavesAtTheNameNeitherStopsNorDoublesTheProgram) {
    for (const Attack attack : {Attack::kAnswersOk, Attack::kSilentListener, Attack::kPlainFile}) {
        SCOPED_TRACE(static_cast<int>(attack));
        fs::remove(path_.toStdString());
        const pid_t occupier = Occupy(path_.toStdString(), attack);
        const bool emulated = attack != Attack::kPlainFile && ::geteuid() != 0;
        InstanceChannel first(path_, {[] { return 1; }, {}, [this] { ++raised_; }},
                              emulated ? ::geteuid() + 1 : ::geteuid());
        EXPECT_FALSE(first.OtherInstanceRunning()) << "the program would have quit";
        EXPECT_TRUE(first.IsListening()) << "a later instance would not find this one";
        if (!emulated) {
            InstanceChannel second(path_, {});
            EXPECT_TRUE(second.OtherInstanceRunning()) << "two instances would run";
            EXPECT_EQ(second.Ask("raise"), "ok");
            EXPECT_EQ(raised_, 1);
            raised_ = 0;
        }
        if (occupier > 0) {
            ::kill(occupier, SIGKILL);
            ::waitpid(occupier, nullptr, 0);
        }
    }
}

TEST_F(InstanceChannelTest, TheFirstInstanceIgnoresAnotherUsersRequests) {
    // The first instance expects a user other than the one this test runs as.
    InstanceChannel first(path_, {{}, {}, [this] { ++raised_; }}, ::geteuid() + 1);
    ASSERT_FALSE(first.OtherInstanceRunning());
    EXPECT_EQ(InstanceChannel(path_, {}).Ask("raise"), std::nullopt);
    EXPECT_EQ(raised_, 0);
}

TEST_F(InstanceChannelTest, TheChannelLivesInAFolderOnlyTheUserCanEnter) {
    const fs::path runtime = dir_ / "runtime", shared = dir_ / "shared", cache = dir_ / "cache";
    fs::create_directories(runtime);
    fs::create_directories(shared);
    fs::permissions(shared, fs::perms::all);
    const auto saved = [](const char* name) {
        const char* value = std::getenv(name);
        return value ? std::optional<std::string>(value) : std::nullopt;
    };
    const auto runtimeWas = saved("XDG_RUNTIME_DIR"), cacheWas = saved("XDG_CACHE_HOME");
    ::setenv("XDG_CACHE_HOME", cache.c_str(), 1);
    const struct {
        const char* runtimeDir;  // nullptr: unset
        fs::path expected;
    } cases[] = {{runtime.c_str(), runtime / "kw"},
                 {nullptr, cache / "Ostvarra" / "run" / "kw"},
                 {shared.c_str(), cache / "Ostvarra" / "run" / "kw"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.runtimeDir ? c.runtimeDir : "no XDG_RUNTIME_DIR");
        fs::permissions(runtime, fs::perms::owner_all);
        c.runtimeDir ? ::setenv("XDG_RUNTIME_DIR", c.runtimeDir, 1) : ::unsetenv("XDG_RUNTIME_DIR");
        EXPECT_EQ(InstanceChannel::PathFor("kw").toStdString(), c.expected.string());
        struct stat st {};
        ASSERT_EQ(::stat(c.expected.parent_path().c_str(), &st), 0);
        EXPECT_EQ(st.st_mode & 0777, 0700u);
    }
    for (const auto& [name, value] :
         {std::pair{"XDG_RUNTIME_DIR", runtimeWas}, std::pair{"XDG_CACHE_HOME", cacheWas}}) {
        value ? ::setenv(name, value->c_str(), 1) : ::unsetenv(name);
    }
}

}  // namespace
}  // namespace kw::qt
