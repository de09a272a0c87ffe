#pragma once

#include "photofilter.h"
#include "photoselection.h"

#include <QDate>
#include <QList>
#include <QSqlDatabase>
#include <QString>
#include <QVariant>

// "Compare with...": a second range of days set beside the filter's own. Period A is the filter
// as it is (its range, or every day); period B is the same filter over these days. Kept apart from
// PhotoFilter: a comparison changes how statistics are laid out, not which photos they count.
struct PeriodComparison
{
    bool active = false;
    QDate from; // open where invalid, as in PhotoFilter
    QDate to;

    // Period B: the filter's values over this comparison's days.
    PhotoFilter periodB(const PhotoFilter &periodA) const;
    // The days of both periods and those between them (open where either is), so that one
    // statement over it meets every value either period has.
    PhotoFilter span(const PhotoFilter &periodA) const;

    bool operator==(const PeriodComparison &other) const;
    bool operator!=(const PeriodComparison &other) const { return !(*this == other); }
};

// A statement's rows, every column of each.
using StatementRows = QList<QList<QVariant>>;

// The photos of both periods of a comparison, selected on one connection beside the selection of
// period A (the window's own), and the names the tables and legends give the periods.
class ComparedPeriods
{
public:
    ComparedPeriods();

    // Selects period B and the span of both beside period A's photos, selected already; an
    // inactive comparison clears them. False with the database's message when a statement fails;
    // the comparison is then off.
    bool select(const QSqlDatabase &db, const PhotoSelection &periodA,
                const PeriodComparison &comparison, QString *error = nullptr);
    void clear();

    bool isActive() const { return active; }
    const PhotoSelection &periodB() const { return selectionB; }
    const PhotoSelection &span() const { return spanSelection; }
    // "A: 2021", "B: all": a count column's header and a bar series' name.
    QString labelA() const { return QStringLiteral("A: ") + rangeA; }
    QString labelB() const { return QStringLiteral("B: ") + rangeB; }
    QString rangeTextA() const { return rangeA; }
    QString rangeTextB() const { return rangeB; }
    // The photos each period holds.
    qint64 photosA() const { return countA; }
    qint64 photosB() const { return countB; }

    // The statement's rows over both periods, period B's count in a column of its own right after
    // period A's (countColumn), in the statement's own order. Names are rewritten as the active
    // name rules say, as every statistic's statement is.
    bool readSideBySide(const QString &statement, const QSqlDatabase &db,
                        const PhotoSelection &periodA, int countColumn, StatementRows &rows,
                        QString *error = nullptr) const;

private:
    bool active = false;
    PhotoSelection selectionB;
    PhotoSelection spanSelection;
    QString rangeA;
    QString rangeB;
    qint64 countA = 0;
    qint64 countB = 0;
};

namespace PeriodRows {

// The rows of period A and B side by side, in `order`'s order: the rows of a statement over
// photos of both periods (or more). A row is kept where either period has it, even with a count
// of 0 (a null value counted); rows pair by their columns other than the count, and a row that
// appears several times in a period (one model name of two makers) pairs by its occurrence. A
// period without a row counts 0 there.
StatementRows sideBySide(const StatementRows &order, const StatementRows &a, const StatementRows &b,
                         int countColumn);

// Whether every row of b (by its columns other than the count) is among a's: a's order then
// serves both.
bool covers(const StatementRows &a, const StatementRows &b, int countColumn);

} // namespace PeriodRows
