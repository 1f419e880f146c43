#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <QTimer>

#include <memory>

/// A serial port that exists in software only: a pseudo terminal whose other end a program opens by
/// name, like the port of an adapter. Bytes written while nobody has it open are lost, as on a line
/// with nothing plugged in.
class PtyPort : public QObject {
    Q_OBJECT

public:
    explicit PtyPort(QObject* parent = nullptr);
    ~PtyPort() override;

    /// Creates the pseudo terminal. False on failure: errorString() tells why.
    bool create();
    QString errorString() const { return m_errorString; }

    /// The path that programs open.
    QString name() const { return m_name; }
    /// Whether some program has it open.
    bool isOpen() const { return m_open; }

    void write(const std::string& bytes);
    /// Bytes that the program has not made room for.
    qint64 backlog() const { return m_unwritten.size(); }

signals:
    void received(const QByteArray& bytes);
    /// Some of the backlog has gone.
    void drained();
    /// A program has opened it.
    void opened();
    /// The last program has closed it.
    void closed();

private:
    void readAvailable();
    void writeAvailable();
    void lookWhetherOpen();
    void setOpen(bool open);

    int m_master = -1;
    QString m_name;
    QString m_errorString;
    bool m_open = false;
    QByteArray m_unwritten;
    std::unique_ptr<QSocketNotifier> m_readable;
    std::unique_ptr<QSocketNotifier> m_writable;
    QTimer m_watch;
};
