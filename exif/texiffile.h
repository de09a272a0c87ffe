#pragma once

#include "cr3box.h"
#include "exifbytereader.h"

#include <QLoggingCategory>
#include <QString>
#include <QVarLengthArray>

// Entry description lines of every directory walked; off unless enabled with the rule
// "kelvaro.exif.entries.debug=true".
Q_DECLARE_LOGGING_CATEGORY(lcExifEntries)

// Reads the shooting metadata of one photo file: recognises the file type (TIFF-based raw,
// JPEG with an Exif APP1 segment, RAF, CR3, HEIF and AVIF with an Exif item), walks the TIFF image
// file directories and fills one public member per known tag. The interpretation operations turn
// those values into numbers and display texts. One object serves one file and one call of
// processFile(); the file is only ever opened for reading and is released when processFile()
// returns.
class TExifFile
{
public:
    TExifFile();
    explicit TExifFile(QString path);
    // Reads contents as the file at path would be read (its name still decides the suffix
    // tests); the file itself is never opened. For callers that hold the bytes already.
    TExifFile(QString path, QByteArray contents);
    ~TExifFile();
    TExifFile(const TExifFile &) = delete;
    TExifFile &operator=(const TExifFile &) = delete;

    bool processFile();
    QString fileName() const;
    QString fileNameComplete() const;
    int fileTyp() const;
    // True when Software names one of Sony's ILCE-7, -9, -1, -61 ... -66 series.
    bool isValidFile() const;

    void processIFD();
    void processGPSInfoIFD();
    QString readIFDStringEntry(qint64 position);
    void readIFDRationalEntry(qint64 position, quint32 &numerator, quint32 &denominator);
    void readIFDRationalSEntry(qint64 position, qint32 &numerator, qint32 &denominator);
    void readIFDRationalArrayEntry(qint64 position, quint32 *numerators, quint32 *denominators,
                                   int count);

    // CR3 box reader: records where the TIFF structures of the boxes "CMT1" and "CMT2" begin.
    void read_CR3Box(CR3Box &box);
    void read_CR3UuidBox(CR3UuidBox &box);
    void read_CR3CanonBox(CR3CanonBox &box);
    void read_CR3FileTypBox(CR3FileTypeBox &box);
    bool preProcessCR3();

