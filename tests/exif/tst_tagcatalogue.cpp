#include "tst_tagcatalogue.h"

#include "exiftagcatalogue.h"

#include <QSet>
#include <QStringList>
#include <QTest>

#include <iterator>

namespace {

// Every name the catalogue answers with, in the order the catalogue has always been listed.
// Several tag numbers may share one of them.
const char *const knownNames[] = {
    "[Exif] RelatedImageHeight",
    "[Exif] IPTC-NAA",
    "[Exif] Gamma",
    "[Exif] SonyRawFileType",
    "[Exif] SonyToneCurve",
    "[Exif] VignettingCorrection",
    "[Exif] VignettingCorrParams",
    "[Exif] ChromaticAberrationCorrection",
    "[Exif] ChromaticAberrationCorrParams",
    "[Exif] DistortionCorrection",
    "[Exif] DistortionCorrParams",
    "[Exif] Rating",
    "[Exif] XP_DIP_XML",
    "[Exif] StitchInfo",
    "[Exif] RatingPercent",
    "[Exif] InteropIndex",
    "[Exif] InteropVersion",
    "[Exif] ProcessingSoftware",
    "[Exif] SubfileType",
    "[Exif] OldSubfileType",
    "[Exif] ImageWidth",
    "[Exif] ImageHeight",
    "[Exif] BitsPerSample",
    "[Exif] Compression",
    "[Exif] PhotometricInterpretation",
    "[Exif] Thresholding",
    "[Exif] CellWidth",
    "[Exif] CellLength",
    "[Exif] FillOrder",
    "[Exif] DocumentName",
    "[Exif] ImageDescription",
    "[Exif] Make",
    "[Exif] Model",
    "[Exif] StripOffsets <=> RAWImageStart",
    "[Exif] Orientation",
    "[Exif] SamplesPerPixel",
    "[Exif] RowsPerStrip",
    "[Exif] StripByteCounts <=> RawImageSize",
    "[Exif] MinSampleValue",
    "[Exif] MaxSampleValue",
    "[Exif] XResolution",
    "[Exif] YResolution",
    "[Exif] PlanarConfiguration",
    "[Exif] PageName",
    "[Exif] XPosition",
    "[Exif] YPosition",
    "[Exif] FreeOffsets",
    "[Exif] FreeByteCounts",
    "[Exif] GrayResponseUnit",
    "[Exif] GrayResponseCurve",
    "[Exif] T4Options",
    "[Exif] T6Options",
    "[Exif] ResolutionUnit",
    "[Exif] PageNumber",
    "[Exif] ColorResponseUnit",
    "[Exif] TransferFunction",
    "[Exif] Software",
    "[Exif] ModifyDate",
    "[Exif] Artist",
    "[Exif] HostComputer",
    "[Exif] Predictor",
    "[Exif] WhitePoint",
    "[Exif] PrimaryChromaticities",
    "[Exif] ColorMap",
    "[Exif] HalftoneHints",
    "[Exif] TileWidth",
    "[Exif] TileLength",
    "[Exif] TileOffsets",
    "[Exif] TileByteCounts",
    "[Exif] BadFaxLines",
    "[Exif] CleanFaxData",
    "[Exif] ConsecutiveBadFaxLines",
    "[Exif] SubIFD A100DataOffset",
    "[Exif] InkSet",
    "[Exif] InkNames",
    "[Exif] NumberofInks",
    "[Exif] DotRange",
    "[Exif] TargetPrinter",
    "[Exif] ExtraSamples",
    "[Exif] SampleFormat",
    "[Exif] SMinSampleValue",
    "[Exif] SMaxSampleValue",
    "[Exif] TransferRange",
    "[Exif] ClipPath",
    "[Exif] XClipPathUnits",
    "[Exif] YClipPathUnits",
    "[Exif] Indexed",
    "[Exif] JPEGTables",
    "[Exif] OPIProxy",
    "[Exif] GlobalParametersIFD",
    "[Exif] ProfileType",
    "[Exif] FaxProfile",
    "[Exif] CodingMethods",
    "[Exif] VersionYear",
    "[Exif] ModeNumber",
    "[Exif] Decode",
    "[Exif] DefaultImageColor",
    "[Exif] T82Options",
    "[Exif] JPEGProc",
    "[Exif] ThumbnailOffset <=> PreviewImageOffset",
    "[Exif] ThumbnailLength <=> PreviewImageLength",
    "[Exif] JPEGRestartInterval",
    "[Exif] JPEGLosslessPredictors",
    "[Exif] JPEGPointTransforms",
    "[Exif] JPEGQTables",
    "[Exif] JPEGDCTables",
    "[Exif] JPEGACTables",
    "[Exif] YCbCrCoefficients",
    "[Exif] YCbCrSubSampling",
    "[Exif] YCbCrPositioning",
    "[Exif] ReferenceBlackWhite",
    "[Exif] StripRowCounts",
    "[Exif] ApplicationNotes",
    "[Exif] USPTOMiscellaneous",
    "[Exif] RelatedImageFileFormat",
    "[Exif] RelatedImageWidth",
    "[Exif] WangTag1",
    "[Exif] WangAnnotation",
    "[Exif] WangTag3",
    "[Exif] WangTag4",
    "[Exif] ImageReferencePoints",
    "[Exif] RegionXformTackPoint",
    "[Exif] WarpQuadrilateral",
    "[Exif] AffineTransformMat",
    "[Exif] Matteing",
    "[Exif] DataType",
    "[Exif] ImageDepth",
    "[Exif] TileDepth",
    "[Exif] SonyCropTopLeft",
    "[Exif] SonyCropSize",
    "[Exif] ImageID",
    "[Exif] Model2",
    "[Exif] CFARepeatPatternDim",
    "[Exif] CFAPattern2",
    "[Exif] BatteryLevel",
    "[Exif] KodakIFD",
    "[Exif] Copyright",
    "[Exif] ExposureTime",
    "[Exif] FNumber",
    "[Exif] MDFileTag",
    "[Exif] MDScalePixel",
    "[Exif] MDColorTable",
    "[Exif] MDLabName",
    "[Exif] MDSampleInfo",
    "[Exif] MDPrepDate",
    "[Exif] MDPrepTime",
    "[Exif] MDFileUnits",
    "[Exif] PixelScale",
    "[Exif] AdventScale",
    "[Exif] AdventRevision",
    "[Exif] UIC1Tag",
    "[Exif] UIC2Tag",
    "[Exif] UIC3Tag",
    "[Exif] UIC4Tag",
    "[Exif] ImageFullWidth",
    "[Exif] ImageFullHeight",
    "[Exif] TextureFormat",
    "[Exif] WrapModes",
    "[Exif] FovCot",
    "[Exif] MatrixWorldToScreen",
    "[Exif] MatrixWorldToCamera",
    "[Exif] IntergraphPacketData",
    "[Exif] IntergraphFlagRegisters",
    "[Exif] IntergraphMatrix",
    "[Exif] INGRReserved",
    "[Exif] ModelTiePoint",
    "[Exif] Site",
    "[Exif] ColorSequence",
    "[Exif] IT8Header",
    "[Exif] RasterPadding",
    "[Exif] BitsPerRunLength",
    "[Exif] BitsPerExtendedRunLength",
    "[Exif] ColorTable",
    "[Exif] ImageColorIndicator",
    "[Exif] BackgroundColorIndicator",
    "[Exif] ImageColorValue",
    "[Exif] BackgroundColorValue",
    "[Exif] PixelIntensityRange",
    "[Exif] TransparencyIndicator",
    "[Exif] ColorCharacterization",
    "[Exif] HCUsage",
    "[Exif] TrapIndicator",
    "[Exif] CMYKEquivalent",
    "[Exif] SEMInfo",
    "[Exif] AFCP_IPTC",
    "[Exif] WB_GRGBLevels",
    "[Exif] LeafData",
    "[Exif] PhotoshopSettings",
    "[Exif] PixelMagicJBIGOptions",
    "[Exif] JPLCartoIFD",
    "[Exif] ModelTransform",
    "[Exif] ExifOffset",
    "[Exif] ICC_Profile",
    "[Exif] TIFF_FXExtensions",
    "[Exif] MultiProfiles",
    "[Exif] SharedData",
    "[Exif] T88Options",
    "[Exif] ImageLayer",
    "[Exif] GeoTiffDirectory",
    "[Exif] GeoTiffDoubleParams",
    "[Exif] GeoTiffAsciiParams",
    "[Exif] JBIGOptions",
    "[Exif] ExposureProgram",
    "[Exif] SpectralSensitivity",
    "[Exif] GPSInfo",
    "[Exif] ISO",
    "[Exif] Opto-ElectricConvFactor",
    "[Exif] Interlace",
    "[Exif] TimeZoneOffset",
    "[Exif] SelfTimerMode",
    "[Exif] SensitivityType",
    "[Exif] StandardOutputSensitivity",
    "[Exif] RecommendedExposureIndex",
    "[Exif] ISOSpeed",
    "[Exif] ISOSpeedLatitudeyyy",
    "[Exif] ISOSpeedLatitudezzz",
    "[Exif] FaxRecvParams",
    "[Exif] FaxSubAddress",
    "[Exif] FaxRecvTime",
    "[Exif] FedexEDR",
    "[Exif] LeafSubIFD",
    "[Exif] ExifVersion",
    "[Exif] DateTimeOriginal",
    "[Exif] CreateDate",
    "[Exif] GooglePlusUploadCode",
    "[Exif] OffsetTime",
    "[Exif] OffsetTimeOriginal",
    "[Exif] OffsetTimeDigitized",
    "[Exif] ComponentsConfiguration",
    "[Exif] CompressedBitsPerPixel",
    "[Exif] OceScanjobDesc",
    "[Exif] OceApplicationSelector",
    "[Exif] OceIDNumber",
    "[Exif] OceImageLogic",
    "[Exif] Annotations",
    "[Exif] PrintIM",
    "[Exif] OriginalFileName",
    "[Exif] USPTOOriginalContentType",
    "[Exif] CR2CFAPattern",
    "[Exif] DNGVersion",
    "[Exif] DNGBackwardVersion",
    "[Exif] UniqueCameraModel",
    "[Exif] LocalizedCameraModel",
    "[Exif] CFAPlaneColor",
    "[Exif] CFALayout",
    "[Exif] LinearizationTable",
    "[Exif] BlackLevelRepeatDim",
    "[Exif] BlackLevel",
    "[Exif] BlackLevelDeltaH",
    "[Exif] BlackLevelDeltaV",
    "[Exif] WhiteLevel",
    "[Exif] DefaultScale",
    "[Exif] DefaultCropOrigin",
    "[Exif] DefaultCropSize",
    "[Exif] ColorMatrix1",
    "[Exif] ColorMatrix2",
    "[Exif] CameraCalibration1",
    "[Exif] CameraCalibration2",
    "[Exif] ReductionMatrix1",
    "[Exif] ReductionMatrix2",
    "[Exif] AnalogBalance",
    "[Exif] AsShotNeutral",
    "[Exif] AsShotWhiteXY",
    "[Exif] BaselineExposure",
    "[Exif] BaselineNoise",
    "[Exif] BaselineSharpness",
    "[Exif] BayerGreenSplit",
    "[Exif] LinearResponseLimit",
    "[Exif] CameraSerialNumber",
    "[Exif] DNGLensInfo",
    "[Exif] ChromaBlurRadius",
    "[Exif] AntiAliasStrength",
    "[Exif] ShadowScale",
    "[Exif] PrivateTags (-> Sony SR2)",
    "[Exif] MakerNoteSafety",
    "[Exif] RawImageSegmentation",
    "[Exif] CalibrationIlluminant1",
    "[Exif] CalibrationIlluminant2",
    "[Exif] BestQualityScale",
    "[Exif] RawDataUniqueID",
    "[Exif] AliasLayerMetadata",
    "[Exif] OriginalRawFileName",
    "[Exif] OriginalRawFileData",
    "[Exif] ActiveArea",
    "[Exif] MaskedAreas",
    "[Exif] AsShotICCProfile",
    "[Exif] AsShotPreProfileMatrix",
    "[Exif] CurrentICCProfile",
    "[Exif] CurrentPreProfileMatrix",
    "[Exif] ColorimetricReference",
    "[Exif] SRawType",
    "[Exif] PanasonicTitle",
    "[Exif] PanasonicTitle2",
    "[Exif] CameraCalibrationSig",
    "[Exif] ProfileCalibrationSig",
    "[Exif] ProfileIFD",
    "[Exif] AsShotProfileName",
    "[Exif] NoiseReductionApplied",
    "[Exif] ProfileName",
    "[Exif] ProfileHueSatMapDims",
    "[Exif] ProfileHueSatMapData1",
    "[Exif] ProfileHueSatMapData2",
    "[Exif] ProfileToneCurve",
    "[Exif] ProfileEmbedPolicy",
    "[Exif] ProfileCopyright",
    "[Exif] ForwardMatrix1",
    "[Exif] ForwardMatrix2",
    "[Exif] PreviewApplicationName",
    "[Exif] PreviewApplicationVersion",
    "[Exif] PreviewSettingsName",
    "[Exif] PreviewSettingsDigest",
    "[Exif] PreviewColorSpace",
    "[Exif] PreviewDateTime",
    "[Exif] RawImageDigest",
    "[Exif] OriginalRawFileDigest",
    "[Exif] SubTileBlockSize",
    "[Exif] RowInterleaveFactor",
    "[Exif] ProfileLookTableDims",
    "[Exif] ProfileLookTableData",
    "[Exif] OpcodeList1",
    "[Exif] OpcodeList2",
    "[Exif] OpcodeList3",
    "[Exif] NoiseProfile",
    "[Exif] TimeCodes",
    "[Exif] FrameRate",
    "[Exif] TStop",
    "[Exif] ReelName",
    "[Exif] OriginalDefaultFinalSize",
    "[Exif] OriginalBestQualitySize",
    "[Exif] OriginalDefaultCropSize",
    "[Exif] CameraLabel",
    "[Exif] ProfileHueSatMapEncoding",
    "[Exif] ProfileLookTableEncoding",
    "[Exif] BaselineExposureOffset",
    "[Exif] DefaultBlackRender",
    "[Exif] NewRawImageDigest",
    "[Exif] RawToPreviewGain",
    "[Exif] CacheVersion",
    "[Exif] DefaultUserCrop",
    "[Exif] NikonNEFInfo",
    "[Exif] OwnerName",
    "[Exif] SerialNumber",
    "[Exif] Lens",
    "[Exif] KDC_IFD",
    "[Exif] RawFile",
    "[Exif] Converter",
    "[Exif] WhiteBalance",
    "[Exif] Exposure",
    "[Exif] Shadows",
    "[Exif] Brightness",
    "[Exif] Contrast",
    "[Exif] Saturation",
    "[Exif] Sharpness",
    "[Exif] Smoothness",
    "[Exif] MoireFilter",
    "[Exif] Padding",
    "[Exif] OffsetSchema",
    "[Exif] XPTitle",
    "[Exif] XPComment",
    "[Exif] XPAuthor",
    "[Exif] XPKeywords",
    "[Exif] XPSubject",
    "[Exif] FlashpixVersion",
    "[Exif] ColorSpace",
    "[Exif] ExifImageWidth",
    "[Exif] ExifImageHeight",
    "[Exif] RelatedSoundFile",
    "[Exif] InteropOffset",
    "[Exif] SamsungRawPointersOffset",
    "[Exif] SamsungRawPointersLength",
    "[Exif] SamsungRawByteOrder",
    "[Exif] SamsungRawUnknown?",
    "[Exif] ShutterSpeedValue",
    "[Exif] ApertureValue",
    "[Exif] BrightnessValue",
    "[Exif] ExposureCompensation",
    "[Exif] MaxApertureValue",
    "[Exif] SubjectDistance",
    "[Exif] MeteringMode",
    "[Exif] LightSource",
    "[Exif] Flash",
    "[Exif] FocalLength",
    "[Exif] FlashEnergy",
    "[Exif] SpatialFrequencyResponse",
    "[Exif] Noise",
    "[Exif] FocalPlaneXResolution",
    "[Exif] FocalPlaneYResolution",
    "[Exif] FocalPlaneResolutionUnit",
    "[Exif] ImageNumber",
    "[Exif] SecurityClassification",
    "[Exif] ImageHistory",
    "[Exif] SubjectArea",
    "[Exif] ExposureIndex",
    "[Exif] TIFF-EPStandardID",
    "[Exif] SensingMethod",
    "[Exif] CIP3DataFile",
    "[Exif] CIP3Sheet",
    "[Exif] CIP3Side",
    "[Exif] StoNits",
    "[Exif] MakerNotes -> jeweilige MakerNotes",
    "[Exif] UserComment",
    "[Exif] SubSecTime",
    "[Exif] SubSecTimeOriginal",
    "[Exif] SubSecTimeDigitized",
    "[Exif] MSDocumentText",
    "[Exif] MSPropertySetStorage",
    "[Exif] MSDocumentTextPosition",
    "[Exif] ImageSourceData",
    "[Exif] AmbientTemperature",
    "[Exif] Humidity",
    "[Exif] Pressure",
    "[Exif] WaterDepth",
    "[Exif] Acceleration",
    "[Exif] CameraElevationAngle",
    "[Exif] WidthResolution",
    "[Exif] HeightResolution",
    "[Exif] ImageOffset",
    "[Exif] ImageByteCount",
    "[Exif] AlphaOffset",
    "[Exif] AlphaByteCount",
    "[Exif] ImageDataDiscard",
    "[Exif] AlphaDataDiscard",
    "[Exif] ExpandSoftware",
    "[Exif] ExpandLens",
    "[Exif] ExpandFilm",
    "[Exif] ExpandFilterLens",
    "[Exif] ExpandScanner",
    "[Exif] ExpandFlashLamp",
    "[Exif] PixelFormat",
    "[Exif] Transformation",
    "[Exif] Uncompressed",
    "[Exif] ImageType",
    "[Exif] SubjectLocation",
    "[Exif] FileSource",
    "[Exif] SceneType",
    "[Exif] CustomRendered",
    "[Exif] ExposureMode",
    "[Exif] DigitalZoomRatio",
    "[Exif] FocalLengthIn35mmFormat",
    "[Exif] SceneCaptureType",
    "[Exif] GainControl",
    "[Exif] DeviceSettingDescription",
    "[Exif] SubjectDistanceRange",
    "[Exif] ImageUniqueID",
    "[Exif] LensInfo",
    "[Exif] LensMake",
    "[Exif] LensModel",
    "[Exif] LensSerialNumber",
    "[Exif] CompositeImage",
    "[Exif] CompositeImageCount",
    "[Exif] CompositeImageExposureTimes",
    "[Exif] GDALMetadata",
    "[Exif] GDALNoData",
    "[Exif] CFAPattern",
};

// Two blanks before "Länge", written with an escape so the check doesn't depend on how this
// file's encoding is read.
const QString laenge = QString::fromUtf16(u"  L\u00E4nge: ");

} // namespace

