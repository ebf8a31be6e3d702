// The real program on the Qt platform, in a home folder of its own, for the tests that look at
// its windows on an X server.
#pragma once

#include <gtest/gtest.h>

#include <QWidget>
#include <filesystem>
#include <initializer_list>
#include <memory>
#include <string>

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/engine/engine_factory.h"
#include "platform/automation/variant.h"
#include "platform/qt/form_window.h"
#include "platform/qt/qt_platform.h"

namespace kw::test {

// A one-dimensional list of names, as the engine hands them over.
automation::Variant Names(std::initializer_list<const char*> names);

class RealProgramTest : public ::testing::Test {
  protected:
    // A fresh settings hive whose user is "anna".
    void SetUp() override;
    void TearDown() override;

    void SetUserString(const char* name, const std::string& value);
    // Starts the program with the engine the creator makes, as `kestrelway` would.
    void Launch(const char* appName, dialer::EngineFactory::Creator engine);

    dialer::MainWin& Win() { return app_->Form<dialer::MainWin>(); }
    template <class F>
    F& Form() {
        return app_->Form<F>();
    }
    QWidget* WindowOf(forms::Form& form) { return platform_->WindowOf(form); }
    QWidget* Widget(forms::Form& form, const char* name);
    void Click(forms::Form& form, const char* name, int settleMs = 300);
    // The main window and a pullout as the screen shows them, saved under xvfb-shots.
    void Shot(forms::Form& pullout, const char* name, int settleMs = 300);

    std::filesystem::path home_;
    std::unique_ptr<qt::QtPlatform> platform_;
    std::unique_ptr<dialer::Application> app_;
};

}  // namespace kw::test
