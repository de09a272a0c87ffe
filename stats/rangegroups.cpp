#include "rangegroups.h"

#include <QStringList>

namespace RangeGroups {

namespace {

// What the settings dialog accepts as a number (blanks around it, a plus sign) reduced to its
// plain ASCII digits, which alone may enter the statement; anything else (a decimal point, a
// blank inside, other scripts' digits, SQL) is refused.
std::optional<QString> plainDigits(const QString &part)
{
    QString digits = part.trimmed();
    if (digits.startsWith(QLatin1Char('+')))
        digits.remove(0, 1);
    if (digits.isEmpty())
        return std::nullopt;
    for (QChar c : std::as_const(digits)) {
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return std::nullopt;
    }
    return digits;
}

} // namespace

std::optional<Range> parse(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char('-'));
    if (parts.size() != 2)
        return std::nullopt;
    const auto low = plainDigits(parts.at(0));
    const auto high = plainDigits(parts.at(1));
    if (!low || !high)
        return std::nullopt;
    bool lowFits = false;
    bool highFits = false;
    Range range { *low, *high, low->toInt(&lowFits), high->toInt(&highFits) };
    if (!lowFits || !highFits)
        return std::nullopt;
    return range;
}

QString key(int low, int high)
{
    const QChar zero = QLatin1Char('0');
    return QString("%1-%2").arg(low, 4, 10, zero).arg(high, 4, 10, zero);
}

QString caseExpression(const QString &column, const QList<QString> &ranges,
                       const QString &unknownKey)
{
    QString whenClauses;
    // Only the program's own keys come here, never a user's text.
    if (!unknownKey.isEmpty())
        whenClauses = QString("when %1 is null then '%2' ").arg(column, unknownKey);
    for (const QString &text : ranges) {
        const auto range = parse(text);
        // A malformed range would break the statement or smuggle its text into it: skip it.
        if (!range)
            continue;
        whenClauses +=
            QString("when %1 between %2 and %3 then '%4' ")
                .arg(column, range->low, range->high, key(range->lowValue, range->highValue));
    }
    // SQL's case needs at least one "when".
    if (whenClauses.isEmpty())
        return {};
    return QStringLiteral("case ") + whenClauses + QStringLiteral("else 'Others' end");
}

QString selectStatement(const QString &column, const QList<QString> &ranges, const QString &table,
                        const QString &unknownKey)
{
    QString expression = caseExpression(column, ranges, unknownKey);
    // Without a usable range every photo is 'Others'.
    if (expression.isEmpty())
        expression = QStringLiteral("'Others'");
    return QStringLiteral("SELECT %1 as Range, count(1) as Count from %2 group by Range")
        .arg(expression, table);
}

QString indexStatement(const QString &name, const QString &column, const QList<QString> &ranges,
                       const QString &table, const QString &unknownKey)
{
    const QString expression = caseExpression(column, ranges, unknownKey);
    if (expression.isEmpty())
        return {};
    return QStringLiteral("CREATE INDEX IF NOT EXISTS %1 ON %2 (%3)")
        .arg(name, table.toUpper(), expression);
}

QString displayText(const QString &key, const QString &unit,
                    const QList<QPair<QString, QString>> &names)
{
    const QString text = displayText(key, QString());
    for (const auto &[range, name] : names) {
        if (range == text)
            return name;
    }
    return displayText(key, unit);
}

QString displayText(const QString &key, const QString &unit)
{
    if (key == QLatin1String("Others"))
        return key;
    const QStringList parts = key.split(QLatin1Char('-'));
    if (parts.size() != 2)
        return key;
    return QString::number(parts.at(0).toInt()) + QLatin1Char('-')
        + QString::number(parts.at(1).toInt()) + unit;
}

} // namespace RangeGroups
