#include "link/bus_dravlink.h"

#include <QAtomicInt>
#include <QDBusVirtualObject>
#include <vector>

#include "client/ui/dialer/engine/engine_factory.h"
#include "link/answer_wait.h"
#include "link/events.h"
#include "link/wire.h"
#include "platform/forms/platform.h"

namespace kw::link {

using automation::Failure;

namespace {

QString NextConnectionName() {
    static QAtomicInt counter;
    return QStringLiteral("kestrelway-engine-%1").arg(counter.fetchAndAddRelaxed(1));
}

void WriteBack(std::string& to, const Variant& from) {
    to = automation::CStr(from);
}
void WriteBack(std::int32_t& to, const Variant& from) {
    to = automation::CLng(from);
}
void WriteBack(Variant& to, const Variant& from) {
    to = from;
}
// Arguments passed by value come back unread.
void WriteBack(bool&, const Variant&) {}
template <typename T>
void WriteBack(const T&, const Variant&) {}

}  // namespace

// Where the engine's events arrive: one method, Raise(event, arguments) -> arguments. The engine
// waits for the reply of a prompt; other events expect none.
class EventReceiver : public QDBusVirtualObject {
  public:
    EventReceiver(BusDravlink& engine, forms::Platform* platform)
        : engine_(engine), platform_(platform) {}

    QString introspect(const QString&) const override {
        return QStringLiteral(
                   "<interface name=\"%1\"><method name=\"Raise\">"
                   "<arg name=\"event\" type=\"s\" direction=\"in\"/>"
                   "<arg name=\"arguments\" type=\"a(iv)\" direction=\"in\"/>"
                   "<arg name=\"arguments\" type=\"a(iv)\" direction=\"out\"/>"
                   "</method></interface>")
            .arg(QLatin1String(kEventsInterface));
    }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.interface() != QLatin1String(kEventsInterface) ||
            message.member() != QLatin1String("Raise")) {
            return false;
        }
        // Only the engine this client reached may raise its events.
        if (!engine_.FromEngine(message, connection) || message.arguments().size() != 2) {
            connection.send(message.createErrorReply(QDBusError::AccessDenied,
                                                     QStringLiteral("Not this client's engine")));
            return true;
        }
        const std::string event = message.arguments()[0].toString().toStdString();
        std::vector<Variant> args;
        try {
            args = FromWire(WireListArgument(message.arguments()[1]));
        } catch (const Failure& failure) {
            connection.send(message.createErrorReply(
                QDBusError::InvalidArgs, QString::fromStdString(failure.Description())));
            return true;
        }
        Raise(event, args);
        if (message.isReplyRequired()) {
            connection.send(message.createReply(QVariant::fromValue(ToWire(args))));
        }
        return true;
    }

  private:
    void Raise(const std::string& event, std::vector<Variant>& args) {
        auto* sink = engine_.EventSink();
        if (sink == nullptr) {
            return;
        }
        const auto handle = [&] { RaiseOnSink(*sink, event, args); };
        if (platform_ != nullptr) {
            // As the message loop runs a reaction: an unguarded failure ends the program.
            platform_->Dispatch(handle);
        } else {
            handle();
        }
    }

    BusDravlink& engine_;
    forms::Platform* platform_;
};

BusDravlink::BusDravlink(forms::Platform* platform, const QString& busAddress)
    : connectionName_(NextConnectionName()),
      bus_(busAddress.isEmpty()
               ? QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName_)
               : QDBusConnection::connectToBus(busAddress, connectionName_)),
      receiver_(std::make_unique<EventReceiver>(*this, platform)) {
    RegisterWireTypes();
    if (!bus_.isConnected()) {
        const std::string why = bus_.lastError().message().toStdString();
        QDBusConnection::disconnectFromBus(connectionName_);
        throw Failure(linkerr::kServerUnavailable, "No D-Bus session bus to reach the engine on" +
                                                       (why.empty() ? std::string() : ": " + why));
    }
    bus_.registerVirtualObject(QLatin1String(kEventsPath), receiver_.get());
    // The first call goes to the well-known name, which starts the engine when it is not running;
    // every later one goes to the engine that answered, so that an engine that went away is
    // noticed rather than silently replaced by a fresh one.
    try {
        const QDBusMessage reply = CallEngine(QStringLiteral("Attach"), {});
        if (reply.arguments().size() != 2) {
            throw Failure(linkerr::kCallFailed, "The engine answered Attach with nothing");
        }
        engine_ = reply.arguments()[0].toString();
        stage_ = LinkStage::Bound;
        JoinDirectly(reply.arguments()[1].toString());
    } catch (...) {
        bus_.unregisterObject(QLatin1String(kEventsPath));
        QDBusConnection::disconnectFromBus(connectionName_);
        throw;
    }
}

