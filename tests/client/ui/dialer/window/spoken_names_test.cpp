// What a screen reader is told about the program's windows: every row of the spoken-names table
// reaches a control of its form, no control is spoken by its name in the forms, and the main
// window's Tab order is the one a person works it in.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "client/ui/dialer/shell/artwork_layout.h"
#include "client/ui/dialer/shell/spoken_names.h"
#include "window_fixture.h"

namespace kw::dialer::testing {
namespace {

using forms::AccessRole;

class SpokenNamesTest : public WindowFamilyTest {
  protected:
    // The forms the table speaks for, loaded as the program loads them.
    std::vector<forms::Form*> Forms() {
        return {&Win(),
                &app->Form<FromPullout>(),
                &app->Form<ToPullout>(),
                &app->Form<RxPullout>(),
                &app->Form<MorePullout>(),
                &app->Form<PrefPullout>(),
                &app->Form<LogPullout>(),
                &app->Form<DisplayPullout>(),
                &app->Form<PerfPulldown>()};
    }
};

TEST_F(SpokenNamesTest, EveryRowOfTheTableReachesAControlOfItsForm) {
    const std::vector<forms::Form*> forms = Forms();
    for (const spoken::SpokenControl& row : spoken::SpokenControls()) {
        SCOPED_TRACE(std::string(row.form) + "." + row.control);
        const forms::Form* form = nullptr;
        for (const forms::Form* f : forms) {
            if (f->Name() == row.form) {
                form = f;
            }
        }
        if (form == nullptr) {
            continue;  // a dialog, shown only when the engine asks
        }
        const forms::Control* control = form->FindControl(row.control, row.index);
        ASSERT_NE(control, nullptr);
        EXPECT_EQ(control->AccessibleRole(), row.role);
        if (row.namedBy != nullptr) {
            ASSERT_NE(control->NamedBy(), nullptr);
            EXPECT_EQ(control->NamedBy()->Name(), row.namedBy);
        }
    }
}

// A picture says nothing unless the table names it: a reader would fall back on its tool tip or
// say nothing, never "imgModemDetected".
TEST_F(SpokenNamesTest, EveryPictureIsNamedOrLeftOut) {
    for (const forms::Form* form : Forms()) {
        for (const forms::Control* control : form->Controls()) {
            if (control->Kind() != forms::ControlKind::Image) {
                continue;
            }
            SCOPED_TRACE(form->Name() + "." + control->Name());
            const bool leftOut = control->AccessibleRole() == AccessRole::Decorative;
            const bool named = !control->AccessibleName().empty() || control->NamedBy() != nullptr;
            EXPECT_TRUE(leftOut || named);
        }
    }
}

TEST_F(SpokenNamesTest, TheLightsAreNamedByTheirCaptionsOnTheArtwork) {
    MainWin& w = Win();
    const forms::Image* lights[] = {&w.imgModemDetected,  &w.imgPhoneDialing,
                                    &w.imgConnectingISP,  &w.imgAuthorizingISP,
                                    &w.imgCreatingTunnel, &w.imgAuthorizingTunnel};
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(lights[i]->AccessibleRole(), AccessRole::Indicator);
        EXPECT_EQ(lights[i]->AccessibleName(), layout::mainwin::kLightCaptions[i]);
    }
}

TEST_F(SpokenNamesTest, TheMainWindowIsTabbedThroughInWorkingOrder) {
    MainWin& w = Win();
    const forms::Control* order[] = {
        &w.btnMinimize, &w.btnHelp,      &w.btnCloseWin, &w.cmboFrom,     &w.btnFromPullout,
        &w.cmboTo,      &w.btnToPullout, &w.btnConnect,  &w.btnRxPullout, &w.btnMorePullout};
    for (std::size_t i = 1; i < std::size(order); ++i) {
        EXPECT_LT(order[i - 1]->TabIndex(), order[i]->TabIndex()) << order[i]->Name();
    }
    EXPECT_EQ(w.imgModemDetected.TabIndex(), -1) << "a light takes no focus";
    EXPECT_TRUE(w.KeepsEnter()) << "Enter connects from anywhere in the window";
}

}  // namespace
}  // namespace kw::dialer::testing
