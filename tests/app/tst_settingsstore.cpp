// The settings store as the window reads it at construction and writes it after a confirmed
// quit, with its deliberate asymmetries.
#include "apptestsupport.h"
#include "kelvaroversion.h"
#include "localhttpserver.h"
#include "mainwindow.h"
#include "mainwindowprobe.h"
#include "readerpool.h"
#include "testutils.h"
#include "updatesite.h"

#include <QAction>
#include <QMessageBox>
#include <QSplitter>
#include <QTabWidget>
#include <QTest>

#include <memory>

using namespace apptest;

namespace {

const QStringList fileTypeActions { "actionCanon_cr2", "actionCanon_cr3",     "action_dng",
                                    "actionFuji_raf",  "actionNikon_nef",     "action_jpg",
                                    "actionSony_arw",  "actionPanasonic_rw2", "actionOlympus_orf",
                                    "action_heif" };

QStringList checkedFileTypes(MainWindow &window)
{
    QStringList checked;
    for (const QString &name : fileTypeActions) {
        if (window.findChild<QAction *>(name)->isChecked())
            checked << name;
    }
    return checked;
}

// A record unlike the defaults in every field; `n` makes the charts differ from each other.
TChartSettings distinctSettings(int n)
{
    TChartSettings s;
    s.chartTyp = n % 4;
    s.wantsChartTitle = n % 2;
    s.chartTitleText = QString("Title %1").arg(n);
    s.chartTitleFont = QFont("Serif", 10 + n);
    s.chartTitleColor = QColor(n * 10, 20, 30, 128);
    s.wantsValueAxisTitle = !(n % 2);
    s.valueAxisTitleText = QString("Axis %1").arg(n);
    s.valueAxisTitleFont = QFont("Sans", 8 + n, QFont::Bold);
    s.valueAxisTitleColor = QColor(1, n, 3, 0);
    s.chartAxisLabelFont = QFont("Mono", 7 + n);
    s.chartAxisLabelColor = QColor(4, 5, n, 200);
    s.chartBarColor = QColor(n, n, n, 255);
    s.chartBackgroundGradientFrom = QColor(10, 11, 12, 13);
    s.chartBackgroundGradientTo = QColor(14, 15, 16, 17);
    s.chartBackgroundGradientOrientation = 2;
    s.chartPlotAreaGradientFrom = QColor(20, 21, 22, 23);
    s.chartPlotAreaGradientTo = QColor(24, 25, 26, 27);
    s.chartPlotAreaGradientOrientation = 1;
    s.chartTheme = (n + 2) % 8;
    s.wantsCustomThemeSettings = true;
    s.wantsValueLabels = true;
    s.wantsLegend = true;
    s.chartLegendPos = 32;
    s.chartLegendLabelFont = QFont("Serif", 6 + n, QFont::Light);
    s.chartLegendLabelColor = QColor(30, 31, n, 33);
    return s;
}

void compareAllButLegendPosition(const TChartSettings &a, const TChartSettings &b, int chart)
{
    const QByteArray where = QByteArray::number(chart);
    QVERIFY2(a.chartTyp == b.chartTyp, where);
    QVERIFY2(a.wantsChartTitle == b.wantsChartTitle, where);
    QVERIFY2(a.chartTitleText == b.chartTitleText, where);
    QVERIFY2(a.chartTitleFont == b.chartTitleFont, where);
    QVERIFY2(a.chartTitleColor == b.chartTitleColor, where);
    QVERIFY2(a.wantsValueAxisTitle == b.wantsValueAxisTitle, where);
    QVERIFY2(a.valueAxisTitleText == b.valueAxisTitleText, where);
    QVERIFY2(a.valueAxisTitleFont == b.valueAxisTitleFont, where);
    QVERIFY2(a.valueAxisTitleColor == b.valueAxisTitleColor, where);
    QVERIFY2(a.chartAxisLabelFont == b.chartAxisLabelFont, where);
    QVERIFY2(a.chartAxisLabelColor == b.chartAxisLabelColor, where);
    QVERIFY2(a.chartBarColor == b.chartBarColor, where);
    QVERIFY2(a.chartBackgroundGradientFrom == b.chartBackgroundGradientFrom, where);
    QVERIFY2(a.chartBackgroundGradientTo == b.chartBackgroundGradientTo, where);
    QVERIFY2(a.chartBackgroundGradientOrientation == b.chartBackgroundGradientOrientation, where);
    QVERIFY2(a.chartPlotAreaGradientFrom == b.chartPlotAreaGradientFrom, where);
    QVERIFY2(a.chartPlotAreaGradientTo == b.chartPlotAreaGradientTo, where);
    QVERIFY2(a.chartPlotAreaGradientOrientation == b.chartPlotAreaGradientOrientation, where);
    QVERIFY2(a.chartTheme == b.chartTheme, where);
    QVERIFY2(a.wantsCustomThemeSettings == b.wantsCustomThemeSettings, where);
    QVERIFY2(a.wantsValueLabels == b.wantsValueLabels, where);
    QVERIFY2(a.wantsLegend == b.wantsLegend, where);
    QVERIFY2(a.chartLegendLabelFont == b.chartLegendLabelFont, where);
    QVERIFY2(a.chartLegendLabelColor == b.chartLegendLabelColor, where);
}

// The form's eleven statistics, then those added after them.
const QStringList prefixes { "maker_",     "model_",   "lens_",    "focLen_",
                             "focLenG_",   "iso_",     "isoG_",    "fNum_",
                             "expTime_",   "metMode_", "expMode_", "focLen35_",
                             "focLen35G_", "hour_",    "weekday_", "fileType_" };

} // namespace

