#include "tst_tool.h"

#include "exiftagcatalogue.h"
#include "exiftestsupport.h"

#include <QJsonDocument>
#include <QJsonObject>
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
    QTest::newRow("--json without a file: usage error")
        << QStringList { "--json" } << 2 << QStringList() << "Usage: kelvaro-exif";
    QTest::newRow("--json with --entries: usage error")
        << QStringList { "--json", "--entries", "a.jpg" } << 2 << QStringList()
        << "--entries and --json exclude each other";
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

namespace {

// The keys of every --json line, recognised or not.
const QStringList jsonKeys = { "date",    "exposureMode", "exposureTime", "exposureTimeText",
                               "fNumber", "file",         "focalLength",  "focalLength35",
                               "iso",     "lens",         "maker",        "meteringMode",
                               "model",   "recognised" };

QJsonObject notRecognised(const QString &name)
{
    QJsonObject object;
    for (const QString &key : jsonKeys)
        object.insert(key, QJsonValue::Null);
    object.insert("file", name);
    object.insert("recognised", false);
    return object;
}

QString jsonText(const QJsonValue &value)
{
    return QString::fromUtf8(
        QJsonDocument(QJsonObject { { "v", value } }).toJson(QJsonDocument::Compact));
}

} // namespace

void tst_Tool::jsonGivesWhatTheScanStores_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    // One object per file, in order; "file" holds the name, which the test makes a path.
    QTest::addColumn<QList<QJsonObject>>("objects");
    const QJsonObject typical { { "file", "a.jpg" },
                                { "recognised", true },
                                { "date", "2023:07:14 18:30:05" },
                                { "maker", "Canon" },
                                { "model", "Canon EOS 5D Mark IV" },
                                { "lens", "EF24-70mm f/2.8L II USM" },
                                { "focalLength", 50 },
                                { "focalLength35", 50 },
                                { "iso", 400 },
                                { "fNumber", 2.8 },
                                { "exposureTime", 0.004 },
                                { "exposureTimeText", "1/250" },
                                { "meteringMode", "Matrix" },
                                { "exposureMode", "Av [Aperture-priority]" } };
    QJsonObject apsC = typical;
    apsC.insert("file", "apsc.jpg");
    apsC.insert("focalLength35", 75);
    const QJsonObject bare { { "file", "bare.tif" },
                             { "recognised", true },
                             { "date", "n.a." },
                             { "maker", "Nikon" },
                             { "model", "n.a." },
                             { "lens", "n.a." },
                             { "focalLength", 0 },
                             { "focalLength35", QJsonValue::Null },
                             { "iso", 0 },
                             { "fNumber", 0 },
                             { "exposureTime", 0 },
                             { "exposureTimeText", "n.a" },
                             { "meteringMode", "n.a" },
                             { "exposureMode", "not defined" } };
    QTest::newRow("a recognised JPEG")
        << QStringList { "--json", "a.jpg" } << 0 << QList<QJsonObject> { typical };
    QTest::newRow("35 mm focal length apart from the focal length")
        << QStringList { "--json", "apsc.jpg" } << 0 << QList<QJsonObject> { apsC };
    QTest::newRow("unknown 35 mm focal length is null")
        << QStringList { "bare.tif", "--json" } << 0 << QList<QJsonObject> { bare };
    QTest::newRow("a rejected and a missing file beside a recognised one")
        << QStringList { "--json", "a.jpg", "x.png", "missing.jpg" } << 1
        << QList<QJsonObject> { typical, notRecognised("x.png"), notRecognised("missing.jpg") };
}

void tst_Tool::jsonGivesWhatTheScanStores()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QList<QJsonObject>, objects);
    testutils::Sandbox sandbox;
    const fixture::PhotoTags typical = fixture::typicalTags();
    QVERIFY(fixture::writePhoto(sandbox.filePath("a.jpg"), fixture::Format::Jpeg, typical));
    fixture::PhotoTags apsC = typical;
    apsC.focalLengthIn35mm = 75;
    QVERIFY(fixture::writePhoto(sandbox.filePath("apsc.jpg"), fixture::Format::Jpeg, apsC));
    fixture::PhotoTags bare;
    bare.make = QStringLiteral("Nikon");
    QVERIFY(fixture::writePhoto(sandbox.filePath("bare.tif"), fixture::Format::TiffBig, bare));
    QVERIFY(fixture::writeBytes(sandbox.filePath("x.png"), QByteArray::fromHex("89504E47")));

    for (QString &argument : arguments) {
        if (!argument.startsWith(u'-'))
            argument = sandbox.filePath(argument);
    }
    const ToolRun run = runTool(arguments);
    QCOMPARE(run.exitCode, exitCode);
    QCOMPARE(run.lines.size(), objects.size());
    for (qsizetype i = 0; i < objects.size(); ++i) {
        QJsonParseError error;
        const QJsonDocument line = QJsonDocument::fromJson(run.lines[i].toUtf8(), &error);
        QVERIFY2(error.error == QJsonParseError::NoError && line.isObject(),
                 qPrintable(run.lines[i]));
        const QJsonObject actual = line.object();
        QJsonObject expected = objects[i];
        expected.insert("file", sandbox.filePath(expected.value("file").toString()));
        QCOMPARE(actual.keys(), jsonKeys); // keys() is sorted
        for (const QString &key : jsonKeys)
            QVERIFY2(actual.value(key) == expected.value(key),
                     qPrintable(QStringLiteral("%1: %2, expected %3")
                                    .arg(key, jsonText(actual.value(key)),
                                         jsonText(expected.value(key)))));
    }
}
