// The Qt platform's services on a real event loop: boxes, timers, the modal loop, a second
// instance, the file dialog, the end of the session, and the conversions the program's geometry
// and dialogs depend on.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

#include <QAbstractButton>
#include <QApplication>
#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "platform/forms/controls.h"
#include "platform/forms/form.h"
#include "platform/qt/convert.h"
#include "platform/qt/form_window.h"
#include "platform/qt/instance_channel.h"
#include "platform/qt/qt_platform.h"
#include "qt_app.h"
#include "test_form.h"

namespace kw::qt {
namespace {

namespace mb = forms::mb;
using testing::App;
using ::testing::ElementsAre;

class QtPlatformTest : public ::testing::Test {
  protected:
    QtPlatformTest() : platform((App(), std::string("."))) {}
    QtPlatform platform;
};

// What the user saw in a box, answered by pressing the button labelled `press` once it is up.
struct SeenBox {
    QStringList buttons;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QString defaultButton, title, text;
    int width = 0;
};

void AnswerNextBox(const QString& press, SeenBox& seen) {
    QTimer::singleShot(0, [press, &seen] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        QAbstractButton* chosen = nullptr;
        for (auto* b : box->buttons()) {
            seen.buttons << b->text().remove(u'&');
            chosen = seen.buttons.back() == press ? b : chosen;
        }
        seen.buttons.sort();  // the desktop's style orders them: the set and the choice count
        seen.icon = box->icon();
        seen.defaultButton = box->defaultButton() ? box->defaultButton()->text().remove(u'&') : "";
        seen.title = box->windowTitle();
        seen.text = box->text();
        seen.width = box->width();
        ASSERT_NE(chosen, nullptr) << press.toStdString();
        chosen->click();
    });
}

TEST_F(QtPlatformTest, BoxesShowTheFlagsButtonsAndIconAndGiveTheClassicResult) {
    using I = QMessageBox::Icon;
    const struct {
        int flags;
        QString press, sortedButtons;
        I icon;
        QString defaultButton;
        int result;
    } cases[] = {
        {mb::kOkOnly, "OK", "OK", I::NoIcon, "OK", mb::kResultOk},
        {mb::kOkCancel | mb::kCritical, "Cancel", "Cancel OK", I::Critical, "OK",
         mb::kResultCancel},
        {mb::kAbortRetryIgnore | mb::kDefaultButton3, "Retry", "Abort Ignore Retry", I::NoIcon,
         "Ignore", mb::kResultRetry},
        {mb::kYesNoCancel | mb::kQuestion | mb::kDefaultButton2, "Yes", "Cancel No Yes",
         I::Question, "No", mb::kResultYes},
        {mb::kYesNo | mb::kExclamation | mb::kSetForeground, "No", "No Yes", I::Warning, "Yes",
         mb::kResultNo},
        {mb::kRetryCancel | mb::kInformation | mb::kSystemModal, "Retry", "Cancel Retry",
         I::Information, "Retry", mb::kResultRetry},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.flags);
        SeenBox seen;
        AnswerNextBox(c.press, seen);
        EXPECT_EQ(platform.MsgBox("Save the changes?", c.flags, "Kestrelway"), c.result);
        EXPECT_EQ(seen.buttons.join(' '), c.sortedButtons);
        EXPECT_EQ(seen.icon, c.icon);
        EXPECT_EQ(seen.defaultButton, c.defaultButton);
        EXPECT_EQ(seen.title, "Kestrelway");
        EXPECT_EQ(seen.text, "Save the changes?");
    }

    // Labels from the request, the title from the program, and line ends as Qt has them.
    platform.SetApplicationTitle("Kestrelway");
    forms::MessageBoxRequest request;
    request.text = "Place the call home?\r\nIt takes a minute.";
    request.flags = mb::kYesNoCancel;
    request.buttonLabels = {"Now", "Later", "Never"};
    SeenBox seen;
    AnswerNextBox("Later", seen);
    EXPECT_EQ(platform.MessageBox(request), mb::kResultNo);
    EXPECT_EQ(seen.buttons.join(' '), "Later Never Now");
    EXPECT_EQ(seen.title, "Kestrelway");
    EXPECT_EQ(seen.text, "Place the call home?\nIt takes a minute.");
}

// A name typed as one long word wraps instead of stretching the box across the screen.
TEST_F(QtPlatformTest, ALongWordWrapsInsideTheBox) {
    const std::string text = "Saved " + std::string(400, 'W');
    SeenBox seen;
    AnswerNextBox("OK", seen);
    platform.MsgBox(text, mb::kOkOnly, "Kestrelway");
    EXPECT_LT(seen.width, QApplication::primaryScreen()->availableGeometry().width() * 3 / 4);
    EXPECT_EQ(seen.text.remove(QChar(0x200B)), QString::fromStdString(text))
        << "nothing but places to break is added";
}

