#include "tst_junksettings.h"

#include "kelvaroversion.h"

#include "mainwindow.h"
#include "mainwindowprobe.h"
#include "photodatabase.h"
#include "photofixture.h"
#include "quitanswer.h"
#include "testutils.h"
#include "updatesite.h"

#include <QAction>
#include <QApplication>
#include <QChartView>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QSqlDatabase>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <QThread>
#include <QTreeView>

#include <cmath>
#include <memory>

namespace {

// Every charted statistic's prefix: the form's eleven, then those added after them.
const QStringList chartPrefixes { "maker_",     "model_",   "lens_",    "focLen_",
                                  "focLenG_",   "iso_",     "isoG_",    "fNum_",
                                  "expTime_",   "metMode_", "expMode_", "focLen35_",
                                  "focLen35G_", "hour_",    "weekday_", "fileType_" };

const QStringList patternActions { "actionCanon_cr2", "actionCanon_cr3",     "action_dng",
                                   "actionFuji_raf",  "actionNikon_nef",     "action_jpg",
                                   "actionSony_arw",  "actionPanasonic_rw2", "actionOlympus_orf" };

// Where QSettings keeps an INI store of the user scope: <path>/<organisation>/<application>.ini.
QString storeFile(const testutils::Sandbox &sandbox)
{
    return sandbox.configDir() + "/Kelvaro/Kelvaro.ini";
}

// The store is written as text, so that each value is exactly the junk a damaged or hand-edited
// file holds, not what QSettings would make of a QVariant.
bool writeStoreText(const testutils::Sandbox &sandbox, const QString &text)
{
    QDir().mkpath(QFileInfo(storeFile(sandbox)).absolutePath());
    QFile file(storeFile(sandbox));
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate)
        && file.write(text.toUtf8()) == text.toUtf8().size();
}

// The given key suffixes and values for every statistic chart.
QString chartLines(const QStringList &suffixLines)
{
    QString text;
    for (const QString &prefix : chartPrefixes) {
        for (const QString &line : suffixLines)
            text += prefix + line + '\n';
    }
    return text;
}

QVariant storedValue(const QString &key)
{
    QSettings settings(QSettings::IniFormat, QSettings::UserScope, "Kelvaro", "Kelvaro");
    return settings.value(key);
}

std::unique_ptr<MainWindow> startWindow()
{
    auto window = std::make_unique<MainWindow>();
    window->show();
    return window;
}

// Closes as the user does: close(), the quit question, OK; closeEvent() then writes the store.
bool closeWithOk(MainWindow &window)
{
    QuitAnswer answer;
    const bool closed = window.close();
    return closed && answer.answered();
}

// Each window opens the main connection anew; the old one goes with its window, so that the next
// window starts on a fresh in-memory database without Qt's duplicate-name warning.
void endWindow(std::unique_ptr<MainWindow> &window)
{
    window.reset();
    QSqlDatabase::removeDatabase(PhotoDatabase::mainConnection);
}

// The last scan's thread has ended and its operationDone() has been handled. The status alone
// doesn't tell: when the tree settles after start-up the selection changes once more, the first
// scan is stopped for a second one, and its late operationDone() reports the emptied table while
// the second still runs.
bool lastScanEnded(MainWindow &window)
{
    MainWindowProbe probe(window);
    const QThread *thread = probe.workerThread();
    if (thread && !thread->isFinished())
        return false;
    QCoreApplication::sendPostedEvents();
    return probe.status().startsWith("Valid files: ") && !probe.workerRunning();
}

QTabWidget *tabs(MainWindow &window)
{
    return window.findChild<QTabWidget *>("tabWidget");
}

QStringList checkedPatternActions(MainWindow &window)
{
    QStringList checked;
    for (const QString &name : patternActions) {
        auto *action = window.findChild<QAction *>(name);
        if (action && action->isChecked())
            checked << name;
    }
    return checked;
}

bool sameFloat(float a, float b)
{
    return (std::isnan(a) && std::isnan(b)) || a == b;
}

