// The Data tab's model over many rows: every row of the table, in the order SQL gives for any
// column, read back block by block; the view after a rescan and after the table was emptied; the
// export's bytes; and a restriction of the rows.
#include "apptestsupport.h"
#include "mainwindow.h"
#include "mainwindowprobe.h"
#include "rawdatamodel.h"
#include "tdialognachricht.h"
#include "testutils.h"

#include <QAction>
#include <QFile>
#include <QRandomGenerator>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QSqlTableModel>
#include <QTableView>
#include <QTest>

#include <memory>

using namespace apptest;

namespace {

// More rows than the model keeps blocks of, so that blocks are dropped and read again.
constexpr int manyRows = RawDataModel::blockRows * (RawDataModel::keptBlocks + 2) + 17;

const QStringList columnNames { "id",          "FILENAME", "DATE",          "MAKER",
                                "MODEL",       "LENS",     "FOCALLENGTH",   "ISO",
                                "FNUMBER",     "EXPTIME",  "EXPTIMESTRING", "METERINGMODE",
                                "EXPOSUREMODE" };

// The product asks with a file dialog; this window is told the answer beforehand.
class ExportWindow : public MainWindow
{
public:
    using MainWindow::MainWindow;
    QString exportFileName;

protected:
    QString askExportFileName() override { return exportFileName; }
};

// Rows of a made-up library: few distinct values per column, so that every sort meets ties, and
// values of every kind the scan stores (an f-number that is no number stays text).
bool insertRows(QSqlDatabase &db, int count, quint32 seed)
{
    QRandomGenerator random(seed);
    const auto pick = [&random](const QVariantList &values) {
        return values.at(int(random.bounded(quint32(values.size()))));
    };
    QSqlQuery insert(db);
    if (!insert.prepare("INSERT INTO DATEIEN (FILENAME, DATE, MAKER, MODEL, LENS, FOCALLENGTH, "
                        "ISO, FNUMBER, EXPTIME, EXPTIMESTRING, METERINGMODE, EXPOSUREMODE) "
                        "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"))
        return false;
    db.transaction();
    for (int i = 0; i < count; ++i) {
        // Unique, but not in id order.
        insert.bindValue(0, QString("IMG_%1.jpg").arg((i * 7919) % count, 5, 10, QChar('0')));
        insert.bindValue(
            1,
            pick({ "2023:01:01 10:00:00", "2021:07:14 18:30:05", "n.a.", "2023:01:01 10:00:01" }));
        insert.bindValue(2, pick({ "Canon", "NIKON CORPORATION", "SONY", "n.a." }));
        insert.bindValue(3, pick({ "EOS R5", "Z 6", "ILCE-7M3" }));
        insert.bindValue(4, pick({ "RF24-70mm F2.8", "Objektiv; für Ä", "n.a." }));
        insert.bindValue(5, pick({ 24.0, 50.5, 0.0, 200.0 }));
        insert.bindValue(6, pick({ 100, 400, 6400, 0 }));
        insert.bindValue(7, pick({ "2.8", "11", "n.a", "0.0" }));
        insert.bindValue(8, pick({ 0.004, 1.0 / 3.0, 30.0 }));
        insert.bindValue(9, pick({ "1/250", "1/3", "30" }));
        insert.bindValue(10, pick({ "Pattern", "Spot", "unknown" }));
        insert.bindValue(11, pick({ "Manual", "Aperture-priority AE" }));
        if (!insert.exec()) {
            db.rollback();
            return false;
        }
    }
    return db.commit();
}

// Every value of every row, in the order the statement gives.
QList<QVariantList> sqlRows(QSqlDatabase &db, const QString &statement,
                            const QVariantList &values = {})
{
    QList<QVariantList> rows;
    QSqlQuery query(db);
    query.prepare(statement);
    for (int i = 0; i < values.size(); ++i)
        query.bindValue(i, values.at(i));
    query.exec();
    while (query.next()) {
        QVariantList row;
        for (int column = 0; column < query.record().count(); ++column)
            row << query.value(column);
        rows << row;
    }
    return rows;
}

QList<QVariantList> modelRows(const QAbstractItemModel &model)
{
    QList<QVariantList> rows;
    for (int row = 0; row < model.rowCount(); ++row) {
        QVariantList values;
        for (int column = 0; column < model.columnCount(); ++column)
            values << model.index(row, column).data();
        rows << values;
    }
    return rows;
}

QString allColumns()
{
    return columnNames.join(", ");
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The export as a model that holds every row writes it: each row's display values as text, joined
// by ";", one line each.
QByteArray linesOf(const QAbstractItemModel &model)
{
    QByteArray bytes;
    for (int row = 0; row < model.rowCount(); ++row) {
        QStringList fields;
        for (int column = 0; column < model.columnCount(); ++column)
            fields << model.data(model.index(row, column)).toString();
        bytes += fields.join(';').toUtf8() + '\n';
    }
    return bytes;
}

} // namespace

class tst_RawDataModel : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void rowCountEqualsTheTableAfterAScan();
    void lastRowHoldsTheLastValues();
    void sortsEveryColumnAsSqlDoes_data();
    void sortsEveryColumnAsSqlDoes();
    void rowsWrittenLaterAppearWithTheNextSelect();
    void selectingRowsSelectsWholeRowsOneAtATime();
    void viewAfterRescanAndAfterClear();
    void exportWritesTheBytesOfAModelHoldingEveryRow_data();
    void exportWritesTheBytesOfAModelHoldingEveryRow();
    void restrictionLimitsTheRowsAndTheExport_data();
    void restrictionLimitsTheRowsAndTheExport();

private:
    std::unique_ptr<testutils::Sandbox> sandbox;
    std::unique_ptr<ExportWindow> window;
    RawDataModel *model() const { return MainWindowProbe(*window).tableModel(); }
    QSqlDatabase &db() const { return MainWindowProbe(*window).db(); }
    QTableView *view() const { return window->findChild<QTableView *>("tableViewRawData"); }
    bool exportTo(const QString &path);
};

