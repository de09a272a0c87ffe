// Redrawing: a new chart each time, nothing drawn for an unknown chart type, and everything a
// redraw replaces (chart, model, mapper, selection models) released.

#include "chartsfixture.h"
#include "statisticcontroller.h"

#include "testrunner.h"

#include <QApplication>
#include <QItemSelectionModel>
#include <QLegend>
#include <QPieSeries>
#include <QPieSlice>
#include <QPointer>
#include <QTest>
#include <QVBarModelMapper>
#include <QVPieModelMapper>

using namespace chartsfixture;

namespace {

bool fill(ChartScene &scene, const QStringList &makers)
{
    return scene.table.isReady() && scene.table.insert(photosOfMakers(makers));
}

int countAlive(const QList<QPointer<QObject>> &objects)
{
    int alive = 0;
    for (const QPointer<QObject> &object : objects)
        alive += object ? 1 : 0;
    return alive;
}

void remember(QList<QPointer<QObject>> &objects, QObject *object)
{
    if (!objects.contains(object))
        objects.append(object);
}

} // namespace

class tst_ChartsRefresh : public QObject
{
    Q_OBJECT

private slots:
    void switchingChartKindRedrawsFromScratch();
    void chartTypeOutsideRangeDrawsNothing_data();
    void chartTypeOutsideRangeDrawsNothing();
    void settingsAreCopied();
    void refreshesDoNotLeak();
    void replacedControllersDoNotLeak();
    void defaultFormDrawsWithoutViews();
};

void tst_ChartsRefresh::switchingChartKindRedrawsFromScratch()
{
    ChartScene scene;
    QVERIFY2(fill(scene, { "Canon", "Nikon", "Nikon" }), qPrintable(scene.table.lastError()));
    TChartSettings settings = customSettings(0);
    scene.draw(Maker, settings);

    for (int chartTyp : { 2, 0, 1, 3, 0 }) {
        QPointer<QChart> previous = scene.chart();
        settings.chartTyp = chartTyp;
        scene.redraw(settings);
        QChart *chart = scene.chart();
        QVERIFY2(chart != previous.data(), "every kind change draws a new chart");
        QVERIFY2(previous.isNull(), "the chart drawn before is released");
        QCOMPARE(chart->series().size(), 1);
        if (chartTyp < 2) {
            QCOMPARE(chart->axes().size(), 2);
            QCOMPARE(categories(chart), (QStringList { "Canon", "Nikon" }));
            for (QAbstractAxis *axis : chart->axes())
                QCOMPARE(axis->labelsFont(), settings.chartAxisLabelFont);
        } else {
            QVERIFY2(chart->axes().isEmpty(), "a pie has no axes");
            QVERIFY(qobject_cast<QPieSeries *>(chart->series().first()));
            QVERIFY2(chart->legend()->font() != settings.chartAxisLabelFont,
                     "the axis font does not reach the pie's legend");
            for (QPieSlice *slice : qobject_cast<QPieSeries *>(chart->series().first())->slices())
                QVERIFY2(slice->labelFont() != settings.chartAxisLabelFont,
                         "the axis font does not reach the slices");
        }
    }
}

void tst_ChartsRefresh::chartTypeOutsideRangeDrawsNothing_data()
{
    QTest::addColumn<int>("chartTyp");
    QTest::newRow("minus one") << -1;
    QTest::newRow("four") << 4;
    QTest::newRow("ninety-nine") << 99;
}

void tst_ChartsRefresh::chartTypeOutsideRangeDrawsNothing()
{
    QFETCH(int, chartTyp);
    ChartScene scene;
    QVERIFY2(fill(scene, { "Canon" }), qPrintable(scene.table.lastError()));
    QChart *viewsOwnChart = scene.chart();
    scene.draw(Maker, plainSettings(chartTyp));
    QCOMPARE(scene.chart(), viewsOwnChart);
    QVERIFY2(scene.chart()->series().isEmpty(), "nothing was drawn");
    QCOMPARE(scene.tableView.model()->rowCount(), 1);

    // After a real chart, an unknown kind keeps the chart but still runs the query again.
    scene.redraw(plainSettings(0));
    QChart *barChart = scene.chart();
    QVERIFY2(scene.table.insert(photosOfMakers({ "Nikon" })), qPrintable(scene.table.lastError()));
    scene.redraw(plainSettings(chartTyp));
    QCOMPARE(scene.chart(), barChart);
    QCOMPARE(scene.tableView.model()->rowCount(), 2);
}

