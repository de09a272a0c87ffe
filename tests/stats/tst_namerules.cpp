#include "tst_namerules.h"

#include "namerules.h"
#include "photodatabase.h"
#include "photorowinserter.h"
#include "statistic.h"
#include "statisticrows.h"

#include <QSet>
#include <QSqlError>
#include <QSqlQuery>
#include <QTest>

namespace {

using Aliases = QList<QPair<QString, QString>>;

const QString nul = QString(QChar(0));

NameRules rules(bool merge, bool friendly, const Aliases &aliases = {})
{
    NameRules r;
    r.mergeBlanksAndCase = merge;
    r.friendlyMakers = friendly;
    r.makerAliases = aliases;
    return r;
}

} // namespace

void tst_NameRules::init()
{
    QVERIFY(PhotoDatabase::openMainConnection(db));
}

void tst_NameRules::cleanup()
{
    NameRulesSql::setActive(NameRules());
    QSqlQuery(db).exec(QStringLiteral("DROP TABLE DATEIEN"));
    QSqlQuery(db).exec(QStringLiteral("DROP TABLE PHOTOINFO"));
    QSqlQuery(db).exec(QStringLiteral("DROP TABLE PHOTOFOLDERS"));
    db.close();
    db = QSqlDatabase();
    QSqlDatabase::removeDatabase(PhotoDatabase::mainConnection);
}

bool tst_NameRules::addPhotos(const QStringList &makers, const QString &model, const QString &lens)
{
    const auto inserter = PhotoRowInserter::create(db);
    for (const QString &maker : makers) {
        if (!inserter->insert({ QStringLiteral("IMG.JPG"), QStringLiteral("2023:03:14 10:00:00"),
                                QString(), maker, model, lens, 50.0, 100, QStringLiteral("2.8"),
                                0.01, QStringLiteral("1/100"), QStringLiteral("Pattern"),
                                QStringLiteral("Manual") }))
            return false;
    }
    return true;
}

// "value=count" per row.
QStringList tst_NameRules::rows(const QString &statement)
{
    QStringList texts;
    QSqlQuery query(db);
    if (!query.exec(statement)) {
        texts << "failed: " + query.lastError().text();
        return texts;
    }
    while (query.next())
        texts << query.value(0).toString() + "=" + query.value(1).toString();
    texts.sort();
    return texts;
}

void tst_NameRules::keyIgnoresBlanksNulsAndCase_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("key");
    QTest::newRow("trailing blanks") << "JVC   "
                                     << "JVC";
    QTest::newRow("leading blank") << " JVC"
                                   << "JVC";
    QTest::newRow("trailing NULs") << "JVC" + nul + nul << "JVC";
    QTest::newRow("a NUL ends the name") << "JVC" + nul + "junk"
                                         << "JVC";
    QTest::newRow("leading NUL: nothing") << nul + "JVC"
                                          << "";
    QTest::newRow("lower case") << "Eastman Kodak Company"
                                << "EASTMAN KODAK COMPANY";
    QTest::newRow("tab") << "\tCanon"
                         << "CANON";
    QTest::newRow("inner blanks stay") << "OM  Digital"
                                       << "OM  DIGITAL";
    QTest::newRow("only ASCII letters change case")
        << QString::fromUtf8("zeiß") << QString::fromUtf8("ZEIß");
    QTest::newRow("empty") << ""
                           << "";
}

void tst_NameRules::keyIgnoresBlanksNulsAndCase()
{
    QFETCH(QString, name);
    QFETCH(QString, key);
    QCOMPARE(MakerNames::key(name), key);
}

void tst_NameRules::builtInTableCoversTheCommonMakers()
{
    const auto &makers = MakerNames::builtIn();
    QVERIFY2(makers.size() >= 20, qPrintable(QString::number(makers.size())));
    QSet<QString> names, spellings;
    for (const MakerNames::Maker &maker : makers) {
        names.insert(QString::fromUtf8(maker.name));
        QVERIFY(!maker.spellings.isEmpty());
        for (const char *spelling : maker.spellings) {
            const QString text = QString::fromUtf8(spelling);
            QVERIFY2(!spellings.contains(text), spelling);
            QCOMPARE(MakerNames::key(text), text);
            spellings.insert(text);
        }
    }
    QCOMPARE(names.size(), makers.size());
}

