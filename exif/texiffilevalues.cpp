// The interpretation operations of TExifFile: numbers and display texts made from the members
// the directory walk filled. None of them reads the file or changes state.
#include "texiffile.h"

#include "exifreaderlimits.h"
#include "exifvaluetables.h"

#include <cmath>

using exifvalues::ValueTable;
using exifvalues::valueText;

namespace {

const QString notAvailable = QStringLiteral("n.a");
const QString unknown = QStringLiteral("unknown");

double quotient(quint32 numerator, quint32 denominator)
{
    if (numerator == 0 || denominator == 0)
        return 0.0;
    return double(numerator) / double(denominator);
}

double signedQuotient(qint32 numerator, qint32 denominator)
{
    if (numerator == 0 || denominator == 0)
        return 0.0;
    return double(numerator) / double(denominator);
}

// Integer quotient as decimal text; a zero denominator has no quotient and gives "n.a".
QString integerQuotientText(quint32 numerator, quint32 denominator)
{
    return denominator == 0 ? notAvailable : QString::number(numerator / denominator);
}

template<typename T> QString joined(const T *values, quint32 count)
{
    QString result = QStringLiteral(""); // never a null text, also for no values
    for (quint32 i = 0; i < count; ++i) {
        if (i > 0)
            result += u' ';
        result += QString::number(values[i]);
    }
    return result;
}

QString text(const char *latin1)
{
    return latin1 ? QString::fromLatin1(latin1) : notAvailable;
}

// Degrees, minutes and seconds (or hours, minutes, seconds) as their integer quotients, each
// followed by a blank; a rational with a zero part adds nothing. Fractions of seconds are lost.
QString dmsText(const quint32 *numerators, const quint32 *denominators)
{
    QString result = QStringLiteral("");
    for (int i = 0; i < 3; ++i) {
        if (numerators[i] != 0 && denominators[i] != 0)
            result += QString::number(double(numerators[i] / denominators[i]), 'g', 6) + u' ';
    }
    return result;
}

double dmsDegrees(const quint32 *numerators, const quint32 *denominators)
{
    double parts[3] = {};
    for (int i = 0; i < 3; ++i) {
        if (numerators[i] != 0 && denominators[i] != 0)
            parts[i] = numerators[i] / denominators[i];
    }
    return TExifFile::grad2dezimalgrad(parts[0], parts[1], parts[2]);
}

} // namespace

QString TExifFile::exif_0xFE_SubfileTypeAsString() const
{
    return valueText(ValueTable::SubfileType, SubfileType, notAvailable);
}

QString TExifFile::exif_0x103_CompressionAsString() const
{
    return valueText(ValueTable::Compression, Compression, unknown);
}

QString TExifFile::exif_0x106_PhotometricInterpretationAsString() const
{
    return valueText(ValueTable::Photometric, PhotometricInterpretation, unknown);
}

QString TExifFile::exif_0x112_OrientationAsString() const
{
    return valueText(ValueTable::Orientation, Orientation, unknown);
}

QString TExifFile::exif_0x11A_XResolutionAsString() const
{
    return integerQuotientText(XResolutionNumerator, XResolutionDenominator);
}

QString TExifFile::exif_0x11B_YResolutionAsString() const
{
    return integerQuotientText(YResolutionNumerator, YResolutionDenominator);
}

QString TExifFile::exif_0x11C_PlanarConfigurationAsString() const
{
    return valueText(ValueTable::PlanarConfiguration, PlanarConfiguration, unknown);
}

QString TExifFile::exif_0x128_ResolutionUnitAsString() const
{
    return valueText(ValueTable::ResolutionUnit, ResolutionUnit, unknown);
}

QString TExifFile::exif_0x7000_SonyRawFileTypeAsString() const
{
    return valueText(ValueTable::SonyRawFileType, SonyRawFileType, unknown);
}

QString TExifFile::exif_0x7010_SonyToneCurveAsString() const
{
    return joined(SonyToneCurve, 4);
}

