// Charts of statistics with many values: the largest rows and one "Others" bar or slice, labels
// shortened in the middle, and what hovering a bar or slice shows.

#include "chartcategories.h"
#include "chartsfixture.h"

#include "testrunner.h"

#include <QAbstractBarSeries>
#include <QApplication>
#include <QBarCategoryAxis>
#include <QBarSet>
#include <QFont>
#include <QPieSeries>
#include <QPieSlice>
#include <QSet>
#include <QTest>
#include <QToolTip>

#include <algorithm>
#include <numeric>

using namespace chartsfixture;

namespace {

// `makers` makers named so that their table order is their number; maker i has 1 + i % 7 photos,
// so that many counts are equal.
QList<Photo> photosOfManyMakers(int makers)
{
    QStringList names;
    for (int i = 0; i < makers; ++i) {
        for (int photo = 0; photo <= i % 7; ++photo)
            names.append(QStringLiteral("Maker %1").arg(i, 4, 10, QLatin1Char('0')));
    }
    return photosOfMakers(names);
}

// The labels and counts a chart draws, bars or slices alike.
QStringList drawnLabels(QChart *chart, int chartTyp)
{
    if (chartTyp >= 2)
        return legendLabels(chart);
    return categories(chart);
}

QList<qreal> drawnCounts(QChart *chart, int chartTyp)
{
    return chartTyp >= 2 ? sliceValues(chart) : firstBarSetValues(chart);
}

QBarCategoryAxis *categoryAxis(QChart *chart)
{
    for (QAbstractAxis *axis : chart->axes()) {
        if (auto *found = qobject_cast<QBarCategoryAxis *>(axis))
            return found;
    }
    return nullptr;
}

} // namespace

class tst_ChartsCategories : public QObject
{
    Q_OBJECT

private slots:
    void selectsLargestRowsInTheirOwnOrder_data();
    void selectsLargestRowsInTheirOwnOrder();
    void shortensInTheMiddle_data();
    void shortensInTheMiddle();
    void shortenedLabelsStayDistinct();
    void hoverTextNamesCountAndShare_data();
    void hoverTextNamesCountAndShare();
    void chartDrawsAtMostTheLimit_data();
    void chartDrawsAtMostTheLimit();
    void tieAtTheCutKeepsTheEarlierRows();
    void groupedAndExposureTimeChartsFollowTheLimit();
    void longLabelIsShortenedOnTheAxis();
    void manyLabelsTurnUpright();
    void hoveringBarOrSliceShowsItsText_data();
    void hoveringBarOrSliceShowsItsText();
};

void tst_ChartsCategories::selectsLargestRowsInTheirOwnOrder_data()
{
    QTest::addColumn<QList<qint64>>("counts");
    QTest::addColumn<int>("limit");
    QTest::addColumn<QList<int>>("kept");
    QTest::addColumn<int>("othersValues");
    QTest::addColumn<qint64>("othersCount");

    QTest::newRow("fewer rows than the limit")
        << QList<qint64> { 4, 1, 9 } << 5 << QList<int> { 0, 1, 2 } << 0 << qint64(0);
    QTest::newRow("exactly the limit")
        << QList<qint64> { 4, 1, 9 } << 3 << QList<int> { 0, 1, 2 } << 0 << qint64(0);
    QTest::newRow("one row more than the limit")
        << QList<qint64> { 4, 1, 9, 2 } << 3 << QList<int> { 0, 2, 3 } << 1 << qint64(1);
    QTest::newRow("largest kept in table order")
        << QList<qint64> { 1, 8, 2, 7, 3, 6 } << 2 << QList<int> { 1, 3 } << 4 << qint64(12);
    QTest::newRow("tie at the cut: earlier rows win")
        << QList<qint64> { 1, 5, 1, 1, 1 } << 3 << QList<int> { 0, 1, 2 } << 2 << qint64(2);
    QTest::newRow("tie at the cut after a larger row")
        << QList<qint64> { 2, 2, 9, 2 } << 2 << QList<int> { 0, 2 } << 2 << qint64(4);
    QTest::newRow("all equal") << QList<qint64> { 3, 3, 3, 3 } << 1 << QList<int> { 0 } << 3
                               << qint64(9);
    QTest::newRow("limit below one counts as one")
        << QList<qint64> { 1, 2 } << 0 << QList<int> { 1 } << 1 << qint64(1);
    QTest::newRow("no rows") << QList<qint64> {} << 30 << QList<int> {} << 0 << qint64(0);
}

