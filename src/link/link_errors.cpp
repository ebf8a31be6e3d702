#include "link/link_errors.h"

#include <array>
#include <string_view>

#include "link/wire.h"

namespace kw::link {

namespace {

// Which number a bus error becomes. A missing name while the link is being made means the engine
// cannot be started; the same once it answered means it went away. Bus errors not listed here
// mean the call could not be delivered.
struct Mapping {
    std::string_view errorName;
    int whileReaching;
    int onceBound;
    int direct;
};

constexpr std::array kMappings = {
    Mapping{"org.freedesktop.DBus.Error.ServiceUnknown", linkerr::kServerUnavailable,
            linkerr::kObjectDisconnected, linkerr::kObjectDisconnected},
    Mapping{"org.freedesktop.DBus.Error.NameHasNoOwner", linkerr::kServerUnavailable,
            linkerr::kObjectDisconnected, linkerr::kObjectDisconnected},
    // The engine's program is missing, would not start, or ended before it took its name.
    Mapping{"org.freedesktop.DBus.Error.Spawn.", linkerr::kServerUnavailable,
            linkerr::kObjectDisconnected, linkerr::kObjectDisconnected},
    // No answer because the engine left the bus in the middle of the call.
    Mapping{"org.freedesktop.DBus.Error.NoReply", linkerr::kServerUnavailable,
            linkerr::kObjectDisconnected, linkerr::kObjectDisconnected},
    // Over the bus: this client's own connection to the bus is gone, or never was. Over the
    // direct connection: the engine at its other end went away.
    Mapping{"org.freedesktop.DBus.Error.Disconnected", linkerr::kServerUnavailable,
            linkerr::kCallFailed, linkerr::kObjectDisconnected},
};

bool Matches(std::string_view name, std::string_view pattern) {
    return pattern.ends_with('.') ? name.starts_with(pattern) : name == pattern;
}

}  // namespace

automation::Failure FailureFromBusError(const QDBusMessage& reply, LinkStage stage) {
    const std::string name = reply.errorName().toStdString();
    const std::string text = reply.errorMessage().toStdString();
    if (name == kFailureError) {
        const auto cut = text.find('\n');
        try {
            return automation::Failure(std::stoi(text.substr(0, cut)),
                                       cut == std::string::npos ? "" : text.substr(cut + 1));
        } catch (const std::exception&) {
            return automation::Failure(linkerr::kCallFailed, text);
        }
    }
    for (const Mapping& m : kMappings) {
        if (Matches(name, m.errorName)) {
            const int number = stage == LinkStage::Reaching ? m.whileReaching
                               : stage == LinkStage::Bound  ? m.onceBound
                                                            : m.direct;
            return automation::Failure(number, text);
        }
    }
    return automation::Failure(linkerr::kCallFailed, name + ": " + text);
}

QDBusMessage FailureReply(const QDBusMessage& call, const automation::Failure& failure) {
    return call.createErrorReply(QString::fromLatin1(kFailureError),
                                 QString::number(failure.Number()) + QLatin1Char('\n') +
                                     QString::fromStdString(failure.Description()));
}

}  // namespace kw::link
