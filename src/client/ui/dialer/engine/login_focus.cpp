#include "client/ui/dialer/engine/login_focus.h"

namespace kw::dialer {

void SelectAllText(forms::TextBox& box) {
    box.SetSelStart(0);
    box.SetSelLength(static_cast<int>(box.Text().size()));
}

void FocusLoginFields(forms::TextBox& userName, forms::TextBox& password) {
    forms::TextBox& target = userName.Text().empty() ? userName : password;
    if (target.HasFocus()) {
        SelectAllText(target);  // entered again: all of its text selected as before
    } else {
        target.SetFocus();
    }
}

void SelectTextOnFocus(forms::TextBox& userName, forms::TextBox& password) {
    userName.GotFocus = [&userName] { SelectAllText(userName); };
    password.GotFocus = [&password] { SelectAllText(password); };
}

}  // namespace kw::dialer
