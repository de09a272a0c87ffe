#pragma once

#include <QList>
#include <QPair>
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
// are left out. With an unknownKey, photos whose column is null get that key first ("case when
// <column> is null then 'unknown' when ..."). Empty when there is no "when" at all.
QString caseExpression(const QString &column, const QList<QString> &ranges,
                       const QString &unknownKey = {});

// "SELECT <case expression> as Range, count(1) as Count from <table> group by Range".
QString selectStatement(const QString &column, const QList<QString> &ranges,
                        const QString &table = QStringLiteral("Dateien"),
                        const QString &unknownKey = {});

// An index named name on the case expression. With it SQLite reads the grouped statistic in the
// order of its groups instead of sorting every row by its group first. Empty when there is no case
// expression.
QString indexStatement(const QString &name, const QString &column, const QList<QString> &ranges,
                       const QString &table = QStringLiteral("Dateien"),
                       const QString &unknownKey = {});

// "0024-0070" gives "24-70" followed by the unit; "Others" stays "Others", as does any key that is
// no range (an unknown key).
QString displayText(const QString &key, const QString &unit);

// The range's own name where one is given ("24-34" named "wide (24–34 mm)"), else displayText().
QString displayText(const QString &key, const QString &unit,
                    const QList<QPair<QString, QString>> &names);

} // namespace RangeGroups
