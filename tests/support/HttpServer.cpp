#include "HttpServer.h"

#include <QTimer>

namespace {

QByteArray okHead(qint64 size) {
    return "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(size) +
           "\r\nConnection: close\r\n\r\n";
}

/// Keeps at most one piece of `left` bytes in the socket's buffer until all are sent.
void feed(QTcpSocket* socket, const std::shared_ptr<qint64>& left) {
    constexpr qint64 piece = 256 * 1024;
    while (*left > 0 && socket->bytesToWrite() < piece) {
        const qint64 size = std::min(piece, *left);
        socket->write(QByteArray(size, 'L'));
        *left -= size;
    }
    if (*left == 0)
        socket->disconnectFromHost();
}

} // namespace

HttpServer::HttpServer() : HttpServer(std::make_unique<QTcpServer>(), QStringLiteral("http")) {}

HttpServer::HttpServer(std::unique_ptr<QTcpServer> server, const QString& scheme)
    : m_server(std::move(server)), m_scheme(scheme) {
    m_server->listen(QHostAddress::LocalHost);
    connect(m_server.get(), &QTcpServer::pendingConnectionAvailable, this, [this] {
        while (QTcpSocket* const socket = m_server->nextPendingConnection()) {
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { serve(socket); });
            serve(socket);
        }
    });
}

QString HttpServer::url(const QString& path) const {
    return QStringLiteral("%1://127.0.0.1:%2%3")
        .arg(m_scheme)
        .arg(m_server->serverPort())
        .arg(path);
}

void HttpServer::answerRaw(const QByteArray& path, const QByteArray& bytes) {
    m_answers.insert(path, [bytes](QTcpSocket* socket) {
        socket->write(bytes);
        socket->disconnectFromHost();
    });
}

void HttpServer::answer(const QByteArray& path, const QByteArray& body) {
    answerRaw(path, ok(body));
}

void HttpServer::redirect(const QByteArray& path, const QByteArray& location) {
    answerRaw(path, "HTTP/1.1 302 Found\r\nLocation: " + location +
                        "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
}

void HttpServer::answerSlowly(const QByteArray& path, const QByteArray& bytes) {
    m_answers.insert(path, [bytes](QTcpSocket* socket) {
        auto* const timer = new QTimer(socket);
        connect(timer, &QTimer::timeout, socket, [socket, timer, rest = bytes]() mutable {
            socket->write(rest.left(1));
            rest.remove(0, 1);
            if (!rest.isEmpty())
                return;
            timer->stop();
            socket->disconnectFromHost();
        });
        timer->start(0);
    });
}

void HttpServer::stream(const QByteArray& path, qint64 size) {
    m_answers.insert(path, [size](QTcpSocket* socket) {
        socket->write(okHead(size));
        const auto left = std::make_shared<qint64>(size);
        connect(socket, &QTcpSocket::bytesWritten, socket, [socket, left] { feed(socket, left); });
        feed(socket, left);
    });
}

void HttpServer::stall(const QByteArray& path, const QByteArray& bytes) {
    m_answers.insert(path, [this, bytes](QTcpSocket* socket) {
        socket->write(bytes);
        m_stalled.append(socket);
    });
}

void HttpServer::resume(const QByteArray& rest) {
    for (const auto& socket : std::as_const(m_stalled)) {
        if (!socket)
            continue;
        socket->write(rest);
        socket->disconnectFromHost();
    }
    m_stalled.clear();
}

QByteArray HttpServer::ok(const QByteArray& body) {
    return okHead(body.size()) + body;
}

void HttpServer::serve(QTcpSocket* socket) {
    if (!socket->peek(64 * 1024).contains("\r\n\r\n"))
        return;
    const QByteArray path = socket->readAll().split(' ').value(1);
    m_requests.append(path);
    if (!m_answers.contains(path))
        answerRaw(path,
                  "HTTP/1.1 404 Not Found\r\nContent-Length: 4\r\nConnection: close\r\n\r\ngone");
    m_answers.value(path)(socket);
}
