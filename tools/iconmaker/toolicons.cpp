#include "images.h"
#include "paintutil.h"

#include <QLineF>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>
#include <QtMath>

// The icons sit on the dark theme's tool bar (around #19232D): light outlines and bright
// accents, never black strokes.
namespace {

const QColor lightLine(0xd6, 0xde, 0xe4);
const QColor accentBlue(0x4f, 0xc3, 0xf7);
const QColor accentGreen(0x66, 0xbb, 0x6a);
const QColor accentRed(0xef, 0x53, 0x50);
const QColor accentAmber(0xff, 0xb3, 0x00);

// A filled arrow head with its tip at tip, pointing along angleDegrees (0 = right, y down).
void drawArrowHead(QPainter &painter, QPointF tip, qreal angleDegrees, qreal length, qreal width,
                   const QColor &colour)
{
    const qreal a = qDegreesToRadians(angleDegrees);
    const QPointF back(tip.x() - length * qCos(a), tip.y() - length * qSin(a));
    const QPointF side(-qSin(a) * width / 2, qCos(a) * width / 2);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawPolygon(QPolygonF({ tip, back + side, back - side }));
}

// A folder: a tab on the upper left and the body below it.
void drawFolder(QPainter &painter, const QRectF &r, const QColor &colour)
{
    const qreal tab = r.height() * 0.25;
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour.darker(125));
    painter.drawRoundedRect(QRectF(r.left(), r.top(), r.width() * 0.45, tab * 2), 2, 2);
    QLinearGradient shade(r.topLeft(), r.bottomLeft());
    shade.setColorAt(0, colour.lighter(110));
    shade.setColorAt(1, colour.darker(110));
    painter.setBrush(shade);
    painter.drawRoundedRect(QRectF(r.left(), r.top() + tab, r.width(), r.height() - tab), 2.5, 2.5);
}

// A sheet of paper with a folded upper right corner.
QPainterPath sheet(const QRectF &r, qreal fold)
{
    QPainterPath path;
    path.moveTo(r.topLeft());
    path.lineTo(r.right() - fold, r.top());
    path.lineTo(r.right(), r.top() + fold);
    path.lineTo(r.bottomRight());
    path.lineTo(r.bottomLeft());
    path.closeSubpath();
    return path;
}

} // namespace

