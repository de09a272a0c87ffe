// The question that follows the update check: asked only for a newer version, without a parent
// window, and opening the download page of the server the version file came from.
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

#include <memory>

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

class tst_UpdateOffer : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void downloaderReportsAnUnreachableServer();

    void offerAsksOnlyForANewerVersion_data();
    void offerAsksOnlyForANewerVersion();
    void offerFromADownloadedFileOpensThatServersPage();

private:
    // Made when the class runs: the application tests share one process and one settings path.
    std::unique_ptr<testutils::Sandbox> sandbox;
};

void tst_UpdateOffer::initTestCase()
{
    sandbox = std::make_unique<testutils::Sandbox>();
    QVERIFY2(sandbox->isValid(), "no scratch folder for the settings store");
    // The requests go to servers on the loopback address that the tests start themselves; a proxy
    // from the environment must not come between.
    QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
}

void tst_UpdateOffer::cleanup()
{
    UpdateSite::setBaseUrl(QUrl());
}

void tst_UpdateOffer::downloaderReportsAnUnreachableServer()
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

void tst_UpdateOffer::offerAsksOnlyForANewerVersion_data()
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

void tst_UpdateOffer::offerAsksOnlyForANewerVersion()
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

void tst_UpdateOffer::offerFromADownloadedFileOpensThatServersPage()
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

std::unique_ptr<QObject> makeUpdateOfferTest()
{
    return std::make_unique<tst_UpdateOffer>();
}

#include "tst_updateoffer.moc"
