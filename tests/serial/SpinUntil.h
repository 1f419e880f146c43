#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

/// Handles events as they come until `condition` holds, for at most `milliseconds`; whether it
/// does. Unlike QTest::qWaitFor() it does not sleep in between, which matters to whatever else of a
/// test lives on this thread.
template <typename Condition>
bool spinUntil(Condition condition, int milliseconds) {
    const QDeadlineTimer deadline(milliseconds);
    // Ends the wait when the time is over and nothing comes; also looks at what changes silently.
    QTimer tick;
    tick.start(10);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}