void tst_TagCatalogue::entryDescription_data()
{
    QTest::addColumn<quint16>("tag");
    QTest::addColumn<quint16>("type");
    QTest::addColumn<quint32>("count");
    QTest::addColumn<quint32>("length");
    QTest::addColumn<QString>("expected");

    QTest::newRow("DateTimeOriginal as ASCII of 20 bytes")
        << quint16(0x9003) << quint16(2) << quint32(20) << quint32(20)
        << QString("Tag: 0x9003 [Exif] DateTimeOriginal, Typ: ASCII, Count: 20," + laenge + "20");
    QTest::newRow("Make: three hex digits padded with one blank, not a zero")
        << quint16(0x10F) << quint16(2) << quint32(6) << quint32(6)
        << QString("Tag: 0x 10f [Exif] Make, Typ: ASCII, Count: 6," + laenge + "6");
    QTest::newRow("InteropIndex: one hex digit padded with three blanks")
        << quint16(0x0001) << quint16(2) << quint32(4) << quint32(4)
        << QString("Tag: 0x   1 [Exif] InteropIndex, Typ: ASCII, Count: 4," + laenge + "4");
    QTest::newRow("tag 0 is unknown")
        << quint16(0x0000) << quint16(4) << quint32(1) << quint32(4)
        << QString("Tag: 0x   0 [Exif] --- unknown ---, Typ: LONG (32-Bit uint), Count: 1," + laenge
                   + "4");
    QTest::newRow("tag 0xFFFF is unknown, hex in lower case")
        << quint16(0xFFFF) << quint16(3) << quint32(1) << quint32(2)
        << QString("Tag: 0xffff [Exif] --- unknown ---, Typ: SHORT (16-Bit uint), Count: 1,"
                   + laenge + "2");
    QTest::newRow("ExposureTime as one unsigned rational")
        << quint16(0x829A) << quint16(5) << quint32(1) << quint32(8)
        << QString("Tag: 0x829a [Exif] ExposureTime, Typ: RATIONAL unsigned (2 LONG, Num/Denum), "
                   "Count: 1,"
                   + laenge + "8");
    QTest::newRow("ShutterSpeedValue as one signed rational")
        << quint16(0x9201) << quint16(10) << quint32(1) << quint32(8)
        << QString("Tag: 0x9201 [Exif] ShutterSpeedValue, Typ: Rational signed (2 SLONG, "
                   "Num/Denum), Count: 1,"
                   + laenge + "8");
    QTest::newRow("type 8 is unknown and the given length is shown as it is")
        << quint16(0x8827) << quint16(8) << quint32(1) << quint32(20)
        << QString("Tag: 0x8827 [Exif] ISO, Typ: unknown, Count: 1," + laenge + "20");
    QTest::newRow("MakerNotes with its special name")
        << quint16(0x927C) << quint16(7) << quint32(1234) << quint32(1234)
        << QString("Tag: 0x927c [Exif] MakerNotes -> jeweilige MakerNotes, Typ: Undefined (8Bit), "
                   "Count: 1234,"
                   + laenge + "1234");
    QTest::newRow("largest count and length are written unsigned")
        << quint16(0xA434) << quint16(2) << quint32(0xFFFFFFFF) << quint32(0xFFFFFFFF)
        << QString("Tag: 0xa434 [Exif] LensModel, Typ: ASCII, Count: 4294967295," + laenge
                   + "4294967295");
}

