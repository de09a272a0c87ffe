#pragma once

// Helpers of tst_dialogchartsettings: a dialog whose pickers answer from lists, the record's
// fields by name, sample records and pixel arithmetic for the colour swatches.
#include "chartsettingsfields.h"
#include "dialogchartsettings.h"
#include "tlabelclickable.h"

#include <QColor>
#include <QFont>
#include <QImage>
#include <QList>
#include <QMetaType>
#include <QPair>
#include <QPixmap>
#include <QString>
#include <QStringList>
#include <QVariant>

Q_DECLARE_METATYPE(TChartSettings)

namespace dialogfixture {

// Answers the font and colour questions from lists the test fills, so no picker waits for a
// person, and remembers what was asked.
class ScriptedDialog : public DialogChartSettings
{
public:
    using DialogChartSettings::setLblColor;

    QList<QColor> colorAnswers; // an invalid colour plays a cancelled picker
    QList<QFont> fontAnswers;
    QList<bool> fontConfirmed;
    QList<QColor> askedColors;
    QList<QFont> askedFonts;

protected:
    QFont askFont(const QFont &current, bool *ok) override
    {
        askedFonts << current;
        *ok = fontConfirmed.takeFirst();
        return fontAnswers.takeFirst();
    }
    QColor askColor(const QColor &current) override
    {
        askedColors << current;
        return colorAnswers.takeFirst();
    }
};

// The record's fields by name come from the shared test helper.
using testutils::fieldsOf;
using testutils::fieldValue;

template<typename T> T *child(QObject *parent, const QString &name)
{
    T *found = parent->findChild<T *>(name);
    if (!found)
        qWarning("no child %s", qPrintable(name));
    return found;
}

inline QFont font(const QString &family, int points, bool bold)
{
    QFont f(family, points);
    f.setBold(bold);
    return f;
}

inline const int legendValues[] = { Qt::AlignBottom, Qt::AlignTop, Qt::AlignRight, Qt::AlignLeft };

// A record whose every field differs with n, covering all types, themes and legend positions.
inline TChartSettings record(int n)
{
    TChartSettings s;
    s.chartTyp = n % 4;
    s.chartTheme = n % 8;
    s.wantsChartTitle = n & 1;
    s.wantsValueAxisTitle = n & 2;
    s.wantsCustomThemeSettings = n & 4;
    s.wantsValueLabels = !(n & 1);
    s.wantsLegend = !(n & 2);
    s.chartTitleText = QString("Title %1; with \"odd\" text").arg(n);
    s.valueAxisTitleText = QString("# of Files %1").arg(n);
    s.chartTitleFont = font("DejaVu Sans", 8 + n, n & 1);
    s.valueAxisTitleFont = font("DejaVu Serif", 9 + n, n & 2);
    s.chartAxisLabelFont = font("Liberation Mono", 10 + n, false);
    s.chartLegendLabelFont = font("DejaVu Sans Mono", 11 + n, true);
    s.chartTitleColor = QColor(10 * n, 20, 30, 255 - n);
    s.valueAxisTitleColor = QColor(1, 2 * n, 3, 0);
    s.chartAxisLabelColor = QColor(4, 5, 6 * n, 128);
    s.chartBarColor = QColor(7, 8, 9, 10 * n);
    s.chartBackgroundGradientFrom = QColor(11, 12, 13, 14 + n);
    s.chartBackgroundGradientTo = QColor(15, 16, 17, 255);
    s.chartPlotAreaGradientFrom = QColor(18, 19, 20, 1);
    s.chartPlotAreaGradientTo = QColor(21, 22, 23, 200 - n);
    s.chartBackgroundGradientOrientation = n % 2 ? Qt::Vertical : Qt::Horizontal;
    s.chartPlotAreaGradientOrientation = n % 3 ? Qt::Horizontal : Qt::Vertical;
    s.chartLegendPos = legendValues[n % 4];
    s.maxCategories = 1 + 7 * n;
    return s;
}

// Names the fields other than the given one whose values differ between the two records.
inline QStringList otherChangedFields(const TChartSettings &before, const TChartSettings &after,
                                      const QString &field)
{
    QStringList changed;
    const auto beforeFields = fieldsOf(before);
    const auto afterFields = fieldsOf(after);
    for (int i = 0; i < beforeFields.size(); ++i) {
        if (beforeFields.at(i).first != field
            && afterFields.at(i).second != beforeFields.at(i).second)
            changed << beforeFields.at(i).first;
    }
    return changed;
}

// Each colour swatch and the record field it edits.
inline const QList<QPair<QString, QString>> swatchFields {
    { "lblTitleColor", "chartTitleColor" },
    { "lblValueAxisTitleColor", "valueAxisTitleColor" },
    { "lblBarColor", "chartBarColor" },
    { "lblAxisLabelColor", "chartAxisLabelColor" },
    { "lblLegendLabelColor", "chartLegendLabelColor" },
    { "lblBackgroundColorFrom", "chartBackgroundGradientFrom" },
    { "lblBackgroundColorTo", "chartBackgroundGradientTo" },
    { "lblPlotAreaColorFrom", "chartPlotAreaGradientFrom" },
    { "lblPlotAreaColorTo", "chartPlotAreaGradientTo" }
};

inline QRgb over(const QColor &color, QRgb background)
{
    const double a = color.alphaF();
    auto mix = [a](int c, int b) { return qRound(c * a + b * (1 - a)); };
    return qRgb(mix(color.red(), qRed(background)), mix(color.green(), qGreen(background)),
                mix(color.blue(), qBlue(background)));
}

inline bool near(QRgb actual, QRgb expected)
{
    // Premultiplied storage rounds each channel by up to one step either way.
    return qAbs(qRed(actual) - qRed(expected)) <= 2 && qAbs(qGreen(actual) - qGreen(expected)) <= 2
        && qAbs(qBlue(actual) - qBlue(expected)) <= 2
        && qAbs(qAlpha(actual) - qAlpha(expected)) <= 2;
}

inline QString rgbText(QRgb p)
{
    return QColor::fromRgba(p).name(QColor::HexArgb);
}

inline QImage swatchImage(TLabelClickable *label)
{
    return label->pixmap().toImage().convertToFormat(QImage::Format_ARGB32);
}

} // namespace dialogfixture
