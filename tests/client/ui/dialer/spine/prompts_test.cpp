// The engine's questions during a call: which box or dialog shows, with which words, and what
// goes back to the engine in the by-reference argument.
#include <gtest/gtest.h>

#include <functional>

#include "client/ui/dialer/engine/frm_get_user_info.h"
#include "client/ui/dialer/engine/frm_get_user_input.h"
#include "client/ui/dialer/engine/frm_isp_login.h"
#include "client/ui/dialer/engine/frm_login.h"
#include "client/ui/dialer/side/frm_file_xfer.h"
#include "platform/automation/safe_array.h"
#include "program_fixture.h"

namespace kw::dialer::testing {
namespace {

using automation::Variant;
using forms::mb::kResultCancel;
using forms::mb::kResultNo;
using forms::mb::kResultOk;
using forms::mb::kResultTimeout;
using forms::mb::kResultYes;

class PromptsTest : public ProgramTest {
  protected:
    void SetUp() override {
        ProgramTest::SetUp();
        StoreUser("anna", "secret");
        ScriptLists();
    }
    void SetCountry(float code) {
        auto country = std::make_shared<CountryInfo>();
        country->set_code(code);
        app->CurrentCountry = country;
    }
};

TEST_F(PromptsTest, IspLoginWhileTheVpnLoginIsOpenAnswersAPlaceholderAndShowsNothing) {
    engine->Then("Logon", Variant(false));
    std::string answer;
    platform.AnswerNextModal("frmLogin", [&](forms::Form&) {
        answer = engine->RaiseGetUsernamePassword("Bluewave refused your login", "joe");
        app->Form<frmLogin>().cmdOK.UserClick();
    });
    ASSERT_TRUE(Start());
    EXPECT_EQ(answer, "joe^qqq");
    EXPECT_EQ(platform.ModalsShown(), (std::vector<std::string>{"frmLogin"}));
}

// A box of the program counts as an open dialog as much as a modal form does.
TEST_F(PromptsTest, IspLoginWhileABoxIsUpAnswersAPlaceholderAndShowsNothing) {
    const struct {
        const char* box;
        std::function<void()> raise;
    } boxes[] = {
        {"timed note", [this] { engine->RaiseGetUserOk("Your tunnel server is busy"); }},
        {"yes/no question", [this] { engine->RaiseGetUserYesNo("Use compression?"); }},
    };
    StartIdle();
    for (const auto& b : boxes) {
        SCOPED_TRACE(b.box);
        std::string answer;
        platform.AnswerNextBox([&](const headless::BoxRecord&) {
            answer = engine->RaiseGetUsernamePassword("Bluewave refused your login", "joe");
            return forms::mb::kResultOk;
        });
        b.raise();
        EXPECT_EQ(answer, "joe^qqq");
        EXPECT_TRUE(platform.ModalsShown().empty()) << "no login stacked on the box";
    }
}

TEST_F(PromptsTest, IspLoginAnswersNameCaretPasswordAndForgetsThePassword) {
    StartIdle();
    platform.AnswerNextModal("frmISPLogin", [&](forms::Form&) {
        frmISPLogin& dialog = app->Form<frmISPLogin>();
        EXPECT_EQ(dialog.txtTitle.Caption(), "Bluewave refused your login");
        EXPECT_EQ(dialog.txtUserName.Text(), "joe");
        EXPECT_TRUE(dialog.txtPassword.HasFocus()) << "a name is there: the password is asked";
        dialog.txtPassword.UserSetText("p4ss");
        dialog.cmdOK.UserClick();
    });
    EXPECT_EQ(engine->RaiseGetUsernamePassword("Bluewave refused your login", "joe"), "joe^p4ss");
    EXPECT_EQ(app->Form<frmISPLogin>().txtPassword.Text(), "") << "nothing lingers";
}

// Each prompt comes up centred on the main window where it stands then.
TEST_F(PromptsTest, IspLoginFollowsTheMainWindowFromOnePromptToTheNext) {
    StartIdle();
    std::vector<forms::Point> shownAt;
    auto answer = [&](forms::Form& form) {
        shownAt.push_back({form.Left(), form.Top()});
        app->Form<frmISPLogin>().cmdCancel.UserClick();
    };
    platform.AnswerNextModal("frmISPLogin", answer);
    engine->RaiseGetUsernamePassword("Bluewave refused your login", "joe");
    Win().Move(Win().Left() + 100, Win().Top() + 50);
    platform.AnswerNextModal("frmISPLogin", answer);
    engine->RaiseGetUsernamePassword("Bluewave refused your login", "joe");
    ASSERT_EQ(shownAt.size(), 2u);
    EXPECT_EQ(shownAt[1].x - shownAt[0].x, 100);
    EXPECT_EQ(shownAt[1].y - shownAt[0].y, 50);
}

TEST_F(PromptsTest, IspLoginAnswersNothingOnCancel) {
    StartIdle();
    platform.AnswerNextModal("frmISPLogin",
                             [&](forms::Form&) { app->Form<frmISPLogin>().cmdCancel.UserClick(); });
    EXPECT_EQ(engine->RaiseGetUsernamePassword("again", "joe"), "");
}

// A note nobody answers closes itself; three asterisks make it the message of the day.
TEST_F(PromptsTest, ANoteClosesItselfAfterTheTimeItsAsterisksSay) {
    const struct {
        const char* sent;
        const char* shown;
        const char* caption;
        std::int64_t ms;
    } cases[] = {
        {"***Welcome back, the network is yours.", "Welcome back, the network is yours.",
         "Message of the Day", 30000},
        {"**Line quality is poor", "**Line quality is poor", "Ostvarra Prescriber", 60000},
    };
    StartIdle();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.sent);
        platform.AnswerNextBox(kResultTimeout);  // nobody presses OK
        const std::int64_t shownAt = platform.Now();
        engine->RaiseGetUserOk(c.sent);
        const auto& box = platform.Boxes().back();
        EXPECT_EQ(box.text, c.shown);
        EXPECT_EQ(box.caption, c.caption);
        EXPECT_EQ(box.flags, 0x10000);
        EXPECT_EQ(box.result, kResultOk);
        EXPECT_EQ(platform.Now() - shownAt, c.ms);
    }
}

