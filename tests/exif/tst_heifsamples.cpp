#include "tst_heifsamples.h"

#include "exifreaderlimits.h"
#include "referencevalues.h"
#include "texiffile.h"

#include <QFile>
#include <QHash>
#include <QTest>

namespace {

const QString heifSamplesDir = QStringLiteral(KELVARO_SAMPLES_HEIF_DIR);

using referencevalues::Row;

} // namespace

void tst_HeifSamples::initTestCase()
{
    filesCompared = fieldsCompared = fieldsAgreeing = filesRejected = 0;
}

// reader_expect says "ok" for a file whose values must agree; anything else ("not recognised:
// ...", "hostile: ...") is a file the reader must reject without a crash or a hang.
void tst_HeifSamples::heifSampleGivesItsExpectedResult_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<Row>("expected");
    if (!QFile::exists(heifSamplesDir + QStringLiteral("/expected.csv")))
        QSKIP("the folder of HEIF samples with expected.csv is not present");
    for (const Row &row : referencevalues::read(heifSamplesDir + QStringLiteral("/expected.csv")))
        QTest::newRow(qPrintable(row.value(QStringLiteral("file"))))
            << row.value(QStringLiteral("file")) << row;
}

void tst_HeifSamples::heifSampleGivesItsExpectedResult()
{
    QFETCH(QString, fileName);
    QFETCH(Row, expected);
    TExifFile file(heifSamplesDir + u'/' + fileName);
    const bool recognised = file.processFile();
    QVERIFY(file.stream.bytesLoaded() <= exiflimits::maxBytesLoaded);
    if (expected.value(QStringLiteral("reader_expect")) != QLatin1String("ok")) {
        QVERIFY2(!recognised, "a file without Exif or a broken one is not recognised");
        QCOMPARE(file.fileTyp(), 0);
        QCOMPARE(file.Make, QStringLiteral("n.a."));
        ++filesRejected;
        return;
    }
    QVERIFY2(recognised, "a HEIF file with Exif is recognised");
    ++filesCompared;
    using referencevalues::sameReal;
    const auto text = [&](const char *column) { return referencevalues::text(expected, column); };
    const QList<referencevalues::Field> fields = {
        { "Make", file.Make.trimmed() == text("Make"), file.Make },
        { "Model", file.Model.trimmed() == text("Model"), file.Model },
        { "LensModel", file.LensModel.trimmed() == text("LensModel"), file.LensModel },
        { "DateTimeOriginal", file.DateTimeOriginal == text("DateTimeOriginal"),
          file.DateTimeOriginal },
        { "ISO", sameReal(expected.value(QStringLiteral("ISO")), file.ISO),
          QString::number(file.ISO) },
        { "FNumber",
          sameReal(expected.value(QStringLiteral("FNumber")),
                   file.FNumberDenominator ? double(file.FNumberNumerator) / file.FNumberDenominator
                                           : 0.0),
          file.exif_0x829D_FNumberAsString() },
        // ExifTool rounds exposure times to ten digits.
        { "ExposureTime",
          qAbs(expected.value(QStringLiteral("ExposureTime")).toDouble()
               - file.exif_0x829A_ExposureTime())
              < 1e-9,
          QString::number(file.exif_0x829A_ExposureTime(), 'g', 12) },
        { "FocalLength",
          sameReal(expected.value(QStringLiteral("FocalLength")),
                   file.exif_0x920A_FocalLengthAsReal()),
          QString::number(file.exif_0x920A_FocalLengthAsReal()) },
    };
    const QStringList disagreeing =
        referencevalues::disagreements(fields, expected, fieldsCompared, fieldsAgreeing);
    QVERIFY2(disagreeing.isEmpty(), qPrintable(disagreeing.join(QStringLiteral("; "))));
}

void tst_HeifSamples::cleanupTestCase()
{
    qInfo("real HEIF samples: %d files compared, %d of %d fields agree with the reference; "
          "%d files rejected as expected",
          filesCompared, fieldsAgreeing, fieldsCompared, filesRejected);
}
