#pragma once

#include <QObject>
#include <QSqlDatabase>
#include <QStringList>

// Names counted together: the comparison key, the built-in makers, the user's aliases (chains and
// circles included), the hint's groups and every statistic's statement under each rule.
class tst_NameRules : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void keyIgnoresBlanksNulsAndCase_data();
    void keyIgnoresBlanksNulsAndCase();
    void builtInTableCoversTheCommonMakers();
    void friendlyNames_data();
    void friendlyNames();
    void aliasListReadAndWritten();
    void aliasesEndEvenInCircles_data();
    void aliasesEndEvenInCircles();
    void nearDuplicatesForTheHint();
    void rawNamesLeaveStatementsAlone();
    void makerCounts_data();
    void makerCounts();
    void modelsAndLensesMergeToo();
    void everyStatisticRunsUnderEveryRule();
    void activeRulesReachTheRows();
    void photoTableKeepsTheRawValues();

private:
    bool addPhotos(const QStringList &makers, const QString &model = QStringLiteral("M"),
                   const QString &lens = QStringLiteral("L"));
    QStringList rows(const QString &statement);
    QSqlDatabase db;
};
