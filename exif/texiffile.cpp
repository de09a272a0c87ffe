#include "texiffile.h"

#include "exifreaderlimits.h"
#include "exiftagcatalogue.h"

#include <algorithm>
#include <iterator>
#include <variant>

Q_LOGGING_CATEGORY(lcExifEntries, "kelvaro.exif.entries", QtWarningMsg)

namespace {

// Byte length of an entry's value for its description; an unknown type keeps the previous one.
quint32 valueLength(quint16 type, quint32 count, quint32 previous)
{
    quint64 unit = 0;
    switch (type) {
    case 1: // BYTE
    case 2: // ASCII
    case 7: // UNDEFINED
        unit = 1;
        break;
    case 3: // SHORT
        unit = 2;
        break;
    case 4: // LONG
    case 9: // SLONG
        unit = 4;
        break;
    case 5: // RATIONAL
    case 10: // SRATIONAL
        unit = 8;
        break;
    default:
        return previous;
    }
    return quint32(qMin<quint64>(unit * count, 0xFFFFFFFFu)); // a hostile count saturates
}

} // namespace

TExifFile::TExifFile() = default;

TExifFile::TExifFile(QString path)
    : filePath(std::move(path))
{
    // A file that can't be opened reads as empty; processFile() then finds no header.
    stream.open(filePath);
}

TExifFile::TExifFile(QString path, QByteArray contents)
    : filePath(std::move(path))
{
    stream.openBytes(std::move(contents));
}

TExifFile::~TExifFile() = default;

// The part behind the last separator, as QFileInfo gives it, without building one per photo.
QString TExifFile::fileName() const
{
    qsizetype separator = filePath.lastIndexOf(QLatin1Char('/'));
#ifdef Q_OS_WIN
    separator = qMax(separator, filePath.lastIndexOf(QLatin1Char('\\')));
#endif
    return filePath.mid(separator + 1);
}

QString TExifFile::fileNameComplete() const
{
    return filePath;
}

// The file name's suffix, upper case given, compared without regard to case.
bool TExifFile::hasSuffix(const char *upperSuffix) const
{
    return filePath.endsWith(QLatin1String(upperSuffix), Qt::CaseInsensitive);
}

int TExifFile::fileTyp() const
{
    return fileType;
}

bool TExifFile::isValidFile() const
{
    static const char *const series[] = { "ILCE-7",  "ILCE-9",  "ILCE-1",  "ILCE-61",
                                          "ILCE-63", "ILCE-64", "ILCE-65", "ILCE-66" };
    for (const char *prefix : series) {
        if (Software.startsWith(QLatin1String(prefix)))
            return true;
    }
    return false;
}

bool TExifFile::processFile()
{
    fileType = 0;
    visitedDirectories.clear();
    directoriesWalked = 0;
    entriesRead = 0;
    lastEntryLength = 0;
    if (hasSuffix(".CR3")) {
        preProcessCR3();
        // Without "CMT1" or "CMT2" among the first boxes the file holds no metadata this reader
        // can find; walking from the start of the file would read box headers as entries.
        if (cr3Ifd0Pos != 0 || cr3ExifIfdPos != 0) {
            fileType = 1;
            bigEndian = false;
            valid = true;
            stream.setBigEndian(false);
            if (cr3Ifd0Pos != 0) {
                stream.seek(cr3Ifd0Pos);
                tiffBase = cr3Ifd0Base;
                processIFD();
            }
            if (cr3ExifIfdPos != 0) {
                stream.seek(cr3ExifIfdPos);
                tiffBase = cr3ExifIfdBase;
                processIFD();
            }
        }
    } else {
        if (hasSuffix(".RAF")) {
            // A RAF file carries a JPEG behind its 148-byte header.
            stream.setBigEndian(true);
            stream.skip(148);
        }
        if (readTiffHeader(false)) {
            firstIfdOffset = qint32(stream.readU32());
            stream.seek(tiffBase + quint32(firstIfdOffset));
            walkChain();
        } else {
            readHeif(); // only a file that no other layout took: those behave as before
        }
    }
    stream.close();
    return valid;
}

