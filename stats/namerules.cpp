#include "namerules.h"

#include <QRegularExpression>
#include <QSet>

namespace MakerNames {

const QList<Maker> &builtIn()
{
    static const QList<Maker> makers {
        { "Canon", { "CANON", "CANON INC." } },
        { "Nikon", { "NIKON", "NIKON CORPORATION", "NIKON CORP." } },
        { "Sony", { "SONY", "SONY CORPORATION" } },
        { "Fujifilm", { "FUJIFILM", "FUJI PHOTO FILM CO., LTD.", "FUJIFILM CORPORATION" } },
        { "OM System / Olympus",
          { "OLYMPUS", "OLYMPUS IMAGING CORP.", "OLYMPUS CORPORATION", "OLYMPUS OPTICAL CO.,LTD",
            "OM DIGITAL SOLUTIONS" } },
        { "Kodak", { "KODAK", "EASTMAN KODAK COMPANY" } },
        { "Panasonic", { "PANASONIC" } },
        { "Leica", { "LEICA", "LEICA CAMERA AG" } },
        { "Pentax", { "PENTAX", "PENTAX CORPORATION", "ASAHI OPTICAL CO.,LTD" } },
        { "Ricoh", { "RICOH", "RICOH IMAGING COMPANY, LTD.", "RICOH COMPANY, LTD." } },
        { "Samsung", { "SAMSUNG", "SAMSUNG TECHWIN", "SAMSUNG TECHWIN CO., LTD." } },
        { "Apple", { "APPLE" } },
        { "Google", { "GOOGLE" } },
        { "Huawei", { "HUAWEI" } },
        { "Xiaomi", { "XIAOMI" } },
        { "Motorola", { "MOTOROLA" } },
        { "Casio", { "CASIO", "CASIO COMPUTER CO.,LTD.", "CASIO COMPUTER CO.,LTD" } },
        { "Konica Minolta",
          { "MINOLTA", "MINOLTA CO., LTD.", "KONICA MINOLTA", "KONICA MINOLTA CAMERA, INC." } },
        { "Sigma", { "SIGMA" } },
        { "Hasselblad", { "HASSELBLAD" } },
        { "DJI", { "DJI" } },
        { "GoPro", { "GOPRO" } },
        { "JVC", { "JVC", "VICTOR COMPANY OF JAPAN, LIMITED" } },
        { "HTC", { "HTC" } },
        { "LG", { "LG ELECTRONICS", "LGE" } },
        { "OnePlus", { "ONEPLUS" } },
        { "Nokia", { "NOKIA", "HMD GLOBAL" } },
        { "Phase One", { "PHASE ONE" } },
    };
    return makers;
}

// As the statements see it: a NUL ends the name (SQLite's text functions cannot look past one),
// tabs count as blanks, only blanks are trimmed and only ASCII letters change case.
QString key(const QString &name)
{
    QString cleaned = name.left(name.indexOf(QChar(0)));
    for (QChar &c : cleaned) {
        if (c == QLatin1Char('\t'))
            c = QLatin1Char(' ');
        else if (c >= QLatin1Char('a') && c <= QLatin1Char('z'))
            c = QChar(c.unicode() - 'a' + 'A');
    }
    qsizetype first = 0;
    qsizetype last = cleaned.size();
    while (first < last && cleaned.at(first) == QLatin1Char(' '))
        ++first;
    while (last > first && cleaned.at(last - 1) == QLatin1Char(' '))
        --last;
    return cleaned.mid(first, last - first);
}

QHash<QString, QString> resolveAliases(const QList<QPair<QString, QString>> &aliases)
{
    // The first entry of a spelling wins, as the user reads the list from the top.
    QHash<QString, QString> next;
    for (const auto &[spelling, name] : aliases) {
        if (!key(spelling).isEmpty() && !next.contains(key(spelling)))
            next.insert(key(spelling), name.trimmed());
    }
    QHash<QString, QString> resolved;
    for (auto it = next.cbegin(); it != next.cend(); ++it) {
        QSet<QString> seen { it.key() };
        QString name = it.value();
        while (next.contains(key(name)) && !seen.contains(key(name))) {
            seen.insert(key(name));
            const QString following = next.value(key(name));
            if (seen.contains(key(following)))
                break;
            name = following;
        }
        resolved.insert(it.key(), name);
    }
    return resolved;
}

QList<QPair<QString, QString>> parseAliases(const QStringList &entries)
{
    QList<QPair<QString, QString>> aliases;
    for (const QString &entry : entries) {
        const qsizetype equals = entry.indexOf(QLatin1Char('='));
        if (equals < 0)
            continue;
        const QString spelling = entry.left(equals).trimmed();
        const QString name = entry.mid(equals + 1).trimmed();
        if (!spelling.isEmpty() && !name.isEmpty())
            aliases.append({ spelling, name });
    }
    return aliases;
}

QStringList formatAliases(const QList<QPair<QString, QString>> &aliases)
{
    QStringList entries;
    for (const auto &[spelling, name] : aliases)
        entries.append(spelling + QStringLiteral(" = ") + name);
    return entries;
}

namespace {

// The built-in name of a spelling's key; empty when the table lacks it.
QString builtInName(const QString &spellingKey)
{
    for (const Maker &maker : builtIn()) {
        for (const char *spelling : maker.spellings) {
            if (spellingKey == QLatin1String(spelling))
                return QString::fromUtf8(maker.name);
        }
    }
    return {};
}

} // namespace

QString friendlyName(const QString &maker, const QList<QPair<QString, QString>> &aliases)
{
    const QString aliased = resolveAliases(aliases).value(key(maker), maker);
    const QString named = builtInName(key(aliased));
    return named.isEmpty() ? aliased : named;
}

} // namespace MakerNames

