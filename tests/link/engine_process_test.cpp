// The engine as a process of its own: whole calls, prompts and clients over a private bus.
#include <signal.h>

#include <QDBusConnectionInterface>
#include <QDBusVirtualObject>
#include <QEventLoop>
#include <QTimer>
#include <algorithm>
#include <climits>
#include <memory>

#include "link/engine_fixture.h"
#include "link/wire.h"
#include "platform/automation/failure.h"
#include "platform/automation/safe_array.h"

namespace kw::link::testing {
namespace {

using automation::CBool;
using automation::CLng;
using Codes = std::vector<int>;

const Codes kUp{102, 103, 104, 105, 101, 202, 201, 1};
const Codes kDown{232, 231, 132, 31, 32};

bool Has(const std::vector<std::string>& texts, const std::string& part) {
    return std::any_of(texts.begin(), texts.end(),
                       [&](const std::string& t) { return t.find(part) != std::string::npos; });
}

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

    const std::int32_t handle = Dial(*engine, listener);
    EXPECT_GT(handle, 0);
    ASSERT_TRUE(
        RunUntil([&] { return !listener.Codes().empty() && listener.Codes().back() == 1; }));
    EXPECT_EQ(listener.Codes(), kUp) << "the lights in code order";

    // Statistics once a second while the line is up.
    const auto before = listener.Count("STATS");
    RunUntil([] { return false; }, 3500);
    std::vector<std::int64_t> at;
    for (const auto& h : listener.heard) {
        if (h.what == "STATS") {
            at.push_back(h.at);
        }
    }
    ASSERT_GE(at.size() - before, 3u);
    EXPECT_LE(at.size() - before, 5u);
    // One late delivery under load makes the next one early; the pace is what must hold.
    const auto spacing =
        (at.back() - at[before]) / static_cast<std::int64_t>(at.size() - before - 1);
    EXPECT_NEAR(spacing, 1000, 200) << "mean time between statistics";

