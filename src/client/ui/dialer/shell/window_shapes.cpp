#include "client/ui/dialer/shell/window_shapes.h"

#include "client/ui/dialer/shell/clip_region.h"

namespace kw::dialer {

namespace {

void SetShape(forms::Form& form, const Region& shape, bool repaint) {
    SetWindowRegion(form, shape);
    if (repaint) {
        form.Refresh();
    }
}

}  // namespace

Region ShapeOf(const forms::Form& form) {
    if (!form.Region()) {
        return Region::FromRect(0, 0, form.Width(), form.Height());
    }
    return WindowRegion(form);
}

void MoveWindow(forms::Form& form, int x, int y, int width, int height, bool repaint) {
    form.Move(x, y, width, height);
    if (repaint) {
        form.Refresh();
    }
}

void CutBesideMainWin(forms::Form& pullout, const forms::Form& mainWin, int x, int y,
                      bool repaint) {
    Region main = ShapeOf(mainWin);
    main.Offset(-x, -y);
    SetShape(pullout, Region::Combine(ShapeOf(pullout), main, RGN_DIFF), repaint);
}

void CutBesideMorePullout(forms::Form& pullout, const forms::Form& mainWin, int x, int y,
                          const forms::Form& morePullout, int moreX, int moreY, bool repaint) {
    Region main = ShapeOf(mainWin);
    Region more = ShapeOf(morePullout);
    main.Offset(-x, -y);
    more.Offset(moreX - x, moreY - y);
    const Region covered = Region::Combine(main, more, RGN_OR);
    SetShape(pullout, Region::Combine(ShapeOf(pullout), covered, RGN_XOR), repaint);
}

void CutPulledDown(forms::Form& pulldown, const forms::Form& mainWin, int x, int y) {
    Region main = ShapeOf(mainWin);
    main.Offset(-x, -y);
    SetShape(pulldown, Region::Combine(ShapeOf(pulldown), main, RGN_XOR), true);
}

}  // namespace kw::dialer
