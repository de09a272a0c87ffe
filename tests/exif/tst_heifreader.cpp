#include "tst_heifreader.h"

#include "exifbytereader.h"
#include "exifoffsets.h"
#include "exifreaderlimits.h"
#include "exiftestsupport.h"

using fixture::HeifLayout;

Q_DECLARE_METATYPE(fixture::HeifLayout)

namespace {

HeifLayout layoutWith(const std::function<void(HeifLayout &)> &change)
{
    HeifLayout layout;
    change(layout);
    return layout;
}

} // namespace

void tst_HeifReader::layoutGivesWhatAJpegGives_data()
{
    QTest::addColumn<HeifLayout>("layout");
    QTest::addColumn<bool>("bigEndian");
    QTest::addColumn<QString>("name");
    const auto row = [](const char *name, const QString &file, bool big,
                        const std::function<void(HeifLayout &)> &change) {
        QTest::newRow(name) << layoutWith(change) << big << file;
    };
    row("heic, infe 2, iloc 1, 4-byte fields", "a.heic", true, [](HeifLayout &) {});
    row("little-endian TIFF", "a.heic", false, [](HeifLayout &) {});
    row("infe version 3", "a.heic", true, [](HeifLayout &l) { l.infeVersion = 3; });
    row("iloc version 0", "a.heic", true, [](HeifLayout &l) { l.ilocVersion = 0; });
    row("iloc version 2", "a.heic", true, [](HeifLayout &l) { l.ilocVersion = 2; });
    row("8-byte offsets and lengths", "a.heic", true, [](HeifLayout &l) {
        l.offsetSize = 8;
        l.lengthSize = 8;
    });
    row("4-byte base offset", "a.heic", true, [](HeifLayout &l) { l.baseOffsetSize = 4; });
    row("8-byte base offset, iloc version 2", "a.heic", true, [](HeifLayout &l) {
        l.baseOffsetSize = 8;
        l.ilocVersion = 2;
    });
    row("offset size 0: the base offset locates the item", "a.heic", true, [](HeifLayout &l) {
        l.offsetSize = 0;
        l.baseOffsetSize = 4;
    });
    row("length size 0: the item runs to the end of the file", "a.heic", true, [](HeifLayout &l) {
        l.lengthSize = 0;
        l.exifAtEnd = true;
    });
    row("4-byte extent index", "a.heic", true, [](HeifLayout &l) { l.indexSize = 4; });
    row("8-byte extent index, iloc version 2", "a.heic", true, [](HeifLayout &l) {
        l.indexSize = 8;
        l.ilocVersion = 2;
    });
    row("three extents in reverse order", "a.heic", true, [](HeifLayout &l) { l.extents = 3; });
    row("construction method 1: in idat", "a.heic", true, [](HeifLayout &l) { l.inIdat = true; });
    row("idat in two extents, 8-byte fields", "a.heic", false, [](HeifLayout &l) {
        l.inIdat = true;
        l.extents = 2;
        l.offsetSize = 8;
        l.lengthSize = 8;
    });
    row("Exif item behind the image data", "a.heic", true, [](HeifLayout &l) {
        l.exifAtEnd = true;
        l.imageBytes = 100000;
    });
    row("meta box with a 64-bit size", "a.heic", true,
        [](HeifLayout &l) { l.metaLargeSize = true; });
    row("media data box with size 0", "a.heic", true, [](HeifLayout &l) {
        l.mdatToEnd = true;
        l.exifAtEnd = true;
    });
    row("brand heix", "a.HEIF", true, [](HeifLayout &l) {
        l.majorBrand = "heix";
        l.compatibleBrands = { "heix" };
    });
    row("brand mif1 only", "a.hif", true, [](HeifLayout &l) {
        l.majorBrand = "mif1";
        l.compatibleBrands = { "mif1" };
    });
    row("msf1 among the compatible brands", "a.heics", true, [](HeifLayout &l) {
        l.majorBrand = "abcd";
        l.compatibleBrands = { "iso8", "msf1" };
    });
    QTest::newRow("AVIF") << fixture::avifLayout() << false << "a.avif";
    row("TIFF header right behind the offset field", "a.heic", true,
        [](HeifLayout &l) { l.tiffPrefix.clear(); });
    row("no iref: the only Exif item", "a.heic", true, [](HeifLayout &l) { l.linkExif = false; });
    row("HEIF named .jpg", "a.jpg", true, [](HeifLayout &) {});
}

