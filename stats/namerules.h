#pragma once

#include <QHash>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

// How the statistics count names. By default as the files hold them; on request names that
// differ only in leading or trailing blanks, NULs or letter case count as one, and makers count
// under one friendly name for their many spellings ("NIKON CORPORATION", "NIKON" → "Nikon"). The
// photo table keeps the raw values: the rules rewrite the statistics' statements only, so the
// Data tab and the export are untouched.
struct NameRules
{
    bool mergeBlanksAndCase = false;
    bool friendlyMakers = false;
    // The user's own maker spellings and the names they stand for, used with friendlyMakers. A
    // name may itself be a spelling of another entry or of the built-in table.
    QList<QPair<QString, QString>> makerAliases;

    bool countsRawNames() const { return !mergeBlanksAndCase && !friendlyMakers; }
};

namespace NameRulesSql {

// The rules the statistics use now. The window and kelvaro-stats set them from their settings
// before a refresh; charts and rows are counted on the thread that sets them.
const NameRules &active();
void setActive(const NameRules &rules);

// A statement of the registry with DATEIEN read through the rules: "FROM Dateien" becomes a
// sub-select that gives every column of the table, the names rewritten. Unchanged while the rules
// count raw names.
QString apply(const QString &statement, const NameRules &rules);

// The SQL expression that gives the column's value under the rules (MAKER, MODEL or LENS).
QString columnExpression(const QString &column, const NameRules &rules);

} // namespace NameRulesSql

namespace MakerNames {

struct Maker
{
    const char *name; // as the charts show it
    QList<const char *> spellings; // as cameras write it, upper case, blanks trimmed
};

// The built-in table of the common makers' spellings.
const QList<Maker> &builtIn();

// A name as it is compared: cut at its first NUL (as the reader cuts a file's text), tabs as
// blanks, leading and trailing blanks gone, ASCII letters in upper case.
QString key(const QString &name);

// Every user spelling (by key) to the name it ends at: aliases are followed from one to the next
// and stop before a name comes round again, so chains and circles end.
QHash<QString, QString> resolveAliases(const QList<QPair<QString, QString>> &aliases);

// The user's list as the settings keep it, one "spelling = name" per entry; entries without "="
// or with an empty side are left out.
QList<QPair<QString, QString>> parseAliases(const QStringList &entries);
QStringList formatAliases(const QList<QPair<QString, QString>> &aliases);

// The friendly name of a maker under the aliases and the built-in table; the name itself when
// neither knows it.
QString friendlyName(const QString &maker, const QList<QPair<QString, QString>> &aliases);

} // namespace MakerNames

// Values of a statistic that differ only in blanks, NULs or case: the groups of two or more, each
// in the order the values came.
QList<QStringList> nearDuplicateNames(const QStringList &values);
