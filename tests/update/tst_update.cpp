#include "localhttpserver.h"
#include "tobjectfiledownloader.h"
#include "updateoffer.h"
#include "updatesite.h"
#include "urlcatcher.h"

#include "testutils.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QNetworkProxy>
#include <QPushButton>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTest>
#include <QTimer>

namespace {

const QString expectedQuestion041 =
    QStringLiteral("Eine aktuellere Programmversion (0.41) steht zur Verfügung. \n"
                   "Soll zur Downloadseite gewechselt werden?");

// What a message box showed before the test answered it.
struct SeenBox
{
    bool seen = false;
    QString text;
    QMessageBox::StandardButtons buttons;
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    bool hasParent = false;
};

QMessageBox *shownMessageBox()
{
    if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
        return box;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *box = qobject_cast<QMessageBox *>(widget); box && box->isVisible())
            return box;
    }
    return nullptr;
}

// Watches for a message box while `run` executes, notes what it shows and answers it with
// `answer`. A box that somehow cannot be answered is closed after ten seconds so that the test
// fails instead of hanging.
template<typename Function>
SeenBox answerMessageBox(QMessageBox::StandardButton answer, Function run)
{
    SeenBox seen;
    QTimer poll;
    poll.setInterval(10);
    QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
        QMessageBox *box = shownMessageBox();
        if (!box || seen.seen)
            return;
        seen.seen = true;
        seen.text = box->text();
        seen.buttons = box->standardButtons();
        seen.defaultButton = box->standardButton(box->defaultButton());
        seen.icon = box->icon();
        seen.hasParent = box->parentWidget() != nullptr;
        if (QAbstractButton *button = box->button(answer))
            button->click();
    });
    QTimer rescue;
    rescue.setSingleShot(true);
    QObject::connect(&rescue, &QTimer::timeout, &rescue, [] {
        if (QMessageBox *box = shownMessageBox())
            box->done(QMessageBox::Cancel);
    });
    poll.start();
    rescue.start(10000);
    run();
    return seen;
}

} // namespace

class tst_Update : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void siteUrlsUseTheCompiledInHost();
    void siteUrlsFollowTheBaseUrl_data();
    void siteUrlsFollowTheBaseUrl();

    void newerVersionIsALexicalComparison_data();
    void newerVersionIsALexicalComparison();
    void questionNamesTheVersion_data();
    void questionNamesTheVersion();

    void downloaderFetchesTheVersionFile_data();
    void downloaderFetchesTheVersionFile();
    void downloaderReportsAnUnreachableServer();

    void offerAsksOnlyForANewerVersion_data();
    void offerAsksOnlyForANewerVersion();
    void offerFromADownloadedFileOpensThatServersPage();

private:
    testutils::Sandbox sandbox;
};

void tst_Update::initTestCase()
{
    QVERIFY2(sandbox.isValid(), "no scratch folder for the settings store");
    // The requests go to servers on the loopback address that the tests start themselves; a proxy
    // from the environment must not come between.
    QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
}

void tst_Update::cleanup()
{
    UpdateSite::setBaseUrl(QUrl());
}

void tst_Update::siteUrlsUseTheCompiledInHost()
{
    const QString host = UpdateSite::host();
    QVERIFY2(!host.isEmpty(), "no update host compiled in");
    QCOMPARE(UpdateSite::versionFileUrl(),
             QUrl("https://" + host + "/sonstiges/KelvaroVersion.txt"));
    QCOMPARE(UpdateSite::downloadPageUrl(), QUrl("https://" + host + "/downloads.html"));
}

void tst_Update::siteUrlsFollowTheBaseUrl_data()
{
    QTest::addColumn<QUrl>("base");
    QTest::addColumn<QUrl>("versionFile");
    QTest::addColumn<QUrl>("downloadPage");
    QTest::newRow("loopback with port")
        << QUrl("http://127.0.0.1:8123")
        << QUrl("http://127.0.0.1:8123/sonstiges/KelvaroVersion.txt")
        << QUrl("http://127.0.0.1:8123/downloads.html");
    QTest::newRow("trailing slash") << QUrl("http://127.0.0.1:8123/")
                                    << QUrl("http://127.0.0.1:8123/sonstiges/KelvaroVersion.txt")
                                    << QUrl("http://127.0.0.1:8123/downloads.html");
    QTest::newRow("leading path") << QUrl("https://mirror.example.net/kelvaro")
                                  << QUrl("https://mirror.example.net/kelvaro/sonstiges/"
                                          "KelvaroVersion.txt")
                                  << QUrl("https://mirror.example.net/kelvaro/downloads.html");
}

