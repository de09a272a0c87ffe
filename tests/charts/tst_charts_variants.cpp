// The eleven statistics: their statements, headers, categories and counts, the grouped charts'
// ranges and the exposure-time chart's own drawing.

#include "chartcontroller.h"
#include "chartsfixture.h"
#include "rangegroupcontroller.h"

#include "testrunner.h"

#include <QAbstractBarSeries>
#include <QApplication>
#include <QBarSet>
#include <QChartView>
#include <QLegend>
#include <QPieSeries>
#include <QPieSlice>
#include <QRegularExpression>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlQueryModel>
#include <QTableView>
#include <QTest>
#include <QValueAxis>

#include <memory>

using namespace chartsfixture;

namespace {

QStringList headers(const QAbstractItemModel *model)
{
    QStringList texts;
    for (int column = 0; column < model->columnCount(); ++column)
        texts.append(model->headerData(column, Qt::Horizontal).toString());
    return texts;
}

QStringList column(const QAbstractItemModel *model, int column)
{
    QStringList texts;
    for (int row = 0; row < model->rowCount(); ++row)
        texts.append(model->index(row, column).data().toString());
    return texts;
}

const QString focalLengthDefaultStatement = QStringLiteral(
    "SELECT case when FocalLength between 1 and 23 then '0001-0023' when FocalLength between "
    "24 and 70 then '0024-0070' when FocalLength between 71 and 200 then '0071-0200' when "
    "FocalLength between 201 and 600 then '0201-0600' when FocalLength between 601 and 1200 "
    "then '0601-1200' else 'Others' end as Range, count(1) as Count from Dateien group by "
    "Range");

const QString isoDefaultStatement = QStringLiteral(
    "SELECT case when ISO between 1 and 100 then '0001-0100' when ISO between 101 and 400 "
    "then '0101-0400' when ISO between 401 and 1600 then '0401-1600' when ISO between 1601 "
    "and 6400 then '1601-6400' when ISO between 6401 and 12800 then '6401-12800' else "
    "'Others' end as Range, count(1) as Count from Dateien group by Range");

} // namespace

class tst_ChartsVariants : public QObject
{
    Q_OBJECT

private slots:
    void statisticPerVariant_data();
    void statisticPerVariant();
    void emptyTableGivesEmptyChart_data();
    void emptyTableGivesEmptyChart();
    void groupedStatement_data();
    void groupedStatement();
    void malformedRangeIsSkipped_data();
    void malformedRangeIsSkipped();
    void overlappingRangesCountInFirst();
    void focalLengthAtRangeBorders_data();
    void focalLengthAtRangeBorders();
    void isoKeyWithFiveDigits();
    void groupedPieLegendHasNoUnit_data();
    void groupedPieLegendHasNoUnit();
    void defaultRangesAreKept();
    void modelGroupsByMakerAndModel();
    void everyRowReachesTheChart();
};

