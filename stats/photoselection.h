#pragma once

#include "filteredstatement.h"

#include <QSqlDatabase>
#include <QString>

// The photos a filter keeps, found once per filter and held as ids in a temporary table of the
// connection. A statement that reads "FROM Dateien" or "FROM PhotoInfo" (any case) reads them
// through a source of the table's own name joined to those ids, so every statistic's statement
// serves filtered and unfiltered alike and still walks its own index: the ids are only looked
// up, never sorted or searched for a value.
class PhotoSelection
{
public:
    // An empty selection: every photo, every statement unchanged. The name tells two selections
    // of one connection apart (the periods of a comparison).
    explicit PhotoSelection(const QString &name = QStringLiteral("KelvaroSelection"));

    // Finds the filter's photos on the connection; run again whenever the photos or the filter
    // change. A filter that keeps a raw file's companions out needs RawJpegPairs marked first.
    // False with the database's message when a statement fails; the selection is then empty.
    bool select(const QSqlDatabase &db, const StatementFilter &filter, QString *error = nullptr);
    // Back to every photo.
    void clear();

    const StatementFilter &filter() const { return statementFilter; }
    bool isFiltered() const { return statementFilter.changesStatements(); }

    // The statement reading the selected photos; unchanged while the selection is empty.
    BoundStatement apply(const QString &statement) const;

    // The number of photos selected; -1 when the statement fails.
    qint64 count(const QSqlDatabase &db) const;
    // The same as found when the filter's photos were selected, without a statement; -1 while
    // the filter is empty.
    qint64 selectedCount() const { return filter().filter().isEmpty() ? -1 : photosSelected; }
    // "SELECT ID FROM <the selection's table>": the selected ids alone, with nothing to bind; only
    // while the filter is not empty.
    QString idsStatement() const { return QStringLiteral("SELECT ID FROM ") + idTable; }

private:
    QString source(const QString &table) const;
    bool selectDays(const QSqlDatabase &db, const PhotoFilter &filter);

    // Below one photo in this many the selected photos are looked up in the tables.
    static constexpr qint64 fewSelectedShare = 8;

    QString idTable; // "temp.<name>"
    bool fewSelected = false;
    qint64 photosSelected = 0;
    QString dayTable; // "temp.<name>Days"
    StatementFilter statementFilter;
};
