#include "Instruments.h"

#include "Process.h"
#include "ScreenFeed.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <utility>

namespace {

constexpr double period = 1.0 / screenfeed::rate;
/// One key press: "<D>", four bytes of length, a packet of ten.
constexpr ssize_t keyFrameSize = 17;

} // namespace

Instruments::Instruments() : m_listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    if (bind(m_listener, generic, size) != 0 || listen(m_listener, SOMAXCONN) != 0 ||
        getsockname(m_listener, generic, &size) != 0)
        throw std::runtime_error("no port");
    m_port = ntohs(address.sin_port);
    m_thread = std::thread(&Instruments::serve, this);
}

Instruments::~Instruments() {
    flood({});
    m_stop = true;
    m_thread.join();
    for (const Connection& connection : m_all)
        if (connection.descriptor >= 0)
            close(connection.descriptor);
    close(m_listener);
}

void Instruments::serve() {
    while (!m_stop) {
        std::vector<pollfd> files{{m_listener, POLLIN, 0}};
        double next = now() + period;
        for (const Connection& connection : m_all) {
            files.push_back({connection.descriptor, POLLIN, 0});
            next = std::min(next, connection.due);
        }
        const double wait = std::max(0.0, next - now());
        const timespec time{0, static_cast<long>(wait * 1e9)};
        ppoll(files.data(), files.size(), &time, nullptr);
        for (std::size_t i = 1; i < files.size(); ++i) {
            const int index = static_cast<int>(i) - 1;
            if (files[i].revents != 0)
                receive(m_all[i - 1], index);
            if (m_all[i - 1].due <= now()) {
                m_all[i - 1].due += period;
                send(m_all[i - 1], index);
            }
        }
        if (files[0].revents != 0)
            accept();
    }
}

void Instruments::accept() {
    // Spread over the period by the golden ratio: no two are due at the same moment.
    constexpr double step = 0.618033988749895;
    const int descriptor = accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
    if (descriptor < 0)
        return;
    const int on = 1;
    setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    const double share = static_cast<double>(m_all.size()) * step;
    m_all.push_back({descriptor, now() + (share - static_cast<int>(share)) * period});
    if (m_all.size() == 1)
        m_first = descriptor;
    m_connections = static_cast<int>(m_all.size());
}

void Instruments::send(Connection& connection, int index) {
    if (index == 0 && m_flooding)
        return;
    const std::string frame = screenfeed::frame(index + 1, connection.update++, connection.mark);
    if (::send(connection.descriptor, frame.data(), frame.size(), MSG_NOSIGNAL) > 0)
        ++m_updates;
}

void Instruments::receive(Connection& connection, int index) {
    char bytes[4096];
    const ssize_t count = recv(connection.descriptor, bytes, sizeof bytes, 0);
    if (count <= 0) {
        // Never again: the program has ended.
        connection.due = std::numeric_limits<double>::infinity();
        close(std::exchange(connection.descriptor, -1));
        return;
    }
    connection.mark = !connection.mark;
    send(connection, index);
    m_lastKey = now();
    m_keys += static_cast<int>(count / keyFrameSize);
}

void Instruments::flood(std::string bytes) {
    if (m_flood.joinable()) {
        m_flooding = false;
        m_flood.join();
    }
    if (bytes.empty())
        return;
    m_floodBytes = std::move(bytes);
    m_flooded = 0;
    m_flooding = true;
    m_flood = std::thread(&Instruments::serveFlood, this);
}

void Instruments::serveFlood() {
    // A flood ends between two of its pieces, so that what comes after it is understood.
    std::size_t sent = 0;
    while (m_flooding || sent != 0) {
        pollfd writable{m_first, POLLOUT, 0};
        constexpr int patienceMs = 1000;
        poll(&writable, 1, patienceMs);
        const ssize_t count = ::send(m_first, m_floodBytes.data() + sent,
                                     m_floodBytes.size() - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count < 0 && errno != EAGAIN)
            return;
        if (count > 0) {
            sent = (sent + static_cast<std::size_t>(count)) % m_floodBytes.size();
            m_flooded += count;
        }
    }
}
