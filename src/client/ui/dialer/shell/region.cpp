#include "client/ui/dialer/shell/region.h"

#include <algorithm>
#include <limits>

#include "platform/automation/failure.h"

namespace kw::dialer {

namespace {

bool Apply(int mode, bool inA, bool inB) {
    switch (mode) {
        case RGN_AND:
            return inA && inB;
        case RGN_OR:
            return inA || inB;
        case RGN_XOR:
            return inA != inB;
        case RGN_DIFF:
            return inA && !inB;
        default:
            return inA;
    }
}

// One sweep over the edges of both span lists; an edge is written only where the result
// changes, so the output comes out merged.
void CombineSpans(const std::vector<int>& a, const std::vector<int>& b, int mode,
                  std::vector<int>& out) {
    out.clear();
    std::size_t i = 0;
    std::size_t j = 0;
    bool inA = false;
    bool inB = false;
    bool inOut = false;
    while (i < a.size() || j < b.size()) {
        int x = 0;
        if (j >= b.size() || (i < a.size() && a[i] <= b[j])) {
            x = a[i];
        } else {
            x = b[j];
        }
        while (i < a.size() && a[i] == x) {
            inA = !inA;
            ++i;
        }
        while (j < b.size() && b[j] == x) {
            inB = !inB;
            ++j;
        }
        const bool now = Apply(mode, inA, inB);
        if (now != inOut) {
            out.push_back(x);
            inOut = now;
        }
    }
}

}  // namespace

Region::Region(const Rect& rect) {
    if (!rect.IsEmpty()) {
        bands_.push_back(Band{rect.top, rect.bottom, {rect.left, rect.right}});
    }
}

void Region::AppendBand(int top, int bottom, std::vector<int>&& spans) {
    if (spans.empty() || bottom <= top) {
        return;
    }
    if (!bands_.empty() && bands_.back().bottom == top && bands_.back().spans == spans) {
        bands_.back().bottom = bottom;
        return;
    }
    bands_.push_back(Band{top, bottom, std::move(spans)});
}

Region Region::Combine(const Region& a, const Region& b, int mode) {
    if (mode < RGN_AND || mode > RGN_COPY) {
        throw automation::Failure(automation::err::kInvalidCall);
    }
    if (mode == RGN_COPY) {
        return a;
    }
    static const std::vector<int> kNone;
    constexpr int kEnd = std::numeric_limits<int>::max();

    Region result;
    const auto& bandsA = a.bands_;
    const auto& bandsB = b.bands_;
    std::size_t i = 0;
    std::size_t j = 0;
    int y = std::numeric_limits<int>::min();
    std::vector<int> spans;
    while (i < bandsA.size() || j < bandsB.size()) {
        const int topA = i < bandsA.size() ? std::max(bandsA[i].top, y) : kEnd;
        const int topB = j < bandsB.size() ? std::max(bandsB[j].top, y) : kEnd;
        const int y0 = std::min(topA, topB);
        const bool inA = i < bandsA.size() && bandsA[i].top <= y0;
        const bool inB = j < bandsB.size() && bandsB[j].top <= y0;
        int y1 = kEnd;
        if (i < bandsA.size()) {
            y1 = std::min(y1, inA ? bandsA[i].bottom : bandsA[i].top);
        }
        if (j < bandsB.size()) {
            y1 = std::min(y1, inB ? bandsB[j].bottom : bandsB[j].top);
        }
        CombineSpans(inA ? bandsA[i].spans : kNone, inB ? bandsB[j].spans : kNone, mode, spans);
        result.AppendBand(y0, y1, std::vector<int>(spans));
        y = y1;
        if (inA && bandsA[i].bottom == y1) {
            ++i;
        }
        if (inB && bandsB[j].bottom == y1) {
            ++j;
        }
    }
    return result;
}

void Region::CombineWith(const Region& other, int mode) {
    *this = Combine(*this, other, mode);
}

void Region::Offset(int dx, int dy) {
    for (Band& band : bands_) {
        band.top += dy;
        band.bottom += dy;
        for (int& x : band.spans) {
            x += dx;
        }
    }
}

bool Region::Contains(int x, int y) const {
    const auto band = std::upper_bound(bands_.begin(), bands_.end(), y,
                                       [](int value, const Band& b) { return value < b.bottom; });
    if (band == bands_.end() || y < band->top) {
        return false;
    }
    // The number of edges at or left of x is odd exactly when x lies inside a span.
    const auto edge = std::upper_bound(band->spans.begin(), band->spans.end(), x);
    return (edge - band->spans.begin()) % 2 == 1;
}

Rect Region::Bounds() const {
    if (bands_.empty()) {
        return {};
    }
    Rect bounds{std::numeric_limits<int>::max(), bands_.front().top,
                std::numeric_limits<int>::min(), bands_.back().bottom};
    for (const Band& band : bands_) {
        bounds.left = std::min(bounds.left, band.spans.front());
        bounds.right = std::max(bounds.right, band.spans.back());
    }
    return bounds;
}

long long Region::Area() const {
    long long area = 0;
    for (const Band& band : bands_) {
        long long width = 0;
        for (std::size_t k = 0; k + 1 < band.spans.size(); k += 2) {
            width += static_cast<long long>(band.spans[k + 1]) - band.spans[k];
        }
        area += width * (static_cast<long long>(band.bottom) - band.top);
    }
    return area;
}

std::vector<Rect> Region::Rects() const {
    std::vector<Rect> rects;
    for (const Band& band : bands_) {
        for (std::size_t k = 0; k + 1 < band.spans.size(); k += 2) {
            rects.push_back(Rect{band.spans[k], band.top, band.spans[k + 1], band.bottom});
        }
    }
    return rects;
}

void Region::RowBuilder::AddRow(int y, const std::vector<int>& spans) {
    if (started_ && y < nextRow_) {
        throw automation::Failure(automation::err::kInvalidCall,
                                  "Rows of a region must be added top to bottom");
    }
    started_ = true;
    nextRow_ = y + 1;
    // Touching spans are joined and empty ones dropped, so the region stays in its one form.
    std::vector<int> merged;
    merged.reserve(spans.size());
    for (std::size_t k = 0; k + 1 < spans.size(); k += 2) {
        const int left = spans[k];
        const int right = spans[k + 1];
        if (right <= left) {
            continue;
        }
        if (!merged.empty() && left < merged.back()) {
            throw automation::Failure(automation::err::kInvalidCall,
                                      "Spans of a region row must be sorted and disjoint");
        }
        if (!merged.empty() && left == merged.back()) {
            merged.back() = right;
        } else {
            merged.push_back(left);
            merged.push_back(right);
        }
    }
    if (merged.empty()) {
        return;
    }
    if (!bands_.empty() && bands_.back().bottom == y && bands_.back().spans == merged) {
        bands_.back().bottom = y + 1;
        return;
    }
    bands_.push_back(Band{y, y + 1, std::move(merged)});
}

Region Region::RowBuilder::Finish() {
    Region region;
    region.bands_ = std::move(bands_);
    bands_.clear();
    started_ = false;
    return region;
}

}  // namespace kw::dialer
