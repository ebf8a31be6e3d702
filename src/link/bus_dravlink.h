#pragma once

#include <QDBusConnection>
#include <QString>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "client/ui/dialer/engine/dravlink.h"
#include "link/link_errors.h"

namespace kw::forms {
class Platform;
}

namespace kw::link {

using automation::Variant;

class EventReceiver;

// The name the bus client registers under with the engine factory.
inline constexpr const char* kBusEngineName = "dravlink.dbus";

// The engine in its own process, reached over the session bus. Every operation travels as the
// late-bound call (Invoke by dispatch id, arguments by reference both ways); events come back to
// a receiver on this client's connection and reach the sink on the user interface's thread. A
// call lets the event loop run while it waits, so the engine's prompts, further events and timers
// are handled inside it, as they are when the engine is in the process. Once the bus has found the
// engine, calls and events take the engine's direct connection when it offers one.
class BusDravlink : public dialer::Dravlink {
  public:
    // Reaches the engine, starting it through the bus when it is not running: fails with a link
    // number when the bus or the engine cannot be reached. platform, when given, runs each event
    // handler as a reaction of its message loop. busAddress empty: the session bus.
    explicit BusDravlink(forms::Platform* platform, const QString& busAddress = {});
    ~BusDravlink() override;
    BusDravlink(const BusDravlink&) = delete;
    BusDravlink& operator=(const BusDravlink&) = delete;

    Variant GetPhoneList(Variant& list) override;
    Variant GetEntryList(Variant& list) override;
    Variant GetISPEntryProperty(const std::string& entryName, const std::string& key,
                                std::string& value) override;
    Variant GetLocationList(Variant& list) override;
    Variant GetLocationProperty(const std::string& location, const std::string& key,
                                std::string& value) override;
    Variant SetLocationProperty(const std::string& location, const std::string& key,
                                const std::string& value) override;
    Variant SavePOPList(const std::string& location, const std::string& destination,
                        Variant& list) override;
    Variant RefreshPOPList(const std::string& destination, const std::string& location) override;
    Variant BuildDialList(const std::string& location, const std::string& destination) override;
    Variant Disconnect(std::int32_t& handle) override;
    Variant Connect(const std::string& destination, bool option) override;
    Variant Logon(std::string& user, std::string& password, const std::string& third) override;
    Variant GetVPNEntryProperty(const std::string& entryName, const std::string& key,
                                std::string& value) override;
    Variant GetEntryType(const std::string& entryName, std::string& entryType) override;
    Variant Logoff() override;
    Variant GetLinkSpeed(const std::string& deviceName) override;
    Variant LocationExists(const std::string& location) override;
    Variant CreateLocation(const std::string& location) override;
    Variant SaveLocation(const std::string& location) override;
    Variant GetConnectionNames(std::string& destination, std::string& deviceName) override;
    Variant DeleteLocation(const std::string& location) override;
    Variant SetISPLogin(std::string& user, std::string& ispName, const std::string& ispUser,
                        const std::string& ispPassword) override;
    Variant GetISPLogin(std::string& user, std::string& ispName, Variant& login) override;
    Variant SaveUser(std::string& user, std::string& password, const std::string& third) override;
    Variant GetUser(std::string& user, std::string& password, std::string& third) override;
    Variant GetCallingCardList(Variant& list) override;
    Variant SetCallingCardNumber(std::string& cardId, const std::string& number) override;
    Variant GetISPList(const std::string& destination, Variant& list) override;
    Variant SaveISPList(const std::string& destination, Variant& list) override;
    Variant RefreshISPList(const std::string& destination) override;
    Variant GetPolicySetting(std::string& user, const std::string& key,
                             std::string& value) override;
    Variant CancelFileTransfer() override;

    std::int32_t GetIDsOfNames(const std::string& name) override;
    Variant Invoke(std::int32_t id, std::span<Variant> args) override;

    void Advise(dialer::DravlinkEvents* sink) override;
    void Unadvise() override;

    // The engine's own name on the bus, once reached.
    const QString& EngineBusName() const { return engine_; }
    // Whether calls and events go over a connection straight to the engine.
    bool Direct() const { return direct_.has_value(); }
    // Whether a message came from the engine this client reached.
    bool FromEngine(const QDBusMessage& message, const QDBusConnection& connection) const;

  private:
    QDBusMessage CallEngine(const QString& method, const QList<QVariant>& arguments);
    void JoinDirectly(const QString& address);
    void LeaveDirect();
    template <typename... Args>
    Variant Call(std::int32_t id, Args&... args);

    QString connectionName_;
    QDBusConnection bus_;
    QString engine_;  // the unique name of the engine's connection, once it answered
    std::optional<QDBusConnection> direct_;
    LinkStage stage_ = LinkStage::Reaching;
    std::map<std::string, std::int32_t> ids_;
    std::unique_ptr<EventReceiver> receiver_;
};

// Registers the bus client with the engine factory under kBusEngineName.
void RegisterBusEngine();

}  // namespace kw::link