void tst_RawDataModel::init()
{
    sandbox = std::make_unique<testutils::Sandbox>();
}

void tst_RawDataModel::cleanup()
{
    window.reset();
    releaseDatabase();
    sandbox.reset();
}

bool tst_RawDataModel::exportTo(const QString &path)
{
    window->exportFileName = path;
    NextModal nachricht(isA<TDialogNachricht>(),
                        [](QWidget *widget) { static_cast<QDialog *>(widget)->accept(); });
    window->findChild<QAction *>("actionExportData")->trigger();
    return nachricht.answered();
}

void tst_RawDataModel::rowCountEqualsTheTableAfterAScan()
{
    const QString directory = sandbox->makeDir("photos");
    QVERIFY(writePhotos(directory, 7, photoTags("Canon", "EOS R5", "RF50mm F1.8")));
    writeStore({ { "OtherSettings/lastDirectory", directory },
                 { "OtherSettings/fileFilters", QStringList { "*.jpg" } } });
    window = std::make_unique<ExportWindow>();
    QVERIFY(waitForScanEnd(*window));

    QCOMPARE(model()->rowCount(), 7);
    QCOMPARE(view()->model()->rowCount(), 7);
    QCOMPARE(modelRows(*model()),
             sqlRows(db(), "SELECT " + allColumns() + " FROM DATEIEN ORDER BY id"));
    QCOMPARE(MainWindowProbe(*window).status(), QString("Valid files: 7"));
}

void tst_RawDataModel::lastRowHoldsTheLastValues()
{
    window = std::make_unique<ExportWindow>();
    QVERIFY(insertRows(db(), manyRows, 1));
    model()->select();
    QCOMPARE(model()->rowCount(), manyRows);

    const QList<QVariantList> last =
        sqlRows(db(), "SELECT " + allColumns() + " FROM DATEIEN ORDER BY id DESC LIMIT 1");
    QCOMPARE(last.size(), 1);
    // Straight to the end, as scrolling to the last row does, without the rows before it.
    view()->scrollToBottom();
    QVariantList shown;
    for (int column = 0; column < model()->columnCount(); ++column)
        shown << model()->index(manyRows - 1, column).data();
    QCOMPARE(shown, last.first());
    QCOMPARE(model()->index(manyRows - 1, 3).data(Qt::EditRole), last.first().at(3));
    QVERIFY(!model()->index(manyRows - 1, 3).data(Qt::ToolTipRole).isValid());
}

