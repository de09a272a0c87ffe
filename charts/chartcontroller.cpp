#include "chartcontroller.h"

#include "chartcategories.h"
#include "chartrowsmodel.h"
#include "namerules.h"

#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QChartView>
#include <QCursor>
#include <QHeaderView>
#include <QHorizontalBarSeries>
#include <QItemSelectionModel>
#include <QLegend>
#include <QLegendMarker>
#include <QLinearGradient>
#include <QPieSeries>
#include <QPieSlice>
#include <QSqlQuery>
#include <QSqlQueryModel>
#include <QTableView>
#include <QToolTip>
#include <QVBarModelMapper>
#include <QVPieModelMapper>
#include <QValueAxis>

#include <numeric>

namespace {

// Orientation 2 (Qt::Vertical) runs top to bottom, every other value left to right.
QBrush gradientBrush(const QColor &from, const QColor &to, int orientation)
{
    QLinearGradient gradient(QPointF(0, 0),
                             orientation == Qt::Vertical ? QPointF(0, 1) : QPointF(1, 0));
    gradient.setColorAt(0.0, from);
    gradient.setColorAt(1.0, to);
    gradient.setCoordinateMode(QGradient::ObjectBoundingMode);
    return QBrush(gradient);
}

} // namespace

ChartController::ChartController(QObject *parent)
    : QObject(parent)
{ }

ChartController::ChartController(QSqlDatabase &db, QChartView *chartView, QTableView *tableView,
                                 TChartSettings &settings, QObject *parent,
                                 const PhotoSelection &selection)
    : QObject(parent)
    , db(db)
    , chartSettings(settings)
    , chartView(chartView)
    , tableView(tableView)
    , selection(selection)
{ }

// The chart belongs to the chart view; the model is ours. A table view that still shows the
// model lets go of it when it is destroyed.
ChartController::~ChartController()
{
    delete limitedRows;
    delete model;
}

void ChartController::setChartSettings(TChartSettings &settings)
{
    chartSettings = settings;
}

void ChartController::refreshChart()
{
    prepareData();
    switch (chartSettings.chartTyp) {
    case 0:
        showBarChart_V();
        break;
    case 1:
        showBarChart_H();
        break;
    case 2:
        showPieChart();
        break;
    case 3:
        showDonutChart();
        break;
    default:
        break;
    }
}

void ChartController::runStatistic(const QString &statement, const QStringList &headers)
{
    auto *newModel = new QSqlQueryModel;
    QSqlQuery query(db);
    selection.apply(NameRulesSql::apply(statement, NameRulesSql::active())).exec(query);
    newModel->setQuery(std::move(query));
    // SQLite does not report the size of a result, so the model would hold only its first block
    // of 256 rows; a statistic with more distinct values would lose its tail.
    while (newModel->canFetchMore())
        newModel->fetchMore();
    for (int column = 0; column < headers.size(); ++column)
        newModel->setHeaderData(column, Qt::Horizontal, headers.at(column), Qt::EditRole);

    QSqlQueryModel *previous = model;
    model = newModel;
    if (tableView)
        showInTable();
    limitChartRows();
    delete previous;
}

void ChartController::limitChartRows()
{
    delete limitedRows;
    limitedRows = nullptr;
    limitedTableRows.clear();
    const int rows = model->rowCount();
    const int countColumn = this->countColumn();
    QList<qint64> counts;
    counts.reserve(rows);
    for (int row = 0; row < rows; ++row)
        counts.append(model->data(model->index(row, countColumn)).toLongLong());
    photoCount = std::accumulate(counts.cbegin(), counts.cend(), qint64(0));
    if (rows <= chartSettings.maxCategories)
        return;

    const ChartCategories::Selection selection =
        ChartCategories::select(counts, chartSettings.maxCategories);
    const int columns = model->columnCount();
    QList<QList<QVariant>> drawn;
    for (int row : selection.keptRows) {
        QList<QVariant> values;
        for (int column = 0; column < columns; ++column)
            values.append(model->data(model->index(row, column)));
        drawn.append(values);
    }
    QList<QVariant> others;
    for (int column = 0; column < columns; ++column)
        others.append(column == countColumn
                          ? QVariant(selection.othersCount)
                          : QVariant(ChartCategories::othersLabel(selection.othersValues)));
    drawn.append(others);
    limitedRows = new ChartRowsModel(drawn, columns);
    limitedTableRows = selection.keptRows;
}

