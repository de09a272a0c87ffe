#include "tst_kelvarostats.h"

#include "photofixture.h"
#include "statistic.h"
#include "testutils.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QProcess>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>

namespace {

struct Result
{
    int exitCode = -1;
    QString out;
    QString err;
};

// The library: three Canon JPEGs and a Nikon NEF in "top", a Sony JPEG in "top/sub", an
// unreadable file that only looks like a photo.
QString writeLibrary(const testutils::Sandbox &sandbox)
{
    const QString top = sandbox.makeDir("library/top");
    const QString sub = sandbox.makeDir("library/top/sub");
    fixture::PhotoTags canon = fixture::typicalTags();
    canon.make = "Canon";
    canon.model = "EOS R5";
    canon.dateTimeOriginal = "2023:03:14 10:11:12";
    fixture::PhotoTags nikon = canon;
    nikon.make = "NIKON CORPORATION";
    nikon.model = "NIKON D70";
    nikon.dateTimeOriginal = "2021:07:03 18:00:00";
    fixture::PhotoTags sony = canon;
    sony.make = "SONY";
    sony.model = "ILCE-7M3";
    sony.dateTimeOriginal = QString();
    bool written = true;
    for (int i = 1; i <= 3; ++i)
        written &=
            fixture::writePhoto(top + QString("/IMG_%1.jpg").arg(i), fixture::Format::Jpeg, canon);
    written &= fixture::writePhoto(top + "/DSC_1.NEF", fixture::Format::TiffLittle, nikon);
    written &= fixture::writePhoto(sub + "/DSC_2.jpg", fixture::Format::Jpeg, sony);
    written &= fixture::writeBytes(top + "/broken.jpg", "not a photo");
    return written ? top : QString();
}

Result run(const testutils::Sandbox &sandbox, const QStringList &arguments)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_CONFIG_HOME", sandbox.configDir());
    environment.insert("XDG_CACHE_HOME", sandbox.cacheDir());
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(KELVARO_STATS_TOOL), arguments);
    Result result;
    if (process.waitForFinished(120000) && process.exitStatus() == QProcess::NormalExit)
        result.exitCode = process.exitCode();
    result.out = QString::fromUtf8(process.readAllStandardOutput());
    result.err = QString::fromUtf8(process.readAllStandardError());
    return result;
}

// The csv output's rows per statistic: "value=count".
QMap<QString, QStringList> csvRows(const QString &csv)
{
    QMap<QString, QStringList> rows;
    const QStringList lines = csv.split('\n', Qt::SkipEmptyParts);
    for (const QString &line : lines.mid(1)) {
        const QStringList fields = line.split(';');
        if (fields.size() == 3)
            rows[fields[0]] << fields[1] + "=" + fields[2];
    }
    return rows;
}

} // namespace

void tst_KelvaroStats::csvHasEveryStatisticAndCountsEveryPhoto()
{
    testutils::Sandbox sandbox;
    const QString top = writeLibrary(sandbox);
    QVERIFY(!top.isEmpty());
    const Result result = run(sandbox, { "--format", "csv", top });
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.err, QString());
    QVERIFY(result.out.startsWith("statistic;value;count\n"));
    const QMap<QString, QStringList> rows = csvRows(result.out);
    QCOMPARE(rows.size(), Statistics::all().size());
    for (const Statistic &statistic : Statistics::all()) {
        int total = 0;
        for (const QString &row : rows.value(statistic.tabTitle))
            total += row.section('=', -1).toInt();
        QVERIFY2(total == 5, qPrintable(statistic.tabTitle + ": " + QString::number(total)));
    }
    QCOMPARE(rows["Maker"], (QStringList { "Canon=3", "NIKON CORPORATION=1", "SONY=1" }));
    QCOMPARE(rows["Date Original"], (QStringList { "2021-07-03=1", "2023-03-14=3", "n.a.=1" }));
    QCOMPARE(rows["File Type"], (QStringList { "JPG=4", "NEF=1" }));
    QCOMPARE(rows["Hour of Day"], (QStringList { "10=3", "18=1", "n.a.=1" }));
    QCOMPARE(rows["Weekday"], (QStringList { "Tuesday=3", "Saturday=1", "n.a.=1" }));
}

