#pragma once

#include <vector>

namespace kw::dialer {

// A rectangle in pixels; right and bottom are exclusive.
struct Rect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
    bool IsEmpty() const { return right <= left || bottom <= top; }
    bool operator==(const Rect&) const = default;
};

// Combine modes, numbered as the window shapes have always numbered them.
inline constexpr int RGN_AND = 1;
inline constexpr int RGN_OR = 2;
inline constexpr int RGN_XOR = 3;
inline constexpr int RGN_DIFF = 4;
inline constexpr int RGN_COPY = 5;

// A set of pixels kept as horizontal bands: each band is a run of rows that share the same
// sorted, disjoint spans. Bands are sorted top to bottom, never overlap, and two touching bands
// with equal spans are always merged, so a set of pixels has exactly one representation. That
// is the form a window mask wants (QRegion::setRects), and it makes equality a plain compare.
class Region {
    struct Band {
        int top;
        int bottom;
        std::vector<int> spans;  // left0, right0, left1, right1, ... sorted, disjoint, not touching
        bool operator==(const Band&) const = default;
    };

  public:
    Region() = default;
    // The region of one rectangle; an empty or inverted rectangle gives the empty region.
    explicit Region(const Rect& rect);
    static Region FromRect(int left, int top, int right, int bottom) {
        return Region(Rect{left, top, right, bottom});
    }

    // a <mode> b; RGN_COPY gives a. Throws Failure 5 for an unknown mode.
    static Region Combine(const Region& a, const Region& b, int mode);
    // this := this <mode> other.
    void CombineWith(const Region& other, int mode);

    void Offset(int dx, int dy);

    bool IsEmpty() const { return bands_.empty(); }
    bool Contains(int x, int y) const;
    // The smallest rectangle around the region; all zero when empty.
    Rect Bounds() const;
    // Number of pixels (64-bit: a large region can hold more than two billion).
    long long Area() const;

    // The rectangles, band by band, left to right within a band.
    std::vector<Rect> Rects() const;
    std::size_t BandCount() const { return bands_.size(); }

    // Same pixels.
    bool operator==(const Region& other) const = default;

    // Builds a region from rows whose spans are already known. Rows must be appended top to
    // bottom without overlap; spans of one row are [left, right) pairs sorted and disjoint.
    // Used where a region is made from a bitmap row by row.
    class RowBuilder {
      public:
        void AddRow(int y, const std::vector<int>& spans);
        Region Finish();

      private:
        std::vector<Band> bands_;
        int nextRow_ = 0;
        bool started_ = false;
    };

  private:
    void AppendBand(int top, int bottom, std::vector<int>&& spans);

    std::vector<Band> bands_;
};

}  // namespace kw::dialer
