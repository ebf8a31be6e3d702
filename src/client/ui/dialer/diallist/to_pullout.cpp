#include "client/ui/dialer/diallist/to_pullout.h"

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/engine/frm_isp_login.h"
#include "client/ui/dialer/engine/res_const.h"
#include "client/ui/dialer/shell/faces.h"
#include "platform/automation/safe_array.h"
#include "platform/automation/strings.h"

namespace kw::dialer {

using automation::CStr;
using automation::Failure;
using automation::SafeArray;
using automation::Trim;
using automation::Variant;

namespace {

// The POP columns: text (also the key) and width.
struct ColumnDef {
    const char* text;
    int width;
};
constexpr ColumnDef kPopColumns[] = {{"PhoneNumber", 75}, {"ISP", 50},   {"Weight", 30},
                                     {"City", 50},        {"State", 50}, {"Modem Type", 65}};
constexpr ColumnDef kIspColumns[] = {
    {"Name", 60}, {"Weight", 30}, {"Help Number", 68}, {"WebSite", 150}};

// The events the pullout hears, in the order it registers for them.
constexpr std::int32_t kHeardEvents[] = {event::kConnectRequested, event::kConnectStarted, 32,
                                         event::kGettingDialList, event::kDialListDone};

// The item-state mask that covers the check box, as the program passes it.
constexpr std::int32_t kCheckStateMask = -4096;

}  // namespace

ToPullout::ToPullout(Application& app) : Form(app.Platform(), "ToPullout"), app_(app) {
    SetCaption("ToPullout");
    SetForeColor(face::kKeyColour);
    Label1.SetCaption("Destination:");
    rbPOP.SetCaption("POP");
    rbISP.SetCaption("ISP");
    btnRefresh.SetCaption("Refresh");
    btnSaveList.SetCaption("Save");
    btnSaveList.SetEnabled(false);
    PlaceControls();
}

void ToPullout::PlaceControls() {
    namespace at = layout::topullout;
    SetPicture(at::kPicture);
    face::PlaceForm(*this, layout::drawer::kWidth, layout::drawer::kHeight);
    face::Place(Label1, at::Label1);
    face::Place(lbDestinations, at::lbDestinations);
    face::Place(rbPOP, at::rbPOP);
    face::Place(rbISP, at::rbISP);
    face::Place(lstvDialList, at::lstvDialList);
    face::Place(btnUp, at::btnUp);
    face::Place(btnDown, at::btnDown);
    face::Place(btnRefresh, at::btnRefresh);
    face::Place(btnSaveList, at::btnSaveList);
    btnUp.SetPicture(at::kBtnUp);
    btnDown.SetPicture(at::kBtnDown);
    face::OnSkin({&Label1, &rbPOP, &rbISP});
    face::InWell({&lbDestinations, &lstvDialList});
}

void ToPullout::Form_Load() {
    for (const std::int32_t id : kHeardEvents) {
        app_.EventManagerObject.registerForEvent(id, this);
    }
    ScaleForm(*this, app_.Platform());
    // Before any list is shown, the view heads the first two columns of the POP list.
    lstvDialList.AddColumn("PhoneNumber", "PhoneNumber", 75);
    lstvDialList.AddColumn("ISP", "ISP", 80);
    app_.Shape(*this, false);
    // A click picks the whole row, headers can be dragged, and every row has a check box.
    lstvDialList.SetExtendedStyle(lstvDialList.ExtendedStyle() | forms::lvs_ex::kCheckBoxes |
                                  forms::lvs_ex::kHeaderDragDrop | forms::lvs_ex::kFullRowSelect);
    popCells_ = std::make_unique<CpopDbLinkList>();
    ispCells_ = std::make_unique<CispDbLinkList>();
    listMode_ = 0;
    rbPOP.SetValue(true);  // before the reactions are wired: loading shows no list yet
    btnSaveList.SetEnabled(false);
    ispListChanged_ = false;
    popListChanged_ = false;
    WireEvents();
}

void ToPullout::WireEvents() {
    lbDestinations.Click = [this] { lbDestinations_Click(); };
    rbPOP.Click = [this] { rbPOP_Click(); };
    rbISP.Click = [this] { rbISP_Click(); };
    btnUp.Click = [this] { btnUp_Click(); };
    btnDown.Click = [this] { btnDown_Click(); };
    btnRefresh.Click = [this] { btnRefresh_Click(); };
    btnSaveList.Click = [this] { btnSaveList_Click(); };
    lstvDialList.MouseUp = [this](int button, int shift, float x, float y) {
        lstvDialList_MouseUp(button, shift, x, y);
    };
    lstvDialList.DblClick = [this] { lstvDialList_DblClick(); };
    // Row labels are not for editing.
    lstvDialList.BeforeLabelEdit = [](int& cancel) { cancel = 1; };
}

void ToPullout::Form_Unload(int& cancel) {
    (void)cancel;
    for (const std::int32_t id : kHeardEvents) {
        app_.EventManagerObject.deregisterForEvent(id, this);
    }
    ispInfoList.reset();
    popCells_->clearList();
    ispCells_->clearList();
}

MainWin& ToPullout::Win() {
    return app_.Form<MainWin>();
}

std::string ToPullout::UserName() const {
    return app_.UserName;
}

bool ToPullout::Policy(const std::string& key, std::string& value) {
    std::string user = UserName();
    return automation::CBool(app_.EngineObject->GetPolicySetting(user, key, value));
}

// ---- rows -----------------------------------------------------------------------------------

void ToPullout::UpdateDialList(const Variant& list) {
    lstvDialList.ClearItems();
    try {
        if (popCells_->numOfItems() > 0) {
            popCells_->clearList();
        }
        if (!list.IsEmpty()) {
            const SafeArray& rows = list.ToArray();
            for (std::int32_t row = 0; row <= rows.UBound(1); ++row) {
                AddPopCell(rows, row);
            }
        }
        ReadISPCells();
        ShowCurrentList();
    } catch (const Failure& failure) {
        Win().COMErrHandler(failure);
    }
}

void ToPullout::AddPopCell(const SafeArray& rows, std::int32_t row) {
    auto cell = std::make_shared<CpopCell>();
    cell->popIndex = CStr(rows.Get(row, 0));
    cell->SetPopNumber(CStr(rows.Get(row, 1)));
    cell->SetIspName(CStr(rows.Get(row, 2)));
    cell->city = CStr(rows.Get(row, 3));
    cell->state = CStr(rows.Get(row, 4));
    cell->modem = CStr(rows.Get(row, 5));
    cell->enable = CStr(rows.Get(row, 6)) == "1";
    cell->cost = CStr(rows.Get(row, 7));
    popFieldBound = kPopFieldBound;
    popCells_->Add(cell);
}

void ToPullout::ReadISPCells() {
    Variant list;
    app_.EngineObject->GetISPList(Win().cmboTo.Text(), list);
    if (ispCells_->numOfItems() > 0) {
        ispCells_->clearList();
    }
    // A list without rows, or a row that does not read, ends the reading without a word.
    try {
        const SafeArray& rows = list.ToArray();
        for (std::int32_t row = 0; row <= rows.UBound(1); ++row) {
            auto cell = std::make_shared<CispCell>();
            cell->SetIspName(CStr(rows.Get(row, 0)));
            cell->helpNumber = CStr(rows.Get(row, 1));
            cell->website = CStr(rows.Get(row, 2));
            cell->enable = CStr(rows.Get(row, 3)) == "1";
            cell->posIndex = CStr(rows.Get(row, 4));
            cell->sortedIndex = automation::CInt(rows.Get(row, 5));
            ispFieldBound = kIspFieldBound;
            ispCells_->Add(cell);
        }
    } catch (const Failure&) {
    }
}

void ToPullout::ShowPOPList() {
    std::string value;
    Policy("POPordering", value);
    const std::int16_t n = popCells_->numOfItems();
    const bool ordering = value == "1" && n != 0;
    btnUp.SetVisible(ordering);
    btnDown.SetVisible(ordering);
    lstvDialList.ClearColumns();
    for (const ColumnDef& column : kPopColumns) {
        lstvDialList.AddColumn(column.text, column.text, column.width);
    }
    {
        forms::ListView::Batch batch(lstvDialList);
        lstvDialList.ClearItems();
        auto cell = popCells_->head()->nextCell();
        for (std::int16_t i = 0; i < n; ++i) {
            const int index = lstvDialList.AddItem(cell->popNumber());
            lstvDialList.SetSubItem(index, 1, cell->ispName());
            lstvDialList.SetSubItem(index, 2, cell->cost);
            lstvDialList.SetSubItem(index, 3, cell->city);
            lstvDialList.SetSubItem(index, 4, cell->state);
            lstvDialList.SetSubItem(index, 5, cell->modem);
            cell = cell->nextCell();
        }
    }
    ApplyCheckBoxes();
    if (popCells_->numOfItems() == 0) {
        btnRefresh.SetEnabled(false);
    }
}

void ToPullout::ShowISPList() {
    std::string value;
    Policy("ISPordering", value);  // it rules the check boxes, not the order
    btnUp.SetVisible(false);
    btnDown.SetVisible(false);
    lstvDialList.ClearColumns();
    for (const ColumnDef& column : kIspColumns) {
        lstvDialList.AddColumn(column.text, column.text, column.width);
    }
    lstvDialList.ClearItems();
    if (ispCells_->numOfItems() == 0) {
        ReadISPCells();
    }
    {
        forms::ListView::Batch batch(lstvDialList);
        for (auto cell = ispCells_->head()->nextCell(); cell != ispCells_->tail();
             cell = cell->nextCell()) {
            const int index = lstvDialList.AddItem(cell->ispName());
            lstvDialList.SetSubItem(index, 1, std::to_string(cell->sortedIndex));
            lstvDialList.SetSubItem(index, 2, cell->helpNumber);
            lstvDialList.SetSubItem(index, 3, cell->website);
        }
    }
    ApplyCheckBoxes();
    btnRefresh.SetEnabled(true);
}

void ToPullout::ShowCurrentList() {
    if (listMode_ == 1) {
        ShowISPList();
    } else {
        ShowPOPList();
    }
}

bool& ToPullout::CellEnable(int row, bool trimIsp) {
    const forms::ListItem& item = lstvDialList.Item(row + 1);
    if (listMode_ == 1) {
        CispCell key;
        key.SetIspName(trimIsp ? Trim(item.text) : item.text);
        return ispCells_->find(key)->enable;
    }
    CpopCell key;
    key.SetPopNumber(Trim(item.text));
    key.SetIspName(Trim(lstvDialList.SubItem(row + 1, 1)));
    return popCells_->find(key)->enable;
}

void ToPullout::ApplyCheckBoxes() {
    forms::ListView::Batch batch(lstvDialList);
    for (int row = 0; row < lstvDialList.ItemCount(); ++row) {
        SetItemCheck(row, CellEnable(row, false));
    }
}

void ToPullout::SetItemCheck(int row, bool ticked) {
    forms::LvItem item;
    item.mask = forms::lvif::kState;
    item.state = ticked ? forms::lvis::kChecked : forms::lvis::kUnchecked;
    item.stateMask = kCheckStateMask;
    lstvDialList.SetItemState(row, item);
}

void ToPullout::RebuildISPInfoList() {
    // Kept as the pullout had it; nothing calls it, and nothing fills its rows.
    const auto step = [](const auto& action) {
        try {
            action();
        } catch (const Failure&) {
        }
    };
    step([this] { app_.Platform().SetCursor(forms::cursor::kHourglass); });
    step([this] { app_.Platform().DoEvents(); });
    step([this] { lstvDialList.ClearItems(); });
    step([this] { Win().GetDialList(); });
    step([this] { app_.Platform().SetCursor(forms::cursor::kDefault); });
    ispInfoList = std::make_unique<ISPList>();
    const SafeArray rows;
    for (std::int32_t row = 0; row <= rows.UBound(1); ++row) {
        step([this, &rows, row] {
            const std::string name = CStr(rows.Get(row, 2));
            if (ispInfoList->find(name, *ispInfoList)->ispName().IsEmpty()) {
                ispInfoList->Add(Variant(name), name);
            }
        });
    }
}

// ---- reactions ------------------------------------------------------------------------------

void ToPullout::lstvDialList_MouseUp(int button, int shift, float x, float y) {
    (void)shift;
    (void)x;
    (void)y;
    if (Win().IsConnecting) {
        return;
    }
    // Both are asked on every mouse up, whatever the button and the mode.
    std::string ispPolicy;
    std::string popPolicy;
    const bool ispQueried = Policy("ISPordering", ispPolicy);
    const bool popQueried = Policy("POPordering", popPolicy);
    if (button != forms::mouse::kLeft) {
        return;
    }
    const bool isp = listMode_ == 1;
    bool changed = false;
    {
        forms::ListView::Batch batch(lstvDialList);
        for (int row = 0; row < lstvDialList.ItemCount(); ++row) {
            const bool ticked =
                (lstvDialList.ItemState(row, kCheckStateMask) & forms::lvis::kChecked) != 0;
            changed = AcceptTick(row, ticked, isp ? ispQueried : popQueried,
                                 isp ? ispPolicy : popPolicy) ||
                      changed;
        }
    }
    if (changed) {
        EnableSaveList();
    }
}

// A tick that differs from its cell: "0" puts the box back, "1" or a failed query takes it, any
// other value leaves it on screen and the cell as it was. True when the cell took it.
bool ToPullout::AcceptTick(int row, bool ticked, bool queried, const std::string& policy) {
    bool& enable = CellEnable(row, true);
    if (enable == ticked) {
        return false;
    }
    if (queried && policy == "0") {
        SetItemCheck(row, !ticked);
        return false;
    }
    if (queried && policy != "1") {
        return false;
    }
    enable = ticked;
    (listMode_ == 1 ? ispListChanged_ : popListChanged_) = true;
    return true;
}

void ToPullout::lstvDialList_DblClick() {
    const int selected = lstvDialList.SelectedItem();
    if (listMode_ == 0 || selected == 0) {
        return;
    }
    std::string name = lstvDialList.Item(selected).text;
    std::string user = UserName();
    Variant login;
    if (!automation::CBool(app_.EngineObject->GetISPLogin(user, name, login))) {
        return;
    }
    frmISPLogin& dialog = app_.Form<frmISPLogin>();
    dialog.txtTitle.SetCaption(LoadResString(ResConst::kLoginInfoFor) + "\n" + name);
    dialog.txtUserName.SetText(CStr(login.ToArray().Get(0)));
    dialog.txtPassword.SetText(CStr(login.ToArray().Get(1)));
    dialog.LoginAccepted = false;
    dialog.Show(forms::kModal);
    if (dialog.LoginAccepted) {
        const bool ok = automation::CBool(app_.EngineObject->SetISPLogin(
            user, name, dialog.txtUserName.Text(), dialog.txtPassword.Text()));
        if (!ok) {
            app_.Platform().MsgBox(LoadResString(ResConst::kIspLoginChangeFailed),
                                   forms::mb::kOkOnly, LoadResString(ResConst::kAppName));
        } else if (ispListChanged_) {
            btnSaveList_Click();
        } else {
            Win().GetDialList();
        }
    }
    dialog.Unload();
}

void ToPullout::lbDestinations_Click() {
    try {
        // The destination list and the main window's combo stand at the same index.
        Win().cmboTo.SetListIndex(lbDestinations.ListIndex());
        const std::string name = lbDestinations.Text();
        std::string entryType;
        app_.EngineObject->GetEntryType(name, entryType);
        Variant list;
        app_.EngineObject->GetEntryList(list);
        std::string value;
        if (entryType == "Both" || entryType == "ISP") {
            app_.EngineObject->GetISPEntryProperty(name, "LocalPhoneNumber", value);
        }
        if (entryType == "Both" || entryType == "VPN") {
            app_.EngineObject->GetVPNEntryProperty(name, "DeviceName", value);
        }
    } catch (const Failure& failure) {
        Win().COMErrHandler(failure);
    }
}

void ToPullout::rbISP_Click() {
    if (popListChanged_) {
        ConfirmSaveList();
        popListChanged_ = false;
    }
    listMode_ = 1;
    rbISP.SetValue(true);
    rbPOP.SetValue(false);
    ShowCurrentList();
}

void ToPullout::rbPOP_Click() {
    if (ispListChanged_) {
        ConfirmSaveList();
        ispListChanged_ = false;
    }
    listMode_ = 0;
    rbPOP.SetValue(true);
    rbISP.SetValue(false);
    ShowCurrentList();
}

void ToPullout::btnUp_Click() {
    if (Win().IsConnecting || lstvDialList.ItemCount() < 2) {
        return;
    }
    EnableSaveList();  // before the move is tried: a move that does nothing leaves it enabled
    if (listMode_ == 0) {
        MovePOPUp();
    } else {
        MoveISPUp();
    }
}

void ToPullout::btnDown_Click() {
    if (Win().IsConnecting || lstvDialList.ItemCount() < 2) {
        return;
    }
    EnableSaveList();
    if (listMode_ == 0) {
        MovePOPDown();
    } else {
        MoveISPDown();
    }
}

void ToPullout::MovePOPDown() {
    MovePOP(1);
}

void ToPullout::MovePOPUp() {
    MovePOP(-1);
}

void ToPullout::MoveISPDown() {
    MoveISP(1);
}

void ToPullout::MoveISPUp() {
    MoveISP(-1);
}

void ToPullout::MovePOP(int step) {
    const int idx = lstvDialList.SelectedItem();
    if (lstvDialList.ItemCount() == 0 || idx == 0) {
        return;
    }
    CpopCell key;
    key.SetPopNumber(lstvDialList.Item(idx).text);
    key.SetIspName(lstvDialList.SubItem(idx, 1));
    if (step > 0 ? popCells_->moveDown(key) : popCells_->moveUp(key)) {
        ShowPOPList();
        lstvDialList.SetSelectedItem(idx + step);
    }
    popListChanged_ = true;
}

void ToPullout::MoveISP(int step) {
    const int idx = lstvDialList.SelectedItem();
    if (lstvDialList.ItemCount() == 0 || idx == 0) {
        return;
    }
    CispCell key;
    key.SetIspName(lstvDialList.Item(idx).text);
    if (step > 0 ? ispCells_->moveDown(key) : ispCells_->moveUp(key)) {
        ShowISPList();
        lstvDialList.SetSelectedItem(idx + step);
    }
    ispListChanged_ = true;
}

// ---- the bus --------------------------------------------------------------------------------

void ToPullout::KestrelwayEventSub(std::int32_t& eventId, Variant& data) {
    (void)data;
    if (eventId == event::kConnectStarted || eventId == event::kGettingDialList) {
        SetEnabled(false);
    } else if (eventId == 32 || eventId == event::kDialListDone) {
        SetEnabled(true);
    }
}

}  // namespace kw::dialer