void tst_ChartsRefresh::settingsAreCopied()
{
    ChartScene scene;
    QVERIFY2(fill(scene, { "Canon" }), qPrintable(scene.table.lastError()));
    TChartSettings settings = plainSettings(0);
    scene.draw(Maker, settings);
    settings.chartTitleText = "Changed afterwards";
    scene.controller->refreshChart();
    QCOMPARE(scene.chart()->title(), QStringLiteral("Photos"));
    scene.redraw(settings);
    QCOMPARE(scene.chart()->title(), QStringLiteral("Changed afterwards"));
}

// Each refresh replaces chart, model, mapper and the table's selection model; what was replaced
// must be gone, or memory grows with every redraw.
void tst_ChartsRefresh::refreshesDoNotLeak()
{
    ChartScene scene;
    QVERIFY2(fill(scene, { "Canon", "Nikon", "Nikon" }), qPrintable(scene.table.lastError()));
    QList<QPointer<QObject>> charts { scene.chart() };
    QList<QPointer<QObject>> models;
    TChartSettings settings = plainSettings(0);
    scene.draw(Maker, settings);
    const int selectionModels = scene.tableView.findChildren<QItemSelectionModel *>().size();

    for (int i = 0; i < 200; ++i) {
        settings.chartTyp = i % 4;
        scene.redraw(settings);
        remember(charts, scene.chart());
        remember(models, scene.tableView.model());
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    QCOMPARE(charts.size(), 201);
    QCOMPARE(models.size(), 200);
    QCOMPARE(countAlive(charts), 1);
    QCOMPARE(countAlive(models), 1);
    const int mappers = scene.controller->findChildren<QVBarModelMapper *>().size()
        + scene.controller->findChildren<QVPieModelMapper *>().size();
    QCOMPARE(mappers, 1);
    QCOMPARE(scene.tableView.findChildren<QItemSelectionModel *>().size(), selectionModels);
}

// The main window refreshes by destroying a controller and making a new one on the same views.
void tst_ChartsRefresh::replacedControllersDoNotLeak()
{
    ChartScene scene;
    QVERIFY2(fill(scene, { "Canon", "Nikon" }), qPrintable(scene.table.lastError()));
    QList<QPointer<QObject>> charts;
    QList<QPointer<QObject>> models;
    for (int i = 0; i < 200; ++i) {
        scene.draw(Maker, plainSettings(i % 4));
        remember(charts, scene.chart());
        remember(models, scene.tableView.model());
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    QCOMPARE(charts.size(), 200);
    QCOMPARE(models.size(), 200);
    QCOMPARE(countAlive(charts), 1);
    QCOMPARE(countAlive(models), 1);
    QCOMPARE(scene.tableView.findChildren<QItemSelectionModel *>().size(), 1);
}

// Without database and views a refresh has nothing to show; it must neither crash nor keep more
// than the mapper of its one drawing.
void tst_ChartsRefresh::defaultFormDrawsWithoutViews()
{
    StatisticController controller(*Statistics::byKey("maker"), nullptr);
    TChartSettings settings = plainSettings(0);
    for (int chartTyp = 0; chartTyp < 4; ++chartTyp) {
        settings.chartTyp = chartTyp;
        controller.setChartSettings(settings);
        controller.refreshChart();
        QCOMPARE(controller.findChildren<QObject *>(Qt::FindDirectChildrenOnly).size(), 1);
    }
}

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    // Fonts are measured at 96 dpi whatever the screen reports, as QtTest's own main() does.
    app.setAttribute(Qt::AA_Use96Dpi, true);
    tst_ChartsRefresh test;
    return testutils::runTestObjects(app.arguments(), { &test });
}

#include "tst_charts_refresh.moc"
