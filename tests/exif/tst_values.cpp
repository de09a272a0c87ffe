#include "tst_values.h"

#include "texiffile.h"

#include <QTest>

#include <cmath>
#include <functional>

using TextOf = std::function<QString(TExifFile &, int)>;
Q_DECLARE_METATYPE(TextOf)

namespace {

// The fraction denominators and decimals of the exposure-time texts, in their order.
const int fractions[] = { 16000, 12800, 12000, 10000, 8000, 6400, 6000, 5000, 4000, 3200,
                          3000,  2500,  2000,  1600,  1500, 1250, 1000, 800,  750,  640,
                          500,   400,   350,   320,   250,  200,  180,  160,  125,  100,
                          90,    80,    60,    50,    45,   40,   30,   25,   20,   10,
                          8,     6,     5,     4,     3,    2 };
const int tenths[] = { 3,  4,  6,  7,  8,   10,  13,  16,  20,  25, 32,
                       40, 50, 60, 80, 100, 130, 150, 200, 250, 300 };

QString commaTenths(int t)
{
    return QStringLiteral("%1,%2").arg(t / 10).arg(t % 10);
}

void addExposureColumns()
{
    QTest::addColumn<quint32>("num");
    QTest::addColumn<quint32>("den");
    QTest::addColumn<QString>("text");
}

} // namespace

void tst_Values::exposureTimeFormA_data()
{
    addExposureColumns();
    for (int n : fractions)
        QTest::addRow("1/%d", n) << 1u << quint32(n) << QStringLiteral("1/%1").arg(n);
    for (int t : tenths)
        QTest::addRow("%d/10", t) << quint32(t) << 10u << commaTenths(t);
    QTest::newRow("10/2500 is exactly 1/250") << 10u << 2500u << "1/250";
    QTest::newRow("5/10 matches 1/2 first") << 5u << 10u << "1/2";
    QTest::newRow("1/15 is not listed") << 1u << 15u << "n.a";
    QTest::newRow("1/13 is not listed") << 1u << 13u << "n.a";
    QTest::newRow("10/13 (1/1.3) is not listed") << 10u << 13u << "n.a";
    QTest::newRow("0/1") << 0u << 1u << "n.a";
    QTest::newRow("1/0") << 1u << 0u << "n.a";
    QTest::newRow("0/0") << 0u << 0u << "n.a";
    QTest::newRow("30/1") << 30u << 1u << "30,0";
    QTest::newRow("60/1 is beyond the list") << 60u << 1u << "n.a";
}

void tst_Values::exposureTimeFormA()
{
    QFETCH(quint32, num);
    QFETCH(quint32, den);
    QFETCH(QString, text);
    TExifFile file;
    file.ExposureTimeNumerator = num;
    file.ExposureTimeDenominator = den;
    QCOMPARE(file.exif_0x829A_ExposureTimeAsString(), text);
}

void tst_Values::exposureTimeFormB_data()
{
    addExposureColumns();
    // 1/5, 1/4 and 1/3 are not listed; 1/2 is, as the decimal 0.5.
    for (int n : fractions) {
        const QString text =
            n >= 6 ? QString::number(n) : (n == 2 ? QStringLiteral("0,5") : QStringLiteral("n.a"));
        QTest::addRow("1/%d", n) << 1u << quint32(n) << text;
    }
    for (int t : tenths)
        QTest::addRow("%d/10", t) << quint32(t) << 10u << commaTenths(t);
    QTest::newRow("5/10 gives 0,5") << 5u << 10u << "0,5";
    QTest::newRow("1/15 is not listed") << 1u << 15u << "n.a";
    QTest::newRow("0/1") << 0u << 1u << "n.A.";
    QTest::newRow("1/0") << 1u << 0u << "n.A.";
}

void tst_Values::exposureTimeFormB()
{
    QFETCH(quint32, num);
    QFETCH(quint32, den);
    QFETCH(QString, text);
    TExifFile file;
    file.ExposureTimeNumerator = num;
    file.ExposureTimeDenominator = den;
    QCOMPARE(file.exif_0x829A_ExposureTimeAsString2(), text);
}

