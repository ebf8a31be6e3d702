#include "client/ui/dialer/shell/bitmap_file.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>

#include "platform/automation/failure.h"

namespace kw::dialer {

namespace {

constexpr int kInvalidFileFormat = 321;
constexpr std::size_t kFileHeaderSize = 14;
constexpr std::uint32_t kInfoHeaderSize = 40;
// Row offsets are kept in 16-bit integers by the shaping code's callers: no wider bitmaps.
constexpr int kMaxDimension = 32767;

[[noreturn]] void Fail(const std::string& name, const std::string& what) {
    throw automation::Failure(kInvalidFileFormat, "Invalid file format: '" + name + "' " + what);
}

std::uint32_t U32(const std::vector<std::uint8_t>& d, std::size_t at) {
    return static_cast<std::uint32_t>(d[at]) | static_cast<std::uint32_t>(d[at + 1]) << 8 |
           static_cast<std::uint32_t>(d[at + 2]) << 16 |
           static_cast<std::uint32_t>(d[at + 3]) << 24;
}

std::uint16_t U16(const std::vector<std::uint8_t>& d, std::size_t at) {
    return static_cast<std::uint16_t>(d[at] | d[at + 1] << 8);
}

std::int32_t S32(const std::vector<std::uint8_t>& d, std::size_t at) {
    const std::uint32_t u = U32(d, at);
    std::int32_t s = 0;
    std::memcpy(&s, &u, sizeof s);
    return s;
}

}  // namespace

BitmapBits ParseBitmap(const std::vector<std::uint8_t>& data, const std::string& name) {
    if (data.size() < kFileHeaderSize + kInfoHeaderSize) {
        Fail(name, "is too short for a bitmap header (" + std::to_string(data.size()) + " bytes)");
    }
    if (data[0] != 'B' || data[1] != 'M') {
        Fail(name, "is not a bitmap (no BM signature)");
    }
    const std::uint32_t pixelOffset = U32(data, 10);
    const std::uint32_t headerSize = U32(data, 14);
    if (headerSize < kInfoHeaderSize) {
        Fail(name, "has an unsupported bitmap header of " + std::to_string(headerSize) + " bytes");
    }
    if (headerSize > data.size() - kFileHeaderSize) {
        Fail(name, "is truncated: its header runs past the end of the file");
    }
    const std::int32_t width = S32(data, 18);
    const std::int32_t rawHeight = S32(data, 22);
    const std::uint16_t planes = U16(data, 26);
    const std::uint16_t bitCount = U16(data, 28);
    const std::uint32_t compression = U32(data, 30);
    const std::uint32_t coloursUsed = U32(data, 46);

    if (bitCount != 8) {
        Fail(name, "has " + std::to_string(bitCount) + " bits per pixel; 8 are needed");
    }
    if (planes != 1) {
        Fail(name, "has " + std::to_string(planes) + " planes; 1 is needed");
    }
    if (compression != 0) {
        Fail(name, "is compressed (method " + std::to_string(compression) +
                       "); only uncompressed bitmaps are read");
    }
    if (width <= 0 || width > kMaxDimension || rawHeight == 0 || rawHeight < -kMaxDimension ||
        rawHeight > kMaxDimension) {
        Fail(name, "has an unusable size of " + std::to_string(width) + " by " +
                       std::to_string(rawHeight));
    }
    if (coloursUsed > 256) {
        Fail(name, "declares " + std::to_string(coloursUsed) + " colours; at most 256 fit");
    }
    const bool topDown = rawHeight < 0;
    const int height = topDown ? -rawHeight : rawHeight;

    const std::size_t tableAt = kFileHeaderSize + headerSize;
    const std::size_t tableEntries = coloursUsed == 0 ? 256 : coloursUsed;
    if (tableAt + tableEntries * 4 > data.size()) {
        Fail(name, "is truncated: its colour table runs past the end of the file");
    }
    if (pixelOffset < tableAt + tableEntries * 4) {
        Fail(name, "has its pixel data overlapping the colour table");
    }
    const std::size_t fileStride = (static_cast<std::size_t>(width) + 3) / 4 * 4;
    const std::size_t pixelBytes = fileStride * static_cast<std::size_t>(height);
    if (pixelOffset > data.size() || data.size() - pixelOffset < pixelBytes) {
        Fail(name, "is truncated: " + std::to_string(pixelBytes) + " bytes of pixels expected");
    }

    BitmapBits bitmap;
    bitmap.width = width;
    bitmap.height = height;
    for (std::size_t i = 0; i < tableEntries; ++i) {
        const std::size_t at = tableAt + i * 4;  // stored blue, green, red, reserved
        bitmap.colours[i] = RgbColour{data[at + 2], data[at + 1], data[at]};
    }
    const std::size_t stride = static_cast<std::size_t>(bitmap.BytesPerRow());
    bitmap.bits.resize(stride * static_cast<std::size_t>(height));
    for (int y = 0; y < height; ++y) {
        const std::size_t fileRow =
            topDown ? static_cast<std::size_t>(y) : static_cast<std::size_t>(height - 1 - y);
        const auto from =
            data.begin() + static_cast<std::ptrdiff_t>(pixelOffset + fileRow * fileStride);
        std::copy(from, from + static_cast<std::ptrdiff_t>(stride),
                  bitmap.bits.begin() +
                      static_cast<std::ptrdiff_t>(static_cast<std::size_t>(y) * stride));
    }
    return bitmap;
}

BitmapBits ReadBitmapFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        throw automation::Failure(automation::err::kFileNotFound, "File not found: '" + path + "'");
    }
    // In one read: a byte at a time through the stream costs more than the rest of the start-up's
    // artwork together.
    std::vector<std::uint8_t> data;
    in.seekg(0, std::ios::end);
    const std::streamoff size = in.tellg();
    in.seekg(0, std::ios::beg);
    if (size < 0) {
        throw automation::Failure(automation::err::kDeviceIo,
                                  "Device I/O error reading '" + path + "'");
    }
    if (size > 0) {
        data.resize(static_cast<std::size_t>(size));
        in.read(reinterpret_cast<char*>(data.data()), size);
        data.resize(static_cast<std::size_t>(std::max<std::streamsize>(in.gcount(), 0)));
    }
    if (in.bad()) {
        throw automation::Failure(automation::err::kDeviceIo,
                                  "Device I/O error reading '" + path + "'");
    }
    return ParseBitmap(data, path);
}

}  // namespace kw::dialer
