#include "link/engine_fixture.h"

#include <algorithm>

#include "platform/automation/variant.h"

namespace kw::link::testing {

std::vector<int> Listener::Codes() const {
    std::vector<int> codes;
    for (const auto& h : heard) {
        if (h.what.size() > 1 && h.what[0] == 'P') {
            codes.push_back(std::stoi(h.what.substr(1)));
        }
    }
    return codes;
}

std::vector<std::string> Listener::Of(const std::string& what) const {
    std::vector<std::string> texts;
    for (const auto& h : heard) {
        if (h.what == what) {
            texts.push_back(h.text);
        }
    }
    return texts;
}

std::string Listener::Add(std::string what, std::string text) {
    heard.push_back(Heard{std::move(what), std::move(text), clock_.elapsed()});
    const Heard event = heard.back();  // the hook may bring more events
    return answerWith ? answerWith(event) : std::string();
}

void EngineProcessTest::SetUp() {
    dir = std::filesystem::temp_directory_path() /
          ("kw-link-" + std::to_string(::getpid()) + "-" +
           ::testing::UnitTest::GetInstance()->current_test_info()->name());
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
}

void EngineProcessTest::TearDown() {
    if (engine) {
        engine->Unadvise();
    }
    engine.reset();
    bus.reset();
    std::filesystem::remove_all(dir);
}

void EngineProcessTest::Start(PrivateBus::Setup setup) {
    bus = std::make_unique<PrivateBus>(dir, setup);
    engine = std::make_shared<BusDravlink>(nullptr, bus->Address());
    engine->Advise(&listener);
    std::string user = "ana";
    std::string password = "secret";
    ASSERT_TRUE(automation::CBool(engine->Logon(user, password, "")));
}

std::int32_t EngineProcessTest::Dial(dialer::Dravlink& e, Listener& l,
                                     const std::string& destination) {
    const auto lists = l.Count("LIST");
    EXPECT_EQ(automation::CLng(e.BuildDialList("Home Office", destination)), 0);
    EXPECT_TRUE(RunUntil([&] { return l.Count("LIST") > lists; })) << "the dial list arrives";
    return automation::CLng(e.Connect(destination, false));
}

}  // namespace kw::link::testing
