// The bitmap reader on any bytes: it reads an image whose every pixel lies inside its bits, or
// fails with the program's own failure.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "client/ui/dialer/shell/bitmap_file.h"
#include "platform/automation/failure.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::uint8_t> bytes(data, data + size);
    try {
        const kw::dialer::BitmapBits image = kw::dialer::ParseBitmap(bytes, "fuzz.bmp");
        if (image.width < 0 || image.height < 0 ||
            image.bits.size() != static_cast<std::size_t>(image.BytesPerRow()) *
                                     static_cast<std::size_t>(image.height)) {
            std::abort();
        }
        if (image.width > 0 && image.height > 0) {
            volatile std::uint8_t last = image.At(image.width - 1, image.height - 1);
            (void)last;
        }
    } catch (const kw::automation::Failure&) {
    }
    return 0;
}
