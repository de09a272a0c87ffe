#include "kelvaroresources.h"

#include "testrunner.h"

#include <QColor>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QRegularExpression>
#include <QSet>
#include <QSize>
#include <QTest>

// The images and the style sheet reach the program only as compiled-in resources, and Qt says
// nothing when an icon or a style-sheet image is missing: these tests are the only guard.
class tst_Resources : public QObject
{
    Q_OBJECT

private slots:
    void imageLoads_data();
    void imageLoads();
    void visibleOnDarkBackground_data();
    void visibleOnDarkBackground();
    void offIsGreyAndOnIsColoured_data();
    void offIsGreyAndOnIsColoured();
    void splashScreenIsAPicture();
    void styleSheetIsCompiledIn();
    void styleSheetImagesExist();
};

namespace {

const QColor darkThemeBackground(0x19, 0x23, 0x2d);

struct Pair
{
    const char *off;
    const char *on;
};

// The checkable actions' unchecked and checked images.
const Pair offOnPairs[] = {
    { ":/ressourcen/Subdir_off.png", ":/ressourcen/Subdir_on.png" },
    { ":/ressourcen/Dateitypen/canon_cr2_off.png", ":/ressourcen/Dateitypen/canon_cr2_on.png" },
    { ":/ressourcen/Dateitypen/canon_cr3_off.png", ":/ressourcen/Dateitypen/canon_cr3_on.png" },
    { ":/ressourcen/Dateitypen/fuji_raf_off.png", ":/ressourcen/Dateitypen/fuji_raf_on.png" },
    { ":/ressourcen/Dateitypen/leica_dng_off.png", ":/ressourcen/Dateitypen/leica_dng_on.png" },
    { ":/ressourcen/Dateitypen/Nikon_NEF_off.png", ":/ressourcen/Dateitypen/Nikon_NEF_on.png" },
    { ":/ressourcen/Dateitypen/Sony_ARW_off.png", ":/ressourcen/Dateitypen/Sony_arw_on.png" },
    { ":/ressourcen/Dateitypen/JPG_off.png", ":/ressourcen/Dateitypen/JPG_on.png" },
    { ":/ressourcen/Dateitypen/Panasonic_rw2_off.png",
      ":/ressourcen/Dateitypen/Panasonic_rw2_on.png" },
    { ":/ressourcen/Dateitypen/olympus_orf_off.png", ":/ressourcen/Dateitypen/olympus_orf_on.png" },
    { ":/ressourcen/Dateitypen/HEIF_off.png", ":/ressourcen/Dateitypen/HEIF_on.png" },
};

struct Icon
{
    const char *path;
    QSize size;
};

// Every image the program asks for, with the size it is drawn at.
QList<Icon> allImages()
{
    QList<Icon> images = {
        { ":/ressourcen/Logout.png", QSize(64, 64) },
        { ":/ressourcen/ClipboardCopy.png", QSize(64, 64) },
        { ":/ressourcen/Export.png", QSize(64, 64) },
        { ":/ressourcen/Settings.png", QSize(64, 64) },
        { ":/ressourcen/SplashScreen.png", QSize(542, 302) },
        { ":/ressourcen/Kelvaro.png", QSize(256, 256) },
        { ":/ressourcen/Settings/Update.png", QSize(48, 48) },
        { ":/ressourcen/Settings/Ranges.png", QSize(48, 48) },
        { ":/ressourcen/Settings/Exclude.png", QSize(48, 48) },
    };
    for (const Pair &pair : offOnPairs) {
        images.append({ pair.off, QSize(64, 64) });
        images.append({ pair.on, QSize(64, 64) });
    }
    return images;
}

QImage load(const QString &path)
{
    return QImage(path).convertToFormat(QImage::Format_ARGB32);
}

// Mean HSV saturation of the pixels that are (nearly) opaque; antialiased edges don't count.
double meanSaturation(const QImage &image)
{
    double sum = 0;
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor c = image.pixelColor(x, y);
            if (c.alpha() < 200)
                continue;
            sum += c.hsvSaturationF();
            ++count;
        }
    }
    return count ? sum / count : 0;
}

double luminance(const QColor &c)
{
    return 0.2126 * c.red() + 0.7152 * c.green() + 0.0722 * c.blue();
}

} // namespace

void tst_Resources::imageLoads_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QSize>("size");
    for (const Icon &icon : allImages())
        QTest::newRow(icon.path) << QString::fromLatin1(icon.path) << icon.size;
}

void tst_Resources::imageLoads()
{
    QFETCH(QString, path);
    QFETCH(QSize, size);
    QVERIFY2(QFile::exists(path), qPrintable(path + " is not compiled in"));
    const QImage image(path);
    QVERIFY2(!image.isNull(), qPrintable(path + " does not load as an image"));
    QCOMPARE(image.size(), size);
}

void tst_Resources::visibleOnDarkBackground_data()
{
    imageLoads_data();
}

