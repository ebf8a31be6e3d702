// The window family on a real X server: a pullout opens beside the shaped main window, the
// minimise button hides the family, and a restore done by the window manager (a state change the
// message hook sees) brings back every window whose flag is set.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>
#include <QTest>

#include "client/ui/dialer/diallist/to_pullout.h"
#include "client/ui/dialer/performance/perf_pulldown.h"
#include "platform/qt/form_window.h"
#include "platform/qt/message_hook.h"
#include "real_program.h"
#include "support/scripted_engine.h"

namespace {

using kw::automation::Variant;
using kw::dialer::MainWin;
using kw::test::Names;

class FamilyTest : public kw::test::RealProgramTest {
  protected:
    void SetUp() override {
        RealProgramTest::SetUp();
        engine_->Default("GetPhoneList", Variant(true), {{0, Names({"Corporate", "Lab"})}});
        engine_->Default("GetLocationList", Variant(true), {{0, Names({"Home", "Hotel"})}});
        engine_->Default("GetCallingCardList", Variant(false));
        Launch("kestrelway-family-test",
               [this](const kw::dialer::EngineContext&) { return engine_; });
        engine_->RaiseGetGenericISPList("", Variant());
        QTest::qWait(300);
    }

    std::shared_ptr<kw::test::ScriptedEngine> engine_ =
        std::make_shared<kw::test::ScriptedEngine>();
};

TEST_F(FamilyTest, MinimiseHidesTheFamilyAndAWindowManagerRestoreBringsItBack) {
    MainWin& win = app_->Form<MainWin>();
    ASSERT_NE(WindowOf(win)->findChild<kw::qt::MessageHookFilter*>(), nullptr)
        << "the load step hooks the main window's top-level window";
    Click(win, "btnToPullout");
    kw::dialer::ToPullout& to = app_->Form<kw::dialer::ToPullout>();
    kw::dialer::PerfPulldown& perf = app_->Form<kw::dialer::PerfPulldown>();
    ASSERT_TRUE(win.toShown);
    ASSERT_TRUE(WindowOf(to)->isVisible());
    ASSERT_TRUE(WindowOf(perf)->isVisible());
    EXPECT_TRUE(WindowOf(to)->mask().boundingRect().isValid()) << "the pullout is shaped";

    // The family with a pullout open, for a person to look at.
    const QString shots = QStringLiteral(KW_BINARY_DIR "/xvfb-shots");
    QDir().mkpath(shots);
    QGuiApplication::primaryScreen()->grabWindow(0).save(shots + "/family-pullout-open.png");

    Click(win, "btnMinimize");
    EXPECT_EQ(win.WindowState(), kw::forms::window_state::kMinimized);
    EXPECT_FALSE(WindowOf(to)->isVisible());
    EXPECT_FALSE(WindowOf(perf)->isVisible());
    EXPECT_TRUE(win.toShown) << "the flags stay, so that a restore knows what to bring back";

    // The window manager restores the main window: a state change on its top-level window.
    QWidget* main = WindowOf(win);
    main->setWindowState(Qt::WindowNoState);
    main->show();
    QTest::qWait(300);
    EXPECT_EQ(win.WindowState(), kw::forms::window_state::kNormal);
    EXPECT_TRUE(WindowOf(to)->isVisible());
    EXPECT_TRUE(WindowOf(perf)->isVisible());
    QGuiApplication::primaryScreen()->grabWindow(0).save(shots + "/family-restored.png");
}

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
