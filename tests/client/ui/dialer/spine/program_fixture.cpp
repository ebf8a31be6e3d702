#include "program_fixture.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "client/ui/dialer/core/settings.h"
#include "client/ui/dialer/engine/engine_factory.h"
#include "platform/automation/safe_array.h"
#include "platform/forms/control.h"

namespace kw::dialer::testing {

using automation::SafeArray;
using automation::Variant;

Variant NameList(const std::vector<std::string>& names) {
    SafeArray list = SafeArray::OneDim(0, static_cast<std::int32_t>(names.size()) - 1);
    for (std::size_t i = 0; i < names.size(); ++i) {
        list.Set(static_cast<std::int32_t>(i), Variant(names[i]));
    }
    return Variant(std::move(list));
}

void Choose(forms::ComboBox& box, const std::string& text) {
    for (int i = 0; i < box.ListCount(); ++i) {
        if (box.List(i) == text) {
            box.UserSelect(i);
            return;
        }
    }
    FAIL() << box.Name() << " has no " << text;
}

void DisplayRecorder::ControlChanged(forms::Control& control, forms::Property what) {
    if (what == forms::Property::Visible && control.Name().rfind("img", 0) == 0) {
        lights.push_back((control.Visible() ? "+" : "-") + control.Name());
    }
}

void BusListener::KestrelwayEventSub(std::int32_t& eventId, Variant& data) {
    (void)data;
    heard.push_back(eventId);
}

std::int32_t BusListener::KestrelwayVetoableEventFunction(std::int32_t& eventId, Variant& data) {
    (void)data;
    heard.push_back(eventId);
    return vetoAnswer;
}

void ProgramTest::SetUp() {
    std::string pattern = (std::filesystem::temp_directory_path() / "kw-spine-XXXXXX").string();
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    dir = pattern;
    registry::Configure({(dir / "user.reg").string(), (dir / "system.reg").string()});
    UseEngine([this](const EngineContext&) { return engine; });
    // As the engine does, SaveUser stores the pair where LoadUserInfo reads it.
    engine->OnCall("SaveUser", [this] {
        const auto& args = engine->Calls().back().args;
        StoreUser(args[0].ToString(), args[1].ToString());
    });
    app = std::make_unique<Application>(platform);
}

void ProgramTest::TearDown() {
    app.reset();
    EngineFactory::Unregister(kDefaultEngineName);
    std::filesystem::remove_all(dir);
}

void ProgramTest::UseEngine(std::function<std::shared_ptr<Dravlink>(const EngineContext&)> make) {
    EngineFactory::Register(kDefaultEngineName, [this, make](const EngineContext& context) {
        ++enginesMade;
        return make(context);
    });
}

void ProgramTest::UseSimulator(const std::string& scenario) {
    UseEngine([this, scenario](const EngineContext& context) {
        dravlink::Options options;
        options.dataDir = dir / "dravlink";
        options.sampleDir = std::filesystem::path(KW_SOURCE_DIR) / "assets" / "dravlink";
        options.scenario = scenario;
        simulator = std::make_shared<dravlink::Simulator>(context.platform, options);
        return simulator;
    });
}

void ProgramTest::StoreUser(const std::string& user, const std::string& password) {
    SetUserString(settings::kUserName, user);
    SetUserString(settings::kPassword, password);
}

namespace {

// Writes one value of the user's settings as the program would find it there.
void SetUserValue(const char* name, registry::DWORD type, const void* data, std::size_t size) {
    registry::HKEY key = nullptr;
    ASSERT_EQ(registry::RegCreateKeyExA(registry::HKEY_CURRENT_USER, settings::kUserKey, 0, nullptr,
                                        0, registry::KEY_ALL_ACCESS, nullptr, &key, nullptr),
              0);
    registry::RegSetValueExA(key, name, 0, type, static_cast<const registry::BYTE*>(data),
                             static_cast<registry::DWORD>(size));
    registry::RegCloseKey(key);
}

}  // namespace

void ProgramTest::SetUserString(const char* name, const std::string& value) {
    SetUserValue(name, registry::REG_SZ, value.c_str(), value.size() + 1);
}

void ProgramTest::SetUserDword(const char* name, std::uint32_t value) {
    SetUserValue(name, registry::REG_DWORD, &value, sizeof value);
}

Variant ProgramTest::UserSetting(const char* name, Variant value) {
    registry::HKEY key = OpenSettingsKey(platform);
    QueryValueEx(key, name, value);
    registry::RegCloseKey(key);
    return value;
}

void ProgramTest::LogBothTo(const std::string& history, const std::string& rx) {
    SetUserDword(settings::kConnectHistorySetting, 1);
    SetUserDword(settings::kPrescriberLogSetting, 1);
    SetUserString(settings::kConnectHistoryFileName, (dir / history).string());
    SetUserString(settings::kPrescriberLogFileName, (dir / rx).string());
}

std::vector<std::string> ProgramTest::LogLines(const std::string& name) const {
    const std::string text = ReadFile(dir / name);
    std::vector<std::string> lines;
    std::size_t start = 0;
    for (std::size_t end; (end = text.find("\r\n", start)) != std::string::npos; start = end + 2) {
        lines.push_back(text.substr(start, end - start));
    }
    return lines;
}

void ProgramTest::ScriptLists() {
    engine->Default("GetPhoneList", Variant(true), {{0, NameList({"Corporate", "Lab"})}});
    engine->Default("GetLocationList", Variant(true), {{0, NameList({"Home", "Hotel"})}});
    engine->Default("GetCallingCardList", Variant(false));
}

bool ProgramTest::Start() {
    try {
        Main(*app);
        return true;
    } catch (const headless::ProcessEnded&) {
        return false;
    }
}

void ProgramTest::StartIdle() {
    ASSERT_TRUE(Start());
    engine->RaiseGetGenericISPList("", Variant());
    engine->ClearCalls();
}

std::string ProgramTest::ReadFile(const std::filesystem::path& path) const {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

int ProgramTest::CountBoxesWithText(const std::string& text) const {
    return static_cast<int>(std::count_if(platform.Boxes().begin(), platform.Boxes().end(),
                                          [&](const auto& box) { return box.text == text; }));
}

}  // namespace kw::dialer::testing