void tst_ChartsVariants::statisticPerVariant_data()
{
    QTest::addColumn<int>("variant");
    QTest::addColumn<QStringList>("headers");
    QTest::addColumn<QStringList>("categories");
    QTest::addColumn<QList<qreal>>("counts");

    QTest::newRow("maker") << int(Maker) << QStringList { "Maker", "Count" }
                           << QStringList { "Canon", "Fujifilm", "Nikon" }
                           << QList<qreal> { 3, 1, 1 };
    QTest::newRow("model") << int(Model) << QStringList { "Model", "Count" }
                           << QStringList { "EOS R5", "EOS R6", "X-T5", "Z 6" }
                           << QList<qreal> { 2, 1, 1, 1 };
    QTest::newRow("lens") << int(Lens) << QStringList { "Lens", "Count" }
                          << QStringList { "NIKKOR Z 24-70mm f/4 S", "RF100-400mm",
                                           "RF24-70mm F2.8", "XF16mm" }
                          << QList<qreal> { 1, 1, 2, 1 };
    QTest::newRow("focal length") << int(FocLen) << QStringList { "FocalLength", "Count" }
                                  << QStringList { "16", "24", "70", "70.5", "400" }
                                  << QList<qreal> { 1, 1, 1, 1, 1 };
    QTest::newRow("focal length grouped, default ranges")
        << int(FocLenG) << QStringList { "FocalLength", "Count" }
        << QStringList { "1-23mm", "24-70mm", "201-600mm", "Others" }
        << QList<qreal> { 1, 2, 1, 1 };
    QTest::newRow("iso") << int(ISO) << QStringList { "ISO", "Count" }
                         << QStringList { "100", "200", "3200", "6400", "12800" }
                         << QList<qreal> { 1, 1, 1, 1, 1 };
    QTest::newRow("iso grouped, default ranges")
        << int(ISOG) << QStringList { "ISO", "Count" }
        << QStringList { "1-100", "101-400", "1601-6400", "6401-12800" }
        << QList<qreal> { 1, 1, 2, 1 };
    QTest::newRow("f-number") << int(FNum) << QStringList { "FNumber", "Count" }
                              << QStringList { "1.4", "2.8", "4", "8" }
                              << QList<qreal> { 1, 1, 2, 1 };
    QTest::newRow("exposure time, longest first, named by its text")
        << int(ExpTime) << QStringList { "Real Value", "Exposure Time", "Count" }
        << QStringList { "1", "1/2", "1/250" } << QList<qreal> { 1, 1, 3 };
    QTest::newRow("metering mode")
        << int(MetMode) << QStringList { "MeteringMode", "Count" }
        << QStringList { "Center-weighted average", "Multi-segment", "Spot" }
        << QList<qreal> { 1, 2, 2 };
    QTest::newRow("exposure mode") << int(ExpMode) << QStringList { "ExpMode", "Count" }
                                   << QStringList { "Aperture-priority AE", "Manual", "Program AE" }
                                   << QList<qreal> { 1, 3, 1 };
}

void tst_ChartsVariants::statisticPerVariant()
{
    QFETCH(int, variant);
    QFETCH(QStringList, headers);
    QFETCH(QStringList, categories);
    QFETCH(QList<qreal>, counts);

    ChartScene scene;
    QVERIFY2(scene.table.isReady(), qPrintable(scene.table.lastError()));
    QVERIFY2(scene.table.insert(fivePhotos()), qPrintable(scene.table.lastError()));
    scene.draw(variant, plainSettings(0));

    QVERIFY2(scene.modelError().isEmpty(), qPrintable(scene.modelError()));
    QCOMPARE(::headers(scene.tableView.model()), headers);
    QCOMPARE(scene.tableView.model()->rowCount(), categories.size());
    QCOMPARE(chartsfixture::categories(scene.chart()), categories);
    QCOMPARE(firstBarSetValues(scene.chart()), counts);
}

void tst_ChartsVariants::emptyTableGivesEmptyChart_data()
{
    QTest::addColumn<int>("variant");
    QTest::addColumn<int>("chartTyp");
    const char *names[variantCount] = {
        "maker",       "model",    "lens",          "focal length",  "focal length grouped", "iso",
        "iso grouped", "f-number", "exposure time", "metering mode", "exposure mode"
    };
    for (int variant = 0; variant < variantCount; ++variant) {
        for (int chartTyp : { 0, 1, 2, 3 }) {
            QTest::addRow("%s, chart type %d", names[variant], chartTyp) << variant << chartTyp;
        }
    }
}

