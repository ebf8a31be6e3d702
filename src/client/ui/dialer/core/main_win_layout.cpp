// Where MainWin's controls stand on its artwork.
#include "client/ui/dialer/core/main_win.h"

namespace kw::dialer {

void MainWin::PlaceControls() {
    Move(400, 200, 128, 320);
    lblFrom.Move(10, 40, 30, 14);
    cmboFrom.Move(10, 54, 108, 21);
    lblTo.Move(10, 80, 30, 14);
    cmboTo.Move(10, 94, 108, 21);
    int y = 124;
    for (forms::Image* light : {&imgModemDetected, &imgPhoneDialing, &imgConnectingISP,
                                &imgAuthorizingISP, &imgCreatingTunnel, &imgAuthorizingTunnel}) {
        light->Move(14, y, 14, 14);
        y += 18;
    }
    imgLogoOn.Move(44, 124, 70, 40);
    imgConnectLight.Move(100, 200, 14, 14);
    btnConnect.Move(34, 236, 60, 24);
    lblConnect.Move(34, 240, 60, 16);
    lblStatus.Move(6, 266, 116, 28);
    btnCloseWin.Move(104, 6, 16, 16);
    btnMinimize.Move(84, 6, 16, 16);
    btnHelp.Move(8, 6, 16, 16);
    btnFromPullout.Move(118, 50, 10, 30);
    btnToPullout.Move(118, 90, 10, 30);
    btnRxPullout.Move(118, 130, 10, 30);
    btnMorePullout.Move(52, 298, 24, 16);
    Label4.Move(48, 300, 30, 12);
}

}  // namespace kw::dialer
