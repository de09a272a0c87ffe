#pragma once

#include <QObject>

// The value tables of TExifFile's interpretation operations: every code with its text, and the
// fallback of each table.
class tst_CodeTables : public QObject
{
    Q_OBJECT

private slots:
    void codeTables_data();
    void codeTables();
};