void tst_ChartsVariants::emptyTableGivesEmptyChart()
{
    QFETCH(int, variant);
    QFETCH(int, chartTyp);

    ChartScene scene;
    QVERIFY2(scene.table.isReady(), qPrintable(scene.table.lastError()));
    QTest::failOnWarning(QRegularExpression("invalid range|NaN"));
    scene.draw(variant, plainSettings(chartTyp));

    QVERIFY2(scene.modelError().isEmpty(), qPrintable(scene.modelError()));
    QCOMPARE(scene.tableView.model()->rowCount(), 0);
    const QStringList texts = headers(scene.tableView.model());
    QVERIFY2(texts.size() >= 2 && texts.last() == "Count",
             qPrintable("headers: " + texts.join(", ")));

    QChart *chart = scene.chart();
    QCOMPARE(chart->series().size(), 1);
    if (chartTyp < 2) {
        QVERIFY(categories(chart).isEmpty());
        const auto valueAxes = chart->axes(chartTyp == 0 ? Qt::Vertical : Qt::Horizontal);
        QCOMPARE(valueAxes.size(), 1);
        auto *axis = qobject_cast<QValueAxis *>(valueAxes.first());
        QVERIFY2(axis, "the count axis is a value axis");
        QVERIFY2(qIsFinite(axis->min()) && qIsFinite(axis->max()) && axis->min() <= axis->max(),
                 qPrintable(QString("range %1 - %2").arg(axis->min()).arg(axis->max())));
        for (qreal value : firstBarSetValues(chart))
            QCOMPARE(value, 0.0);
    } else {
        auto *series = qobject_cast<QPieSeries *>(chart->series().first());
        QVERIFY(series);
        QCOMPARE(series->count(), 0);
        QVERIFY(chart->legend()->markers().isEmpty());
    }
}

void tst_ChartsVariants::groupedStatement_data()
{
    QTest::addColumn<int>("variant");
    QTest::addColumn<QList<QString>>("ranges");
    QTest::addColumn<QString>("statement");

    QTest::newRow("focal length, no ranges: the defaults")
        << int(FocLenG) << QList<QString>() << focalLengthDefaultStatement;
    QTest::newRow("iso, no ranges: the defaults")
        << int(ISOG) << QList<QString>() << isoDefaultStatement;
    QTest::newRow("focal length, own ranges")
        << int(FocLenG) << QList<QString> { "10-20", "21-35" }
        << QStringLiteral("SELECT case when FocalLength between 10 and 20 then '0010-0020' "
                          "when FocalLength between 21 and 35 then '0021-0035' else 'Others' "
                          "end as Range, count(1) as Count from Dateien group by Range");
    QTest::newRow("focal length, blanks and plus signs around the numbers")
        << int(FocLenG) << QList<QString> { " 24 - 70", "+71-200 " }
        << QStringLiteral("SELECT case when FocalLength between 24 and 70 then '0024-0070' "
                          "when FocalLength between 71 and 200 then '0071-0200' else 'Others' "
                          "end as Range, count(1) as Count from Dateien group by Range");
    QTest::newRow("focal length, a malformed range leaves the others")
        << int(FocLenG) << QList<QString> { "24-70", "x-y", "71-200" }
        << QStringLiteral("SELECT case when FocalLength between 24 and 70 then '0024-0070' "
                          "when FocalLength between 71 and 200 then '0071-0200' else 'Others' "
                          "end as Range, count(1) as Count from Dateien group by Range");
    QTest::newRow("iso, nothing usable: one group")
        << int(ISOG) << QList<QString> { "100" }
        << QStringLiteral("SELECT 'Others' as Range, count(1) as Count from Dateien group by "
                          "Range");
    QTest::newRow("iso, leading zeros stay as written, the key is padded anew")
        << int(ISOG) << QList<QString> { "050-00200", "25600-102400" }
        << QStringLiteral("SELECT case when ISO between 050 and 00200 then '0050-0200' when "
                          "ISO between 25600 and 102400 then '25600-102400' else 'Others' end "
                          "as Range, count(1) as Count from Dateien group by Range");
}

