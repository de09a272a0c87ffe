#include "photoselection.h"

#include "photodate.h"

#include <QRegularExpression>
#include <QSqlError>
#include <QSqlQuery>

namespace {

// DATEIEN's columns in the table's order, for a source that computes some of them.
const QStringList photoColumns { "ID",          "FILENAME", "DATE",          "MAKER",
                                 "MODEL",       "LENS",     "FOCALLENGTH",   "ISO",
                                 "FNUMBER",     "EXPTIME",  "EXPTIMESTRING", "METERINGMODE",
                                 "EXPOSUREMODE" };

} // namespace

PhotoSelection::PhotoSelection(const QString &name)
    : idTable(QStringLiteral("temp.") + name)
    , dayTable(QStringLiteral("temp.") + name + QStringLiteral("Days"))
{ }

// Each date text's first eleven characters that name a day of the range, as the date statistic
// reads them (PhotoDate); found among the texts present, which the date index lists.
bool PhotoSelection::selectDays(const QSqlDatabase &db, const PhotoFilter &filter)
{
    QSqlQuery query(db);
    if (!query.exec(
            QStringLiteral("CREATE TABLE IF NOT EXISTS %1 (DAY TEXT PRIMARY KEY)").arg(dayTable))
        || !query.exec(QStringLiteral("DELETE FROM %1").arg(dayTable)))
        return false;
    if (!filter.hasDateRange())
        return true;
    QVariantList inRange;
    if (!query.exec(QStringLiteral("SELECT DISTINCT substr(DATE, 1, 11) FROM DATEIEN")))
        return false;
    while (query.next()) {
        const QString prefix = query.value(0).toString();
        const QDate day = PhotoDate::date(prefix);
        if (day.isValid() && (!filter.from.isValid() || day >= filter.from)
            && (!filter.to.isValid() || day <= filter.to))
            inRange << prefix;
    }
    query.finish();
    QSqlQuery insert(db);
    insert.prepare(QStringLiteral("INSERT INTO %1 (DAY) VALUES (?)").arg(dayTable));
    insert.addBindValue(inRange);
    return inRange.isEmpty() || insert.execBatch();
}

bool PhotoSelection::select(const QSqlDatabase &db, const StatementFilter &filter, QString *error)
{
    clear();
    if (filter.filter().isEmpty()) {
        statementFilter = filter;
        return true;
    }
    QSqlQuery query(db);
    BoundStatement fill = filter.matchingIds(dayTable);
    fill.text.prepend(QStringLiteral("INSERT INTO %1 ").arg(idTable));
    const bool filled =
        query.exec(
            QStringLiteral("CREATE TABLE IF NOT EXISTS %1 (ID INTEGER PRIMARY KEY)").arg(idTable))
        && query.exec(QStringLiteral("DELETE FROM %1").arg(idTable))
        && selectDays(db, filter.filter()) && fill.exec(query);
    if (!filled
        || !query.exec(QStringLiteral("SELECT (SELECT count(*) FROM %1), (SELECT count(*) "
                                      "FROM DATEIEN)")
                           .arg(idTable))
        || !query.next()) {
        if (error)
            *error = query.lastError().text();
        return false;
    }
    // A few photos are cheaper looked up one by one and sorted than found among all of them.
    photosSelected = query.value(0).toLongLong();
    fewSelected = photosSelected * fewSelectedShare < query.value(1).toLongLong();
    statementFilter = filter;
    return true;
}

void PhotoSelection::clear()
{
    statementFilter = StatementFilter();
}

QString PhotoSelection::source(const QString &table) const
{
    const bool photos = table.compare(QLatin1String("Dateien"), Qt::CaseInsensitive) == 0;
    const QString name = photos ? QStringLiteral("DATEIEN") : QStringLiteral("PHOTOINFO");
    QString columns = name + QStringLiteral(".*");
    const StatementFilter::ColumnExpressions &expressions = statementFilter.columnExpressions();
    if (photos && !expressions.isEmpty()) {
        QStringList list;
        for (const QString &column : photoColumns)
            list << (expressions.contains(column)
                         ? QStringLiteral("%1 AS %2").arg(expressions.value(column), column)
                         : name + QLatin1Char('.') + column);
        columns = list.join(QStringLiteral(", "));
    }
    if (statementFilter.filter().isEmpty())
        return QStringLiteral("SELECT %1 FROM %2").arg(columns, name);
    // CROSS JOIN fixes the order. With the table outside its statistic's index is walked in order
    // and each id looked up in the selection; with few photos selected these are looked up in
    // the table instead, and only they are sorted.
    if (fewSelected)
        return QStringLiteral("SELECT %1 FROM %3 AS Selected CROSS JOIN %2 ON %2.ID = Selected.ID")
            .arg(columns, name, idTable);
    return QStringLiteral("SELECT %1 FROM %2 CROSS JOIN %3 AS Selected ON Selected.ID = %2.ID")
        .arg(columns, name, idTable);
}

BoundStatement PhotoSelection::apply(const QString &statement) const
{
    if (!isFiltered())
        return { statement, {} };
    static const QRegularExpression tableReference(
        QStringLiteral("\\bFROM\\s+(Dateien|PhotoInfo)\\b"),
        QRegularExpression::CaseInsensitiveOption);
    BoundStatement filtered;
    qsizetype copied = 0;
    auto matches = tableReference.globalMatch(statement);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        const QString table = match.captured(1);
        filtered.text += statement.mid(copied, match.capturedStart() - copied);
        // The source keeps the name the statement uses, so its columns read as before.
        filtered.text += QStringLiteral("FROM (%1) AS %2").arg(source(table), table);
        copied = match.capturedEnd();
    }
    filtered.text += statement.mid(copied);
    return filtered;
}

qint64 PhotoSelection::count(const QSqlDatabase &db) const
{
    QSqlQuery query(db);
    query.setForwardOnly(true);
    if (!apply(QStringLiteral("SELECT count(*) FROM Dateien")).exec(query) || !query.next())
        return -1;
    return query.value(0).toLongLong();
}
