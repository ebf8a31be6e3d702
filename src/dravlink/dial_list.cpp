#include "dravlink/dial_list.h"

#include <algorithm>

namespace dravlink {

namespace {

constexpr const char* kNewerPops =
    "There are newer POP numbers in the database\n.Please refresh your saved list.";

bool IsTollFree(const std::string& areaCode) {
    return areaCode == "800" || areaCode == "888" || areaCode == "877" || areaCode == "866";
}

int ToInt(const std::string& text) {
    try {
        return std::stoi(text);
    } catch (...) {
        return 0;
    }
}

bool Serves(const Destination& destination, const std::string& isp) {
    if (destination.isps.empty()) {
        return true;
    }
    return std::any_of(destination.isps.begin(), destination.isps.end(),
                       [&](const std::string& name) { return SameText(name, isp); });
}

}  // namespace

std::vector<IspRow> ComputeIspList(const Store& store, const std::string& user,
                                   const Destination& destination) {
    std::vector<IspRow> rows;
    for (const auto& isp : store.isps) {
        if (Serves(destination, isp.name)) {
            rows.push_back(IspRow{&isp, isp.enabled, 0});
        }
    }
    std::stable_sort(rows.begin(), rows.end(), [](const IspRow& a, const IspRow& b) {
        return a.isp->weight < b.isp->weight;
    });
    if (auto saved = store.savedIsps.find(IspKey(user, destination.name));
        saved != store.savedIsps.end()) {
        std::vector<IspRow> ordered;
        for (const auto& s : saved->second) {
            auto it = std::find_if(rows.begin(), rows.end(),
                                   [&](const IspRow& r) { return SameText(r.isp->name, s.name); });
            if (it != rows.end()) {
                ordered.push_back(IspRow{it->isp, s.enabled, 0});
                rows.erase(it);
            }
        }
        ordered.insert(ordered.end(), rows.begin(), rows.end());
        rows = std::move(ordered);
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
        rows[i].position = static_cast<int>(i);
    }
    return rows;
}

DialList ComputeDialList(const Store& store, const std::string& user, const Location& location,
                         const Destination& destination) {
    DialList list;
    if (location.Get("TunnelOverLAN") == "1" || destination.type == "VPN") {
        return list;  // nothing is dialled: the tunnel goes over the connection already there
    }
    const int country = ToInt(location.Get("CountryCode"));
    const std::string area = location.Get("AreaCode");

    std::vector<const Isp*> usable;
    for (const auto& row : ComputeIspList(store, user, destination)) {
        if (row.enabled) {
            usable.push_back(row.isp);
        }
    }
    auto ispOf = [&](const Pop& pop) -> const Isp* {
        for (const Isp* isp : usable) {
            if (SameText(isp->name, pop.isp)) {
                return isp;
            }
        }
        return nullptr;
    };
    const bool countryHasPops =
        std::any_of(store.pops.begin(), store.pops.end(),
                    [&](const Pop& p) { return p.countryCode == country && ispOf(p) != nullptr; });

    for (const auto& pop : store.pops) {
        const Isp* isp = ispOf(pop);
        if (isp == nullptr || (countryHasPops && pop.countryCode != country)) {
            continue;
        }
        int distance = 50;  // abroad
        if (pop.countryCode == country) {
            if (!area.empty() && pop.areaCode == area) {
                distance = 0;
            } else if (country == 1 && IsTollFree(pop.areaCode)) {
                distance = 10;
            } else {
                distance = 20;
            }
        }
        list.rows.push_back(PopRow{&pop, pop.enabled, distance + pop.cost + isp->weight});
    }
    std::stable_sort(list.rows.begin(), list.rows.end(),
                     [](const PopRow& a, const PopRow& b) { return a.weight < b.weight; });

    auto saved = store.savedPops.find(PopKey(user, location.name, destination.name));
    if (saved != store.savedPops.end()) {
        std::vector<PopRow> ordered;
        for (const auto& s : saved->second) {
            auto it = std::find_if(list.rows.begin(), list.rows.end(), [&](const PopRow& r) {
                return r.pop->number == s.number && SameText(r.pop->isp, s.isp);
            });
            if (it != list.rows.end()) {
                ordered.push_back(PopRow{it->pop, s.enabled, it->weight});
                list.rows.erase(it);
            }
        }
        if (!list.rows.empty()) {
            list.message = kNewerPops;
        }
        ordered.insert(ordered.end(), list.rows.begin(), list.rows.end());
        list.rows = std::move(ordered);
    }
    return list;
}

}  // namespace dravlink
