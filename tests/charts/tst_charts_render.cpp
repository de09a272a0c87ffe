// Every chart kind drawn and grabbed from its chart view, once the animations are over.

#include "chartsfixture.h"

#include "testrunner.h"

#include <QAbstractAnimation>
#include <QAbstractBarSeries>
#include <QApplication>
#include <QBarSet>
#include <QDir>
#include <QPieSeries>
#include <QPieSlice>
#include <QRegularExpression>
#include <QTest>

using namespace chartsfixture;

namespace {

const char *kindName(int chartTyp)
{
    static const char *names[] = { "vertical bars", "horizontal bars", "pie", "donut" };
    return names[chartTyp];
}

int pixelsOfColour(const QImage &image, QColor colour)
{
    const QRgb wanted = colour.rgb();
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += (image.pixel(x, y) & 0xffffff) == (wanted & 0xffffff) ? 1 : 0;
    }
    return count;
}

// Drives Qt's animations by a clock the test moves, so that "once the animations are over" is a
// step of the test and not a guess at how long the machine takes.
class ManualAnimationClock : public QAnimationDriver
{
public:
    ManualAnimationClock() { install(); }
    ~ManualAnimationClock() override { uninstall(); }

    // Lets pending events start the chart's animations, then moves past their end.
    void finishAnimations()
    {
        for (int pass = 0; pass < 3; ++pass) {
            QCoreApplication::processEvents();
            now += 60000;
            advance();
        }
        QCoreApplication::processEvents();
    }

    qint64 elapsed() const override { return now; }

private:
    qint64 now = 0;
};

} // namespace

class tst_ChartsRender : public QObject
{
    Q_OBJECT

private slots:
    void rendersEveryChartKind_data();
    void rendersEveryChartKind();
};

void tst_ChartsRender::rendersEveryChartKind_data()
{
    QTest::addColumn<int>("variant");
    QTest::addColumn<int>("chartTyp");
    QTest::addColumn<bool>("custom");
    for (int chartTyp = 0; chartTyp < 4; ++chartTyp)
        QTest::addRow("maker, %s, custom look", kindName(chartTyp))
            << int(Maker) << chartTyp << true;
    QTest::newRow("maker, vertical bars, theme only") << int(Maker) << 0 << false;
    QTest::newRow("focal length grouped, horizontal bars") << int(FocLenG) << 1 << true;
    QTest::newRow("exposure time, vertical bars") << int(ExpTime) << 0 << true;
    QTest::newRow("exposure time, donut") << int(ExpTime) << 3 << true;
}

// The chart view grabbed once the animations are over. With KELVARO_CHART_SHOTS set to a
// folder the images are kept there for a look.
void tst_ChartsRender::rendersEveryChartKind()
{
    QFETCH(int, variant);
    QFETCH(int, chartTyp);
    QFETCH(bool, custom);

    PhotoTable table;
    QVERIFY2(table.isReady(), qPrintable(table.lastError()));
    QList<Photo> photos =
        photosOfMakers({ "Canon", "Canon", "Canon", "Nikon", "Nikon", "Fujifilm" });
    const double focalLengths[] = { 16, 35, 50, 85, 200, 800 };
    const char *times[] = { "1/250", "1/250", "1/60", "1/60", "1/8", "1" };
    for (int i = 0; i < photos.size(); ++i) {
        photos[i].focalLength = focalLengths[i];
        photos[i].exposureTimeText = times[i];
        photos[i].exposureTime = i < 2 ? 0.004 : i < 4 ? 1 / 60.0 : i < 5 ? 0.125 : 1;
    }
    QVERIFY2(table.insert(photos), qPrintable(table.lastError()));

    ManualAnimationClock clock;
    QChartView view;
    view.resize(800, 500);
    view.show();
    QTableView tableView;
    TChartSettings settings = custom ? customSettings(chartTyp) : plainSettings(chartTyp);
    std::unique_ptr<ChartController> controller(
        makeController(variant, table.database(), &view, &tableView, settings));
    clock.finishAnimations();
    const QImage image = view.grab().toImage();
    QVERIFY(!image.isNull());
    QCOMPARE(image.size(), view.size() * image.devicePixelRatio());

    QChart *chart = view.chart();
    QColor seriesColour;
    if (auto *bars = qobject_cast<QAbstractBarSeries *>(chart->series().first()))
        seriesColour = bars->barSets().first()->color();
    else
        seriesColour =
            qobject_cast<QPieSeries *>(chart->series().first())->slices().first()->color();
    const int pixels = pixelsOfColour(image, seriesColour);
    QVERIFY2(pixels > 500,
             qPrintable(QString("only %1 pixels of the first series' colour %2")
                            .arg(pixels)
                            .arg(seriesColour.name())));

    const QString shots = qEnvironmentVariable("KELVARO_CHART_SHOTS");
    if (!shots.isEmpty()) {
        QString name = QString(QTest::currentDataTag()).replace(QRegularExpression("[^a-z]+"), "_");
        image.save(QDir(shots).filePath(name + ".png"));
    }
    controller.reset();
}

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    // Fonts are measured at 96 dpi whatever the screen reports, as QtTest's own main() does.
    app.setAttribute(Qt::AA_Use96Dpi, true);
    tst_ChartsRender test;
    return testutils::runTestObjects(app.arguments(), { &test });
}

#include "tst_charts_render.moc"
