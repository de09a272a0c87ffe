// The commands that act on a scan's result: the charts' context menu with the chart settings
// dialog, copying the current chart to the clipboard and the CSV export.
#include "apptestsupport.h"
#include "chartcontroller.h"
#include "dialogchartsettings.h"
#include "mainwindow.h"
#include "mainwindowprobe.h"
#include "tdialognachricht.h"
#include "testutils.h"

#include <QAction>
#include <QChart>
#include <QChartView>
#include <QClipboard>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMenu>
#include <QProgressBar>
#include <QSqlQuery>
#include <QStatusBar>
#include <QTabWidget>
#include <QTableView>
#include <QTest>

#include <memory>

using namespace apptest;

namespace {

// The product asks with a file dialog; this window is told the answer beforehand.
class ExportWindow : public MainWindow
{
public:
    using MainWindow::MainWindow;
    QString exportFileName;
    int asked = 0;

protected:
    QString askExportFileName() override
    {
        ++asked;
        return exportFileName;
    }
};

bool rightClick(QWidget *view)
{
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(20, 20),
                            view->mapToGlobal(QPoint(20, 20)));
    return QCoreApplication::sendEvent(view, &event);
}

QList<qint64> storedIds(MainWindow &window, const QString &order = "id")
{
    QList<qint64> ids;
    QSqlQuery query(MainWindowProbe(window).db());
    query.exec("SELECT id FROM DATEIEN ORDER BY " + order);
    while (query.next())
        ids << query.value(0).toLongLong();
    return ids;
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class tst_ChartCommands : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void contextMenuBeforeTheFirstScanStoresTheRecord();
    void dialogTitlePerChart_data();
    void dialogTitlePerChart();
    void dismissedMenuOpensNoDialog();
    void acceptedSettingsRedrawTheChart();
    void cancelledSettingsLeaveTheChartUntouched();
    void copyChartToClipboard_data();
    void copyChartToClipboard();
    void exportWritesOneLinePerPhoto();
    void exportWritesSeparatorsInsideValuesAsTheyAre();
    void exportFollowsTheSortedView();
    void exportIsSilent_data();
    void exportIsSilent();

private:
    std::unique_ptr<testutils::Sandbox> sandbox;
    std::unique_ptr<ExportWindow> window;
    // A window that has scanned `count` photos with the given lens (files lens0001.jpg ...).
    bool scanned(int count, const QString &lens = "RF24-70mm F2.8");
};

void tst_ChartCommands::init()
{
    sandbox = std::make_unique<testutils::Sandbox>();
}

void tst_ChartCommands::cleanup()
{
    window.reset();
    releaseDatabase();
    sandbox.reset();
}

bool tst_ChartCommands::scanned(int count, const QString &lens)
{
    const QString directory = sandbox->makeDir("photos");
    if (!writePhotos(directory, count, photoTags("Canon", "EOS R5", lens)))
        return false;
    writeStore({ { "OtherSettings/lastDirectory", directory },
                 { "OtherSettings/fileFilters", QStringList { "*.jpg" } } });
    window = std::make_unique<ExportWindow>();
    return waitForScanEnd(*window)
        && MainWindowProbe(*window).status() == QString("Valid files: %1").arg(count);
}