BusDravlink::~BusDravlink() {
    LeaveDirect();
    bus_.unregisterObject(QLatin1String(kEventsPath));
    QDBusConnection::disconnectFromBus(connectionName_);
}

bool BusDravlink::FromEngine(const QDBusMessage& message, const QDBusConnection& connection) const {
    if (direct_ && connection.name() == direct_->name()) {
        return true;
    }
    return !engine_.isEmpty() && message.service() == engine_;
}

void BusDravlink::JoinDirectly(const QString& address) {
    if (address.isEmpty()) {
        return;
    }
    // Anything that goes wrong here leaves the link on the bus, which works, only slower.
    direct_ = QDBusConnection::connectToPeer(address, connectionName_ + QStringLiteral("-direct"));
    if (direct_->isConnected() &&
        direct_->registerVirtualObject(QLatin1String(kEventsPath), receiver_.get())) {
        QDBusMessage join =
            QDBusMessage::createMethodCall(QString(), QLatin1String(kObjectPath),
                                           QLatin1String(kInterface), QStringLiteral("Join"));
        join.setArguments({bus_.baseService()});
        if (CallAndWait(*direct_, join).type() == QDBusMessage::ReplyMessage) {
            return;
        }
    }
    LeaveDirect();
}

void BusDravlink::LeaveDirect() {
    if (!direct_) {
        return;
    }
    direct_->unregisterObject(QLatin1String(kEventsPath));
    const QString name = direct_->name();
    direct_.reset();
    QDBusConnection::disconnectFromPeer(name);
}

QDBusMessage BusDravlink::CallEngine(const QString& method, const QList<QVariant>& arguments) {
    QString target = engine_.isEmpty() ? QLatin1String(kServiceName) : engine_;
    if (direct_) {
        target.clear();  // a direct connection has no names to address
    }
    QDBusMessage message = QDBusMessage::createMethodCall(target, QLatin1String(kObjectPath),
                                                          QLatin1String(kInterface), method);
    message.setArguments(arguments);
    // No time-out: an operation may wait on a prompt that waits on the user. The wait lets the
    // engine's events, its prompts and this program's timers run meanwhile.
    QDBusConnection& via = direct_ ? *direct_ : bus_;
    QDBusMessage reply = CallAndWait(via, message);
    if (reply.type() != QDBusMessage::ReplyMessage) {
        throw FailureFromBusError(reply, direct_ ? LinkStage::Direct : stage_);
    }
    return reply;
}

std::int32_t BusDravlink::GetIDsOfNames(const std::string& name) {
    if (auto it = ids_.find(name); it != ids_.end()) {
        return it->second;
    }
    const QDBusMessage reply =
        CallEngine(QStringLiteral("GetIDsOfNames"), {QString::fromStdString(name)});
    if (reply.arguments().size() != 1 || reply.arguments()[0].metaType().id() != QMetaType::Int) {
        throw Failure(linkerr::kCallFailed, "The engine answered GetIDsOfNames with no id");
    }
    const std::int32_t id = reply.arguments()[0].toInt();
    ids_[name] = id;
    return id;
}

Variant BusDravlink::Invoke(std::int32_t id, std::span<Variant> args) {
    const WireList out = ToWire(args);
    const QDBusMessage reply =
        CallEngine(QStringLiteral("Invoke"), {QVariant::fromValue(id), QVariant::fromValue(out)});
    if (reply.arguments().size() != 2) {
        throw Failure(automation::err::kTypeMismatch, "The engine's answer is malformed");
    }
    Variant result = WireValueArgument(reply.arguments()[0]);
    std::vector<Variant> back = FromWire(WireListArgument(reply.arguments()[1]));
    if (back.size() != args.size()) {
        throw Failure(automation::err::kTypeMismatch, "The engine's answer is malformed");
    }
    std::move(back.begin(), back.end(), args.begin());
    return result;
}

template <typename... Args>
Variant BusDravlink::Call(std::int32_t id, Args&... refs) {
    std::vector<Variant> args{Variant(refs)...};
    Variant result = Invoke(id, args);
    [[maybe_unused]] std::size_t i = 0;
    (WriteBack(refs, args[i++]), ...);
    return result;
}

void BusDravlink::Advise(dialer::DravlinkEvents* sink) {
    Dravlink::Advise(sink);
    CallEngine(QStringLiteral("Advise"), {});
}

void BusDravlink::Unadvise() {
    Dravlink::Unadvise();
    // Best effort: an engine that is gone has nobody to tell.
    try {
        CallEngine(QStringLiteral("Unadvise"), {});
    } catch (const Failure&) {
    }
}

namespace dispid = dialer::dispid;

