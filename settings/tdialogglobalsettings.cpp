#include "tdialogglobalsettings.h"
#include "ui_tdialogglobalsettings.h"

#include <QIcon>
#include <QListWidgetItem>
#include <QMessageBox>

TDialogGlobalSettings::TDialogGlobalSettings(QWidget *parent)
    : QDialog(parent)
    , ui(new Ui::TSettingsDialog)
{
    ui->setupUi(this);
    setWindowTitle(tr("Settings"));

    ui->listWidget->setViewMode(QListView::ListMode);
    ui->listWidget->setIconSize(QSize(24, 24));
    ui->listWidget->setMovement(QListView::Static);
    createIcons();
    ui->listWidget->setCurrentRow(0);

    connect(ui->buttonBox, &QDialogButtonBox::accepted, this, &TDialogGlobalSettings::accept);
    connect(ui->buttonBox, &QDialogButtonBox::rejected, this, &TDialogGlobalSettings::reject);
    connect(ui->listWidget, &QListWidget::currentItemChanged, this,
            &TDialogGlobalSettings::changePage);
}

TDialogGlobalSettings::~TDialogGlobalSettings()
{
    delete ui;
}

void TDialogGlobalSettings::createIcons()
{
    const struct
    {
        const char *icon;
        const char *text;
    } pages[] = { { ":/ressourcen/Settings/Update.png", QT_TR_NOOP("General") },
                  { ":/ressourcen/Settings/Ranges.png", QT_TR_NOOP("Groups") },
                  { ":/ressourcen/Settings/Exclude.png", QT_TR_NOOP("Exclude") } };
    for (const auto &page : pages) {
        auto *item = new QListWidgetItem(ui->listWidget);
        item->setIcon(QIcon(QString::fromLatin1(page.icon)));
        item->setText(tr(page.text));
        item->setTextAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        item->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
        item->setSizeHint(QSize(0, 40));
    }
}

void TDialogGlobalSettings::changePage(QListWidgetItem *current, QListWidgetItem *previous)
{
    if (!current)
        current = previous;
    ui->stackedWidget->setCurrentIndex(ui->listWidget->row(current));
}

void TDialogGlobalSettings::setCheckForUpdate(bool check)
{
    ui->checkBoxUpdates->setChecked(check);
}

bool TDialogGlobalSettings::checkForUpdate()
{
    return ui->checkBoxUpdates->isChecked();
}

void TDialogGlobalSettings::setMergeNames(bool merge)
{
    ui->checkBoxMergeNames->setChecked(merge);
}

bool TDialogGlobalSettings::mergeNames() const
{
    return ui->checkBoxMergeNames->isChecked();
}

void TDialogGlobalSettings::setFriendlyMakers(bool friendly)
{
    ui->checkBoxFriendlyMakers->setChecked(friendly);
}

bool TDialogGlobalSettings::friendlyMakers() const
{
    return ui->checkBoxFriendlyMakers->isChecked();
}

void TDialogGlobalSettings::setMakerAliases(const QStringList &entries)
{
    ui->plainTextEditMakerAliases->setPlainText(entries.join(QLatin1Char('\n')));
}

QStringList TDialogGlobalSettings::makerAliases() const
{
    QStringList entries;
    const QStringList lines = ui->plainTextEditMakerAliases->toPlainText().split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (!line.trimmed().isEmpty())
            entries.append(line.trimmed());
    }
    return entries;
}

void TDialogGlobalSettings::setReaderThreads(int count)
{
    ui->spinBoxReaderThreads->setValue(count);
}

int TDialogGlobalSettings::readerThreads()
{
    return ui->spinBoxReaderThreads->value();
}

void TDialogGlobalSettings::setRememberPhotos(bool remember)
{
    ui->checkBoxRememberPhotos->setChecked(remember);
}

bool TDialogGlobalSettings::rememberPhotos()
{
    return ui->checkBoxRememberPhotos->isChecked();
}

void TDialogGlobalSettings::setForgetUnseenAfterDays(int days)
{
    ui->spinBoxForgetUnseenDays->setValue(days);
}

int TDialogGlobalSettings::forgetUnseenAfterDays()
{
    return ui->spinBoxForgetUnseenDays->value();
}

// The catalogue is written by scans only; OK starts one, which empties it first.
void TDialogGlobalSettings::on_pushButtonForgetPhotos_clicked()
{
    forgetRequested = true;
    ui->pushButtonForgetPhotos->setEnabled(false);
    ui->labelForgetPhotos->setText(tr("Forgotten when you press OK"));
}

void TDialogGlobalSettings::setPairsOnce(bool once)
{
    ui->checkBoxPairsOnce->setChecked(once);
}

bool TDialogGlobalSettings::pairsOnce()
{
    return ui->checkBoxPairsOnce->isChecked();
}

