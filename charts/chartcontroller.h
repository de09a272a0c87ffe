#pragma once

#include "photoselection.h"
#include "tchartsettings.h"

#include <QChart>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>

class QAbstractAxis;
class QAbstractBarSeries;
class QAbstractItemModel;
class QBarSet;
class QChartView;
class QPieSeries;
class QSqlQueryModel;
class QTableView;
class QValueAxis;

// Turns one SQL statistic over the photo table into a table and a Qt Charts chart. A subclass
// supplies the statement and headers (prepareData) and, where needed, its own categories, slice
// labels or drawing; this class holds the drawing of the four chart kinds and applies the tab's
// TChartSettings to every new chart.
class ChartController : public QObject
{
    Q_OBJECT

public:
    explicit ChartController(QObject *parent = nullptr);
    // The statistic counts the selected photos (every photo by default).
    ChartController(QSqlDatabase &db, QChartView *chartView, QTableView *tableView,
                    TChartSettings &settings, QObject *parent,
                    const PhotoSelection &selection = PhotoSelection());
    ~ChartController() override;

    // Takes over the whole record; the caller redraws with refreshChart().
    void setChartSettings(TChartSettings &settings);

    virtual void prepareData() = 0;
    virtual void refreshChart();

    // The table's row of the chart's bar or slice; -1 for the one that sums the rows not drawn
    // on their own (and for an index out of range).
    int tableRowOfChartRow(int chartRow) const;

protected:
    virtual void showBarChart_V();
    virtual void showBarChart_H();
    virtual void showPieChart();
    virtual void showDonutChart();
    virtual QList<QString> createCategories();
    virtual void createPieChartLegendeUndLabels(QPieSeries *series);
    virtual void verarbeiteTitleSettings();
    virtual void verarbeiteValueAxisTitleSettings();
    virtual void verarbeiteLegendSettings();
    virtual void verarbeiteCustomTitleSettings();
    virtual void verarbeiteCustomAxisSettings();
    virtual void verarbeiteCustomGradientSettings();
    virtual void verarbeiteCustomBarColorSettings(QList<QBarSet *> barSets);

    // The four steps every prepareData() shares: a new query model over the statement, its
    // headers, the table view; the previous model is released.
    void runStatistic(const QString &statement, const QStringList &headers);
    // A new chart with the animations and the record's theme, kept in `chart`.
    void startNewChart();
    // Gives `chart` to the view and releases whatever chart the view showed before.
    void showChart();
    // Model mappers, each replacing the mapper of the previous drawing.
    void mapBarSets(QAbstractBarSeries *series, int firstColumn, int lastColumn);
    void mapSlices(QPieSeries *series, int labelsColumn, int valuesColumn);
    // The category axis (from createCategories()) and the count axis, nice numbers applied.
    QValueAxis *addBarAxes(QAbstractBarSeries *series, Qt::Alignment categorySide,
                           Qt::Alignment valueSide);
    // The axis that carries the counts: vertical for chart type 0, horizontal for type 1.
    QAbstractAxis *valueAxis() const;
    static QString percentageLabel(qreal share);

    // The rows the chart draws: the statistic's own, or, beyond the record's maxCategories, the
    // largest of them and one row that sums the rest. The table always shows every row.
    QAbstractItemModel *chartRows() const;
    // The column of the statistic's rows that holds the count.
    virtual int countColumn() const { return 1; }
    // Hovering a bar or slice shows its full label, its count and its share of all photos.
    void showHoverTexts(QAbstractBarSeries *series);
    void showHoverTexts(QPieSeries *series);

    QPointer<QChart> chart;
    QSqlQueryModel *model = nullptr;
    QSqlDatabase db;
    TChartSettings chartSettings;
    QChartView *chartView = nullptr;
    QTableView *tableView = nullptr;
    PhotoSelection selection;

private:
    // Under a filter the chart names it beneath its title, or says that no photo matched.
    QString filterLine() const;
    void showInTable();
    void limitChartRows();
    void showHoverText(int row);
    void adoptMapper(QObject *newMapper);
    void drawBarChart(QAbstractBarSeries *series, Qt::Alignment categorySide,
                      Qt::Alignment valueSide);
    void drawPieChart(qreal holeSize);

    QPointer<QObject> mapper;
    QAbstractItemModel *limitedRows = nullptr; // null while the chart draws every row
    QList<int> limitedTableRows; // the table's rows of limitedRows' rows but its last
    qint64 photoCount = 0; // the sum of every row's count
};