QString TExifFile::exif_0x7034_ChromaticAberrationCorrectionAsString() const
{
    return valueText(ValueTable::ChromaticAberrationCorrection, ChromaticAberrationCorrection,
                     unknown);
}

QString TExifFile::exif_0x7036_DistortionCorrectionAsString() const
{
    return valueText(ValueTable::DistortionCorrection, DistortionCorrection, unknown);
}

QString TExifFile::exif_0x74c7_SonyCropTopLeftAsString() const
{
    return joined(SonyCropTopLeft, 2);
}

QString TExifFile::exif_0x74c8_SonyCropSizeAsString() const
{
    return joined(SonyCropSize, 2);
}

QString TExifFile::exif_0x828D_CFARepeatPatternDimAsString() const
{
    return joined(CFARepeatPatternDim, 2);
}

QString TExifFile::exif_0x828E_CFAPattern2AsString() const
{
    return joined(CFAPattern2, qMin<quint32>(CFAPattern2Count, CFAPattern2Capacity));
}

double TExifFile::exif_0x829A_ExposureTime() const
{
    return quotient(ExposureTimeNumerator, ExposureTimeDenominator);
}

QString TExifFile::exif_0x829A_ExposureTimeAsString() const
{
    if (ExposureTimeNumerator == 0 || ExposureTimeDenominator == 0)
        return notAvailable;
    return text(exifvalues::exposureTimeFormA(exif_0x829A_ExposureTime()));
}

QString TExifFile::exif_0x829A_ExposureTimeAsString2() const
{
    if (ExposureTimeNumerator == 0 || ExposureTimeDenominator == 0)
        return QStringLiteral("n.A.");
    return text(exifvalues::exposureTimeFormB(exif_0x829A_ExposureTime()));
}

QString TExifFile::exif_0x829D_FNumberAsString() const
{
    if (FNumberNumerator == 0 || FNumberDenominator == 0)
        return QStringLiteral("0.0");
    return QStringLiteral("%1").arg(quotient(FNumberNumerator, FNumberDenominator), 0, 'g', 3);
}

QString TExifFile::exif_0x8822_ExpProgAsString() const
{
    return valueText(ValueTable::ExposureProgram, ExposureProgram, QStringLiteral("n.a."));
}

QString TExifFile::exif_0x8827_ISOAsString() const
{
    return QString::number(ISO);
}

QString TExifFile::exif_0x8830_SensitivityTypeAsString() const
{
    return valueText(ValueTable::SensitivityType, SensitivityType, unknown);
}

QString TExifFile::exif_0x9102_CompressedBitsPerPixelAsString() const
{
    if (CompressedBitsPerPixelNumerator == 0 || CompressedBitsPerPixelDenominator == 0)
        return notAvailable;
    return QStringLiteral("%1").arg(CompressedBitsPerPixelNumerator
                                    / CompressedBitsPerPixelDenominator);
}

QString TExifFile::exif_0x9201_ShutterSpeedValueAsString() const
{
    if (ShutterSpeedValueNumerator == 0 || ShutterSpeedValueDenominator == 0)
        return notAvailable;
    // In 64 bits: the lowest 32-bit value divided by -1 doesn't fit in 32.
    const qint64 q = qint64(ShutterSpeedValueNumerator) / ShutterSpeedValueDenominator;
    return QStringLiteral("%1").arg(double(q), 0, 'g', 4);
}

double TExifFile::exif_0x9203_BrightnessValueAsReal() const
{
    return signedQuotient(BrightnessValueNumerator, BrightnessValueDenominator);
}

QString TExifFile::exif_0x9203_BrightnessValueAsString() const
{
    if (BrightnessValueNumerator == 0 || BrightnessValueDenominator == 0)
        return notAvailable;
    return QStringLiteral("%1").arg(exif_0x9203_BrightnessValueAsReal(), 0, 'g', 8);
}

double TExifFile::exif_0x9204_ExpCompensationAsReal() const
{
    return signedQuotient(ExposureCompensationNumerator, ExposureCompensationDenominator);
}

