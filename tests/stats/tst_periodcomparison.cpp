#include "tst_periodcomparison.h"

#include "filetypes.h"
#include "periodcomparison.h"
#include "photodatabase.h"
#include "photodate.h"
#include "photorowinserter.h"
#include "statistic.h"

#include <QSqlQuery>
#include <QTest>

Q_DECLARE_METATYPE(PhotoFilter)
Q_DECLARE_METATYPE(StatementRows)
Q_DECLARE_METATYPE(PeriodComparison)

namespace {

PhotoFilter days(const QDate &from, const QDate &to)
{
    PhotoFilter filter;
    filter.from = from;
    filter.to = to;
    return filter;
}

PeriodComparison comparedWith(const QDate &from, const QDate &to)
{
    return { true, from, to };
}

QDate year(int year, bool last = false)
{
    return last ? QDate(year, 12, 31) : QDate(year, 1, 1);
}

// "Canon=2/1, Nikon=1/0": value, period A's and period B's count, in the rows' order.
QString summary(const StatementRows &rows, int valueColumn, int countColumn)
{
    QStringList parts;
    for (const QList<QVariant> &row : rows)
        parts << QStringLiteral("%1=%2/%3")
                     .arg(row.value(valueColumn).toString())
                     .arg(row.value(countColumn).toLongLong())
                     .arg(row.value(countColumn + 1).toLongLong());
    return parts.join(QStringLiteral(", "));
}

} // namespace

void tst_PeriodComparison::init()
{
    QVERIFY2(PhotoDatabase::openMainConnection(db), "the photo database could not be opened");
}

void tst_PeriodComparison::cleanup()
{
    QSqlQuery(db).exec(QStringLiteral("DROP TABLE DATEIEN"));
    QSqlQuery(db).exec(QStringLiteral("DROP TABLE PHOTOINFO"));
    QSqlQuery(db).exec(QStringLiteral("DROP TABLE PHOTOFOLDERS"));
    db.close();
    db = QSqlDatabase();
    QSqlDatabase::removeDatabase(PhotoDatabase::mainConnection);
}

bool tst_PeriodComparison::addPhoto(const QString &maker, const QString &lens, const QString &date,
                                    const QString &path)
{
    const auto rows = PhotoRowInserter::create(db);
    const auto info = PhotoRowInserter::createInfo(db);
    const QDate day = PhotoDate::date(date);
    const auto hour = PhotoDate::hour(date);
    return rows->insert({ path.section(QLatin1Char('/'), -1), date, QString(), maker,
                          QStringLiteral("Model"), lens, 50.0, 100, QStringLiteral("2.8"), 0.01,
                          QStringLiteral("1/100"), QStringLiteral("Pattern"),
                          QStringLiteral("Manual") })
        && info->insert({ path, FileTypes::nameOf(path), 75.0, 1.5,
                          hour ? QVariant(*hour) : QVariant(),
                          day.isValid() ? QVariant(day.dayOfWeek()) : QVariant() });
}

void tst_PeriodComparison::periodBKeepsTheFiltersValues()
{
    PhotoFilter a = days(year(2021), year(2021, true));
    a.makers = QStringList { "Canon" };
    a.fileTypes = QStringList { "CR3" };
    a.pairsOnce = true;
    const PhotoFilter b = comparedWith(year(2019), year(2019, true)).periodB(a);
    QCOMPARE(b.makers, a.makers);
    QCOMPARE(b.fileTypes, a.fileTypes);
    QCOMPARE(b.pairsOnce, true);
    QCOMPARE(b.dateRangeText(), QString("2019"));
    QCOMPARE(a.dateRangeText(), QString("2021"));
    // "All" as period B: the filter's values over every day.
    QCOMPARE(comparedWith(QDate(), QDate()).periodB(a).hasDateRange(), false);
}

