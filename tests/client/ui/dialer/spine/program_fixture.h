#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/engine/engine_factory.h"
#include "dravlink/simulator.h"
#include "platform/headless/headless_platform.h"
#include "platform/registry/registry.h"
#include "support/scripted_engine.h"

namespace kw::dialer::testing {

// A list of names as the engine delivers them.
automation::Variant NameList(const std::vector<std::string>& names);

// Chooses the item of that text, as a user would; the test fails when there is none.
void Choose(forms::ComboBox& box, const std::string& text);

// Records which lights a form's renderer would be told went on and off, in order.
class DisplayRecorder : public forms::FormObserver {
  public:
    void ControlChanged(forms::Control& control, forms::Property what) override;
    void FormChanged(forms::Form&, forms::FormProperty) override {}
    std::vector<std::string> lights;  // "+imgModemDetected", "-imgLogoOn", ...
};

// Hears bus events, and vetoes what it is told to.
class BusListener : public EventSubscriber {
  public:
    void KestrelwayEventSub(std::int32_t& eventId, automation::Variant& data) override;
    std::int32_t KestrelwayVetoableEventFunction(std::int32_t& eventId,
                                                 automation::Variant& data) override;
    std::vector<std::int32_t> heard;
    std::int32_t vetoAnswer = 0;
};

// A fresh program on the headless platform, with its settings in a temporary folder and the
// engine the test chooses.
class ProgramTest : public ::testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;

    // The engine the factory makes: the scripted double unless a test installs another.
    void UseEngine(std::function<std::shared_ptr<Dravlink>(const EngineContext&)> make);
    // The engine simulator on data of the test's own, seeded from the shipped sample; the last one
    // made is kept in `simulator`.
    void UseSimulator(const std::string& scenario = "");
    // Runs the clock in steps until the condition holds, a virtual minute at most.
    template <class Condition>
    bool RunUntil(Condition done, int step = 100) {
        for (int ms = 0; ms < 60000 && !done(); ms += step) {
            platform.Advance(step);
        }
        return done();
    }
    // A user whose pair the engine stored earlier.
    void StoreUser(const std::string& user, const std::string& password);
    void SetUserDword(const char* name, std::uint32_t value);
    void SetUserString(const char* name, const std::string& value);
    // A value of the user's settings as the program reads it; `value` keeps its own when absent.
    automation::Variant UserSetting(const char* name, automation::Variant value);
    // Both logs on, written to these files in the test's folder.
    void LogBothTo(const std::string& history = "history.log", const std::string& rx = "rx.log");
    // A log's lines, each ended by CR LF.
    std::vector<std::string> LogLines(const std::string& name) const;
    // The engine answers the lists as a small phone book does.
    void ScriptLists();
    // Runs Main; false when the process ended on the way.
    bool Start();
    // Starts, lets the first dial list arrive and forgets the calls made so far.
    void StartIdle();
    MainWin& Win() { return app->Form<MainWin>(); }
    std::string ReadFile(const std::filesystem::path& path) const;
    int CountBoxesWithText(const std::string& text) const;

    std::filesystem::path dir;
    headless::HeadlessPlatform platform;
    std::shared_ptr<test::ScriptedEngine> engine = std::make_shared<test::ScriptedEngine>();
    int enginesMade = 0;
    std::shared_ptr<dravlink::Simulator> simulator;
    std::unique_ptr<Application> app;
};

// A suite of `Base` run once per row of a table; each test names the row's fields as it reads
// them, and a failure prints the row.
template <class Base, class... Fields>
class Cases : public Base, public ::testing::WithParamInterface<std::tuple<Fields...>> {};

}  // namespace kw::dialer::testing
