#pragma once

#include <QList>
#include <QString>

#include <optional>

// Range groups of the grouped focal-length and ISO charts: texts such as "24-70" turned into one
// SQL case expression whose keys ("0024-0070") sort in numerical order, and keys turned back into
// readable texts.
namespace RangeGroups {

struct Range
{
    QString low; // the digits as written, without surrounding blanks or a plus sign
    QString high;
    int lowValue = 0;
    int highValue = 0;
};

// Two whole numbers joined by one "-", each maybe with blanks around it; anything else gives
// no range.
std::optional<Range> parse(const QString &text);

// Both numbers zero-padded to at least four digits, longer ones kept whole: "0024-0070".
QString key(int low, int high);

// "case when <column> between 24 and 70 then '0024-0070' ... else 'Others' end"; malformed ranges
// are left out. Empty when no range is usable.
QString caseExpression(const QString &column, const QList<QString> &ranges);

// "SELECT <case expression> as Range, count(1) as Count from Dateien group by Range".
QString selectStatement(const QString &column, const QList<QString> &ranges);

// An index named name on the case expression. With it SQLite reads the grouped statistic in the
// order of its groups instead of sorting every row by its group first. Empty when no range is
// usable (the statement then has no case expression).
QString indexStatement(const QString &name, const QString &column, const QList<QString> &ranges);

// "0024-0070" gives "24-70" followed by the unit; "Others" stays "Others".
QString displayText(const QString &key, const QString &unit);

} // namespace RangeGroups
