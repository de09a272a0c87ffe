// Two periods side by side: a count column per period in the table, a bar set per period named
// with its range, two pies each under its period's name, the "Others" bucket over both, a period
// without photos, and the hover text naming the period.

#include "chartcategories.h"
#include "chartsfixture.h"
#include "periodcomparison.h"
#include "photoselection.h"
#include "statisticcontrollers.h"

#include "testrunner.h"

#include <QAbstractBarSeries>
#include <QApplication>
#include <QBarSet>
#include <QGraphicsSimpleTextItem>
#include <QLegend>
#include <QLegendMarker>
#include <QPieSeries>
#include <QPieSlice>
#include <QTest>
#include <QToolTip>

#include <memory>

using namespace chartsfixture;

namespace {

QDate firstDay(int year)
{
    return QDate(year, 1, 1);
}

QDate lastDay(int year)
{
    return QDate(year, 12, 31);
}

PhotoFilter year(int year)
{
    PhotoFilter filter;
    filter.from = firstDay(year);
    filter.to = lastDay(year);
    return filter;
}

// Photos of these makers, all taken in one year.
QList<Photo> photosIn(int year, const QStringList &makers)
{
    QList<Photo> photos = photosOfMakers(makers);
    for (Photo &photo : photos)
        photo.date = QStringLiteral("%1:05:06 07:08:09").arg(year);
    return photos;
}

QStringList headers(const QAbstractItemModel *model)
{
    QStringList texts;
    for (int column = 0; model && column < model->columnCount(); ++column)
        texts << model->headerData(column, Qt::Horizontal).toString();
    return texts;
}

// "Canon 2 1; Nikon 1 0": every row of the table, its cells joined.
QString tableText(const QAbstractItemModel *model)
{
    QStringList rows;
    for (int row = 0; model && row < model->rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < model->columnCount(); ++column)
            cells << model->index(row, column).data().toString();
        rows << cells.join(QLatin1Char(' '));
    }
    return rows.join(QStringLiteral("; "));
}

QAbstractBarSeries *barSeries(QChart *chart)
{
    return chart->series().isEmpty() ? nullptr
                                     : qobject_cast<QAbstractBarSeries *>(chart->series().first());
}

QStringList barSetLabels(QChart *chart)
{
    QStringList labels;
    if (QAbstractBarSeries *series = barSeries(chart)) {
        for (QBarSet *set : series->barSets())
            labels << set->label();
    }
    return labels;
}

QList<qreal> barValues(QChart *chart, int set)
{
    QList<qreal> values;
    QAbstractBarSeries *series = barSeries(chart);
    if (!series || set >= series->barSets().size())
        return values;
    for (int i = 0; i < series->barSets().at(set)->count(); ++i)
        values << series->barSets().at(set)->at(i);
    return values;
}

QList<QPieSeries *> pies(QChart *chart)
{
    QList<QPieSeries *> found;
    for (QAbstractSeries *series : chart->series()) {
        if (auto *pie = qobject_cast<QPieSeries *>(series))
            found << pie;
    }
    return found;
}

QList<qreal> sliceValuesOf(QPieSeries *pie)
{
    QList<qreal> values;
    for (QPieSlice *slice : pie->slices())
        values << slice->value();
    return values;
}

QStringList visibleLegendLabels(QChart *chart)
{
    QStringList labels;
    for (QLegendMarker *marker : chart->legend()->markers()) {
        if (marker->isVisible())
            labels << marker->label();
    }
    return labels;
}

QString periodTitle(QChart *chart, const QString &name)
{
    for (QGraphicsItem *item : chart->childItems()) {
        auto *text = dynamic_cast<QGraphicsSimpleTextItem *>(item);
        if (text && text->data(0).toString() == name)
            return text->text();
    }
    return QStringLiteral("(no title %1)").arg(name);
}

// A statistic's tab comparing period A (the filter) with period B.
struct ComparedScene
{
    PhotoTable table;
    QChartView chartView;
    QTableView tableView;
    PhotoSelection periodA;
    ComparedPeriods periods;
    std::unique_ptr<ChartController> controller;

    bool draw(const QString &key, TChartSettings settings, const PhotoFilter &filterA,
              const PeriodComparison &comparison)
    {
        QString error;
        if (!periodA.select(table.database(), StatementFilter(filterA), &error)
            || !periods.select(table.database(), periodA, comparison, &error)) {
            qWarning("selecting: %s", qPrintable(error));
            return false;
        }
        controller.reset(createStatisticController(*Statistics::byKey(key), table.database(),
                                                   &chartView, &tableView, settings, {}, nullptr,
                                                   periodA, periods));
        return controller != nullptr;
    }
    QChart *chart() const { return chartView.chart(); }
    ~ComparedScene() { controller.reset(); }
};

const PeriodComparison with2022 { true, firstDay(2022), lastDay(2022) };

} // namespace

