#include "tst_photodatabase.h"

#include "photodatabase.h"
#include "rangegroups.h"
#include "scanfixtures.h"
#include "statistic.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTest>
#include <QThread>

#include <atomic>
#include <memory>

namespace {

const QString readerConnection = QStringLiteral("ReaderWithoutPragma");
const QString writerConnection = QStringLiteral("Writer");

QList<int> ids(const QSqlDatabase &db)
{
    QList<int> found;
    for (const QString &id : scantest::column(db, QStringLiteral("id")))
        found << id.toInt();
    return found;
}

} // namespace

void tst_PhotoDatabase::initTestCase()
{
    QVERIFY2(PhotoDatabase::openMainConnection(db), "the main connection could not be set up");
}

void tst_PhotoDatabase::init()
{
    PhotoDatabase::clear(db);
}

void tst_PhotoDatabase::cleanupTestCase()
{
    scantest::closeMainConnection(db);
}

void tst_PhotoDatabase::mainConnectionCreatesTheTableAsWritten()
{
    QCOMPARE(db.connectionName(), PhotoDatabase::mainConnection);
    QCOMPARE(db.driverName(), QStringLiteral("QSQLITE"));
    QCOMPARE(db.databaseName(), QStringLiteral("file::memory:"));
    QCOMPARE(db.connectOptions(), QStringLiteral("QSQLITE_OPEN_URI;QSQLITE_ENABLE_SHARED_CACHE"));
    QVERIFY(db.isOpen());

    QSqlQuery schema(db);
    QVERIFY(schema.exec("SELECT sql FROM sqlite_master WHERE name = 'DATEIEN'"));
    QVERIFY2(schema.next(), "table DATEIEN is missing");
    QCOMPARE(schema.value(0).toString(), PhotoDatabase::createTableStatement);

    QSqlQuery pragma(db);
    QVERIFY(pragma.exec("PRAGMA read_uncommitted"));
    QVERIFY(pragma.next());
    QCOMPARE(pragma.value(0).toInt(), 1);
    QCOMPARE(scantest::rowCount(db), 0);
}

void tst_PhotoDatabase::addedConnectionIsNotOpenedAndReachesTheSameDatabase()
{
    QVERIFY(scantest::insertRows(db, 3));
    {
        QSqlDatabase other = PhotoDatabase::addConnection(QStringLiteral("Other"));
        QVERIFY2(!other.isOpen(), "a connection is opened only by its user");
        QCOMPARE(other.databaseName(), PhotoDatabase::databaseName);
        QCOMPARE(other.connectOptions(), PhotoDatabase::connectOptions);
        QVERIFY(other.open());
        QCOMPARE(scantest::rowCount(other), 3);
        other.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("Other"));
}

void tst_PhotoDatabase::clearEmptiesTheTableAndIdsContinue()
{
    QVERIFY(scantest::insertRows(db, 4));
    const QList<int> first = ids(db);
    QCOMPARE(first.size(), 4);

    PhotoDatabase::clear(db);
    QCOMPARE(scantest::rowCount(db), 0);

    QVERIFY(scantest::insertRows(db, 2));
    const QList<int> second = ids(db);
    QCOMPARE(second, (QList<int> { first.last() + 1, first.last() + 2 }));
}

namespace {

QStringList statisticIndexNames(const QSqlDatabase &db)
{
    QSqlQuery query(db);
    query.exec(QStringLiteral(
        "SELECT name FROM sqlite_master WHERE type = 'index' AND name LIKE 'Stat%' ORDER BY name"));
    QStringList names;
    while (query.next())
        names << query.value(0).toString();
    return names;
}

// Every row of a statistic's result, in the order SQLite delivers them.
QStringList statisticRows(const QSqlDatabase &db, const QString &statement)
{
    QSqlQuery query(db);
    if (!query.exec(statement))
        return { QStringLiteral("failed: ") + statement };
    QStringList rows;
    while (query.next()) {
        QStringList fields;
        for (int i = 0; i < query.record().count(); ++i)
            fields << query.value(i).toString();
        rows << fields.join(QLatin1Char('|'));
    }
    return rows;
}

} // namespace

