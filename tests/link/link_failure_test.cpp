// The link's failures reach the program as the numbers of a lost server, and end it cleanly.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QCoreApplication>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/spine/program_fixture.h"
#include "link/bus_dravlink.h"
#include "link/engine_fixture.h"
#include "link/link_errors.h"
#include "link/private_bus.h"
#include "link/wire.h"

namespace kw::link::testing {
namespace {

using automation::Failure;

const std::string kSeriousError =
    "A serious application error has occurred.  Please call Technical Support for assistance.";

int FailureNumberOf(const std::function<void()>& attempt) {
    try {
        attempt();
    } catch (const Failure& failure) {
        return failure.Number();
    }
    return 0;
}

std::string Bytes(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::stringstream all;
    all << in.rdbuf();
    return all.str();
}

TEST_F(EngineProcessTest, NoEngineInstalledIsServerUnavailable) {
    bus = std::make_unique<PrivateBus>(dir,
                                       PrivateBus::Setup{.engineInstalled = false, .scenario = {}});
    std::string description;
    try {
        BusDravlink unreachable(nullptr, bus->Address());
        ADD_FAILURE() << "an engine was reached";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.Number(), linkerr::kServerUnavailable);
        description = failure.Description();
    }
    EXPECT_NE(description.find(kServiceName), std::string::npos) << description;
}

TEST_F(EngineProcessTest, NoBusAtAllIsServerUnavailableAndSaysSo) {
    try {
        BusDravlink unreachable(nullptr,
                                QString::fromStdString("unix:path=" + (dir / "none").string()));
        ADD_FAILURE() << "a bus was reached";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.Number(), linkerr::kServerUnavailable);
        EXPECT_NE(failure.Description().find("No D-Bus session bus"), std::string::npos);
    }
}

TEST_F(EngineProcessTest, AnEngineThatWentAwayIsObjectDisconnectedAndNotStartedAgain) {
    Start();
    const pid_t pid = bus->EnginePid();
    ASSERT_GT(pid, 0);
    ::kill(pid, SIGKILL);
    ASSERT_TRUE(RunUntil([&] { return bus->EnginePid() == 0; }));
    std::string value;
    EXPECT_EQ(
        FailureNumberOf([&] { engine->GetLocationProperty("Home Office", "AreaCode", value); }),
        linkerr::kObjectDisconnected);
    EXPECT_EQ(bus->EnginePid(), 0) << "a fresh engine would have lost the logon";
}

TEST_F(EngineProcessTest, KestrelwayInstallMakesTheBusStartTheEngine) {
    // The install step writes the service file where the session bus looks for it.
    ::setenv("XDG_DATA_HOME", (dir / "data").c_str(), 1);
    ::setenv("XDG_CONFIG_HOME", (dir / "config").c_str(), 1);
    const std::string install = std::string(KW_INSTALL) + " > /dev/null";
    ASSERT_EQ(std::system(install.c_str()), 0);
    EXPECT_TRUE(std::filesystem::exists(dir / "data" / "dbus-1" / "services" /
                                        (std::string(kServiceName) + ".service")));
    bus = std::make_unique<PrivateBus>(
        dir, PrivateBus::Setup{
                 .engineInstalled = false, .standardServiceFolders = true, .scenario = {}});
    EXPECT_EQ(bus->EnginePid(), 0);
    BusDravlink client(nullptr, bus->Address());
    EXPECT_GT(bus->EnginePid(), 0);
}

// The whole program on the headless platform, its engine dravlinkd on a private bus.
class KilledEngineTest : public dialer::testing::ProgramTest {
  protected:
    void SetUp() override {
        ProgramTest::SetUp();
        bus = std::make_unique<PrivateBus>(dir / "session", PrivateBus::Setup{});
        UseEngine([this](const dialer::EngineContext& context) {
            return std::make_shared<BusDravlink>(&context.platform, bus->Address());
        });
    }
    void TearDown() override {
        app.reset();
        bus.reset();
        ProgramTest::TearDown();
    }
    // Real time for the engine, virtual time for the program's own timers.
    bool Until(const std::function<bool()>& done) {
        return kw::link::testing::RunUntil([&] {
            platform.Advance(20);
            return done();
        });
    }
    std::unique_ptr<PrivateBus> bus;
};

TEST_F(KilledEngineTest, KilledInTheMiddleOfACallItEndsTheProgramWithTheFatalBox) {
    StoreUser("anna", "secret");
    ASSERT_TRUE(Start());
    dialer::MainWin& win = Win();
    ASSERT_TRUE(Until([&] { return !win.IsGettingDialList; })) << "the dial list arrives";
    // The lab asks nothing during its call.
    for (int i = 0; i < win.cmboTo.ListCount(); ++i) {
        if (win.cmboTo.List(i) == "Engineering Lab") {
            win.cmboTo.UserSelect(i);
        }
    }
    ASSERT_EQ(win.cmboTo.Text(), "Engineering Lab");
    ASSERT_TRUE(Until([&] { return !win.IsGettingDialList; }));
    win.btnConnect.UserClick();
    ASSERT_TRUE(Until([&] { return win.IsConnected; })) << win.lblStatus.Caption();
    const std::string user = Bytes(dir / "user.reg");
    const std::string machine = Bytes(dir / "system.reg");
    ASSERT_FALSE(user.empty());

    const pid_t pid = bus->EnginePid();
    ASSERT_GT(pid, 0);
    ::kill(pid, SIGKILL);
    ASSERT_TRUE(kw::link::testing::RunUntil([&] { return bus->EnginePid() == 0; }));
    platform.ClearBoxes();
    platform.AnswerNextBox(forms::mb::kResultOk);
    EXPECT_THROW(win.btnConnect.UserClick(), headless::ProcessEnded);

    ASSERT_EQ(platform.Boxes().size(), 1u);
    EXPECT_EQ(platform.Boxes()[0].text, kSeriousError);
    EXPECT_EQ(platform.Boxes()[0].caption, "Kestrelway");
    EXPECT_EQ(platform.Boxes()[0].flags, forms::mb::kCritical | forms::mb::kSystemModal);
    EXPECT_TRUE(platform.EndedWith().has_value()) << "the process ended";
    EXPECT_TRUE(win.IsLoaded()) << "no close step: the forms stay as they were";
    EXPECT_EQ(Bytes(dir / "user.reg"), user) << "the user's settings are untouched";
    EXPECT_EQ(Bytes(dir / "system.reg"), machine) << "the machine settings are untouched";
}

}  // namespace
}  // namespace kw::link::testing
