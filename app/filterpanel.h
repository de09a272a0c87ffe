#pragma once

#include "periodcomparison.h"
#include "photofilter.h"
#include "statisticrows.h"

#include <QDate>
#include <QList>
#include <QWidget>

class QListWidget;

namespace Ui {
class FilterPanel;
}

// The filter panel beside the directory tree: a checkable list per filter field with the values
// of the current scan and their counts, a range of days with its presets, and "Clear filter".
// It holds the filter the user set; values that a new scan no longer has drop out of it, and a
// filter set before the first scan (the stored one) waits for the values to appear. "Compare
// with..." sets a second range of days, with the same presets, that the statistics count beside
// the filter's own; "Clear filter" leaves it as it is, its own box turns it off.
class FilterPanel : public QWidget
{
    Q_OBJECT

public:
    enum DatePreset { AllDays, ThisYear, LastYear, LastTwelveMonths, CustomDays };

    explicit FilterPanel(QWidget *parent = nullptr);
    ~FilterPanel() override;

    // The day the presets count from; today unless a test sets another.
    void setToday(const QDate &today);

    // The values of a field in the current scan, with their counts; the field's checked values
    // that are not among them are dropped from the filter.
    void setChoices(const PhotoFilterField &field, const QList<StatisticRow> &values);

    PhotoFilter filter() const { return current; }
    // Shows the filter; list values are checked as far as the lists hold them (see setChoices).
    // Emits nothing.
    void setFilter(const PhotoFilter &filter);
    // Adds one value to a field's list of the filter, as a double-click on a statistic does.
    void addValue(const PhotoFilterField &field, const QString &value);
    // Adds a picked row of a statistic without a field of its own; it stands checked under "Also"
    // until the user unchecks it.
    void addPickedRow(const PickedRow &row);

    QListWidget *list(const PhotoFilterField &field) const;

    PeriodComparison comparison() const { return compared; }
    // Shows the comparison; emits nothing.
    void setComparison(const PeriodComparison &comparison);

signals:
    // Whenever the user changes the filter.
    void filterChanged(const PhotoFilter &filter);
    // Whenever the user turns the comparison on or off or changes its days.
    void comparisonChanged(const PeriodComparison &comparison);

private:
    void applyPreset(int preset);
    void datesEdited();
    void listChanged(const PhotoFilterField &field);
    void showDates();
    void showPickedRows();
    void pickedRowsChanged();
    void clearFilter();
    void compareToggled(bool on);
    void applyComparePreset(int preset);
    void compareDatesEdited();
    void showCompareDates();

    Ui::FilterPanel *ui;
    PhotoFilter current;
    PeriodComparison compared;
    QDate today;
    // Set while the panel changes its own widgets, whose signals are then no user's change.
    bool updating = false;
};
