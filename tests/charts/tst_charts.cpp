// The drawing shared by the statistics charts: the four chart kinds, every setting of the
// record, switching kinds, and releasing what a redraw replaces. Drawn through the maker chart.

#include "chartsfixture.h"
#include "statisticcontroller.h"

#include "testrunner.h"

#include <QAbstractBarSeries>
#include <QApplication>
#include <QBarSet>
#include <QChartView>
#include <QLegend>
#include <QLinearGradient>
#include <QPieSeries>
#include <QPieSlice>
#include <QTableView>
#include <QTest>
#include <QValueAxis>

using namespace chartsfixture;

namespace {

bool fill(ChartScene &scene, const QStringList &makers)
{
    return scene.table.isReady() && scene.table.insert(photosOfMakers(makers));
}

QAbstractAxis *firstAxis(QChart *chart, Qt::Orientation orientation)
{
    const auto axes = chart->axes(orientation);
    return axes.isEmpty() ? nullptr : axes.first();
}

const char *kindName(int chartTyp)
{
    static const char *names[] = { "vertical bars", "horizontal bars", "pie", "donut" };
    return chartTyp >= 0 && chartTyp < 4 ? names[chartTyp] : "nothing";
}

void addRowPerChartKind()
{
    QTest::addColumn<int>("chartTyp");
    for (int chartTyp = 0; chartTyp < 4; ++chartTyp)
        QTest::newRow(kindName(chartTyp)) << chartTyp;
}

} // namespace

class tst_Charts : public QObject
{
    Q_OBJECT

private slots:
    void newChartEveryDraw_data() { addRowPerChartKind(); }
    void newChartEveryDraw();
    void titleAndValueAxisTitle_data();
    void titleAndValueAxisTitle();
    void smallCountsGetWholeTicks_data();
    void smallCountsGetWholeTicks();
    void valueLabels_data();
    void valueLabels();
    void legendPosition_data();
    void legendPosition();
    void legendHiddenWithCustomSettings_data() { addRowPerChartKind(); }
    void legendHiddenWithCustomSettings();
    void customSettingsOnBars_data();
    void customSettingsOnBars();
    void transparentColoursKeepTheirAlpha();
    void customSettingsOnPies_data();
    void customSettingsOnPies();
    void customSettingsOffChangeNothing_data() { addRowPerChartKind(); }
    void customSettingsOffChangeNothing();
    void pieLabelsHaveOneDecimal_data();
    void pieLabelsHaveOneDecimal();
    void unexpectedRecordValuesStillDraw_data();
    void unexpectedRecordValuesStillDraw();
};

void tst_Charts::newChartEveryDraw()
{
    QFETCH(int, chartTyp);
    ChartScene scene;
    QVERIFY2(fill(scene, { "Canon", "Nikon" }), qPrintable(scene.table.lastError()));
    TChartSettings settings = plainSettings(chartTyp);
    settings.chartTheme = QChart::ChartThemeDark;
    scene.draw(Maker, settings);

    QChart *chart = scene.chart();
    QCOMPARE(chart->theme(), QChart::ChartThemeDark);
    QCOMPARE(chart->animationOptions(), QChart::AllAnimations);
    QCOMPARE(chart->series().size(), 1);
    QCOMPARE(chart->axes().size(), chartTyp < 2 ? 2 : 0);
    if (chartTyp < 2) {
        QCOMPARE(categories(chart), (QStringList { "Canon", "Nikon" }));
        QCOMPARE(firstBarSetValues(chart), (QList<qreal> { 1, 1 }));
        auto *valueAxis = qobject_cast<QValueAxis *>(
            firstAxis(chart, chartTyp == 0 ? Qt::Vertical : Qt::Horizontal));
        QVERIFY2(valueAxis, "the count axis lies across the categories");
        QCOMPARE(valueAxis->labelFormat(), QStringLiteral("%d"));
    } else {
        auto *series = qobject_cast<QPieSeries *>(chart->series().first());
        QVERIFY(series);
        QCOMPARE(series->holeSize(), chartTyp == 3 ? 0.35 : 0.0);
        QCOMPARE(sliceValues(chart), (QList<qreal> { 1, 1 }));
    }
}

void tst_Charts::titleAndValueAxisTitle_data()
{
    QTest::addColumn<int>("chartTyp");
    QTest::addColumn<bool>("wantsChartTitle");
    QTest::addColumn<bool>("wantsValueAxisTitle");
    for (int chartTyp : { 0, 1 }) {
        for (bool title : { true, false }) {
            for (bool axisTitle : { true, false }) {
                QTest::addRow("%s, chart title %s, axis title %s", kindName(chartTyp),
                              title ? "on" : "off", axisTitle ? "on" : "off")
                    << chartTyp << title << axisTitle;
            }
        }
    }
}

