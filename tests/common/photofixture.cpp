#include "photofixture.h"

#include <QFile>

namespace fixture {

namespace {

QByteArray latin1Zero(const QString &text)
{
    return text.toLatin1() + '\0';
}

QByteArray be16(quint16 v)
{
    const char b[2] = { char(v >> 8), char(v) };
    return QByteArray(b, 2);
}

QByteArray be32(quint32 v)
{
    const char b[4] = { char(v >> 24), char(v >> 16), char(v >> 8), char(v) };
    return QByteArray(b, 4);
}

} // namespace

TiffBuilder::TiffBuilder(bool bigEndian)
    : big(bigEndian)
{ }

QByteArray TiffBuilder::u16(quint16 v) const
{
    if (big)
        return be16(v);
    const char b[2] = { char(v), char(v >> 8) };
    return QByteArray(b, 2);
}

QByteArray TiffBuilder::u32(quint32 v) const
{
    if (big)
        return be32(v);
    const char b[4] = { char(v), char(v >> 8), char(v >> 16), char(v >> 24) };
    return QByteArray(b, 4);
}

int TiffBuilder::addDirectory()
{
    dirs.append(Directory());
    return int(dirs.size()) - 1;
}

void TiffBuilder::addEntry(int dir, const Entry &entry)
{
    dirs[dir].entries.append(entry);
}

// Texts are always put in the data area, also those of four bytes or fewer, so that any text
// reads back as it was given.
void TiffBuilder::addAscii(int dir, quint16 tag, const QString &text, bool zeroTerminated)
{
    const QByteArray bytes = zeroTerminated ? latin1Zero(text) : text.toLatin1();
    addEntry(dir, { tag, 2, quint32(bytes.size()), bytes, true, {} });
}

void TiffBuilder::addShort(int dir, quint16 tag, quint16 value)
{
    addEntry(dir, { tag, 3, 1, u16(value) + QByteArray(2, '\0'), false, {} });
}

void TiffBuilder::addLong(int dir, quint16 tag, quint32 value)
{
    addEntry(dir, { tag, 4, 1, u32(value), false, {} });
}

void TiffBuilder::addRational(int dir, quint16 tag, Rational value)
{
    addRationals(dir, tag, { value });
}

void TiffBuilder::addRationals(int dir, quint16 tag, const QList<Rational> &values)
{
    QByteArray bytes;
    for (const Rational &r : values)
        bytes += u32(r.num) + u32(r.den);
    addEntry(dir, { tag, 5, quint32(values.size()), bytes, true, {} });
}

void TiffBuilder::addPointer(int dir, quint16 tag, int targetDir)
{
    dirs[dir].pointers.append({ int(dirs[dir].entries.size()), targetDir });
    addEntry(dir, { tag, 4, 1, QByteArray(4, '\0'), false, {} });
}

void TiffBuilder::setNext(int dir, int targetDir)
{
    dirs[dir].next = targetDir;
    dirs[dir].nextRaw.reset();
}

void TiffBuilder::setNextRaw(int dir, quint32 offset)
{
    dirs[dir].nextRaw = offset;
}

void TiffBuilder::setEntryCountRaw(int dir, quint16 count)
{
    dirs[dir].countRaw = count;
}

quint32 TiffBuilder::directoryOffset(int dir) const
{
    return offsets.value(dir);
}

// Layout: the 8-byte header, then each directory followed by its data area (values longer than
// four bytes), every value starting at an even offset.
QByteArray TiffBuilder::build() const
{
    const auto padded = [](qsizetype n) { return n + (n & 1); };
    offsets.clear();
    quint32 pos = 8;
    for (const Directory &d : dirs) {
        offsets.append(pos);
        qsizetype size = 2 + 12 * d.entries.size() + 4;
        for (const Entry &e : d.entries) {
            if (!e.rawField && (e.forceOffset || e.value.size() > 4))
                size += padded(e.value.size());
        }
        pos += quint32(size);
    }

    QByteArray out;
    out.reserve(pos);
    out += big ? QByteArray("MM") : QByteArray("II");
    out += u16(magicNumber) + u32(firstOffset.value_or(8));
    for (int i = 0; i < dirs.size(); ++i) {
        const Directory &d = dirs[i];
        quint32 dataPos = offsets[i] + quint32(2 + 12 * d.entries.size() + 4);
        QByteArray data;
        out += u16(d.countRaw.value_or(quint16(d.entries.size())));
        for (int k = 0; k < d.entries.size(); ++k) {
            const Entry &e = d.entries[k];
            out += u16(e.tag) + u16(e.type) + u32(e.count);
            int target = -1;
            for (const auto &[entryIndex, dir] : d.pointers) {
                if (entryIndex == k)
                    target = dir;
            }
            if (target >= 0) {
                out += u32(offsets.value(target));
            } else if (e.rawField) {
                out += u32(*e.rawField);
            } else if (!e.forceOffset && e.value.size() <= 4) {
                out += e.value + QByteArray(4 - e.value.size(), '\0');
            } else {
                out += u32(dataPos + quint32(data.size()));
                data += e.value;
                if (e.value.size() & 1)
                    data += '\0';
            }
        }
        out += u32(d.nextRaw.value_or(d.next >= 0 ? offsets.value(d.next) : 0));
        out += data;
    }
    return out;
}

namespace {

void addIfd0Tags(TiffBuilder &b, int dir, const PhotoTags &tags)
{
    if (!tags.make.isNull())
        b.addAscii(dir, 0x010F, tags.make);
    if (!tags.model.isNull())
        b.addAscii(dir, 0x0110, tags.model);
    if (!tags.modifyDate.isNull())
        b.addAscii(dir, 0x0132, tags.modifyDate);
}

void addExifTags(TiffBuilder &b, int dir, const PhotoTags &tags)
{
    if (tags.exposureTime)
        b.addRational(dir, 0x829A, *tags.exposureTime);
    if (tags.fNumber)
        b.addRational(dir, 0x829D, *tags.fNumber);
    if (tags.exposureProgram)
        b.addShort(dir, 0x8822, *tags.exposureProgram);
    if (tags.iso)
        b.addShort(dir, 0x8827, *tags.iso);
    if (!tags.dateTimeOriginal.isNull())
        b.addAscii(dir, 0x9003, tags.dateTimeOriginal);
    if (tags.meteringMode)
        b.addShort(dir, 0x9207, *tags.meteringMode);
    if (tags.focalLength)
        b.addRational(dir, 0x920A, *tags.focalLength);
    if (tags.focalLengthIn35mm)
        b.addShort(dir, 0xA405, *tags.focalLengthIn35mm);
    if (!tags.lensModel.isNull())
        b.addAscii(dir, 0xA434, tags.lensModel);
}

// Start of scan, a few hundred bytes of entropy-coded data, end of image; made once.
const QByteArray &fakeScanData()
{
    static const QByteArray scan = [] {
        QByteArray bytes = QByteArray::fromHex("FFDA000C03010002110311003F00");
        for (int i = 0; i < 320; ++i)
            bytes += char((i * 37) & 0x7F); // never 0xFF, so no marker appears inside
        return bytes + QByteArray::fromHex("FFD9");
    }();
    return scan;
}

} // namespace

QByteArray tiff(bool bigEndian, const PhotoTags &tags, bool withIfd1, quint16 magic)
{
    TiffBuilder b(bigEndian);
    b.setMagic(magic);
    const int ifd0 = b.addDirectory();
    const int exif = b.addDirectory();
    addIfd0Tags(b, ifd0, tags);
    b.addPointer(ifd0, 0x8769, exif);
    addExifTags(b, exif, tags);
    if (withIfd1) {
        // A thumbnail directory, as cameras chain behind IFD0.
        const int ifd1 = b.addDirectory();
        b.addShort(ifd1, 0x0103, 6);
        b.addLong(ifd1, 0x0201, 0);
        b.addLong(ifd1, 0x0202, 0);
        b.setNext(ifd0, ifd1);
    }
    return b.build();
}

QByteArray jpeg(const QByteArray &tiffBytes, bool withApp0)
{
    static const QByteArray app0 = QByteArray::fromHex("FFE000104A46494600010100000100010000");
    QByteArray out;
    out.reserve(2 + app0.size() + 10 + tiffBytes.size() + fakeScanData().size());
    out += "\xFF\xD8";
    if (withApp0)
        out += app0;
    out += "\xFF\xE1" + be16(quint16(2 + 6 + tiffBytes.size()));
    out += QByteArray("Exif\0\0", 6) + tiffBytes;
    return out + fakeScanData();
}

QByteArray raf(const QByteArray &jpegBytes)
{
    QByteArray header("FUJIFILMCCD-RAW 0201FF383501");
    header += QByteArray("FinePix S5Pro").leftJustified(32, '\0');
    header += "0100";
    header = header.leftJustified(84, '\0');
    header += be32(148) + be32(quint32(jpegBytes.size()));
    return header.leftJustified(148, '\0') + jpegBytes;
}

QByteArray box(const QByteArray &type, const QByteArray &payload)
{
    return be32(quint32(8 + payload.size())) + type + payload;
}

namespace {

QByteArray cmt1(const PhotoTags &tags)
{
    TiffBuilder b(false);
    addIfd0Tags(b, b.addDirectory(), tags);
    return b.build();
}

QByteArray cmt2(const PhotoTags &tags)
{
    TiffBuilder b(false);
    addExifTags(b, b.addDirectory(), tags);
    return b.build();
}

const QByteArray canonUuid = QByteArray::fromHex("85c0b687820f11e08111f4ce462b6a48");

// ftyp, moov { uuid (Canon) { children } }, mdat
QByteArray cr3File(const QList<QByteArray> &children)
{
    QByteArray out = box("ftyp", QByteArray("crx ") + be32(1) + "crx isom");
    QByteArray uuidPayload = canonUuid;
    for (const QByteArray &child : children)
        uuidPayload += child;
    out += box("moov", box("uuid", uuidPayload));
    return out + box("mdat", QByteArray(256, '\x5A'));
}

QList<QByteArray> cr3Children(const PhotoTags &tags)
{
    return { box("CNCV", "CanonCR3_001/00.09.00/00.00.00"),
             box("CCTP",
                 QByteArray::fromHex("0000000000000001000000184343445400000000000000010000")),
             box("CTBO", QByteArray(20, '\0')),
             box("free", QByteArray(12, '\0')),
             box("CMT1", cmt1(tags)),
             box("CMT2", cmt2(tags)),
             box("CMT3", QByteArray("II*\0\x08\0\0\0\0\0\0\0\0\0", 14)) };
}

} // namespace

QByteArray cr3(const PhotoTags &tags)
{
    return cr3File(cr3Children(tags));
}

QByteArray photo(Format format, const PhotoTags &tags)
{
    switch (format) {
    case Format::TiffLittle:
        return tiff(false, tags, true);
    case Format::TiffBig:
        return tiff(true, tags, true);
    case Format::Jpeg:
        return jpeg(tiff(true, tags, true), false);
    case Format::JpegApp0:
        return jpeg(tiff(false, tags, true), true);
    case Format::Raf:
        return raf(jpeg(tiff(true, tags, true), false));
    case Format::Rw2:
        return tiff(false, tags, true, 0x0055);
    case Format::Orf:
        return tiff(false, tags, true, 0x4F52);
    case Format::Cr3:
        return cr3(tags);
    case Format::Heic:
        return heif(tiff(true, tags, true));
    case Format::Avif:
        return heif(tiff(false, tags, true), avifLayout());
    }
    return {};
}

bool writeBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate)
        && file.write(bytes) == bytes.size();
}

