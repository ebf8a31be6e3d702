// Failures reach the user in the program's own words: the engine's error events and the numbers
// of caught failures, with their boxes and what follows them.
#include <gtest/gtest.h>

#include "client/ui/dialer/locations/from_pullout.h"
#include "program_fixture.h"

namespace kw::dialer::testing {
namespace {

using automation::Failure;
using automation::Variant;
using headless::ProcessEnded;

constexpr int kWarning = 0x10030;
constexpr int kStop = 0x10010;
constexpr int kSystemStop = 4112;
const std::string kSerious =
    "A serious application error has occurred.  Please call Technical Support for assistance.";

// What a box says, under which caption and with which flags.
using Box = std::tuple<std::string, std::string, int>;

class ErrorsTest : public ProgramTest {
  protected:
    void SetUp() override {
        ProgramTest::SetUp();
        StoreUser("anna", "secret");
        ScriptLists();
        engine->Default("Connect", Variant(std::int32_t{7}));
        StartIdle();
        platform.AnswerBoxes([](const headless::BoxRecord&) { return forms::mb::kResultOk; });
    }
    Box LastBox() const {
        const auto& last = platform.Boxes().back();
        return {last.text, last.caption, last.flags};
    }
    std::string LastText() const { return platform.Boxes().back().text; }
};

TEST_F(ErrorsTest, EngineErrorCodesShowTheirTextsInAWarningBox) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"2000", "Unable to get entry type (ISP/Tunnel) from dial list."},
        {"2002", "There are no available ISP/POP phone numbers to dial."},
        {"2006", "There are no more ISP/POP phone numbers to dial."},
        {"2010",
         "Unable to create a tunnel to the destination network; the\nTunnel Server at the "
         "destination is unreachable.  Ask your\n network administrator to check the Tunnel Server "
         "and retry the connection later."},
        {"2011", "There is no Tunnel Server to connect to."},
        {"2012", "2012"},
        {"The modem is not answering", "The modem is not answering"},
    };
    for (const auto& [code, text] : cases) {
        engine->RaiseErrorEvent(code);
        EXPECT_EQ(LastBox(), Box(text, "Kestrelway", kWarning)) << code;
    }
    EXPECT_EQ(engine->CountOf("Disconnect"), 0) << "only 2008 changes any state";
}

TEST_F(ErrorsTest, InvalidNumberTearsTheCallDownThroughTheDisconnectBranch) {
    Win().btnConnect.UserClick();
    engine->RaiseProgressUpdate(103, "Dialing");
    engine->RaiseErrorEvent("2008");
    EXPECT_EQ(LastText(), "Attempted to dial an invalid number.");
    ASSERT_EQ(engine->CountOf("Disconnect"), 1);
    EXPECT_EQ(engine->CallsTo("Disconnect")[0].args[0].ToLong(), 7);
    EXPECT_FALSE(Win().IsConnected);
    EXPECT_FALSE(Win().imgPhoneDialing.Visible());
}

TEST_F(ErrorsTest, CaughtFailureNumbersGiveTheirOwnWordsWithoutACaption) {
    const std::vector<std::pair<int, std::string>> cases = {
        {1010, "Please log in"},
        {1012, "Kestrelway is still disconnecting\r\nPlease wait, then try again."},
        {1019,
         "Unable to connect\r\nPlease check to see if you have either a modem or VPN device "
         "install.\r\nPlease See release notes."},
        {2002, "Error On Connect"},
        {1013, " Error [1013] engine busy"},
        {1022, " Error [1022] engine busy"},
        {2001, " Error [2001] engine busy"},
    };
    for (const auto& [number, text] : cases) {
        Win().COMErrHandler(Failure(number, "engine busy"));
        EXPECT_EQ(LastBox(), Box(text, "", kWarning)) << number;
    }
}

TEST_F(ErrorsTest, BadFromNumberOpensTheFromPulloutUnlessItIsOpen) {
    Win().COMErrHandler(Failure(1020, "bad number"));
    EXPECT_EQ(LastText(),
              "Please enter a valid from phone number on the from pullout.\r\ni.e., area code, "
              "exchange, and number.");
    EXPECT_TRUE(app->Form<FromPullout>().Visible());
    app->Form<FromPullout>().Move(10, 10);
    Win().COMErrHandler(Failure(1020, "bad number"));
    EXPECT_TRUE(app->Form<FromPullout>().Visible());
    EXPECT_EQ(app->Form<FromPullout>().Left(), 10) << "an open pullout is left alone";
}

// These end the process at once: no Logoff, no unload, no second engine.
TEST_F(ErrorsTest, FatalFailuresEndTheProcessWithTheirBox) {
    const std::vector<std::pair<std::uint32_t, Box>> cases = {
        {1021, {"Licence expired", "", kStop}},
        {0x800706BFu,
         {"Error starting Kestrelway.  Please call Technical Support for assistance.", "Kestrelway",
          kSystemStop}},
        {0x80010108u, {kSerious, "Kestrelway", kSystemStop}},
        {0x800706BAu, {kSerious, "Kestrelway", kSystemStop}},
    };
    for (const auto& [number, box] : cases) {
        EXPECT_THROW(Win().COMErrHandler(Failure(static_cast<int>(number), "Licence expired")),
                     ProcessEnded);
        EXPECT_EQ(LastBox(), box) << number;
    }
    EXPECT_EQ(engine->CountOf("Logoff"), 0);
    EXPECT_TRUE(Win().IsLoaded());
    EXPECT_EQ(enginesMade, 1);
}

}  // namespace
}  // namespace kw::dialer::testing
