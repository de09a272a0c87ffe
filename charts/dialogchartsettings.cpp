#include "dialogchartsettings.h"
#include "ui_dialogchartsettings.h"

#include <QColorDialog>
#include <QFontDialog>
#include <QImage>
#include <QPainter>
#include <QPixmap>

namespace {

// Stored Qt::Alignment of each entry of comboBoxLegend, in list order.
constexpr int legendPositions[] = { Qt::AlignBottom, Qt::AlignTop, Qt::AlignRight, Qt::AlignLeft };

QString fontDescription(const QFont &font)
{
    return font.family() + ", " + QString::number(font.pointSize()) + " point";
}

} // namespace

DialogChartSettings::DialogChartSettings(QWidget *parent)
    : QDialog(parent)
    , ui(new Ui::DialogChartSettings)
{
    ui->setupUi(this);

    const char *themes[] = { "Light",    "Blue Cerulean", "Dark",     "Brown Sand",
                             "Blue NCS", "High Contrast", "Blue Icy", "Qt" };
    for (int i = 0; i < 8; ++i)
        ui->comboBoxTheme->addItem(tr(themes[i]), i);

    // The item data of the types is never read; the record holds the list index.
    const char *types[] = { "Vertical Barchart", "Horizontal Barchart", "Pie Chart",
                            "Donut Chart" };
    for (int i = 0; i < 4; ++i)
        ui->comboBoxTyp->addItem(tr(types[i]), i + 1);

    ui->comboBoxLegend->addItems({ tr("Bottom"), tr("Top"), tr("Right"), tr("Left") });
}

DialogChartSettings::~DialogChartSettings()
{
    delete ui;
}

void DialogChartSettings::setData(const TChartSettings &settings)
{
    chartSettings = settings;

    ui->comboBoxTheme->setCurrentIndex(chartSettings.chartTheme);
    ui->comboBoxTyp->setCurrentIndex(chartSettings.chartTyp);

    ui->cbWantsCustomThemeSettings->setChecked(chartSettings.wantsCustomThemeSettings);
    ui->groupBoxCustomSettings->setEnabled(chartSettings.wantsCustomThemeSettings);

    ui->cbwantsTitle->setChecked(chartSettings.wantsChartTitle);
    ui->leTitleText->setText(chartSettings.chartTitleText);
    ui->leTitleText->setEnabled(chartSettings.wantsChartTitle);

    ui->cbwantsValueAxisTitle->setChecked(chartSettings.wantsValueAxisTitle);
    ui->leValueAxisTitleText->setText(chartSettings.valueAxisTitleText);
    // Kept as the program has always done it: after loading, the chart-title field follows the
    // value-axis flag, and the value-axis field keeps its state until its box is clicked.
    ui->leTitleText->setEnabled(chartSettings.wantsValueAxisTitle);

    setTitleFontAndColor();
    setValueAxisTitleFontAndColor();
    setAxisLabelFontAndColor();
    setLegendLabelFontAndColor();
    setBarColor();
    setBackgroundGradientColors();
    setPlotAreaGradientColors();

    if (chartSettings.chartBackgroundGradientOrientation == Qt::Vertical)
        ui->rbBackgroundGradientTD->setChecked(true);
    else
        ui->rbBackgoundGradientLR->setChecked(true);
    if (chartSettings.chartPlotAreaGradientOrientation == Qt::Vertical)
        ui->rbPlotAreaGradientTD->setChecked(true);
    else
        ui->rbPlotAreaGradientLR->setChecked(true);

    ui->cbWantsLegend->setChecked(chartSettings.wantsLegend);
    // An unknown position leaves the list at whatever entry it showed before.
    for (int i = 0; i < 4; ++i) {
        if (chartSettings.chartLegendPos == legendPositions[i])
            ui->comboBoxLegend->setCurrentIndex(i);
    }
    ui->comboBoxLegend->setEnabled(chartSettings.wantsLegend);

    ui->cbWantsLabels->setChecked(chartSettings.wantsValueLabels);
    ui->sbMaxCategories->setValue(chartSettings.maxCategories);
}

