// The window's side of the global settings dialog, of the update check and of the About boxes.
#include "apptestsupport.h"
#include "localhttpserver.h"
#include "mainwindow.h"
#include "mainwindowprobe.h"
#include "photocatalogue.h"
#include "readerpool.h"
#include "tdialogabout.h"
#include "tdialogglobalsettings.h"
#include "testutils.h"
#include "tobjectfiledownloader.h"
#include "twidgetscrollingtext.h"
#include "updatesite.h"
#include "urlcatcher.h"

#include <QAction>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QSqlQuery>
#include <QTableView>
#include <QTest>

#include <atomic>
#include <memory>

using namespace apptest;

namespace {

// Types into a range field and leaves it, as the user does.
void enterGroups(QWidget *dialog, const char *field, const QString &text)
{
    auto *edit = dialog->findChild<QLineEdit *>(field);
    edit->setText(text);
    emit edit->editingFinished();
}

} // namespace

class tst_GlobalSettings : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void okCopiesTheValuesBackAndRescans();
    void catalogueSettingsDecideWhatTheRescanReads_data();
    void catalogueSettingsDecideWhatTheRescanReads();
    void damagedCatalogueIsNamedInTheStatusLine();
    void catalogueSwitchedOffForTheRunIsLeftAlone();
    void focalLength35GroupsGoThroughTheDialog();
    void okWithoutChangesStillRescans();
    void cancelChangesNothing();
    void aNewDialogEachTime();
    void updateCheckOffMakesNoRequest();
    void updateQuestion_data();
    void updateQuestion();
    void yesOpensTheDownloadPage();
    void aboutKelvaro();
    void aboutQt();

private:
    std::unique_ptr<testutils::Sandbox> sandbox;
    std::unique_ptr<MainWindow> window;
    bool scannedShoot(const QVariantMap &more = {});
};

void tst_GlobalSettings::init()
{
    sandbox = std::make_unique<testutils::Sandbox>();
}

void tst_GlobalSettings::cleanup()
{
    window.reset();
    releaseDatabase();
    UpdateSite::setBaseUrl(QUrl());
    sandbox.reset();
}

// Three Canon and two Nikon photos, scanned at start.
bool tst_GlobalSettings::scannedShoot(const QVariantMap &more)
{
    const QString directory = sandbox->makeDir("shoot");
    writePhotos(directory, 3, photoTags("Canon", "EOS R5", "RF24-70mm"), "canon");
    writePhotos(directory, 2, photoTags("Nikon", "Z 6", "NIKKOR Z 50mm"), "nikon");
    QVariantMap values { { "OtherSettings/lastDirectory", directory },
                         { "OtherSettings/fileFilters", QStringList { "*.jpg" } } };
    values.insert(more);
    writeStore(values);
    window = std::make_unique<MainWindow>();
    return waitForScanEnd(*window) && MainWindowProbe(*window).status() == "Valid files: 5";
}

void tst_GlobalSettings::catalogueSettingsDecideWhatTheRescanReads_data()
{
    QTest::addColumn<bool>("remember");
    QTest::addColumn<bool>("forget");
    QTest::addColumn<int>("read");

    QTest::newRow("remembered: nothing is read") << true << false << 0;
    QTest::newRow("forget remembered photos: all are read again") << true << true << 5;
    QTest::newRow("remembering switched off: all are read") << false << false << 5;
}

void tst_GlobalSettings::catalogueSettingsDecideWhatTheRescanReads()
{
    QFETCH(bool, remember);
    QFETCH(bool, forget);
    QFETCH(int, read);

    QVERIFY(scannedShoot());
    QVERIFY2(QFile::exists(PhotoCatalogue::defaultFile()), "the first scan wrote no catalogue");
    NextModal dialog(isA<TDialogGlobalSettings>(), [&](QWidget *widget) {
        widget->findChild<QCheckBox *>("checkBoxRememberPhotos")->setChecked(remember);
        auto *button = widget->findChild<QPushButton *>("pushButtonForgetPhotos");
        if (forget) {
            button->click();
            // Until OK nothing is forgotten, and the button says it has been pressed.
            QVERIFY(!button->isEnabled());
        }
        clickButton(widget, QDialogButtonBox::Ok);
    });
    std::atomic<int> opened { 0 };
    ReaderPool::setStepHook([&opened](ReaderPool::Step step, qint64, const QString &) {
        if (step == ReaderPool::Step::Taken)
            ++opened;
    });
    window->findChild<QAction *>("actionGlobalSettings")->trigger();
    QVERIFY(dialog.answered());
    const bool ended = waitForScanEnd(*window);
    ReaderPool::setStepHook({});
    QVERIFY(ended);
    QCOMPARE(MainWindowProbe(*window).status(), QString("Valid files: 5"));
    QCOMPARE(opened.load(), read);
}

