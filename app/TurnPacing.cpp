#include "TurnPacing.h"

#include <algorithm>

void TurnPacing::turnBegins(Clock::time_point now) {
    m_turn = now;
    if (const auto age = now - m_windowStart; age >= window) {
        // Only the window that has ended just now counts, not one that is longer ago.
        const int enough = m_isBusy ? stillBusyTurns : busyTurns;
        m_isBusy = age < 2 * window && m_turns >= enough;
        m_turns = 0;
        m_windowStart = now;
    }
    ++m_turns;
}

void TurnPacing::operatorActs(Clock::time_point now) {
    m_quietUntil = now + attention;
}

bool TurnPacing::isBusy(Clock::time_point now) const {
    return m_isBusy && now - m_windowStart < 2 * window;
}

std::chrono::microseconds TurnPacing::pauseAfterTurn(Clock::time_point now) const {
    if (now < m_quietUntil || !isBusy(now))
        return std::chrono::microseconds(0);
    const auto left = std::chrono::duration_cast<std::chrono::microseconds>(m_turn + spacing - now);
    return std::clamp(left, std::chrono::microseconds(0), spacing);
}
