// The real program on the Qt platform, in a home folder of its own, for the tests that look at
// its windows on an X server.
#pragma once

#include <gtest/gtest.h>

#include <QRect>
#include <QWidget>
#include <filesystem>
#include <memory>
#include <string>

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/engine/engine_factory.h"
#include "platform/qt/form_window.h"
#include "platform/qt/qt_platform.h"
#include "support/scripted_engine.h"

namespace kw::test {

// The first destination and location the scripted engine lists.
inline constexpr const char* kDestination = "Ostvarra Corporate";
inline constexpr const char* kLocation = "Home Office";

class RealProgramTest : public ::testing::Test {
  protected:
    // A fresh settings hive whose user is "anna".
    void SetUp() override;
    void TearDown() override;

    void SetUserString(const char* name, const std::string& value);
    // Starts the program with the engine the creator makes, as `kestrelway` would.
    void Launch(const char* appName, dialer::EngineFactory::Creator engine);
    // Starts it with engine_: two destinations, two locations, no calling cards, and an empty
    // first dial list.
    void LaunchScripted(const char* appName);

    dialer::MainWin& Win() { return app_->Form<dialer::MainWin>(); }
    template <class F>
    F& Form() {
        return app_->Form<F>();
    }
    QWidget* WindowOf(forms::Form& form) { return platform_->WindowOf(form); }
    QWidget* Widget(forms::Form& form, const char* name);
    void Click(forms::Form& form, const char* name, int settleMs = 300);
    // The main window and a pullout, which must be on screen.
    QRect Beside(forms::Form& pullout);
    // The area of the screen (all of it when empty) once settled, saved under xvfb-shots.
    void Shot(const char* name, QRect area = {});

    std::filesystem::path home_;
    std::shared_ptr<ScriptedEngine> engine_ = std::make_shared<ScriptedEngine>();
    std::unique_ptr<qt::QtPlatform> platform_;
    std::unique_ptr<dialer::Application> app_;
};

}  // namespace kw::test
