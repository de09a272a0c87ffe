#pragma once

#include <QObject>

// The inspection tool kelvaro-exif, run as a process on fixture files.
class tst_Tool : public QObject
{
    Q_OBJECT

private slots:
    void printsWhatTheScanStores_data();
    void printsWhatTheScanStores();
    void entriesComeBeforeTheFileLine();
    void jsonGivesWhatTheScanStores_data();
    void jsonGivesWhatTheScanStores();
};
