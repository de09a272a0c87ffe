#include "tst_statistics.h"

#include "dayspan.h"
#include "filetypes.h"
#include "photodatabase.h"
#include "photodate.h"
#include "photorowinserter.h"
#include "rangegroups.h"
#include "statistic.h"
#include "statisticrows.h"

#include <QSet>
#include <QSqlQuery>
#include <QTest>

namespace {

QStringList values(const QList<StatisticRow> &rows)
{
    QStringList texts;
    for (const StatisticRow &row : rows)
        texts << row.value;
    return texts;
}

QList<StatisticRow> rowsOf(const QString &key, const QSqlDatabase &db)
{
    QList<StatisticRow> rows;
    QString error;
    if (!readStatisticRows(*Statistics::byKey(key), db, {}, rows, &error))
        qWarning("%s: %s", qPrintable(key), qPrintable(error));
    return rows;
}

} // namespace

void tst_Statistics::init()
{
    QVERIFY2(PhotoDatabase::openMainConnection(db), "the photo database could not be opened");
}

void tst_Statistics::cleanup()
{
    QSqlQuery(db).exec(QStringLiteral("DROP TABLE DATEIEN"));
    QSqlQuery(db).exec(QStringLiteral("DROP TABLE PHOTOINFO"));
    QSqlQuery(db).exec(QStringLiteral("DROP TABLE PHOTOFOLDERS"));
    db.close();
    db = QSqlDatabase();
    QSqlDatabase::removeDatabase(PhotoDatabase::mainConnection);
}

void tst_Statistics::plausibleDaysAtTheirBoundaries_data()
{
    QTest::addColumn<QDate>("day");
    QTest::addColumn<bool>("plausible");

    // "Today" is 2026-11-24.
    QTest::newRow("1989-12-31") << QDate(1989, 12, 31) << false;
    QTest::newRow("1990-01-01") << QDate(1990, 1, 1) << true;
    QTest::newRow("today") << QDate(2026, 11, 24) << true;
    QTest::newRow("tomorrow") << QDate(2026, 11, 25) << false;
    QTest::newRow("1970, an unset clock") << QDate(1970, 1, 1) << false;
    QTest::newRow("2000, an unset clock") << QDate(2000, 1, 1) << true;
    QTest::newRow("2099") << QDate(2099, 1, 1) << false;
    QTest::newRow("year 1") << QDate(1, 1, 1) << false;
}

void tst_Statistics::plausibleDaysAtTheirBoundaries()
{
    QFETCH(QDate, day);
    QFETCH(bool, plausible);
    QCOMPARE(DaySpan::plausible(QDate(2026, 11, 24)).contains(day), plausible);
    // Without bounds every day is drawn.
    QVERIFY(DaySpan().contains(day));
}

void tst_Statistics::implausibleDatesCountedFromTheDayRows_data()
{
    QTest::addColumn<QStringList>("dates");
    QTest::addColumn<qint64>("outside");
    QTest::addColumn<int>("days");

    QTest::newRow("around 1990") << QStringList { "1989:12:31 23:59:59", "1990:01:01 00:00:00",
                                                  "1990:01:01 08:00:00" }
                                 << qint64(1) << 2;
    QTest::newRow("around today") << QStringList { "2026:11:24 23:59:59", "2026:11:25 00:00:00",
                                                   "2026:11:25 00:00:01" }
                                  << qint64(2) << 2;
    QTest::newRow("unset clocks") << QStringList { "0000:00:00 00:00:00", "1970:01:01 00:00:00",
                                                   "2000:01:01 00:00:00", "n.a." }
                                  << qint64(1) << 2;
    QTest::newRow("only plausible") << QStringList { "2019:06:01 10:00:00" } << qint64(0) << 1;
}