int ChartController::tableRowOfChartRow(int chartRow) const
{
    if (limitedRows)
        return limitedTableRows.value(chartRow, -1);
    return model && chartRow >= 0 && chartRow < model->rowCount() ? chartRow : -1;
}

QAbstractItemModel *ChartController::chartRows() const
{
    if (limitedRows)
        return limitedRows;
    return model;
}

void ChartController::showHoverTexts(QAbstractBarSeries *series)
{
    connect(series, &QAbstractBarSeries::hovered, this, [this](bool entered, int row) {
        if (entered)
            showHoverText(row);
        else
            QToolTip::hideText();
    });
}

void ChartController::showHoverTexts(QPieSeries *series)
{
    connect(series, &QPieSeries::hovered, this, [this, series](QPieSlice *slice, bool entered) {
        if (entered)
            showHoverText(int(series->slices().indexOf(slice)));
        else
            QToolTip::hideText();
    });
}

void ChartController::showHoverText(int row)
{
    const QAbstractItemModel *rows = chartRows();
    const QList<QString> labels = createCategories();
    if (!rows || row < 0 || row >= labels.size())
        return;
    const qint64 count = rows->data(rows->index(row, countColumn())).toLongLong();
    QToolTip::showText(QCursor::pos(),
                       ChartCategories::hoverText(labels.at(row), count, photoCount), chartView);
}

// QTableView::setModel() leaves the old selection model to the caller, and gives each header a
// selection model of its own only to replace it by the table's at once; both would pile up with
// every refresh.
void ChartController::showInTable()
{
    QItemSelectionModel *previousSelection = tableView->selectionModel();
    tableView->setModel(model);
    delete previousSelection;
    for (QHeaderView *header : { tableView->horizontalHeader(), tableView->verticalHeader() }) {
        const auto selections =
            header->findChildren<QItemSelectionModel *>(Qt::FindDirectChildrenOnly);
        for (QItemSelectionModel *selection : selections) {
            if (selection != header->selectionModel())
                delete selection;
        }
    }
}

void ChartController::startNewChart()
{
    chart = new QChart;
    chart->setAnimationOptions(QChart::AllAnimations);
    chart->setTheme(QChart::ChartTheme(chartSettings.chartTheme));
}

void ChartController::showChart()
{
    if (!chartView) {
        // Nothing would own it.
        delete chart;
        return;
    }
    // setChart() hands the previous chart back instead of deleting it.
    QChart *previous = chartView->chart();
    chartView->setChart(chart);
    if (previous != chart)
        delete previous;
}

void ChartController::adoptMapper(QObject *newMapper)
{
    delete mapper;
    mapper = newMapper;
}

QAbstractAxis *ChartController::valueAxis() const
{
    if (!chart || (chartSettings.chartTyp != 0 && chartSettings.chartTyp != 1))
        return nullptr;
    const auto axes = chart->axes(chartSettings.chartTyp == 0 ? Qt::Vertical : Qt::Horizontal);
    return axes.isEmpty() ? nullptr : axes.first();
}

QString ChartController::percentageLabel(qreal share)
{
    return QString("%1%").arg(share * 100, 0, 'f', 1, QLatin1Char(' '));
}

void ChartController::mapBarSets(QAbstractBarSeries *series, int firstColumn, int lastColumn)
{
    auto *barMapper = new QVBarModelMapper(this);
    adoptMapper(barMapper);
    barMapper->setFirstBarSetColumn(firstColumn);
    barMapper->setLastBarSetColumn(lastColumn);
    barMapper->setFirstRow(0);
    barMapper->setRowCount(chartRows()->rowCount());
    barMapper->setSeries(series);
    barMapper->setModel(chartRows());
}

