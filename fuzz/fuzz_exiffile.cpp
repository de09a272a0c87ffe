// libFuzzer target for the photo file reader: TExifFile reads every input as a photo file and
// every interpretation operation runs on the result. Nothing may crash, hang, read out of bounds
// or hit undefined behaviour, whatever the bytes.
//
// Input layout: see fuzzinput.h (byte 0 chooses the suffix, the rest is the file).
//
// The suffix matters to the reader: ".cr3" runs the box walk, ".raf" skips the 148-byte header,
// ".rw2" and ".orf" accept their own TIFF magics; HEIF is recognised by its contents. Suffixes
// are recognised in any case, so the upper-case variant must behave the same as the lower-case
// one.
//
// The reader is handed the bytes themselves, not a file: writing, opening and reading a file per
// input cost more than the reading. Both sources share the block reader; only its one positioned
// read differs, and the tests read every fixture both ways.

#include "fuzzinput.h"
#include "texiffile.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

// Keeps every result alive so nothing is optimised away.
struct Sink
{
    qsizetype characters = 0;
    double total = 0.0;

    void operator()(const QString &text) { characters += text.size(); }
    void operator()(double value) { total += value; }
    void operator()(bool value) { characters += value; }
    void operator()(int value) { characters += value; }
};

[[noreturn]] void fail(const char *what)
{
    std::fprintf(stderr, "fuzz_exiffile: %s\n", what);
    std::abort();
}