class tst_SettingsStore : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void firstStart();
    void firstStartChartDefaults_data();
    void firstStartChartDefaults();
    void fileFiltersCheckTheirActions_data();
    void fileFiltersCheckTheirActions();
    void roundTripKeepsEverythingButTheDeliberateAsymmetries();
    void lastDirectoryIsWrittenAbsolute();
    void readerThreadsAreBroughtIntoTheirRange_data();
    void readerThreadsAreBroughtIntoTheirRange();

private:
    std::unique_ptr<testutils::Sandbox> sandbox;
    std::unique_ptr<MainWindow> window;
};

void tst_SettingsStore::init()
{
    sandbox = std::make_unique<testutils::Sandbox>();
}

void tst_SettingsStore::cleanup()
{
    window.reset();
    UpdateSite::setBaseUrl(QUrl());
    releaseDatabase();
    sandbox.reset();
}

void tst_SettingsStore::firstStart()
{
    QVERIFY(storeKeys().isEmpty());
    window = std::make_unique<MainWindow>();
    MainWindowProbe probe(*window);

    QCOMPARE(probe.lastTab(), 0);
    QCOMPARE(window->findChild<QTabWidget *>("tabWidget")->currentIndex(), 0);
    QCOMPARE(probe.lastDirectory(), QString("/Volumes"));
    QVERIFY(!probe.includeSubDirs());
    QVERIFY(!window->findChild<QAction *>("actionIncludeSubDirs")->isChecked());
    // The read has no default, so the constructor's eight patterns are replaced.
    QCOMPARE(probe.fileFilters(), QList<QString>());
    QCOMPARE(checkedFileTypes(*window), QStringList());
    QCOMPARE(probe.chartDateTheme(), 0);
    QCOMPARE(probe.themeCombo()->currentIndex(), 0);
    QVERIFY(!probe.checkForUpdatesOnStart());
    QCOMPARE(probe.fileDownloader(), nullptr);
    QVERIFY(probe.makerExcludes().isEmpty());
    QVERIFY(probe.modelExcludes().isEmpty());
    QVERIFY(probe.focalLengthGroups().isEmpty());
    QVERIFY(probe.isoGroups().isEmpty());
    QVERIFY(probe.focalLength35Groups().isEmpty());
    QCOMPARE(probe.readerThreads(), ReaderPool::defaultThreads);
    QVERIFY(probe.rememberPhotos());
    QCOMPARE(probe.forgetUnseenAfterDays(), PhotoCatalogue::defaultForgetUnseenAfterDays);
    QCOMPARE(probe.camXRotation(), 30.0f);
    QCOMPARE(probe.camYRotation(), 30.0f);
    QCOMPARE(probe.camZoom(), 100.0f);
    QCOMPARE(probe.chartTheme(), 2);
    // Reading writes nothing.
    QVERIFY(storeKeys().isEmpty());
}

