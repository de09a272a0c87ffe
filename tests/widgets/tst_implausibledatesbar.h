#pragma once

#include <QObject>

// The line above the date chart about photos dated before 1990 or after today.
class tst_ImplausibleDatesBar : public QObject
{
    Q_OBJECT

private slots:
    void saysHowManyAndOffersTheOtherChoice_data();
    void saysHowManyAndOffersTheOtherChoice();
};
