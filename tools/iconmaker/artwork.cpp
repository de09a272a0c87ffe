#include "images.h"
#include "paintutil.h"

#include <QFont>
#include <QGuiApplication>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>
#include <QRadialGradient>
#include <QRandomGenerator>
#include <QtMath>

#include <cmath>
#include <vector>

namespace {

/*
 * The blades of a lens aperture. The opening is a regular polygon; each blade is bounded by one
 * side of the opening and by the extensions of that side and the next one out past the rim, so
 * the blades meet in the pinwheel of a real iris. The far points lie outside the rim; callers
 * clip to the circle.
 */
std::vector<QPainterPath> irisBlades(QPointF centre, qreal rim, qreal opening, int count,
                                     qreal rotationDegrees)
{
    std::vector<QPointF> corners;
    for (int i = 0; i < count; ++i) {
        const qreal a = qDegreesToRadians(rotationDegrees + 360.0 * i / count);
        corners.emplace_back(centre.x() + opening * qCos(a), centre.y() + opening * qSin(a));
    }
    auto farPoint = [&](int side) {
        // The side from corner side to corner side + 1, carried on beyond its end.
        const QPointF a = corners[side % count];
        const QPointF b = corners[(side + 1) % count];
        const QPointF dir = (b - a) / std::hypot(b.x() - a.x(), b.y() - a.y());
        return b + dir * rim * 3;
    };

    std::vector<QPainterPath> blades;
    for (int i = 0; i < count; ++i) {
        QPainterPath blade;
        blade.moveTo(corners[(i + 1) % count]);
        blade.lineTo(farPoint(i));
        blade.lineTo(farPoint(i + 1));
        blade.lineTo(corners[(i + 2) % count]);
        blade.closeSubpath();
        blades.push_back(blade);
    }
    return blades;
}

// The program's emblem: a six-bladed iris in statistics colours, with a bar chart seen through
// its opening. Used by the window icon and the splash screen.
void drawEmblem(QPainter &painter, QPointF centre, qreal radius)
{
    const QColor bladeColours[] = { QColor(0xef, 0x53, 0x50), QColor(0xff, 0xa7, 0x26),
                                    QColor(0xfd, 0xd8, 0x35), QColor(0x66, 0xbb, 0x6a),
                                    QColor(0x29, 0xb6, 0xf6), QColor(0xab, 0x47, 0xbc) };
    const qreal opening = radius * 0.42;

    painter.save();
    QPainterPath rim;
    rim.addEllipse(centre, radius, radius);

    // The opening first: a dark lens interior with three bars.
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x0d, 0x16, 0x22));
    painter.drawPath(rim);
    const qreal unit = opening / 4.2;
    const qreal barHeights[] = { 2.6, 4.4, 3.4 };
    painter.setBrush(QColor(0xf4, 0xf6, 0xf8));
    for (int i = 0; i < 3; ++i) {
        const qreal x = centre.x() - unit * 2.1 + i * unit * 1.5;
        const qreal bottom = centre.y() + unit * 2.3;
        painter.drawRect(
            QRectF(x, bottom - barHeights[i] * unit, unit * 1.1, barHeights[i] * unit));
    }

    // Each blade is cut to the rim as a path rather than clipped: an SVG file keeps no clip.
    const auto blades = irisBlades(centre, radius, opening, 6, -90);
    for (size_t i = 0; i < blades.size(); ++i) {
        const QColor c = bladeColours[i];
        QLinearGradient shade(centre, blades[i].boundingRect().center());
        shade.setColorAt(0, c.lighter(125));
        shade.setColorAt(1, c.darker(135));
        painter.setPen(QPen(QColor(0x0d, 0x16, 0x22), qMax(1.0, radius / 40)));
        painter.setBrush(shade);
        painter.drawPath(blades[i].intersected(rim));
    }

    // The lens barrel around the blades.
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(0xe3, 0xea, 0xee), radius * 0.09));
    painter.drawEllipse(centre, radius, radius);
    painter.restore();
}

} // namespace

