#include "location_fixture.h"

#include <algorithm>

#include "platform/automation/safe_array.h"

namespace kw::dialer::testing {

using automation::SafeArray;
using automation::Variant;

Fields UsFields(const std::string& area, const std::string& exchange, const std::string& number) {
    return {{"CountryName", "UNITED STATES"},
            {"CountryCode", "1"},
            {"AreaCode", area},
            {"Exchange", exchange},
            {"Number", number},
            {"DisableCallWaiting", ""},
            {"LongDistanceAccess", "8"},
            {"OutSideAccess", "9"},
            {"CallingCard", "0"},
            {"ManualDial", "0"},
            {"TunnelOverLAN", "0"},
            {"ConfirmDialString", "0"}};
}

Variant CountryRows(const std::vector<CountryRow>& rows) {
    SafeArray flat = SafeArray::OneDim(0, static_cast<std::int32_t>(rows.size()) * 5 - 1);
    std::int32_t i = 0;
    for (const CountryRow& c : rows) {
        for (const Variant& v : {Variant(c.name), Variant(c.code), Variant(std::string("XX")),
                                 Variant(std::string("20")), Variant(std::string("1"))}) {
            flat.Set(i++, v);
        }
    }
    return Variant(std::move(flat));
}

void LocationTest::SetUp() {
    ProgramTest::SetUp();
    StoreUser("anna", "secret");
    engine->Default("GetPhoneList", Variant(true), {{0, NameList({"Corporate", "Lab"})}});
    stored["Home"] = UsFields("512", "555", "0100");
    stored["Hotel"] = UsFields("212", "555", "0175");
    auto args = [this] { return engine->Calls().back().args; };
    engine->OnCall("GetLocationList", [this] {
        engine->Then("GetLocationList", Variant(!order.empty()), {{0, NameList(order)}});
    });
    engine->OnCall("GetLocationProperty", [this, args] {
        const auto a = args();
        const auto it = stored.find(a[0].ToString());
        const auto pending = pending_.find(a[0].ToString());
        const Fields* fields = it != stored.end()          ? &it->second
                               : pending != pending_.end() ? &pending->second
                                                           : nullptr;
        const bool found = fields != nullptr && fields->count(a[1].ToString()) > 0;
        engine->Then("GetLocationProperty", Variant(found),
                     {{2, Variant(found ? fields->at(a[1].ToString()) : std::string())}});
    });
    engine->OnCall("SetLocationProperty", [this, args] {
        const auto a = args();
        const std::string name = a[0].ToString();
        Fields* fields = stored.count(name)     ? &stored[name]
                         : pending_.count(name) ? &pending_[name]
                                                : nullptr;
        const bool ok = fields != nullptr && refusedKeys.count(a[1].ToString()) == 0;
        if (ok) {
            (*fields)[a[1].ToString()] = a[2].ToString();
        }
        engine->Then("SetLocationProperty", Variant(ok));
    });
    engine->OnCall("LocationExists", [this, args] {
        const std::string name = args()[0].ToString();
        const bool free = stored.count(name) == 0;
        if (free) {
            pending_[name] = {};
        }
        engine->Then("LocationExists", Variant(free));
    });
    engine->OnCall("CreateLocation", [this, args] {
        const std::string name = args()[0].ToString();
        const bool ok = createWorks && pending_.count(name) > 0;
        if (ok) {
            stored[name] = pending_[name];
            order.push_back(name);
            pending_.erase(name);
        }
        engine->Then("CreateLocation", Variant(ok));
    });
    engine->OnCall("SaveLocation", [this, args] {
        engine->Then("SaveLocation", Variant(updateWorks && stored.count(args()[0].ToString())));
    });
    engine->OnCall("DeleteLocation", [this, args] {
        const std::string name = args()[0].ToString();
        stored.erase(name);
        order.erase(std::remove(order.begin(), order.end(), name), order.end());
    });
    engine->OnCall("GetPolicySetting", [this, args] {
        const auto it = policy.find(args()[1].ToString());
        const bool ok = it != policy.end() && it->second.second;
        engine->Then("GetPolicySetting", Variant(ok),
                     {{2, Variant(ok ? it->second.first : std::string())}});
    });
    engine->OnCall("GetCountryList", [this] {
        engine->Then("GetCountryList", Variant(!countries.empty()), {{0, CountryRows(countries)}});
    });
    engine->OnCall("GetCallingCardList", [this] {
        if (cards.empty()) {
            engine->Then("GetCallingCardList", Variant(false));
            return;
        }
        // Counted in 64 bits: the rows may end at the 32-bit limit.
        const std::int64_t last = std::int64_t{firstCardRow} + std::ssize(cards) - 1;
        SafeArray rows = SafeArray::TwoDim(firstCardRow, static_cast<std::int32_t>(last), 0, 5);
        std::int64_t at = firstCardRow;
        for (const CardRow& c : cards) {
            const auto r = static_cast<std::int32_t>(at++);
            rows.Set(r, 0, Variant(static_cast<std::int16_t>(c.index)));
            rows.Set(r, 1, Variant(static_cast<std::int16_t>(c.id)));
            rows.Set(r, 2, Variant(c.number));
            rows.Set(r, 3, Variant(c.name));
            rows.Set(r, 4, Variant(std::string("18005550199,,,,H,,,,1FG")));
            rows.Set(r, 5, Variant(std::string("G")));
        }
        engine->Then("GetCallingCardList", Variant(true), {{0, Variant(std::move(rows))}});
    });
}

void LocationTest::StartWithPullout() {
    StartIdle();
    if (!Win().fromShown) {
        Win().btnFromPullout.UserClick();
    }
    engine->ClearCalls();
    platform.ClearBoxes();
}

void LocationTest::Type(forms::Control& control, const std::string& text) {
    control.UserFocus();
    for (const char c : text) {
        control.UserKeyPress(static_cast<unsigned char>(c));
    }
}

void LocationTest::BeginNew(const std::string& name) {
    From().btnAdd.UserClick();
    From().cmboLocations.UserSetText(name);
}

void LocationTest::DeliverDialList() {
    if (Win().IsGettingDialList) {
        engine->RaiseGetGenericISPList("", Variant());
    }
}

void LocationTest::AnswerBoxes(int result) {
    platform.AnswerBoxes([result](const headless::BoxRecord&) { return result; });
}

std::vector<std::string> LocationTest::BoxTexts() const {
    std::vector<std::string> texts;
    for (const auto& box : platform.Boxes()) {
        texts.push_back(box.text);
    }
    return texts;
}

}  // namespace kw::dialer::testing