void tst_KelvaroStats::jsonHoldsTheSameRows()
{
    testutils::Sandbox sandbox;
    const QString top = writeLibrary(sandbox);
    const Result csv = run(sandbox, { "--format", "csv", top });
    const Result json = run(sandbox, { "--format", "json", top });
    QCOMPARE(json.exitCode, 0);
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json.out.toUtf8(), &error);
    QVERIFY2(error.error == QJsonParseError::NoError, qPrintable(error.errorString()));
    QCOMPARE(document.object().value("photos").toInt(), 5);
    const QJsonObject statistics = document.object().value("statistics").toObject();
    QMap<QString, QStringList> fromJson;
    for (auto it = statistics.begin(); it != statistics.end(); ++it) {
        for (const QJsonValue &row : it.value().toArray())
            fromJson[it.key()] << row.toObject().value("value").toString() + "="
                    + QString::number(row.toObject().value("count").toInt());
    }
    QCOMPARE(fromJson, csvRows(csv.out));
}

void tst_KelvaroStats::textShowsEveryTitle()
{
    testutils::Sandbox sandbox;
    const QString top = writeLibrary(sandbox);
    const Result result = run(sandbox, { top });
    QCOMPARE(result.exitCode, 0);
    QVERIFY(result.out.startsWith("Photos: 5\n"));
    for (const Statistic &statistic : Statistics::all())
        QVERIFY2(result.out.contains("\n" + statistic.tabTitle + "\n"),
                 qPrintable(statistic.tabTitle));
    // Counts are right-aligned under their header.
    // Values padded to the longest ("NIKON CORPORATION"), counts right-aligned under "Count".
    const QString maker = "\nMaker\n" + QString("Value").leftJustified(17) + "  Count\n"
        + QString("Canon").leftJustified(17) + "      3\n";
    QVERIFY2(result.out.contains(maker), qPrintable(result.out));
}

void tst_KelvaroStats::namedStatisticsOnly()
{
    testutils::Sandbox sandbox;
    const QString top = writeLibrary(sandbox);
    const Result result = run(
        sandbox, { "--format", "csv", "--statistic", "file type", "--statistic", "Maker", top });
    QCOMPARE(result.exitCode, 0);
    // In the order the statistics are named.
    QCOMPARE(result.out,
             QString("statistic;value;count\nFile Type;JPG;4\nFile Type;NEF;1\nMaker;Canon;3\n"
                     "Maker;NIKON CORPORATION;1\nMaker;SONY;1\n"));
}

void tst_KelvaroStats::typesAndSubdirectories_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("makers");

    QTest::newRow("every type, subdirectories")
        << QStringList {} << "Canon=3 NIKON CORPORATION=1 SONY=1";
    QTest::newRow("no subdirectories")
        << QStringList { "--no-subdirectories" } << "Canon=3 NIKON CORPORATION=1";
    QTest::newRow("NEF only, in capitals")
        << QStringList { "--type", "NEF" } << "NIKON CORPORATION=1";
    QTest::newRow("jpg only, no subdirectories")
        << QStringList { "--type", "jpg", "--no-subdirectories" } << "Canon=3";
    QTest::newRow("two types") << QStringList { "--type", "nef", "--type", "JPG" }
                               << "Canon=3 NIKON CORPORATION=1 SONY=1";
    QTest::newRow("a type the library lacks") << QStringList { "--type", "cr3" } << "";
}

void tst_KelvaroStats::typesAndSubdirectories()
{
    QFETCH(QStringList, options);
    QFETCH(QString, makers);
    testutils::Sandbox sandbox;
    const QString top = writeLibrary(sandbox);
    const Result result = run(sandbox,
                              QStringList { "--format", "csv", "--statistic", "Maker" } + options
                                  + QStringList { top });
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(csvRows(result.out).value("Maker").join(' '), makers);
}

void tst_KelvaroStats::storedExclusionsApply()
{
    testutils::Sandbox sandbox;
    const QString top = writeLibrary(sandbox);
    {
        QSettings store(QSettings::IniFormat, QSettings::UserScope, "Kelvaro", "Kelvaro");
        store.setValue("OtherSettings/makerExcludes", QStringList { "SONY" });
        store.setValue("OtherSettings/focalLength35Groups", QStringList { "1-1000" });
    }
    const Result result = run(sandbox, { "--format", "csv", "--statistic", "Maker", top });
    QCOMPARE(csvRows(result.out).value("Maker").join(' '), QString("Canon=3 NIKON CORPORATION=1"));
}