// Laid on the dark theme's background, a good part of every icon must stand out from it.
void tst_Resources::visibleOnDarkBackground()
{
    QFETCH(QString, path);
    const QImage image = load(path);
    QVERIFY(!image.isNull());
    const double background = luminance(darkThemeBackground);
    int standingOut = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor c = image.pixelColor(x, y);
            const double a = c.alphaF();
            const double shown = a * luminance(c) + (1 - a) * background;
            if (std::abs(shown - background) > 40)
                ++standingOut;
        }
    }
    const double share = double(standingOut) / (image.width() * image.height());
    QVERIFY2(share > 0.15,
             qPrintable(QString("only %1 % of %2 stand out from the dark background")
                            .arg(share * 100, 0, 'f', 1)
                            .arg(path)));
}

void tst_Resources::offIsGreyAndOnIsColoured_data()
{
    QTest::addColumn<QString>("off");
    QTest::addColumn<QString>("on");
    for (const Pair &pair : offOnPairs)
        QTest::newRow(pair.on) << QString::fromLatin1(pair.off) << QString::fromLatin1(pair.on);
}

void tst_Resources::offIsGreyAndOnIsColoured()
{
    QFETCH(QString, off);
    QFETCH(QString, on);
    const QImage offImage = load(off);
    const QImage onImage = load(on);
    QVERIFY2(!offImage.isNull(), qPrintable(off));
    QVERIFY2(!onImage.isNull(), qPrintable(on));
    QVERIFY2(offImage != onImage, "the off and the on image are the same");

    const double offSaturation = meanSaturation(offImage);
    const double onSaturation = meanSaturation(onImage);
    QVERIFY2(offSaturation < 0.08,
             qPrintable(QString("%1 is not grey (saturation %2)").arg(off).arg(offSaturation)));
    QVERIFY2(onSaturation > 0.35,
             qPrintable(QString("%1 is not coloured (saturation %2)").arg(on).arg(onSaturation)));
}

void tst_Resources::splashScreenIsAPicture()
{
    const QImage splash = load(":/ressourcen/SplashScreen.png");
    QCOMPARE(splash.size(), QSize(542, 302));

    QSet<QRgb> colours;
    for (int y = 0; y < splash.height(); ++y)
        for (int x = 0; x < splash.width(); ++x)
            colours.insert(splash.pixel(x, y));
    QVERIFY2(colours.size() > 1000,
             qPrintable(QString("only %1 distinct colours").arg(colours.size())));

    // main() writes "Version ..." in light grey at the bottom left: that corner must be dark.
    double sum = 0;
    const QRect corner(0, 272, 200, 30);
    for (int y = corner.top(); y <= corner.bottom(); ++y)
        for (int x = corner.left(); x <= corner.right(); ++x)
            sum += luminance(splash.pixelColor(x, y));
    const double mean = sum / (corner.width() * corner.height());
    QVERIFY2(mean < 60, qPrintable(QString("bottom-left corner too bright (%1)").arg(mean)));
}

void tst_Resources::styleSheetIsCompiledIn()
{
    // The flag the program sees and the resource must agree either way.
    QCOMPARE(QFile::exists(":/qdarkstyle/style.qss"), kelvaro::hasStyleSheet());
    if (!kelvaro::hasStyleSheet())
        QSKIP("built without QDarkStyle (python3-qdarkstyle not found at configure time)");
    QFile sheet(":/qdarkstyle/style.qss");
    QVERIFY(sheet.open(QIODevice::ReadOnly | QIODevice::Text));
    QVERIFY2(sheet.readAll().contains("QWidget"), "the style sheet has no QWidget rule");
}

void tst_Resources::styleSheetImagesExist()
{
#ifndef KELVARO_HAS_QDARKSTYLE
    QSKIP("built without QDarkStyle (python3-qdarkstyle not found at configure time)");
#endif
    QFile sheet(":/qdarkstyle/style.qss");
    QVERIFY(sheet.open(QIODevice::ReadOnly | QIODevice::Text));
    const QString text = QString::fromUtf8(sheet.readAll());

    static const QRegularExpression url(R"re(url\(\s*["']?([^"')]+)["']?\s*\))re");
    QStringList missing;
    int count = 0;
    for (auto it = url.globalMatch(text); it.hasNext();) {
        const QString target = it.next().captured(1).trimmed();
        ++count;
        if (!QFile::exists(target) && !missing.contains(target))
            missing << target;
    }
    QVERIFY2(count > 0, "the style sheet names no images at all");
    QVERIFY2(missing.isEmpty(), qPrintable("missing: " + missing.join(", ")));
}

// The images are decoded and drawn without a widget.
int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    // Fonts are measured at 96 dpi whatever the screen reports, as QtTest's own main() does.
    app.setAttribute(Qt::AA_Use96Dpi, true);
    tst_Resources test;
    return testutils::runTestObjects(app.arguments(), { &test });
}

#include "tst_resources.moc"
