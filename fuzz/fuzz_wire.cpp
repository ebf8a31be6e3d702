// The engine link's reader against whatever a faulty engine could send: any kind with any payload,
// arrays with any bounds, element types and elements, nested. The input is a recipe for such
// values; they travel over a real D-Bus connection (from this process to itself), so the reader
// sees them exactly as it sees an engine's, and must give values or fail with 13, nothing else.

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusServer>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>

#include "link/raw_wire.h"
#include "link/wire.h"
#include "platform/automation/failure.h"

namespace {

using kw::link::testing::RawArray;
using kw::link::testing::RawValue;

class Recipe {
  public:
    Recipe(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
    std::uint8_t Byte() {
        if (size_ == 0) {
            return 0;
        }
        --size_;
        return *data_++;
    }
    std::int32_t Int() {
        std::uint32_t v = 0;
        for (int i = 0; i < 4; ++i) {
            v = (v << 8) | Byte();
        }
        return static_cast<std::int32_t>(v);
    }
    // Mostly small numbers, which make bounds that fit the elements; now and then any number.
    std::int32_t Bound() {
        const std::uint8_t b = Byte();
        return b == 0x7f ? Int() : static_cast<std::int8_t>(b) / 8;
    }

  private:
    const std::uint8_t* data_;
    std::size_t size_;
};

RawValue ReadValue(Recipe& in, int depth);

RawArray ReadArray(Recipe& in, int depth) {
    RawArray a;
    const std::uint8_t type = in.Byte();
    a.elementType = type < 128 ? (type % 2 == 0 ? 12 : 8) : in.Int();
    for (int n = in.Byte() % 6; n > 0; --n) {
        a.bounds << in.Bound();
    }
    for (int n = in.Byte() % 9; n > 0; --n) {
        a.elements << ReadValue(in, depth + 1);
    }
    return a;
}

QVariant ReadPayload(Recipe& in, int depth) {
    switch (in.Byte() % 10) {
        case 0:
            return QVariant::fromValue(static_cast<qint16>(in.Int()));
        case 1:
            return QVariant::fromValue(in.Int());
        case 2:
            return QVariant::fromValue(static_cast<qint64>(in.Int()) * 65537);
        case 3: {
            const std::uint64_t bits = (std::uint64_t{static_cast<std::uint32_t>(in.Int())} << 32) |
                                       static_cast<std::uint32_t>(in.Int());
            double d = 0;
            std::memcpy(&d, &bits, sizeof d);
            return QVariant::fromValue(d);
        }
        case 4:
            return QVariant::fromValue(in.Byte() % 2 == 1);
        case 5:
        case 6: {
            QByteArray bytes;
            for (int n = in.Byte() % 16; n > 0; --n) {
                bytes.append(static_cast<char>(in.Byte()));
            }
            return bytes.size() % 2 == 0 ? QVariant::fromValue(bytes)
                                         : QVariant::fromValue(QString::fromLatin1(bytes));
        }
        case 7:
            return QVariant::fromValue(static_cast<uchar>(in.Byte()));
        case 8:
            if (depth < 3) {
                return QVariant::fromValue(ReadArray(in, depth));
            }
            return {};
        default:
            return QVariant::fromValue(QDBusVariant(QVariant::fromValue(in.Int())));
    }
}

RawValue ReadValue(Recipe& in, int depth) {
    static constexpr int kKinds[] = {0, 1, 2, 3, 4, 5, 8, 9, 11, 12, 17, 0x2000, 0x2008, 0x200c};
    const std::uint8_t pick = in.Byte();
    const int kind = pick < 240 ? kKinds[pick % std::size(kKinds)] : in.Int();
    QVariant payload = ReadPayload(in, depth);
    if (!payload.isValid()) {
        payload = QVariant::fromValue(false);  // a variant must carry something
    }
    return {kind, payload};
}

// Reads the arguments list and the single value the way the client reads an engine's answer.
class Reader : public QDBusVirtualObject {
  public:
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        try {
            kw::link::FromWire(kw::link::WireListArgument(message.arguments().value(0)));
        } catch (const kw::automation::Failure& failure) {
            Expect13(failure);
        }
        try {
            kw::link::WireValueArgument(message.arguments().value(1));
        } catch (const kw::automation::Failure& failure) {
            Expect13(failure);
        }
        connection.send(message.createReply());
        return true;
    }

  private:
    static void Expect13(const kw::automation::Failure& failure) {
        if (failure.Number() != kw::automation::err::kTypeMismatch) {
            std::fprintf(stderr, "failure %d: %s\n", failure.Number(),
                         failure.Description().c_str());
            std::abort();
        }
    }
};

// One connection from this process to itself, made once.
struct Loopback {
    Loopback(int* argc, char** argv)
        : app(*argc, argv), server(QStringLiteral("unix:tmpdir=/tmp")) {
        kw::link::RegisterWireTypes();
        kw::link::testing::RegisterRawTypes();
        QObject::connect(&server, &QDBusServer::newConnection, [this](QDBusConnection c) {
            c.registerVirtualObject(QStringLiteral("/reader"), &reader);
            engineEnd = c;
        });
        client.emplace(QDBusConnection::connectToPeer(server.address(), QStringLiteral("fuzz")));
        while (!engineEnd) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }
    QCoreApplication app;
    QDBusServer server;
    Reader reader;
    std::optional<QDBusConnection> engineEnd;
    std::optional<QDBusConnection> client;
};

Loopback* loopback = nullptr;

}  // namespace

// Qt's caches, filled on first use and kept for the process's life, look like leaks to the checker.
extern "C" const char* __asan_default_options() {
    return "detect_leaks=0";
}

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    loopback = new Loopback(argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Recipe in(data, size);
    QList<RawValue> list;
    for (int n = in.Byte() % 5; n > 0; --n) {
        list << ReadValue(in, 0);
    }
    const RawValue single = ReadValue(in, 0);
    QDBusMessage call =
        QDBusMessage::createMethodCall(QString(), QStringLiteral("/reader"),
                                       QStringLiteral("fuzz.Reader"), QStringLiteral("Read"));
    call.setArguments({QVariant::fromValue(list), QVariant::fromValue(single)});
    const QDBusMessage reply = loopback->client->call(call, QDBus::BlockWithGui, INT_MAX);
    if (reply.type() != QDBusMessage::ReplyMessage) {
        std::abort();  // the reader never answered
    }
    return 0;
}
