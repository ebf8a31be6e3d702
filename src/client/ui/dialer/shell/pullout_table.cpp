#include "client/ui/dialer/shell/pullout_table.h"

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/diallist/to_pullout.h"
#include "client/ui/dialer/locations/from_pullout.h"
#include "client/ui/dialer/locations/pref_pullout.h"
#include "client/ui/dialer/shell/more_pullout.h"
#include "client/ui/dialer/shell/pullout.h"
#include "client/ui/dialer/side/display_pullout.h"
#include "client/ui/dialer/side/log_pullout.h"
#include "client/ui/dialer/side/rx_pullout.h"

namespace kw::dialer {

namespace {

template <class F>
forms::Form& FormOf(Application& app) {
    return app.Form<F>();
}

template <class F>
Pullout& ContractOf(Application& app) {
    return app.Form<F>();
}

template <class F>
bool VisibleNow(Application& app) {
    const F* form = app.Forms().Peek<F>();
    return form != nullptr && form->IsLoaded() && form->Visible();
}

template <class F>
constexpr PulloutEntry Entry(PulloutKind kind, bool MainWin::*shown, forms::Image MainWin::*tab,
                             int x, int y, bool ofMorePullout, bool moveRepaints,
                             bool shapeRepaints, std::array<PulloutKind, 3> closesFirst) {
    return {kind, &FormOf<F>, &ContractOf<F>, &VisibleNow<F>, shown,         tab,
            x,    y,          ofMorePullout,  moveRepaints,   shapeRepaints, closesFirst};
}

using K = PulloutKind;
constexpr std::array<K, 3> kNone = {};

// kind, flag, tab, x, y, of MorePullout, move repaints, shape repaints, closes first
const std::array<PulloutEntry, kPulloutCount> kPullouts = {
    Entry<FromPullout>(K::kFrom, &MainWin::fromShown, &MainWin::btnFromPullout, 90, 80, false,
                       false, true, {K::kTo, K::kMore, K::kRx}),
    Entry<ToPullout>(K::kTo, &MainWin::toShown, &MainWin::btnToPullout, 90, 80, false, true, false,
                     {K::kFrom, K::kMore, K::kRx}),
    Entry<RxPullout>(K::kRx, &MainWin::rxShown, nullptr, 90, 80, false, true, false,
                     {K::kTo, K::kMore, K::kFrom}),
    Entry<MorePullout>(K::kMore, &MainWin::moreShown, &MainWin::btnMorePullout, 114, 227, false,
                       true, false, {K::kTo, K::kFrom, K::kRx}),
    Entry<DisplayPullout>(K::kDisplay, &MainWin::displayShown, nullptr, 114, 127, true, true, false,
                          kNone),
    Entry<LogPullout>(K::kLog, &MainWin::logShown, nullptr, 114, 127, true, true, false, kNone),
    Entry<PrefPullout>(K::kPref, &MainWin::prefShown, nullptr, 114, 127, true, true, false, kNone),
};

const std::array<PulloutKind, kPulloutCount> kDragOrder = {K::kFrom, K::kTo,      K::kRx, K::kMore,
                                                           K::kPref, K::kDisplay, K::kLog};

}  // namespace

const PulloutEntry& PulloutOf(PulloutKind kind) {
    return kPullouts[static_cast<std::size_t>(kind)];
}

const std::array<PulloutEntry, kPulloutCount>& Pullouts() {
    return kPullouts;
}

const std::array<PulloutKind, kPulloutCount>& DragOrder() {
    return kDragOrder;
}

}  // namespace kw::dialer