void tst_KelvaroStats::messyNamesCountedTogetherOnRequest_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QStringList>("makers");

    QTest::newRow("as the files hold them") << QStringList {}
                                            << QStringList { "EASTMAN KODAK COMPANY =1",
                                                             "EASTMAN KODAK COMPANY=1",
                                                             "Eastman Kodak Company=1",
                                                             "Grandpa Cam=1",
                                                             "JVC  =1",
                                                             "JVC=2",
                                                             "NIKON CORPORATION=1",
                                                             "NIKON=1",
                                                             "jvc=1" };
    QTest::newRow("--merge-names") << QStringList { "--merge-names" }
                                   << QStringList { "EASTMAN KODAK COMPANY=3", "Grandpa Cam=1",
                                                    "JVC=4", "NIKON CORPORATION=1", "NIKON=1" };
    QTest::newRow("--friendly-makers") << QStringList { "--friendly-makers" }
                                       << QStringList { "JVC=4", "Kodak=3", "Nikon=2", "Zenit=1" };
    QTest::newRow("both") << QStringList { "--merge-names", "--friendly-makers" }
                          << QStringList { "JVC=4", "Kodak=3", "Nikon=2", "Zenit=1" };
    // A maker filter compares the names as the statistics count them.
    QTest::newRow("--maker as the files hold it")
        << QStringList { "--maker", "JVC" } << QStringList { "JVC=2" };
    QTest::newRow("--maker of merged names")
        << QStringList { "--merge-names", "--maker", "JVC" } << QStringList { "JVC=4" };
    QTest::newRow("--maker of a friendly name")
        << QStringList { "--friendly-makers", "--maker", "Nikon" } << QStringList { "Nikon=2" };
}

// Files whose makers differ only in trailing blanks, NULs and case, and the user's aliases in a
// chain and in a circle.
void tst_KelvaroStats::messyNamesCountedTogetherOnRequest()
{
    QFETCH(QStringList, options);
    QFETCH(QStringList, makers);
    testutils::Sandbox sandbox;
    const QString photos = sandbox.makeDir("messy");
    const QString nul(QChar(0));
    const QStringList written { "JVC",
                                "JVC  ",
                                "jvc",
                                "JVC" + nul + nul + " ",
                                "EASTMAN KODAK COMPANY",
                                "Eastman Kodak Company",
                                "EASTMAN KODAK COMPANY ",
                                "NIKON",
                                "NIKON CORPORATION",
                                "Grandpa Cam" };
    for (int i = 0; i < written.size(); ++i) {
        fixture::PhotoTags tags = fixture::typicalTags();
        tags.make = written.at(i);
        QVERIFY(fixture::writePhoto(photos + QString("/IMG_%1.jpg").arg(i), fixture::Format::Jpeg,
                                    tags));
    }
    {
        QSettings store(QSettings::IniFormat, QSettings::UserScope, "Kelvaro", "Kelvaro");
        store.setValue(
            "OtherSettings/makerAliases",
            QStringList { "Grandpa Cam = Zenit Old", "zenit old = Zenit", "A = B", "B = A" });
    }
    const Result result =
        run(sandbox, QStringList { "--format", "csv", "--statistic", "Maker" } + options << photos);
    QCOMPARE(result.exitCode, 0);
    QStringList counted = csvRows(result.out).value("Maker");
    counted.sort();
    QCOMPARE(counted, makers);
}

void tst_KelvaroStats::secondRunTakesUnchangedFilesFromTheCatalogue_data()
{
    QTest::addColumn<QStringList>("secondOptions");
    QTest::addColumn<bool>("rememberPhotos");
    QTest::addColumn<QString>("secondMakers");

    // The catalogue cannot see a change that keeps size, time, inode and device: a maker renamed
    // in place shows whether the file was read again or its remembered values were taken.
    QTest::newRow("catalogue used: the remembered maker")
        << QStringList {} << true << "Canon=3 NIKON CORPORATION=1 SONY=1";
    QTest::newRow("--no-catalogue: the file is read")
        << QStringList { "--no-catalogue" } << true << "Canon=2 NIKON CORPORATION=1 SONY=1 Xanon=1";
    QTest::newRow("remembering switched off in the settings: the file is read")
        << QStringList {} << false << "Canon=2 NIKON CORPORATION=1 SONY=1 Xanon=1";
}