void tst_HeifReader::layoutGivesWhatAJpegGives()
{
    QFETCH(HeifLayout, layout);
    QFETCH(bool, bigEndian);
    QFETCH(QString, name);
    testutils::Sandbox sandbox;
    const QByteArray tiff = fixture::tiff(bigEndian, fixture::typicalTags(), true);
    bool ok = false;
    const auto heif = exiftest::read(sandbox, name, fixture::heif(tiff, layout), &ok);
    QVERIFY2(ok, "the HEIF file is recognised");
    const auto jpeg = exiftest::read(sandbox, "same.jpg", fixture::jpeg(tiff, false));
    QCOMPARE(exiftest::readings(*heif), exiftest::readings(*jpeg));
    QCOMPARE(heif->Make, QStringLiteral("Canon"));
    QCOMPARE(heif->fileTyp(), 2);
}

void tst_HeifReader::exifItemLinkedToThePrimaryIsPreferred_data()
{
    QTest::addColumn<bool>("linked");
    QTest::addColumn<QString>("make");
    QTest::newRow("thumbnail's Exif listed first, primary's linked") << true << "Canon";
    QTest::newRow("nothing links to the primary: the first listed") << false << "Thumbnail";
}

void tst_HeifReader::exifItemLinkedToThePrimaryIsPreferred()
{
    QFETCH(bool, linked);
    QFETCH(QString, make);
    testutils::Sandbox sandbox;
    HeifLayout layout;
    layout.thumbnailExifFirst = true;
    layout.linkExif = linked;
    const QByteArray bytes =
        fixture::heif(fixture::tiff(true, fixture::typicalTags(), true), layout);
    bool ok = false;
    const auto file = exiftest::read(sandbox, "t.heic", bytes, &ok);
    QVERIFY(ok);
    QCOMPARE(file->Make, make);
}

void tst_HeifReader::hostileHeifEndsWithDefinedResult_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("valid");
    const QByteArray good = fixture::photo(fixture::Format::Heic, fixture::typicalTags());
    const qsizetype metaEnd = good.indexOf("mdat") - 4;
    QTest::newRow("no Exif item") << fixture::heifWithoutExif() << false;
    QTest::newRow("meta box larger than the file") << fixture::heifMetaLargerThanFile() << true;
    // iinf then ends with meta, so iref and iloc lie inside it and are never found.
    QTest::newRow("iinf larger than meta") << fixture::heifChildLargerThanMeta() << false;
    QTest::newRow("meta behind boxes nested 20000 deep")
        << fixture::heifMetaBehindDeepNesting(20000) << true;
    QTest::newRow("item counts of 5,000,000") << fixture::heifItemCountsInTheMillions() << true;
    QTest::newRow("Exif item the last one looked at")
        << fixture::heifManyItemsBeforeExif(exiflimits::maxHeifItems - 2) << true;
    QTest::newRow("Exif item beyond the items looked at")
        << fixture::heifManyItemsBeforeExif(exiflimits::maxHeifItems - 1) << false;
    QTest::newRow("an earlier item claims 65535 extents")
        << fixture::heifExtentCountInTheMillions() << false;
    QTest::newRow("Exif item in the most extents read")
        << fixture::heifExifInPieces(exiflimits::maxHeifExtents) << true;
    QTest::newRow("Exif item in one extent more")
        << fixture::heifExifInPieces(exiflimits::maxHeifExtents + 1) << false;
    QTest::newRow("extent past the end") << fixture::heifExtentPastEnd() << false;
    QTest::newRow("base and extent offset overflow 64 bits")
        << fixture::heifOffsetOverflow() << false;
    QTest::newRow("TIFF offset outside the item") << fixture::heifTiffOffsetOutsideItem() << false;
    QTest::newRow("references that loop") << fixture::heifIrefLoop() << true;
    QTest::newRow("Exif data in another file") << fixture::heifExternalData() << false;
    QTest::newRow("cut inside the meta box")
        << fixture::truncated(good, int(metaEnd) - 10) << false;
    QTest::newRow("cut inside the Exif item")
        << fixture::truncated(good, int(metaEnd) + 40) << false;
    QTest::newRow("file-type box only")
        << fixture::box("ftyp", QByteArray("heic\0\0\0\0mif1", 12)) << false;
    QTest::newRow("file-type box without a HEIF brand")
        << fixture::box("ftyp", QByteArray("isom\0\0\0\0mp41", 12))
            + good.mid(good.indexOf("meta") - 4)
        << false;
    QTest::newRow("file-type box of size 1 with a 64-bit size of 4")
        << QByteArray("\0\0\0\1ftyp\0\0\0\0\0\0\0\4heic", 20) << false;
}

void tst_HeifReader::hostileHeifEndsWithDefinedResult()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, valid);
    testutils::Sandbox sandbox;
    bool ok = false;
    const auto file = exiftest::read(sandbox, "h.heic", bytes, &ok);
    QCOMPARE(ok, valid);
    QCOMPARE(file->fileTyp(), valid ? 2 : 0);
    QCOMPARE(file->Make, valid ? QStringLiteral("Canon") : QStringLiteral("n.a."));
    QCOMPARE(file->ISO, quint16(valid ? 400 : 0));
    QVERIFY(file->stream.bytesLoaded() <= exiflimits::maxBytesLoaded);
}

