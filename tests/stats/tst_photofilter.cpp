#include "tst_photofilter.h"

#include "filetypes.h"
#include "filteredstatement.h"
#include "photodatabase.h"
#include "photodate.h"
#include "photofilter.h"
#include "photorowinserter.h"
#include "photoselection.h"
#include "rawjpegpairs.h"
#include "statistic.h"
#include "statisticrows.h"

#include <QSqlQuery>
#include <QTest>

Q_DECLARE_METATYPE(PhotoFilter)
Q_DECLARE_METATYPE(QList<PickedRow>)

namespace {

qint64 total(const QList<StatisticRow> &rows)
{
    qint64 sum = 0;
    for (const StatisticRow &row : rows)
        sum += row.count;
    return sum;
}

PhotoSelection selected(const QSqlDatabase &db, const StatementFilter &filter)
{
    PhotoSelection selection;
    QString error;
    if (!selection.select(db, filter, &error))
        qWarning("selecting: %s", qPrintable(error));
    return selection;
}

QList<StatisticRow> rowsOf(const QString &key, const QSqlDatabase &db, const PhotoFilter &filter)
{
    QList<StatisticRow> rows;
    QString error;
    if (!readStatisticRows(*Statistics::byKey(key), db, {}, selected(db, StatementFilter(filter)),
                           rows, &error))
        qWarning("%s: %s", qPrintable(key), qPrintable(error));
    return rows;
}

// "Canon=2, Nikon=1": a statistic's rows in their order.
QString summary(const QList<StatisticRow> &rows)
{
    QStringList parts;
    for (const StatisticRow &row : rows)
        parts << QStringLiteral("%1=%2").arg(row.value).arg(row.count);
    return parts.join(QStringLiteral(", "));
}

PhotoFilter makers(const QStringList &values)
{
    PhotoFilter filter;
    filter.makers = values;
    return filter;
}

PhotoFilter days(const QDate &from, const QDate &to)
{
    PhotoFilter filter;
    filter.from = from;
    filter.to = to;
    return filter;
}

} // namespace

void tst_PhotoFilter::init()
{
    QVERIFY2(PhotoDatabase::openMainConnection(db), "the photo database could not be opened");
}

void tst_PhotoFilter::cleanup()
{
    QSqlQuery(db).exec(QStringLiteral("DROP TABLE DATEIEN"));
    QSqlQuery(db).exec(QStringLiteral("DROP TABLE PHOTOINFO"));
    QSqlQuery(db).exec(QStringLiteral("DROP TABLE PHOTOFOLDERS"));
    db.close();
    db = QSqlDatabase();
    QSqlDatabase::removeDatabase(PhotoDatabase::mainConnection);
}

bool tst_PhotoFilter::addPhoto(const QString &maker, const QString &model, const QString &lens,
                               const QString &date, const QString &path)
{
    const auto rows = PhotoRowInserter::create(db);
    const auto info = PhotoRowInserter::createInfo(db);
    const QDate day = PhotoDate::date(date);
    const auto hour = PhotoDate::hour(date);
    return rows->insert({ path.section(QLatin1Char('/'), -1), date, QString(), maker, model, lens,
                          50.0, 100, QStringLiteral("2.8"), 0.01, QStringLiteral("1/100"),
                          QStringLiteral("Pattern"), QStringLiteral("Manual") })
        && info->insert({ path, FileTypes::nameOf(path), 75.0, 1.5,
                          hour ? QVariant(*hour) : QVariant(),
                          day.isValid() ? QVariant(day.dayOfWeek()) : QVariant() });
}

