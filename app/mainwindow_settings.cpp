// Reading and writing the settings store: once while the window is built, once after a confirmed
// quit. Nothing else touches the store; dialogs change the members only.
#include "mainwindow.h"
#include "ui_mainwindow.h"

#include "chartsettingsstore.h"
#include "dateviews.h"
#include "filterpanel.h"
#include "readerpool.h"

#include <QComboBox>
#include <QFileInfo>
#include <QSettings>

#include <algorithm>

namespace {

const char *const organisationName = "Kelvaro";
const char *const applicationName = "Kelvaro";
const char *const hideImplausibleDatesKey = "hideImplausibleDates";
const char *const mergeNamesKey = "mergeNames";
const char *const friendlyMakersKey = "friendlyMakers";
const char *const makerAliasesKey = "makerAliases";

// The newer settings are stored only once they differ from their default, so that a store is
// left as it was by a user who never touched them.
template<typename T>
void writeUnlessDefault(QSettings &settings, const char *key, const T &value, const T &fallback)
{
    if (value == fallback)
        settings.remove(key);
    else
        settings.setValue(key, value);
}

} // namespace

void MainWindow::readSettings()
{
    QSettings settings(QSettings::IniFormat, QSettings::UserScope, organisationName,
                       applicationName);

    settings.beginGroup("MainWindow");
    restoreGeometry(settings.value("geometry").toByteArray());
    restoreState(settings.value("windowState").toByteArray(), 0);
    lastTab = settings.value("lastTab", 0).toInt();
    hiddenStatistics = settings.value("hiddenStatistics", QVariant()).toStringList();
    settings.endGroup();

    settings.beginGroup("Splitter");
    for (const StatisticTab &tab : std::as_const(statisticTabs))
        tab.splitter->restoreState(settings.value(tab.splitter->objectName()).toByteArray());
    settings.endGroup();

    settings.beginGroup("OtherSettings");
    lastDirectory = settings.value("lastDirectory", "/Volumes").toString();
    includeSubDirs = settings.value("includeSubDirs", false).toBool();
    ui->actionIncludeSubDirs->setChecked(includeSubDirs);
    // Without a default on purpose: a first start replaces the constructor's patterns with an
    // empty list, so no file type is on.
    fileFilters = settings.value("fileFilters", QVariant()).toStringList();
    // A switch is on when its type's first pattern is stored ("*.heic" for HEIF, whose four
    // patterns the window stores while it is on).
    for (const auto &[action, patterns] : fileTypeActions()) {
        if (fileFilters.contains(patterns.first(), Qt::CaseSensitive))
            action->setChecked(true);
    }
    // The combo's signal is not connected yet, so this draws nothing.
    const int dateTheme = settings.value("chartDateTheme", 0).toInt();
    comboBoxThemeDate->setCurrentIndex(dateTheme);
    chartDateTheme = dateTheme;
    checkForUpdatesOnStart = settings.value("checkForUpdates", false).toBool();
    makerExcludes = settings.value("makerExcludes", QVariant()).toStringList();
    modelExcludes = settings.value("modelExcludes", QVariant()).toStringList();
    for (const Statistic &statistic : Statistics::all()) {
        if (statistic.rangeGroups) {
            const QString &key = statistic.rangeGroups->settingsKey;
            rangeGroups[key] = settings.value(key, QVariant()).toStringList();
        }
    }
    // A stored count outside the range (edited by hand) is brought into it.
    readerThreads = std::clamp(settings.value("readerThreads", ReaderPool::defaultThreads).toInt(),
                               ReaderPool::minThreads, ReaderPool::maxThreads);
    dateViews->setHidesImplausibleDates(settings.value(hideImplausibleDatesKey, false).toBool());
    nameRules.mergeBlanksAndCase = settings.value(mergeNamesKey, false).toBool();
    nameRules.friendlyMakers = settings.value(friendlyMakersKey, false).toBool();
    nameRules.makerAliases =
        MakerNames::parseAliases(settings.value(makerAliasesKey).toStringList());
    rememberPhotos = settings.value("rememberPhotos", true).toBool();
    forgetUnseenAfterDays = std::max(
        0,
        settings.value("forgetUnseenAfterDays", PhotoCatalogue::defaultForgetUnseenAfterDays)
            .toInt());
    pairsOnce = settings.value("pairsOnce", false).toBool();
    settings.endGroup();

    // The panel keeps the stored values until the first scan shows which of them exist.
    settings.beginGroup("Filter");
    PhotoFilter filter;
    for (const PhotoFilterField &field : PhotoFilterFields::all())
        filter.*field.values = settings.value(field.key, QVariant()).toStringList();
    filter.from = QDate::fromString(settings.value("from").toString(), Qt::ISODate);
    filter.to = QDate::fromString(settings.value("to").toString(), Qt::ISODate);
    filterPanel->setFilter(filter);
    PeriodComparison comparison;
    comparison.active = settings.value("compare", false).toBool();
    comparison.from = QDate::fromString(settings.value("compareFrom").toString(), Qt::ISODate);
    comparison.to = QDate::fromString(settings.value("compareTo").toString(), Qt::ISODate);
    filterPanel->setComparison(comparison);
    settings.endGroup();

    settings.beginGroup("ChartSettings");
    for (StatisticTab &tab : statisticTabs)
        tab.settings = ChartSettingsStore::read(settings, tab.statistic->settingsPrefix,
                                                tab.statistic->defaultChartTitle);
    settings.endGroup();

    // Looked for at the top level, while saveSettings() writes it inside "ChartSettings": the
    // camera therefore always starts at 30, 30, 100.
    settings.beginGroup("Date3DChartSettings");
    camXRotation = settings.value("date_camXRotation", 30).toFloat();
    camYRotation = settings.value("date_camYRotation", 30).toFloat();
    camZoom = settings.value("date_camZoom", 100).toFloat();
    settings.endGroup();
}