void tst_GlobalSettings::damagedCatalogueIsNamedInTheStatusLine()
{
    QDir().mkpath(QFileInfo(PhotoCatalogue::defaultFile()).path());
    QFile garbage(PhotoCatalogue::defaultFile());
    QVERIFY(garbage.open(QIODevice::WriteOnly));
    garbage.write(QByteArray(8192, 'x'));
    garbage.close();
    QVERIFY(!scannedShoot());
    const QString status = MainWindowProbe(*window).status();
    QVERIFY2(status.startsWith("Valid files: 5 — The photo catalogue was damaged; it was kept as "
                               "photo-catalogue.sqlite.damaged-"),
             qPrintable(status));
    QVERIFY(status.endsWith("and a new one was started."));
}

void tst_GlobalSettings::catalogueSwitchedOffForTheRunIsLeftAlone()
{
    const QString directory = sandbox->makeDir("shoot");
    writePhotos(directory, 3, photoTags("Canon", "EOS R5", "RF24-70mm"), "canon");
    writeStore({ { "OtherSettings/lastDirectory", directory },
                 { "OtherSettings/fileFilters", QStringList { "*.jpg" } } });
    window = std::make_unique<MainWindow>(QStringList(), MainWindow::Catalogue::SwitchedOff);
    QVERIFY(waitForScanEnd(*window));
    QCOMPARE(MainWindowProbe(*window).status(), QString("Valid files: 3"));
    QVERIFY(MainWindowProbe(*window).catalogueSwitchedOff());
    QVERIFY2(!QFile::exists(PhotoCatalogue::defaultFile()), "the catalogue was written");
    // The settings still say "remember": only this run leaves it alone.
    QVERIFY(MainWindowProbe(*window).rememberPhotos());
}

void tst_GlobalSettings::focalLength35GroupsGoThroughTheDialog()
{
    QVERIFY(scannedShoot({ { "OtherSettings/focalLength35Groups", QStringList { "1-50" } } }));
    MainWindowProbe probe(*window);
    QCOMPARE(probe.focalLength35Groups(), QList<QString> { "1-50" });

    QString shownGroups;
    NextModal dialog(isA<TDialogGlobalSettings>(), [&](QWidget *widget) {
        shownGroups = widget->findChild<QLineEdit *>("leFocalLength35Groups")->text();
        enterGroups(widget, "leFocalLength35Groups", "1-23;24-300");
        clickButton(widget, QDialogButtonBox::Ok);
    });
    window->findChild<QAction *>("actionGlobalSettings")->trigger();
    QVERIFY(dialog.answered());
    QCOMPARE(shownGroups, QString("1-50"));
    QCOMPARE(probe.focalLength35Groups(), (QList<QString> { "1-23", "24-300" }));
    QVERIFY(waitForScanEnd(*window));

    // The rescan built the index of the new ranges, and the tab counts by them.
    QSqlQuery index(probe.db());
    QVERIFY(index.exec("SELECT sql FROM sqlite_master WHERE name = 'StatFocalLength35Groups'"));
    QVERIFY(index.next());
    QVERIFY2(index.value(0).toString().contains("between 24 and 300 then '0024-0300'"),
             qPrintable(index.value(0).toString()));
    const QAbstractItemModel *table =
        window->findChild<QTableView *>("tableViewFocalLength35G")->model();
    QVERIFY(table);
    QStringList keys;
    for (int row = 0; row < table->rowCount(); ++row)
        keys << table->index(row, 0).data().toString();
    // The shoot's photos all have a 35 mm focal length of 50 mm.
    QCOMPARE(keys, QStringList { "0024-0300" });
}