void tst_TagCatalogue::entryDescription()
{
    QFETCH(quint16, tag);
    QFETCH(quint16, type);
    QFETCH(quint32, count);
    QFETCH(quint32, length);
    QFETCH(QString, expected);

    QCOMPARE(::entryDescription(tag, type, count, length), expected);
}

void tst_TagCatalogue::entryDescriptionSpellsLaengeWithUmlaut()
{
    const QString line = ::entryDescription(0x9003, 2, 20, 20);
    const QString before = QStringLiteral("Count: 20,  L");
    const int at = line.indexOf(before);
    QVERIFY2(at >= 0, qPrintable("no \"" + before + "\" in: " + line));
    QCOMPARE(line.at(at + before.size()).unicode(), ushort(0x00E4));
    QVERIFY2(line.endsWith(QString::fromUtf16(u"L\u00E4nge: 20")), qPrintable(line));
    // 70 characters: a mis-decoded umlaut would count twice.
    QCOMPARE(line.size(), 70);
}

void tst_TagCatalogue::gpsEntryDescription_data()
{
    QTest::addColumn<quint16>("tag");
    QTest::addColumn<quint16>("type");
    QTest::addColumn<quint32>("count");
    QTest::addColumn<QString>("expected");

    // The GPS directory's entries are named from the Exif catalogue.
    QTest::newRow("GPS tag 1 (LatitudeRef) is named InteropIndex")
        << quint16(1) << quint16(2) << quint32(2)
        << QStringLiteral("Tag: 0x   1 [Exif] InteropIndex, Typ: ASCII, Count: 2");
    QTest::newRow("GPS tag 2 (Latitude) is named InteropVersion")
        << quint16(2) << quint16(5) << quint32(3)
        << QStringLiteral("Tag: 0x   2 [Exif] InteropVersion, Typ: RATIONAL unsigned (2 LONG, "
                          "Num/Denum), Count: 3");
    QTest::newRow("GPS tag 0 (VersionID) is unknown")
        << quint16(0) << quint16(1) << quint32(4)
        << QStringLiteral("Tag: 0x   0 [Exif] --- unknown ---, Typ: BYTE (8-Bit sint), Count: 4");
    QTest::newRow("GPS tag 0x1D (DateStamp) is unknown")
        << quint16(0x1D) << quint16(2) << quint32(11)
        << QStringLiteral("Tag: 0x  1d [Exif] --- unknown ---, Typ: ASCII, Count: 11");
    QTest::newRow("GPS tag 11 (DOP) is named ProcessingSoftware")
        << quint16(11) << quint16(5) << quint32(1)
        << QStringLiteral("Tag: 0x   b [Exif] ProcessingSoftware, Typ: RATIONAL unsigned (2 "
                          "LONG, Num/Denum), Count: 1");
    QTest::newRow("type 12 is unknown")
        << quint16(6) << quint16(12) << quint32(1)
        << QStringLiteral("Tag: 0x   6 [Exif] --- unknown ---, Typ: unknown, Count: 1");
}

