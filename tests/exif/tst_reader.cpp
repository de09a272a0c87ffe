#include "tst_reader.h"

#include "exiftagcatalogue.h"
#include "exiftestsupport.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

using fixture::Format;
using fixture::TiffBuilder;

Q_DECLARE_METATYPE(fixture::Format)

void tst_Reader::readsEveryFormat_data()
{
    QTest::addColumn<Format>("format");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("fileType");
    QTest::newRow("TIFF little-endian") << Format::TiffLittle << "a.tif" << 1;
    QTest::newRow("TIFF big-endian") << Format::TiffBig << "a.nef" << 1;
    QTest::newRow("JPEG, APP1 after SOI") << Format::Jpeg << "a.jpg" << 2;
    QTest::newRow("JPEG, APP0 then APP1") << Format::JpegApp0 << "a.jpeg" << 2;
    QTest::newRow("RAF") << Format::Raf << "a.raf" << 2;
    QTest::newRow("RW2") << Format::Rw2 << "a.rw2" << 1;
    QTest::newRow("ORF") << Format::Orf << "a.orf" << 1;
    QTest::newRow("CR3") << Format::Cr3 << "a.cr3" << 1;
}

void tst_Reader::readsEveryFormat()
{
    QFETCH(Format, format);
    QFETCH(QString, name);
    QFETCH(int, fileType);
    testutils::Sandbox sandbox;
    const fixture::PhotoTags tags = fixture::typicalTags();
    bool ok = false;
    const auto file = exiftest::read(sandbox, name, fixture::photo(format, tags), &ok);
    QVERIFY2(ok, "a well-formed file is recognised");
    QCOMPARE(file->fileTyp(), fileType);
    QCOMPARE(file->fileName(), name);
    QCOMPARE(file->fileNameComplete(), sandbox.filePath(name));
    QCOMPARE(file->Make, tags.make);
    QCOMPARE(file->Model, tags.model);
    QCOMPARE(file->LensModel, tags.lensModel);
    QCOMPARE(file->DateTimeOriginal, tags.dateTimeOriginal);
    QCOMPARE(file->ModifyDate, tags.modifyDate);
    QCOMPARE(file->ISO, quint16(400));
    QCOMPARE(file->FocalLengthIn35mmFormat, quint16(50));
    QCOMPARE(file->exif_0x920A_FocalLengthAsReal(), 50.0);
    QCOMPARE(file->exif_0x829D_FNumberAsString(), QStringLiteral("2.8"));
    QCOMPARE(file->exif_0x829A_ExposureTime(), 0.004);
    QCOMPARE(file->exif_0x829A_ExposureTimeAsString(), QStringLiteral("1/250"));
    QCOMPARE(file->exif_0x9207_MeteringModeAsString(), QStringLiteral("Matrix"));
    QCOMPARE(file->exif_0x8822_ExpProgAsString(), QStringLiteral("Av [Aperture-priority]"));
}

// Segments are given as marker + payload; the Exif APP1 is always the last one.
void tst_Reader::jpegSegmentOrder_data()
{
    QTest::addColumn<QList<QByteArray>>("before");
    QTest::addColumn<bool>("valid");
    const QByteArray app0 = QByteArray::fromHex("FFE000104A46494600010100000100010000");
    const QByteArray app2 = QByteArray::fromHex("FFE2000A0102030405060708");
    QByteArray xmp = "http://ns.adobe.com/xap/1.0/";
    xmp += '\0';
    xmp += "<x:xmpmeta/>";
    const QByteArray app1Xmp = QByteArray::fromHex("FFE1")
        + QByteArray::fromHex(QByteArray::number(2 + xmp.size(), 16).rightJustified(4, '0')) + xmp;
    QTest::newRow("APP1 directly after SOI") << QList<QByteArray>() << true;
    QTest::newRow("APP1 after one APP0") << QList<QByteArray> { app0 } << true;
    QTest::newRow("APP1 after APP0 and APP2") << QList<QByteArray> { app0, app2 } << false;
    QTest::newRow("APP1 after one APP2") << QList<QByteArray> { app2 } << false;
    QTest::newRow("XMP APP1 before the Exif APP1") << QList<QByteArray> { app1Xmp } << false;
    QTest::newRow("APP0, then XMP APP1") << QList<QByteArray> { app0, app1Xmp } << false;
}