void tst_PhotoDatabase::statisticIndexesChangeNoResultAndGoWithClear()
{
    QSqlQuery insert(db);
    QVERIFY(insert.prepare(PhotoDatabase::insertStatement));
    const QStringList makers { "Sony", "Canon", "Nikon", "Canon", "Apple", "Sony", "Canon" };
    for (int i = 0; i < makers.size(); ++i) {
        scantest::bindRow(insert, QStringLiteral("IMG_%1.JPG").arg(i));
        insert.bindValue(":maker", makers[i]);
        insert.bindValue(":model", makers[i] + QStringLiteral(" M%1").arg(i % 2));
        insert.bindValue(":focallength", 10.0 * (i % 3) + 24.5);
        insert.bindValue(":date", QStringLiteral("2023:0%1:1%2 10:00:00").arg(1 + i % 3).arg(i));
        QVERIFY(insert.exec());
    }
    const QStringList statistics {
        "SELECT Distinct Maker, count(maker) FROM Dateien group by maker",
        "SELECT Distinct Model, count(Model) FROM Dateien group by Maker, Model",
        "SELECT Distinct FocalLength, count(FocalLength) FROM Dateien group by FocalLength",
        "SELECT distinct exptime, exptimestring, count(exptime) FROM Dateien GROUP by exptime "
        "ORDER BY exptime desc",
        PhotoDatabase::photosPerDayStatement,
    };
    QList<QStringList> without;
    for (const QString &statement : statistics)
        without << statisticRows(db, statement);

    QVERIFY(statisticIndexNames(db).isEmpty());
    PhotoDatabase::createStatisticIndexes(db);
    QCOMPARE(statisticIndexNames(db).size(), PhotoDatabase::statisticIndexStatements.size());
    for (int i = 0; i < statistics.size(); ++i)
        QCOMPARE(statisticRows(db, statistics[i]), without[i]);

    // The grouping reads the index instead of sorting the table.
    QSqlQuery plan(db);
    QVERIFY(plan.exec(QStringLiteral("EXPLAIN QUERY PLAN ") + statistics[0]));
    QStringList steps;
    while (plan.next())
        steps << plan.value(3).toString();
    QVERIFY2(steps.join(' ').contains("StatMakerModel"), qPrintable(steps.join(" / ")));

    PhotoDatabase::clear(db);
    QVERIFY(statisticIndexNames(db).isEmpty());
    QCOMPARE(scantest::rowCount(db), 0);
}

void tst_PhotoDatabase::groupedStatisticIndexesServeTheirStatements_data()
{
    QTest::addColumn<QString>("column");
    QTest::addColumn<QList<QString>>("ranges");
    QTest::addColumn<QString>("index");

    const Statistic &focalGroups = *Statistics::byKey(Statistics::focalLengthGrouped);
    const Statistic &isoGroups = *Statistics::byKey(Statistics::isoGrouped);
    QTest::newRow("focal length, default ranges")
        << "FocalLength" << QList<QString> {} << focalGroups.rangeIndexStatement({});
    QTest::newRow("focal length, overlapping ranges and a malformed one")
        << "FocalLength" << QList<QString> { "10-50", "24-70", "x-9", "71-71" }
        << focalGroups.rangeIndexStatement({ "10-50", "24-70", "x-9", "71-71" });
    QTest::newRow("ISO, default ranges")
        << "ISO" << QList<QString> {} << isoGroups.rangeIndexStatement({});
    QTest::newRow("ISO, one range")
        << "ISO" << QList<QString> { "100-200" } << isoGroups.rangeIndexStatement({ "100-200" });
}

void tst_PhotoDatabase::groupedStatisticIndexesServeTheirStatements()
{
    QFETCH(QString, column);
    QFETCH(QList<QString>, ranges);
    QFETCH(QString, index);

    QSqlQuery insert(db);
    QVERIFY(insert.prepare(PhotoDatabase::insertStatement));
    // Values on and beside the range borders, and outside every range.
    const QList<double> focalLengths { 0, 1, 10, 23, 23.5, 24, 50, 70, 70.5, 71, 200, 1200, 5000 };
    const QList<int> isos { 0, 1, 100, 101, 200, 400, 1600, 6400, 6401, 12800, 25600, 50, 160 };
    for (int i = 0; i < focalLengths.size(); ++i) {
        scantest::bindRow(insert, QStringLiteral("IMG_%1.JPG").arg(i));
        insert.bindValue(":focallength", focalLengths[i]);
        insert.bindValue(":iso", isos[i]);
        QVERIFY(insert.exec());
    }
    // The statement the chart runs for these ranges.
    const bool focal = column == QLatin1String("FocalLength");
    if (ranges.isEmpty())
        ranges = Statistics::byKey(focal ? Statistics::focalLengthGrouped : Statistics::isoGrouped)
                     ->rangeGroups->defaultRanges;
    const QString statement = RangeGroups::selectStatement(column, ranges);
    const QStringList without = statisticRows(db, statement);
    QVERIFY(without.size() > 1);

    PhotoDatabase::createStatisticIndexes(db, { index, QString() });
    const QString name = index.section(' ', 5, 5);
    QVERIFY2(statisticIndexNames(db).contains(name), qPrintable(index));
    QCOMPARE(statisticRows(db, statement), without);

    // The groups come from the index in their order: no sorting of the table.
    QSqlQuery plan(db);
    QVERIFY(plan.exec(QStringLiteral("EXPLAIN QUERY PLAN ") + statement));
    QStringList steps;
    while (plan.next())
        steps << plan.value(3).toString();
    const QString planText = steps.join(QStringLiteral(" / "));
    QVERIFY2(planText.contains(name), qPrintable(planText));
    QVERIFY2(!planText.contains(QLatin1String("TEMP B-TREE")), qPrintable(planText));

    PhotoDatabase::clear(db);
    QVERIFY(statisticIndexNames(db).isEmpty());
}

