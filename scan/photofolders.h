#pragma once

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>

// The ids of the photos' folders in PHOTOFOLDERS, on one open connection: a folder not yet known
// is stored. The files of a scan come folder by folder, so the last folder's id is kept at hand.
class PhotoFolders
{
public:
    explicit PhotoFolders(const QSqlDatabase &db);

    // The folder part of a file's path: up to and with its last separator, so that the folder's
    // path followed by the file's name (TExifFile::fileName) is the file's path again.
    static QString folderOf(const QString &path);

    // The id of the folder of the file at `path`, stored if new; -1 when it cannot be stored. An
    // int, as the scan binds its values (folders are counted from 1).
    int idOfFile(const QString &path);

private:
    QSqlQuery insert;
    QSqlQuery select;
    QString lastFolder;
    int lastId = -1;
};
