#ifndef KELVARO_ICONMAKER_PAINTUTIL_H
#define KELVARO_ICONMAKER_PAINTUTIL_H

#include <QImage>
#include <QPainterPath>
#include <QRectF>
#include <QString>

class QPainter;

namespace paintutil {

// A transparent image of the given size; everything is drawn at its final size so that lines
// land on whole pixels where it matters.
QImage blank(int width, int height);

// Antialiased painting with smooth pixmap scaling.
void prepare(QPainter &painter);

// The outline of a text in the default font, scaled to fill the box and centred in it. Short
// labels may be stretched up to maxStretch times taller than wide, because tall letters stay
// legible when an icon is shown at 24 pixels.
QPainterPath fittedText(const QString &text, const QRectF &box, bool bold = true,
                        qreal maxStretch = 1.0);

} // namespace paintutil

#endif // KELVARO_ICONMAKER_PAINTUTIL_H
