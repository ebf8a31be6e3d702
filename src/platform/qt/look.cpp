#include "platform/qt/look.h"

#include <QApplication>
#include <QPalette>
#include <QStyleFactory>

namespace kw::qt {

void UseDarkLook() {
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    const QColor slate(0x2B, 0x31, 0x3A);
    const QColor well(0x1D, 0x22, 0x29);
    const QColor text(0xE6, 0xE8, 0xEB);
    const QColor amber(0xF0, 0xA8, 0x2A);
    QPalette palette;
    palette.setColor(QPalette::Window, slate);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, well);
    palette.setColor(QPalette::AlternateBase, slate);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Button, slate.lighter(115));
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::Highlight, amber);
    palette.setColor(QPalette::HighlightedText, Qt::black);
    palette.setColor(QPalette::ToolTipBase, well);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::Disabled, QPalette::Text, text.darker(160));
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, text.darker(160));
    palette.setColor(QPalette::Disabled, QPalette::WindowText, text.darker(160));
    QApplication::setPalette(palette);
}

}  // namespace kw::qt
