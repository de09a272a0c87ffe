#include "photodate.h"

#include <QVariant>

namespace PhotoDate {

QDate date(const QString &text)
{
    return QVariant(text).toDate();
}

std::optional<int> hour(const QString &text)
{
    // "yyyy:MM:dd hh": the time's first digits stand at 11 and 12.
    if (text.size() < 13 || !date(text).isValid())
        return std::nullopt;
    const QChar separator = text.at(10);
    if (separator != QLatin1Char(' ') && separator != QLatin1Char('T'))
        return std::nullopt;
    const QChar tens = text.at(11);
    const QChar ones = text.at(12);
    if (tens < QLatin1Char('0') || tens > QLatin1Char('2') || ones < QLatin1Char('0')
        || ones > QLatin1Char('9'))
        return std::nullopt;
    const int value = (tens.unicode() - '0') * 10 + (ones.unicode() - '0');
    if (value > 23)
        return std::nullopt;
    return value;
}

} // namespace PhotoDate