// Everything the window took from the store, as far as it can be seen.
struct WindowValues
{
    int lastTab = 0;
    int currentTab = 0;
    int chartDateTheme = 0;
    int themeComboIndex = 0;
    bool includeSubDirs = false;
    bool subDirsActionChecked = false;
    QStringList fileFilters;
    QStringList checkedPatterns;
    bool checkForUpdates = false;
    QStringList makerExcludes, modelExcludes, focalLengthGroups, isoGroups;
    QString lastDirectory;
    QList<TChartSettings> charts;
    float camX = 0, camY = 0, camZoom = 0;
};

WindowValues valuesOf(MainWindow &window)
{
    MainWindowProbe probe(window);
    WindowValues v;
    v.lastTab = probe.lastTab();
    v.currentTab = tabs(window)->currentIndex();
    v.chartDateTheme = probe.chartDateTheme();
    v.themeComboIndex = probe.themeCombo()->currentIndex();
    v.includeSubDirs = probe.includeSubDirs();
    v.subDirsActionChecked = window.findChild<QAction *>("actionIncludeSubDirs")->isChecked();
    v.fileFilters = probe.fileFilters();
    v.checkedPatterns = checkedPatternActions(window);
    v.checkForUpdates = probe.checkForUpdatesOnStart();
    v.makerExcludes = probe.makerExcludes();
    v.modelExcludes = probe.modelExcludes();
    v.focalLengthGroups = probe.focalLengthGroups();
    v.isoGroups = probe.isoGroups();
    v.lastDirectory = probe.lastDirectory();
    for (int statistic = 0; statistic < chartPrefixes.size(); ++statistic)
        v.charts << probe.chartSettings(statistic);
    v.camX = probe.camXRotation();
    v.camY = probe.camYRotation();
    v.camZoom = probe.camZoom();
    return v;
}

void compareCharts(const TChartSettings &a, const TChartSettings &b, const QString &chart)
{
    const QByteArray where = chart.toUtf8();
#define SAME_FIELD(field) QVERIFY2(a.field == b.field, where + ": " #field " differs")
    SAME_FIELD(chartTyp);
    SAME_FIELD(chartTheme);
    SAME_FIELD(wantsChartTitle);
    SAME_FIELD(chartTitleText);
    SAME_FIELD(chartTitleFont);
    SAME_FIELD(chartTitleColor);
    SAME_FIELD(wantsValueAxisTitle);
    SAME_FIELD(valueAxisTitleText);
    SAME_FIELD(valueAxisTitleFont);
    SAME_FIELD(valueAxisTitleColor);
    SAME_FIELD(chartAxisLabelFont);
    SAME_FIELD(chartAxisLabelColor);
    SAME_FIELD(chartBarColor);
    SAME_FIELD(chartBackgroundGradientFrom);
    SAME_FIELD(chartBackgroundGradientTo);
    SAME_FIELD(chartBackgroundGradientOrientation);
    SAME_FIELD(chartPlotAreaGradientFrom);
    SAME_FIELD(chartPlotAreaGradientTo);
    SAME_FIELD(chartPlotAreaGradientOrientation);
    SAME_FIELD(wantsCustomThemeSettings);
    SAME_FIELD(wantsValueLabels);
    SAME_FIELD(wantsLegend);
    SAME_FIELD(chartLegendLabelFont);
    SAME_FIELD(chartLegendLabelColor);
#undef SAME_FIELD
    // chartLegendPos is left out on purpose: it is written under "ChartLegendPos" and read from
    // "chartLegendPos", so a start after a quit always has 1 there.
}