void tst_Charts::titleAndValueAxisTitle()
{
    QFETCH(int, chartTyp);
    QFETCH(bool, wantsChartTitle);
    QFETCH(bool, wantsValueAxisTitle);

    ChartScene scene;
    QVERIFY2(fill(scene, { "Canon" }), qPrintable(scene.table.lastError()));
    TChartSettings settings = plainSettings(chartTyp);
    settings.wantsChartTitle = wantsChartTitle;
    settings.chartTitleText = "Cameras";
    settings.wantsValueAxisTitle = wantsValueAxisTitle;
    settings.valueAxisTitleText = "Photos";
    scene.draw(Maker, settings);

    QChart *chart = scene.chart();
    QCOMPARE(chart->title(), wantsChartTitle ? QStringLiteral("Cameras") : QString());
    const Qt::Orientation valueSide = chartTyp == 0 ? Qt::Vertical : Qt::Horizontal;
    const Qt::Orientation categorySide = chartTyp == 0 ? Qt::Horizontal : Qt::Vertical;
    QAbstractAxis *valueAxis = firstAxis(chart, valueSide);
    QVERIFY(valueAxis);
    QCOMPARE(valueAxis->titleText(), wantsValueAxisTitle ? QStringLiteral("Photos") : QString());
    QVERIFY2(firstAxis(chart, categorySide)->titleText().isEmpty(),
             "the category axis gets no title");
}

void tst_Charts::smallCountsGetWholeTicks_data()
{
    QTest::addColumn<int>("chartTyp");
    QTest::addColumn<int>("photosOfOneMaker");
    QTest::addColumn<int>("tickCount");

    QTest::newRow("vertical, highest count 1") << 0 << 1 << 2;
    QTest::newRow("vertical, highest count 2") << 0 << 2 << 3;
    QTest::newRow("horizontal, highest count 2") << 1 << 2 << 3;
    QTest::newRow("vertical, highest count 3") << 0 << 3 << 4;
    QTest::newRow("vertical, highest count 40: nice numbers' own ticks") << 0 << 40 << 5;
}

// "%d" labels: every tick must fall on a whole number, or labels repeat ("0 0 1 1 2").
void tst_Charts::smallCountsGetWholeTicks()
{
    QFETCH(int, chartTyp);
    QFETCH(int, photosOfOneMaker);
    QFETCH(int, tickCount);

    ChartScene scene;
    QStringList makers(photosOfOneMaker, "Canon");
    makers.append("Nikon");
    QVERIFY2(fill(scene, makers), qPrintable(scene.table.lastError()));
    scene.draw(Maker, plainSettings(chartTyp));

    auto *axis = qobject_cast<QValueAxis *>(
        firstAxis(scene.chart(), chartTyp == 0 ? Qt::Vertical : Qt::Horizontal));
    QVERIFY(axis);
    QCOMPARE(axis->min(), 0.0);
    QCOMPARE(axis->tickCount(), tickCount);
    const qreal step = (axis->max() - axis->min()) / (axis->tickCount() - 1);
    QCOMPARE(step, qreal(qRound(step)));
}

void tst_Charts::valueLabels_data()
{
    QTest::addColumn<int>("chartTyp");
    QTest::addColumn<bool>("wantsValueLabels");
    for (int chartTyp = 0; chartTyp < 4; ++chartTyp) {
        QTest::addRow("%s with labels", kindName(chartTyp)) << chartTyp << true;
        QTest::addRow("%s without labels", kindName(chartTyp)) << chartTyp << false;
    }
}

void tst_Charts::valueLabels()
{
    QFETCH(int, chartTyp);
    QFETCH(bool, wantsValueLabels);

    ChartScene scene;
    QVERIFY2(fill(scene, { "Canon", "Nikon", "Nikon" }), qPrintable(scene.table.lastError()));
    TChartSettings settings = plainSettings(chartTyp);
    settings.wantsValueLabels = wantsValueLabels;
    scene.draw(Maker, settings);

    QAbstractSeries *series = scene.chart()->series().first();
    if (chartTyp < 2) {
        auto *bars = qobject_cast<QAbstractBarSeries *>(series);
        QVERIFY(bars);
        QCOMPARE(bars->isLabelsVisible(), wantsValueLabels);
        if (wantsValueLabels)
            QCOMPARE(bars->labelsFormat(), QStringLiteral("@value"));
    } else {
        auto *pie = qobject_cast<QPieSeries *>(series);
        QVERIFY(pie);
        for (QPieSlice *slice : pie->slices())
            QCOMPARE(slice->isLabelVisible(), wantsValueLabels);
    }
}

