#pragma once

#include <QObject>
#include <QString>

#include <chrono>
#include <memory>
#include <string>

/// Finds out whether a host's name can be resolved at all, before Qt is asked to.
///
/// Qt waits for its own look-ups when the program ends, and a resolver that does not answer keeps
/// one for tens of seconds. This one asks on a thread that nobody waits for: whoever loses interest
/// deletes the object and goes. Used by the news fetch and the update check. Works on any thread
/// with an event loop.
class NameLookup : public QObject {
    Q_OBJECT

public:
    /// Whether a host's name has an address. Runs on a thread of its own and may block; it must not
    /// touch Qt, which may be gone before it returns.
    using Resolve = bool (*)(const std::string& host);

    /// Starts at once. No answer for `patience` counts as no address. An address in figures is
    /// found without asking.
    NameLookup(const QString& host, std::chrono::milliseconds patience, Resolve resolve);
    ~NameLookup() override;

    /// Asks the system's resolver.
    static bool systemResolve(const std::string& host);

signals:
    /// Once, and never before the event loop runs again.
    void finished(bool found);

protected:
    /// There is an answer in the mailbox.
    void customEvent(QEvent* event) override;

private:
    struct Mailbox;

    void finish(bool found);

    std::shared_ptr<Mailbox> m_mailbox;
    bool m_finished = false;
};
