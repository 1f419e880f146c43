#pragma once

#include "ConnectGX7100Ethernet.h"

#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTcpServer>
#include <QTcpSocket>

#include <functional>
#include <memory>
#include <vector>

/// How long a test waits for what must come; only a failing test takes as long.
inline constexpr int patience = 60'000;

/// Everything that one link tells, in the order in which it comes: "connected", "disconnected", and
/// of each packet its bytes.
class Journal : public QObject {
    Q_OBJECT

public:
    explicit Journal(ConnectGX7100& link);

    QStringList entries;
    void note(const QString& entry) { entries.append(entry); }
};

/// The operator in front of the message boxes: remembers what they say, and answers each from the
/// event loop. Answers are used up in turn; without one, OK is pressed.
class Operator : public QObject {
    Q_OBJECT

public:
    using Answer = std::function<void(QMessageBox&)>;
    struct Seen {
        QString title;
        QString text;
        QMessageBox::StandardButtons buttons;
        QMessageBox::Icon icon;
        QPointer<QWidget> parent;
    };

    explicit Operator(std::vector<Answer> answers = {});

    static void pressOk(QMessageBox& box);

    std::vector<Seen> boxes;
    /// If set, gets an entry "box" for each box.
    Journal* journal = nullptr;

    bool eventFilter(QObject* object, QEvent* event) override;

private:
    std::vector<Answer> m_answers;
    std::size_t m_answered = 0;
};

/// An instrument that accepts connections on a loopback address.
class Instrument : public QObject {
    Q_OBJECT

public:
    explicit Instrument(const QHostAddress& address = QHostAddress::LocalHost);

    int port() const { return m_server.serverPort(); }
    /// The `index`th connection accepted; waits for it.
    QTcpSocket& line(std::size_t index = 0);
    std::size_t accepted() const { return m_lines.size(); }

private:
    QTcpServer m_server;
    std::vector<QTcpSocket*> m_lines;
};

/// A loopback port that refuses: it is taken, but nobody listens.
class RefusingPort {
public:
    RefusingPort();
    int port() const { return m_socket.localPort(); }

private:
    QTcpSocket m_socket;
};

/// A loopback port on which an attempt to connect gets no answer: its queue is full.
class SilentPort {
public:
    SilentPort();
    ~SilentPort();
    SilentPort(const SilentPort&) = delete;
    SilentPort& operator=(const SilentPort&) = delete;
    int port() const { return m_port; }

private:
    int m_listener;
    int m_port = 0;
    std::vector<int> m_fillers;
};

/// Lets everything happen that is under way: what was to come over loopback has come after it.
void settle();

/// A new link and its journal.
struct Subject {
    explicit Subject(QWidget* parent = nullptr,
                     std::chrono::milliseconds closing = ConnectGX7100Ethernet::closingTime)
        : link(std::make_unique<ConnectGX7100Ethernet>(parent, "Generic", "GX-7100", closing)),
          journal(*link) {}

    /// Connects and waits until the instrument and the link both say so.
    void connectTo(Instrument& instrument);
    const QStringList& told() const { return journal.entries; }

    std::unique_ptr<ConnectGX7100Ethernet> link;
    Journal journal;
};