void tst_Charts::legendPosition_data()
{
    QTest::addColumn<int>("chartTyp");
    QTest::addColumn<int>("position");
    const QList<QPair<const char *, int>> positions = {
        { "bottom", 0x40 }, { "top", 0x20 }, { "right", 0x2 }, { "left", 0x1 }
    };
    for (int chartTyp : { 0, 2 }) {
        for (const auto &position : positions) {
            QTest::addRow("%s, legend %s", kindName(chartTyp), position.first)
                << chartTyp << position.second;
        }
    }
}

void tst_Charts::legendPosition()
{
    QFETCH(int, chartTyp);
    QFETCH(int, position);

    ChartScene scene;
    QVERIFY2(fill(scene, { "Canon" }), qPrintable(scene.table.lastError()));
    TChartSettings settings = plainSettings(chartTyp);
    settings.chartLegendPos = position;
    scene.draw(Maker, settings);

    QLegend *legend = scene.chart()->legend();
    QVERIFY(legend->isVisible());
    QCOMPARE(int(legend->alignment()), position);
}

void tst_Charts::legendHiddenWithCustomSettings()
{
    QFETCH(int, chartTyp);
    ChartScene scene;
    QVERIFY2(fill(scene, { "Canon" }), qPrintable(scene.table.lastError()));
    TChartSettings settings = customSettings(chartTyp);
    settings.wantsLegend = false;
    scene.draw(Maker, settings);

    QLegend *legend = scene.chart()->legend();
    QVERIFY2(!legend->isVisible(), "wantsLegend off hides the legend");
    QCOMPARE(legend->font(), settings.chartLegendLabelFont);
    QCOMPARE(legend->labelColor(), settings.chartLegendLabelColor);
}

void tst_Charts::customSettingsOnBars_data()
{
    QTest::addColumn<int>("chartTyp");
    QTest::addColumn<int>("orientation");
    for (int chartTyp : { 0, 1 }) {
        QTest::addRow("%s, gradients top to bottom", kindName(chartTyp)) << chartTyp << 2;
        QTest::addRow("%s, gradients left to right", kindName(chartTyp)) << chartTyp << 1;
    }
}

void tst_Charts::customSettingsOnBars()
{
    QFETCH(int, chartTyp);
    QFETCH(int, orientation);

    ChartScene scene;
    QVERIFY2(fill(scene, { "Canon", "Nikon" }), qPrintable(scene.table.lastError()));
    TChartSettings settings = customSettings(chartTyp);
    settings.chartBackgroundGradientOrientation = orientation;
    settings.chartPlotAreaGradientOrientation = orientation;
    scene.draw(Maker, settings);
    QChart *chart = scene.chart();

    QCOMPARE(chart->titleFont(), settings.chartTitleFont);
    QCOMPARE(chart->titleBrush().color(), settings.chartTitleColor);
    QAbstractAxis *valueAxis = firstAxis(chart, chartTyp == 0 ? Qt::Vertical : Qt::Horizontal);
    QAbstractAxis *categoryAxis = firstAxis(chart, chartTyp == 0 ? Qt::Horizontal : Qt::Vertical);
    QVERIFY(valueAxis && categoryAxis);
    QCOMPARE(valueAxis->titleFont(), settings.valueAxisTitleFont);
    QCOMPARE(valueAxis->titleBrush().color(), settings.valueAxisTitleColor);
    for (QAbstractAxis *axis : { valueAxis, categoryAxis }) {
        QCOMPARE(axis->labelsFont(), settings.chartAxisLabelFont);
        QCOMPARE(axis->labelsBrush().color(), settings.chartAxisLabelColor);
    }
    QCOMPARE(chart->legend()->font(), settings.chartLegendLabelFont);
    QCOMPARE(chart->legend()->labelColor(), settings.chartLegendLabelColor);

    auto *series = qobject_cast<QAbstractBarSeries *>(chart->series().first());
    QVERIFY(series && !series->barSets().isEmpty());
    QCOMPARE(series->barSets().first()->color(), settings.chartBarColor);

    const QPointF end = orientation == 2 ? QPointF(0, 1) : QPointF(1, 0);
    const auto *background =
        static_cast<const QLinearGradient *>(chart->backgroundBrush().gradient());
    QVERIFY2(background && background->type() == QGradient::LinearGradient,
             "the background is a linear gradient");
    QCOMPARE(background->start(), QPointF(0, 0));
    QCOMPARE(background->finalStop(), end);
    QCOMPARE(background->coordinateMode(), QGradient::ObjectBoundingMode);
    QCOMPARE(background->stops(),
             (QGradientStops { { 0.0, settings.chartBackgroundGradientFrom },
                               { 1.0, settings.chartBackgroundGradientTo } }));
    const auto *plotArea =
        static_cast<const QLinearGradient *>(chart->plotAreaBackgroundBrush().gradient());
    QVERIFY2(plotArea && plotArea->type() == QGradient::LinearGradient,
             "the plot area is a linear gradient");
    QCOMPARE(plotArea->finalStop(), end);
    QCOMPARE(plotArea->stops(),
             (QGradientStops { { 0.0, settings.chartPlotAreaGradientFrom },
                               { 1.0, settings.chartPlotAreaGradientTo } }));
    QVERIFY(chart->isPlotAreaBackgroundVisible());
}