// Six photos: three Canon (two EOS R5 with the RF lens, one EOS 80D), two Nikon Z 6 and a Sony
// without a date; CR3, JPG, NEF and ARW files over 2020 and 2021.
bool tst_PhotoFilter::addLibrary()
{
    return addPhoto("Canon", "EOS R5", "RF24-105mm", "2021:03:14 10:00:00", "/p/a/1.CR3")
        && addPhoto("Canon", "EOS R5", "RF24-105mm", "2020:06:01 12:00:00", "/p/a/2.jpg")
        && addPhoto("Canon", "EOS 80D", "EF-S18-55mm", "2021:11:30 08:00:00", "/p/a/3.CR3")
        && addPhoto("Nikon", "Z 6", "NIKKOR Z 24-70mm", "2021:01:01 00:00:00", "/p/b/4.NEF")
        && addPhoto("Nikon", "Z 6", "RF24-105mm", "2020:12:31 23:59:59", "/p/b/5.jpg")
        && addPhoto("Sony", "ILCE-7M3", "FE 85mm", "", "/p/b/6.ARW");
}

void tst_PhotoFilter::emptyFilterLeavesEveryStatementAsItIs()
{
    QVERIFY(addLibrary());
    const PhotoSelection selection = selected(db, StatementFilter());
    QVERIFY(!selection.isFiltered());
    for (const Statistic &statistic : Statistics::all()) {
        const QString statement = statistic.selectStatement();
        const BoundStatement applied = selection.apply(statement);
        QCOMPARE(applied.text, statement);
        QVERIFY2(applied.values.isEmpty(), qPrintable(statistic.key));
    }
    QCOMPARE(selection.count(db), 6);
    QCOMPARE(selection.selectedCount(), -1);
}

void tst_PhotoFilter::filteredStatementsCarryValuesOnlyAsBindings()
{
    QVERIFY(addLibrary());
    PhotoFilter filter;
    filter.makers = QStringList { "Canon'; DROP TABLE DATEIEN; --" };
    filter.fileTypes = QStringList { "JPG" };
    filter.from = QDate(2021, 1, 1);
    const StatementFilter statementFilter(filter);
    const BoundStatement ids = statementFilter.matchingIds(QStringLiteral("temp.Days"));
    QVERIFY2(!ids.text.contains(QLatin1String("Canon")), qPrintable(ids.text));
    QVERIFY2(!ids.text.contains(QLatin1String("2021")), qPrintable(ids.text));
    QVERIFY(ids.values.contains(filter.makers.first()));
    QVERIFY(ids.values.contains(QStringLiteral("JPG")));
    QCOMPARE(ids.values.size(), ids.text.count(QLatin1Char('?')));

    const PhotoSelection selection = selected(db, statementFilter);
    QVERIFY(selection.isFiltered());
    QCOMPARE(selection.count(db), 0);
    for (const Statistic &statistic : Statistics::all()) {
        const BoundStatement applied = selection.apply(statistic.selectStatement());
        QVERIFY2(applied.text != statistic.selectStatement(), qPrintable(statistic.key));
        QVERIFY2(applied.values.isEmpty(), qPrintable(applied.text));
    }
    QCOMPARE(total(rowsOf(QStringLiteral("maker"), db, PhotoFilter())), 6);
}

