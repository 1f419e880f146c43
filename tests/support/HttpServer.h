#pragma once

#include <QByteArray>
#include <QHash>
#include <QTcpServer>

class QTcpSocket;

/// A real HTTP server on loopback for tests: it answers each path with the literal bytes it was
/// given, well-formed or not.
class HttpServer : public QObject {
    Q_OBJECT

public:
    HttpServer();

    /// The address of the server followed by `path`.
    QString url(const QString& path) const;

    /// Answers requests for `path` with exactly `bytes`, then closes the connection.
    void answerRaw(const QByteArray& path, const QByteArray& bytes);
    /// Answers with 200 and `body`, with its length told.
    void answer(const QByteArray& path, const QByteArray& body);
    /// Takes the request and never answers it.
    void keepSilent(const QByteArray& path);

    /// The paths asked for so far, in order.
    QList<QByteArray> requests() const { return m_requests; }

    /// 200 with the length of `body`, as bytes on the wire.
    static QByteArray ok(const QByteArray& body);

private:
    void serve(QTcpSocket* socket);

    QTcpServer m_server;
    QHash<QByteArray, QByteArray> m_answers;
    QList<QByteArray> m_silent;
    QList<QByteArray> m_requests;
};