QString TExifFile::exif_0x9204_ExpCompensationAsString() const
{
    return QStringLiteral("%1").arg(exif_0x9204_ExpCompensationAsReal(), 0, 'f', 1);
}

double TExifFile::exif_0x9205_MaxApertureValueAsReal() const
{
    return quotient(MaxApertureValueNumerator, MaxApertureValueDenominator);
}

QString TExifFile::exif_0x9205_MaxApertureValueAsString() const
{
    return QString::asprintf("%1.1f", exif_0x9205_MaxApertureValueAsReal());
}

QString TExifFile::exif_0x9207_MeteringModeAsString() const
{
    return valueText(ValueTable::MeteringMode, MeteringMode, notAvailable);
}

QString TExifFile::exif_0x9208_LightSourceAsString() const
{
    return valueText(ValueTable::LightSource, LightSource, unknown);
}

QString TExifFile::exif_0x9209_FlashAsString() const
{
    return valueText(ValueTable::Flash, Flash, unknown);
}

double TExifFile::exif_0x920A_FocalLengthAsReal() const
{
    return quotient(FocalLengthNumerator, FocalLengthDenominator);
}

QString TExifFile::exif_0x920A_FocalLengthAsString() const
{
    return integerQuotientText(FocalLengthNumerator, FocalLengthDenominator);
}

QString TExifFile::exif_0xA001_ColorSpaceAsString() const
{
    return valueText(ValueTable::ColorSpace, ColorSpace, unknown);
}

QString TExifFile::exif_0xA300_FileSourceAsString() const
{
    return valueText(ValueTable::FileSource, FileSource, unknown);
}

QString TExifFile::exif_0xA301_SceneTypeAsString() const
{
    return valueText(ValueTable::SceneType, SceneType, unknown);
}

QString TExifFile::exif_0xA401_CustomRenderedAsString() const
{
    return valueText(ValueTable::CustomRendered, CustomRendered, unknown);
}

QString TExifFile::exif_0xA402_ExposureModeAsString() const
{
    return valueText(ValueTable::ExposureMode, ExposureMode, unknown);
}

QString TExifFile::exif_0xA403_WhiteBalanceAsString() const
{
    return valueText(ValueTable::WhiteBalance, WhiteBalance, unknown);
}

double TExifFile::exif_0xA404_DigitalZoomRatioAsReal() const
{
    return quotient(DigitalZoomRatioNumerator, DigitalZoomRatioDenominator);
}

QString TExifFile::exif_0xA404_DigitalZoomRatioAsString() const
{
    return QString::number(exif_0xA404_DigitalZoomRatioAsReal());
}

QString TExifFile::exif_0xA406_SceneCaptureTypeAsString() const
{
    return valueText(ValueTable::SceneCaptureType, SceneCaptureType, unknown);
}

QString TExifFile::exif_0xA408_ContrastAsString() const
{
    return valueText(ValueTable::NormalLowHigh, Contrast, unknown);
}

QString TExifFile::exif_0xA409_SaturationAsString() const
{
    return valueText(ValueTable::NormalLowHigh, Saturation, unknown);
}

QString TExifFile::exif_0xA40A_SharpnessAsString() const
{
    return valueText(ValueTable::Sharpness, Sharpness, unknown);
}

// Minimum and maximum focal length, aperture at each: "50mm/f1.8" for a prime lens, else
// "24mm/f2.8 - 70mm/4" (the second aperture without its f, as it has always been shown).
QString TExifFile::exif_0xA432_LensInfoAsString() const
{
    QString parts[4];
    for (int i = 0; i < 4; ++i) {
        if (LensInfoNumerator[i] == 0 || LensInfoDenominator[i] == 0)
            parts[i] = QStringLiteral("0");
        else
            parts[i].setNum(double(LensInfoNumerator[i]) / LensInfoDenominator[i]);
    }
    if (parts[0] == parts[1])
        return parts[0] + QLatin1String("mm/f") + parts[2];
    return parts[0] + QLatin1String("mm/f") + parts[2] + QLatin1String(" - ") + parts[1]
        + QLatin1String("mm/") + parts[3];
}