void tst_PhotoFilter::filtersAloneAndCombined_data()
{
    QTest::addColumn<PhotoFilter>("filter");
    QTest::addColumn<QString>("makers");

    QTest::newRow("no filter") << PhotoFilter() << "Canon=3, Nikon=2, Sony=1";
    QTest::newRow("one maker") << makers({ "Nikon" }) << "Nikon=2";
    QTest::newRow("two makers") << makers({ "Sony", "Canon" }) << "Canon=3, Sony=1";
    QTest::newRow("a maker no photo has") << makers({ "Leica" }) << "";
    PhotoFilter model;
    model.models = QStringList { "EOS R5" };
    QTest::newRow("model") << model << "Canon=2";
    PhotoFilter lens;
    lens.lenses = QStringList { "RF24-105mm" };
    QTest::newRow("lens") << lens << "Canon=2, Nikon=1";
    PhotoFilter type;
    type.fileTypes = QStringList { "JPG" };
    QTest::newRow("file type") << type << "Canon=1, Nikon=1";
    QTest::newRow("year 2021") << days(QDate(2021, 1, 1), QDate(2021, 12, 31))
                               << "Canon=2, Nikon=1";
    QTest::newRow("from only") << days(QDate(2021, 3, 14), QDate()) << "Canon=2";
    QTest::newRow("until only") << days(QDate(), QDate(2020, 12, 31)) << "Canon=1, Nikon=1";
    PhotoFilter makerAndYear = days(QDate(2021, 1, 1), QDate(2021, 12, 31));
    makerAndYear.makers = QStringList { "Canon" };
    QTest::newRow("maker and year") << makerAndYear << "Canon=2";
    PhotoFilter lensAndType = lens;
    lensAndType.fileTypes = QStringList { "JPG" };
    QTest::newRow("lens and file type") << lensAndType << "Canon=1, Nikon=1";
    PhotoFilter everything = makerAndYear;
    everything.models = QStringList { "EOS 80D" };
    everything.lenses = QStringList { "EF-S18-55mm" };
    everything.fileTypes = QStringList { "CR3" };
    QTest::newRow("every list and a year") << everything << "Canon=1";
    everything.fileTypes = QStringList { "JPG" };
    QTest::newRow("every list, no photo left") << everything << "";
}

void tst_PhotoFilter::filtersAloneAndCombined()
{
    QFETCH(PhotoFilter, filter);
    QFETCH(QString, makers);
    QVERIFY(addLibrary());
    QCOMPARE(summary(rowsOf(QStringLiteral("maker"), db, filter)), makers);
}

// The statistics of both tables, the grouped ones and the date chart's count the same photos.
void tst_PhotoFilter::everyStatisticCountsOnlyTheFilteredPhotos()
{
    QVERIFY(addLibrary());
    PhotoFilter filter = makers({ "Canon", "Nikon" });
    filter.fileTypes = QStringList { "CR3", "NEF", "ARW" };
    for (const Statistic &statistic : Statistics::all()) {
        const QList<StatisticRow> rows = rowsOf(statistic.key, db, filter);
        QVERIFY2(total(rows) == 3,
                 qPrintable(QStringLiteral("%1: %2").arg(statistic.key, summary(rows))));
    }
    QCOMPARE(summary(rowsOf(QStringLiteral("fileType"), db, filter)),
             QStringLiteral("CR3=2, NEF=1"));
    QCOMPARE(summary(rowsOf(QStringLiteral("dateOriginal"), db, filter)),
             QStringLiteral("2021-01-01=1, 2021-03-14=1, 2021-11-30=1"));
}

void tst_PhotoFilter::dateBounds_data()
{
    QTest::addColumn<QString>("date");
    QTest::addColumn<bool>("inRange");

    // The range is the first of March 2021, both bounds on that day.
    QTest::newRow("first second of the day") << "2021:03:01 00:00:00" << true;
    QTest::newRow("last second of the day") << "2021:03:01 23:59:59" << true;
    QTest::newRow("the date alone") << "2021:03:01" << true;
    QTest::newRow("dashes instead of colons") << "2021-03-01 12:00:00" << true;
    QTest::newRow("last second of the day before") << "2021:02:28 23:59:59" << false;
    QTest::newRow("first second of the day after") << "2021:03:02 00:00:00" << false;
    QTest::newRow("no date") << "" << false;
    QTest::newRow("zero date") << "0000:00:00 00:00:00" << false;
    QTest::newRow("a day no calendar has") << "2021:02:30 10:00:00" << false;
    QTest::newRow("a digit after the day") << "2021:03:011" << false;
    QTest::newRow("letters") << "unknown" << false;
    QTest::newRow("year zero") << "0000:03:01 10:00:00" << false;
}

