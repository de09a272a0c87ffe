#include "referencevalues.h"

#include <QFile>

namespace referencevalues {

QList<Row> read(const QString &csvPath)
{
    QFile file(csvPath);
    QList<Row> rows;
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return rows;
    const QStringList header = QString::fromUtf8(file.readLine()).trimmed().split(u';');
    while (!file.atEnd()) {
        QString line = QString::fromUtf8(file.readLine());
        while (line.endsWith(u'\n') || line.endsWith(u'\r'))
            line.chop(1);
        if (line.trimmed().isEmpty())
            continue;
        const QStringList values = line.split(u';');
        Row row;
        for (int i = 0; i < header.size() && i < values.size(); ++i)
            row.insert(header[i], values[i]);
        rows.append(row);
    }
    return rows;
}

bool sameReal(const QString &expected, double actual, double tolerance)
{
    return qAbs((expected.isEmpty() ? 0.0 : expected.toDouble()) - actual) < tolerance;
}

QString text(const Row &expected, const char *column)
{
    const QString value = expected.value(QLatin1String(column));
    return value.isEmpty() ? QStringLiteral("n.a.") : value;
}

QStringList disagreements(const QList<Field> &fields, const Row &expected, int &compared,
                          int &agreeing)
{
    QStringList found;
    for (const Field &field : fields) {
        ++compared;
        if (field.agrees)
            ++agreeing;
        else
            found.append(QStringLiteral("%1: read \"%2\", expected \"%3\"")
                             .arg(QLatin1String(field.column), field.actual,
                                  expected.value(QLatin1String(field.column))));
    }
    return found;
}

} // namespace referencevalues