void tst_GlobalSettings::okCopiesTheValuesBackAndRescans()
{
    QVERIFY(
        scannedShoot({ { "OtherSettings/makerExcludes", QStringList { "Apple" } },
                       { "OtherSettings/focalLengthGroups", QStringList { "24-70", "71-200" } } }));
    MainWindowProbe probe(*window);
    ScanWatcher scans;

    QString shownMakers, shownGroups;
    bool shownUpdate = true;
    int shownReaders = 0;
    bool shownRemember = false;
    int shownForgetDays = -1;
    NextModal dialog(isA<TDialogGlobalSettings>(), [&](QWidget *widget) {
        shownReaders = widget->findChild<QSpinBox *>("spinBoxReaderThreads")->value();
        shownRemember = widget->findChild<QCheckBox *>("checkBoxRememberPhotos")->isChecked();
        shownForgetDays = widget->findChild<QSpinBox *>("spinBoxForgetUnseenDays")->value();
        widget->findChild<QCheckBox *>("checkBoxRememberPhotos")->setChecked(false);
        widget->findChild<QSpinBox *>("spinBoxForgetUnseenDays")->setValue(12);
        widget->findChild<QSpinBox *>("spinBoxReaderThreads")->setValue(3);
        shownMakers = widget->findChild<QLineEdit *>("leMakerExcludes")->text();
        shownGroups = widget->findChild<QLineEdit *>("leFocalLengthGroups")->text();
        shownUpdate = widget->findChild<QCheckBox *>("checkBoxUpdates")->isChecked();
        widget->findChild<QLineEdit *>("leMakerExcludes")->setText("Apple;Nikon");
        widget->findChild<QLineEdit *>("leModelExcludes")->setText("iPhone6");
        enterGroups(widget, "leFocalLengthGroups", "1-60;61-200");
        enterGroups(widget, "leISOGroups", "100-800");
        widget->findChild<QCheckBox *>("checkBoxUpdates")->setChecked(true);
        clickButton(widget, QDialogButtonBox::Ok);
    });
    window->findChild<QAction *>("actionGlobalSettings")->trigger();
    QVERIFY(dialog.answered());
    QCOMPARE(shownMakers, QString("Apple"));
    QCOMPARE(shownGroups, QString("24-70;71-200"));
    QVERIFY(!shownUpdate);
    QCOMPARE(shownReaders, ReaderPool::defaultThreads);
    QVERIFY(shownRemember);
    QCOMPARE(shownForgetDays, PhotoCatalogue::defaultForgetUnseenAfterDays);

    QCOMPARE(probe.makerExcludes(), (QList<QString> { "Apple", "Nikon" }));
    QCOMPARE(probe.modelExcludes(), QList<QString> { "iPhone6" });
    QCOMPARE(probe.focalLengthGroups(), (QList<QString> { "1-60", "61-200" }));
    QCOMPARE(probe.isoGroups(), QList<QString> { "100-800" });
    QVERIFY(probe.checkForUpdatesOnStart());
    QCOMPARE(probe.readerThreads(), 3);
    QVERIFY(!probe.rememberPhotos());
    QCOMPARE(probe.forgetUnseenAfterDays(), 12);
    // Nothing reaches the store before the quit.
    QVERIFY(!readStore("OtherSettings/checkForUpdates").isValid());

    QCOMPARE(scans.scansStarted(), 1);
    QVERIFY(waitForScanEnd(*window));
    QCOMPARE(probe.status(), QString("Valid files: 3"));

    // The scan built the grouped charts' indexes for the new ranges.
    QSqlQuery indexes(probe.db());
    QVERIFY(indexes.exec("SELECT name, sql FROM sqlite_master WHERE name LIKE '%Groups' "
                         "ORDER BY name"));
    QStringList built;
    while (indexes.next())
        built << indexes.value(0).toString() + ": " + indexes.value(1).toString();
    // The 35 mm groups keep their defaults.
    QCOMPARE(built.size(), 3);
    QVERIFY2(built[0].startsWith("StatFocalLength35Groups: ")
                 && built[0].contains("when CAST(round(FOCALLENGTH35) AS INTEGER) between 1 and "
                                      "23 then '0001-0023'"),
             qPrintable(built[0]));
    built.removeFirst();
    QVERIFY2(built[0].startsWith("StatFocalLengthGroups: ")
                 && built[0].contains("when FocalLength between 1 and 60 then '0001-0060' "
                                      "when FocalLength between 61 and 200 then '0061-0200'"),
             qPrintable(built[0]));
    QVERIFY2(built[1].startsWith("StatIsoGroups: ")
                 && built[1].contains("when ISO between 100 and 800 then '0100-0800' else"),
             qPrintable(built[1]));
}