void tst_PhotoFilter::dateBounds()
{
    QFETCH(QString, date);
    QFETCH(bool, inRange);
    QVERIFY(addPhoto("Canon", "EOS R5", "RF", date, "/p/1.CR3"));
    const QDate day(2021, 3, 1);
    QCOMPARE(total(rowsOf(QStringLiteral("maker"), db, days(day, day))), inRange ? 1 : 0);
    // Open at either end a photo still needs a usable date.
    const bool usable = PhotoDate::date(date).isValid();
    QCOMPARE(total(rowsOf(QStringLiteral("maker"), db, days(QDate(), QDate(9999, 12, 31)))),
             usable ? 1 : 0);
    QCOMPARE(total(rowsOf(QStringLiteral("maker"), db, days(QDate(100, 1, 1), QDate()))),
             usable ? 1 : 0);
}

void tst_PhotoFilter::pairsCountedOnce_data()
{
    QTest::addColumn<QStringList>("paths");
    QTest::addColumn<int>("merged");
    QTest::addColumn<QString>("fileTypes");

    QTest::newRow("raw and JPEG in one folder")
        << QStringList { "/p/a/IMG_1.CR2", "/p/a/IMG_1.JPG" } << 1 << "CR2=1";
    QTest::newRow("suffixes in different case")
        << QStringList { "/p/a/IMG_1.cr2", "/p/a/IMG_1.JPG", "/p/a/DSC_2.NEF", "/p/a/DSC_2.jpg" }
        << 2 << "CR2=1, NEF=1";
    QTest::newRow("raw and HEIF") << QStringList { "/p/a/R5_1.CR3", "/p/a/R5_1.HIF" } << 1
                                  << "CR3=1";
    QTest::newRow("same name in different folders")
        << QStringList { "/p/a/IMG_1.CR2", "/p/b/IMG_1.JPG" } << 0 << "CR2=1, JPG=1";
    QTest::newRow("different names")
        << QStringList { "/p/a/IMG_1.CR2", "/p/a/IMG_10.JPG" } << 0 << "CR2=1, JPG=1";
    QTest::newRow("JPEG and HEIF without a raw file")
        << QStringList { "/p/a/IMG_1.JPG", "/p/a/IMG_1.HEIC" } << 0 << "HEIF=1, JPG=1";
    QTest::newRow("folder names with dots")
        << QStringList { "/p/2021.03/IMG_1.ARW", "/p/2021.03/IMG_1.jpg", "/p/2021.04/IMG_1.jpg" }
        << 1 << "ARW=1, JPG=1";
}

void tst_PhotoFilter::pairsCountedOnce()
{
    QFETCH(QStringList, paths);
    QFETCH(int, merged);
    QFETCH(QString, fileTypes);
    for (const QString &path : paths)
        QVERIFY(addPhoto("Canon", "EOS R5", "RF", "2021:03:01 10:00:00", path));
    QCOMPARE(RawJpegPairs::markCompanions(db), merged);
    QCOMPARE(RawJpegPairs::companionCount(db), merged);
    PhotoFilter filter;
    filter.pairsOnce = true;
    for (const Statistic &statistic : Statistics::all())
        QCOMPARE(total(rowsOf(statistic.key, db, filter)), qint64(paths.size() - merged));
    QCOMPARE(summary(rowsOf(QStringLiteral("fileType"), db, filter)), fileTypes);
    // Without the setting every file counts.
    QCOMPARE(total(rowsOf(QStringLiteral("fileType"), db, PhotoFilter())), qint64(paths.size()));
}

void tst_PhotoFilter::awkwardValuesMatchExactly_data()
{
    QTest::addColumn<QString>("maker");

    QTest::newRow("quotes") << "O'Brien \"Optics\"";
    QTest::newRow("percent sign") << "100% Camera";
    QTest::newRow("LIKE wildcards") << "A_B%";
    QTest::newRow("semicolon") << "Canon; DROP TABLE DATEIEN";
    QTest::newRow("statement end") << "x') OR 1=1 --";
    QTest::newRow("Cyrillic") << "Зенит";
    QTest::newRow("Chinese") << "海鸥";
    QTest::newRow("trailing blank") << "Canon ";
}

