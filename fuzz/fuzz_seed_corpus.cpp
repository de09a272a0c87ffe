// Writes the seed corpus of fuzz_exiffile: photo files from the fixture builder (every format, a
// file carrying every tag the reader knows, the malformed layouts) and, for each directory given
// on the command line, its files, each prefixed with the suffix selector byte that fuzz_exiffile
// expects and cut to the fuzzer's maximum input length.
//
// Usage: fuzz_seed_corpus <corpus directory> [sample directory ...]

#include "photofixture.h"

#include <QByteArray>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QList>
#include <QString>

#include <cstdio>
#include <functional>

namespace {

// Suffix selectors of fuzz_exiffile (byte 0 of an input, modulo 12).
enum Selector : char {
    Cr2 = 0,
    Cr3 = 1,
    Raf = 2,
    Nef = 3,
    Arw = 4,
    Rw2 = 5,
    Orf = 6,
    Dng = 7,
    Jpg = 8,
    Unknown = 9,
    Heic = 10,
    Avif = 11,
    UpperCase = char(0x80)
};

constexpr qsizetype maxInputLength = 65536; // -max_len of run-fuzzer.sh

char selectorForSuffix(const QString &fileName)
{
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    const QList<std::pair<QString, Selector>> known = {
        { QStringLiteral("cr2"), Cr2 },   { QStringLiteral("cr3"), Cr3 },
        { QStringLiteral("raf"), Raf },   { QStringLiteral("nef"), Nef },
        { QStringLiteral("arw"), Arw },   { QStringLiteral("rw2"), Rw2 },
        { QStringLiteral("orf"), Orf },   { QStringLiteral("dng"), Dng },
        { QStringLiteral("jpg"), Jpg },   { QStringLiteral("jpeg"), Jpg },
        { QStringLiteral("tif"), Nef },   { QStringLiteral("tiff"), Nef },
        { QStringLiteral("heic"), Heic }, { QStringLiteral("heif"), Heic },
        { QStringLiteral("hif"), Heic },  { QStringLiteral("avif"), Avif },
    };
    for (const auto &[name, selector] : known) {
        if (name == suffix)
            return selector;
    }
    return Unknown;
}

int written = 0;
int failed = 0;

void writeSeed(const QString &directory, const QString &name, char selector,
               const QByteArray &bytes)
{
    QFile file(directory + QLatin1Char('/') + name);
    const QByteArray input = selector + bytes.left(maxInputLength - 1);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate)
        && file.write(input) == input.size()) {
        ++written;
    } else {
        ++failed;
        std::fprintf(stderr, "cannot write %s\n", qPrintable(file.fileName()));
    }
}

fixture::PhotoTags fullTags()
{
    fixture::PhotoTags tags;
    tags.make = QStringLiteral("SONY");
    tags.model = QStringLiteral("ILCE-7M3");
    tags.lensModel = QStringLiteral("FE 24-70mm F2.8 GM");
    tags.dateTimeOriginal = QStringLiteral("2023:07:14 18:32:05");
    tags.modifyDate = QStringLiteral("2023:07:15 09:00:00");
    tags.iso = 400;
    tags.meteringMode = 5;
    tags.exposureProgram = 3;
    tags.focalLengthIn35mm = 75;
    tags.fNumber = fixture::Rational { 28, 10 };
    tags.exposureTime = fixture::Rational { 1, 250 };
    tags.focalLength = fixture::Rational { 50, 1 };
    return tags;
}

