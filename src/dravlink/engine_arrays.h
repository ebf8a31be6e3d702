#pragma once

// The engine's data packed into the arrays the client unpacks, and the client's arrays read back.
#include <string>
#include <vector>

#include "dravlink/dial_list.h"
#include "dravlink/store.h"
#include "platform/automation/variant.h"

namespace dravlink {

using kw::automation::Variant;

// One-dimensional, from 0; Empty when there are no names.
Variant NameList(const std::vector<std::string>& names);
// The rows of a two-dimensional array from the client, their first fields as text; no rows when
// the array is missing or narrower than that.
std::vector<std::vector<std::string>> Rows(const Variant& list, int fields);
// Five values a country, one after the other: name, code, letter code, local radius, enable.
Variant CountryArray(const std::vector<Country>& countries);
// Position, id, number, name, long distance rule, same area rule.
Variant CardArray(const std::vector<CallingCard>& cards);
// Index, number, ISP, city, state, modem, enabled, weight; Empty for no rows.
Variant DialListArray(const std::vector<PopRow>& rows);
// Name, help number, website, enabled, position, weight.
Variant IspListArray(const std::vector<IspRow>& rows);

}  // namespace dravlink