void tst_TagCatalogue::gpsEntryDescription()
{
    QFETCH(quint16, tag);
    QFETCH(quint16, type);
    QFETCH(quint32, count);
    QFETCH(QString, expected);

    const QString line = ::gpsEntryDescription(tag, type, count);
    QCOMPARE(line, expected);
    QVERIFY2(!line.contains(QStringLiteral("nge:")), "a GPS entry's line carries no length");
}

void tst_TagCatalogue::exifTagName_data()
{
    QTest::addColumn<int>("tag");
    QTest::addColumn<QString>("expected");

    // Rows whose names say more than the plain tag name.
    QTest::newRow("0x0111 StripOffsets also names the raw image start")
        << 0x0111 << QStringLiteral("[Exif] StripOffsets <=> RAWImageStart");
    QTest::newRow("0x0117 StripByteCounts also names the raw image size")
        << 0x0117 << QStringLiteral("[Exif] StripByteCounts <=> RawImageSize");
    QTest::newRow("0x014A SubIFD with the A100 data offset")
        << 0x014A << QStringLiteral("[Exif] SubIFD A100DataOffset");
    QTest::newRow("0x0201 thumbnail offset is the preview offset")
        << 0x0201 << QStringLiteral("[Exif] ThumbnailOffset <=> PreviewImageOffset");
    QTest::newRow("0x0202 thumbnail length is the preview length")
        << 0x0202 << QStringLiteral("[Exif] ThumbnailLength <=> PreviewImageLength");
    QTest::newRow("0x8769 Exif directory pointer") << 0x8769 << QStringLiteral("[Exif] ExifOffset");
    QTest::newRow("0x8825 GPS directory pointer") << 0x8825 << QStringLiteral("[Exif] GPSInfo");
    QTest::newRow("0x927C maker notes, named in German")
        << 0x927C << QStringLiteral("[Exif] MakerNotes -> jeweilige MakerNotes");
    QTest::newRow("0xC634 DNG private data points to Sony SR2")
        << 0xC634 << QStringLiteral("[Exif] PrivateTags (-> Sony SR2)");

    // Well-known numbers of TIFF, EXIF and DNG.
    QTest::newRow("0x00FE SubfileType") << 0x00FE << QStringLiteral("[Exif] SubfileType");
    QTest::newRow("0x010E ImageDescription") << 0x010E << QStringLiteral("[Exif] ImageDescription");
    QTest::newRow("0x010F Make") << 0x010F << QStringLiteral("[Exif] Make");
    QTest::newRow("0x0110 Model") << 0x0110 << QStringLiteral("[Exif] Model");
    QTest::newRow("0x0112 Orientation") << 0x0112 << QStringLiteral("[Exif] Orientation");
    QTest::newRow("0x0131 Software") << 0x0131 << QStringLiteral("[Exif] Software");
    QTest::newRow("0x0132 ModifyDate") << 0x0132 << QStringLiteral("[Exif] ModifyDate");
    QTest::newRow("0x7000 SonyRawFileType") << 0x7000 << QStringLiteral("[Exif] SonyRawFileType");
    QTest::newRow("0x74C7 SonyCropTopLeft") << 0x74C7 << QStringLiteral("[Exif] SonyCropTopLeft");
    QTest::newRow("0x828E CFAPattern2") << 0x828E << QStringLiteral("[Exif] CFAPattern2");
    QTest::newRow("0x829A ExposureTime") << 0x829A << QStringLiteral("[Exif] ExposureTime");
    QTest::newRow("0x829D FNumber") << 0x829D << QStringLiteral("[Exif] FNumber");
    QTest::newRow("0x83BB IPTC-NAA") << 0x83BB << QStringLiteral("[Exif] IPTC-NAA");
    QTest::newRow("0x8822 ExposureProgram") << 0x8822 << QStringLiteral("[Exif] ExposureProgram");
    QTest::newRow("0x8827 ISO") << 0x8827 << QStringLiteral("[Exif] ISO");
    QTest::newRow("0x8830 SensitivityType") << 0x8830 << QStringLiteral("[Exif] SensitivityType");
    QTest::newRow("0x9000 ExifVersion") << 0x9000 << QStringLiteral("[Exif] ExifVersion");
    QTest::newRow("0x9003 DateTimeOriginal") << 0x9003 << QStringLiteral("[Exif] DateTimeOriginal");
    QTest::newRow("0x9004 CreateDate") << 0x9004 << QStringLiteral("[Exif] CreateDate");
    QTest::newRow("0x9010 OffsetTime") << 0x9010 << QStringLiteral("[Exif] OffsetTime");
    QTest::newRow("0x9201 ShutterSpeedValue")
        << 0x9201 << QStringLiteral("[Exif] ShutterSpeedValue");
    QTest::newRow("0x9204 ExposureCompensation")
        << 0x9204 << QStringLiteral("[Exif] ExposureCompensation");
    QTest::newRow("0x9207 MeteringMode") << 0x9207 << QStringLiteral("[Exif] MeteringMode");
    QTest::newRow("0x920A FocalLength") << 0x920A << QStringLiteral("[Exif] FocalLength");
    QTest::newRow("0x9286 UserComment") << 0x9286 << QStringLiteral("[Exif] UserComment");
    QTest::newRow("0xA000 FlashpixVersion") << 0xA000 << QStringLiteral("[Exif] FlashpixVersion");
    QTest::newRow("0xA005 InteropOffset") << 0xA005 << QStringLiteral("[Exif] InteropOffset");
    QTest::newRow("0xA102 SamsungRawUnknown with its question mark")
        << 0xA102 << QStringLiteral("[Exif] SamsungRawUnknown?");
    QTest::newRow("0xA402 ExposureMode") << 0xA402 << QStringLiteral("[Exif] ExposureMode");
    QTest::newRow("0xA405 FocalLengthIn35mmFormat")
        << 0xA405 << QStringLiteral("[Exif] FocalLengthIn35mmFormat");
    QTest::newRow("0xA432 LensInfo") << 0xA432 << QStringLiteral("[Exif] LensInfo");
    QTest::newRow("0xA433 LensMake") << 0xA433 << QStringLiteral("[Exif] LensMake");
    QTest::newRow("0xA434 LensModel") << 0xA434 << QStringLiteral("[Exif] LensModel");
    QTest::newRow("0xA500 Gamma") << 0xA500 << QStringLiteral("[Exif] Gamma");
    QTest::newRow("0xC612 DNGVersion") << 0xC612 << QStringLiteral("[Exif] DNGVersion");
    QTest::newRow("0xC613 DNGBackwardVersion")
        << 0xC613 << QStringLiteral("[Exif] DNGBackwardVersion");
    QTest::newRow("0xC614 UniqueCameraModel")
        << 0xC614 << QStringLiteral("[Exif] UniqueCameraModel");
    QTest::newRow("0xC61D WhiteLevel") << 0xC61D << QStringLiteral("[Exif] WhiteLevel");
    QTest::newRow("0xC632 AntiAliasStrength")
        << 0xC632 << QStringLiteral("[Exif] AntiAliasStrength");
    QTest::newRow("0xC68B OriginalRawFileName")
        << 0xC68B << QStringLiteral("[Exif] OriginalRawFileName");
    QTest::newRow("0xC7A7 NewRawImageDigest")
        << 0xC7A7 << QStringLiteral("[Exif] NewRawImageDigest");
    QTest::newRow("0xEA1C Padding") << 0xEA1C << QStringLiteral("[Exif] Padding");

    // One name, several numbers.
    QTest::newRow("0xA403 EXIF WhiteBalance") << 0xA403 << QStringLiteral("[Exif] WhiteBalance");
    QTest::newRow("0xFE4E Camera Raw WhiteBalance")
        << 0xFE4E << QStringLiteral("[Exif] WhiteBalance");
    QTest::newRow("0xA40A EXIF Sharpness") << 0xA40A << QStringLiteral("[Exif] Sharpness");
    QTest::newRow("0xFE56 Camera Raw Sharpness") << 0xFE56 << QStringLiteral("[Exif] Sharpness");
    QTest::newRow("0x920E TIFF/EP FocalPlaneXResolution")
        << 0x920E << QStringLiteral("[Exif] FocalPlaneXResolution");
    QTest::newRow("0xA20E EXIF FocalPlaneXResolution")
        << 0xA20E << QStringLiteral("[Exif] FocalPlaneXResolution");
    QTest::newRow("0xA431 EXIF camera SerialNumber")
        << 0xA431 << QStringLiteral("[Exif] SerialNumber");
    QTest::newRow("0xFDE9 Camera Raw SerialNumber")
        << 0xFDE9 << QStringLiteral("[Exif] SerialNumber");

    // Numbers outside the catalogue.
    QTest::newRow("0xFFFF is unknown") << 0xFFFF << QStringLiteral("[Exif] --- unknown ---");
    QTest::newRow("0 is unknown") << 0 << QStringLiteral("[Exif] --- unknown ---");
    QTest::newRow("0x0003 between two entries is unknown")
        << 0x0003 << QStringLiteral("[Exif] --- unknown ---");
    QTest::newRow("negative number is unknown") << -1 << QStringLiteral("[Exif] --- unknown ---");
    QTest::newRow("0x1010F beyond 16 bits is not Make")
        << 0x1010F << QStringLiteral("[Exif] --- unknown ---");
}

