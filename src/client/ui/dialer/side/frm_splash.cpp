#include "client/ui/dialer/side/frm_splash.h"

#include "client/ui/dialer/core/application.h"

namespace kw::dialer {

frmSplash::frmSplash(Application& app) : Form(app.Platform(), "frmSplash") {
    SetCaption("Kestrelway");
}

}  // namespace kw::dialer
