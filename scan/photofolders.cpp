#include "photofolders.h"

#include "photodatabase.h"

#include <QVariant>

PhotoFolders::PhotoFolders(const QSqlDatabase &db)
    : insert(db)
    , select(db)
{
    insert.prepare(PhotoDatabase::insertFolderStatement);
    select.prepare(PhotoDatabase::folderIdStatement);
}

QString PhotoFolders::folderOf(const QString &path)
{
    qsizetype separator = path.lastIndexOf(QLatin1Char('/'));
#ifdef Q_OS_WIN
    separator = qMax(separator, path.lastIndexOf(QLatin1Char('\\')));
#endif
    return path.left(separator + 1);
}

int PhotoFolders::idOfFile(const QString &path)
{
    const QString folder = folderOf(path);
    if (lastId >= 0 && folder == lastFolder)
        return lastId;
    insert.addBindValue(folder);
    select.addBindValue(folder);
    if (!PhotoDatabase::execInsert(insert) || !select.exec() || !select.next())
        return -1;
    lastId = select.value(0).toInt();
    lastFolder = folder;
    select.finish();
    return lastId;
}