namespace images {

// An open door with an arrow leaving through it.
QImage logout()
{
    QImage image = paintutil::blank(64, 64);
    QPainter painter(&image);
    paintutil::prepare(painter);

    painter.setPen(QPen(lightLine, 5, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(
        QPolygonF({ { 34, 14 }, { 34, 6 }, { 8, 6 }, { 8, 58 }, { 34, 58 }, { 34, 50 } }));
    // The door leaf swung open towards the viewer.
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x90, 0xa4, 0xae));
    painter.drawPolygon(QPolygonF({ { 8, 6 }, { 24, 12 }, { 24, 62 }, { 8, 58 } }));
    painter.setBrush(QColor(0x37, 0x47, 0x4f));
    painter.drawEllipse(QPointF(20, 35), 2.2, 2.2);

    painter.setPen(QPen(accentRed, 7, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(QPointF(28, 32), QPointF(46, 32));
    drawArrowHead(painter, QPointF(61, 32), 0, 17, 22, accentRed);
    return image;
}

// A folder with two subfolders hanging from it; off is grey, on is amber with blue links.
QImage subdirectories(bool on)
{
    QImage image = paintutil::blank(64, 64);
    QPainter painter(&image);
    paintutil::prepare(painter);

    const QColor folder = on ? accentAmber : QColor(0x74, 0x74, 0x74);
    const QColor link = on ? accentBlue : QColor(0x9a, 0x9a, 0x9a);

    painter.setPen(QPen(link, 4, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(QPolygonF({ { 13, 24 }, { 13, 37 }, { 27, 37 } }));
    painter.drawPolyline(QPolygonF({ { 13, 36 }, { 13, 55 }, { 27, 55 } }));

    drawFolder(painter, QRectF(3, 3, 32, 22), folder);
    drawFolder(painter, QRectF(27, 28, 34, 17), folder);
    drawFolder(painter, QRectF(27, 47, 34, 16), folder);
    return image;
}

// A clipboard holding a sheet with a small bar chart: the chart goes to the clipboard.
QImage clipboardCopy()
{
    QImage image = paintutil::blank(64, 64);
    QPainter painter(&image);
    paintutil::prepare(painter);

    painter.setPen(Qt::NoPen);
    QLinearGradient board(QPointF(0, 6), QPointF(0, 62));
    board.setColorAt(0, QColor(0xb0, 0x82, 0x5a));
    board.setColorAt(1, QColor(0x8a, 0x5f, 0x3d));
    painter.setBrush(board);
    painter.drawRoundedRect(QRectF(8, 6, 48, 56), 6, 6);

    painter.setBrush(QColor(0xf4, 0xf6, 0xf8));
    painter.drawRect(QRectF(14, 14, 36, 43));

    // The clip across the top edge.
    painter.setBrush(QColor(0xb0, 0xbe, 0xc5));
    painter.drawRoundedRect(QRectF(21, 2, 22, 12), 3, 3);
    painter.setBrush(QColor(0x54, 0x6e, 0x7a));
    painter.drawRoundedRect(QRectF(27, 5, 10, 4), 1.5, 1.5);

    const QColor bars[] = { QColor(0x1e, 0x88, 0xe5), QColor(0x43, 0xa0, 0x47),
                            QColor(0xfb, 0x8c, 0x00) };
    const qreal heights[] = { 18, 30, 12 };
    for (int i = 0; i < 3; ++i) {
        painter.setBrush(bars[i]);
        painter.drawRect(QRectF(18 + i * 10.5, 53 - heights[i], 8, heights[i]));
    }
    painter.setPen(QPen(QColor(0x45, 0x5a, 0x64), 2));
    painter.drawLine(QPointF(16, 53.5), QPointF(48, 53.5));
    return image;
}

// A table sheet with an arrow leaving it to the right: the rows go out as a file.
QImage exportData()
{
    QImage image = paintutil::blank(64, 64);
    QPainter painter(&image);
    paintutil::prepare(painter);

    const QRectF page(6, 3, 38, 52);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0xf4, 0xf6, 0xf8));
    painter.drawPath(sheet(page, 11));
    painter.setBrush(QColor(0xb0, 0xbe, 0xc5));
    painter.drawPolygon(QPolygonF({ { 33, 3 }, { 33, 14 }, { 44, 14 } }));

    // Rows and a column divider of the exported table.
    painter.setPen(QPen(QColor(0x60, 0x7d, 0x8b), 2.5));
    for (int row = 0; row < 5; ++row) {
        const qreal y = 20 + row * 7;
        painter.drawLine(QPointF(11, y), QPointF(row == 0 ? 30 : 39, y));
    }
    painter.drawLine(QPointF(21, 17), QPointF(21, 50));

    // The arrow gets a dark rim so that it stays separate where it crosses the sheet.
    QPainterPath arrow;
    arrow.addPolygon(QPolygonF(
        { { 26, 38 }, { 44, 38 }, { 44, 29 }, { 61, 44 }, { 44, 59 }, { 44, 50 }, { 26, 50 } }));
    arrow.closeSubpath();
    painter.setPen(QPen(QColor(0x1b, 0x5e, 0x20), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(accentGreen);
    painter.drawPath(arrow);
    return image;
}

// A gear wheel with eight teeth.
QImage settings()
{
    QImage image = paintutil::blank(64, 64);
    QPainter painter(&image);
    paintutil::prepare(painter);

    const QPointF c(32, 32);
    const int teeth = 8;
    const qreal outer = 29, inner = 22;
    QPainterPath gear;
    for (int i = 0; i < teeth; ++i) {
        // Each tooth spans a quarter of its sector at the rim and a bit more at the root.
        const qreal base = 360.0 / teeth * i;
        const qreal angles[] = { base - 14, base - 9, base + 9, base + 14 };
        const qreal radii[] = { inner, outer, outer, inner };
        for (int k = 0; k < 4; ++k) {
            const qreal a = qDegreesToRadians(angles[k]);
            const QPointF p(c.x() + radii[k] * qCos(a), c.y() + radii[k] * qSin(a));
            if (i == 0 && k == 0)
                gear.moveTo(p);
            else
                gear.lineTo(p);
        }
    }
    gear.closeSubpath();
    gear.addEllipse(c, 9, 9); // odd-even fill leaves the axle hole open

    QLinearGradient metal(QPointF(0, 3), QPointF(0, 61));
    metal.setColorAt(0, QColor(0xe3, 0xea, 0xee));
    metal.setColorAt(1, QColor(0x8f, 0xa4, 0xb0));
    painter.setPen(QPen(QColor(0x4a, 0x5d, 0x68), 1.5));
    painter.setBrush(metal);
    painter.drawPath(gear);
    return image;
}

// Two arrows chasing each other round a circle.
QImage pageUpdate()
{
    QImage image = paintutil::blank(48, 48);
    QPainter painter(&image);
    paintutil::prepare(painter);

    const QRectF circle(8, 8, 32, 32);
    const QPointF c = circle.center();
    const qreal r = circle.width() / 2;
    const QColor colours[] = { accentBlue, accentGreen };
    for (int i = 0; i < 2; ++i) {
        // Qt's arcs run counter-clockwise; each arrow covers 125 degrees and points onwards.
        const qreal start = 200 + i * 180;
        const qreal span = -125;
        painter.setPen(QPen(colours[i], 5, Qt::SolidLine, Qt::FlatCap));
        painter.setBrush(Qt::NoBrush);
        painter.drawArc(circle, int(start * 16), int(span * 16));
        const qreal end = qDegreesToRadians(start + span);
        const QPointF tip(c.x() + r * qCos(end), c.y() - r * qSin(end));
        // Clockwise on screen the tangent points 90 degrees further round.
        const qreal heading = -(start + span) + 90;
        const qreal h = qDegreesToRadians(heading);
        drawArrowHead(painter, tip + QPointF(qCos(h) * 7, qSin(h) * 7), heading, 11, 14,
                      colours[i]);
    }
    return image;
}

// Three overlapping ranges above a scale: the focal-length and ISO groups.
QImage pageRanges()
{
    QImage image = paintutil::blank(48, 48);
    QPainter painter(&image);
    paintutil::prepare(painter);

    painter.setPen(QPen(lightLine, 3, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(QPointF(3, 42), QPointF(45, 42));
    for (int x = 4; x <= 44; x += 10)
        painter.drawLine(QPointF(x, 36), QPointF(x, 46));

    const QColor colours[] = { accentRed, accentAmber, accentGreen };
    const QRectF bars[] = { QRectF(3, 3, 20, 9), QRectF(14, 14, 20, 9), QRectF(25, 25, 20, 9) };
    painter.setPen(Qt::NoPen);
    for (int i = 0; i < 3; ++i) {
        painter.setBrush(colours[i]);
        painter.drawRoundedRect(bars[i], 2.5, 2.5);
    }
    return image;
}

// A camera under a red "no entry" sign: makers and models left out of the scan.
QImage pageExclude()
{
    QImage image = paintutil::blank(48, 48);
    QPainter painter(&image);
    paintutil::prepare(painter);

    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0xcf, 0xd8, 0xdc));
    painter.drawRoundedRect(QRectF(12, 4, 12, 8), 2, 2);
    painter.drawRoundedRect(QRectF(2, 9, 36, 25), 4, 4);
    painter.setBrush(QColor(0x37, 0x47, 0x4f));
    painter.drawEllipse(QPointF(20, 21.5), 9, 9);
    painter.setBrush(QColor(0x78, 0x90, 0x9c));
    painter.drawEllipse(QPointF(20, 21.5), 5, 5);

    const QPointF c(34, 34);
    const qreal r = 11;
    painter.setBrush(QColor(0x19, 0x23, 0x2d, 200));
    painter.setPen(QPen(accentRed, 4.5));
    painter.drawEllipse(c, r, r);
    const qreal d = r * 0.7071;
    painter.drawLine(QPointF(c.x() - d, c.y() - d), QPointF(c.x() + d, c.y() + d));
    return image;
}

} // namespace images