TEST_F(QtPlatformTest, ABoxClosesOnItsTimeoutOrByItsCaptionAndTimersRunMeanwhile) {
    int ticks = 0;
    const forms::TimerId id = platform.SetTimer(10, [&ticks] { ++ticks; });
    forms::MessageBoxRequest request;
    request.text = "Message of the day";
    request.caption = "Message of the Day";
    request.flags = mb::kOkCancel | mb::kSetForeground;
    request.timeoutMs = 120;
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(platform.MessageBox(request), mb::kResultTimeout);
    EXPECT_GE(clock.elapsed(), 110);
    EXPECT_GE(ticks, 3);
    platform.KillTimer(id);

    bool otherClosed = true;
    QTimer::singleShot(0, [this, &otherClosed] {
        otherClosed = platform.CloseMessageBox("Ostvarra Prescriber", mb::kResultOk);
        platform.CloseMessageBox("Message of the Day", mb::kResultOk);
    });
    request.timeoutMs = 5000;
    EXPECT_EQ(platform.MessageBox(request), mb::kResultOk);
    EXPECT_FALSE(otherClosed);
    EXPECT_FALSE(platform.CloseMessageBox("Message of the Day", mb::kResultOk));  // gone
}

TEST_F(QtPlatformTest, TimersRepeatStopAndDoNotReenterThemselves) {
    forms::TimerId fast = 0;
    int fastTicks = 0, slowTicks = 0, reentered = 0;
    bool inSlowTick = false;
    fast = platform.SetTimer(5, [&] {
        if (++fastTicks == 3)
            platform.KillTimer(fast);  // from inside its own tick
    });
    const forms::TimerId slow = platform.SetTimer(15, [&] {
        reentered += inSlowTick ? 1 : 0;
        inSlowTick = true;
        if (++slowTicks == 1) {
            // A nested loop inside the tick: this timer must not tick again meanwhile, the
            // others do.
            const auto until = platform.TickCount() + 60;
            while (platform.TickCount() < until) platform.DoEvents();
        }
        inSlowTick = false;
    });
    QTest::qWait(150);
    platform.KillTimer(slow);
    platform.KillTimer(12345);  // unknown: nothing happens
    EXPECT_EQ(fastTicks, 3);
    EXPECT_GE(slowTicks, 2);
    EXPECT_EQ(reentered, 0);
    const int ticksAfterKill = slowTicks;
    QTest::qWait(40);
    EXPECT_EQ(slowTicks, ticksAfterKill);

    // Sleep blocks the loop; overdue ticks then come as one.
    int ticks = 0;
    const forms::TimerId id = platform.SetTimer(5, [&ticks] { ++ticks; });
    platform.Sleep(40);
    EXPECT_EQ(ticks, 0);
    platform.DoEvents();
    EXPECT_EQ(ticks, 1);
    platform.KillTimer(id);
}

TEST_F(QtPlatformTest, AModalFormRunsTheLoopUntilItHides) {
    testing::DialForm dialog(platform);
    dialog.tmrBlink.Tick = [&dialog] {
        dialog.Note("tick");
        if (dialog.journal.size() == 3)
            dialog.Hide();
    };
    dialog.tmrBlink.SetInterval(10);
    dialog.Show(forms::kModal);
    EXPECT_FALSE(dialog.Visible());
    EXPECT_THAT(dialog.journal, ElementsAre("tick", "tick", "tick"));
    EXPECT_FALSE(dialog.IsModal());

    // Unloading ends it as well, and input during it reaches the modal form.
    QTimer::singleShot(10, [&dialog, this] {
        QTest::mouseClick(platform.WindowOf(dialog)->findChild<QWidget*>("btnConnect"),
                          Qt::LeftButton);
        dialog.Unload();
    });
    dialog.tmrBlink.SetTimerEnabled(false);
    dialog.journal.clear();
    dialog.Show(forms::kModal);
    EXPECT_FALSE(dialog.IsLoaded());
    EXPECT_THAT(dialog.journal, ElementsAre("btnConnect_Click"));
}

TEST_F(QtPlatformTest, ASecondInstanceFindsTheFirstAndRestoresIt) {
    const std::string key = "kestrelway-test-" + std::to_string(QCoreApplication::applicationPid());
    QtPlatform first(".", key);
    QtPlatform second(".", key);
    EXPECT_FALSE(first.PreviousInstanceRunning());  // nobody before it: it answers from now on
    EXPECT_EQ(first.FindWindow("ThunderRT5Form", "Kestrelway"), 0);

    testing::DialForm mainWin(first);
    mainWin.Show();
    mainWin.SetWindowState(forms::window_state::kMinimized);

    EXPECT_TRUE(second.PreviousInstanceRunning());
    const forms::WindowHandle h = second.FindWindow("ThunderRT5Form", "Kestrelway");
    ASSERT_GE(h, 1);
    EXPECT_EQ(second.GetWindowPlacement(h), forms::show::kMinimized);
    second.SetWindowPlacement(h, forms::show::kNormal);
    second.SetForegroundWindow(h);
    EXPECT_EQ(mainWin.WindowState(), forms::window_state::kNormal);
    EXPECT_FALSE(first.WindowOf(mainWin)->isMinimized());
}

