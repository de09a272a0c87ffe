// The exposure-time chart draws on its own from a model of three columns, and differs from the
// other charts on purpose: "#Files" on the value axis, no value labels on the horizontal chart,
// no custom look, the theme set last.

#include "chartsfixture.h"

#include "testrunner.h"

#include <QAbstractBarSeries>
#include <QApplication>
#include <QBarSet>
#include <QLegend>
#include <QPieSeries>
#include <QPieSlice>
#include <QTest>
#include <QValueAxis>

using namespace chartsfixture;

class tst_ChartsExposureTime : public QObject
{
    Q_OBJECT

private slots:
    void valueAxisIsAlwaysFiles_data();
    void valueAxisIsAlwaysFiles();
    void valueLabels_data();
    void valueLabels();
    void ignoresCustomSettings_data();
    void ignoresCustomSettings();
    void pieNamesSlicesByDisplayText_data();
    void pieNamesSlicesByDisplayText();
};

void tst_ChartsExposureTime::valueAxisIsAlwaysFiles_data()
{
    QTest::addColumn<int>("chartTyp");
    QTest::addColumn<bool>("wantsValueAxisTitle");

    QTest::newRow("vertical, title wanted") << 0 << true;
    QTest::newRow("vertical, title not wanted") << 0 << false;
    QTest::newRow("horizontal, title wanted") << 1 << true;
    QTest::newRow("horizontal, title not wanted") << 1 << false;
}

void tst_ChartsExposureTime::valueAxisIsAlwaysFiles()
{
    QFETCH(int, chartTyp);
    QFETCH(bool, wantsValueAxisTitle);

    ChartScene scene;
    QVERIFY2(scene.table.isReady(), qPrintable(scene.table.lastError()));
    QVERIFY2(scene.table.insert(fivePhotos()), qPrintable(scene.table.lastError()));
    TChartSettings settings = plainSettings(chartTyp);
    settings.wantsValueAxisTitle = wantsValueAxisTitle;
    settings.valueAxisTitleText = "Photos per time";
    scene.draw(ExpTime, settings);

    const auto axes = scene.chart()->axes(chartTyp == 0 ? Qt::Vertical : Qt::Horizontal);
    QCOMPARE(axes.size(), 1);
    auto *axis = qobject_cast<QValueAxis *>(axes.first());
    QVERIFY2(axis, "the count axis is a value axis");
    QCOMPARE(axis->titleText(), QStringLiteral("#Files"));
    QVERIFY2(axis->labelFormat() != "%d", "the exposure-time chart keeps the default format");
    QCOMPARE(axis->labelFormat(), QValueAxis().labelFormat());
}

void tst_ChartsExposureTime::valueLabels_data()
{
    QTest::addColumn<int>("chartTyp");
    QTest::addColumn<bool>("wantsValueLabels");
    QTest::addColumn<bool>("visible");

    QTest::newRow("vertical, labels wanted") << 0 << true << true;
    QTest::newRow("vertical, labels not wanted") << 0 << false << false;
    QTest::newRow("horizontal, labels wanted: still none") << 1 << true << false;
    QTest::newRow("horizontal, labels not wanted") << 1 << false << false;
}

void tst_ChartsExposureTime::valueLabels()
{
    QFETCH(int, chartTyp);
    QFETCH(bool, wantsValueLabels);
    QFETCH(bool, visible);

    ChartScene scene;
    QVERIFY2(scene.table.isReady(), qPrintable(scene.table.lastError()));
    QVERIFY2(scene.table.insert(fivePhotos()), qPrintable(scene.table.lastError()));
    TChartSettings settings = plainSettings(chartTyp);
    settings.wantsValueLabels = wantsValueLabels;
    scene.draw(ExpTime, settings);

    auto *series = qobject_cast<QAbstractBarSeries *>(scene.chart()->series().first());
    QVERIFY(series);
    QCOMPARE(series->isLabelsVisible(), visible);
    if (visible)
        QCOMPARE(series->labelsFormat(), QStringLiteral("@value"));
}

