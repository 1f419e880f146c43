#include "SimulatorServer.h"

#include "TcpTransport.h"

#include <algorithm>
#include <cmath>
#include <limits>

#ifndef Q_OS_WIN
#include <sys/resource.h>
#endif

namespace {

constexpr std::chrono::milliseconds acceptPause(500);

std::chrono::milliseconds periodOf(double perSecond) {
    constexpr double millisecondsPerSecond = 1000;
    return std::chrono::milliseconds(std::max(std::lround(millisecondsPerSecond / perSecond), 1L));
}

/// How many connections the system has files for, when some are left for everything else.
int connectionsWithFiles() {
    int count = std::numeric_limits<int>::max();
#ifndef Q_OS_WIN
    constexpr rlim_t others = 32;
    rlimit files{};
    if (::getrlimit(RLIMIT_NOFILE, &files) == 0 && files.rlim_cur < static_cast<rlim_t>(count))
        count = static_cast<int>(files.rlim_cur - std::min(files.rlim_cur, others));
#endif
    return count;
}

FaultChain chainOf(const std::vector<std::string>& names) {
    FaultChain chain;
    for (const std::string& name : names) {
        if (const FaultKind* kind = faultKindNamed(name))
            chain.add(kind->make());
    }
    return chain;
}

} // namespace

SimulatorServer::SimulatorServer(SimulatorSettings settings, QObject* parent)
    : QObject(parent), m_settings(std::move(settings)), m_server(this) {
    m_settings.mostConnections = std::min(m_settings.mostConnections, connectionsWithFiles());
    // A control room full of tiles connects all at once.
    m_server.setListenBacklogSize(m_settings.mostConnections);
    connect(&m_server, &QTcpServer::newConnection, this, &SimulatorServer::acceptPending);
    // After an error the server accepts no more, although most errors pass.
    connect(&m_server, &QTcpServer::acceptError, this,
            [this] { QTimer::singleShot(acceptPause, &m_server, &QTcpServer::resumeAccepting); });
    if (m_settings.updatesPerSecond > 0) {
        const std::chrono::milliseconds period = periodOf(m_settings.updatesPerSecond);
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(period);
        connect(&m_timer, &QTimer::timeout, this, [this, period] { tick(period); });
        m_timer.start();
    }
}

SimulatorServer::~SimulatorServer() {
    stop();
}

bool SimulatorServer::listen(const QHostAddress& address, quint16 port) {
    return m_server.listen(address, port);
}

void SimulatorServer::stop() {
    m_server.close();
    for (const int connection : connections())
        drop(connection);
}

QList<int> SimulatorServer::connections() const {
    QList<int> numbers;
    for (const auto& [number, session] : m_sessions)
        numbers.append(number);
    return numbers;
}

InstrumentSession* SimulatorServer::find(int connection) const {
    const auto found = m_sessions.find(connection);
    return found == m_sessions.end() ? nullptr : found->second;
}

QList<quint16> SimulatorServer::keys(int connection) const {
    const InstrumentSession* session = find(connection);
    return session ? QList<quint16>(session->keys().begin(), session->keys().end())
                   : QList<quint16>();
}

InstrumentScreen SimulatorServer::screen(int connection) const {
    const InstrumentSession* session = find(connection);
    return session ? session->instrument().screen() : InstrumentScreen();
}

qint64 SimulatorServer::backlog(int connection) const {
    const InstrumentSession* session = find(connection);
    return session ? session->transport().backlog() : 0;
}

void SimulatorServer::drop(int connection) {
    if (InstrumentSession* session = find(connection))
        session->close();
}

void SimulatorServer::sendChat(int connection, const QByteArray& text) {
    if (InstrumentSession* session = find(connection))
        session->sendChat(text);
}

void SimulatorServer::tick(std::chrono::milliseconds elapsed) {
    // A session may end while it sends, and that takes it out of the map.
    for (const int connection : connections()) {
        if (InstrumentSession* session = find(connection))
            session->tick(elapsed);
    }
}

void SimulatorServer::acceptPending() {
    while (QTcpSocket* socket = m_server.nextPendingConnection()) {
        if (connectionCount() < m_settings.mostConnections) {
            open(socket);
        } else {
            socket->abort();
            socket->deleteLater();
        }
    }
}

void SimulatorServer::open(QTcpSocket* socket) {
    const int number = ++m_lastNumber;
    InstrumentSettings settings = m_settings.instrument;
    if (settings.name.empty())
        settings.name = "Unit " + std::to_string(number);
    settings.seed += static_cast<std::uint32_t>(number) - 1;
    auto transport = std::make_unique<TcpTransport>(socket, chainOf(m_settings.faults));
    const QString peer = transport->peerText();
    auto* session = new InstrumentSession(std::move(settings), std::move(transport), this);
    m_sessions.emplace(number, session);
    connect(session, &InstrumentSession::closed, this, [this, number] { forget(number); });
    connect(session, &InstrumentSession::keyReceived, this,
            [this, number](quint16 code) { emit keyReceived(number, code); });
    connect(session, &InstrumentSession::packetReceived, this,
            [this, number](const QByteArray& packet) { emit packetReceived(number, packet); });
    emit connected(number, peer);
    session->sendScreen();
}

void SimulatorServer::forget(int connection) {
    InstrumentSession* session = find(connection);
    if (!session)
        return;
    m_sessions.erase(connection);
    // It may be in the middle of a call of ours.
    session->deleteLater();
    emit disconnected(connection);
}