void tst_SettingsStore::firstStartChartDefaults_data()
{
    QTest::addColumn<int>("chart");
    QTest::addColumn<QString>("title");

    const QStringList titles { "camera manufacturer",
                               "camera model",
                               "lens usage",
                               "FocalLength usage",
                               "FocalLength Grouped",
                               "ISO usage",
                               "FocalLength usage",
                               "FocalLength usage",
                               "ExposureTime usage",
                               "MeteringMode usage",
                               "ExposureMode usage",
                               "FocalLength 35mm equivalent usage",
                               "FocalLength 35mm equivalent Grouped",
                               "Photos per hour of day",
                               "Photos per weekday",
                               "Photos per file type" };
    for (int chart = 0; chart < titles.size(); ++chart)
        QTest::addRow("%s", qPrintable(prefixes.at(chart))) << chart << titles.at(chart);
}

void tst_SettingsStore::firstStartChartDefaults()
{
    QFETCH(int, chart);
    QFETCH(QString, title);

    window = std::make_unique<MainWindow>();
    const TChartSettings &s = MainWindowProbe(*window).chartSettings(chart);
    QCOMPARE(s.chartTyp, 1);
    QCOMPARE(s.chartTheme, 1);
    QVERIFY(s.wantsChartTitle);
    QCOMPARE(s.chartTitleText, title);
    QVERIFY(s.wantsValueAxisTitle);
    QCOMPARE(s.valueAxisTitleText, QString("# of Files"));
    QVERIFY(!s.wantsCustomThemeSettings);
    QVERIFY(!s.wantsLegend);
    QVERIFY(!s.wantsValueLabels);
    QCOMPARE(s.chartLegendPos, 1);
    QCOMPARE(s.chartBackgroundGradientOrientation, 0);
    QCOMPARE(s.chartPlotAreaGradientOrientation, 0);
    for (const QFont &font :
         { s.chartTitleFont, s.valueAxisTitleFont, s.chartAxisLabelFont, s.chartLegendLabelFont })
        QCOMPARE(font, QFont());
    for (const QColor &color :
         { s.chartTitleColor, s.valueAxisTitleColor, s.chartBarColor, s.chartAxisLabelColor,
           s.chartLegendLabelColor, s.chartBackgroundGradientFrom, s.chartBackgroundGradientTo,
           s.chartPlotAreaGradientFrom, s.chartPlotAreaGradientTo })
        QVERIFY(!color.isValid());
}

void tst_SettingsStore::fileFiltersCheckTheirActions_data()
{
    QTest::addColumn<QStringList>("fileFilters");
    QTest::addColumn<QStringList>("checked");

    QTest::newRow("NEF and JPG check exactly their two actions")
        << QStringList { "*.nef", "*.jpg" } << QStringList { "actionNikon_nef", "action_jpg" };
    QTest::newRow("letter case differs: nothing checked")
        << QStringList { "*.NEF", "*.Jpg" } << QStringList {};
    QTest::newRow("all ten, HEIF with its four patterns")
        << QStringList { "*.orf", "*.rw2", "*.arw",  "*.jpg",  "*.nef", "*.raf", "*.dng",
                         "*.cr3", "*.cr2", "*.heic", "*.heif", "*.hif", "*.avif" }
        << fileTypeActions;
    QTest::newRow("HEIF's key *.heic checks HEIF")
        << QStringList { "*.heic", "*.heif", "*.hif", "*.avif" } << QStringList { "action_heif" };
    QTest::newRow("AVIF's pattern alone is not HEIF's key")
        << QStringList { "*.avif" } << QStringList {};
    QTest::newRow("unknown pattern") << QStringList { "*.tif" } << QStringList {};
}

