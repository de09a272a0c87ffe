// Scan control on real photo trees written by the fixture builder: selection changes, file
// types, the subdirectory switch, progress, the end of a scan and the rebuilding of the charts.
#include "apptestsupport.h"
#include "chartcontroller.h"
#include "chartdate3d.h"
#include "mainwindow.h"
#include "mainwindowprobe.h"
#include "testutils.h"
#include "tmyworkerobject.h"

#include <QAction>
#include <QChartView>
#include <QComboBox>
#include <QSignalSpy>
#include <QSqlQuery>
#include <QTableView>
#include <QTest>
#include <QTreeView>

#include <memory>

using namespace apptest;

namespace {

// What a statistic tab's table shows: first column -> count.
QMap<QString, int> statistic(MainWindow &window, const QString &tableView)
{
    QMap<QString, int> counts;
    QAbstractItemModel *model = window.findChild<QTableView *>(tableView)->model();
    if (!model)
        return counts;
    for (int row = 0; row < model->rowCount(); ++row)
        counts.insert(model->index(row, 0).data().toString(), model->index(row, 1).data().toInt());
    return counts;
}

int storedRows(MainWindow &window)
{
    QSqlQuery count(MainWindowProbe(window).db());
    count.exec("SELECT COUNT(*) FROM DATEIEN");
    return count.next() ? count.value(0).toInt() : -1;
}

QList<qint64> storedIds(MainWindow &window)
{
    QList<qint64> ids;
    QSqlQuery query(MainWindowProbe(window).db());
    query.exec("SELECT id FROM DATEIEN ORDER BY id");
    while (query.next())
        ids << query.value(0).toLongLong();
    return ids;
}

const QList<QString> allPatterns { "*.arw", "*.cr2", "*.cr3",  "*.dng",  "*.jpg", "*.nef", "*.raf",
                                   "*.rw2", "*.orf", "*.heic", "*.heif", "*.hif", "*.avif" };

} // namespace

class tst_ScanControl : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void rememberedDirectoryIsScannedAtStart();
    void uncheckingEveryFileTypeFindsNothing();
    void fileTypesAreCollectedInFixedOrder();
    void threeDirectoriesAreScanned();
    void deselectingAfterAScanKeepsTheRows();
    void deselectingDuringAScanStopsIt();
    void progressIsShownEveryFiftyFiles();
    void secondScanContinuesTheIds();
    void subdirectorySwitch();
    void exclusionsAndGroupsReachTheScanAndCharts();
    void themeChangeRebuildsEveryChartAndKeepsTheCamera();
    void rescansWhileTheThemeChangesLoseNoRow();
    void commandLineDirectoriesAreScanned();
    void commandLineFallbackIsNeverStored();
    void commandLineKeepsEnabledFileTypes();

private:
    std::unique_ptr<testutils::Sandbox> sandbox;
    std::unique_ptr<MainWindow> window;
    // Three Canon and two Nikon photos.
    QString writeShoot(const QString &name);
    MainWindow &startOn(const QString &directory, const QVariantMap &more = {});
};

void tst_ScanControl::init()
{
    sandbox = std::make_unique<testutils::Sandbox>();
}

void tst_ScanControl::cleanup()
{
    window.reset();
    releaseDatabase();
    sandbox.reset();
}

QString tst_ScanControl::writeShoot(const QString &name)
{
    const QString directory = sandbox->makeDir(name);
    writePhotos(directory, 3, photoTags("Canon", "EOS R5", "RF24-70mm F2.8"), "canon");
    writePhotos(directory, 2, photoTags("Nikon", "Z 6", "NIKKOR Z 50mm"), "nikon");
    return directory;
}

// A window whose store remembers `directory` with JPEG on, so that its first scan covers it.
MainWindow &tst_ScanControl::startOn(const QString &directory, const QVariantMap &more)
{
    QVariantMap values { { "OtherSettings/lastDirectory", directory },
                         { "OtherSettings/fileFilters", QStringList { "*.jpg" } } };
    values.insert(more);
    writeStore(values);
    window = std::make_unique<MainWindow>();
    return *window;
}

