#pragma once

#include <array>
#include <cstddef>

#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;
class MainWin;
class Pullout;

// The seven pullouts, in the order minimise and restore take them.
enum class PulloutKind { kFrom, kTo, kRx, kMore, kDisplay, kLog, kPref };
inline constexpr std::size_t kPulloutCount = 7;

// One pullout of the family: which form, where it stands, what says it is open, and how its tab
// looks. Places are pixels from the top left corner of the main window's outer frame.
struct PulloutEntry {
    PulloutKind kind;
    forms::Form& (*form)(Application&);
    Pullout& (*contract)(Application&);
    // Shows on the screen now; a form never loaded does not.
    bool (*visible)(Application&);
    bool MainWin::*shown;
    // Takes btnLeft while open and btnReg while closed; none for a tab that keeps its face.
    forms::Image MainWin::*tab;
    int x;
    int y;
    // Pulled from MorePullout rather than from the main window.
    bool ofMorePullout;
    bool moveRepaints;
    bool shapeRepaints;
    // What a tab of the main window asks to close before it opens its own, in this order.
    std::array<PulloutKind, 3> closesFirst;
};

const PulloutEntry& PulloutOf(PulloutKind kind);
// All seven, in the order of PulloutKind.
const std::array<PulloutEntry, kPulloutCount>& Pullouts();
// The drag moves MorePullout's three in an order of its own.
const std::array<PulloutKind, kPulloutCount>& DragOrder();

}  // namespace kw::dialer
