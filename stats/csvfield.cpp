#include "csvfield.h"

#include <QAbstractItemModel>
#include <QStringList>

QString csvField(QString field)
{
    if (!field.contains(QLatin1Char(';')) && !field.contains(QLatin1Char('"'))
        && !field.contains(QLatin1Char('\n')) && !field.contains(QLatin1Char('\r')))
        return field;
    field.replace(QLatin1String("\""), QLatin1String("\"\""));
    return QLatin1Char('"') + field + QLatin1Char('"');
}

QString csvTable(const QAbstractItemModel &model)
{
    const int columns = model.columnCount();
    const auto line = [columns](const auto &fieldOf) {
        QStringList fields;
        for (int column = 0; column < columns; ++column)
            fields << csvField(fieldOf(column));
        return fields.join(QLatin1Char(';')) + QLatin1Char('\n');
    };
    QString text =
        line([&](int column) { return model.headerData(column, Qt::Horizontal).toString(); });
    for (int row = 0; row < model.rowCount(); ++row)
        text += line([&](int column) { return model.index(row, column).data().toString(); });
    return text;
}
