// The photo database as the window opens it: the main connection, table DATEIEN, the raw-data
// model and view, and the emptying of the table.
#include "apptestsupport.h"
#include "mainwindow.h"
#include "mainwindowprobe.h"
#include "rawdatamodel.h"
#include "testutils.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTableView>
#include <QTest>
#include <QThread>

#include <memory>

using namespace apptest;

class tst_RawDataTable : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void mainConnection();
    void createTableStatement();
    void headerLabels_data();
    void headerLabels();
    void emptyBeforeTheFirstScan();
    void idsContinueAfterClearTable();
    void secondConnectionInAnotherThreadSeesTheRows();

private:
    std::unique_ptr<testutils::Sandbox> sandbox;
    std::unique_ptr<MainWindow> window;
    void insertRows(int count);
    QList<qint64> ids();
};

void tst_RawDataTable::init()
{
    sandbox = std::make_unique<testutils::Sandbox>();
    window = std::make_unique<MainWindow>();
}

void tst_RawDataTable::cleanup()
{
    window.reset();
    releaseDatabase();
    sandbox.reset();
}

void tst_RawDataTable::insertRows(int count)
{
    QSqlQuery insert(MainWindowProbe(*window).db());
    QVERIFY(insert.prepare("INSERT INTO DATEIEN (FILENAME, DATE, MAKER, MODEL, LENS, FOCALLENGTH, "
                           "ISO, FNUMBER, EXPTIME, EXPTIMESTRING, METERINGMODE, EXPOSUREMODE) "
                           "VALUES ('a.jpg', '2023:01:01 10:00:00', 'Canon', 'R5', 'RF50', 50, "
                           "100, 2.8, 0.004, '1/250', 'Pattern', 'Manual')"));
    for (int i = 0; i < count; ++i)
        QVERIFY2(insert.exec(), qPrintable(insert.lastError().text()));
}

QList<qint64> tst_RawDataTable::ids()
{
    QList<qint64> result;
    QSqlQuery query(MainWindowProbe(*window).db());
    query.exec("SELECT id FROM DATEIEN ORDER BY id");
    while (query.next())
        result << query.value(0).toLongLong();
    return result;
}

void tst_RawDataTable::mainConnection()
{
    QSqlDatabase &db = MainWindowProbe(*window).db();
    QVERIFY(db.isOpen());
    QCOMPARE(db.connectionName(), QString("MainThread"));
    QCOMPARE(db.driverName(), QString("QSQLITE"));
    QCOMPARE(db.databaseName(), QString("file::memory:"));
    QCOMPARE(db.connectOptions(), QString("QSQLITE_OPEN_URI;QSQLITE_ENABLE_SHARED_CACHE"));
    QCOMPARE(MainWindowProbe(*window).tableModel()->tableName(), QString("Dateien"));
    QCOMPARE(MainWindowProbe(*window).tableModel()->parent(), window.get());
}

void tst_RawDataTable::createTableStatement()
{
    QSqlQuery query(MainWindowProbe(*window).db());
    QVERIFY(query.exec("SELECT sql FROM sqlite_master WHERE type = 'table' AND name = 'DATEIEN'"));
    QVERIFY2(query.next(), "table DATEIEN exists");
    QCOMPARE(query.value(0).toString(),
             QString("CREATE TABLE DATEIEN (id INTEGER PRIMARY KEY AUTOINCREMENT, FILENAME TEXT "
                     "NOT NULL, DATE     TEXT NOT NULL, MAKER    TEXT NOT NULL, MODEL    TEXT NOT "
                     "NULL, LENS     TEXT NOT NULL, FOCALLENGTH REAL NOT NULL, ISO INT NOT NULL, "
                     "FNUMBER REAL NOT NULL, EXPTIME REAL NOT NULL, EXPTIMESTRING TEXT NOT NULL, "
                     "METERINGMODE TEXT NOT NULL, EXPOSUREMODE TEXT NOT NULL )"));
}

void tst_RawDataTable::headerLabels_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("label");

    const QStringList labels { "ID",
                               "FILENAME",
                               "DATE",
                               "MAKER",
                               "MODEL",
                               "LENS",
                               "FOCALLENGTH",
                               "ISO",
                               "FNUMBER",
                               "EXPOSURETIME",
                               "EXPOSURETIMESTRING",
                               "METERINGMDOE",
                               "EXPOSUREMODE" };
    for (int column = 0; column < labels.size(); ++column)
        QTest::addRow("column %d reads %s", column, qPrintable(labels.at(column)))
            << column << labels.at(column);
}

void tst_RawDataTable::headerLabels()
{
    QFETCH(int, column);
    QFETCH(QString, label);

    RawDataModel *model = MainWindowProbe(*window).tableModel();
    QCOMPARE(model->columnCount(), 13);
    QCOMPARE(model->headerData(column, Qt::Horizontal, Qt::EditRole).toString(), label);
    // What the view shows: the edit-role label stands in for the display role.
    QCOMPARE(model->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString(), label);
    if (column == 11)
        QCOMPARE(model->record().fieldName(column), QString("METERINGMODE"));
}

void tst_RawDataTable::emptyBeforeTheFirstScan()
{
    auto *view = window->findChild<QTableView *>("tableViewRawData");
    QCOMPARE(view->model(), MainWindowProbe(*window).tableModel());
    QVERIFY(view->isColumnHidden(0));
    for (int column = 1; column < 13; ++column)
        QVERIFY2(!view->isColumnHidden(column), qPrintable(QString::number(column)));
    QCOMPARE(view->model()->rowCount(), 0);

    // Not selected at start: rows written now appear only when the model is selected again.
    insertRows(2);
    QCOMPARE(view->model()->rowCount(), 0);
}

void tst_RawDataTable::idsContinueAfterClearTable()
{
    insertRows(3);
    const QList<qint64> first = ids();
    QCOMPARE(first.size(), 3);

    MainWindowProbe(*window).clearTable();
    QCOMPARE(ids().size(), 0);

    insertRows(2);
    const QList<qint64> second = ids();
    QCOMPARE(second.size(), 2);
    QVERIFY2(second.first() > first.last(),
             qPrintable(QString("%1 after %2").arg(second.first()).arg(first.last())));
}

void tst_RawDataTable::secondConnectionInAnotherThreadSeesTheRows()
{
    insertRows(5);
    int seen = -1;
    QString error;
    std::unique_ptr<QThread> thread(QThread::create([&] {
        {
            QSqlDatabase other = QSqlDatabase::addDatabase("QSQLITE", "OtherThread");
            other.setConnectOptions("QSQLITE_OPEN_URI;QSQLITE_ENABLE_SHARED_CACHE");
            other.setDatabaseName("file::memory:");
            if (other.open()) {
                QSqlQuery count(other);
                if (count.exec("SELECT COUNT(*) FROM DATEIEN") && count.next())
                    seen = count.value(0).toInt();
                else
                    error = count.lastError().text();
            } else {
                error = other.lastError().text();
            }
        }
        QSqlDatabase::removeDatabase("OtherThread");
    }));
    thread->start();
    QVERIFY(thread->wait(30000));
    QVERIFY2(error.isEmpty(), qPrintable(error));
    QCOMPARE(seen, 5);
}

std::unique_ptr<QObject> makeRawDataTableTest()
{
    return std::make_unique<tst_RawDataTable>();
}

#include "tst_rawdatatable.moc"