void tst_SettingsStore::fileFiltersCheckTheirActions()
{
    QFETCH(QStringList, fileFilters);
    QFETCH(QStringList, checked);

    writeStore({ { "OtherSettings/fileFilters", fileFilters } });
    window = std::make_unique<MainWindow>();
    QCOMPARE(checkedFileTypes(*window), checked);
    QCOMPARE(MainWindowProbe(*window).fileFilters(), QList<QString>(fileFilters));
}

void tst_SettingsStore::roundTripKeepsEverythingButTheDeliberateAsymmetries()
{
    const QString photos = sandbox->makeDir("photos");
    window = std::make_unique<MainWindow>();
    {
        MainWindowProbe probe(*window);
        window->findChild<QTabWidget *>("tabWidget")->setCurrentIndex(5);
        window->findChild<QAction *>("actionIncludeSubDirs")->trigger();
        window->findChild<QAction *>("action_jpg")->trigger();
        window->findChild<QAction *>("actionNikon_nef")->trigger();
        window->findChild<QAction *>("action_heif")->trigger();
        probe.themeCombo()->setCurrentIndex(4);
        probe.lastDirectory() = photos;
        probe.checkForUpdatesOnStart() = true;
        probe.makerExcludes() = { "Apple", "Samsung" };
        probe.modelExcludes() = { "iPhone6" };
        probe.focalLengthGroups() = { "24-70", "71-200" };
        probe.isoGroups() = { "100-400", "401-3200" };
        probe.focalLength35Groups() = { "1-27", "28-300" };
        probe.readerThreads() = 7;
        probe.rememberPhotos() = false;
        probe.forgetUnseenAfterDays() = 30;
        QCOMPARE(probe.chartedStatistics(), prefixes.size());
        for (int chart = 0; chart < prefixes.size(); ++chart)
            probe.chartSettings(chart) = distinctSettings(chart);
        probe.camXRotation() = 45.0f;
        probe.camYRotation() = 12.5f;
        probe.camZoom() = 150.0f;
        window->findChild<QSplitter *>("splitterLens")->setSizes({ 100, 300 });
    }
    const QByteArray lensSplitter = window->findChild<QSplitter *>("splitterLens")->saveState();
    const QByteArray windowState = window->saveState(0);

    NextModal quit(isA<QMessageBox>(), [](QWidget *box) { clickButton(box, QMessageBox::Ok); });
    QVERIFY(window->close());
    QVERIFY(quit.answered());
    window.reset();
    releaseDatabase();

    // What the store holds.
    QCOMPARE(readStore("OtherSettings/chartTheme").toInt(), 2);
    QCOMPARE(readStore("OtherSettings/readerThreads").toInt(), 7);
    QCOMPARE(readStore("OtherSettings/rememberPhotos").toBool(), false);
    QCOMPARE(readStore("OtherSettings/forgetUnseenAfterDays").toInt(), 30);
    QCOMPARE(readStore("OtherSettings/fileFilters").toStringList(),
             (QStringList { "*.jpg", "*.nef", "*.heic", "*.heif", "*.hif", "*.avif" }));
    QCOMPARE(readStore("MainWindow/lastTab").toInt(), 5);
    QCOMPARE(readStore("MainWindow/windowState").toByteArray(), windowState);
    for (const QString &prefix : prefixes) {
        QCOMPARE(readStore("ChartSettings/" + prefix + "ChartLegendPos").toInt(), 32);
        QVERIFY2(!readStore("ChartSettings/" + prefix + "chartLegendPos").isValid(),
                 qPrintable(prefix));
    }
    QCOMPARE(readStore("ChartSettings/Date3DChartSettings/date_camXRotation").toFloat(), 45.0f);
    QCOMPARE(readStore("ChartSettings/Date3DChartSettings/date_camYRotation").toFloat(), 12.5f);
    QCOMPARE(readStore("ChartSettings/Date3DChartSettings/date_camZoom").toFloat(), 150.0f);
    QVERIFY(!readStore("Date3DChartSettings/date_camXRotation").isValid());

    // What a new window makes of it. The update check is on now; it asks a local server that
    // names no newer version.
    LocalHttpServer server;
    server.setResponse(200, KELVARO_VERSION);
    UpdateSite::setBaseUrl(server.baseUrl());
    window = std::make_unique<MainWindow>();
    MainWindowProbe probe(*window);
    QCOMPARE(probe.lastTab(), 5);
    QCOMPARE(window->findChild<QTabWidget *>("tabWidget")->currentIndex(), 5);
    QCOMPARE(probe.lastDirectory(), photos);
    QVERIFY(probe.includeSubDirs());
    QVERIFY(window->findChild<QAction *>("actionIncludeSubDirs")->isChecked());
    QCOMPARE(probe.fileFilters(),
             (QList<QString> { "*.jpg", "*.nef", "*.heic", "*.heif", "*.hif", "*.avif" }));
    QCOMPARE(checkedFileTypes(*window),
             (QStringList { "actionNikon_nef", "action_jpg", "action_heif" }));
    QCOMPARE(probe.chartDateTheme(), 4);
    QCOMPARE(probe.themeCombo()->currentIndex(), 4);
    QVERIFY(probe.checkForUpdatesOnStart());
    QVERIFY(probe.fileDownloader());
    QCOMPARE(probe.makerExcludes(), (QList<QString> { "Apple", "Samsung" }));
    QCOMPARE(probe.modelExcludes(), (QList<QString> { "iPhone6" }));
    QCOMPARE(probe.focalLengthGroups(), (QList<QString> { "24-70", "71-200" }));
    QCOMPARE(probe.isoGroups(), (QList<QString> { "100-400", "401-3200" }));
    QCOMPARE(probe.focalLength35Groups(), (QList<QString> { "1-27", "28-300" }));
    QCOMPARE(probe.readerThreads(), 7);
    QVERIFY(!probe.rememberPhotos());
    QCOMPARE(probe.forgetUnseenAfterDays(), 30);
    QCOMPARE(window->findChild<QSplitter *>("splitterLens")->saveState(), lensSplitter);
    for (int chart = 0; chart < prefixes.size(); ++chart) {
        compareAllButLegendPosition(probe.chartSettings(chart), distinctSettings(chart), chart);
        // Written with a capital C, read without: the chosen position never comes back.
        QCOMPARE(probe.chartSettings(chart).chartLegendPos, 1);
    }
    // Written into a nested group, read from the top level: the camera starts over.
    QCOMPARE(probe.camXRotation(), 30.0f);
    QCOMPARE(probe.camYRotation(), 30.0f);
    QCOMPARE(probe.camZoom(), 100.0f);
}

