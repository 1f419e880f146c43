#include "ChatInbox.h"

#include "ChatText.h"

#include <algorithm>
#include <utility>

ChatInbox::ChatInbox(QObject* parent) : QObject(parent) {
    m_nextTurn.setSingleShot(true);
    m_nextTurn.setInterval(0);
    connect(&m_nextTurn, &QTimer::timeout, this, &ChatInbox::passOn);
}

void ChatInbox::add(const QString& line) {
    // One more character than is shown, so that it can be seen to be cut.
    m_waiting.append(line.left(kLongestChatLine + 1));
    if (m_waiting.size() > kMostWaiting) {
        m_waiting.removeFirst();
        ++m_dropped;
    }
    if (!m_nextTurn.isActive())
        passOn();
}

void ChatInbox::passOn() {
    if (m_waiting.isEmpty())
        return;
    // Before anything hears of the lines: what it does may bring in more of them.
    m_nextTurn.start();
    const QStringList portion = m_waiting.first(std::min(kPortion, m_waiting.size()));
    m_waiting.erase(m_waiting.begin(), m_waiting.begin() + portion.size());
    if (const int lost = std::exchange(m_dropped, 0))
        emit dropped(lost);
    emit arrived(portion);
}