// Byte-order mark "MM" or "II", then the magic: 42 for TIFF; a little-endian 85 only in an
// .RW2 file and 0x4F52 ("RO") only in an .ORF file. A JPEG (SOI FFD8) is read when its Exif
// APP1 segment follows SOI directly or after exactly one APP0:
//   FFD8 [FFE0 len ...] FFE1 len(2) "Exif\0\0" | TIFF header ...
bool TExifFile::readTiffHeader(bool inJpeg)
{
    const quint16 mark = stream.readU16();
    if (mark == 0x4D4D || mark == 0x4949) {
        bigEndian = mark == 0x4D4D;
        stream.setBigEndian(bigEndian);
        tiffBase = stream.pos() - 2;
        const quint16 magic = stream.readU16();
        const bool rawMagic = !inJpeg && !bigEndian
            && ((magic == 0x0055 && hasSuffix(".RW2")) || (magic == 0x4F52 && hasSuffix(".ORF")));
        if (magic == 42 || rawMagic) {
            valid = true;
            fileType = inJpeg ? 2 : 1;
        }
        return valid;
    }
    if (mark != 0xFFD8 || inJpeg)
        return false;
    bigEndian = true;
    quint16 marker = stream.readU16();
    if (marker == 0xFFE0) {
        const quint16 length = stream.readU16();
        stream.skip(qint64(length) - 2);
        marker = stream.readU16();
    }
    if (marker != 0xFFE1)
        return false;
    stream.skip(8); // segment length and "Exif\0\0", not checked
    return readTiffHeader(true);
}

void TExifFile::walkChain()
{
    for (;;) {
        processIFD();
        ++ifdCounter;
        if (nextIfdOffset == 0)
            break;
        stream.seek(tiffBase + nextIfdOffset);
    }
}

// A directory already walked, or one beyond the directory budget, is refused: this ends chains
// and Exif pointers that loop.
bool TExifFile::enterDirectory(qint64 position)
{
    if (directoriesWalked >= exiflimits::maxDirectories || visitedDirectories.contains(position))
        return false;
    visitedDirectories.append(position);
    ++directoriesWalked;
    return true;
}

// Entries that start at or past the end of the file read as zeros: tag 0, type 0, count 0, which
// change nothing in a directory and set GPSVersionID to "0.0.0.0" in the GPS directory. A damaged
// count can claim 65535 of them; they are counted against the entry budget and passed over
// together, unless their description lines are wanted. Returns how many were passed over.
int TExifFile::passEntriesPastEnd(int left)
{
    if (stream.pos() < stream.size() || lcExifEntries().isDebugEnabled())
        return 0;
    const int passed = qMin(left, exiflimits::maxEntries - entriesRead);
    entriesRead += passed;
    stream.skip(12 * qint64(passed));
    return passed;
}

void TExifFile::processIFD()
{
    walkDirectory(0);
}

// One directory: a 16-bit entry count, 12-byte entries (tag, type, count, value or offset), then
// the 32-bit offset of the next directory.
void TExifFile::walkDirectory(int depth)
{
    nextIfdOffset = 0;
    if (!enterDirectory(stream.pos()))
        return;
    const quint16 count = stream.readU16();
    for (int i = 0; i < count; ++i) {
        if (entriesRead >= exiflimits::maxEntries) {
            nextIfdOffset = 0;
            return;
        }
        if (const int passed = passEntriesPastEnd(count - i)) {
            i += passed - 1;
            continue;
        }
        ++entriesRead;
        const qint64 entryPos = stream.pos();
        const quint16 tag = stream.readU16();
        const quint16 type = stream.readU16();
        const quint32 n = stream.readU32();
        lastEntryLength = valueLength(type, n, lastEntryLength);
        qCDebug(lcExifEntries).noquote() << entryDescription(tag, type, n, lastEntryLength);
        readEntry(tag, type, n, depth);
        // Every entry is 12 bytes, whatever its value read: an array longer than its value
        // field never shifts the entries that follow.
        stream.seek(entryPos + 12);
    }
    nextIfdOffset = stream.readU32();
}

