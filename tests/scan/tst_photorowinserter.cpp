#include "tst_photorowinserter.h"

#include "photodatabase.h"
#include "photofixture.h"
#include "photofolders.h"
#include "photorowinserter.h"
#include "queryrowinserter.h"
#include "scanfixtures.h"
#include "testutils.h"
#include "texiffile.h"

#ifdef KELVARO_DIRECT_SQLITE
#include "sqliterowinserter.h"
#endif

#include <QSqlQuery>
#include <QSqlRecord>
#include <QTest>

#include <functional>
#include <memory>

using Factory = std::function<std::unique_ptr<PhotoRowInserter>(const QSqlDatabase &)>;
Q_DECLARE_METATYPE(Factory)

namespace {

const QString writerConnection = QStringLiteral("InserterWriter");
const QString readerConnection = QStringLiteral("InserterReaderWithoutPragma");

void addImplementations()
{
    QTest::addColumn<Factory>("make");
    QTest::newRow("QSqlQuery") << Factory([](const QSqlDatabase &db) {
        return std::unique_ptr<PhotoRowInserter>(std::make_unique<QueryRowInserter>(db));
    });
#ifdef KELVARO_DIRECT_SQLITE
    QTest::newRow("SQLite") << Factory([](const QSqlDatabase &db) {
        return std::unique_ptr<PhotoRowInserter>(std::make_unique<SqliteRowInserter>(db));
    });
#endif
}

// A complete row; texts beyond Latin-1 and a ";" as they may come from a file.
QVariantList row(const QString &fileName)
{
    return { fileName,
             QStringLiteral("2023:07:14 18:30:05"),
             QStringLiteral("2023:07:15 09:00:00"),
             QStringLiteral("Ærø Kamera"),
             QStringLiteral("写真機 1"),
             QStringLiteral("RF24-70mm F2.8; L"),
             24.5,
             6400,
             QStringLiteral("2.8"),
             0.004,
             QStringLiteral("1/250"),
             QStringLiteral("Multi-segment"),
             QStringLiteral("Program AE") };
}

} // namespace

void tst_PhotoRowInserter::initTestCase()
{
    QVERIFY2(PhotoDatabase::openMainConnection(db), "the main connection could not be set up");
}

void tst_PhotoRowInserter::init()
{
    PhotoDatabase::clear(db);
}

void tst_PhotoRowInserter::cleanupTestCase()
{
    scantest::closeMainConnection(db);
}

void tst_PhotoRowInserter::storesEveryValueAsItsColumnType_data()
{
    addImplementations();
}

void tst_PhotoRowInserter::storesEveryValueAsItsColumnType()
{
    QFETCH(Factory, make);
    {
        scantest::OwnConnection writer(writerConnection);
        const auto inserter = make(writer.db);
        QVERIFY(inserter->insert(row(QStringLiteral("first.jpg"))));
        QVERIFY(inserter->insert(row(QStringLiteral("second.jpg"))));
    }

    QSqlQuery query(db);
    QVERIFY(query.exec(QStringLiteral(
        "SELECT FILENAME, DATE, MAKER, MODEL, LENS, FOCALLENGTH, typeof(FOCALLENGTH), ISO, "
        "typeof(ISO), FNUMBER, typeof(FNUMBER), EXPTIME, EXPTIMESTRING, METERINGMODE, "
        "EXPOSUREMODE FROM DATEIEN ORDER BY id")));
    QVERIFY(query.next());
    const QStringList expected { "first.jpg", "2023:07:14 18:30:05", "Ærø Kamera", "写真機 1",
                                 "RF24-70mm F2.8; L", "24.5", "real", "6400", "integer",
                                 // FNUMBER is a REAL column: the text "2.8" becomes a number
                                 "2.8", "real", "0.004", "1/250", "Multi-segment", "Program AE" };
    QStringList stored;
    for (int i = 0; i < query.record().count(); ++i)
        stored << query.value(i).toString();
    QCOMPARE(stored, expected);
    QVERIFY(query.next());
    QCOMPARE(query.value(0).toString(), QStringLiteral("second.jpg"));
    QVERIFY(!query.next());
}

void tst_PhotoRowInserter::nullTextStoresNoRowAndTheNextRowGoesIn_data()
{
    addImplementations();
}

void tst_PhotoRowInserter::nullTextStoresNoRowAndTheNextRowGoesIn()
{
    QFETCH(Factory, make);
    scantest::OwnConnection writer(writerConnection);
    const auto inserter = make(writer.db);
    QVariantList broken = row(QStringLiteral("broken.jpg"));
    broken[3] = QVariant(QMetaType::fromType<QString>()); // a null maker text
    QVERIFY(!inserter->insert(broken));
    QVERIFY(inserter->insert(row(QStringLiteral("whole.jpg"))));
    QCOMPARE(scantest::column(db, "FILENAME"), QStringList { "whole.jpg" });
}

