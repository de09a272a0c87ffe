#include "tst_readermemory.h"

#include "peakmemory.h"
#include "photofixture.h"
#include "testutils.h"
#include "texiffile.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QTest>

namespace {

// The reader loads at most exiflimits::maxBytesLoaded (4 MiB) of a file, keeps a few 64 KiB
// blocks, and bounds texts, entries and directories; what one file may legitimately cost is thus
// a few MiB. 32 MiB leaves room for the allocator and for sanitizer builds, and is still far below
// what any claim of these files would cost if believed: 65535 entries of arrays, counts near
// 2^32, a box of 2 GiB, or a 256 MiB file loaded whole.
constexpr qint64 boundKiB = 32 * 1024;

const QStringList nineSuffixes { "cr2", "cr3", "raf", "nef", "arw", "rw2", "orf", "dng", "jpg" };

// Whatever the scan and the detail views ask of a reader, so that a value built from a hostile
// count is built here too. Returns the total length, which keeps the calls from being dropped.
qint64 readEverything(const QString &path)
{
    TExifFile reader(path);
    reader.processFile();
    qint64 length = reader.fileName().size() + reader.Make.size() + reader.Model.size()
        + reader.LensModel.size() + reader.DateTimeOriginal.size() + reader.ModifyDate.size();
    for (const QString &text :
         { reader.exif_0x829D_FNumberAsString(), reader.exif_0x829A_ExposureTimeAsString(),
           reader.exif_0x9207_MeteringModeAsString(), reader.exif_0x8822_ExpProgAsString(),
           reader.exif_0x7010_SonyToneCurveAsString(), reader.exif_0x74c7_SonyCropTopLeftAsString(),
           reader.exif_0x74c8_SonyCropSizeAsString(), reader.exif_0x828E_CFAPattern2AsString(),
           reader.exif_0xC61D_WhiteLevelAsString(), reader.exif_0XC61A_BlackLevelAsString(),
           reader.exif_0xC61F_DefaultCropOriginAsString(),
           reader.exif_0xC620_DefaultCropSizeAsString(), reader.exif_0xA432_LensInfoAsString(),
           reader.gps_0x0002_LatitudeAsString(), reader.gps_0x0004_LongitudeAsString(),
           reader.gps_0x0007_TimeStampAsString() })
        length += text.size();
    length += qint64(reader.exif_0x920A_FocalLengthAsReal() + reader.exif_0x829A_ExposureTime());
    return length;
}

// How far the peak rose while one file was read, in KiB.
qint64 peakRiseReading(const QString &path)
{
    peakmemory::resetPeak();
    const qint64 before = peakmemory::peakKiB();
    const qint64 length = readEverything(path);
    Q_UNUSED(length);
    return peakmemory::peakKiB() - before;
}

// A chain of 32 directories whose text and rational entries point all over a large sparse file,
// one 64 KiB block apart or more: read naively, the whole file would be loaded.
QByteArray offsetsAcrossALargeFile(qint64 fileSize)
{
    const QList<quint16> stringTags { 0x010E, 0x010F, 0x0110, 0x0131, 0x0132,
                                      0x013B, 0x9003, 0x9004, 0xA434, 0xC614 };
    const QList<quint16> rationalTags { 0x011A, 0x011B, 0x829A, 0x829D, 0x920A, 0xA404, 0xA500 };
    const int directories = 32;
    const int perDirectory = int(stringTags.size() + rationalTags.size());
    const qint64 step = fileSize / (directories * perDirectory + 1);

    fixture::TiffBuilder builder(false);
    int n = 1;
    for (int d = 0; d < directories; ++d) {
        const int dir = builder.addDirectory();
        for (quint16 tag : stringTags)
            builder.addEntry(dir, { tag, 2, 1, {}, false, quint32(step * n++) });
        for (quint16 tag : rationalTags)
            builder.addEntry(dir, { tag, 5, 1, {}, false, quint32(step * n++) });
        if (d > 0)
            builder.setNext(d - 1, d);
    }
    return builder.build();
}

} // namespace

void tst_ReaderMemory::initTestCase()
{
    if (peakmemory::peakKiB() < 0)
        QSKIP("this system does not report the peak resident size (/proc/self/status)");
    if (!peakmemory::resetPeak())
        qWarning("the peak resident size can't be reset here; each rise is measured from the "
                 "highest peak so far");

    // The measurement sees an allocation of the bound's size, so the bound can be failed.
    peakmemory::resetPeak();
    const qint64 before = peakmemory::peakKiB();
    {
        QByteArray filled(boundKiB * 1024, '\x5a');
        QCOMPARE(filled.back(), '\x5a');
    }
    const qint64 rise = peakmemory::peakKiB() - before;
    QVERIFY2(
        rise >= boundKiB * 3 / 4,
        qPrintable(
            QString("touching %1 KiB raised the peak by %2 KiB only").arg(boundKiB).arg(rise)));

    // One-time costs (code pages, locale data, logging set-up) are paid before measuring.
    testutils::Sandbox sandbox;
    for (const QString &suffix : nineSuffixes) {
        const QString path = sandbox.filePath("warm." + suffix);
        QVERIFY(fixture::writePhoto(path, fixture::Format::Jpeg, fixture::typicalTags()));
        readEverything(path);
    }
    const QString cr3 = sandbox.filePath("warm2.cr3");
    QVERIFY(fixture::writeBytes(cr3, fixture::cr3(fixture::typicalTags())));
    readEverything(cr3);
}