void tst_TagCatalogue::exifTagName()
{
    QFETCH(int, tag);
    QFETCH(QString, expected);

    QCOMPARE(::exifTagName(tag), expected);
}

void tst_TagCatalogue::gpsTagName_data()
{
    QTest::addColumn<int>("tag");
    QTest::addColumn<QString>("expected");

    const char *const names[] = {
        "GPSVersionID",       "GPSLatitudeRef",
        "GPSLatitude",        "GPSLongitudeRef",
        "GPSLongitude",       "GPSAltitudeRef",
        "GPSAltitude",        "GPSTimeStamp",
        "GPSSatellites",      "GPSStatus",
        "GPSMeasureMode",     "GPSDOP",
        "GPSSpeedRef",        "GPSSpeed",
        "GPSTrackRef",        "GPSTrack",
        "GPSImgDirectionRef", "GPSImgDirection",
        "GPSMapDatum",        "GPSDestLatitudeRef",
        "GPSDestLatitude",    "GPSDestLongitudeRef",
        "GPSDestLongitude",   "GPSDestBearingRef",
        "GPSDestBearing",     "GPSDestDistanceRef",
        "GPSDestDistance",    "GPSProcessingMethod",
        "GPSAreaInformation", "GPSDateStamp",
        "GPSDifferential",    "GPSHPositioningError",
    };
    static_assert(std::size(names) == 32);
    for (int tag = 0; tag < 32; ++tag) {
        QTest::addRow("GPS tag %d is %s", tag, names[tag])
            << tag << QStringLiteral("[GPS] ") + QLatin1String(names[tag]);
    }

    // The unknown row carries the prefix "[Sony]", not "[GPS]".
    QTest::newRow("32, one past the last GPS tag, is unknown")
        << 32 << QStringLiteral("[Sony] --- unknown ---");
    QTest::newRow("negative number is unknown") << -1 << QStringLiteral("[Sony] --- unknown ---");
    QTest::newRow("0xFFFF is unknown") << 0xFFFF << QStringLiteral("[Sony] --- unknown ---");
}