void tst_ChartsVariants::groupedStatement()
{
    QFETCH(int, variant);
    QFETCH(QList<QString>, ranges);
    QFETCH(QString, statement);

    ChartScene scene;
    QVERIFY2(scene.table.isReady(), qPrintable(scene.table.lastError()));
    scene.draw(variant, plainSettings(0), ranges);
    QCOMPARE(scene.modelStatement(), statement);
    QVERIFY2(scene.modelError().isEmpty(), qPrintable(scene.modelError()));
}

void tst_ChartsVariants::malformedRangeIsSkipped_data()
{
    QTest::addColumn<QList<QString>>("ranges");
    QTest::addColumn<QStringList>("categories");
    QTest::addColumn<QList<qreal>>("counts");

    // Photos at 16, 24, 70, 70.5, 400 mm.
    QTest::newRow("no hyphen") << QList<QString> { "24", "24-70" }
                               << QStringList { "24-70mm", "Others" } << QList<qreal> { 2, 3 };
    QTest::newRow("two hyphens") << QList<QString> { "1-2-3", "24-70" }
                                 << QStringList { "24-70mm", "Others" } << QList<qreal> { 2, 3 };
    QTest::newRow("empty text") << QList<QString> { "", "24-70" }
                                << QStringList { "24-70mm", "Others" } << QList<qreal> { 2, 3 };
    QTest::newRow("empty second part")
        << QList<QString> { "24-", "300-500" } << QStringList { "300-500mm", "Others" }
        << QList<qreal> { 1, 4 };
    QTest::newRow("decimal part") << QList<QString> { "1.5-30", "300-500" }
                                  << QStringList { "300-500mm", "Others" } << QList<qreal> { 1, 4 };
    QTest::newRow("blank inside a number")
        << QList<QString> { "1 5-30", "300-500" } << QStringList { "300-500mm", "Others" }
        << QList<qreal> { 1, 4 };
    QTest::newRow("minus sign") << QList<QString> { "-5-30", "300-500" }
                                << QStringList { "300-500mm", "Others" } << QList<qreal> { 1, 4 };
    QTest::newRow("digits of another script")
        << QList<QString> { QString::fromUtf8("\u0661\u0666-30"), "300-500" }
        << QStringList { "300-500mm", "Others" } << QList<qreal> { 1, 4 };
    QTest::newRow("sql in a part")
        << QList<QString> { "1-30 then 'x' end; DROP TABLE Dateien; --", "300-500" }
        << QStringList { "300-500mm", "Others" } << QList<qreal> { 1, 4 };
    QTest::newRow("number too large for an int")
        << QList<QString> { "1-99999999999", "300-500" } << QStringList { "300-500mm", "Others" }
        << QList<qreal> { 1, 4 };
    QTest::newRow("nothing usable: every photo is Others")
        << QList<QString> { "abc", "1-x" } << QStringList { "Others" } << QList<qreal> { 5 };
}

void tst_ChartsVariants::malformedRangeIsSkipped()
{
    QFETCH(QList<QString>, ranges);
    QFETCH(QStringList, categories);
    QFETCH(QList<qreal>, counts);

    ChartScene scene;
    QVERIFY2(scene.table.isReady(), qPrintable(scene.table.lastError()));
    QVERIFY2(scene.table.insert(photosAtFocalLengths({ 16, 24, 70, 70.5, 400 })),
             qPrintable(scene.table.lastError()));
    scene.draw(FocLenG, plainSettings(0), ranges);

    QVERIFY2(scene.modelError().isEmpty(), qPrintable(scene.modelError()));
    QCOMPARE(chartsfixture::categories(scene.chart()), categories);
    QCOMPARE(firstBarSetValues(scene.chart()), counts);
    QSqlQuery count(scene.table.database());
    QVERIFY2(count.exec("SELECT count(*) FROM Dateien") && count.next(),
             "the photo table is still there");
    QCOMPARE(count.value(0).toInt(), 5);
}