void tst_PhotoFilter::awkwardValuesMatchExactly()
{
    QFETCH(QString, maker);
    QVERIFY(addLibrary());
    QVERIFY(addPhoto(maker, "M", "L", "2021:05:05 05:05:05", "/p/c/7.JPG"));
    QVERIFY(addPhoto(maker, "M", "L", "2021:05:06 05:05:05", "/p/c/8.JPG"));
    QCOMPARE(summary(rowsOf(QStringLiteral("maker"), db, makers({ maker }))),
             QStringLiteral("%1=2").arg(maker));
    QCOMPARE(total(rowsOf(QStringLiteral("hourOfDay"), db, makers({ maker }))), 2);
    QCOMPARE(total(rowsOf(QStringLiteral("maker"), db, PhotoFilter())), 8);
}

void tst_PhotoFilter::emptyResultGivesEmptyStatistics()
{
    QVERIFY(addLibrary());
    const PhotoSelection selection = selected(db, StatementFilter(makers({ "Leica" })));
    QCOMPARE(selection.count(db), 0);
    for (const Statistic &statistic : Statistics::all()) {
        QList<StatisticRow> rows;
        QString error;
        QVERIFY2(readStatisticRows(statistic, db, {}, selection, rows, &error), qPrintable(error));
        QVERIFY2(rows.isEmpty(), qPrintable(statistic.key + ": " + summary(rows)));
    }
}

void tst_PhotoFilter::fieldValuesWithCounts()
{
    QVERIFY(addLibrary());
    const QList<QPair<QString, QString>> expected {
        { "maker", "Canon=3, Nikon=2, Sony=1" },
        { "model", "EOS 80D=1, EOS R5=2, ILCE-7M3=1, Z 6=2" },
        { "lens", "EF-S18-55mm=1, FE 85mm=1, NIKKOR Z 24-70mm=1, RF24-105mm=3" },
        { "fileType", "ARW=1, CR3=2, JPG=2, NEF=1" },
    };
    QCOMPARE(PhotoFilterFields::all().size(), expected.size());
    for (qsizetype i = 0; i < expected.size(); ++i) {
        const PhotoFilterField &field = PhotoFilterFields::all().at(i);
        QCOMPARE(field.key, expected.at(i).first);
        QList<StatisticRow> rows;
        QString error;
        QVERIFY2(readFieldValues(field, db, PhotoSelection(), rows, &error), qPrintable(error));
        QCOMPARE(summary(rows), expected.at(i).second);
    }
    // Under a filter the lists hold what is left.
    QList<StatisticRow> rows;
    QVERIFY(readFieldValues(PhotoFilterFields::all().at(2), db,
                            selected(db, StatementFilter(makers({ "Nikon" }))), rows));
    QCOMPARE(summary(rows), QStringLiteral("NIKKOR Z 24-70mm=1, RF24-105mm=1"));
}

// A source may compute a column (as merging names would); the statistics and the filter then
// both see the computed value.
void tst_PhotoFilter::computedColumnsFeedStatisticsAndFilter()
{
    QVERIFY(addLibrary());
    QVERIFY(addPhoto("CANON ", "EOS R6", "RF", "2021:05:05 05:05:05", "/p/c/7.JPG"));
    const StatementFilter::ColumnExpressions upperMakers {
        { QStringLiteral("MAKER"), QStringLiteral("upper(trim(MAKER))") }
    };
    QList<StatisticRow> rows;
    QVERIFY(readStatisticRows(*Statistics::byKey("maker"), db, {},
                              selected(db, StatementFilter(PhotoFilter(), upperMakers)), rows));
    QCOMPARE(summary(rows), QStringLiteral("CANON=4, NIKON=2, SONY=1"));
    PhotoFilter canon = makers({ "CANON" });
    canon.fileTypes = QStringList { "JPG" };
    QVERIFY(readStatisticRows(*Statistics::byKey("fileType"), db, {},
                              selected(db, StatementFilter(canon, upperMakers)), rows));
    QCOMPARE(summary(rows), QStringLiteral("JPG=2"));
}

