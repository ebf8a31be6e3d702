// Passwords at rest: nothing the engine or the client's settings hold gives them back without the
// user's key, older values move to the secrets, and every file is the user's alone.
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <iterator>

#include "dravlink/secrets.h"
#include "dravlink/simulator_fixture.h"

namespace dravlink::testing {
namespace {

namespace fs = std::filesystem;
using kw::automation::CBool;

constexpr const char* kPassword = "s3cret pass";
// kPassword as older engines stored it.
constexpr const char* kOldForm = "dv1:37410204091d4e1b4c3c00";

std::string Contents(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(in)), {});
}

class SecretsTest : public SimulatorTest {
  protected:
    // The user's password and a login to an ISP, both kPassword, saved as the client saves them.
    void SavePasswords() {
        std::string user = "ana";
        std::string password = kPassword;
        std::string isp = "Bluewave Online";
        ASSERT_TRUE(CBool(engine_->SaveUser(user, password, "")));
        ASSERT_TRUE(CBool(engine_->SetISPLogin(user, isp, "ana.bw", kPassword)));
    }
    // The "Password" value as the settings file holds it.
    std::string StoredPassword() {
        const std::string text = Contents(dir_ / "user.reg");
        const auto at = text.find("\"Password\"=\"");
        return at == std::string::npos ? ""
                                       : text.substr(at + 12, text.find('"', at + 12) - at - 12);
    }
    Login EnginesUser() {
        std::string user, password, third;
        EXPECT_TRUE(CBool(engine_->GetUser(user, password, third)));
        return {user, password};
    }
    // Every file under the test's folder (settings and engine data) that holds `text`.
    std::vector<std::string> FilesHolding(const std::string& text) {
        std::vector<std::string> found;
        for (const auto& entry : fs::recursive_directory_iterator(dir_)) {
            if (entry.is_regular_file() && Contents(entry.path()).find(text) != std::string::npos)
                found.push_back(entry.path().string());
        }
        return found;
    }
};

TEST_F(SecretsTest, NoFileGivesThePasswordBackWithoutTheUsersKey) {
    Start();
    SavePasswords();
    const std::string reference = StoredPassword();
    EXPECT_TRUE(Secrets::IsReference(reference)) << reference;
    for (const std::string& form : {std::string(kPassword), std::string(kOldForm).substr(4)}) {
        EXPECT_EQ(FilesHolding(form), std::vector<std::string>{}) << form;
    }
    // The client hands the reference back to Logon; a fresh engine reveals both passwords.
    Start("", "ana", reference);
    EXPECT_EQ(EnginesUser().second, kPassword);
    EXPECT_EQ(IspLogin("ana", "Bluewave Online"), (Login{"ana.bw", kPassword}));
    fs::remove(dataDir_ / "secrets" / "key");
    Start();
    EXPECT_EQ(EnginesUser().second, "") << "without the key the reference opens nothing";
}

TEST_F(SecretsTest, PasswordsStoredTheOldWayBecomeReferencesAtTheNextStart) {
    Start();
    Stop();
    StoreSetting("UserName", "ana");
    StoreSetting("Password", kOldForm);
    std::ofstream(dataDir_ / "isplogins.ini", std::ios::trunc)
        << "[ana|Bluewave Online]\nUser = ana.bw\nPassword = " << kOldForm << "\n";

    Start("", "guest", "guest");
    EXPECT_TRUE(Secrets::IsReference(StoredPassword())) << StoredPassword();
    EXPECT_EQ(FilesHolding(std::string(kOldForm).substr(4)), std::vector<std::string>{});
    EXPECT_EQ(FilesHolding("= guest\n"), std::vector<std::string>{}) << "the sample's account";
    EXPECT_EQ(EnginesUser(), (Login{"ana", kPassword}));
    EXPECT_EQ(IspLogin("ana", "Bluewave Online"), (Login{"ana.bw", kPassword}));
    std::string guest = "guest", typed = "guest";
    EXPECT_TRUE(CBool(engine_->Logon(guest, typed, ""))) << "the sealed account still checks";
}

TEST_F(SecretsTest, EveryFileOfTheEngineIsTheUsersAloneWhateverTheUmask) {
    const mode_t saved = ::umask(022);
    Start();
    SavePasswords();
    ::umask(saved);

    const auto mode = [](const fs::path& path) {
        return fs::status(path).permissions() & fs::perms::all;
    };
    int files = 0;
    for (const auto& entry : fs::recursive_directory_iterator(dataDir_)) {
        EXPECT_EQ(mode(entry), fs::perms(entry.is_directory() ? 0700 : 0600)) << entry.path();
        files += entry.is_regular_file() ? 1 : 0;
    }
    EXPECT_GE(files, 10) << "the sample's copies, the logins, the key and the sealed secrets";
    EXPECT_EQ(mode(dataDir_), fs::perms(0700));
}

TEST_F(SecretsTest, TwoProcessesSealingAtOnceLoseNoSecret) {
    // Each process makes the key if it is not there yet, and keeps secrets of its own, writing
    // down their references.
    const auto keep = [&](const std::string& who) {
        Secrets secrets(SealedFileSecrets(dir_ / "vault"));
        std::ofstream out(dir_ / who);
        for (int i = 0; i < 20; ++i) out << secrets.Keep(who + std::to_string(i)) << "\n";
    };
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        keep("child");
        ::_exit(0);
    }
    keep("parent");
    ASSERT_EQ(::waitpid(child, nullptr, 0), child);
    Secrets secrets(SealedFileSecrets(dir_ / "vault"));
    for (const std::string who : {"parent", "child"}) {
        std::ifstream in(dir_ / who);
        std::string reference;
        int i = 0;
        for (; std::getline(in, reference); ++i)
            EXPECT_EQ(secrets.Reveal(reference), who + std::to_string(i));
        EXPECT_EQ(i, 20) << who;
    }
}

}  // namespace
}  // namespace dravlink::testing
