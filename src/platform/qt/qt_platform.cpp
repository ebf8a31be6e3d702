#include "platform/qt/qt_platform.h"

#include "platform/qt/message_hook.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include <QApplication>
#include <QCursor>
#include <QDateTime>
#include <QDesktopServices>
#include <QDir>
#include <QEventLoop>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QScreen>
#include <QSessionManager>
#include <QTextBrowser>
#include <QThread>
#include <QTimer>

#include "platform/qt/convert.h"
#include "platform/qt/form_window.h"
#include "platform/qt/instance_channel.h"
#include "platform/qt/message_box.h"

namespace kw::qt {

namespace {
// The one window of another instance this platform can name.
constexpr forms::WindowHandle kOtherInstance = 1;
}  // namespace

struct QtPlatform::TimerEntry {
    QTimer* timer = nullptr;
    std::function<void()> tick;
    bool running = false;
};

QtPlatform::QtPlatform(std::string assetsDir, std::string instanceKey)
    : assetsDir_(ToQString(assetsDir)) {
    InstanceChannel::Handlers handlers;
    handlers.placement = [this] { return OwnPlacement(); };
    handlers.restore = [this] { RestoreOwnWindows(); };
    handlers.raise = [this] { RaiseOwnWindows(); };
    channel_ = std::make_unique<InstanceChannel>(InstanceChannel::PathFor(instanceKey),
                                                 std::move(handlers));
    WatchSession();
}

void QtPlatform::WatchSession() {
    sessionWatch_ = std::make_unique<QObject>();
    QObject::connect(qApp, &QGuiApplication::commitDataRequest, sessionWatch_.get(),
                     [this](QSessionManager& manager) {
                         if (!QueryEndSession() && manager.allowsInteraction()) {
                             manager.cancel();
                         }
                         manager.release();
                     });
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, sessionWatch_.get(), [this] {
        if (sessionEnding_) {
            EndSession();
        }
    });
}

bool QtPlatform::QueryEndSession() {
    TellHooks(forms::wm::kQueryEndSession, 0);
    bool agreed = true;
    for (forms::Form* form : AttachedForms()) {
        Dispatch([&] { agreed = form->QueryUnload(forms::unload::kAppWindows) && agreed; });
        if (!agreed) {
            break;
        }
    }
    sessionEnding_ = agreed;
    return agreed;
}

void QtPlatform::EndSession() {
    TellHooks(forms::wm::kEndSession, 1);
    for (forms::Form* form : AttachedForms()) {
        // An earlier form's unload may have taken this one with it.
        if (std::find(attached_.begin(), attached_.end(), form) != attached_.end()) {
            Dispatch([form] { form->Unload(forms::unload::kAppWindows); });
        }
    }
}

void QtPlatform::TellHooks(int message, std::intptr_t wParam) {
    std::vector<QPointer<QObject>> hooks;
    for (const auto& [form, hook] : hooks_) {
        hooks.push_back(hook);
    }
    for (const QPointer<QObject>& hook : hooks) {
        if (auto* filter = qobject_cast<MessageHookFilter*>(hook.data())) {
            filter->Deliver(message, wParam, 0);
        }
    }
}

std::vector<forms::Form*> QtPlatform::AttachedForms() const {
    return attached_;
}

QtPlatform::~QtPlatform() {
    for (auto& [id, entry] : timers_) {
        delete entry->timer;
    }
    for (auto& [form, window] : windows_) {
        window->Detach();
        delete window;
    }
    if (cursor_ != forms::cursor::kDefault) {
        QApplication::restoreOverrideCursor();
    }
    delete helpViewer_.data();
}

FormWindow* QtPlatform::WindowOf(const forms::Form& form) const {
    auto it = windows_.find(&form);
    return it != windows_.end() ? it->second : nullptr;
}

// ---- boxes, timers, the loop --------------------------------------------------------------

int QtPlatform::ShowMessageBox(const forms::MessageBoxRequest& request) {
    // The hourglass is for the program's windows; a box asks the user something.
    QApplication::setOverrideCursor(Qt::ArrowCursor);
    struct Restore {
        ~Restore() { QApplication::restoreOverrideCursor(); }
    } restore;
    return boxes_.Run(request, ApplicationTitle());
}

