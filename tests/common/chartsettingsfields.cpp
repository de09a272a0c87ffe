#include "chartsettingsfields.h"

namespace testutils {

QList<QPair<QString, QVariant>> fieldsOf(const TChartSettings &s)
{
    return { { "chartTyp", s.chartTyp },
             { "wantsChartTitle", s.wantsChartTitle },
             { "chartTitleText", s.chartTitleText },
             { "chartTitleFont", s.chartTitleFont },
             { "chartTitleColor", s.chartTitleColor },
             { "wantsValueAxisTitle", s.wantsValueAxisTitle },
             { "valueAxisTitleText", s.valueAxisTitleText },
             { "valueAxisTitleFont", s.valueAxisTitleFont },
             { "valueAxisTitleColor", s.valueAxisTitleColor },
             { "chartAxisLabelFont", s.chartAxisLabelFont },
             { "chartAxisLabelColor", s.chartAxisLabelColor },
             { "chartBarColor", s.chartBarColor },
             { "chartBackgroundGradientFrom", s.chartBackgroundGradientFrom },
             { "chartBackgroundGradientTo", s.chartBackgroundGradientTo },
             { "chartBackgroundGradientOrientation", s.chartBackgroundGradientOrientation },
             { "chartPlotAreaGradientFrom", s.chartPlotAreaGradientFrom },
             { "chartPlotAreaGradientTo", s.chartPlotAreaGradientTo },
             { "chartPlotAreaGradientOrientation", s.chartPlotAreaGradientOrientation },
             { "chartTheme", s.chartTheme },
             { "wantsCustomThemeSettings", s.wantsCustomThemeSettings },
             { "wantsValueLabels", s.wantsValueLabels },
             { "wantsLegend", s.wantsLegend },
             { "chartLegendPos", s.chartLegendPos },
             { "chartLegendLabelFont", s.chartLegendLabelFont },
             { "chartLegendLabelColor", s.chartLegendLabelColor },
             { "maxCategories", s.maxCategories } };
}

QVariant fieldValue(const TChartSettings &s, const QString &name)
{
    for (const auto &[fieldName, value] : fieldsOf(s)) {
        if (fieldName == name)
            return value;
    }
    qFatal("unknown field %s", qPrintable(name));
    return {};
}

} // namespace testutils
