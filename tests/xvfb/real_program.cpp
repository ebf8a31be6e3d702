#include "real_program.h"

#include <stdlib.h>

#include <QDir>
#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>
#include <QTest>
#include <cstdio>
#include <initializer_list>

#include "client/ui/dialer/core/settings.h"
#include "platform/automation/safe_array.h"
#include "platform/registry/registry.h"

namespace kw::test {

namespace fs = std::filesystem;

namespace {

// A one-dimensional list of names, as the engine hands them over.
Variant Names(std::initializer_list<const char*> names) {
    auto list = automation::SafeArray::OneDim(0, static_cast<std::int32_t>(names.size()) - 1);
    std::int32_t i = 0;
    for (const char* n : names) {
        list.Set(i++, Variant(std::string(n)));
    }
    return Variant(std::move(list));
}

}  // namespace

void RealProgramTest::SetUp() {
    std::string pattern = (fs::temp_directory_path() / "kw-xvfb-XXXXXX").string();
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    home_ = pattern;
    registry::Configure({(home_ / "user.reg").string(), (home_ / "system.reg").string()});
    SetUserString(dialer::settings::kUserName, "anna");
}

void RealProgramTest::TearDown() {
    app_.reset();
    platform_.reset();
    dialer::EngineFactory::Unregister(dialer::kDefaultEngineName);
    fs::remove_all(home_);
}

void RealProgramTest::SetUserString(const char* name, const std::string& value) {
    registry::HKEY key = nullptr;
    registry::RegCreateKeyExA(registry::HKEY_CURRENT_USER, dialer::settings::kUserKey, 0, nullptr,
                              0, registry::KEY_ALL_ACCESS, nullptr, &key, nullptr);
    registry::RegSetValueExA(key, name, 0, registry::REG_SZ,
                             reinterpret_cast<const registry::BYTE*>(value.c_str()),
                             static_cast<registry::DWORD>(value.size() + 1));
    registry::RegCloseKey(key);
}

void RealProgramTest::Launch(const char* appName, dialer::EngineFactory::Creator engine) {
    dialer::EngineFactory::Register(dialer::kDefaultEngineName, std::move(engine));
    platform_ = std::make_unique<qt::QtPlatform>(KW_SOURCE_DIR "/assets", appName);
    app_ = std::make_unique<dialer::Application>(*platform_, KW_SOURCE_DIR "/assets");
    dialer::Main(*app_);
}

void RealProgramTest::LaunchScripted(const char* appName) {
    engine_->Default("GetPhoneList", Variant(true),
                     {{0, Names({kDestination, "Engineering Lab"})}});
    engine_->Default("GetLocationList", Variant(true), {{0, Names({kLocation, "New York Hotel"})}});
    engine_->Default("GetCallingCardList", Variant(false));
    Launch(appName, [this](const dialer::EngineContext&) { return engine_; });
    engine_->RaiseGetGenericISPList("", Variant());
    QTest::qWait(300);
}

QWidget* RealProgramTest::Widget(forms::Form& form, const char* name) {
    QWidget* widget = WindowOf(form)->findChild<QWidget*>(name);
    EXPECT_NE(widget, nullptr) << name;
    return widget;
}

void RealProgramTest::Click(forms::Form& form, const char* name, int settleMs) {
    QWidget* widget = Widget(form, name);
    ASSERT_NE(widget, nullptr);
    QTest::mouseClick(widget, Qt::LeftButton, {}, widget->rect().center());
    QTest::qWait(settleMs);
}

QRect RealProgramTest::Beside(forms::Form& pullout) {
    EXPECT_TRUE(WindowOf(pullout)->isVisible()) << "the pullout is not on screen";
    return WindowOf(Win())->frameGeometry().united(WindowOf(pullout)->frameGeometry());
}

void RealProgramTest::Shot(const char* name, QRect area) {
    QTest::qWait(300);
    const QString shots = QStringLiteral(KW_BINARY_DIR "/xvfb-shots");
    QDir().mkpath(shots);
    const QString path = shots + "/" + name + ".png";
    QScreen* screen = QGuiApplication::primaryScreen();
    (area.isNull() ? screen->grabWindow(0)
                   : screen->grabWindow(0, area.x(), area.y(), area.width(), area.height()))
        .save(path);
    std::printf("  %s\n", qPrintable(path));
}

}  // namespace kw::test
