// The link's failures reach the program as the numbers of a lost server, and end it cleanly.
#include <signal.h>
#include <unistd.h>

#include <cstdlib>

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

// With no engine installed, or no bus at all, the client hears that the server is unavailable,
// and why.
TEST_F(EngineProcessTest, AnEngineOutOfReachIsServerUnavailableAndSaysWhy) {
    bus = std::make_unique<PrivateBus>(dir,
                                       PrivateBus::Setup{.engineInstalled = false, .scenario = {}});
    const struct {
        const char* where;
        QString address;
        std::string says;
    } cases[] = {{"no engine installed", bus->Address(), kServiceName},
                 {"no bus at all", QString::fromStdString("unix:path=" + (dir / "none").string()),
                  "No D-Bus session bus"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.where);
        try {
            BusDravlink unreachable(nullptr, c.address);
            ADD_FAILURE() << "an engine was reached";
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.Number(), linkerr::kServerUnavailable);
            EXPECT_NE(failure.Description().find(c.says), std::string::npos)
                << failure.Description();
        }
    }
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
    const std::string user = ReadFile(dir / "user.reg");
    const std::string machine = ReadFile(dir / "system.reg");
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
    EXPECT_EQ(ReadFile(dir / "user.reg"), user) << "the user's settings are untouched";
    EXPECT_EQ(ReadFile(dir / "system.reg"), machine) << "the machine settings are untouched";
    EXPECT_EQ(bus->EnginePid(), 0) << "a fresh engine would have lost the logon";
}

}  // namespace
}  // namespace kw::link::testing