// A TIFF whose directories hold every tag the reader fills, each in the form it reads: IFD0, the
// Exif and GPS directories and an IFD1 with a thumbnail.
QByteArray everyKnownTag(bool bigEndian)
{
    using fixture::Rational;
    fixture::TiffBuilder t(bigEndian);
    const auto shorts = [&t](std::initializer_list<quint16> values) {
        QByteArray bytes;
        for (quint16 v : values)
            bytes += t.u16(v);
        return bytes;
    };
    const auto longs = [&t](std::initializer_list<quint32> values) {
        QByteArray bytes;
        for (quint32 v : values)
            bytes += t.u32(v);
        return bytes;
    };
    const auto srational = [&t](qint32 num, qint32 den) {
        return t.u32(quint32(num)) + t.u32(quint32(den));
    };

    const int ifd0 = t.addDirectory();
    const int exif = t.addDirectory();
    const int gps = t.addDirectory();
    const int ifd1 = t.addDirectory();

    t.addLong(ifd0, 0x00FE, 0);
    t.addLong(ifd0, 0x0100, 6000);
    t.addLong(ifd0, 0x0101, 4000);
    t.addShort(ifd0, 0x0102, 8);
    t.addShort(ifd0, 0x0103, 32767);
    t.addShort(ifd0, 0x0106, 32803);
    t.addAscii(ifd0, 0x010E, QStringLiteral("A description"));
    t.addAscii(ifd0, 0x010F, QStringLiteral("SONY"));
    t.addAscii(ifd0, 0x0110, QStringLiteral("ILCE-7M3"));
    t.addLong(ifd0, 0x0111, 0x1000);
    t.addShort(ifd0, 0x0112, 6);
    t.addShort(ifd0, 0x0115, 3);
    t.addLong(ifd0, 0x0116, 4000);
    t.addLong(ifd0, 0x0117, 0x2000);
    t.addRational(ifd0, 0x011A, Rational { 300, 1 });
    t.addRational(ifd0, 0x011B, Rational { 300, 1 });
    t.addShort(ifd0, 0x011C, 1);
    t.addShort(ifd0, 0x0128, 2);
    t.addAscii(ifd0, 0x0131, QStringLiteral("ILCE-7M3 v3.01"));
    t.addAscii(ifd0, 0x0132, QStringLiteral("2023:07:15 09:00:00"));
    t.addAscii(ifd0, 0x013B, QStringLiteral("Someone"));
    t.addLong(ifd0, 0x0201, 0x40);
    t.addLong(ifd0, 0x0202, 0x10);
    t.addShort(ifd0, 0x7000, 2);
    t.addEntry(ifd0, { 0x7010, 3, 4, shorts({ 0, 4096, 8192, 16383 }), false, {} });
    t.addShort(ifd0, 0x7034, 1);
    t.addShort(ifd0, 0x7036, 17);
    t.addEntry(ifd0, { 0x74C7, 4, 2, longs({ 12, 8 }), false, {} });
    t.addEntry(ifd0, { 0x74C8, 4, 2, longs({ 6000, 4000 }), false, {} });
    t.addEntry(ifd0, { 0x828D, 3, 2, shorts({ 2, 2 }), false, {} });
    t.addEntry(ifd0, { 0x828E, 1, 4, QByteArray("\x00\x01\x01\x02", 4), false, {} });
    t.addPointer(ifd0, 0x8769, exif);
    t.addPointer(ifd0, 0x8825, gps);
    t.addEntry(ifd0, { 0xC612, 1, 4, QByteArray("\x01\x04\x00\x00", 4), false, {} });
    t.addEntry(ifd0, { 0xC613, 1, 4, QByteArray("\x01\x01\x00\x00", 4), false, {} });
    t.addAscii(ifd0, 0xC614, QStringLiteral("Sony ILCE-7M3"));
    t.addEntry(ifd0, { 0xC619, 3, 2, shorts({ 2, 2 }), false, {} });
    t.addLong(ifd0, 0xC61A, 512);
    t.addLong(ifd0, 0xC61D, 16383);
    t.addEntry(ifd0, { 0xC61F, 4, 2, longs({ 8, 8 }), false, {} });
    t.addEntry(ifd0, { 0xC620, 4, 2, longs({ 6000, 4000 }), false, {} });
    t.addLong(ifd0, 0xC62D, 0);
    t.addRational(ifd0, 0xC632, Rational { 1, 1 });
    t.setNext(ifd0, ifd1);

    t.addRational(exif, 0x829A, Rational { 1, 250 });
    t.addRational(exif, 0x829D, Rational { 28, 10 });
    t.addShort(exif, 0x8822, 3);
    t.addShort(exif, 0x8827, 400);
    t.addShort(exif, 0x8830, 2);
    t.addLong(exif, 0x8832, 400);
    t.addEntry(exif, { 0x9000, 7, 4, QByteArray("0231"), false, {} });
    t.addAscii(exif, 0x9003, QStringLiteral("2023:07:14 18:32:05"));
    t.addAscii(exif, 0x9004, QStringLiteral("2023:07:14 18:32:05"));
    t.addAscii(exif, 0x9010, QStringLiteral("+02:00"));
    t.addAscii(exif, 0x9011, QStringLiteral("+02:00"));
    t.addAscii(exif, 0x9012, QStringLiteral("+02:00"));
    t.addEntry(exif, { 0x9101, 7, 4, QByteArray("\x01\x02\x03\x00", 4), false, {} });
    t.addRational(exif, 0x9102, Rational { 8, 1 });
    t.addEntry(exif, { 0x9201, 10, 1, srational(8, 1), false, {} });
    t.addEntry(exif, { 0x9203, 10, 1, srational(-1234, 100), false, {} });
    t.addEntry(exif, { 0x9204, 10, 1, srational(-1, 3), false, {} });
    t.addRational(exif, 0x9205, Rational { 297, 100 });
    t.addShort(exif, 0x9207, 5);
    t.addShort(exif, 0x9208, 21);
    t.addShort(exif, 0x9209, 16);
    t.addRational(exif, 0x920A, Rational { 50, 1 });
    t.addEntry(exif, { 0x927C, 7, 16, QByteArray("SONY DSC \0\0\0\0\0\0\0", 16), false, {} });
    t.addEntry(exif, { 0x9286, 7, 13, QByteArray("ASCII\0\0\0Hello", 13), false, {} });
    t.addEntry(exif, { 0xA000, 7, 4, QByteArray("0100"), false, {} });
    t.addShort(exif, 0xA001, 1);
    t.addLong(exif, 0xA002, 6000);
    t.addLong(exif, 0xA003, 4000);
    t.addLong(exif, 0xA005, 0);
    t.addEntry(exif, { 0xA300, 7, 1, QByteArray("\x03\x00\x00\x00", 4), false, {} });
    t.addEntry(exif, { 0xA301, 7, 1, QByteArray("\x01\x00\x00\x00", 4), false, {} });
    t.addShort(exif, 0xA401, 0);
    t.addShort(exif, 0xA402, 2);
    t.addShort(exif, 0xA403, 1);
    t.addRational(exif, 0xA404, Rational { 16, 10 });
    t.addShort(exif, 0xA405, 75);
    t.addShort(exif, 0xA406, 3);
    t.addShort(exif, 0xA408, 1);
    t.addShort(exif, 0xA409, 2);
    t.addShort(exif, 0xA40A, 2);
    t.addRationals(
        exif, 0xA432,
        { Rational { 24, 1 }, Rational { 70, 1 }, Rational { 28, 10 }, Rational { 28, 10 } });
    t.addAscii(exif, 0xA434, QStringLiteral("FE 24-70mm F2.8 GM"));
    t.addRational(exif, 0xA500, Rational { 22, 10 });

    t.addEntry(gps, { 0x0000, 1, 4, QByteArray("\x02\x03\x00\x00", 4), false, {} });
    t.addEntry(gps, { 0x0001, 2, 2, QByteArray("N\0", 2), false, {} });
    t.addRationals(gps, 0x0002, { Rational { 48, 1 }, Rational { 8, 1 }, Rational { 2345, 100 } });
    t.addEntry(gps, { 0x0003, 2, 2, QByteArray("E\0", 2), false, {} });
    t.addRationals(gps, 0x0004, { Rational { 11, 1 }, Rational { 34, 1 }, Rational { 5, 1 } });
    t.addRationals(gps, 0x0007, { Rational { 16, 1 }, Rational { 32, 1 }, Rational { 5, 1 } });
    t.addEntry(gps, { 0x0009, 2, 2, QByteArray("A\0", 2), false, {} });
    t.addEntry(gps, { 0x000A, 2, 2, QByteArray("3\0", 2), false, {} });
    t.addAscii(gps, 0x0012, QStringLiteral("WGS-84"));
    t.addAscii(gps, 0x001D, QStringLiteral("2023:07:14"));

    t.addLong(ifd1, 0x0201, 0x40);
    t.addLong(ifd1, 0x0202, 0x20);
    return t.build();
}