void tst_ScanControl::rememberedDirectoryIsScannedAtStart()
{
    const QString shoot = writeShoot("shoot");
    startOn(shoot);
    MainWindowProbe probe(*window);
    QVERIFY2(waitForScanEnd(*window), qPrintable(probe.status()));

    QCOMPARE(probe.status(), QString("Valid files: 5"));
    QCOMPARE(probe.selectedDirectories(), QList<QString> { shoot });
    QCOMPARE(probe.lastDirectory(), shoot);
    QVERIFY(!probe.workerRunning());
    QCOMPARE(probe.tableModel()->rowCount(), 5);
    QCOMPARE(statistic(*window, "tableViewMaker"),
             (QMap<QString, int> { { "Canon", 3 }, { "Nikon", 2 } }));
    QCOMPARE(statistic(*window, "tableViewModel"),
             (QMap<QString, int> { { "EOS R5", 3 }, { "Z 6", 2 } }));
    QCOMPARE(statistic(*window, "tableViewLens"),
             (QMap<QString, int> { { "NIKKOR Z 50mm", 2 }, { "RF24-70mm F2.8", 3 } }));
    QCOMPARE(statistic(*window, "tableViewISO"), (QMap<QString, int> { { "400", 5 } }));
    for (int chart = 0; chart < 11; ++chart)
        QVERIFY2(probe.chartController(chart), qPrintable(QString::number(chart)));
    QVERIFY(probe.chartDate3D());
    QVERIFY(window->findChild<QChartView *>("chartViewMaker")->chart());
    // The thread and the worker of the scan delete themselves once it has ended.
    QTRY_VERIFY(!probe.workerThread());
}

void tst_ScanControl::uncheckingEveryFileTypeFindsNothing()
{
    startOn(writeShoot("shoot"));
    MainWindowProbe probe(*window);
    QVERIFY(waitForScanEnd(*window));
    QCOMPARE(probe.status(), QString("Valid files: 5"));

    window->findChild<QAction *>("action_jpg")->trigger();
    QCOMPARE(probe.fileFilters(), QList<QString>());
    QVERIFY(waitForScanEnd(*window));
    QCOMPARE(probe.status(), QString("Valid files: 0"));
    QCOMPARE(probe.tableModel()->rowCount(), 0);
    QCOMPARE(statistic(*window, "tableViewMaker"), (QMap<QString, int> {}));
    QCOMPARE(statistic(*window, "tableViewExposureMode"), (QMap<QString, int> {}));
}

void tst_ScanControl::fileTypesAreCollectedInFixedOrder()
{
    window = std::make_unique<MainWindow>();
    MainWindowProbe probe(*window);
    const QStringList clicked { "action_heif",     "actionOlympus_orf",   "action_jpg",
                                "actionCanon_cr3", "actionPanasonic_rw2", "actionSony_arw",
                                "action_dng",      "actionFuji_raf",      "actionNikon_nef",
                                "actionCanon_cr2" };
    for (const QString &name : clicked)
        window->findChild<QAction *>(name)->trigger();
    QCOMPARE(probe.fileFilters(), allPatterns);

    window->findChild<QAction *>("actionNikon_nef")->trigger();
    QList<QString> withoutNef = allPatterns;
    withoutNef.removeOne("*.nef");
    QCOMPARE(probe.fileFilters(), withoutNef);
}

void tst_ScanControl::threeDirectoriesAreScanned()
{
    const QString a = sandbox->makeDir("a"), b = sandbox->makeDir("b"), c = sandbox->makeDir("c");
    writePhotos(a, 1, photoTags("Canon", "R5", "L1"));
    writePhotos(b, 2, photoTags("Nikon", "Z6", "L2"));
    writePhotos(c, 3, photoTags("Sony", "A7", "L3"));
    startOn(sandbox->filePath("none"));
    MainWindowProbe probe(*window);

    QVERIFY(selectDirectories(*window, { a, b, c }));
    QVERIFY2(waitForScanEnd(*window), qPrintable(probe.status()));
    QCOMPARE(probe.status(), QString("Valid files: 6"));
    QCOMPARE(statistic(*window, "tableViewMaker"),
             (QMap<QString, int> { { "Canon", 1 }, { "Nikon", 2 }, { "Sony", 3 } }));

    QCOMPARE(probe.selectedDirectories().size(), 3);
    QCOMPARE(QSet<QString>(probe.selectedDirectories().begin(), probe.selectedDirectories().end()),
             (QSet<QString> { a, b, c }));
    // lastDirectory is the first in the selection model's order.
    const QModelIndex first =
        window->findChild<QTreeView *>("treeViewDir")->selectionModel()->selectedIndexes().first();
    QCOMPARE(probe.lastDirectory(),
             probe.fileSystemModel()->filePath(probe.proxyModel()->mapToSource(first)));
    QCOMPARE(probe.lastDirectory(), probe.selectedDirectories().first());
}

