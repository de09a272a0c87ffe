#include "tst_fuzzcorpus.h"

#include "exifreaderlimits.h"
#include "fuzzinput.h"
#include "texiffile.h"

#include <QDir>
#include <QFile>
#include <QTest>

void tst_FuzzCorpus::keptInputEndsCleanly_data()
{
    QTest::addColumn<QString>("path");
    int inputs = 0;
    for (const char *folder : { "corpus", "regressions" }) {
        const QDir dir(QStringLiteral(KELVARO_FUZZ_DIR "/") + QLatin1String(folder));
        for (const QString &name : dir.entryList(QDir::Files, QDir::Name)) {
            QTest::newRow(qPrintable(QLatin1String(folder) + u'/' + name)) << dir.filePath(name);
            ++inputs;
        }
    }
    // The corpus is part of the repository: finding none means the folder moved.
    QVERIFY2(inputs > 0, "no kept fuzz inputs found under " KELVARO_FUZZ_DIR);
}

// What fuzz_exiffile checks of every input, plus the values the scan reads.
void tst_FuzzCorpus::keptInputEndsCleanly()
{
    QFETCH(QString, path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray input = file.readAll();
    if (input.isEmpty())
        return; // the target ignores an empty input as well
    TExifFile exif(fuzzinput::path(quint8(input[0])), input.mid(1));
    const bool valid = exif.processFile();
    QCOMPARE(valid, exif.valid);
    QCOMPARE(exif.fileTyp() != 0, valid);
    QVERIFY(exif.fileTyp() >= 0 && exif.fileTyp() <= 2);
    QVERIFY(exif.stream.bytesLoaded() <= exiflimits::maxBytesLoaded);
    if (!valid) {
        QCOMPARE(exif.Make, QStringLiteral("n.a."));
        QCOMPARE(exif.ISO, quint16(0));
    }
    QVERIFY2(!exif.Make.isNull() && !exif.Model.isNull() && !exif.LensModel.isNull()
                 && !exif.DateTimeOriginal.isNull()
                 && !exif.exif_0x829A_ExposureTimeAsString().isNull()
                 && !exif.exif_0x829D_FNumberAsString().isNull()
                 && !exif.exif_0x9207_MeteringModeAsString().isNull()
                 && !exif.exif_0x8822_ExpProgAsString().isNull(),
             "the scan's texts are never null");
}
