#pragma once

#include "TurnPacing.h"

#include <QObject>

#include <functional>

/// Lets the event loop of the GUI thread pause as TurnPacing says. Exists as long as the
/// application does; GUI thread.
class TurnPacer : public QObject {
    Q_OBJECT

public:
    using Sleep = std::function<void(std::chrono::microseconds)>;

    explicit TurnPacer(Sleep sleep = sleepFor);

    /// Sees every event, to know when the operator does something.
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    static void sleepFor(std::chrono::microseconds length);
    void pause() const;

    Sleep m_sleep;
    TurnPacing m_pacing;
};
