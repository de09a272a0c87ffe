#include "tobjectfiledownloader.h"

#include <QNetworkReply>
#include <QNetworkRequest>

TObjectFileDownloader::TObjectFileDownloader(QUrl url, QObject *parent)
    : QObject(parent)
{
    connect(&networkManager, &QNetworkAccessManager::finished, this,
            &TObjectFileDownloader::dataDownloaded);
    networkManager.get(QNetworkRequest(url));
}

QByteArray TObjectFileDownloader::downloadedData() const
{
    return replyData;
}

void TObjectFileDownloader::dataDownloaded(QNetworkReply *reply)
{
    replyData = reply->readAll();
    // Qt hands over the body of an HTTP error too; a server's error page is no version text
    // (and "<html>..." would sort after any version), so a failed request leaves the data empty.
    if (reply->error() != QNetworkReply::NoError)
        replyData.clear();
    reply->deleteLater();
    emit downloaded();
}
