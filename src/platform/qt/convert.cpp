#include "platform/qt/convert.h"

#include <QKeyEvent>
#include <QPalette>
#include <QRect>

#include "platform/forms/controls.h"

namespace kw::qt {

QColor ToQColor(long colour) {
    const auto value = static_cast<unsigned long>(colour);
    if ((value & 0x80000000UL) != 0) {
        // System colours: the ones forms use, taken from the desktop's palette.
        const QPalette palette;
        switch (value & 0xFFUL) {
            case 5:
                return palette.color(QPalette::Base);  // window background
            case 8:
                return palette.color(QPalette::Text);  // window text
            case 13:
                return palette.color(QPalette::Highlight);  // highlight
            case 14:
                return palette.color(QPalette::HighlightedText);
            case 15:
                return palette.color(QPalette::Button);  // button face
            case 18:
                return palette.color(QPalette::ButtonText);  // button text
            case 17:
                return palette.color(QPalette::PlaceholderText);  // grey text
            default:
                return palette.color(QPalette::Window);
        }
    }
    return QColor(static_cast<int>(value & 0xFFUL), static_cast<int>((value >> 8) & 0xFFUL),
                  static_cast<int>((value >> 16) & 0xFFUL));
}

QString LabelText(const std::string& caption) {
    QString out;
    out.reserve(static_cast<qsizetype>(caption.size()));
    const QString in = ToQString(caption);
    for (qsizetype i = 0; i < in.size(); ++i) {
        if (in[i] == u'&') {
            if (i + 1 < in.size() && in[i + 1] == u'&') {
                out += u'&';
                ++i;
            }
            continue;
        }
        out += in[i];
    }
    return out;
}

namespace {

// Y-X banded: bands top to bottom without overlap, rectangles of a band share top and bottom and
// run left to right without touching.
bool IsBanded(const std::vector<forms::RegionRect>& rects) {
    for (std::size_t i = 0; i < rects.size(); ++i) {
        const auto& r = rects[i];
        if (r.right <= r.left || r.bottom <= r.top) {
            return false;
        }
        if (i == 0) {
            continue;
        }
        const auto& p = rects[i - 1];
        if (r.top == p.top) {
            if (r.bottom != p.bottom || r.left <= p.right) {
                return false;
            }
        } else if (r.top < p.bottom) {
            return false;
        }
    }
    return true;
}

QRect ToQRect(const forms::RegionRect& r) {
    return QRect(r.left, r.top, r.right - r.left, r.bottom - r.top);
}

}  // namespace

QRegion ToQRegion(const std::vector<forms::RegionRect>& rects) {
    QRegion region;
    if (IsBanded(rects)) {
        std::vector<QRect> qrects;
        qrects.reserve(rects.size());
        for (const auto& r : rects) {
            qrects.push_back(ToQRect(r));
        }
        region.setRects(qrects.data(), static_cast<int>(qrects.size()));
        return region;
    }
    for (const auto& r : rects) {
        if (r.right > r.left && r.bottom > r.top) {
            region += ToQRect(r);
        }
    }
    return region;
}

QString ToFileDialogFilter(const std::string& filter) {
    const QStringList parts = ToQString(filter).split(u'|');
    QStringList out;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QString description = parts[i].trimmed();
        QStringList patterns = parts[i + 1].split(u';', Qt::SkipEmptyParts);
        for (auto& p : patterns) {
            p = p.trimmed();
        }
        // The description often repeats its patterns in brackets; the dialog reads the patterns
        // from the last brackets, so those must be the real ones.
        if (description.endsWith(u')')) {
            const qsizetype open = description.lastIndexOf(u'(');
            if (open >= 0) {
                description = description.left(open).trimmed();
            }
        }
        if (description.isEmpty()) {
            description = patterns.join(u' ');
        }
        out << description + QStringLiteral(" (") + patterns.join(u' ') + u')';
    }
    return out.join(QStringLiteral(";;"));
}

namespace {

struct KeyCode {
    int qtKey;
    int code;
};

// The keys outside letters, digits and function keys that the event routines see.
constexpr KeyCode kKeyCodes[] = {
    {Qt::Key_Backspace, forms::key::kBack},
    {Qt::Key_Tab, forms::key::kTab},
    {Qt::Key_Backtab, forms::key::kTab},
    {Qt::Key_Return, forms::key::kReturn},
    {Qt::Key_Enter, forms::key::kReturn},
    {Qt::Key_Shift, 16},
    {Qt::Key_Control, 17},
    {Qt::Key_Alt, 18},
    {Qt::Key_Escape, forms::key::kEscape},
    {Qt::Key_Space, forms::key::kSpace},
    {Qt::Key_PageUp, 33},
    {Qt::Key_PageDown, 34},
    {Qt::Key_End, 35},
    {Qt::Key_Home, 36},
    {Qt::Key_Left, 37},
    {Qt::Key_Up, 38},
    {Qt::Key_Right, 39},
    {Qt::Key_Down, 40},
    {Qt::Key_Insert, 45},
    {Qt::Key_Delete, forms::key::kDelete},
};

}  // namespace

int KeyCodeOf(const QKeyEvent& event) {
    const int key = event.key();
    if ((key >= Qt::Key_A && key <= Qt::Key_Z) || (key >= Qt::Key_0 && key <= Qt::Key_9)) {
        return key;  // the same numbers as the key codes
    }
    if (key >= Qt::Key_F1 && key <= Qt::Key_F24) {
        return forms::key::kF1 + (key - Qt::Key_F1);
    }
    for (const KeyCode& entry : kKeyCodes) {
        if (entry.qtKey == key) {
            return entry.code;
        }
    }
    return 0;
}

std::optional<int> KeyAsciiOf(const QKeyEvent& event) {
    switch (event.key()) {
        case Qt::Key_Backspace:
            return forms::key::kBack;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return forms::key::kReturn;
        case Qt::Key_Escape:
            return forms::key::kEscape;
        default:
            break;
    }
    const QString text = event.text();
    if (text.size() != 1) {
        return std::nullopt;
    }
    const char16_t c = text[0].unicode();
    // Only plain characters: the text models count bytes, and a wider character is not one.
    if (c < 32 || c > 126) {
        return std::nullopt;
    }
    return static_cast<int>(c);
}

int ShiftOf(Qt::KeyboardModifiers modifiers) {
    int shift = 0;
    if (modifiers & Qt::ShiftModifier) {
        shift |= 1;
    }
    if (modifiers & Qt::ControlModifier) {
        shift |= 2;
    }
    if (modifiers & Qt::AltModifier) {
        shift |= 4;
    }
    return shift;
}

int ButtonsOf(Qt::MouseButtons buttons) {
    int out = 0;
    if (buttons & Qt::LeftButton) {
        out |= forms::mouse::kLeft;
    }
    if (buttons & Qt::RightButton) {
        out |= forms::mouse::kRight;
    }
    if (buttons & Qt::MiddleButton) {
        out |= forms::mouse::kMiddle;
    }
    return out;
}

}  // namespace kw::qt
