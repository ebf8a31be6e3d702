#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "client/ui/dialer/core/event_manager.h"
#include "client/ui/dialer/core/file_table.h"
#include "client/ui/dialer/engine/dravlink.h"
#include "client/ui/dialer/locations/calling_card_list.h"
#include "client/ui/dialer/locations/country_list.h"
#include "client/ui/dialer/shell/clip_region.h"
#include "platform/forms/form_set.h"
#include "platform/forms/platform.h"

namespace kw::dialer {

// The process-wide values of the program, in one object that every form reaches: a test builds a
// fresh program by building a fresh Application.
class Application {
  public:
    // The artwork and help pages are read from assetsDir.
    explicit Application(forms::Platform& platform, std::string assetsDir = DefaultAssetsDir());
    // $KESTRELWAY_ASSETS, else the assets folder the program was built with.
    static std::string DefaultAssetsDir();
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    forms::Platform& Platform() const { return platform_; }
    forms::FormSet& Forms() { return forms_; }
    // A form by its class, loaded at first touch.
    template <class F>
    F& Form() {
        return forms_.Get<F>();
    }
    FileTable& Files() { return files_; }
    const ArtworkLibrary& Art() const { return art_; }
    // Shapes a form from its artwork, with the frame metrics of this program.
    void Shape(forms::Form& form, bool useFrame, const forms::Control* image = nullptr);

    // The title the program runs under; a second instance looks for a window of this title.
    std::string Title = "Kestrelway";
    std::string HelpFile;
    // The version the program was built as: major, minor, revision.
    int Major = 0;
    int Minor = 0;
    int Revision = 0;

    std::shared_ptr<Dravlink> EngineObject;
    CEventManager EventManagerObject;
    std::shared_ptr<CountryList> CountryListObject;
    std::string InstallDir;
    std::string UserName;
    std::string Password;
    std::int16_t CallingCardId = 0;
    std::shared_ptr<CallingCardList> CallingCards;
    std::shared_ptr<CallingCard> CurrentCallingCard;
    std::shared_ptr<CountryInfo> CurrentCountry;
    std::string AlternateTunnelServer;
    // The caption of the timed box now showing.
    std::string MessageBoxCaption;
    bool StartedOnce = false;
    std::int32_t frameWidth = 0;
    std::int32_t frameHeight = 0;
    std::intptr_t OldWindowProc = 0;

  private:
    void RegisterForms();

    forms::Platform& platform_;
    forms::FormSet forms_;
    FileTable files_;
    ArtworkLibrary art_;
};

// The entry of the program: one instance, the install directory, the main window.
void Main(Application& app);
void ActivatePreviousInstance(Application& app, const std::string& title);
// Rescales a form laid out at 15 twips per pixel to the screen's twips per pixel.
void ScaleForm(forms::Form& form, forms::Platform& platform);

}  // namespace kw::dialer