bool writePhoto(const QString &path, Format format, const PhotoTags &tags)
{
    return writeBytes(path, photo(format, tags));
}

QString suffix(Format format)
{
    switch (format) {
    case Format::TiffLittle:
    case Format::TiffBig:
        return QStringLiteral(".tif");
    case Format::Jpeg:
    case Format::JpegApp0:
        return QStringLiteral(".jpg");
    case Format::Raf:
        return QStringLiteral(".raf");
    case Format::Rw2:
        return QStringLiteral(".rw2");
    case Format::Orf:
        return QStringLiteral(".orf");
    case Format::Cr3:
        return QStringLiteral(".cr3");
    case Format::Heic:
        return QStringLiteral(".heic");
    case Format::Avif:
        return QStringLiteral(".avif");
    }
    return {};
}

PhotoTags typicalTags()
{
    PhotoTags tags;
    tags.make = QStringLiteral("Canon");
    tags.model = QStringLiteral("Canon EOS 5D Mark IV");
    tags.lensModel = QStringLiteral("EF24-70mm f/2.8L II USM");
    tags.dateTimeOriginal = QStringLiteral("2023:07:14 18:30:05");
    tags.modifyDate = QStringLiteral("2023:07:15 09:12:00");
    tags.iso = 400;
    tags.meteringMode = 5;
    tags.exposureProgram = 3;
    tags.focalLengthIn35mm = 50;
    tags.fNumber = Rational { 28, 10 };
    tags.exposureTime = Rational { 1, 250 };
    tags.focalLength = Rational { 50, 1 };
    return tags;
}

