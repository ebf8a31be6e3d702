// The four pullout buttons of MainWin: one pullout open at a time, moved and shown in one step
// at its place beside the window, each closing the others first and each able to refuse.
#include <array>

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/diallist/to_pullout.h"
#include "client/ui/dialer/locations/from_pullout.h"
#include "client/ui/dialer/shell/more_pullout.h"
#include "client/ui/dialer/shell/window_shapes.h"
#include "client/ui/dialer/side/rx_pullout.h"

namespace kw::dialer {

struct MainWin::PulloutButton {
    forms::Form& pullout;
    bool& shown;
    bool& cut;
    std::array<bool*, 3> others;                         // the flags tested before closing
    std::array<void (MainWin::*)(bool&), 3> closeFirst;  // in this order
    void (MainWin::*closeOwn)(bool&);
    forms::Image* face;  // takes btnLeft while open; none for the Prescriber
    int x;
    int y;
    bool moveRepaints;
    bool shapeRepaints;
};

void MainWin::PulloutButtonClick(const PulloutButton& b) {
    if (*b.others[0] || *b.others[1] || *b.others[2] || displayShown || logShown || prefShown) {
        // All three are asked, open or not; the first refusal ends the click, and what closed
        // before it stays closed.
        for (auto close : b.closeFirst) {
            bool ok = false;
            (this->*close)(ok);
            if (!ok) {
                return;
            }
        }
    }
    if (b.shown) {
        bool ok = false;
        (this->*b.closeOwn)(ok);
        return;
    }
    MoveWindow(b.pullout, Left() + b.x, Top() + b.y, b.pullout.ScaleWidth(),
               b.pullout.ScaleHeight(), b.moveRepaints);
    if (!b.cut) {
        // The main window's shape never changes, so one cut lasts.
        CutBesideMainWin(b.pullout, *this, b.x, b.y, b.shapeRepaints);
        b.cut = true;
    }
    b.pullout.Show();
    b.shown = true;
    if (b.face != nullptr) {
        b.face->SetPicture(btnLeft.Picture());
    }
}

void MainWin::btnFromPullout_Click() {
    PulloutButtonClick({.pullout = app_.Form<FromPullout>(),
                        .shown = fromShown,
                        .cut = fromCut_,
                        .others = {&toShown, &moreShown, &rxShown},
                        .closeFirst = {&MainWin::CloseToPullout, &MainWin::CloseMorePullout,
                                       &MainWin::CloseRxPullout},
                        .closeOwn = &MainWin::CloseFromPullout,
                        .face = &btnFromPullout,
                        .x = 90,
                        .y = 80,
                        .moveRepaints = false,
                        .shapeRepaints = true});
}

void MainWin::btnToPullout_Click() {
    PulloutButtonClick({.pullout = app_.Form<ToPullout>(),
                        .shown = toShown,
                        .cut = toCut_,
                        .others = {&fromShown, &moreShown, &rxShown},
                        .closeFirst = {&MainWin::CloseFromPullout, &MainWin::CloseMorePullout,
                                       &MainWin::CloseRxPullout},
                        .closeOwn = &MainWin::CloseToPullout,
                        .face = &btnToPullout,
                        .x = 90,
                        .y = 80,
                        .moveRepaints = true,
                        .shapeRepaints = false});
}

void MainWin::btnRxPullout_Click() {
    PulloutButtonClick({.pullout = app_.Form<RxPullout>(),
                        .shown = rxShown,
                        .cut = rxCut_,
                        .others = {&toShown, &moreShown, &fromShown},
                        .closeFirst = {&MainWin::CloseToPullout, &MainWin::CloseMorePullout,
                                       &MainWin::CloseFromPullout},
                        .closeOwn = &MainWin::CloseRxPullout,
                        .face = nullptr,
                        .x = 90,
                        .y = 80,
                        .moveRepaints = true,
                        .shapeRepaints = false});
}

void MainWin::btnMorePullout_Click() {
    PulloutButtonClick({.pullout = app_.Form<MorePullout>(),
                        .shown = moreShown,
                        .cut = moreCut_,
                        .others = {&toShown, &fromShown, &rxShown},
                        .closeFirst = {&MainWin::CloseToPullout, &MainWin::CloseFromPullout,
                                       &MainWin::CloseRxPullout},
                        .closeOwn = &MainWin::CloseMorePullout,
                        .face = &btnMorePullout,
                        .x = 114,
                        .y = 227,
                        .moveRepaints = true,
                        .shapeRepaints = false});
}

void MainWin::CloseToPullout(bool& ok) {
    ToPullout& to = app_.Form<ToPullout>();
    bool mayGo = false;
    to.OnHide(mayGo);
    ok = mayGo;
    if (!mayGo) {
        return;
    }
    to.Hide();
    toShown = false;
    btnToPullout.SetPicture(btnReg.Picture());
}

void MainWin::CloseFromPullout(bool& ok) {
    FromPullout& from = app_.Form<FromPullout>();
    bool mayGo = false;
    from.OnHide(mayGo);
    ok = mayGo;
    if (!mayGo) {
        return;
    }
    from.Hide();
    fromShown = false;
    btnFromPullout.SetPicture(btnReg.Picture());
}

void MainWin::CloseMorePullout(bool& ok) {
    MorePullout& more = app_.Form<MorePullout>();
    bool mayGo = false;
    more.OnHide(mayGo);
    ok = mayGo;
    if (!mayGo) {
        return;
    }
    more.Hide();
    moreShown = false;
    btnMorePullout.SetPicture(btnReg.Picture());
}

void MainWin::CloseRxPullout(bool& ok) {
    // The Prescriber holds nothing to lose.
    app_.Form<RxPullout>().Hide();
    rxShown = false;
    ok = true;
}

}  // namespace kw::dialer