// The second start must read what the first start held; only the legend position differs by
// design (see compareCharts).
void compareValues(const WindowValues &first, const WindowValues &second)
{
    QCOMPARE(second.lastTab, first.lastTab);
    QCOMPARE(second.currentTab, first.currentTab);
    QCOMPARE(second.chartDateTheme, first.chartDateTheme);
    QCOMPARE(second.themeComboIndex, first.themeComboIndex);
    QCOMPARE(second.includeSubDirs, first.includeSubDirs);
    QCOMPARE(second.subDirsActionChecked, first.subDirsActionChecked);
    QCOMPARE(second.fileFilters, first.fileFilters);
    QCOMPARE(second.checkedPatterns, first.checkedPatterns);
    QCOMPARE(second.checkForUpdates, first.checkForUpdates);
    QCOMPARE(second.makerExcludes, first.makerExcludes);
    QCOMPARE(second.modelExcludes, first.modelExcludes);
    QCOMPARE(second.focalLengthGroups, first.focalLengthGroups);
    QCOMPARE(second.isoGroups, first.isoGroups);
    QCOMPARE(second.lastDirectory, first.lastDirectory);
    QCOMPARE(second.charts.size(), first.charts.size());
    for (int i = 0; i < first.charts.size(); ++i) {
        compareCharts(first.charts.at(i), second.charts.at(i), chartPrefixes.at(i));
        if (QTest::currentTestFailed())
            return;
    }
    QVERIFY2(sameFloat(second.camX, first.camX), "camera x rotation differs");
    QVERIFY2(sameFloat(second.camY, first.camY), "camera y rotation differs");
    QVERIFY2(sameFloat(second.camZoom, first.camZoom), "camera zoom differs");
}

// The form makes tab 3 current; QTabWidget ignores an index it doesn't have.
constexpr int formsCurrentTab = 3;

} // namespace

void tst_JunkSettings::initTestCase()
{
    // "checkForUpdates=maybe" turns the update check on; it goes to a closed port on this
    // machine instead of the network, and its failure is silent.
    UpdateSite::setBaseUrl(QUrl("http://127.0.0.1:1/"));
}

void tst_JunkSettings::cleanup()
{
    QSqlDatabase::removeDatabase(PhotoDatabase::mainConnection);
}

