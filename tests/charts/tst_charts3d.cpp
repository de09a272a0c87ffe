// The 3-D date graph itself, which needs an OpenGL context: the rows it is given, its axes and
// theme, the camera that follows the user and survives a refresh, and the image it renders.

#include "chartdate3d.h"
#include "chartsfixture.h"

#include "testrunner.h"

#include <Q3DBars>
#include <Q3DCamera>
#include <Q3DScene>
#include <QApplication>
#include <QBar3DSeries>
#include <QBarDataProxy>
#include <QCategory3DAxis>
#include <QDir>
#include <QPointer>
#include <QTest>
#include <QVBoxLayout>
#include <QValue3DAxis>
#include <QWidget>

using namespace chartsfixture;

namespace {

struct Page
{
    QWidget widget;
    QVBoxLayout *layout = new QVBoxLayout(&widget);
    Page() { widget.resize(900, 700); }
};

QList<float> proxyRow(Q3DBars *graph, int row)
{
    QList<float> values;
    const QBarDataRow *data = graph->seriesList().first()->dataProxy()->rowAt(row);
    for (const QBarDataItem &item : *data)
        values.append(item.value());
    return values;
}

} // namespace

class tst_Charts3D : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void graphShowsTheRows();
    void graphLook_data();
    void graphLook();
    void valueAxisHasWholeSteps_data();
    void valueAxisHasWholeSteps();
    void emptyTableGivesEmptyGraph();
    void cameraFollowsTheUserAndSurvivesRefresh();
    void refreshReplacesGraphAndAxes();
    void rendersIntoImage_data();
    void rendersIntoImage();
    void noImageWithoutGraph();
};

void tst_Charts3D::initTestCase()
{
    if (!ChartDate3D::openGLAvailable())
        QSKIP("no OpenGL context on this display; the graph cannot be made");
}

void tst_Charts3D::graphShowsTheRows()
{
    PhotoTable table;
    QVERIFY2(table.isReady(), qPrintable(table.lastError()));
    QVERIFY2(table.insertDates(
                 { "2019:05:01 08:00:00", "2019:05:02 08:00:00", "2022:12:24 18:30:00", "n.a." }),
             qPrintable(table.lastError()));
    Page page;
    ChartDate3D chart(table.database(), page.layout, Q3DTheme::ThemeQt, 30, 20, 150, nullptr);

    Q3DBars *graph = chart.graph();
    QVERIFY(graph);
    QCOMPARE(page.layout->count(), 1);
    QVERIFY2(page.layout->itemAt(0)->widget(), "the graph sits in a window container");
    QCOMPARE(graph->seriesList().size(), 1);
    QBarDataProxy *proxy = graph->seriesList().first()->dataProxy();
    QCOMPARE(proxy->rowCount(), 4);
    QCOMPARE(proxy->rowLabels(), (QStringList { "2019", "2020", "2021", "2022" }));
    QCOMPARE(proxy->columnLabels().size(), 12);
    QCOMPARE(proxy->columnLabels().first(), QStringLiteral("January"));
    QList<float> may2019(12, 0);
    may2019[4] = 2;
    QCOMPARE(proxyRow(graph, 0), may2019);
    QCOMPARE(proxyRow(graph, 1), QList<float>(12, 0));
    QCOMPARE(proxyRow(graph, 2), QList<float>(12, 0));
    QCOMPARE(graph->rowAxis()->title(), QStringLiteral("Year"));
    QCOMPARE(graph->columnAxis()->title(), QStringLiteral("Month"));
    QVERIFY(graph->rowAxis()->isTitleVisible());
    QVERIFY(graph->columnAxis()->isTitleVisible());
    QCOMPARE(graph->valueAxis()->title(), QStringLiteral("times used"));
    QVERIFY(graph->valueAxis()->isTitleVisible());
    QCOMPARE(graph->valueAxis()->labelFormat(), QStringLiteral("%d"));
    QCOMPARE(graph->valueAxis()->segmentCount(), 2); // whole steps up to the highest count
    QCOMPARE(graph->rowAxis()->labelAutoRotation(), 30.0f);
    QCOMPARE(graph->columnAxis()->labelAutoRotation(), 30.0f);
}

void tst_Charts3D::graphLook_data()
{
    QTest::addColumn<int>("theme");
    QTest::newRow("Qt") << int(Q3DTheme::ThemeQt);
    QTest::newRow("Ebony") << int(Q3DTheme::ThemeEbony);
    QTest::newRow("Retro") << int(Q3DTheme::ThemeRetro);
}

