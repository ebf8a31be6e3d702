#pragma once

#include <QDBusError>
#include <QDBusMessage>
#include <string>

#include "platform/automation/failure.h"

namespace kw::link {

// The three failures of the link to the engine's process, with the numbers the program knows.
namespace linkerr {
inline constexpr int kServerUnavailable = static_cast<int>(0x800706BAu);
inline constexpr int kObjectDisconnected = static_cast<int>(0x80010108u);
inline constexpr int kCallFailed = static_cast<int>(0x800706BFu);
}  // namespace linkerr

// Whether the engine had answered this client before the error came: a missing engine means it
// could not be started before, and that it went away after. Direct: bound, and the call went
// over the connection straight to the engine, which only breaks when the engine goes.
enum class LinkStage { Reaching, Bound, Direct };

// The failure an error of the bus stands for. The engine's own failures come back with their
// number and description; everything else goes through one table of bus error names.
automation::Failure FailureFromBusError(const QDBusMessage& reply, LinkStage stage);

// How the engine sends an automation failure back as an error reply.
QDBusMessage FailureReply(const QDBusMessage& call, const automation::Failure& failure);

}  // namespace kw::link