void tst_Reader::jpegSegmentOrder()
{
    QFETCH(QList<QByteArray>, before);
    QFETCH(bool, valid);
    testutils::Sandbox sandbox;
    // The Exif JPEG without its SOI, with the other segments put in front.
    const QByteArray exifJpeg = fixture::photo(Format::Jpeg, fixture::typicalTags());
    QByteArray bytes = QByteArray::fromHex("FFD8");
    for (const QByteArray &segment : before)
        bytes += segment;
    bytes += exifJpeg.mid(2);
    bool ok = false;
    const auto file = exiftest::read(sandbox, "order.jpg", bytes, &ok);
    QCOMPARE(ok, valid);
    QCOMPARE(file->fileTyp(), valid ? 2 : 0);
    QCOMPARE(file->Make, valid ? QStringLiteral("Canon") : QStringLiteral("n.a."));
}

void tst_Reader::rawMagicOnlyWithItsSuffix_data()
{
    QTest::addColumn<bool>("bigEndian");
    QTest::addColumn<int>("magic");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("valid");
    QTest::newRow("magic 85 in .RW2") << false << 0x55 << "P.RW2" << true;
    QTest::newRow("magic 85 in .rw2") << false << 0x55 << "p.rw2" << true;
    QTest::newRow("magic 85 in .Rw2") << false << 0x55 << "p.Rw2" << true;
    QTest::newRow("magic 85 in .tif") << false << 0x55 << "p.tif" << false;
    QTest::newRow("magic 85 in .orf") << false << 0x55 << "p.orf" << false;
    QTest::newRow("magic 85 in a name merely holding RW2") << false << 0x55 << "rw2.jpg" << false;
    QTest::newRow("magic 85 big-endian in .RW2") << true << 0x55 << "p.RW2" << false;
    QTest::newRow("magic 0x4F52 in .ORF") << false << 0x4F52 << "o.ORF" << true;
    QTest::newRow("magic 0x4F52 in .orf") << false << 0x4F52 << "o.orf" << true;
    QTest::newRow("magic 0x4F52 in .rw2") << false << 0x4F52 << "o.rw2" << false;
    QTest::newRow("magic 0x4F52 big-endian in .ORF") << true << 0x4F52 << "o.ORF" << false;
    QTest::newRow("magic 0x5352 (R, S) in .ORF") << false << 0x5352 << "o.ORF" << false;
    QTest::newRow("magic 42 under any name") << false << 42 << "t.xyz" << true;
    QTest::newRow("magic 42 big-endian under any name") << true << 42 << "t" << true;
    QTest::newRow("magic 43 (BigTIFF) is not read") << false << 43 << "t.tif" << false;
}

void tst_Reader::rawMagicOnlyWithItsSuffix()
{
    QFETCH(bool, bigEndian);
    QFETCH(int, magic);
    QFETCH(QString, name);
    QFETCH(bool, valid);
    testutils::Sandbox sandbox;
    const QByteArray bytes = fixture::tiff(bigEndian, fixture::typicalTags(), true, quint16(magic));
    bool ok = false;
    const auto file = exiftest::read(sandbox, name, bytes, &ok);
    QCOMPARE(ok, valid);
    QCOMPARE(file->fileTyp(), valid ? 1 : 0);
    QCOMPARE(file->bigEndian, bigEndian);
    QCOMPARE(file->Model, valid ? QStringLiteral("Canon EOS 5D Mark IV") : QStringLiteral("n.a."));
}

void tst_Reader::thumbnailsOfIfd0AndIfd1AreKeptApart()
{
    testutils::Sandbox sandbox;
    TiffBuilder b;
    for (int i = 0; i < 3; ++i) {
        const int dir = b.addDirectory();
        b.addLong(dir, 0x0201, quint32(1000 * (i + 1)));
        b.addLong(dir, 0x0202, quint32(10 * (i + 1)));
        if (i > 0)
            b.setNext(i - 1, dir);
    }
    const auto file = exiftest::read(sandbox, "thumbs.tif", b.build());
    QCOMPARE(file->ThumbnailOffset[0], 1000u);
    QCOMPARE(file->ThumbnailLength[0], 10u);
    QCOMPARE(file->ThumbnailOffset[1], 2000u);
    QCOMPARE(file->ThumbnailLength[1], 20u);
    QCOMPARE(file->ifdCounter, 3);
}

