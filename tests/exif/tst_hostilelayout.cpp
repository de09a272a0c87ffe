#include "tst_hostilelayout.h"

#include "exifbytereader.h"
#include "exifreaderlimits.h"
#include "exiftestsupport.h"

#include <QFile>
#include <QLoggingCategory>

using fixture::TiffBuilder;

void tst_HostileLayout::hostileFileEndsWithDefinedResult_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<QString>("make");
    QTest::addColumn<QString>("model");
    QTest::addColumn<int>("iso");

    const QByteArray tiff = fixture::photo(fixture::Format::TiffLittle, fixture::typicalTags());
    const QString na = QStringLiteral("n.a.");
    QTest::newRow("zero-length file")
        << "z.jpg" << fixture::zeroLengthFile() << false << na << na << 0;
    QTest::newRow("one byte") << "o.tif" << QByteArray("I") << false << na << na << 0;
    QTest::newRow("PNG signature")
        << "p.png" << QByteArray::fromHex("89504E470D0A1A0A") << false << na << na << 0;
    QTest::newRow("IFD chain loops to itself")
        << "l.tif" << fixture::ifdLoopToItself() << true << "Loop" << na << 0;
    QTest::newRow("IFD chain loops to an earlier IFD")
        << "e.tif" << fixture::ifdLoopToEarlier() << true << "Loop" << na << 0;
    QTest::newRow("Exif pointer to its own directory")
        << "x.tif" << fixture::exifPointerLoop() << true << "Loop" << na << 800;
    QTest::newRow("Exif pointer back to IFD0")
        << "x0.tif" << fixture::exifPointerToIfd0() << true << "Loop" << na << 800;
    QTest::newRow("entry count 65535")
        << "c.tif" << fixture::entryCount65535() << true << "Many" << na << 0;
    // Reads past the end yield zeros: a text there is empty, not "n.a.".
    QTest::newRow("offsets 0xFFFFFFFF") << "f.tif" << fixture::offsetPastEnd() << true << ""
                                        << "Still read" << 0;
    QTest::newRow("count times size overflows 32 bits")
        << "v.tif" << fixture::countTimesSizeOverflow() << true << na << "After overflow" << 640;
    QTest::newRow("text without terminating zero")
        << "t.tif" << fixture::unterminatedText() << true << "NoZero" << na << 0;
    QTest::newRow("CR3 box size larger than the file")
        << "b.cr3" << fixture::cr3BoxSizeLargerThanFile() << false << na << na << 0;
    QTest::newRow("CR3 box size zero")
        << "s.cr3" << fixture::cr3BoxSizeZero() << false << na << na << 0;
    QTest::newRow("CR3 without CMT1 and CMT2")
        << "n.cr3" << fixture::cr3WithoutCmtBoxes() << false << na << na << 0;
    QTest::newRow("CR3 name on a zero-length file")
        << "zero.cr3" << fixture::zeroLengthFile() << false << na << na << 0;
    // The file ends two bytes into the Model text.
    QTest::newRow("JPEG ending inside APP1")
        << "j.jpg" << fixture::jpegEndingInsideApp1() << true << "Canon"
        << "Ca" << 0;
    QTest::newRow("TIFF cut inside its header")
        << "h.tif" << fixture::truncated(tiff, 6) << true << na << na << 0;
    QTest::newRow("TIFF cut after the entry count")
        << "k.tif" << fixture::truncated(tiff, 10) << true << na << na << 0;
    QTest::newRow("TIFF cut before the Exif IFD")
        << "m.tif" << fixture::truncated(tiff, 140) << true << "Canon"
        << "Canon EOS 5D Mark IV" << 0;
    QTest::newRow("JPEG of SOI only")
        << "soi.jpg" << QByteArray::fromHex("FFD8") << false << na << na << 0;
    QTest::newRow("APP0 with length 0")
        << "a0.jpg" << QByteArray::fromHex("FFD8FFE00000FFE1") << false << na << na << 0;
}