void tst_Statistics::implausibleDatesCountedFromTheDayRows()
{
    QFETCH(QStringList, dates);
    QFETCH(qint64, outside);
    QFETCH(int, days);
    for (const QString &date : dates)
        QVERIFY(addPhoto(QStringLiteral("Canon"), QStringLiteral("EOS R5"), 50, date,
                         QStringLiteral("/p/IMG.JPG"), QVariant(), QVariant()));
    QList<StatisticRow> rows;
    QVERIFY(readStatisticRows(*Statistics::byKey(Statistics::dateOriginal), db, {}, rows));
    const QMap<QDate, qint64> perDay = photosPerDay(rows);
    QCOMPARE(perDay.size(), days);
    const DaySpan plausible = DaySpan::plausible(QDate(2026, 11, 24));
    QCOMPARE(photosOutside(perDay, plausible), outside);
    const QMap<QDate, qint64> within = daysWithin(perDay, plausible);
    qint64 inside = 0;
    for (qint64 count : within)
        inside += count;
    qint64 all = 0;
    for (qint64 count : perDay)
        all += count;
    QCOMPARE(inside + outside, all);
    for (auto it = within.cbegin(); it != within.cend(); ++it)
        QVERIFY(plausible.contains(it.key()));
}

bool tst_Statistics::addPhoto(const QString &maker, const QString &model, double focalLength,
                              const QString &date, const QString &path,
                              const QVariant &focalLength35, const QVariant &cropFactor)
{
    const auto rows = PhotoRowInserter::create(db);
    const auto info = PhotoRowInserter::createInfo(db);
    const QDate day = PhotoDate::date(date);
    const auto hour = PhotoDate::hour(date);
    return rows->insert({ path.section(QLatin1Char('/'), -1), date, QString(), maker, model,
                          QStringLiteral("n.a."), focalLength, 100, QStringLiteral("2.8"), 0.01,
                          QStringLiteral("1/100"), QStringLiteral("Pattern"),
                          QStringLiteral("Manual") })
        && info->insert({ path, FileTypes::nameOf(path), focalLength35, cropFactor,
                          hour ? QVariant(*hour) : QVariant(),
                          day.isValid() ? QVariant(day.dayOfWeek()) : QVariant() });
}

void tst_Statistics::registryRowsAreDistinct()
{
    QSet<QString> keys, titles, widgets, prefixes;
    for (const Statistic &statistic : Statistics::all()) {
        keys << statistic.key;
        titles << statistic.tabTitle.toLower();
        widgets << statistic.widgetName;
        if (!statistic.settingsPrefix.isEmpty())
            prefixes << statistic.settingsPrefix;
        QCOMPARE(Statistics::byKey(statistic.key), &statistic);
        QCOMPARE(Statistics::byTitle(statistic.tabTitle.toUpper()), &statistic);
    }
    const qsizetype count = Statistics::all().size();
    QCOMPARE(keys.size(), count);
    QCOMPARE(titles.size(), count);
    QCOMPARE(widgets.size(), count);
    QCOMPARE(prefixes.size(), count - 1); // the date chart keeps its look elsewhere
    QVERIFY(!Statistics::byKey(QStringLiteral("nothing")));
}

void tst_Statistics::formStatisticsKeepTheirNames_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<QString>("defaultTitle");

    // The ISO-grouped and F-number charts really start with the title "FocalLength usage".
    QTest::newRow("Maker") << 0 << "Maker"
                           << "maker_"
                           << "camera manufacturer";
    QTest::newRow("Model") << 1 << "Model"
                           << "model_"
                           << "camera model";
    QTest::newRow("Lens") << 2 << "Lens"
                          << "lens_"
                          << "lens usage";
    QTest::newRow("Focal Length") << 3 << "Focal Length"
                                  << "focLen_"
                                  << "FocalLength usage";
    QTest::newRow("Focal Length grouped") << 4 << "Focal Length grouped"
                                          << "focLenG_"
                                          << "FocalLength Grouped";
    QTest::newRow("ISO") << 5 << "ISO"
                         << "iso_"
                         << "ISO usage";
    QTest::newRow("ISO grouped") << 6 << "ISO grouped"
                                 << "isoG_"
                                 << "FocalLength usage";
    QTest::newRow("FNumber") << 7 << "FNumber"
                             << "fNum_"
                             << "FocalLength usage";
    QTest::newRow("Exposure Time") << 8 << "Exposure Time"
                                   << "expTime_"
                                   << "ExposureTime usage";
    QTest::newRow("Metering Mode") << 9 << "Metering Mode"
                                   << "metMode_"
                                   << "MeteringMode usage";
    QTest::newRow("Exposure Mode") << 10 << "Exposure Mode"
                                   << "expMode_"
                                   << "ExposureMode usage";
    QTest::newRow("Date Original") << 11 << "Date Original"
                                   << ""
                                   << "";
}

