#include "chartcontroller.h"

#include "chartcategories.h"
#include "chartrowsmodel.h"
#include "namerules.h"

#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QChartView>
#include <QCursor>
#include <QFontMetrics>
#include <QGraphicsSimpleTextItem>
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

#include <algorithm>

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
                                 const PhotoSelection &selection, const ComparedPeriods &comparison)
    : QObject(parent)
    , db(db)
    , chartSettings(settings)
    , chartView(chartView)
    , tableView(tableView)
    , selection(selection)
    , comparison(comparison)
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
    // Every kind of chart draws its pies alike when it draws two.
    if (comparison.isActive() && (chartSettings.chartTyp == 2 || chartSettings.chartTyp == 3)) {
        drawComparedPies(chartSettings.chartTyp == 3 ? 0.35 : 0);
        return;
    }
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
    if (comparison.isActive()) {
        adoptModel(comparedRows(statement, headers));
        return;
    }
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
    adoptModel(newModel);
}

QAbstractItemModel *ChartController::comparedRows(const QString &statement,
                                                  const QStringList &headers)
{
    StatementRows rows;
    QString error;
    if (!comparison.readSideBySide(statement, db, selection, countColumn(), rows, &error))
        qWarning("The periods could not be compared: %s", qPrintable(error));
    QStringList columns = headers;
    const int count = countColumn();
    if (count < columns.size())
        columns[count] = comparison.labelA();
    columns.insert(count + 1, comparison.labelB());
    return new ChartRowsModel(rows, int(columns.size()), columns);
}

void ChartController::adoptModel(QAbstractItemModel *newModel)
{
    QAbstractItemModel *previous = model;
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
    const int firstCount = countColumn();
    const int lastCount = lastCountColumn();
    // Comparing, a row ranks by both periods' photos together, so that the bars kept are the
    // same for both.
    QList<qint64> counts;
    counts.reserve(rows);
    photoCounts = QList<qint64>(lastCount - firstCount + 1, 0);
    for (int row = 0; row < rows; ++row) {
        qint64 sum = 0;
        for (int column = firstCount; column <= lastCount; ++column) {
            const qint64 count = model->data(model->index(row, column)).toLongLong();
            photoCounts[column - firstCount] += count;
            sum += count;
        }
        counts.append(sum);
    }
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
    for (int column = 0; column < columns; ++column) {
        if (column < firstCount || column > lastCount) {
            others.append(ChartCategories::othersLabel(selection.othersValues));
            continue;
        }
        qint64 sum = 0;
        for (int row = 0; row < rows; ++row) {
            if (!selection.keptRows.contains(row))
                sum += model->data(model->index(row, column)).toLongLong();
        }
        others.append(sum);
    }
    drawn.append(others);
    // Comparing, the bar sets take the periods' names from the headers.
    QStringList headers;
    for (int column = 0; comparison.isActive() && column < columns; ++column)
        headers.append(model->headerData(column, Qt::Horizontal).toString());
    limitedRows = new ChartRowsModel(drawn, columns, headers);
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
    // Each bar set is a period: the first A, the second B.
    connect(series, &QAbstractBarSeries::hovered, this,
            [this, series](bool entered, int row, QBarSet *set) {
                if (entered)
                    showHoverText(row, int(series->barSets().indexOf(set)));
                else
                    QToolTip::hideText();
            });
}

void ChartController::showHoverTexts(QPieSeries *series, int period)
{
    connect(series, &QPieSeries::hovered, this,
            [this, series, period](QPieSlice *slice, bool entered) {
                if (entered)
                    showHoverText(int(series->slices().indexOf(slice)), period);
                else
                    QToolTip::hideText();
            });
}

