// Writes the scan benchmark's photo library: 20,000 files in 40 folders (5 years x 8 events x 500
// files), 5 % HEIF files of 1 to 3 MiB (half with the Exif item near the start, ".HEIC", half
// with it at the end, ".HIF"), of the rest 80 % camera JPEGs and 20 % raws of the makers' own
// formats, and a second library of the first 500 of them padded to 25 MiB each, as full-size raws
// are. The same seed gives the same bytes on every machine, so figures taken on different days
// compare.
#include "benchdata.h"
#include "photofixture.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QMap>
#include <QTextStream>

#include <cmath>
#include <cstdio>

using namespace benchdata;

namespace {

constexpr std::uint64_t seed = 0x4B656C7661726FULL; // "Kelvaro"
constexpr int years = 5;
constexpr int firstYear = 2020;
constexpr int foldersPerYear = 8;
constexpr int filesPerFolder = 500;
constexpr int largeFiles = 500;
constexpr qint64 largeSize = 25 * 1024 * 1024;
// Changes whenever the corpus layout changes, so that an old corpus is not reused.
const char *const stamp = "kelvaro bench corpus 3: 20000 files, 5 % HEIF, 500 padded to 25 MiB\n";

const char *const eventNames[foldersPerYear] = { "01_Winter", "02_Carnival", "03_Spring",
                                                 "04_City",   "05_Summer",   "06_Holiday",
                                                 "07_Autumn", "08_Christmas" };

// Image bytes: anything but 0xFF, so that no JPEG marker appears inside them.
QByteArray filler(Random &random, int size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    for (int i = 0; i < size; i += 8) {
        std::uint64_t v = random.next();
        for (int k = 0; k < 8 && i + k < size; ++k, v >>= 8)
            bytes[i + k] = char(v & 0xFE);
    }
    return bytes;
}

enum class Layout { CameraJpeg, Raw, Dng };

void addBytes(fixture::TiffBuilder &b, int dir, quint16 tag, quint16 type, const QByteArray &bytes)
{
    b.addEntry(dir, { tag, type, quint32(bytes.size()), bytes, false, {} });
}

void addTyped(fixture::TiffBuilder &b, int dir, quint16 tag, quint16 type, quint32 count,
              const QByteArray &bytes)
{
    b.addEntry(dir, { tag, type, count, bytes, false, {} });
}

// Texts of up to four bytes with their zero sit in the entry itself, as cameras write them (the
// builder's addAscii always places them behind the directory).
void addText(fixture::TiffBuilder &b, int dir, quint16 tag, const QString &text)
{
    const QByteArray bytes = text.toLatin1() + '\0';
    if (bytes.size() <= 4)
        b.addEntry(dir, { tag, 2, quint32(bytes.size()), bytes, false, {} });
    else
        b.addAscii(dir, tag, text);
}

/*
 * The TIFF structure a camera writes, tags in ascending order in each directory:
 *   IFD0      Make, Model, Orientation, resolution, Software, ModifyDate, Artist, Copyright,
 *             Exif and GPS pointers; raws add a strip preview, DNGs their version tags
 *   Exif IFD  about 40 tags, among them a MakerNote of a few KB and a 264-byte UserComment
 *   GPS IFD   for 30 % of the photos
 *   IFD1      (JPEG only) the thumbnail, whose bytes follow the structure
 * `trailerOffset` is where the bytes behind the structure begin (the thumbnail or the preview);
 * the caller builds once to learn it, then again with it.
 */
QByteArray cameraTiff(const Photo &p, bool bigEndian, quint16 magic, Layout layout,
                      quint32 trailerOffset, quint32 trailerLength, const QByteArray &note)
{
    const fixture::PhotoTags &t = p.tags;
    fixture::TiffBuilder b(bigEndian);
    b.setMagic(magic);
    const int ifd0 = b.addDirectory();
    const int exif = b.addDirectory();
    const int gps = p.hasGps ? b.addDirectory() : -1;
    const bool raw = layout != Layout::CameraJpeg;

    if (raw) {
        b.addLong(ifd0, 0x00FE, 1);
        b.addShort(ifd0, 0x0100, 1620);
        b.addShort(ifd0, 0x0101, 1080);
        addTyped(b, ifd0, 0x0102, 3, 3, b.u16(8) + b.u16(8) + b.u16(8));
        b.addShort(ifd0, 0x0103, 6);
        b.addShort(ifd0, 0x0106, 6);
    }
    addText(b, ifd0, 0x010F, t.make);
    addText(b, ifd0, 0x0110, t.model);
    if (raw)
        b.addLong(ifd0, 0x0111, trailerOffset);
    b.addShort(ifd0, 0x0112, p.height > p.width ? 8 : 1);
    if (raw) {
        b.addShort(ifd0, 0x0115, 3);
        b.addShort(ifd0, 0x0116, 1080);
        b.addLong(ifd0, 0x0117, trailerLength);
    }
    b.addRational(ifd0, 0x011A, { 300, 1 });
    b.addRational(ifd0, 0x011B, { 300, 1 });
    b.addShort(ifd0, 0x0128, 2);
    addText(b, ifd0, 0x0131, p.software);
    addText(b, ifd0, 0x0132, t.modifyDate);
    if (!p.artist.isEmpty())
        addText(b, ifd0, 0x013B, p.artist);
    if (!raw)
        b.addShort(ifd0, 0x0213, 2);
    if (!p.artist.isEmpty())
        addText(b, ifd0, 0x8298, QStringLiteral("Copyright ") + p.artist);
    b.addPointer(ifd0, 0x8769, exif);
    if (gps >= 0)
        b.addPointer(ifd0, 0x8825, gps);
    if (layout == Layout::Dng) {
        addBytes(b, ifd0, 0xC612, 1, QByteArray::fromHex("01040000"));
        addBytes(b, ifd0, 0xC613, 1, QByteArray::fromHex("01010000"));
        addText(b, ifd0, 0xC614, t.make.section(' ', 0, 0) + ' ' + t.model);
    }

    const double seconds = double(t.exposureTime->num) / t.exposureTime->den;
    const double fNumber = double(t.fNumber->num) / t.fNumber->den;
    b.addRational(exif, 0x829A, *t.exposureTime);
    b.addRational(exif, 0x829D, *t.fNumber);
    b.addShort(exif, 0x8822, *t.exposureProgram);
    b.addShort(exif, 0x8827, *t.iso);
    b.addShort(exif, 0x8830, 2);
    b.addLong(exif, 0x8832, *t.iso);
    addBytes(b, exif, 0x9000, 7, "0231");
    addText(b, exif, 0x9003, t.dateTimeOriginal);
    addText(b, exif, 0x9004, t.dateTimeOriginal);
    addText(b, exif, 0x9010, QStringLiteral("+01:00"));
    addText(b, exif, 0x9011, QStringLiteral("+01:00"));
    if (!raw)
        addBytes(b, exif, 0x9101, 7, QByteArray::fromHex("01020300"));
    addTyped(b, exif, 0x9201, 10, 1,
             b.u32(quint32(qint32(-std::log2(seconds) * 1000))) + b.u32(1000));
    b.addRational(exif, 0x9202, { quint32(2 * std::log2(fNumber) * 1000), 1000 });
    addTyped(b, exif, 0x9204, 10, 1, b.u32(quint32(qint32(p.exposureBias3))) + b.u32(3));
    b.addRational(exif, 0x9205, { quint32(2 * std::log2(fNumber) * 100), 100 });
    b.addShort(exif, 0x9207, *t.meteringMode);
    b.addShort(exif, 0x9209, quint16(p.flash));
    b.addRational(exif, 0x920A, *t.focalLength);
    addBytes(b, exif, 0x927C, 7, note);
    addBytes(b, exif, 0x9286, 7, QByteArray(264, '\0'));
    addText(b, exif, 0x9290, QStringLiteral("45"));
    addText(b, exif, 0x9291, QStringLiteral("45"));
    addText(b, exif, 0x9292, QStringLiteral("45"));
    addBytes(b, exif, 0xA000, 7, "0100");
    b.addShort(exif, 0xA001, 1);
    b.addLong(exif, 0xA002, quint32(p.width));
    b.addLong(exif, 0xA003, quint32(p.height));
    b.addRational(exif, 0xA20E, { 1675257, 1000 });
    b.addRational(exif, 0xA20F, { 1675257, 1000 });
    b.addShort(exif, 0xA210, 3);
    b.addShort(exif, 0xA217, 2);
    addBytes(b, exif, 0xA300, 7, QByteArray(1, '\x03'));
    addBytes(b, exif, 0xA301, 7, QByteArray(1, '\x01'));
    b.addShort(exif, 0xA401, 0);
    b.addShort(exif, 0xA402, 0);
    b.addShort(exif, 0xA403, 0);
    b.addShort(exif, 0xA405, *t.focalLengthIn35mm);
    b.addShort(exif, 0xA406, 0);
    addText(b, exif, 0xA430, QString());
    addText(b, exif, 0xA431, p.serialNumber);
    const Lens &lens = lenses().at(p.lens);
    b.addRationals(exif, 0xA432,
                   { { quint32(lens.minFocal), 1 },
                     { quint32(lens.maxFocal), 1 },
                     { quint32(lens.minFNumber10), 10 },
                     { quint32(lens.minFNumber10), 10 } });
    addText(b, exif, 0xA433, t.make.section(' ', 0, 0));
    addText(b, exif, 0xA434, t.lensModel);
    addText(b, exif, 0xA435, p.lensSerial);

    if (gps >= 0) {
        addBytes(b, gps, 0x0000, 1, QByteArray::fromHex("02030000"));
        addText(b, gps, 0x0001, p.north ? QStringLiteral("N") : QStringLiteral("S"));
        b.addRationals(gps, 0x0002,
                       { { p.latitude[0], 1 }, { p.latitude[1], 1 }, { p.latitude[2], 100 } });
        addText(b, gps, 0x0003, p.east ? QStringLiteral("E") : QStringLiteral("W"));
        b.addRationals(gps, 0x0004,
                       { { p.longitude[0], 1 }, { p.longitude[1], 1 }, { p.longitude[2], 100 } });
        addBytes(b, gps, 0x0005, 1, QByteArray(1, '\0'));
        b.addRational(gps, 0x0006, { 35250, 100 });
        const QTime time =
            QDateTime::fromString(t.dateTimeOriginal, QStringLiteral("yyyy:MM:dd HH:mm:ss")).time();
        b.addRationals(gps, 0x0007,
                       { { quint32(time.hour()), 1 },
                         { quint32(time.minute()), 1 },
                         { quint32(time.second()), 1 } });
        addText(b, gps, 0x0012, QStringLiteral("WGS-84"));
        addText(b, gps, 0x001D, t.dateTimeOriginal.left(10));
    }

    if (!raw) {
        const int ifd1 = b.addDirectory();
        b.addShort(ifd1, 0x0103, 6);
        b.addRational(ifd1, 0x011A, { 72, 1 });
        b.addRational(ifd1, 0x011B, { 72, 1 });
        b.addShort(ifd1, 0x0128, 2);
        b.addLong(ifd1, 0x0201, trailerOffset);
        b.addLong(ifd1, 0x0202, trailerLength);
        b.setNext(ifd0, ifd1);
    }
    return b.build();
}

// A small embedded JPEG (thumbnail or raw preview): SOI, filler, EOI.
QByteArray embeddedJpeg(Random &random, int size)
{
    return QByteArray::fromHex("FFD8") + filler(random, size - 4) + QByteArray::fromHex("FFD9");
}

// A maker note the way Canon and Sony write theirs: a directory of its own. Its values are all
// inline, so it stays valid wherever a maker counts its offsets from.
QByteArray makerNote(Random &random, bool bigEndian)
{
    const fixture::TiffBuilder order(bigEndian);
    const int entries = 170 + random.below(340);
    QByteArray note = order.u16(quint16(entries));
    for (int i = 0; i < entries; ++i) {
        const bool isLong = random.chance(40);
        note += order.u16(quint16(i + 1)) + order.u16(isLong ? 4 : 3) + order.u32(1);
        note += isLong ? order.u32(quint32(random.next()))
                       : order.u16(quint16(random.next())) + order.u16(0);
    }
    return note + order.u32(0);
}

// The TIFF structure with its thumbnail or preview behind it.
QByteArray tiffWithTrailer(Random &random, const Photo &p, bool bigEndian, quint16 magic,
                           Layout layout, int trailerSize)
{
    const QByteArray note = makerNote(random, bigEndian);
    const QByteArray trailer = embeddedJpeg(random, trailerSize);
    const quint32 structureSize =
        quint32(cameraTiff(p, bigEndian, magic, layout, 0, trailer.size(), note).size());
    return cameraTiff(p, bigEndian, magic, layout, structureSize, trailer.size(), note) + trailer;
}

// [APP0,] APP1 with the camera's Exif block and thumbnail, then a few KB of image data.
QByteArray cameraJpeg(Random &random, const Photo &p, bool bigEndian, bool withApp0 = true)
{
    const QByteArray tiff =
        tiffWithTrailer(random, p, bigEndian, 42, Layout::CameraJpeg, 4096 + random.below(6144));
    QByteArray bytes = fixture::jpeg(tiff, withApp0);
    bytes.chop(2); // EOI
    return bytes + filler(random, 4096 + random.below(8192)) + QByteArray::fromHex("FFD9");
}

/*
 * A RAF file: the builder's 148-byte header and JPEG, then the raw data, which recent Fujifilm
 * bodies wrap in a TIFF structure. The header names it (big-endian):
 *   100  offset of the raw data   104  its length
 */
QByteArray cameraRaf(Random &random, const Photo &p, int rawData)
{
    // The embedded JPEG of a RAF has its APP1 right behind SOI.
    QByteArray bytes = fixture::raf(cameraJpeg(random, p, true, false));
    fixture::TiffBuilder raw(true);
    const int dir = raw.addDirectory();
    raw.addLong(dir, 0x0100, quint32(p.width));
    raw.addLong(dir, 0x0101, quint32(p.height));
    raw.addShort(dir, 0x0102, 14);
    const QByteArray rawBytes = raw.build() + filler(random, rawData);
    const QByteArray where = raw.u32(quint32(bytes.size())) + raw.u32(quint32(rawBytes.size()));
    bytes.replace(100, where.size(), where);
    return bytes + rawBytes;
}

QByteArray photoBytes(Random &random, const Photo &p, bool asRaw)
{
    const Camera &body = cameras().at(p.camera);
    if (!asRaw)
        return cameraJpeg(random, p, body.rawFormat == fixture::Format::TiffBig);

    const int preview = 16384 + random.below(24576);
    const int rawData = 8192 + random.below(8192);
    switch (body.rawFormat) {
    case fixture::Format::Raf:
        return cameraRaf(random, p, rawData);
    case fixture::Format::Cr3: {
        // The builder's CR3 ends in a 256-byte mdat; a camera's holds the image.
        QByteArray bytes = fixture::cr3(p.tags);
        bytes.chop(8 + 256);
        return bytes + fixture::box("mdat", filler(random, preview + rawData));
    }
    case fixture::Format::Rw2:
        return tiffWithTrailer(random, p, false, 0x0055, Layout::Raw, preview)
            + filler(random, rawData);
    case fixture::Format::Orf:
        return tiffWithTrailer(random, p, false, 0x4F52, Layout::Raw, preview)
            + filler(random, rawData);
    case fixture::Format::TiffBig:
        return tiffWithTrailer(random, p, true, 42, Layout::Raw, preview) + filler(random, rawData);
    default: {
        const Layout layout = QByteArray(body.rawSuffix) == ".DNG" ? Layout::Dng : Layout::Raw;
        return tiffWithTrailer(random, p, false, 42, layout, preview) + filler(random, rawData);
    }
    }
}

/*
 * A HEIF file as a camera or phone writes it: ftyp, meta, then the media data with the image
 * (1 to 3 MiB) and the Exif item, which holds the camera's Exif block. Near the start the Exif item
 * comes first in the media data; at the end it follows the image. The image bytes are left as a
 * hole in the file (see write()): the reader never reads them.
 */
struct HeifPhoto
{
    QByteArray bytes;
    qint64 imageStart = 0;
    qint64 imageLength = 0;
};

HeifPhoto cameraHeif(Random &random, const Photo &p, bool exifAtEnd)
{
    const QByteArray tiff =
        tiffWithTrailer(random, p, true, 42, Layout::CameraJpeg, 4096 + random.below(6144));
    fixture::HeifLayout layout;
    layout.exifAtEnd = exifAtEnd;
    layout.imageBytes = 1024 * 1024 + random.below(2 * 1024 * 1024);
    HeifPhoto heif;
    heif.bytes = fixture::heif(tiff, layout);
    const qint64 exifItem = 4 + layout.tiffPrefix.size() + tiff.size();
    heif.imageLength = layout.imageBytes;
    heif.imageStart = heif.bytes.size() - layout.imageBytes - (exifAtEnd ? exifItem : 0);
    return heif;
}

QString fileName(const Maker &maker, int number, const char *suffix)
{
    const QString prefix = QString::fromLatin1(maker.filePrefix);
    const int digits = prefix.size() == 1 ? 7 : (prefix == QLatin1String("DSC") ? 5 : 4);
    const int modulo = digits == 4 ? 10000 : (digits == 5 ? 100000 : 10000000);
    return prefix + QStringLiteral("%1").arg(number % modulo, digits, 10, QLatin1Char('0'))
        + QLatin1String(suffix);
}

// The bytes, but [holeStart, holeStart + holeLength) left as a hole: a seek past the end and
// resize() both leave holes, so padding and image data take no disk space.
bool write(const QString &path, const QByteArray &bytes, qint64 padTo = 0, qint64 holeStart = 0,
           qint64 holeLength = 0)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    const qint64 head = holeLength > 0 ? holeStart : bytes.size();
    if (file.write(bytes.constData(), head) != head)
        return false;
    const qint64 tail = bytes.size() - head - holeLength;
    if (holeLength > 0
        && (!file.seek(head + holeLength)
            || file.write(bytes.constData() + head + holeLength, tail) != tail
            || !file.resize(bytes.size())))
        return false;
    return padTo == 0 || file.resize(padTo);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s CORPUS_DIR\n", argv[0]);
        return 2;
    }
    const QDir root(QString::fromLocal8Bit(argv[1]));
    const QString stampPath = root.filePath(QStringLiteral(".complete"));
    {
        QFile existing(stampPath);
        if (existing.open(QIODevice::ReadOnly) && existing.readAll() == stamp) {
            std::printf("corpus present in %s, reused\n", qPrintable(root.path()));
            return 0;
        }
    }
    QFile::remove(stampPath);
    for (const char *part : { "small", "large" })
        QDir(root.filePath(QLatin1String(part))).removeRecursively();

    Random random(seed);
    QMap<QString, int> perSuffix;
    qint64 bytesWritten = 0;
    int files = 0;
    for (int year = 0; year < years; ++year) {
        for (int event = 0; event < foldersPerYear; ++event) {
            const int folder = year * foldersPerYear + event;
            const QString relative =
                QStringLiteral("%1/%2").arg(firstYear + year).arg(QLatin1String(eventNames[event]));
            const QDir small(root.filePath(QStringLiteral("small/") + relative));
            const QDir large(root.filePath(QStringLiteral("large/") + relative));
            if (!QDir().mkpath(small.path()) || (folder == 0 && !QDir().mkpath(large.path()))) {
                std::fprintf(stderr, "cannot create %s\n", qPrintable(small.path()));
                return 1;
            }
            // Each event is shot with three bodies, the first most; stepping by 7 through the
            // 30 models over the 40 events uses every one of them.
            const int bodies[3] = { (folder * 7) % 30, (folder * 7 + 11) % 30,
                                    (folder * 7 + 22) % 30 };
            QDateTime when(QDate(firstYear + year, 1, 1).addDays(event * 45 + random.below(20)),
                           QTime(7, 0).addSecs(random.below(3 * 3600)));
            for (int i = 0; i < filesPerFolder; ++i) {
                const int roll = random.below(10);
                const int camera = bodies[roll < 6 ? 0 : (roll < 9 ? 1 : 2)];
                const Photo photo = randomPhoto(random, camera, when);
                const bool asHeif = random.chance(5);
                const bool exifAtEnd = random.chance(50);
                const bool asRaw = !asHeif && random.chance(20);
                const Camera &body = cameras().at(camera);
                const char *suffix =
                    asHeif ? (exifAtEnd ? ".HIF" : ".HEIC") : (asRaw ? body.rawSuffix : ".JPG");
                const QString name =
                    fileName(makers().at(body.maker), folder * filesPerFolder + i + 1, suffix);
                HeifPhoto heif;
                if (asHeif)
                    heif = cameraHeif(random, photo, exifAtEnd);
                const QByteArray bytes = asHeif ? heif.bytes : photoBytes(random, photo, asRaw);
                if (!write(small.filePath(name), bytes, 0, heif.imageStart, heif.imageLength)
                    || (files < largeFiles
                        && !write(large.filePath(name), bytes, largeSize, heif.imageStart,
                                  heif.imageLength))) {
                    std::fprintf(stderr, "cannot write %s\n", qPrintable(small.filePath(name)));
                    return 1;
                }
                ++files;
                ++perSuffix[QLatin1String(suffix)];
                bytesWritten += bytes.size();
                // Shots follow each other by seconds to minutes; nobody shoots after 23:00.
                when = when.addSecs(10 + random.below(900));
                if (when.time().hour() >= 23)
                    when = QDateTime(when.date().addDays(1), QTime(7, random.below(60)));
            }
        }
    }

    QFile done(stampPath);
    if (!done.open(QIODevice::WriteOnly) || done.write(stamp) < 0)
        return 1;
    QTextStream out(stdout);
    out << "corpus written to " << root.path() << ": " << files << " files, "
        << bytesWritten / (1024 * 1024) << " MiB;";
    for (auto it = perSuffix.cbegin(); it != perSuffix.cend(); ++it)
        out << ' ' << it.key() << ' ' << it.value();
    out << "; " << largeFiles << " of them padded to 25 MiB\n";
    return 0;
}