void tst_SettingsStore::lastDirectoryIsWrittenAbsolute()
{
    window = std::make_unique<MainWindow>();
    MainWindowProbe probe(*window);
    probe.lastDirectory() = "some/relative/dir";
    probe.saveSettings();
    QCOMPARE(readStore("OtherSettings/lastDirectory").toString(),
             QFileInfo("some/relative/dir").absoluteFilePath());
}

void tst_SettingsStore::readerThreadsAreBroughtIntoTheirRange_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<int>("read");

    QTest::newRow("1 stays") << QVariant(1) << 1;
    QTest::newRow("64 stays") << QVariant(64) << 64;
    QTest::newRow("0 becomes 1") << QVariant(0) << 1;
    QTest::newRow("-3 becomes 1") << QVariant(-3) << 1;
    QTest::newRow("65 becomes 64") << QVariant(65) << 64;
}

// A count edited by hand in the store cannot start more readers than the dialog offers.
void tst_SettingsStore::readerThreadsAreBroughtIntoTheirRange()
{
    QFETCH(QVariant, stored);
    QFETCH(int, read);

    writeStore({ { "OtherSettings/readerThreads", stored } });
    window = std::make_unique<MainWindow>();
    QCOMPARE(MainWindowProbe(*window).readerThreads(), read);
}

std::unique_ptr<QObject> makeSettingsStoreTest()
{
    return std::make_unique<tst_SettingsStore>();
}

#include "tst_settingsstore.moc"
