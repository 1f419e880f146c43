#pragma once

#include <chrono>

/// Decides how long a busy event loop pauses between two turns. Pure; one thread.
///
/// With many instruments, each of which sends its updates when it likes, most of the work is not
/// the updates but the turns: asking the system about all sockets, going to sleep and waking up.
/// Somewhat rarer turns that each have more to do halve the cost of an update. Nobody sees a few
/// milliseconds; but while the operator does something there is no pause at all.
class TurnPacing {
public:
    using Clock = std::chrono::steady_clock;

    /// From the beginning of one turn to that of the next while the loop is busy, at least.
    static constexpr std::chrono::microseconds spacing{4000};
    /// The loop gets busy with this many turns in a window of time, and is so until a window has
    /// fewer than the second number: pauses must not end what they are for.
    static constexpr int busyTurns = 20;
    static constexpr int stillBusyTurns = 10;
    static constexpr std::chrono::milliseconds window{100};
    /// How long after the operator's last doing there is no pause.
    static constexpr std::chrono::milliseconds attention{300};

    /// A turn begins: the loop has stopped waiting.
    void turnBegins(Clock::time_point now);
    /// The operator has done something.
    void operatorActs(Clock::time_point now);
    /// How long to pause before the loop waits again; 0 for most of a program's life.
    std::chrono::microseconds pauseAfterTurn(Clock::time_point now) const;

private:
    bool isBusy(Clock::time_point now) const;

    Clock::time_point m_turn;
    Clock::time_point m_windowStart;
    Clock::time_point m_quietUntil;
    int m_turns = 0;
    bool m_isBusy = false;
};
