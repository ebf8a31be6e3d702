#pragma once

#include <optional>
#include <string>
#include <vector>

#include <QColor>
#include <QRegion>
#include <QString>
#include <Qt>

#include "platform/forms/form.h"

class QKeyEvent;
class QMouseEvent;

namespace kw::qt {

// The models keep text as UTF-8 bytes.
inline QString ToQString(const std::string& text) {
    return QString::fromStdString(text);
}
inline std::string FromQString(const QString& text) {
    return text.toStdString();
}

// A colour of the models: 0x00BBGGRR, or a system colour (0x800000nn) by index.
QColor ToQColor(long colour);

// A label shows "&&" as "&" and takes a single "&" as the mark of an access key.
QString LabelText(const std::string& caption);

// A window shape from the rectangles of the model. The model gives them banded and merged, which
// lets the region take them as they are; anything else is added up the slow way.
QRegion ToQRegion(const std::vector<forms::RegionRect>& rects);

// "Text files (*.log)|*.log|All files|*.*" -> "Text files (*.log);;All files (*.*)".
QString ToFileDialogFilter(const std::string& filter);

// The key code the event routines receive (KeyDown/KeyUp), 0 for keys they never see.
int KeyCodeOf(const QKeyEvent& event);
// The character a KeyPress routine receives; nullopt for keys that type nothing.
std::optional<int> KeyAsciiOf(const QKeyEvent& event);
// Shift state as the routines receive it: 1 shift, 2 control, 4 alt.
int ShiftOf(Qt::KeyboardModifiers modifiers);
// Mouse buttons as the routines receive them: 1 left, 2 right, 4 middle.
int ButtonsOf(Qt::MouseButtons buttons);

}  // namespace kw::qt