void tst_HostileLayout::hostileFileEndsWithDefinedResult()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    QFETCH(bool, valid);
    QFETCH(QString, make);
    QFETCH(QString, model);
    QFETCH(int, iso);
    testutils::Sandbox sandbox;
    bool ok = false;
    const auto file = exiftest::read(sandbox, name, bytes, &ok);
    QCOMPARE(ok, valid);
    QCOMPARE(file->Make, make);
    QCOMPARE(file->Model, model);
    QCOMPARE(int(file->ISO), iso);
    QVERIFY2(!file->Make.isNull() && !file->exif_0x829A_ExposureTimeAsString().isNull(),
             "texts stay non-null");
    QVERIFY(file->stream.bytesLoaded() <= exiflimits::maxBytesLoaded);
}

void tst_HostileLayout::arraysAreFilledOnlyUpToTheirCapacity()
{
    testutils::Sandbox sandbox;
    const auto file = exiftest::read(sandbox, "arrays.dng", fixture::arraysOverCapacity());
    QCOMPARE(file->Model, QStringLiteral("After arrays")); // later entries are still in step
    // The data holds the 32-bit values 1, 2, 3, ... little-endian.
    QCOMPARE(file->exif_0x7010_SonyToneCurveAsString(), QStringLiteral("1 0 2 0"));
    QCOMPARE(file->exif_0x74c7_SonyCropTopLeftAsString(), QStringLiteral("1 2"));
    QCOMPARE(file->exif_0x74c8_SonyCropSizeAsString(), QStringLiteral("1 2"));
    QCOMPARE(file->exif_0xC61F_DefaultCropOriginAsString(), QStringLiteral("1 2"));
    QCOMPARE(file->exif_0xC620_DefaultCropSizeAsString(), QStringLiteral("1 2"));
    QCOMPARE(file->WhiteLevelCount, 1000000u);
    QCOMPARE(file->exif_0xC61D_WhiteLevelAsString(),
             QStringLiteral("1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16"));
    QCOMPARE(file->CFAPattern2Count, 0xFFFFFFFFu);
    QCOMPARE(file->exif_0x828E_CFAPattern2AsString().split(u' ').size(),
             qsizetype(TExifFile::CFAPattern2Capacity));
    QCOMPARE(file->exif_0x828E_CFAPattern2AsString().left(16), QStringLiteral("1 0 0 0 2 0 0 0 "));
}

void tst_HostileLayout::directoryBudgetEndsALongChain()
{
    testutils::Sandbox sandbox;
    const auto file = exiftest::read(sandbox, "chain.tif", fixture::longChain(100));
    // Directory i holds ISO 100 + i; the last one walked is the budget's last.
    QCOMPARE(int(file->ISO), 100 + exiflimits::maxDirectories - 1);
    QCOMPARE(file->ifdCounter, exiflimits::maxDirectories + 1);
}

void tst_HostileLayout::entryBudgetEndsAHugeDirectory()
{
    testutils::Sandbox sandbox;
    TiffBuilder b;
    const int ifd0 = b.addDirectory();
    for (int i = 0; i < exiflimits::maxEntries + 3000; ++i)
        b.addShort(ifd0, 0x8827, quint16(i));
    const auto file = exiftest::read(sandbox, "entries.tif", b.build());
    QCOMPARE(int(file->ISO), exiflimits::maxEntries - 1);
    QCOMPARE(file->nextIfdOffset, 0u);
}

void tst_HostileLayout::nestedExifPointersEndAtTheDepthBound()
{
    testutils::Sandbox sandbox;
    TiffBuilder b;
    const int count = exiflimits::maxNestingDepth + 4;
    for (int i = 0; i < count; ++i)
        b.addDirectory();
    for (int i = 0; i < count; ++i) {
        b.addShort(i, 0x8827, quint16(i));
        if (i + 1 < count)
            b.addPointer(i, 0x8769, i + 1);
    }
    const auto file = exiftest::read(sandbox, "nested.tif", b.build());
    QCOMPARE(int(file->ISO), exiflimits::maxNestingDepth);
}