void tst_NameRules::friendlyNames_data()
{
    QTest::addColumn<QString>("maker");
    QTest::addColumn<QString>("name");
    QTest::newRow("NIKON CORPORATION") << "NIKON CORPORATION"
                                       << "Nikon";
    QTest::newRow("NIKON") << "NIKON"
                           << "Nikon";
    QTest::newRow("OLYMPUS IMAGING CORP.") << "OLYMPUS IMAGING CORP."
                                           << "OM System / Olympus";
    QTest::newRow("OLYMPUS CORPORATION") << "OLYMPUS CORPORATION"
                                         << "OM System / Olympus";
    QTest::newRow("OM Digital Solutions") << "OM Digital Solutions"
                                          << "OM System / Olympus";
    QTest::newRow("EASTMAN KODAK COMPANY") << "EASTMAN KODAK COMPANY"
                                           << "Kodak";
    QTest::newRow("Eastman Kodak Company") << "Eastman Kodak Company"
                                           << "Kodak";
    QTest::newRow("FUJIFILM") << "FUJIFILM"
                              << "Fujifilm";
    QTest::newRow("FUJI PHOTO FILM CO., LTD.") << "FUJI PHOTO FILM CO., LTD."
                                               << "Fujifilm";
    QTest::newRow("SONY") << "SONY"
                          << "Sony";
    QTest::newRow("Canon") << "Canon"
                           << "Canon";
    QTest::newRow("blanks and NULs") << " NIKON CORPORATION " + nul << "Nikon";
    QTest::newRow("unknown maker stays") << "Zenit"
                                         << "Zenit";
}

void tst_NameRules::friendlyNames()
{
    QFETCH(QString, maker);
    QFETCH(QString, name);
    QCOMPARE(MakerNames::friendlyName(maker, {}), name);
}

void tst_NameRules::aliasListReadAndWritten()
{
    const QStringList entries { " Grandpa's camera = Zenit ", "no separator", "= nothing",
                                "nothing =", "a=b=c" };
    const Aliases aliases = MakerNames::parseAliases(entries);
    QCOMPARE(aliases, (Aliases { { "Grandpa's camera", "Zenit" }, { "a", "b=c" } }));
    QCOMPARE(MakerNames::formatAliases(aliases),
             QStringList({ "Grandpa's camera = Zenit", "a = b=c" }));
    QCOMPARE(MakerNames::parseAliases(MakerNames::formatAliases(aliases)), aliases);
}

void tst_NameRules::aliasesEndEvenInCircles_data()
{
    QTest::addColumn<Aliases>("aliases");
    QTest::addColumn<QString>("maker");
    QTest::addColumn<QString>("name");

    QTest::newRow("plain") << Aliases { { "Grandpa's camera", "Zenit" } } << "grandpa's camera "
                           << "Zenit";
    QTest::newRow("chained") << Aliases { { "A", "B" }, { "B", "C" } } << "a"
                             << "C";
    QTest::newRow("chained into the table")
        << Aliases { { "Nikon Corp Japan", "NIKON CORPORATION" } } << "Nikon Corp Japan"
        << "Nikon";
    QTest::newRow("alias overrides the table") << Aliases { { "SONY", "Sony Group" } } << "SONY"
                                               << "Sony Group";
    QTest::newRow("circle of two") << Aliases { { "A", "B" }, { "B", "A" } } << "A"
                                   << "B";
    QTest::newRow("circle of three") << Aliases { { "A", "B" }, { "B", "C" }, { "C", "A" } } << "B"
                                     << "A";
    QTest::newRow("to itself") << Aliases { { "A", "a" } } << "A"
                               << "a";
    QTest::newRow("first entry of a spelling wins")
        << Aliases { { "X", "One" }, { "x", "Two" } } << "X"
        << "One";
    QTest::newRow("empty spelling ignored") << Aliases { { " ", "Nothing" } } << " "
                                            << " ";
}

