#include "platform/qt/binding.h"

#include <algorithm>

#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QPixmapCache>
#include <QSignalBlocker>

#include "platform/forms/control.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"
#include "platform/qt/convert.h"

namespace kw::qt {

using forms::Property;

ControlBinding::ControlBinding(forms::Control& control, std::shared_ptr<BindingContext> context)
    : control_(control), context_(std::move(context)) {}

ControlBinding::~ControlBinding() = default;

void ControlBinding::Build(QWidget* parent) {
    ShowingModel showing(*context_);
    widget_ = Create(parent);
    widget_->setObjectName(ObjectNameOf(control_));
    setParent(widget_);
    ConnectInput();
    ApplyAll();
}

void ControlBinding::ApplyAll() {
    for (Property p : {Property::Attributes, Property::Caption, Property::Font, Property::Colors,
                       Property::Picture, Property::Columns, Property::List, Property::Items,
                       Property::Text, Property::Value, Property::Selection, Property::ToolTip,
                       Property::Geometry, Property::Enabled, Property::Visible}) {
        Apply(p);
    }
}

void ControlBinding::Apply(Property what) {
    ShowingModel showing(*context_);
    const QSignalBlocker blocker(widget_);
    switch (what) {
        case Property::Caption:
            Show(what);
            if (Caption() != nullptr) {
                ShowAccessibleName();
            }
            break;
        case Property::Text:
        case Property::Selection:
        case Property::Picture:
        case Property::Colors:
        case Property::List:
        case Property::ListIndex:
        case Property::Value:
        case Property::Attributes:
        case Property::Columns:
        case Property::Items:
            Show(what);
            break;
        default:
            ShowCommon(what);
            break;
    }
}

void ControlBinding::Reshow(Property what) {
    if (context_->Live()) {
        Apply(what);
    }
}

void ControlBinding::ShowCommon(Property what) {
    switch (what) {
        case Property::Enabled:
            widget_->setEnabled(control_.Enabled());
            break;
        case Property::Visible:
            widget_->setVisible(control_.Visible());
            break;
        case Property::Geometry: {
            // Controls on the form itself sit in its client area, inside any emulated frame.
            const bool onForm = control_.Container() == nullptr;
            const int dx = onForm ? control_.Parent().FrameInsetX() : 0;
            const int dy = onForm ? control_.Parent().FrameInsetY() : 0;
            widget_->setGeometry(control_.Left() + dx, control_.Top() + dy,
                                 std::max(control_.Width(), 0), std::max(control_.Height(), 0));
            break;
        }
        case Property::Font:
            ShowFont();
            break;
        case Property::ToolTip:
            widget_->setToolTip(ToQString(control_.ToolTipText()));
            widget_->setAccessibleDescription(ToQString(control_.ToolTipText()));
            ShowAccessibleName();
            break;
        case Property::Data:
            widget_->update();
            break;
        case Property::Focus:
            if (control_.HasFocus() && !widget_->hasFocus()) {
                widget_->setFocus(Qt::OtherFocusReason);
            }
            break;
        case Property::ZOrder:
            widget_->raise();
            break;
        default:
            break;
    }
}

void ControlBinding::ShowFont() {
    QFont font(ToQString(control_.FontName()));
    font.setPointSizeF(control_.FontSize() > 0 ? control_.FontSize() : 8.25);
    font.setBold(control_.FontBold());
    widget_->setFont(font);
}

void ControlBinding::ShowAccessibleName() {
    const std::string* caption = Caption();
    QString name = caption != nullptr ? LabelText(*caption) : QString();
    if (name.isEmpty()) {
        name = ToQString(control_.ToolTipText());
    }
    if (name.isEmpty()) {
        name = FallbackName();
    }
    widget_->setAccessibleName(name);
}

// ---- what the kinds share -----------------------------------------------------------------

QString ObjectNameOf(const forms::Control& control) {
    QString name = ToQString(control.Name());
    if (control.Index() >= 0) {
        name += u'(' + QString::number(control.Index()) + u')';
    }
    return name;
}

QPixmap LoadPicture(const QString& assetsDir, const std::string& picture) {
    if (picture.empty()) {
        return {};
    }
    QString path = ToQString(picture).replace(u'\\', u'/');
    if (QFileInfo(path).isRelative()) {
        path = QDir(assetsDir).filePath(path);
    }
    QPixmap pixmap;
    if (!QPixmapCache::find(path, &pixmap)) {
        pixmap.load(path);
        QPixmapCache::insert(path, pixmap);
    }
    return pixmap;
}

QString ToWidgetText(const std::string& text) {
    return ToQString(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
}

std::string ToModelText(const QString& text) {
    QString out = text;
    out.replace(QStringLiteral("\n"), QStringLiteral("\r\n"));
    return FromQString(out);
}

Qt::Alignment AlignmentOf(int alignment) {
    switch (alignment) {
        case forms::align::kRight:
            return Qt::AlignRight;
        case forms::align::kCenter:
            return Qt::AlignHCenter;
        default:
            return Qt::AlignLeft;
    }
}

void ShowFieldColours(QWidget* widget, const forms::Control& control) {
    QPalette palette = widget->palette();
    palette.setColor(QPalette::Text, ToQColor(control.ForeColor()));
    palette.setColor(QPalette::Base, ToQColor(control.BackColor()));
    widget->setPalette(palette);
}

void ShowSurfaceColours(QWidget* widget, const forms::Control& control, bool opaque) {
    QPalette palette = widget->palette();
    palette.setColor(QPalette::WindowText, ToQColor(control.ForeColor()));
    palette.setColor(QPalette::Window, ToQColor(control.BackColor()));
    widget->setAutoFillBackground(opaque);
    widget->setPalette(palette);
}

void ShowLineSelection(QLineEdit* line, int start, int length) {
    if (length > 0) {
        line->setSelection(start, length);
    } else {
        line->setCursorPosition(start);
    }
}

LineSelection ReadLineSelection(const QLineEdit& line) {
    if (!line.hasSelectedText()) {
        return {line.cursorPosition(), 0};
    }
    return {line.selectionStart(), static_cast<int>(line.selectedText().size())};
}

}  // namespace kw::qt