void tst_HostileLayout::textsEndAtTheLengthBound()
{
    testutils::Sandbox sandbox;
    TiffBuilder b;
    const int ifd0 = b.addDirectory();
    b.addAscii(ifd0, 0x010F, QString(exiflimits::maxTextLength + 500, u'x'));
    b.addAscii(ifd0, 0x0110, QStringLiteral("Model after a long make"));
    const auto file = exiftest::read(sandbox, "long.tif", b.build());
    QCOMPARE(file->Make, QString(exiflimits::maxTextLength, u'x'));
    QCOMPARE(file->Model, QStringLiteral("Model after a long make"));
}

void tst_HostileLayout::fileThatCannotBeOpenedIsNotRecognised()
{
    testutils::Sandbox sandbox;
    TExifFile missing(sandbox.filePath("does-not-exist.jpg"));
    QVERIFY(!missing.processFile());
    QCOMPARE(missing.fileTyp(), 0);
    QCOMPARE(missing.Make, QStringLiteral("n.a."));
    TExifFile directory(sandbox.path());
    QVERIFY2(!directory.processFile(), "a directory is no photo");
    TExifFile none;
    QVERIFY2(!none.processFile(), "an object without a file reads nothing");
}

void tst_HostileLayout::cr3WithOnlyOneCmtBoxWalksThatOne()
{
    testutils::Sandbox sandbox;
    QByteArray bytes = fixture::cr3(fixture::typicalTags());
    const qsizetype cmt2 = bytes.indexOf("CMT2");
    QVERIFY(cmt2 > 0);
    bytes.replace(cmt2, 4, "CMTX");
    bool ok = false;
    const auto file = exiftest::read(sandbox, "half.cr3", bytes, &ok);
    QVERIFY(ok);
    QCOMPARE(file->Make, QStringLiteral("Canon"));
    QCOMPARE(file->ISO, quint16(0));
    QCOMPARE(file->LensModel, QStringLiteral("n.a."));
}

void tst_HostileLayout::byteReaderReadsZerosPastTheEnd_data()
{
    QTest::addColumn<qint64>("position");
    QTest::addColumn<bool>("bigEndian");
    QTest::addColumn<quint32>("expected");
    QTest::newRow("big-endian at 0") << qint64(0) << true << 0x01020304u;
    QTest::newRow("little-endian at 0") << qint64(0) << false << 0x04030201u;
    QTest::newRow("two bytes before the end") << qint64(4) << true << 0x05060000u;
    QTest::newRow("at the end") << qint64(6) << true << 0u;
    QTest::newRow("far past the end") << qint64(0xFFFFFFFFLL) << false << 0u;
}

void tst_HostileLayout::byteReaderReadsZerosPastTheEnd()
{
    QFETCH(qint64, position);
    QFETCH(bool, bigEndian);
    QFETCH(quint32, expected);
    testutils::Sandbox sandbox;
    const QString path = sandbox.filePath("six.bin");
    QVERIFY(fixture::writeBytes(path, QByteArray::fromHex("010203040506")));
    ExifByteReader reader;
    QVERIFY(reader.open(path));
    reader.setBigEndian(bigEndian);
    QVERIFY(reader.seek(position));
    QCOMPARE(reader.readU32(), expected);
    QCOMPARE(reader.pos(), position + 4);
    QVERIFY2(!reader.seek(-1), "a negative position is refused");
    QCOMPARE(reader.pos(), position + 4);
}

