#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

// Builds the bytes of photo files for tests, benchmarks and the sample-library generator: TIFF
// in both byte orders, JPEG with an Exif APP1 segment, RAF, RW2, ORF, CR3, HEIF and AVIF, plus
// one named builder per malformed or hostile layout.
namespace fixture {

struct Rational
{
    quint32 num = 0;
    quint32 den = 1;
};

enum class Format {
    TiffLittle,
    TiffBig,
    Jpeg, // APP1 directly after SOI
    JpegApp0, // APP0, then APP1
    Raf,
    Rw2,
    Orf,
    Cr3,
    Heic, // Exif item in the media data, big-endian TIFF
    Avif // the same with AVIF brands and an AV1 primary item, little-endian TIFF
};

struct PhotoTags
{
    QString make, model, lensModel, dateTimeOriginal,
        modifyDate; // a null QString leaves the tag out
    std::optional<quint16> iso, meteringMode, exposureProgram, focalLengthIn35mm;
    std::optional<Rational> fNumber, exposureTime, focalLength;
};

// Texts always lie at an offset, also those of four bytes or fewer, so any text reads back.
QByteArray photo(Format format, const PhotoTags &tags);
bool writePhoto(const QString &path, Format format, const PhotoTags &tags);
bool writeBytes(const QString &path, const QByteArray &bytes);
// ".tif", ".jpg", ".jpg", ".raf", ".rw2", ".orf", ".cr3", ".heic", ".avif"
QString suffix(Format format);

// A typical camera JPEG's tags, used where the values themselves don't matter.
PhotoTags typicalTags();

// Low-level TIFF builder for layouts the photo() builder doesn't make. Entries are written in
// the order added; offsets are relative to the TIFF header (the byte-order mark).
class TiffBuilder
{
public:
    explicit TiffBuilder(bool bigEndian = false);

    struct Entry
    {
        quint16 tag = 0;
        quint16 type = 0;
        quint32 count = 0;
        QByteArray value; // 4 bytes put inline; longer ones go to the data area
        bool forceOffset = false; // value goes to the data area even when it fits inline
        std::optional<quint32> rawField; // written as the value field as it stands
    };

    // Directories are numbered in the order they are added; a directory's next offset and its
    // pointers may name another directory by number (resolved when building).
    int addDirectory();
    void addEntry(int dir, const Entry &entry);
    void addAscii(int dir, quint16 tag, const QString &text, bool zeroTerminated = true);
    void addShort(int dir, quint16 tag, quint16 value);
    void addLong(int dir, quint16 tag, quint32 value);
    void addRational(int dir, quint16 tag, Rational value);
    void addRationals(int dir, quint16 tag, const QList<Rational> &values);
    void addPointer(int dir, quint16 tag, int targetDir); // Exif (0x8769) or GPS (0x8825)
    void setNext(int dir, int targetDir); // chain dir -> targetDir (-1: end)
    void setNextRaw(int dir, quint32 offset); // a next offset as it stands
    void setMagic(quint16 magic) { magicNumber = magic; }
    void setFirstOffsetRaw(quint32 offset) { firstOffset = offset; }
    // Places the directories' entries as given but overrides the entry count written.
    void setEntryCountRaw(int dir, quint16 count);

    QByteArray build() const;
    // Offset of a directory in the built structure (valid after build()).
    quint32 directoryOffset(int dir) const;

