#include "palette_bmp.h"

#include <QFile>

#include <cmath>
#include <limits>
#include <unordered_map>

namespace artgen {

namespace {

QRgb Mix(QRgb a, QRgb b, double t) {
    auto ch = [t](int x, int y) { return static_cast<int>(std::lround(x + (y - x) * t)); };
    return qRgb(ch(qRed(a), qRed(b)), ch(qGreen(a), qGreen(b)), ch(qBlue(a), qBlue(b)));
}

void Ramp(QVector<QRgb>& out, const QVector<QRgb>& stops, int count) {
    for (int i = 0; i < count; ++i) {
        const double pos = static_cast<double>(i) / (count - 1) * (stops.size() - 1);
        const int seg = std::min(static_cast<int>(pos), static_cast<int>(stops.size()) - 2);
        out.push_back(Mix(stops[seg], stops[seg + 1], pos - seg));
    }
}

QVector<QRgb> BuildPalette() {
    QVector<QRgb> p;
    p.push_back(qRgb(0, 255, 0));
    // Slate: near black through the body tones to near white.
    Ramp(p,
         {qRgb(8, 10, 13), qRgb(24, 28, 35), qRgb(44, 50, 61), qRgb(70, 79, 94),
          qRgb(120, 131, 148), qRgb(190, 199, 211), qRgb(246, 248, 251)},
         64);
    // Warm accent: deep brown through amber to pale gold.
    Ramp(p,
         {qRgb(38, 24, 12), qRgb(110, 58, 18), qRgb(214, 112, 34), qRgb(245, 166, 35),
          qRgb(255, 210, 120), qRgb(255, 244, 214)},
         40);
    // Cool highlight for focus and the connected state.
    Ramp(p, {qRgb(14, 40, 48), qRgb(40, 140, 160), qRgb(150, 230, 240)}, 12);
    // Red for the close face's hover and errors.
    Ramp(p, {qRgb(60, 16, 16), qRgb(200, 60, 50), qRgb(255, 170, 150)}, 8);
    // A coarse cube for anything else.
    for (int r = 0; r < 5; ++r) {
        for (int g = 0; g < 5; ++g) {
            for (int b = 0; b < 5; ++b) {
                if (p.size() < 256) {
                    p.push_back(qRgb(r * 255 / 4, g * 255 / 4, b * 255 / 4));
                }
            }
        }
    }
    // The cube holds pure green too; keep only the first one as the key.
    for (int i = 1; i < p.size(); ++i) {
        if (p[i] == qRgb(0, 255, 0)) {
            p[i] = qRgb(0, 0, 0);
        }
    }
    while (p.size() < 256) {
        p.push_back(qRgb(0, 0, 0));
    }
    return p;
}

}  // namespace

const QVector<QRgb>& Palette() {
    static const QVector<QRgb> palette = BuildPalette();
    return palette;
}

QImage Quantise(const QImage& source) {
    const QImage argb = source.convertToFormat(QImage::Format_ARGB32);
    const QVector<QRgb>& palette = Palette();
    QImage out(argb.size(), QImage::Format_Indexed8);
    out.setColorTable(palette);
    std::unordered_map<QRgb, int> cache;
    for (int y = 0; y < argb.height(); ++y) {
        const auto* in = reinterpret_cast<const QRgb*>(argb.constScanLine(y));
        uchar* line = out.scanLine(y);
        for (int x = 0; x < argb.width(); ++x) {
            const QRgb px = in[x];
            if (qAlpha(px) < 128) {
                line[x] = 0;
                continue;
            }
            const QRgb colour = qRgb(qRed(px), qGreen(px), qBlue(px));
            auto hit = cache.find(colour);
            if (hit == cache.end()) {
                int best = 1;
                double bestDist = std::numeric_limits<double>::max();
                for (int i = 1; i < palette.size(); ++i) {
                    const double dr = qRed(colour) - qRed(palette[i]);
                    const double dg = qGreen(colour) - qGreen(palette[i]);
                    const double db = qBlue(colour) - qBlue(palette[i]);
                    const double d = 0.30 * dr * dr + 0.59 * dg * dg + 0.11 * db * db;
                    if (d < bestDist) {
                        bestDist = d;
                        best = i;
                    }
                }
                hit = cache.emplace(colour, best).first;
            }
            line[x] = static_cast<uchar>(hit->second);
        }
    }
    return out;
}

bool WriteBmp(const QImage& image, const QString& path) {
    if (image.format() != QImage::Format_Indexed8) {
        return false;
    }
    const int w = image.width();
    const int h = image.height();
    const int stride = (w + 3) / 4 * 4;
    const int offset = 14 + 40 + 256 * 4;
    QByteArray d;
    auto put16 = [&d](int v) {
        d.append(static_cast<char>(v & 0xff));
        d.append(static_cast<char>((v >> 8) & 0xff));
    };
    auto put32 = [&d](qint64 v) {
        for (int i = 0; i < 4; ++i) {
            d.append(static_cast<char>((v >> (8 * i)) & 0xff));
        }
    };
    d.append("BM");
    put32(offset + stride * h);
    put32(0);
    put32(offset);
    put32(40);
    put32(w);
    put32(h);
    put16(1);
    put16(8);
    put32(0);
    put32(stride * h);
    put32(3780);  // 96 dots per inch
    put32(3780);
    put32(256);
    put32(0);
    const QVector<QRgb> table = image.colorTable();
    for (int i = 0; i < 256; ++i) {
        const QRgb c = i < table.size() ? table[i] : qRgb(0, 0, 0);
        d.append(static_cast<char>(qBlue(c)));
        d.append(static_cast<char>(qGreen(c)));
        d.append(static_cast<char>(qRed(c)));
        d.append('\0');
    }
    for (int y = h - 1; y >= 0; --y) {
        d.append(reinterpret_cast<const char*>(image.constScanLine(y)), w);
        // Padding is never the key (index 0): the shaping walks the row's padding byte too.
        d.append(QByteArray(stride - w, '\1'));
    }
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        return false;
    }
    return file.write(d) == d.size();
}

}  // namespace artgen
