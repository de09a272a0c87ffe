#pragma once

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QTcpServer>
#include <QUrl>

class QTcpSocket;

// A minimal HTTP server on 127.0.0.1 for tests: it answers every request, whatever its path, with
// the configured status and body and counts the requests it has answered. It listens on a free
// port chosen by the system as soon as it is constructed.
class LocalHttpServer : public QObject
{
    Q_OBJECT

public:
    explicit LocalHttpServer(QObject *parent = nullptr);

    bool isListening() const;
    quint16 port() const;
    // http://127.0.0.1:PORT
    QUrl baseUrl() const;

    void setResponse(int status, const QByteArray &body);
    int requestCount() const;
    // Path of the last request's request line, for example "/sonstiges/KelvaroVersion.txt".
    QByteArray lastPath() const;

signals:
    void requestAnswered();

private:
    void onNewConnection();
    void onReadyRead(QTcpSocket *socket);

    QTcpServer server;
    QHash<QTcpSocket *, QByteArray> pending;
    int status = 200;
    QByteArray body;
    int requests = 0;
    QByteArray path;
};