void ChartController::mapSlices(QPieSeries *series, int labelsColumn, int valuesColumn)
{
    auto *pieMapper = new QVPieModelMapper(this);
    adoptMapper(pieMapper);
    pieMapper->setLabelsColumn(labelsColumn);
    pieMapper->setValuesColumn(valuesColumn);
    pieMapper->setFirstRow(0);
    pieMapper->setRowCount(chartRows()->rowCount());
    pieMapper->setSeries(series);
    pieMapper->setModel(chartRows());
}

QValueAxis *ChartController::addBarAxes(QAbstractBarSeries *series, Qt::Alignment categorySide,
                                        Qt::Alignment valueSide)
{
    auto *categoryAxis = new QBarCategoryAxis;
    const QList<QString> categories = createCategories();
    categoryAxis->append(ChartCategories::shortenLabels(categories));
    // Side by side, many labels leave each too little width: turned upright they keep their text.
    if (categorySide == Qt::AlignBottom && chartView
        && ChartCategories::needUprightLabels(categoryAxis->categories(),
                                              categoryAxis->labelsFont(), chartView->width()))
        categoryAxis->setLabelsAngle(-90);
    chart->addAxis(categoryAxis, categorySide);
    series->attachAxis(categoryAxis);
    auto *countAxis = new QValueAxis;
    chart->addAxis(countAxis, valueSide);
    series->attachAxis(countAxis);
    // Without photos the axis spans nothing, and rounding an empty range only yields NaN.
    if (countAxis->max() > countAxis->min())
        countAxis->applyNiceNumbers();
    return countAxis;
}

void ChartController::drawBarChart(QAbstractBarSeries *series, Qt::Alignment categorySide,
                                   Qt::Alignment valueSide)
{
    startNewChart();
    mapBarSets(series, 1, 2);
    chart->addSeries(series);
    QValueAxis *countAxis = addBarAxes(series, categorySide, valueSide);
    countAxis->setLabelFormat("%d");
    // Over a small range the nice ticks fall on halves, which "%d" prints as "0 0 1 1 2".
    const int span = qRound(countAxis->max() - countAxis->min());
    if (span >= 1 && span < countAxis->tickCount() - 1)
        countAxis->setTickCount(span + 1);

    series->setLabelsVisible(chartSettings.wantsValueLabels);
    if (chartSettings.wantsValueLabels)
        series->setLabelsFormat("@value");
    showHoverTexts(series);

    verarbeiteTitleSettings();
    verarbeiteValueAxisTitleSettings();
    verarbeiteLegendSettings();
    if (chartSettings.wantsCustomThemeSettings) {
        verarbeiteCustomTitleSettings();
        verarbeiteCustomAxisSettings();
        verarbeiteCustomGradientSettings();
        verarbeiteCustomBarColorSettings(series->barSets());
    }
    showChart();
}

void ChartController::drawPieChart(qreal holeSize)
{
    startNewChart();
    auto *series = new QPieSeries;
    if (holeSize > 0)
        series->setHoleSize(holeSize);
    mapSlices(series, 0, 1);
    chart->addSeries(series);

    // The custom operations check wantsCustomThemeSettings themselves; the axis one does
    // nothing for a pie. The value-axis title has no place here.
    verarbeiteTitleSettings();
    verarbeiteLegendSettings();
    verarbeiteCustomTitleSettings();
    verarbeiteCustomAxisSettings();
    verarbeiteCustomGradientSettings();
    createPieChartLegendeUndLabels(series);
    series->setLabelsVisible(chartSettings.wantsValueLabels);
    showHoverTexts(series);
    showChart();
}

void ChartController::showBarChart_V()
{
    drawBarChart(new QBarSeries, Qt::AlignBottom, Qt::AlignLeft);
}

void ChartController::showBarChart_H()
{
    drawBarChart(new QHorizontalBarSeries, Qt::AlignLeft, Qt::AlignBottom);
}

void ChartController::showPieChart()
{
    drawPieChart(0);
}

void ChartController::showDonutChart()
{
    drawPieChart(0.35);
}

QList<QString> ChartController::createCategories()
{
    QList<QString> categories;
    const QAbstractItemModel *rows = model ? chartRows() : nullptr;
    const int rowCount = rows ? rows->rowCount() : 0;
    categories.reserve(rowCount);
    for (int row = 0; row < rowCount; ++row)
        categories.append(rows->data(rows->index(row, 0)).toString());
    return categories;
}

