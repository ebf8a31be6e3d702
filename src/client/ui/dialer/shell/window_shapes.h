#pragma once

#include "client/ui/dialer/shell/region.h"
#include "platform/forms/form.h"

namespace kw::dialer {

// A window's shape: its region, or its whole rectangle when it was never given one (a window
// without a region is all window).
Region ShapeOf(const forms::Form& form);

// Moves a window of the family, repainting it when asked.
void MoveWindow(forms::Form& form, int x, int y, int width, int height, bool repaint);

// A pullout of the main window at (x, y) of the main window's outer frame loses the part the
// main window covers, so that it seems to come from beneath it.
void CutBesideMainWin(forms::Form& pullout, const forms::Form& mainWin, int x, int y, bool repaint);

// A pullout of MorePullout at (x, y) of the main window's outer frame takes the main window and
// MorePullout, standing at (moreX, moreY), into its shape by exclusive or.
void CutBesideMorePullout(forms::Form& pullout, const forms::Form& mainWin, int x, int y,
                          const forms::Form& morePullout, int moreX, int moreY, bool repaint);

// PerfPulldown pulled down to (x, y) of the main window takes the main window's outline into
// its shape by exclusive or.
void CutPulledDown(forms::Form& pulldown, const forms::Form& mainWin, int x, int y);

}  // namespace kw::dialer