Variant BusDravlink::GetPhoneList(Variant& list) {
    return Call(dispid::kGetPhoneList, list);
}
Variant BusDravlink::GetEntryList(Variant& list) {
    return Call(dispid::kGetEntryList, list);
}
Variant BusDravlink::GetISPEntryProperty(const std::string& entryName, const std::string& key,
                                         std::string& value) {
    return Call(dispid::kGetISPEntryProperty, entryName, key, value);
}
Variant BusDravlink::GetLocationList(Variant& list) {
    return Call(dispid::kGetLocationList, list);
}
Variant BusDravlink::GetLocationProperty(const std::string& location, const std::string& key,
                                         std::string& value) {
    return Call(dispid::kGetLocationProperty, location, key, value);
}
Variant BusDravlink::SetLocationProperty(const std::string& location, const std::string& key,
                                         const std::string& value) {
    return Call(dispid::kSetLocationProperty, location, key, value);
}
Variant BusDravlink::SavePOPList(const std::string& location, const std::string& destination,
                                 Variant& list) {
    return Call(dispid::kSavePOPList, location, destination, list);
}
Variant BusDravlink::RefreshPOPList(const std::string& destination, const std::string& location) {
    return Call(dispid::kRefreshPOPList, destination, location);
}
Variant BusDravlink::BuildDialList(const std::string& location, const std::string& destination) {
    return Call(dispid::kBuildDialList, location, destination);
}
Variant BusDravlink::Disconnect(std::int32_t& handle) {
    return Call(dispid::kDisconnect, handle);
}
Variant BusDravlink::Connect(const std::string& destination, bool option) {
    return Call(dispid::kConnect, destination, option);
}
Variant BusDravlink::Logon(std::string& user, std::string& password, const std::string& third) {
    return Call(dispid::kLogon, user, password, third);
}
Variant BusDravlink::GetVPNEntryProperty(const std::string& entryName, const std::string& key,
                                         std::string& value) {
    return Call(dispid::kGetVPNEntryProperty, entryName, key, value);
}
Variant BusDravlink::GetEntryType(const std::string& entryName, std::string& entryType) {
    return Call(dispid::kGetEntryType, entryName, entryType);
}
Variant BusDravlink::Logoff() {
    return Call(dispid::kLogoff);
}
Variant BusDravlink::GetLinkSpeed(const std::string& deviceName) {
    return Call(dispid::kGetLinkSpeed, deviceName);
}
Variant BusDravlink::LocationExists(const std::string& location) {
    return Call(dispid::kLocationExists, location);
}
Variant BusDravlink::CreateLocation(const std::string& location) {
    return Call(dispid::kCreateLocation, location);
}
Variant BusDravlink::SaveLocation(const std::string& location) {
    return Call(dispid::kSaveLocation, location);
}
Variant BusDravlink::GetConnectionNames(std::string& destination, std::string& deviceName) {
    return Call(dispid::kGetConnectionNames, destination, deviceName);
}
Variant BusDravlink::DeleteLocation(const std::string& location) {
    return Call(dispid::kDeleteLocation, location);
}
Variant BusDravlink::SetISPLogin(std::string& user, std::string& ispName,
                                 const std::string& ispUser, const std::string& ispPassword) {
    return Call(dispid::kSetISPLogin, user, ispName, ispUser, ispPassword);
}
Variant BusDravlink::GetISPLogin(std::string& user, std::string& ispName, Variant& login) {
    return Call(dispid::kGetISPLogin, user, ispName, login);
}
Variant BusDravlink::SaveUser(std::string& user, std::string& password, const std::string& third) {
    return Call(dispid::kSaveUser, user, password, third);
}
Variant BusDravlink::GetUser(std::string& user, std::string& password, std::string& third) {
    return Call(dispid::kGetUser, user, password, third);
}
Variant BusDravlink::GetCallingCardList(Variant& list) {
    return Call(dispid::kGetCallingCardList, list);
}
Variant BusDravlink::SetCallingCardNumber(std::string& cardId, const std::string& number) {
    return Call(dispid::kSetCallingCardNumber, cardId, number);
}
Variant BusDravlink::GetISPList(const std::string& destination, Variant& list) {
    return Call(dispid::kGetISPList, destination, list);
}
Variant BusDravlink::SaveISPList(const std::string& destination, Variant& list) {
    return Call(dispid::kSaveISPList, destination, list);
}
Variant BusDravlink::RefreshISPList(const std::string& destination) {
    return Call(dispid::kRefreshISPList, destination);
}
Variant BusDravlink::GetPolicySetting(std::string& user, const std::string& key,
                                      std::string& value) {
    return Call(dispid::kGetPolicySetting, user, key, value);
}
Variant BusDravlink::CancelFileTransfer() {
    return Call(dispid::kCancelFileTransfer);
}

void RegisterBusEngine() {
    dialer::EngineFactory::Register(kBusEngineName, [](const dialer::EngineContext& context) {
        return std::make_shared<BusDravlink>(&context.platform);
    });
}

}  // namespace kw::link
