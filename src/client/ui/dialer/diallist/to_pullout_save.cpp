// Saving, refreshing and discarding the dial list: every path ends by asking the engine for the
// list again, so that the view shows the engine's list and never the cells' own state.

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/diallist/to_pullout.h"
#include "client/ui/dialer/engine/res_const.h"
#include "platform/automation/safe_array.h"
#include "platform/automation/strings.h"

namespace kw::dialer {

using automation::SafeArray;
using automation::Trim;
using automation::Variant;

namespace {
constexpr int kAskRefresh = forms::mb::kYesNo | forms::mb::kCritical | forms::mb::kDefaultButton2;
constexpr int kAskSave = forms::mb::kYesNo | forms::mb::kExclamation;
constexpr std::int32_t kCheckStateMask = -4096;
}  // namespace

void ToPullout::btnSaveList_Click() {
    CollectCheckBoxes();
    MainWin& win = Win();
    if (listMode_ == 0) {
        Variant list = SavedPopRows();
        app_.EngineObject->SavePOPList(win.cmboFrom.Text(), win.cmboTo.Text(), list);
        popListChanged_ = false;
    } else {
        Variant list = SavedIspRows();
        app_.EngineObject->SaveISPList(win.cmboTo.Text(), list);
        ispListChanged_ = false;
    }
    DisableSaveList();
    win.GetDialList();
}

// Rows in list order, nine fields: number, ISP, index, flag, and five empty ones.
Variant ToPullout::SavedPopRows() const {
    SafeArray rows = SafeArray::TwoDim(0, popCells_->numOfItems() - 1, 0, popFieldBound,
                                       SafeArray::ElementType::String);
    auto cell = popCells_->head()->nextCell();
    for (std::int32_t row = 0; row < popCells_->numOfItems(); ++row) {
        rows.Set(row, 0, Variant(cell->popNumber()));
        rows.Set(row, 1, Variant(cell->ispName()));
        rows.Set(row, 2, Variant(cell->popIndex));
        rows.Set(row, 3, Variant(cell->enable ? "1" : "0"));
        cell = cell->nextCell();
    }
    return Variant(std::move(rows));
}

// Rows in list order, seven fields: name, flag, position, and four empty ones.
Variant ToPullout::SavedIspRows() const {
    SafeArray rows = SafeArray::TwoDim(0, ispCells_->numOfItems() - 1, 0, ispFieldBound,
                                       SafeArray::ElementType::String);
    auto cell = ispCells_->head()->nextCell();
    for (std::int32_t row = 0; row < ispCells_->numOfItems(); ++row) {
        rows.Set(row, 0, Variant(cell->ispName()));
        rows.Set(row, 1, Variant(cell->enable ? "1" : "0"));
        rows.Set(row, 2, Variant(cell->posIndex));
        cell = cell->nextCell();
    }
    return Variant(std::move(rows));
}

// In POP mode the key has the number alone, so the search ends on the tail: POP ticks have
// reached their cells at mouse up already, and one the policy left unaccepted is not saved.
void ToPullout::CollectCheckBoxes() {
    for (int row = 0; row < lstvDialList.ItemCount(); ++row) {
        const bool ticked =
            (lstvDialList.ItemState(row, kCheckStateMask) & forms::lvis::kChecked) != 0;
        const std::string text = Trim(lstvDialList.Item(row + 1).text);
        if (listMode_ == 0) {
            CpopCell key;
            key.SetPopNumber(text);
            popCells_->find(key)->enable = ticked;
        } else {
            CispCell key;
            key.SetIspName(text);
            ispCells_->find(key)->enable = ticked;
        }
    }
}

void ToPullout::btnRefresh_Click() {
    MainWin& win = Win();
    if (win.IsConnecting) {
        return;
    }
    int answer = 0;
    if (listMode_ == 0) {
        answer = Ask(ResConst::kRefreshPopQuestion, kAskRefresh);
        if (answer == forms::mb::kResultYes) {
            // The engine takes the destination first here, unlike the save.
            app_.EngineObject->RefreshPOPList(win.cmboTo.Text(), win.cmboFrom.Text());
        }
    } else {
        answer = Ask(ResConst::kRefreshIspQuestion, kAskRefresh);
        if (answer == forms::mb::kResultYes) {
            app_.EngineObject->RefreshISPList(win.cmboTo.Text());
            ReadISPCells();
            ShowISPList();
        }
    }
    if (answer == forms::mb::kResultYes) {
        DisableSaveList();
        lstvDialList.ClearItems();
        win.GetDialList();
    }
}

bool ToPullout::ConfirmSaveList() {
    if (Ask(ResConst::kSaveDialListQuestion, kAskSave) == forms::mb::kResultYes) {
        btnSaveList_Click();
        return true;
    }
    // Discarded: the flag of the mode the option shows, which a mode change has already set.
    if (rbISP.Value()) {
        ispListChanged_ = false;
    } else {
        popListChanged_ = false;
    }
    lstvDialList.ClearItems();
    Win().GetDialList();
    DisableSaveList();
    return false;
}

void ToPullout::OnHide(bool& ok) {
    ok = true;
    if (IsListChanged() && ConfirmSaveList()) {
        ok = false;  // saved: the pullout stays open on the list read again
    }
}

std::int32_t ToPullout::KestrelwayVetoableEventFunction(std::int32_t& eventId, Variant& data) {
    (void)data;
    std::int32_t answer = 0;
    if (eventId == event::kConnectRequested && IsListChanged()) {
        // Whatever the answer, this press of Connect starts nothing: the user presses again.
        ConfirmSaveList();
        answer = kVeto;
    }
    return answer;
}

// While the list has unsaved edits the location can't change.
void ToPullout::EnableSaveList() {
    btnSaveList.SetEnabled(true);
    Win().DisableFromSelection();
}

void ToPullout::DisableSaveList() {
    btnSaveList.SetEnabled(false);
    Win().EnableFromSelection();
}

int ToPullout::Ask(int resourceId, int flags) {
    return app_.Platform().MsgBox(LoadResString(resourceId), flags,
                                  LoadResString(ResConst::kAppName));
}

}  // namespace kw::dialer