void tst_ChartsCategories::selectsLargestRowsInTheirOwnOrder()
{
    QFETCH(QList<qint64>, counts);
    QFETCH(int, limit);
    QFETCH(QList<int>, kept);
    QFETCH(int, othersValues);
    QFETCH(qint64, othersCount);

    const ChartCategories::Selection selection = ChartCategories::select(counts, limit);
    QCOMPARE(selection.keptRows, kept);
    QCOMPARE(selection.othersValues, othersValues);
    QCOMPARE(selection.othersCount, othersCount);
}

void tst_ChartsCategories::shortensInTheMiddle_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("length");
    QTest::addColumn<QString>("shortened");

    QTest::newRow("lens of 41 characters") << "smc PENTAX-DA* 16-50mm F2.8 ED AL [IF] SDM" << 26
                                           << QString::fromUtf8("smc PENTAX-DA* 16…[IF] SDM");
    QTest::newRow("exactly the length stays whole")
        << "EF24-105mm f/4L IS USM 1234" << 27 << "EF24-105mm f/4L IS USM 1234";
    QTest::newRow("one character over") << "ABCDEFGHIJK" << 10 << QString::fromUtf8("ABCDEF…IJK");
    QTest::newRow("short text") << "Canon" << 26 << "Canon";
    QTest::newRow("empty") << "" << 26 << "";
}

void tst_ChartsCategories::shortensInTheMiddle()
{
    QFETCH(QString, text);
    QFETCH(int, length);
    QFETCH(QString, shortened);

    const QString result = ChartCategories::shortenInMiddle(text, length);
    QCOMPARE(result, shortened);
    QVERIFY2(result.size() <= length, qPrintable(result));
    QVERIFY2(result != QString(QChar(0x2026)), "a label is never only the ellipsis");
}

void tst_ChartsCategories::shortenedLabelsStayDistinct()
{
    // Both begin and end alike; shortened to 10 they would be the same label twice.
    const QStringList texts { "Lens A version 1 IS", "Lens A version 2 IS", "Short" };
    const QStringList labels = ChartCategories::shortenLabels(texts, 10);
    QCOMPARE(labels.at(0), QString::fromUtf8("Lens A… IS"));
    QCOMPARE(labels.at(1), QString::fromUtf8("Lens A … IS"));
    QCOMPARE(labels.at(2), QString("Short"));
    QCOMPARE(QSet<QString>(labels.cbegin(), labels.cend()).size(), 3);
}

void tst_ChartsCategories::hoverTextNamesCountAndShare_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<qint64>("count");
    QTest::addColumn<qint64>("total");
    QTest::addColumn<QString>("text");

    QTest::newRow("several photos")
        << "Canon" << qint64(3) << qint64(5) << "Canon\n3 photos, 60.0 % of 5";
    QTest::newRow("one photo") << "JVC" << qint64(1) << qint64(3) << "JVC\n1 photo, 33.3 % of 3";
    QTest::newRow("no photos at all")
        << "n.a." << qint64(0) << qint64(0) << "n.a.\n0 photos, 0.0 % of 0";
}

void tst_ChartsCategories::hoverTextNamesCountAndShare()
{
    QFETCH(QString, label);
    QFETCH(qint64, count);
    QFETCH(qint64, total);
    QFETCH(QString, text);
    QCOMPARE(ChartCategories::hoverText(label, count, total), text);
}

