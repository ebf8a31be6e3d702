#include "dravlink/simulator_fixture.h"

#include <unistd.h>

namespace dravlink::testing {

namespace fs = std::filesystem;

void RecordingSink::Add(std::string what, std::string text) {
    seen.push_back(Seen{std::move(what), std::move(text), platform_.Now()});
}

std::vector<int> RecordingSink::Codes() const {
    std::vector<int> codes;
    for (const auto& s : seen) {
        if (s.what.size() > 1 && s.what[0] == 'P') {
            codes.push_back(std::stoi(s.what.substr(1)));
        }
    }
    return codes;
}

std::vector<std::string> RecordingSink::Of(const std::string& what) const {
    std::vector<std::string> texts;
    for (const auto& s : seen) {
        if (s.what == what) {
            texts.push_back(s.text);
        }
    }
    return texts;
}

int RecordingSink::CountOf(const std::string& what) const {
    return static_cast<int>(Of(what).size());
}

void RecordingSink::CHXferUpdate(Variant&, Variant& transfer) {
    transfers.push_back(transfer);
    Add("XFER", CStr(transfer.ToArray().Get(7)));
}

void RecordingSink::ErrorEvent(std::string& message) {
    Add("E", message);
    if (onError) {
        onError(message);
    }
}

void RecordingSink::GetConnectionStatistics(Variant& ispStats, Variant& vpnStats) {
    stats.emplace_back(ispStats, vpnStats);
    Add("STATS", "");
}

void RecordingSink::GetGenericISPList(std::string& message, Variant& list) {
    lists.push_back(list);
    Add("LIST", message);
}

void RecordingSink::GetUserInfo(std::string& prompt, Variant& choices, std::string& answer) {
    Add("INFO", prompt);
    choicesOffered.clear();
    const SafeArray& a = choices.ToArray();
    for (std::int32_t i = a.LBound(); i <= a.UBound(); ++i) {
        choicesOffered.push_back(CStr(a.Get(i)));
    }
    answer = answerChoice ? answerChoice(choicesOffered) : "";
}

void RecordingSink::GetUserInput(std::string& prompt, std::string& defaultText,
                                 std::string& answer) {
    Add("INPUT", prompt);
    answer = answerInput ? answerInput(defaultText) : "";
}

void RecordingSink::GetUsernamePassword(std::string& prompt, std::string& user) {
    Add("LOGIN", prompt);
    user = answerLogin ? answerLogin(prompt, user) : "";
}

void RecordingSink::GetUserOk(std::string& message) {
    Add("OK", message);
    if (onOk) {
        onOk(message);
    }
}

void RecordingSink::GetUserYesNo(std::string& question, bool& answer) {
    Add("YESNO", question);
    answer = answerYesNo ? answerYesNo(question) : false;
}

void RecordingSink::GetUserNowLaterNever(std::string& question, std::string& answer) {
    Add("NLN", question);
    answer = answerNowLaterNever ? answerNowLaterNever(question) : "l";
}

void RecordingSink::DravDebug(std::string& text) {
    Add("DEBUG", text);
}

void RecordingSink::ProgressUpdate(std::int16_t code, std::string& text) {
    Add("P" + std::to_string(code), text);
    if (onProgress) {
        onProgress(code, text);
    }
}

void RecordingSink::StatusUpdate(std::string& text) {
    Add("S", text);
}

void SimulatorTest::SetUp() {
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    dir_ = fs::temp_directory_path() /
           ("kw-dravlink-" + std::to_string(::getpid()) + "-" + info->name());
    fs::remove_all(dir_);
    dataDir_ = dir_ / "data";
    fs::create_directories(dir_);
    savedRegistry_ = kw::registry::DefaultConfig();
    kw::registry::Configure({(dir_ / "user.reg").string(), (dir_ / "system.reg").string()});
    sink_ = std::make_unique<RecordingSink>(platform_);
}

void SimulatorTest::TearDown() {
    if (engine_) {
        engine_->Unadvise();
    }
    engine_.reset();
    kw::registry::Configure(savedRegistry_);
    fs::remove_all(dir_);
}

std::shared_ptr<Simulator> SimulatorTest::Start(const std::string& scenario,
                                                const std::string& user, const std::string& pass) {
    if (engine_) {
        engine_->Unadvise();
    }
    engine_.reset();
    engine_ = std::make_shared<Simulator>(platform_, Options{dataDir_, {}, scenario});
    engine_->Advise(sink_.get());
    std::string name = user;
    std::string password = pass;
    EXPECT_TRUE(kw::automation::CBool(engine_->Logon(name, password, "")));
    return engine_;
}

Variant SimulatorTest::DialList(const std::string& location, const std::string& destination) {
    const auto before = sink_->lists.size();
    EXPECT_EQ(kw::automation::CLng(engine_->BuildDialList(location, destination)), 0);
    platform_.Advance(1000);
    EXPECT_EQ(sink_->lists.size(), before + 1) << "the dial list did not arrive";
    return sink_->lists.empty() ? Variant() : sink_->lists.back();
}

std::int32_t SimulatorTest::Call(const std::string& destination, int ms,
                                 const std::string& location) {
    DialList(location, destination);
    const std::int32_t handle = kw::automation::CLng(engine_->Connect(destination, false));
    platform_.Advance(ms);
    return handle;
}

void SimulatorTest::Hangup(std::int32_t handle, int ms) {
    engine_->Disconnect(handle);
    platform_.Advance(ms);
}

std::vector<std::string> Column(const Variant& rows, int field) {
    std::vector<std::string> column;
    if (!rows.IsArray()) {
        return column;
    }
    const SafeArray& a = rows.ToArray();
    for (std::int32_t r = a.LBound(1); r <= a.UBound(1); ++r) {
        column.push_back(CStr(a.Get(r, field)));
    }
    return column;
}

}  // namespace dravlink::testing
