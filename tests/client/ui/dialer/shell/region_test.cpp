#include "client/ui/dialer/shell/region.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <utility>

#include "platform/automation/failure.h"
#include "platform/automation/failure_number.h"

namespace kw::dialer {
namespace {

using Pixels = std::set<std::pair<int, int>>;

Pixels PixelsOf(const Region& region) {
    Pixels p;
    for (const Rect& r : region.Rects()) {
        for (int y = r.top; y < r.bottom; ++y) {
            for (int x = r.left; x < r.right; ++x) {
                EXPECT_TRUE(p.insert({x, y}).second) << "rectangles of a region overlap";
            }
        }
    }
    return p;
}

// A pixel of the combination, from whether it lies in each of the two regions.
bool Combined(bool inA, bool inB, int mode) {
    const bool byMode[] = {inA && inB, inA || inB, inA != inB, inA && !inB, inA};
    return byMode[mode - RGN_AND];  // RGN_AND to RGN_COPY
}

// The form a window mask needs: bands top to bottom, each band's rectangles left to right with
// one top and bottom and gaps between them, and no two touching bands with the same spans.
void ExpectCanonical(const Region& region) {
    const auto rects = region.Rects();
    std::vector<std::pair<int, int>> spans, previousSpans;
    int previousBottom = 0;
    for (std::size_t i = 0; i < rects.size(); ++i) {
        const Rect& c = rects[i];
        ASSERT_FALSE(c.IsEmpty());
        const bool sameBand = i > 0 && c.top == rects[i - 1].top;
        if (sameBand) {
            ASSERT_EQ(c.bottom, rects[i - 1].bottom);
            ASSERT_GT(c.left, rects[i - 1].right) << "touching or overlapping rectangles in a band";
        } else if (i > 0) {
            ASSERT_GE(c.top, rects[i - 1].bottom) << "bands overlap or are out of order";
            previousSpans = std::exchange(spans, {});
            previousBottom = rects[i - 1].bottom;
        }
        spans.push_back({c.left, c.right});
        const bool bandEnds = i + 1 == rects.size() || rects[i + 1].top != c.top;
        if (bandEnds && c.top == previousBottom && !previousSpans.empty()) {
            EXPECT_NE(spans, previousSpans) << "unmerged bands at y " << c.top;
        }
    }
}

Region RandomRegion(std::mt19937& rng, int count) {
    std::uniform_int_distribution<int> coord(0, 20);
    // Intersections of random rectangles are mostly empty: build with the other three.
    constexpr int kModes[] = {RGN_OR, RGN_XOR, RGN_DIFF};
    Region region;
    for (int i = 0; i < count; ++i) {
        int l = coord(rng), r = coord(rng), t = coord(rng), b = coord(rng);
        if (l > r)
            std::swap(l, r);
        if (t > b)
            std::swap(t, b);
        region.CombineWith(Region::FromRect(l, t, r + 1, b + 1),
                           i == 0 ? RGN_OR : kModes[rng() % 3]);
    }
    return region;
}

TEST(RegionTest, EveryModeMatchesPixelSetsOnRandomRegions) {
    std::mt19937 rng(20240611);
    for (int round = 0; round < 300; ++round) {
        const Region a = RandomRegion(rng, 1 + round % 5);
        const Region b = RandomRegion(rng, 1 + (round / 5) % 4);
        const Pixels pa = PixelsOf(a), pb = PixelsOf(b);
        for (int mode = RGN_AND; mode <= RGN_COPY; ++mode) {
            const Region c = Region::Combine(a, b, mode);
            ExpectCanonical(c);
            const Pixels pc = PixelsOf(c);
            ASSERT_EQ(c.Area(), static_cast<long long>(pc.size()));
            for (int y = -2; y < 26; ++y) {
                for (int x = -2; x < 26; ++x) {
                    const bool want = Combined(pa.count({x, y}) > 0, pb.count({x, y}) > 0, mode);
                    ASSERT_EQ(pc.count({x, y}) > 0, want) << x << "," << y << " mode " << mode;
                    ASSERT_EQ(c.Contains(x, y), want) << x << "," << y << " mode " << mode;
                }
            }
        }
    }
}

TEST(RegionTest, EmptyDegenerateAndMoved) {
    EXPECT_TRUE(Region::FromRect(5, 5, 5, 9).IsEmpty());
    EXPECT_TRUE(Region::FromRect(5, 9, 7, 3).IsEmpty());
    EXPECT_EQ(Region().Bounds(), Rect{});

    Region ring = Region::FromRect(0, 0, 10, 10);
    ring.CombineWith(Region::FromRect(3, 3, 7, 7), RGN_DIFF);
    ring.Offset(-100, 50);
    EXPECT_TRUE(ring.Contains(-100, 50));
    EXPECT_FALSE(ring.Contains(-95, 55));
    EXPECT_EQ(ring.Bounds(), (Rect{-100, 50, -90, 60}));
}

TEST(RegionTest, AnUnknownModeOrRowsOutOfOrderAreRefused) {
    const Region box = Region::FromRect(0, 0, 2, 2);
    for (int mode : {0, 6, -1}) {
        EXPECT_EQ(FailureNumber([&] { Region::Combine(box, box, mode); }), 5) << mode;
    }
    Region::RowBuilder builder;
    builder.AddRow(3, {1, 4});
    EXPECT_THROW(builder.AddRow(2, {0, 1}), automation::Failure);
}

}  // namespace
}  // namespace kw::dialer