void tst_KelvaroStats::secondRunTakesUnchangedFilesFromTheCatalogue()
{
    QFETCH(QStringList, secondOptions);
    QFETCH(bool, rememberPhotos);
    QFETCH(QString, secondMakers);

    testutils::Sandbox sandbox;
    const QString top = writeLibrary(sandbox);
    {
        QSettings store(QSettings::IniFormat, QSettings::UserScope, "Kelvaro", "Kelvaro");
        store.setValue("OtherSettings/rememberPhotos", rememberPhotos);
    }
    const QStringList csvMakers { "--format", "csv", "--statistic", "Maker" };
    const Result first = run(sandbox, csvMakers + QStringList { top });
    QCOMPARE(first.exitCode, 0);
    QCOMPARE(csvRows(first.out).value("Maker").join(' '),
             QString("Canon=3 NIKON CORPORATION=1 SONY=1"));
    const QString catalogue = sandbox.cacheDir() + "/Kelvaro/photo-catalogue.sqlite";
    QCOMPARE(QFile::exists(catalogue), rememberPhotos);

    const QString photo = top + "/IMG_2.jpg";
    struct stat before;
    QCOMPARE(::stat(QFile::encodeName(photo).constData(), &before), 0);
    QFile file(photo);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QByteArray bytes = file.readAll();
    const qsizetype make = bytes.indexOf("Canon");
    QVERIFY(make > 0);
    bytes[make] = 'X';
    QVERIFY(file.seek(0));
    QCOMPARE(file.write(bytes), bytes.size());
    file.close();
    // The modification time back to the nanosecond.
    const struct timespec times[2] = { before.st_atim, before.st_mtim };
    QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(photo).constData(), times, 0), 0);

    const Result second = run(sandbox, csvMakers + secondOptions + QStringList { top });
    QCOMPARE(second.exitCode, 0);
    QCOMPARE(csvRows(second.out).value("Maker").join(' '), secondMakers);
    QVERIFY2(second.err.isEmpty(), qPrintable(second.err));
}

void tst_KelvaroStats::filterOptions_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("makers");

    QTest::newRow("one maker") << QStringList { "--maker", "Canon" } << "Canon=3";
    QTest::newRow("two makers") << QStringList { "--maker", "SONY", "--maker", "Canon" }
                                << "Canon=3 SONY=1";
    QTest::newRow("maker in another case matches nothing")
        << QStringList { "--maker", "canon" } << "";
    QTest::newRow("model") << QStringList { "--model", "NIKON D70" } << "NIKON CORPORATION=1";
    QTest::newRow("lens") << QStringList { "--lens", fixture::typicalTags().lensModel }
                          << "Canon=3 NIKON CORPORATION=1 SONY=1";
    QTest::newRow("maker and model that never met")
        << QStringList { "--maker", "Canon", "--model", "NIKON D70" } << "";
    QTest::newRow("one day") << QStringList { "--from", "2023-03-14", "--to", "2023-03-14" }
                             << "Canon=3";
    QTest::newRow("until the day of the Nikon")
        << QStringList { "--to", "2021-07-03" } << "NIKON CORPORATION=1";
    QTest::newRow("from the day after the Nikon")
        << QStringList { "--from", "2021-07-04" } << "Canon=3";
    QTest::newRow("between the photos")
        << QStringList { "--from", "2021-07-04", "--to", "2023-03-13" } << "";
    QTest::newRow("maker and range")
        << QStringList { "--maker", "NIKON CORPORATION", "--from", "2021-01-01" }
        << "NIKON CORPORATION=1";
}

void tst_KelvaroStats::filterOptions()
{
    QFETCH(QStringList, options);
    QFETCH(QString, makers);
    testutils::Sandbox sandbox;
    const QString top = writeLibrary(sandbox);
    QVERIFY(!top.isEmpty());
    const Result result =
        run(sandbox, QStringList { "--format", "csv" } + options + QStringList { top });
    QCOMPARE(result.exitCode, 0);
    const QMap<QString, QStringList> rows = csvRows(result.out);
    QCOMPARE(rows.value("Maker").join(' '), makers);
    // Every statistic counts the same photos.
    int kept = 0;
    for (const QString &row : rows.value("Maker"))
        kept += row.section('=', -1).toInt();
    for (const Statistic &statistic : Statistics::all()) {
        int total = 0;
        for (const QString &row : rows.value(statistic.tabTitle))
            total += row.section('=', -1).toInt();
        QVERIFY2(total == kept, qPrintable(statistic.tabTitle));
    }
}

