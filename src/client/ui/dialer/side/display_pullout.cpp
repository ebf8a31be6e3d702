#include "client/ui/dialer/side/display_pullout.h"

#include "client/ui/dialer/core/application.h"

namespace kw::dialer {

DisplayPullout::DisplayPullout(Application& app) : Form(app.Platform(), "DisplayPullout") {
    SetCaption("DisplayPullout");
    Move(0, 0, 320, 204);
    txtPassword.SetPasswordChar('*');
    btnModify.SetCaption("Modify");
}

void DisplayPullout::OnHide(bool& ok) { ok = btnModify.Caption() != "Save"; }

}  // namespace kw::dialer