void tst_ScanControl::deselectingAfterAScanKeepsTheRows()
{
    startOn(writeShoot("shoot"));
    MainWindowProbe probe(*window);
    QVERIFY(waitForScanEnd(*window));

    ScanWatcher scans;
    window->findChild<QTreeView *>("treeViewDir")->selectionModel()->clearSelection();
    QCOMPARE(probe.status(), QString());
    QCOMPARE(probe.selectedDirectories(), QList<QString>());
    QCOMPARE(scans.scansStarted(), 0);
    QCOMPARE(storedRows(*window), 5);
    QCOMPARE(probe.tableModel()->rowCount(), 5);
    QCOMPARE(probe.lastDirectory(), sandbox->filePath("shoot"));
}

void tst_ScanControl::deselectingDuringAScanStopsIt()
{
    const QString big = sandbox->makeDir("big");
    QVERIFY(writePhotos(big, 400, fixture::typicalTags()));
    startOn(big);
    MainWindowProbe probe(*window);
    QPointer<QThread> running = probe.workerThread();
    QVERIFY(running);
    QSignalSpy finished(window.get(), &MainWindow::scanFinished);

    ScanWatcher scans;
    window->findChild<QTreeView *>("treeViewDir")->selectionModel()->clearSelection();
    // The scan has been stopped and waited for; nothing new was started.
    QVERIFY(!running || !running->isRunning());
    QCOMPARE(probe.status(), QString());
    QCOMPARE(scans.scansStarted(), 0);
    const int kept = storedRows(*window);

    // The stopped scan's own end still arrives and shows what it had stored.
    QVERIFY(waitForScanEnd(*window));
    QCOMPARE(probe.status(), QString("Valid files: %1").arg(kept));
    QCOMPARE(storedRows(*window), kept);
    QCOMPARE(scans.scansStarted(), 0);
    // Not the current scan's end: nothing is announced.
    QCOMPARE(finished.count(), 0);
}

void tst_ScanControl::progressIsShownEveryFiftyFiles()
{
    const QString many = sandbox->makeDir("many");
    QVERIFY(writePhotos(many, 150, fixture::typicalTags()));
    startOn(sandbox->filePath("none"));
    MainWindowProbe probe(*window);

    // Connected before the window's own slot, this one sees at every report what the window
    // showed after the previous one.
    QList<int> counts;
    QStringList shownBefore;
    ScanWatcher scans;
    scans.onScanStart = [&](TMyWorkerObject *worker) {
        connect(worker, &TMyWorkerObject::operationUpdate, window.get(), [&](int count) {
            counts << count;
            shownBefore << probe.status();
        });
    };
    QSignalSpy finished(window.get(), &MainWindow::scanFinished);
    QVERIFY(selectDirectories(*window, { many }));
    QVERIFY(waitForScanEnd(*window));
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.first().first().toString(), QString("Valid files: 150"));
    QCOMPARE(scans.scansStarted(), 1);
    QCOMPARE(counts, (QList<int> { 50, 100, 150 }));
    QCOMPARE(shownBefore, (QStringList { "", "Scanned files... 50", "Scanned files... 100" }));
    QCOMPARE(probe.status(), QString("Valid files: 150"));
}

void tst_ScanControl::secondScanContinuesTheIds()
{
    startOn(writeShoot("shoot"));
    MainWindowProbe probe(*window);
    QVERIFY(waitForScanEnd(*window));
    const QList<qint64> first = storedIds(*window);
    QCOMPARE(first.size(), 5);

    probe.rescan();
    QCOMPARE(probe.status(), QString());
    QVERIFY(waitForScanEnd(*window));
    const QList<qint64> second = storedIds(*window);
    QCOMPARE(second.size(), 5);
    QVERIFY2(second.first() > first.last(),
             qPrintable(QString("%1 after %2").arg(second.first()).arg(first.last())));
    QCOMPARE(probe.tableModel()->index(0, 0).data().toLongLong(), second.first());
}