void tst_Update::siteUrlsFollowTheBaseUrl()
{
    QFETCH(QUrl, base);
    QFETCH(QUrl, versionFile);
    QFETCH(QUrl, downloadPage);
    UpdateSite::setBaseUrl(base);
    QCOMPARE(UpdateSite::versionFileUrl(), versionFile);
    QCOMPARE(UpdateSite::downloadPageUrl(), downloadPage);

    UpdateSite::setBaseUrl(QUrl());
    QCOMPARE(UpdateSite::versionFileUrl().host(), UpdateSite::host());
    QCOMPARE(UpdateSite::versionFileUrl().scheme(), QStringLiteral("https"));
}

void tst_Update::newerVersionIsALexicalComparison_data()
{
    QTest::addColumn<QString>("appVersion");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<bool>("newer");
    QTest::newRow("0.41 is newer") << "0.40" << QByteArray("0.41") << true;
    QTest::newRow("0.40 is the same") << "0.40" << QByteArray("0.40") << false;
    QTest::newRow("0.39 is older") << "0.40" << QByteArray("0.39") << false;
    QTest::newRow("a line break makes 0.40 newer") << "0.40" << QByteArray("0.40\n") << true;
    QTest::newRow("0.100 sorts before 0.40") << "0.40" << QByteArray("0.100") << false;
    QTest::newRow("1.0 is newer") << "0.40" << QByteArray("1.0") << true;
    QTest::newRow("shorter is less") << "0.40" << QByteArray("0.4") << false;
    QTest::newRow("empty data") << "0.40" << QByteArray() << false;
    QTest::newRow("upper case sorts first") << "0.40a" << QByteArray("0.40A") << false;
    QTest::newRow("lower case sorts last") << "0.40A" << QByteArray("0.40a") << true;
    QTest::newRow("UTF-8 text") << "0.40" << QByteArray("0.40\xc3\x9f") << true;
    QTest::newRow("zero byte after the same version") << "0.40" << QByteArray("0.40\0", 5) << true;
}

void tst_Update::newerVersionIsALexicalComparison()
{
    QFETCH(QString, appVersion);
    QFETCH(QByteArray, data);
    QFETCH(bool, newer);
    QCOMPARE(UpdateSite::isNewerVersion(appVersion, data), newer);
}

void tst_Update::questionNamesTheVersion_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QString>("version");
    QTest::newRow("plain version") << QByteArray("0.41") << "0.41";
    QTest::newRow("ends at the first zero byte") << QByteArray("0.41\0junk", 9) << "0.41";
    QTest::newRow("line break kept") << QByteArray("0.40\n") << "0.40\n";
    QTest::newRow("UTF-8 decoded") << QByteArray("0.41-\xce\xb2") << QString::fromUtf8("0.41-β");
    QTest::newRow("empty") << QByteArray() << "";
}

void tst_Update::questionNamesTheVersion()
{
    QFETCH(QByteArray, data);
    QFETCH(QString, version);
    QCOMPARE(UpdateSite::updateQuestion(data),
             "Eine aktuellere Programmversion (" + version
                 + ") steht zur Verfügung. \nSoll zur Downloadseite gewechselt werden?");
}

void tst_Update::downloaderFetchesTheVersionFile_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<bool>("asks");
    QTest::newRow("0.41") << 200 << QByteArray("0.41") << QByteArray("0.41") << true;
    QTest::newRow("0.40") << 200 << QByteArray("0.40") << QByteArray("0.40") << false;
    QTest::newRow("0.39") << 200 << QByteArray("0.39") << QByteArray("0.39") << false;
    QTest::newRow("0.40 and a line break")
        << 200 << QByteArray("0.40\n") << QByteArray("0.40\n") << true;
    QTest::newRow("0.100") << 200 << QByteArray("0.100") << QByteArray("0.100") << false;
    QTest::newRow("empty file") << 200 << QByteArray() << QByteArray() << false;
    // An error page would sort after any version: a failed request gives no data at all.
    QTest::newRow("HTTP 404, no body") << 404 << QByteArray() << QByteArray() << false;
    QTest::newRow("HTTP 404, error page")
        << 404 << QByteArray("<html>Not Found</html>") << QByteArray() << false;
    QTest::newRow("HTTP 500, version text") << 500 << QByteArray("0.41") << QByteArray() << false;
}

void tst_Update::downloaderFetchesTheVersionFile()
{
    QFETCH(int, status);
    QFETCH(QByteArray, body);
    QFETCH(QByteArray, data);
    QFETCH(bool, asks);
    LocalHttpServer server;
    QVERIFY2(server.isListening(), "the local server could not listen");
    server.setResponse(status, body);
    UpdateSite::setBaseUrl(server.baseUrl());

    TObjectFileDownloader downloader(UpdateSite::versionFileUrl(), nullptr);
    QSignalSpy downloaded(&downloader, &TObjectFileDownloader::downloaded);
    QVERIFY2(downloaded.wait(10000), "downloaded() was not emitted");
    QCOMPARE(downloaded.count(), 1);
    QCOMPARE(server.requestCount(), 1);
    QCOMPARE(server.lastPath(), QByteArray("/sonstiges/KelvaroVersion.txt"));
    QCOMPARE(downloader.downloadedData(), data);
    QCOMPARE(UpdateSite::isNewerVersion(QStringLiteral("0.40"), downloader.downloadedData()), asks);
}

