#include "client/ui/dialer/core/user_info.h"

#include <cstdio>

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/settings.h"
#include "client/ui/dialer/engine/frm_login.h"
#include "client/ui/dialer/engine/res_const.h"
#include "platform/automation/failure.h"
#include "platform/forms/platform.h"
#include "platform/registry/private_files.h"

namespace kw::dialer {

using automation::Variant;

namespace {

// Reads one of the two credential values, creating it empty when it is missing.
std::string LoadCredential(registry::HKEY key, const char* name, const std::string& current) {
    Variant value(current);
    QueryValueEx(key, name, value);
    if (value.ToString().empty()) {
        SetValueEx(Variant(std::string{}), key, name);
    }
    return GetRegistryString(name, settings::kUserKey, registry::HKEY_CURRENT_USER);
}

}  // namespace

void LoadUserInfo(Application& app) {
    app.AlternateTunnelServer = "";
    registry::HKEY key = OpenSettingsKey(app.Platform());
    app.UserName = LoadCredential(key, settings::kUserName, app.UserName);
    frmLogin& login = app.Form<frmLogin>();
    login.Shape();
    login.txtUserName.SetText(app.UserName);
    app.Password = LoadCredential(key, settings::kPassword, app.Password);

    Variant card(static_cast<std::int32_t>(app.CallingCardId));
    QueryValueEx(key, settings::kCallingCard, card);
    app.CallingCardId = card.ToInteger();

    Variant tunnel(app.AlternateTunnelServer);
    if (QueryValueEx(key, settings::kAlternateTunnelServer, tunnel) != 0) {
        app.AlternateTunnelServer = "";
    } else {
        app.AlternateTunnelServer = tunnel.ToString();
    }
    registry::RegCloseKey(key);
}

bool ReportUnusableSettings(Application& app) {
    const std::string why = registry::HiveProblem(registry::HKEY_CURRENT_USER);
    if (why.empty()) {
        return false;
    }
    const std::string file = registry::HivePath(registry::HKEY_CURRENT_USER);
    std::fprintf(stderr, "Kestrelway: cannot use the settings file %s: %s\n", file.c_str(),
                 why.c_str());
    app.Platform().MsgBox("Kestrelway cannot use its settings file\n" + file + "\n(" + why +
                              ").\nYour user name and choices cannot be kept until it is a "
                              "readable file again, or is removed.",
                          forms::mb::kOkOnly | forms::mb::kCritical | forms::mb::kSetForeground,
                          LoadResString(ResConst::kAppName));
    return true;
}

void SaveUserInfo(Application& app) {
    if (app.UserName.empty()) {
        app.Platform().MsgBox("Invalid UserName", 0x10030, LoadResString(ResConst::kAppName));
        return;
    }
    if (!app.EngineObject) {
        throw automation::Failure(automation::err::kObjectNotSet);
    }
    app.EngineObject->SaveUser(app.UserName, app.Password, "");
    registry::HKEY key = OpenSettingsKey(app.Platform());
    const std::int16_t card = app.CurrentCallingCard ? app.CurrentCallingCard->tapiIndex : 0;
    SetValueEx(Variant(card), key, settings::kCallingCard);
    SetValueEx(Variant(app.AlternateTunnelServer), key, settings::kAlternateTunnelServer);
    registry::RegCloseKey(key);
}

}  // namespace kw::dialer
