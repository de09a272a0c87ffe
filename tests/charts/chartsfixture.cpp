#include "chartsfixture.h"

#include "photodatabase.h"
#include "photodate.h"
#include "photofolders.h"
#include "statisticcontrollers.h"

#include <QAbstractBarSeries>
#include <QBarCategoryAxis>
#include <QBarSet>
#include <QChart>
#include <QLegend>
#include <QLegendMarker>
#include <QPieSeries>
#include <QPieSlice>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlQueryModel>

namespace chartsfixture {

PhotoTable::PhotoTable()
{
    db = QSqlDatabase::addDatabase(PhotoDatabase::driver, PhotoDatabase::mainConnection);
    db.setConnectOptions(PhotoDatabase::connectOptions);
    db.setDatabaseName(PhotoDatabase::databaseName);
    if (!db.open()) {
        error = db.lastError().text();
        return;
    }
    // The shared in-memory database lives as long as one connection is open; start clean anyway.
    QSqlQuery query(db);
    query.exec(QStringLiteral("DROP TABLE IF EXISTS DATEIEN"));
    query.exec(QStringLiteral("DROP TABLE IF EXISTS PHOTOINFO"));
    query.exec(QStringLiteral("DROP TABLE IF EXISTS PHOTOFOLDERS"));
    ready = query.exec(PhotoDatabase::createTableStatement)
        && query.exec(PhotoDatabase::createInfoTableStatement)
        && query.exec(PhotoDatabase::createFolderTableStatement);
    if (!ready)
        error = query.lastError().text();
}

PhotoTable::~PhotoTable()
{
    db.close();
    db = QSqlDatabase();
    QSqlDatabase::removeDatabase(PhotoDatabase::mainConnection);
}

bool PhotoTable::insert(const QList<Photo> &photos)
{
    db.transaction();
    QSqlQuery query(db);
    QSqlQuery info(db);
    if (!query.prepare(PhotoDatabase::insertStatement)
        || !info.prepare(PhotoDatabase::insertInfoStatement)) {
        error = query.lastError().text() + info.lastError().text();
        db.rollback();
        return false;
    }
    PhotoFolders folders(db);
    for (const Photo &photo : photos) {
        query.bindValue(":filename", photo.path.section(QLatin1Char('/'), -1));
        query.bindValue(":date", photo.date);
        query.bindValue(":maker", photo.maker);
        query.bindValue(":model", photo.model);
        query.bindValue(":lens", photo.lens);
        query.bindValue(":focallength", photo.focalLength);
        query.bindValue(":iso", photo.iso);
        query.bindValue(":fnumber", photo.fNumber);
        query.bindValue(":exptime", photo.exposureTime);
        query.bindValue(":exptimestring", photo.exposureTimeText);
        query.bindValue(":meteringmode", photo.meteringMode);
        query.bindValue(":exposuremode", photo.exposureMode);
        if (!query.exec()) {
            error = query.lastError().text();
            db.rollback();
            return false;
        }
        // What a scan derives, as the scan derives it; zero is an unknown 35 mm focal length.
        const QDate day = PhotoDate::date(photo.date);
        const auto hour = PhotoDate::hour(photo.date);
        info.bindValue(":folder", folders.idOfFile(photo.path));
        info.bindValue(":filetype", photo.fileType);
        info.bindValue(":focallength35",
                       photo.focalLength35 > 0 ? QVariant(photo.focalLength35) : QVariant());
        info.bindValue(":cropfactor", QVariant());
        info.bindValue(":hour", hour ? QVariant(*hour) : QVariant());
        info.bindValue(":weekday", day.isValid() ? QVariant(day.dayOfWeek()) : QVariant());
        if (!info.exec()) {
            error = info.lastError().text();
            db.rollback();
            return false;
        }
    }
    return db.commit();
}

bool PhotoTable::insertDates(const QStringList &dates)
{
    QList<Photo> photos;
    for (const QString &date : dates) {
        Photo photo;
        photo.date = date;
        photos.append(photo);
    }
    return insert(photos);
}

TChartSettings plainSettings(int chartTyp)
{
    TChartSettings settings;
    settings.chartTyp = chartTyp;
    settings.wantsChartTitle = true;
    settings.chartTitleText = QStringLiteral("Photos");
    settings.wantsValueAxisTitle = true;
    settings.valueAxisTitleText = QStringLiteral("Count");
    settings.chartBackgroundGradientOrientation = Qt::Vertical;
    settings.chartPlotAreaGradientOrientation = Qt::Vertical;
    settings.chartTheme = 0;
    settings.wantsCustomThemeSettings = false;
    settings.wantsValueLabels = true;
    settings.wantsLegend = true;
    settings.chartLegendPos = Qt::AlignBottom;
    return settings;
}

TChartSettings customSettings(int chartTyp)
{
    TChartSettings settings = plainSettings(chartTyp);
    settings.wantsCustomThemeSettings = true;
    settings.chartTitleFont = QFont(QStringLiteral("DejaVu Serif"), 21, QFont::Bold);
    settings.chartTitleColor = QColor(10, 20, 30, 200);
    settings.valueAxisTitleFont = QFont(QStringLiteral("DejaVu Sans Mono"), 13);
    settings.valueAxisTitleColor = QColor(40, 50, 60);
    settings.chartAxisLabelFont = QFont(QStringLiteral("DejaVu Sans"), 17, QFont::Light, true);
    settings.chartAxisLabelColor = QColor(70, 80, 90);
    settings.chartBarColor = QColor(255, 0, 255);
    settings.chartBackgroundGradientFrom = QColor(250, 240, 200);
    settings.chartBackgroundGradientTo = QColor(200, 120, 60);
    settings.chartPlotAreaGradientFrom = QColor(230, 250, 255);
    settings.chartPlotAreaGradientTo = QColor(120, 180, 220, 128);
    settings.chartLegendLabelFont = QFont(QStringLiteral("DejaVu Serif"), 11, QFont::DemiBold);
    settings.chartLegendLabelColor = QColor(120, 0, 40);
    return settings;
}

QList<const Statistic *> chartedStatistics()
{
    QList<const Statistic *> charted;
    for (const Statistic &statistic : Statistics::all()) {
        if (statistic.shape != Statistic::Shape::DayCounts)
            charted.append(&statistic);
    }
    return charted;
}

ChartController *makeController(int variant, QSqlDatabase &db, QChartView *chartView,
                                QTableView *tableView, TChartSettings &settings,
                                const QList<QString> &ranges, QObject *parent)
{
    const QList<const Statistic *> charted = chartedStatistics();
    if (variant < 0 || variant >= charted.size())
        return nullptr;
    return createStatisticController(*charted.at(variant), db, chartView, tableView, settings,
                                     ranges, parent);
}

void ChartScene::draw(int variant, TChartSettings settings, const QList<QString> &ranges)
{
    controller.reset(
        makeController(variant, table.database(), &chartView, &tableView, settings, ranges));
}

void ChartScene::redraw(TChartSettings settings)
{
    controller->setChartSettings(settings);
    controller->refreshChart();
}

QString ChartScene::modelError() const
{
    const auto *model = qobject_cast<const QSqlQueryModel *>(tableView.model());
    return model ? model->lastError().text() : QStringLiteral("no query model");
}

QString ChartScene::modelStatement() const
{
    const auto *model = qobject_cast<const QSqlQueryModel *>(tableView.model());
    return model ? model->query().lastQuery() : QString();
}

QList<Photo> fivePhotos()
{
    QList<Photo> photos(5);
    photos[0].lens = "RF24-70mm F2.8";
    photos[0].focalLength = 24.0;
    photos[0].iso = 100;
    photos[0].fNumber = "2.8";
    photos[0].exposureMode = "Manual";

    photos[1].lens = "RF24-70mm F2.8";
    photos[1].focalLength = 70.0;
    photos[1].iso = 200;
    photos[1].fNumber = "4";
    photos[1].meteringMode = "Center-weighted average";
    photos[1].exposureMode = "Aperture-priority AE";

    photos[2].model = "EOS R6";
    photos[2].lens = "RF100-400mm";
    photos[2].focalLength = 400.0;
    photos[2].iso = 3200;
    photos[2].fNumber = "8";
    photos[2].exposureTime = 0.5;
    photos[2].exposureTimeText = "1/2";

    photos[3].maker = "Nikon";
    photos[3].model = "Z 6";
    photos[3].lens = "NIKKOR Z 24-70mm f/4 S";
    photos[3].focalLength = 70.5;
    photos[3].iso = 6400;
    photos[3].fNumber = "4";
    photos[3].exposureTime = 1.0;
    photos[3].exposureTimeText = "1";
    photos[3].meteringMode = "Spot";

    photos[4].maker = "Fujifilm";
    photos[4].model = "X-T5";
    photos[4].lens = "XF16mm";
    photos[4].focalLength = 16.0;
    photos[4].iso = 12800;
    photos[4].fNumber = "1.4";
    photos[4].meteringMode = "Spot";
    photos[4].exposureMode = "Program AE";
    return photos;
}

QList<Photo> photosOfMakers(const QStringList &makers)
{
    QList<Photo> photos(makers.size());
    for (int i = 0; i < makers.size(); ++i)
        photos[i].maker = makers.at(i);
    return photos;
}

QList<Photo> photosAtFocalLengths(const QList<double> &focalLengths)
{
    QList<Photo> photos(focalLengths.size());
    for (int i = 0; i < focalLengths.size(); ++i)
        photos[i].focalLength = focalLengths.at(i);
    return photos;
}

QList<Photo> photosAtIsos(const QList<int> &isos)
{
    QList<Photo> photos(isos.size());
    for (int i = 0; i < isos.size(); ++i)
        photos[i].iso = isos.at(i);
    return photos;
}

QStringList categories(QChart *chart)
{
    for (QAbstractAxis *axis : chart->axes()) {
        if (auto *categoryAxis = qobject_cast<QBarCategoryAxis *>(axis))
            return categoryAxis->categories();
    }
    return {};
}

QList<qreal> firstBarSetValues(QChart *chart)
{
    QList<qreal> values;
    if (chart->series().isEmpty())
        return values;
    auto *series = qobject_cast<QAbstractBarSeries *>(chart->series().first());
    if (!series || series->barSets().isEmpty())
        return values;
    QBarSet *set = series->barSets().first();
    for (int i = 0; i < set->count(); ++i)
        values.append(set->at(i));
    return values;
}

static QPieSeries *pieSeries(QChart *chart)
{
    return chart->series().isEmpty() ? nullptr
                                     : qobject_cast<QPieSeries *>(chart->series().first());
}

QStringList sliceLabels(QChart *chart)
{
    QStringList labels;
    if (QPieSeries *series = pieSeries(chart)) {
        for (QPieSlice *slice : series->slices())
            labels.append(slice->label());
    }
    return labels;
}

QList<qreal> sliceValues(QChart *chart)
{
    QList<qreal> values;
    if (QPieSeries *series = pieSeries(chart)) {
        for (QPieSlice *slice : series->slices())
            values.append(slice->value());
    }
    return values;
}

QStringList legendLabels(QChart *chart)
{
    QStringList labels;
    for (QLegendMarker *marker : chart->legend()->markers())
        labels.append(marker->label());
    return labels;
}

} // namespace chartsfixture