// One HEIF seed per item layout the reader knows, each holding the given TIFF structure.
void writeHeifLayoutSeeds(const QString &dir, const QByteArray &tiff)
{
    const QList<std::pair<const char *, std::function<void(fixture::HeifLayout &)>>> layouts = {
        { "infe3-iloc2-8byte",
          [](fixture::HeifLayout &l) {
              l.infeVersion = 3;
              l.ilocVersion = 2;
              l.offsetSize = l.lengthSize = l.baseOffsetSize = 8;
          } },
        { "iloc0", [](fixture::HeifLayout &l) { l.ilocVersion = 0; } },
        { "idat-two-extents",
          [](fixture::HeifLayout &l) {
              l.inIdat = true;
              l.extents = 2;
          } },
        { "three-extents-index",
          [](fixture::HeifLayout &l) {
              l.extents = 3;
              l.indexSize = 4;
          } },
        { "base-offset-only",
          [](fixture::HeifLayout &l) {
              l.offsetSize = 0;
              l.baseOffsetSize = 4;
          } },
        { "to-end-sizes-0-and-1",
          [](fixture::HeifLayout &l) {
              l.lengthSize = 0;
              l.exifAtEnd = true;
              l.mdatToEnd = true;
              l.metaLargeSize = true;
          } },
        { "thumbnail-exif-first", [](fixture::HeifLayout &l) { l.thumbnailExifFirst = true; } },
        { "avif-no-prefix",
          [](fixture::HeifLayout &l) {
              l = fixture::avifLayout();
              l.tiffPrefix.clear();
          } },
    };
    for (const auto &[name, change] : layouts) {
        fixture::HeifLayout layout;
        change(layout);
        writeSeed(dir, QStringLiteral("fixture-heif-%1").arg(QLatin1String(name)), Heic,
                  fixture::heif(tiff, layout));
    }
}

