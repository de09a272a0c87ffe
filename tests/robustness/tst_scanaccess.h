#pragma once

#include <QObject>
#include <QSqlDatabase>

// The program reads photo files and never writes them: a scan opens every photo read-only,
// leaves no trace in the photo folders, and changes neither contents nor times.
class tst_ScanAccess : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void scanOpensPhotosForReadingOnly_data();
    void scanOpensPhotosForReadingOnly();

private:
    QSqlDatabase db;
};