void tst_ChartsExposureTime::ignoresCustomSettings_data()
{
    QTest::addColumn<int>("chartTyp");
    QTest::newRow("vertical bars") << 0;
    QTest::newRow("horizontal bars") << 1;
    QTest::newRow("pie") << 2;
    QTest::newRow("donut") << 3;
}

// Custom fonts, colours and gradients are not applied; theme, title and legend still are.
void tst_ChartsExposureTime::ignoresCustomSettings()
{
    QFETCH(int, chartTyp);

    ChartScene scene;
    QVERIFY2(scene.table.isReady(), qPrintable(scene.table.lastError()));
    QVERIFY2(scene.table.insert(fivePhotos()), qPrintable(scene.table.lastError()));
    TChartSettings settings = customSettings(chartTyp);
    settings.chartTheme = QChart::ChartThemeBrownSand;
    settings.wantsLegend = false;
    settings.chartTitleText = "Exposure times";
    scene.draw(ExpTime, settings);
    QChart *chart = scene.chart();

    QChart themed;
    themed.setTheme(QChart::ChartThemeBrownSand);
    QCOMPARE(chart->theme(), QChart::ChartThemeBrownSand);
    QCOMPARE(chart->title(), QStringLiteral("Exposure times"));
    QVERIFY2(!chart->legend()->isVisible(), "the legend stays hidden although the theme came last");
    QCOMPARE(chart->titleFont(), themed.titleFont());
    QCOMPARE(chart->titleBrush(), themed.titleBrush());
    QCOMPARE(chart->legend()->font(), themed.legend()->font());
    QCOMPARE(chart->legend()->labelColor(), themed.legend()->labelColor());
    QCOMPARE(chart->backgroundBrush(), themed.backgroundBrush());
    QCOMPARE(chart->plotAreaBackgroundBrush(), themed.plotAreaBackgroundBrush());
    for (QAbstractAxis *axis : chart->axes())
        QVERIFY2(axis->labelsFont() != settings.chartAxisLabelFont, "no custom axis font");
    if (chartTyp < 2) {
        auto *series = qobject_cast<QAbstractBarSeries *>(chart->series().first());
        QVERIFY(series && !series->barSets().isEmpty());
        QVERIFY2(series->barSets().first()->color() != settings.chartBarColor,
                 "no custom bar colour");
    }
}

void tst_ChartsExposureTime::pieNamesSlicesByDisplayText_data()
{
    QTest::addColumn<int>("chartTyp");
    QTest::addColumn<qreal>("holeSize");
    QTest::newRow("pie") << 2 << 0.0;
    QTest::newRow("donut") << 3 << 0.35;
}

void tst_ChartsExposureTime::pieNamesSlicesByDisplayText()
{
    QFETCH(int, chartTyp);
    QFETCH(qreal, holeSize);

    ChartScene scene;
    QVERIFY2(scene.table.isReady(), qPrintable(scene.table.lastError()));
    QVERIFY2(scene.table.insert(fivePhotos()), qPrintable(scene.table.lastError()));
    scene.draw(ExpTime, plainSettings(chartTyp));

    auto *series = qobject_cast<QPieSeries *>(scene.chart()->series().first());
    QVERIFY(series);
    QCOMPARE(series->holeSize(), holeSize);
    QCOMPARE(legendLabels(scene.chart()), (QStringList { "1", "1/2", "1/250" }));
    QCOMPARE(sliceValues(scene.chart()), (QList<qreal> { 1, 1, 3 }));
    QCOMPARE(sliceLabels(scene.chart()), (QStringList { "20.0%", "20.0%", "60.0%" }));
    QVERIFY(series->slices().first()->isLabelVisible());
}

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    // Fonts are measured at 96 dpi whatever the screen reports, as QtTest's own main() does.
    app.setAttribute(Qt::AA_Use96Dpi, true);
    tst_ChartsExposureTime test;
    return testutils::runTestObjects(app.arguments(), { &test });
}

#include "tst_charts_exposuretime.moc"