    // Value interpretation; none of these reads the file or changes state.
    QString exif_0xFE_SubfileTypeAsString() const;
    QString exif_0x103_CompressionAsString() const;
    QString exif_0x106_PhotometricInterpretationAsString() const;
    QString exif_0x112_OrientationAsString() const;
    QString exif_0x11A_XResolutionAsString() const;
    QString exif_0x11B_YResolutionAsString() const;
    QString exif_0x11C_PlanarConfigurationAsString() const;
    QString exif_0x128_ResolutionUnitAsString() const;
    QString exif_0x7000_SonyRawFileTypeAsString() const;
    QString exif_0x7010_SonyToneCurveAsString() const;
    QString exif_0x7034_ChromaticAberrationCorrectionAsString() const;
    QString exif_0x7036_DistortionCorrectionAsString() const;
    QString exif_0x74c7_SonyCropTopLeftAsString() const;
    QString exif_0x74c8_SonyCropSizeAsString() const;
    QString exif_0x828D_CFARepeatPatternDimAsString() const;
    QString exif_0x828E_CFAPattern2AsString() const;
    double exif_0x829A_ExposureTime() const;
    QString exif_0x829A_ExposureTimeAsString() const;
    QString exif_0x829A_ExposureTimeAsString2() const;
    QString exif_0x829D_FNumberAsString() const;
    QString exif_0x8822_ExpProgAsString() const;
    QString exif_0x8827_ISOAsString() const;
    QString exif_0x8830_SensitivityTypeAsString() const;
    QString exif_0x9102_CompressedBitsPerPixelAsString() const;
    QString exif_0x9201_ShutterSpeedValueAsString() const;
    double exif_0x9203_BrightnessValueAsReal() const;
    QString exif_0x9203_BrightnessValueAsString() const;
    double exif_0x9204_ExpCompensationAsReal() const;
    QString exif_0x9204_ExpCompensationAsString() const;
    double exif_0x9205_MaxApertureValueAsReal() const;
    QString exif_0x9205_MaxApertureValueAsString() const;
    QString exif_0x9207_MeteringModeAsString() const;
    QString exif_0x9208_LightSourceAsString() const;
    QString exif_0x9209_FlashAsString() const;
    double exif_0x920A_FocalLengthAsReal() const;
    QString exif_0x920A_FocalLengthAsString() const;
    QString exif_0xA001_ColorSpaceAsString() const;
    QString exif_0xA300_FileSourceAsString() const;
    QString exif_0xA301_SceneTypeAsString() const;
    QString exif_0xA401_CustomRenderedAsString() const;
    QString exif_0xA402_ExposureModeAsString() const;
    QString exif_0xA403_WhiteBalanceAsString() const;
    double exif_0xA404_DigitalZoomRatioAsReal() const;
    QString exif_0xA404_DigitalZoomRatioAsString() const;
    QString exif_0xA406_SceneCaptureTypeAsString() const;
    QString exif_0xA408_ContrastAsString() const;
    QString exif_0xA409_SaturationAsString() const;
    QString exif_0xA40A_SharpnessAsString() const;
    QString exif_0xA432_LensInfoAsString() const;
    double exif_0xA500_GammaAsReal() const;
    QString exif_0xA500_GammaAsString() const;
    QString exif_0xC619_BlackLevelRepeatDimAsString() const;
    QString exif_0XC61A_BlackLevelAsString() const; // the capital X is the operation's name
    QString exif_0xC61D_WhiteLevelAsString() const;
    QString exif_0xC61F_DefaultCropOriginAsString() const;
    QString exif_0xC620_DefaultCropSizeAsString() const;
    double exif_0xC632_AntiAliasStrengthAsReal() const;
    QString exif_0xC632_AntiAliasStrengthAsString() const;

    // GPS values.
    QString gps_0x0002_LatitudeAsString() const;
    QString gps_0x0004_LongitudeAsString() const;
    QString gps_0x0007_TimeStampAsString() const;
    double gps_0x0002_LatitudeAsKML() const;
    double gps_0x0004_LongitudeAsKML() const;
    static double grad2dezimalgrad(double degrees, double minutes, double seconds);
    static double fahrenheit2Celsius(int fahrenheit);

    // Values that follow from several tags.
    double composite_ScaleFactor35() const;
    // 35 mm crop factor (1.5 for APS-C, 2.0 for Four Thirds) and the 35 mm-equivalent focal
    // length in mm; 0.0 when the file doesn't tell.
    double composite_CropFactor35() const;
    double composite_FocalLength35efl() const;
    double composite_CircleOfConfusion() const;
    QString composite_CircleOfConfusionAsString() const;
    double composite_HyperfocalDistance() const;
    QString composite_HyperfocalDistanceAsString() const;
    double composite_FocusDistance() const;
    QString composite_FocusDistanceAsString() const;
    double composite_LightValue() const;

    // File handling.
    QString filePath;
    ExifByteReader stream; // the file, read-only, loaded in blocks
    qint64 tiffBase = 0;
    qint32 firstIfdOffset = 0;
    quint32 nextIfdOffset = 0;
    qint32 ifdCounter = 0;
    quint32 cr3Ifd0Pos = 0;
    quint32 cr3ExifIfdPos = 0;
    quint32 cr3Ifd0Base = 0;
    quint32 cr3ExifIfdBase = 0;
    bool bigEndian = false;
    bool valid = false;
    // 0 not recognised, 1 TIFF-based raw (also CR3), 2 JPEG (also HEIF and AVIF, whose Exif item
    // holds what a JPEG's Exif segment holds)
    qint32 fileType = 0;

