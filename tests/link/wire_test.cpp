// Automation values through a real bus and back: an echo on one connection, a caller on another.
#include <gtest/gtest.h>
#include <unistd.h>

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <climits>
#include <limits>

#include "link/private_bus.h"
#include "link/raw_wire.h"
#include "link/wire.h"
#include "platform/automation/failure.h"
#include "platform/automation/safe_array.h"

namespace kw::link::testing {
namespace {

using automation::Failure;
using automation::SafeArray;
using automation::Variant;

// Reads the values it is sent and sends them back as it read them.
class Echo : public QDBusVirtualObject {
  public:
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        try {
            const auto values = FromWire(WireListArgument(message.arguments().value(0)));
            connection.send(message.createReply(QVariant::fromValue(ToWire(values))));
        } catch (const Failure& failure) {
            // The reader refuses what it cannot read with 13; any other number is a fault.
            const bool refused = failure.Number() == automation::err::kTypeMismatch;
            connection.send(message.createErrorReply(
                refused ? QStringLiteral("test.Refused") : QStringLiteral("test.Failed"),
                QString::fromStdString(failure.Description())));
        }
        return true;
    }
};

class WireTest : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        const auto dir =
            std::filesystem::temp_directory_path() / ("kw-wire-" + std::to_string(::getpid()));
        std::filesystem::remove_all(dir);
        bus_ = new PrivateBus(dir, {.engineInstalled = false, .scenario = {}});
        RegisterRawTypes();
        server_ = new QDBusConnection(bus_->Connect(QStringLiteral("echo-server")));
        server_->registerVirtualObject(QStringLiteral("/echo"), &echo_);
        client_ = new QDBusConnection(bus_->Connect(QStringLiteral("echo-client")));
    }
    static void TearDownTestSuite() {
        delete client_;
        delete server_;
        delete bus_;
    }

    static QDBusMessage Send(const QVariant& argument) {
        QDBusMessage call =
            QDBusMessage::createMethodCall(server_->baseService(), "/echo", "test.Echo", "Echo");
        call << argument;
        return client_->call(call, QDBus::BlockWithGui, 10000);
    }
    // The value after a trip there and back.
    static Variant RoundTrip(const Variant& v) {
        const QDBusMessage reply = Send(QVariant::fromValue(ToWire(std::span(&v, 1))));
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
        const auto back = FromWire(WireListArgument(reply.arguments().value(0)));
        EXPECT_EQ(back.size(), 1u);
        return back.empty() ? Variant() : back[0];
    }

    static inline PrivateBus* bus_ = nullptr;
    static inline QDBusConnection* server_ = nullptr;
    static inline QDBusConnection* client_ = nullptr;
    static inline Echo echo_;
};

// Values of every kind, with their names: scalars at their limits, and arrays whose bounds,
// element types and cells must come back as they went.
std::vector<std::pair<std::string, Variant>> Samples() {
    SafeArray mixed = SafeArray::OneDim(3, 6);  // its last element stays Empty
    mixed.Set(3, Variant("text"));
    mixed.Set(4, Variant(std::int32_t{7}));
    mixed.Set(5, Variant(2.5));
    SafeArray names = SafeArray::OneDim(0, 1, SafeArray::ElementType::String);
    names.Set(0, Variant("Home"));
    SafeArray table = SafeArray::TwoDim(-2, 0, 5, 7);
    for (std::int32_t row = -2; row <= 0; ++row) {
        for (std::int32_t field = 5; field <= 7; ++field) {
            table.Set(row, field, Variant(std::to_string(row) + ":" + std::to_string(field)));
        }
    }
    SafeArray inner = SafeArray::OneDim(1, 1);
    inner.Set(1, Variant(std::int16_t{9}));
    table.Set(-1, 6, Variant(inner));
    return {{"Empty", Variant()},
            {"Null", Variant::Null()},
            {"the lowest Integer", Variant(std::int16_t{-32768})},
            {"the lowest Long", Variant(std::int32_t{INT32_MIN})},
            {"a Single", Variant(0.1f)},
            {"the largest Single", Variant(std::numeric_limits<float>::max())},
            {"a Double", Variant(-1.0e300)},
            {"a String with Latin-1, quotes and a line end",
             Variant(std::string("caf\xe9 \"quoted\"\n"))},
            {"a String with a NUL inside", Variant(std::string("nul\0inside", 10))},
            {"an empty String", Variant(std::string())},
            {"True", Variant(true)},
            {"False", Variant(false)},
            {"an array from 3 with mixed elements", Variant(mixed)},
            {"a String array", Variant(names)},
            {"a table from row -2 and column 5, an array in a cell", Variant(table)},
            {"an empty array", Variant(SafeArray())}};
}

TEST_F(WireTest, EveryKindComesBackWithItsTypeAndValue) {
    for (const auto& [name, v] : Samples()) {
        SCOPED_TRACE(name);
        const Variant back = RoundTrip(v);
        EXPECT_EQ(automation::TypeName(back), automation::TypeName(v));
        EXPECT_TRUE(back == v) << "the value, or an array's bounds, element type or cells, differ";
    }
}

TEST_F(WireTest, AnObjectReferenceIsRefusedBeforeAnythingIsSent) {
    SafeArray holder = SafeArray::OneDim(0, 0);
    holder.Set(0, Variant(std::make_shared<automation::Object>()));
    for (const Variant& v : {Variant(std::make_shared<automation::Object>()), Variant(holder)}) {
        try {
            ToWire(std::span(&v, 1));
            ADD_FAILURE() << "an object reference was marshalled";
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.Number(), automation::err::kTypeMismatch);
            EXPECT_NE(failure.Description().find("object reference"), std::string::npos);
        }
    }
}

TEST_F(WireTest, MalformedValuesAreRefusedByTheReader) {
    const auto array = [](RawArray a) { return QVariant::fromValue(a); };
    const std::vector<std::pair<std::string, RawValue>> cases = {
        {"a Long that carries text", {3, QVariant::fromValue(QString("12"))}},
        {"an unknown kind", {77, QVariant::fromValue(false)}},
        {"a Single out of range", {4, QVariant::fromValue(1.0e300)}},
        {"bounds for three elements with two sent",
         {0x2000, array({12, {0, 2}, {{3, QVariant::fromValue(1)}, {3, QVariant::fromValue(2)}}})}},
        {"three dimensions", {0x2000, array({12, {0, 0, 0, 0, 0, 0}, {{0, QVariant(false)}}})}},
        {"an upper bound below the lower one", {0x2000, array({12, {5, 3}, {}})}},
        {"a string array holding a Null",
         {0x2000, array({8, {0, 0}, {{1, QVariant::fromValue(false)}}})}},
        {"bounds whose cells overflow a count",
         {0x2000, array({12, {INT_MIN, INT_MAX, INT_MIN, INT_MAX}, {}})}},
        {"a malformed element",
         {0x2000, array({12, {0, 0}, {{2, QVariant::fromValue(QString())}}})}},
    };
    for (const auto& [what, raw] : cases) {
        const QDBusMessage reply = Send(QVariant::fromValue(QList<RawValue>{raw}));
        EXPECT_EQ(reply.type(), QDBusMessage::ErrorMessage) << what;
        EXPECT_EQ(reply.errorName(), "test.Refused") << what;
    }
}

}  // namespace
}  // namespace kw::link::testing