void tst_PeriodComparison::spanMeetsBothPeriods_data()
{
    QTest::addColumn<PhotoFilter>("periodA");
    QTest::addColumn<QDate>("fromB");
    QTest::addColumn<QDate>("toB");
    QTest::addColumn<QDate>("from");
    QTest::addColumn<QDate>("to");

    QTest::newRow("B before A") << days(year(2021), year(2021, true)) << year(2019)
                                << year(2019, true) << year(2019) << year(2021, true);
    QTest::newRow("B after A") << days(year(2019), year(2019, true)) << year(2022)
                               << year(2022, true) << year(2019) << year(2022, true);
    QTest::newRow("A every day") << PhotoFilter() << year(2019) << year(2019, true) << QDate()
                                 << QDate();
    QTest::newRow("B open at its end")
        << days(year(2019), year(2019, true)) << year(2021) << QDate() << year(2019) << QDate();
}

void tst_PeriodComparison::spanMeetsBothPeriods()
{
    QFETCH(PhotoFilter, periodA);
    QFETCH(QDate, fromB);
    QFETCH(QDate, toB);
    QFETCH(QDate, from);
    QFETCH(QDate, to);
    periodA.makers = QStringList { "Nikon" };
    const PhotoFilter span = comparedWith(fromB, toB).span(periodA);
    QCOMPARE(span.from, from);
    QCOMPARE(span.to, to);
    QCOMPARE(span.makers, QStringList { "Nikon" });
}

void tst_PeriodComparison::rowsSideBySide_data()
{
    QTest::addColumn<StatementRows>("order");
    QTest::addColumn<StatementRows>("a");
    QTest::addColumn<StatementRows>("b");
    QTest::addColumn<int>("countColumn");
    QTest::addColumn<StatementRows>("expected");

    const StatementRows canonNikon { { "Canon", 3 }, { "Nikon", 2 } };
    QTest::newRow("B within A's values, A's order")
        << canonNikon << canonNikon << StatementRows { { "Nikon", 1 } } << 1
        << StatementRows { { "Canon", 3, 0 }, { "Nikon", 2, 1 } };
    QTest::newRow("a value of B alone, where the statement puts it")
        << StatementRows { { "Canon", 4 }, { "Fujifilm", 1 }, { "Nikon", 2 } } << canonNikon
        << StatementRows { { "Canon", 1 }, { "Fujifilm", 1 } } << 1
        << StatementRows { { "Canon", 3, 1 }, { "Fujifilm", 0, 1 }, { "Nikon", 2, 0 } };
    QTest::newRow("a value of the span in neither period is left out")
        << StatementRows { { "Canon", 4 }, { "Leica", 1 }, { "Nikon", 2 } } << canonNikon
        << StatementRows { { "Canon", 1 } } << 1
        << StatementRows { { "Canon", 3, 1 }, { "Nikon", 2, 0 } };
    QTest::newRow("a null value counted 0 stays, apart from an empty text")
        << StatementRows { { QVariant(), 0 }, { "", 1 } } << StatementRows { { QVariant(), 0 } }
        << StatementRows { { "", 1 } } << 1 << StatementRows { { QVariant(), 0, 0 }, { "", 0, 1 } };
    QTest::newRow("one value twice pairs by its occurrence")
        << StatementRows { { "X100", 2 }, { "X100", 5 } }
        << StatementRows { { "X100", 1 }, { "X100", 4 } } << StatementRows { { "X100", 1 } } << 1
        << StatementRows { { "X100", 1, 1 }, { "X100", 4, 0 } };
    QTest::newRow("exposure times: the count after the sort value and the text")
        << StatementRows { { 0.5, "1/2", 2 }, { 0.004, "1/250", 3 } }
        << StatementRows { { 0.5, "1/2", 2 } } << StatementRows { { 0.004, "1/250", 3 } } << 2
        << StatementRows { { 0.5, "1/2", 2, 0 }, { 0.004, "1/250", 0, 3 } };
    QTest::newRow("empty period B") << canonNikon << canonNikon << StatementRows() << 1
                                    << StatementRows { { "Canon", 3, 0 }, { "Nikon", 2, 0 } };
    QTest::newRow("both periods empty")
        << StatementRows() << StatementRows() << StatementRows() << 1 << StatementRows();
}