    // Texts.
    QString ImageDescription = QStringLiteral("n.a.");
    QString Make = QStringLiteral("n.a.");
    QString Model = QStringLiteral("n.a.");
    QString Software = QStringLiteral("n.a.");
    QString ModifyDate = QStringLiteral("n.a.");
    QString Artist = QStringLiteral("n.a.");
    QString ExifVersion = QStringLiteral("");
    QString DateTimeOriginal = QStringLiteral("n.a.");
    QString CreateDate = QStringLiteral("n.a.");
    QString OffsetTime = QStringLiteral("n.a.");
    QString OffsetTimeOriginal = QStringLiteral("n.a.");
    QString OffsetTimeDigitized = QStringLiteral("n.a.");
    QString UserComment = QStringLiteral("n.a.");
    QString FlashpixVersion = QStringLiteral("");
    QString LensModel = QStringLiteral("n.a.");
    QString DNGVersion = QStringLiteral("");
    QString DNGBackwardVersion = QStringLiteral("");
    QString UniqueCameraModel = QStringLiteral("");

    // Numbers. Rationals are kept as numerator and denominator.
    quint32 SubfileType = 0;
    quint32 ImageWidth = 0;
    quint32 ImageHeight = 0;
    quint16 BitsPerSample = 0;
    quint16 Compression = 0;
    quint16 PhotometricInterpretation = 0;
    quint32 StripOffsets = 0;
    quint16 Orientation = 0;
    quint16 SamplesPerPixel = 0;
    quint32 RowsPerStrip = 0;
    quint32 StripByteCounts = 0;
    quint32 XResolutionNumerator = 0;
    quint32 XResolutionDenominator = 0;
    quint32 YResolutionNumerator = 0;
    quint32 YResolutionDenominator = 0;
    quint16 PlanarConfiguration = 0;
    quint16 ResolutionUnit = 0;
    quint32 ThumbnailOffset[2] = {}; // [0] from IFD0, [1] from IFD1
    quint32 ThumbnailLength[2] = {};
    quint16 SonyRawFileType = 0;
    quint16 SonyToneCurve[4] = {};
    quint16 ChromaticAberrationCorrection = 0;
    quint16 DistortionCorrection = 0;
    quint32 SonyCropTopLeft[2] = {};
    quint32 SonyCropSize[2] = {};
    quint16 CFARepeatPatternDim[2] = {};
    static constexpr int CFAPattern2Capacity = 64;
    quint8 CFAPattern2[CFAPattern2Capacity] = {};
    quint32 CFAPattern2Count = 0; // as the file says; at most the capacity is stored
    quint32 ExposureTimeNumerator = 0;
    quint32 ExposureTimeDenominator = 0;
    quint32 FNumberNumerator = 0;
    quint32 FNumberDenominator = 0;
    quint16 ExposureProgram = 0;
    quint16 ISO = 0;
    quint16 SensitivityType = 0;
    quint32 RecommendedExposureIndex = 0;
    quint8 ComponentsConfiguration[4] = {};
    quint32 CompressedBitsPerPixelNumerator = 0;
    quint32 CompressedBitsPerPixelDenominator = 0;
    qint32 ShutterSpeedValueNumerator = 0;
    qint32 ShutterSpeedValueDenominator = 0;
    qint32 BrightnessValueNumerator = 0;
    qint32 BrightnessValueDenominator = 0;
    qint32 ExposureCompensationNumerator = 0;
    qint32 ExposureCompensationDenominator = 0;
    quint32 MaxApertureValueNumerator = 0;
    quint32 MaxApertureValueDenominator = 0;
    quint16 MeteringMode = 0;
    quint16 LightSource = 0;
    quint16 Flash = 0;
    quint32 FocalLengthNumerator = 0;
    quint32 FocalLengthDenominator = 0;
    quint16 ColorSpace = 0;
    quint32 ExifImageWidth = 0; // SHORT or LONG, as the entry's type says
    quint32 ExifImageHeight = 0;
    quint32 InteropOffset = 0;
    // Pixels of ExifImageWidth and -Height per FocalPlaneResolutionUnit on the sensor.
    quint32 FocalPlaneXResolutionNumerator = 0;
    quint32 FocalPlaneXResolutionDenominator = 0;
    quint32 FocalPlaneYResolutionNumerator = 0;
    quint32 FocalPlaneYResolutionDenominator = 0;
    quint16 FocalPlaneResolutionUnit = 0; // 1 none, 2 inch, 3 cm, 4 mm, 5 µm
    quint32 FileSource = 0;
    quint32 SceneType = 0;
    quint16 CustomRendered = 0;
    quint16 ExposureMode = 0;
    quint16 WhiteBalance = 0;
    quint32 DigitalZoomRatioNumerator = 0;
    quint32 DigitalZoomRatioDenominator = 0;
    quint16 FocalLengthIn35mmFormat = 0;
    quint16 SceneCaptureType = 0;
    quint16 Contrast = 0;
    quint16 Saturation = 0;
    quint16 Sharpness = 0;
    // Minimum and maximum focal length, aperture at minimum and at maximum focal length.
    quint32 LensInfoNumerator[4] = {};
    quint32 LensInfoDenominator[4] = {};
    quint32 GammaNumerator = 0;
    quint32 GammaDenominator = 0;
    quint16 BlackLevelRepeatDim[2] = {};
    quint32 BlackLevel = 0;
    quint32 BlackLevelCount = 0;
    static constexpr int WhiteLevelCapacity = 16;
    quint32 WhiteLevel[WhiteLevelCapacity] = {};
    quint32 WhiteLevelCount = 0; // as the file says; at most the capacity is stored
    quint32 DefaultCropOrigin[2] = {};
    quint32 DefaultCropSize[2] = {};
    quint32 BayerGreenSplit = 0;
    quint32 AntiAliasStrengthNumerator = 0;
    quint32 AntiAliasStrengthDenominator = 0;