void tst_Values::fNumber_data()
{
    addExposureColumns();
    QTest::newRow("28/10") << 28u << 10u << "2.8";
    QTest::newRow("11/1") << 11u << 1u << "11";
    QTest::newRow("14/10") << 14u << 10u << "1.4";
    QTest::newRow("71/10") << 71u << 10u << "7.1";
    QTest::newRow("63/10") << 63u << 10u << "6.3";
    QTest::newRow("22/1") << 22u << 1u << "22";
    QTest::newRow("3.5 as 350/100") << 350u << 100u << "3.5";
    QTest::newRow("1.25 rounds to 3 digits") << 125u << 100u << "1.25";
    QTest::newRow("0/0") << 0u << 0u << "0.0";
    QTest::newRow("0/10") << 0u << 10u << "0.0";
    QTest::newRow("28/0") << 28u << 0u << "0.0";
}

void tst_Values::fNumber()
{
    QFETCH(quint32, num);
    QFETCH(quint32, den);
    QFETCH(QString, text);
    TExifFile file;
    file.FNumberNumerator = num;
    file.FNumberDenominator = den;
    QCOMPARE(file.exif_0x829D_FNumberAsString(), text);
}

// Operations that divide by a denominator the file gives: a zero denominator gives "n.a".
void tst_Values::unguardedDivisionsHaveAFallback_data()
{
    QTest::addColumn<TextOf>("textOf");
    QTest::addColumn<int>("num");
    QTest::addColumn<int>("den");
    QTest::addColumn<QString>("text");
    const TextOf x = [](TExifFile &f, int) { return f.exif_0x11A_XResolutionAsString(); };
    const TextOf y = [](TExifFile &f, int) { return f.exif_0x11B_YResolutionAsString(); };
    const TextOf focal = [](TExifFile &f, int) { return f.exif_0x920A_FocalLengthAsString(); };
    const TextOf antiAlias = [](TExifFile &f, int) {
        return f.exif_0xC632_AntiAliasStrengthAsString();
    };
    QTest::newRow("XResolution 300/1") << x << 300 << 1 << "300";
    QTest::newRow("XResolution 72/0") << x << 72 << 0 << "n.a";
    QTest::newRow("YResolution 720000/10000") << y << 720000 << 10000 << "72";
    QTest::newRow("YResolution 0/0") << y << 0 << 0 << "n.a";
    QTest::newRow("FocalLength 245/10 gives 24") << focal << 245 << 10 << "24";
    QTest::newRow("FocalLength 0/1") << focal << 0 << 1 << "0";
    QTest::newRow("FocalLength 50/0") << focal << 50 << 0 << "n.a";
    QTest::newRow("AntiAliasStrength 3/2") << antiAlias << 3 << 2 << "1";
    QTest::newRow("AntiAliasStrength 1/0") << antiAlias << 1 << 0 << "n.a";
}

void tst_Values::unguardedDivisionsHaveAFallback()
{
    QFETCH(TextOf, textOf);
    QFETCH(int, num);
    QFETCH(int, den);
    QFETCH(QString, text);
    TExifFile file;
    file.XResolutionNumerator = file.YResolutionNumerator = file.FocalLengthNumerator =
        file.AntiAliasStrengthNumerator = quint32(num);
    file.XResolutionDenominator = file.YResolutionDenominator = file.FocalLengthDenominator =
        file.AntiAliasStrengthDenominator = quint32(den);
    QCOMPARE(textOf(file, 0), text);
}

void tst_Values::rationalsAsReal_data()
{
    QTest::addColumn<qint64>("num");
    QTest::addColumn<qint64>("den");
    QTest::addColumn<double>("unsignedValue");
    QTest::addColumn<double>("signedValue");
    QTest::newRow("1/250") << qint64(1) << qint64(250) << 0.004 << 0.004;
    QTest::newRow("245/10") << qint64(245) << qint64(10) << 24.5 << 24.5;
    QTest::newRow("0/10") << qint64(0) << qint64(10) << 0.0 << 0.0;
    QTest::newRow("10/0") << qint64(10) << qint64(0) << 0.0 << 0.0;
    QTest::newRow("-2/3 as signed") << qint64(-2) << qint64(3) << 4294967294.0 / 3 << -2.0 / 3;
}