void tst_ChartsCategories::chartDrawsAtMostTheLimit_data()
{
    QTest::addColumn<int>("makers");
    QTest::addColumn<int>("limit");
    QTest::addColumn<int>("chartTyp");

    for (int chartTyp = 0; chartTyp < 4; ++chartTyp) {
        const QByteArray type = QByteArray::number(chartTyp);
        QTest::newRow("exactly N, type " + type) << 30 << 30 << chartTyp;
        QTest::newRow("N+1, type " + type) << 31 << 30 << chartTyp;
        QTest::newRow("10xN, type " + type) << 300 << 30 << chartTyp;
        QTest::newRow("10xN of 5, type " + type) << 50 << 5 << chartTyp;
    }
}

void tst_ChartsCategories::chartDrawsAtMostTheLimit()
{
    QFETCH(int, makers);
    QFETCH(int, limit);
    QFETCH(int, chartTyp);

    ChartScene scene;
    const QList<Photo> photos = photosOfManyMakers(makers);
    QVERIFY2(scene.table.insert(photos), qPrintable(scene.table.lastError()));
    TChartSettings settings = plainSettings(chartTyp);
    settings.maxCategories = limit;
    scene.draw(Maker, settings);

    QCOMPARE(scene.tableView.model()->rowCount(), makers);
    const QStringList labels = drawnLabels(scene.chart(), chartTyp);
    const QList<qreal> counts = drawnCounts(scene.chart(), chartTyp);
    const bool others = makers > limit;
    QCOMPARE(labels.size(), std::min(makers, limit) + (others ? 1 : 0));
    QCOMPARE(counts.size(), labels.size());
    QCOMPARE(std::accumulate(counts.cbegin(), counts.cend(), 0.0), double(photos.size()));
    if (!others) {
        QVERIFY2(!labels.join("").contains("Others"), qPrintable(labels.join(", ")));
        return;
    }
    QCOMPARE(labels.last(), QStringLiteral("Others (%1 values)").arg(makers - limit));

    // Every maker drawn has at least as many photos as any in "Others", and they keep the
    // table's order.
    const QStringList drawn = labels.mid(0, limit);
    QStringList sorted = drawn;
    sorted.sort();
    QCOMPARE(drawn, sorted);
    qreal smallestDrawn = *std::min_element(counts.cbegin(), counts.cend() - 1);
    for (int i = 0; i < makers; ++i) {
        const QString name = QStringLiteral("Maker %1").arg(i, 4, 10, QLatin1Char('0'));
        if (!drawn.contains(name))
            QVERIFY2(1 + i % 7 <= smallestDrawn, qPrintable(name));
    }
}

void tst_ChartsCategories::tieAtTheCutKeepsTheEarlierRows()
{
    ChartScene scene;
    QVERIFY(scene.table.insert(photosOfMakers({ "Alpha", "Alpha", "Bravo", "Charlie", "Delta" })));
    TChartSettings settings = plainSettings(0);
    settings.maxCategories = 2;
    scene.draw(Maker, settings);
    QCOMPARE(categories(scene.chart()), QStringList({ "Alpha", "Bravo", "Others (2 values)" }));
    QCOMPARE(firstBarSetValues(scene.chart()), QList<qreal>({ 2, 1, 2 }));
}

void tst_ChartsCategories::groupedAndExposureTimeChartsFollowTheLimit()
{
    {
        ChartScene scene;
        QVERIFY(scene.table.insert(photosAtIsos({ 100, 200, 200, 800, 3200, 3200, 3200 })));
        TChartSettings settings = plainSettings(0);
        settings.maxCategories = 2;
        scene.draw(ISOG, settings);
        QCOMPARE(scene.tableView.model()->rowCount(), 4);
        QCOMPARE(categories(scene.chart()),
                 QStringList({ "101-400", "1601-6400", "Others (2 values)" }));
        QCOMPARE(firstBarSetValues(scene.chart()), QList<qreal>({ 2, 3, 2 }));
    }
    {
        // 1/250 three times, 1/2 and 1 once each.
        ChartScene scene;
        QVERIFY(scene.table.insert(fivePhotos()));
        TChartSettings settings = plainSettings(2);
        settings.maxCategories = 1;
        scene.draw(ExpTime, settings);
        QCOMPARE(scene.tableView.model()->rowCount(), 3);
        QCOMPARE(legendLabels(scene.chart()), QStringList({ "1/250", "Others (2 values)" }));
        QCOMPARE(sliceValues(scene.chart()), QList<qreal>({ 3, 2 }));
    }
}