bool QtPlatform::CloseMessageBox(const std::string& caption, int result) {
    return boxes_.Close(caption, result);
}

forms::TimerId QtPlatform::SetTimer(int intervalMs, std::function<void()> tick) {
    const forms::TimerId id = nextTimerId_++;
    auto entry = std::make_shared<TimerEntry>();
    entry->tick = std::move(tick);
    entry->timer = new QTimer();
    entry->timer->setTimerType(Qt::PreciseTimer);
    entry->timer->setInterval(std::max(intervalMs, 1));
    std::weak_ptr<TimerEntry> weak = entry;
    QObject::connect(entry->timer, &QTimer::timeout, [this, weak] {
        std::shared_ptr<TimerEntry> self = weak.lock();
        // A tick does not re-enter itself: a box or modal form inside it holds this timer back.
        if (!self || self->running) {
            return;
        }
        self->running = true;
        struct Done {
            TimerEntry& entry;
            ~Done() { entry.running = false; }
        } done{*self};
        Dispatch(self->tick);
    });
    entry->timer->start();
    timers_[id] = std::move(entry);
    return id;
}

void QtPlatform::KillTimer(forms::TimerId id) {
    auto it = timers_.find(id);
    if (it == timers_.end()) {
        return;
    }
    it->second->timer->stop();
    it->second->timer->deleteLater();  // it may be the timer whose tick is running
    timers_.erase(it);
}

void QtPlatform::DoEvents() {
    QCoreApplication::processEvents(QEventLoop::AllEvents);
}

void QtPlatform::Sleep(int ms) {
    QThread::msleep(static_cast<unsigned long>(std::max(ms, 0)));
}