TEST_F(PromptsTest, ANoteAnsweredAtOnceLeavesNoTimerBehind) {
    StartIdle();
    const int timers = platform.LiveTimerCount();
    platform.AnswerNextBox(kResultOk);
    engine->RaiseGetUserOk("***Hello");
    EXPECT_EQ(platform.LiveTimerCount(), timers);
    platform.Advance(60000);
    EXPECT_EQ(platform.Boxes().size(), 1u);
}

TEST_F(PromptsTest, NowIsRefusedOutsideTheUnitedStatesUntilLaterOrNever) {
    StartIdle();
    SetCountry(44);
    platform.AnswerNextBox(kResultYes);  // Now
    platform.AnswerNextBox(kResultOk);   // the refusal
    platform.AnswerNextBox(kResultYes);  // Now again
    platform.AnswerNextBox(kResultOk);   // refused again
    platform.AnswerNextBox(kResultNo);   // Later
    EXPECT_EQ(engine->RaiseGetUserNowLaterNever("Fetch your files from home now?"), "l");
    const auto& boxes = platform.Boxes();
    ASSERT_EQ(boxes.size(), 5u);
    EXPECT_EQ(boxes[0].buttonLabels, (std::vector<std::string>{"N&ow", "&Later", "&Never"}));
    EXPECT_EQ(boxes[0].flags, 0x10003);
    EXPECT_EQ(boxes[0].caption, "Kestrelway");
    EXPECT_EQ(boxes[1].text,
              "The call home feature is currently only available when dialing from within the "
              "United States. Please select either Later or Never.");
    EXPECT_TRUE(boxes[2].buttonLabels.empty()) << "a box shown again keeps the standard labels";
}

TEST_F(PromptsTest, NowIsTakenInTheUnitedStatesAndCancelAnswersNever) {
    StartIdle();
    SetCountry(1);
    for (const auto& [pressed, answer] :
         {std::pair{kResultYes, "y"}, std::pair{kResultCancel, "n"}}) {
        platform.AnswerNextBox(pressed);
        EXPECT_EQ(engine->RaiseGetUserNowLaterNever("Fetch your files from home now?"), answer);
    }
}

TEST_F(PromptsTest, YesNoQuestionAnswersTrueOnlyForYes) {
    StartIdle();
    platform.AnswerNextBox(kResultYes);
    EXPECT_TRUE(engine->RaiseGetUserYesNo("Use the backup tunnel server?"));
    EXPECT_EQ(platform.Boxes().back().caption, "Ostvarra Prescriber");
    EXPECT_EQ(platform.Boxes().back().flags, 0x10004);
    platform.AnswerNextBox(kResultNo);
    EXPECT_FALSE(engine->RaiseGetUserYesNo("Use the backup tunnel server?", true));
}