void tst_GlobalSettings::okWithoutChangesStillRescans()
{
    QVERIFY(scannedShoot());
    MainWindowProbe probe(*window);
    ScanWatcher scans;
    NextModal dialog(isA<TDialogGlobalSettings>(),
                     [](QWidget *widget) { clickButton(widget, QDialogButtonBox::Ok); });
    window->findChild<QAction *>("actionGlobalSettings")->trigger();
    QVERIFY(dialog.answered());
    QCOMPARE(scans.scansStarted(), 1);
    QVERIFY(waitForScanEnd(*window));
    QCOMPARE(probe.status(), QString("Valid files: 5"));
    QVERIFY(probe.makerExcludes().isEmpty());
    QVERIFY(!probe.checkForUpdatesOnStart());
}

void tst_GlobalSettings::cancelChangesNothing()
{
    QVERIFY(scannedShoot({ { "OtherSettings/isoGroups", QStringList { "100-200" } } }));
    MainWindowProbe probe(*window);
    ScanWatcher scans;
    NextModal dialog(isA<TDialogGlobalSettings>(), [](QWidget *widget) {
        widget->findChild<QLineEdit *>("leMakerExcludes")->setText("Canon");
        enterGroups(widget, "leISOGroups", "1-50");
        widget->findChild<QCheckBox *>("checkBoxUpdates")->setChecked(true);
        clickButton(widget, QDialogButtonBox::Cancel);
    });
    window->findChild<QAction *>("actionGlobalSettings")->trigger();
    QVERIFY(dialog.answered());
    QCOMPARE(scans.scansStarted(), 0);
    QVERIFY(probe.makerExcludes().isEmpty());
    QCOMPARE(probe.isoGroups(), QList<QString> { "100-200" });
    QVERIFY(!probe.checkForUpdatesOnStart());
    QCOMPARE(probe.status(), QString("Valid files: 5"));
}

void tst_GlobalSettings::aNewDialogEachTime()
{
    window = std::make_unique<MainWindow>();
    for (int round = 1; round <= 2; ++round) {
        NextModal dialog(isA<TDialogGlobalSettings>(),
                         [](QWidget *widget) { clickButton(widget, QDialogButtonBox::Cancel); });
        window->findChild<QAction *>("actionGlobalSettings")->trigger();
        QVERIFY(dialog.answered());
        const auto dialogs = window->findChildren<TDialogGlobalSettings *>();
        QCOMPARE(dialogs.size(), round);
        for (TDialogGlobalSettings *kept : dialogs)
            QVERIFY(kept->isHidden());
    }
}

void tst_GlobalSettings::updateCheckOffMakesNoRequest()
{
    LocalHttpServer server;
    QVERIFY(server.isListening());
    server.setResponse(200, "0.41");
    UpdateSite::setBaseUrl(server.baseUrl());
    window = std::make_unique<MainWindow>();
    QCOMPARE(MainWindowProbe(*window).fileDownloader(), nullptr);
    QCoreApplication::processEvents();
    QCOMPARE(server.requestCount(), 0);
}

void tst_GlobalSettings::updateQuestion_data()
{
    QTest::addColumn<int>("status"); // 0: nobody listens
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<bool>("asked");

    QTest::newRow("0.41 is newer") << 200 << QByteArray("0.41") << true;
    QTest::newRow("same version") << 200 << QByteArray("0.40") << false;
    QTest::newRow("older version") << 200 << QByteArray("0.39") << false;
    QTest::newRow("0.40 plus a line break sorts after 0.40") << 200 << QByteArray("0.40\n") << true;
    QTest::newRow("HTTP error") << 404 << QByteArray() << false;
    QTest::newRow("server unreachable") << 0 << QByteArray() << false;
}

