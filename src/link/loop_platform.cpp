#include "link/loop_platform.h"

#include <pwd.h>
#include <unistd.h>
#include <QCoreApplication>
#include <QThread>
#include <cstdlib>
#include <ctime>

#include "platform/automation/failure.h"

namespace kw::link {

LoopPlatform::LoopPlatform(std::function<void(const std::string&)> report)
    : report_(std::move(report)) {
    clock_.start();
}

LoopPlatform::~LoopPlatform() {
    for (auto& [id, timer] : timers_) {
        delete timer;
    }
}

int LoopPlatform::ShowMessageBox(const forms::MessageBoxRequest& request) {
    if (report_) {
        report_("a box nobody can see: " + request.text);
    }
    return forms::mb::kResultOk;
}

forms::TimerId LoopPlatform::SetTimer(int intervalMs, std::function<void()> tick) {
    const forms::TimerId id = nextTimer_++;
    auto* timer = new QTimer;
    timer->setInterval(intervalMs);
    QObject::connect(timer, &QTimer::timeout, [this, tick = std::move(tick)] {
        try {
            tick();
        } catch (const automation::Failure& failure) {
            if (report_) {
                report_("a timer's work failed: " + std::to_string(failure.Number()) + " " +
                        failure.Description());
            }
        }
    });
    timers_[id] = timer;
    timer->start();
    return id;
}

void LoopPlatform::KillTimer(forms::TimerId id) {
    auto it = timers_.find(id);
    if (it == timers_.end()) {
        return;
    }
    // The timer may be the one whose tick is running now.
    it->second->stop();
    it->second->deleteLater();
    timers_.erase(it);
}

void LoopPlatform::DoEvents() {
    QCoreApplication::processEvents();
}

void LoopPlatform::Sleep(int ms) {
    QThread::msleep(static_cast<unsigned long>(ms));
}

std::int64_t LoopPlatform::UnixTime() const {
    return static_cast<std::int64_t>(std::time(nullptr));
}

forms::LocalTime LoopPlatform::LocalNow() const {
    const std::time_t now = std::time(nullptr);
    std::tm tm{};
    localtime_r(&now, &tm);
    return {tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec};
}

std::optional<std::string> LoopPlatform::LoggedOnUserName() {
    if (const passwd* pw = ::getpwuid(::getuid()); pw != nullptr && pw->pw_name != nullptr) {
        return std::string(pw->pw_name);
    }
    return std::nullopt;
}

void LoopPlatform::EndProcess(int exitCode) {
    std::exit(exitCode);
}

}  // namespace kw::link
