#include "client/ui/dialer/side/rx_pullout.h"

#include "client/ui/dialer/core/application.h"

namespace kw::dialer {

RxPullout::RxPullout(Application& app) : Form(app.Platform(), "RxPullout") {
    SetCaption("RxPullout");
    Move(0, 0, 400, 232);
    txtStatus.SetLocked(true);
}

}  // namespace kw::dialer
