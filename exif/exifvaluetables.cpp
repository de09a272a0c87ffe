#include "exifvaluetables.h"

#include <iterator>

namespace {

struct CodeText
{
    quint32 code;
    const char *text;
};

template<std::size_t N>
QString lookUp(const CodeText (&table)[N], quint32 code, const QString &fallback)
{
    for (const CodeText &row : table) {
        if (row.code == code)
            return QString::fromLatin1(row.text);
    }
    return fallback;
}

// The misspellings ("mase", "imagee") and the trailing blank are the texts as they are shown.
const CodeText subfileTypes[] = {
    { 0, "Full-resolution Image " },
    { 1, "Reduced-resolution image" },
    { 2, "Single page of multi-page image" },
    { 3, "Single page of multi-page reduced-resolution image" },
    { 4, "Transparency mase" },
    { 5, "Transparency mask of reduced-resolution imagee" },
    { 6, "Transparency mask of multi-page image" },
    { 7, "Transparency mask of reduced-resolution multi-page image" },
};

const CodeText compressions[] = {
    { 1, "Uncompressed" },
    { 2, "CCITT 1D" },
    { 3, "T4/Group 3 Fax" },
    { 4, "T6/Group 4 Fax" },
    { 5, "LZW" },
    { 6, "JPEG (old-style)" },
    { 7, "JPEG" },
    { 8, "Adobe Deflate" },
    { 9, "JBIG B&W" },
    { 10, "JBIG Color" },
    { 262, "Kodak 262" },
    { 32766, "Next" },
    { 32767, "Sony ARW Compressed" },
    { 32773, "PackBits" },
    { 32809, "Thunderscan" },
    { 32895, "IT8CTPAD" },
    { 32896, "IT8LW" },
    { 32897, "IT8MP" },
    { 32898, "IT8BL" },
    { 32908, "PixarFilm" },
    { 32909, "PixarLog" },
    { 32946, "Deflate" },
    { 32947, "DCS" },
    { 34661, "JBIG" },
    { 34676, "SGILog" },
    { 34677, "SGILog24" },
    { 34712, "JPEG 2000" },
    { 34713, "Nikon NEF Compressed" },
    { 34715, "JBIG2 TIFF FX" },
    { 34718, "Microsoft Document Imaging (MDI) Binary Level Codec" },
    { 34719, "Microsoft Document Imaging (MDI) Progressive Transform Codec" },
    { 34720, "Microsoft Document Imaging (MDI) Vector" },
    { 32769, "Packed RAW" },
    { 32770, "Samsung SRW Compressed" },
    { 32771, "CCIRLEW" },
    { 32772, "Samsung SRW Compressed 2" },
    { 65535, "Pentax PEF Compressed" },
    { 34892, "Lossy JPEG" },
    { 65000, "Kodak DCR Compressed" },
    { 32867, "Kodak KDC Compressed" },
};

const CodeText photometrics[] = {
    { 0, "WhiteIsZero" },
    { 1, "BlackIsZero" },
    { 2, "RGB" },
    { 3, "RGB Palette" },
    { 4, "Transparency Mask" },
    { 5, "CMYK" },
    { 6, "YCbCr" },
    { 8, "CIELab" },
    { 9, "ICCLab" },
    { 10, "ITULab" },
    { 32803, "Color Filter Array " },
    { 32844, "Pixar LogL" },
    { 32845, "Pixar LogLuv" },
    { 34892, "Linear Raw" },
};

const CodeText orientations[] = {
    { 1, "Horizontal (normal)" },
    { 2, "Mirror horizontal" },
    { 3, "Rotate 180" },
    { 4, "Mirror vertical" },
    { 5, "Mirror horizontal and rotate 270 CW" },
    { 6, "Rotate 90 CW" },
    { 7, "Mirror horizontal and rotate 90 CW" },
    { 8, "Rotate 270 CW" },
};

const CodeText sensitivityTypes[] = {
    { 0, "Unknown" },
    { 1, "Standard Output Sensitivity" },
    { 2, "Recommended Exposure Index" },
    { 3, "ISO Speed" },
    { 4, "Standard Output Sensitivity and Recommended Exposure Index" },
    { 5, "Standard Output Sensitivity and ISO Speed" },
    { 6, "Recommended Exposure Index and ISO Speed" },
    { 7, "Standard Output Sensitivity, Recommended Exposure Index and ISO Speed" },
};

const CodeText lightSources[] = {
    { 0, "Unknown" },
    { 1, "Daylight" },
    { 2, "Fluorescent" },
    { 3, "Tungsten (Incandescent)" },
    { 4, "Flash" },
    { 9, "Fine Weather" },
    { 10, "Cloudy" },
    { 11, "Shade" },
    { 12, "Daylight Fluorescent" },
    { 13, "Day White Fluorescent" },
    { 14, "Cool White Fluorescent" },
    { 15, "White Fluorescent" },
    { 16, "Warm White Fluorescent" },
    { 17, "Standard Light A" },
    { 18, "Standard Light B" },
    { 19, "Standard Light C" },
    { 20, "D55" },
    { 21, "D65" },
    { 22, "D75" },
    { 23, "D50" },
    { 24, "ISO Studio Tungsten" },
    { 255, "Other" },
};

const CodeText flashes[] = {
    { 0, "No Flash" },
    { 1, "Fired" },
    { 5, "Fired, Return not detected" },
    { 7, "Fired, Return detected" },
    { 8, "On, Did not fire" },
    { 9, "On, Fired" },
    { 13, "On, Return not detected" },
    { 15, "On, Return detected" },
    { 16, "Off, Did not fire" },
    { 20, "Off, Did not fire, Return not detected" },
    { 24, "Auto, Did not fire" },
    { 25, "Auto, Fired" },
    { 29, "Auto, Fired, Return not detected" },
    { 31, "Auto, Fired, Return detected" },
    { 32, "No flash function" },
    { 48, "Off, No flash function" },
    { 65, "Fired, Red-eye reduction" },
    { 69, "Fired, Red-eye reduction, Return not detected" },
    { 71, "Fired, Red-eye reduction, Return detected" },
    { 73, "On, Red-eye reduction" },
    { 77, "On, Red-eye reduction, Return not detected" },
    { 79, "On, Red-eye reduction, Return detected" },
    { 80, "Off, Red-eye reduction" },
    { 88, "Auto, Did not fire, Red-eye reduction" },
    { 89, "Auto, Fired, Red-eye reduction" },
    { 93, "Auto, Fired, Red-eye reduction, Return not detected" },
    { 95, "Auto, Fired, Red-eye reduction, Return detected" },
};

const CodeText exposurePrograms[] = {
    { 0, "not defined" },
    { 1, "Manual" },
    { 2, "Program AE" },
    { 3, "Av [Aperture-priority]" },
    { 4, "Tv [Shutter speed priority]" },
    { 5, "Creative (Slow Speed)" },
    { 6, "Action (High Speed)" },
    { 7, "Portrait" },
    { 8, "Landscape" },
    { 9, "Bulb" },
};

// "Partiell" is German among English texts; the statistic groups by these texts as they stand.
const CodeText meteringModes[] = {
    { 1, "Average" }, { 2, "Center-weighted average" },
    { 3, "Spot" },    { 4, "Multi-Spot" },
    { 5, "Matrix" },  { 6, "Partiell" },
    { 255, "Other" },
};

const CodeText planarConfigurations[] = { { 1, "Chunky" }, { 2, "Planar" } };

const CodeText resolutionUnits[] = { { 1, "None" }, { 2, "inches" }, { 3, "cm" } };

const CodeText sonyRawFileTypes[] = {
    { 0, "Sony Uncompressed RAW" },
    { 1, "Sony RAW 1" },
    { 2, "Sony Compressed RAW" },
    { 3, "Sony RAW 3" },
};

const CodeText chromaticAberrationCorrections[] = {
    { 0, "Off" },
    { 1, "Auto" },
    { 255, "No correction params available" },
};

const CodeText distortionCorrections[] = {
    { 0, "Off" },
    { 1, "Auto" },
    { 17, "Auto fixed by lens" },
    { 255, "No correction params available" },
};

const CodeText colorSpaces[] = {
    { 1, "sRGB" },
    { 2, "Adobe RGB" },
    { 0xFFFD, "Wide Gamut RGB" },
    { 0xFFFE, "ICC Profile" },
    { 0xFFFF, "Uncalibrated" },
};

const CodeText fileSources[] = {
    { 1, "Film Scanner" },
    { 2, "Reflection Print Scanner" },
    { 3, "Digital Camera" },
};

const CodeText sceneTypes[] = { { 1, "Directly photographed" } };

const CodeText customRendereds[] = { { 0, "Normal" }, { 1, "Custom" } };

const CodeText exposureModes[] = { { 0, "Auto" }, { 1, "Manual" }, { 2, "Auto bracket" } };

const CodeText whiteBalances[] = { { 0, "Auto" }, { 1, "Manual" } };

const CodeText sceneCaptureTypes[] = {
    { 0, "Standard" },
    { 1, "Landscape" },
    { 2, "Portrait" },
    { 3, "Night" },
};

const CodeText normalLowHighs[] = { { 0, "Normal" }, { 1, "Low" }, { 2, "High" } };

const CodeText sharpnesses[] = { { 0, "Normal" }, { 1, "Soft" }, { 2, "Hard" } };

// Exposure times are compared for exact equality with 1.0 / N and with the decimal literals;
// the first match wins, so 0.5 s gives "1/2" in form A.
const int fractionDenominators[] = { 16000, 12800, 12000, 10000, 8000, 6400, 6000, 5000, 4000, 3200,
                                     3000,  2500,  2000,  1600,  1500, 1250, 1000, 800,  750,  640,
                                     500,   400,   350,   320,   250,  200,  180,  160,  125,  100,
                                     90,    80,    60,    50,    45,   40,   30,   25,   20,   10,
                                     8,     6,     5,     4,     3,    2 };
const char *const fractionTextsA[] = {
    "1/16000", "1/12800", "1/12000", "1/10000", "1/8000", "1/6400", "1/6000", "1/5000",
    "1/4000",  "1/3200",  "1/3000",  "1/2500",  "1/2000", "1/1600", "1/1500", "1/1250",
    "1/1000",  "1/800",   "1/750",   "1/640",   "1/500",  "1/400",  "1/350",  "1/320",
    "1/250",   "1/200",   "1/180",   "1/160",   "1/125",  "1/100",  "1/90",   "1/80",
    "1/60",    "1/50",    "1/45",    "1/40",    "1/30",   "1/25",   "1/20",   "1/10",
    "1/8",     "1/6",     "1/5",     "1/4",     "1/3",    "1/2"
};
// Form B lists the fractions down to 1/6 only.
constexpr int fractionCountB = 42;

struct DecimalText
{
    double seconds;
    const char *text;
};

const DecimalText decimalsA[] = {
    { 0.3, "0,3" },   { 0.4, "0,4" },   { 0.6, "0,6" },   { 0.7, "0,7" },   { 0.8, "0,8" },
    { 1.0, "1,0" },   { 1.3, "1,3" },   { 1.6, "1,6" },   { 2.0, "2,0" },   { 2.5, "2,5" },
    { 3.2, "3,2" },   { 4.0, "4,0" },   { 5.0, "5,0" },   { 6.0, "6,0" },   { 8.0, "8,0" },
    { 10.0, "10,0" }, { 13.0, "13,0" }, { 15.0, "15,0" }, { 20.0, "20,0" }, { 25.0, "25,0" },
    { 30.0, "30,0" },
};

const DecimalText decimalsB[] = {
    { 0.3, "0,3" },   { 0.4, "0,4" },   { 0.5, "0,5" },   { 0.6, "0,6" },   { 0.7, "0,7" },
    { 0.8, "0,8" },   { 1.0, "1,0" },   { 1.3, "1,3" },   { 1.6, "1,6" },   { 2.0, "2,0" },
    { 2.5, "2,5" },   { 3.2, "3,2" },   { 4.0, "4,0" },   { 5.0, "5,0" },   { 6.0, "6,0" },
    { 8.0, "8,0" },   { 10.0, "10,0" }, { 13.0, "13,0" }, { 15.0, "15,0" }, { 20.0, "20,0" },
    { 25.0, "25,0" }, { 30.0, "30,0" },
};

template<std::size_t N> const char *decimalText(const DecimalText (&table)[N], double seconds)
{
    for (const DecimalText &row : table) {
        if (row.seconds == seconds)
            return row.text;
    }
    return nullptr;
}

} // namespace