void tst_ChartsCategories::longLabelIsShortenedOnTheAxis()
{
    ChartScene scene;
    const QString lens = QStringLiteral("smc PENTAX-DA* 16-50mm F2.8 ED AL [IF] SDM");
    QList<Photo> photos = fivePhotos();
    photos[0].lens = lens;
    QVERIFY(scene.table.insert(photos));
    scene.draw(Lens, plainSettings(1));
    QVERIFY2(categories(scene.chart()).contains(QString::fromUtf8("smc PENTAX-DA* 16…[IF] SDM")),
             qPrintable(categories(scene.chart()).join(" | ")));
    // The table keeps the whole name.
    bool whole = false;
    for (int row = 0; row < scene.tableView.model()->rowCount(); ++row)
        whole = whole || scene.tableView.model()->index(row, 0).data().toString() == lens;
    QVERIFY(whole);
}

void tst_ChartsCategories::manyLabelsTurnUpright()
{
    {
        ChartScene scene;
        scene.chartView.resize(800, 600);
        QVERIFY(scene.table.insert(photosOfManyMakers(30)));
        scene.draw(Maker, plainSettings(0));
        QCOMPARE(categoryAxis(scene.chart())->labelsAngle(), -90);
    }
    {
        ChartScene few;
        few.chartView.resize(800, 600);
        QVERIFY(few.table.insert(photosOfMakers({ "Canon", "Nikon", "Sony" })));
        few.draw(Maker, plainSettings(0));
        QCOMPARE(categoryAxis(few.chart())->labelsAngle(), 0);
    }

    QFont font;
    font.setPixelSize(12);
    QVERIFY(!ChartCategories::needUprightLabels({ "A", "B" }, font, 800));
    QVERIFY(ChartCategories::needUprightLabels(QStringList(60, "Canon EOS 5D"), font, 800));
    QVERIFY(!ChartCategories::needUprightLabels({}, font, 800));
}

void tst_ChartsCategories::hoveringBarOrSliceShowsItsText_data()
{
    QTest::addColumn<int>("chartTyp");
    QTest::addColumn<int>("limit");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("text");

    // Canon 3, Fujifilm 1, Nikon 1.
    QTest::newRow("vertical bar") << 0 << 30 << 0 << "Canon\n3 photos, 60.0 % of 5";
    QTest::newRow("horizontal bar") << 1 << 30 << 2 << "Nikon\n1 photo, 20.0 % of 5";
    QTest::newRow("pie slice") << 2 << 30 << 1 << "Fujifilm\n1 photo, 20.0 % of 5";
    QTest::newRow("donut Others slice")
        << 3 << 1 << 1 << "Others (2 values)\n2 photos, 40.0 % of 5";
}

void tst_ChartsCategories::hoveringBarOrSliceShowsItsText()
{
    QFETCH(int, chartTyp);
    QFETCH(int, limit);
    QFETCH(int, index);
    QFETCH(QString, text);

    ChartScene scene;
    QVERIFY(scene.table.insert(fivePhotos()));
    scene.chartView.resize(600, 400);
    scene.chartView.show();
    QVERIFY(QTest::qWaitForWindowExposed(&scene.chartView));
    TChartSettings settings = plainSettings(chartTyp);
    settings.maxCategories = limit;
    scene.draw(Maker, settings);

    QAbstractSeries *series = scene.chart()->series().first();
    if (auto *bars = qobject_cast<QAbstractBarSeries *>(series)) {
        emit bars->hovered(true, index, bars->barSets().first());
    } else {
        auto *pie = qobject_cast<QPieSeries *>(series);
        QVERIFY(pie);
        emit pie->hovered(pie->slices().at(index), true);
    }
    QTRY_COMPARE(QToolTip::text(), text);
    QVERIFY(QToolTip::isVisible());
    QToolTip::hideText();
}

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    tst_ChartsCategories test;
    return testutils::runTestObjects(app.arguments(), { &test });
}

#include "tst_charts_categories.moc"