void tst_NameRules::aliasesEndEvenInCircles()
{
    QFETCH(Aliases, aliases);
    QFETCH(QString, maker);
    QFETCH(QString, name);
    QCOMPARE(MakerNames::friendlyName(maker, aliases), name);

    // The statement carrying them ends too, and counts the photo under the same name.
    QVERIFY(addPhotos({ maker }));
    const Statistic &makerStatistic = Statistics::all().first();
    QCOMPARE(rows(NameRulesSql::apply(makerStatistic.statement, rules(false, true, aliases))),
             QStringList { name + "=1" });
}

void tst_NameRules::nearDuplicatesForTheHint()
{
    const QStringList values { "JVC",
                               "Canon",
                               "JVC ",
                               "EASTMAN KODAK COMPANY",
                               "jvc",
                               "Eastman Kodak Company",
                               "EASTMAN KODAK COMPANY" + nul,
                               "Nikon",
                               "JVC" };
    const QList<QStringList> groups = nearDuplicateNames(values);
    QCOMPARE(groups.size(), 2);
    QCOMPARE(groups.at(0), QStringList({ "JVC", "JVC ", "jvc" }));
    QCOMPARE(groups.at(1),
             QStringList({ "EASTMAN KODAK COMPANY", "Eastman Kodak Company",
                           "EASTMAN KODAK COMPANY" + nul }));
    QVERIFY(nearDuplicateNames({ "Canon", "Nikon", "Sony" }).isEmpty());
}

void tst_NameRules::rawNamesLeaveStatementsAlone()
{
    for (const Statistic &statistic : Statistics::all())
        QCOMPARE(NameRulesSql::apply(statistic.selectStatement(), NameRules()),
                 statistic.selectStatement());
    // Under the rules, only the names a statement reads are rewritten.
    const NameRules both = rules(true, true);
    for (const char *untouched : { "iso", "fNumber", "exposureTime", "dateOriginal", "weekday" }) {
        const Statistic &statistic = *Statistics::byKey(untouched);
        QCOMPARE(NameRulesSql::apply(statistic.selectStatement(), both),
                 statistic.selectStatement());
    }
    const QString maker = NameRulesSql::apply(Statistics::byKey("maker")->statement, both);
    QVERIFY(maker.contains(NameRulesSql::columnExpression("MAKER", both) + " AS MAKER"));
    QVERIFY(!maker.contains(NameRulesSql::columnExpression("MODEL", both)));
    QVERIFY(!maker.contains(NameRulesSql::columnExpression("LENS", both)));
    const QString model = NameRulesSql::apply(Statistics::byKey("model")->statement, both);
    QVERIFY(model.contains(NameRulesSql::columnExpression("MAKER", both) + " AS MAKER"));
    QVERIFY(model.contains(NameRulesSql::columnExpression("MODEL", both) + " AS MODEL"));
}

void tst_NameRules::makerCounts_data()
{
    QTest::addColumn<bool>("merge");
    QTest::addColumn<bool>("friendly");
    QTest::addColumn<QStringList>("counted");

    QTest::newRow("as the files hold them")
        << false << false
        << QStringList { "JVC" + nul + "x=1",
                         "EASTMAN KODAK COMPANY=1",
                         "Eastman Kodak Company=1",
                         "JVC=1",
                         "JVC  =1",
                         "NIKON CORPORATION=1",
                         "NIKON=1",
                         "jvc=1",
                         "EASTMAN KODAK COMPANY " + nul + "=1" };
    QTest::newRow("blanks and case together")
        << true << false
        << QStringList { "EASTMAN KODAK COMPANY=3", "JVC=4", "NIKON CORPORATION=1", "NIKON=1" };
    QTest::newRow("friendly makers")
        << false << true << QStringList { "JVC=4", "Kodak=3", "Nikon=2" };
    QTest::newRow("both") << true << true << QStringList { "JVC=4", "Kodak=3", "Nikon=2" };
}

void tst_NameRules::makerCounts()
{
    QFETCH(bool, merge);
    QFETCH(bool, friendly);
    QFETCH(QStringList, counted);
    QVERIFY(addPhotos({ "JVC", "JVC  ", "jvc", "JVC" + nul + "x", "EASTMAN KODAK COMPANY",
                        "Eastman Kodak Company", "EASTMAN KODAK COMPANY " + nul, "NIKON",
                        "NIKON CORPORATION" }));
    const Statistic &maker = *Statistics::byKey("maker");
    QStringList expected = counted;
    expected.sort();
    QCOMPARE(rows(NameRulesSql::apply(maker.statement, rules(merge, friendly))), expected);
}

