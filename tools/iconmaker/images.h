#ifndef KELVARO_ICONMAKER_IMAGES_H
#define KELVARO_ICONMAKER_IMAGES_H

#include <QColor>
#include <QImage>
#include <QString>

class QPainter;

// Every function returns a finished image in ARGB32 (premultiplied) at its final size.
namespace images {

// File-type toggles of the tool bar, 64 x 64. Off: grey on dark grey; on: the type's colour.
QImage fileType(const QString &label, const QColor &colour, bool on);

// Tool-bar and menu icons, 64 x 64.
QImage logout();
QImage subdirectories(bool on);
QImage clipboardCopy();
QImage exportData();
QImage settings();

// Pages of the settings dialog, 48 x 48.
QImage pageUpdate();
QImage pageRanges();
QImage pageExclude();

// The program's icon drawn into a 256 x 256 space; scale the painter for other sizes.
void paintAppIcon(QPainter &painter);

// The icon at size x size pixels; the window icon is the one at 256.
QImage appIcon(int size);

// Window icon (256 x 256) and splash screen (542 x 302).
QImage windowIcon();
QImage splashScreen();

} // namespace images

#endif // KELVARO_ICONMAKER_IMAGES_H