void tst_RawDataModel::sortsEveryColumnAsSqlDoes_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<Qt::SortOrder>("order");
    for (int column = 0; column < columnNames.size(); ++column) {
        QTest::addRow("%s ascending", qPrintable(columnNames.at(column)))
            << column << Qt::AscendingOrder;
        QTest::addRow("%s descending", qPrintable(columnNames.at(column)))
            << column << Qt::DescendingOrder;
    }
}

void tst_RawDataModel::sortsEveryColumnAsSqlDoes()
{
    QFETCH(int, column);
    QFETCH(Qt::SortOrder, order);

    window = std::make_unique<ExportWindow>();
    QVERIFY(insertRows(db(), manyRows, 2));
    model()->select();
    // What a click on the header does.
    view()->sortByColumn(column, order);

    const QString direction = order == Qt::AscendingOrder ? "ASC" : "DESC";
    const QString orderBy =
        column == 0 ? "id " + direction : columnNames.at(column) + " " + direction + ", id ASC";
    const QList<QVariantList> expected =
        sqlRows(db(), "SELECT " + allColumns() + " FROM DATEIEN ORDER BY " + orderBy);
    QCOMPARE(expected.size(), manyRows);
    const QList<QVariantList> shown = modelRows(*model());
    QCOMPARE(shown.size(), manyRows);
    for (int row = 0; row < manyRows; ++row)
        QVERIFY2(shown.at(row) == expected.at(row), qPrintable(QString("row %1").arg(row)));

    // Ties keep ascending ids, whichever way the column runs.
    for (int row = 1; row < manyRows; ++row) {
        if (shown.at(row).at(column) == shown.at(row - 1).at(column))
            QVERIFY2(shown.at(row).at(0).toLongLong() > shown.at(row - 1).at(0).toLongLong(),
                     qPrintable(QString("row %1").arg(row)));
    }
    // A block dropped long ago is read again with the same values.
    QCOMPARE(model()->index(0, column).data(), expected.first().at(column));
}

void tst_RawDataModel::rowsWrittenLaterAppearWithTheNextSelect()
{
    window = std::make_unique<ExportWindow>();
    QVERIFY(insertRows(db(), 3, 3));
    QCOMPARE(model()->rowCount(), 0);
    model()->select();
    QCOMPARE(model()->rowCount(), 3);
    QVERIFY(insertRows(db(), 2, 4));
    QCOMPARE(model()->rowCount(), 3);
    model()->select();
    QCOMPARE(model()->rowCount(), 5);
}

void tst_RawDataModel::selectingRowsSelectsWholeRowsOneAtATime()
{
    window = std::make_unique<ExportWindow>();
    QVERIFY(insertRows(db(), manyRows, 7));
    model()->select();
    const int farRow = manyRows - 3;
    view()->selectRow(5);
    view()->selectRow(farRow);
    const QModelIndexList rows = view()->selectionModel()->selectedRows(0);
    QCOMPARE(rows.size(), 1);
    QCOMPARE(rows.first().row(), farRow);
    QCOMPARE(view()->selectionModel()->selectedIndexes().size(), model()->columnCount());
    QCOMPARE(rows.first().data(),
             sqlRows(db(), "SELECT id FROM DATEIEN ORDER BY id").at(farRow).first());
    QVERIFY(!(model()->flags(rows.first()) & Qt::ItemIsEditable));
}

void tst_RawDataModel::viewAfterRescanAndAfterClear()
{
    const QString directory = sandbox->makeDir("photos");
    QVERIFY(writePhotos(directory, 4, photoTags("Canon", "EOS R5", "RF50mm F1.8")));
    writeStore({ { "OtherSettings/lastDirectory", directory },
                 { "OtherSettings/fileFilters", QStringList { "*.jpg" } } });
    window = std::make_unique<ExportWindow>();
    QVERIFY(waitForScanEnd(*window));
    view()->sortByColumn(1, Qt::DescendingOrder);
    const qint64 firstScanLastId =
        sqlRows(db(), "SELECT max(id) FROM DATEIEN").first().first().toLongLong();

    MainWindowProbe(*window).rescan();
    QVERIFY(waitForScanEnd(*window));
    QCOMPARE(view()->model()->rowCount(), 4);
    // The user's sort stays; the ids are the new scan's.
    QCOMPARE(modelRows(*model()),
             sqlRows(db(), "SELECT " + allColumns() + " FROM DATEIEN ORDER BY FILENAME DESC, id"));
    QVERIFY(model()->index(0, 0).data().toLongLong() > firstScanLastId);
    QCOMPARE(model()->index(0, 1).data().toString(), QString("photo0004.jpg"));

    MainWindowProbe(*window).clearTable();
    QCOMPARE(view()->model()->rowCount(), 0);
    QVERIFY(!model()->index(0, 1).data().isValid());
    // Its headers stay.
    QCOMPARE(model()->headerData(11, Qt::Horizontal).toString(), QString("METERINGMDOE"));
}