// ---- Malformed and hostile layouts ----

QByteArray zeroLengthFile()
{
    return {};
}

QByteArray ifdLoopToItself()
{
    TiffBuilder b;
    const int ifd0 = b.addDirectory();
    b.addAscii(ifd0, 0x010F, QStringLiteral("Loop"));
    b.setNext(ifd0, ifd0);
    return b.build();
}

QByteArray ifdLoopToEarlier()
{
    TiffBuilder b;
    const int ifd0 = b.addDirectory();
    const int ifd1 = b.addDirectory();
    const int ifd2 = b.addDirectory();
    b.addAscii(ifd0, 0x010F, QStringLiteral("Loop"));
    b.addLong(ifd1, 0x0201, 111);
    b.addLong(ifd2, 0x0202, 222);
    b.setNext(ifd0, ifd1);
    b.setNext(ifd1, ifd2);
    b.setNext(ifd2, ifd1);
    return b.build();
}

QByteArray exifPointerLoop()
{
    TiffBuilder b;
    const int ifd0 = b.addDirectory();
    const int exif = b.addDirectory();
    b.addAscii(ifd0, 0x010F, QStringLiteral("Loop"));
    b.addPointer(ifd0, 0x8769, exif);
    b.addPointer(exif, 0x8769, exif);
    b.addShort(exif, 0x8827, 800);
    return b.build();
}

