#pragma once

#include <QObject>
#include <QSqlDatabase>

// What a scan stores for a photo: one row, with the right value in each column.
class tst_ScanColumns : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanupTestCase();

    void columnValues_data();
    void columnValues();

private:
    QSqlDatabase db;
};
