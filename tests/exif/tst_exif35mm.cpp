#include "tst_exif35mm.h"

#include "photofixture.h"
#include "texiffile.h"

#include <QTemporaryDir>
#include <QTest>

void tst_Exif35mm::cropAndEquivalent_data()
{
    QTest::addColumn<int>("focal10"); // focal length in tenths of mm; 0: none
    QTest::addColumn<int>("focal35"); // tag 0xA405
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("resolutionNum"); // pixels per unit, the same for x and y
    QTest::addColumn<int>("resolutionDen");
    QTest::addColumn<int>("unit");
    QTest::addColumn<double>("crop"); // 0: unknown
    QTest::addColumn<double>("equivalent");

    // An APS-C sensor of 23.6 x 15.73 mm, 6000 x 4000 pixels (60000/236 pixels per mm): crop
    // 43.2666 / 28.36 = 1.526.
    const double apsc = 43.2666 / std::hypot(23.6, 15.733333);
    QTest::newRow("tag 0xA405 and a focal length")
        << 500 << 75 << 0 << 0 << 0 << 1 << 0 << 1.5 << 75.0;
    QTest::newRow("tag 0xA405 wins over the focal plane")
        << 500 << 80 << 6000 << 4000 << 60000 << 236 << 4 << 1.6 << 80.0;
    QTest::newRow("tag 0xA405 without a focal length")
        << 0 << 28 << 0 << 0 << 0 << 1 << 0 << 0.0 << 28.0;
    QTest::newRow("focal plane in mm")
        << 500 << 0 << 6000 << 4000 << 60000 << 236 << 4 << apsc << 50 * apsc;
    QTest::newRow("focal plane in cm")
        << 500 << 0 << 6000 << 4000 << 600000 << 236 << 3 << apsc << 50 * apsc;
    QTest::newRow("focal plane in inches")
        << 500 << 0 << 6000 << 4000 << 60000 * 254 << 2360 << 2 << apsc << 50 * apsc;
    QTest::newRow("focal plane without a unit, read as inches")
        << 500 << 0 << 6000 << 4000 << 60000 * 254 << 2360 << 1 << apsc << 50 * apsc;
    QTest::newRow("focal plane in micrometres")
        << 500 << 0 << 6000 << 4000 << 60 << 236 << 5 << apsc << 50 * apsc;
    QTest::newRow("unknown unit") << 500 << 0 << 6000 << 4000 << 60000 << 236 << 9 << 0.0 << 0.0;
    QTest::newRow("zero denominator") << 500 << 0 << 6000 << 4000 << 6000 << 0 << 4 << 0.0 << 0.0;
    QTest::newRow("zero resolution") << 500 << 0 << 6000 << 4000 << 0 << 236 << 4 << 0.0 << 0.0;
    QTest::newRow("no image size") << 500 << 0 << 0 << 0 << 60000 << 236 << 4 << 0.0 << 0.0;
    QTest::newRow("crop beyond any sensor")
        << 500 << 0 << 6000 << 4000 << 6000000 << 1 << 4 << 0.0 << 0.0;
    QTest::newRow("focal plane but no focal length")
        << 0 << 0 << 6000 << 4000 << 60000 << 236 << 4 << apsc << 0.0;
    QTest::newRow("nothing known") << 500 << 0 << 0 << 0 << 0 << 1 << 0 << 0.0 << 0.0;
}

void tst_Exif35mm::cropAndEquivalent()
{
    QFETCH(int, focal10);
    QFETCH(int, focal35);
    QFETCH(int, width);
    QFETCH(int, height);
    QFETCH(int, resolutionNum);
    QFETCH(int, resolutionDen);
    QFETCH(int, unit);
    QFETCH(double, crop);
    QFETCH(double, equivalent);

    TExifFile exif;
    exif.FocalLengthNumerator = quint32(focal10);
    exif.FocalLengthDenominator = 10;
    exif.FocalLengthIn35mmFormat = quint16(focal35);
    exif.ExifImageWidth = quint32(width);
    exif.ExifImageHeight = quint32(height);
    exif.FocalPlaneXResolutionNumerator = exif.FocalPlaneYResolutionNumerator =
        quint32(resolutionNum);
    exif.FocalPlaneXResolutionDenominator = exif.FocalPlaneYResolutionDenominator =
        quint32(resolutionDen);
    exif.FocalPlaneResolutionUnit = quint16(unit);
    QVERIFY2(qAbs(exif.composite_CropFactor35() - crop) < 1e-3,
             qPrintable(QString::number(exif.composite_CropFactor35())));
    QVERIFY2(qAbs(exif.composite_FocalLength35efl() - equivalent) < 1e-2,
             qPrintable(QString::number(exif.composite_FocalLength35efl())));
}

// The three focal-plane tags are read from a file's Exif directory.
void tst_Exif35mm::focalPlaneTagsAreRead()
{
    fixture::TiffBuilder tiff;
    const int ifd0 = tiff.addDirectory();
    const int exifIfd = tiff.addDirectory();
    tiff.addAscii(ifd0, 0x010F, "Canon");
    tiff.addAscii(ifd0, 0x0110, "EOS 7D");
    tiff.addPointer(ifd0, 0x8769, exifIfd);
    tiff.addRational(exifIfd, 0xA20E, { 6000, 236 });
    tiff.addRational(exifIfd, 0xA20F, { 4000, 157 });
    tiff.addShort(exifIfd, 0xA210, 4);
    QTemporaryDir dir;
    const QString path = dir.filePath("plane.cr2");
    QVERIFY(fixture::writeBytes(path, tiff.build()));
    TExifFile exif(path);
    QVERIFY(exif.processFile());
    QCOMPARE(exif.FocalPlaneXResolutionNumerator, 6000u);
    QCOMPARE(exif.FocalPlaneXResolutionDenominator, 236u);
    QCOMPARE(exif.FocalPlaneYResolutionNumerator, 4000u);
    QCOMPARE(exif.FocalPlaneYResolutionDenominator, 157u);
    QCOMPARE(exif.FocalPlaneResolutionUnit, quint16(4));
}