void tst_TagCatalogue::gpsTagName()
{
    QFETCH(int, tag);
    QFETCH(QString, expected);

    QCOMPARE(::gpsTagName(tag), expected);
}

void tst_TagCatalogue::tiffTypeName_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("expected");

    QTest::newRow("1 BYTE") << 1 << QStringLiteral("BYTE (8-Bit sint)");
    QTest::newRow("2 ASCII") << 2 << QStringLiteral("ASCII");
    QTest::newRow("3 SHORT") << 3 << QStringLiteral("SHORT (16-Bit uint)");
    QTest::newRow("4 LONG") << 4 << QStringLiteral("LONG (32-Bit uint)");
    QTest::newRow("5 RATIONAL") << 5 << QStringLiteral("RATIONAL unsigned (2 LONG, Num/Denum)");
    QTest::newRow("6 SBYTE is unknown") << 6 << QStringLiteral("unknown");
    QTest::newRow("7 UNDEFINED") << 7 << QStringLiteral("Undefined (8Bit)");
    QTest::newRow("8 SSHORT is unknown") << 8 << QStringLiteral("unknown");
    QTest::newRow("9 SLONG") << 9 << QStringLiteral("SLONG (32Bit Signed Int)");
    QTest::newRow("10 SRATIONAL") << 10 << QStringLiteral("Rational signed (2 SLONG, Num/Denum)");
    QTest::newRow("11 FLOAT is unknown") << 11 << QStringLiteral("unknown");
    QTest::newRow("12 DOUBLE is unknown") << 12 << QStringLiteral("unknown");
    QTest::newRow("0 is unknown") << 0 << QStringLiteral("unknown");
    QTest::newRow("13 IFD is unknown") << 13 << QStringLiteral("unknown");
    QTest::newRow("negative type is unknown") << -1 << QStringLiteral("unknown");
    QTest::newRow("0xFFFF is unknown") << 0xFFFF << QStringLiteral("unknown");
}

