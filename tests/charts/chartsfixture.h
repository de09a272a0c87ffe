#pragma once

#include "chartcontroller.h"
#include "statistic.h"
#include "tchartsettings.h"

#include <QChartView>
#include <QList>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>
#include <QTableView>

#include <memory>

// A photo table filled by the test itself, and small readers of what a chart shows.
namespace chartsfixture {

// One row of DATEIEN; the defaults are a plausible photo, each test changes what it looks at.
struct Photo
{
    QString date = QStringLiteral("2023:03:14 10:11:12");
    QString maker = QStringLiteral("Canon");
    QString model = QStringLiteral("EOS R5");
    QString lens = QStringLiteral("RF24-70mm F2.8 L IS USM");
    double focalLength = 50;
    int iso = 100;
    QString fNumber = QStringLiteral("2.8"); // bound as text, as the scan does
    double exposureTime = 0.004;
    QString exposureTimeText = QStringLiteral("1/250");
    QString meteringMode = QStringLiteral("Multi-segment");
    QString exposureMode = QStringLiteral("Manual");
    // What the scan keeps beside the row; the hour and weekday follow from the date.
    QString path = QStringLiteral("/photos/IMG.CR3");
    QString fileType = QStringLiteral("CR3");
    double focalLength35 = 0; // unknown
};

// The in-memory photo database on the main connection with an empty DATEIEN table. Controllers
// that copied the handle must be gone before this is destroyed.
class PhotoTable
{
public:
    PhotoTable();
    ~PhotoTable();
    PhotoTable(const PhotoTable &) = delete;
    PhotoTable &operator=(const PhotoTable &) = delete;

    bool isReady() const { return ready; }
    QString lastError() const { return error; }
    QSqlDatabase &database() { return db; }

    // All rows in one transaction; false (with lastError()) when one of them fails.
    bool insert(const QList<Photo> &photos);
    // Photos differing only in their date text.
    bool insertDates(const QStringList &dates);

private:
    QSqlDatabase db;
    bool ready = false;
    QString error;
};

// A record with every field defined: the given chart type, theme Light, legend at the bottom,
// nothing custom.
TChartSettings plainSettings(int chartTyp);
// The same with wantsCustomThemeSettings on and fonts and colours no theme uses.
TChartSettings customSettings(int chartTyp);

// The statistics drawn as a table beside a chart, in the order of their tabs; the first eleven
// are the variants below.
QList<const Statistic *> chartedStatistics();
enum Variant { Maker, Model, Lens, FocLen, FocLenG, ISO, ISOG, FNum, ExpTime, MetMode, ExpMode };
inline constexpr int variantCount = 11;
// Constructs (and so draws) the controller of a charted statistic by its index; the grouped ones
// get the ranges.
ChartController *makeController(int variant, QSqlDatabase &db, QChartView *chartView,
                                QTableView *tableView, TChartSettings &settings,
                                const QList<QString> &ranges = {}, QObject *parent = nullptr);

// A photo table, the two views of a statistic tab and the controller drawing into them.
struct ChartScene
{
    PhotoTable table;
    QChartView chartView;
    QTableView tableView;
    std::unique_ptr<ChartController> controller;

    // A new controller, as the main window makes one on every refresh.
    void draw(int variant, TChartSettings settings, const QList<QString> &ranges = {});
    // The same controller with a new record, as after the settings dialog.
    void redraw(TChartSettings settings);
    QChart *chart() const { return chartView.chart(); }
    QString modelError() const;
    QString modelStatement() const;
    ~ChartScene() { controller.reset(); }
};

// Five photos with something to count in every column: makers Canon 3, Fujifilm 1, Nikon 1;
// focal lengths 24.0, 70.0, 400, 70.5, 16; exposure times 1/250 three times, 1/2 and 1.
QList<Photo> fivePhotos();
// Photos that differ only in one column.
QList<Photo> photosOfMakers(const QStringList &makers);
QList<Photo> photosAtFocalLengths(const QList<double> &focalLengths);
QList<Photo> photosAtIsos(const QList<int> &isos);

QStringList categories(QChart *chart);
QList<qreal> firstBarSetValues(QChart *chart);
QStringList sliceLabels(QChart *chart);
QList<qreal> sliceValues(QChart *chart);
QStringList legendLabels(QChart *chart);

} // namespace chartsfixture
