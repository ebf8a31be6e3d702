#include "client/ui/dialer/locations/country_list.h"

#include <cmath>

#include "client/ui/dialer/engine/dravlink.h"
#include "platform/automation/failure.h"
#include "platform/automation/safe_array.h"

namespace kw::dialer {

using automation::Failure;
using automation::SafeArray;
using automation::Variant;

void CountryInfo::FromVariant(const SafeArray& args) {
    const std::int32_t lower = args.LBound();
    name_ = args.Get(lower).ToString();
    set_code(args.Get(lower + 1).ToSingle());
    letterCode_ = args.Get(lower + 2).ToString();
    localRadius_ = args.Get(lower + 3).ToString();
    enable_ = args.Get(lower + 4).ToString();
}

Variant CountryInfo::asVariant() const {
    SafeArray out = SafeArray::OneDim(0, 4);
    out.Set(0, Variant(name_));
    out.Set(1, Variant(code()));
    out.Set(2, Variant(letterCode_));
    out.Set(3, Variant(localRadius_));
    out.Set(4, Variant(enable_));
    return Variant(std::move(out));
}

float CountryInfo::code() const {
    return code_.empty() ? 0.0F : Variant(code_).ToSingle();
}

void CountryInfo::set_code(float code) {
    code_ = Variant(code).ToString();
}

std::string CountryInfo::DisplayText() const {
    return name_ + " (" + code_ + ")";
}

void CountryList::SetupCountries() {
    Variant list;
    if (!GetCountryList(engine_, list).ToBoolean()) {
        return;
    }
    members_.clear();
    if (!list.IsArray()) {
        return;
    }
    const SafeArray& flat = list.ToArray();
    SafeArray work = SafeArray::OneDim(0, 4);
    // Counted in 64 bits: bounds near the 32-bit limit would overflow the step past the last row.
    for (std::int64_t i = flat.LBound(); i <= flat.UBound(); i += 5) {
        for (std::int32_t k = 0; k < 5; ++k) {
            const std::int64_t at = i + k;
            if (at > flat.UBound()) {
                throw Failure(automation::err::kSubscriptOutOfRange);
            }
            work.Set(k, flat.Get(static_cast<std::int32_t>(at)));
        }
        auto country = std::make_shared<CountryInfo>();
        country->FromVariant(work);
        Add(country, country->name());
    }
}

std::shared_ptr<CountryInfo> CountryList::FindByName(const std::string& name) const {
    for (const Member& m : members_) {
        if (m.country->name() == name) {
            return m.country;
        }
    }
    std::shared_ptr<CountryInfo> fallback;
    for (const Member& m : members_) {
        if (m.country->name() == "UNITED STATES") {
            fallback = m.country;  // the walk goes on: the last one wins
        }
    }
    return fallback;
}

std::shared_ptr<CountryInfo> CountryList::FindByCode(const std::string& code) const {
    const float wanted = Variant(code).ToSingle();
    for (const Member& m : members_) {
        if (m.country->code() == wanted) {
            return m.country;
        }
    }
    return std::make_shared<CountryInfo>();
}

std::shared_ptr<CountryInfo> CountryList::Add(std::shared_ptr<CountryInfo> country,
                                              const std::string& key) {
    if (!key.empty()) {
        for (const Member& m : members_) {
            if (m.key == key) {
                throw Failure(457,
                              "This key is already associated with an element of this "
                              "collection");
            }
        }
    }
    members_.push_back(Member{key, country});
    return country;
}

std::shared_ptr<CountryInfo> CountryList::item(int index) const {
    if (index < 1 || index > Count()) {
        throw Failure(automation::err::kInvalidCall);
    }
    return members_[static_cast<std::size_t>(index - 1)].country;
}

std::shared_ptr<CountryInfo> CountryList::item(const std::string& key) const {
    for (const Member& m : members_) {
        if (!m.key.empty() && m.key == key) {
            return m.country;
        }
    }
    throw Failure(automation::err::kInvalidCall);
}

void CountryList::remove(int index) {
    item(index);
    members_.erase(members_.begin() + (index - 1));
}

}  // namespace kw::dialer