namespace images {

void paintAppIcon(QPainter &painter)
{
    const QRectF tile(8, 8, 240, 240);
    QLinearGradient night(tile.topLeft(), tile.bottomRight());
    night.setColorAt(0, QColor(0x2b, 0x4c, 0x7e));
    night.setColorAt(1, QColor(0x12, 0x1f, 0x36));
    painter.setPen(QPen(QColor(0x45, 0x6c, 0xa8), 3));
    painter.setBrush(night);
    painter.drawRoundedRect(tile, 48, 48);

    drawEmblem(painter, tile.center(), 92);
}

QImage windowIcon()
{
    return appIcon(256);
}

QImage appIcon(int size)
{
    QImage image = paintutil::blank(size, size);
    QPainter painter(&image);
    paintutil::prepare(painter);
    painter.scale(size / 256.0, size / 256.0);
    paintAppIcon(painter);
    return image;
}

/*
 * A dusk landscape: a starry sky that turns orange at the horizon, a setting sun behind two
 * ridges of mountains, the emblem and the program's name in the upper half. The bottom strip is
 * dark foreground and left empty on the left, where the splash screen writes its version line.
 */
QImage splashScreen()
{
    const int w = 542, h = 302;
    QImage image = paintutil::blank(w, h);
    QPainter painter(&image);
    paintutil::prepare(painter);

    QLinearGradient sky(QPointF(0, 0), QPointF(0, 215));
    sky.setColorAt(0.0, QColor(0x07, 0x10, 0x26));
    sky.setColorAt(0.45, QColor(0x1d, 0x2f, 0x63));
    sky.setColorAt(0.75, QColor(0x7a, 0x4a, 0x7c));
    sky.setColorAt(1.0, QColor(0xf0, 0x8a, 0x4b));
    painter.fillRect(QRect(0, 0, w, h), sky);

    // A fixed seed: the same stars on every run.
    QRandomGenerator random(20240611);
    painter.setPen(Qt::NoPen);
    for (int i = 0; i < 90; ++i) {
        const qreal x = random.bounded(w);
        const qreal y = random.bounded(120);
        const qreal size = 0.6 + random.bounded(1.2);
        painter.setBrush(QColor(255, 255, 255, 90 + random.bounded(150)));
        painter.drawEllipse(QPointF(x, y), size, size);
    }

    const QPointF sun(410, 196);
    QRadialGradient glow(sun, 120);
    glow.setColorAt(0, QColor(0xff, 0xe0, 0x82, 220));
    glow.setColorAt(0.25, QColor(0xff, 0xb7, 0x4d, 110));
    glow.setColorAt(1, QColor(0xff, 0x8a, 0x3d, 0));
    painter.setBrush(glow);
    painter.drawEllipse(sun, 120, 120);
    painter.setBrush(QColor(0xff, 0xf1, 0xc4));
    painter.drawEllipse(sun, 26, 26);

    auto ridge = [&](const QPolygonF &tops, const QColor &top, const QColor &bottom) {
        QPolygonF shape = tops;
        shape << QPointF(w, h) << QPointF(0, h);
        QLinearGradient fill(QPointF(0, 150), QPointF(0, h));
        fill.setColorAt(0, top);
        fill.setColorAt(1, bottom);
        painter.setBrush(fill);
        painter.drawPolygon(shape);
    };
    ridge({ { 0, 200 },
            { 50, 178 },
            { 95, 192 },
            { 160, 150 },
            { 215, 185 },
            { 270, 168 },
            { 330, 196 },
            { 380, 172 },
            { 455, 206 },
            { 500, 186 },
            { 542, 198 } },
          QColor(0x4a, 0x3b, 0x6b), QColor(0x2a, 0x24, 0x45));
    ridge({ { 0, 236 },
            { 70, 214 },
            { 130, 232 },
            { 200, 206 },
            { 262, 230 },
            { 320, 218 },
            { 400, 242 },
            { 470, 222 },
            { 542, 238 } },
          QColor(0x24, 0x20, 0x3a), QColor(0x14, 0x13, 0x24));
    ridge({ { 0, 262 }, { 120, 256 }, { 260, 266 }, { 400, 254 }, { 542, 262 } },
          QColor(0x0f, 0x10, 0x1c), QColor(0x09, 0x0a, 0x12));

    drawEmblem(painter, QPointF(96, 92), 60);

    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 90)); // a soft shadow keeps the title off the sky
    painter.drawPath(
        paintutil::fittedText("Kelvaro", QRectF(184, 44, 300, 66), true).translated(2, 3));
    painter.setBrush(QColor(0xf7, 0xf9, 0xfc));
    painter.drawPath(paintutil::fittedText("Kelvaro", QRectF(184, 44, 300, 66), true));

    QFont subtitle = QGuiApplication::font();
    subtitle.setPixelSize(17);
    painter.setFont(subtitle);
    painter.setPen(QColor(0xdc, 0xe4, 0xf0));
    painter.drawText(QRectF(184, 118, 340, 26), Qt::AlignLeft | Qt::AlignVCenter,
                     QStringLiteral("EXIF statistics for photographers"));
    return image;
}

} // namespace images