namespace NameRulesSql {

namespace {

NameRules &activeRules()
{
    static NameRules rules;
    return rules;
}

// DATEIEN's columns in their order; the names are the ones the rules rewrite.
const QStringList tableColumns { "id",          "FILENAME", "DATE",          "MAKER",
                                 "MODEL",       "LENS",     "FOCALLENGTH",   "ISO",
                                 "FNUMBER",     "EXPTIME",  "EXPTIMESTRING", "METERINGMODE",
                                 "EXPOSUREMODE" };
const QStringList nameColumns { "MAKER", "MODEL", "LENS" };

QString literal(const QString &text)
{
    QString quoted = text.left(text.indexOf(QChar(0)));
    quoted.replace(QLatin1Char('\''), QLatin1String("''"));
    return QLatin1Char('\'') + quoted + QLatin1Char('\'');
}

// Cut at the first NUL (found in the bytes: SQLite's text functions stop at a NUL), tabs as
// blanks, leading and trailing blanks gone: MakerNames::key() without the case.
QString cleaned(const QString &column)
{
    return QStringLiteral("trim(replace(CASE WHEN instr(CAST(%1 AS BLOB), X'00') > 0 THEN "
                          "CAST(substr(CAST(%1 AS BLOB), 1, instr(CAST(%1 AS BLOB), X'00') - 1) "
                          "AS TEXT) ELSE %1 END, char(9), ' '))")
        .arg(column);
}

QString friendlyMakerCase(const QString &column, const NameRules &rules)
{
    QString cases;
    const QHash<QString, QString> aliases = MakerNames::resolveAliases(rules.makerAliases);
    // The user's spellings first: they may override the built-in table.
    QStringList aliasKeys = aliases.keys();
    aliasKeys.sort();
    for (const QString &spelling : aliasKeys)
        cases += QStringLiteral(" WHEN %1 THEN %2")
                     .arg(literal(spelling),
                          literal(MakerNames::friendlyName(spelling, rules.makerAliases)));
    for (const MakerNames::Maker &maker : MakerNames::builtIn()) {
        for (const char *spelling : maker.spellings)
            cases +=
                QStringLiteral(" WHEN %1 THEN %2")
                    .arg(literal(QLatin1String(spelling)), literal(QString::fromUtf8(maker.name)));
    }
    return QStringLiteral("CASE upper(%1)%2 ELSE %3 END").arg(cleaned(column), cases, column);
}

} // namespace

const NameRules &active()
{
    return activeRules();
}

void setActive(const NameRules &rules)
{
    activeRules() = rules;
}

QString columnExpression(const QString &column, const NameRules &rules)
{
    QString value = column;
    if (rules.mergeBlanksAndCase)
        value = cleaned(value);
    if (rules.friendlyMakers && column == QLatin1String("MAKER"))
        value = friendlyMakerCase(value, rules);
    // One spelling for all that differ in case: the smallest in SQLite's binary order, the same
    // for every photo of the group.
    if (rules.mergeBlanksAndCase)
        value = QStringLiteral("min(%1) OVER (PARTITION BY upper(%1))").arg(value);
    return value;
}

QString apply(const QString &statement, const NameRules &rules)
{
    if (rules.countsRawNames())
        return statement;
    // Only the names the statement reads are rewritten: each costs a pass over the photos, and a
    // statement that reads none (ISO, dates, ...) stays as it is.
    QStringList columns;
    bool rewritten = false;
    for (const QString &column : tableColumns) {
        const bool named = nameColumns.contains(column)
            && statement.contains(QRegularExpression(QStringLiteral("\\b%1\\b").arg(column),
                                                     QRegularExpression::CaseInsensitiveOption));
        rewritten = rewritten || named;
        columns.append(named ? columnExpression(column, rules) + QStringLiteral(" AS ") + column
                             : column);
    }
    if (!rewritten)
        return statement;
    const QString source =
        QStringLiteral("FROM (SELECT %1 FROM Dateien) AS Dateien").arg(columns.join(", "));
    static const QRegularExpression table(QStringLiteral("\\bfrom\\s+dateien\\b"),
                                          QRegularExpression::CaseInsensitiveOption);
    QString result = statement;
    return result.replace(table, source);
}

} // namespace NameRulesSql

QList<QStringList> nearDuplicateNames(const QStringList &values)
{
    QHash<QString, QStringList> byKey;
    QStringList order;
    for (const QString &value : values) {
        const QString key = MakerNames::key(value);
        if (!byKey.contains(key))
            order.append(key);
        if (!byKey[key].contains(value))
            byKey[key].append(value);
    }
    QList<QStringList> groups;
    for (const QString &key : order) {
        if (byKey.value(key).size() > 1)
            groups.append(byKey.value(key));
    }
    return groups;
}