// The legend names the categories while the slices show their shares.
void ChartController::createPieChartLegendeUndLabels(QPieSeries *series)
{
    const auto markers = chart->legend()->markers();
    const auto slices = series->slices();
    for (int i = 0; i < slices.size(); ++i) {
        QPieSlice *slice = slices.at(i);
        if (i < markers.size())
            markers.at(i)->setLabel(ChartCategories::shortenInMiddle(slice->label()));
        slice->setLabel(percentageLabel(slice->percentage()));
    }
}

void ChartController::verarbeiteTitleSettings()
{
    const QString title = chartSettings.wantsChartTitle ? chartSettings.chartTitleText : QString();
    const QString filter = filterLine();
    // A chart title is rich text: under a filter the line break is a tag, the texts escaped.
    if (filter.isEmpty())
        chart->setTitle(title);
    else if (title.isEmpty())
        chart->setTitle(filter.toHtmlEscaped());
    else
        chart->setTitle(title.toHtmlEscaped() + QStringLiteral("<br>") + filter.toHtmlEscaped());
}

QString ChartController::filterLine() const
{
    if (selection.filter().filter().isEmpty())
        return {};
    if (model && model->rowCount() == 0)
        return QStringLiteral("No photo matches the filter");
    return selection.filter().filter().description();
}

void ChartController::verarbeiteValueAxisTitleSettings()
{
    if (QAbstractAxis *axis = valueAxis())
        axis->setTitleText(chartSettings.wantsValueAxisTitle ? chartSettings.valueAxisTitleText
                                                             : QString());
}

void ChartController::verarbeiteLegendSettings()
{
    QLegend *legend = chart->legend();
    if (chartSettings.wantsLegend) {
        legend->setAlignment(Qt::Alignment(chartSettings.chartLegendPos));
        legend->show();
    } else {
        legend->hide();
    }
    if (chartSettings.wantsCustomThemeSettings) {
        legend->setFont(chartSettings.chartLegendLabelFont);
        legend->setLabelColor(chartSettings.chartLegendLabelColor);
    }
}

void ChartController::verarbeiteCustomTitleSettings()
{
    if (!chartSettings.wantsCustomThemeSettings)
        return;
    chart->setTitleFont(chartSettings.chartTitleFont);
    chart->setTitleBrush(QBrush(chartSettings.chartTitleColor));
    if (QAbstractAxis *axis = valueAxis()) {
        axis->setTitleFont(chartSettings.valueAxisTitleFont);
        axis->setTitleBrush(QBrush(chartSettings.valueAxisTitleColor));
    }
}

void ChartController::verarbeiteCustomAxisSettings()
{
    if (!chartSettings.wantsCustomThemeSettings
        || (chartSettings.chartTyp != 0 && chartSettings.chartTyp != 1))
        return;
    for (Qt::Orientation orientation : { Qt::Vertical, Qt::Horizontal }) {
        const auto axes = chart->axes(orientation);
        if (axes.isEmpty())
            continue;
        axes.first()->setLabelsBrush(QBrush(chartSettings.chartAxisLabelColor));
        axes.first()->setLabelsFont(chartSettings.chartAxisLabelFont);
    }
}

void ChartController::verarbeiteCustomGradientSettings()
{
    if (!chartSettings.wantsCustomThemeSettings)
        return;
    chart->setBackgroundBrush(gradientBrush(chartSettings.chartBackgroundGradientFrom,
                                            chartSettings.chartBackgroundGradientTo,
                                            chartSettings.chartBackgroundGradientOrientation));
    chart->setPlotAreaBackgroundBrush(gradientBrush(
        chartSettings.chartPlotAreaGradientFrom, chartSettings.chartPlotAreaGradientTo,
        chartSettings.chartPlotAreaGradientOrientation));
    chart->setPlotAreaBackgroundVisible(true);
}

void ChartController::verarbeiteCustomBarColorSettings(QList<QBarSet *> barSets)
{
    if (!chartSettings.wantsCustomThemeSettings || barSets.isEmpty())
        return;
    barSets.first()->setColor(chartSettings.chartBarColor);
}
