#pragma once

#include <QObject>

// The scan's file-name matching agrees with QDir's name filters.
class tst_FileNamePatterns : public QObject
{
    Q_OBJECT

private slots:
    void agreesWithQDir_data();
    void agreesWithQDir();
    void suffixNeedsTheWholeExtension();
};
