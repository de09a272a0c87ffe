#pragma once

#include <QHash>
#include <QList>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>

#include <functional>

// What kelvaro-stats takes from the window's settings store, so that both count alike: the
// exclusion lists, the range groups, how many files are read at once and the maker aliases.
struct StoredScanSettings
{
    QList<QString> makerExcludes;
    QList<QString> modelExcludes;
    QHash<QString, QList<QString>> rangeGroups; // by the statistic's settings key
    int readerThreads = 0;
    QStringList makerAliases; // "spelling = name", used with --friendly-makers
    // The photo catalogue as the window uses it.
    bool rememberPhotos = true;
    int forgetUnseenAfterDays = 0;

    static StoredScanSettings read();
};

// One scan as the window runs it: the same worker on a thread of its own, filling the photo
// database behind `db` (the main connection, opened here). Blocks until the scan has ended.
class HeadlessScan
{
public:
    HeadlessScan();
    ~HeadlessScan();
    HeadlessScan(const HeadlessScan &) = delete;
    HeadlessScan &operator=(const HeadlessScan &) = delete;

    bool isOpen() const { return db.isOpen(); }
    QSqlDatabase &database() { return db; }

    // Called with the number of files met so far, every 50 files. The photo catalogue is used
    // when the settings remember photos and useCatalogue is set.
    void run(QList<QString> directories, QList<QString> patterns, bool includeSubDirs,
             const StoredScanSettings &settings, const std::function<void(int)> &progress,
             bool useCatalogue = true);
    // What the scan said about the catalogue (a problem with it), or empty.
    QString catalogueNote() const { return note; }

    qint64 photoCount() const;

private:
    QSqlDatabase db;
    QString note;
};
