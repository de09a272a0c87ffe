#include "filterpanel.h"
#include "ui_filterpanel.h"

#include <QListWidget>
#include <QSignalBlocker>

namespace {

// The value of a list's entry; its text adds the count.
constexpr int valueRole = Qt::UserRole;

// The days a preset names, counted from today; open bounds for every day. Custom days are the
// caller's.
void presetDays(int preset, const QDate &today, QDate &from, QDate &to)
{
    switch (preset) {
    case FilterPanel::AllDays:
        from = QDate();
        to = QDate();
        break;
    case FilterPanel::ThisYear:
        from = QDate(today.year(), 1, 1);
        to = QDate(today.year(), 12, 31);
        break;
    case FilterPanel::LastYear:
        from = QDate(today.year() - 1, 1, 1);
        to = QDate(today.year() - 1, 12, 31);
        break;
    case FilterPanel::LastTwelveMonths:
        from = today.addYears(-1).addDays(1);
        to = today;
        break;
    default:
        break;
    }
}

// The preset that names a range of days.
FilterPanel::DatePreset presetOf(const QDate &from, const QDate &to, const QDate &today)
{
    if (!from.isValid() && !to.isValid())
        return FilterPanel::AllDays;
    for (FilterPanel::DatePreset preset :
         { FilterPanel::ThisYear, FilterPanel::LastYear, FilterPanel::LastTwelveMonths }) {
        QDate presetFrom;
        QDate presetTo;
        presetDays(preset, today, presetFrom, presetTo);
        if (from == presetFrom && to == presetTo)
            return preset;
    }
    return FilterPanel::CustomDays;
}

// A preset's combo box and the edits of its days, which are enabled for a range of days.
void showRange(QComboBox *presets, QDateEdit *fromEdit, QDateEdit *toEdit, const QDate &from,
               const QDate &to, const QDate &today)
{
    const FilterPanel::DatePreset preset = presetOf(from, to, today);
    presets->setCurrentIndex(preset);
    fromEdit->setDate(from.isValid() ? from : today.addYears(-1));
    toEdit->setDate(to.isValid() ? to : today);
    fromEdit->setEnabled(preset != FilterPanel::AllDays);
    toEdit->setEnabled(preset != FilterPanel::AllDays);
}

} // namespace

FilterPanel::FilterPanel(QWidget *parent)
    : QWidget(parent)
    , ui(new Ui::FilterPanel)
    , today(QDate::currentDate())
{
    ui->setupUi(this);
    for (const PhotoFilterField &field : PhotoFilterFields::all())
        connect(list(field), &QListWidget::itemChanged, this,
                [this, &field] { listChanged(field); });
    connect(ui->comboBoxDatePreset, &QComboBox::activated, this, &FilterPanel::applyPreset);
    connect(ui->dateEditFrom, &QDateEdit::dateChanged, this, &FilterPanel::datesEdited);
    connect(ui->dateEditTo, &QDateEdit::dateChanged, this, &FilterPanel::datesEdited);
    connect(ui->pushButtonClear, &QPushButton::clicked, this, &FilterPanel::clearFilter);
    connect(ui->checkBoxCompare, &QCheckBox::toggled, this, &FilterPanel::compareToggled);
    connect(ui->comboBoxComparePreset, &QComboBox::activated, this,
            &FilterPanel::applyComparePreset);
    connect(ui->dateEditCompareFrom, &QDateEdit::dateChanged, this,
            &FilterPanel::compareDatesEdited);
    connect(ui->dateEditCompareTo, &QDateEdit::dateChanged, this, &FilterPanel::compareDatesEdited);
    connect(ui->listWidgetPicked, &QListWidget::itemChanged, this, &FilterPanel::pickedRowsChanged);
    showDates();
    showCompareDates();
    showPickedRows();
}

FilterPanel::~FilterPanel()
{
    delete ui;
}

void FilterPanel::setToday(const QDate &day)
{
    today = day;
}

QListWidget *FilterPanel::list(const PhotoFilterField &field) const
{
    return findChild<QListWidget *>(QStringLiteral("listWidget") + field.key);
}

void FilterPanel::setChoices(const PhotoFilterField &field, const QList<StatisticRow> &values)
{
    QListWidget *widget = list(field);
    const QSignalBlocker blocker(widget);
    widget->clear();
    QStringList kept;
    for (const StatisticRow &row : values) {
        auto *item =
            new QListWidgetItem(QStringLiteral("%1 (%2)").arg(row.value).arg(row.count), widget);
        item->setData(valueRole, row.value);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        const bool checked = (current.*field.values).contains(row.value);
        item->setCheckState(checked ? Qt::Checked : Qt::Unchecked);
        if (checked)
            kept << row.value;
    }
    // In the filter's order, so that a filter kept whole compares equal.
    QStringList ordered;
    for (const QString &value : std::as_const(current.*field.values)) {
        if (kept.contains(value))
            ordered << value;
    }
    current.*field.values = ordered;
}

