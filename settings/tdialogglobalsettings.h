#pragma once

#include <QDialog>
#include <QList>
#include <QString>

class QListWidgetItem;
class QLineEdit;

namespace Ui {
class TSettingsDialog;
}

// The settings that are not tied to one chart: the update check, the number of files a scan reads
// at once, the photo catalogue, the focal-length, ISO and 35 mm focal-length range groups of the
// grouped charts and the makers and models a scan leaves out. Range groups are checked as they are
// typed; OK is refused while any of them is invalid.
class TDialogGlobalSettings : public QDialog
{
    Q_OBJECT

public:
    explicit TDialogGlobalSettings(QWidget *parent = nullptr);
    ~TDialogGlobalSettings() override;

    void setCheckForUpdate(bool check);
    bool checkForUpdate();

    // How many files a scan reads at once; the spin box keeps it within its range.
    void setReaderThreads(int count);
    int readerThreads();
    void setPairsOnce(bool once);
    bool pairsOnce();

    // "Count names that differ only in blanks and case together", "Friendly maker names" and the
    // user's maker spellings ("spelling = name", one per entry; empty lines are dropped).
    void setMergeNames(bool merge);
    bool mergeNames() const;
    void setFriendlyMakers(bool friendly);
    bool friendlyMakers() const;
    void setMakerAliases(const QStringList &entries);
    QStringList makerAliases() const;
    // The photo catalogue: whether scans use it, after how many days without a scan a folder's
    // photos are dropped from it (0: never), and whether "Forget remembered photos" was pressed,
    // which empties it with the scan that OK starts.
    void setRememberPhotos(bool remember);
    bool rememberPhotos();
    void setForgetUnseenAfterDays(int days);
    int forgetUnseenAfterDays();
    bool forgetPhotosRequested() const { return forgetRequested; }

    void setMakerExcludes(QList<QString> &makers);
    QList<QString> makerExcludes();
    void setModelExcludes(QList<QString> &models);
    QList<QString> modelExcludes();

    // The getters return the groups as last accepted by their field, not the field's text.
    void setFocalLengthGroups(QList<QString> &groups);
    QList<QString> focalLengthGroups();
    void setISOGroups(QList<QString> &groups);
    QList<QString> isoGroups();
    void setFocalLength35Groups(QList<QString> &groups);
    QList<QString> focalLength35Groups();

    // "24-70;71-200": ranges "low-high" separated by ";", strictly increasing, not touching,
    // the first low bound at least 1. Empty parts are ignored; the empty text is valid.
    bool validateGroups(QString text);

public slots:
    void accept() override;
    void reject() override;
    void changePage(QListWidgetItem *current, QListWidgetItem *previous);

private slots:
    void on_leFocalLengthGroups_editingFinished();
    void on_leISOGroups_editingFinished();
    void on_leFocalLengthGroups_returnPressed();
    void on_leISOGroups_returnPressed();
    void on_leFocalLength35Groups_editingFinished();
    void on_leFocalLength35Groups_returnPressed();
    void on_pushButtonForgetPhotos_clicked();

private:
    void createIcons();
    // Shows the error box and hands the field back to the user with its text selected.
    void refuseGroups(QLineEdit *field, const QString &message);

    Ui::TSettingsDialog *ui;
    bool focalLengthGroupsValid = true;
    bool isoGroupsValid = true;
    bool focalLength35GroupsValid = true;
    bool forgetRequested = false;
    // The ranges as last accepted by each field (named so because the getters take the plain
    // names).
    QList<QString> acceptedFocalLengthGroups;
    QList<QString> acceptedIsoGroups;
    QList<QString> acceptedFocalLength35Groups;
};
