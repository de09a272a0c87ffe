#include "chartdate3d.h"

#include "photodatabase.h"

#include <Q3DBars>
#include <Q3DCamera>
#include <Q3DScene>
#include <QBar3DSeries>
#include <QBarDataProxy>
#include <QBarDataRow>
#include <QCategory3DAxis>
#include <QGuiApplication>
#include <QLabel>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QSqlQuery>
#include <QVBoxLayout>
#include <QValue3DAxis>
#include <QVariant>

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

const QList<QString> monthNames = { "January",   "February", "March",    "April",
                                    "May",       "June",     "July",     "August",
                                    "September", "October",  "November", "December" };

qint64 niceStep(float highest)
{
    for (qint64 magnitude = 1;; magnitude *= 10) {
        for (qint64 factor : { 1, 2, 5 }) {
            if (std::ceil(highest / float(factor * magnitude)) <= 10)
                return factor * magnitude;
        }
    }
}

QList<QString> dayLabels()
{
    QList<QString> labels;
    for (int day = 1; day <= 31; ++day)
        labels.append(QString::number(day));
    return labels;
}

} // namespace

const QString ChartDate3D::placeholderText =
    QStringLiteral("The 3-D date chart needs OpenGL, which is not available on this display.");

ChartDate3D::ChartDate3D(QObject *parent)
    : QObject(parent)
{
    replaceAxes();
}

ChartDate3D::ChartDate3D(QSqlDatabase &db, QVBoxLayout *layout, Q3DTheme::Theme theme,
                         float cameraX, float cameraY, float cameraZoom, QObject *parent,
                         const PhotoSelection &selection)
    : ChartDate3D(db, layout, theme, cameraX, cameraY, cameraZoom, DaySpan(), parent, selection)
{ }

ChartDate3D::ChartDate3D(QSqlDatabase &db, QVBoxLayout *layout, Q3DTheme::Theme theme,
                         float cameraX, float cameraY, float cameraZoom, const DaySpan &shownDays,
                         QObject *parent, const PhotoSelection &selection)
    : QObject(parent)
    , db(db)
    , selection(selection)
    , layout(layout)
    , theme(theme)
    , cameraX(cameraX)
    , cameraY(cameraY)
    , cameraZoom(cameraZoom)
    , shownDays(shownDays)
{
    refreshChart();
}

void ChartDate3D::refreshChart()
{
    barGraph = nullptr;
    clearLayout();
    // Normally gone with the layout's items; a container taken out of the layout elsewhere must
    // not survive holding axes that are about to be replaced.
    delete container;
    extractDateTimeData();
    createSeries();
    showDateTimeChart();
}

void ChartDate3D::clearLayout()
{
    if (!layout)
        return;
    while (QLayoutItem *item = layout->takeAt(0)) {
        delete item->widget();
        delete item;
    }
}

Q3DBars *ChartDate3D::graph() const
{
    return barGraph;
}

QString ChartDate3D::rowAxisTitle() const
{
    return rowAxis ? rowAxis->title() : QString();
}

QString ChartDate3D::columnAxisTitle() const
{
    return columnAxis ? columnAxis->title() : QString();
}

QDate ChartDate3D::parseExifDate(const QString &text)
{
    // The field read as a QDate: Qt takes "yyyy?MM?dd" with any punctuation for the two '?' when
    // no digit follows the day, so "2023:03:14", "2023-03-14" and "2023/03/14" all count.
    return QVariant(text).toDate();
}

void ChartDate3D::extractDateTimeData()
{
    photosPerDay.clear();
    QSqlQuery query(db);
    query.setForwardOnly(true);
    // Counting per date prefix in SQL gives the same counts as reading every row and saves
    // converting 100,000 texts one by one.
    if (!selection.apply(PhotoDatabase::photosPerDayStatement).exec(query))
        return;
    while (query.next()) {
        const QDate day = parseExifDate(query.value(0).toString());
        if (day.isValid() && shownDays.contains(day))
            photosPerDay[day] += query.value(1).toInt();
    }
}

void ChartDate3D::replaceAxes()
{
    // Axes installed in a graph went with it; these are the ones no graph took.
    delete valueAxis;
    delete rowAxis;
    delete columnAxis;
    valueAxis = new QValue3DAxis(this);
    rowAxis = new QCategory3DAxis(this);
    columnAxis = new QCategory3DAxis(this);
}