void tst_ScanControl::subdirectorySwitch()
{
    const QString top = sandbox->makeDir("top");
    writePhotos(top, 2, fixture::typicalTags());
    writePhotos(sandbox->makeDir("top/sub"), 3, fixture::typicalTags());
    startOn(top);
    MainWindowProbe probe(*window);
    QVERIFY(waitForScanEnd(*window));
    QCOMPARE(probe.status(), QString("Valid files: 2"));

    window->findChild<QAction *>("actionIncludeSubDirs")->trigger();
    QVERIFY(probe.includeSubDirs());
    QVERIFY(waitForScanEnd(*window));
    QCOMPARE(probe.status(), QString("Valid files: 5"));
}

void tst_ScanControl::exclusionsAndGroupsReachTheScanAndCharts()
{
    startOn(writeShoot("shoot"),
            { { "OtherSettings/makerExcludes", QStringList { "Nikon" } },
              { "OtherSettings/focalLengthGroups", QStringList { "1-60", "61-200" } } });
    MainWindowProbe probe(*window);
    QVERIFY(waitForScanEnd(*window));
    QCOMPARE(probe.status(), QString("Valid files: 3"));
    QCOMPARE(statistic(*window, "tableViewMaker"), (QMap<QString, int> { { "Canon", 3 } }));
    // All photos are taken at 50 mm: one group, the first of the configured ones.
    const QMap<QString, int> grouped = statistic(*window, "tableViewFocalLengthG");
    QCOMPARE(grouped.size(), 1);
    QVERIFY2(grouped.firstKey().contains("60"), qPrintable(grouped.firstKey()));
    QCOMPARE(grouped.first(), 3);
}

void tst_ScanControl::themeChangeRebuildsEveryChartAndKeepsTheCamera()
{
    startOn(writeShoot("shoot"));
    MainWindowProbe probe(*window);
    QVERIFY(waitForScanEnd(*window));

    QList<QPointer<ChartController>> old;
    for (int chart = 0; chart < 11; ++chart)
        old << probe.chartController(chart);
    QPointer<ChartDate3D> oldDate = probe.chartDate3D();
    // The user turns and zooms the date chart.
    oldDate->onCameraXRotationChanged(50.0f);
    oldDate->onCameraYRotationChanged(10.0f);
    oldDate->onCameraZoomFactorChanged(200.0f);

    probe.themeCombo()->setCurrentIndex(5);
    QCOMPARE(probe.chartDateTheme(), 5);
    for (int chart = 0; chart < 11; ++chart) {
        const QByteArray where = QByteArray::number(chart);
        QVERIFY2(probe.chartController(chart), where);
        QVERIFY2(probe.chartController(chart) != old.at(chart), where);
        if (chart == 4) {
            // The grouped focal-length controller is let go, not destroyed.
            QVERIFY2(old.at(chart), "old grouped focal-length controller still exists");
            QCOMPARE(old.at(chart)->parent(), window.get());
        } else {
            QVERIFY2(!old.at(chart), where + " was destroyed");
        }
    }
    QVERIFY(!oldDate);
    QVERIFY(probe.chartDate3D());
    QCOMPARE(probe.chartDate3D()->cameraXRotation(), 50.0f);
    QCOMPARE(probe.chartDate3D()->cameraYRotation(), 10.0f);
    QCOMPARE(probe.chartDate3D()->cameraZoomFactor(), 200.0f);
    QCOMPARE(probe.camXRotation(), 50.0f);
    // The rebuilt charts show the same photos.
    QCOMPARE(statistic(*window, "tableViewMaker"),
             (QMap<QString, int> { { "Canon", 3 }, { "Nikon", 2 } }));
}