namespace {

// The tags whose value field is read in one of six plain ways; the member's type says which:
// a 16-bit value inline, a 32-bit value inline, a text at the offset, a rational or a signed
// rational at the offset, or a size inline that the entry's type says is 16 or 32 bits wide.
// Sorted by tag.
using U16 = quint16 TExifFile::*;
using U32 = quint32 TExifFile::*;
using Text = QString TExifFile::*;
using Ratio = std::pair<U32, U32>;
using SRatio = std::pair<qint32 TExifFile::*, qint32 TExifFile::*>;
struct ShortOrLong
{
    U32 member;
};
struct TagField
{
    quint16 tag;
    std::variant<U16, U32, Text, Ratio, SRatio, ShortOrLong> field;
};

using T = TExifFile;
const TagField tagFields[] = {
    { 0x00FE, &T::SubfileType },
    { 0x0100, &T::ImageWidth },
    { 0x0101, &T::ImageHeight },
    { 0x0102, &T::BitsPerSample },
    { 0x0103, &T::Compression },
    { 0x0106, &T::PhotometricInterpretation },
    { 0x010E, &T::ImageDescription },
    { 0x010F, &T::Make },
    { 0x0110, &T::Model },
    { 0x0111, &T::StripOffsets },
    { 0x0112, &T::Orientation },
    { 0x0115, &T::SamplesPerPixel },
    { 0x0116, &T::RowsPerStrip },
    { 0x0117, &T::StripByteCounts },
    { 0x011A, Ratio { &T::XResolutionNumerator, &T::XResolutionDenominator } },
    { 0x011B, Ratio { &T::YResolutionNumerator, &T::YResolutionDenominator } },
    { 0x011C, &T::PlanarConfiguration },
    { 0x0128, &T::ResolutionUnit },
    { 0x0131, &T::Software },
    { 0x0132, &T::ModifyDate },
    { 0x013B, &T::Artist },
    { 0x7000, &T::SonyRawFileType },
    { 0x7034, &T::ChromaticAberrationCorrection },
    { 0x7036, &T::DistortionCorrection },
    { 0x829A, Ratio { &T::ExposureTimeNumerator, &T::ExposureTimeDenominator } },
    { 0x829D, Ratio { &T::FNumberNumerator, &T::FNumberDenominator } },
    { 0x8822, &T::ExposureProgram },
    { 0x8827, &T::ISO },
    { 0x8830, &T::SensitivityType },
    { 0x8832, &T::RecommendedExposureIndex },
    { 0x9003, &T::DateTimeOriginal },
    { 0x9004, &T::CreateDate },
    { 0x9010, &T::OffsetTime },
    { 0x9011, &T::OffsetTimeOriginal },
    { 0x9012, &T::OffsetTimeDigitized },
    { 0x9102,
      Ratio { &T::CompressedBitsPerPixelNumerator, &T::CompressedBitsPerPixelDenominator } },
    { 0x9201, SRatio { &T::ShutterSpeedValueNumerator, &T::ShutterSpeedValueDenominator } },
    { 0x9203, SRatio { &T::BrightnessValueNumerator, &T::BrightnessValueDenominator } },
    { 0x9204, SRatio { &T::ExposureCompensationNumerator, &T::ExposureCompensationDenominator } },
    { 0x9205, Ratio { &T::MaxApertureValueNumerator, &T::MaxApertureValueDenominator } },
    { 0x9207, &T::MeteringMode },
    { 0x9208, &T::LightSource },
    { 0x9209, &T::Flash },
    { 0x920A, Ratio { &T::FocalLengthNumerator, &T::FocalLengthDenominator } },
    { 0xA001, &T::ColorSpace },
    { 0xA002, ShortOrLong { &T::ExifImageWidth } },
    { 0xA003, ShortOrLong { &T::ExifImageHeight } },
    { 0xA005, &T::InteropOffset }, // the interoperability directory is not walked
    { 0xA20E, Ratio { &T::FocalPlaneXResolutionNumerator, &T::FocalPlaneXResolutionDenominator } },
    { 0xA20F, Ratio { &T::FocalPlaneYResolutionNumerator, &T::FocalPlaneYResolutionDenominator } },
    { 0xA210, &T::FocalPlaneResolutionUnit },
    { 0xA300, &T::FileSource },
    { 0xA301, &T::SceneType },
    { 0xA401, &T::CustomRendered },
    { 0xA402, &T::ExposureMode },
    { 0xA403, &T::WhiteBalance },
    { 0xA404, Ratio { &T::DigitalZoomRatioNumerator, &T::DigitalZoomRatioDenominator } },
    { 0xA405, &T::FocalLengthIn35mmFormat },
    { 0xA406, &T::SceneCaptureType },
    { 0xA408, &T::Contrast },
    { 0xA409, &T::Saturation },
    { 0xA40A, &T::Sharpness },
    { 0xA434, &T::LensModel },
    { 0xA500, Ratio { &T::GammaNumerator, &T::GammaDenominator } },
    { 0xC614, &T::UniqueCameraModel },
    { 0xC62D, &T::BayerGreenSplit },
    { 0xC632, Ratio { &T::AntiAliasStrengthNumerator, &T::AntiAliasStrengthDenominator } },
};

const TagField *findTagField(quint16 tag)
{
    const auto end = std::end(tagFields);
    const auto it = std::lower_bound(std::begin(tagFields), end, tag,
                                     [](const TagField &f, quint16 t) { return f.tag < t; });
    return it != end && it->tag == tag ? it : nullptr;
}

} // namespace