TChartSettings &DialogChartSettings::data()
{
    chartSettings.chartTyp = ui->comboBoxTyp->currentIndex();
    chartSettings.chartTheme = ui->comboBoxTheme->currentIndex();
    chartSettings.wantsCustomThemeSettings = ui->cbWantsCustomThemeSettings->isChecked();
    chartSettings.wantsChartTitle = ui->cbwantsTitle->isChecked();
    chartSettings.wantsValueAxisTitle = ui->cbwantsValueAxisTitle->isChecked();
    chartSettings.wantsLegend = ui->cbWantsLegend->isChecked();
    chartSettings.wantsValueLabels = ui->cbWantsLabels->isChecked();
    chartSettings.chartTitleText = ui->leTitleText->text();
    chartSettings.valueAxisTitleText = ui->leValueAxisTitleText->text();
    chartSettings.maxCategories = ui->sbMaxCategories->value();

    const int legendIndex = ui->comboBoxLegend->currentIndex();
    if (legendIndex >= 0 && legendIndex < 4)
        chartSettings.chartLegendPos = legendPositions[legendIndex];

    chartSettings.chartBackgroundGradientOrientation =
        ui->rbBackgroundGradientTD->isChecked() ? Qt::Vertical : Qt::Horizontal;
    chartSettings.chartPlotAreaGradientOrientation =
        ui->rbPlotAreaGradientTD->isChecked() ? Qt::Vertical : Qt::Horizontal;
    return chartSettings;
}

QFont DialogChartSettings::askFont(const QFont &current, bool *ok)
{
    return QFontDialog::getFont(ok, current, this, QString(), QFontDialog::FontDialogOptions());
}

QColor DialogChartSettings::askColor(const QColor &current)
{
    return QColorDialog::getColor(current, this,
                                  tr("Please Choose Color and Opacity (Alpha Channel)"),
                                  QColorDialog::ShowAlphaChannel);
}

bool DialogChartSettings::pickFont(QFont &font)
{
    bool ok = false;
    const QFont chosen = askFont(font, &ok);
    if (ok)
        font = chosen;
    return ok;
}

bool DialogChartSettings::pickColor(QColor &color)
{
    const QColor chosen = askColor(color);
    if (chosen.isValid())
        color = chosen;
    return chosen.isValid();
}

void DialogChartSettings::setLblColor(TLabelClickable *label, QColor color)
{
    const int w = label->width();
    const int h = label->height();
    QImage image(w, h, QImage::Format_ARGB32_Premultiplied);
    // The column at w/2 is never painted; starting transparent keeps it defined.
    image.fill(Qt::transparent);

    QPainter painter(&image);
    // QRect(QPoint, QPoint) includes both corners.
    painter.fillRect(QRect(QPoint(0, 0), QPoint(w / 2 - 1, h - 1)), Qt::white);
    painter.fillRect(QRect(QPoint(w / 2 + 1, 0), QPoint(w - w % 2, h - 1)), Qt::black);
    painter.fillRect(QRect(QPoint(12, 9), QPoint(35, 26)), color);
    painter.end();

    label->setPixmap(QPixmap::fromImage(image));
}

void DialogChartSettings::setTitleFontAndColor()
{
    ui->leTitleFont->setText(fontDescription(chartSettings.chartTitleFont));
    setLblColor(ui->lblTitleColor, chartSettings.chartTitleColor);
}

void DialogChartSettings::setValueAxisTitleFontAndColor()
{
    ui->leValueAxisTitleFont->setText(fontDescription(chartSettings.valueAxisTitleFont));
    setLblColor(ui->lblValueAxisTitleColor, chartSettings.valueAxisTitleColor);
}

void DialogChartSettings::setAxisLabelFontAndColor()
{
    ui->leAxisLabelFont->setText(fontDescription(chartSettings.chartAxisLabelFont));
    setLblColor(ui->lblAxisLabelColor, chartSettings.chartAxisLabelColor);
}

