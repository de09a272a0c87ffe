#include "filterpanel.h"
#include "ui_filterpanel.h"

#include <QListWidget>
#include <QSignalBlocker>

namespace {

// The value of a list's entry; its text adds the count.
constexpr int valueRole = Qt::UserRole;

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
    connect(ui->listWidgetPicked, &QListWidget::itemChanged, this, &FilterPanel::pickedRowsChanged);
    showDates();
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
    switch (preset) {
    case AllDays:
        current.from = QDate();
        current.to = QDate();
        break;
    case ThisYear:
        current.from = QDate(today.year(), 1, 1);
        current.to = QDate(today.year(), 12, 31);
        break;
    case LastYear:
        current.from = QDate(today.year() - 1, 1, 1);
        current.to = QDate(today.year() - 1, 12, 31);
        break;
    case LastTwelveMonths:
        current.from = today.addYears(-1).addDays(1);
        current.to = today;
        break;
    default:
        // Custom days start from what the edits show.
        current.from = ui->dateEditFrom->date();
        current.to = ui->dateEditTo->date();
        break;
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
    int preset = CustomDays;
    if (!current.hasDateRange())
        preset = AllDays;
    else if (current.from == QDate(today.year(), 1, 1) && current.to == QDate(today.year(), 12, 31))
        preset = ThisYear;
    else if (current.from == QDate(today.year() - 1, 1, 1)
             && current.to == QDate(today.year() - 1, 12, 31))
        preset = LastYear;
    else if (current.from == today.addYears(-1).addDays(1) && current.to == today)
        preset = LastTwelveMonths;
    ui->comboBoxDatePreset->setCurrentIndex(preset);
    ui->dateEditFrom->setDate(current.from.isValid() ? current.from : today.addYears(-1));
    ui->dateEditTo->setDate(current.to.isValid() ? current.to : today);
    ui->dateEditFrom->setEnabled(preset != AllDays);
    ui->dateEditTo->setEnabled(preset != AllDays);
    updating = false;
}

void FilterPanel::clearFilter()
{
    PhotoFilter cleared;
    cleared.pairsOnce = current.pairsOnce;
    setFilter(cleared);
    emit filterChanged(current);
}