void tst_JunkSettings::junkStoreStartsTheWindow()
{
    testutils::Sandbox sandbox;
    const QString gone = sandbox.filePath("gone/never/there");
    QString text = QString(R"INI([MainWindow]
geometry=garbage
windowState=@ByteArray(\xff\xfe\0\x1junk)
lastTab=abc

[Splitter]
splitterMaker=@ByteArray(\0\0\0\xff\0\0\0\0\x7f\xff\xff\xff)
splitterModel=junk
splitterLens=@Variant(garbage)
splitterFocalLength=1, 2, 3
splitterISO=@ByteArray()

[OtherSettings]
lastDirectory=%1
includeSubDirs=maybe
fileFilters=*.JPG, jpg, "*.jpg ", *.nef*, ""
chartDateTheme=xyz
checkForUpdates=maybe
makerExcludes=@Invalid()
modelExcludes=42
focalLengthGroups=abc-def, -, 1-2-3
isoGroups=@ByteArray(\xff\xfe)

[ChartSettings]
)INI")
                       .arg(gone);
    text += chartLines({ "chartTyp=foo",
                         "chartTheme=xyz",
                         "wantsChartTitle=maybe",
                         "chartTitleText=@Variant(garbage)",
                         R"(chartTitleFont="Arial,abc,x")",
                         "chartTitleColor=#zzzzzz",
                         "wantsValueAxisTitle=",
                         "valueAxisTitleText=1, 2, 3",
                         R"(valueAxisTitleFont=@Variant(\0\0\0@))",
                         "valueAxisTitleColor=@Variant(garbage)",
                         "chartBarColor=notacolor",
                         "chartAxisLabelFont=",
                         R"(chartAxisLabelColor="#12345")",
                         "wantsCustomThemeSettings=no",
                         "wantsLegend=2",
                         "chartLegendPos=foo",
                         "chartLegendLabelFont=1, 2",
                         "chartLegendLabelColor=red",
                         "wantsValueLabels=maybe",
                         "chartBackgroundGradientFrom=@Invalid()",
                         "chartBackgroundGradientTo=#gggggg",
                         "chartBackgroundGradientOrientation=junk",
                         "chartPlotAreaGradientFrom=",
                         "chartPlotAreaGradientTo=0",
                         "chartPlotAreaGradientOrientation=7" });
    text += R"INI(
[Date3DChartSettings]
date_camXRotation=text
date_camYRotation=inf
date_camZoom=nan
)INI";
    QVERIFY(writeStoreText(sandbox, text));

    auto window = startWindow();
    MainWindowProbe probe(*window);
    QCOMPARE(window->windowTitle(), QString("Kelvaro Version " KELVARO_VERSION));

    // Numbers: text gives 0, and index 0 is then a real tab and a real theme.
    QCOMPARE(probe.lastTab(), 0);
    QCOMPARE(tabs(*window)->currentIndex(), 0);
    QCOMPARE(probe.chartDateTheme(), 0);
    QCOMPARE(probe.themeCombo()->currentIndex(), 0);

    // Bools: only "", "0" and "false" (any case) are false.
    QCOMPARE(probe.includeSubDirs(), true);
    QVERIFY(window->findChild<QAction *>("actionIncludeSubDirs")->isChecked());
    QCOMPARE(probe.checkForUpdatesOnStart(), true);
    QVERIFY2(probe.fileDownloader(), "the update check runs when its bool reads true");

    // Lists are taken as they stand; none of the junk patterns is exactly one of the nine, so
    // no file-type switch is on.
    QCOMPARE(probe.fileFilters(), (QStringList { "*.JPG", "jpg", "*.jpg ", "*.nef*", "" }));
    QCOMPARE(checkedPatternActions(*window), QStringList());
    QCOMPARE(probe.makerExcludes(), QStringList());
    QCOMPARE(probe.modelExcludes(), QStringList { "42" });
    QCOMPARE(probe.focalLengthGroups(), (QStringList { "abc-def", "-", "1-2-3" }));
    QCOMPARE(probe.isoGroups(), QStringList()); // a byte array is no list

    // A directory that is gone makes nothing current, and so no scan starts.
    QCOMPARE(probe.lastDirectory(), gone);
    auto *tree = window->findChild<QTreeView *>("treeViewDir");
    QVERIFY(!tree->currentIndex().isValid());
    QVERIFY(tree->selectionModel()->selectedIndexes().isEmpty());
    QVERIFY2(!probe.workerThread(), "no scan may start without a directory");

    QCOMPARE(probe.chartedStatistics(), chartPrefixes.size());
    for (int statistic = 0; statistic < chartPrefixes.size(); ++statistic) {
        const TChartSettings &s = probe.chartSettings(statistic);
        const QByteArray chart = chartPrefixes.at(statistic).toUtf8();
        QVERIFY2(s.chartTyp == 0, chart + "chartTyp: text gives 0");
        QVERIFY2(s.chartTheme == 0, chart + "chartTheme: text gives 0");
        QVERIFY2(s.wantsChartTitle, chart + "wantsChartTitle: \"maybe\" is true");
        QVERIFY2(s.chartTitleText.isEmpty(), chart + "chartTitleText: an invalid variant is empty");
        QVERIFY2(s.chartTitleFont == QFont(), chart + "chartTitleFont: broken text, default font");
        QVERIFY2(!s.chartTitleColor.isValid(), chart + "chartTitleColor must be invalid");
        QVERIFY2(!s.wantsValueAxisTitle, chart + "wantsValueAxisTitle: empty is false");
        QVERIFY2(s.valueAxisTitleText.isEmpty(), chart + "valueAxisTitleText: a list is no text");
        QVERIFY2(!s.valueAxisTitleColor.isValid(), chart + "valueAxisTitleColor must be invalid");
        QVERIFY2(!s.chartBarColor.isValid(), chart + "chartBarColor must be invalid");
        QVERIFY2(s.chartAxisLabelFont == QFont(), chart + "chartAxisLabelFont: default font");
        QVERIFY2(!s.chartAxisLabelColor.isValid(), chart + "chartAxisLabelColor must be invalid");
        QVERIFY2(s.wantsCustomThemeSettings, chart + "wantsCustomThemeSettings: \"no\" is true");
        QVERIFY2(s.wantsLegend, chart + "wantsLegend: 2 is true");
        QVERIFY2(s.chartLegendPos == 0, chart + "chartLegendPos: text gives 0");
        QVERIFY2(s.chartLegendLabelFont == QFont(), chart + "chartLegendLabelFont: default font");
        QVERIFY2(s.chartLegendLabelColor == QColor(Qt::red), chart + "chartLegendLabelColor red");
        QVERIFY2(s.wantsValueLabels, chart + "wantsValueLabels: \"maybe\" is true");
        QVERIFY2(!s.chartBackgroundGradientFrom.isValid(), chart + "gradient colour invalid");
        QVERIFY2(!s.chartBackgroundGradientTo.isValid(), chart + "gradient colour invalid");
        QVERIFY2(s.chartBackgroundGradientOrientation == 0, chart + "orientation: text gives 0");
        QVERIFY2(!s.chartPlotAreaGradientFrom.isValid(), chart + "gradient colour invalid");
        QVERIFY2(!s.chartPlotAreaGradientTo.isValid(), chart + "\"0\" is no colour");
        QVERIFY2(s.chartPlotAreaGradientOrientation == 7, chart + "orientation: 7 is kept");
    }

    // The camera: text gives 0; "inf" and "nan" are numbers to QVariant.
    QCOMPARE(probe.camXRotation(), 0.0f);
    QVERIFY(std::isinf(probe.camYRotation()));
    QVERIFY(std::isnan(probe.camZoom()));

    const WindowValues first = valuesOf(*window);
    QVERIFY2(closeWithOk(*window), "the window must close after OK to the quit question");
    endWindow(window);

    // What was written is the converted values, not the junk.
    QCOMPARE(storedValue("MainWindow/lastTab").toString(), QString("0"));
    QCOMPARE(storedValue("OtherSettings/chartTheme").toInt(), 2);
    QCOMPARE(storedValue("OtherSettings/includeSubDirs").toString(), QString("true"));
    QCOMPARE(storedValue("ChartSettings/maker_chartTyp").toString(), QString("0"));

    auto again = startWindow();
    compareValues(first, valuesOf(*again));
    if (QTest::currentTestFailed())
        return;
    QVERIFY2(closeWithOk(*again), "the second window must close too");
    endWindow(again);
}