void tst_TagCatalogue::tiffTypeName()
{
    QFETCH(int, type);
    QFETCH(QString, expected);

    QCOMPARE(::tiffTypeName(type), expected);
}

void tst_TagCatalogue::catalogueHoldsExactlyTheKnownNames()
{
    QSet<QString> expected;
    for (const char *name : knownNames)
        expected.insert(QLatin1String(name));
    QCOMPARE(expected.size(), 454); // the list above has no repeats

    QSet<QString> actual;
    for (const ExifTagCatalogueEntry &entry : exifTagCatalogue())
        actual.insert(QLatin1String(entry.name));

    QStringList missing = (expected - actual).values();
    QStringList extra = (actual - expected).values();
    missing.sort();
    extra.sort();
    QVERIFY2(missing.isEmpty(), qPrintable("missing: " + missing.join(QStringLiteral(" | "))));
    QVERIFY2(extra.isEmpty(), qPrintable("not expected: " + extra.join(QStringLiteral(" | "))));
    QCOMPARE(actual.size(), 454);
    QVERIFY2(exifTagCatalogue().size() > 454,
             "some names serve several numbers, so there are more numbers than names");
}

void tst_TagCatalogue::catalogueNamesCarryTheExifPrefix()
{
    for (const ExifTagCatalogueEntry &entry : exifTagCatalogue()) {
        const QString name = QLatin1String(entry.name);
        QVERIFY2(name.startsWith(QStringLiteral("[Exif] ")),
                 qPrintable(QStringLiteral("0x%1: %2").arg(entry.tag, 4, 16).arg(name)));
        QVERIFY2(
            name.size() > 7 && name.at(7) != QLatin1Char(' '),
            qPrintable(QStringLiteral("0x%1: one blank after the prefix, then the name: \"%2\"")
                           .arg(entry.tag, 4, 16)
                           .arg(name)));
    }
}