void tst_ChartCommands::contextMenuBeforeTheFirstScanStoresTheRecord()
{
    window = std::make_unique<ExportWindow>();
    MainWindowProbe probe(*window);
    QVERIFY(!probe.chartController(0));

    QStringList menuEntries;
    QObject *menuParent = nullptr;
    NextModal menu(isA<QMenu>(), [&](QWidget *widget) {
        for (QAction *action : widget->actions())
            menuEntries << action->text();
        menuParent = widget->parent();
        chooseFirstMenuEntry(widget);
    });
    QString title;
    QObject *dialogParent = this;
    NextModal dialog(isA<DialogChartSettings>(), [&](QWidget *widget) {
        title = widget->windowTitle();
        dialogParent = widget->parent();
        widget->findChild<QLineEdit *>("leTitleText")->setText("My cameras");
        widget->findChild<QComboBox *>("comboBoxTyp")->setCurrentIndex(2);
        clickButton(widget, QDialogButtonBox::Ok);
    });

    QVERIFY2(rightClick(window->findChild<QChartView *>("chartViewMaker")),
             "the window consumes the context-menu event");
    QVERIFY(menu.answered());
    QCOMPARE(menuEntries, QStringList { "Chart Settings..." });
    QCOMPARE(menuParent, window.get());
    QVERIFY(dialog.answered());
    QCOMPARE(title, QString("Settings for 'Maker' Chart"));
    QCOMPARE(dialogParent, nullptr);

    // No controller yet: the record is kept for the first refresh.
    QVERIFY(!probe.chartController(0));
    QCOMPARE(probe.chartSettings(0).chartTitleText, QString("My cameras"));
    QCOMPARE(probe.chartSettings(0).chartTyp, 2);
    probe.updateCharts();
    QCOMPARE(window->findChild<QChartView *>("chartViewMaker")->chart()->title(),
             QString("My cameras"));
}

void tst_ChartCommands::dialogTitlePerChart_data()
{
    QTest::addColumn<QString>("view");
    QTest::addColumn<int>("chart");
    QTest::addColumn<QString>("title");

    QTest::newRow("Maker") << "chartViewMaker" << 0 << "Settings for 'Maker' Chart";
    QTest::newRow("Model") << "chartViewModel" << 1 << "Settings for 'Model' Chart";
    QTest::newRow("Lens") << "chartViewLens" << 2 << "Settings for 'Lens' Chart";
    QTest::newRow("FocLen") << "chartViewFocalLength" << 3 << "Settings for 'Focal Length' Chart";
    QTest::newRow("FocLenG") << "chartViewFocalLengthG" << 4
                             << "Settings for 'Focal Length Grouped' Chart";
    QTest::newRow("ISO") << "chartViewISO" << 5 << "Settings for 'ISO' Chart";
    QTest::newRow("ISOG") << "chartViewISOG" << 6 << "Settings for 'ISO Grouped' Chart";
    QTest::newRow("FNum") << "chartViewFNumber" << 7 << "Settings for 'F-Number' Chart";
    QTest::newRow("ExpTime") << "chartViewExposureTime" << 8
                             << "Settings for 'Exposure Time' Chart";
    QTest::newRow("MetMode") << "chartViewMeteringMode" << 9
                             << "Settings for 'Metering Mode' Chart";
    QTest::newRow("ExpMode") << "chartViewExposureMode" << 10
                             << "Settings for 'Exposure Mode' Chart";
    QTest::newRow("FocLen35") << "chartViewFocalLength35" << 11
                              << "Settings for 'Focal Length 35mm' Chart";
    QTest::newRow("FocLen35G") << "chartViewFocalLength35G" << 12
                               << "Settings for 'Focal Length 35mm Grouped' Chart";
    QTest::newRow("Hour") << "chartViewHourOfDay" << 13 << "Settings for 'Hour of Day' Chart";
    QTest::newRow("Weekday") << "chartViewWeekday" << 14 << "Settings for 'Weekday' Chart";
    QTest::newRow("FileType") << "chartViewFileType" << 15 << "Settings for 'File Type' Chart";
}

void tst_ChartCommands::dialogTitlePerChart()
{
    QFETCH(QString, view);
    QFETCH(int, chart);
    QFETCH(QString, title);

    window = std::make_unique<ExportWindow>();
    MainWindowProbe probe(*window);
    const QString before = probe.chartSettings(chart).chartTitleText;

    NextModal menu(isA<QMenu>(), chooseFirstMenuEntry);
    QString shown, shownTitleText;
    NextModal dialog(isA<DialogChartSettings>(), [&](QWidget *widget) {
        shown = widget->windowTitle();
        shownTitleText = widget->findChild<QLineEdit *>("leTitleText")->text();
        widget->findChild<QLineEdit *>("leTitleText")->setText("not taken");
        clickButton(widget, QDialogButtonBox::Cancel);
    });
    QVERIFY(rightClick(window->findChild<QChartView *>(view)));
    QVERIFY(dialog.answered());
    QCOMPARE(shown, title);
    // The dialog showed this chart's record.
    QCOMPARE(shownTitleText, before);
    QCOMPARE(probe.chartSettings(chart).chartTitleText, before);
}