    // GPS directory. Latitude and longitude: degrees, minutes, seconds; time: h, min, s.
    qint64 gpsIfdPos = 0; // file position of the GPS directory, 0 when there is none
    QString GPSVersionID = QStringLiteral("");
    QString GPSLatitudeRef = QStringLiteral("");
    quint32 GPSLatitudeNumerator[3] = {};
    quint32 GPSLatitudeDenominator[3] = {};
    QString GPSLongitudeRef = QStringLiteral("");
    quint32 GPSLongitudeNumerator[3] = {};
    quint32 GPSLongitudeDenominator[3] = {};
    quint32 GPSTimeStampNumerator[3] = {};
    quint32 GPSTimeStampDenominator[3] = {};
    QString GPSStatus = QStringLiteral("");
    QString GPSMeasureMode = QStringLiteral("");
    QString GPSMapDatum = QStringLiteral("");
    QString GPSDateStamp = QStringLiteral("");

private:
    bool hasSuffix(const char *upperSuffix) const;
    bool readTiffHeader(bool inJpeg);
    bool readHeif();
    void walkChain();
    void walkDirectory(int depth);
    void readEntry(quint16 tag, quint16 type, quint32 count, int depth);
    bool enterDirectory(qint64 position);
    int passEntriesPastEnd(int left);
    void readU32ArrayAt(qint64 position, quint32 *values, quint32 count, int capacity);

    // Walk state, reset by processFile.
    QVarLengthArray<qint64, 32> visitedDirectories; // file positions, no heap for real files
    int directoriesWalked = 0;
    int entriesRead = 0;
    quint32 lastEntryLength = 0; // kept across entries of unknown type
};