void tst_Charts::transparentColoursKeepTheirAlpha()
{
    ChartScene scene;
    QVERIFY2(fill(scene, { "Canon" }), qPrintable(scene.table.lastError()));
    TChartSettings settings = customSettings(0);
    settings.chartBarColor = QColor(255, 0, 0, 0);
    settings.chartTitleColor = QColor(0, 0, 255, 0);
    settings.chartLegendLabelColor = QColor(0, 128, 0, 64);
    scene.draw(Maker, settings);

    auto *series = qobject_cast<QAbstractBarSeries *>(scene.chart()->series().first());
    QVERIFY(series);
    QCOMPARE(series->barSets().first()->color(), QColor(255, 0, 0, 0));
    QCOMPARE(scene.chart()->titleBrush().color().alpha(), 0);
    QCOMPARE(scene.chart()->legend()->labelColor(), QColor(0, 128, 0, 64));
}

void tst_Charts::customSettingsOnPies_data()
{
    QTest::addColumn<int>("chartTyp");
    QTest::newRow("pie") << 2;
    QTest::newRow("donut") << 3;
}

// Title, legend and gradients reach a pie; the axis fonts have nothing to reach.
void tst_Charts::customSettingsOnPies()
{
    QFETCH(int, chartTyp);
    ChartScene scene;
    QVERIFY2(fill(scene, { "Canon", "Nikon" }), qPrintable(scene.table.lastError()));
    TChartSettings settings = customSettings(chartTyp);
    scene.draw(Maker, settings);
    QChart *chart = scene.chart();

    QCOMPARE(chart->titleFont(), settings.chartTitleFont);
    QCOMPARE(chart->titleBrush().color(), settings.chartTitleColor);
    QCOMPARE(chart->legend()->font(), settings.chartLegendLabelFont);
    QVERIFY(chart->backgroundBrush().gradient());
    QCOMPARE(chart->backgroundBrush().gradient()->stops().last().second,
             settings.chartBackgroundGradientTo);
    QVERIFY(chart->isPlotAreaBackgroundVisible());
    QVERIFY(chart->axes().isEmpty());
    auto *series = qobject_cast<QPieSeries *>(chart->series().first());
    QVERIFY(series);
    for (QPieSlice *slice : series->slices())
        QVERIFY2(slice->labelFont() != settings.chartAxisLabelFont, "no axis font on a slice");
}

// Two records that differ only in what wantsCustomThemeSettings guards give the same chart.
void tst_Charts::customSettingsOffChangeNothing()
{
    QFETCH(int, chartTyp);
    ChartScene first;
    QVERIFY2(fill(first, { "Canon", "Nikon" }), qPrintable(first.table.lastError()));
    first.draw(Maker, plainSettings(chartTyp));
    TChartSettings changed = customSettings(chartTyp);
    changed.wantsCustomThemeSettings = false;
    QChartView secondView;
    QTableView secondTable;
    StatisticController second(*Statistics::byKey("maker"), first.table.database(), &secondView,
                               &secondTable, changed, nullptr);

    QChart *a = first.chart();
    QChart *b = secondView.chart();
    QCOMPARE(b->titleFont(), a->titleFont());
    QCOMPARE(b->titleBrush(), a->titleBrush());
    QCOMPARE(b->legend()->font(), a->legend()->font());
    QCOMPARE(b->legend()->labelColor(), a->legend()->labelColor());
    QCOMPARE(b->backgroundBrush(), a->backgroundBrush());
    QCOMPARE(b->plotAreaBackgroundBrush(), a->plotAreaBackgroundBrush());
    QCOMPARE(b->isPlotAreaBackgroundVisible(), a->isPlotAreaBackgroundVisible());
    QCOMPARE(b->axes().size(), a->axes().size());
    for (int i = 0; i < a->axes().size(); ++i) {
        QCOMPARE(b->axes().at(i)->labelsFont(), a->axes().at(i)->labelsFont());
        QCOMPARE(b->axes().at(i)->labelsBrush(), a->axes().at(i)->labelsBrush());
        QCOMPARE(b->axes().at(i)->titleFont(), a->axes().at(i)->titleFont());
        QCOMPARE(b->axes().at(i)->titleBrush(), a->axes().at(i)->titleBrush());
    }
    if (chartTyp < 2) {
        auto *barsA = qobject_cast<QAbstractBarSeries *>(a->series().first());
        auto *barsB = qobject_cast<QAbstractBarSeries *>(b->series().first());
        QCOMPARE(barsB->barSets().first()->color(), barsA->barSets().first()->color());
        QVERIFY(barsB->barSets().first()->color() != changed.chartBarColor);
    }
}

