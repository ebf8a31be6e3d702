#include "client/ui/dialer/side/frm_file_xfer.h"

#include "client/ui/dialer/core/application.h"

namespace kw::dialer {

frmFileXfer::frmFileXfer(Application& app) : Form(app.Platform(), "frmFileXfer") {
    SetCaption("File Transfer");
    Timer1.SetInterval(1000);
    Timer1.SetTimerEnabled(false);
}

void frmFileXfer::UpdateProgress(const automation::Variant& transfer) {
    last_ = transfer;
}

}  // namespace kw::dialer