QByteArray exifPointerToIfd0()
{
    TiffBuilder b;
    const int ifd0 = b.addDirectory();
    const int exif = b.addDirectory();
    b.addAscii(ifd0, 0x010F, QStringLiteral("Loop"));
    b.addPointer(ifd0, 0x8769, exif);
    b.addShort(exif, 0x8827, 800);
    b.addPointer(exif, 0x8769, ifd0);
    return b.build();
}

QByteArray entryCount65535()
{
    TiffBuilder b;
    const int ifd0 = b.addDirectory();
    b.addAscii(ifd0, 0x010F, QStringLiteral("Many"));
    b.setEntryCountRaw(ifd0, 65535);
    return b.build();
}

QByteArray offsetPastEnd()
{
    TiffBuilder b;
    const int ifd0 = b.addDirectory();
    b.addEntry(ifd0, { 0x010F, 2, 6, {}, false, 0xFFFFFFFFu });
    b.addAscii(ifd0, 0x0110, QStringLiteral("Still read"));
    b.addEntry(ifd0, { 0x829A, 5, 1, {}, false, 0xFFFFFFF0u });
    b.addEntry(ifd0, { 0x8769, 4, 1, {}, false, 0xFFFFFFFFu });
    b.setNextRaw(ifd0, 0xFFFFFFFFu);
    return b.build();
}