class tst_ChartsCompare : public QObject
{
    Q_OBJECT

private slots:
    void barsSideBySide_data();
    void barsSideBySide();
    void piesSideBySide_data();
    void piesSideBySide();
    void emptyPeriodDrawsNothingAndSaysSo_data();
    void emptyPeriodDrawsNothingAndSaysSo();
    void othersBucketChosenByBothPeriodsTogether();
    void exposureTimesSideBySide();
    void hoverNamesThePeriod();

private:
    // 2023: Canon twice, Nikon once; 2022: Canon once, Sony twice.
    bool addTwoYears(PhotoTable &table)
    {
        return table.insert(photosIn(2023, { "Canon", "Canon", "Nikon" }))
            && table.insert(photosIn(2022, { "Canon", "Sony", "Sony" }));
    }
};

void tst_ChartsCompare::barsSideBySide_data()
{
    QTest::addColumn<int>("chartTyp");
    QTest::newRow("vertical bars") << 0;
    QTest::newRow("horizontal bars") << 1;
}

void tst_ChartsCompare::barsSideBySide()
{
    QFETCH(int, chartTyp);
    ComparedScene scene;
    QVERIFY(addTwoYears(scene.table));
    QVERIFY(scene.draw("maker", plainSettings(chartTyp), year(2023), with2022));
    QCOMPARE(headers(scene.tableView.model()), (QStringList { "Maker", "A: 2023", "B: 2022" }));
    // Sony, of period B alone, stands where the statement puts it.
    QCOMPARE(tableText(scene.tableView.model()), QString("Canon 2 1; Nikon 1 0; Sony 0 2"));
    QCOMPARE(barSetLabels(scene.chart()), (QStringList { "A: 2023", "B: 2022" }));
    QCOMPARE(categories(scene.chart()), (QStringList { "Canon", "Nikon", "Sony" }));
    QCOMPARE(barValues(scene.chart(), 0), (QList<qreal> { 2, 1, 0 }));
    QCOMPARE(barValues(scene.chart(), 1), (QList<qreal> { 1, 0, 2 }));
    QCOMPARE(scene.chart()->title(), QString("Photos<br>A: 2023 compared with B: 2022"));
    // The legend names the periods even where the user switched it off.
    TChartSettings noLegend = plainSettings(chartTyp);
    noLegend.wantsLegend = false;
    QVERIFY(scene.draw("maker", noLegend, year(2023), with2022));
    QVERIFY(scene.chart()->legend()->isVisible());
    QCOMPARE(legendLabels(scene.chart()), (QStringList { "A: 2023", "B: 2022" }));
}

void tst_ChartsCompare::piesSideBySide_data()
{
    QTest::addColumn<int>("chartTyp");
    QTest::newRow("pies") << 2;
    QTest::newRow("donuts") << 3;
}

void tst_ChartsCompare::piesSideBySide()
{
    QFETCH(int, chartTyp);
    ComparedScene scene;
    QVERIFY(addTwoYears(scene.table));
    PhotoFilter canonOrSony = year(2023);
    canonOrSony.makers = QStringList { "Canon", "Sony" };
    QVERIFY(scene.draw("maker", plainSettings(chartTyp), canonOrSony, with2022));
    const QList<QPieSeries *> drawn = pies(scene.chart());
    QCOMPARE(drawn.size(), 2);
    QCOMPARE(sliceValuesOf(drawn.at(0)), (QList<qreal> { 2, 0 }));
    QCOMPARE(sliceValuesOf(drawn.at(1)), (QList<qreal> { 1, 2 }));
    QVERIFY(drawn.at(0)->horizontalPosition() < drawn.at(1)->horizontalPosition());
    QCOMPARE(drawn.at(0)->holeSize() > 0, chartTyp == 3);
    // One legend for both pies: a row has one colour in both, whatever the theme gives each pie.
    for (int row = 0; row < 2; ++row)
        QCOMPARE(drawn.at(1)->slices().at(row)->brush().color(),
                 drawn.at(0)->slices().at(row)->brush().color());
    QVERIFY(drawn.at(0)->slices().at(0)->brush().color()
            != drawn.at(0)->slices().at(1)->brush().color());
    // Each pie titled with its range.
    QCOMPARE(visibleLegendLabels(scene.chart()), (QStringList { "Canon", "Sony" }));
    QCOMPARE(periodTitle(scene.chart(), "A"), QString("A: 2023"));
    QCOMPARE(periodTitle(scene.chart(), "B"), QString("B: 2022"));
    QCOMPARE(scene.chart()->title(),
             QString("Photos<br>Canon, Sony, A: 2023 compared with B: 2022"));
}

void tst_ChartsCompare::emptyPeriodDrawsNothingAndSaysSo_data()
{
    QTest::addColumn<int>("chartTyp");
    QTest::newRow("bars") << 0;
    QTest::newRow("pies") << 2;
}

