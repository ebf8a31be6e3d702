#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "dravlink/credentials.h"
#include "dravlink/recording_sink.h"
#include "dravlink/simulator.h"
#include "platform/automation/failure.h"
#include "platform/automation/safe_array.h"
#include "platform/headless/headless_platform.h"
#include "platform/registry/registry.h"

namespace dravlink::testing {

using kw::automation::CStr;
using kw::automation::SafeArray;
using kw::automation::Variant;
using Login = std::pair<std::string, std::string>;  // a user name and its password

// A fresh data directory seeded from the shipped sample, and a settings hive of its own.
class SimulatorTest : public ::testing::Test {
  protected:
    void SetUp() override {
        dir_ = std::filesystem::temp_directory_path() /
               ("kw-dravlink-" + std::to_string(::getpid()) + "-" +
                ::testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::remove_all(dir_);
        dataDir_ = dir_ / "data";
        std::filesystem::create_directories(dir_);
        savedRegistry_ = kw::registry::DefaultConfig();
        // Passwords go to the sealed file in the test's folder, never to the desktop's keyring.
        if (const char* bus = std::getenv("DBUS_SESSION_BUS_ADDRESS")) {
            savedBus_ = bus;
            ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
        }
        kw::registry::Configure({(dir_ / "user.reg").string(), (dir_ / "system.reg").string()});
    }
    void TearDown() override {
        Stop();
        kw::registry::Configure(savedRegistry_);
        if (!savedBus_.empty())
            ::setenv("DBUS_SESSION_BUS_ADDRESS", savedBus_.c_str(), 1);
        std::filesystem::remove_all(dir_);
    }
    void Stop() {
        if (engine_)
            engine_->Unadvise();
        engine_.reset();
    }
    // Makes the engine (again), logged on as user, with the sink advised and its record cleared.
    void Start(const std::string& scenario = "", std::string user = "ana",
               std::string password = "secret") {
        Stop();
        sink_.seen.clear();
        engine_ = std::make_shared<Simulator>(platform_, Options{dataDir_, {}, scenario});
        engine_->Advise(&sink_);
        EXPECT_TRUE(kw::automation::CBool(engine_->Logon(user, password, "")));
    }
    // Builds the dial list and waits for it to arrive; gives the rows.
    Variant DialList(const std::string& location, const std::string& destination) {
        const auto before = sink_.lists.size();
        EXPECT_EQ(kw::automation::CLng(engine_->BuildDialList(location, destination)), 0);
        platform_.Advance(1000);
        EXPECT_EQ(sink_.lists.size(), before + 1) << "the dial list did not arrive";
        return sink_.lists.empty() ? Variant() : sink_.lists.back();
    }
    // Connects and lets the call run for ms of virtual time.
    std::int32_t Call(const std::string& destination, int ms = 15000) {
        DialList("Home Office", destination);
        const std::int32_t handle = kw::automation::CLng(engine_->Connect(destination, false));
        platform_.Advance(ms);
        return handle;
    }
    void Hangup(std::int32_t handle, int ms = 3000) {
        engine_->Disconnect(handle);
        platform_.Advance(ms);
    }
    // The user's login to an ISP as the engine gives it back: name and password.
    Login IspLogin(std::string user, std::string isp) {
        Variant login;
        EXPECT_TRUE(kw::automation::CBool(engine_->GetISPLogin(user, isp, login)));
        return {CStr(login.ToArray().Get(0)), CStr(login.ToArray().Get(1))};
    }
    // A value in the client's settings key, as the client writes it.
    static void StoreSetting(const std::string& name, const std::string& value) {
        namespace reg = kw::registry;
        reg::HKEY key = nullptr;
        reg::RegCreateKeyExA(reg::HKEY_CURRENT_USER, kCredentialsKey, 0, nullptr, 0,
                             reg::KEY_ALL_ACCESS, nullptr, &key, nullptr);
        reg::RegSetValueExA(key, name.c_str(), 0, reg::REG_SZ,
                            reinterpret_cast<const reg::BYTE*>(value.c_str()),
                            static_cast<reg::DWORD>(value.size() + 1));
        reg::RegCloseKey(key);
    }

    std::filesystem::path dir_, dataDir_;
    kw::headless::HeadlessPlatform platform_;
    RecordingSink sink_;
    std::shared_ptr<Simulator> engine_;

  private:
    kw::registry::RegistryConfig savedRegistry_;
    std::string savedBus_;
};

// The failure an engine call raised; number 0 when it raised none.
inline kw::automation::Failure FailureOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const kw::automation::Failure& f) {
        return f;
    }
    return kw::automation::Failure(0, "no failure");
}

inline std::vector<std::string> Column(const Variant& rows, int field) {
    std::vector<std::string> column;
    if (!rows.IsArray())
        return column;
    const SafeArray& a = rows.ToArray();
    for (std::int32_t r = a.LBound(1); r <= a.UBound(1); ++r)
        column.push_back(CStr(a.Get(r, field)));
    return column;
}

}  // namespace dravlink::testing