void tst_PeriodComparison::rowsSideBySide()
{
    QFETCH(StatementRows, order);
    QFETCH(StatementRows, a);
    QFETCH(StatementRows, b);
    QFETCH(int, countColumn);
    QFETCH(StatementRows, expected);
    const StatementRows rows = PeriodRows::sideBySide(order, a, b, countColumn);
    QCOMPARE(rows.size(), expected.size());
    for (int row = 0; row < rows.size(); ++row) {
        QCOMPARE(rows.at(row).size(), expected.at(row).size());
        for (int column = 0; column < rows.at(row).size(); ++column) {
            const QVariant &got = rows.at(row).at(column);
            const QVariant &want = expected.at(row).at(column);
            QCOMPARE(got.isNull(), want.isNull());
            QCOMPARE(got.toString(), want.toString());
        }
    }
}

void tst_PeriodComparison::coveredWhenEveryRowOfBIsInA_data()
{
    QTest::addColumn<StatementRows>("a");
    QTest::addColumn<StatementRows>("b");
    QTest::addColumn<bool>("covered");

    const StatementRows canonNikon { { "Canon", 3 }, { "Nikon", 2 } };
    QTest::newRow("B within A") << canonNikon << StatementRows { { "Nikon", 7 } } << true;
    QTest::newRow("B empty") << canonNikon << StatementRows() << true;
    QTest::newRow("a value A lacks") << canonNikon << StatementRows { { "Sony", 1 } } << false;
    QTest::newRow("a value twice in B, once in A")
        << canonNikon << StatementRows { { "Canon", 1 }, { "Canon", 1 } } << false;
}

void tst_PeriodComparison::coveredWhenEveryRowOfBIsInA()
{
    QFETCH(StatementRows, a);
    QFETCH(StatementRows, b);
    QFETCH(bool, covered);
    QCOMPARE(PeriodRows::covers(a, b, 1), covered);
}

// Canon: a 2021 CR3, a 2020 JPEG and a 2021 CR3 with another lens; Nikon: a 2021 NEF and a 2020
// JPEG; Sony without a date.
void tst_PeriodComparison::statisticsOfTwoPeriods_data()
{
    QTest::addColumn<QString>("statistic");
    QTest::addColumn<PhotoFilter>("periodA");
    QTest::addColumn<PeriodComparison>("comparison");
    QTest::addColumn<QString>("labels");
    QTest::addColumn<QString>("rows");

    const PeriodComparison with2020 = comparedWith(year(2020), year(2020, true));
    QTest::newRow("makers, every day with 2020")
        << "maker" << PhotoFilter() << with2020 << "A: all, B: 2020"
        << "Canon=3/1, Nikon=2/1, Sony=1/0";
    QTest::newRow("makers, 2021 with 2020")
        << "maker" << days(year(2021), year(2021, true)) << with2020 << "A: 2021, B: 2020"
        << "Canon=2/1, Nikon=1/1";
    PhotoFilter canon2021 = days(year(2021), year(2021, true));
    canon2021.makers = QStringList { "Canon" };
    QTest::newRow("the filter's maker holds in both periods")
        << "maker" << canon2021 << with2020 << "A: 2021, B: 2020"
        << "Canon=2/1";
    QTest::newRow("lenses of 2020 with 2021: B's own lenses in the statement's order")
        << "lens" << days(year(2020), year(2020, true))
        << comparedWith(year(2021), year(2021, true)) << "A: 2020, B: 2021"
        << "EF-S18-55mm=0/1, NIKKOR Z=0/1, RF24-105mm=2/1";
    QTest::newRow("file types") << "fileType" << days(year(2021), year(2021, true)) << with2020
                                << "A: 2021, B: 2020"
                                << "CR3=2/0, JPG=0/2, NEF=1/0";
}

