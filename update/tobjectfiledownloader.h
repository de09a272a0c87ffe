#pragma once

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QObject>
#include <QUrl>

class QNetworkReply;

// Fetches one file by GET as soon as it is constructed and keeps its body. Errors are not reported:
// downloaded() follows every request, successful or not, and a failed one leaves the data empty.
class TObjectFileDownloader : public QObject
{
    Q_OBJECT

public:
    TObjectFileDownloader(QUrl url, QObject *parent = nullptr);

    // The body of the reply; empty until downloaded() and after a failed request.
    QByteArray downloadedData() const;

signals:
    void downloaded();

private slots:
    void dataDownloaded(QNetworkReply *reply);

private:
    QNetworkAccessManager networkManager;
    QByteArray replyData;
};