TEST_F(PromptsTest, ChoiceWithOneEntryAndOkAnswersIt) {
    StartIdle();
    platform.AnswerNextModal("frmGetUserInfo", [&](forms::Form& form) {
        auto& dialog = static_cast<frmGetUserInfo&>(form);
        EXPECT_EQ(dialog.lblPrompt.Caption(), "Choose a tunnel server");
        EXPECT_EQ(dialog.lbChoices.ListIndex(), 0) << "the first row is preselected";
        dialog.btnOK.UserClick();
    });
    EXPECT_EQ(engine->RaiseGetUserInfo("Choose a tunnel server", NameList({"vpn-east"})),
              "vpn-east");
}

TEST_F(PromptsTest, ChoiceCancelledAnswersNothingAndTheDialogUnloadsItself) {
    StartIdle();
    platform.AnswerNextModal("frmGetUserInfo", [&](forms::Form& form) {
        static_cast<frmGetUserInfo&>(form).btnCancel.UserClick();
    });
    EXPECT_EQ(engine->RaiseGetUserInfo("Choose", NameList({"a", "b"}), "stale"), "");
    EXPECT_FALSE(app->Forms().IsLoaded<frmGetUserInfo>()) << "the choice dialog unloads itself";
}

// The dialog's index is 16 bits: the last choice it can address is answered as itself, and a
// longer list is refused before anyone is asked, never answered with another choice.
TEST_F(PromptsTest, ChoiceListsBeyondTheDialogsIndexAreRefused) {
    StartIdle();
    int asked = 0;
    platform.AnswerModals("frmGetUserInfo", [&](forms::Form& form) {
        ++asked;
        auto& dialog = static_cast<frmGetUserInfo&>(form);
        dialog.lbChoices.UserSelect(dialog.lbChoices.ListCount() - 1);
        dialog.btnOK.UserClick();
    });
    const struct {
        std::int32_t count;
        bool refused;
    } cases[] = {{32768, false}, {32769, true}, {65537 + 3, true}};
    for (const auto& c : cases) {
        std::vector<std::string> names;
        for (std::int32_t i = 0; i < c.count; ++i) {
            names.push_back("vpn-" + std::to_string(i));
        }
        const int before = asked;
        try {
            const std::string answer = engine->RaiseGetUserInfo("Choose", NameList(names));
            EXPECT_FALSE(c.refused) << c.count << " choices answered " << answer;
            EXPECT_EQ(answer, names.back());
        } catch (const automation::Failure& f) {
            EXPECT_TRUE(c.refused) << c.count << " choices: " << f.what();
            EXPECT_EQ(f.Number(), automation::err::kOverflow);
            EXPECT_EQ(asked, before) << "asked to choose from a list that cannot be answered";
        }
    }
}

TEST_F(PromptsTest, ChoiceDialogWithNothingSelectedGivesMinusOneOnOk) {
    StartIdle();
    frmGetUserInfo& dialog = app->Form<frmGetUserInfo>();
    dialog.lbChoices.AddItem("only");
    platform.AnswerNextModal("frmGetUserInfo", [&](forms::Form&) { dialog.btnOK.UserClick(); });
    dialog.Show(forms::kModal);
    EXPECT_EQ(dialog.SelectedIndex, -1);
    EXPECT_FALSE(dialog.Cancelled);
}

TEST_F(PromptsTest, LineOfInputAnswersTheTextTyped) {
    StartIdle();
    platform.AnswerNextModal("frmGetUserInput", [&](forms::Form& form) {
        auto& dialog = static_cast<frmGetUserInput&>(form);
        EXPECT_EQ(dialog.txtInput.Text(), "000000");
        dialog.txtInput.UserSetText("482913");
        dialog.btnOK.UserClick();
    });
    EXPECT_EQ(engine->RaiseGetUserInput("Passcode from your token", "000000"), "482913");
}

TEST_F(PromptsTest, LineOfInputCancelledAnswersNothingButKeepsTheText) {
    StartIdle();
    platform.AnswerNextModal("frmGetUserInput", [&](forms::Form& form) {
        auto& dialog = static_cast<frmGetUserInput&>(form);
        dialog.txtInput.UserSetText("typed");
        dialog.btnCancel.UserClick();
    });
    EXPECT_EQ(engine->RaiseGetUserInput("Passcode", ""), "");
    EXPECT_EQ(app->Form<frmGetUserInput>().txtInput.Text(), "typed") << "kept, but not used";
}

