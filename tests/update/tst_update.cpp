#include "localhttpserver.h"
#include "tobjectfiledownloader.h"
#include "updatesite.h"

#include "testrunner.h"
#include "testutils.h"

#include <QCoreApplication>
#include <QNetworkProxy>
#include <QSignalSpy>
#include <QTest>

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

// The update check needs no widgets: the version file is fetched and read without a window.
int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    tst_Update test;
    return testutils::runTestObjects(app.arguments(), { &test });
}

#include "tst_update.moc"