// Under name rules the filter's lists hold the names as the statistics count them, and a name
// picked there keeps every photo counted under it.
void tst_PhotoFilter::nameRulesReachTheFilter()
{
    QVERIFY(addLibrary());
    QVERIFY(addPhoto("CANON ", "EOS R6", "RF", "2021:05:05 05:05:05", "/p/c/7.JPG"));
    QVERIFY(addPhoto("NIKON CORPORATION", "Z 6", "RF", "2021:05:05 05:05:05", "/p/c/8.NEF"));
    NameRules merged;
    merged.mergeBlanksAndCase = true;
    NameRules friendly;
    friendly.friendlyMakers = true;
    const PhotoFilterField &makerField = PhotoFilterFields::all().at(0);
    QCOMPARE(makerField.key, QStringLiteral("maker"));

    QList<StatisticRow> rows;
    QVERIFY(readFieldValues(makerField, db, selected(db, StatementFilter({}, {}, merged)), rows));
    // "CANON " and "Canon" are one name, spelled as the smallest of them.
    QCOMPARE(summary(rows), QStringLiteral("CANON=4, NIKON CORPORATION=1, Nikon=2, Sony=1"));
    QCOMPARE(selected(db, StatementFilter(makers({ "CANON" }), {}, merged)).count(db), 4);
    QCOMPARE(selected(db, StatementFilter(makers({ "CANON" }))).count(db), 0);

    QVERIFY(readFieldValues(makerField, db, selected(db, StatementFilter({}, {}, friendly)), rows));
    QCOMPARE(summary(rows), QStringLiteral("Canon=4, Nikon=3, Sony=1"));
    QCOMPARE(selected(db, StatementFilter(makers({ "Nikon" }), {}, friendly)).count(db), 3);
    QCOMPARE(selected(db, StatementFilter(makers({ "Nikon" }))).count(db), 2);
    // The statistics under the same rules count the same photos.
    NameRulesSql::setActive(friendly);
    QVERIFY(readStatisticRows(*Statistics::byKey("maker"), db, {},
                              selected(db, StatementFilter(makers({ "Nikon" }), {}, friendly)),
                              rows));
    NameRulesSql::setActive(NameRules());
    QCOMPARE(summary(rows), QStringLiteral("Nikon=3"));
}

void tst_PhotoFilter::statisticIndexesStayInUse_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("index");

    QTest::newRow("lens") << "lens"
                          << "StatLens";
    QTest::newRow("ISO") << "iso"
                         << "StatIso";
    QTest::newRow("exposure time") << "exposureTime"
                                   << "StatExpTime";
    QTest::newRow("focal length") << "focalLength"
                                  << "StatFocalLength";
    QTest::newRow("hour of day") << "hourOfDay"
                                 << "StatHour";
    QTest::newRow("file type") << "fileType"
                               << "StatFileType";
}

// Under a maker and a year the grouping still walks the statistic's own index and only looks each
// photo up among the selected ones, instead of sorting the selected photos.
void tst_PhotoFilter::statisticIndexesStayInUse()
{
    QFETCH(QString, key);
    QFETCH(QString, index);
    QVERIFY(addLibrary());
    PhotoDatabase::createStatisticIndexes(db);
    PhotoFilter filter = days(QDate(2021, 1, 1), QDate(2021, 12, 31));
    filter.makers = QStringList { "Canon" };
    const PhotoSelection selection = selected(db, StatementFilter(filter));
    BoundStatement plan = selection.apply(Statistics::byKey(key)->selectStatement());
    plan.text.prepend(QStringLiteral("EXPLAIN QUERY PLAN "));
    QSqlQuery query(db);
    QVERIFY(plan.exec(query));
    QStringList steps;
    while (query.next())
        steps << query.value(3).toString();
    QVERIFY2(steps.join('\n').contains(QStringLiteral("COVERING INDEX ") + index),
             qPrintable(steps.join('\n')));
}

