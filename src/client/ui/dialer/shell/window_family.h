#pragma once

#include <array>
#include <cstdint>

#include "client/ui/dialer/shell/pullout_table.h"

namespace kw::dialer {

class Application;
class MainWin;

// The main window's family of windows: the pullouts opened and closed beside it, the drag by its
// artwork that takes them along, minimise and restore. What only the shell needs lives here.
class WindowFamily {
  public:
    WindowFamily(Application& app, MainWin& win);

    // Hands the tabs, the round buttons and the drag surfaces of the main window their reactions.
    void Wire();

    // A tab of the main window: closes the others first, then opens its pullout or closes it.
    void TabClick(PulloutKind kind);
    // Moves the pullout to its place, cuts its shape at the first opening and shows it.
    void Open(PulloutKind kind);
    // Asks the pullout and closes it; false when it stays open.
    bool Close(PulloutKind kind);
    // Closes the pullout only when it shows; false when it refuses.
    bool CloseIfVisible(PulloutKind kind);

    void BeginDrag(int button, float x, float y);
    void Drag(int button);
    void EndDrag(int button);

    // Companions follow the window: shown with it, hidden with it, their flags untouched.
    void FollowWindowState(bool minimised);

  private:
    // Moves each open window to its place from (mx, my); false when a place does not fit.
    bool MoveFamilyTo(int mx, int my);
    void Cut(const PulloutEntry& entry, forms::Form& form);
    void WireRoundButtons();
    void WireDragSurfaces();

    Application& app_;
    MainWin& win_;
    bool dragging_ = false;
    std::int32_t dragOffsetX_ = 0;  // cursor inside the window's outer frame when the drag began
    std::int32_t dragOffsetY_ = 0;
    // Each shape is cut once, at the first opening: the windows it is cut from never change.
    std::array<bool, kPulloutCount> cut_{};
};

}  // namespace kw::dialer