void writeFixtureSeeds(const QString &dir)
{
    using fixture::Format;
    const fixture::PhotoTags typical = fixture::typicalTags();
    const fixture::PhotoTags full = fullTags();
    const struct
    {
        const char *name;
        Format format;
        char selector;
    } formats[] = {
        { "tiff-little", Format::TiffLittle, Nef },
        { "tiff-big", Format::TiffBig, Dng },
        { "jpeg", Format::Jpeg, Jpg },
        { "jpeg-app0", Format::JpegApp0, Jpg },
        { "raf", Format::Raf, Raf },
        { "rw2", Format::Rw2, Rw2 },
        { "orf", Format::Orf, Orf },
        { "cr3", Format::Cr3, Cr3 },
        { "heic", Format::Heic, Heic },
        { "avif", Format::Avif, Avif },
    };
    for (const auto &f : formats) {
        const QString name = QLatin1String(f.name);
        writeSeed(dir, QStringLiteral("fixture-%1-typical").arg(name), f.selector,
                  fixture::photo(f.format, typical));
        writeSeed(dir, QStringLiteral("fixture-%1-full").arg(name), f.selector,
                  fixture::photo(f.format, full));
    }
    // The same bytes under other names: upper-case suffixes and one the reader doesn't know.
    writeSeed(dir, QStringLiteral("fixture-cr3-upper-case"), char(Cr3 | UpperCase),
              fixture::photo(Format::Cr3, typical));
    writeSeed(dir, QStringLiteral("fixture-jpeg-unknown-suffix"), Unknown,
              fixture::photo(Format::Jpeg, typical));
    writeSeed(dir, QStringLiteral("fixture-tiff-as-cr2"), Cr2,
              fixture::photo(Format::TiffLittle, full));
    writeSeed(dir, QStringLiteral("fixture-tiff-as-arw"), Arw,
              fixture::photo(Format::TiffLittle, full));

    writeSeed(dir, QStringLiteral("fixture-every-known-tag-little"), Dng, everyKnownTag(false));
    writeSeed(dir, QStringLiteral("fixture-every-known-tag-big"), Nef, everyKnownTag(true));
    writeSeed(dir, QStringLiteral("fixture-every-known-tag-jpeg"), Jpg,
              fixture::jpeg(everyKnownTag(false), false));
    writeSeed(dir, QStringLiteral("fixture-every-known-tag-raf"), char(Raf | UpperCase),
              fixture::raf(fixture::jpeg(everyKnownTag(true), true)));
    writeHeifLayoutSeeds(dir, everyKnownTag(false));

    const struct
    {
        const char *name;
        QByteArray bytes;
        char selector;
    } malformed[] = {
        { "zero-length", fixture::zeroLengthFile(), Dng },
        { "ifd-loop-to-itself", fixture::ifdLoopToItself(), Dng },
        { "ifd-loop-to-earlier", fixture::ifdLoopToEarlier(), Dng },
        { "exif-pointer-loop", fixture::exifPointerLoop(), Dng },
        { "exif-pointer-to-ifd0", fixture::exifPointerToIfd0(), Dng },
        { "entry-count-65535", fixture::entryCount65535(), Dng },
        { "offset-past-end", fixture::offsetPastEnd(), Dng },
        { "count-times-size-overflow", fixture::countTimesSizeOverflow(), Dng },
        { "arrays-over-capacity", fixture::arraysOverCapacity(), Dng },
        { "unterminated-text", fixture::unterminatedText(), Dng },
        { "long-chain", fixture::longChain(64), Dng },
        { "cr3-box-size-larger-than-file", fixture::cr3BoxSizeLargerThanFile(), Cr3 },
        { "cr3-box-size-zero", fixture::cr3BoxSizeZero(), Cr3 },
        { "cr3-without-cmt-boxes", fixture::cr3WithoutCmtBoxes(), Cr3 },
        { "jpeg-ending-inside-app1", fixture::jpegEndingInsideApp1(), Jpg },
        { "heif-without-exif", fixture::heifWithoutExif(), Heic },
        { "heif-meta-larger-than-file", fixture::heifMetaLargerThanFile(), Heic },
        { "heif-child-larger-than-meta", fixture::heifChildLargerThanMeta(), Heic },
        { "heif-deep-nesting", fixture::heifMetaBehindDeepNesting(64), Heic },
        { "heif-item-counts-in-the-millions", fixture::heifItemCountsInTheMillions(), Heic },
        { "heif-many-items", fixture::heifManyItemsBeforeExif(40), Heic },
        { "heif-extent-count-in-the-millions", fixture::heifExtentCountInTheMillions(), Heic },
        { "heif-exif-in-pieces", fixture::heifExifInPieces(7), Heic },
        { "heif-extent-past-end", fixture::heifExtentPastEnd(), Heic },
        { "heif-offset-overflow", fixture::heifOffsetOverflow(), Heic },
        { "heif-tiff-offset-outside-item", fixture::heifTiffOffsetOutsideItem(), Heic },
        { "heif-iref-loop", fixture::heifIrefLoop(), Heic },
        { "heif-external-data", fixture::heifExternalData(), Heic },
    };
    for (const auto &m : malformed)
        writeSeed(dir, QStringLiteral("fixture-malformed-%1").arg(QLatin1String(m.name)),
                  m.selector, m.bytes);
}

