#include "client/ui/dialer/core/application.h"

#include <cmath>
#include <cstdlib>

#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/core/settings.h"
#include "client/ui/dialer/diallist/to_pullout.h"
#include "client/ui/dialer/engine/frm_get_user_info.h"
#include "client/ui/dialer/engine/frm_get_user_input.h"
#include "client/ui/dialer/engine/frm_isp_login.h"
#include "client/ui/dialer/engine/frm_login.h"
#include "client/ui/dialer/locations/from_pullout.h"
#include "client/ui/dialer/locations/pref_pullout.h"
#include "client/ui/dialer/performance/perf_pulldown.h"
#include "client/ui/dialer/shell/message_hook.h"
#include "client/ui/dialer/shell/more_pullout.h"
#include "client/ui/dialer/shell/spoken_names.h"
#include "client/ui/dialer/side/display_pullout.h"
#include "client/ui/dialer/side/frm_file_xfer.h"
#include "client/ui/dialer/side/frm_splash.h"
#include "client/ui/dialer/side/log_pullout.h"
#include "client/ui/dialer/side/rx_pullout.h"
#include "platform/registry/registry.h"

namespace kw::dialer {

namespace {
template <class F>
void RegisterForm(forms::FormSet& set, Application& app) {
    set.Register<F>([&app] {
        auto form = std::make_unique<F>(app);
        spoken::Speak(*form);
        return form;
    });
}
}  // namespace

Application::Application(forms::Platform& platform, std::string assetsDir)
    : Major(KW_VERSION_MAJOR),
      Minor(KW_VERSION_MINOR),
      Revision(KW_VERSION_PATCH),
      platform_(platform),
      art_(std::move(assetsDir)) {
    platform_.SetApplicationTitle(Title);
    // The hives stamp their keys by the same clock as everything else the program dates.
    registry::SetWallClock([&platform] { return platform.UnixTime(); });
    RegisterForms();
}

Application::~Application() {
    // The forms go with this object: the main window's hook must not reach them on the way.
    RemoveMessageHook(*this);
    registry::SetWallClock({});
}

std::string Application::DefaultAssetsDir() {
    if (const char* dir = std::getenv("KESTRELWAY_ASSETS"); dir != nullptr && *dir != '\0') {
        return dir;
    }
    return KW_DEFAULT_ASSETS_DIR;
}

void Application::Shape(forms::Form& form, bool useFrame, const forms::Control* image) {
    ClipToBitmap(form, useFrame, image, art_, frameWidth, frameHeight);
}

void Application::RegisterForms() {
    RegisterForm<MainWin>(forms_, *this);
    RegisterForm<FromPullout>(forms_, *this);
    RegisterForm<ToPullout>(forms_, *this);
    RegisterForm<RxPullout>(forms_, *this);
    RegisterForm<MorePullout>(forms_, *this);
    RegisterForm<PrefPullout>(forms_, *this);
    RegisterForm<LogPullout>(forms_, *this);
    RegisterForm<DisplayPullout>(forms_, *this);
    RegisterForm<PerfPulldown>(forms_, *this);
    RegisterForm<frmLogin>(forms_, *this);
    RegisterForm<frmISPLogin>(forms_, *this);
    RegisterForm<frmGetUserInfo>(forms_, *this);
    RegisterForm<frmGetUserInput>(forms_, *this);
    RegisterForm<frmSplash>(forms_, *this);
    RegisterForm<frmFileXfer>(forms_, *this);
}

void Main(Application& app) {
    app.StartedOnce = false;
    forms::Platform& platform = app.Platform();
    if (platform.PreviousInstanceRunning()) {
        ActivatePreviousInstance(app, app.Title);
        platform.EndProcess(0);
    }
    app.InstallDir = GetRegistryString(settings::kInstallDir, settings::kMachineKey,
                                       registry::HKEY_LOCAL_MACHINE);
    MainWin& win = app.Form<MainWin>();
    win.Show();
    if (app.Form<MainWin>().cmboFrom.ListIndex() == -1) {
        // The user begins by adding a location.
        FromPullout& from = app.Form<FromPullout>();
        from.Refresh();
        from.btnAdd_Click();
    }
}

void ActivatePreviousInstance(Application& app, const std::string& title) {
    forms::Platform& platform = app.Platform();
    const forms::WindowHandle window = platform.FindWindow("ThunderRT5Form", title);
    platform.DoEvents();
    if (window < 1) {
        return;
    }
    if (platform.GetWindowPlacement(window) == forms::show::kMinimized) {
        platform.SetWindowPlacement(window, forms::show::kNormal);
    }
    platform.SetForegroundWindow(window);
    platform.DoEvents();
}

void ScaleForm(forms::Form& form, forms::Platform& platform) {
    const int twips = platform.TwipsPerPixelX();
    if (twips == 15) {
        return;
    }
    const double factor = twips / 15.0;
    // Rounded: the designs were laid out at this density from whole artwork pixels (face::Place),
    // and rounding brings them back to those pixels.
    auto scaled = [factor](int v) { return static_cast<int>(std::lround(v * factor)); };
    form.SetWidth(scaled(form.Width()));
    form.SetHeight(scaled(form.Height()));
    for (forms::Control* c : form.Controls()) {
        try {
            if (c->Kind() == forms::ControlKind::Image) {
                c->SetLeft(scaled(c->Left()));
                c->SetTop(scaled(c->Top()));
            } else {
                c->SetHeight(scaled(c->Height()));
                c->SetWidth(scaled(c->Width()));
                c->SetFontSize(c->FontSize() * factor);
                c->SetLeft(scaled(c->Left()));
                c->SetTop(scaled(c->Top()));
            }
        } catch (const automation::Failure&) {
            // A control without one of these properties is passed over.
        }
    }
}

}  // namespace kw::dialer