void tst_JunkSettings::tabIndexFromTheStore_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<int>("lastTab");
    QTest::addColumn<int>("currentTab");

    QTest::newRow("text") << "abc" << 0 << 0;
    QTest::newRow("decimal") << "3.7" << 0 << 0;
    QTest::newRow("list") << "1, 2" << 0 << 0;
    QTest::newRow("empty") << "" << 0 << 0;
    QTest::newRow("negative") << "-5" << -5 << formsCurrentTab;
    QTest::newRow("huge") << "99999" << 99999 << formsCurrentTab;
    // The Calendar tab is the last, 18.
    QTest::newRow("one past the last tab") << "19" << 19 << formsCurrentTab;
    // A number beyond int becomes whatever QVariant makes of it (Qt 6.4 keeps the low 32 bits);
    // no tab has that index.
    QTest::newRow("larger than int")
        << "99999999999" << QVariant(QString("99999999999")).toInt() << formsCurrentTab;
    QTest::newRow("the raw-data tab") << "12" << 12 << 12;
    QTest::newRow("the last statistic tab") << "17" << 17 << 17;
}

// An index the tab widget doesn't have leaves the form's tab current, and the member keeps the
// stored number, which the next quit writes back.
void tst_JunkSettings::tabIndexFromTheStore()
{
    QFETCH(QString, stored);
    QFETCH(int, lastTab);
    QFETCH(int, currentTab);

    testutils::Sandbox sandbox;
    QVERIFY(writeStoreText(sandbox,
                           QString("[MainWindow]\nlastTab=%1\n[OtherSettings]\nlastDirectory=%2\n")
                               .arg(stored, sandbox.filePath("gone"))));

    auto window = startWindow();
    MainWindowProbe probe(*window);
    QCOMPARE(probe.lastTab(), lastTab);
    QCOMPARE(tabs(*window)->currentIndex(), currentTab);
    const WindowValues first = valuesOf(*window);
    QVERIFY(closeWithOk(*window));
    endWindow(window);

    auto again = startWindow();
    compareValues(first, valuesOf(*again));
    endWindow(again);
}

