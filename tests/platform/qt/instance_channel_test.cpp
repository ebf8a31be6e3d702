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
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include <QCoreApplication>

#include "platform/qt/instance_channel.h"
#include "qt_app.h"

namespace kw::qt {
namespace {

namespace fs = std::filesystem;
using testing::App;

// Running as root, the attacker really is another user; otherwise the channel is told to expect
// a user other than the one the test runs as, which is what the attacker's socket then is.
constexpr uid_t kNobody = 65534;
bool RealSecondUser() {
    return ::geteuid() == 0;
}

enum class Attack { kAnswersOk, kSilentListener, kPlainFile };

// A socket or file the test owns, at the channel's path, as another user would leave it.
class Attacker {
  public:
    Attacker(const std::string& path, Attack attack) {
        if (attack == Attack::kPlainFile) {
            std::ofstream(path) << "not a socket\n";
            return;
        }
        int ready[2];
        EXPECT_EQ(::pipe(ready), 0);
        child_ = ::fork();
        if (child_ == 0) {
            ::close(ready[0]);
            Serve(path, attack == Attack::kAnswersOk, ready[1]);
        }
        ::close(ready[1]);
        char byte = 0;
        EXPECT_EQ(::read(ready[0], &byte, 1), 1) << "the attacker did not start";
        ::close(ready[0]);
    }
    ~Attacker() {
        if (child_ > 0) {
            ::kill(child_, SIGKILL);
            ::waitpid(child_, nullptr, 0);
        }
    }

  private:
    [[noreturn]] static void Serve(const std::string& path, bool answer, int ready) {
        const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        if (fd < 0 || ::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
            ::_exit(1);
        }
        // The peer's user is taken when the socket starts listening.
        if (RealSecondUser() && (::setresgid(kNobody, kNobody, kNobody) != 0 ||
                                 ::setresuid(kNobody, kNobody, kNobody) != 0)) {
            ::_exit(1);
        }
        if (::listen(fd, 8) != 0 || ::write(ready, "r", 1) != 1) {
            ::_exit(1);
        }
        while (true) {
            const int client = ::accept(fd, nullptr, nullptr);
            if (answer && client >= 0) {
                char line[64];
                if (::read(client, line, sizeof line) > 0 && ::write(client, "ok\n", 3) != 3) {
                    ::_exit(1);
                }
            }
        }
    }

    pid_t child_ = -1;
};

class InstanceChannelTest : public ::testing::Test {
  protected:
    void SetUp() override {
        App();
        dir_ = fs::temp_directory_path() /
               ("kw-channel-" + std::to_string(::getpid()) + "-" +
                ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(dir_);
        fs::create_directories(dir_);
        fs::permissions(dir_, fs::perms::owner_all);
        path_ = (dir_ / "kestrelway").string();
    }
    void TearDown() override { fs::remove_all(dir_); }

    InstanceChannel::Handlers Counting() {
        InstanceChannel::Handlers handlers;
        handlers.raise = [this] { ++raised_; };
        return handlers;
    }

    fs::path dir_;
    std::string path_;
    int raised_ = 0;
};

TEST_F(InstanceChannelTest, WhatAnotherUserLeavesAtTheNameNeitherStopsNorDoublesTheProgram) {
    const struct {
        const char* name;
        Attack attack;
    } cases[] = {{"a listener answering ok", Attack::kAnswersOk},
                 {"a listener that never answers", Attack::kSilentListener},
                 {"a plain file", Attack::kPlainFile}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        fs::remove(path_);
        Attacker attacker(path_, c.attack);
        const uid_t owner =
            c.attack == Attack::kAnswersOk && !RealSecondUser() ? ::geteuid() + 1 : ::geteuid();
        InstanceChannel first(QString::fromStdString(path_), Counting(), owner);
        EXPECT_FALSE(first.OtherInstanceRunning()) << "the program would have quit";
        EXPECT_TRUE(first.IsListening()) << "a later instance would not find this one";
        if (owner == ::geteuid()) {
            InstanceChannel second(QString::fromStdString(path_), {});
            EXPECT_TRUE(second.OtherInstanceRunning()) << "two instances would run";
            EXPECT_EQ(second.Ask("raise"), "ok");
            EXPECT_EQ(raised_, 1);
            raised_ = 0;
        }
    }
}

TEST_F(InstanceChannelTest, TheFirstInstanceIgnoresAnotherUsersRequests) {
    // The first instance expects a user other than the one this test runs as.
    InstanceChannel first(QString::fromStdString(path_), Counting(), ::geteuid() + 1);
    ASSERT_FALSE(first.OtherInstanceRunning());
    InstanceChannel stranger(QString::fromStdString(path_), {});
    EXPECT_EQ(stranger.Ask("raise"), std::nullopt);
    EXPECT_EQ(raised_, 0);
}

TEST_F(InstanceChannelTest, TheSocketGoesWithTheInstance) {
    {
        InstanceChannel first(QString::fromStdString(path_), {});
        ASSERT_FALSE(first.OtherInstanceRunning());
        EXPECT_TRUE(fs::exists(path_));
    }
    EXPECT_FALSE(fs::exists(path_));
}

// Runs `check` with the variables set (nullptr: unset), then puts them back.
void WithEnvironment(std::initializer_list<std::pair<const char*, const char*>> vars,
                     const std::function<void()>& check) {
    std::vector<std::pair<std::string, std::optional<std::string>>> saved;
    for (const auto& [name, value] : vars) {
        const char* old = std::getenv(name);
        saved.emplace_back(name, old ? std::optional<std::string>(old) : std::nullopt);
        value ? ::setenv(name, value, 1) : ::unsetenv(name);
    }
    check();
    for (const auto& [name, value] : saved) {
        value ? ::setenv(name.c_str(), value->c_str(), 1) : ::unsetenv(name.c_str());
    }
}

TEST_F(InstanceChannelTest, TheChannelLivesInAFolderOnlyTheUserCanEnter) {
    const fs::path runtime = dir_ / "runtime";
    const fs::path shared = dir_ / "shared";
    const fs::path cache = dir_ / "cache";
    for (const auto& [folder, mode] :
         {std::pair{runtime, fs::perms::owner_all}, std::pair{shared, fs::perms::all}}) {
        fs::create_directories(folder);
        fs::permissions(folder, mode);
    }
    const struct {
        const char* name;
        const char* runtimeDir;
        fs::path expected;
    } cases[] = {
        {"the session's private folder", runtime.c_str(), runtime / "kw"},
        {"no session folder", nullptr, cache / "Ostvarra" / "run" / "kw"},
        {"a session folder others can enter", shared.c_str(), cache / "Ostvarra" / "run" / "kw"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        WithEnvironment(
            {{"XDG_RUNTIME_DIR", c.runtimeDir}, {"XDG_CACHE_HOME", cache.c_str()}},
            [&] { EXPECT_EQ(InstanceChannel::PathFor("kw").toStdString(), c.expected.string()); });
        struct stat st {};
        ASSERT_EQ(::stat(c.expected.parent_path().c_str(), &st), 0);
        EXPECT_EQ(st.st_mode & 0777, 0700u);
    }
}

}  // namespace
}  // namespace kw::qt