    std::int32_t h = handle;
    engine->Disconnect(h);
    ASSERT_TRUE(RunUntil([&] { return listener.Codes().back() == 32; }));
    EXPECT_TRUE(EndsWith(listener.Codes(), kDown));
}

TEST_F(EngineProcessTest, OutAndInOutArgumentsComeBackFromTheEngine) {
    Start();
    std::string value;
    EXPECT_TRUE(CBool(engine->GetLocationProperty("Home Office", "AreaCode", value)));
    EXPECT_FALSE(value.empty()) << "an out string";
    Variant list;
    EXPECT_TRUE(CBool(engine->GetLocationList(list)));
    ASSERT_TRUE(list.IsArray()) << "an out variant";
    EXPECT_GE(list.ToArray().UBound(), 0);
    Variant countries;
    EXPECT_TRUE(CBool(dialer::GetCountryList(*engine, countries))) << "a call by name";
    EXPECT_TRUE(countries.IsArray());
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
    listener.answerWith = [&](const Heard& h) {
        return h.what == c.prompt ? std::string(c.answer) : std::string();
    };
    Dial(*engine, listener);
    // The message of the day follows its status line, so wait for the prompt as well.
    ASSERT_TRUE(RunUntil([&] {
        return Has(listener.Of("S"), c.outcome) && listener.Count(c.prompt) > 0;
    })) << "no status \""
        << c.outcome << "\" or no " << c.prompt;
    EXPECT_EQ(listener.Count(c.prompt), 1u);
}

INSTANTIATE_TEST_SUITE_P(
    EachKind, PromptTest,
    ::testing::Values(PromptCase{"isp-password", "GetUsernamePassword", "dialer7^pw",
                                 "accepted the login for dialer7"},
                      PromptCase{"question", "GetUserYesNo", "yes",
                                 "Compression is on for this call."},
                      PromptCase{"choice", "GetUserInfo", "vpn-west.ostvarra.example",
                                 "Using the tunnel server vpn-west.ostvarra.example."},
                      PromptCase{"input", "GetUserInput", "042917", "Passcode accepted."},
                      PromptCase{"call-home", "GetUserNowLaterNever", "n",
                                 "The files will not be offered again."},
                      PromptCase{"motd", "GetUserOk", "", "You are connected to Engineering Lab."}),
    [](const auto& test) { return std::string(test.param.prompt); });

TEST_F(EngineProcessTest, APromptWaitsForTheUserWhileStatisticsKeepArriving) {
    Start({.scenario = "input"});
    std::size_t statsDuringPrompt = 0;
    Codes codesDuringPrompt;
    listener.answerWith = [&](const Heard& h) {
        if (h.what != "GetUserInput") {
            return std::string();
        }
        // The user takes three seconds to type, in a dialog whose loop keeps running.
        const auto stats = listener.Count("STATS");
        const auto codes = listener.Codes().size();
        QEventLoop dialog;
        QTimer::singleShot(3000, &dialog, &QEventLoop::quit);
        dialog.exec();
        statsDuringPrompt = listener.Count("STATS") - stats;
        const auto now = listener.Codes();
        codesDuringPrompt.assign(now.begin() + static_cast<long>(codes), now.end());
        return std::string("042917");
    };
    Dial(*engine, listener);
    ASSERT_TRUE(
        RunUntil([&] { return !listener.Codes().empty() && listener.Codes().back() == 1; }));
    EXPECT_GE(statsDuringPrompt, 2u);
    EXPECT_TRUE(codesDuringPrompt.empty()) << "the call itself waits for the answer";
    EXPECT_EQ(listener.Codes(), kUp);
}

TEST_F(EngineProcessTest, TheClientCallsTheEngineFromInsideAPrompt) {
    Start({.scenario = "question"});
    std::string seenInside;
    listener.answerWith = [&](const Heard& h) {
        if (h.what == "GetUserYesNo") {
            engine->GetLocationProperty("Home Office", "AreaCode", seenInside);
            return std::string("yes");
        }
        return std::string();
    };
    Dial(*engine, listener);
    ASSERT_TRUE(RunUntil([&] { return Has(listener.Of("S"), "Compression is on"); }));
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
    bool found = false;
    for (const Variant& name : list.ToArray().Storage()) {
        found = found || name.ToString() == "Harbour Hotel";
    }
    EXPECT_TRUE(found) << "the second client sees what the first one saved";
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
    const auto before = listener.heard.size();
    direct->unregisterObject(QLatin1String(kEventsPath));
    direct.reset();  // the connections close with their last handles
    QDBusConnection::disconnectFromPeer(QStringLiteral("vanishing-direct"));
    onBus = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(QStringLiteral("vanishing"));

    // The prompt counts as cancelled; the events come back to the first client.
    ASSERT_TRUE(RunUntil([&] {
        return !listener.Codes().empty() && listener.Codes().back() == 32;
    })) << "the call goes down";
    EXPECT_TRUE(Has(listener.Of("S"), "No passcode was given"));
    EXPECT_GT(listener.heard.size(), before);
}

TEST_F(EngineProcessTest, TheEngineEndsAWhileAfterItsLastClientWent) {
    Start({.idleMs = 800, .scenario = {}});
    const pid_t pid = bus->EnginePid();
    ASSERT_GT(pid, 0);
    engine->Unadvise();
    engine.reset();
    EXPECT_TRUE(RunUntil([&] { return bus->EnginePid() == 0; }, 10000));
    EXPECT_TRUE(RunUntil([&] { return ::kill(pid, 0) != 0; }, 5000)) << "the process is gone";
}

TEST_F(EngineProcessTest, ACallOutlivesItsWindowAndTheEngineEndsOnceTheLineIsDown) {
    Start({.idleMs = 800, .scenario = {}});
    const pid_t pid = bus->EnginePid();
    std::int32_t handle = Dial(*engine, listener);
    ASSERT_TRUE(
        RunUntil([&] { return !listener.Codes().empty() && listener.Codes().back() == 1; }));
    engine.reset();  // the window goes; the line stays up
    RunUntil([] { return false; }, 2500);
    EXPECT_EQ(bus->EnginePid(), pid) << "the engine ended in the middle of a call";

    {
        BusDravlink later(nullptr, bus->Address());  // the window comes back to hang up
        later.Disconnect(handle);
    }
    EXPECT_TRUE(RunUntil([&] { return bus->EnginePid() == 0; }, 15000))
        << "the engine stayed once the line was down and nobody used it";
}

}  // namespace
}  // namespace kw::link::testing