std::int64_t QtPlatform::TickCount() const {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

std::int64_t QtPlatform::UnixTime() const {
    return QDateTime::currentSecsSinceEpoch();
}

forms::LocalTime QtPlatform::LocalNow() const {
    const QDateTime now = QDateTime::currentDateTime();
    const QDate date = now.date();
    const QTime time = now.time();
    return {date.year(), date.month(), date.day(), time.hour(), time.minute(), time.second()};
}

// ---- forms --------------------------------------------------------------------------------

void QtPlatform::AttachForm(forms::Form& form) {
    if (WindowOf(form) != nullptr) {
        return;
    }
    windows_[&form] = new FormWindow(form, QDir(assetsDir_).absolutePath(),
                                     [this](forms::Form& f) { FormHidden(f); });
    attached_.push_back(&form);
}

void QtPlatform::DetachForm(forms::Form& form) {
    RemoveMessageHook(form);  // a window on its way out tells the program nothing more
    attached_.erase(std::remove(attached_.begin(), attached_.end(), &form), attached_.end());
    auto it = windows_.find(&form);
    if (it != windows_.end()) {
        it->second->Detach();
        windows_.erase(it);
    }
    EndModalLoopsOf(form);
}

void QtPlatform::RunModal(forms::Form& form) {
    if (!form.IsLoaded() || !form.Visible()) {
        return;
    }
    QPointer<FormWindow> window = WindowOf(form);
    if (window) {
        // Modality only takes on a hidden window.
        window->hide();
        window->setWindowModality(Qt::ApplicationModal);
        window->show();
        window->raise();
        window->activateWindow();
    }
    QEventLoop loop;
    modalLoops_.push_back(ModalLoop{&form, &loop});
    loop.exec(QEventLoop::AllEvents);
    std::erase_if(modalLoops_, [&loop](const ModalLoop& m) { return m.loop == &loop; });
    if (window && !window->isVisible()) {
        window->setWindowModality(Qt::NonModal);
    }
}

void QtPlatform::FormHidden(forms::Form& form) {
    EndModalLoopsOf(form);
}

void QtPlatform::EndModalLoopsOf(const forms::Form& form) {
    for (const ModalLoop& m : modalLoops_) {
        if (m.form == &form) {
            m.loop->quit();
        }
    }
}

// ---- cursor and other windows -------------------------------------------------------------

void QtPlatform::SetCursor(int shape) {
    if (cursor_ != forms::cursor::kDefault) {
        QApplication::restoreOverrideCursor();
    }
    cursor_ = shape;
    switch (shape) {
        case forms::cursor::kDefault:
            break;
        case forms::cursor::kHourglass:
            QApplication::setOverrideCursor(Qt::WaitCursor);
            break;
        case forms::cursor::kArrowHourglass:
            QApplication::setOverrideCursor(Qt::BusyCursor);
            break;
        case 2:
            QApplication::setOverrideCursor(Qt::CrossCursor);
            break;
        case 3:
            QApplication::setOverrideCursor(Qt::IBeamCursor);
            break;
        case 99:
        case 10:
            QApplication::setOverrideCursor(Qt::PointingHandCursor);
            break;
        default:
            QApplication::setOverrideCursor(Qt::ArrowCursor);
            break;
    }
}

forms::Point QtPlatform::CursorPos() const {
    const QPoint p = QCursor::pos();
    return forms::Point{p.x(), p.y()};
}

bool QtPlatform::PreviousInstanceRunning() {
    return channel_->OtherInstanceRunning();
}

forms::WindowHandle QtPlatform::FindWindow(const std::string& className, const std::string& title) {
    (void)className;
    (void)title;  // one program per channel: whoever answers is the window asked for
    if (channel_->IsListening()) {
        return 0;  // we are the running instance
    }
    return channel_->Ask("ping").has_value() ? kOtherInstance : 0;
}

int QtPlatform::GetWindowPlacement(forms::WindowHandle window) {
    if (window != kOtherInstance) {
        return forms::show::kHide;
    }
    const auto answer = channel_->Ask("placement");
    return answer ? std::atoi(answer->c_str()) : forms::show::kHide;
}

void QtPlatform::SetWindowPlacement(forms::WindowHandle window, int showState) {
    if (window == kOtherInstance && showState == forms::show::kNormal) {
        channel_->Ask("restore");
    }
}

void QtPlatform::SetForegroundWindow(forms::WindowHandle window) {
    if (window == kOtherInstance) {
        channel_->Ask("raise");
    }
}

int QtPlatform::OwnPlacement() const {
    int state = forms::show::kHide;
    for (const auto& [form, window] : windows_) {
        if (!form->Visible()) {
            continue;
        }
        if (window->isMinimized()) {
            return forms::show::kMinimized;
        }
        state = forms::show::kNormal;
    }
    return state;
}

void QtPlatform::RestoreOwnWindows() {
    for (const auto& [form, window] : windows_) {
        if (form->Visible()) {
            window->RestoreFromMinimized();
        }
    }
}

void QtPlatform::RaiseOwnWindows() {
    FormWindow* first = nullptr;
    for (const auto& [form, window] : windows_) {
        if (form->Visible()) {
            window->raise();
            if (first == nullptr) {
                first = window;
            }
        }
    }
    if (first != nullptr) {
        first->activateWindow();
    }
}

// ---- the user, the screen, help, files ----------------------------------------------------

void QtPlatform::InstallMessageHook(forms::Form& form, forms::WindowMessageHook hook) {
    RemoveMessageHook(form);
    FormWindow* window = WindowOf(form);
    if (window == nullptr) {
        return;
    }
    hooks_[&form] = new MessageHookFilter(*window, *this, std::move(hook));
}

void QtPlatform::RemoveMessageHook(forms::Form& form) {
    auto it = hooks_.find(&form);
    if (it == hooks_.end()) {
        return;
    }
    delete it->second.data();  // the filter leaves the window's event stream as it goes
    hooks_.erase(it);
}

std::optional<std::string> QtPlatform::LoggedOnUserName() {
    passwd entry{};
    passwd* found = nullptr;
    std::vector<char> buffer(4096);
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 &&
        found != nullptr && found->pw_name != nullptr && found->pw_name[0] != '\0') {
        return std::string(found->pw_name);
    }
    if (const char* user = std::getenv("USER"); user != nullptr && user[0] != '\0') {
        return std::string(user);
    }
    return std::nullopt;
}

