#include "link/engine_fixture.h"

#include <unistd.h>

#include "platform/automation/variant.h"

namespace kw::link::testing {

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
    engine->Advise(&sink);
    std::string user = "ana";
    std::string password = "secret";
    ASSERT_TRUE(automation::CBool(engine->Logon(user, password, "")));
}

std::int32_t EngineProcessTest::Dial() {
    const auto lists = sink.lists.size();
    EXPECT_EQ(automation::CLng(engine->BuildDialList("Home Office", "Engineering Lab")), 0);
    EXPECT_TRUE(RunUntil([&] { return sink.lists.size() > lists; })) << "the dial list arrives";
    return automation::CLng(engine->Connect("Engineering Lab", false));
}

bool EngineProcessTest::UntilLastCode(int code) {
    return RunUntil([&] { return !sink.Codes().empty() && sink.Codes().back() == code; });
}

}  // namespace kw::link::testing