void tst_HeifReader::onlyMetaAndExifExtentAreRead_data()
{
    QTest::addColumn<bool>("exifAtEnd");
    QTest::newRow("Exif item near the start") << false;
    QTest::newRow("Exif item at the end") << true;
}

// A 25 MiB image: the reader loads the block with ftyp and meta and, when the Exif item lies at
// the end, the file's last (partial) block that holds it; then it walks the assembled item, which
// its budget counts once more. Nothing of the image data between them is loaded.
void tst_HeifReader::onlyMetaAndExifExtentAreRead()
{
    QFETCH(bool, exifAtEnd);
    testutils::Sandbox sandbox;
    HeifLayout layout;
    layout.exifAtEnd = exifAtEnd;
    layout.imageBytes = 25 * 1024 * 1024;
    const QByteArray tiff = fixture::tiff(true, fixture::typicalTags(), true);
    const QByteArray bytes = fixture::heif(tiff, layout);
    bool ok = false;
    const auto file = exiftest::read(sandbox, "big.heic", bytes, &ok);
    QVERIFY(ok);
    QCOMPARE(file->ISO, quint16(400));
    const qint64 item = 4 + 6 + tiff.size();
    const qint64 block = exiflimits::blockSize;
    const qint64 lastBlock = bytes.size() - (bytes.size() - item) / block * block;
    QCOMPARE(file->stream.bytesLoaded(), block + (exifAtEnd ? lastBlock : 0) + item);
}

void tst_HeifReader::offsetArithmeticNeverWraps_data()
{
    QTest::addColumn<quint64>("start");
    QTest::addColumn<quint64>("length");
    QTest::addColumn<quint64>("size");
    QTest::addColumn<bool>("fits");
    const quint64 max = ~quint64(0);
    QTest::newRow("empty range in empty data") << quint64(0) << quint64(0) << quint64(0) << true;
    QTest::newRow("whole data") << quint64(0) << quint64(10) << quint64(10) << true;
    QTest::newRow("one byte too long") << quint64(5) << quint64(6) << quint64(10) << false;
    QTest::newRow("empty range at the end") << quint64(10) << quint64(0) << quint64(10) << true;
    QTest::newRow("start past the end") << quint64(11) << quint64(0) << quint64(10) << false;
    QTest::newRow("start + length wraps to 0") << quint64(1) << max << quint64(10) << false;
    QTest::newRow("largest start and length") << max << max << max << false;
    QTest::newRow("last byte of the largest data") << max - 1 << quint64(1) << max << true;
}

void tst_HeifReader::offsetArithmeticNeverWraps()
{
    QFETCH(quint64, start);
    QFETCH(quint64, length);
    QFETCH(quint64, size);
    QFETCH(bool, fits);
    QCOMPARE(exifoffsets::fits(start, length, size), fits);
}

void tst_HeifReader::additionRefusesToPass64Bits_data()
{
    QTest::addColumn<quint64>("a");
    QTest::addColumn<quint64>("b");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<quint64>("sum");
    const quint64 max = ~quint64(0);
    QTest::newRow("small") << quint64(1) << quint64(2) << true << quint64(3);
    QTest::newRow("exactly the largest") << max - 16 << quint64(16) << true << max;
    QTest::newRow("one past the largest") << max - 15 << quint64(16) << false << quint64(7);
    QTest::newRow("both largest") << max << max << false << quint64(7);
}

void tst_HeifReader::additionRefusesToPass64Bits()
{
    QFETCH(quint64, a);
    QFETCH(quint64, b);
    QFETCH(bool, ok);
    QFETCH(quint64, sum);
    quint64 result = 7; // left as it is when the addition is refused
    QCOMPARE(exifoffsets::add(a, b, result), ok);
    QCOMPARE(result, sum);
}

void tst_HeifReader::byteReaderReadsBytesAsAFile()
{
    ExifByteReader reader;
    reader.openBytes(QByteArray::fromHex("010203040506"));
    QVERIFY(reader.isOpen());
    QCOMPARE(reader.size(), qint64(6));
    QCOMPARE(reader.readU32(), 0x01020304u);
    QCOMPARE(reader.readU32(), 0x05060000u); // zeros past the end, as in a file
    reader.setBigEndian(false);
    reader.seek(0);
    QCOMPARE(reader.readU16(), quint16(0x0201));
    QCOMPARE(reader.readLatin1Text(0, 3), QStringLiteral("\x01\x02\x03"));
    reader.close();
    QVERIFY(!reader.isOpen());
    QCOMPARE(reader.bytesLoaded(), qint64(6));
}
