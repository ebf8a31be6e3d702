#pragma once

namespace kw::dialer {

// What every pullout answers when the window family opens or closes it.
class Pullout {
  public:
    virtual ~Pullout() = default;
    // Run as the pullout opens from closed.
    virtual void OnShow() {}
    // Asked before the pullout closes: true lets it go, false keeps it open (having asked the
    // user whatever its changes need).
    virtual void OnHide(bool& ok) = 0;
};

}  // namespace kw::dialer