void tst_Values::rationalsAsReal()
{
    QFETCH(qint64, num);
    QFETCH(qint64, den);
    QFETCH(double, unsignedValue);
    QFETCH(double, signedValue);
    TExifFile f;
    f.ExposureTimeNumerator = f.FocalLengthNumerator = f.MaxApertureValueNumerator =
        f.DigitalZoomRatioNumerator = f.GammaNumerator = f.AntiAliasStrengthNumerator =
            quint32(num);
    f.ExposureTimeDenominator = f.FocalLengthDenominator = f.MaxApertureValueDenominator =
        f.DigitalZoomRatioDenominator = f.GammaDenominator = f.AntiAliasStrengthDenominator =
            quint32(den);
    f.BrightnessValueNumerator = f.ExposureCompensationNumerator = qint32(num);
    f.BrightnessValueDenominator = f.ExposureCompensationDenominator = qint32(den);
    const double unsignedResults[] = { f.exif_0x829A_ExposureTime(),
                                       f.exif_0x920A_FocalLengthAsReal(),
                                       f.exif_0x9205_MaxApertureValueAsReal(),
                                       f.exif_0xA404_DigitalZoomRatioAsReal(),
                                       f.exif_0xA500_GammaAsReal(),
                                       f.exif_0xC632_AntiAliasStrengthAsReal() };
    for (double value : unsignedResults)
        QCOMPARE(value, unsignedValue);
    QCOMPARE(f.exif_0x9203_BrightnessValueAsReal(), signedValue);
    QCOMPARE(f.exif_0x9204_ExpCompensationAsReal(), signedValue);
}

void tst_Values::numberTexts_data()
{
    QTest::addColumn<TextOf>("textOf");
    QTest::addColumn<int>("num");
    QTest::addColumn<int>("den");
    QTest::addColumn<QString>("text");
    const TextOf shutter = [](TExifFile &f, int) {
        return f.exif_0x9201_ShutterSpeedValueAsString();
    };
    const TextOf brightness = [](TExifFile &f, int) {
        return f.exif_0x9203_BrightnessValueAsString();
    };
    const TextOf bits = [](TExifFile &f, int) {
        return f.exif_0x9102_CompressedBitsPerPixelAsString();
    };
    const TextOf compensation = [](TExifFile &f, int) {
        return f.exif_0x9204_ExpCompensationAsString();
    };
    const TextOf aperture = [](TExifFile &f, int) {
        return f.exif_0x9205_MaxApertureValueAsString();
    };
    const TextOf zoom = [](TExifFile &f, int) { return f.exif_0xA404_DigitalZoomRatioAsString(); };
    const TextOf gamma = [](TExifFile &f, int) { return f.exif_0xA500_GammaAsString(); };
    QTest::newRow("ShutterSpeedValue 7965/1000") << shutter << 7965 << 1000 << "7";
    QTest::newRow("ShutterSpeedValue -3/2") << shutter << -3 << 2 << "-1";
    QTest::newRow("ShutterSpeedValue 0/1") << shutter << 0 << 1 << "n.a";
    QTest::newRow("ShutterSpeedValue lowest/-1") << shutter << int(0x80000000) << -1 << "2.147e+09";
    QTest::newRow("BrightnessValue 1234/100") << brightness << 1234 << 100 << "12.34";
    QTest::newRow("BrightnessValue -1/3") << brightness << -1 << 3 << "-0.33333333";
    QTest::newRow("BrightnessValue 5/0") << brightness << 5 << 0 << "n.a";
    QTest::newRow("CompressedBitsPerPixel 7/2") << bits << 7 << 2 << "3";
    QTest::newRow("CompressedBitsPerPixel 0/2") << bits << 0 << 2 << "n.a";
    QTest::newRow("ExposureCompensation -2/3") << compensation << -2 << 3 << "-0.7";
    QTest::newRow("ExposureCompensation 0/0") << compensation << 0 << 0 << "0.0";
    QTest::newRow("MaxApertureValue 297/100") << aperture << 297 << 100 << "3.0";
    QTest::newRow("MaxApertureValue 0/0") << aperture << 0 << 0 << "0.0";
    QTest::newRow("DigitalZoomRatio 3/2") << zoom << 3 << 2 << "1.5";
    QTest::newRow("DigitalZoomRatio 0/0") << zoom << 0 << 0 << "0";
    QTest::newRow("Gamma 22/10") << gamma << 22 << 10 << "2.2";
}