void tst_PhotoRowInserter::closedConnectionStoresNothing_data()
{
    addImplementations();
}

void tst_PhotoRowInserter::closedConnectionStoresNothing()
{
    QFETCH(Factory, make);
    QSqlDatabase closed = PhotoDatabase::addConnection(writerConnection);
    {
        const auto inserter = make(closed);
        QVERIFY(!inserter->insert(row(QStringLiteral("nowhere.jpg"))));
    }
    closed = QSqlDatabase();
    QSqlDatabase::removeDatabase(writerConnection);
    QCOMPARE(scantest::rowCount(db), 0);
}

void tst_PhotoRowInserter::missingTableStoresNothing_data()
{
    addImplementations();
}

void tst_PhotoRowInserter::missingTableStoresNothing()
{
    QFETCH(Factory, make);
    // Another in-memory database, without the table.
    scantest::OwnConnection elsewhere(writerConnection, false,
                                      QStringLiteral("file:kelvaro-no-table?mode=memory"));
    QVERIFY(elsewhere.db.isOpen());
    const auto inserter = make(elsewhere.db);
    QVERIFY(!inserter->insert(row(QStringLiteral("nowhere.jpg"))));
    QVERIFY(!inserter->insert(row(QStringLiteral("again.jpg"))));
}

void tst_PhotoRowInserter::waitsForAnotherConnectionsTableLock_data()
{
    addImplementations();
}

void tst_PhotoRowInserter::waitsForAnotherConnectionsTableLock()
{
    QFETCH(Factory, make);
    {
        scantest::OwnConnection writer(writerConnection);
        QVERIFY(make(writer.db)->insert(row(QStringLiteral("before.jpg"))));
    }
    scantest::OwnConnection reader(readerConnection);
    // A half-read SELECT of a connection without the read-uncommitted pragma locks the table.
    auto select = std::make_unique<QSqlQuery>(reader.db);
    QVERIFY(select->exec(QStringLiteral("SELECT FILENAME FROM DATEIEN")));
    QVERIFY(select->next());

    // At the first refusal the row is not in yet; the reader then lets go, on the inserting
    // thread itself, so that the retry meets a free table whatever the machine's speed.
    int refusals = 0;
    int rowsWhenRefused = -1;
    PhotoDatabase::setLockedRetryHook([&] {
        if (++refusals == 1)
            rowsWhenRefused = scantest::rowCount(db);
        select.reset();
    });
    scantest::OwnConnection writer(writerConnection);
    const bool stored = make(writer.db)->insert(row(QStringLiteral("waited.jpg")));
    PhotoDatabase::setLockedRetryHook({});

    QCOMPARE(refusals, 1);
    QCOMPARE(rowsWhenRefused, 1);
    QVERIFY2(stored, "the INSERT was not retried after the lock had gone");
    QCOMPARE(scantest::column(db, "FILENAME"), (QStringList { "before.jpg", "waited.jpg" }));
}

void tst_PhotoRowInserter::rowValuesFollowThePlaceholders()
{
    testutils::Sandbox sandbox;
    fixture::PhotoTags tags = fixture::typicalTags();
    tags.modifyDate = QStringLiteral("2024:01:02 03:04:05");
    const QString path = sandbox.filePath("IMG_0042.JPG");
    QVERIFY(fixture::writePhoto(path, fixture::Format::Jpeg, tags));
    TExifFile exif(path);
    QVERIFY(exif.processFile());

    const QVariantList values = PhotoRowInserter::rowValues(exif);
    QCOMPARE(values.size(), PhotoRowInserter::placeholders.size());
    const auto at = [&](const char *placeholder) {
        return values.at(PhotoRowInserter::placeholders.indexOf(QLatin1String(placeholder)));
    };
    QCOMPARE(at(":filename"), QVariant(QStringLiteral("IMG_0042.JPG")));
    QCOMPARE(at(":date"), QVariant(exif.DateTimeOriginal));
    QCOMPARE(at(":datemod"), QVariant(QStringLiteral("2024:01:02 03:04:05")));
    QCOMPARE(at(":maker"), QVariant(exif.Make));
    QCOMPARE(at(":model"), QVariant(exif.Model));
    QCOMPARE(at(":lens"), QVariant(exif.LensModel));
    QCOMPARE(at(":focallength"), QVariant(exif.exif_0x920A_FocalLengthAsReal()));
    QCOMPARE(at(":iso"), QVariant(int(exif.ISO)));
    QCOMPARE(at(":fnumber"), QVariant(exif.exif_0x829D_FNumberAsString()));
    QCOMPARE(at(":exptime"), QVariant(exif.exif_0x829A_ExposureTime()));
    QCOMPARE(at(":exptimestring"), QVariant(exif.exif_0x829A_ExposureTimeAsString()));
    QCOMPARE(at(":meteringmode"), QVariant(exif.exif_0x9207_MeteringModeAsString()));
    QCOMPARE(at(":exposuremode"), QVariant(exif.exif_0x8822_ExpProgAsString()));
}