void tst_TagCatalogue::catalogueTagNumbersAreAscendingWithoutRepeats()
{
    const ExifTagCatalogue catalogue = exifTagCatalogue();
    QVERIFY(catalogue.size() > 0);
    for (auto it = catalogue.begin() + 1; it != catalogue.end(); ++it) {
        QVERIFY2((it - 1)->tag < it->tag,
                 qPrintable(QStringLiteral("0x%1 follows 0x%2")
                                .arg(it->tag, 4, 16, QLatin1Char('0'))
                                .arg((it - 1)->tag, 4, 16, QLatin1Char('0'))));
    }
}

void tst_TagCatalogue::everyCatalogueEntryIsFoundByItsNumber()
{
    for (const ExifTagCatalogueEntry &entry : exifTagCatalogue())
        QCOMPARE(::exifTagName(entry.tag), QString(QLatin1String(entry.name)));
}

void tst_TagCatalogue::numbersBetweenCatalogueEntriesAreUnknown()
{
    const QString unknown = QStringLiteral("[Exif] --- unknown ---");
    QSet<int> listed;
    for (const ExifTagCatalogueEntry &entry : exifTagCatalogue())
        listed.insert(entry.tag);

    int unknownCount = 0;
    for (int tag = 0; tag <= 0xFFFF; ++tag) {
        if (listed.contains(tag))
            continue;
        QVERIFY2(
            ::exifTagName(tag) == unknown,
            qPrintable(QStringLiteral("0x%1 gives %2").arg(tag, 4, 16).arg(::exifTagName(tag))));
        ++unknownCount;
    }
    QCOMPARE(unknownCount, 0x10000 - int(exifTagCatalogue().size()));
}