void TDialogGlobalSettings::setMakerExcludes(QList<QString> &makers)
{
    ui->leMakerExcludes->setText(makers.join(';'));
}

QList<QString> TDialogGlobalSettings::makerExcludes()
{
    return ui->leMakerExcludes->text().split(';', Qt::SkipEmptyParts);
}

void TDialogGlobalSettings::setModelExcludes(QList<QString> &models)
{
    ui->leModelExcludes->setText(models.join(';'));
}

QList<QString> TDialogGlobalSettings::modelExcludes()
{
    return ui->leModelExcludes->text().split(';', Qt::SkipEmptyParts);
}

void TDialogGlobalSettings::setFocalLengthGroups(QList<QString> &groups)
{
    acceptedFocalLengthGroups = groups;
    ui->leFocalLengthGroups->setText(groups.join(';'));
}

QList<QString> TDialogGlobalSettings::focalLengthGroups()
{
    return acceptedFocalLengthGroups;
}

void TDialogGlobalSettings::setISOGroups(QList<QString> &groups)
{
    acceptedIsoGroups = groups;
    ui->leISOGroups->setText(groups.join(';'));
}

QList<QString> TDialogGlobalSettings::isoGroups()
{
    return acceptedIsoGroups;
}

void TDialogGlobalSettings::setFocalLength35Groups(QList<QString> &groups)
{
    acceptedFocalLength35Groups = groups;
    ui->leFocalLength35Groups->setText(groups.join(';'));
}

QList<QString> TDialogGlobalSettings::focalLength35Groups()
{
    return acceptedFocalLength35Groups;
}

bool TDialogGlobalSettings::validateGroups(QString text)
{
    if (text.isEmpty())
        return true;
    const QStringList ranges = text.split(';', Qt::SkipEmptyParts);
    if (ranges.isEmpty())
        return false;

    int last = 0;
    for (const QString &range : ranges) {
        const QStringList bounds = range.split('-', Qt::KeepEmptyParts);
        if (bounds.size() != 2)
            return false;
        // toInt() gives 0 for anything that is not a decimal int, so such a bound always fails.
        const int low = bounds.at(0).toInt();
        const int high = bounds.at(1).toInt();
        if (!(high > low && low > last))
            return false;
        last = high;
    }
    return true;
}

void TDialogGlobalSettings::refuseGroups(QLineEdit *field, const QString &message)
{
    QMessageBox::critical(this, tr("Error"), message, QMessageBox::Ok);
    field->setFocus(Qt::OtherFocusReason);
    field->selectAll();
}

void TDialogGlobalSettings::on_leFocalLengthGroups_editingFinished()
{
    acceptedFocalLengthGroups.clear();
    if (validateGroups(ui->leFocalLengthGroups->text())) {
        focalLengthGroupsValid = true;
        acceptedFocalLengthGroups = ui->leFocalLengthGroups->text().split(';', Qt::SkipEmptyParts);
    } else {
        refuseGroups(ui->leFocalLengthGroups, tr("Data in FocalLength Groups not valid"));
        focalLengthGroupsValid = false;
    }
}

void TDialogGlobalSettings::on_leISOGroups_editingFinished()
{
    acceptedIsoGroups.clear();
    if (validateGroups(ui->leISOGroups->text())) {
        isoGroupsValid = true;
        acceptedIsoGroups = ui->leISOGroups->text().split(';', Qt::SkipEmptyParts);
    } else {
        refuseGroups(ui->leISOGroups, tr("Data in ISO Groups not valid"));
        isoGroupsValid = false;
    }
}

void TDialogGlobalSettings::on_leFocalLength35Groups_editingFinished()
{
    acceptedFocalLength35Groups.clear();
    if (validateGroups(ui->leFocalLength35Groups->text())) {
        focalLength35GroupsValid = true;
        acceptedFocalLength35Groups =
            ui->leFocalLength35Groups->text().split(';', Qt::SkipEmptyParts);
    } else {
        refuseGroups(ui->leFocalLength35Groups, tr("Data in FocalLength 35mm Groups not valid"));
        focalLength35GroupsValid = false;
    }
}

void TDialogGlobalSettings::on_leFocalLength35Groups_returnPressed()
{
    focalLength35GroupsValid = validateGroups(ui->leFocalLength35Groups->text());
}

void TDialogGlobalSettings::on_leFocalLengthGroups_returnPressed()
{
    focalLengthGroupsValid = validateGroups(ui->leFocalLengthGroups->text());
}

void TDialogGlobalSettings::on_leISOGroups_returnPressed()
{
    isoGroupsValid = validateGroups(ui->leISOGroups->text());
}

void TDialogGlobalSettings::accept()
{
    // The error box has already been shown when the field was left; OK just stays without effect.
    if (focalLengthGroupsValid && isoGroupsValid && focalLength35GroupsValid)
        QDialog::accept();
}

void TDialogGlobalSettings::reject()
{
    QDialog::reject();
}