TEST_F(QtPlatformTest, AnInstanceThatEndsLeavesNothingAtTheChannelsName) {
    const std::string key = "kestrelway-end-" + std::to_string(QCoreApplication::applicationPid());
    const std::string path = InstanceChannel::PathFor(key).toStdString();
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        QtPlatform first(".", key);
        first.PreviousInstanceRunning();
        first.EndProcess(::access(path.c_str(), F_OK) == 0 ? 0 : 2);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(WEXITSTATUS(status), 0) << "the instance did not listen";
    EXPECT_NE(::access(path.c_str(), F_OK), 0) << path;
}

TEST_F(QtPlatformTest, TheLoggedOnUserHasAName) {
    EXPECT_FALSE(platform.LoggedOnUserName().value_or("").empty());
}

TEST_F(QtPlatformTest, TheCursorShapesAndTheHelpPage) {
    platform.SetCursor(forms::cursor::kHourglass);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    platform.SetCursor(forms::cursor::kArrowHourglass);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::BusyCursor);
    platform.SetCursor(forms::cursor::kDefault);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);

    const QUrl url = platform.HelpUrl("C:\\Program Files\\Kestrelway.hlp", 120);
    EXPECT_TRUE(url.isLocalFile());
    EXPECT_EQ(url.fragment(), "120");
    EXPECT_TRUE(url.path().endsWith("/help/index.html"))  // no such page here: the index
        << url.path().toStdString();
}

TEST(QtConvert, FileFiltersAndColours) {
    EXPECT_EQ(ToFileDialogFilter("Text files (*.log)|*.log|All files (*.*)|*.*"),
              "Text files (*.log);;All files (*.*)");
    EXPECT_EQ(ToFileDialogFilter("Logs|*.log;*.txt"), "Logs (*.log *.txt)");
    EXPECT_EQ(ToQColor(0x804020), QColor(0x20, 0x40, 0x80));  // blue, green, red
}

TEST(QtConvert, KeysReachTheRoutinesWithTheirClassicCodes) {
    const struct {
        Qt::Key key;
        int code;
    } cases[] = {{Qt::Key_A, 'A'},     {Qt::Key_7, '7'},     {Qt::Key_F3, 114},
                 {Qt::Key_Backtab, 9}, {Qt::Key_Enter, 13},  {Qt::Key_PageDown, 34},
                 {Qt::Key_Delete, 46}, {Qt::Key_CapsLock, 0}};
    for (const auto& c : cases) {
        const QKeyEvent event(QEvent::KeyPress, c.key, Qt::NoModifier);
        EXPECT_EQ(KeyCodeOf(event), c.code) << c.key;
    }
}

// With the create prompt a name that does not exist yet may be typed, and the user is asked
// before it is taken: here the user declines one name and agrees to the next.
TEST_F(QtPlatformTest, AFileDialogTakesANewNameOnceTheUserAgreesToCreateIt) {
    QTemporaryDir dir;
    QStringList names{"calls.log", "trips.log"};
    QList<QMessageBox::StandardButton> answers{QMessageBox::No, QMessageBox::Yes};
    QTimer user;  // the user; a box comes up inside the click on Open that raised it
    QObject::connect(&user, &QTimer::timeout, [&names, &answers] {
        QWidget* modal = QApplication::activeModalWidget();
        if (auto* box = qobject_cast<QMessageBox*>(modal); box != nullptr && !answers.empty()) {
            EXPECT_TRUE(box->text().contains("does not exist"));
            box->button(answers.takeFirst())->click();
        } else if (auto* files = qobject_cast<QFileDialog*>(modal); files && !names.empty()) {
            files->findChild<QLineEdit*>("fileNameEdit")->setText(names.takeFirst());
            files->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open)->click();
        }
    });
    user.start(20);
    forms::FileDialogRequest request;
    request.initialDir = dir.path().toStdString();
    request.flags = forms::ofn::kCreatePrompt;
    const auto chosen = platform.OpenFileDialog(request);
    EXPECT_TRUE(answers.empty()) << "the user was not asked about each name";
    ASSERT_TRUE(chosen.has_value());
    EXPECT_EQ(*chosen, dir.filePath("trips.log").toStdString());
    EXPECT_FALSE(QFileInfo::exists(dir.filePath("trips.log"))) << "the dialog creates nothing";
}

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

// The end of the desktop session reaches the program as the old toolkit delivered it: the hook
// hears the two session messages, and every form is asked with the session's reason.
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
}  // namespace kw::qt