void tst_ChartCommands::dismissedMenuOpensNoDialog()
{
    window = std::make_unique<ExportWindow>();
    NextModal menu(isA<QMenu>(), [](QWidget *widget) { QTest::keyClick(widget, Qt::Key_Escape); });
    NextModal dialog(isA<DialogChartSettings>(),
                     [](QWidget *widget) { clickButton(widget, QDialogButtonBox::Cancel); });
    QVERIFY(rightClick(window->findChild<QChartView *>("chartViewLens")));
    QVERIFY(menu.answered());
    QVERIFY2(!dialog.answered(), "no dialog after the menu was dismissed");
}

void tst_ChartCommands::acceptedSettingsRedrawTheChart()
{
    QVERIFY(scanned(3));
    MainWindowProbe probe(*window);
    auto *view = window->findChild<QChartView *>("chartViewModel");
    QPointer<QChart> before = view->chart();
    ChartController *controller = probe.chartController(1);

    NextModal menu(isA<QMenu>(), chooseFirstMenuEntry);
    NextModal dialog(isA<DialogChartSettings>(), [](QWidget *widget) {
        widget->findChild<QLineEdit *>("leTitleText")->setText("Bodies");
        clickButton(widget, QDialogButtonBox::Ok);
    });
    QVERIFY(rightClick(view));
    QVERIFY(dialog.answered());
    QCOMPARE(probe.chartSettings(1).chartTitleText, QString("Bodies"));
    QCOMPARE(probe.chartController(1), controller);
    QVERIFY2(view->chart() != before.data(), "the controller drew a new chart");
    QCOMPARE(view->chart()->title(), QString("Bodies"));
}

void tst_ChartCommands::cancelledSettingsLeaveTheChartUntouched()
{
    QVERIFY(scanned(3));
    MainWindowProbe probe(*window);
    auto *view = window->findChild<QChartView *>("chartViewISO");
    QChart *before = view->chart();
    const QString title = before->title();
    const TChartSettings record = probe.chartSettings(5);

    NextModal menu(isA<QMenu>(), chooseFirstMenuEntry);
    NextModal dialog(isA<DialogChartSettings>(), [](QWidget *widget) {
        widget->findChild<QLineEdit *>("leTitleText")->setText("not taken");
        widget->findChild<QComboBox *>("comboBoxTyp")->setCurrentIndex(3);
        clickButton(widget, QDialogButtonBox::Cancel);
    });
    QVERIFY(rightClick(view));
    QVERIFY(dialog.answered());
    QCOMPARE(view->chart(), before);
    QCOMPARE(view->chart()->title(), title);
    QCOMPARE(probe.chartSettings(5).chartTitleText, record.chartTitleText);
    QCOMPARE(probe.chartSettings(5).chartTyp, record.chartTyp);
}

