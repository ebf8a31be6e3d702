#include "platform/qt/binding.h"

#include <algorithm>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
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
    for (Property p :
         {Property::Attributes, Property::Caption, Property::Font, Property::Colors,
          Property::Picture, Property::Columns, Property::List, Property::Items, Property::Text,
          Property::Value, Property::Selection, Property::ToolTip, Property::Geometry,
          Property::Accessibility, Property::Description, Property::Enabled, Property::Visible}) {
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
        case Property::Appended:
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
            ShowVisible();
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
            ShowAccessibleDescription();
            ShowAccessibleName();
            break;
        case Property::Description:
            ShowAccessibleDescription();
            break;
        case Property::Data:
            widget_->update();
            break;
        case Property::Accessibility:
            ShowRole();
            ShowAccessibleName();
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

void ControlBinding::ShowVisible() {
    widget_->setVisible(control_.Visible());
}

void ControlBinding::ShowFont() {
    QFont font(ToQString(control_.FontName()));
    font.setPointSizeF(control_.FontSize() > 0 ? control_.FontSize() : 8.25);
    font.setBold(control_.FontBold());
    widget_->setFont(font);
}

QString ControlBinding::CaptionText() const {
    const std::string* caption = Caption();
    return caption != nullptr ? LabelText(*caption) : QString();
}

void ControlBinding::ShowAccessibleName() {
    QString name = ToQString(control_.AccessibleName());
    if (name.isEmpty() && control_.NamedBy() != nullptr && context_->captionOf) {
        name = context_->captionOf(*control_.NamedBy());
    }
    if (name.isEmpty()) {
        name = CaptionText();
    }
    if (name.isEmpty()) {
        name = ToQString(control_.ToolTipText());
    }
    if (name.isEmpty()) {
        name = FallbackName();
    }
    widget_->setAccessibleName(name);
}

// The program's own words first; else the tool tip, which says what the control is for.
void ControlBinding::ShowAccessibleDescription() {
    QString description = ToQString(control_.AccessibleDescription());
    if (description.isEmpty()) {
        description = ToQString(control_.ToolTipText());
    }
    // Every set is an event a reader may speak.
    if (description != widget_->accessibleDescription()) {
        widget_->setAccessibleDescription(description);
    }
}

// ---- what the kinds share -----------------------------------------------------------------

QString ObjectNameOf(const forms::Control& control) {
    QString name = ToQString(control.Name());
    if (control.Index() >= 0) {
        name += u'(' + QString::number(control.Index()) + u')';
    }
    return name;
}

namespace {

quint32 LittleEndian(const QByteArray& d, int at, int bytes) {
    quint32 v = 0;
    for (int i = bytes - 1; i >= 0; --i) {
        v = (v << 8) | static_cast<uchar>(d[at + i]);
    }
    return v;
}

// The artwork is 8-bit palette BMP: read straight into an indexed image, which spares start-up
// the image-format plugins. Anything else is left to Qt's readers (a null image here).
QImage ReadPaletteBmp(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QByteArray d = file.readAll();
    if (d.size() < 54 || d[0] != 'B' || d[1] != 'M') {
        return {};
    }
    const qint64 offset = LittleEndian(d, 10, 4);
    const qint64 header = LittleEndian(d, 14, 4);
    const auto width = static_cast<qint32>(LittleEndian(d, 18, 4));
    const auto height = static_cast<qint32>(LittleEndian(d, 22, 4));
    const qint64 colours = LittleEndian(d, 46, 4) == 0 ? 256 : LittleEndian(d, 46, 4);
    if (header < 40 || LittleEndian(d, 28, 2) != 8 || LittleEndian(d, 30, 4) != 0 || width <= 0 ||
        height == 0 || height == INT32_MIN || colours > 256) {
        return {};
    }
    const int rows = std::abs(height);
    const qint64 stride = (static_cast<qint64>(width) + 3) / 4 * 4;
    const qint64 table = 14 + header;
    if (table + colours * 4 > d.size() || offset < table || offset + stride * rows > d.size()) {
        return {};
    }
    QVector<QRgb> palette(256, qRgb(0, 0, 0));
    for (int i = 0; i < colours; ++i) {
        const qint64 at = table + i * 4;  // blue, green, red, reserved
        palette[i] = qRgb(static_cast<uchar>(d[at + 2]), static_cast<uchar>(d[at + 1]),
                          static_cast<uchar>(d[at]));
    }
    QImage image(width, rows, QImage::Format_Indexed8);
    image.setColorTable(palette);
    for (int y = 0; y < rows; ++y) {
        const qint64 row =
            height > 0 ? rows - 1 - y : y;  // bottom-up unless the height is negative
        std::copy_n(d.constData() + offset + row * stride, width, image.scanLine(y));
    }
    return image;
}

}  // namespace

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
        const QImage bmp = ReadPaletteBmp(path);
        if (bmp.isNull()) {
            pixmap.load(path);
        } else {
            pixmap = QPixmap::fromImage(bmp);
        }
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
