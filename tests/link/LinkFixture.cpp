#include "LinkFixture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QEvent>
#include <QNetworkProxy>
#include <QTest>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>

namespace {

/// For what a test cannot go on without.
void require(bool condition, const char* what) {
    if (!condition)
        throw std::runtime_error(what);
}

template <typename Condition>
void waitFor(Condition condition, const char* what) {
    require(QTest::qWaitFor(condition, patience), what);
}

} // namespace

Journal::Journal(ConnectGX7100& link) {
    connect(&link, &ConnectGX7100::connected, this, [this] { note(QStringLiteral("connected")); });
    connect(&link, &ConnectGX7100::disconnected, this,
            [this] { note(QStringLiteral("disconnected")); });
    connect(&link, &ConnectGX7100::signalFrom, this,
            [this](const std::string& packet) { note(QString::fromStdString(packet)); });
}

Operator::Operator(std::vector<Answer> answers) : m_answers(std::move(answers)) {
    qApp->installEventFilter(this);
}

void Operator::pressOk(QMessageBox& box) {
    box.button(QMessageBox::Ok)->click();
}

bool Operator::eventFilter(QObject* object, QEvent* event) {
    auto* const box = qobject_cast<QMessageBox*>(object);
    if (box == nullptr || event->type() != QEvent::Show)
        return false;
    boxes.push_back({box->windowTitle(), box->text(), box->standardButtons(), box->icon(),
                     box->parentWidget()});
    if (journal != nullptr)
        journal->note(QStringLiteral("box"));
    const Answer answer = m_answered < m_answers.size() ? m_answers[m_answered] : Answer(pressOk);
    ++m_answered;
    QMetaObject::invokeMethod(
        box, [box, answer] { answer(*box); }, Qt::QueuedConnection);
    return false;
}

Instrument::Instrument(const QHostAddress& address) {
    // Looking for the system's proxies would start a foreign library's thread.
    m_server.setProxy(QNetworkProxy::NoProxy);
    require(m_server.listen(address, 0), "no port to listen on");
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket* const line = m_server.nextPendingConnection())
            m_lines.push_back(line);
    });
}

QTcpSocket& Instrument::line(std::size_t index) {
    waitFor([this, index] { return m_lines.size() > index; }, "nobody connects");
    return *m_lines[index];
}

RefusingPort::RefusingPort() {
    m_socket.setProxy(QNetworkProxy::NoProxy);
    require(m_socket.bind(QHostAddress::LocalHost, 0), "no port to take");
}

SilentPort::SilentPort() : m_listener(socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof(address);
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    require(bind(m_listener, generic, size) == 0 && listen(m_listener, 0) == 0 &&
                getsockname(m_listener, generic, &size) == 0,
            "no port to listen on");
    m_port = ntohs(address.sin_port);
    // Two are more than a queue of none takes; the kernel drops what comes after them.
    for (int i = 0; i < 3; ++i) {
        const int filler = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0);
        static_cast<void>(::connect(filler, generic, size));
        m_fillers.push_back(filler);
    }
}

SilentPort::~SilentPort() {
    for (const int filler : m_fillers)
        close(filler);
    close(m_listener);
}

void settle() {
    Instrument echo;
    QTcpSocket probe;
    probe.setProxy(QNetworkProxy::NoProxy);
    probe.connectToHost(QHostAddress(QHostAddress::LocalHost), quint16(echo.port()));
    echo.line().write("x");
    waitFor([&probe] { return probe.bytesAvailable() == 1; }, "loopback does not work");
    probe.write("y");
    waitFor([&echo] { return echo.line().bytesAvailable() == 1; }, "loopback does not work");
}

void Subject::connectTo(Instrument& instrument) {
    const std::size_t index = instrument.accepted();
    link->Connect("127.0.0.1", 0, instrument.port());
    instrument.line(index);
    waitFor([this] { return told().contains(QStringLiteral("connected")); }, "no connected()");
}
