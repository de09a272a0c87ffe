#pragma once

#include <QString>

// The display texts of coded EXIF values. Each function returns the text of a code, or the
// fallback when the code has none.
namespace exifvalues {

enum class ValueTable {
    SubfileType,
    Compression,
    Photometric,
    Orientation,
    SensitivityType,
    LightSource,
    Flash,
    ExposureProgram,
    MeteringMode,
    PlanarConfiguration,
    ResolutionUnit,
    SonyRawFileType,
    ChromaticAberrationCorrection,
    DistortionCorrection,
    ColorSpace,
    FileSource,
    SceneType,
    CustomRendered,
    ExposureMode,
    WhiteBalance,
    SceneCaptureType,
    NormalLowHigh, // Contrast and Saturation
    Sharpness,
};

QString valueText(ValueTable table, quint32 code, const QString &fallback);

// The exposure-time texts: an exact comparison of the quotient with the listed times; form A
// writes fractions as "1/N", form B only the denominator. nullptr when no time matches.
const char *exposureTimeFormA(double seconds);
const char *exposureTimeFormB(double seconds);

} // namespace exifvalues