void tst_Reader::missingTagsKeepTheirDefaults()
{
    testutils::Sandbox sandbox;
    fixture::PhotoTags tags;
    tags.make = QStringLiteral("Nikon");
    const auto file = exiftest::read(sandbox, "sparse.jpg", fixture::photo(Format::Jpeg, tags));
    QCOMPARE(file->Make, QStringLiteral("Nikon"));
    QCOMPARE(file->DateTimeOriginal, QStringLiteral("n.a."));
    QCOMPARE(file->Model, QStringLiteral("n.a."));
    QCOMPARE(file->LensModel, QStringLiteral("n.a."));
    QCOMPARE(file->ModifyDate, QStringLiteral("n.a."));
    QCOMPARE(file->ISO, quint16(0));
    QCOMPARE(file->exif_0x920A_FocalLengthAsReal(), 0.0);
    QCOMPARE(file->exif_0x829D_FNumberAsString(), QStringLiteral("0.0"));
    QCOMPARE(file->exif_0x829A_ExposureTime(), 0.0);
    QCOMPARE(file->exif_0x829A_ExposureTimeAsString(), QStringLiteral("n.a"));
    QCOMPARE(file->exif_0x9207_MeteringModeAsString(), QStringLiteral("n.a"));
    QCOMPARE(file->exif_0x8822_ExpProgAsString(), QStringLiteral("not defined"));
}

// "AB\0\0" in the value field is, read little-endian, the offset 0x4241 = 16961.
void tst_Reader::shortTextIsReadFromTheOffsetItsBytesForm()
{
    testutils::Sandbox sandbox;
    TiffBuilder b;
    const int ifd0 = b.addDirectory();
    b.addEntry(ifd0, { 0x010F, 2, 4, QByteArray("AB\0\0", 4), false, {} });
    QByteArray bytes = b.build();
    bytes = bytes.leftJustified(0x4241, '\0');
    bytes += QByteArray("FromOffset") + '\0';
    const auto file = exiftest::read(sandbox, "inline.tif", bytes);
    QCOMPARE(file->Make, QStringLiteral("FromOffset"));
}

void tst_Reader::emptyTextsAreNeverNull()
{
    testutils::Sandbox sandbox;
    fixture::PhotoTags tags;
    tags.make = QStringLiteral("");
    tags.model = QStringLiteral("");
    tags.lensModel = QStringLiteral("");
    tags.dateTimeOriginal = QStringLiteral("");
    tags.modifyDate = QStringLiteral("");
    const auto file =
        exiftest::read(sandbox, "empty.tif", fixture::photo(Format::TiffLittle, tags));
    const QString texts[] = { file->Make, file->Model, file->LensModel, file->DateTimeOriginal,
                              file->ModifyDate };
    for (const QString &text : texts) {
        QVERIFY2(text.isEmpty(), qPrintable(text));
        QVERIFY2(!text.isNull(), "an empty text read from a file is \"\", not a null QString");
    }
    const TExifFile blank;
    QVERIFY2(!blank.ExifVersion.isNull() && !blank.DNGVersion.isNull()
                 && !blank.UniqueCameraModel.isNull() && !blank.GPSMapDatum.isNull(),
             "empty defaults are not null either");
}

void tst_Reader::rafIsReadFromByte148_data()
{
    QTest::addColumn<int>("jpegStart");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("valid");
    QTest::newRow("JPEG at 148 in .raf") << 148 << "f.raf" << true;
    QTest::newRow("JPEG at 148 in .RAF") << 148 << "f.RAF" << true;
    QTest::newRow("JPEG at 150 in .raf") << 150 << "f.raf" << false;
    QTest::newRow("JPEG at 146 in .raf") << 146 << "f.raf" << false;
    QTest::newRow("RAF bytes under a .jpg name") << 148 << "f.jpg" << false;
}

void tst_Reader::rafIsReadFromByte148()
{
    QFETCH(int, jpegStart);
    QFETCH(QString, name);
    QFETCH(bool, valid);
    testutils::Sandbox sandbox;
    const QByteArray raf = fixture::photo(Format::Raf, fixture::typicalTags());
    const QByteArray bytes = raf.left(148).leftJustified(jpegStart, '\0', true) + raf.mid(148);
    bool ok = false;
    const auto file = exiftest::read(sandbox, name, bytes, &ok);
    QCOMPARE(ok, valid);
    if (valid) {
        QCOMPARE(file->tiffBase, qint64(148 + 2 + 4 + 6));
        QCOMPARE(file->ISO, quint16(400));
    }
}