void tst_PhotoDatabase::journalIsOffForEveryConnection()
{
    QSqlQuery mainJournal(db);
    QVERIFY(mainJournal.exec(QStringLiteral("PRAGMA journal_mode")) && mainJournal.next());
    QCOMPARE(mainJournal.value(0).toString(), QStringLiteral("off"));
    {
        scantest::OwnConnection worker(writerConnection);
        QSqlQuery journal(worker.db);
        QVERIFY(journal.exec(QStringLiteral("PRAGMA journal_mode")) && journal.next());
        QCOMPARE(journal.value(0).toString(), QStringLiteral("off"));
    }
}

// The page size is the database's: the worker's connection, opened later, has the same.
void tst_PhotoDatabase::pagesAreLargerThanSqlitesDefault()
{
    QSqlQuery mainPages(db);
    QVERIFY(mainPages.exec(QStringLiteral("PRAGMA page_size")) && mainPages.next());
    QCOMPARE(mainPages.value(0).toInt(), 16384);
    scantest::OwnConnection worker(writerConnection);
    QSqlQuery pages(worker.db);
    QVERIFY(pages.exec(QStringLiteral("PRAGMA page_size")) && pages.next());
    QCOMPARE(pages.value(0).toInt(), 16384);
}

// Without a journal nothing can be rolled back: a refused INSERT must not have written anything,
// neither a row nor a step of the id counter.
void tst_PhotoDatabase::failedInsertLeavesNoTrace()
{
    QVERIFY(scantest::insertRows(db, 2));
    QSqlQuery insert(db);
    QVERIFY(insert.prepare(PhotoDatabase::insertStatement));
    for (const char *placeholder : { ":filename", ":maker", ":lens", ":exposuremode" }) {
        scantest::bindRow(insert, QStringLiteral("refused.jpg"));
        insert.bindValue(QLatin1String(placeholder), QVariant(QMetaType::fromType<QString>()));
        QVERIFY(!insert.exec());
    }
    QVERIFY(scantest::insertRows(db, 1));
    const QList<int> stored = ids(db);
    QCOMPARE(stored.size(), 3);
    QCOMPARE(stored[2], stored[1] + 1);
    QVERIFY(!scantest::column(db, "FILENAME").contains(QStringLiteral("refused.jpg")));

    QSqlQuery integrity(db);
    QVERIFY(integrity.exec(QStringLiteral("PRAGMA integrity_check")) && integrity.next());
    QCOMPARE(integrity.value(0).toString(), QStringLiteral("ok"));
}

void tst_PhotoDatabase::connectionOfAnotherThreadSeesTheRows()
{
    QVERIFY(scantest::insertRows(db, 7));
    int seen = -1;
    std::unique_ptr<QThread> thread(QThread::create([&seen] {
        scantest::OwnConnection other(QStringLiteral("OtherThread"));
        seen = scantest::rowCount(other.db);
    }));
    thread->start();
    thread->wait();
    QCOMPARE(seen, 7);
}

void tst_PhotoDatabase::openSelectAndInsert_data()
{
    QTest::addColumn<bool>("readUncommitted");
    QTest::addColumn<bool>("insertSucceeds");

    QTest::newRow("reader without read-uncommitted locks the writer out") << false << false;
    QTest::newRow("reader reading uncommitted lets the writer in") << true << true;
}

