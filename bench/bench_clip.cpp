// Shaping the whole skin: the band region gathering all key runs and combining once, against
// one exclusive-or per run into the region (the way the shapes were always built).
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "client/ui/dialer/shell/artwork_layout.h"
#include "client/ui/dialer/shell/bitmap_file.h"
#include "client/ui/dialer/shell/bitmap_shape.h"

namespace {

using namespace kw::dialer;
namespace L = layout;

const std::vector<BitmapBits>& Skin() {
    static const std::vector<BitmapBits> skin = [] {
        std::vector<BitmapBits> bits;
        for (const char* picture :
             {L::mainwin::kPicture, L::login::kLoginPicture, L::login::kIspLoginPicture,
              L::perfpulldown::kPicture, L::frompullout::kPicture, L::topullout::kPicture,
              L::rxpullout::kPicture, L::morepullout::kPicture, L::logpullout::kPicture,
              L::prefpullout::kPicture, L::displaypullout::kPicture}) {
            bits.push_back(ReadBitmapFile(std::string(KW_ASSETS_DIR) + "/" + picture));
        }
        return bits;
    }();
    return skin;
}

std::uint8_t KeyOf(const BitmapBits& b) {
    return FindKeyIndex(b.colours, RgbColour{0, 255, 0});
}

void BM_ShapeBandwise(benchmark::State& state) {
    for (auto _ : state) {
        for (const BitmapBits& b : Skin()) {
            Region r = ShapeFromBitmap(b, KeyOf(b), Rect{0, 0, b.width, b.height});
            benchmark::DoNotOptimize(r);
        }
    }
}
BENCHMARK(BM_ShapeBandwise)->Unit(benchmark::kMicrosecond);

void BM_ShapeRunByRunXor(benchmark::State& state) {
    for (auto _ : state) {
        for (const BitmapBits& b : Skin()) {
            const std::uint8_t key = KeyOf(b);
            Region r = Region::FromRect(0, 0, b.width, b.height);
            const int stride = b.BytesPerRow();
            for (int y = 0; y < b.height; ++y) {
                int start = -1;
                for (int x = 0; x <= stride; ++x) {
                    const bool isKey = x < stride && b.At(x, y) == key;
                    if (isKey && start < 0) {
                        start = x;
                    } else if (!isKey && start >= 0) {
                        r.CombineWith(Region::FromRect(start, y, x, y + 1), RGN_XOR);
                        start = -1;
                    }
                }
            }
            benchmark::DoNotOptimize(r);
        }
    }
}
BENCHMARK(BM_ShapeRunByRunXor)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
