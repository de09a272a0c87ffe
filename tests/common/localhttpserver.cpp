#include "localhttpserver.h"

#include <QHostAddress>
#include <QTcpSocket>

LocalHttpServer::LocalHttpServer(QObject *parent)
    : QObject(parent)
{
    connect(&server, &QTcpServer::newConnection, this, &LocalHttpServer::onNewConnection);
    server.listen(QHostAddress::LocalHost, 0);
}

bool LocalHttpServer::isListening() const
{
    return server.isListening();
}

quint16 LocalHttpServer::port() const
{
    return server.serverPort();
}

QUrl LocalHttpServer::baseUrl() const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1").arg(port()));
}

void LocalHttpServer::setResponse(int newStatus, const QByteArray &newBody)
{
    status = newStatus;
    body = newBody;
}

int LocalHttpServer::requestCount() const
{
    return requests;
}

QByteArray LocalHttpServer::lastPath() const
{
    return path;
}

void LocalHttpServer::onNewConnection()
{
    while (QTcpSocket *socket = server.nextPendingConnection()) {
        pending.insert(socket, QByteArray());
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { onReadyRead(socket); });
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            pending.remove(socket);
            socket->deleteLater();
        });
    }
}

void LocalHttpServer::onReadyRead(QTcpSocket *socket)
{
    if (!pending.contains(socket))
        return;
    QByteArray &request = pending[socket];
    request += socket->readAll();
    // The client sends no body with its GET: the request is complete after the blank line.
    if (!request.contains("\r\n\r\n"))
        return;

    const QList<QByteArray> requestLine = request.left(request.indexOf("\r\n")).split(' ');
    path = requestLine.size() > 1 ? requestLine.at(1) : QByteArray();
    pending.remove(socket);
    ++requests;

    const QByteArray reason = status == 200 ? "OK" : status == 404 ? "Not Found" : "Error";
    QByteArray response = "HTTP/1.1 " + QByteArray::number(status) + ' ' + reason + "\r\n";
    response += "Content-Type: text/plain\r\n";
    response += "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
    response += "Connection: close\r\n\r\n";
    response += body;
    socket->write(response);
    socket->disconnectFromHost();
    emit requestAnswered();
}