// One photo of sixteen: the selected ids are read and their rows looked up, instead of walking the
// whole index; the counts stay the same.
void tst_PhotoFilter::fewSelectedPhotosAreLookedUp()
{
    QVERIFY(addPhoto("Leica", "M11", "Summilux", "2022:01:01 10:00:00", "/p/l/1.DNG"));
    for (int i = 0; i < 15; ++i)
        QVERIFY(addPhoto("Canon", "EOS R5", "RF", "2021:03:01 10:00:00",
                         QStringLiteral("/p/c/%1.CR3").arg(i)));
    PhotoDatabase::createStatisticIndexes(db);
    const PhotoSelection selection = selected(db, StatementFilter(makers({ "Leica" })));
    BoundStatement plan = selection.apply(Statistics::byKey("lens")->selectStatement());
    plan.text.prepend(QStringLiteral("EXPLAIN QUERY PLAN "));
    QSqlQuery query(db);
    QVERIFY(plan.exec(query));
    QStringList steps;
    while (query.next())
        steps << query.value(3).toString();
    QVERIFY2(steps.value(0).startsWith(QLatin1String("SCAN Selected")),
             qPrintable(steps.join('\n')));
    QVERIFY2(steps.value(1).contains(QLatin1String("INTEGER PRIMARY KEY")),
             qPrintable(steps.join('\n')));
    QCOMPARE(summary(rowsOf(QStringLiteral("lens"), db, makers({ "Leica" }))),
             QStringLiteral("Summilux=1"));
    QCOMPARE(summary(rowsOf(QStringLiteral("fileType"), db, makers({ "Leica" }))),
             QStringLiteral("DNG=1"));
}

void tst_PhotoFilter::descriptions_data()
{
    QTest::addColumn<PhotoFilter>("filter");
    QTest::addColumn<QString>("description");

    QTest::newRow("empty") << PhotoFilter() << "";
    PhotoFilter canon2021 = days(QDate(2021, 1, 1), QDate(2021, 12, 31));
    canon2021.makers = QStringList { "Canon" };
    QTest::newRow("maker and year") << canon2021 << "Canon, 2021";
    QTest::newRow("month") << days(QDate(2020, 2, 1), QDate(2020, 2, 29)) << "2020-02";
    QTest::newRow("days") << days(QDate(2021, 3, 1), QDate(2021, 6, 30))
                          << "2021-03-01 – 2021-06-30";
    QTest::newRow("from") << days(QDate(2021, 3, 1), QDate()) << "from 2021-03-01";
    QTest::newRow("until") << days(QDate(), QDate(2021, 3, 1)) << "until 2021-03-01";
    PhotoFilter lists;
    lists.makers = QStringList { "Canon", "Nikon" };
    lists.models = QStringList { "Z 6" };
    lists.lenses = QStringList { "RF" };
    lists.fileTypes = QStringList { "JPG" };
    lists.pairsOnce = true;
    QTest::newRow("every list") << lists << "Canon, Nikon, Z 6, RF, JPG, RAW+JPEG once";
    PhotoFilter picked = makers({ "Canon" });
    picked.pickedRows = { { "iso", 800, {}, "ISO 800" },
                          { "weekday", "Monday", {}, "Weekday Monday" } };
    QTest::newRow("picked rows after the lists") << picked << "Canon, ISO 800, Weekday Monday";
}

void tst_PhotoFilter::descriptions()
{
    QFETCH(PhotoFilter, filter);
    QFETCH(QString, description);
    QCOMPARE(filter.description(), description);
    QCOMPARE(filter.isEmpty(), description.isEmpty());
}