void tst_Charts3D::graphLook()
{
    QFETCH(int, theme);
    PhotoTable table;
    QVERIFY2(table.isReady(), qPrintable(table.lastError()));
    QVERIFY2(table.insertDates({ "2023:03:14 10:11:12" }), qPrintable(table.lastError()));
    Page page;
    ChartDate3D chart(table.database(), page.layout, Q3DTheme::Theme(theme), 30, 20, 150, nullptr);
    Q3DBars *graph = chart.graph();
    QVERIFY(graph);

    Q3DTheme *active = graph->activeTheme();
    QCOMPARE(int(active->type()), theme);
    QVERIFY(active->isBackgroundEnabled());
    QVERIFY(active->isLabelBackgroundEnabled());
    QCOMPARE(active->font().family(), QStringLiteral("Times New Roman"));
    QCOMPARE(active->font().pointSize(), 18);
    QCOMPARE(graph->shadowQuality(), QAbstract3DGraph::ShadowQualitySoftMedium);
    QVERIFY(graph->isMultiSeriesUniform());
    QCOMPARE(graph->seriesList().first()->mesh(), QAbstract3DSeries::MeshBar);
    QVERIFY2((graph->flags() & Qt::FramelessWindowHint)
                 != (Q3DBars().flags() & Qt::FramelessWindowHint),
             "the frameless hint is toggled");
}

void tst_Charts3D::valueAxisHasWholeSteps_data()
{
    QTest::addColumn<int>("highest");
    QTest::addColumn<int>("segments");
    QTest::addColumn<float>("max");

    QTest::newRow("1 photo: one step") << 1 << 1 << 1.0f;
    QTest::newRow("2 photos: steps of 1") << 2 << 2 << 2.0f;
    QTest::newRow("7 photos: steps of 1") << 7 << 7 << 7.0f;
    QTest::newRow("10 photos: steps of 1") << 10 << 10 << 10.0f;
    QTest::newRow("11 photos: steps of 2 up to 12") << 11 << 6 << 12.0f;
    QTest::newRow("37 photos: steps of 5 up to 40") << 37 << 8 << 40.0f;
    QTest::newRow("1234 photos: steps of 200 up to 1400") << 1234 << 7 << 1400.0f;
}

// The labels are printed with "%d"; every segment must end on a whole number.
void tst_Charts3D::valueAxisHasWholeSteps()
{
    QFETCH(int, highest);
    QFETCH(int, segments);
    QFETCH(float, max);

    PhotoTable table;
    QVERIFY2(table.isReady(), qPrintable(table.lastError()));
    QVERIFY2(
        table.insertDates(QStringList(highest, "2023:03:14 10:11:12") << "2023:03:15 10:11:12"),
        qPrintable(table.lastError()));
    Page page;
    ChartDate3D chart(table.database(), page.layout, Q3DTheme::ThemeQt, 30, 20, 150, nullptr);
    QVERIFY(chart.graph());
    QValue3DAxis *axis = chart.graph()->valueAxis();
    QCOMPARE(axis->segmentCount(), segments);
    QCOMPARE(axis->min(), 0.0f);
    QCOMPARE(axis->max(), max);
}

void tst_Charts3D::emptyTableGivesEmptyGraph()
{
    PhotoTable table;
    QVERIFY2(table.isReady(), qPrintable(table.lastError()));
    Page page;
    ChartDate3D chart(table.database(), page.layout, Q3DTheme::ThemeQt, 30, 20, 150, nullptr);
    QVERIFY(chart.graph());
    QCOMPARE(chart.graph()->seriesList().first()->dataProxy()->rowCount(), 0);
    QCOMPARE(chart.graph()->valueAxis()->title(), QStringLiteral("times used"));
}

void tst_Charts3D::cameraFollowsTheUserAndSurvivesRefresh()
{
    PhotoTable table;
    QVERIFY2(table.isReady(), qPrintable(table.lastError()));
    QVERIFY2(table.insertDates({ "2023:03:14 10:11:12" }), qPrintable(table.lastError()));
    Page page;
    ChartDate3D chart(table.database(), page.layout, Q3DTheme::ThemeQt, 30, 20, 150, nullptr);
    Q3DCamera *camera = chart.graph()->scene()->activeCamera();
    QCOMPARE(camera->xRotation(), 30.0f);
    QCOMPARE(camera->yRotation(), 20.0f);
    QCOMPARE(camera->zoomLevel(), 150.0f);

    // As a mouse drag and the wheel would.
    camera->setXRotation(-55);
    camera->setYRotation(40);
    camera->setZoomLevel(220);
    QCOMPARE(chart.cameraXRotation(), -55.0f);
    QCOMPARE(chart.cameraYRotation(), 40.0f);
    QCOMPARE(chart.cameraZoomFactor(), 220.0f);

    QPointer<Q3DBars> old = chart.graph();
    chart.refreshChart();
    QVERIFY2(old.isNull(), "the refresh replaces the graph");
    Q3DCamera *restored = chart.graph()->scene()->activeCamera();
    QCOMPARE(restored->xRotation(), -55.0f);
    QCOMPARE(restored->yRotation(), 40.0f);
    QCOMPARE(restored->zoomLevel(), 220.0f);
}