void tst_KelvaroStats::filterNamedInTextAndJson()
{
    testutils::Sandbox sandbox;
    const QString top = writeLibrary(sandbox);
    const QStringList filter { "--maker", "Canon", "--from", "2023-01-01", "--to", "2023-12-31" };
    const Result text = run(sandbox, filter + QStringList { "--statistic", "Maker", top });
    QCOMPARE(text.exitCode, 0);
    QVERIFY2(text.out.startsWith("Photos: 5\nShowing: 3 (Canon, 2023)\n"), qPrintable(text.out));
    const Result json =
        run(sandbox, QStringList { "--format", "json" } + filter + QStringList { top });
    const QJsonObject root = QJsonDocument::fromJson(json.out.toUtf8()).object();
    QCOMPARE(root.value("photos").toInt(), 5);
    QCOMPARE(root.value("shown").toInt(), 3);
    QCOMPARE(root.value("filter").toString(), QString("Canon, 2023"));
    // Without a filter the output is as it always was.
    const Result plain = run(sandbox, { "--statistic", "Maker", top });
    QVERIFY(plain.out.startsWith("Photos: 5\n\nMaker\n"));
    const Result plainJson = run(sandbox, { "--format", "json", top });
    QCOMPARE(QJsonDocument::fromJson(plainJson.out.toUtf8()).object().keys(),
             (QStringList { "photos", "statistics" }));
}

// Raw files and their JPEGs in one folder count once; a JPEG of the same name in another folder
// and a JPEG without a raw file still count.
void tst_KelvaroStats::pairsOnce()
{
    testutils::Sandbox sandbox;
    const QString top = sandbox.makeDir("pairs");
    const QString other = sandbox.makeDir("pairs/other");
    fixture::PhotoTags tags = fixture::typicalTags();
    bool written = true;
    written &= fixture::writePhoto(top + "/A.NEF", fixture::Format::TiffLittle, tags);
    written &= fixture::writePhoto(top + "/A.jpg", fixture::Format::Jpeg, tags);
    written &= fixture::writePhoto(top + "/B.nef", fixture::Format::TiffLittle, tags);
    written &= fixture::writePhoto(top + "/B.JPG", fixture::Format::Jpeg, tags);
    written &= fixture::writePhoto(top + "/C.jpg", fixture::Format::Jpeg, tags);
    written &= fixture::writePhoto(other + "/A.jpg", fixture::Format::Jpeg, tags);
    QVERIFY(written);
    const Result merged = run(sandbox, { "--format", "csv", "--pairs-once", top });
    QCOMPARE(merged.exitCode, 0);
    QCOMPARE(csvRows(merged.out).value("File Type"), (QStringList { "JPG=2", "NEF=2" }));
    const Result all = run(sandbox, { "--format", "csv", top });
    QCOMPARE(csvRows(all.out).value("File Type"), (QStringList { "JPG=4", "NEF=2" }));
    const Result text = run(sandbox, { "--pairs-once", "--statistic", "File Type", top });
    QVERIFY2(text.out.startsWith("Photos: 6\nShowing: 4 (RAW+JPEG once)\n"
                                 "RAW+JPEG pairs merged: 2\n"),
             qPrintable(text.out));
}

void tst_KelvaroStats::usageErrors_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");

    QTest::newRow("no directory") << QStringList {} << "no directory given";
    QTest::newRow("unknown option") << QStringList { "--bogus", "." } << "unknown option --bogus";
    QTest::newRow("unknown format")
        << QStringList { "--format", "xml", "." } << "unknown format \"xml\"";
    QTest::newRow("format without value") << QStringList { "--format" } << "--format needs";
    QTest::newRow("unknown statistic")
        << QStringList { "--statistic", "Colour", "." } << "unknown statistic \"Colour\"";
    QTest::newRow("type without value") << QStringList { ".", "--type" } << "--type needs";
    QTest::newRow("type with a wildcard")
        << QStringList { "--type", "*.jpg", "." } << "--type needs";
    QTest::newRow("maker without value") << QStringList { ".", "--maker" } << "--maker needs";
    QTest::newRow("day in another order")
        << QStringList { "--from", "14.03.2023", "." } << "--from needs a day written yyyy-MM-dd";
    QTest::newRow("day no calendar has")
        << QStringList { "--to", "2023-02-30", "." } << "--to needs a day written yyyy-MM-dd";
    QTest::newRow("from after to")
        << QStringList { "--from", "2023-03-02", "--to", "2023-03-01", "." }
        << "--from is after --to";
}