double TExifFile::exif_0xA500_GammaAsReal() const
{
    return quotient(GammaNumerator, GammaDenominator);
}

QString TExifFile::exif_0xA500_GammaAsString() const
{
    return QStringLiteral("%1").arg(exif_0xA500_GammaAsReal(), 0, 'f', 1);
}

QString TExifFile::exif_0xC619_BlackLevelRepeatDimAsString() const
{
    return joined(BlackLevelRepeatDim, 2);
}

QString TExifFile::exif_0XC61A_BlackLevelAsString() const
{
    return joined(&BlackLevel, qMin<quint32>(BlackLevelCount, 1));
}

QString TExifFile::exif_0xC61D_WhiteLevelAsString() const
{
    return joined(WhiteLevel, qMin<quint32>(WhiteLevelCount, WhiteLevelCapacity));
}

QString TExifFile::exif_0xC61F_DefaultCropOriginAsString() const
{
    return joined(DefaultCropOrigin, 2);
}

QString TExifFile::exif_0xC620_DefaultCropSizeAsString() const
{
    return joined(DefaultCropSize, 2);
}

double TExifFile::exif_0xC632_AntiAliasStrengthAsReal() const
{
    return quotient(AntiAliasStrengthNumerator, AntiAliasStrengthDenominator);
}

QString TExifFile::exif_0xC632_AntiAliasStrengthAsString() const
{
    return integerQuotientText(AntiAliasStrengthNumerator, AntiAliasStrengthDenominator);
}

QString TExifFile::gps_0x0002_LatitudeAsString() const
{
    return dmsText(GPSLatitudeNumerator, GPSLatitudeDenominator);
}

QString TExifFile::gps_0x0004_LongitudeAsString() const
{
    return dmsText(GPSLongitudeNumerator, GPSLongitudeDenominator);
}

QString TExifFile::gps_0x0007_TimeStampAsString() const
{
    return dmsText(GPSTimeStampNumerator, GPSTimeStampDenominator);
}

// The reference (N/S, E/W) is not applied: the result is never negative.
double TExifFile::gps_0x0002_LatitudeAsKML() const
{
    return dmsDegrees(GPSLatitudeNumerator, GPSLatitudeDenominator);
}

double TExifFile::gps_0x0004_LongitudeAsKML() const
{
    return dmsDegrees(GPSLongitudeNumerator, GPSLongitudeDenominator);
}

double TExifFile::grad2dezimalgrad(double degrees, double minutes, double seconds)
{
    return degrees + (seconds / 60.0 + minutes) / 60.0;
}

// Hundredths, truncated toward zero rather than rounded.
double TExifFile::fahrenheit2Celsius(int fahrenheit)
{
    const double celsius = (fahrenheit - 32.0) * 5.0 / 9.0;
    return std::trunc(celsius * 100.0) / 100.0;
}

// Focal length over its 35 mm equivalent: the reverse of the usual crop factor, and the circle
// of confusion below is built on exactly this quotient.
double TExifFile::composite_ScaleFactor35() const
{
    return exif_0x920A_FocalLengthAsReal() / FocalLengthIn35mmFormat;
}

namespace {

// Millimetres per FocalPlaneResolutionUnit; 1 (no unit) counts as inches, as ExifTool counts it.
// 0 (the tag is absent) and unknown codes give 0: no unit is assumed.
double millimetresPerUnit(quint16 unit)
{
    switch (unit) {
    case 1:
    case 2:
        return 25.4;
    case 3:
        return 10.0;
    case 4:
        return 1.0;
    case 5:
        return 0.001;
    default:
        return 0.0;
    }
}

// One side of the sensor in mm: pixels over pixels per unit. In doubles, so that no denominator
// can overflow the product; 0 when a part is missing.
double sensorSide(quint32 pixels, quint32 numerator, quint32 denominator, double unit)
{
    if (pixels == 0 || numerator == 0 || denominator == 0)
        return 0.0;
    return double(pixels) * double(denominator) / double(numerator) * unit;
}

// The crop factor if it is one a camera can have, else 0; NaN and infinity fail the comparison.
double believable(double crop)
{
    return crop >= exiflimits::minCropFactor && crop <= exiflimits::maxCropFactor ? crop : 0.0;
}

} // namespace