void tst_NameRules::modelsAndLensesMergeToo()
{
    QVERIFY(addPhotos({ "Canon" }, "Canon EOS R5", "RF24-70mm F2.8 L IS USM"));
    QVERIFY(addPhotos({ "Canon " }, "Canon EOS R5  ", "rf24-70mm f2.8 l is usm"));
    QVERIFY(addPhotos({ "CANON" }, "Canon EOS R5" + nul, "RF24-70mm F2.8 L IS USM "));
    const NameRules merged = rules(true, false);
    QCOMPARE(rows(NameRulesSql::apply(Statistics::byKey("model")->statement, merged)),
             QStringList { "Canon EOS R5=3" });
    QCOMPARE(rows(NameRulesSql::apply(Statistics::byKey("lens")->statement, merged)),
             QStringList { "RF24-70mm F2.8 L IS USM=3" });
    QCOMPARE(rows(NameRulesSql::apply(Statistics::byKey("model")->statement, NameRules())).size(),
             3);
}

void tst_NameRules::everyStatisticRunsUnderEveryRule()
{
    QVERIFY(addPhotos({ "NIKON", "nikon ", "Sony", "O'Brien" }));
    const Aliases aliases { { "O'Brien", "Grandpa's \"best\" camera" },
                            { "A", "B" },
                            { "B", "A" } };
    const auto photosCounted = [this](const Statistic &statistic, const QString &statement) {
        QSqlQuery query(db);
        if (!query.exec(statement))
            return qint64(-1);
        qint64 photos = 0;
        while (query.next())
            photos += query.value(statistic.countColumn()).toLongLong();
        return photos;
    };
    for (const NameRules &r :
         { rules(true, false), rules(false, true, aliases), rules(true, true, aliases) }) {
        for (const Statistic &statistic : Statistics::all()) {
            const qint64 raw = photosCounted(statistic, statistic.selectStatement());
            const qint64 named =
                photosCounted(statistic, NameRulesSql::apply(statistic.selectStatement(), r));
            QVERIFY2(named >= 0, qPrintable(statistic.key));
            // Where the statement counts every photo (the model's "Distinct" drops rows of
            // equal counts), it still does.
            if (raw == 4)
                QVERIFY2(named == 4, qPrintable(statistic.key));
        }
    }
    QCOMPARE(rows(NameRulesSql::apply(Statistics::byKey("maker")->statement,
                                      rules(false, true, aliases))),
             QStringList({ "Grandpa's \"best\" camera=1", "Nikon=2", "Sony=1" }));
}

void tst_NameRules::activeRulesReachTheRows()
{
    QVERIFY(addPhotos({ "SONY", "Sony ", "sony" }));
    const Statistic &maker = *Statistics::byKey("maker");
    QList<StatisticRow> counted;
    QVERIFY(readStatisticRows(maker, db, {}, counted));
    QCOMPARE(counted.size(), 3);

    NameRulesSql::setActive(rules(true, false));
    QVERIFY(readStatisticRows(maker, db, {}, counted));
    QCOMPARE(counted, (QList<StatisticRow> { { "SONY", 3 } }));

    NameRulesSql::setActive(rules(false, true));
    QVERIFY(readStatisticRows(maker, db, {}, counted));
    QCOMPARE(counted, (QList<StatisticRow> { { "Sony", 3 } }));
}

void tst_NameRules::photoTableKeepsTheRawValues()
{
    QVERIFY(addPhotos({ "SONY", "Sony " }));
    NameRulesSql::setActive(rules(true, true));
    QList<StatisticRow> counted;
    QVERIFY(readStatisticRows(*Statistics::byKey("maker"), db, {}, counted));
    QCOMPARE(counted.size(), 1);
    QCOMPARE(rows("SELECT MAKER, count(*) FROM DATEIEN GROUP BY MAKER"),
             QStringList({ "SONY=1", "Sony =1" }));
}