void tst_PhotoFilter::pickedRowsSelectTheirPhotos_data()
{
    QTest::addColumn<QList<PickedRow>>("rows");
    QTest::addColumn<int>("photos");

    const auto row = [](const char *statistic, const QVariant &value,
                        const QStringList &ranges = {}) {
        return PickedRow { statistic, value, ranges, QString() };
    };
    // Every photo of the library: 50 mm at ISO 100, 75 mm on 35 mm film but the Sony, for which
    // the scan found no 35 mm focal length; the hours and weekdays follow the dates.
    QTest::newRow("an hour") << QList<PickedRow> { row("hourOfDay", "10") } << 1;
    QTest::newRow("the hour of the photo without a date")
        << QList<PickedRow> { row("hourOfDay", "n.a.") } << 1;
    QTest::newRow("a weekday") << QList<PickedRow> { row("weekday", "Sunday") } << 1;
    QTest::newRow("two hours widen")
        << QList<PickedRow> { row("hourOfDay", "10"), row("hourOfDay", "12") } << 2;
    QTest::newRow("an hour and a weekday narrow")
        << QList<PickedRow> { row("hourOfDay", "10"), row("weekday", "Monday") } << 0;
    QTest::newRow("the hour and weekday of one photo")
        << QList<PickedRow> { row("hourOfDay", "12"), row("weekday", "Monday") } << 1;
    QTest::newRow("ISO") << QList<PickedRow> { row("iso", 100) } << 6;
    QTest::newRow("an ISO no photo has") << QList<PickedRow> { row("iso", 200) } << 0;
    QTest::newRow("f-number, a text") << QList<PickedRow> { row("fNumber", "2.8") } << 6;
    QTest::newRow("exposure time, a real number")
        << QList<PickedRow> { row("exposureTime", 0.01) } << 6;
    QTest::newRow("35 mm focal length") << QList<PickedRow> { row("focalLength35", 75) } << 5;
    QTest::newRow("35 mm focal length unknown")
        << QList<PickedRow> { row("focalLength35", "unknown") } << 1;
    QTest::newRow("a class of the default ranges")
        << QList<PickedRow> { row("focalLength35Grouped", "0071-0135") } << 5;
    QTest::newRow("the unknown class")
        << QList<PickedRow> { row("focalLength35Grouped", "unknown") } << 1;
    QTest::newRow("a class of the ranges picked under")
        << QList<PickedRow> { row("focalLength35Grouped", "0071-0135", { "1-70", "71-135" }) } << 5;
    QTest::newRow("Others of the ranges picked under")
        << QList<PickedRow> { row("isoGrouped", "Others", { "200-400" }) } << 6;
    QTest::newRow("a range of the ranges picked under")
        << QList<PickedRow> { row("focalLengthGrouped", "0051-0070", { "1-49", "51-70" }) } << 0;
    QTest::newRow("awkward text, bound")
        << QList<PickedRow> { row("meteringMode", "it's 100%; DROP TABLE DATEIEN --") } << 0;
    QTest::newRow("a statistic this program does not know")
        << QList<PickedRow> { row("nothing", 1) } << 0;
}

void tst_PhotoFilter::pickedRowsSelectTheirPhotos()
{
    QFETCH(QList<PickedRow>, rows);
    QFETCH(int, photos);
    QVERIFY(addLibrary());
    QVERIFY(QSqlQuery(db).exec("UPDATE PHOTOINFO SET FOCALLENGTH35 = NULL WHERE ID = "
                               "(SELECT d.ID FROM DATEIEN d JOIN PHOTOINFO p ON p.ID = d.ID "
                               "JOIN PHOTOFOLDERS f ON f.ID = p.FOLDER "
                               "WHERE f.PATH || d.FILENAME = '/p/b/6.ARW')"));
    PhotoFilter filter;
    filter.pickedRows = rows;
    PhotoSelection selection;
    QString error;
    QVERIFY2(selection.select(db, StatementFilter(filter), &error), qPrintable(error));
    QVERIFY(selection.isFiltered());
    QCOMPARE(selection.count(db), photos);
    QCOMPARE(selection.selectedCount(), qint64(photos));
    QCOMPARE(total(rowsOf(QStringLiteral("maker"), db, filter)), photos);
    QCOMPARE(total(rowsOf(QStringLiteral("maker"), db, PhotoFilter())), 6);
}
