// The engine's questions during a call: which box or dialog shows, with which words, and what
// goes back to the engine in the by-reference argument.
#include <gtest/gtest.h>

#include <functional>

#include "client/ui/dialer/engine/frm_get_user_info.h"
#include "client/ui/dialer/engine/frm_get_user_input.h"
#include "client/ui/dialer/engine/frm_isp_login.h"
#include "client/ui/dialer/engine/frm_login.h"
#include "program_fixture.h"

namespace kw::dialer::testing {
namespace {

using forms::mb::kResultCancel;
using forms::mb::kResultNo;
using forms::mb::kResultOk;
using forms::mb::kResultTimeout;
using forms::mb::kResultYes;

const char* const kRefused = "Bluewave refused your login";

class PromptsTest : public ProgramTest {
  protected:
    void SetUp() override {
        ProgramTest::SetUp();
        StoreUser("anna", "secret");
        ScriptLists();
        StartIdle();
    }
    void SetCountry(float code) {
        auto country = std::make_shared<CountryInfo>();
        country->set_code(code);
        app->CurrentCountry = country;
    }
    // The user answers the next modal dialog of that kind.
    template <class Dialog>
    void WhenAsked(const char* name, std::function<void(Dialog&)> user) {
        platform.AnswerNextModal(name,
                                 [user](forms::Form& form) { user(static_cast<Dialog&>(form)); });
    }
};

TEST_F(PromptsTest, IspLoginAnswersNameCaretPasswordOrNothingOnCancel) {
    WhenAsked<frmISPLogin>("frmISPLogin", [](frmISPLogin& dialog) {
        EXPECT_EQ(dialog.txtTitle.Caption(), kRefused);
        EXPECT_EQ(dialog.txtUserName.Text(), "joe");
        EXPECT_TRUE(dialog.txtPassword.HasFocus()) << "a name is there: the password is asked";
        dialog.txtPassword.UserSetText("p4ss");
        dialog.cmdOK.UserClick();
    });
    EXPECT_EQ(engine->RaiseGetUsernamePassword(kRefused, "joe"), "joe^p4ss");
    EXPECT_EQ(app->Form<frmISPLogin>().txtPassword.Text(), "") << "nothing lingers";
    WhenAsked<frmISPLogin>("frmISPLogin", [](frmISPLogin& d) { d.cmdCancel.UserClick(); });
    EXPECT_EQ(engine->RaiseGetUsernamePassword(kRefused, "joe"), "");
}

TEST_F(PromptsTest, YesNoQuestionAnswersTrueOnlyForYes) {
    platform.AnswerNextBox(kResultYes);
    EXPECT_TRUE(engine->RaiseGetUserYesNo("Use the backup tunnel server?"));
    EXPECT_EQ(std::tie(platform.Boxes().back().caption, platform.Boxes().back().flags),
              std::tuple("Ostvarra Prescriber", 0x10004));
    platform.AnswerNextBox(kResultNo);
    EXPECT_FALSE(engine->RaiseGetUserYesNo("Use the backup tunnel server?", true));
}

TEST_F(PromptsTest, ChoiceAnswersTheRowChosenOrNothingOnCancel) {
    WhenAsked<frmGetUserInfo>("frmGetUserInfo", [](frmGetUserInfo& dialog) {
        EXPECT_EQ(dialog.lblPrompt.Caption(), "Choose a tunnel server");
        EXPECT_EQ(dialog.lbChoices.ListIndex(), 0) << "the first row is preselected";
        dialog.btnOK.UserClick();
    });
    EXPECT_EQ(engine->RaiseGetUserInfo("Choose a tunnel server", NameList({"east", "west"})),
              "east");
    WhenAsked<frmGetUserInfo>("frmGetUserInfo", [](frmGetUserInfo& d) { d.btnCancel.UserClick(); });
    EXPECT_EQ(engine->RaiseGetUserInfo("Choose", NameList({"a", "b"}), "stale"), "");
}

TEST_F(PromptsTest, LineOfInputAnswersTheTextTypedOrNothingOnCancel) {
    WhenAsked<frmGetUserInput>("frmGetUserInput", [](frmGetUserInput& dialog) {
        EXPECT_EQ(dialog.txtInput.Text(), "000000");
        dialog.txtInput.UserSetText("482913");
        dialog.btnOK.UserClick();
    });
    EXPECT_EQ(engine->RaiseGetUserInput("Passcode from your token", "000000"), "482913");
    WhenAsked<frmGetUserInput>("frmGetUserInput",
                               [](frmGetUserInput& d) { d.btnCancel.UserClick(); });
    EXPECT_EQ(engine->RaiseGetUserInput("Passcode", "typed", "stale"), "");
}

TEST_F(PromptsTest, DebugTextShowsInAnInformationBox) {
    platform.AnswerNextBox(kResultOk);
    engine->RaiseDravDebug("trace: LCP up");
    EXPECT_EQ(platform.Boxes().back().text, "trace: LCP up");
    EXPECT_EQ(platform.Boxes().back().flags, 65600);
}

// A box or a modal form of the program already open: the engine gets a placeholder and no login
// is stacked on it.
TEST_F(PromptsTest, IspLoginWhileABoxOrTheVpnLoginIsUpAnswersAPlaceholderAndShowsNothing) {
    std::vector<std::string> answers;
    auto prompt = [&] { answers.push_back(engine->RaiseGetUsernamePassword(kRefused, "joe")); };
    for (int box = 0; box < 2; ++box) {
        platform.AnswerNextBox([&](const headless::BoxRecord&) {
            prompt();
            return kResultOk;
        });
    }
    engine->RaiseGetUserOk("Your tunnel server is busy");
    engine->RaiseGetUserYesNo("Use compression?");
    WhenAsked<frmLogin>("frmLogin", [&](frmLogin& login) {
        prompt();
        login.Hide();
    });
    app->Form<frmLogin>().Show(forms::kModal);
    EXPECT_EQ(answers, std::vector<std::string>(3, "joe^qqq"));
    EXPECT_EQ(platform.ModalsShown(), std::vector<std::string>{"frmLogin"});
}

// Centred on the main window where it stands at each prompt; a place left of the screen is
// mirrored to the right.
TEST_F(PromptsTest, IspLoginComesUpCentredOnTheMainWindow) {
    struct Place {
        int left, top, width, height;
    };
    MainWin& win = Win();
    auto shownAt = [&](int left, int top) {
        win.Move(left, top);
        Place place{};
        WhenAsked<frmISPLogin>("frmISPLogin", [&](frmISPLogin& dialog) {
            place = {dialog.Left(), dialog.Top(), dialog.Width(), dialog.Height()};
            dialog.cmdCancel.UserClick();
        });
        engine->RaiseGetUsernamePassword(kRefused, "joe");
        return place;
    };
    Place at = shownAt(300, 100);
    EXPECT_EQ(at.left, 300 + win.Width() / 2 - at.width / 2);
    EXPECT_EQ(at.top, 100 + win.Height() / 2 - at.height / 2);
    at = shownAt(-win.Width(), 200);
    EXPECT_EQ(at.left, win.Width() / 2 + at.width / 2);
    EXPECT_EQ(at.top, 200 + win.Height() / 2 - at.height / 2);
}

// A note nobody answers closes itself; three asterisks make it the message of the day.
TEST_F(PromptsTest, ANoteClosesItselfAfterTheTimeItsAsterisksSay) {
    for (const auto& [sent, shown, caption, ms] :
         {std::tuple{"***Welcome back.", "Welcome back.", "Message of the Day", 30000},
          {"**Line quality is poor", "**Line quality is poor", "Ostvarra Prescriber", 60000}}) {
        SCOPED_TRACE(sent);
        platform.AnswerNextBox(kResultTimeout);  // nobody presses OK
        const std::int64_t shownAt = platform.Now();
        engine->RaiseGetUserOk(sent);
        const auto& box = platform.Boxes().back();
        EXPECT_EQ(std::tie(box.text, box.caption, box.flags, box.result),
                  std::tuple(shown, caption, 0x10000, kResultOk));
        EXPECT_EQ(platform.Now() - shownAt, ms);
    }
}

TEST_F(PromptsTest, ANoteAnsweredAtOnceLeavesNoTimerBehind) {
    const int timers = platform.LiveTimerCount();
    platform.AnswerNextBox(kResultOk);
    engine->RaiseGetUserOk("***Hello");
    EXPECT_EQ(platform.LiveTimerCount(), timers);
    platform.Advance(60000);
    EXPECT_EQ(platform.Boxes().size(), 1u);
}

TEST_F(PromptsTest, NowIsTakenInTheUnitedStatesAndCancelAnswersNever) {
    SetCountry(1);
    for (const auto& [pressed, answer] : {std::pair{kResultYes, "y"}, {kResultCancel, "n"}}) {
        platform.AnswerNextBox(pressed);
        EXPECT_EQ(engine->RaiseGetUserNowLaterNever("Fetch your files from home now?"), answer);
    }
}

TEST_F(PromptsTest, NowIsRefusedOutsideTheUnitedStatesUntilLaterOrNever) {
    SetCountry(44);
    for (const int pressed : {kResultYes, kResultOk, kResultYes, kResultOk, kResultNo}) {
        platform.AnswerNextBox(pressed);  // Now, refused, Now again, refused again, Later
    }
    EXPECT_EQ(engine->RaiseGetUserNowLaterNever("Fetch your files from home now?"), "l");
    const auto& boxes = platform.Boxes();
    ASSERT_EQ(boxes.size(), 5u);
    EXPECT_EQ(boxes[0].buttonLabels, (std::vector<std::string>{"N&ow", "&Later", "&Never"}));
    EXPECT_EQ(boxes[0].flags, 0x10003);
    EXPECT_EQ(boxes[1].text,
              "The call home feature is currently only available when dialing from within the "
              "United States. Please select either Later or Never.");
    EXPECT_TRUE(boxes[2].buttonLabels.empty()) << "a box shown again keeps the standard labels";
}

// The dialog's index is 16 bits: the last choice it can address is answered as itself, and a
// longer list is refused before anyone is asked, never answered with another choice.
TEST_F(PromptsTest, ChoiceListsBeyondTheDialogsIndexAreRefused) {
    int asked = 0;
    platform.AnswerModals("frmGetUserInfo", [&](forms::Form& form) {
        ++asked;
        auto& dialog = static_cast<frmGetUserInfo&>(form);
        dialog.lbChoices.UserSelect(dialog.lbChoices.ListCount() - 1);
        dialog.btnOK.UserClick();
    });
    for (const auto& [count, refused] : {std::pair{32768, false}, {32769, true}, {65540, true}}) {
        std::vector<std::string> names(static_cast<std::size_t>(count), "vpn");
        names.back() = "the last";
        const int before = asked;
        try {
            const std::string answer = engine->RaiseGetUserInfo("Choose", NameList(names));
            EXPECT_FALSE(refused) << count << " choices answered " << answer;
            EXPECT_EQ(answer, names.back());
        } catch (const automation::Failure& f) {
            EXPECT_TRUE(refused) << count << " choices: " << f.what();
            EXPECT_EQ(f.Number(), automation::err::kOverflow);
            EXPECT_EQ(asked, before) << "asked to choose from a list that cannot be answered";
        }
    }
}

// The two login dialogs accept different pairs (user, password, accepted) and refuse them under
// different captions.
using LoginCase = std::tuple<std::string, std::string, bool>;

template <class Dialog>
void CheckLoginTable(headless::HeadlessPlatform& platform, Dialog& login,
                     const std::vector<LoginCase>& cases, const std::string& refusalCaption) {
    platform.AnswerBoxes([](const headless::BoxRecord&) { return kResultOk; });
    for (const auto& [user, password, accepted] : cases) {
        SCOPED_TRACE(user + "/" + password);
        login.LoginAccepted = false;
        platform.ClearBoxes();
        login.Show();
        login.txtUserName.SetText(user);
        login.txtPassword.SetText(password);
        login.cmdOK.UserClick();
        EXPECT_EQ(login.LoginAccepted, accepted);
        EXPECT_EQ(login.Visible(), !accepted) << "a refused entry leaves the dialog open";
        if (!accepted) {
            ASSERT_EQ(platform.Boxes().size(), 1u);
            const auto& box = platform.Boxes()[0];
            EXPECT_EQ(std::tie(box.text, box.caption, box.flags),
                      std::tuple("Invalid User Name, try again!", refusalCaption, 0x10000));
            EXPECT_TRUE(login.txtUserName.HasFocus());
        }
        login.Hide();
    }
}

TEST_F(PromptsTest, VpnLoginAcceptsAnyNameAndRefusesAnEmptyOneCaptionedLogin) {
    CheckLoginTable(platform, app->Form<frmLogin>(),
                    {{"anna", "pw", true}, {"anna", "", true}, {"", "", false}, {"", "pw", false}},
                    "Login");
    EXPECT_EQ(app->UserName, "anna") << "the accepted pair is taken";
    EXPECT_EQ(app->Password, "");
}

TEST_F(PromptsTest, IspLoginRefusesOnlyAPasswordWithoutANameCaptionedKestrelway) {
    CheckLoginTable(platform, app->Form<frmISPLogin>(),
                    {{"joe", "pw", true}, {"joe", "", true}, {"", "", true}, {"", "pw", false}},
                    "Kestrelway");
}

}  // namespace
}  // namespace kw::dialer::testing