void tst_Values::numberTexts()
{
    QFETCH(TextOf, textOf);
    QFETCH(int, num);
    QFETCH(int, den);
    QFETCH(QString, text);
    TExifFile f;
    f.ShutterSpeedValueNumerator = f.BrightnessValueNumerator = f.ExposureCompensationNumerator =
        num;
    f.ShutterSpeedValueDenominator = f.BrightnessValueDenominator =
        f.ExposureCompensationDenominator = den;
    f.CompressedBitsPerPixelNumerator = f.MaxApertureValueNumerator = f.DigitalZoomRatioNumerator =
        f.GammaNumerator = quint32(num);
    f.CompressedBitsPerPixelDenominator = f.MaxApertureValueDenominator =
        f.DigitalZoomRatioDenominator = f.GammaDenominator = quint32(den);
    QCOMPARE(textOf(f, 0), text);
}

void tst_Values::lensInfo_data()
{
    QTest::addColumn<QList<quint32>>("values"); // numerator, denominator, four times
    QTest::addColumn<QString>("text");
    QTest::newRow("prime") << QList<quint32> { 50, 1, 50, 1, 18, 10, 18, 10 } << "50mm/f1.8";
    QTest::newRow("zoom") << QList<quint32> { 24, 1, 70, 1, 28, 10, 28, 10 }
                          << "24mm/f2.8 - 70mm/2.8";
    QTest::newRow("zoom with varying aperture")
        << QList<quint32> { 18, 1, 55, 1, 35, 10, 56, 10 } << "18mm/f3.5 - 55mm/5.6";
    QTest::newRow("unknown apertures")
        << QList<quint32> { 24, 1, 105, 1, 0, 0, 0, 1 } << "24mm/f0 - 105mm/0";
    QTest::newRow("nothing known") << QList<quint32>(8, 0) << "0mm/f0";
}

void tst_Values::lensInfo()
{
    QFETCH(QList<quint32>, values);
    QFETCH(QString, text);
    TExifFile file;
    for (int i = 0; i < 4; ++i) {
        file.LensInfoNumerator[i] = values[2 * i];
        file.LensInfoDenominator[i] = values[2 * i + 1];
    }
    QCOMPARE(file.exif_0xA432_LensInfoAsString(), text);
}

void tst_Values::arrayTexts()
{
    TExifFile f;
    QCOMPARE(f.exif_0x828E_CFAPattern2AsString(), QStringLiteral(""));
    QCOMPARE(f.exif_0XC61A_BlackLevelAsString(), QStringLiteral(""));
    QCOMPARE(f.exif_0xC61D_WhiteLevelAsString(), QStringLiteral(""));
    const quint16 curve[] = { 0, 16384, 32768, 65535 };
    std::copy(std::begin(curve), std::end(curve), f.SonyToneCurve);
    f.SonyCropTopLeft[0] = 8;
    f.SonyCropTopLeft[1] = 12;
    f.SonyCropSize[0] = 6000;
    f.SonyCropSize[1] = 4000;
    f.CFARepeatPatternDim[0] = f.CFARepeatPatternDim[1] = 2;
    f.CFAPattern2Count = 4;
    const quint8 pattern[] = { 0, 1, 1, 2 };
    std::copy(std::begin(pattern), std::end(pattern), f.CFAPattern2);
    f.BlackLevelRepeatDim[0] = f.BlackLevelRepeatDim[1] = 2;
    f.BlackLevelCount = 4;
    f.BlackLevel = 512;
    f.WhiteLevelCount = 3;
    f.WhiteLevel[0] = 16383;
    f.WhiteLevel[1] = 15000;
    f.WhiteLevel[2] = 14000;
    f.DefaultCropOrigin[0] = f.DefaultCropOrigin[1] = 12;
    f.DefaultCropSize[0] = 6000;
    f.DefaultCropSize[1] = 4000;
    f.ISO = 3200;
    QCOMPARE(f.exif_0x7010_SonyToneCurveAsString(), QStringLiteral("0 16384 32768 65535"));
    QCOMPARE(f.exif_0x74c7_SonyCropTopLeftAsString(), QStringLiteral("8 12"));
    QCOMPARE(f.exif_0x74c8_SonyCropSizeAsString(), QStringLiteral("6000 4000"));
    QCOMPARE(f.exif_0x828D_CFARepeatPatternDimAsString(), QStringLiteral("2 2"));
    QCOMPARE(f.exif_0x828E_CFAPattern2AsString(), QStringLiteral("0 1 1 2"));
    QCOMPARE(f.exif_0xC619_BlackLevelRepeatDimAsString(), QStringLiteral("2 2"));
    QCOMPARE(f.exif_0XC61A_BlackLevelAsString(), QStringLiteral("512"));
    QCOMPARE(f.exif_0xC61D_WhiteLevelAsString(), QStringLiteral("16383 15000 14000"));
    QCOMPARE(f.exif_0xC61F_DefaultCropOriginAsString(), QStringLiteral("12 12"));
    QCOMPARE(f.exif_0xC620_DefaultCropSizeAsString(), QStringLiteral("6000 4000"));
    QCOMPARE(f.exif_0x8827_ISOAsString(), QStringLiteral("3200"));
}

