#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <QTemporaryDir>

#include <memory>

/// A serial line without hardware: a pseudo terminal whose slave is the program's port and whose
/// master is this object, the instrument's end.
class PtyLine : public QObject {
    Q_OBJECT

public:
    PtyLine();
    ~PtyLine() override;

    /// The port to connect to, by a name that no other line ever has. The system gives the name of
    /// an unplugged line to the next one, whose lock the program may hold for a moment yet.
    QString portName() const { return m_portName; }
    /// A descriptor of the port, to look at its settings; owned by this object.
    int port() const { return m_slave; }

    /// Sends from the instrument's end; all of it, however slow the other end reads.
    void write(const QByteArray& bytes);
    /// All that has arrived at the instrument's end since the last clear().
    const QByteArray& received() const { return m_received; }
    void clear() { m_received.clear(); }
    /// While deaf, arriving bytes pile up in the line.
    void setDeaf(bool deaf) { m_notifier->setEnabled(!deaf); }
    /// The line is gone, as when an adapter is unplugged.
    void unplug();

signals:
    /// Bytes have arrived at the instrument's end.
    void arrived();

private:
    void readAll();

    QTemporaryDir m_folder;
    int m_master = -1;
    int m_slave = -1;
    QString m_portName;
    std::unique_ptr<QSocketNotifier> m_notifier;
    QByteArray m_received;
};
