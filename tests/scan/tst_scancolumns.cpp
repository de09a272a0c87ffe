#include "tst_scancolumns.h"

#include "photodatabase.h"
#include "photofixture.h"
#include "scanfixtures.h"
#include "testutils.h"
#include "tmyworkerobject.h"

#include <QDir>
#include <QSqlQuery>
#include <QTest>

Q_DECLARE_METATYPE(fixture::Format)
Q_DECLARE_METATYPE(fixture::PhotoTags)

namespace {

using fixture::Format;
using fixture::Rational;

const QStringList storedColumns { "FILENAME", "DATE",          "MAKER",        "MODEL",
                                  "LENS",     "FOCALLENGTH",   "ISO",          "FNUMBER",
                                  "EXPTIME",  "EXPTIMESTRING", "METERINGMODE", "EXPOSUREMODE" };

} // namespace

void tst_ScanColumns::initTestCase()
{
    QVERIFY2(PhotoDatabase::openMainConnection(db), "the main connection could not be set up");
}

void tst_ScanColumns::init()
{
    PhotoDatabase::clear(db);
}

void tst_ScanColumns::cleanupTestCase()
{
    scantest::closeMainConnection(db);
}

void tst_ScanColumns::columnValues_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<Format>("format");
    QTest::addColumn<fixture::PhotoTags>("tags");
    QTest::addColumn<QVariantList>("row"); // the twelve stored columns

    fixture::PhotoTags canon;
    canon.make = "Canon";
    canon.model = "Canon EOS R5";
    canon.lensModel = "RF24-70mm F2.8 L IS USM";
    canon.dateTimeOriginal = "2021:07:14 09:41:27";
    canon.modifyDate = "2021:07:15 10:00:00";
    canon.iso = 400;
    canon.meteringMode = 5;
    canon.exposureProgram = 3;
    canon.fNumber = Rational { 28, 10 };
    canon.exposureTime = Rational { 1, 250 };
    canon.focalLength = Rational { 70, 1 };
    QTest::newRow("CR3 with every value") << "IMG_0001.CR3" << Format::Cr3 << canon
                                          << QVariantList { "IMG_0001.CR3",
                                                            "2021:07:14 09:41:27",
                                                            "Canon",
                                                            "Canon EOS R5",
                                                            "RF24-70mm F2.8 L IS USM",
                                                            70.0,
                                                            400,
                                                            2.8,
                                                            1.0 / 250,
                                                            "1/250",
                                                            "Matrix",
                                                            "Av [Aperture-priority]" };

    fixture::PhotoTags nikon = canon;
    nikon.make = "NIKON CORPORATION";
    nikon.model = "NIKON Z 6_2";
    nikon.lensModel = "NIKKOR Z 85mm f/1.8 S";
    nikon.dateTimeOriginal = QString();
    nikon.iso = 100;
    nikon.meteringMode = 2;
    nikon.exposureProgram = 2;
    nikon.fNumber = Rational { 18, 10 };
    nikon.exposureTime = Rational { 1, 1000 };
    nikon.focalLength = Rational { 85, 1 };
    QTest::newRow("JPEG without DateTimeOriginal") << "DSC_0002.JPG" << Format::Jpeg << nikon
                                                   << QVariantList { "DSC_0002.JPG",
                                                                     "n.a.",
                                                                     "NIKON CORPORATION",
                                                                     "NIKON Z 6_2",
                                                                     "NIKKOR Z 85mm f/1.8 S",
                                                                     85.0,
                                                                     100,
                                                                     1.8,
                                                                     1.0 / 1000,
                                                                     "1/1000",
                                                                     "Center-weighted average",
                                                                     "Program AE" };

    fixture::PhotoTags bigEndian = nikon;
    bigEndian.dateTimeOriginal = "2020:01:02 03:04:05";
    bigEndian.iso = 3200;
    bigEndian.meteringMode = 3;
    bigEndian.exposureProgram = 1;
    bigEndian.fNumber = Rational { 11, 1 };
    bigEndian.exposureTime = Rational { 1, 15 };
    bigEndian.focalLength = Rational { 245, 10 };
    QTest::newRow("big-endian NEF, 1/15 s outside the exposure-time table")
        << "DSC_0003.NEF" << Format::TiffBig << bigEndian
        << QVariantList { "DSC_0003.NEF",
                          "2020:01:02 03:04:05",
                          "NIKON CORPORATION",
                          "NIKON Z 6_2",
                          "NIKKOR Z 85mm f/1.8 S",
                          24.5,
                          3200,
                          11.0,
                          1.0 / 15,
                          "n.a",
                          "Spot",
                          "Manual" };

    fixture::PhotoTags fuji;
    fuji.make = "FUJIFILM";
    fuji.model = "X-T3";
    fuji.lensModel = "XF10-24mmF4 R OIS";
    fuji.dateTimeOriginal = "2019:12:31 23:59:59";
    fuji.iso = 25600;
    fuji.meteringMode = 6;
    fuji.exposureProgram = 9;
    fuji.fNumber = Rational { 40, 10 };
    fuji.exposureTime = Rational { 30, 1 };
    fuji.focalLength = Rational { 10, 1 };
    QTest::newRow("RAF with 30 s, Partiell, Bulb") << "DSCF0004.RAF" << Format::Raf << fuji
                                                   << QVariantList { "DSCF0004.RAF",
                                                                     "2019:12:31 23:59:59",
                                                                     "FUJIFILM",
                                                                     "X-T3",
                                                                     "XF10-24mmF4 R OIS",
                                                                     10.0,
                                                                     25600,
                                                                     4.0,
                                                                     30.0,
                                                                     "30,0",
                                                                     "Partiell",
                                                                     "Bulb" };

    fixture::PhotoTags olympus;
    olympus.make = "OLYMPUS CORPORATION";
    olympus.model = "E-M1MarkIII";
    QTest::newRow("ORF with nothing but maker and model")
        << "P5010005.ORF" << Format::Orf << olympus << QVariantList { "P5010005.ORF",
                                                                      "n.a.",
                                                                      "OLYMPUS CORPORATION",
                                                                      "E-M1MarkIII",
                                                                      "n.a.",
                                                                      0.0,
                                                                      0,
                                                                      0.0,
                                                                      0.0,
                                                                      "n.a",
                                                                      "n.a",
                                                                      "not defined" };

    fixture::PhotoTags panasonic;
    panasonic.make = "Panasonic";
    panasonic.model = "DC-G9";
    panasonic.lensModel = "LEICA DG 12-60/F2.8-4.0";
    panasonic.dateTimeOriginal = "2022:05:06 07:08:09";
    panasonic.iso = 200;
    panasonic.meteringMode = 255;
    panasonic.exposureProgram = 10;
    panasonic.fNumber = Rational { 56, 10 };
    panasonic.exposureTime = Rational { 10, 2500 };
    panasonic.focalLength = Rational { 12, 1 };
    QTest::newRow("RW2 with metering 255, program 10 and 10/2500 s")
        << "P1000006.RW2" << Format::Rw2 << panasonic
        << QVariantList { "P1000006.RW2",
                          "2022:05:06 07:08:09",
                          "Panasonic",
                          "DC-G9",
                          "LEICA DG 12-60/F2.8-4.0",
                          12.0,
                          200,
                          5.6,
                          10.0 / 2500,
                          "1/250",
                          "Other",
                          "n.a." };

    fixture::PhotoTags apple;
    apple.make = "Apple";
    apple.model = "iPhone 13";
    apple.lensModel = "iPhone 13 back dual wide camera 5.1mm f/1.6";
    apple.dateTimeOriginal = "2023:08:19 17:45:00";
    apple.iso = 50;
    apple.meteringMode = 1;
    apple.exposureProgram = 2;
    apple.fNumber = Rational { 16, 10 };
    apple.exposureTime = Rational { 1, 60 };
    apple.focalLength = Rational { 51, 10 };
    QTest::newRow("little-endian DNG")
        << "IMG_0007.DNG" << Format::TiffLittle << apple
        << QVariantList { "IMG_0007.DNG",
                          "2023:08:19 17:45:00",
                          "Apple",
                          "iPhone 13",
                          "iPhone 13 back dual wide camera 5.1mm f/1.6",
                          5.1,
                          50,
                          1.6,
                          1.0 / 60,
                          "1/60",
                          "Average",
                          "Program AE" };

    fixture::PhotoTags sony = apple;
    sony.make = "SONY";
    sony.model = "ILCE-7M3";
    sony.lensModel = "FE 200-600mm F5.6-6.3 G OSS";
    sony.meteringMode = 4;
    sony.exposureProgram = 4;
    sony.exposureTime = Rational { 1, 2 };
    sony.fNumber = Rational { 63, 10 };
    sony.focalLength = Rational { 600, 1 };
    QTest::newRow("JPEG with APP0 before the Exif segment")
        << "DSC00008.jpg" << Format::JpegApp0 << sony
        << QVariantList { "DSC00008.jpg",
                          "2023:08:19 17:45:00",
                          "SONY",
                          "ILCE-7M3",
                          "FE 200-600mm F5.6-6.3 G OSS",
                          600.0,
                          50,
                          6.3,
                          0.5,
                          "1/2",
                          "Multi-Spot",
                          "Tv [Shutter speed priority]" };
}

