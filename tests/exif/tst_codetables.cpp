#include "tst_codetables.h"

#include "texiffile.h"

#include <QTest>

#include <functional>

using TextOf = std::function<QString(TExifFile &, int)>;
Q_DECLARE_METATYPE(TextOf)

// Each row sets one member to a code and names the operation that shows it.
void tst_CodeTables::codeTables_data()
{
    QTest::addColumn<TextOf>("textOf");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("text");

    const auto rows = [](const char *name, const TextOf &textOf,
                         const QList<std::pair<int, const char *>> &table) {
        for (const auto &[code, text] : table)
            QTest::addRow("%s %d", name, code) << textOf << code << QString::fromLatin1(text);
    };
    rows("MeteringMode",
         [](TExifFile &f, int v) {
             f.MeteringMode = quint16(v);
             return f.exif_0x9207_MeteringModeAsString();
         },
         { { 1, "Average" },
           { 2, "Center-weighted average" },
           { 3, "Spot" },
           { 4, "Multi-Spot" },
           { 5, "Matrix" },
           { 6, "Partiell" },
           { 255, "Other" },
           { 0, "n.a" },
           { 7, "n.a" } });
    rows("ExposureProgram",
         [](TExifFile &f, int v) {
             f.ExposureProgram = quint16(v);
             return f.exif_0x8822_ExpProgAsString();
         },
         { { 0, "not defined" },
           { 1, "Manual" },
           { 2, "Program AE" },
           { 3, "Av [Aperture-priority]" },
           { 4, "Tv [Shutter speed priority]" },
           { 5, "Creative (Slow Speed)" },
           { 6, "Action (High Speed)" },
           { 7, "Portrait" },
           { 8, "Landscape" },
           { 9, "Bulb" },
           { 10, "n.a." } });
    rows("Flash",
         [](TExifFile &f, int v) {
             f.Flash = quint16(v);
             return f.exif_0x9209_FlashAsString();
         },
         { { 0, "No Flash" },
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
           { 2, "unknown" } });
    rows("LightSource",
         [](TExifFile &f, int v) {
             f.LightSource = quint16(v);
             return f.exif_0x9208_LightSourceAsString();
         },
         { { 0, "Unknown" },
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
           { 5, "unknown" } });
    rows("Compression",
         [](TExifFile &f, int v) {
             f.Compression = quint16(v);
             return f.exif_0x103_CompressionAsString();
         },
         { { 1, "Uncompressed" },
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
           { 32769, "Packed RAW" },
           { 32770, "Samsung SRW Compressed" },
           { 32771, "CCIRLEW" },
           { 32772, "Samsung SRW Compressed 2" },
           { 32773, "PackBits" },
           { 32809, "Thunderscan" },
           { 32867, "Kodak KDC Compressed" },
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
           { 34892, "Lossy JPEG" },
           { 65000, "Kodak DCR Compressed" },
           { 65535, "Pentax PEF Compressed" },
           { 0, "unknown" },
           { 99, "unknown" } });
    rows("SubfileType",
         [](TExifFile &f, int v) {
             f.SubfileType = quint32(v);
             return f.exif_0xFE_SubfileTypeAsString();
         },
         { { 0, "Full-resolution Image " },
           { 1, "Reduced-resolution image" },
           { 2, "Single page of multi-page image" },
           { 3, "Single page of multi-page reduced-resolution image" },
           { 4, "Transparency mase" },
           { 5, "Transparency mask of reduced-resolution imagee" },
           { 6, "Transparency mask of multi-page image" },
           { 7, "Transparency mask of reduced-resolution multi-page image" },
           { 8, "n.a" } });
    rows("Orientation",
         [](TExifFile &f, int v) {
             f.Orientation = quint16(v);
             return f.exif_0x112_OrientationAsString();
         },
         { { 1, "Horizontal (normal)" },
           { 2, "Mirror horizontal" },
           { 3, "Rotate 180" },
           { 4, "Mirror vertical" },
           { 5, "Mirror horizontal and rotate 270 CW" },
           { 6, "Rotate 90 CW" },
           { 7, "Mirror horizontal and rotate 90 CW" },
           { 8, "Rotate 270 CW" },
           { 0, "unknown" } });
    rows("Photometric",
         [](TExifFile &f, int v) {
             f.PhotometricInterpretation = quint16(v);
             return f.exif_0x106_PhotometricInterpretationAsString();
         },
         { { 0, "WhiteIsZero" },
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
           { 7, "unknown" } });
    rows("SensitivityType",
         [](TExifFile &f, int v) {
             f.SensitivityType = quint16(v);
             return f.exif_0x8830_SensitivityTypeAsString();
         },
         { { 0, "Unknown" },
           { 1, "Standard Output Sensitivity" },
           { 2, "Recommended Exposure Index" },
           { 3, "ISO Speed" },
           { 4, "Standard Output Sensitivity and Recommended Exposure Index" },
           { 5, "Standard Output Sensitivity and ISO Speed" },
           { 6, "Recommended Exposure Index and ISO Speed" },
           { 7, "Standard Output Sensitivity, Recommended Exposure Index and ISO Speed" },
           { 8, "unknown" } });
    rows("PlanarConfiguration",
         [](TExifFile &f, int v) {
             f.PlanarConfiguration = quint16(v);
             return f.exif_0x11C_PlanarConfigurationAsString();
         },
         { { 1, "Chunky" }, { 2, "Planar" }, { 0, "unknown" } });
    rows("ResolutionUnit",
         [](TExifFile &f, int v) {
             f.ResolutionUnit = quint16(v);
             return f.exif_0x128_ResolutionUnitAsString();
         },
         { { 1, "None" }, { 2, "inches" }, { 3, "cm" }, { 4, "unknown" } });
    rows("SonyRawFileType",
         [](TExifFile &f, int v) {
             f.SonyRawFileType = quint16(v);
             return f.exif_0x7000_SonyRawFileTypeAsString();
         },
         { { 0, "Sony Uncompressed RAW" },
           { 1, "Sony RAW 1" },
           { 2, "Sony Compressed RAW" },
           { 3, "Sony RAW 3" },
           { 4, "unknown" } });
    rows("ChromaticAberrationCorrection",
         [](TExifFile &f, int v) {
             f.ChromaticAberrationCorrection = quint16(v);
             return f.exif_0x7034_ChromaticAberrationCorrectionAsString();
         },
         { { 0, "Off" },
           { 1, "Auto" },
           { 255, "No correction params available" },
           { 2, "unknown" } });
    rows("DistortionCorrection",
         [](TExifFile &f, int v) {
             f.DistortionCorrection = quint16(v);
             return f.exif_0x7036_DistortionCorrectionAsString();
         },
         { { 0, "Off" },
           { 1, "Auto" },
           { 17, "Auto fixed by lens" },
           { 255, "No correction params available" },
           { 2, "unknown" } });
    rows("ColorSpace",
         [](TExifFile &f, int v) {
             f.ColorSpace = quint16(v);
             return f.exif_0xA001_ColorSpaceAsString();
         },
         { { 1, "sRGB" },
           { 2, "Adobe RGB" },
           { 0xFFFD, "Wide Gamut RGB" },
           { 0xFFFE, "ICC Profile" },
           { 0xFFFF, "Uncalibrated" },
           { 0, "unknown" } });
    rows("FileSource",
         [](TExifFile &f, int v) {
             f.FileSource = quint32(v);
             return f.exif_0xA300_FileSourceAsString();
         },
         { { 1, "Film Scanner" },
           { 2, "Reflection Print Scanner" },
           { 3, "Digital Camera" },
           { 0, "unknown" } });
    rows("SceneType",
         [](TExifFile &f, int v) {
             f.SceneType = quint32(v);
             return f.exif_0xA301_SceneTypeAsString();
         },
         { { 1, "Directly photographed" }, { 0, "unknown" } });
    rows("CustomRendered",
         [](TExifFile &f, int v) {
             f.CustomRendered = quint16(v);
             return f.exif_0xA401_CustomRenderedAsString();
         },
         { { 0, "Normal" }, { 1, "Custom" }, { 2, "unknown" } });
    rows("ExposureMode",
         [](TExifFile &f, int v) {
             f.ExposureMode = quint16(v);
             return f.exif_0xA402_ExposureModeAsString();
         },
         { { 0, "Auto" }, { 1, "Manual" }, { 2, "Auto bracket" }, { 3, "unknown" } });
    rows("WhiteBalance",
         [](TExifFile &f, int v) {
             f.WhiteBalance = quint16(v);
             return f.exif_0xA403_WhiteBalanceAsString();
         },
         { { 0, "Auto" }, { 1, "Manual" }, { 2, "unknown" } });
    rows("SceneCaptureType",
         [](TExifFile &f, int v) {
             f.SceneCaptureType = quint16(v);
             return f.exif_0xA406_SceneCaptureTypeAsString();
         },
         { { 0, "Standard" },
           { 1, "Landscape" },
           { 2, "Portrait" },
           { 3, "Night" },
           { 4, "unknown" } });
    const QList<std::pair<int, const char *>> normalLowHigh = {
        { 0, "Normal" }, { 1, "Low" }, { 2, "High" }, { 3, "unknown" }
    };
    rows(
        "Contrast",
        [](TExifFile &f, int v) {
            f.Contrast = quint16(v);
            return f.exif_0xA408_ContrastAsString();
        },
        normalLowHigh);
    rows(
        "Saturation",
        [](TExifFile &f, int v) {
            f.Saturation = quint16(v);
            return f.exif_0xA409_SaturationAsString();
        },
        normalLowHigh);
    rows("Sharpness",
         [](TExifFile &f, int v) {
             f.Sharpness = quint16(v);
             return f.exif_0xA40A_SharpnessAsString();
         },
         { { 0, "Normal" }, { 1, "Soft" }, { 2, "Hard" }, { 3, "unknown" } });
}

void tst_CodeTables::codeTables()
{
    QFETCH(TextOf, textOf);
    QFETCH(int, code);
    QFETCH(QString, text);
    TExifFile file;
    QCOMPARE(textOf(file, code), text);
}
