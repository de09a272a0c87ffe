/*
 * iconmaker draws every image of Kelvaro with QPainter: the tool-bar and file-type icons, the
 * page icons of the settings dialog, the window icon and the splash screen. The PNG files it
 * writes are committed under ressourcen/ and compiled into the program; they are not drawn at
 * build time. After changing a drawing, build the target and run it from the repository root:
 *
 *     QT_QPA_PLATFORM=offscreen <build-dir>/tools/iconmaker/iconmaker ressourcen
 *
 * It overwrites the files in place. The output depends only on this code and the system's
 * default font, so running it twice gives the same bytes.
 *
 * The installed program's icons are drawn at build time instead, from the same drawing:
 *
 *     iconmaker --hicolor <dir> <app-id>
 *
 * writes <dir>/<N>x<N>/apps/<app-id>.png for the sizes of the icon theme and
 * <dir>/scalable/apps/<app-id>.svg, a tree to install under share/icons/hicolor/.
 */
#include "images.h"

#include <QColor>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QString>
#include <QSvgGenerator>
#include <QTextStream>

#include <functional>
#include <vector>

namespace {

struct Output
{
    QString path; // relative to the output directory, as the resource is named
    std::function<QImage()> draw;
};

// One off/on pair per file type. Sony's pair really is spelt in two cases; the program asks
// for exactly these names.
void addFileType(std::vector<Output> &outputs, const QString &offName, const QString &onName,
                 const QString &label, const QColor &colour)
{
    outputs.push_back({ QStringLiteral("Dateitypen/") + offName,
                        [=] { return images::fileType(label, colour, false); } });
    outputs.push_back({ QStringLiteral("Dateitypen/") + onName,
                        [=] { return images::fileType(label, colour, true); } });
}

std::vector<Output> allOutputs()
{
    std::vector<Output> outputs = {
        { "Logout.png", images::logout },
        { "Subdir_off.png", [] { return images::subdirectories(false); } },
        { "Subdir_on.png", [] { return images::subdirectories(true); } },
        { "ClipboardCopy.png", images::clipboardCopy },
        { "Export.png", images::exportData },
        { "Settings.png", images::settings },
        { "SplashScreen.png", images::splashScreen },
        { "Kelvaro.png", images::windowIcon },
        { "Settings/Update.png", images::pageUpdate },
        { "Settings/Ranges.png", images::pageRanges },
        { "Settings/Exclude.png", images::pageExclude },
    };
    // One hue per type, spread round the colour wheel so that no two neighbours in the tool
    // bar look alike.
    addFileType(outputs, "canon_cr2_off.png", "canon_cr2_on.png", "CR2", QColor(0xd3, 0x2f, 0x2f));
    addFileType(outputs, "canon_cr3_off.png", "canon_cr3_on.png", "CR3", QColor(0xef, 0x6c, 0x00));
    addFileType(outputs, "fuji_raf_off.png", "fuji_raf_on.png", "RAF", QColor(0x2e, 0x9d, 0x3f));
    addFileType(outputs, "leica_dng_off.png", "leica_dng_on.png", "DNG", QColor(0x00, 0x89, 0x7b));
    addFileType(outputs, "Nikon_NEF_off.png", "Nikon_NEF_on.png", "NEF", QColor(0xf9, 0xc0, 0x1a));
    addFileType(outputs, "Sony_ARW_off.png", "Sony_arw_on.png", "ARW", QColor(0x8e, 0x24, 0xaa));
    addFileType(outputs, "JPG_off.png", "JPG_on.png", "JPG", QColor(0x39, 0x49, 0xc8));
    addFileType(outputs, "Panasonic_rw2_off.png", "Panasonic_rw2_on.png", "RW2",
                QColor(0xd8, 0x1b, 0x60));
    addFileType(outputs, "olympus_orf_off.png", "olympus_orf_on.png", "ORF",
                QColor(0x03, 0x8b, 0xd5));
    addFileType(outputs, "HEIF_off.png", "HEIF_on.png", "HEIF", QColor(0x7c, 0xb3, 0x42));
    return outputs;
}

// Fixed metadata: the default resolution would follow the screen.
bool savePng(QImage image, const QString &file)
{
    QDir().mkpath(QFileInfo(file).absolutePath());
    image = image.convertToFormat(QImage::Format_ARGB32);
    image.setDotsPerMeterX(3780);
    image.setDotsPerMeterY(3780);
    return image.save(file, "PNG");
}

bool writeHicolorTree(const QDir &dir, const QString &appId, QTextStream &err)
{
    for (const int size : { 16, 32, 48, 64, 128, 256, 512 }) {
        const QString file = dir.filePath(QStringLiteral("%1x%1/apps/%2.png").arg(size).arg(appId));
        if (!savePng(images::appIcon(size), file)) {
            err << "iconmaker: cannot write " << file << '\n';
            return false;
        }
    }
    const QString svgFile = dir.filePath(QStringLiteral("scalable/apps/%1.svg").arg(appId));
    QDir().mkpath(QFileInfo(svgFile).absolutePath());
    QSvgGenerator svg;
    svg.setFileName(svgFile);
    svg.setSize(QSize(256, 256));
    svg.setViewBox(QRect(0, 0, 256, 256));
    svg.setTitle(QStringLiteral("Kelvaro"));
    QPainter painter;
    if (!painter.begin(&svg)) {
        err << "iconmaker: cannot write " << svgFile << '\n';
        return false;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    images::paintAppIcon(painter);
    return painter.end();
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    QTextStream err(stderr);
    const QStringList args = app.arguments();
    if (args.size() == 4 && args.at(1) == QLatin1String("--hicolor"))
        return writeHicolorTree(QDir(args.at(2)), args.at(3), err) ? 0 : 1;
    if (args.size() != 2) {
        err << "usage: iconmaker <output-dir>   (e.g. ressourcen)\n"
               "       iconmaker --hicolor <output-dir> <app-id>\n";
        return 2;
    }

    const QDir outDir(args.at(1));
    for (const Output &output : allOutputs()) {
        const QString file = outDir.filePath(output.path);
        if (!savePng(output.draw(), file)) {
            err << "iconmaker: cannot write " << file << '\n';
            return 1;
        }
    }
    return 0;
}
