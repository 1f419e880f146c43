#pragma once

#include "ConnectGX7100.h"

#include <QString>
#include <QStringList>

#include <string>
#include <vector>

/// A link whose medium is the test: it opens and closes when told and keeps what it was given.
class FakeLink : public ConnectGX7100 {
    Q_OBJECT

public:
    FakeLink() : ConnectGX7100(nullptr) {}

    void Connect(std::string host, int interfaceIndex, int port) override {
        calls << QStringLiteral("Connect %1 %2 %3")
                     .arg(QString::fromStdString(host))
                     .arg(interfaceIndex)
                     .arg(port);
    }
    void Connect(const QString& portName) override {
        calls << QStringLiteral("Connect %1").arg(portName);
    }
    void Disconnect() override {
        calls << QStringLiteral("Disconnect");
        close();
    }
    bool IsOpen() override { return m_open; }
    void Send(const std::string& bytes) override { sent.push_back(bytes); }

    void open() {
        m_open = true;
        emit connected();
    }
    void close() {
        m_open = false;
        emit disconnected();
    }
    /// An attempt under way: a link may count as open before it says connected().
    void openSilently() { m_open = true; }
    /// A port that has failed: a link may not be open any more before it says disconnected().
    void closeSilently() { m_open = false; }

    QStringList calls;
    std::vector<std::string> sent;

private:
    bool m_open = false;
};