void tst_ChartCommands::copyChartToClipboard_data()
{
    QTest::addColumn<int>("tab");
    QTest::addColumn<QString>("view"); // empty: nothing to grab

    const QStringList views { "chartViewMaker",        "chartViewModel",
                              "chartViewLens",         "chartViewFocalLength",
                              "chartViewFocalLengthG", "chartViewISO",
                              "chartViewISOG",         "chartViewFNumber",
                              "chartViewExposureTime", "chartViewMeteringMode",
                              "chartViewExposureMode" };
    for (int tab = 0; tab < views.size(); ++tab)
        QTest::addRow("tab %d grabs %s", tab, qPrintable(views.at(tab))) << tab << views.at(tab);
    // Without OpenGL there is no 3-D graph to render (the real rendering is tested under Xvfb).
    QTest::newRow("date tab without OpenGL: empty image") << 11 << "";
    QTest::newRow("raw-data tab: empty image, message all the same") << 12 << "";
    const QStringList added { "chartViewFocalLength35", "chartViewFocalLength35G",
                              "chartViewHourOfDay", "chartViewWeekday", "chartViewFileType" };
    for (int i = 0; i < added.size(); ++i)
        QTest::addRow("tab %d grabs %s", 13 + i, qPrintable(added.at(i))) << 13 + i << added.at(i);
    QTest::newRow("tab 18 grabs the calendar") << 18 << "calendarChart";
}

void tst_ChartCommands::copyChartToClipboard()
{
    QFETCH(int, tab);
    QFETCH(QString, view);

    QVERIFY(scanned(3));
    window->resize(1113, 755);
    window->findChild<QTabWidget *>("tabWidget")->setCurrentIndex(tab);
    QCOMPARE(MainWindowProbe(*window).lastTab(), tab);
    QImage marker(4, 4, QImage::Format_RGB32);
    marker.fill(Qt::red);
    QGuiApplication::clipboard()->setImage(marker);

    QString message;
    QObject *parent = nullptr;
    NextModal nachricht(isA<TDialogNachricht>(), [&](QWidget *widget) {
        message = firstLabelText(widget);
        parent = widget->parent();
        static_cast<QDialog *>(widget)->accept();
    });
    window->findChild<QAction *>("actionCopyChartToClipboard")->trigger();
    QVERIFY(nachricht.answered());
    QCOMPARE(message, QString("ChartImage copied to the clipboard"));
    QCOMPARE(parent, window.get());

    const QImage copied = QGuiApplication::clipboard()->image();
    QVERIFY2(copied != marker, "the clipboard was written");
    if (view.isEmpty()) {
        QVERIFY(copied.isNull());
    } else {
        auto *chartView = window->findChild<QWidget *>(view);
        QVERIFY2(chartView, qPrintable(view));
        QCOMPARE(copied.size(), chartView->grab().size());
        QVERIFY(!copied.isNull());
    }
}

void tst_ChartCommands::exportWritesOneLinePerPhoto()
{
    QVERIFY(scanned(3));
    const QString path = sandbox->filePath("export.csv");
    {
        QFile existing(path);
        QVERIFY(existing.open(QIODevice::WriteOnly));
        existing.write(QByteArray(5000, '#'));
    }
    window->exportFileName = path;
    QString message;
    NextModal nachricht(isA<TDialogNachricht>(), [&](QWidget *widget) {
        message = firstLabelText(widget);
        static_cast<QDialog *>(widget)->accept();
    });
    window->findChild<QAction *>("actionExportData")->trigger();
    QCOMPARE(window->asked, 1);
    QVERIFY(nachricht.answered());
    QCOMPARE(message, QString("Data table saved as .csv file"));

    const QByteArray bytes = readFile(path);
    QVERIFY2(bytes.endsWith('\n') && !bytes.contains('\r'), bytes.left(200));
    QVERIFY2(!bytes.contains('#'), "an existing file is replaced");
    const QList<QByteArray> lines = bytes.chopped(1).split('\n');
    QCOMPARE(lines.size(), 3);
    const QList<qint64> ids = storedIds(*window);
    QSet<QByteArray> fileNames;
    for (int row = 0; row < lines.size(); ++row) {
        const QList<QByteArray> fields = lines.at(row).split(';');
        QCOMPARE(lines.at(row).count(';'), 12);
        QCOMPARE(fields.size(), 13);
        QCOMPARE(fields.at(0).toLongLong(), ids.at(row));
        fileNames << fields.at(1);
        QCOMPARE(fields.at(3), QByteArray("Canon"));
        QCOMPARE(fields.at(4), QByteArray("EOS R5"));
        QCOMPARE(fields.at(7), QByteArray("400"));
        QCOMPARE(fields.at(8), QByteArray("2.8"));
    }
    QCOMPARE(fileNames, (QSet<QByteArray> { "photo0001.jpg", "photo0002.jpg", "photo0003.jpg" }));
    // The progress bar is taken out of the status bar again.
    auto *progress = window->statusBar()->findChild<QProgressBar *>();
    QVERIFY(progress);
    QVERIFY(progress->isHidden());
}