void ChartDate3D::createSeries()
{
    replaceAxes();
    rowCounts.clear();
    rowLabelList.clear();
    columnLabelList.clear();
    valueAxis->setTitle(QStringLiteral("times used"));
    valueAxis->setTitleVisible(true);
    valueAxis->setLabelFormat(QStringLiteral("%d"));
    rowAxis->setLabelAutoRotation(30);
    columnAxis->setLabelAutoRotation(30);
    if (photosPerDay.isEmpty())
        return;

    const QDate first = photosPerDay.firstKey();
    const QDate last = photosPerDay.lastKey();
    if (first.year() < last.year()) {
        // Every year of the span gets its row, also years without photos.
        for (int year = first.year(); year <= last.year(); ++year) {
            rowCounts.append(QList<float>(12, 0));
            rowLabelList.append(QString::number(year));
        }
        for (auto it = photosPerDay.cbegin(); it != photosPerDay.cend(); ++it)
            rowCounts[it.key().year() - first.year()][it.key().month() - 1] += it.value();
        columnLabelList = monthNames;
        rowAxis->setTitle(QStringLiteral("Year"));
        columnAxis->setTitle(QStringLiteral("Month"));
    } else if (first.month() < last.month()) {
        for (int month = 0; month < 12; ++month)
            rowCounts.append(QList<float>(31, 0));
        for (auto it = photosPerDay.cbegin(); it != photosPerDay.cend(); ++it)
            rowCounts[it.key().month() - 1][it.key().day() - 1] += it.value();
        rowLabelList = monthNames;
        columnLabelList = dayLabels();
        rowAxis->setTitle(QStringLiteral("Year ") + QString::number(first.year()));
        columnAxis->setTitle(QStringLiteral("Day"));
    } else {
        rowCounts.append(QList<float>(31, 0));
        for (auto it = photosPerDay.cbegin(); it != photosPerDay.cend(); ++it)
            rowCounts[0][it.key().day() - 1] += it.value();
        rowLabelList.append(monthNames.at(first.month() - 1));
        columnLabelList = dayLabels();
        rowAxis->setTitle(QStringLiteral("Year ") + QString::number(first.year()));
        columnAxis->setTitle(QStringLiteral("Day"));
    }
    rowAxis->setTitleVisible(true);
    columnAxis->setTitleVisible(true);

    float highest = 0;
    for (const QList<float> &counts : std::as_const(rowCounts)) {
        for (float count : counts)
            highest = std::max(highest, count);
    }
    // "%d" labels need whole-numbered segments: the axis ends at the first multiple of a round
    // step (1, 2 or 5 times a power of ten) that holds the highest count in at most ten steps.
    const qint64 step = niceStep(highest);
    const qint64 segments = std::max<qint64>(1, qint64(std::ceil(highest / float(step))));
    valueAxis->setSegmentCount(int(segments));
    valueAxis->setRange(0, float(segments * step));
}

void ChartDate3D::showDateTimeChart()
{
    if (!layout)
        return;
    if (!openGLAvailable()) {
        showPlaceholder();
        return;
    }
    barGraph = new Q3DBars;
    container = QWidget::createWindowContainer(barGraph);
    layout->addWidget(container);
    barGraph->setFlags(barGraph->flags() ^ Qt::FramelessWindowHint);
    barGraph->activeTheme()->setGridEnabled(true);
    setupConnections();

    auto *series = new QBar3DSeries;
    series->setMesh(QAbstract3DSeries::MeshBar);
    for (const QList<float> &counts : std::as_const(rowCounts)) {
        auto *row = new QBarDataRow;
        row->reserve(counts.size());
        for (float count : counts)
            row->append(QBarDataItem(count));
        series->dataProxy()->addRow(row);
    }
    series->dataProxy()->setRowLabels(rowLabelList);
    series->dataProxy()->setColumnLabels(columnLabelList);
    barGraph->addSeries(series);

    barGraph->setValueAxis(valueAxis);
    barGraph->setRowAxis(rowAxis);
    barGraph->setColumnAxis(columnAxis);
    barGraph->scene()->activeCamera()->setCameraPosition(cameraX, cameraY, cameraZoom);
    barGraph->setShadowQuality(QAbstract3DGraph::ShadowQualitySoftMedium);

    Q3DTheme *activeTheme = barGraph->activeTheme();
    activeTheme->setType(theme);
    activeTheme->setBackgroundEnabled(true);
    activeTheme->setFont(QFont(QStringLiteral("Times New Roman"), 18));
    activeTheme->setLabelBackgroundEnabled(true);
    barGraph->setMultiSeriesUniform(true);
}

void ChartDate3D::setupConnections()
{
    Q3DCamera *camera = barGraph->scene()->activeCamera();
    connect(camera, &Q3DCamera::xRotationChanged, this, &ChartDate3D::onCameraXRotationChanged);
    connect(camera, &Q3DCamera::yRotationChanged, this, &ChartDate3D::onCameraYRotationChanged);
    connect(camera, &Q3DCamera::zoomLevelChanged, this, &ChartDate3D::onCameraZoomFactorChanged);
}

void ChartDate3D::showPlaceholder()
{
    auto *label = new QLabel(placeholderText);
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    layout->addWidget(label);
}

QImage ChartDate3D::renderToImage(int msaaSamples) const
{
    return barGraph ? barGraph->renderToImage(msaaSamples) : QImage();
}

bool ChartDate3D::openGLAvailable()
{
    if (!qGuiApp)
        return false;
    static std::optional<bool> available;
    if (!available) {
        const QString platform = QGuiApplication::platformName();
        if (platform == QLatin1String("offscreen") || platform == QLatin1String("minimal")) {
            available = false;
        } else {
            QOffscreenSurface surface;
            surface.create();
            QOpenGLContext context;
            available = context.create() && context.makeCurrent(&surface);
            if (*available)
                context.doneCurrent();
        }
    }
    return *available;
}

void ChartDate3D::onCameraXRotationChanged(float rotation)
{
    cameraX = rotation;
}

void ChartDate3D::onCameraYRotationChanged(float rotation)
{
    cameraY = rotation;
}

void ChartDate3D::onCameraZoomFactorChanged(float zoom)
{
    cameraZoom = zoom;
}
