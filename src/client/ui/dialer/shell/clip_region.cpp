#include "client/ui/dialer/shell/clip_region.h"

#include <utility>

#include "client/ui/dialer/core/utilities.h"
#include "client/ui/dialer/shell/bitmap_shape.h"
#include "platform/automation/failure.h"
#include "platform/forms/control.h"
#include "platform/forms/form.h"

namespace kw::dialer {

namespace {

constexpr int kInvalidPicture = 481;

RgbColour KeyColour(long colour) {
    std::int16_t red = 0;
    std::int16_t green = 0;
    std::int16_t blue = 0;
    SplitColour(static_cast<std::int32_t>(colour), red, green, blue);
    return RgbColour{static_cast<std::uint8_t>(red), static_cast<std::uint8_t>(green),
                     static_cast<std::uint8_t>(blue)};
}

}  // namespace

ArtworkLibrary::ArtworkLibrary(std::string assetsDirectory)
    : directory_(std::move(assetsDirectory)) {}

const BitmapBits& ArtworkLibrary::Bitmap(const std::string& picture) const {
    auto hit = cache_.find(picture);
    if (hit == cache_.end()) {
        const std::string path = directory_.empty() ? picture : directory_ + "/" + picture;
        hit = cache_.emplace(picture, ReadBitmapFile(path)).first;
    }
    return hit->second;
}

void ClipToBitmap(forms::Form& form, bool useFrame, const forms::Control* image,
                  const ArtworkLibrary& art, int frameWidth, int frameHeight) {
    const RgbColour keyColour = KeyColour(form.ForeColor());
    const std::string& picture = image == nullptr ? form.Picture() : image->Picture();
    if (picture.empty()) {
        throw automation::Failure(
            kInvalidPicture, "Invalid picture: " + form.Name() + " has no picture to shape by");
    }
    const BitmapBits& bitmap = art.Bitmap(picture);
    const std::uint8_t key = FindKeyIndex(bitmap.colours, keyColour);

    Rect start{0, 0, bitmap.width, bitmap.height};
    if (useFrame) {
        start =
            Rect{frameWidth, frameHeight, bitmap.width + frameWidth, bitmap.height + frameHeight};
    } else if (image != nullptr) {
        start = Rect{image->Left(), image->Top(), image->Left() + bitmap.width,
                     image->Top() + bitmap.height};
    }
    forms::Platform& platform = form.GetPlatform();
    const Region shape =
        ShapeFromBitmap(bitmap, key, start, [&platform](int) { platform.DoEvents(); });
    SetWindowRegion(form, shape);
    form.Refresh();
}

Region WindowRegion(const forms::Form& form) {
    Region region;
    if (!form.Region()) {
        return region;
    }
    for (const forms::RegionRect& r : *form.Region()) {
        region.CombineWith(Region::FromRect(r.left, r.top, r.right, r.bottom), RGN_OR);
    }
    return region;
}

void SetWindowRegion(forms::Form& form, const Region& region) {
    std::vector<forms::RegionRect> rects;
    for (const Rect& r : region.Rects()) {
        rects.push_back(forms::RegionRect{r.left, r.top, r.right, r.bottom});
    }
    form.SetRegion(std::move(rects));
}

}  // namespace kw::dialer