void tst_Reader::cr3TakesIfd0FromCmt1AndExifFromCmt2_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow(".CR3") << "c.CR3";
    QTest::newRow(".cr3 in lower case") << "c.cr3";
    QTest::newRow(".Cr3 in mixed case") << "c.Cr3";
}

void tst_Reader::cr3TakesIfd0FromCmt1AndExifFromCmt2()
{
    QFETCH(QString, name);
    testutils::Sandbox sandbox;
    const fixture::PhotoTags tags = fixture::typicalTags();
    bool ok = false;
    const auto file = exiftest::read(sandbox, name, fixture::cr3(tags), &ok);
    QVERIFY(ok);
    QCOMPARE(file->fileTyp(), 1);
    QVERIFY2(file->cr3Ifd0Pos == file->cr3Ifd0Base + 8, "IFD0 follows the 8-byte TIFF header");
    QVERIFY2(file->cr3ExifIfdBase > file->cr3Ifd0Base, "CMT2 follows CMT1");
    QCOMPARE(file->Make, tags.make); // CMT1
    QCOMPARE(file->Model, tags.model);
    QCOMPARE(file->ModifyDate, tags.modifyDate);
    QCOMPARE(file->LensModel, tags.lensModel); // CMT2
    QCOMPARE(file->DateTimeOriginal, tags.dateTimeOriginal);
    QCOMPARE(file->exif_0x829A_ExposureTimeAsString(), QStringLiteral("1/250"));
    QCOMPARE(file->exif_0x829D_FNumberAsString(), QStringLiteral("2.8"));
    QCOMPARE(file->ISO, quint16(400));
    QCOMPARE(file->ifdCounter, 0);
}

void tst_Reader::cr3FileTypeBoxBrands_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<QStringList>("brands");
    QTest::newRow("size 16: no compatible brands") << 16 << QStringList();
    QTest::newRow("size 20: one") << 20 << QStringList { "crx " };
    QTest::newRow("size 24: two") << 24 << QStringList { "crx ", "isom" };
    QTest::newRow("size 8: smaller than its fields") << 8 << QStringList();
}

void tst_Reader::cr3FileTypeBoxBrands()
{
    QFETCH(int, size);
    QFETCH(QStringList, brands);
    testutils::Sandbox sandbox;
    QByteArray bytes = QByteArray::fromHex(QByteArray::number(size, 16).rightJustified(8, '0'));
    bytes += QByteArray("ftypcrx ") + QByteArray::fromHex("00000001") + "crx isom";
    bytes += QByteArray(64, '\0');
    const QString path = sandbox.filePath("box.cr3");
    QVERIFY(fixture::writeBytes(path, bytes));
    TExifFile file(path);
    CR3FileTypeBox box;
    file.read_CR3FileTypBox(box);
    QCOMPARE(box.size, size);
    QCOMPARE(box.type, QStringLiteral("ftyp"));
    QCOMPARE(box.majorBrand, QStringLiteral("crx "));
    QCOMPARE(box.minorVersion, 1u);
    QCOMPARE(box.compatibleBrands, brands);
    QCOMPARE(file.stream.pos(), qint64(qMax(size, 16)));
}

