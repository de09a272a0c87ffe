// Reading and writing the settings store: once while the window is built, once after a confirmed
// quit. Nothing else touches the store; dialogs change the members only.
#include "mainwindow.h"
#include "ui_mainwindow.h"

#include "chartsettingsstore.h"
#include "readerpool.h"

#include <QComboBox>
#include <QFileInfo>
#include <QSettings>

#include <algorithm>

namespace {

const char *const organisationName = "Kelvaro";
const char *const applicationName = "Kelvaro";

} // namespace

// The statistic charts in the order both functions treat them. The ISO-grouped and F-number
// charts really start with the title "FocalLength usage".
QList<MainWindow::StoredChart> MainWindow::storedCharts()
{
    return { { "maker_", "camera manufacturer", &chartSettingsMaker },
             { "model_", "camera model", &chartSettingsModel },
             { "lens_", "lens usage", &chartSettingsLens },
             { "focLen_", "FocalLength usage", &chartSettingsFocLen },
             { "focLenG_", "FocalLength Grouped", &chartSettingsFocLenG },
             { "iso_", "ISO usage", &chartSettingsISO },
             { "isoG_", "FocalLength usage", &chartSettingsISOG },
             { "fNum_", "FocalLength usage", &chartSettingsFNum },
             { "expTime_", "ExposureTime usage", &chartSettingsExpTime },
             { "metMode_", "MeteringMode usage", &chartSettingsMetMode },
             { "expMode_", "ExposureMode usage", &chartSettingsExpMode } };
}

// Each splitter is stored under its own object name.
QList<QSplitter *> MainWindow::statisticSplitters() const
{
    return { ui->splitterMaker,        ui->splitterModel,        ui->splitterLens,
             ui->splitterFocalLength,  ui->splitterFocalLengthG, ui->splitterISO,
             ui->splitterISOG,         ui->splitterFNumber,      ui->splitterExposureTime,
             ui->splitterMeteringMode, ui->splitterExposureMode };
}

void MainWindow::readSettings()
{
    QSettings settings(QSettings::IniFormat, QSettings::UserScope, organisationName,
                       applicationName);

    settings.beginGroup("MainWindow");
    restoreGeometry(settings.value("geometry").toByteArray());
    restoreState(settings.value("windowState").toByteArray(), 0);
    lastTab = settings.value("lastTab", 0).toInt();
    settings.endGroup();

    settings.beginGroup("Splitter");
    for (QSplitter *splitter : statisticSplitters())
        splitter->restoreState(settings.value(splitter->objectName()).toByteArray());
    settings.endGroup();

    settings.beginGroup("OtherSettings");
    lastDirectory = settings.value("lastDirectory", "/Volumes").toString();
    includeSubDirs = settings.value("includeSubDirs", false).toBool();
    ui->actionIncludeSubDirs->setChecked(includeSubDirs);
    // Without a default on purpose: a first start replaces the constructor's patterns with an
    // empty list, so no file type is on.
    fileFilters = settings.value("fileFilters", QVariant()).toStringList();
    if (!fileFilters.isEmpty()) {
        const QList<QPair<QString, QAction *>> switches {
            { "*.cr2", ui->actionCanon_cr2 },
            { "*.cr3", ui->actionCanon_cr3 },
            { "*.dng", ui->action_dng },
            { "*.raf", ui->actionFuji_raf },
            { "*.nef", ui->actionNikon_nef },
            { "*.jpg", ui->action_jpg },
            { "*.arw", ui->actionSony_arw },
            { "*.rw2", ui->actionPanasonic_rw2 },
            { "*.orf", ui->actionOlympus_orf },
            // HEIF's key is its first pattern; the window stores all four while it is on.
            { "*.heic", ui->action_heif }
        };
        for (const auto &[pattern, action] : switches) {
            if (fileFilters.contains(pattern, Qt::CaseSensitive))
                action->setChecked(true);
        }
    }
    // The combo's signal is not connected yet, so this draws nothing.
    const int dateTheme = settings.value("chartDateTheme", 0).toInt();
    comboBoxThemeDate->setCurrentIndex(dateTheme);
    chartDateTheme = dateTheme;
    checkForUpdatesOnStart = settings.value("checkForUpdates", false).toBool();
    makerExcludes = settings.value("makerExcludes", QVariant()).toStringList();
    modelExcludes = settings.value("modelExcludes", QVariant()).toStringList();
    focalLengthGroups = settings.value("focalLengthGroups", QVariant()).toStringList();
    isoGroups = settings.value("isoGroups", QVariant()).toStringList();
    // A stored count outside the range (edited by hand) is brought into it.
    readerThreads = std::clamp(settings.value("readerThreads", ReaderPool::defaultThreads).toInt(),
                               ReaderPool::minThreads, ReaderPool::maxThreads);
    settings.endGroup();

    settings.beginGroup("ChartSettings");
    for (const StoredChart &chart : storedCharts())
        *chart.record = ChartSettingsStore::read(settings, chart.prefix, chart.defaultTitle);
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
    settings.endGroup();

    settings.beginGroup("Splitter");
    for (QSplitter *splitter : statisticSplitters())
        settings.setValue(splitter->objectName(), splitter->saveState());
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
    settings.setValue("focalLengthGroups", QStringList(focalLengthGroups));
    settings.setValue("isoGroups", QStringList(isoGroups));
    settings.setValue("readerThreads", readerThreads);
    settings.endGroup();

    settings.beginGroup("ChartSettings");
    for (const StoredChart &chart : storedCharts())
        ChartSettingsStore::write(settings, chart.prefix, *chart.record);

    // Opened without leaving "ChartSettings": the camera lands in a nested group that
    // readSettings() never looks at. Kept so.
    settings.beginGroup("Date3DChartSettings");
    settings.setValue("date_camXRotation", QVariant(camXRotation));
    settings.setValue("date_camYRotation", QVariant(camYRotation));
    settings.setValue("date_camZoom", QVariant(camZoom));
    settings.endGroup();
}
