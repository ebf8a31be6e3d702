// Draws the program's artwork: every shaped form and every separate picture, as 8-bit palette
// BMPs with pure green outside, from the numbers in artwork_layout.h.
//
//   artgen <assets directory> [preview.png]

#include <QDir>
#include <QFileInfo>
#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

#include <cstdio>
#include <functional>
#include <map>

#include "client/ui/dialer/shell/artwork_layout.h"
#include "palette_bmp.h"

namespace L = kw::dialer::layout;

namespace {

// The skin's colours.
const QColor kOutline(14, 17, 22);
const QColor kBodyTop(66, 75, 90);
const QColor kBodyBottom(38, 44, 54);
const QColor kRim(118, 129, 146);
const QColor kWell(20, 24, 30);
const QColor kWellEdge(10, 12, 15);
const QColor kText(196, 205, 217);
const QColor kDimText(130, 141, 158);
const QColor kAccent(245, 166, 35);
const QColor kAccentDeep(214, 112, 34);

QDir outDir;
std::map<QString, QImage> written;  // for the preview

QRectF R(const L::LayoutRect& r) {
    return QRectF(r.x, r.y, r.w, r.h);
}

QImage Canvas(int w, int h) {
    QImage image(w, h, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

void Begin(QPainter& p) {
    p.setRenderHint(QPainter::Antialiasing);
    p.setRenderHint(QPainter::TextAntialiasing);
}

QFont Font(int px, bool bold = false) {
    QFont f("Liberation Sans");
    f.setStyleHint(QFont::SansSerif);
    f.setPixelSize(px);
    f.setBold(bold);
    f.setHintingPreference(QFont::PreferFullHinting);
    return f;
}

void Save(const QString& name, const QImage& argb) {
    const QImage indexed = artgen::Quantise(argb);
    const QString path = outDir.filePath(name);
    QDir().mkpath(QFileInfo(path).path());
    if (!artgen::WriteBmp(indexed, path)) {
        std::fprintf(stderr, "artgen: cannot write %s\n", qPrintable(outDir.filePath(name)));
        std::exit(1);
    }
    written[name] = indexed;
}

// A raised surface: slate gradient, a light rim along the top inside, a dark outline.
void Body(QPainter& p, const QPainterPath& path, QColor top = kBodyTop,
          QColor bottom = kBodyBottom) {
    const QRectF b = path.boundingRect();
    QLinearGradient g(b.topLeft(), b.bottomLeft());
    g.setColorAt(0, top);
    g.setColorAt(1, bottom);
    p.fillPath(path, g);
    p.save();
    p.setClipPath(path);
    QPen rim(QColor(kRim.red(), kRim.green(), kRim.blue(), 150), 2.0);
    p.setPen(rim);
    p.setBrush(Qt::NoBrush);
    p.drawPath(path.translated(0, 1.0));
    p.restore();
    p.setPen(QPen(kOutline, 1.2));
    p.setBrush(Qt::NoBrush);
    p.drawPath(path);
}

// A recessed well for text and lights.
void Well(QPainter& p, const QRectF& r, qreal radius = 5) {
    QPainterPath path;
    path.addRoundedRect(r.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    QLinearGradient g(r.topLeft(), r.bottomLeft());
    g.setColorAt(0, kWellEdge);
    g.setColorAt(0.15, kWell);
    g.setColorAt(1, QColor(26, 31, 39));
    p.fillPath(path, g);
    p.setPen(QPen(QColor(92, 102, 118), 1.0));
    p.drawLine(QPointF(r.left() + radius, r.bottom() - 0.5),
               QPointF(r.right() - radius, r.bottom() - 0.5));
    p.setPen(QPen(kWellEdge, 1.0));
    p.setBrush(Qt::NoBrush);
    p.drawPath(path);
}

void Text(QPainter& p, const QRectF& r, const QString& text, const QFont& font, QColor colour,
          int flags = Qt::AlignLeft | Qt::AlignVCenter) {
    p.setFont(font);
    p.setPen(colour);
    p.drawText(r, flags, text);
}

// The round face: at rest a raised dome, pressed a sunken one with the warm ring.
QImage RoundFace(bool pressed) {
    const int s = L::kRoundButtonSize;
    QImage img = Canvas(s, s);
    QPainter p(&img);
    Begin(p);
    const QRectF outer(0.5, 0.5, s - 1, s - 1);
    p.setPen(Qt::NoPen);
    p.setBrush(kOutline);
    p.drawEllipse(outer);
    QLinearGradient g(0, 1, 0, s - 1);
    if (pressed) {
        g.setColorAt(0, QColor(28, 32, 40));
        g.setColorAt(1, QColor(62, 70, 84));
    } else {
        g.setColorAt(0, QColor(122, 133, 150));
        g.setColorAt(0.5, QColor(78, 88, 104));
        g.setColorAt(1, QColor(48, 55, 67));
    }
    p.setBrush(g);
    p.drawEllipse(outer.adjusted(1.2, 1.2, -1.2, -1.2));
    if (pressed) {
        p.setBrush(Qt::NoBrush);
        p.setPen(QPen(kAccent, 1.4));
        p.drawEllipse(outer.adjusted(1.6, 1.6, -1.6, -1.6));
    } else {
        p.setBrush(QColor(255, 255, 255, 60));
        p.drawEllipse(QRectF(s * 0.28, s * 0.14, s * 0.44, s * 0.26));
    }
    return img;
}

// A lamp: off is a dark glass bead, on glows in its colour.
QImage Lamp(int size, QColor colour, bool on) {
    QImage img = Canvas(size, size);
    QPainter p(&img);
    Begin(p);
    const QRectF r(0.5, 0.5, size - 1, size - 1);
    p.setPen(Qt::NoPen);
    p.setBrush(kOutline);
    p.drawEllipse(r);
    QRadialGradient g(QPointF(size * 0.42, size * 0.38), size * 0.6);
    if (on) {
        g.setColorAt(0, colour.lighter(170));
        g.setColorAt(0.45, colour);
        g.setColorAt(1, colour.darker(190));
    } else {
        g.setColorAt(0, colour.darker(330));
        g.setColorAt(1, colour.darker(560));
    }
    p.setBrush(g);
    p.drawEllipse(r.adjusted(1, 1, -1, -1));
    p.setBrush(QColor(255, 255, 255, on ? 150 : 45));
    p.drawEllipse(QRectF(size * 0.3, size * 0.2, size * 0.3, size * 0.22));
    return img;
}

// The logo: a kestrel's wings over a ring; dim in the artwork, lit in imgLogoOn.
void Logo(QPainter& p, const QRectF& r, bool lit) {
    const QColor ring = lit ? kAccent : QColor(88, 98, 114);
    const QColor wing = lit ? QColor(255, 226, 160) : QColor(120, 131, 148);
    p.setPen(QPen(kOutline, 1.0));
    QRadialGradient g(r.center(), r.width() / 2);
    g.setColorAt(0, lit ? QColor(110, 58, 18) : QColor(40, 46, 56));
    g.setColorAt(1, lit ? QColor(60, 32, 12) : QColor(26, 30, 37));
    p.setBrush(g);
    p.drawEllipse(r.adjusted(0.5, 0.5, -0.5, -0.5));
    p.setBrush(Qt::NoBrush);
    p.setPen(QPen(ring, 1.5));
    p.drawEllipse(r.adjusted(1.8, 1.8, -1.8, -1.8));
    const qreal cx = r.center().x(), cy = r.center().y(), s = r.width() / 18.0;
    QPainterPath bird;
    bird.moveTo(cx - 6.5 * s, cy - 1.5 * s);
    bird.quadTo(cx - 2.5 * s, cy - 1.0 * s, cx, cy + 3.2 * s);
    bird.quadTo(cx + 2.5 * s, cy - 1.0 * s, cx + 6.5 * s, cy - 1.5 * s);
    bird.quadTo(cx + 2.5 * s, cy + 0.8 * s, cx, cy + 5.2 * s);
    bird.quadTo(cx - 2.5 * s, cy + 0.8 * s, cx - 6.5 * s, cy - 1.5 * s);
    p.setPen(Qt::NoPen);
    p.setBrush(wing);
    p.drawPath(bird);
    p.drawEllipse(QPointF(cx, cy - 3.0 * s), 1.6 * s, 1.6 * s);
}

void Chevron(QPainter& p, QPointF c, qreal size, bool right, QColor colour, qreal width = 1.8) {
    p.setPen(QPen(colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(Qt::NoBrush);
    const qreal d = right ? 1 : -1;
    QPainterPath path;
    path.moveTo(c.x() - d * size * 0.5, c.y() - size);
    path.lineTo(c.x() + d * size * 0.5, c.y());
    path.lineTo(c.x() - d * size * 0.5, c.y() + size);
    p.drawPath(path);
}

// A pullout tab face: the right end of a tab with a chevron (or the Prescriber's lines).
enum class TabMark { Out, Back, Lines };
QImage TabFace(TabMark mark, bool pressed) {
    const int w = L::kTabWidth, h = L::kTabHeight;
    QImage img = Canvas(w, h);
    QPainter p(&img);
    Begin(p);
    QPainterPath path;
    path.addRoundedRect(QRectF(-8, 0.5, w + 7.5, h - 1), 6, 6);
    Body(p, path, pressed ? QColor(40, 46, 56) : QColor(84, 94, 110),
         pressed ? QColor(60, 68, 82) : QColor(48, 55, 67));
    const QColor ink = pressed ? QColor(255, 210, 120) : kAccent;
    const QPointF c(w / 2.0 - 0.5, h / 2.0);
    switch (mark) {
        case TabMark::Out:
            Chevron(p, c, 4, true, ink);
            break;
        case TabMark::Back:
            Chevron(p, c, 4, false, ink);
            break;
        case TabMark::Lines:
            p.setPen(QPen(ink, 1.4, Qt::SolidLine, Qt::RoundCap));
            for (int i = -1; i <= 1; ++i) {
                p.drawLine(QPointF(c.x() - 3, c.y() + i * 4),
                           QPointF(c.x() + (i == 1 ? 1 : 3), c.y() + i * 4));
            }
            break;
    }
    return img;
}

QPainterPath RoundedRect(const QRectF& r, qreal radius) {
    QPainterPath path;
    path.addRoundedRect(r, radius, radius);
    return path;
}

// A drawer: square on the left where it slides under its owner, rounded on the right.
QPainterPath DrawerPath(int w, int h, qreal radius) {
    QPainterPath path;
    path.addRoundedRect(QRectF(-radius - 2, 0.5, w + radius + 1.5, h - 1), radius, radius);
    QPainterPath clip;
    clip.addRect(QRectF(0, -1, w + 1, h + 2));
    return path.intersected(clip);
}

// ---------------------------------------------------------------------------------------------

void DrawMainWin() {
    namespace M = L::mainwin;
    QImage img = Canvas(M::kWidth, M::kHeight);
    QPainter p(&img);
    Begin(p);

    QPainterPath body = RoundedRect(QRectF(0.5, 0.5, 115, M::kHeight - 1), 14);
    for (const auto& tab :
         {M::btnFromPullout, M::btnToPullout, M::btnRxPullout, M::btnMorePullout}) {
        body = body.united(RoundedRect(QRectF(100, tab.y - 6, M::kWidth - 100, tab.h + 12), 6));
    }
    const qreal notchTop = M::kHeight - M::kNotchDepth;
    body = body.subtracted(RoundedRect(
        QRectF(M::kNotchLeft, notchTop, M::kNotchRight - M::kNotchLeft, M::kNotchDepth + 20), 9));
    Body(p, body);

    // Title row sockets and the name.
    for (const auto& b : {M::btnMinimize, M::btnHelp, M::btnCloseWin}) {
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(22, 26, 33));
        p.drawEllipse(R(b).adjusted(-1.5, -1.5, 1.5, 1.5));
    }
    Logo(p, R(M::imgLogoOn), false);
    Text(p, R(M::kWordmark), "Kestrelway", Font(14, true), QColor(236, 240, 245));
    p.setPen(QPen(kAccent, 2, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(M::kWordmark.x + 1, M::kWordmark.Bottom() + 0.5),
               QPointF(M::kWordmark.x + 22, M::kWordmark.Bottom() + 0.5));

    // Combo wells.
    Well(p, R(M::cmboFrom).adjusted(-1, -1, 1, 1), 4);
    Well(p, R(M::cmboTo).adjusted(-1, -1, 1, 1), 4);

    // The lights column with captions.
    Well(p, R(M::kLightsWell), 6);
    const L::LayoutRect lights[6] = {M::imgModemDetected,  M::imgPhoneDialing,
                                     M::imgConnectingISP,  M::imgAuthorizingISP,
                                     M::imgCreatingTunnel, M::imgAuthorizingTunnel};
    const QImage off = Lamp(L::kLightSize, kAccent, false);
    for (int i = 0; i < 6; ++i) {
        p.drawImage(QPointF(lights[i].x, lights[i].y), off);
        Text(p, QRectF(lights[i].Right() + 7, lights[i].y - 2, 80, lights[i].h + 4),
             M::kLightCaptions[i], Font(10), kText);
        if (i < 5) {  // a thin track joins the steps of a call
            p.setPen(QPen(QColor(60, 68, 82), 1.0));
            const qreal x = lights[i].x + lights[i].w / 2.0;
            p.drawLine(QPointF(x, lights[i].Bottom() + 0.5), QPointF(x, lights[i + 1].y - 0.5));
        }
    }

    // Connect row.
    Well(p, R(M::kConnectWell), 13);
    p.drawImage(QPointF(M::btnConnect.x, M::btnConnect.y), RoundFace(false));
    p.drawImage(QPointF(M::imgConnectLight.x, M::imgConnectLight.y), Lamp(10, kAccentDeep, false));

    // Status well.
    Well(p, R(M::kStatusWell), 5);

    // Grip dots in the empty corner of the title row: the window is dragged by its artwork.
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(98, 108, 124));
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 2; ++j) {
            p.drawEllipse(QPointF(14 + i * 5, 11 + j * 5), 1.1, 1.1);
        }
    }
    p.end();
    Save(M::kPicture, img);
}

void DrawLogin(const char* name) {
    namespace G = L::login;
    QImage img = Canvas(G::kWidth, G::kHeight);
    QPainter p(&img);
    Begin(p);
    QPainterPath body = RoundedRect(QRectF(0.5, 0.5, G::kWidth - 1, G::kHeight - 1), 16);
    Body(p, body);
    // Header band.
    p.save();
    p.setClipPath(body);
    QLinearGradient band(0, 0, 0, 36);
    band.setColorAt(0, QColor(84, 94, 110));
    band.setColorAt(1, QColor(64, 72, 86));
    p.fillRect(QRectF(0, 0, G::kWidth, 36), band);
    p.setPen(QPen(kAccent, 2));
    p.drawLine(QPointF(0, 36), QPointF(G::kWidth, 36));
    p.restore();
    p.setPen(QPen(kOutline, 1.2));
    p.setBrush(Qt::NoBrush);
    p.drawPath(body);
    Logo(p, QRectF(12, 8, 21, 21), true);
    Well(p, R(G::txtUserName).adjusted(-1, -1, 1, 1), 4);
    Well(p, R(G::txtPassword).adjusted(-1, -1, 1, 1), 4);
    p.end();
    Save(name, img);
}

void DrawPerf() {
    namespace P = L::perfpulldown;
    QImage img = Canvas(P::kWidth, P::kHeight);
    QPainter p(&img);
    Begin(p);
    QPainterPath body;
    body.addRoundedRect(QRectF(0.5, -12, P::kWidth - 1, P::kBodyBottom + 11.5), 11, 11);
    QPainterPath clip;
    clip.addRect(QRectF(-1, 0, P::kWidth + 2, P::kHeight + 1));
    body = body.intersected(clip);
    body = body.united(RoundedRect(
        QRectF(P::kHandle.x + 0.5, P::kHandle.y, P::kHandle.w - 1, P::kHandle.h - 0.5), 9));
    Body(p, body, QColor(56, 64, 78), kBodyBottom);
    Well(p, R(P::CMPanel).adjusted(-3, -3, 3, 3), 6);
    Well(p, R(P::kPanelCaption), 4);
    p.end();
    Save(P::kPicture, img);

    // Its pictures.
    auto arrow = [](bool right) {
        QImage a = Canvas(16, 16);
        QPainter q(&a);
        Begin(q);
        q.setPen(QPen(kOutline, 1));
        QLinearGradient g(0, 0, 0, 16);
        g.setColorAt(0, QColor(96, 106, 122));
        g.setColorAt(1, QColor(52, 59, 72));
        q.setBrush(g);
        q.drawEllipse(QRectF(0.5, 0.5, 15, 15));
        Chevron(q, QPointF(right ? 8.5 : 7.5, 8), 3.5, right, kAccent, 1.7);
        return a;
    };
    Save(P::kLeftBtn, arrow(false));
    Save(P::kRightBtn, arrow(true));

    {
        QImage d = Canvas(P::downBtn.w, P::downBtn.h);
        QPainter q(&d);
        Begin(q);
        Body(q, RoundedRect(QRectF(0.5, 0.5, d.width() - 1, d.height() - 1), 6),
             QColor(90, 100, 116), QColor(50, 57, 70));
        q.setPen(QPen(kAccent, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        for (int i = 0; i < 2; ++i) {
            const qreal y = 9 + i * 6;
            q.drawLine(QPointF(6, y), QPointF(10.5, y + 4));
            q.drawLine(QPointF(10.5, y + 4), QPointF(15, y));
        }
        q.end();
        Save(P::kDownBtn, d);
    }
    {
        QImage d = Canvas(P::detachBtn.w, P::detachBtn.h);
        QPainter q(&d);
        Begin(q);
        Body(q, RoundedRect(QRectF(0.5, 0.5, d.width() - 1, d.height() - 1), 4),
             QColor(90, 100, 116), QColor(50, 57, 70));
        q.setPen(QPen(kText, 1.3));
        q.setBrush(Qt::NoBrush);
        q.drawRect(QRectF(4.5, 7.5, 7, 7));
        q.setPen(QPen(kAccent, 1.5, Qt::SolidLine, Qt::RoundCap));
        q.drawLine(QPointF(9, 10), QPointF(14, 5));
        q.drawLine(QPointF(10.5, 4.8), QPointF(14.2, 4.8));
        q.drawLine(QPointF(14.2, 4.8), QPointF(14.2, 8.5));
        q.end();
        Save(P::kDetachBtn, d);
    }
    {
        // Clock.
        QImage c = Canvas(P::imgLocation.w, P::imgLocation.h);
        QPainter q(&c);
        Begin(q);
        QRectF r(2.5, 2.5, 27, 27);
        q.setPen(QPen(kOutline, 1));
        QRadialGradient g(r.center(), 14);
        g.setColorAt(0, QColor(60, 68, 82));
        g.setColorAt(1, QColor(34, 39, 48));
        q.setBrush(g);
        q.drawEllipse(r);
        q.setPen(QPen(kAccent, 2));
        q.setBrush(Qt::NoBrush);
        q.drawEllipse(r.adjusted(1.5, 1.5, -1.5, -1.5));
        q.setPen(QPen(kText, 1));
        for (int i = 0; i < 12; ++i) {
            q.save();
            q.translate(r.center());
            q.rotate(i * 30);
            q.drawLine(QPointF(0, -10), QPointF(0, i % 3 == 0 ? -7.5 : -8.8));
            q.restore();
        }
        q.setPen(QPen(QColor(236, 240, 245), 1.8, Qt::SolidLine, Qt::RoundCap));
        q.drawLine(r.center(), r.center() + QPointF(0, -7.5));
        q.drawLine(r.center(), r.center() + QPointF(5.5, 2));
        q.end();
        Save(P::kImgLocation, c);
    }
    // Traffic pictures: a pair of arrows over a shield (VPN) or over a globe's plate (ISP).
    auto traffic = [](int w, int h, bool vpn) {
        QImage t = Canvas(w, h);
        QPainter q(&t);
        Begin(q);
        if (vpn) {
            QPainterPath shield;
            shield.moveTo(w / 2.0, 2);
            shield.lineTo(w - 5, 7);
            shield.quadTo(w - 5, h - 9, w / 2.0, h - 2);
            shield.quadTo(5, h - 9, 5, 7);
            shield.closeSubpath();
            Body(q, shield, QColor(84, 94, 110), QColor(40, 46, 56));
        } else {
            QRectF g(w / 2.0 - 12, h / 2.0 - 12, 24, 24);
            Body(q, RoundedRect(g, 12), QColor(84, 94, 110), QColor(40, 46, 56));
            q.setPen(QPen(QColor(130, 141, 158), 1));
            q.setBrush(Qt::NoBrush);
            q.drawEllipse(g.adjusted(6, 0.5, -6, -0.5));
            q.drawLine(QPointF(g.left() + 1, g.center().y()),
                       QPointF(g.right() - 1, g.center().y()));
        }
        q.setPen(QPen(kAccent, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        const qreal cy = h / 2.0 + (vpn ? 0 : 0);
        q.drawLine(QPointF(w / 2.0 - 5, cy - 3), QPointF(w / 2.0 + 5, cy - 3));
        q.drawLine(QPointF(w / 2.0 + 2, cy - 6), QPointF(w / 2.0 + 5, cy - 3));
        q.setPen(QPen(QColor(150, 230, 240), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        q.drawLine(QPointF(w / 2.0 + 5, cy + 3), QPointF(w / 2.0 - 5, cy + 3));
        q.drawLine(QPointF(w / 2.0 - 2, cy + 6), QPointF(w / 2.0 - 5, cy + 3));
        return t;
    };
    Save(P::kVpnBytes, traffic(P::VpnBytes.w, P::VpnBytes.h, true));
    Save(P::kISPBytes, traffic(P::ISPBytes.w, P::ISPBytes.h, false));
}

// An icon for a drawer's title, 16 by 16.
QImage Icon(const std::function<void(QPainter&)>& draw) {
    QImage icon = Canvas(16, 16);
    QPainter q(&icon);
    Begin(q);
    q.setPen(QPen(kOutline, 1));
    q.setBrush(QColor(110, 58, 18));
    q.drawRoundedRect(QRectF(0.5, 0.5, 15, 15), 4, 4);
    q.setPen(QPen(QColor(255, 226, 160), 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    q.setBrush(Qt::NoBrush);
    draw(q);
    return icon;
}

void DrawDrawer(const QString& name, int w, int h, const std::function<void(QPainter&)>& extra,
                bool titled = true) {
    QImage img = Canvas(w, h);
    QPainter p(&img);
    Begin(p);
    const QPainterPath body = DrawerPath(w, h, 16);
    Body(p, body);
    // Title band along the top, an accent line under it.
    if (titled) {
        p.save();
        p.setClipPath(body);
        p.fillRect(QRectF(0, 0, w, 30), QColor(255, 255, 255, 14));
        p.setPen(QPen(QColor(kAccent.red(), kAccent.green(), kAccent.blue(), 200), 1.5));
        p.drawLine(QPointF(0, 31), QPointF(w - 12, 31));
        p.restore();
    }
    // A grip at the free end.
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(98, 108, 124));
    for (int i = 0; i < 3; ++i) {
        p.drawEllipse(QPointF(w - 8, h / 2.0 - 6 + i * 6), 1.2, 1.2);
    }
    if (extra) {
        extra(p);
    }
    p.end();
    Save(name, img);
}

void DrawPullouts() {
    namespace F = L::frompullout;
    namespace T = L::topullout;
    namespace X = L::rxpullout;
    DrawDrawer(F::kPicture, L::drawer::kWidth, L::drawer::kHeight, [](QPainter& p) {
        for (const auto& r : {F::cmboLocations, F::cmboCountries, F::txtAreaCode, F::txtPhoneNumber,
                              F::txtOutsideAccess, F::txtLongDistance, F::cmboCallWaiting}) {
            Well(p, R(r).adjusted(-1, -1, 1, 1), 3);
        }
        p.setPen(QPen(QColor(92, 102, 118), 1));
        p.drawLine(QPointF(F::Label6.x + 112, F::kDividerY + 0.5),
                   QPointF(372, F::kDividerY + 0.5));
    });
    Save(F::kIcon, Icon([](QPainter& q) {  // a pin: where you are
             q.drawEllipse(QRectF(5, 3.5, 6, 6));
             q.drawLine(QPointF(8, 9.5), QPointF(8, 13));
         }));
    DrawDrawer(T::kPicture, L::drawer::kWidth, L::drawer::kHeight, [](QPainter& p) {
        Well(p, R(T::lbDestinations).adjusted(-1, -1, 1, 1), 4);
        Well(p, R(T::lstvDialList).adjusted(-1, -1, 1, 1), 4);
    });
    DrawDrawer(X::kPicture, L::drawer::kWidth, L::drawer::kHeight,
               [](QPainter& p) { Well(p, R(X::txtStatus).adjusted(-1, -1, 1, 1), 4); });
    Save(X::kIcon, Icon([](QPainter& q) {  // a pulse line
             QPainterPath pulse;
             pulse.moveTo(2.5, 9);
             pulse.lineTo(5.5, 9);
             pulse.lineTo(7, 4.5);
             pulse.lineTo(9, 12.5);
             pulse.lineTo(10.5, 8);
             pulse.lineTo(13.5, 8);
             q.drawPath(pulse);
         }));
    for (bool up : {true, false}) {
        QImage b = Canvas(T::btnUp.w, T::btnUp.h);
        QPainter q(&b);
        Begin(q);
        Body(q, RoundedRect(QRectF(0.5, 0.5, b.width() - 1, b.height() - 1), 5),
             QColor(90, 100, 116), QColor(50, 57, 70));
        q.setPen(QPen(kAccent, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        const qreal cx = b.width() / 2.0, cy = b.height() / 2.0, d = up ? -1 : 1;
        q.drawLine(QPointF(cx - 5, cy - d * 2.5), QPointF(cx, cy + d * 2.5));
        q.drawLine(QPointF(cx, cy + d * 2.5), QPointF(cx + 5, cy - d * 2.5));
        q.end();
        Save(up ? T::kBtnUp : T::kBtnDown, b);
    }

    namespace Mo = L::morepullout;
    // Three buttons and no title: a title's line would run between them.
    DrawDrawer(
        Mo::kPicture, Mo::kWidth, Mo::kHeight,
        [](QPainter& p) {
            for (const auto& r : {Mo::btnDisplay, Mo::btnLog, Mo::btnPref}) {
                Well(p, R(r).adjusted(-1, -1, 1, 1), 5);
            }
        },
        false);

    namespace Lg = L::logpullout;
    namespace Pr = L::prefpullout;
    namespace D = L::displaypullout;
    DrawDrawer(Lg::kPicture, L::panel::kWidth, L::panel::kHeight, [](QPainter& p) {
        for (const auto& r : {Lg::txtHistoryLog, Lg::txtRxLog}) {
            Well(p, R(r).adjusted(-1, -1, 1, 1), 3);
        }
    });
    Save(Lg::kIcon, Icon([](QPainter& q) {  // lines of a log
             for (int i = 0; i < 3; ++i) {
                 q.drawLine(QPointF(4, 5 + i * 3.2), QPointF(i == 2 ? 9 : 12, 5 + i * 3.2));
             }
         }));
    DrawDrawer(Pr::kPicture, L::panel::kWidth, L::panel::kHeight, [](QPainter& p) {
        Well(p, R(Pr::cmboCallingCards).adjusted(-1, -1, 1, 1), 3);
        Well(p, R(Pr::txtCardNumber).adjusted(-1, -1, 1, 1), 3);
    });
    Save(Pr::kIcon, Icon([](QPainter& q) {  // a card
             q.drawRoundedRect(QRectF(3, 4.5, 10, 7), 1.5, 1.5);
             q.drawLine(QPointF(3.5, 7), QPointF(12.5, 7));
         }));
    DrawDrawer(D::kPicture, L::panel::kWidth, L::panel::kHeight, [](QPainter& p) {
        for (const auto& r :
             {D::txtUserName, D::txtPassword, D::txtAltTunnelServer0, D::txtAltTunnelServer1,
              D::txtAltTunnelServer2, D::txtAltTunnelServer3}) {
            Well(p, R(r).adjusted(-1, -1, 1, 1), 3);
        }
    });
    Save(D::kIcon, Icon([](QPainter& q) {  // a person
             q.drawEllipse(QRectF(5.5, 3, 5, 5));
             q.drawArc(QRectF(3.5, 9, 9, 8), 0, 180 * 16);
         }));
}

void DrawPictures() {
    namespace Pc = L::pictures;
    const QImage rest = RoundFace(false);
    const QImage pressed = RoundFace(true);
    Save(Pc::kImage5, rest);
    Save(Pc::kImage6, pressed);
    Save(Pc::kPushedButton, pressed);
    Save(Pc::kBtnHelp, rest);
    Save(Pc::kBtnMinimize, rest);
    Save(Pc::kBtnCloseWin, rest);
    Save(Pc::kBtnConnect, rest);

    Save(Pc::kLightOff, Lamp(L::kLightSize, kAccent, false));
    for (const char* name : {Pc::kModemDetected, Pc::kPhoneDialing, Pc::kConnectingISP,
                             Pc::kAuthorizingISP, Pc::kCreatingTunnel, Pc::kAuthorizingTunnel}) {
        Save(name, Lamp(L::kLightSize, kAccent, true));
    }
    Save(Pc::kConnectLightOn, Lamp(10, QColor(150, 230, 240), true));
    Save(Pc::kConnectLightOff, Lamp(10, kAccentDeep, false));
    Save(Pc::kYellowLightOn, Lamp(10, QColor(250, 214, 70), true));
    Save(Pc::kYellowLightOff, Lamp(10, QColor(250, 214, 70), false));
    {
        QImage logo = Canvas(L::mainwin::imgLogoOn.w, L::mainwin::imgLogoOn.h);
        QPainter q(&logo);
        Begin(q);
        Logo(q, QRectF(0, 0, logo.width(), logo.height()), true);
        q.end();
        Save(Pc::kLogoOn, logo);
    }
    Save(Pc::kBtnReg, TabFace(TabMark::Out, false));
    Save(Pc::kBtnRight, TabFace(TabMark::Out, true));
    Save(Pc::kBtnLeft, TabFace(TabMark::Back, false));
    Save(Pc::kMoreBtnPressed, TabFace(TabMark::Out, true));
    Save(Pc::kImage3, TabFace(TabMark::Lines, false));
    Save(Pc::kBtnRxPullout, TabFace(TabMark::Lines, false));
    {
        QImage labels = Canvas(L::mainwin::Label4.w, L::mainwin::Label4.h);
        QPainter q(&labels);
        Begin(q);
        q.fillRect(labels.rect(), QColor(46, 53, 64));
        Text(q, QRectF(0, 0, labels.width(), labels.height()), "More", Font(10, true), kText,
             Qt::AlignRight | Qt::AlignVCenter);
        q.end();
        Save(Pc::kMoreLabels, labels);
    }
}

// ---------------------------------------------------------------------------------------------
// Preview: the windows as they stand on screen, with stand-ins for the controls.

QImage Shown(const QString& name) {
    QImage image = written.at(name).convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if (line[x] == qRgb(0, 255, 0) || line[x] == qRgba(0, 255, 0, 255)) {
                line[x] = qRgba(0, 0, 0, 0);
            }
        }
    }
    return image;
}

void StandIn(QPainter& p, QPointF origin, const L::LayoutRect& r, const QString& text,
             bool combo = false, bool right = false) {
    const QRectF rr = R(r).translated(origin);
    p.setFont(Font(10));
    p.setPen(kText);
    p.drawText(rr.adjusted(4, 0, combo ? -14 : -2, 0),
               (right ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter, text);
    if (combo) {
        Chevron(p, QPointF(rr.right() - 8, rr.center().y()), 2.5, true, kDimText, 1.2);
    }
}

void Button(QPainter& p, QPointF origin, const L::LayoutRect& r, const QString& text) {
    const QRectF rr = R(r).translated(origin);
    Body(p, RoundedRect(rr.adjusted(0.5, 0.5, -0.5, -0.5), 5), QColor(84, 94, 110),
         QColor(50, 57, 70));
    Text(p, rr, text, Font(11), QColor(236, 240, 245), Qt::AlignCenter);
}

void WritePreview(const QString& path) {
    namespace M = L::mainwin;
    const int fw = L::kFrameWidth, fh = L::kFrameHeight;
    QImage canvas(1100, 560, QImage::Format_ARGB32);
    canvas.fill(QColor(214, 220, 228));
    QPainter p(&canvas);
    Begin(p);
    p.setFont(Font(12, true));
    p.setPen(QColor(60, 66, 76));

    // Scene 1: main window, performance panel pulled down, From drawer open, lights partly lit.
    const QPointF outer(40, 20);  // the main window's outer frame
    const QPointF main = outer + QPointF(fw, fh);
    p.drawImage(outer + QPointF(fw, 300), Shown(L::perfpulldown::kPicture));
    p.drawImage(outer + QPointF(90, 80), Shown(L::frompullout::kPicture));
    p.drawImage(main, Shown(M::kPicture));
    const L::LayoutRect lit[] = {M::imgModemDetected, M::imgPhoneDialing, M::imgConnectingISP,
                                 M::imgAuthorizingISP};
    for (const auto& r : lit) {
        p.drawImage(main + QPointF(r.x, r.y), Shown(L::pictures::kModemDetected));
    }
    p.drawImage(main + QPointF(M::imgConnectLight.x, M::imgConnectLight.y),
                Shown(L::pictures::kConnectLightOn));
    p.drawImage(main + QPointF(M::btnConnect.x, M::btnConnect.y), Shown(L::pictures::kImage6));
    p.drawImage(main + QPointF(M::btnFromPullout.x, M::btnFromPullout.y),
                Shown(L::pictures::kBtnLeft));
    p.drawImage(main + QPointF(M::btnToPullout.x, M::btnToPullout.y), Shown(L::pictures::kBtnReg));
    p.drawImage(main + QPointF(M::btnMorePullout.x, M::btnMorePullout.y),
                Shown(L::pictures::kBtnReg));
    p.drawImage(main + QPointF(M::btnRxPullout.x, M::btnRxPullout.y),
                Shown(L::pictures::kBtnRxPullout));
    for (const auto& b : {M::btnMinimize, M::btnHelp, M::btnCloseWin}) {
        p.drawImage(main + QPointF(b.x, b.y), Shown(L::pictures::kImage5));
    }
    Text(p, R(M::btnMinimize).translated(main), M::kMinButtonGlyph, Font(12, true), kText,
         Qt::AlignCenter);
    Text(p, R(M::btnHelp).translated(main), M::kHelpButtonGlyph, Font(11, true), kText,
         Qt::AlignCenter);
    Text(p, R(M::btnCloseWin).translated(main), M::kCloseButtonGlyph, Font(13, true), kText,
         Qt::AlignCenter);
    Text(p, R(M::lblFrom).translated(main), "From", Font(10, true), kDimText);
    Text(p, R(M::lblTo).translated(main), "To", Font(10, true), kDimText);
    StandIn(p, main, M::cmboFrom, "Home office", true);
    StandIn(p, main, M::cmboTo, "Head office", true);
    Text(p, R(M::lblConnect).translated(main), "Disconnect", Font(11, true), QColor(236, 240, 245));
    Text(p, R(M::Label4).translated(main), "More ", Font(10, true), kText,
         Qt::AlignRight | Qt::AlignVCenter);
    Text(p, R(M::lblStatus).translated(main), "Authenticating with ISP...", Font(9), kAccent,
         Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap);
    // The panel on show.
    namespace P = L::perfpulldown;
    const QPointF perf = outer + QPointF(fw, 300);
    const QPointF panel = perf + QPointF(P::CMPanel.x, P::CMPanel.y);
    p.drawImage(panel + QPointF(P::VpnBytes.x, P::VpnBytes.y), Shown(P::kVpnBytes));
    p.drawImage(panel + QPointF(P::ISPBytes.x, P::ISPBytes.y), Shown(P::kISPBytes));
    p.drawImage(panel + QPointF(P::imgLocation.x, P::imgLocation.y), Shown(P::kImgLocation));
    StandIn(p, panel, P::VpnRcv, "1,204,882", false, true);
    StandIn(p, panel, P::VpnSent, "96,310", false, true);
    StandIn(p, panel, P::IspRcv, "1,388,410", false, true);
    StandIn(p, panel, P::IspSent, "120,554", false, true);
    Text(p, R(P::Duration).translated(panel), "000:12:41", Font(11, true), kAccent,
         Qt::AlignRight | Qt::AlignVCenter);
    Text(p, R(P::kPanelCaption).translated(perf), "ISP/VPN Statistics", Font(9), kText,
         Qt::AlignCenter);
    p.drawImage(perf + QPointF(P::LeftBtn.x, P::LeftBtn.y), Shown(P::kLeftBtn));
    p.drawImage(perf + QPointF(P::RightBtn.x, P::RightBtn.y), Shown(P::kRightBtn));
    p.drawImage(perf + QPointF(P::downBtn.x, P::downBtn.y), Shown(P::kDownBtn));
    p.drawImage(perf + QPointF(P::detachBtn.x, P::detachBtn.y), Shown(P::kDetachBtn));
    // From drawer contents.
    namespace F = L::frompullout;
    const QPointF from = outer + QPointF(90, 80);
    p.drawImage(from + QPointF(F::Image1.x, F::Image1.y), Shown(F::kIcon));
    struct Lbl {
        L::LayoutRect r;
        const char* text;
        bool bold;
    };
    for (const Lbl& l :
         {Lbl{F::Label3, "Location:", false}, Lbl{F::lbCountry, "Country/Region:", false},
          Lbl{F::lblPhoneNumber, "Your Phone Number:", false}, Lbl{F::Label7, "(", false},
          Lbl{F::Label8, ") -", false}, Lbl{F::Label6, "Dialing properties", true},
          Lbl{F::lblOutsideLine, "Local", false}, Lbl{F::lblLongDistance, "Long Distance", false},
          Lbl{F::lblDisableCallWaiting, "Disable Call Waiting", false},
          Lbl{F::lblCallingCard, "Use Calling Card :", false},
          Lbl{F::lblManualDial, "Manual Dial", false},
          Lbl{F::lblUseExisting, "Use Existing Internet connection", false}}) {
        Text(p, R(l.r).translated(from), l.text, Font(11, l.bold), kText);
    }
    StandIn(p, from, F::cmboLocations, "Home office", true);
    StandIn(p, from, F::cmboCountries, "United States of America (1)", true);
    StandIn(p, from, F::txtAreaCode, "206");
    StandIn(p, from, F::txtPhoneNumber, "555-0142");
    StandIn(p, from, F::txtOutsideAccess, "9");
    StandIn(p, from, F::txtLongDistance, "8");
    StandIn(p, from, F::cmboCallWaiting, "*70,", true);
    for (const auto& c :
         {F::chkDisableCallWaiting, F::chkCallingCard, F::chkManualDial, F::chkUseExisting}) {
        Well(p, R(c).translated(from).adjusted(1, 1, -1, -1), 3);
    }
    Button(p, from, F::btnAdd, "Add");
    Button(p, from, F::btnRemove, "Remove");
    Button(p, from, F::btnCancel, "Cancel");

    // Scene 2: retracted panel, More with Log open, and the login dialog.
    const QPointF outer2(600, 20);
    const QPointF main2 = outer2 + QPointF(fw, fh);
    p.drawImage(outer2 + QPointF(fw, 176), Shown(P::kPicture));
    p.drawImage(outer2 + QPointF(114, 127), Shown(L::logpullout::kPicture));
    p.drawImage(outer2 + QPointF(114, 227), Shown(L::morepullout::kPicture));
    p.drawImage(main2, Shown(M::kPicture));
    p.drawImage(outer2 + QPointF(fw, 176) + QPointF(P::downBtn.x, P::downBtn.y),
                Shown(P::kDownBtn));
    for (const auto& b : {M::btnMinimize, M::btnHelp, M::btnCloseWin, M::btnConnect}) {
        p.drawImage(main2 + QPointF(b.x, b.y), Shown(L::pictures::kImage5));
    }
    for (const auto& b : {M::btnFromPullout, M::btnToPullout}) {
        p.drawImage(main2 + QPointF(b.x, b.y), Shown(L::pictures::kBtnReg));
    }
    p.drawImage(main2 + QPointF(M::btnMorePullout.x, M::btnMorePullout.y),
                Shown(L::pictures::kBtnLeft));
    p.drawImage(main2 + QPointF(M::btnRxPullout.x, M::btnRxPullout.y),
                Shown(L::pictures::kBtnRxPullout));
    Text(p, R(M::lblConnect).translated(main2), "Connect", Font(11, true), QColor(236, 240, 245));
    Text(p, R(M::lblFrom).translated(main2), "From", Font(10, true), kDimText);
    Text(p, R(M::lblTo).translated(main2), "To", Font(10, true), kDimText);
    StandIn(p, main2, M::cmboFrom, "Home office", true);
    StandIn(p, main2, M::cmboTo, "Head office", true);
    Text(p, R(M::Label4).translated(main2), "More ", Font(10, true), kText,
         Qt::AlignRight | Qt::AlignVCenter);
    namespace Mo = L::morepullout;
    const QPointF more = outer2 + QPointF(114, 227);
    Button(p, more, Mo::btnDisplay, "Display");
    Button(p, more, Mo::btnLog, "Log");
    Button(p, more, Mo::btnPref, "Pref");
    namespace Lg = L::logpullout;
    const QPointF log = outer2 + QPointF(114, 127);
    p.drawImage(log + QPointF(Lg::Image1.x, Lg::Image1.y), Shown(Lg::kIcon));
    Text(p, R(Lg::Label1).translated(log), "Log Options", Font(12, true), QColor(236, 240, 245));
    Text(p, R(Lg::ConnectLogCheck).translated(log).adjusted(20, 0, 0, 0), "Log Connection History",
         Font(11), kText);
    Text(p, R(Lg::PrescriberLogCheck).translated(log).adjusted(20, 0, 0, 0),
         "Log Prescriber window output", Font(11), kText);
    StandIn(p, log, Lg::txtHistoryLog, "history.log");
    StandIn(p, log, Lg::txtRxLog, "rx.log");
    Button(p, log, Lg::btnConnectHist, "...");
    Button(p, log, Lg::btnPrescriberLog, "...");

    namespace G = L::login;
    const QPointF login(860, 330);
    p.drawImage(login, Shown(G::kLoginPicture));
    Text(p, R(G::Label1).translated(login), "VPN User Information", Font(12, true),
         QColor(236, 240, 245));
    Text(p, R(G::lblLabels0).translated(login), "User Name:", Font(11), kText);
    Text(p, R(G::lblLabels1).translated(login), "Password:", Font(11), kText);
    StandIn(p, login, G::txtUserName, "jdoe");
    StandIn(p, login, G::txtPassword, "\u2022\u2022\u2022\u2022\u2022\u2022");
    Button(p, login, G::cmdOK, "OK");
    Button(p, login, G::cmdCancel, "Cancel");
    p.end();
    canvas.save(path);
}

}  // namespace

int main(int argc, char** argv) {
    QGuiApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: artgen <assets directory> [preview.png]\n");
        return 2;
    }
    outDir = QDir(QString::fromLocal8Bit(argv[1]));
    if (!outDir.mkpath(".")) {
        std::fprintf(stderr, "artgen: cannot create %s\n", argv[1]);
        return 1;
    }
    DrawPictures();
    DrawMainWin();
    DrawLogin(L::login::kLoginPicture);
    DrawLogin(L::login::kIspLoginPicture);
    DrawPerf();
    DrawPullouts();
    if (argc > 2) {
        WritePreview(QString::fromLocal8Bit(argv[2]));
    }
    std::printf("artgen: %zu pictures written to %s\n", written.size(), argv[1]);
    return 0;
}
