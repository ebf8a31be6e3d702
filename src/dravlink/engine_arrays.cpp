#include "dravlink/engine_arrays.h"

#include "platform/automation/safe_array.h"

namespace dravlink {

using kw::automation::CStr;
using kw::automation::SafeArray;

Variant NameList(const std::vector<std::string>& names) {
    if (names.empty()) {
        return Variant();
    }
    auto a = SafeArray::OneDim(0, static_cast<std::int32_t>(names.size()) - 1);
    for (std::size_t i = 0; i < names.size(); ++i) {
        a.Set(static_cast<std::int32_t>(i), Variant(names[i]));
    }
    return Variant(std::move(a));
}

std::vector<std::vector<std::string>> Rows(const Variant& list, int fields) {
    std::vector<std::vector<std::string>> rows;
    if (!list.IsArray() || list.ToArray().Dims() != 2) {
        return rows;
    }
    const SafeArray& a = list.ToArray();
    if (a.UBound(2) - a.LBound(2) + 1 < fields) {
        return rows;
    }
    // Counted in 64 bits, so that rows ending at the 32-bit limit end the walk.
    for (std::int64_t at = a.LBound(1); at <= a.UBound(1); ++at) {
        const auto r = static_cast<std::int32_t>(at);
        std::vector<std::string> row;
        for (int f = 0; f < fields; ++f) {
            row.push_back(CStr(a.Get(r, a.LBound(2) + f)));
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

Variant CountryArray(const std::vector<Country>& countries) {
    auto a = SafeArray::OneDim(0, static_cast<std::int32_t>(countries.size() * 5) - 1);
    std::int32_t i = 0;
    for (const auto& c : countries) {
        a.Set(i++, Variant(c.name));
        a.Set(i++, Variant(static_cast<float>(c.code)));
        a.Set(i++, Variant(c.letterCode));
        a.Set(i++, Variant(c.localRadius));
        a.Set(i++, Variant(c.enable));
    }
    return Variant(std::move(a));
}

Variant CardArray(const std::vector<CallingCard>& cards) {
    const auto n = static_cast<std::int32_t>(cards.size());
    auto a = SafeArray::TwoDim(0, n - 1, 0, 5);
    for (std::int32_t r = 0; r < n; ++r) {
        const auto& c = cards[static_cast<std::size_t>(r)];
        a.Set(r, 0, Variant(static_cast<std::int16_t>(r)));
        a.Set(r, 1, Variant(static_cast<std::int16_t>(c.id)));
        a.Set(r, 2, Variant(c.number));
        a.Set(r, 3, Variant(c.name));
        a.Set(r, 4, Variant(c.longDistanceRule));
        a.Set(r, 5, Variant(c.sameAreaRule));
    }
    return Variant(std::move(a));
}

Variant DialListArray(const std::vector<PopRow>& rows) {
    if (rows.empty()) {
        return Variant();
    }
    const auto n = static_cast<std::int32_t>(rows.size());
    auto a = SafeArray::TwoDim(0, n - 1, 0, 7);
    for (std::int32_t r = 0; r < n; ++r) {
        const PopRow& row = rows[static_cast<std::size_t>(r)];
        a.Set(r, 0, Variant(std::to_string(row.pop->index)));
        a.Set(r, 1, Variant(row.pop->number));
        a.Set(r, 2, Variant(row.pop->isp));
        a.Set(r, 3, Variant(row.pop->city));
        a.Set(r, 4, Variant(row.pop->state));
        a.Set(r, 5, Variant(row.pop->modem));
        a.Set(r, 6, Variant(row.enabled ? "1" : "0"));
        a.Set(r, 7, Variant(std::to_string(row.weight)));
    }
    return Variant(std::move(a));
}

Variant IspListArray(const std::vector<IspRow>& rows) {
    const auto n = static_cast<std::int32_t>(rows.size());
    auto a = SafeArray::TwoDim(0, n - 1, 0, 5);
    for (std::int32_t r = 0; r < n; ++r) {
        const IspRow& row = rows[static_cast<std::size_t>(r)];
        a.Set(r, 0, Variant(row.isp->name));
        a.Set(r, 1, Variant(row.isp->helpNumber));
        a.Set(r, 2, Variant(row.isp->website));
        a.Set(r, 3, Variant(row.enabled ? "1" : "0"));
        a.Set(r, 4, Variant(std::to_string(row.position)));
        a.Set(r, 5, Variant(static_cast<std::int16_t>(row.isp->weight)));
    }
    return Variant(std::move(a));
}

}  // namespace dravlink