void tst_RawDataModel::exportWritesTheBytesOfAModelHoldingEveryRow_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<Qt::SortOrder>("order");
    QTest::addColumn<bool>("sortedByUser");

    QTest::newRow("in id order, as after the scan") << 0 << Qt::AscendingOrder << false;
    QTest::newRow("sorted by id descending") << 0 << Qt::DescendingOrder << true;
    QTest::newRow("sorted by file name descending") << 1 << Qt::DescendingOrder << true;
    QTest::newRow("sorted by file name ascending") << 1 << Qt::AscendingOrder << true;
}

void tst_RawDataModel::exportWritesTheBytesOfAModelHoldingEveryRow()
{
    QFETCH(int, column);
    QFETCH(Qt::SortOrder, order);
    QFETCH(bool, sortedByUser);

    window = std::make_unique<ExportWindow>();
    QVERIFY(insertRows(db(), manyRows, 5));
    model()->select();
    if (sortedByUser)
        view()->sortByColumn(column, order);

    // Qt's table model over the same table, fetched to the end: what the export wrote before the
    // Data tab stopped holding every row. (The sorts chosen have no ties, whose order it leaves
    // open.)
    QSqlTableModel everyRow(nullptr, db());
    everyRow.setTable("Dateien");
    everyRow.setSort(column, order);
    QVERIFY2(everyRow.select(), qPrintable(everyRow.lastError().text()));
    while (everyRow.canFetchMore())
        everyRow.fetchMore();
    QCOMPARE(everyRow.rowCount(), manyRows);
    const QByteArray expected = linesOf(everyRow);

    const QString path = sandbox->filePath("export.csv");
    QVERIFY(exportTo(path));
    const QByteArray written = readFile(path);
    QCOMPARE(written.count('\n'), manyRows);
    QCOMPARE(written.size(), expected.size());
    QVERIFY2(written == expected, "the export differs from a model holding every row");
}

void tst_RawDataModel::restrictionLimitsTheRowsAndTheExport_data()
{
    QTest::addColumn<QString>("condition");
    QTest::addColumn<QVariantList>("values");

    QTest::newRow("one maker") << "MAKER = ?" << QVariantList { "Canon" };
    QTest::newRow("ISO from 400") << "ISO >= ?" << QVariantList { 400 };
    QTest::newRow("lens with a separator and a model")
        << "LENS = ? AND MODEL = ?" << QVariantList { "Objektiv; für Ä", "Z 6" };
    QTest::newRow("nothing matches") << "MAKER = ?" << QVariantList { "Leica" };
}

void tst_RawDataModel::restrictionLimitsTheRowsAndTheExport()
{
    QFETCH(QString, condition);
    QFETCH(QVariantList, values);

    window = std::make_unique<ExportWindow>();
    QVERIFY(insertRows(db(), manyRows, 6));
    model()->select();
    view()->sortByColumn(2, Qt::DescendingOrder);

    model()->setRestriction(condition, values);
    const QList<QVariantList> expected = sqlRows(db(),
                                                 "SELECT " + allColumns() + " FROM DATEIEN WHERE "
                                                     + condition + " ORDER BY DATE DESC, id",
                                                 values);
    QVERIFY(expected.size() < manyRows);
    QCOMPARE(modelRows(*model()), expected);

    if (!expected.isEmpty()) {
        const QString path = sandbox->filePath("restricted.csv");
        QVERIFY(exportTo(path));
        QCOMPARE(readFile(path), linesOf(*model()));
    }

    // Without a condition every row is back.
    model()->setRestriction(QString());
    QCOMPARE(model()->rowCount(), manyRows);
}

std::unique_ptr<QObject> makeRawDataModelTest()
{
    return std::make_unique<tst_RawDataModel>();
}

#include "tst_rawdatamodel.moc"