void tst_ChartsVariants::overlappingRangesCountInFirst()
{
    ChartScene scene;
    QVERIFY2(scene.table.isReady(), qPrintable(scene.table.lastError()));
    QVERIFY2(scene.table.insert(photosAtFocalLengths({ 30, 75, 100, 150 })),
             qPrintable(scene.table.lastError()));
    scene.draw(FocLenG, plainSettings(0), { "50-200", "1-100" });

    QCOMPARE(categories(scene.chart()), (QStringList { "1-100mm", "50-200mm" }));
    QCOMPARE(firstBarSetValues(scene.chart()), (QList<qreal> { 1, 3 }));
}

void tst_ChartsVariants::focalLengthAtRangeBorders_data()
{
    QTest::addColumn<QList<QString>>("ranges");
    QTest::addColumn<QStringList>("categories");
    QTest::addColumn<QList<qreal>>("counts");

    QTest::newRow("24.0 and 70.0 inside 24-70, 70.5 in Others")
        << QList<QString>() << QStringList { "24-70mm", "Others" } << QList<qreal> { 2, 1 };
    QTest::newRow("70.5 in a later range that holds it")
        << QList<QString> { "24-70", "70-80" } << QStringList { "24-70mm", "70-80mm" }
        << QList<qreal> { 2, 1 };
}

void tst_ChartsVariants::focalLengthAtRangeBorders()
{
    QFETCH(QList<QString>, ranges);
    QFETCH(QStringList, categories);
    QFETCH(QList<qreal>, counts);

    ChartScene scene;
    QVERIFY2(scene.table.isReady(), qPrintable(scene.table.lastError()));
    QVERIFY2(scene.table.insert(photosAtFocalLengths({ 24.0, 70.0, 70.5 })),
             qPrintable(scene.table.lastError()));
    scene.draw(FocLenG, plainSettings(0), ranges);

    QCOMPARE(chartsfixture::categories(scene.chart()), categories);
    QCOMPARE(firstBarSetValues(scene.chart()), counts);
}

void tst_ChartsVariants::isoKeyWithFiveDigits()
{
    ChartScene scene;
    QVERIFY2(scene.table.isReady(), qPrintable(scene.table.lastError()));
    QVERIFY2(scene.table.insert(photosAtIsos({ 6400, 10000, 12800, 25600 })),
             qPrintable(scene.table.lastError()));
    scene.draw(ISOG, plainSettings(0));

    QCOMPARE(column(scene.tableView.model(), 0),
             (QStringList { "1601-6400", "6401-12800", "Others" }));
    QCOMPARE(categories(scene.chart()), (QStringList { "1601-6400", "6401-12800", "Others" }));
    QCOMPARE(firstBarSetValues(scene.chart()), (QList<qreal> { 1, 2, 1 }));

    TChartSettings pie = plainSettings(2);
    scene.controller->setChartSettings(pie);
    scene.controller->refreshChart();
    QCOMPARE(legendLabels(scene.chart()), (QStringList { "1601-6400", "6401-12800", "Others" }));
}

void tst_ChartsVariants::groupedPieLegendHasNoUnit_data()
{
    QTest::addColumn<int>("variant");
    QTest::addColumn<int>("chartTyp");
    QTest::addColumn<QStringList>("legend");
    QTest::addColumn<QStringList>("labels");

    // Photos at 16, 24, 70, 70.5, 400 mm with ISO 100, 100, 200, 200, 12800.
    for (int chartTyp : { 2, 3 }) {
        const char *kind = chartTyp == 2 ? "pie" : "donut";
        QTest::addRow("focal length %s", kind)
            << int(FocLenG) << chartTyp << QStringList { "1-23", "24-70", "201-600", "Others" }
            << QStringList { "20.0%", "40.0%", "20.0%", "20.0%" };
        QTest::addRow("iso %s", kind)
            << int(ISOG) << chartTyp << QStringList { "1-100", "101-400", "6401-12800" }
            << QStringList { "40.0%", "40.0%", "20.0%" };
    }
}

