#pragma once

#include <QObject>
#include <QSqlDatabase>

// The registry's rows and what each statistic counts over a photo table filled by the test.
class tst_Statistics : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void registryRowsAreDistinct();
    void plausibleDaysAtTheirBoundaries_data();
    void plausibleDaysAtTheirBoundaries();
    void implausibleDatesCountedFromTheDayRows_data();
    void implausibleDatesCountedFromTheDayRows();
    void formStatisticsKeepTheirNames_data();
    void formStatisticsKeepTheirNames();
    void everyStatisticCountsEveryPhoto();
    void hoursInOrderThenUnknown();
    void weekdaysFromMondayThenUnknown();
    void photoHour_data();
    void photoHour();
    void fileTypeOfAName_data();
    void fileTypeOfAName();
    void patternsOfATypeOrSuffix_data();
    void patternsOfATypeOrSuffix();
    void fileTypesCountedAsTheToolBarNamesThem();
    void focalLength35UnknownLast();
    void focalLength35GroupsNameTheirClasses();
    void cropFactorLearnedFromTheSameModel();
    void datesMergedPerDayThenUnknown();

private:
    // Stores a photo in both tables as a scan does; info values in PhotoRowInserter's order.
    bool addPhoto(const QString &maker, const QString &model, double focalLength,
                  const QString &date, const QString &path, const QVariant &focalLength35,
                  const QVariant &cropFactor);
    QSqlDatabase db;
};
