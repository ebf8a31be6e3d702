#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "client/ui/dialer/core/event_manager.h"
#include "client/ui/dialer/diallist/cisp_db_link_list.h"
#include "client/ui/dialer/diallist/cpop_db_link_list.h"
#include "client/ui/dialer/diallist/isp_list.h"
#include "client/ui/dialer/shell/pullout.h"
#include "platform/automation/variant.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::dialer {

class Application;
class MainWin;

// The dial list pullout: which ISPs and POPs are dialled, and in which order. The rows live in
// the two cell lists; the view shows them, and the user's edits reach the engine only by a save.
class ToPullout : public forms::Form, public Pullout, public EventSubscriber {
  public:
    explicit ToPullout(Application& app);

    forms::Label Label1{*this, "Label1"};
    forms::ListBox lbDestinations{*this, "lbDestinations"};
    forms::OptionButton rbPOP{*this, "rbPOP"};
    forms::OptionButton rbISP{*this, "rbISP"};
    forms::ListView lstvDialList{*this, "lstvDialList"};
    forms::Image btnUp{*this, "btnUp"};
    forms::Image btnDown{*this, "btnDown"};
    forms::CommandButton btnRefresh{*this, "btnRefresh"};
    forms::CommandButton btnSaveList{*this, "btnSaveList"};

    // The POP rows the engine computed for the location and destination; the ISP rows are read
    // anew with them.
    void UpdateDialList(const automation::Variant& list);
    void btnSaveList_Click();
    // False keeps the pullout open.
    void OnHide(bool& ok) override;

    void KestrelwayEventSub(std::int32_t& eventId, automation::Variant& data) override;
    std::int32_t KestrelwayVetoableEventFunction(std::int32_t& eventId,
                                                 automation::Variant& data) override;

    CpopDbLinkList& popCells() { return *popCells_; }
    CispDbLinkList& ispCells() { return *ispCells_; }
    std::int16_t listMode() const { return listMode_; }
    bool popListChanged() const { return popListChanged_; }
    bool ispListChanged() const { return ispListChanged_; }

    // The upper field bounds of the saved arrays.
    static constexpr std::int32_t kPopFieldBound = 8;
    static constexpr std::int32_t kIspFieldBound = 6;

  protected:
    void Form_Load() override;
    void Form_Unload(int& cancel) override;

  private:
    // Where the artwork leaves room for each control, and how each looks on it.
    void PlaceControls();
    void WireEvents();
    MainWin& Win();
    std::string UserName() const;
    // The policy value of key; false when the query failed.
    bool Policy(const std::string& key, std::string& value);

    // Rows.
    void AddPopCell(const automation::SafeArray& rows, std::int32_t row);
    void ReadISPCells();
    void ShowPOPList();
    void ShowISPList();
    void ShowCurrentList();
    void ApplyCheckBoxes();
    void SetItemCheck(int row, bool ticked);
    bool& CellEnable(int row, bool trimIsp);
    void RebuildISPInfoList();

    // Reactions.
    void lstvDialList_MouseUp(int button, int shift, float x, float y);
    void lstvDialList_DblClick();
    void lbDestinations_Click();
    void rbISP_Click();
    void rbPOP_Click();
    void btnUp_Click();
    void btnDown_Click();
    void btnRefresh_Click();
    void MovePOPDown();
    void MovePOPUp();
    void MoveISPDown();
    void MoveISPUp();
    // One move on the selected row; step is +1 down, -1 up.
    void MovePOP(int step);
    void MoveISP(int step);
    bool AcceptTick(int row, bool ticked, bool queried, const std::string& policy);

    // Saving.
    bool IsListChanged() const { return btnSaveList.Enabled(); }
    bool ConfirmSaveList();
    void EnableSaveList();
    void DisableSaveList();
    void CollectCheckBoxes();
    automation::Variant SavedPopRows() const;
    automation::Variant SavedIspRows() const;
    int Ask(int resourceId, int flags);

    Application& app_;
    std::unique_ptr<CpopDbLinkList> popCells_ = std::make_unique<CpopDbLinkList>();
    std::unique_ptr<CispDbLinkList> ispCells_ = std::make_unique<CispDbLinkList>();
    std::unique_ptr<ISPList> ispInfoList;
    std::int16_t listMode_ = 0;
    std::int32_t ispFieldBound = 0;
    std::int32_t popFieldBound = 0;
    bool ispListChanged_ = false;
    bool popListChanged_ = false;
};

}  // namespace kw::dialer
