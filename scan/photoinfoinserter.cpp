#include "photoinfoinserter.h"

#include "photodatabase.h"

namespace {
const QString pathPlaceholder = QStringLiteral(":path");
} // namespace

const QStringList &PhotoInfoInserter::storedPlaceholders()
{
    static const QStringList names = [] {
        QStringList list = PhotoRowInserter::infoPlaceholders;
        list.replace(list.indexOf(pathPlaceholder), QStringLiteral(":folder"));
        return list;
    }();
    return names;
}

PhotoInfoInserter::PhotoInfoInserter(const QSqlDatabase &db)
    : pathIndex(infoPlaceholders.indexOf(pathPlaceholder))
    , folders(db)
    , rows(PhotoRowInserter::create(db,
                                    { PhotoDatabase::insertInfoStatement, storedPlaceholders() }))
{ }

bool PhotoInfoInserter::insert(const QVariantList &values)
{
    const int folder = folders.idOfFile(values.value(pathIndex).toString());
    if (folder < 0)
        return false;
    QVariantList stored = values;
    stored[pathIndex] = folder;
    return rows->insert(stored);
}