void tst_PhotoDatabase::openSelectAndInsert()
{
    QFETCH(bool, readUncommitted);
    QFETCH(bool, insertSucceeds);

    QVERIFY(scantest::insertRows(db, 2));
    scantest::OwnConnection reader(readerConnection, readUncommitted);
    scantest::OwnConnection writer(writerConnection);
    {
        const auto select = scantest::openHalfReadSelect(reader.db);
        QVERIFY2(select->isActive(), "the reading statement did not start");

        QSqlQuery insert(writer.db);
        QVERIFY(insert.prepare(PhotoDatabase::insertStatement));
        scantest::bindRow(insert, QStringLiteral("during-select.jpg"));
        QCOMPARE(insert.exec(), insertSucceeds);
        QVERIFY2(PhotoDatabase::failedOnTableLock(insert) != insertSucceeds,
                 qPrintable(insert.lastError().text()));
    }
    QCOMPARE(scantest::rowCount(db), insertSucceeds ? 3 : 2);
}

void tst_PhotoDatabase::execInsertWaitsUntilTheLockIsGone()
{
    QVERIFY(scantest::insertRows(db, 2));
    scantest::OwnConnection reader(readerConnection);
    scantest::OwnConnection writer(writerConnection);
    auto select = scantest::openHalfReadSelect(reader.db);

    // The reader lets go of its statement when the INSERT has been refused once, on the
    // inserting thread itself, so nothing depends on which thread is faster.
    int refusals = 0;
    PhotoDatabase::setLockedRetryHook([&] {
        ++refusals;
        select.reset();
    });
    QSqlQuery insert(writer.db);
    QVERIFY(insert.prepare(PhotoDatabase::insertStatement));
    scantest::bindRow(insert, QStringLiteral("waited.jpg"));
    const bool stored = PhotoDatabase::execInsert(insert);
    PhotoDatabase::setLockedRetryHook({});

    QCOMPARE(refusals, 1);
    QVERIFY2(stored, "the INSERT was not retried after the lock had gone");
    QCOMPARE(scantest::column(db, "FILENAME").last(), QStringLiteral("waited.jpg"));
}

void tst_PhotoDatabase::execInsertGivesUpWhenTheLockStays()
{
    QVERIFY(scantest::insertRows(db, 2));
    scantest::OwnConnection reader(readerConnection);
    scantest::OwnConnection writer(writerConnection);
    const auto select = scantest::openHalfReadSelect(reader.db);

    QSqlQuery insert(writer.db);
    QVERIFY(insert.prepare(PhotoDatabase::insertStatement));
    scantest::bindRow(insert, QStringLiteral("never.jpg"));
    QVERIFY2(!PhotoDatabase::execInsert(insert), "the INSERT passed a lock that was never freed");
    QVERIFY(PhotoDatabase::failedOnTableLock(insert));
    QCOMPARE(scantest::rowCount(writer.db), 2);
}

void tst_PhotoDatabase::execInsertStopsWaitingWhenTheThreadIsStopped()
{
    QVERIFY(scantest::insertRows(db, 2));
    scantest::OwnConnection reader(readerConnection);
    const auto select = scantest::openHalfReadSelect(reader.db);

    std::atomic<int> retries { 0 };
    PhotoDatabase::setLockedRetryHook([&] { ++retries; });
    bool stored = true;
    std::unique_ptr<QThread> thread(QThread::create([&] {
        scantest::OwnConnection writer(writerConnection);
        QSqlQuery insert(writer.db);
        insert.prepare(PhotoDatabase::insertStatement);
        scantest::bindRow(insert, QStringLiteral("stopped.jpg"));
        QThread::currentThread()->requestInterruption();
        stored = PhotoDatabase::execInsert(insert);
    }));
    thread->start();
    thread->wait();
    PhotoDatabase::setLockedRetryHook({});

    QVERIFY(!stored);
    QCOMPARE(int(retries), 0);
}

void tst_PhotoDatabase::execInsertDoesNotRetryOtherFailures()
{
    QSqlQuery insert(db);
    QVERIFY(insert.prepare(PhotoDatabase::insertStatement));
    scantest::bindRow(insert, QStringLiteral("no-maker.jpg"));
    // A null text breaks the NOT NULL constraint of its column.
    insert.bindValue(":maker", QVariant(QMetaType::fromType<QString>()));
    QVERIFY(!PhotoDatabase::execInsert(insert));
    QVERIFY2(!PhotoDatabase::failedOnTableLock(insert), qPrintable(insert.lastError().text()));
    QCOMPARE(scantest::rowCount(db), 0);
}