void tst_Statistics::formStatisticsKeepTheirNames()
{
    QFETCH(int, index);
    QFETCH(QString, title);
    QFETCH(QString, prefix);
    QFETCH(QString, defaultTitle);
    const Statistic &statistic = Statistics::all().at(index);
    QCOMPARE(statistic.tabTitle, title);
    QCOMPARE(statistic.settingsPrefix, prefix);
    QCOMPARE(statistic.defaultChartTitle, defaultTitle);
}

void tst_Statistics::everyStatisticCountsEveryPhoto()
{
    QVERIFY(addPhoto("Canon", "EOS R5", 50, "2023:03:14 10:11:12", "/a/1.CR3", 50.0, 1.0));
    QVERIFY(addPhoto("Canon", "EOS R5", 0, "0000:00:00 00:00:00", "/a/2.cr3", {}, {}));
    QVERIFY(addPhoto("Nikon", "Z 6", 400, "", "/b/3.nef", {}, {}));
    QVERIFY(addPhoto("Sony", "A7", 24, "2024:02:29 23:59:59", "/b/4.JPG", 24.0, 1.0));
    QVERIFY(addPhoto("Sony", "A7", 9000, "2024:12:30 00:00:00", "/b/5.heic", 9000.0, 1.0));
    for (const Statistic &statistic : Statistics::all()) {
        qint64 total = 0;
        for (const StatisticRow &row : rowsOf(statistic.key, db))
            total += row.count;
        QVERIFY2(total == 5, qPrintable(statistic.tabTitle + ": " + QString::number(total)));
    }
}

void tst_Statistics::hoursInOrderThenUnknown()
{
    QVERIFY(addPhoto("A", "a", 1, "2023:01:01 23:00:00", "/1.jpg", {}, {}));
    QVERIFY(addPhoto("A", "a", 1, "2023:01:01 00:59:59", "/2.jpg", {}, {}));
    QVERIFY(addPhoto("A", "a", 1, "2023:01:01 09:30:00", "/3.jpg", {}, {}));
    QVERIFY(addPhoto("A", "a", 1, "2023:01:01 09:31:00", "/4.jpg", {}, {}));
    QVERIFY(addPhoto("A", "a", 1, "no date", "/5.jpg", {}, {}));
    const QList<StatisticRow> rows = rowsOf("hourOfDay", db);
    QCOMPARE(rows, (QList<StatisticRow> { { "00", 1 }, { "09", 2 }, { "23", 1 }, { "n.a.", 1 } }));
}

void tst_Statistics::weekdaysFromMondayThenUnknown()
{
    // 2024-01-01 was a Monday.
    const QStringList dates { "2024:01:07 12:00:00", "2024:01:06 12:00:00", "2024:01:01 12:00:00",
                              "2024:01:03 12:00:00", "2023:02:30 12:00:00", "2024:01:02 12:00:00",
                              "2024:01:05 12:00:00", "2024:01:04 12:00:00" };
    for (const QString &date : dates)
        QVERIFY(addPhoto("A", "a", 1, date, "/x.jpg", {}, {}));
    QCOMPARE(values(rowsOf("weekday", db)),
             (QStringList { "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday",
                            "Sunday", "n.a." }));
}