void tst_ChartsCompare::emptyPeriodDrawsNothingAndSaysSo()
{
    QFETCH(int, chartTyp);
    ComparedScene scene;
    QVERIFY(addTwoYears(scene.table));
    QVERIFY(scene.draw("maker", plainSettings(chartTyp), year(2023),
                       PeriodComparison { true, firstDay(2019), lastDay(2019) }));
    QCOMPARE(tableText(scene.tableView.model()), QString("Canon 2 0; Nikon 1 0"));
    QCOMPARE(scene.chart()->title(),
             QString("Photos<br>A: 2023 compared with B: 2019. No photo matches the filter in "
                     "B: 2019"));
    if (chartTyp == 0) {
        QCOMPARE(barValues(scene.chart(), 1), (QList<qreal> { 0, 0 }));
    } else {
        QCOMPARE(sliceValuesOf(pies(scene.chart()).at(1)), (QList<qreal> { 0, 0 }));
        QCOMPARE(periodTitle(scene.chart(), "B"), QString("B: 2019 — no photo matches the filter"));
        QCOMPARE(periodTitle(scene.chart(), "A"), QString("A: 2023"));
    }
}

// With more rows than the chart draws, a row ranks by both periods' counts added up: the bars
// kept are the same for both periods, and those of a value strong in one period only survive.
void tst_ChartsCompare::othersBucketChosenByBothPeriodsTogether()
{
    ComparedScene scene;
    // 2023: P 5, Q 3, R 2; 2022: Q 1, R 6. Together: P 5, Q 4, R 8.
    QVERIFY(
        scene.table.insert(photosIn(2023, { "P", "P", "P", "P", "P", "Q", "Q", "Q", "R", "R" })));
    QVERIFY(scene.table.insert(photosIn(2022, { "Q", "R", "R", "R", "R", "R", "R" })));
    TChartSettings settings = plainSettings(0);
    settings.maxCategories = 2;
    QVERIFY(scene.draw("maker", settings, year(2023), with2022));
    // Period A alone would keep P and Q, period B alone R and Q.
    QCOMPARE(categories(scene.chart()),
             (QStringList { "P", "R", ChartCategories::othersLabel(1) }));
    QCOMPARE(barValues(scene.chart(), 0), (QList<qreal> { 5, 2, 3 }));
    QCOMPARE(barValues(scene.chart(), 1), (QList<qreal> { 0, 6, 1 }));
    QCOMPARE(barSetLabels(scene.chart()), (QStringList { "A: 2023", "B: 2022" }));
    // The table keeps every row.
    QCOMPARE(tableText(scene.tableView.model()), QString("P 5 0; Q 3 1; R 2 6"));
}

void tst_ChartsCompare::exposureTimesSideBySide()
{
    ComparedScene scene;
    QList<Photo> photos = photosIn(2023, { "Canon", "Canon" });
    photos[1].exposureTime = 0.5;
    photos[1].exposureTimeText = "1/2";
    QList<Photo> earlier = photosIn(2022, { "Canon" });
    earlier[0].exposureTime = 2;
    earlier[0].exposureTimeText = "2";
    QVERIFY(scene.table.insert(photos) && scene.table.insert(earlier));
    QVERIFY(scene.draw("exposureTime", plainSettings(0), year(2023), with2022));
    QCOMPARE(headers(scene.tableView.model()),
             (QStringList { "Real Value", "Exposure Time", "A: 2023", "B: 2022" }));
    QCOMPARE(tableText(scene.tableView.model()), QString("2 2 0 1; 0.5 1/2 1 0; 0.004 1/250 1 0"));
    QCOMPARE(categories(scene.chart()), (QStringList { "2", "1/2", "1/250" }));
    QCOMPARE(barValues(scene.chart(), 0), (QList<qreal> { 0, 1, 1 }));
    QCOMPARE(barValues(scene.chart(), 1), (QList<qreal> { 1, 0, 0 }));
}

void tst_ChartsCompare::hoverNamesThePeriod()
{
    ComparedScene scene;
    QVERIFY(addTwoYears(scene.table));
    QVERIFY(scene.draw("maker", plainSettings(0), year(2023), with2022));
    QAbstractBarSeries *series = barSeries(scene.chart());
    QVERIFY(series);
    scene.chartView.show();
    emit series->hovered(true, 0, series->barSets().at(1));
    QTRY_COMPARE(QToolTip::text(), ChartCategories::hoverText("Canon — B: 2022", 1, 3));
    emit series->hovered(true, 1, series->barSets().at(0));
    QTRY_COMPARE(QToolTip::text(), ChartCategories::hoverText("Nikon — A: 2023", 1, 3));
    QToolTip::hideText();
}

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    tst_ChartsCompare test;
    return testutils::runTestObjects(app.arguments(), { &test });
}

#include "tst_charts_compare.moc"
