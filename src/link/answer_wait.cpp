#include "link/answer_wait.h"

#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QEventLoop>
#include <climits>

namespace kw::link {

QDBusMessage CallAndWait(const QDBusConnection& via, const QDBusMessage& call) {
    QDBusPendingCall pending = via.asyncCall(call, INT_MAX);  // INT_MAX: no time-out
    QDBusPendingCallWatcher watcher(pending);
    QEventLoop loop;
    QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
    // The watcher tells of an answer that came before it existed too, through the event loop.
    if (!watcher.isFinished()) {
        loop.exec(QEventLoop::ExcludeUserInputEvents | QEventLoop::WaitForMoreEvents);
    }
    return pending.reply();
}

}  // namespace kw::link
