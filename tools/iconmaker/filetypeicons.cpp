#include "images.h"
#include "paintutil.h"

#include <QLinearGradient>
#include <QPainter>

namespace images {

/*
 * A 64 x 64 frame of film: a rounded body with a row of sprocket holes along the top and the
 * bottom edge, and the type's letters between them, as large as the frame allows.
 * The off image is deliberately colourless so that at tool-bar size the colour alone tells
 * which types are switched on.
 */
QImage fileType(const QString &label, const QColor &colour, bool on)
{
    QImage image = paintutil::blank(64, 64);
    QPainter painter(&image);
    paintutil::prepare(painter);

    const QColor body = on ? colour : QColor(0x40, 0x40, 0x40);
    const QColor rim = on ? colour.lighter(135) : QColor(0x78, 0x78, 0x78);
    const QColor holes = on ? colour.darker(170) : QColor(0x26, 0x26, 0x26);
    // Yellow and other light bodies need dark letters; the rest read best in white.
    const QColor text = !on ? QColor(0xb4, 0xb4, 0xb4)
                            : (colour.lightnessF() > 0.55 ? QColor(0x1e, 0x1e, 0x1e) : Qt::white);

    const QRectF frame(3, 3, 58, 58);
    QLinearGradient shade(frame.topLeft(), frame.bottomLeft());
    shade.setColorAt(0, body.lighter(118));
    shade.setColorAt(1, body.darker(112));
    painter.setPen(QPen(rim, 2));
    painter.setBrush(shade);
    painter.drawRoundedRect(frame, 9, 9);

    painter.setPen(Qt::NoPen);
    painter.setBrush(holes);
    for (int i = 0; i < 5; ++i) {
        const qreal x = 10 + i * 9.8;
        painter.drawRoundedRect(QRectF(x, 7.5, 5, 5), 1.2, 1.2);
        painter.drawRoundedRect(QRectF(x, 51.5, 5, 5), 1.2, 1.2);
    }

    painter.setBrush(text);
    painter.drawPath(paintutil::fittedText(label, QRectF(7, 17, 50, 30), true, 1.6));
    return image;
}

} // namespace images
