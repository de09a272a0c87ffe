#include "periodcomparison.h"

#include "namerules.h"

#include <QHash>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

#include <algorithm>

namespace {

// The earlier of two bounds of a span, open when either is.
QDate earlier(const QDate &a, const QDate &b)
{
    return a.isValid() && b.isValid() ? std::min(a, b) : QDate();
}

QDate later(const QDate &a, const QDate &b)
{
    return a.isValid() && b.isValid() ? std::max(a, b) : QDate();
}

// A row's columns other than the count, as one text; a null value differs from an empty text.
QString rowKey(const QList<QVariant> &row, int countColumn)
{
    QString key;
    for (int column = 0; column < row.size(); ++column) {
        if (column == countColumn)
            continue;
        const QVariant &value = row.at(column);
        key +=
            value.isNull() ? QStringLiteral("\x1fN") : QStringLiteral("\x1fV") + value.toString();
    }
    return key;
}

// Each row's counts by its key, in the order the rows come.
QHash<QString, QList<qint64>> countsByKey(const StatementRows &rows, int countColumn)
{
    QHash<QString, QList<qint64>> counts;
    for (const QList<QVariant> &row : rows)
        counts[rowKey(row, countColumn)].append(row.value(countColumn).toLongLong());
    return counts;
}

bool readRows(const BoundStatement &statement, const QSqlDatabase &db, StatementRows &rows,
              QString *error)
{
    rows.clear();
    QSqlQuery query(db);
    query.setForwardOnly(true);
    if (!statement.exec(query)) {
        if (error)
            *error = query.lastError().text();
        return false;
    }
    const int columns = query.record().count();
    while (query.next()) {
        QList<QVariant> row;
        row.reserve(columns);
        for (int column = 0; column < columns; ++column)
            row.append(query.value(column));
        rows.append(row);
    }
    return true;
}

} // namespace

PhotoFilter PeriodComparison::periodB(const PhotoFilter &periodA) const
{
    PhotoFilter filter = periodA;
    filter.from = from;
    filter.to = to;
    return filter;
}

PhotoFilter PeriodComparison::span(const PhotoFilter &periodA) const
{
    PhotoFilter filter = periodA;
    filter.from = earlier(periodA.from, from);
    filter.to = later(periodA.to, to);
    return filter;
}

bool PeriodComparison::operator==(const PeriodComparison &other) const
{
    return active == other.active && from == other.from && to == other.to;
}

ComparedPeriods::ComparedPeriods()
    : selectionB(QStringLiteral("KelvaroPeriodB"))
    , spanSelection(QStringLiteral("KelvaroPeriodSpan"))
{ }

bool ComparedPeriods::select(const QSqlDatabase &db, const PhotoSelection &periodA,
                             const PeriodComparison &comparison, QString *error)
{
    clear();
    if (!comparison.active)
        return true;
    const StatementFilter &filterOfA = periodA.filter();
    const PhotoFilter &filterA = filterOfA.filter();
    const auto statementFilter = [&](const PhotoFilter &filter) {
        return StatementFilter(filter, filterOfA.columnExpressions(), filterOfA.nameRules());
    };
    if (!selectionB.select(db, statementFilter(comparison.periodB(filterA)), error)
        || !spanSelection.select(db, statementFilter(comparison.span(filterA)), error)) {
        clear();
        return false;
    }
    countA = periodA.count(db);
    countB = selectionB.count(db);
    if (countA < 0 || countB < 0) {
        if (error)
            *error = QStringLiteral("the periods' photos could not be counted");
        clear();
        return false;
    }
    rangeA = filterA.dateRangeText();
    rangeB = comparison.periodB(filterA).dateRangeText();
    active = true;
    return true;
}

void ComparedPeriods::clear()
{
    active = false;
    selectionB.clear();
    spanSelection.clear();
    rangeA.clear();
    rangeB.clear();
    countA = 0;
    countB = 0;
}

bool ComparedPeriods::readSideBySide(const QString &statement, const QSqlDatabase &db,
                                     const PhotoSelection &periodA, int countColumn,
                                     StatementRows &rows, QString *error) const
{
    rows.clear();
    const QString named = NameRulesSql::apply(statement, NameRulesSql::active());
    StatementRows a;
    StatementRows b;
    if (!readRows(periodA.apply(named), db, a, error)
        || !readRows(selectionB.apply(named), db, b, error))
        return false;
    // Where period B has a value that A lacks, only the statement itself knows where it goes.
    if (PeriodRows::covers(a, b, countColumn)) {
        rows = PeriodRows::sideBySide(a, a, b, countColumn);
        return true;
    }
    StatementRows order;
    if (!readRows(spanSelection.apply(named), db, order, error))
        return false;
    rows = PeriodRows::sideBySide(order, a, b, countColumn);
    return true;
}

namespace PeriodRows {

StatementRows sideBySide(const StatementRows &order, const StatementRows &a, const StatementRows &b,
                         int countColumn)
{
    const QHash<QString, QList<qint64>> countsA = countsByKey(a, countColumn);
    const QHash<QString, QList<qint64>> countsB = countsByKey(b, countColumn);
    QHash<QString, int> seen;
    StatementRows rows;
    for (const QList<QVariant> &row : order) {
        const QString key = rowKey(row, countColumn);
        const int occurrence = seen[key]++;
        const QList<qint64> inA = countsA.value(key);
        const QList<qint64> inB = countsB.value(key);
        if (occurrence >= inA.size() && occurrence >= inB.size())
            continue;
        QList<QVariant> sideBySide = row;
        sideBySide[countColumn] = occurrence < inA.size() ? inA.at(occurrence) : qint64(0);
        sideBySide.insert(countColumn + 1,
                          occurrence < inB.size() ? inB.at(occurrence) : qint64(0));
        rows.append(sideBySide);
    }
    return rows;
}

bool covers(const StatementRows &a, const StatementRows &b, int countColumn)
{
    const QHash<QString, QList<qint64>> countsA = countsByKey(a, countColumn);
    const QHash<QString, QList<qint64>> countsB = countsByKey(b, countColumn);
    for (auto it = countsB.cbegin(); it != countsB.cend(); ++it) {
        if (countsA.value(it.key()).size() < it.value().size())
            return false;
    }
    return true;
}

} // namespace PeriodRows
