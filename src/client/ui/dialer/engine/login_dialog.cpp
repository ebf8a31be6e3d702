#include "client/ui/dialer/engine/login_dialog.h"

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/shell/artwork_layout.h"
#include "client/ui/dialer/shell/faces.h"

namespace kw::dialer {

void LoginView::Design(const char* titleCaption, const char* picture) {
    namespace at = layout::login;
    form.SetCaption("Login");
    form.SetForeColor(0x00FF00);  // pure green: the outside of the artwork
    form.SetPicture(picture);
    face::PlaceForm(form, at::kWidth, at::kHeight);
    title.SetCaption(titleCaption);
    userLabel.SetCaption("&User Name:");
    passwordLabel.SetCaption("&Password:");
    password.SetPasswordChar('*');
    ok.SetCaption("OK");
    ok.SetDefault(true);
    cancel.SetCaption("Cancel");
    cancel.SetCancel(true);
    const auto place = face::Place;
    place(title, at::Label1);
    place(userLabel, at::lblLabels0);
    place(passwordLabel, at::lblLabels1);
    place(userName, at::txtUserName);
    place(password, at::txtPassword);
    place(ok, at::cmdOK);
    place(cancel, at::cmdCancel);
    for (forms::Control* c : form.Controls()) {
        c->SetFontName("Arial");
    }
    for (forms::Label* label : {&title, &userLabel, &passwordLabel}) {
        label->SetForeColor(0xE0E0E0);
    }
    title.SetFontBold(true);
    title.SetFontSize(10);
}

void LoginView::Frame(const Application& app) {
    form.SetFrameInset(app.frameWidth, app.frameHeight);
    // The outer size is part of the design: the frame is drawn at its design size too.
    face::PlaceForm(form, layout::login::kWidth + 2 * app.frameWidth,
                    layout::login::kHeight + app.frameHeight + app.frameWidth);
}

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
