#pragma once

#include "periodcomparison.h"
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
class QTableView;
class QValueAxis;

// Turns one SQL statistic over the photo table into a table and a Qt Charts chart. A subclass
// supplies the statement and headers (prepareData) and, where needed, its own categories, slice
// labels or drawing; this class holds the drawing of the four chart kinds and applies the tab's
// TChartSettings to every new chart. Comparing two periods, the table holds a count column per
// period, a bar chart a bar series per period and a pie chart two pies.
class ChartController : public QObject
{
    Q_OBJECT

public:
    explicit ChartController(QObject *parent = nullptr);
    // The statistic counts the selected photos (every photo by default), beside those of period B
    // where periods are compared.
    ChartController(QSqlDatabase &db, QChartView *chartView, QTableView *tableView,
                    TChartSettings &settings, QObject *parent,
                    const PhotoSelection &selection = PhotoSelection(),
                    const ComparedPeriods &comparison = ComparedPeriods());
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
    // The column of the statistic's rows that holds the count (period A's when comparing).
    virtual int countColumn() const { return 1; }
    // The user's choice; comparing, two bar sets are told apart by their names in the legend
    // whatever it is.
    bool showsLegend() const
    {
        return chartSettings.wantsLegend
            || (comparison.isActive()
                && (chartSettings.chartTyp == 0 || chartSettings.chartTyp == 1));
    }
    // The last count column: period B's when comparing, else countColumn().
    int lastCountColumn() const { return countColumn() + (comparison.isActive() ? 1 : 0); }
    // Hovering a bar or slice shows its full label, its count and its share of all photos.
    void showHoverTexts(QAbstractBarSeries *series);
    void showHoverTexts(QPieSeries *series, int period = 0);

    QPointer<QChart> chart;
    // The statement's rows as a query model; comparing, the periods' rows side by side.
    QAbstractItemModel *model = nullptr;
    QSqlDatabase db;
    TChartSettings chartSettings;
    QChartView *chartView = nullptr;
    QTableView *tableView = nullptr;
    PhotoSelection selection;
    ComparedPeriods comparison;

private:
    // Under a filter the chart names it beneath its title, or says that no photo matched.
    QString filterLine() const;
    void showInTable();
    void limitChartRows();
    void showHoverText(int row, int period);
    // The periods' rows side by side in a model of their own.
    QAbstractItemModel *comparedRows(const QString &statement, const QStringList &headers);
    // Two pies side by side, each titled with its period.
    void drawComparedPies(qreal holeSize);
    QString periodTitle(int period) const;
    void adoptMapper(QObject *newMapper);
    // Shows the statistic's new rows and releases the previous ones.
    void adoptModel(QAbstractItemModel *newModel);
    void drawBarChart(QAbstractBarSeries *series, Qt::Alignment categorySide,
                      Qt::Alignment valueSide);
    void drawPieChart(qreal holeSize);

    QPointer<QObject> mapper;
    QAbstractItemModel *limitedRows = nullptr; // null while the chart draws every row
    QList<int> limitedTableRows; // the table's rows of limitedRows' rows but its last
    QList<qint64> photoCounts; // per period, the sum of every row's count
};
