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

    // Called with the number of files met so far, every 50 files.
    void run(QList<QString> directories, QList<QString> patterns, bool includeSubDirs,
             const StoredScanSettings &settings, const std::function<void(int)> &progress);

    qint64 photoCount() const;

private:
    QSqlDatabase db;
};
