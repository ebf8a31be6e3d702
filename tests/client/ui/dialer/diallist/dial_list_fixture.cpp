#include "dial_list_fixture.h"

#include "platform/automation/safe_array.h"

namespace kw::dialer::testing {

using automation::SafeArray;
using automation::Variant;

Variant Rows(const std::vector<std::vector<std::string>>& rows, int fields) {
    SafeArray array =
        SafeArray::TwoDim(0, static_cast<std::int32_t>(rows.size()) - 1, 0, fields - 1);
    for (std::size_t r = 0; r < rows.size(); ++r) {
        for (int f = 0; f < fields; ++f) {
            array.Set(static_cast<std::int32_t>(r), f,
                      Variant(rows[r][static_cast<std::size_t>(f)]));
        }
    }
    return Variant(std::move(array));
}

void DialListTest::SetUp() {
    ProgramTest::SetUp();
    StoreUser("anna", "secret");
    ScriptLists();
    engine->OnCall("GetPolicySetting", [this] {
        const auto& [value, works] = policy[engine->Calls().back().args[1].ToString()];
        engine->Then("GetPolicySetting", Variant(works), {{2, Variant(value)}});
    });
    engine->OnCall("GetISPList", [this] {
        engine->Then("GetISPList", Variant(std::int32_t{0}), {{1, Rows(isps, 6)}});
    });
    StartIdle();
    To().Show();
    Deliver(pops);
    OnEachRequest(pops);
    engine->ClearCalls();
}

void DialListTest::Deliver(const std::vector<PopRow>& rows) {
    engine->RaiseGetGenericISPList("", rows.empty() ? Variant() : Rows(rows, 8));
}

void DialListTest::OnEachRequest(const std::vector<PopRow>& rows) {
    engine->OnCall("BuildDialList", [this, rows] { Deliver(rows); });
}

void DialListTest::Tick(int row, bool ticked, int button) {
    if (button == forms::mouse::kLeft) {
        View().UserCheck(row + 1, ticked);
    }
    View().UserMouseUp(button, 0, 12, 30);
}

void DialListTest::AnswerBoxes(int result) {
    platform.AnswerBoxes([result](const headless::BoxRecord&) { return result; });
}

std::vector<std::string> DialListTest::Texts() const {
    std::vector<std::string> texts;
    const forms::ListView& view = app->Form<ToPullout>().lstvDialList;
    for (int i = 1; i <= view.ItemCount(); ++i) {
        texts.push_back(view.Item(i).text);
    }
    return texts;
}

}  // namespace kw::dialer::testing