namespace {
int TwipsPerPixel(bool horizontal) {
    const QScreen* screen = QGuiApplication::primaryScreen();
    const double dpi = screen == nullptr ? 96.0
                       : horizontal      ? screen->logicalDotsPerInchX()
                                         : screen->logicalDotsPerInchY();
    return dpi > 0 ? static_cast<int>(1440.0 / dpi + 0.5) : 15;
}
}  // namespace

int QtPlatform::TwipsPerPixelX() const {
    return TwipsPerPixel(true);
}
int QtPlatform::TwipsPerPixelY() const {
    return TwipsPerPixel(false);
}

int QtPlatform::SystemMetric(int index) const {
    const QScreen* screen = QGuiApplication::primaryScreen();
    switch (index) {
        case forms::metric::kCxScreen:
            return screen ? screen->geometry().width() : 0;
        case forms::metric::kCyScreen:
            return screen ? screen->geometry().height() : 0;
        case forms::metric::kCyCaption:
            return kCaptionHeight;
        case forms::metric::kCxBorder:
        case forms::metric::kCyBorder:
            return 1;
        case forms::metric::kCxDlgFrame:
        case forms::metric::kCyDlgFrame:
            return kDialogFrame;
        default:
            return 0;
    }
}

void QtPlatform::Beep() {
    QApplication::beep();
}

QUrl QtPlatform::HelpUrl(const std::string& helpFile, int contextId) const {
    const QDir help(QDir(assetsDir_).filePath(QStringLiteral("help")));
    const QString stem = QFileInfo(ToQString(helpFile).replace(u'\\', u'/')).completeBaseName();
    QString page = help.filePath(stem + QStringLiteral(".html"));
    if (stem.isEmpty() || !QFileInfo::exists(page)) {
        page = help.filePath(QStringLiteral("index.html"));
    }
    QUrl url = QUrl::fromLocalFile(QFileInfo(page).absoluteFilePath());
    if (contextId != 0) {
        url.setFragment(QString::number(contextId));
    }
    return url;
}

void QtPlatform::ShowHelp(const std::string& helpFile, int contextId) {
    const QUrl url = HelpUrl(helpFile, contextId);
    if (QDesktopServices::openUrl(url)) {
        return;
    }
    // No browser on this desktop: a plain viewer of our own.
    if (!helpViewer_) {
        helpViewer_ = new QTextBrowser();
        helpViewer_->setObjectName(QStringLiteral("HelpViewer"));
        helpViewer_->setWindowTitle(ToQString(ApplicationTitle()));
        helpViewer_->resize(640, 480);
    }
    helpViewer_->setSource(url);
    helpViewer_->show();
    helpViewer_->raise();
}

std::optional<std::string> QtPlatform::OpenFileDialog(const forms::FileDialogRequest& request) {
    QString start = ToQString(request.initialDir).replace(u'\\', u'/');
    if (!request.fileName.empty()) {
        start = QDir(start).filePath(ToQString(request.fileName).replace(u'\\', u'/'));
    }
    const bool mayCreate = (request.flags & forms::ofn::kCreatePrompt) != 0;
    const QString title = request.title.empty() ? QStringLiteral("Open") : ToQString(request.title);
    QFileDialog dialog(nullptr, title, start, ToFileDialogFilter(request.filter));
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(mayCreate ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog.setObjectName(QStringLiteral("OpenFileDialog"));
    while (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty()) {
        const QString path = dialog.selectedFiles().constFirst();
        if (!mayCreate || QFileInfo::exists(path)) {
            return FromQString(path);
        }
        // As the classic dialog asks; No goes back to the dialog to choose again.
        const QString question = QDir::toNativeSeparators(path) +
                                 QStringLiteral("\nThis file does not exist.\nCreate the file?");
        if (QMessageBox::question(&dialog, dialog.windowTitle(), question) == QMessageBox::Yes) {
            return FromQString(path);
        }
    }
    return std::nullopt;
}

void QtPlatform::EndProcess(int exitCode) {
    // At once: no unload step runs, no window closes first. Only the instance channel's socket
    // goes, so that nothing is left at its name.
    channel_.reset();
    std::fflush(nullptr);
    std::_Exit(exitCode);
}

}  // namespace kw::qt
