#pragma once

#include "PacedQueue.h"
#include "PtyPort.h"

#include <QTimer>

#include <array>
#include <fcntl.h>
#include <unistd.h>

/// Two serial ports with a line between them that carries 57600 bits a second each way: what one
/// program writes into its port comes out of the other, as fast as the simulated instrument's line
/// carries it.
class PacedLine : public QObject {
public:
    static constexpr int baud = 57600;

    PacedLine() {
        m_timer.setSingleShot(true);
        m_timer.setTimerType(Qt::PreciseTimer);
        connect(&m_timer, &QTimer::timeout, this, &PacedLine::serve);
        for (std::size_t from = 0; from < m_ports.size(); ++from) {
            connect(&m_ports[from], &PtyPort::received, this,
                    [this, from](const QByteArray& bytes) {
                        m_queues[from].push(bytes.toStdString(), PacedQueue::Clock::now());
                        serve();
                    });
        }
    }

    ~PacedLine() override {
        for (const int descriptor : m_held)
            close(descriptor);
    }

    bool create() {
        for (std::size_t end = 0; end < m_ports.size(); ++end) {
            if (!m_ports[end].create())
                return false;
            // A wire does not drop its last bytes when the program that sent them ends.
            m_held[end] = open(qPrintable(m_ports[end].name()), O_RDWR | O_NOCTTY | O_CLOEXEC);
        }
        return true;
    }
    /// Whether both ends carry what is written into them.
    bool isReady() const { return m_ports[0].isOpen() && m_ports[1].isOpen(); }
    QString portName(std::size_t end) const { return m_ports[end].name(); }

private:
    void serve() {
        const PacedQueue::Clock::time_point now = PacedQueue::Clock::now();
        auto next = PacedQueue::Clock::time_point::max();
        for (std::size_t from = 0; from < m_ports.size(); ++from) {
            m_ports[1 - from].write(m_queues[from].pop(now));
            next = std::min(next, m_queues[from].nextDue().value_or(next));
        }
        if (next != PacedQueue::Clock::time_point::max())
            m_timer.start(std::chrono::ceil<std::chrono::milliseconds>(next - now));
    }

    std::array<PtyPort, 2> m_ports;
    std::array<PacedQueue, 2> m_queues{PacedQueue(baud), PacedQueue(baud)};
    std::array<int, 2> m_held{-1, -1};
    QTimer m_timer;
};
