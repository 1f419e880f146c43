#include "HttpServer.h"

#include <QTcpSocket>

HttpServer::HttpServer() {
    m_server.listen(QHostAddress::LocalHost);
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket* const socket = m_server.nextPendingConnection())
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { serve(socket); });
    });
}

QString HttpServer::url(const QString& path) const {
    return QStringLiteral("http://127.0.0.1:%1%2").arg(m_server.serverPort()).arg(path);
}

void HttpServer::answerRaw(const QByteArray& path, const QByteArray& bytes) {
    m_answers.insert(path, bytes);
}

void HttpServer::answer(const QByteArray& path, const QByteArray& body) {
    answerRaw(path, ok(body));
}

void HttpServer::keepSilent(const QByteArray& path) {
    m_silent.append(path);
}

QByteArray HttpServer::ok(const QByteArray& body) {
    return "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size()) +
           "\r\nConnection: close\r\n\r\n" + body;
}

void HttpServer::serve(QTcpSocket* socket) {
    if (!socket->peek(64 * 1024).contains("\r\n\r\n"))
        return;
    const QByteArray path = socket->readAll().split(' ').value(1);
    m_requests.append(path);
    if (m_silent.contains(path))
        return;
    socket->write(m_answers.value(
        path, "HTTP/1.1 404 Not Found\r\nContent-Length: 4\r\nConnection: close\r\n\r\ngone"));
    socket->disconnectFromHost();
}