void MainWindow::saveSettings()
{
    QSettings settings(QSettings::IniFormat, QSettings::UserScope, organisationName,
                       applicationName);

    settings.beginGroup("MainWindow");
    settings.setValue("geometry", saveGeometry());
    settings.setValue("windowState", saveState(0));
    settings.setValue("lastTab", lastTab);
    settings.setValue("hiddenStatistics", hiddenStatistics);
    settings.endGroup();

    settings.beginGroup("Splitter");
    for (const StatisticTab &tab : std::as_const(statisticTabs))
        settings.setValue(tab.splitter->objectName(), tab.splitter->saveState());
    settings.endGroup();

    settings.beginGroup("OtherSettings");
    settings.setValue("lastDirectory", QFileInfo(lastDirectory).absoluteFilePath());
    settings.setValue("includeSubDirs", includeSubDirs);
    settings.setValue("fileFilters", QStringList(fileFilters));
    settings.setValue("chartTheme", chartTheme);
    settings.setValue("chartDateTheme", chartDateTheme);
    settings.setValue("checkForUpdates", checkForUpdatesOnStart);
    settings.setValue("makerExcludes", QStringList(makerExcludes));
    settings.setValue("modelExcludes", QStringList(modelExcludes));
    for (const Statistic &statistic : Statistics::all()) {
        if (statistic.rangeGroups) {
            const QString &key = statistic.rangeGroups->settingsKey;
            settings.setValue(key, QStringList(rangeGroups.value(key)));
        }
    }
    settings.setValue("readerThreads", readerThreads);
    writeUnlessDefault(settings, hideImplausibleDatesKey, dateViews->hidesImplausibleDates(),
                       false);
    writeUnlessDefault(settings, mergeNamesKey, nameRules.mergeBlanksAndCase, false);
    writeUnlessDefault(settings, friendlyMakersKey, nameRules.friendlyMakers, false);
    writeUnlessDefault(settings, makerAliasesKey, MakerNames::formatAliases(nameRules.makerAliases),
                       QStringList());
    settings.setValue("rememberPhotos", rememberPhotos);
    settings.setValue("forgetUnseenAfterDays", forgetUnseenAfterDays);
    settings.setValue("pairsOnce", pairsOnce);
    settings.endGroup();

    settings.beginGroup("Filter");
    const PhotoFilter filter = filterPanel->filter();
    for (const PhotoFilterField &field : PhotoFilterFields::all())
        settings.setValue(field.key, QStringList(filter.*field.values));
    settings.setValue("from", filter.from.toString(Qt::ISODate));
    settings.setValue("to", filter.to.toString(Qt::ISODate));
    // A comparison comes back with the filter; while it is off the store holds nothing of it.
    const PeriodComparison comparison = filterPanel->comparison();
    if (comparison.active) {
        settings.setValue("compare", true);
        settings.setValue("compareFrom", comparison.from.toString(Qt::ISODate));
        settings.setValue("compareTo", comparison.to.toString(Qt::ISODate));
    } else {
        for (const char *key : { "compare", "compareFrom", "compareTo" })
            settings.remove(key);
    }
    settings.endGroup();

    settings.beginGroup("ChartSettings");
    for (const StatisticTab &tab : std::as_const(statisticTabs))
        ChartSettingsStore::write(settings, tab.statistic->settingsPrefix, tab.settings);

    // Opened without leaving "ChartSettings": the camera lands in a nested group that
    // readSettings() never looks at. Kept so.
    settings.beginGroup("Date3DChartSettings");
    settings.setValue("date_camXRotation", QVariant(camXRotation));
    settings.setValue("date_camYRotation", QVariant(camYRotation));
    settings.setValue("date_camZoom", QVariant(camZoom));
    settings.endGroup();
}
