#pragma once

#include <gtest/gtest.h>

#include <map>
#include <memory>

#include <QTemporaryDir>
#include <QTest>
#include <QWidget>

#include "platform/headless/headless_platform.h"
#include "platform/qt/binding.h"
#include "qt_app.h"
#include "test_form.h"

namespace kw::qt::testing {

// One control's binding alone, on a plain widget: the model's changes reach it as the form
// window forwards them, and the form runs on the headless platform, shown, so that it takes
// input.
class BindingTest : public ::testing::Test, public forms::FormObserver {
  protected:
    BindingTest() : form(platform) {
        parent.resize(400, 300);
        form.Show();
        form.AddObserver(this);
    }
    ~BindingTest() override { form.RemoveObserver(this); }

    void SetUp() override {
        parent.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&parent));
    }

    // Binds the control and gives its widget, which must be a W.
    template <class W>
    W* Bind(forms::Control& control) {
        ControlBinding* binding = BindControl(control, context, &parent);
        if (binding == nullptr) {
            ADD_FAILURE() << control.Name() << " has no binding";
            return nullptr;
        }
        bindings[&control] = binding;
        auto* widget = qobject_cast<W*>(binding->Widget());
        EXPECT_NE(widget, nullptr) << control.Name();
        return widget;
    }

    void ControlChanged(forms::Control& control, forms::Property what) override {
        if (auto it = bindings.find(&control); it != bindings.end()) {
            it->second->Apply(what);
        }
    }
    void FormChanged(forms::Form&, forms::FormProperty) override {}

    QApplication& app = App();
    QTemporaryDir assets;
    headless::HeadlessPlatform platform;
    DialForm form;
    QWidget parent;
    std::shared_ptr<BindingContext> context = std::make_shared<BindingContext>(assets.path());
    std::map<const forms::Control*, ControlBinding*> bindings;
};

}  // namespace kw::qt::testing
