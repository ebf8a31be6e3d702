#include "platform/qt/message_box.h"

#include <utility>
#include <vector>

#include <QAbstractButton>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTimer>

#include "platform/qt/convert.h"

namespace kw::qt {

namespace mb = forms::mb;

namespace {

struct ButtonSpec {
    QMessageBox::StandardButton standard;
    int result;
};

std::vector<ButtonSpec> ButtonsOf(int flags) {
    switch (flags & mb::kButtonMask) {
        case mb::kOkCancel:
            return {{QMessageBox::Ok, mb::kResultOk}, {QMessageBox::Cancel, mb::kResultCancel}};
        case mb::kAbortRetryIgnore:
            return {{QMessageBox::Abort, mb::kResultAbort},
                    {QMessageBox::Retry, mb::kResultRetry},
                    {QMessageBox::Ignore, mb::kResultIgnore}};
        case mb::kYesNoCancel:
            return {{QMessageBox::Yes, mb::kResultYes},
                    {QMessageBox::No, mb::kResultNo},
                    {QMessageBox::Cancel, mb::kResultCancel}};
        case mb::kYesNo:
            return {{QMessageBox::Yes, mb::kResultYes}, {QMessageBox::No, mb::kResultNo}};
        case mb::kRetryCancel:
            return {{QMessageBox::Retry, mb::kResultRetry},
                    {QMessageBox::Cancel, mb::kResultCancel}};
        default:
            return {{QMessageBox::Ok, mb::kResultOk}};
    }
}

QMessageBox::Icon IconOf(int flags) {
    switch (flags & mb::kIconMask) {
        case mb::kCritical:
            return QMessageBox::Critical;
        case mb::kQuestion:
            return QMessageBox::Question;
        case mb::kExclamation:
            return QMessageBox::Warning;
        case mb::kInformation:
            return QMessageBox::Information;
        default:
            return QMessageBox::NoIcon;
    }
}

// A box wraps its text between words; a long run without a space (a name typed as one word, a
// path) would stretch it across the screen, so such a run may break after every 40 characters.
QString Wrappable(const QString& text) {
    constexpr int kLongestRun = 40;
    QString out;
    out.reserve(text.size() + text.size() / kLongestRun);
    int run = 0;
    for (const QChar c : text) {
        if (c.isSpace()) {
            run = 0;
        } else if (++run > kLongestRun) {
            out += QChar(0x200B);  // zero width space: a place to break, nothing to see or read
            run = 1;
        }
        out += c;
    }
    return out;
}

using ButtonResults = std::vector<std::pair<QAbstractButton*, int>>;

// The buttons of the flags' set, relabelled when the request says so, with their results.
ButtonResults AddButtons(QMessageBox& box, const forms::MessageBoxRequest& request) {
    ButtonResults results;
    const auto specs = ButtonsOf(request.flags);
    for (std::size_t i = 0; i < specs.size(); ++i) {
        QPushButton* button = box.addButton(specs[i].standard);
        if (i < request.buttonLabels.size()) {
            button->setText(ToQString(request.buttonLabels[i]));
        }
        results.emplace_back(button, specs[i].result);
    }
    const std::size_t defaultIndex =
        static_cast<std::size_t>((request.flags & mb::kDefaultMask) >> 8);
    box.setDefaultButton(
        static_cast<QPushButton*>(results[defaultIndex < results.size() ? defaultIndex : 0].first));
    return results;
}

// A system-modal or foreground box must not end up behind the program's own windows; X11 lets
// us ask for the top and for activation, not insist.
void KeepInFront(QMessageBox& box) {
    box.setWindowFlag(Qt::WindowStaysOnTopHint, true);
    QTimer::singleShot(0, &box, [&box] {
        box.raise();
        box.activateWindow();
    });
}

int ResultOf(const QAbstractButton* clicked, const ButtonResults& results) {
    for (const auto& [button, result] : results) {
        if (button == clicked) {
            return result;
        }
    }
    // Closed without a button (the box had no escape button): the last button of the set.
    return results.back().second;
}

}  // namespace

int MessageBoxes::Run(const forms::MessageBoxRequest& request, const std::string& defaultCaption) {
    QMessageBox box;
    box.setObjectName(QStringLiteral("MessageBox"));
    box.setTextFormat(Qt::PlainText);
    box.setText(
        Wrappable(ToQString(request.text).replace(QStringLiteral("\r\n"), QStringLiteral("\n"))));
    box.setWindowTitle(ToQString(request.caption.empty() ? defaultCaption : request.caption));
    box.setIcon(IconOf(request.flags));
    const ButtonResults results = AddButtons(box, request);
    if ((request.flags & (mb::kSystemModal | mb::kSetForeground)) != 0) {
        KeepInFront(box);
    }
    box.setWindowModality(Qt::ApplicationModal);

    bool timedOut = false;
    if (request.timeoutMs > 0) {
        QTimer::singleShot(request.timeoutMs, &box, [&box, &timedOut] {
            timedOut = true;
            box.done(0);
        });
    }
    Open open{FromQString(box.windowTitle()), &box, std::nullopt};
    open_.push_back(&open);
    box.exec();
    std::erase(open_, &open);

    if (open.closedWith) {
        return *open.closedWith;
    }
    if (timedOut) {
        return mb::kResultTimeout;
    }
    return ResultOf(box.clickedButton(), results);
}

bool MessageBoxes::Close(const std::string& caption, int result) {
    for (auto it = open_.rbegin(); it != open_.rend(); ++it) {
        Open& open = **it;
        if (open.caption == caption && !open.closedWith) {
            open.closedWith = result;
            open.box->done(0);
            return true;
        }
    }
    return false;
}

}  // namespace kw::qt
