#pragma once

#include <atomic>
#include <string>
#include <thread>
#include <vector>

/// Simulated instruments behind one port of this computer, served by a thread of their own. Every
/// connection is an instrument; each sends ScreenFeed's updates at its rate, no two at the same
/// moment. A key makes an instrument send one more at once, with the marked cell switched on or
/// off.
class Instruments {
public:
    Instruments();
    ~Instruments();
    Instruments(const Instruments&) = delete;
    Instruments& operator=(const Instruments&) = delete;

    int port() const { return m_port; }
    int connections() const { return m_connections; }
    /// Updates sent so far by all of them.
    long updates() const { return m_updates; }

    /// Keys received so far, and when the last one was.
    int keys() const { return m_keys; }
    double lastKey() const { return m_lastKey; }

    /// From now on the first instrument sends this again and again, as fast as it is taken; with
    /// nothing it goes back to its updates.
    void flood(std::string bytes);
    /// Bytes of the flood that were taken.
    long long flooded() const { return m_flooded; }

private:
    struct Connection {
        int descriptor = -1;
        double due = 0;
        int update = 0;
        bool mark = false;
    };

    void serve();
    void serveFlood();
    void accept();
    void send(Connection& connection, int index);
    void receive(Connection& connection, int index);

    int m_listener;
    int m_port = 0;
    std::vector<Connection> m_all;
    std::atomic<bool> m_stop = false;
    std::atomic<int> m_connections = 0;
    std::atomic<long> m_updates = 0;
    std::atomic<int> m_keys = 0;
    std::atomic<double> m_lastKey = 0;
    std::atomic<int> m_first = -1;
    std::atomic<bool> m_flooding = false;
    std::atomic<long long> m_flooded = 0;
    std::thread m_thread;
    std::thread m_flood;
    std::string m_floodBytes;
};
