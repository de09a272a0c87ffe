#pragma once

#include <QObject>
#include <QSqlDatabase>

// The filter that narrows every statistic: its statements, each filter alone and combined, the
// bounds of a date range, RAW+JPEG pairs, awkward values and an empty result, over a photo table
// filled by the test.
class tst_PhotoFilter : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void emptyFilterLeavesEveryStatementAsItIs();
    void filteredStatementsCarryValuesOnlyAsBindings();
    void filtersAloneAndCombined_data();
    void filtersAloneAndCombined();
    void everyStatisticCountsOnlyTheFilteredPhotos();
    void dateBounds_data();
    void dateBounds();
    void pairsCountedOnce_data();
    void pairsCountedOnce();
    void awkwardValuesMatchExactly_data();
    void awkwardValuesMatchExactly();
    void emptyResultGivesEmptyStatistics();
    void fieldValuesWithCounts();
    void computedColumnsFeedStatisticsAndFilter();
    void nameRulesReachTheFilter();
    void statisticIndexesStayInUse_data();
    void statisticIndexesStayInUse();
    void fewSelectedPhotosAreLookedUp();
    void descriptions_data();
    void descriptions();
    void pickedRowsSelectTheirPhotos_data();
    void pickedRowsSelectTheirPhotos();

private:
    // A photo in both tables as a scan stores it.
    bool addPhoto(const QString &maker, const QString &model, const QString &lens,
                  const QString &date, const QString &path);
    // The standard set of the filter tests (see the .cpp).
    bool addLibrary();
    QSqlDatabase db;
};