// The value field, read as the tag says, whatever type the entry states; only the image size
// follows the type, since cameras write it as SHORT or as LONG.
void TExifFile::readEntry(quint16 tag, quint16 type, quint32 count, int depth)
{
    const auto at = [this] { return tiffBase + stream.readU32(); };
    if (const TagField *rule = findTagField(tag)) {
        const auto &field = rule->field;
        if (const auto *u16 = std::get_if<U16>(&field))
            this->*(*u16) = stream.readU16();
        else if (const auto *u32 = std::get_if<U32>(&field))
            this->*(*u32) = stream.readU32();
        else if (const auto *text = std::get_if<Text>(&field))
            this->*(*text) = readIFDStringEntry(at());
        else if (const auto *ratio = std::get_if<Ratio>(&field))
            readIFDRationalEntry(at(), this->*(ratio->first), this->*(ratio->second));
        else if (const auto *sratio = std::get_if<SRatio>(&field))
            readIFDRationalSEntry(at(), this->*(sratio->first), this->*(sratio->second));
        else if (const auto *size = std::get_if<ShortOrLong>(&field))
            this->*(size->member) = type == 3 ? stream.readU16() : stream.readU32();
        return;
    }
    const auto characters = [this] {
        QString s = QStringLiteral("");
        for (int i = 0; i < 4; ++i) {
            if (const quint8 c = stream.readU8())
                s.append(QChar(c));
        }
        return s;
    };
    const auto version = [this] {
        QStringList parts;
        for (int i = 0; i < 4; ++i)
            parts.append(QString::number(qint8(stream.readU8())));
        return parts.join(QLatin1Char('.'));
    };

    switch (tag) {
    case 0x0201:
    case 0x0202: {
        // Thumbnails of IFD0 and IFD1 only; later directories change nothing.
        const quint32 value = stream.readU32();
        if (ifdCounter == 0 || ifdCounter == 1)
            (tag == 0x0201 ? ThumbnailOffset : ThumbnailLength)[ifdCounter] = value;
        break;
    }
    case 0x7010: {
        const qint64 back = stream.pos();
        stream.seek(at());
        for (quint32 i = 0; i < qMin<quint32>(count, 4); ++i)
            SonyToneCurve[i] = stream.readU16();
        stream.seek(back);
        break;
    }
    case 0x74C7:
        readU32ArrayAt(at(), SonyCropTopLeft, count, 2);
        break;
    case 0x74C8:
        readU32ArrayAt(at(), SonyCropSize, count, 2);
        break;
    case 0x828D:
        CFARepeatPatternDim[0] = stream.readU16();
        CFARepeatPatternDim[1] = stream.readU16();
        break;
    case 0x828E:
        // Up to four bytes stand in the value field; a longer pattern lies at the offset.
        CFAPattern2Count = count;
        if (count > 4)
            stream.seek(at());
        for (quint32 i = 0; i < qMin<quint32>(count, CFAPattern2Capacity); ++i)
            CFAPattern2[i] = stream.readU8();
        break;
    case 0x8769: {
        const qint64 target = at();
        if (depth < exiflimits::maxNestingDepth) {
            const qint64 back = stream.pos();
            stream.seek(target);
            walkDirectory(depth + 1);
            stream.seek(back);
        }
        break;
    }
    case 0x8825: {
        gpsIfdPos = at();
        const qint64 back = stream.pos();
        stream.seek(gpsIfdPos);
        processGPSInfoIFD();
        stream.seek(back);
        break;
    }
    case 0x9000:
        ExifVersion = characters();
        break;
    case 0x9101:
        for (quint8 &component : ComponentsConfiguration)
            component = stream.readU8();
        break;
    case 0x9286:
        UserComment = readIFDStringEntry(at() + 8); // behind the 8-byte character code
        break;
    case 0xA000:
        FlashpixVersion = characters();
        break;
    case 0xA432:
        readIFDRationalArrayEntry(at(), LensInfoNumerator, LensInfoDenominator, 4);
        break;
    case 0xC612:
        DNGVersion = version();
        break;
    case 0xC613:
        DNGBackwardVersion = version();
        break;
    case 0xC619:
        BlackLevelRepeatDim[0] = stream.readU16();
        BlackLevelRepeatDim[1] = stream.readU16();
        break;
    case 0xC61A:
        BlackLevelCount = count;
        BlackLevel = stream.readU32();
        break;
    case 0xC61D:
        // One level stands in the value field; more lie at the offset.
        WhiteLevelCount = count;
        if (count == 1)
            WhiteLevel[0] = stream.readU32();
        else if (count > 1)
            readU32ArrayAt(at(), WhiteLevel, count, WhiteLevelCapacity);
        break;
    case 0xC61F:
        readU32ArrayAt(at(), DefaultCropOrigin, count, 2);
        break;
    case 0xC620:
        readU32ArrayAt(at(), DefaultCropSize, count, 2);
        break;
    default: // maker notes (0x927C), SubIFDs and every unknown tag: the value field is skipped
        break;
    }
}

