#pragma once

#include "BonjourClientListener.h"

#include <QStringList>
#include <functional>

/// Writes down what a discovery client tells, one line a call.
class RecordingListener : public BonjourClientListener {
public:
    void AddService(std::string name, std::string regtype, std::string domain,
                    unsigned int interfaceIndex, std::string hostTarget,
                    const SocketAddress& address,
                    const std::map<std::string, std::string>& txt) override;
    void RemoveService(std::string name, std::string regtype, std::string domain) override;
    void ServiceRegistered(std::string name, std::string regtype, std::string domain) override;
    bool ServiceError(std::string message) override;

    /// The lines since the last call.
    QStringList take() { return std::exchange(m_lines, {}); }

    /// What ServiceError answers.
    bool isToThrow = false;
    /// Called inside every call, after it was written down.
    std::function<void()> during;

private:
    void write(const QString& line);

    QStringList m_lines;
};