void tst_Reader::gpsDirectoryIsWalked()
{
    testutils::Sandbox sandbox;
    TiffBuilder b;
    const int ifd0 = b.addDirectory();
    const int gps = b.addDirectory();
    b.addAscii(ifd0, 0x010F, QStringLiteral("GPS cam"));
    b.addPointer(ifd0, 0x8825, gps);
    b.addEntry(gps, { 0x0000, 1, 4, QByteArray::fromHex("02020000"), false, {} });
    b.addEntry(gps, { 0x0001, 2, 2, QByteArray("N\0", 2), false, {} });
    b.addRationals(gps, 0x0002, { { 48, 1 }, { 8, 1 }, { 0, 1 } });
    b.addEntry(gps, { 0x0003, 2, 2, QByteArray("E\0", 2), false, {} });
    b.addRationals(gps, 0x0004, { { 11, 1 }, { 34, 1 }, { 3045, 100 } });
    b.addRationals(gps, 0x0007, { { 10, 1 }, { 20, 1 }, { 0, 0 } });
    b.addEntry(gps, { 0x0009, 2, 2, QByteArray("A\0", 2), false, {} });
    b.addEntry(gps, { 0x000A, 2, 2, QByteArray("3\0", 2), false, {} });
    b.addAscii(gps, 0x0012, QStringLiteral("WGS-84"));
    b.addAscii(gps, 0x001D, QStringLiteral("2023:07:14"));
    b.addShort(gps, 0x0006, 500); // GPSAltitude is skipped
    const auto file = exiftest::read(sandbox, "gps.tif", b.build());
    QCOMPARE(file->Make, QStringLiteral("GPS cam"));
    QCOMPARE(file->gpsIfdPos, qint64(b.directoryOffset(gps)));
    QCOMPARE(file->GPSVersionID, QStringLiteral("2.2.0.0"));
    QCOMPARE(file->GPSLatitudeRef, QStringLiteral("N"));
    QCOMPARE(file->GPSLongitudeRef, QStringLiteral("E"));
    QCOMPARE(file->gps_0x0002_LatitudeAsString(), QStringLiteral("48 8 "));
    QCOMPARE(file->gps_0x0004_LongitudeAsString(), QStringLiteral("11 34 30 "));
    QCOMPARE(file->gps_0x0007_TimeStampAsString(), QStringLiteral("10 20 "));
    QVERIFY2(qAbs(file->gps_0x0002_LatitudeAsKML() - 48.1333) < 1e-4,
             qPrintable(QString::number(file->gps_0x0002_LatitudeAsKML())));
    QCOMPARE(file->GPSStatus, QStringLiteral("A"));
    QCOMPARE(file->GPSMeasureMode, QStringLiteral("3"));
    QCOMPARE(file->GPSMapDatum, QStringLiteral("WGS-84"));
    QCOMPARE(file->GPSDateStamp, QStringLiteral("2023:07:14"));
}

namespace {

QStringList capturedLines;

void captureEntryLines(QtMsgType, const QMessageLogContext &context, const QString &message)
{
    if (qstrcmp(context.category, "kelvaro.exif.entries") == 0)
        capturedLines.append(message);
}

} // namespace

void tst_Reader::entryDescriptionsGoToTheLogWhenEnabled()
{
    testutils::Sandbox sandbox;
    TiffBuilder b;
    const int ifd0 = b.addDirectory();
    const int gps = b.addDirectory();
    b.addAscii(ifd0, 0x9003, QStringLiteral("2023:07:14 18:30:05"));
    // An unknown type (8) keeps the previous entry's length of 20.
    b.addEntry(ifd0, { 0xFFFF, 8, 3, QByteArray(4, '\0'), false, {} });
    b.addPointer(ifd0, 0x8825, gps);
    b.addEntry(gps, { 0x0001, 2, 2, QByteArray("N\0", 2), false, {} });
    const QByteArray bytes = b.build();

    capturedLines.clear();
    const QtMessageHandler previous = qInstallMessageHandler(captureEntryLines);
    exiftest::read(sandbox, "quiet.tif", bytes);
    QCOMPARE(capturedLines.size(), 0); // off by default
    QLoggingCategory::setFilterRules(QStringLiteral("kelvaro.exif.entries.debug=true"));
    exiftest::read(sandbox, "loud.tif", bytes);
    QLoggingCategory::setFilterRules(QString());
    qInstallMessageHandler(previous);

    const QStringList expected = { entryDescription(0x9003, 2, 20, 20),
                                   entryDescription(0xFFFF, 8, 3, 20),
                                   entryDescription(0x8825, 4, 1, 4),
                                   gpsEntryDescription(0x0001, 2, 2) };
    QCOMPARE(capturedLines, expected);
}

