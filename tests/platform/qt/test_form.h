#pragma once

#include <string>
#include <vector>

#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace kw::qt::testing {

// A small form with one control of each kind the renderer draws, and a journal of the reactions
// that ran.
class DialForm : public forms::Form {
  public:
    explicit DialForm(forms::Platform& platform) : Form(platform, "frmDial") {
        Move(40, 30, 320, 260);
        SetCaption("Dial");
        lblStatus.Move(8, 8, 200, 16);
        btnConnect.Move(8, 30, 80, 24);
        btnConnect.SetCaption("&Connect");
        btnCancel.Move(96, 30, 80, 24);
        txtUser.Move(8, 60, 120, 20);
        cmboFrom.Move(8, 86, 120, 20);
        cmboFrom.SetStyle(forms::combo::kDropdownList);
        lbChoices.Move(140, 60, 100, 60);
        chkSave.Move(8, 112, 120, 18);
        chkSave.SetCaption("Save password");
        fraDial.Move(8, 134, 150, 60);
        rbTone.SetContainer(&fraDial);
        rbTone.Move(6, 16, 60, 18);
        rbTone.SetCaption("Tone");
        rbPulse.SetContainer(&fraDial);
        rbPulse.Move(70, 16, 60, 18);
        rbPulse.SetCaption("Pulse");
        imgLight0.Move(200, 8, 12, 12);
        imgLight0.SetToolTipText("Modem");
        imgLight1.SetToolTipText("Dialing");
        imgLight1.Move(214, 8, 12, 12);
        lstvDial.Move(170, 130, 140, 80);
        barTransfer.Move(8, 200, 150, 12);
        rtfRx.Move(8, 216, 150, 36);
        lstvDial.AddColumn("isp", "ISP", 80);
        lstvDial.AddColumn("pop", "POP", 60);
        lstvDial.SetCheckboxes(true);

        btnConnect.Click = [this] { Note("btnConnect_Click"); };
        btnCancel.Click = [this] { Note("btnCancel_Click"); };
        txtUser.Change = [this] { Note("txtUser_Change:" + txtUser.Text()); };
        txtUser.KeyPress = [this](int& key) {
            if (key >= '0' && key <= '9') {
                key = 0;  // names have no digits
            } else if (key >= 'a' && key <= 'z') {
                key = key - 'a' + 'A';
            }
        };
        cmboFrom.Click = [this] { Note("cmboFrom_Click:" + cmboFrom.Text()); };
        lbChoices.Click = [this] {
            Note("lbChoices_Click:" + std::to_string(lbChoices.ListIndex()));
        };
        chkSave.Click = [this] { Note("chkSave_Click:" + std::to_string(chkSave.Value())); };
        rbTone.Click = [this] { Note("rbTone_Click"); };
        rbPulse.Click = [this] { Note("rbPulse_Click"); };
        imgLight0.MouseDown = [this](int button, int, float x, float y) {
            Note("imgLight_MouseDown:" + At(button, x, y));
        };
        imgLight0.MouseUp = [this](int, int, float, float) { Note("imgLight_MouseUp"); };
        imgLight0.Click = [this] { Note("imgLight_Click"); };
        lstvDial.ItemCheck = [this](int index) {
            Note("lstvDial_ItemCheck:" + std::to_string(index) + "=" +
                 (lstvDial.Item(index).checked ? "on" : "off"));
        };
    }

    void Note(std::string line) { journal.push_back(std::move(line)); }
    static std::string At(int button, float x, float y) {
        return std::to_string(button) + "@" + std::to_string(int(x)) + "," + std::to_string(int(y));
    }

    forms::Label lblStatus{*this, "lblStatus"};
    forms::CommandButton btnConnect{*this, "btnConnect"};
    forms::CommandButton btnCancel{*this, "btnCancel"};
    forms::TextBox txtUser{*this, "txtUser"};
    forms::ComboBox cmboFrom{*this, "cmboFrom"};
    forms::ListBox lbChoices{*this, "lbChoices"};
    forms::CheckBox chkSave{*this, "chkSave"};
    forms::Frame fraDial{*this, "fraDial"};
    forms::OptionButton rbTone{*this, "rbTone"};
    forms::OptionButton rbPulse{*this, "rbPulse"};
    forms::Image imgLight0{*this, "imgLight", 0};
    forms::Image imgLight1{*this, "imgLight", 1};
    forms::ListView lstvDial{*this, "lstvDial"};
    forms::ProgressBar barTransfer{*this, "barTransfer"};
    forms::RichTextBox rtfRx{*this, "rtfRx"};
    forms::Timer tmrBlink{*this, "tmrBlink"};

    std::vector<std::string> journal;
    std::vector<std::string> formEvents;
    int cancelClose = 0;

  protected:
    void Form_MouseDown(int button, int, float x, float y) override {
        formEvents.push_back("down:" + At(button, x, y));
    }
    void Form_MouseMove(int button, int, float x, float y) override {
        formEvents.push_back("move:" + At(button, x, y));
    }
    void Form_MouseUp(int button, int, float, float) override {
        formEvents.push_back("up:" + std::to_string(button));
    }
    void Form_QueryUnload(int& cancel, int reason) override {
        formEvents.push_back("QueryUnload:" + std::to_string(reason));
        cancel = cancelClose;
    }
    void Form_KeyPress(int& keyAscii) override {
        formEvents.push_back("KeyPress:" + std::to_string(keyAscii));
    }
};

}  // namespace kw::qt::testing