void interpret(const TExifFile &exif, Sink &sink)
{
    sink(exif.fileName());
    sink(exif.fileNameComplete());
    sink(exif.fileTyp());
    sink(exif.isValidFile());

    sink(exif.exif_0xFE_SubfileTypeAsString());
    sink(exif.exif_0x103_CompressionAsString());
    sink(exif.exif_0x106_PhotometricInterpretationAsString());
    sink(exif.exif_0x112_OrientationAsString());
    sink(exif.exif_0x11A_XResolutionAsString());
    sink(exif.exif_0x11B_YResolutionAsString());
    sink(exif.exif_0x11C_PlanarConfigurationAsString());
    sink(exif.exif_0x128_ResolutionUnitAsString());
    sink(exif.exif_0x7000_SonyRawFileTypeAsString());
    sink(exif.exif_0x7010_SonyToneCurveAsString());
    sink(exif.exif_0x7034_ChromaticAberrationCorrectionAsString());
    sink(exif.exif_0x7036_DistortionCorrectionAsString());
    sink(exif.exif_0x74c7_SonyCropTopLeftAsString());
    sink(exif.exif_0x74c8_SonyCropSizeAsString());
    sink(exif.exif_0x828D_CFARepeatPatternDimAsString());
    sink(exif.exif_0x828E_CFAPattern2AsString());
    sink(exif.exif_0x829A_ExposureTime());
    sink(exif.exif_0x829A_ExposureTimeAsString());
    sink(exif.exif_0x829A_ExposureTimeAsString2());
    sink(exif.exif_0x829D_FNumberAsString());
    sink(exif.exif_0x8822_ExpProgAsString());
    sink(exif.exif_0x8827_ISOAsString());
    sink(exif.exif_0x8830_SensitivityTypeAsString());
    sink(exif.exif_0x9102_CompressedBitsPerPixelAsString());
    sink(exif.exif_0x9201_ShutterSpeedValueAsString());
    sink(exif.exif_0x9203_BrightnessValueAsReal());
    sink(exif.exif_0x9203_BrightnessValueAsString());
    sink(exif.exif_0x9204_ExpCompensationAsReal());
    sink(exif.exif_0x9204_ExpCompensationAsString());
    sink(exif.exif_0x9205_MaxApertureValueAsReal());
    sink(exif.exif_0x9205_MaxApertureValueAsString());
    sink(exif.exif_0x9207_MeteringModeAsString());
    sink(exif.exif_0x9208_LightSourceAsString());
    sink(exif.exif_0x9209_FlashAsString());
    sink(exif.exif_0x920A_FocalLengthAsReal());
    sink(exif.exif_0x920A_FocalLengthAsString());
    sink(exif.exif_0xA001_ColorSpaceAsString());
    sink(exif.exif_0xA300_FileSourceAsString());
    sink(exif.exif_0xA301_SceneTypeAsString());
    sink(exif.exif_0xA401_CustomRenderedAsString());
    sink(exif.exif_0xA402_ExposureModeAsString());
    sink(exif.exif_0xA403_WhiteBalanceAsString());
    sink(exif.exif_0xA404_DigitalZoomRatioAsReal());
    sink(exif.exif_0xA404_DigitalZoomRatioAsString());
    sink(exif.exif_0xA406_SceneCaptureTypeAsString());
    sink(exif.exif_0xA408_ContrastAsString());
    sink(exif.exif_0xA409_SaturationAsString());
    sink(exif.exif_0xA40A_SharpnessAsString());
    sink(exif.exif_0xA432_LensInfoAsString());
    sink(exif.exif_0xA500_GammaAsReal());
    sink(exif.exif_0xA500_GammaAsString());
    sink(exif.exif_0xC619_BlackLevelRepeatDimAsString());
    sink(exif.exif_0XC61A_BlackLevelAsString());
    sink(exif.exif_0xC61D_WhiteLevelAsString());
    sink(exif.exif_0xC61F_DefaultCropOriginAsString());
    sink(exif.exif_0xC620_DefaultCropSizeAsString());
    sink(exif.exif_0xC632_AntiAliasStrengthAsReal());
    sink(exif.exif_0xC632_AntiAliasStrengthAsString());

    sink(exif.gps_0x0002_LatitudeAsString());
    sink(exif.gps_0x0004_LongitudeAsString());
    sink(exif.gps_0x0007_TimeStampAsString());
    sink(exif.gps_0x0002_LatitudeAsKML());
    sink(exif.gps_0x0004_LongitudeAsKML());

    sink(exif.composite_ScaleFactor35());
    sink(exif.composite_CircleOfConfusion());
    sink(exif.composite_CircleOfConfusionAsString());
    sink(exif.composite_HyperfocalDistance());
    sink(exif.composite_HyperfocalDistanceAsString());
    sink(exif.composite_FocusDistance());
    sink(exif.composite_FocusDistanceAsString());
    sink(exif.composite_LightValue());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 1)
        return 0;
    Sink sink;
    {
        // The bytes are only read, and libFuzzer keeps them alive for this call.
        TExifFile exif(
            fuzzinput::path(data[0]),
            QByteArray::fromRawData(reinterpret_cast<const char *>(data + 1), qsizetype(size - 1)));
        const bool valid = exif.processFile();

        // What the rest of the program relies on, whatever the file held.
        if (valid != exif.valid)
            fail("processFile() returned something other than valid");
        if (exif.fileTyp() < 0 || exif.fileTyp() > 2)
            fail("fileTyp() outside 0..2");
        if (valid != (exif.fileTyp() != 0))
            fail("a recognised file has file type 0, or an unrecognised one another type");

        // A file that isn't recognised keeps every default (no directory is walked before a
        // header is found), and the defaults' texts were made by the first such input.
        if (!valid
            && (exif.Make != QLatin1String("n.a.") || exif.DateTimeOriginal != QLatin1String("n.a.")
                || exif.ISO != 0 || exif.FNumberDenominator != 0 || exif.ifdCounter != 0))
            fail("a file that isn't recognised changed a member");
        static bool defaultsInterpreted = false;
        if (valid || !defaultsInterpreted)
            interpret(exif, sink);
        defaultsInterpreted = defaultsInterpreted || !valid;
    }

    static volatile double keep = 0.0;
    keep = keep + sink.total + double(sink.characters);
    return 0;
}
