// Names that differ only in blanks or case: the hint on the maker, model and lens tabs, its "Merge
// them", the two settings from the store, and the raw rows that keep the names as the files hold
// them.
#include "apptestsupport.h"
#include "filterpanel.h"
#include "mainwindow.h"
#include "mainwindowprobe.h"
#include "namemergehintbar.h"
#include "rawdatamodel.h"
#include "testutils.h"

#include <QAbstractItemModel>
#include <QListWidget>
#include <QPushButton>
#include <QSqlRecord>
#include <QTableView>
#include <QTest>

#include <memory>

using namespace apptest;

class tst_NameHints : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void hintOffersToMergeAndTheChoiceIsKept();
    void friendlyMakersFromTheStore();
    void noHintForCleanNames();

private:
    // A window whose first scan read one photo per maker (with the given model).
    bool scanned(const QList<QPair<QString, QString>> &makersAndModels,
                 const QVariantMap &store = {});
    QStringList tableRows(const QString &widgetName) const;
    NameMergeHintBar *hint(const QString &widgetName) const
    {
        return window->findChild<NameMergeHintBar *>("nameMergeHint" + widgetName);
    }

    std::unique_ptr<testutils::Sandbox> sandbox;
    std::unique_ptr<MainWindow> window;
};

void tst_NameHints::init()
{
    sandbox = std::make_unique<testutils::Sandbox>();
}

void tst_NameHints::cleanup()
{
    window.reset();
    releaseDatabase();
    sandbox.reset();
}

bool tst_NameHints::scanned(const QList<QPair<QString, QString>> &makersAndModels,
                            const QVariantMap &store)
{
    const QString directory = sandbox->makeDir("photos");
    for (int i = 0; i < makersAndModels.size(); ++i) {
        fixture::PhotoTags tags =
            photoTags(makersAndModels.at(i).first, makersAndModels.at(i).second, "Lens");
        if (!writePhotos(directory, 1, tags, QStringLiteral("photo%1_").arg(i)))
            return false;
    }
    QVariantMap values = store;
    values.insert("OtherSettings/lastDirectory", directory);
    values.insert("OtherSettings/fileFilters", QStringList { "*.jpg" });
    writeStore(values);
    window = std::make_unique<MainWindow>();
    return waitForScanEnd(*window)
        && MainWindowProbe(*window).status()
        == QStringLiteral("Valid files: %1").arg(makersAndModels.size());
}

// "value=count" per row of a statistic's table.
QStringList tst_NameHints::tableRows(const QString &widgetName) const
{
    const QAbstractItemModel *model =
        window->findChild<QTableView *>("tableView" + widgetName)->model();
    QStringList rows;
    for (int row = 0; row < model->rowCount(); ++row)
        rows << model->index(row, 0).data().toString() + "="
                + model->index(row, 1).data().toString();
    return rows;
}