void tst_PeriodComparison::statisticsOfTwoPeriods()
{
    QFETCH(QString, statistic);
    QFETCH(PhotoFilter, periodA);
    QFETCH(PeriodComparison, comparison);
    QFETCH(QString, labels);
    QFETCH(QString, rows);
    QVERIFY(addPhoto("Canon", "RF24-105mm", "2021:03:14 10:00:00", "/p/1.CR3")
            && addPhoto("Canon", "RF24-105mm", "2020:06:01 12:00:00", "/p/2.jpg")
            && addPhoto("Canon", "EF-S18-55mm", "2021:11:30 08:00:00", "/p/3.CR3")
            && addPhoto("Nikon", "NIKKOR Z", "2021:01:01 00:00:00", "/p/4.NEF")
            && addPhoto("Nikon", "RF24-105mm", "2020:12:31 23:59:59", "/p/5.jpg")
            && addPhoto("Sony", "FE 85mm", "", "/p/6.ARW"));
    PhotoSelection a;
    QVERIFY(a.select(db, StatementFilter(periodA)));
    ComparedPeriods periods;
    QString error;
    QVERIFY2(periods.select(db, a, comparison, &error), qPrintable(error));
    QVERIFY(periods.isActive());
    QCOMPARE(periods.labelA() + ", " + periods.labelB(), labels);
    const Statistic &counted = *Statistics::byKey(statistic);
    StatementRows sideBySide;
    QVERIFY2(periods.readSideBySide(counted.selectStatement(), db, a, counted.countColumn(),
                                    sideBySide, &error),
             qPrintable(error));
    QCOMPARE(summary(sideBySide, counted.valueColumn(), counted.countColumn()), rows);
}

void tst_PeriodComparison::emptyPeriodCountsNothing()
{
    QVERIFY(addPhoto("Canon", "RF24-105mm", "2021:03:14 10:00:00", "/p/1.CR3")
            && addPhoto("Nikon", "NIKKOR Z", "2021:01:01 00:00:00", "/p/4.NEF"));
    PhotoSelection a;
    QVERIFY(a.select(db, StatementFilter(days(year(2021), year(2021, true)))));
    ComparedPeriods periods;
    QVERIFY(periods.select(db, a, comparedWith(year(2019), year(2019, true))));
    QCOMPARE(periods.photosA(), qint64(2));
    QCOMPARE(periods.photosB(), qint64(0));
    StatementRows rows;
    const Statistic &maker = *Statistics::byKey("maker");
    QVERIFY(periods.readSideBySide(maker.statement, db, a, 1, rows));
    QCOMPARE(summary(rows, 0, 1), QString("Canon=1/0, Nikon=1/0"));
    // Both empty: no row and no error.
    PhotoSelection none;
    QVERIFY(none.select(db, StatementFilter(days(year(2018), year(2018, true)))));
    QVERIFY(periods.select(db, none, comparedWith(year(2019), year(2019, true))));
    QVERIFY(periods.readSideBySide(maker.statement, db, none, 1, rows));
    QVERIFY(rows.isEmpty());
    QCOMPARE(periods.photosA(), qint64(0));
}

void tst_PeriodComparison::inactiveComparisonSelectsNothing()
{
    QVERIFY(addPhoto("Canon", "RF24-105mm", "2021:03:14 10:00:00", "/p/1.CR3"));
    PhotoSelection a;
    QVERIFY(a.select(db, StatementFilter()));
    ComparedPeriods periods;
    QVERIFY(periods.select(db, a, comparedWith(year(2019), year(2019, true))));
    QVERIFY(periods.isActive());
    QVERIFY(periods.select(db, a, PeriodComparison { false, year(2019), year(2019, true) }));
    QVERIFY(!periods.isActive());
    QVERIFY(!periods.periodB().isFiltered());
}
