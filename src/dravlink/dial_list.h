#pragma once

#include <string>
#include <vector>

#include "dravlink/store.h"

namespace dravlink {

// One row of a dial list as the engine hands it over.
struct PopRow {
    const Pop* pop = nullptr;
    bool enabled = true;
    int weight = 0;
};

struct IspRow {
    const Isp* isp = nullptr;
    bool enabled = true;
    int position = 0;  // order in the user's list, from 0
};

struct DialList {
    std::vector<PopRow> rows;
    // Said to the user with the list, "" when there is nothing to tell.
    std::string message;
};

// The ISPs a destination may use, in the user's saved order when there is one, else by weight.
std::vector<IspRow> ComputeIspList(const Store& store, const std::string& user,
                                   const Destination& destination);

// The POPs to dial from a location for a destination. Without a saved ordering: the POPs of the
// location's country, those of its own area code first, then toll-free numbers, then the rest of
// the country, each group by cost (the POP's own plus its ISP's weight); from a country without
// POPs, those abroad. A saved ordering comes back as saved; POPs added since go after it, and the
// message says so.
DialList ComputeDialList(const Store& store, const std::string& user, const Location& location,
                         const Destination& destination);

}  // namespace dravlink