void ChartController::showHoverText(int row, int period)
{
    const QAbstractItemModel *rows = chartRows();
    const QList<QString> labels = createCategories();
    if (!rows || row < 0 || row >= labels.size() || period < 0 || period >= photoCounts.size())
        return;
    const qint64 count = rows->data(rows->index(row, countColumn() + period)).toLongLong();
    QString label = labels.at(row);
    if (comparison.isActive())
        label += QStringLiteral(" — ") + (period == 0 ? comparison.labelA() : comparison.labelB());
    QToolTip::showText(QCursor::pos(),
                       ChartCategories::hoverText(label, count, photoCounts.at(period)), chartView);
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

void ChartController::drawComparedPies(qreal holeSize)
{
    startNewChart();
    // The slices are the rows' own; a mapper would write the share labels back into the rows.
    adoptMapper(nullptr);
    const QAbstractItemModel *rows = chartRows();
    const QList<QString> labels = createCategories();
    QList<QPieSeries *> pies;
    for (int period = 0; period < 2; ++period) {
        auto *series = new QPieSeries;
        if (holeSize > 0)
            series->setHoleSize(holeSize);
        series->setHorizontalPosition(period == 0 ? 0.25 : 0.75);
        for (int row = 0; row < labels.size(); ++row)
            series->append(labels.at(row),
                           rows->data(rows->index(row, countColumn() + period)).toDouble());
        chart->addSeries(series);
        pies.append(series);
    }

    verarbeiteTitleSettings();
    verarbeiteLegendSettings();
    verarbeiteCustomTitleSettings();
    verarbeiteCustomAxisSettings();
    verarbeiteCustomGradientSettings();
    for (int period = 0; period < 2; ++period) {
        createPieChartLegendeUndLabels(pies.at(period));
        pies.at(period)->setLabelsVisible(chartSettings.wantsValueLabels);
        showHoverTexts(pies.at(period), period);
    }
    // One legend serves both: the theme gives each pie colours of its own, so period B's slices
    // take those of period A's slice of the same row.
    const QList<QPieSlice *> slicesA = pies.at(0)->slices();
    const QList<QPieSlice *> slicesB = pies.at(1)->slices();
    for (int row = 0; row < slicesA.size() && row < slicesB.size(); ++row) {
        slicesB.at(row)->setBrush(slicesA.at(row)->brush());
        slicesB.at(row)->setPen(slicesA.at(row)->pen());
    }
    const auto markersB = chart->legend()->markers(pies.at(1));
    for (QLegendMarker *marker : markersB)
        marker->setVisible(false);

    // Each pie under its period's name, both fitting beside each other as the plot area changes.
    QList<QGraphicsSimpleTextItem *> titles;
    for (int period = 0; period < 2; ++period) {
        auto *title = new QGraphicsSimpleTextItem(periodTitle(period), chart);
        // Tests find each title by its period.
        title->setData(0, period == 0 ? QStringLiteral("A") : QStringLiteral("B"));
        title->setBrush(chart->titleBrush());
        titles.append(title);
    }
    const auto place = [pies, titles](const QRectF &plot) {
        if (plot.width() <= 0 || plot.height() <= 0)
            return;
        const qreal titleRoom = QFontMetricsF(titles.first()->font()).height() + 4;
        // A pie's size is relative to half the smaller side of the plot; each pie has half the
        // width, and a title's room above it.
        const qreal side = std::min(plot.width(), plot.height());
        const qreal size = std::max(
            0.1, std::min({ 0.9, 0.9 * plot.width() / (2 * side), 1 - 2 * titleRoom / side }));
        const qreal radius = side / 2 * size;
        for (int period = 0; period < 2; ++period) {
            QPieSeries *pie = pies.at(period);
            pie->setPieSize(size);
            QGraphicsSimpleTextItem *title = titles.at(period);
            const qreal centreX = plot.left() + plot.width() * pie->horizontalPosition();
            const qreal centreY = plot.top() + plot.height() * pie->verticalPosition();
            title->setPos(centreX - title->boundingRect().width() / 2,
                          centreY - radius - titleRoom);
        }
    };
    connect(chart, &QChart::plotAreaChanged, this, place);
    place(chart->plotArea());
    showChart();
}

QString ChartController::periodTitle(int period) const
{
    const QString label = period == 0 ? comparison.labelA() : comparison.labelB();
    const qint64 photos = period == 0 ? comparison.photosA() : comparison.photosB();
    return photos == 0 ? label + QStringLiteral(" — no photo matches the filter") : label;
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
    if (comparison.isActive()) {
        // The filter's values without its days, which name period A.
        PhotoFilter values = selection.filter().filter();
        values.from = QDate();
        values.to = QDate();
        QString line = values.description();
        if (!line.isEmpty())
            line += QStringLiteral(", ");
        line += comparison.labelA() + QStringLiteral(" compared with ") + comparison.labelB();
        if (comparison.photosA() == 0)
            line += QStringLiteral(". No photo matches the filter in ") + comparison.labelA();
        if (comparison.photosB() == 0)
            line += QStringLiteral(". No photo matches the filter in ") + comparison.labelB();
        return line;
    }
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
    if (showsLegend()) {
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