void tst_Charts::pieLabelsHaveOneDecimal_data()
{
    QTest::addColumn<int>("chartTyp");
    QTest::addColumn<QStringList>("makers");
    QTest::addColumn<QStringList>("legend");
    QTest::addColumn<QStringList>("labels");

    for (int chartTyp : { 2, 3 }) {
        QTest::addRow("%s, one of three", kindName(chartTyp))
            << chartTyp << QStringList { "Canon", "Nikon", "Nikon" }
            << QStringList { "Canon", "Nikon" } << QStringList { "33.3%", "66.7%" };
        QTest::addRow("%s, one of seven", kindName(chartTyp))
            << chartTyp << QStringList { "A", "B", "B", "B", "B", "B", "B" }
            << QStringList { "A", "B" } << QStringList { "14.3%", "85.7%" };
        QTest::addRow("%s, one category", kindName(chartTyp))
            << chartTyp << QStringList { "Sony" } << QStringList { "Sony" }
            << QStringList { "100.0%" };
    }
}

void tst_Charts::pieLabelsHaveOneDecimal()
{
    QFETCH(int, chartTyp);
    QFETCH(QStringList, makers);
    QFETCH(QStringList, legend);
    QFETCH(QStringList, labels);

    ChartScene scene;
    QVERIFY2(fill(scene, makers), qPrintable(scene.table.lastError()));
    scene.draw(Maker, plainSettings(chartTyp));
    QCOMPARE(legendLabels(scene.chart()), legend);
    QCOMPARE(sliceLabels(scene.chart()), labels);
}

void tst_Charts::unexpectedRecordValuesStillDraw_data()
{
    QTest::addColumn<int>("chartTyp");
    QTest::addColumn<int>("chartTheme");
    QTest::addColumn<int>("chartLegendPos");
    for (int chartTyp = 0; chartTyp < 4; ++chartTyp) {
        QTest::addRow("%s, theme 99", kindName(chartTyp)) << chartTyp << 99 << 0x40;
        QTest::addRow("%s, theme -1", kindName(chartTyp)) << chartTyp << -1 << 0x40;
        QTest::addRow("%s, legend position 0", kindName(chartTyp)) << chartTyp << 0 << 0;
        QTest::addRow("%s, legend centred", kindName(chartTyp)) << chartTyp << 0 << 0x84;
    }
}

// The record is not checked: odd values must still give a chart, drawn without a crash.
void tst_Charts::unexpectedRecordValuesStillDraw()
{
    QFETCH(int, chartTyp);
    QFETCH(int, chartTheme);
    QFETCH(int, chartLegendPos);

    ChartScene scene;
    QVERIFY2(fill(scene, { "Canon", "Nikon" }), qPrintable(scene.table.lastError()));
    TChartSettings settings = plainSettings(chartTyp);
    settings.chartTheme = chartTheme;
    settings.chartLegendPos = chartLegendPos;
    scene.draw(Maker, settings);
    scene.chartView.resize(400, 300);
    const QImage image = scene.chartView.grab().toImage();
    QVERIFY(!image.isNull());
    QCOMPARE(scene.chart()->series().size(), 1);
    if (chartTyp < 2)
        QCOMPARE(firstBarSetValues(scene.chart()).size(), 2);
    else
        QCOMPARE(sliceValues(scene.chart()).size(), 2);
}

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    // Fonts are measured at 96 dpi whatever the screen reports, as QtTest's own main() does.
    app.setAttribute(Qt::AA_Use96Dpi, true);
    tst_Charts test;
    return testutils::runTestObjects(app.arguments(), { &test });
}

#include "tst_charts.moc"