void tst_NameHints::hintOffersToMergeAndTheChoiceIsKept()
{
    const QString nul(QChar(0));
    QVERIFY(scanned({ { "JVC", "GC-X1" },
                      { "JVC  ", "GC-X1 " },
                      { "jvc", "GC-X1" },
                      { "JVC" + nul + nul, "GC-X1" },
                      { "EASTMAN KODAK COMPANY", "DC290" },
                      { "Eastman Kodak Company", "DC290" },
                      { "Canon", "EOS R5" } }));
    QCOMPARE(hint("Maker")->hint(), QString("5 makers differ only in blanks or case"));
    QVERIFY(!hint("Maker")->isHidden());
    // "JVC" twice (once cut at its NUL) under one maker: only the model with a blank differs.
    QCOMPARE(hint("Model")->hint(), QString("2 models differ only in blanks or case"));
    QVERIFY(hint("Lens")->isHidden());
    QCOMPARE(tableRows("Maker").size(), 6);

    QTest::mouseClick(hint("Maker")->findChild<QPushButton *>("buttonMergeNames"), Qt::LeftButton);
    QCOMPARE(tableRows("Maker"), QStringList({ "Canon=1", "EASTMAN KODAK COMPANY=2", "JVC=4" }));
    QVERIFY(hint("Maker")->isHidden());
    QVERIFY(hint("Model")->isHidden());
    // The filter panel lists the merged names, and picking one keeps every photo counted under it.
    QListWidget *makerList =
        window->findChild<FilterPanel *>()->list(PhotoFilterFields::all().at(0));
    QStringList listed;
    for (int row = 0; row < makerList->count(); ++row)
        listed << makerList->item(row)->text();
    QCOMPARE(listed, QStringList({ "Canon (1)", "EASTMAN KODAK COMPANY (2)", "JVC (4)" }));
    makerList->item(2)->setCheckState(Qt::Checked);
    QCOMPARE(MainWindowProbe(*window).status(), QString("Valid files: 7 — showing 4: JVC"));
    makerList->item(2)->setCheckState(Qt::Unchecked);
    // The raw rows keep the names as the files hold them.
    RawDataModel *raw = MainWindowProbe(*window).tableModel();
    QStringList makers;
    const int makerColumn = raw->record().indexOf("MAKER");
    for (int row = 0; row < raw->rowCount(); ++row)
        makers << raw->index(row, makerColumn).data().toString();
    QVERIFY2(makers.contains("JVC  "), qPrintable(makers.join('|')));
    QVERIFY(makers.contains("Eastman Kodak Company"));

    MainWindowProbe(*window).saveSettings();
    QCOMPARE(readStore("OtherSettings/mergeNames").toBool(), true);
    QVERIFY(!storeKeys().contains("OtherSettings/friendlyMakers"));
    QVERIFY(!storeKeys().contains("OtherSettings/makerAliases"));
    window.reset();
    releaseDatabase();
    window = std::make_unique<MainWindow>();
    QVERIFY(waitForScanEnd(*window));
    QCOMPARE(tableRows("Maker"), QStringList({ "Canon=1", "EASTMAN KODAK COMPANY=2", "JVC=4" }));
}

void tst_NameHints::friendlyMakersFromTheStore()
{
    QVERIFY(scanned({ { "NIKON CORPORATION", "NIKON D70" },
                      { "NIKON", "COOLPIX" },
                      { "EASTMAN KODAK COMPANY", "DC290" },
                      { "Grandpa Cam", "X" },
                      { "OLYMPUS IMAGING CORP.", "E-M5" },
                      { "OM Digital Solutions", "OM-1" } },
                    { { "OtherSettings/friendlyMakers", true },
                      { "OtherSettings/makerAliases",
                        QStringList { "Grandpa Cam = Old", "Old = Zenit", "A = B", "B = A" } } }));
    QCOMPARE(tableRows("Maker"),
             QStringList({ "Kodak=1", "Nikon=2", "OM System / Olympus=2", "Zenit=1" }));
    MainWindowProbe(*window).saveSettings();
    QCOMPARE(readStore("OtherSettings/makerAliases").toStringList(),
             QStringList({ "Grandpa Cam = Old", "Old = Zenit", "A = B", "B = A" }));
    QVERIFY(!storeKeys().contains("OtherSettings/mergeNames"));
}

void tst_NameHints::noHintForCleanNames()
{
    QVERIFY(scanned({ { "Canon", "EOS R5" }, { "Canon", "EOS R6" }, { "SONY", "ILCE-7M3" } }));
    QVERIFY(hint("Maker")->isHidden());
    QVERIFY(hint("Model")->isHidden());
    QVERIFY(hint("Lens")->isHidden());
    QCOMPARE(tableRows("Maker"), QStringList({ "Canon=2", "SONY=1" }));
    MainWindowProbe(*window).saveSettings();
    for (const QString &key : storeKeys())
        QVERIFY2(!key.contains("mergeNames") && !key.contains("friendlyMakers")
                     && !key.contains("makerAliases") && !key.contains("hideImplausibleDates")
                     && !key.contains("maxCategories"),
                 qPrintable(key));
}

std::unique_ptr<QObject> makeNameHintsTest()
{
    return std::make_unique<tst_NameHints>();
}

#include "tst_namehints.moc"