// Every theme change rebuilds all charts on the main connection while a worker may be inserting;
// rescans stop the running worker at a random point. The last scan's rows must all arrive.
void tst_ScanControl::rescansWhileTheThemeChangesLoseNoRow()
{
    const QString library = sandbox->makeDir("library");
    QVERIFY(writePhotos(library, 400, photoTags("Canon", "EOS R5", "RF24-70mm F2.8")));
    startOn(library);
    MainWindowProbe probe(*window);
    QVERIFY(waitForScanEnd(*window));

    for (int round = 0; round < 8; ++round) {
        QVERIFY(QMetaObject::invokeMethod(window.get(), "refreshData"));
        for (int change = 0; change < 3; ++change) {
            probe.themeCombo()->setCurrentIndex((round * 3 + change) % 8);
            QCoreApplication::processEvents();
        }
    }
    QVERIFY2(waitForScanEnd(*window), qPrintable(probe.status()));
    QTRY_COMPARE(probe.status(), QString("Valid files: 400"));
    QCOMPARE(probe.tableModel()->rowCount(), 400);
    QCOMPARE(statistic(*window, "tableViewMaker"), (QMap<QString, int> { { "Canon", 400 } }));
}

void tst_ScanControl::commandLineDirectoriesAreScanned()
{
    const QString a = sandbox->makeDir("a"), b = sandbox->makeDir("b");
    writePhotos(a, 2, fixture::typicalTags());
    writePhotos(b, 4, fixture::typicalTags());
    writePhotos(sandbox->makeDir("remembered"), 7, fixture::typicalTags());
    writeStore({ { "OtherSettings/lastDirectory", sandbox->filePath("remembered") } });

    window = std::make_unique<MainWindow>(QStringList { a, b });
    MainWindowProbe probe(*window);
    QVERIFY(waitForScanEnd(*window));
    QCOMPARE(QSet<QString>(probe.selectedDirectories().begin(), probe.selectedDirectories().end()),
             (QSet<QString> { a, b }));
    // No file type was on: this run reads every type, says so, and switches nothing on.
    QCOMPARE(probe.status(),
             QString("Valid files: 6 (no file type is switched on: this run reads every type)"));
    QCOMPARE(probe.fileFilters(), QList<QString>());
    for (const char *name : { "actionCanon_cr2", "actionCanon_cr3", "action_dng", "actionFuji_raf",
                              "actionNikon_nef", "action_jpg", "actionSony_arw",
                              "actionPanasonic_rw2", "actionOlympus_orf", "action_heif" })
        QVERIFY2(!window->findChild<QAction *>(name)->isChecked(), name);
}

// The user's own choice is what reaches the store: the stand-in for every type is never saved,
// and the first switch the user makes ends it.
void tst_ScanControl::commandLineFallbackIsNeverStored()
{
    const QString a = sandbox->makeDir("a");
    writePhotos(a, 2, fixture::typicalTags());
    writeStore({});

    window = std::make_unique<MainWindow>(QStringList { a });
    MainWindowProbe probe(*window);
    QVERIFY(waitForScanEnd(*window));
    probe.saveSettings();
    QCOMPARE(readStore("OtherSettings/fileFilters").toStringList(), QStringList());

    window->findChild<QAction *>("actionNikon_nef")->trigger();
    QVERIFY(waitForScanEnd(*window));
    QCOMPARE(probe.status(), QString("Valid files: 0"));
    QCOMPARE(probe.fileFilters(), QList<QString> { "*.nef" });
    probe.saveSettings();
    QCOMPARE(readStore("OtherSettings/fileFilters").toStringList(), QStringList { "*.nef" });
}

void tst_ScanControl::commandLineKeepsEnabledFileTypes()
{
    const QString a = sandbox->makeDir("a");
    writePhotos(a, 2, fixture::typicalTags());
    writeStore({ { "OtherSettings/fileFilters", QStringList { "*.nef" } } });

    window = std::make_unique<MainWindow>(QStringList { a });
    MainWindowProbe probe(*window);
    QVERIFY(waitForScanEnd(*window));
    QCOMPARE(probe.fileFilters(), QList<QString> { "*.nef" });
    QCOMPARE(probe.status(), QString("Valid files: 0"));
}

std::unique_ptr<QObject> makeScanControlTest()
{
    return std::make_unique<tst_ScanControl>();
}

#include "tst_scancontrol.moc"