void tst_ChartCommands::exportWritesSeparatorsInsideValuesAsTheyAre()
{
    QVERIFY(scanned(2, "Objektiv; für Ä"));
    window->exportFileName = sandbox->filePath("lens.csv");
    NextModal nachricht(isA<TDialogNachricht>(),
                        [](QWidget *widget) { static_cast<QDialog *>(widget)->accept(); });
    window->findChild<QAction *>("actionExportData")->trigger();
    QVERIFY(nachricht.answered());

    const QList<QByteArray> lines = readFile(window->exportFileName).chopped(1).split('\n');
    QCOMPARE(lines.size(), 2);
    for (const QByteArray &line : lines) {
        QCOMPARE(line.count(';'), 13);
        QVERIFY2(line.contains(QString("Objektiv; für Ä").toUtf8()), line);
    }
}

void tst_ChartCommands::exportFollowsTheSortedView()
{
    QVERIFY(scanned(4));
    window->findChild<QTableView *>("tableViewRawData")->sortByColumn(1, Qt::DescendingOrder);
    window->exportFileName = sandbox->filePath("sorted.csv");
    NextModal nachricht(isA<TDialogNachricht>(),
                        [](QWidget *widget) { static_cast<QDialog *>(widget)->accept(); });
    window->findChild<QAction *>("actionExportData")->trigger();
    QVERIFY(nachricht.answered());

    QStringList names;
    QList<qint64> ids;
    for (const QByteArray &line : readFile(window->exportFileName).chopped(1).split('\n')) {
        ids << line.split(';').at(0).toLongLong();
        names << line.split(';').at(1);
    }
    QCOMPARE(names,
             (QStringList { "photo0004.jpg", "photo0003.jpg", "photo0002.jpg", "photo0001.jpg" }));
    QCOMPARE(ids, storedIds(*window, "FILENAME DESC"));
}

void tst_ChartCommands::exportIsSilent_data()
{
    QTest::addColumn<bool>("withPhotos");
    QTest::addColumn<QString>("fileName"); // relative to the sandbox; "" = dialog cancelled
    QTest::addColumn<int>("asked");

    QTest::newRow("empty table: not even asked") << false << "never.csv" << 0;
    QTest::newRow("dialog cancelled") << true << "" << 1;
    QTest::newRow("file cannot be opened") << true << "missing/folder/out.csv" << 1;
}

void tst_ChartCommands::exportIsSilent()
{
    QFETCH(bool, withPhotos);
    QFETCH(QString, fileName);
    QFETCH(int, asked);

    if (withPhotos)
        QVERIFY(scanned(2));
    else
        window = std::make_unique<ExportWindow>();
    window->exportFileName = fileName.isEmpty() ? QString() : sandbox->filePath(fileName);

    NextModal nachricht(isA<TDialogNachricht>(),
                        [](QWidget *widget) { static_cast<QDialog *>(widget)->accept(); });
    window->findChild<QAction *>("actionExportData")->trigger();
    QCOMPARE(window->asked, asked);
    QVERIFY2(!nachricht.answered(), "no message");
    QVERIFY(!window->statusBar()->findChild<QProgressBar *>());
    if (!fileName.isEmpty())
        QVERIFY(!QFile::exists(sandbox->filePath(fileName)));
}

std::unique_ptr<QObject> makeChartCommandsTest()
{
    return std::make_unique<tst_ChartCommands>();
}

#include "tst_chartcommands.moc"