void tst_Statistics::photoHour_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("hour"); // -1: none

    QTest::newRow("midnight") << "2023:03:14 00:00:00" << 0;
    QTest::newRow("last hour") << "2023:03:14 23:59:59" << 23;
    QTest::newRow("ISO with T") << "2023-03-14T07:15:00" << 7;
    QTest::newRow("hour 24") << "2023:03:14 24:00:00" << -1;
    QTest::newRow("one digit") << "2023:03:14 7:15:00" << -1;
    QTest::newRow("date only") << "2023:03:14" << -1;
    QTest::newRow("no usable date") << "0000:00:00 10:00:00" << -1;
    QTest::newRow("30 February") << "2023:02:30 10:00:00" << -1;
    QTest::newRow("slash before the time") << "2023:03:14/10:00:00" << -1;
    QTest::newRow("empty") << "" << -1;
}

void tst_Statistics::photoHour()
{
    QFETCH(QString, text);
    QFETCH(int, hour);
    const auto found = PhotoDate::hour(text);
    QCOMPARE(found ? *found : -1, hour);
}

void tst_Statistics::fileTypeOfAName_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("type");

    QTest::newRow("raw") << "/p/IMG_1.CR2"
                         << "CR2";
    QTest::newRow("small letters") << "/p/img_1.nef"
                                   << "NEF";
    QTest::newRow("HEIC is HEIF") << "/p/IMG_1.HEIC"
                                  << "HEIF";
    QTest::newRow("AVIF is HEIF") << "/p/x.avif"
                                  << "HEIF";
    QTest::newRow("a suffix no switch has") << "/p/x.jpeg"
                                            << "JPEG";
    QTest::newRow("no suffix") << "/p.d/file"
                               << "";
}

void tst_Statistics::fileTypeOfAName()
{
    QFETCH(QString, path);
    QFETCH(QString, type);
    QCOMPARE(FileTypes::nameOf(path), type);
}

void tst_Statistics::patternsOfATypeOrSuffix_data()
{
    QTest::addColumn<QString>("given");
    QTest::addColumn<QStringList>("patterns");

    QTest::newRow("a type's name") << "NEF" << QStringList { "*.nef" };
    QTest::newRow("in small letters") << "cr2" << QStringList { "*.cr2" };
    QTest::newRow("HEIF names every HEIF and AVIF suffix")
        << "heif" << QStringList { "*.heic", "*.heif", "*.hif", "*.avif" };
    QTest::newRow("one HEIF suffix alone") << "HEIC" << QStringList { "*.heic" };
    QTest::newRow("a suffix no type has") << "JPEG" << QStringList { "*.jpeg" };
}

void tst_Statistics::patternsOfATypeOrSuffix()
{
    QFETCH(QString, given);
    QFETCH(QStringList, patterns);
    QCOMPARE(FileTypes::patternsOf(given), patterns);
    for (const QString &pattern : std::as_const(patterns)) {
        if (pattern != QLatin1String("*.jpeg"))
            QVERIFY2(FileTypes::allPatterns().contains(pattern), qPrintable(pattern));
    }
    QCOMPARE(FileTypes::allPatterns().size(), 13);
}

void tst_Statistics::fileTypesCountedAsTheToolBarNamesThem()
{
    for (const char *path : { "/a.JPG", "/b.jpg", "/c.hif", "/d.HEIC", "/e.orf" })
        QVERIFY(addPhoto("A", "a", 1, "2023:01:01 10:00:00", path, {}, {}));
    QCOMPARE(rowsOf("fileType", db),
             (QList<StatisticRow> { { "HEIF", 2 }, { "JPG", 2 }, { "ORF", 1 } }));
}

void tst_Statistics::focalLength35UnknownLast()
{
    QVERIFY(addPhoto("A", "a", 50, "", "/1.jpg", 75.4, 1.5));
    QVERIFY(addPhoto("A", "a", 50, "", "/2.jpg", 74.6, 1.5));
    QVERIFY(addPhoto("A", "a", 18, "", "/3.jpg", 27.0, 1.5));
    QVERIFY(addPhoto("A", "a", 18, "", "/4.jpg", {}, {}));
    QCOMPARE(rowsOf("focalLength35", db),
             (QList<StatisticRow> { { "27", 1 }, { "75", 2 }, { "unknown", 1 } }));
}