void tst_PhotoRowInserter::scanBuildUsesTheDirectFormWhereItIsBuilt()
{
    scantest::OwnConnection writer(writerConnection);
    const auto inserter = PhotoRowInserter::create(writer.db);
#ifdef KELVARO_DIRECT_SQLITE
    QVERIFY(dynamic_cast<SqliteRowInserter *>(inserter.get()));
#else
    QVERIFY(dynamic_cast<QueryRowInserter *>(inserter.get()));
#endif
}

void tst_PhotoRowInserter::infoRowKeepsThePathAsFolderAndFileName()
{
    // Three folders, the first one met again after another: each is stored once, and every
    // photo's path comes back whole. A new folder is stored between a photo's two INSERTs, so
    // its info row must still take the photo's id.
    const QStringList paths { "/photos/2023/a.jpg",       "/photos/2023/b.CR3",
                              "/photos/2024/a.jpg",       "/photos/2023/c.jpg",
                              "/photos/2023/sub.d/d.NEF", "/e.jpg" };
    const auto rows = PhotoRowInserter::create(db);
    const auto info = PhotoRowInserter::createInfo(db);
    QList<qint64> ids;
    for (const QString &path : paths) {
        QVERIFY(rows->insert(row(path.section(QLatin1Char('/'), -1))));
        QSqlQuery last(db);
        QVERIFY(last.exec("SELECT max(id) FROM DATEIEN") && last.next());
        ids << last.value(0).toLongLong();
        QVERIFY2(info->insert({ path, QStringLiteral("JPG"), 35.0, 1.5, 18, 5 }), qPrintable(path));
    }

    QSqlQuery query(db);
    QVERIFY(query.exec("SELECT ID FROM PHOTOINFO ORDER BY ID"));
    QList<qint64> infoIds;
    while (query.next())
        infoIds << query.value(0).toLongLong();
    QCOMPARE(infoIds, ids);

    QVERIFY(query.exec("SELECT PATH FROM PHOTOFOLDERS ORDER BY ID"));
    QStringList folders;
    while (query.next())
        folders << query.value(0).toString();
    QCOMPARE(folders,
             (QStringList { "/photos/2023/", "/photos/2024/", "/photos/2023/sub.d/", "/" }));

    QSqlQuery path(db);
    QVERIFY(path.prepare(PhotoDatabase::photoPathStatement));
    for (int i = 0; i < paths.size(); ++i) {
        path.addBindValue(ids.at(i));
        QVERIFY(path.exec());
        QVERIFY2(path.next(), qPrintable(paths.at(i)));
        QCOMPARE(path.value(0).toString(), paths.at(i));
    }

    // Emptying the database forgets the folders as well.
    PhotoDatabase::clear(db);
    QVERIFY(query.exec("SELECT count(*) FROM PHOTOFOLDERS") && query.next());
    QCOMPARE(query.value(0).toInt(), 0);
}

void tst_PhotoRowInserter::infoRowWithoutItsFolderIsNotStored()
{
    QVERIFY(PhotoRowInserter::create(db)->insert(row(QStringLiteral("a.jpg"))));
    QSqlQuery(db).exec(QStringLiteral("DROP TABLE PHOTOFOLDERS"));
    const bool stored = PhotoRowInserter::createInfo(db)->insert(
        { QStringLiteral("/p/a.jpg"), QStringLiteral("JPG"), {}, {}, {}, {} });
    QSqlQuery(db).exec(PhotoDatabase::createFolderTableStatement);
    QVERIFY2(!stored, "a photo whose folder could not be stored has no info row");
    QSqlQuery count(db);
    QVERIFY(count.exec("SELECT count(*) FROM PHOTOINFO") && count.next());
    QCOMPARE(count.value(0).toInt(), 0);
}

void tst_PhotoRowInserter::folderOfEndsAtTheLastSeparator_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("folder");

    QTest::newRow("file in a folder") << "/photos/2023/IMG_1.JPG"
                                      << "/photos/2023/";
    QTest::newRow("dot in the folder") << "/photos/a.b/IMG"
                                       << "/photos/a.b/";
    QTest::newRow("file at the root") << "/IMG_1.JPG"
                                      << "/";
    QTest::newRow("name alone") << "IMG_1.JPG"
                                << "";
}

void tst_PhotoRowInserter::folderOfEndsAtTheLastSeparator()
{
    QFETCH(QString, path);
    QFETCH(QString, folder);
    QCOMPARE(PhotoFolders::folderOf(path), folder);
    // The folder followed by the reader's file name is the path again.
    QCOMPARE(PhotoFolders::folderOf(path) + TExifFile(path).fileName(), path);
}
