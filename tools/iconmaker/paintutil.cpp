#include "paintutil.h"

#include <QFont>
#include <QGuiApplication>
#include <QPainter>
#include <QTransform>

#include <algorithm>

namespace paintutil {

QImage blank(int width, int height)
{
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

void prepare(QPainter &painter)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
}

QPainterPath fittedText(const QString &text, const QRectF &box, bool bold, qreal maxStretch)
{
    QFont font = QGuiApplication::font();
    // A large design size gives smooth outlines; the path is scaled down afterwards.
    font.setPixelSize(200);
    font.setBold(bold);
    font.setHintingPreference(QFont::PreferNoHinting);

    QPainterPath path;
    path.addText(0, 0, font, text);
    const QRectF bounds = path.boundingRect();
    if (bounds.isEmpty())
        return path;

    const qreal sx = box.width() / bounds.width();
    const qreal sy = std::min(box.height() / bounds.height(), sx * maxStretch);
    const qreal scaleX = std::min(sx, sy);
    const qreal scaleY = sy;

    QTransform transform;
    transform.translate(box.center().x(), box.center().y());
    transform.scale(scaleX, scaleY);
    transform.translate(-bounds.center().x(), -bounds.center().y());
    return transform.map(path);
}

} // namespace paintutil