void tst_Charts3D::refreshReplacesGraphAndAxes()
{
    PhotoTable table;
    QVERIFY2(table.isReady(), qPrintable(table.lastError()));
    QVERIFY2(table.insertDates({ "2023:03:14 10:11:12", "2023:05:01 10:00:00" }),
             qPrintable(table.lastError()));
    Page page;
    ChartDate3D chart(table.database(), page.layout, Q3DTheme::ThemeQt, 30, 20, 150, nullptr);
    QList<QPointer<QObject>> graphs, axes;
    for (int i = 0; i < 20; ++i) {
        chart.refreshChart();
        graphs.append(chart.graph());
        axes << chart.graph()->valueAxis() << chart.graph()->rowAxis()
             << chart.graph()->columnAxis();
    }
    int aliveGraphs = 0, aliveAxes = 0;
    for (const auto &graph : graphs)
        aliveGraphs += graph ? 1 : 0;
    for (const auto &axis : axes)
        aliveAxes += axis ? 1 : 0;
    QCOMPARE(aliveGraphs, 1);
    QCOMPARE(aliveAxes, 3);
    QCOMPARE(page.layout->count(), 1);
    QCOMPARE(chart.rowLabels().size(), 12);
}

void tst_Charts3D::rendersIntoImage_data()
{
    QTest::addColumn<QStringList>("dates");
    QTest::addColumn<QString>("shot");

    QStringList years;
    for (int year = 2019; year <= 2023; ++year) {
        for (int month = 1; month <= 12; month += year - 2017) {
            for (int photo = 0; photo < month % 5 + 1; ++photo)
                years.append(QString("%1:%2:05 12:00:00").arg(year).arg(month, 2, 10, QChar('0')));
        }
    }
    QStringList months;
    for (int day = 1; day <= 28; day += 3) {
        months << QString("2023:02:%1 09:00:00").arg(day, 2, 10, QChar('0'))
               << QString("2023:08:%1 09:00:00").arg(day + 2, 2, 10, QChar('0'))
               << QString("2023:08:%1 10:00:00").arg(day + 2, 2, 10, QChar('0'));
    }
    QStringList days;
    for (int day = 1; day <= 31; day += 2) {
        for (int photo = 0; photo <= day % 7; ++photo)
            days.append(QString("2023:03:%1 09:00:00").arg(day, 2, 10, QChar('0')));
    }
    QTest::newRow("years by months") << years << "date3d_years";
    QTest::newRow("months of one year by day") << months << "date3d_months";
    QTest::newRow("one month by day") << days << "date3d_days";
}

// With KELVARO_CHART_SHOTS set to a folder the images are kept there for a look.
void tst_Charts3D::rendersIntoImage()
{
    QFETCH(QStringList, dates);
    QFETCH(QString, shot);

    PhotoTable table;
    QVERIFY2(table.isReady(), qPrintable(table.lastError()));
    QVERIFY2(table.insertDates(dates), qPrintable(table.lastError()));
    Page page;
    page.widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page.widget));
    ChartDate3D chart(table.database(), page.layout, Q3DTheme::ThemeQt, -30, 25, 100, nullptr);
    QVERIFY(QTest::qWaitForWindowExposed(chart.graph()));

    const QImage image = chart.renderToImage(6);
    QVERIFY2(!image.isNull(), "the graph renders itself");
    QCOMPARE(image.size(), chart.graph()->size() * chart.graph()->devicePixelRatio());
    const QRgb corner = image.pixel(0, 0);
    int differing = 0;
    for (int y = 0; y < image.height(); y += 4) {
        for (int x = 0; x < image.width(); x += 4)
            differing += image.pixel(x, y) != corner ? 1 : 0;
    }
    QVERIFY2(differing > 1000,
             qPrintable(QString("only %1 pixels differ from the background").arg(differing)));
    const QString shots = qEnvironmentVariable("KELVARO_CHART_SHOTS");
    if (!shots.isEmpty())
        image.save(QDir(shots).filePath(shot + ".png"));
}

void tst_Charts3D::noImageWithoutGraph()
{
    QVERIFY(ChartDate3D(nullptr).renderToImage(6).isNull());
}

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    // Fonts are measured at 96 dpi whatever the screen reports, as QtTest's own main() does.
    app.setAttribute(Qt::AA_Use96Dpi, true);
    tst_Charts3D test;
    return testutils::runTestObjects(app.arguments(), { &test });
}

#include "tst_charts3d.moc"