void tst_ScanColumns::columnValues()
{
    QFETCH(QString, fileName);
    QFETCH(Format, format);
    QFETCH(fixture::PhotoTags, tags);
    QFETCH(QVariantList, row);

    testutils::Sandbox sandbox;
    // The photo lies in a subfolder: FILENAME holds the name alone.
    const QString folder = sandbox.makeDir("2021/07");
    QVERIFY(fixture::writePhoto(QDir(folder).filePath(fileName), format, tags));
    auto worker = scantest::makeWorker({ sandbox.path() }, scantest::allPatterns, true);
    scantest::scanHere(*worker);

    QSqlQuery query(db);
    QVERIFY(query.exec("SELECT " + storedColumns.join(", ")
                       + ", typeof(FOCALLENGTH), typeof(ISO), typeof(FNUMBER), typeof(EXPTIME) "
                         "FROM DATEIEN"));
    QVERIFY2(query.next(), "no row was stored");
    for (int c = 0; c < storedColumns.size(); ++c) {
        const QVariant value = query.value(c);
        const QByteArray what = storedColumns[c].toLatin1();
        if (row[c].typeId() == QMetaType::Double)
            QVERIFY2(qFuzzyCompare(1.0 + value.toDouble(), 1.0 + row[c].toDouble()),
                     what + " is " + value.toString().toLatin1());
        else
            QVERIFY2(value.toString() == row[c].toString(),
                     what + " is \"" + value.toString().toUtf8() + '"');
    }
    // FNUMBER is bound as text; the column's REAL affinity stores it as a number.
    QCOMPARE(query.value(12).toString(), QStringLiteral("real"));
    QCOMPARE(query.value(13).toString(), QStringLiteral("integer"));
    QCOMPARE(query.value(14).toString(), QStringLiteral("real"));
    QCOMPARE(query.value(15).toString(), QStringLiteral("real"));
    QVERIFY2(!query.next(), "more than one row for one photo");
}
