// What a screen reader is told about the program's windows: every row of the spoken-names table
// reaches a control of its form, and no picture is spoken by its name in the forms.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "client/ui/dialer/engine/frm_isp_login.h"
#include "client/ui/dialer/engine/frm_login.h"
#include "client/ui/dialer/shell/spoken_names.h"
#include "window_fixture.h"

namespace kw::dialer::testing {
namespace {

using forms::AccessRole;

class SpokenNamesTest : public WindowFamilyTest {
  protected:
    // The forms the table speaks for, loaded as the program loads them.
    std::vector<forms::Form*> Forms() {
        return FormsOf<MainWin, FromPullout, ToPullout, RxPullout, MorePullout, PrefPullout,
                       LogPullout, DisplayPullout, PerfPulldown, frmLogin, frmISPLogin>();
    }
};

TEST_F(SpokenNamesTest, EveryRowOfTheTableReachesAControlOfItsForm) {
    const std::vector<forms::Form*> forms = Forms();
    for (const spoken::SpokenControl& row : spoken::SpokenControls()) {
        SCOPED_TRACE(std::string(row.form) + "." + row.control);
        const auto form = std::find_if(forms.begin(), forms.end(),
                                       [&](const forms::Form* f) { return f->Name() == row.form; });
        ASSERT_NE(form, forms.end()) << "no such form";
        const forms::Control* control = (*form)->FindControl(row.control, row.index);
        ASSERT_NE(control, nullptr);
        EXPECT_EQ(control->AccessibleRole(), row.role);
        if (row.namedBy != nullptr) {
            ASSERT_NE(control->NamedBy(), nullptr);
            EXPECT_EQ(control->NamedBy()->Name(), row.namedBy);
            EXPECT_EQ(control->NamedBy()->Index(), row.namedByIndex);
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

}  // namespace
}  // namespace kw::dialer::testing
