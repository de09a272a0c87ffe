#include "tst_samples.h"

#include "exifreaderlimits.h"
#include "photofixture.h"
#include "referencevalues.h"
#include "testutils.h"
#include "texiffile.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QTest>

namespace {

const QString samplesDir = QStringLiteral(KELVARO_SAMPLES_DIR);
const QString malformedDir = QStringLiteral(KELVARO_MALFORMED_DIR);

using referencevalues::Row;

// ExifTool drops trailing blanks that the reader keeps.
QString withoutTrailingBlanks(QString text)
{
    while (text.endsWith(u' '))
        text.chop(1);
    return text;
}

} // namespace

void tst_Samples::initTestCase()
{
    filesCompared = fieldsCompared = fieldsAgreeing = malformedRead = malformedRecognised = 0;
}

void tst_Samples::realSampleAgreesWithReference_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<Row>("expected");
    if (!QFile::exists(samplesDir + QStringLiteral("/expected.csv")))
        QSKIP("the sample folder with expected.csv is not present");
    for (const Row &row : referencevalues::read(samplesDir + QStringLiteral("/expected.csv"))) {
        if (row.value(QStringLiteral("reader_expect")) == QLatin1String("ok"))
            QTest::newRow(qPrintable(row.value(QStringLiteral("file"))))
                << row.value(QStringLiteral("file")) << row;
    }
}

void tst_Samples::realSampleAgreesWithReference()
{
    QFETCH(QString, fileName);
    QFETCH(Row, expected);
    TExifFile file(samplesDir + u'/' + fileName);
    QVERIFY2(file.processFile(), "a camera file the reader handles is recognised");
    ++filesCompared;

    using referencevalues::sameReal;
    const auto text = [&](const char *column) { return referencevalues::text(expected, column); };
    const QList<referencevalues::Field> fields = {
        { "Make", withoutTrailingBlanks(file.Make) == text("Make"), file.Make },
        { "Model", withoutTrailingBlanks(file.Model) == text("Model"), file.Model },
        { "LensModel", withoutTrailingBlanks(file.LensModel) == text("LensModel"), file.LensModel },
        { "DateTimeOriginal", file.DateTimeOriginal == text("DateTimeOriginal"),
          file.DateTimeOriginal },
        { "ModifyDate", file.ModifyDate == text("ModifyDate"), file.ModifyDate },
        { "ISO", sameReal(expected.value(QStringLiteral("ISO")), file.ISO),
          QString::number(file.ISO) },
        { "FNumber",
          sameReal(expected.value(QStringLiteral("FNumber")),
                   file.FNumberDenominator ? double(file.FNumberNumerator) / file.FNumberDenominator
                                           : 0.0),
          file.exif_0x829D_FNumberAsString() },
        { "ExposureTime",
          sameReal(expected.value(QStringLiteral("ExposureTime")), file.exif_0x829A_ExposureTime()),
          QString::number(file.exif_0x829A_ExposureTime()) },
        { "FocalLength",
          sameReal(expected.value(QStringLiteral("FocalLength")),
                   file.exif_0x920A_FocalLengthAsReal()),
          QString::number(file.exif_0x920A_FocalLengthAsReal()) },
        { "MeteringMode",
          sameReal(expected.value(QStringLiteral("MeteringMode")), file.MeteringMode),
          QString::number(file.MeteringMode) },
        { "ExposureProgram",
          sameReal(expected.value(QStringLiteral("ExposureProgram")), file.ExposureProgram),
          QString::number(file.ExposureProgram) },
    };
    const QStringList disagreeing =
        referencevalues::disagreements(fields, expected, fieldsCompared, fieldsAgreeing);
    QVERIFY2(disagreeing.isEmpty(), qPrintable(disagreeing.join(QStringLiteral("; "))));
}

void tst_Samples::malformedFileIsSurvived_data()
{
    QTest::addColumn<QString>("path");
    const QDir dir(malformedDir);
    if (!dir.exists())
        QSKIP("the folder of malformed files is not present");
    const QStringList names = dir.entryList(QDir::Files, QDir::Name);
    for (const QString &name : names) {
        if (name != QLatin1String("README.md") && name != QLatin1String("list.csv"))
            QTest::newRow(qPrintable(name)) << dir.filePath(name);
    }
}

// The malformed files' names say nothing reliable about their layout, so each is also read
// under the suffixes that choose the RAF and CR3 paths.
void tst_Samples::malformedFileIsSurvived()
{
    QFETCH(QString, path);
    testutils::Sandbox sandbox;
    QFile original(path);
    QVERIFY(original.open(QIODevice::ReadOnly));
    const QByteArray bytes = original.readAll();
    const QStringList suffixes = { QString(), QStringLiteral(".raf"), QStringLiteral(".cr3"),
                                   QStringLiteral(".orf"), QStringLiteral(".rw2") };
    for (const QString &suffix : suffixes) {
        QString readPath = path;
        if (!suffix.isEmpty()) {
            readPath = sandbox.filePath(QStringLiteral("copy") + suffix);
            QVERIFY(fixture::writeBytes(readPath, bytes));
        }
        TExifFile file(readPath);
        const bool recognised = file.processFile();
        ++malformedRead;
        malformedRecognised += recognised;
        QVERIFY2(file.stream.bytesLoaded() <= exiflimits::maxBytesLoaded, "the load budget holds");
        QVERIFY2(!file.Make.isNull() && !file.Model.isNull() && !file.DateTimeOriginal.isNull(),
                 "texts stay non-null");
        QVERIFY2(recognised || file.fileTyp() == 0, "a rejected file has no type");
    }
}

void tst_Samples::cleanupTestCase()
{
    qInfo("real samples: %d files compared, %d of %d fields agree with the reference",
          filesCompared, fieldsAgreeing, fieldsCompared);
    qInfo("malformed files: %d reads (each file under five names), %d recognised (partial reads)",
          malformedRead, malformedRecognised);
}