void tst_JunkSettings::dateThemeFromTheStore_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<int>("chartDateTheme");
    QTest::addColumn<int>("comboIndex");

    QTest::newRow("text") << "xyz" << 0 << 0;
    QTest::newRow("negative") << "-3" << -3 << -1;
    QTest::newRow("past the last theme") << "99" << 99 << -1;
    QTest::newRow("the last theme") << "7" << 7 << 7;
}

// The combo box takes the stored index as QComboBox does (none selected for one it doesn't have);
// the member keeps the number.
void tst_JunkSettings::dateThemeFromTheStore()
{
    QFETCH(QString, stored);
    QFETCH(int, chartDateTheme);
    QFETCH(int, comboIndex);

    testutils::Sandbox sandbox;
    QVERIFY(writeStoreText(sandbox,
                           QString("[OtherSettings]\nchartDateTheme=%1\nlastDirectory=%2\n")
                               .arg(stored, sandbox.filePath("gone"))));

    auto window = startWindow();
    MainWindowProbe probe(*window);
    QCOMPARE(probe.chartDateTheme(), chartDateTheme);
    QCOMPARE(probe.themeCombo()->currentIndex(), comboIndex);
    const WindowValues first = valuesOf(*window);
    QVERIFY(closeWithOk(*window));
    endWindow(window);

    auto again = startWindow();
    compareValues(first, valuesOf(*again));
    endWindow(again);
}

void tst_JunkSettings::junkChartLooksAreDrawn_data()
{
    QTest::addColumn<QStringList>("chartKeys");
    QTest::addColumn<QString>("otherKeys"); // lines of the group "OtherSettings"
    QTest::addColumn<QString>("cameraKeys"); // lines of the group "Date3DChartSettings"

    const QStringList custom { "wantsCustomThemeSettings=true", "wantsChartTitle=maybe",
                               "wantsValueAxisTitle=yes", "wantsValueLabels=1" };
    const QStringList junkLooks { R"(chartTitleFont="Arial,abc,x")",
                                  "chartTitleColor=#zzzzzz",
                                  R"(valueAxisTitleFont=@Variant(\0\0\0@))",
                                  "valueAxisTitleColor=@Variant(garbage)",
                                  "chartBarColor=notacolor",
                                  "chartAxisLabelFont=1, 2",
                                  "chartAxisLabelColor=@Invalid()",
                                  "chartLegendLabelFont=",
                                  "chartLegendLabelColor=#12345",
                                  "chartBackgroundGradientFrom=junk",
                                  "chartBackgroundGradientTo=",
                                  "chartBackgroundGradientOrientation=junk",
                                  "chartPlotAreaGradientFrom=#gggggg",
                                  "chartPlotAreaGradientTo=0",
                                  "chartPlotAreaGradientOrientation=99999",
                                  "chartTitleText=@ByteArray(\\xff\\xfe)",
                                  "valueAxisTitleText=" + QString(5000, QChar('W')) };

    QTest::newRow("chart type text") << QStringList { "chartTyp=foo" } << QString() << QString();
    QTest::newRow("chart type -1") << QStringList { "chartTyp=-1" } << QString() << QString();
    QTest::newRow("chart type 99999") << QStringList { "chartTyp=99999" } << QString() << QString();
    QTest::newRow("chart theme 99") << QStringList { "chartTheme=99" } << QString() << QString();
    QTest::newRow("chart theme -1") << QStringList { "chartTheme=-1" } << QString() << QString();
    for (int type = 0; type < 4; ++type) {
        QTest::newRow(qPrintable(QString("type %1, junk fonts and colours").arg(type)))
            << QStringList { QString("chartTyp=%1").arg(type) } + custom + junkLooks << QString()
            << QString();
        QTest::newRow(qPrintable(QString("type %1, legend at alignment 0").arg(type)))
            << QStringList { QString("chartTyp=%1").arg(type), "wantsLegend=maybe",
                             "chartLegendPos=foo" }
            << QString() << QString();
        QTest::newRow(qPrintable(QString("type %1, legend at alignment 99999").arg(type)))
            << QStringList { QString("chartTyp=%1").arg(type), "wantsLegend=true",
                             "chartLegendPos=99999" }
            << QString() << QString();
        QTest::newRow(qPrintable(QString("type %1, theme 99 with custom looks").arg(type)))
            << QStringList { QString("chartTyp=%1").arg(type), "chartTheme=99" } + custom
                + junkLooks
            << QString() << QString();
    }
    QTest::newRow("date theme 99, camera nan and inf")
        << QStringList() << "chartDateTheme=99\n"
        << "date_camXRotation=nan\ndate_camYRotation=-inf\ndate_camZoom=inf\n";
    QTest::newRow("date theme -3, camera text") << QStringList() << "chartDateTheme=-3\n"
                                                << "date_camZoom=text\n";
    QTest::newRow("junk range groups")
        << QStringList()
        << "focalLengthGroups=abc-def, -, 1-2-3, 70-24, 9999999999-1, \"\"\n"
           "isoGroups=@Variant(garbage)\n"
        << QString();
}