void tst_ChartsVariants::groupedPieLegendHasNoUnit()
{
    QFETCH(int, variant);
    QFETCH(int, chartTyp);
    QFETCH(QStringList, legend);
    QFETCH(QStringList, labels);

    ChartScene scene;
    QVERIFY2(scene.table.isReady(), qPrintable(scene.table.lastError()));
    QList<Photo> photos = photosAtFocalLengths({ 16, 24, 70, 70.5, 400 });
    const int isos[] = { 100, 100, 200, 200, 12800 };
    for (int i = 0; i < photos.size(); ++i)
        photos[i].iso = isos[i];
    QVERIFY2(scene.table.insert(photos), qPrintable(scene.table.lastError()));
    scene.draw(variant, plainSettings(chartTyp));

    QCOMPARE(legendLabels(scene.chart()), legend);
    QCOMPARE(sliceLabels(scene.chart()), labels);
}

void tst_ChartsVariants::defaultRangesAreKept()
{
    ChartScene scene;
    QVERIFY2(scene.table.isReady(), qPrintable(scene.table.lastError()));
    TChartSettings settings = plainSettings(0);
    auto *controller = new RangeGroupController(*Statistics::byKey(Statistics::focalLengthGrouped),
                                                scene.table.database(), &scene.chartView,
                                                &scene.tableView, settings, {}, nullptr);
    scene.controller.reset(controller);
    QCOMPARE(controller->prepareSelectStatement(), focalLengthDefaultStatement);
    controller->refreshChart();
    QCOMPARE(scene.modelStatement(), focalLengthDefaultStatement);
}

void tst_ChartsVariants::modelGroupsByMakerAndModel()
{
    ChartScene scene;
    QVERIFY2(scene.table.isReady(), qPrintable(scene.table.lastError()));
    QList<Photo> photos(3);
    photos[0].maker = "Leica";
    photos[0].model = "Q2";
    photos[1].maker = "Panasonic";
    photos[1].model = "Q2";
    photos[2].maker = "Panasonic";
    photos[2].model = "Q2";
    QVERIFY2(scene.table.insert(photos), qPrintable(scene.table.lastError()));
    scene.draw(Model, plainSettings(0));

    QCOMPARE(column(scene.tableView.model(), 0), (QStringList { "Q2", "Q2" }));
    QCOMPARE(column(scene.tableView.model(), 1), (QStringList { "1", "2" }));
    QCOMPARE(firstBarSetValues(scene.chart()), (QList<qreal> { 1, 2 }));
    // QBarCategoryAxis takes each text once, so the second bar goes without a name of its own.
    QCOMPARE(categories(scene.chart()), QStringList { "Q2" });
}

// SQLite does not tell a result's size; the model must not stop at its first block of rows.
void tst_ChartsVariants::everyRowReachesTheChart()
{
    ChartScene scene;
    QVERIFY2(scene.table.isReady(), qPrintable(scene.table.lastError()));
    QList<double> focalLengths;
    for (int i = 0; i < 300; ++i)
        focalLengths.append(10 + i * 0.5);
    QVERIFY2(scene.table.insert(photosAtFocalLengths(focalLengths)),
             qPrintable(scene.table.lastError()));
    // A chart draws 30 values unless told more; this one is told to draw them all.
    TChartSettings settings = plainSettings(0);
    settings.maxCategories = 300;
    scene.draw(FocLen, settings);

    QCOMPARE(scene.tableView.model()->rowCount(), 300);
    QCOMPARE(categories(scene.chart()).size(), 300);
    QCOMPARE(categories(scene.chart()).last(), QStringLiteral("159.5"));
    QCOMPARE(firstBarSetValues(scene.chart()).size(), 300);
}

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    // Fonts are measured at 96 dpi whatever the screen reports, as QtTest's own main() does.
    app.setAttribute(Qt::AA_Use96Dpi, true);
    tst_ChartsVariants test;
    return testutils::runTestObjects(app.arguments(), { &test });
}

#include "tst_charts_variants.moc"