void tst_ReaderMemory::hostileLayoutStaysWithinBound_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<qint64>("sparseSize"); // the file is grown to this size with a hole; 0: not

    const QByteArray jpeg = fixture::photo(fixture::Format::Jpeg, fixture::typicalTags());
    const QByteArray cr3 = fixture::cr3(fixture::typicalTags());
    const QList<std::tuple<const char *, QByteArray, qint64>> layouts {
        { "zero-length file", fixture::zeroLengthFile(), 0 },
        { "IFD chain looping to itself", fixture::ifdLoopToItself(), 0 },
        { "IFD chain looping to an earlier IFD", fixture::ifdLoopToEarlier(), 0 },
        { "Exif pointer to its own IFD", fixture::exifPointerLoop(), 0 },
        { "Exif pointer back to IFD0", fixture::exifPointerToIfd0(), 0 },
        { "entry count 65535", fixture::entryCount65535(), 0 },
        { "offsets 0xFFFFFFFF", fixture::offsetPastEnd(), 0 },
        { "count times size overflowing 32 bits", fixture::countTimesSizeOverflow(), 0 },
        { "arrays far over their capacity", fixture::arraysOverCapacity(), 0 },
        { "text without a terminating zero", fixture::unterminatedText(), 0 },
        { "chain of 20000 distinct IFDs", fixture::longChain(20000), 0 },
        { "CR3 box size larger than the file", fixture::cr3BoxSizeLargerThanFile(), 0 },
        { "CR3 box size zero", fixture::cr3BoxSizeZero(), 0 },
        { "CR3 without CMT1 and CMT2", fixture::cr3WithoutCmtBoxes(), 0 },
        { "JPEG ending inside APP1", fixture::jpegEndingInsideApp1(), 0 },
        { "JPEG cut after 40 bytes", fixture::truncated(jpeg, 40), 0 },
        { "CR3 cut after 100 bytes", fixture::truncated(cr3, 100), 0 },
        { "offsets across a 256 MiB sparse file", offsetsAcrossALargeFile(256LL * 1024 * 1024),
          256LL * 1024 * 1024 },
        { "text without a zero in a 64 MiB sparse file of ones", fixture::unterminatedText(), -1 },
    };
    for (const auto &[name, bytes, sparseSize] : layouts) {
        for (const QString &suffix : nineSuffixes)
            QTest::newRow(qPrintable(QString("%1 as .%2").arg(name, suffix)))
                << bytes << suffix << sparseSize;
    }
}

void tst_ReaderMemory::hostileLayoutStaysWithinBound()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, suffix);
    QFETCH(qint64, sparseSize);

    testutils::Sandbox sandbox;
    const QString path = sandbox.filePath("hostile." + suffix);
    QVERIFY(fixture::writeBytes(path, bytes));
    if (sparseSize > 0) {
        QVERIFY(QFile::resize(path, sparseSize));
    } else if (sparseSize < 0) {
        // The unterminated text runs on into 64 MiB of non-zero bytes.
        QFile file(path);
        QVERIFY(file.open(QIODevice::Append));
        const QByteArray ones(1024 * 1024, '\x01');
        for (int i = 0; i < 64; ++i)
            QCOMPARE(file.write(ones), qint64(ones.size()));
    }

    const qint64 riseKiB = peakRiseReading(path);
    QVERIFY2(riseKiB < boundKiB,
             qPrintable(QString("reading took %1 KiB more at its peak; the bound is %2 KiB")
                            .arg(riseKiB)
                            .arg(boundKiB)));
}

// Every damaged or crafted file of the shared collection, under each of the nine suffixes.
void tst_ReaderMemory::damagedFilesStayWithinBound()
{
    const QString source = QString(KELVARO_MALFORMED_DIR);
    if (!QFileInfo(source).isDir())
        QSKIP(qPrintable(source + " is not present"));

    testutils::Sandbox sandbox;
    QStringList overBound;
    int files = 0;
    QDirIterator it(source, QDir::Files);
    while (it.hasNext()) {
        const QString original = it.next();
        for (const QString &suffix : nineSuffixes) {
            const QString copy = sandbox.filePath(QFileInfo(original).fileName() + '.' + suffix);
            QVERIFY2(QFile::copy(original, copy), qPrintable("copying " + original));
            const qint64 riseKiB = peakRiseReading(copy);
            if (riseKiB >= boundKiB)
                overBound << QString("%1: %2 KiB").arg(QFileInfo(copy).fileName()).arg(riseKiB);
            ++files;
        }
    }
    QVERIFY2(files > 0, qPrintable(source + " holds no files"));
    QVERIFY2(
        overBound.isEmpty(),
        qPrintable(QString("over the bound of %1 KiB: ").arg(boundKiB) + overBound.join("; ")));
}