// How much smaller the sensor is than the 36 x 24 mm frame, by diagonal:
//
//   FocalLengthIn35mmFormat / FocalLength        when the file states both, else
//   hypot(36, 24) / hypot(w, h)                   w = ExifImageWidth  / FocalPlaneXResolution
//                                                 h = ExifImageHeight / FocalPlaneYResolution
//                                                 in the resolution's unit, as mm.
//
// The focal plane resolution counts the sensor's pixels: a camera that scales the image down
// and keeps the full sensor's resolution makes the sensor look that much smaller.
double TExifFile::composite_CropFactor35() const
{
    const double focalLength = exif_0x920A_FocalLengthAsReal();
    if (FocalLengthIn35mmFormat != 0 && focalLength > 0)
        return believable(FocalLengthIn35mmFormat / focalLength);
    const double unit = millimetresPerUnit(FocalPlaneResolutionUnit);
    const double width = sensorSide(ExifImageWidth, FocalPlaneXResolutionNumerator,
                                    FocalPlaneXResolutionDenominator, unit);
    const double height = sensorSide(ExifImageHeight, FocalPlaneYResolutionNumerator,
                                     FocalPlaneYResolutionDenominator, unit);
    if (width <= 0 || height <= 0)
        return 0.0;
    return believable(std::hypot(36.0, 24.0) / std::hypot(width, height));
}

// The file's own 35 mm focal length wins; else the focal length scaled by the crop factor, or 0
// when either is unknown.
double TExifFile::composite_FocalLength35efl() const
{
    if (FocalLengthIn35mmFormat != 0)
        return FocalLengthIn35mmFormat;
    return exif_0x920A_FocalLengthAsReal() * composite_CropFactor35();
}

// 43.267 mm is the diagonal of the 35 mm frame, 1440 the divisor of the diagonal.
double TExifFile::composite_CircleOfConfusion() const
{
    return 43.267 / (composite_ScaleFactor35() * 1440.0);
}

QString TExifFile::composite_CircleOfConfusionAsString() const
{
    return QStringLiteral("%1 mm").arg(composite_CircleOfConfusion(), 0, 'f', 4);
}

double TExifFile::composite_HyperfocalDistance() const
{
    const double f = exif_0x920A_FocalLengthAsReal();
    const double n = double(FNumberNumerator) / FNumberDenominator;
    return f * f / (composite_CircleOfConfusion() * n * 1000.0);
}

QString TExifFile::composite_HyperfocalDistanceAsString() const
{
    return QStringLiteral("%1 m").arg(composite_HyperfocalDistance(), 0, 'f', 2);
}

double TExifFile::composite_FocusDistance() const
{
    const double f = exif_0x920A_FocalLengthAsReal();
    if (f >= 255.0)
        return 9999.99;
    return (std::pow(2.0, f * 0.0625 - 5.0) + 1.0) * FocalLengthIn35mmFormat / 1000.0;
}

QString TExifFile::composite_FocusDistanceAsString() const
{
    const double distance = composite_FocusDistance();
    if (exif_0x920A_FocalLengthAsReal() >= 255.0 || distance == 9999.99)
        return QStringLiteral("inf");
    return QStringLiteral("%1 m").arg(distance, 0, 'f', 2);
}

// ISO / 100 is an integer division: ISO 250 counts as 2, and an ISO below 100 gives log2(0),
// an infinite light value.
double TExifFile::composite_LightValue() const
{
    if (FNumberNumerator == 0 || FNumberDenominator == 0 || ExposureTimeNumerator == 0
        || ExposureTimeDenominator == 0)
        return 0.0;
    const double n = double(FNumberNumerator) / FNumberDenominator;
    const double t = double(ExposureTimeNumerator) / ExposureTimeDenominator;
    return 2.0 * std::log2(n) - std::log2(t) - std::log2(double(ISO / 100));
}
