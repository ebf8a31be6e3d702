#pragma once

#include <QImage>
#include <QString>
#include <QVector>

namespace artgen {

// The one palette of every picture: index 0 is the outside colour (pure green), then ramps of
// the slate body, the warm accent and a cool highlight, and a coarse cube for the rest.
const QVector<QRgb>& Palette();

// Maps an image drawn with alpha onto the palette: pixels under half coverage become the
// outside colour, every other pixel takes the nearest palette colour of its own (unblended)
// colour, so edges never pick up green.
QImage Quantise(const QImage& argb);

// Writes an uncompressed 8-bit BMP with the full 256-entry palette, bottom-up.
bool WriteBmp(const QImage& indexed, const QString& path);

}  // namespace artgen
