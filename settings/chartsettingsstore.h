#pragma once

#include "tchartsettings.h"

#include <QSettings>
#include <QString>

// The per-chart part of the settings store: the keys "<prefix><field>" of one chart
// ("maker_chartTyp", ...). The caller has already opened the group "ChartSettings".
namespace ChartSettingsStore {

// Reads one chart's record. Absent keys give the defaults of a first start; values of the wrong
// type are converted by QVariant's rules (text in an int key gives 0, an unreadable colour gives
// an invalid colour).
TChartSettings read(QSettings &store, const QString &prefix, const QString &defaultTitle);

// Writes one chart's record: fonts and colours as variants of their type, orientations as ints.
void write(QSettings &store, const QString &prefix, const TChartSettings &settings);

} // namespace ChartSettingsStore
