#include "client/ui/dialer/shell/region.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <utility>

#include "platform/automation/failure.h"

namespace kw::dialer {
namespace {

using Pixels = std::set<std::pair<int, int>>;

Pixels PixelsOf(const Rect& r) {
    Pixels p;
    for (int y = r.top; y < r.bottom; ++y) {
        for (int x = r.left; x < r.right; ++x) {
            p.insert({x, y});
        }
    }
    return p;
}

Pixels PixelsOf(const Region& region) {
    Pixels p;
    for (const Rect& r : region.Rects()) {
        for (const auto& px : PixelsOf(r)) {
            EXPECT_TRUE(p.insert(px).second) << "rectangles of a region overlap";
        }
    }
    return p;
}

Pixels ApplyPixels(const Pixels& a, const Pixels& b, int mode) {
    Pixels out;
    const int lo = -2, hi = 26;
    for (int y = lo; y < hi; ++y) {
        for (int x = lo; x < hi; ++x) {
            const bool inA = a.count({x, y}) > 0;
            const bool inB = b.count({x, y}) > 0;
            bool in = false;
            switch (mode) {
                case RGN_AND: in = inA && inB; break;
                case RGN_OR: in = inA || inB; break;
                case RGN_XOR: in = inA != inB; break;
                case RGN_DIFF: in = inA && !inB; break;
                case RGN_COPY: in = inA; break;
            }
            if (in) {
                out.insert({x, y});
            }
        }
    }
    return out;
}

// The form a window mask needs: bands sorted top to bottom, rectangles of a band left to right,
// same top and bottom within a band, no two rectangles of a band touching, and no two touching
// bands with the same spans.
void ExpectCanonical(const Region& region) {
    const auto rects = region.Rects();
    for (std::size_t i = 0; i < rects.size(); ++i) {
        ASSERT_FALSE(rects[i].IsEmpty());
        if (i == 0) {
            continue;
        }
        const Rect& p = rects[i - 1];
        const Rect& c = rects[i];
        if (c.top == p.top) {
            ASSERT_EQ(c.bottom, p.bottom);
            ASSERT_GT(c.left, p.right) << "touching or overlapping rectangles in a band";
        } else {
            ASSERT_GE(c.top, p.bottom) << "bands overlap or are out of order";
        }
    }
    // Touching bands must differ in their spans.
    std::vector<std::pair<Rect, std::vector<std::pair<int, int>>>> bands;
    for (const Rect& r : rects) {
        if (bands.empty() || bands.back().first.top != r.top) {
            bands.push_back({r, {}});
        }
        bands.back().second.push_back({r.left, r.right});
    }
    for (std::size_t i = 1; i < bands.size(); ++i) {
        if (bands[i].first.top == bands[i - 1].first.bottom) {
            EXPECT_NE(bands[i].second, bands[i - 1].second) << "unmerged bands at y "
                                                            << bands[i].first.top;
        }
    }
}

Region RandomRegion(std::mt19937& rng, int count) {
    std::uniform_int_distribution<int> coord(0, 20);
    // Intersections of random rectangles are mostly empty: build with the other three.
    constexpr int kModes[] = {RGN_OR, RGN_XOR, RGN_DIFF};
    std::uniform_int_distribution<int> mode(0, 2);
    Region region;
    for (int i = 0; i < count; ++i) {
        int l = coord(rng), r = coord(rng), t = coord(rng), b = coord(rng);
        if (l > r) std::swap(l, r);
        if (t > b) std::swap(t, b);
        region.CombineWith(Region::FromRect(l, t, r + 1, b + 1), i == 0 ? RGN_OR : kModes[mode(rng)]);
    }
    return region;
}

TEST(RegionTest, EveryModeMatchesPixelSetsOnRandomRegions) {
    std::mt19937 rng(20240611);
    for (int round = 0; round < 300; ++round) {
        const Region a = RandomRegion(rng, 1 + round % 5);
        const Region b = RandomRegion(rng, 1 + (round / 5) % 4);
        const Pixels pa = PixelsOf(a);
        const Pixels pb = PixelsOf(b);
        for (int mode = RGN_AND; mode <= RGN_COPY; ++mode) {
            const Region c = Region::Combine(a, b, mode);
            const Pixels expected = ApplyPixels(pa, pb, mode);
            ExpectCanonical(c);
            ASSERT_EQ(PixelsOf(c), expected) << "round " << round << " mode " << mode;
            ASSERT_EQ(c.Area(), static_cast<long long>(PixelsOf(c).size()));
            for (int probe = 0; probe < 20; ++probe) {
                const int x = static_cast<int>(rng() % 26) - 2;
                const int y = static_cast<int>(rng() % 26) - 2;
                ASSERT_EQ(c.Contains(x, y), expected.count({x, y}) > 0);
            }
        }
    }
}

TEST(RegionTest, EqualityIsByAreaWhateverTheOrderOfConstruction) {
    // An L shape built two ways.
    Region one = Region::FromRect(0, 0, 10, 10);
    one.CombineWith(Region::FromRect(5, 5, 10, 10), RGN_DIFF);
    Region two = Region::FromRect(0, 5, 5, 10);
    two.CombineWith(Region::FromRect(0, 0, 10, 5), RGN_OR);
    EXPECT_EQ(one, two);
    EXPECT_EQ(one.Rects().size(), 2u);

    // Rows added one by one merge into a single band.
    Region rows;
    for (int y = 0; y < 8; ++y) {
        rows.CombineWith(Region::FromRect(2, y, 6, y + 1), RGN_XOR);
    }
    EXPECT_EQ(rows, Region::FromRect(2, 0, 6, 8));
    EXPECT_EQ(rows.BandCount(), 1u);

    // Side by side rectangles merge into one span.
    Region halves = Region::FromRect(0, 0, 3, 4);
    halves.CombineWith(Region::FromRect(3, 0, 7, 4), RGN_OR);
    EXPECT_EQ(halves.Rects(), (std::vector<Rect>{{0, 0, 7, 4}}));
    EXPECT_NE(halves, Region::FromRect(0, 0, 7, 5));
}

TEST(RegionTest, EmptyRegionsAndDegenerateRectangles) {
    EXPECT_TRUE(Region::FromRect(5, 5, 5, 9).IsEmpty());
    EXPECT_TRUE(Region::FromRect(5, 9, 7, 3).IsEmpty());
    const Region box = Region::FromRect(0, 0, 4, 4);
    EXPECT_TRUE(Region::Combine(box, box, RGN_XOR).IsEmpty());
    EXPECT_TRUE(Region::Combine(box, box, RGN_DIFF).IsEmpty());
    EXPECT_TRUE(Region::Combine(box, Region::FromRect(4, 0, 8, 4), RGN_AND).IsEmpty());
    EXPECT_EQ(Region::Combine(Region(), box, RGN_OR), box);
    EXPECT_EQ(Region::Combine(box, Region::FromRect(9, 9, 10, 10), RGN_COPY), box);
    EXPECT_EQ(Region().Bounds(), Rect{});
    EXPECT_EQ(Region().Area(), 0);
    EXPECT_FALSE(Region().Contains(0, 0));
}

TEST(RegionTest, OffsetMovesEveryPixel) {
    Region ring = Region::FromRect(0, 0, 10, 10);
    ring.CombineWith(Region::FromRect(3, 3, 7, 7), RGN_DIFF);
    ring.Offset(-100, 50);
    EXPECT_TRUE(ring.Contains(-100, 50));
    EXPECT_FALSE(ring.Contains(-95, 55));
    EXPECT_TRUE(ring.Contains(-91, 59));
    EXPECT_FALSE(ring.Contains(-90, 59));
    EXPECT_EQ(ring.Bounds(), (Rect{-100, 50, -90, 60}));
    EXPECT_EQ(ring.Area(), 100 - 16);
}

TEST(RegionTest, UnknownModeIsAnInvalidCall) {
    const Region box = Region::FromRect(0, 0, 2, 2);
    for (int mode : {0, 6, -1}) {
        try {
            Region::Combine(box, box, mode);
            ADD_FAILURE() << "mode " << mode << " accepted";
        } catch (const automation::Failure& failure) {
            EXPECT_EQ(failure.Number(), 5);
        }
    }
}

TEST(RegionTest, RowBuilderJoinsTouchingSpansAndRefusesRowsOutOfOrder) {
    Region::RowBuilder builder;
    builder.AddRow(0, {0, 2, 2, 5});
    builder.AddRow(1, {0, 5});
    builder.AddRow(3, {1, 1});  // an empty span leaves the row empty
    EXPECT_THROW(builder.AddRow(2, {0, 1}), automation::Failure);
    const Region region = builder.Finish();
    EXPECT_EQ(region.Rects(), (std::vector<Rect>{{0, 0, 5, 2}}));
}

}  // namespace
}  // namespace kw::dialer
