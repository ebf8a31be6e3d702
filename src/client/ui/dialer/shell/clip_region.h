#pragma once

#include <map>
#include <string>

#include "client/ui/dialer/shell/bitmap_file.h"
#include "client/ui/dialer/shell/region.h"

namespace kw::forms {
class Form;
class Control;
}  // namespace kw::forms

namespace kw::dialer {

// The pictures that forms name (Picture "art/MainWin.bmp"), read from the assets directory
// once each and kept.
class ArtworkLibrary {
  public:
    explicit ArtworkLibrary(std::string assetsDirectory);
    const std::string& Directory() const { return directory_; }
    // Fails with the reader's failures (53 for a missing file, 321 for a bad one).
    const BitmapBits& Bitmap(const std::string& picture) const;

  private:
    std::string directory_;
    mutable std::map<std::string, BitmapBits> cache_;
};

// Shapes a form from its artwork: `image` none shapes by the form's own picture, otherwise by
// the image control's picture at the control's place; with `useFrame` the shape starts where
// the client area starts inside the frame (frameWidth, frameHeight), so caption and frame are
// cut away. The outside colour is the form's ForeColor. The message loop gets a turn after each
// row of the picture.
void ClipToBitmap(forms::Form& form, bool useFrame, const forms::Control* image,
                  const ArtworkLibrary& art, int frameWidth, int frameHeight);

// The window region of a form as a Region (empty when it has none), and back.
Region WindowRegion(const forms::Form& form);
void SetWindowRegion(forms::Form& form, const Region& region);

}  // namespace kw::dialer