    QByteArray u16(quint16 v) const;
    QByteArray u32(quint32 v) const;

private:
    struct Directory
    {
        QList<Entry> entries;
        QList<std::pair<int, int>> pointers; // entry index -> target directory
        int next = -1;
        std::optional<quint32> nextRaw;
        std::optional<quint16> countRaw;
    };
    bool big;
    quint16 magicNumber = 42;
    std::optional<quint32> firstOffset;
    QList<Directory> dirs;
    mutable QList<quint32> offsets;
};

// The TIFF structure of photo() for these tags: IFD0 (Make, Model, ModifyDate, Exif pointer),
// the Exif IFD and, when withIfd1, a chained IFD1.
QByteArray tiff(bool bigEndian, const PhotoTags &tags, bool withIfd1, quint16 magic = 42);
// Wraps a TIFF structure as a JPEG: SOI, [APP0], APP1 "Exif\0\0" + tiff, fake scan data, EOI.
QByteArray jpeg(const QByteArray &tiffBytes, bool withApp0);
// A RAF file around a JPEG: 148-byte header, the JPEG from byte 148.
QByteArray raf(const QByteArray &jpegBytes);
// A CR3 file: ftyp, moov, uuid (16-byte UUID) with six children among them CMT1 and CMT2.
QByteArray cr3(const PhotoTags &tags);
// One ISO base media box: 32-bit size, type, payload.
QByteArray box(const QByteArray &type, const QByteArray &payload);

// Malformed and hostile layouts, each a little-endian TIFF unless said otherwise.
QByteArray zeroLengthFile(); // no bytes at all
QByteArray ifdLoopToItself(); // IFD0's next offset points to IFD0
QByteArray ifdLoopToEarlier(); // IFD0 -> IFD1 -> IFD2 -> IFD1 ...
QByteArray exifPointerLoop(); // the Exif IFD's own Exif pointer names the Exif IFD
QByteArray exifPointerToIfd0(); // the Exif pointer names IFD0
QByteArray entryCount65535(); // IFD0 claims 65535 entries; the file ends long before
QByteArray offsetPastEnd(); // Make and the Exif pointer at offset 0xFFFFFFFF
QByteArray countTimesSizeOverflow(); // LONG/RATIONAL counts whose byte length overflows 32 bits
QByteArray arraysOverCapacity(); // tone curve, crops, white level, CFA pattern with huge counts
QByteArray unterminatedText(); // Make without a terminating zero, running to the end of the file
QByteArray longChain(int directories); // a chain of that many distinct directories
QByteArray cr3BoxSizeLargerThanFile(); // the moov box claims 0x7FFFFFFF bytes
QByteArray cr3BoxSizeZero(); // a zero box size right behind the UUID
QByteArray cr3WithoutCmtBoxes(); // six children, none named CMT1 or CMT2
QByteArray jpegEndingInsideApp1(); // the file ends in the middle of the Exif segment
QByteArray truncated(const QByteArray &bytes, int keep); // the first keep bytes

// ---- HEIF and AVIF: ftyp, meta { hdlr, pitm, iinf, iref, iloc, [idat] }, mdat ----

// Item 1 is the primary image, item 2 the Exif item (with a thumbnail: 3 the thumbnail, 4 its
// own Exif item, whose Make is "Thumbnail").
struct HeifLayout
{
    QByteArray majorBrand = "heic";
    QList<QByteArray> compatibleBrands { "mif1", "heic" };
    QByteArray primaryType = "hvc1"; // "av01" for AVIF
    int infeVersion = 2; // 2 or 3
    int ilocVersion = 1; // 0, 1 or 2
    // Field sizes of iloc in bytes: 0, 4 or 8. With offset size 0 the base offset locates the
    // item; with length size 0 the item runs to the end of its data (put it there: exifAtEnd).
    int offsetSize = 4, lengthSize = 4, baseOffsetSize = 0, indexSize = 0;
    int extents = 1; // the Exif item in this many pieces, stored in reverse order
    bool inIdat = false; // construction method 1: the Exif item lies in the meta box's idat
    bool exifAtEnd = false; // the Exif extents behind the image data, not before it
    qint64 imageBytes = 512; // the primary image's coded data (filler)
    bool linkExif = true; // iref "cdsc" from the Exif item to the primary item
    bool thumbnailExifFirst = false; // a thumbnail with its own Exif item, listed first
    bool metaLargeSize = false; // the meta box with size 1 and a 64-bit size
    bool mdatToEnd = false; // the media data box with size 0 (to the end of the file)
    QByteArray tiffPrefix = QByteArray("Exif\0\0", 6); // between the offset field and the TIFF
};
// A HEIF file whose Exif item holds tiffBytes.
QByteArray heif(const QByteArray &tiffBytes, const HeifLayout &layout = HeifLayout());
HeifLayout avifLayout(); // brands avif, mif1, miaf; primary item av01

// Malformed and hostile HEIF files; each holds typicalTags() unless said otherwise.
QByteArray heifWithoutExif(); // image items only
QByteArray heifMetaLargerThanFile(); // the meta box claims 0x7FFFFFFF bytes
QByteArray heifChildLargerThanMeta(); // iinf, the first child after pitm, claims more than meta
QByteArray heifMetaBehindDeepNesting(int depth); // a box nested depth deep before the meta box
QByteArray heifItemCountsInTheMillions(); // iinf and iloc claim 5,000,000 items, hold three
QByteArray heifManyItemsBeforeExif(int items); // that many image items listed before the Exif
QByteArray heifExtentCountInTheMillions(); // an earlier item claims 65535 extents of 16 bytes
QByteArray heifExifInPieces(int pieces); // the Exif item in that many extents
QByteArray heifExtentPastEnd(); // the Exif extent runs 100 bytes past the end of the file
// Base offset 2^64 - 16, extent offset the item's position + 16: a sum that wraps around lands
// exactly on the Exif item.
QByteArray heifOffsetOverflow();
QByteArray heifTiffOffsetOutsideItem(); // the offset to the TIFF header is 0xFFFFFFF0
QByteArray heifIrefLoop(); // cdsc references from the Exif item to itself and in a circle
QByteArray heifExternalData(); // the Exif item's data reference index is 1 (another file)

} // namespace fixture
