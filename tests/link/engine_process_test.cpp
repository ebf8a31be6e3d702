// The engine as a process of its own: whole calls, prompts and clients over a private bus.
#include <signal.h>

#include <QDBusConnectionInterface>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <algorithm>
#include <memory>

#include "link/engine_fixture.h"
#include "link/wire.h"
#include "platform/automation/failure.h"
#include "platform/automation/safe_array.h"

namespace kw::link::testing {
namespace {

using automation::CBool;
using automation::CLng;
using ::dravlink::testing::Has;
using Codes = std::vector<int>;

const Codes kUp{102, 103, 104, 105, 101, 202, 201, 1};
const Codes kDown{232, 231, 132, 31, 32};

bool EndsWith(const Codes& codes, const Codes& tail) {
    return codes.size() >= tail.size() && std::equal(tail.rbegin(), tail.rend(), codes.rbegin());
}

// ---- a whole call ------------------------------------------------------------------------------

TEST_F(EngineProcessTest, AWholeCallRunsInTheEngineProcess) {
    Start();
    const pid_t pid = bus->EnginePid();
    EXPECT_GT(pid, 0);
    EXPECT_NE(pid, ::getpid()) << "the engine is a process of its own";
    EXPECT_TRUE(engine->Direct()) << "once the bus found the engine, calls skip the bus daemon";
    QElapsedTimer clock;
    clock.start();
    std::vector<std::int64_t> statsAt;
    sink.on = [&](const Seen& s) {
        if (s.what == "STATS") {
            statsAt.push_back(clock.elapsed());
        }
        return std::string();
    };

    std::int32_t handle = Dial();
    EXPECT_GT(handle, 0);
    ASSERT_TRUE(UntilLastCode(1));
    EXPECT_EQ(sink.Codes(), kUp) << "the lights in code order";

    // Statistics once a second while the line is up. One late delivery under load makes the next
    // one early; the pace is what must hold.
    const auto first = statsAt.size();
    ASSERT_TRUE(RunUntil([&] { return statsAt.size() >= first + 4; }));
    EXPECT_NEAR((statsAt[first + 3] - statsAt[first]) / 3, 1000, 200)
        << "mean time between statistics";

    engine->Disconnect(handle);
    ASSERT_TRUE(UntilLastCode(32));
    EXPECT_TRUE(EndsWith(sink.Codes(), kDown));
}

TEST_F(EngineProcessTest, OutAndInOutArgumentsComeBackFromTheEngine) {
    Start();
    std::string value;
    EXPECT_TRUE(CBool(engine->GetLocationProperty("Home Office", "AreaCode", value)));
    EXPECT_FALSE(value.empty()) << "an out string";
    Variant countries;
    EXPECT_TRUE(CBool(dialer::GetCountryList(*engine, countries))) << "a call by name";
    EXPECT_TRUE(countries.IsArray()) << "an out variant";
    try {
        engine->GetIDsOfNames("NoSuchOperation");
        ADD_FAILURE() << "an unknown name resolved";
    } catch (const automation::Failure& failure) {
        EXPECT_EQ(failure.Number(), automation::err::kObjectDoesNotSupport)
            << "the engine's own failure keeps its number";
    }
}

// ---- prompts -----------------------------------------------------------------------------------

struct PromptCase {
    const char* scenario;
    const char* prompt;
    const char* answer;
    const char* outcome;  // a status line that shows the engine read the answer
};

void PrintTo(const PromptCase& c, std::ostream* os) {
    *os << c.prompt << " in the " << c.scenario << " scenario";
}

class PromptTest : public EngineProcessTest, public ::testing::WithParamInterface<PromptCase> {};

TEST_P(PromptTest, IsAnsweredAcrossTheWire) {
    const PromptCase& c = GetParam();
    Start({.scenario = c.scenario});
    sink.on = [&](const Seen& s) {
        return s.what == c.prompt ? std::string(c.answer) : std::string();
    };
    Dial();
    // The message of the day follows its status line, so wait for the prompt as well.
    ASSERT_TRUE(RunUntil([&] {
        return Has(sink.Of("S"), c.outcome) && !sink.Of(c.prompt).empty();
    })) << "no status \""
        << c.outcome << "\" or no " << c.prompt;
    EXPECT_EQ(sink.Of(c.prompt).size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(
    EachKind, PromptTest,
    ::testing::Values(PromptCase{"isp-password", "LOGIN", "dialer7^pw",
                                 "accepted the login for dialer7"},
                      PromptCase{"question", "YESNO", "yes", "Compression is on for this call."},
                      PromptCase{"choice", "INFO", "vpn-west.ostvarra.example",
                                 "Using the tunnel server vpn-west.ostvarra.example."},
                      PromptCase{"input", "INPUT", "042917", "Passcode accepted."},
                      PromptCase{"call-home", "NLN", "n", "The files will not be offered again."},
                      PromptCase{"motd", "OK", "", "You are connected to Engineering Lab."}),
    [](const auto& test) { return std::string(test.param.prompt); });

TEST_F(EngineProcessTest, APromptWaitsForTheUserWhileStatisticsKeepArriving) {
    Start({.scenario = "input"});
    std::size_t statsDuringPrompt = 0;
    std::size_t codesDuringPrompt = 0;
    sink.on = [&](const Seen& s) {
        if (s.what != "INPUT") {
            return std::string();
        }
        // The user takes three seconds to type, in a dialog whose loop keeps running.
        const auto stats = sink.stats.size();
        const auto codes = sink.Codes().size();
        QEventLoop dialog;
        QTimer::singleShot(3000, &dialog, &QEventLoop::quit);
        dialog.exec();
        statsDuringPrompt = sink.stats.size() - stats;
        codesDuringPrompt = sink.Codes().size() - codes;
        return std::string("042917");
    };
    Dial();
    ASSERT_TRUE(UntilLastCode(1));
    EXPECT_GE(statsDuringPrompt, 2u);
    EXPECT_EQ(codesDuringPrompt, 0u) << "the call itself waits for the answer";
    EXPECT_EQ(sink.Codes(), kUp);
}

TEST_F(EngineProcessTest, TheClientCallsTheEngineFromInsideAPrompt) {
    Start({.scenario = "question"});
    std::string seenInside;
    sink.on = [&](const Seen& s) {
        if (s.what == "YESNO") {
            engine->GetLocationProperty("Home Office", "AreaCode", seenInside);
            return std::string("yes");
        }
        return std::string();
    };
    Dial();
    ASSERT_TRUE(RunUntil([&] { return Has(sink.Of("S"), "Compression is on"); }));
    EXPECT_FALSE(seenInside.empty()) << "the engine answered while it waited for the prompt";
}

// ---- clients -----------------------------------------------------------------------------------

TEST_F(EngineProcessTest, ASecondClientOfTheUserGetsTheSameEngine) {
    Start();
    const pid_t first = bus->EnginePid();
    EXPECT_TRUE(CBool(engine->LocationExists("Harbour Hotel"))) << "the name is free";
    EXPECT_TRUE(CBool(engine->CreateLocation("Harbour Hotel")));

    BusDravlink second(nullptr, bus->Address());
    EXPECT_EQ(second.EngineBusName(), engine->EngineBusName());
    EXPECT_TRUE(second.Direct());
    EXPECT_EQ(bus->EnginePid(), first);
    Variant list;
    // No logon of its own: the engine is the one the first client logged on to.
    EXPECT_TRUE(CBool(second.GetLocationList(list)));
    const auto& names = list.ToArray().Storage();
    EXPECT_TRUE(std::any_of(names.begin(), names.end(), [](const Variant& name) {
        return name.ToString() == "Harbour Hotel";
    })) << "the second client sees what the first one saved";
}

TEST_F(EngineProcessTest, AClientThatVanishesInAPromptDoesNotLeaveTheEngineStuck) {
    Start({.scenario = "input"});
    // A second client joins the engine directly, takes the events and dials, then goes away
    // without answering.
    QDBusConnection onBus = bus->Connect(QStringLiteral("vanishing"));
    QDBusMessage attach =
        QDBusMessage::createMethodCall(QLatin1String(kServiceName), QLatin1String(kObjectPath),
                                       QLatin1String(kInterface), QStringLiteral("Attach"));
    const QDBusMessage attached = onBus.call(attach, QDBus::BlockWithGui, 10000);
    ASSERT_EQ(attached.arguments().size(), 2);
    auto direct = std::make_unique<QDBusConnection>(QDBusConnection::connectToPeer(
        attached.arguments()[1].toString(), QStringLiteral("vanishing-direct")));
    const auto call = [&](const QString& method, const QList<QVariant>& args) {
        QDBusMessage m = QDBusMessage::createMethodCall(QString(), QLatin1String(kObjectPath),
                                                        QLatin1String(kInterface), method);
        m.setArguments(args);
        return direct->call(m, QDBus::BlockWithGui, 10000);
    };
    // The events it gets go nowhere: it never answers a prompt.
    struct Silent : QDBusVirtualObject {
        QString introspect(const QString&) const override { return {}; }
        bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override {
            ++raised;
            const auto args = message.arguments();
            prompted = prompted ||
                       (!args.isEmpty() && args[0].toString() == QLatin1String("GetUserInput"));
            return true;
        }
        int raised = 0;
        bool prompted = false;
    } silent;
    direct->registerVirtualObject(QLatin1String(kEventsPath), &silent);
    ASSERT_EQ(call("Join", {onBus.baseService()}).type(), QDBusMessage::ReplyMessage);
    ASSERT_EQ(call("Advise", {}).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(CLng(engine->BuildDialList("Home Office", "Engineering Lab")), 0);
    RunUntil([&] { return silent.raised > 0; });  // the dial list went to the new sink
    const Variant connectArgs[] = {Variant("Engineering Lab"), Variant(false)};
    ASSERT_EQ(call("Invoke", {QVariant::fromValue(std::int32_t{18}),
                              QVariant::fromValue(ToWire(connectArgs))})
                  .type(),
              QDBusMessage::ReplyMessage);
    ASSERT_TRUE(RunUntil([&] { return silent.prompted; }))
        << "the call reaches the passcode prompt";
    const auto before = sink.seen.size();
    direct->unregisterObject(QLatin1String(kEventsPath));
    direct.reset();  // the connections close with their last handles
    QDBusConnection::disconnectFromPeer(QStringLiteral("vanishing-direct"));
    onBus = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(QStringLiteral("vanishing"));

    // The prompt counts as cancelled; the events come back to the first client.
    ASSERT_TRUE(UntilLastCode(32)) << "the call goes down";
    EXPECT_TRUE(Has(sink.Of("S"), "No passcode was given"));
    EXPECT_GT(sink.seen.size(), before);
}

TEST_F(EngineProcessTest, ACallOutlivesItsWindowAndTheEngineEndsOnceTheLineIsDown) {
    Start({.idleMs = 800, .scenario = {}});
    const pid_t pid = bus->EnginePid();
    std::int32_t handle = Dial();
    ASSERT_TRUE(UntilLastCode(1));
    engine.reset();  // the window goes; the line stays up
    RunUntil([] { return false; }, 2500);
    EXPECT_EQ(bus->EnginePid(), pid) << "the engine ended in the middle of a call";

    {
        BusDravlink later(nullptr, bus->Address());  // the window comes back to hang up
        later.Disconnect(handle);
    }
    EXPECT_TRUE(RunUntil([&] { return bus->EnginePid() == 0; }, 15000))
        << "the engine stayed once the line was down and nobody used it";
    EXPECT_TRUE(RunUntil([&] { return ::kill(pid, 0) != 0; }, 5000)) << "the process is gone";
}

}  // namespace
}  // namespace kw::link::testing
