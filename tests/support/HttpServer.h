#pragma once

#include <QByteArray>
#include <QHash>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>

#include <functional>
#include <memory>

/// A real HTTP server on loopback for tests: it answers each path with the literal bytes it was
/// given, well-formed or not.
class HttpServer : public QObject {
    Q_OBJECT

public:
    HttpServer();
    /// Serves on `server` (a QSslServer for "https"), which is told where to listen here.
    HttpServer(std::unique_ptr<QTcpServer> server, const QString& scheme);

    /// The address of the server followed by `path`.
    QString url(const QString& path) const;

    /// Answers requests for `path` with exactly `bytes`, then closes the connection.
    void answerRaw(const QByteArray& path, const QByteArray& bytes);
    /// Answers with 200 and `body`, with its length told.
    void answer(const QByteArray& path, const QByteArray& body);
    /// Sends the client on to `location`.
    void redirect(const QByteArray& path, const QByteArray& location);
    /// Answers with exactly `bytes`, one a turn of the event loop.
    void answerSlowly(const QByteArray& path, const QByteArray& bytes);
    /// Answers with 200 and `size` bytes 'L', made as they are sent.
    void stream(const QByteArray& path, qint64 size);
    /// Answers with `bytes` and neither goes on nor closes until resume().
    void stall(const QByteArray& path, const QByteArray& bytes);
    /// Sends `rest` to all that were stalled, and closes.
    void resume(const QByteArray& rest);
    /// Takes the request and never answers it.
    void keepSilent(const QByteArray& path) { stall(path, {}); }

    /// The paths asked for so far, in order.
    QList<QByteArray> requests() const { return m_requests; }

    /// 200 with the length of `body`, as bytes on the wire.
    static QByteArray ok(const QByteArray& body);

private:
    using Answer = std::function<void(QTcpSocket* socket)>;

    void serve(QTcpSocket* socket);

    std::unique_ptr<QTcpServer> m_server;
    QString m_scheme;
    QHash<QByteArray, Answer> m_answers;
    QList<QByteArray> m_requests;
    QList<QPointer<QTcpSocket>> m_stalled;
};
