#include "scannedrows.h"

#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>

#include <cstring>

namespace scantest {

QStringList exactRows(const QSqlDatabase &db)
{
    QSqlQuery query(db);
    query.setForwardOnly(true);
    // Whatever columns the second table has: the row's whole record is compared, with the path of
    // the photo's folder.
    query.exec(QStringLiteral("SELECT d.*, i.*, f.PATH FROM DATEIEN d LEFT JOIN PHOTOINFO i ON "
                              "i.ID = d.id LEFT JOIN PHOTOFOLDERS f ON f.ID = i.FOLDER "
                              "ORDER BY d.id"));
    QStringList rows;
    qint64 firstId = -1;
    while (query.next()) {
        const qint64 id = query.value(0).toLongLong();
        if (firstId < 0)
            firstId = id;
        QStringList values { QString::number(id - firstId) };
        const QSqlRecord record = query.record();
        for (int i = 1; i < record.count(); ++i) {
            const QVariant value = query.value(i);
            if (value.isNull()) {
                values << QStringLiteral("null");
            } else if (value.typeId() == QMetaType::Double) {
                const double real = value.toDouble();
                quint64 bits;
                std::memcpy(&bits, &real, sizeof bits);
                values << QStringLiteral("real:") + QString::number(bits, 16);
            } else if (record.fieldName(i).compare(QLatin1String("ID"), Qt::CaseInsensitive) == 0) {
                values << QString::number(value.toLongLong() - firstId);
            } else {
                values << QString::fromLatin1(value.typeName()) + QLatin1Char(':')
                        + value.toString();
            }
        }
        rows << values.join(QLatin1Char('|'));
    }
    return rows;
}

} // namespace scantest
