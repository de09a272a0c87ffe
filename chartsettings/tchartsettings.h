#pragma once

#include <QColor>
#include <QFont>
#include <QString>

// How one statistics chart looks. A plain value record: the main window keeps one per statistic
// tab, a controller and the settings dialog each work on their own copy. The field names are also
// the suffixes of the keys in the settings store ("maker_chartTyp", ...).
//
// Every owner fills the whole record from the settings store before a chart or the dialog reads
// it; the zero defaults below only keep a fresh record from holding indeterminate values.
struct TChartSettings
{
    // 0 vertical bars, 1 horizontal bars, 2 pie, 3 donut; anything else draws nothing
    int chartTyp = 0;
    bool wantsChartTitle = false;
    QString chartTitleText;
    QFont chartTitleFont;
    QColor chartTitleColor;
    bool wantsValueAxisTitle = false;
    QString valueAxisTitleText;
    QFont valueAxisTitleFont;
    QColor valueAxisTitleColor;
    QFont chartAxisLabelFont;
    QColor chartAxisLabelColor;
    QColor chartBarColor;
    QColor chartBackgroundGradientFrom;
    QColor chartBackgroundGradientTo;
    // Qt::Orientation: 2 top to bottom, any other value left to right
    int chartBackgroundGradientOrientation = 0;
    QColor chartPlotAreaGradientFrom;
    QColor chartPlotAreaGradientTo;
    int chartPlotAreaGradientOrientation = 0; // as chartBackgroundGradientOrientation
    int chartTheme = 0; // QChart::ChartTheme, 0..7
    bool wantsCustomThemeSettings = false; // off: fonts, colours and gradients are ignored
    bool wantsValueLabels = false;
    bool wantsLegend = false;
    int chartLegendPos = 0; // Qt::Alignment: 0x40 bottom, 0x20 top, 0x2 right, 0x1 left
    QFont chartLegendLabelFont;
    QColor chartLegendLabelColor;
    // A bar or pie chart draws the rows with the largest counts, at most this many, and sums the
    // rest into one "Others" bar or slice; the table keeps every row.
    int maxCategories = 30;
};
