#pragma once

#include "tchartsettings.h"

#include <QColor>
#include <QDialog>
#include <QFont>

class TLabelClickable;

namespace Ui {
class DialogChartSettings;
}

// Edits one chart's TChartSettings. The dialog works on its own copy: texts, flags, type, theme,
// legend position and orientations live in the widgets until data() harvests them; fonts and
// colours go into the copy the moment the user picks them.
class DialogChartSettings : public QDialog
{
    Q_OBJECT

public:
    explicit DialogChartSettings(QWidget *parent = nullptr);
    ~DialogChartSettings() override;

    void setData(const TChartSettings &settings);
    TChartSettings &data();

protected:
    // The pickers the user sees; tests replace them so that no dialog waits for a person.
    virtual QFont askFont(const QFont &current, bool *ok);
    // Returns an invalid colour when the user cancels.
    virtual QColor askColor(const QColor &current);

    // Paints a swatch: white left half, black right half, the colour (alpha included) on top,
    // so that a translucent colour shows over both.
    void setLblColor(TLabelClickable *label, QColor color);

private slots:
    void on_cbWantsCustomThemeSettings_clicked(bool checked);
    void on_cbwantsTitle_clicked(bool checked);
    void on_cbwantsValueAxisTitle_clicked(bool checked);
    void on_cbWantsLegend_clicked(bool checked);

    void on_tbGetTitleFont_clicked();
    void on_tbGetValueAxisTitleFont_clicked();
    void on_tbGetAxisLabelFont_clicked();
    void on_tbGetLegendLabelFont_clicked();

    void on_lblTitleColor_clicked();
    void on_lblValueAxisTitleColor_clicked();
    void on_lblBarColor_clicked();
    void on_lblAxisLabelColor_clicked();
    void on_lblLegendLabelColor_clicked();
    void on_lblBackgroundColorFrom_clicked();
    void on_lblBackgroundColorTo_clicked();
    void on_lblPlotAreaColorFrom_clicked();
    void on_lblPlotAreaColorTo_clicked();

private:
    void setTitleFontAndColor();
    void setValueAxisTitleFontAndColor();
    void setAxisLabelFontAndColor();
    void setLegendLabelFontAndColor();
    void setBarColor();
    void setBackgroundGradientColors();
    void setPlotAreaGradientColors();

    // Asks for a new font for one element; stores it only when the user confirms.
    bool pickFont(QFont &font);
    // Asks for a new colour; stores it only when the user did not cancel.
    bool pickColor(QColor &color);

    Ui::DialogChartSettings *ui;
    TChartSettings chartSettings;
};