QByteArray countTimesSizeOverflow()
{
    TiffBuilder b;
    const int ifd0 = b.addDirectory();
    b.addEntry(ifd0, { 0x7010, 3, 0x80000001u, QByteArray(4, '\0'), false, {} });
    b.addEntry(ifd0, { 0xC61D, 4, 0x40000000u, {}, false, 16u });
    b.addEntry(ifd0, { 0x829A, 5, 0x20000001u, {}, false, 16u });
    b.addShort(ifd0, 0x8827, 640);
    b.addAscii(ifd0, 0x0110, QStringLiteral("After overflow"));
    return b.build();
}

QByteArray arraysOverCapacity()
{
    TiffBuilder b;
    const int ifd0 = b.addDirectory();
    QByteArray many;
    for (quint32 i = 1; i <= 64; ++i)
        many += b.u32(i);
    b.addEntry(ifd0, { 0x7010, 3, 1000, many, true, {} });
    b.addEntry(ifd0, { 0x74C7, 4, 100000, many, true, {} });
    b.addEntry(ifd0, { 0x74C8, 4, 3, many, true, {} });
    b.addEntry(ifd0, { 0x828E, 1, 0xFFFFFFFFu, many, true, {} });
    b.addEntry(ifd0, { 0xC61D, 4, 1000000, many, true, {} });
    b.addEntry(ifd0, { 0xC61F, 4, 0x7FFFFFFF, many, true, {} });
    b.addEntry(ifd0, { 0xC620, 4, 5, many, true, {} });
    b.addAscii(ifd0, 0x0110, QStringLiteral("After arrays"));
    return b.build();
}

QByteArray unterminatedText()
{
    TiffBuilder b;
    const int ifd0 = b.addDirectory();
    b.addAscii(ifd0, 0x010F, QStringLiteral("NoZero"), false);
    return b.build(); // the text's data is the last thing in the file
}

QByteArray longChain(int directories)
{
    TiffBuilder b;
    for (int i = 0; i < directories; ++i) {
        const int dir = b.addDirectory();
        b.addShort(dir, 0x8827, quint16(100 + i));
        if (i > 0)
            b.setNext(i - 1, dir);
    }
    return b.build();
}

QByteArray cr3BoxSizeLargerThanFile()
{
    QList<QByteArray> children = cr3Children(typicalTags());
    children[0] = be32(0x7FFFFFFF) + children[0].mid(4);
    return cr3File(children);
}

QByteArray cr3BoxSizeZero()
{
    QList<QByteArray> children = cr3Children(typicalTags());
    children[0] = be32(0) + children[0].mid(4);
    return cr3File(children);
}

QByteArray cr3WithoutCmtBoxes()
{
    QList<QByteArray> children = cr3Children(typicalTags());
    children[4] = box("CMTA", children[4].mid(8));
    children[5] = box("CMTB", children[5].mid(8));
    return cr3File(children);
}

QByteArray jpegEndingInsideApp1()
{
    const QByteArray tiffBytes = tiff(true, typicalTags(), true);
    // SOI (2) + APP1 marker and length (4) + "Exif\0\0" (6) + IFD0 and some of what follows.
    return jpeg(tiffBytes, false).left(2 + 4 + 6 + 70);
}

QByteArray truncated(const QByteArray &bytes, int keep)
{
    return bytes.left(keep);
}

} // namespace fixture