TEST_F(PromptsTest, DebugTextShowsInAnInformationBox) {
    StartIdle();
    platform.AnswerNextBox(kResultOk);
    engine->RaiseDravDebug("trace: LCP up");
    EXPECT_EQ(platform.Boxes().back().text, "trace: LCP up");
    EXPECT_EQ(platform.Boxes().back().flags, 65600);
}

TEST_F(PromptsTest, ATransferShowsItsWindowWithItsProgress) {
    StartIdle();
    automation::SafeArray transfer = automation::SafeArray::OneDim(0, 8);
    transfer.Set(0, Variant(std::string("home/report.doc")));
    for (std::int32_t i = 1; i <= 8; ++i) {
        transfer.Set(i, Variant(i));
    }
    engine->RaiseCHXferUpdate(Variant(transfer));
    EXPECT_TRUE(app->Form<frmFileXfer>().Visible());
    EXPECT_EQ(app->Form<frmFileXfer>().lblFileName.Caption(), "report.doc");
}

// ---- the two login dialogs, case by case ----

// The two login dialogs accept different pairs and refuse them under different captions.
struct LoginCase {
    std::string user;
    std::string password;
    bool accepted;
};

template <class Dialog>
void CheckLoginTable(headless::HeadlessPlatform& platform, Dialog& login,
                     const std::vector<LoginCase>& cases, const std::string& refusalCaption) {
    platform.AnswerBoxes([](const headless::BoxRecord&) { return kResultOk; });
    for (const LoginCase& c : cases) {
        login.LoginAccepted = false;
        platform.ClearBoxes();
        login.Show();
        login.txtUserName.SetText(c.user);
        login.txtPassword.SetText(c.password);
        login.cmdOK.UserClick();
        EXPECT_EQ(login.LoginAccepted, c.accepted) << c.user << "/" << c.password;
        EXPECT_EQ(login.Visible(), !c.accepted) << "a refused entry leaves the dialog open";
        if (!c.accepted) {
            ASSERT_EQ(platform.Boxes().size(), 1u);
            EXPECT_EQ(platform.Boxes()[0].text, "Invalid User Name, try again!");
            EXPECT_EQ(platform.Boxes()[0].caption, refusalCaption);
            EXPECT_EQ(platform.Boxes()[0].flags, 0x10000);
            EXPECT_TRUE(login.txtUserName.HasFocus());
        }
        login.Hide();
    }
}

TEST_F(PromptsTest, VpnLoginAcceptsAnyNameAndRefusesAnEmptyOneCaptionedLogin) {
    StartIdle();
    CheckLoginTable(platform, app->Form<frmLogin>(),
                    {{"anna", "pw", true}, {"anna", "", true}, {"", "", false}, {"", "pw", false}},
                    "Login");
    EXPECT_EQ(app->UserName, "anna") << "the accepted pair is taken";
    EXPECT_EQ(app->Password, "");
}

TEST_F(PromptsTest, IspLoginRefusesOnlyAPasswordWithoutANameCaptionedKestrelway) {
    StartIdle();
    CheckLoginTable(platform, app->Form<frmISPLogin>(),
                    {{"joe", "pw", true}, {"joe", "", true}, {"", "", true}, {"", "pw", false}},
                    "Kestrelway");
}

TEST_F(PromptsTest, IspLoginCentresOnTheMainWindowMirroringAPlaceLeftOfTheScreen) {
    StartIdle();
    MainWin& win = Win();
    frmISPLogin& login = app->Form<frmISPLogin>();
    login.Move(0, 0, 200, 150);
    win.Move(300, 100);
    login.Show();
    EXPECT_EQ(login.Left(), 300 + win.Width() / 2 - 100);
    EXPECT_EQ(login.Top(), win.Height() / 2 - 75 + 100);
    login.Hide();
    win.Move(-200, 100);
    login.Move(login.Left(), login.Top(), 210, 150);  // a new size centres it again
    EXPECT_EQ(login.Left(), std::abs(-200 + win.Width() / 2 - 105));
}

TEST_F(PromptsTest, LoginDialogsAreEnteredWithTheirTextSelected) {
    StartIdle();
    frmLogin& login = app->Form<frmLogin>();
    login.txtUserName.SetText("anna");
    login.txtPassword.SetText("secret");
    login.Show();
    EXPECT_TRUE(login.txtPassword.HasFocus());
    EXPECT_EQ(login.txtPassword.SelLength(), 6);
    login.txtUserName.UserFocus();
    EXPECT_EQ(login.txtUserName.SelStart(), 0);
    EXPECT_EQ(login.txtUserName.SelLength(), 4);
}

}  // namespace
}  // namespace kw::dialer::testing