void tst_Values::isValidFile_data()
{
    QTest::addColumn<QString>("software");
    QTest::addColumn<bool>("sony");
    QTest::newRow("ILCE-7M3 v3.01") << "ILCE-7M3 v3.01" << true;
    QTest::newRow("ILCE-9") << "ILCE-9" << true;
    QTest::newRow("ILCE-1") << "ILCE-1 v1.00" << true;
    QTest::newRow("ILCE-6400") << "ILCE-6400 v2.00" << true;
    QTest::newRow("ILCE-6600") << "ILCE-6600" << true;
    QTest::newRow("ILCE-6000 is not among them") << "ILCE-6000 v3.20" << false;
    QTest::newRow("lower case") << "ilce-7m3" << false;
    QTest::newRow("another maker") << "Adobe Photoshop" << false;
    QTest::newRow("default text") << "n.a." << false;
}

void tst_Values::isValidFile()
{
    QFETCH(QString, software);
    QFETCH(bool, sony);
    TExifFile file;
    file.Software = software;
    QCOMPARE(file.isValidFile(), sony);
}

void tst_Values::composites()
{
    TExifFile f;
    f.FocalLengthNumerator = 50;
    f.FocalLengthDenominator = 1;
    f.FocalLengthIn35mmFormat = 75;
    f.FNumberNumerator = 28;
    f.FNumberDenominator = 10;
    QVERIFY2(qAbs(f.composite_ScaleFactor35() - 0.6667) < 1e-4,
             qPrintable(QString::number(f.composite_ScaleFactor35())));
    QVERIFY(qAbs(f.composite_CircleOfConfusion() - 43.267 / (50.0 / 75.0 * 1440.0)) < 1e-12);
    QCOMPARE(f.composite_CircleOfConfusionAsString(), QStringLiteral("0.0451 mm"));
    const double hyperfocal = 50.0 * 50.0 / (f.composite_CircleOfConfusion() * 2.8 * 1000.0);
    QCOMPARE(f.composite_HyperfocalDistance(), hyperfocal);
    QCOMPARE(f.composite_HyperfocalDistanceAsString(),
             QStringLiteral("%1 m").arg(hyperfocal, 0, 'f', 2));
    const double focus = (std::pow(2.0, 50 * 0.0625 - 5.0) + 1.0) * 75 / 1000.0;
    QCOMPARE(f.composite_FocusDistance(), focus);
    QCOMPARE(f.composite_FocusDistanceAsString(), QStringLiteral("0.10 m"));

    f.FocalLengthNumerator = 255;
    QCOMPARE(f.composite_FocusDistance(), 9999.99);
    QCOMPARE(f.composite_FocusDistanceAsString(), QStringLiteral("inf"));
    f.FocalLengthNumerator = 600;
    QCOMPARE(f.composite_FocusDistanceAsString(), QStringLiteral("inf"));

    f.FocalLengthIn35mmFormat = 0; // unknown: the quotients are infinite, not a crash
    QVERIFY(std::isinf(f.composite_ScaleFactor35()));
}

