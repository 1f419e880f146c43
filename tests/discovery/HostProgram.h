#pragma once

#include <QProcess>
#include <QStringList>

/// A program on one of two hosts (see tools/two-hosts.sh); ended with this object.
class HostProgram {
public:
    /// Where this test runs, and where it does not.
    enum class Host { Own, Other };

    explicit HostProgram(Host host = Host::Other);
    ~HostProgram();
    HostProgram(const HostProgram&) = delete;
    HostProgram& operator=(const HostProgram&) = delete;

    /// Whether this program runs on one of two hosts.
    static bool isOnOneOfTwo();
    /// Waits until this host has forgotten what was announced. A service that goes while it is
    /// being resolved stays listed when its address is found all the same.
    static void awaitQuiet();

    /// Starts `program` and waits until it has written `lines`, in any order among others.
    void start(const QString& program, const QStringList& arguments, QStringList lines);
    /// Starts simulated instruments, announced as `names`.
    void announce(const QStringList& names, const QStringList& arguments = {});
    /// Waits for a line that starts with `start`; those before it are forgotten.
    QString readLine(const QString& start);
    /// Ends the program as an operator does, and waits for it.
    void stop();

private:
    QStringList m_prefix;
    QProcess m_process;
};
