#pragma once

#include <QDBusConnection>
#include <QDBusMessage>

namespace kw::link {

// Sends a call and runs the event loop, user input held back, until its answer comes, with no
// time-out: an answer may wait on the user. QDBusConnection::call in BlockWithGui mode can miss an
// answer that arrives while it sets up its wait, and then waits for ever; a watcher cannot.
QDBusMessage CallAndWait(const QDBusConnection& via, const QDBusMessage& call);

}  // namespace kw::link