// The first scan ends and every chart is built from the junk looks and drawn; then the window
// quits and a second start reads the converted looks back and draws them again.
void tst_JunkSettings::junkChartLooksAreDrawn()
{
    QFETCH(QStringList, chartKeys);
    QFETCH(QString, otherKeys);
    QFETCH(QString, cameraKeys);

    testutils::Sandbox sandbox;
    const QString photos = sandbox.makeDir("photos");
    for (const char *maker : { "Canon", "Nikon", "Sony" }) {
        fixture::PhotoTags tags = fixture::typicalTags();
        tags.make = QString::fromLatin1(maker);
        QVERIFY(
            fixture::writePhoto(photos + '/' + tags.make + ".jpg", fixture::Format::Jpeg, tags));
    }
    QString text = QString("[OtherSettings]\nlastDirectory=%1\nfileFilters=*.jpg\n").arg(photos);
    text += otherKeys;
    text += "[ChartSettings]\n" + chartLines(chartKeys);
    text += "[Date3DChartSettings]\n" + cameraKeys;
    QVERIFY(writeStoreText(sandbox, text));

    for (int start = 1; start <= 2; ++start) {
        auto window = startWindow();
        window->resize(1113, 755);
        MainWindowProbe probe(*window);
        QTRY_VERIFY2_WITH_TIMEOUT(
            lastScanEnded(*window),
            qPrintable("start " + QString::number(start) + ": the scans must end"), 60000);
        QCOMPARE(probe.status(), QString("Valid files: 3"));
        for (int statistic = 0; statistic < chartPrefixes.size(); ++statistic)
            QVERIFY2(probe.chartController(statistic),
                     qPrintable(chartPrefixes.at(statistic) + " chart was not built"));
        QVERIFY2(probe.chartDate3D(), "the date chart was not built");
        auto *makerTable = window->findChild<QTableView *>("tableViewMaker");
        QVERIFY(makerTable && makerTable->model());
        QCOMPARE(makerTable->model()->rowCount(), 3);

        // Every tab shown and painted, so that the junk looks are really drawn.
        for (int tab = 0; tab < tabs(*window)->count(); ++tab) {
            tabs(*window)->setCurrentIndex(tab);
            QVERIFY(!tabs(*window)->grab().isNull());
        }
        for (QChartView *view : window->findChildren<QChartView *>())
            QVERIFY(!view->grab().isNull());

        QVERIFY2(closeWithOk(*window), "the window must close after OK to the quit question");
        endWindow(window);
    }
}
