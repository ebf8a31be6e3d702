#include "client/ui/dialer/side/display_pullout.h"

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/core/user_info.h"
#include "client/ui/dialer/engine/login_dialog.h"
#include "client/ui/dialer/engine/progress_codes.h"
#include "client/ui/dialer/engine/res_const.h"
#include "client/ui/dialer/shell/faces.h"

namespace kw::dialer {

namespace {
// What the pullout hears: a connect about to start, and the moments that lock and free it.
constexpr std::int32_t kHeardEvents[] = {event::kConnectRequested, event::kConnectStarted,
                                         code::kLineDown, event::kGettingDialList,
                                         event::kDialListDone};

int Ask(forms::Platform& platform, const std::string& text, int flags, const std::string& caption) {
    forms::MessageBoxRequest request;
    request.text = text;
    request.flags = flags;
    request.caption = caption;
    return platform.MessageBox(request);
}
}  // namespace

}  // namespace kw::dialer

namespace kw::dialer {

DisplayPullout::DisplayPullout(Application& app)
    : Form(app.Platform(), "DisplayPullout"), app_(app) {
    SetCaption("DisplayPullout");
    SetForeColor(face::kKeyColour);
    Label1.SetCaption("Display Options");
    // The blanks leave room for Image1 in the caption.
    SSFrame1.SetCaption("      VPN User Information");
    Label2.SetCaption("Username:");
    Label3.SetCaption("Password:");
    txtPassword.SetPasswordChar('*');
    SSFrame2.SetCaption("Alternate Tunnel Server ");
    for (forms::Label* dot : {&Label4, &Label5, &Label6}) {
        dot->SetCaption(".");
    }
    // Read-only until Modify is pressed.
    for (forms::TextBox* box : {&txtUserName, &txtPassword, &txtAltTunnelServer0,
                                &txtAltTunnelServer1, &txtAltTunnelServer2, &txtAltTunnelServer3}) {
        box->SetEnabled(false);
    }
    for (forms::TextBox* octet :
         {&txtAltTunnelServer0, &txtAltTunnelServer1, &txtAltTunnelServer2, &txtAltTunnelServer3}) {
        octet->SetMaxLength(3);
    }
    btnModify.SetCaption("Modify");
    btnCancel.SetCaption("Cancel");
    btnCancel.SetEnabled(false);
    PlaceControls();
    btnModify.Click = [this] { btnModify_Click(); };
    btnCancel.Click = [this] { btnCancel_Click(); };
    txtUserName.GotFocus = [this] { SelectAllText(txtUserName); };
    txtPassword.GotFocus = [this] { SelectAllText(txtPassword); };
    const IPBoxes boxes = AltTunnelServerBoxes();
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        boxes[i]->KeyPress = [this, i](int& key) {
            std::int16_t index = static_cast<std::int16_t>(i);
            std::int16_t k = static_cast<std::int16_t>(key);
            key = HandleIPKey(app_.Platform(), index, k, AltTunnelServerBoxes(), false);
        };
    }
}

void DisplayPullout::PlaceControls() {
    namespace at = layout::displaypullout;
    SetPicture(at::kPicture);
    face::PlaceForm(*this, layout::panel::kWidth, layout::panel::kHeight);
    Image1.SetPicture(at::kIcon);
    face::Place(Label1, at::Label1);
    face::Place(SSFrame1, at::SSFrame1);
    face::Place(Image1, at::Image1);
    face::Place(Label2, at::Label2);
    face::Place(Label3, at::Label3);
    face::Place(txtUserName, at::txtUserName);
    face::Place(txtPassword, at::txtPassword);
    face::Place(SSFrame2, at::SSFrame2);
    face::Place(txtAltTunnelServer0, at::txtAltTunnelServer0);
    face::Place(Label4, at::Label4);
    face::Place(txtAltTunnelServer1, at::txtAltTunnelServer1);
    face::Place(Label5, at::Label5);
    face::Place(txtAltTunnelServer2, at::txtAltTunnelServer2);
    face::Place(Label6, at::Label6);
    face::Place(txtAltTunnelServer3, at::txtAltTunnelServer3);
    face::Place(btnModify, at::btnModify);
    face::Place(btnCancel, at::btnCancel);
    face::OnSkin({&Label1, &SSFrame1, &Label2, &Label3, &SSFrame2, &Label4, &Label5, &Label6});
    face::InWell({&txtUserName, &txtPassword, &txtAltTunnelServer0, &txtAltTunnelServer1,
                  &txtAltTunnelServer2, &txtAltTunnelServer3});
}

void DisplayPullout::Form_Load() {
    try {
        for (const std::int32_t id : kHeardEvents) {
            app_.EventManagerObject.registerForEvent(id, this);
        }
        const BitmapBits& art = app_.Art().Bitmap(layout::displaypullout::kPicture);
        face::BlendFrame(SSFrame1, art);
        face::BlendFrame(SSFrame2, art);
        // This one shapes before it scales.
        app_.Shape(*this, false);
        ScaleForm(*this, app_.Platform());
        // The boxes show what the engine holds for the user; Cancel later puts back the globals.
        std::string user;
        std::string password;
        std::string third;
        app_.EngineObject->GetUser(user, password, third);
        txtUserName.SetText(user);
        txtPassword.SetText(password);
        WriteIPFields(app_.AlternateTunnelServer, AltTunnelServerBoxes());
    } catch (const automation::Failure& failure) {
        app_.Form<MainWin>().COMErrHandler(failure);
    }
}