void tst_GlobalSettings::updateQuestion()
{
    QFETCH(int, status);
    QFETCH(QByteArray, body);
    QFETCH(bool, asked);

    auto server = std::make_unique<LocalHttpServer>();
    QVERIFY(server->isListening());
    server->setResponse(status, body);
    UpdateSite::setBaseUrl(server->baseUrl());
    if (status == 0)
        server.reset();
    writeStore({ { "OtherSettings/checkForUpdates", true } });

    QString text;
    QMessageBox::StandardButtons buttons;
    QObject *parent = this;
    NextModal question(isA<QMessageBox>(), [&](QWidget *widget) {
        auto *box = static_cast<QMessageBox *>(widget);
        text = box->text();
        buttons = box->standardButtons();
        parent = box->parent();
        clickButton(box, QMessageBox::No);
    });
    UrlCatcher browser({ "http", "https" });
    window = std::make_unique<MainWindow>();
    TObjectFileDownloader *downloader = MainWindowProbe(*window).fileDownloader();
    QVERIFY(downloader);
    QCOMPARE(downloader->parent(), window.get());
    // Connected after the window's own slot: when it fires, the answer has been handled.
    QSignalSpy done(downloader, &TObjectFileDownloader::downloaded);
    QVERIFY(done.wait(30000));

    QCOMPARE(question.answered(), asked);
    QVERIFY(browser.urls.isEmpty());
    if (server)
        QCOMPARE(server->lastPath(), QByteArray("/sonstiges/KelvaroVersion.txt"));
    if (asked) {
        QVERIFY2(text.startsWith("Eine aktuellere Programmversion (" + QString::fromUtf8(body)
                                 + ") steht zur Verfügung."),
                 qPrintable(text));
        QCOMPARE(buttons, QMessageBox::Yes | QMessageBox::No);
        QCOMPARE(parent, nullptr);
    }
}

void tst_GlobalSettings::yesOpensTheDownloadPage()
{
    LocalHttpServer server;
    server.setResponse(200, "0.41");
    UpdateSite::setBaseUrl(server.baseUrl());
    writeStore({ { "OtherSettings/checkForUpdates", true } });

    NextModal question(isA<QMessageBox>(),
                       [](QWidget *box) { clickButton(box, QMessageBox::Yes); });
    UrlCatcher browser({ "http", "https" });
    window = std::make_unique<MainWindow>();
    QSignalSpy done(MainWindowProbe(*window).fileDownloader(), &TObjectFileDownloader::downloaded);
    QVERIFY(done.wait(30000));
    QVERIFY(question.answered());
    QCOMPARE(browser.urls.size(), 1);
    QCOMPARE(browser.urls.first(), UpdateSite::downloadPageUrl());
    QCOMPARE(browser.urls.first().path(), QString("/downloads.html"));
}

void tst_GlobalSettings::aboutKelvaro()
{
    window = std::make_unique<MainWindow>();
    QString title;
    QObject *parent = this;
    QList<QString> lines;
    NextModal about(isA<TDialogAbout>(), [&](QWidget *widget) {
        title = widget->windowTitle();
        parent = widget->parent();
        if (auto *scroller = widget->findChild<TWidgetScrollingText *>("scrollWidget"))
            lines = scroller->text();
        static_cast<QDialog *>(widget)->accept();
    });
    window->findChild<QAction *>("actionAbout_Kelvaro")->trigger();
    QVERIFY(about.answered());
    QCOMPARE(title, QString("About Kelvaro"));
    QCOMPARE(parent, nullptr);
    // The web and mail lines point at the host the update check asks.
    const QString host = UpdateSite::host();
    QVERIFY2(!host.isEmpty(), "no update host compiled in");
    QCOMPARE(lines.value(4), "https://" + host);
    QCOMPARE(lines.value(8), "mailto:info@" + host);
    QVERIFY2(window->findChildren<TDialogAbout *>().isEmpty(), "a local dialog, gone again");
}

void tst_GlobalSettings::aboutQt()
{
    window = std::make_unique<MainWindow>();
    QString title;
    QObject *parent = nullptr;
    NextModal about(isA<QMessageBox>(), [&](QWidget *widget) {
        title = widget->windowTitle();
        parent = widget->parent();
        clickButton(widget, QMessageBox::Ok);
    });
    window->findChild<QAction *>("actionAbout_Qt")->trigger();
    QVERIFY(about.answered());
    QCOMPARE(title, QString("About Qt"));
    QCOMPARE(parent, window.get());
}

std::unique_ptr<QObject> makeGlobalSettingsTest()
{
    return std::make_unique<tst_GlobalSettings>();
}

#include "tst_globalsettings.moc"