void tst_Values::lightValue_data()
{
    QTest::addColumn<int>("iso");
    QTest::addColumn<quint32>("fNumberNum");
    QTest::addColumn<double>("expected");
    const double atIso100 = 2 * std::log2(2.8) - std::log2(1.0 / 250);
    QTest::newRow("ISO 100, f/2.8, 1/250") << 100 << 28u << atIso100;
    QTest::newRow("ISO 250 counts as 200") << 250 << 28u << atIso100 - 1.0;
    QTest::newRow("ISO 50 is infinite") << 50 << 28u << qInf();
    QTest::newRow("ISO 0 is infinite") << 0 << 28u << qInf();
    QTest::newRow("FNumber unknown") << 100 << 0u << 0.0;
}

void tst_Values::lightValue()
{
    QFETCH(int, iso);
    QFETCH(quint32, fNumberNum);
    QFETCH(double, expected);
    TExifFile f;
    f.ISO = quint16(iso);
    f.FNumberNumerator = fNumberNum;
    f.FNumberDenominator = 10;
    f.ExposureTimeNumerator = 1;
    f.ExposureTimeDenominator = 250;
    if (std::isinf(expected))
        QVERIFY2(std::isinf(f.composite_LightValue()) && f.composite_LightValue() > 0,
                 qPrintable(QString::number(f.composite_LightValue())));
    else
        QVERIFY2(qAbs(f.composite_LightValue() - expected) < 1e-12,
                 qPrintable(QString::number(f.composite_LightValue())));
}

void tst_Values::gpsTexts()
{
    TExifFile f;
    const quint32 latNum[] = { 48, 8, 0 };
    const quint32 latDen[] = { 1, 1, 1 };
    std::copy(std::begin(latNum), std::end(latNum), f.GPSLatitudeNumerator);
    std::copy(std::begin(latDen), std::end(latDen), f.GPSLatitudeDenominator);
    QCOMPARE(f.gps_0x0002_LatitudeAsString(), QStringLiteral("48 8 "));
    QVERIFY2(qAbs(f.gps_0x0002_LatitudeAsKML() - 48.1333) < 1e-4,
             qPrintable(QString::number(f.gps_0x0002_LatitudeAsKML(), 'f', 6)));
    const quint32 lonNum[] = { 48, 8, 2345 };
    const quint32 lonDen[] = { 1, 1, 100 };
    std::copy(std::begin(lonNum), std::end(lonNum), f.GPSLongitudeNumerator);
    std::copy(std::begin(lonDen), std::end(lonDen), f.GPSLongitudeDenominator);
    QCOMPARE(f.gps_0x0004_LongitudeAsString(), QStringLiteral("48 8 23 "));
    QCOMPARE(f.gps_0x0004_LongitudeAsKML(), 48 + (8 + 23 / 60.0) / 60.0);
    QCOMPARE(f.gps_0x0007_TimeStampAsString(), QStringLiteral(""));
    QCOMPARE(TExifFile::grad2dezimalgrad(10, 30, 36), 10.51);
}

void tst_Values::fahrenheit2Celsius_data()
{
    QTest::addColumn<int>("fahrenheit");
    QTest::addColumn<double>("celsius");
    QTest::newRow("212") << 212 << 100.0;
    QTest::newRow("100 truncates 37.777") << 100 << 37.77;
    QTest::newRow("0 truncates toward zero") << 0 << -17.77;
    QTest::newRow("-40") << -40 << -40.0;
    QTest::newRow("32") << 32 << 0.0;
}

void tst_Values::fahrenheit2Celsius()
{
    QFETCH(int, fahrenheit);
    QFETCH(double, celsius);
    QCOMPARE(TExifFile::fahrenheit2Celsius(fahrenheit), celsius);
}

void tst_Values::textsOfAnEmptyFileAreNeverNull()
{
    const TExifFile f;
    const QString texts[] = { f.Make,
                              f.Model,
                              f.LensModel,
                              f.DateTimeOriginal,
                              f.ModifyDate,
                              f.exif_0x829D_FNumberAsString(),
                              f.exif_0x829A_ExposureTimeAsString(),
                              f.exif_0x9207_MeteringModeAsString(),
                              f.exif_0x8822_ExpProgAsString(),
                              f.exif_0x828E_CFAPattern2AsString(),
                              f.gps_0x0002_LatitudeAsString(),
                              f.exif_0XC61A_BlackLevelAsString() };
    for (const QString &text : texts)
        QVERIFY2(!text.isNull(), "texts handed to the table are never null");
}