void DialogChartSettings::setLegendLabelFontAndColor()
{
    ui->leLegendLabelFont->setText(fontDescription(chartSettings.chartLegendLabelFont));
    setLblColor(ui->lblLegendLabelColor, chartSettings.chartLegendLabelColor);
}

void DialogChartSettings::setBarColor()
{
    setLblColor(ui->lblBarColor, chartSettings.chartBarColor);
}

void DialogChartSettings::setBackgroundGradientColors()
{
    setLblColor(ui->lblBackgroundColorFrom, chartSettings.chartBackgroundGradientFrom);
    setLblColor(ui->lblBackgroundColorTo, chartSettings.chartBackgroundGradientTo);
}

void DialogChartSettings::setPlotAreaGradientColors()
{
    setLblColor(ui->lblPlotAreaColorFrom, chartSettings.chartPlotAreaGradientFrom);
    setLblColor(ui->lblPlotAreaColorTo, chartSettings.chartPlotAreaGradientTo);
}

void DialogChartSettings::on_cbWantsCustomThemeSettings_clicked(bool checked)
{
    ui->groupBoxCustomSettings->setEnabled(checked);
}

void DialogChartSettings::on_cbwantsTitle_clicked(bool checked)
{
    ui->leTitleText->setEnabled(checked);
}

void DialogChartSettings::on_cbwantsValueAxisTitle_clicked(bool checked)
{
    ui->leValueAxisTitleText->setEnabled(checked);
}

void DialogChartSettings::on_cbWantsLegend_clicked(bool checked)
{
    ui->comboBoxLegend->setEnabled(checked);
}

void DialogChartSettings::on_tbGetTitleFont_clicked()
{
    if (pickFont(chartSettings.chartTitleFont))
        setTitleFontAndColor();
}

void DialogChartSettings::on_tbGetValueAxisTitleFont_clicked()
{
    if (pickFont(chartSettings.valueAxisTitleFont))
        setValueAxisTitleFontAndColor();
}

void DialogChartSettings::on_tbGetAxisLabelFont_clicked()
{
    if (pickFont(chartSettings.chartAxisLabelFont))
        setAxisLabelFontAndColor();
}

void DialogChartSettings::on_tbGetLegendLabelFont_clicked()
{
    if (pickFont(chartSettings.chartLegendLabelFont))
        setLegendLabelFontAndColor();
}

void DialogChartSettings::on_lblTitleColor_clicked()
{
    if (pickColor(chartSettings.chartTitleColor))
        setTitleFontAndColor();
}

void DialogChartSettings::on_lblValueAxisTitleColor_clicked()
{
    if (pickColor(chartSettings.valueAxisTitleColor))
        setValueAxisTitleFontAndColor();
}

void DialogChartSettings::on_lblBarColor_clicked()
{
    if (pickColor(chartSettings.chartBarColor))
        setBarColor();
}

void DialogChartSettings::on_lblAxisLabelColor_clicked()
{
    if (pickColor(chartSettings.chartAxisLabelColor))
        setAxisLabelFontAndColor();
}

void DialogChartSettings::on_lblLegendLabelColor_clicked()
{
    if (pickColor(chartSettings.chartLegendLabelColor))
        setLegendLabelFontAndColor();
}

void DialogChartSettings::on_lblBackgroundColorFrom_clicked()
{
    if (pickColor(chartSettings.chartBackgroundGradientFrom))
        setBackgroundGradientColors();
}

void DialogChartSettings::on_lblBackgroundColorTo_clicked()
{
    if (pickColor(chartSettings.chartBackgroundGradientTo))
        setBackgroundGradientColors();
}

void DialogChartSettings::on_lblPlotAreaColorFrom_clicked()
{
    if (pickColor(chartSettings.chartPlotAreaGradientFrom))
        setPlotAreaGradientColors();
}

void DialogChartSettings::on_lblPlotAreaColorTo_clicked()
{
    if (pickColor(chartSettings.chartPlotAreaGradientTo))
        setPlotAreaGradientColors();
}