// The GPS directory is laid out like any other; its values lie inline or at offset + tiffBase.
void TExifFile::processGPSInfoIFD()
{
    if (!enterDirectory(stream.pos()))
        return;
    const quint16 count = stream.readU16();
    const auto firstCharacter = [this] {
        const quint8 c = stream.readU8();
        return c ? QString(QChar(c)) : QStringLiteral("");
    };
    for (int i = 0; i < count && entriesRead < exiflimits::maxEntries; ++i) {
        if (const int passed = passEntriesPastEnd(count - i)) {
            GPSVersionID = QStringLiteral("0.0.0.0");
            i += passed - 1;
            continue;
        }
        ++entriesRead;
        const qint64 entryPos = stream.pos();
        const quint16 tag = stream.readU16();
        const quint16 type = stream.readU16();
        const quint32 n = stream.readU32();
        qCDebug(lcExifEntries).noquote() << gpsEntryDescription(tag, type, n);
        switch (tag) {
        case 0x0000: {
            QStringList parts;
            for (int b = 0; b < 4; ++b)
                parts.append(QString::number(stream.readU8()));
            GPSVersionID = parts.join(QLatin1Char('.'));
            break;
        }
        case 0x0001:
            GPSLatitudeRef = firstCharacter();
            break;
        case 0x0002:
            readIFDRationalArrayEntry(tiffBase + stream.readU32(), GPSLatitudeNumerator,
                                      GPSLatitudeDenominator, 3);
            break;
        case 0x0003:
            GPSLongitudeRef = firstCharacter();
            break;
        case 0x0004:
            readIFDRationalArrayEntry(tiffBase + stream.readU32(), GPSLongitudeNumerator,
                                      GPSLongitudeDenominator, 3);
            break;
        case 0x0007:
            readIFDRationalArrayEntry(tiffBase + stream.readU32(), GPSTimeStampNumerator,
                                      GPSTimeStampDenominator, 3);
            break;
        case 0x0009:
            GPSStatus = firstCharacter();
            break;
        case 0x000A:
            GPSMeasureMode = firstCharacter();
            break;
        case 0x0012:
            GPSMapDatum = readIFDStringEntry(tiffBase + stream.readU32());
            break;
        case 0x001D:
            GPSDateStamp = readIFDStringEntry(tiffBase + stream.readU32());
            break;
        default:
            break;
        }
        stream.seek(entryPos + 12);
    }
}

// The text at position, up to its zero byte (or the end of the file, where reads yield zeros);
// the entry's count is not used. The stream position is kept.
QString TExifFile::readIFDStringEntry(qint64 position)
{
    return stream.readLatin1Text(position, exiflimits::maxTextLength);
}

void TExifFile::readIFDRationalEntry(qint64 position, quint32 &numerator, quint32 &denominator)
{
    const qint64 back = stream.pos();
    stream.seek(position);
    numerator = stream.readU32();
    denominator = stream.readU32();
    stream.seek(back);
}

void TExifFile::readIFDRationalSEntry(qint64 position, qint32 &numerator, qint32 &denominator)
{
    quint32 n = 0;
    quint32 d = 0;
    readIFDRationalEntry(position, n, d);
    numerator = qint32(n);
    denominator = qint32(d);
}

void TExifFile::readIFDRationalArrayEntry(qint64 position, quint32 *numerators,
                                          quint32 *denominators, int count)
{
    const qint64 back = stream.pos();
    stream.seek(position);
    for (int i = 0; i < count; ++i) {
        numerators[i] = stream.readU32();
        denominators[i] = stream.readU32();
    }
    stream.seek(back);
}

// Reads the file's count of values, but stores no more than the member holds.
void TExifFile::readU32ArrayAt(qint64 position, quint32 *values, quint32 count, int capacity)
{
    const qint64 back = stream.pos();
    stream.seek(position);
    for (quint32 i = 0; i < qMin<quint32>(count, quint32(capacity)); ++i)
        values[i] = stream.readU32();
    stream.seek(back);
}