namespace exifvalues {

QString valueText(ValueTable table, quint32 code, const QString &fallback)
{
    switch (table) {
    case ValueTable::SubfileType:
        return lookUp(subfileTypes, code, fallback);
    case ValueTable::Compression:
        return lookUp(compressions, code, fallback);
    case ValueTable::Photometric:
        return lookUp(photometrics, code, fallback);
    case ValueTable::Orientation:
        return lookUp(orientations, code, fallback);
    case ValueTable::SensitivityType:
        return lookUp(sensitivityTypes, code, fallback);
    case ValueTable::LightSource:
        return lookUp(lightSources, code, fallback);
    case ValueTable::Flash:
        return lookUp(flashes, code, fallback);
    case ValueTable::ExposureProgram:
        return lookUp(exposurePrograms, code, fallback);
    case ValueTable::MeteringMode:
        return lookUp(meteringModes, code, fallback);
    case ValueTable::PlanarConfiguration:
        return lookUp(planarConfigurations, code, fallback);
    case ValueTable::ResolutionUnit:
        return lookUp(resolutionUnits, code, fallback);
    case ValueTable::SonyRawFileType:
        return lookUp(sonyRawFileTypes, code, fallback);
    case ValueTable::ChromaticAberrationCorrection:
        return lookUp(chromaticAberrationCorrections, code, fallback);
    case ValueTable::DistortionCorrection:
        return lookUp(distortionCorrections, code, fallback);
    case ValueTable::ColorSpace:
        return lookUp(colorSpaces, code, fallback);
    case ValueTable::FileSource:
        return lookUp(fileSources, code, fallback);
    case ValueTable::SceneType:
        return lookUp(sceneTypes, code, fallback);
    case ValueTable::CustomRendered:
        return lookUp(customRendereds, code, fallback);
    case ValueTable::ExposureMode:
        return lookUp(exposureModes, code, fallback);
    case ValueTable::WhiteBalance:
        return lookUp(whiteBalances, code, fallback);
    case ValueTable::SceneCaptureType:
        return lookUp(sceneCaptureTypes, code, fallback);
    case ValueTable::NormalLowHigh:
        return lookUp(normalLowHighs, code, fallback);
    case ValueTable::Sharpness:
        return lookUp(sharpnesses, code, fallback);
    }
    return fallback;
}

const char *exposureTimeFormA(double seconds)
{
    for (std::size_t i = 0; i < std::size(fractionDenominators); ++i) {
        if (seconds == 1.0 / fractionDenominators[i])
            return fractionTextsA[i];
    }
    return decimalText(decimalsA, seconds);
}

const char *exposureTimeFormB(double seconds)
{
    for (int i = 0; i < fractionCountB; ++i) {
        if (seconds == 1.0 / fractionDenominators[i])
            return fractionTextsA[i] + 2; // the denominator only, behind "1/"
    }
    return decimalText(decimalsB, seconds);
}

} // namespace exifvalues
