#include "chartsettingsstore.h"

#include <QColor>
#include <QFont>
#include <QVariant>

#include <algorithm>

namespace ChartSettingsStore {

TChartSettings read(QSettings &store, const QString &prefix, const QString &defaultTitle)
{
    TChartSettings s;
    s.chartTyp = store.value(prefix + "chartTyp", 1).toInt();
    s.chartTheme = store.value(prefix + "chartTheme", 1).toInt();
    s.wantsChartTitle = store.value(prefix + "wantsChartTitle", true).toBool();
    s.chartTitleText = store.value(prefix + "chartTitleText", defaultTitle).toString();
    s.chartTitleFont = store.value(prefix + "chartTitleFont", QFont()).value<QFont>();
    s.chartTitleColor = store.value(prefix + "chartTitleColor", QColor()).value<QColor>();
    s.wantsValueAxisTitle = store.value(prefix + "wantsValueAxisTitle", true).toBool();
    s.valueAxisTitleText = store.value(prefix + "valueAxisTitleText", "# of Files").toString();
    s.valueAxisTitleFont = store.value(prefix + "valueAxisTitleFont", QFont()).value<QFont>();
    s.valueAxisTitleColor = store.value(prefix + "valueAxisTitleColor", QColor()).value<QColor>();
    s.chartBarColor = store.value(prefix + "chartBarColor", QColor()).value<QColor>();
    s.chartAxisLabelFont = store.value(prefix + "chartAxisLabelFont", QFont()).value<QFont>();
    s.chartAxisLabelColor = store.value(prefix + "chartAxisLabelColor", QColor()).value<QColor>();
    s.wantsCustomThemeSettings = store.value(prefix + "wantsCustomThemeSettings", false).toBool();
    s.wantsLegend = store.value(prefix + "wantsLegend", false).toBool();
    // write() stores the position under "ChartLegendPos"; keys are case-sensitive, so this
    // lower-case key is never found and every start shows the legend at 1 (left) again.
    s.chartLegendPos = store.value(prefix + "chartLegendPos", 1).toInt();
    s.chartLegendLabelFont = store.value(prefix + "chartLegendLabelFont", QFont()).value<QFont>();
    s.chartLegendLabelColor =
        store.value(prefix + "chartLegendLabelColor", QColor()).value<QColor>();
    s.wantsValueLabels = store.value(prefix + "wantsValueLabels", false).toBool();
    s.chartBackgroundGradientFrom =
        store.value(prefix + "chartBackgroundGradientFrom", QColor()).value<QColor>();
    s.chartBackgroundGradientTo =
        store.value(prefix + "chartBackgroundGradientTo", QColor()).value<QColor>();
    // No default: an absent or unconvertible orientation gives 0. Read as an int: a stored
    // number outside Qt::Orientation's values must not be forced into the enum type.
    s.chartBackgroundGradientOrientation =
        store.value(prefix + "chartBackgroundGradientOrientation").toInt();
    s.chartPlotAreaGradientFrom =
        store.value(prefix + "chartPlotAreaGradientFrom", QColor()).value<QColor>();
    s.chartPlotAreaGradientTo =
        store.value(prefix + "chartPlotAreaGradientTo", QColor()).value<QColor>();
    s.chartPlotAreaGradientOrientation =
        store.value(prefix + "chartPlotAreaGradientOrientation").toInt();
    s.maxCategories = std::max(1, store.value(prefix + "maxCategories", s.maxCategories).toInt());
    return s;
}

void write(QSettings &store, const QString &prefix, const TChartSettings &s)
{
    store.setValue(prefix + "chartTyp", s.chartTyp);
    store.setValue(prefix + "chartTheme", s.chartTheme);
    store.setValue(prefix + "wantsChartTitle", s.wantsChartTitle);
    store.setValue(prefix + "chartTitleText", s.chartTitleText);
    store.setValue(prefix + "chartTitleFont", QVariant(s.chartTitleFont));
    store.setValue(prefix + "chartTitleColor", QVariant(s.chartTitleColor));
    store.setValue(prefix + "wantsValueAxisTitle", s.wantsValueAxisTitle);
    store.setValue(prefix + "valueAxisTitleText", s.valueAxisTitleText);
    store.setValue(prefix + "valueAxisTitleFont", QVariant(s.valueAxisTitleFont));
    store.setValue(prefix + "valueAxisTitleColor", QVariant(s.valueAxisTitleColor));
    store.setValue(prefix + "chartBarColor", QVariant(s.chartBarColor));
    store.setValue(prefix + "chartAxisLabelFont", QVariant(s.chartAxisLabelFont));
    store.setValue(prefix + "chartAxisLabelColor", QVariant(s.chartAxisLabelColor));
    store.setValue(prefix + "wantsCustomThemeSettings", s.wantsCustomThemeSettings);
    store.setValue(prefix + "wantsValueLabels", s.wantsValueLabels);
    store.setValue(prefix + "wantsLegend", s.wantsLegend);
    // Capital C, unlike the key read(): a chosen legend position is stored but never read back.
    store.setValue(prefix + "ChartLegendPos", s.chartLegendPos);
    store.setValue(prefix + "chartLegendLabelFont", QVariant(s.chartLegendLabelFont));
    store.setValue(prefix + "chartLegendLabelColor", QVariant(s.chartLegendLabelColor));
    store.setValue(prefix + "chartBackgroundGradientFrom", QVariant(s.chartBackgroundGradientFrom));
    store.setValue(prefix + "chartBackgroundGradientTo", QVariant(s.chartBackgroundGradientTo));
    store.setValue(prefix + "chartBackgroundGradientOrientation",
                   s.chartBackgroundGradientOrientation);
    store.setValue(prefix + "chartPlotAreaGradientFrom", QVariant(s.chartPlotAreaGradientFrom));
    store.setValue(prefix + "chartPlotAreaGradientTo", QVariant(s.chartPlotAreaGradientTo));
    store.setValue(prefix + "chartPlotAreaGradientOrientation", s.chartPlotAreaGradientOrientation);
    // Only a limit the user changed is stored, so that an untouched chart's keys stay as before.
    if (s.maxCategories == TChartSettings().maxCategories)
        store.remove(prefix + "maxCategories");
    else
        store.setValue(prefix + "maxCategories", s.maxCategories);
}

} // namespace ChartSettingsStore
