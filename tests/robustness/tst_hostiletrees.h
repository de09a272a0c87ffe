#pragma once

#include <QObject>
#include <QSqlDatabase>

// Scans of folders as photographers have them, by the real worker on its own thread: folders and
// links named like photos, links that loop, FIFOs, sockets, devices, files that can't be read,
// empty files, and every damaged or sample file under every suffix. Each scan must end, send
// operationDone() once and store exactly the photos that the reader accepts.
class tst_HostileTrees : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void directoriesNamedLikePhotos_data();
    void directoriesNamedLikePhotos();
    void symbolicLinksThatLoop_data();
    void symbolicLinksThatLoop();
    void specialEntries_data();
    void specialEntries();
    void fileWithoutPermissions();
    void fileWithoutPermissionsForAnOrdinaryUser();
    void readerRefusesPathsItCannotOpen_data();
    void readerRefusesPathsItCannotOpen();
    void zeroLengthFiles_data();
    void zeroLengthFiles();
    void copiedCollectionsUnderEverySuffix_data();
    void copiedCollectionsUnderEverySuffix();

private:
    QSqlDatabase db;
};