void FilterPanel::setFilter(const PhotoFilter &filter)
{
    current = filter;
    for (const PhotoFilterField &field : PhotoFilterFields::all()) {
        QListWidget *widget = list(field);
        if (widget->count() == 0)
            continue; // waits for the values of a scan
        const QSignalBlocker blocker(widget);
        QStringList present;
        for (int row = 0; row < widget->count(); ++row) {
            QListWidgetItem *item = widget->item(row);
            const QString value = item->data(valueRole).toString();
            const bool checked = (filter.*field.values).contains(value);
            item->setCheckState(checked ? Qt::Checked : Qt::Unchecked);
            present << value;
        }
        QStringList kept;
        for (const QString &value : std::as_const(filter.*field.values)) {
            if (present.contains(value))
                kept << value;
        }
        current.*field.values = kept;
    }
    showDates();
    showPickedRows();
}

void FilterPanel::addValue(const PhotoFilterField &field, const QString &value)
{
    if ((current.*field.values).contains(value))
        return;
    PhotoFilter wanted = current;
    (wanted.*field.values).append(value);
    setFilter(wanted);
    emit filterChanged(current);
}

void FilterPanel::addPickedRow(const PickedRow &row)
{
    if (current.pickedRows.contains(row))
        return;
    current.pickedRows.append(row);
    showPickedRows();
    emit filterChanged(current);
}

// One checked entry per picked row, in the filter's order; the list hides while there is none.
void FilterPanel::showPickedRows()
{
    QListWidget *widget = ui->listWidgetPicked;
    const QSignalBlocker blocker(widget);
    widget->clear();
    for (const PickedRow &row : std::as_const(current.pickedRows)) {
        auto *item = new QListWidgetItem(row.label, widget);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(Qt::Checked);
    }
    widget->setVisible(!current.pickedRows.isEmpty());
    ui->labelPicked->setVisible(!current.pickedRows.isEmpty());
}

void FilterPanel::pickedRowsChanged()
{
    QList<PickedRow> kept;
    for (int row = 0; row < ui->listWidgetPicked->count(); ++row) {
        if (ui->listWidgetPicked->item(row)->checkState() == Qt::Checked)
            kept << current.pickedRows.at(row);
    }
    current.pickedRows = kept;
    // Deferred: the list is rebuilt, and the item that sent the signal is still in use.
    QMetaObject::invokeMethod(this, &FilterPanel::showPickedRows, Qt::QueuedConnection);
    emit filterChanged(current);
}

void FilterPanel::listChanged(const PhotoFilterField &field)
{
    QListWidget *widget = list(field);
    QStringList checked;
    for (int row = 0; row < widget->count(); ++row) {
        if (widget->item(row)->checkState() == Qt::Checked)
            checked << widget->item(row)->data(valueRole).toString();
    }
    current.*field.values = checked;
    emit filterChanged(current);
}

void FilterPanel::applyPreset(int preset)
{
    if (preset == CustomDays) {
        // Custom days start from what the edits show.
        current.from = ui->dateEditFrom->date();
        current.to = ui->dateEditTo->date();
    } else {
        presetDays(preset, today, current.from, current.to);
    }
    showDates();
    emit filterChanged(current);
}

void FilterPanel::datesEdited()
{
    if (updating)
        return;
    current.from = ui->dateEditFrom->date();
    current.to = ui->dateEditTo->date();
    showDates();
    emit filterChanged(current);
}

// The preset that names the range, and the edits enabled for a range of days.
void FilterPanel::showDates()
{
    updating = true;
    showRange(ui->comboBoxDatePreset, ui->dateEditFrom, ui->dateEditTo, current.from, current.to,
              today);
    updating = false;
}

void FilterPanel::clearFilter()
{
    PhotoFilter cleared;
    cleared.pairsOnce = current.pairsOnce;
    setFilter(cleared);
    emit filterChanged(current);
}

void FilterPanel::setComparison(const PeriodComparison &comparison)
{
    compared = comparison;
    showCompareDates();
}

// Turned on without days of its own, period B is last year: the usual question is how this year
// differs from the one before.
void FilterPanel::compareToggled(bool on)
{
    if (updating)
        return;
    compared.active = on;
    if (on && !compared.from.isValid() && !compared.to.isValid())
        presetDays(LastYear, today, compared.from, compared.to);
    showCompareDates();
    emit comparisonChanged(compared);
}

void FilterPanel::applyComparePreset(int preset)
{
    if (preset == CustomDays) {
        compared.from = ui->dateEditCompareFrom->date();
        compared.to = ui->dateEditCompareTo->date();
    } else {
        presetDays(preset, today, compared.from, compared.to);
    }
    showCompareDates();
    emit comparisonChanged(compared);
}

void FilterPanel::compareDatesEdited()
{
    if (updating)
        return;
    compared.from = ui->dateEditCompareFrom->date();
    compared.to = ui->dateEditCompareTo->date();
    showCompareDates();
    emit comparisonChanged(compared);
}

// Period B's days are shown only while the comparison is on.
void FilterPanel::showCompareDates()
{
    updating = true;
    ui->checkBoxCompare->setChecked(compared.active);
    showRange(ui->comboBoxComparePreset, ui->dateEditCompareFrom, ui->dateEditCompareTo,
              compared.from, compared.to, today);
    for (QWidget *widget : std::initializer_list<QWidget *> {
             ui->comboBoxComparePreset, ui->labelCompareFrom, ui->dateEditCompareFrom,
             ui->labelCompareTo, ui->dateEditCompareTo })
        widget->setVisible(compared.active);
    updating = false;
}