void tst_Statistics::focalLength35GroupsNameTheirClasses()
{
    for (double focal : { 23.4, 24.0, 34.4, 35.0, 300.0, 300.6 })
        QVERIFY(addPhoto("A", "a", focal, "", "/x.jpg", focal, 1.0));
    QVERIFY(addPhoto("A", "a", 0, "", "/y.jpg", {}, {}));
    const QList<StatisticRow> rows = rowsOf(Statistics::focalLength35Grouped, db);
    QCOMPARE(rows,
             (QList<StatisticRow> { { "0001-0023", 1 },
                                    { "0024-0034", 2 },
                                    { "0035-0070", 1 },
                                    { "0136-0300", 1 },
                                    { "0301-99999", 1 },
                                    { "unknown", 1 } }));
    const RangeGroupColumn &groups =
        *Statistics::byKey(Statistics::focalLength35Grouped)->rangeGroups;
    QCOMPARE(RangeGroups::displayText("0001-0023", groups.unit, groups.rangeNames),
             QString("ultra-wide (< 24 mm)"));
    QCOMPARE(RangeGroups::displayText("0301-99999", groups.unit, groups.rangeNames),
             QString("super-tele (> 300 mm)"));
    QCOMPARE(RangeGroups::displayText("unknown", groups.unit, groups.rangeNames),
             QString("unknown"));
    // A range of the user's own has no name: its numbers are shown.
    QCOMPARE(RangeGroups::displayText("0020-0040", groups.unit, groups.rangeNames),
             QString("20-40mm"));
}

void tst_Statistics::cropFactorLearnedFromTheSameModel()
{
    // Two photos of one model tell its crop factor (1.5 and 1.6); a third of it has none, nor has
    // the photo of another model or the one without a focal length.
    QVERIFY(addPhoto("Nikon", "D70", 50, "", "/1.nef", 75.0, 1.5));
    QVERIFY(addPhoto("Nikon", "D70", 20, "", "/2.nef", 32.0, 1.6));
    QVERIFY(addPhoto("Nikon", "D70", 100, "", "/3.nef", {}, {}));
    QVERIFY(addPhoto("Nikon", "D70", 0, "", "/4.nef", {}, {}));
    QVERIFY(addPhoto("Nikon", "D80", 100, "", "/5.nef", {}, {}));
    QVERIFY(addPhoto("Other", "D70", 100, "", "/6.nef", {}, {}));
    PhotoDatabase::completeScan(db);
    QSqlQuery query(db);
    QVERIFY(query.exec("SELECT f.PATH || d.FILENAME, p.FOCALLENGTH35 FROM PHOTOINFO p "
                       "JOIN PHOTOFOLDERS f ON f.ID = p.FOLDER JOIN DATEIEN d ON d.id = p.ID "
                       "ORDER BY p.ID"));
    QStringList found;
    while (query.next())
        found << query.value(0).toString() + "="
                + (query.value(1).isNull() ? QString("unknown")
                                           : QString::number(query.value(1).toDouble()));
    QCOMPARE(found,
             (QStringList { "/1.nef=75", "/2.nef=32", "/3.nef=155", "/4.nef=unknown",
                            "/5.nef=unknown", "/6.nef=unknown" }));
}

void tst_Statistics::datesMergedPerDayThenUnknown()
{
    for (const char *date : { "2023:03:14 10:00:00", "2023-03-14T11:00:00", "2022:12:31 23:59:59",
                              "2023:02:29 10:00:00", "" })
        QVERIFY(addPhoto("A", "a", 1, date, "/x.jpg", {}, {}));
    QCOMPARE(rowsOf(Statistics::dateOriginal, db),
             (QList<StatisticRow> { { "2022-12-31", 1 }, { "2023-03-14", 2 }, { "n.a.", 2 } }));
}