void DisplayPullout::Form_Unload(int& cancel) {
    (void)cancel;
    for (const std::int32_t id : kHeardEvents) {
        app_.EventManagerObject.deregisterForEvent(id, this);
    }
}

void DisplayPullout::SetFieldsEnabled(bool enabled) {
    txtUserName.SetEnabled(enabled);
    txtPassword.SetEnabled(enabled);
    for (forms::TextBox* box : AltTunnelServerBoxes()) {
        box->SetEnabled(enabled);
    }
}

void DisplayPullout::btnModify_Click() {
    LoginChanged = false;
    if (btnModify.Caption() == "Modify") {
        SetFieldsEnabled(true);
        txtUserName.SetFocus();
        SelectAllText(txtUserName);
        btnModify.SetCaption("Save");
        btnCancel.SetEnabled(true);
    } else if (btnModify.Caption() == "Save") {
        Save();
    }
}

void DisplayPullout::Save() {
    forms::Platform& platform = app_.Platform();
    if (txtUserName.Text().empty()) {
        Ask(platform, "Invalid User Name, try again!", forms::mb::kSetForeground,
            "Login Information");
        txtUserName.SetFocus();
        return;
    }
    MainWin& win = app_.Form<MainWin>();
    Dravlink& engine = *app_.EngineObject;
    if (!win.IsConnected) {
        engine.Logoff();
    }
    app_.UserName = txtUserName.Text();
    app_.Password = txtPassword.Text();
    app_.AlternateTunnelServer = ReadIPFields(AltTunnelServerBoxes());
    if (app_.AlternateTunnelServer == "0.0.0.0" || app_.AlternateTunnelServer == "...") {
        app_.AlternateTunnelServer.clear();
    }
    SaveUserInfo(app_);
    LoadUserInfo(app_);
    Ask(platform, "Your changes have been saved.", forms::mb::kSetForeground, LoadResString(29));
    btnModify.SetCaption("Modify");
    btnCancel.SetEnabled(false);
    if (!win.IsConnected) {
        engine.Logon(app_.UserName, app_.Password, "");
        win.HavePhoneList = engine.GetPhoneList(win.PhoneList).ToBoolean();
        win.FillPhoneList(win.PhoneList);
        if (win.cmboTo.ListCount() >= 1) {
            win.cmboTo.SetListIndex(0);
        }
        win.HaveLocationList = engine.GetLocationList(win.LocationList).ToBoolean();
        win.FillLocationList(win.LocationList);
        if (win.cmboFrom.ListCount() >= 1) {
            win.cmboFrom.SetListIndex(0);
        }
    }
    if (win.IsConnected) {
        // The call stands: the new login waits for its end.
        LoginChanged = true;
    }
    SetFieldsEnabled(false);
}

void DisplayPullout::btnCancel_Click() {
    txtUserName.SetText(app_.UserName);
    txtPassword.SetText(app_.Password);
    txtUserName.SetEnabled(false);
    txtPassword.SetEnabled(false);
    WriteIPFields(app_.AlternateTunnelServer, AltTunnelServerBoxes());
    for (forms::TextBox* box : AltTunnelServerBoxes()) {
        box->SetEnabled(false);
    }
    btnModify.SetCaption("Modify");
    btnCancel.SetEnabled(false);
}

bool DisplayPullout::ConfirmSaveLogin() {
    // Modify alone counts as a change: the form knows its state, not what was typed.
    const int answer = Ask(
        app_.Platform(), "The VPN information has been modified, do you wish to save the changes?",
        forms::mb::kYesNo | forms::mb::kExclamation, LoadResString(29));
    if (answer == forms::mb::kResultYes) {
        btnModify_Click();
        return true;
    }
    btnCancel_Click();
    return false;
}

void DisplayPullout::OnHide(bool& ok) {
    ok = true;
    if (IsEditing() && ConfirmSaveLogin()) {
        ok = false;
    }
}

std::int32_t DisplayPullout::KestrelwayVetoableEventFunction(std::int32_t& eventId,
                                                             automation::Variant& data) {
    (void)data;
    if (eventId == event::kConnectRequested && IsEditing() && ConfirmSaveLogin()) {
        return kVeto;
    }
    return 0;
}

void DisplayPullout::KestrelwayEventSub(std::int32_t& eventId, automation::Variant& data) {
    (void)data;
    if (eventId == event::kConnectStarted || eventId == event::kGettingDialList) {
        SetEnabled(false);
    } else if (eventId == code::kLineDown || eventId == event::kDialListDone) {
        SetEnabled(true);
    }
}

}  // namespace kw::dialer
