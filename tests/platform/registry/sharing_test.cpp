// The hives on disk: durability, damage, and two processes writing one hive.

#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <random>
#include <set>

#include "platform/registry/hive_text.h"
#include "platform/registry/registry_fixture.h"

namespace kw::registry::testing {
namespace {

constexpr const char* kUserKey = "Software\\Ostvarra\\Kestrelway";

// Runs `body` in a child process and gives its exit status; the child never returns into the
// test runner.
template <typename Body>
int InChild(Body body) {
    std::fflush(nullptr);
    const pid_t pid = ::fork();
    if (pid == 0) ::_exit(body());
    int status = 0;
    ::waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

HKEY OpenUserKey() {
    HKEY key = nullptr;
    RegCreateKeyExA(HKEY_CURRENT_USER, kUserKey, 0, "0", 0, KEY_ALL_ACCESS, nullptr, &key,
                    nullptr);
    return key;
}

std::string Name(const char* prefix, int i) { return prefix + std::to_string(i); }

// Captures what the store prints on standard error while it lives.
class StderrCapture {
public:
    explicit StderrCapture(const std::string& file) : file_(file) {
        std::fflush(stderr);
        saved_ = ::dup(2);
        FILE* f = std::fopen(file.c_str(), "w");
        ::dup2(::fileno(f), 2);
        std::fclose(f);
    }
    ~StderrCapture() { Restore(); }
    std::string Finish() {
        Restore();
        std::FILE* f = std::fopen(file_.c_str(), "r");
        std::string out;
        char buf[512];
        while (f && std::fgets(buf, sizeof buf, f)) out += buf;
        if (f) std::fclose(f);
        return out;
    }

private:
    void Restore() {
        if (saved_ < 0) return;
        std::fflush(stderr);
        ::dup2(saved_, 2);
        ::close(saved_);
        saved_ = -1;
    }
    std::string file_;
    int saved_ = -1;
};

using Durability = RegistryTest;

TEST_F(Durability, AWriteIsInTheFileWhenTheCallReturns) {
    HKEY key = OpenUserKey();
    for (int i = 0; i < 5; ++i) {
        ASSERT_EQ(SetDword(key, Name("v", i).c_str(), static_cast<DWORD>(i)), ERROR_SUCCESS);
        auto doc = text::Parse(ReadFile(userHive_));
        ASSERT_TRUE(doc);
        const text::Key* section = text::FindKey(*doc, kUserKey);
        ASSERT_NE(section, nullptr);
        EXPECT_NE(text::FindValue(*section, Name("v", i)), nullptr) << i;
    }
    std::set<std::string> files;
    for (auto& f : FilesInDir()) files.insert(f);
    EXPECT_EQ(files, (std::set<std::string>{"user.reg", "user.reg.lock"}))
        << "no temporary file is left behind";
    EXPECT_EQ(Mode(userHive_ + ".lock"), 0600u);
    RegCloseKey(key);
}

TEST_F(Durability, AFailedWriteReportsAndChangesNothing) {
    HKEY key = OpenUserKey();
    ASSERT_EQ(SetString(key, "UserName", "ann"), ERROR_SUCCESS);
    const std::string before = ReadFile(userHive_);
    // A folder where the temporary file should go makes the write fail, even for root.
    ASSERT_EQ(::mkdir((userHive_ + ".tmp").c_str(), 0700), 0);
    EXPECT_EQ(SetString(key, "UserName", "bob"), ERROR_REGISTRY_IO_FAILED);
    EXPECT_EQ(QueryString(key, "UserName"), "ann");
    EXPECT_EQ(ReadFile(userHive_), before);
    ASSERT_EQ(::rmdir((userHive_ + ".tmp").c_str()), 0);
    EXPECT_EQ(SetString(key, "UserName", "bob"), ERROR_SUCCESS);
    EXPECT_EQ(QueryString(key, "UserName"), "bob");
    RegCloseKey(key);
}

using DamagedFile = RegistryTest;

TEST_F(DamagedFile, GarbageIsSetAsideOnceAndTheStoreCarriesOn) {
    const std::string garbage = "\x89PNG\r\n\x1a\n this is not a hive\n";
    WriteFile(userHive_, garbage);

    StderrCapture capture(dir_ + "/stderr.txt");
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, kUserKey, 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND);
    key = OpenUserKey();
    ASSERT_NE(key, nullptr);
    EXPECT_FALSE(Query(key, "UserName"));
    ASSERT_EQ(SetString(key, "UserName", "ann"), ERROR_SUCCESS);
    EXPECT_EQ(QueryString(key, "UserName"), "ann");
    const std::string printed = capture.Finish();

    std::vector<std::string> aside;
    for (auto& f : FilesInDir()) {
        if (f.rfind("user.reg.corrupt-", 0) == 0) aside.push_back(f);
    }
    ASSERT_EQ(aside.size(), 1u);
    EXPECT_EQ(aside[0].size(), std::string("user.reg.corrupt-20261122T193000").size()) << aside[0];
    EXPECT_EQ(ReadFile(dir_ + "/" + aside[0]), garbage) << "the damaged file is kept as it was";
    EXPECT_NE(printed.find(aside[0]), std::string::npos) << printed;
    EXPECT_EQ(std::count(printed.begin(), printed.end(), '\n'), 1) << printed;
    EXPECT_TRUE(text::Parse(ReadFile(userHive_))) << "the new hive is a proper one";
    RegCloseKey(key);
}

TEST_F(DamagedFile, ATruncatedHiveIsNotWrittenOver) {
    HKEY key = OpenUserKey();
    std::vector<BYTE> blob(300, 0xab);
    ASSERT_EQ(SetBytes(key, "Blob", REG_BINARY, blob), ERROR_SUCCESS);
    ASSERT_EQ(SetString(key, "Password", "secret"), ERROR_SUCCESS);
    const std::string whole = ReadFile(userHive_);
    const std::string cut = whole.substr(0, whole.find(",\\\n") + 3);  // inside the hex data
    WriteFile(userHive_, cut);

    StderrCapture capture(dir_ + "/stderr.txt");
    ASSERT_EQ(SetString(key, "UserName", "ann"), ERROR_KEY_DELETED)
        << "the key went with the damaged file";
    key = OpenUserKey();
    ASSERT_EQ(SetString(key, "UserName", "ann"), ERROR_SUCCESS);
    capture.Finish();
    bool found = false;
    for (auto& f : FilesInDir()) {
        if (f.rfind("user.reg.corrupt-", 0) == 0) {
            EXPECT_EQ(ReadFile(dir_ + "/" + f), cut);
            found = true;
        }
    }
    EXPECT_TRUE(found);
    RegCloseKey(key);
}

using TwoProcesses = RegistryTest;

TEST_F(TwoProcesses, EachSeesTheOthersWritesAndNeitherLosesItsOwn) {
    HKEY key = OpenUserKey();
    ASSERT_EQ(SetString(key, "UserName", "from parent"), ERROR_SUCCESS);
    ASSERT_EQ(QueryString(key, "UserName"), "from parent");  // this process now holds the hive

    const int child = InChild([] {
        HKEY k = OpenUserKey();
        if (QueryString(k, "UserName") != "from parent") return 10;
        if (SetString(k, "Password", "from child") != ERROR_SUCCESS) return 11;
        return 0;
    });
    ASSERT_EQ(child, 0);
    EXPECT_EQ(QueryString(key, "Password"), "from child") << "a read sees a finished write";
    ASSERT_EQ(SetDword(key, "CallingCard", 4), ERROR_SUCCESS);

    Restart();
    EXPECT_EQ(QueryString(key, "UserName"), "from parent");
    EXPECT_EQ(QueryString(key, "Password"), "from child");
    EXPECT_TRUE(Query(key, "CallingCard"));
    RegCloseKey(key);
}

TEST_F(TwoProcesses, ConcurrentWritersLoseNothing) {
    constexpr int kEach = 2000;
    HKEY key = OpenUserKey();
    ASSERT_EQ(SetString(key, "Before", "x"), ERROR_SUCCESS);

    auto writer = [&](const char* prefix) {
        HKEY k = OpenUserKey();
        for (int i = 0; i < kEach; ++i) {
            if (SetDword(k, Name(prefix, i).c_str(), static_cast<DWORD>(i)) != ERROR_SUCCESS) {
                return 1;
            }
        }
        return 0;
    };
    const auto started = std::chrono::steady_clock::now();
    std::fflush(nullptr);
    const pid_t a = ::fork();
    if (a == 0) ::_exit(writer("client"));
    const pid_t b = ::fork();
    if (b == 0) ::_exit(writer("engine"));
    int statusA = 0;
    int statusB = 0;
    ::waitpid(a, &statusA, 0);
    ::waitpid(b, &statusB, 0);
    const auto seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
    ASSERT_TRUE(WIFEXITED(statusA) && WEXITSTATUS(statusA) == 0);
    ASSERT_TRUE(WIFEXITED(statusB) && WEXITSTATUS(statusB) == 0);
    std::printf("2 x %d writes in %.1f s\n", kEach, seconds);

    Restart();
    int missing = 0;
    for (const char* prefix : {"client", "engine"}) {
        for (int i = 0; i < kEach; ++i) {
            auto v = Query(key, Name(prefix, i).c_str());
            if (!v || v->bytes != Bytes({i & 0xff, (i >> 8) & 0xff, 0, 0})) ++missing;
        }
    }
    EXPECT_EQ(missing, 0);
    EXPECT_EQ(QueryString(key, "Before"), "x");
    RegCloseKey(key);
}

TEST_F(TwoProcesses, AWriterKilledAtAnyMomentLeavesEveryReturnedWrite) {
    constexpr int kRounds = 12;
    std::mt19937 random(20261122);
    HKEY key = OpenUserKey();
    ASSERT_EQ(SetString(key, "Padding", std::string(2000, 'p')), ERROR_SUCCESS);
    std::vector<std::string> confirmed;

    for (int round = 0; round < kRounds; ++round) {
        int fds[2];
        ASSERT_EQ(::pipe(fds), 0);
        std::fflush(nullptr);
        const pid_t pid = ::fork();
        if (pid == 0) {
            ::close(fds[0]);
            HKEY k = OpenUserKey();
            for (int i = 0;; ++i) {
                const std::string name = "r" + std::to_string(round) + "_" + std::to_string(i);
                if (SetString(k, name.c_str(), name) != ERROR_SUCCESS) ::_exit(1);
                const std::string line = name + "\n";
                if (::write(fds[1], line.data(), line.size()) < 0) ::_exit(2);
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
        ssize_t n = 0;
        while ((n = ::read(fds[0], buf, sizeof buf)) > 0) {
            reported.append(buf, static_cast<std::size_t>(n));
        }
        ::close(fds[0]);
        std::size_t start = 0;
        while (start < reported.size()) {
            const std::size_t end = reported.find('\n', start);
            if (end == std::string::npos) break;  // a report cut off by the kill
            confirmed.push_back(reported.substr(start, end - start));
            start = end + 1;
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
    std::printf("%zu confirmed writes survived %d kills\n", confirmed.size(), kRounds);
    EXPECT_GT(confirmed.size(), static_cast<std::size_t>(kRounds));
    RegCloseKey(key);
}

}  // namespace
}  // namespace kw::registry::testing