void tst_KelvaroStats::usageErrors()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    testutils::Sandbox sandbox;
    const Result result = run(sandbox, arguments);
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(result.out, QString());
    QVERIFY2(result.err.startsWith("kelvaro-stats: " + message), qPrintable(result.err));
    QVERIFY(result.err.contains("Usage: kelvaro-stats"));
}

void tst_KelvaroStats::missingDirectoryIsNamedAndTheRestScanned()
{
    testutils::Sandbox sandbox;
    const QString top = writeLibrary(sandbox);
    const QString missing = sandbox.filePath("gone");
    const QString file = top + "/IMG_1.jpg";
    const Result result =
        run(sandbox, { "--format", "csv", "--statistic", "Maker", missing, file, top });
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(result.err,
             QString("kelvaro-stats: %1: No such file or directory\n"
                     "kelvaro-stats: %2: Not a directory\n")
                 .arg(missing, file));
    QCOMPARE(csvRows(result.out).value("Maker").join(' '),
             QString("Canon=3 NIKON CORPORATION=1 SONY=1"));
}

// For scripts and servers without a display: the program needs Qt Core and Qt Sql only, also
// through the libraries it loads in turn.
void tst_KelvaroStats::linksNoWidgetOrChartLibrary()
{
    QProcess ldd;
    ldd.start(QStringLiteral("ldd"), { QStringLiteral(KELVARO_STATS_TOOL) });
    if (!ldd.waitForStarted())
        QSKIP("ldd is not available to list the libraries");
    QVERIFY(ldd.waitForFinished(30000));
    const QString libraries = QString::fromLocal8Bit(ldd.readAllStandardOutput());
    QVERIFY2(libraries.contains("libQt6Core") && libraries.contains("libQt6Sql"),
             qPrintable(libraries));
    for (const char *library : { "libQt6Gui", "libQt6Widgets", "libQt6Charts",
                                 "libQt6DataVisualization", "libQt6Network" })
        QVERIFY2(!libraries.contains(library), library);
}

// The count every 50 files goes to standard error while that is a terminal (here the pseudo
// terminal of script(1)); into a pipe nothing is written there.
void tst_KelvaroStats::progressOnlyOnATerminal()
{
    testutils::Sandbox sandbox;
    const QString photos = sandbox.makeDir("photos");
    for (int i = 1; i <= 120; ++i)
        QVERIFY(fixture::writePhoto(photos + QString("/IMG_%1.jpg").arg(i), fixture::Format::Jpeg,
                                    fixture::typicalTags()));
    const Result piped = run(sandbox, { "--format", "csv", "--statistic", "Maker", photos });
    QCOMPARE(piped.exitCode, 0);
    QCOMPARE(piped.err, QString());

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_CONFIG_HOME", sandbox.configDir());
    environment.insert("XDG_CACHE_HOME", sandbox.cacheDir());
    QProcess terminal;
    terminal.setProcessEnvironment(environment);
    const QString command = QString("'%1' --format csv --statistic Maker '%2'")
                                .arg(QStringLiteral(KELVARO_STATS_TOOL), photos);
    terminal.start("script", { "-qec", command, "/dev/null" });
    if (!terminal.waitForStarted())
        QSKIP("script(1) is not available to give the program a terminal");
    QVERIFY(terminal.waitForFinished(60000));
    QCOMPARE(terminal.exitCode(), 0);
    const QString screen = QString::fromUtf8(terminal.readAllStandardOutput());
    QVERIFY2(screen.contains("Scanned files... 50") && screen.contains("Scanned files... 100"),
             qPrintable(screen));
    QVERIFY2(screen.contains("Maker;Canon;120"), qPrintable(screen));
}
