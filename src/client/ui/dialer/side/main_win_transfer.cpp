// The call-home transfer's progress, shown in its own window as the engine reports it.
#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/side/frm_file_xfer.h"

namespace kw::dialer {

using automation::Variant;

void MainWin::l_DravlinkObj_CHXferUpdate(Variant& first, Variant& transfer) {
    (void)first;
    frmFileXfer& xfer = app_.Form<frmFileXfer>();
    if (!xfer.Visible()) {
        xfer.Show();
    }
    xfer.updateInfo(Variant(transfer));
}

}  // namespace kw::dialer