// A CFA pattern of four bytes and a single white level stand in the value field.
void tst_Reader::arraysShorterThanTheValueFieldStandInline()
{
    testutils::Sandbox sandbox;
    TiffBuilder b;
    const int ifd0 = b.addDirectory();
    b.addEntry(ifd0, { 0x828D, 3, 2, b.u16(2) + b.u16(2), false, {} });
    b.addEntry(ifd0, { 0x828E, 1, 4, QByteArray::fromHex("00010102"), false, {} });
    b.addEntry(ifd0, { 0xC612, 1, 4, QByteArray::fromHex("01040000"), false, {} });
    b.addEntry(ifd0, { 0xC61A, 4, 1, b.u32(512), false, {} });
    b.addEntry(ifd0, { 0xC61D, 4, 1, b.u32(16383), false, {} });
    b.addEntry(ifd0, { 0x9000, 7, 4, QByteArray("0231"), false, {} });
    b.addShort(ifd0, 0x8827, 100);
    const auto file = exiftest::read(sandbox, "dng.dng", b.build());
    QCOMPARE(file->exif_0x828D_CFARepeatPatternDimAsString(), QStringLiteral("2 2"));
    QCOMPARE(file->exif_0x828E_CFAPattern2AsString(), QStringLiteral("0 1 1 2"));
    QCOMPARE(file->DNGVersion, QStringLiteral("1.4.0.0"));
    QCOMPARE(file->exif_0XC61A_BlackLevelAsString(), QStringLiteral("512"));
    QCOMPARE(file->exif_0xC61D_WhiteLevelAsString(), QStringLiteral("16383"));
    QCOMPARE(file->ExifVersion, QStringLiteral("0231"));
    QCOMPARE(file->ISO, quint16(100));
}

namespace {

int openFileCount()
{
    return int(QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::Files | QDir::System).size());
}

} // namespace

void tst_Reader::fileHandleIsReleasedWhenProcessFileReturns()
{
    if (!QDir(QStringLiteral("/proc/self/fd")).exists())
        QSKIP("needs /proc/self/fd to count open files");
    testutils::Sandbox sandbox;
    const QString path = sandbox.filePath("handle.jpg");
    QVERIFY(fixture::writePhoto(path, Format::Jpeg, fixture::typicalTags()));
    const int before = openFileCount();
    {
        TExifFile file(path);
        QCOMPARE(openFileCount(), before + 1);
        QVERIFY(file.processFile());
        QCOMPARE(openFileCount(), before);
        QVERIFY(!file.stream.isOpen());
    }
    {
        TExifFile unread(path); // never processed: the destructor releases it
        QCOMPARE(openFileCount(), before + 1);
    }
    QCOMPARE(openFileCount(), before);
}

void tst_Reader::readOnlyFileIsRead()
{
    testutils::Sandbox sandbox;
    const QString path = sandbox.filePath("readonly.jpg");
    QVERIFY(fixture::writePhoto(path, Format::Jpeg, fixture::typicalTags()));
    QVERIFY(QFile::setPermissions(path, QFileDevice::ReadOwner));
    const QDateTime modified = QFileInfo(path).lastModified();
    TExifFile file(path);
    QVERIFY2(file.processFile(), "a read-only file is opened for reading only");
    QCOMPARE(file.Make, QStringLiteral("Canon"));
    QCOMPARE(QFileInfo(path).lastModified(), modified);
    QVERIFY(QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner));
}

void tst_Reader::contentsInMemoryGiveWhatTheFileGives_data()
{
    QTest::addColumn<Format>("format");
    QTest::addColumn<QString>("name");
    QTest::newRow("TIFF") << Format::TiffLittle << "m.tif";
    QTest::newRow("JPEG") << Format::JpegApp0 << "m.jpg";
    QTest::newRow("RAF") << Format::Raf << "m.RAF";
    QTest::newRow("ORF, magic by name") << Format::Orf << "m.orf";
    QTest::newRow("CR3, boxes by name") << Format::Cr3 << "m.cr3";
    QTest::newRow("HEIF") << Format::Heic << "m.heic";
    QTest::newRow("AVIF") << Format::Avif << "m.avif";
}

void tst_Reader::contentsInMemoryGiveWhatTheFileGives()
{
    QFETCH(Format, format);
    QFETCH(QString, name);
    testutils::Sandbox sandbox;
    const QByteArray bytes = fixture::photo(format, fixture::typicalTags());
    bool ok = false;
    const auto fromFile = exiftest::read(sandbox, name, bytes, &ok);
    QVERIFY(ok);
    // The path names no file: only the bytes given are read.
    TExifFile fromBytes(sandbox.filePath(QStringLiteral("absent/") + name), bytes);
    QVERIFY(fromBytes.processFile());
    QCOMPARE(exiftest::readings(fromBytes), exiftest::readings(*fromFile));
    QCOMPARE(fromBytes.Make, QStringLiteral("Canon"));
    QCOMPARE(fromBytes.stream.bytesLoaded(), fromFile->stream.bytesLoaded());
}