void tst_HostileLayout::byteReaderStopsAtItsLoadBudget()
{
    testutils::Sandbox sandbox;
    const QString path = sandbox.filePath("big.bin");
    const qint64 size = exiflimits::maxBytesLoaded * 2;
    QFile out(path);
    QVERIFY(out.open(QIODevice::WriteOnly));
    QVERIFY(out.write(QByteArray(size, '\x7F')) == size);
    out.close();
    ExifByteReader reader;
    QVERIFY(reader.open(path));
    int nonZero = 0;
    for (qint64 pos = 0; pos < size; pos += exiflimits::blockSize) {
        reader.seek(pos);
        nonZero += reader.readU8() != 0;
    }
    QCOMPARE(qint64(nonZero) * exiflimits::blockSize, exiflimits::maxBytesLoaded);
    QCOMPARE(reader.bytesLoaded(), exiflimits::maxBytesLoaded);
}

void tst_HostileLayout::largeFileLoadsOnlyTheBlocksItNeeds()
{
    testutils::Sandbox sandbox;
    QByteArray bytes = fixture::photo(fixture::Format::TiffLittle, fixture::typicalTags());
    bytes += QByteArray(25 * 1024 * 1024, '\x33'); // image data the reader never needs
    bool ok = false;
    const auto file = exiftest::read(sandbox, "large.nef", bytes, &ok);
    QVERIFY(ok);
    QCOMPARE(file->ISO, quint16(400));
    QCOMPARE(file->stream.bytesLoaded(), exiflimits::blockSize);
}

void tst_HostileLayout::entriesPastTheEndReadAsZeros_data()
{
    QTest::addColumn<bool>("listed");
    QTest::newRow("entry lines off: passed over together") << false;
    QTest::newRow("entry lines on: each one read and listed") << true;
}

namespace {

int entryLines = 0;

void countEntryLines(QtMsgType, const QMessageLogContext &context, const QString &)
{
    if (qstrcmp(context.category, "kelvaro.exif.entries") == 0)
        ++entryLines;
}

} // namespace

// The GPS directory is the last thing in the file and claims 65535 entries: the zeros past the
// end are tag 0 (GPSVersionID), and they use up the entry budget either way.
void tst_HostileLayout::entriesPastTheEndReadAsZeros()
{
    QFETCH(bool, listed);
    testutils::Sandbox sandbox;
    TiffBuilder b;
    const int ifd0 = b.addDirectory();
    const int gps = b.addDirectory();
    b.addAscii(ifd0, 0x010F, QStringLiteral("Zeros"));
    b.addPointer(ifd0, 0x8825, gps);
    b.addEntry(gps, { 0x0000, 1, 4, QByteArray::fromHex("02020000"), false, {} });
    b.addEntry(gps, { 0x0001, 2, 2, QByteArray("N\0", 2), false, {} });
    b.setEntryCountRaw(gps, 65535);
    const QByteArray bytes = b.build();
    QCOMPARE(qsizetype(b.directoryOffset(gps)) + 2 + 2 * 12 + 4, bytes.size());

    entryLines = 0;
    QtMessageHandler previous = nullptr;
    if (listed) {
        QLoggingCategory::setFilterRules(QStringLiteral("kelvaro.exif.entries.debug=true"));
        previous = qInstallMessageHandler(countEntryLines);
    }
    const auto file = exiftest::read(sandbox, "zeros.tif", bytes);
    if (listed) {
        qInstallMessageHandler(previous);
        QLoggingCategory::setFilterRules(QStringLiteral("kelvaro.exif.entries.debug=false"));
    }
    QCOMPARE(file->Make, QStringLiteral("Zeros"));
    QCOMPARE(file->GPSLatitudeRef, QStringLiteral("N"));
    QCOMPARE(file->GPSVersionID, QStringLiteral("0.0.0.0"));
    QCOMPARE(file->nextIfdOffset, 0u);
    QCOMPARE(file->ifdCounter, 1);
    QCOMPARE(entryLines, listed ? exiflimits::maxEntries : 0);
}