void writeDirectorySeeds(const QString &corpus, const QString &source)
{
    QDirIterator it(source, QDir::Files | QDir::Readable);
    while (it.hasNext()) {
        const QString path = it.next();
        const QString suffix = QFileInfo(path).suffix().toLower();
        if (suffix == QLatin1String("md") || suffix == QLatin1String("csv"))
            continue; // the folders' descriptions, not photos
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            ++failed;
            std::fprintf(stderr, "cannot read %s\n", qPrintable(path));
            continue;
        }
        const QString name =
            QStringLiteral("%1-%2").arg(QDir(source).dirName(), QFileInfo(path).fileName());
        writeSeed(corpus, name, selectorForSuffix(path), file.read(maxInputLength - 1));
    }
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s <corpus directory> [sample directory ...]\n", argv[0]);
        return 2;
    }
    const QString corpus = QString::fromLocal8Bit(argv[1]);
    if (!QDir().mkpath(corpus)) {
        std::fprintf(stderr, "cannot create %s\n", argv[1]);
        return 1;
    }
    writeFixtureSeeds(corpus);
    for (int i = 2; i < argc; ++i)
        writeDirectorySeeds(corpus, QString::fromLocal8Bit(argv[i]));
    std::printf("%d seeds written to %s\n", written, qPrintable(corpus));
    return failed == 0 ? 0 : 1;
}
