#include "tst_tool.h"

#include "exiftagcatalogue.h"
#include "exiftestsupport.h"

#include <QProcess>

namespace {

struct ToolRun
{
    int exitCode = -1;
    QStringList lines;
    QString errors;
};

ToolRun runTool(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(KELVARO_EXIF_TOOL), arguments);
    ToolRun run;
    if (!process.waitForFinished(60000))
        return run;
    run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.lines = QString::fromUtf8(process.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
    run.errors = QString::fromUtf8(process.readAllStandardError());
    return run;
}

} // namespace

void tst_Tool::printsWhatTheScanStores_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QString>("reason"); // on standard error; a usage error prints the usage
    const QString typical = QStringLiteral("a.jpg;2023:07:14 18:30:05;Canon;Canon EOS 5D Mark IV;"
                                           "EF24-70mm f/2.8L II USM;50;400;2.8;0.004;1/250;"
                                           "Matrix;Av [Aperture-priority]");
    QTest::newRow("one recognised JPEG")
        << QStringList { "a.jpg" } << 0 << QStringList { typical } << QString();
    QTest::newRow("HEIF and AVIF as the JPEG")
        << QStringList { "h.HEIC", "v.avif" } << 0
        << QStringList { QString(typical).replace(0, 5, QStringLiteral("h.HEIC")),
                         QString(typical).replace(0, 5, QStringLiteral("v.avif")) }
        << QString();
    QTest::newRow("a HEIF file without an Exif item")
        << QStringList { "none.heif" } << 1 << QStringList { "none.heif;not recognised" }
        << QString();
    QTest::newRow("a file without shooting tags")
        << QStringList { "bare.tif" } << 0
        << QStringList { "bare.tif;n.a.;Nikon;n.a.;n.a.;0;0;0.0;0;n.a;n.a;not defined" }
        << QString();
    QTest::newRow("CR3 with 24.5 mm and 1/3 s")
        << QStringList { "c.cr3" } << 0
        << QStringList { "c.cr3;n.a.;Canon;n.a.;n.a.;24.5;0;0.0;0.3333333333333333;1/3;n.a;"
                         "n.a." }
        << QString();
    QTest::newRow("a recognised and a rejected file")
        << QStringList { "a.jpg", "x.png" } << 1 << QStringList { typical, "x.png;not recognised" }
        << QString();
    QTest::newRow("a file that doesn't exist")
        << QStringList { "missing.jpg" } << 1 << QStringList { "missing.jpg;not recognised" }
        << "missing.jpg: No such file or directory\n";
    QTest::newRow("no file: usage error")
        << QStringList() << 2 << QStringList() << "Usage: kelvaro-exif";
    QTest::newRow("unknown option: usage error")
        << QStringList { "--bogus", "a.jpg" } << 2 << QStringList() << "Usage: kelvaro-exif";
}

void tst_Tool::printsWhatTheScanStores()
{
    QFETCH(QStringList, files);
    QFETCH(int, exitCode);
    QFETCH(QStringList, lines);
    QFETCH(QString, reason);
    testutils::Sandbox sandbox;
    QVERIFY(fixture::writePhoto(sandbox.filePath("a.jpg"), fixture::Format::Jpeg,
                                fixture::typicalTags()));
    fixture::PhotoTags bare;
    bare.make = QStringLiteral("Nikon");
    QVERIFY(fixture::writePhoto(sandbox.filePath("bare.tif"), fixture::Format::TiffBig, bare));
    fixture::PhotoTags cr3;
    cr3.make = QStringLiteral("Canon");
    cr3.focalLength = fixture::Rational { 245, 10 };
    cr3.exposureTime = fixture::Rational { 1, 3 };
    cr3.exposureProgram = 11;
    QVERIFY(fixture::writePhoto(sandbox.filePath("c.cr3"), fixture::Format::Cr3, cr3));
    QVERIFY(fixture::writeBytes(sandbox.filePath("x.png"), QByteArray::fromHex("89504E47")));
    QVERIFY(fixture::writePhoto(sandbox.filePath("h.HEIC"), fixture::Format::Heic,
                                fixture::typicalTags()));
    QVERIFY(fixture::writePhoto(sandbox.filePath("v.avif"), fixture::Format::Avif,
                                fixture::typicalTags()));
    QVERIFY(fixture::writeBytes(sandbox.filePath("none.heif"), fixture::heifWithoutExif()));

    QStringList arguments;
    for (const QString &file : files)
        arguments.append(file.startsWith(u'-') ? file : sandbox.filePath(file));
    const ToolRun run = runTool(arguments);
    QCOMPARE(run.exitCode, exitCode);
    QCOMPARE(run.lines, lines);
    if (reason.isEmpty())
        QCOMPARE(run.errors, QString());
    else
        QVERIFY2(run.errors.contains(reason), qPrintable(run.errors));
}

void tst_Tool::entriesComeBeforeTheFileLine()
{
    testutils::Sandbox sandbox;
    fixture::PhotoTags tags;
    tags.make = QStringLiteral("Pentax");
    tags.iso = 200;
    const QString path = sandbox.filePath("p.tif");
    QVERIFY(fixture::writePhoto(path, fixture::Format::TiffLittle, tags));
    const ToolRun run = runTool({ QStringLiteral("--entries"), path });
    QCOMPARE(run.exitCode, 0);
    // IFD0 (Make, Exif pointer), the Exif IFD (ISO) walked inside it, then IFD1.
    const QStringList expected = {
        entryDescription(0x010F, 2, 7, 7),
        entryDescription(0x8769, 4, 1, 4),
        entryDescription(0x8827, 3, 1, 2),
        entryDescription(0x0103, 3, 1, 2),
        entryDescription(0x0201, 4, 1, 4),
        entryDescription(0x0202, 4, 1, 4),
        QStringLiteral("p.tif;n.a.;Pentax;n.a.;n.a.;0;200;0.0;0;n.a;n.a;not defined")
    };
    QCOMPARE(run.lines, expected);
}