void tst_Update::downloaderReportsAnUnreachableServer()
{
    // A port that was free a moment ago: nothing listens there any more.
    quint16 port = 0;
    {
        QTcpServer probe;
        QVERIFY2(probe.listen(QHostAddress::LocalHost, 0), "no free port on the loopback address");
        port = probe.serverPort();
    }
    UpdateSite::setBaseUrl(QUrl(QStringLiteral("http://127.0.0.1:%1").arg(port)));

    TObjectFileDownloader downloader(UpdateSite::versionFileUrl(), nullptr);
    QSignalSpy downloaded(&downloader, &TObjectFileDownloader::downloaded);
    QVERIFY2(downloaded.wait(10000), "downloaded() was not emitted for a refused connection");
    QCOMPARE(downloaded.count(), 1);
    QVERIFY(downloader.downloadedData().isEmpty());
    QVERIFY(!UpdateSite::isNewerVersion(QStringLiteral("0.40"), downloader.downloadedData()));

    UrlCatcher catcher({ "https", "http" });
    const SeenBox box = answerMessageBox(
        QMessageBox::Yes, [&] { UpdateOffer::offerDownload(downloader.downloadedData()); });
    QVERIFY2(!box.seen, "a question was shown although the server was unreachable");
    QVERIFY(catcher.urls.isEmpty());
}

void tst_Update::offerAsksOnlyForANewerVersion_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QMessageBox::StandardButton>("answer");
    QTest::addColumn<bool>("asks");
    QTest::newRow("0.41, Yes") << QByteArray("0.41") << QMessageBox::Yes << true;
    QTest::newRow("0.41, No") << QByteArray("0.41") << QMessageBox::No << true;
    QTest::newRow("0.40") << QByteArray("0.40") << QMessageBox::Yes << false;
    QTest::newRow("0.39") << QByteArray("0.39") << QMessageBox::Yes << false;
    QTest::newRow("0.100") << QByteArray("0.100") << QMessageBox::Yes << false;
    QTest::newRow("empty") << QByteArray() << QMessageBox::Yes << false;
}

void tst_Update::offerAsksOnlyForANewerVersion()
{
    QFETCH(QByteArray, data);
    QFETCH(QMessageBox::StandardButton, answer);
    QFETCH(bool, asks);
    UrlCatcher catcher({ "https", "http" });

    const SeenBox box = answerMessageBox(answer, [&] { UpdateOffer::offerDownload(data); });
    QCOMPARE(box.seen, asks);
    if (!asks) {
        QVERIFY(catcher.urls.isEmpty());
        return;
    }
    QCOMPARE(box.text, expectedQuestion041);
    QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Yes | QMessageBox::No));
    QCOMPARE(box.defaultButton, QMessageBox::Yes);
    QCOMPARE(box.icon, QMessageBox::Question);
    QVERIFY2(!box.hasParent, "the question has a parent window");
    if (answer == QMessageBox::Yes)
        QCOMPARE(catcher.urls, QList<QUrl>({ UpdateSite::downloadPageUrl() }));
    else
        QVERIFY2(catcher.urls.isEmpty(), "No opened a page");
}

void tst_Update::offerFromADownloadedFileOpensThatServersPage()
{
    LocalHttpServer server;
    QVERIFY2(server.isListening(), "the local server could not listen");
    server.setResponse(200, "0.41");
    UpdateSite::setBaseUrl(server.baseUrl());

    TObjectFileDownloader downloader(UpdateSite::versionFileUrl(), nullptr);
    QSignalSpy downloaded(&downloader, &TObjectFileDownloader::downloaded);
    QVERIFY2(downloaded.wait(10000), "downloaded() was not emitted");

    UrlCatcher catcher({ "https", "http" });
    const SeenBox box = answerMessageBox(
        QMessageBox::Yes, [&] { UpdateOffer::offerDownload(downloader.downloadedData()); });
    QVERIFY2(box.seen, "no question for version 0.41");
    QCOMPARE(box.text, expectedQuestion041);
    QUrl page = server.baseUrl();
    page.setPath(QStringLiteral("/downloads.html"));
    QCOMPARE(catcher.urls, QList<QUrl>({ page }));
}

QTEST_MAIN(tst_Update)
#include "tst_update.moc"
