// The end of the desktop session reaches the program as the old toolkit delivered it: the hook
// hears the two session messages, and every form is asked with the session's reason.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/forms/form.h"
#include "platform/qt/qt_app.h"
#include "platform/qt/qt_platform.h"

namespace kw::qt::testing {
namespace {

// A form that keeps a journal of its unload steps and may refuse the question.
class JournalForm : public forms::Form {
  public:
    JournalForm(forms::Platform& platform, std::string name, std::vector<std::string>& journal)
        : Form(platform, std::move(name)), journal_(journal) {
        Move(10, 10, 120, 80);
    }
    bool refuse = false;

  protected:
    void Form_QueryUnload(int& cancel, int reason) override {
        journal_.push_back(Name() + " query " + std::to_string(reason));
        cancel = refuse ? 1 : 0;
    }
    void Form_Unload(int&) override { journal_.push_back(Name() + " unload"); }

  private:
    std::vector<std::string>& journal_;
};

class SessionEnd : public ::testing::Test {
  protected:
    SessionEnd() {
        App();
        main.Show();
        other.Show();
        platform.InstallMessageHook(main, [this](int message, std::intptr_t wParam, std::intptr_t) {
            if (message == forms::wm::kQueryEndSession || message == forms::wm::kEndSession) {
                journal.push_back("hook " + std::to_string(message) + " " + std::to_string(wParam));
            }
            return true;
        });
    }
    ~SessionEnd() override {
        main.Unload();
        other.Unload();
    }

    QtPlatform platform{"", "kestrelway-session-test"};
    std::vector<std::string> journal;
    JournalForm main{platform, "MainWin", journal};
    JournalForm other{platform, "Other", journal};
};

TEST_F(SessionEnd, TheQuestionReachesTheHookThenEveryFormWithTheSessionsReason) {
    EXPECT_TRUE(platform.QueryEndSession());
    EXPECT_EQ(journal, (std::vector<std::string>{"hook 17 0", "MainWin query 2", "Other query 2"}));
    EXPECT_TRUE(main.IsLoaded()) << "a question unloads nothing";
}

TEST_F(SessionEnd, AFormThatRefusesKeepsTheSessionAndIsTheLastAsked) {
    main.refuse = true;
    EXPECT_FALSE(platform.QueryEndSession());
    EXPECT_EQ(journal, (std::vector<std::string>{"hook 17 0", "MainWin query 2"}));
}

TEST_F(SessionEnd, TheEndTellsTheHookAndUnloadsEveryFormWithTheSessionsReason) {
    platform.EndSession();
    EXPECT_EQ(journal, (std::vector<std::string>{"hook 22 1", "MainWin query 2", "MainWin unload",
                                                 "Other query 2", "Other unload"}));
    EXPECT_FALSE(main.IsLoaded());
    EXPECT_FALSE(other.IsLoaded());
}

}  // namespace
}  // namespace kw::qt::testing
