// The window family on a real X server: the minimise button hides the family, and a restore done
// by the window manager (a state change the message hook sees) brings back every window whose
// flag is set.
#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>

#include "client/ui/dialer/diallist/to_pullout.h"
#include "client/ui/dialer/performance/perf_pulldown.h"
#include "real_program.h"

namespace {

using kw::dialer::MainWin;
namespace window_state = kw::forms::window_state;

using FamilyTest = kw::test::RealProgramTest;

TEST_F(FamilyTest, MinimiseHidesTheFamilyAndAWindowManagerRestoreBringsItBack) {
    LaunchScripted("kestrelway-family-test");
    MainWin& win = Win();
    Click(win, "btnToPullout");
    QWidget* to = WindowOf(Form<kw::dialer::ToPullout>());
    QWidget* perf = WindowOf(Form<kw::dialer::PerfPulldown>());
    ASSERT_TRUE(to->isVisible() && perf->isVisible());
    EXPECT_TRUE(to->mask().boundingRect().isValid()) << "the pullout is shaped";
    Shot("family-pullout-open");

    Click(win, "btnMinimize");
    EXPECT_EQ(win.WindowState(), window_state::kMinimized);
    EXPECT_FALSE(to->isVisible());
    EXPECT_FALSE(perf->isVisible());

    // The window manager restores the main window: a state change on its top-level window.
    WindowOf(win)->setWindowState(Qt::WindowNoState);
    WindowOf(win)->show();
    QTest::qWait(300);
    EXPECT_EQ(win.WindowState(), window_state::kNormal);
    EXPECT_TRUE(to->isVisible());
    EXPECT_TRUE(perf->isVisible());
    Shot("family-restored");
}

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
