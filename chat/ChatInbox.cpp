#include "ChatInbox.h"

#include <algorithm>

ChatInbox::ChatInbox(QObject* parent) : QObject(parent) {
    m_nextTurn.setSingleShot(true);
    m_nextTurn.setInterval(0);
    connect(&m_nextTurn, &QTimer::timeout, this, &ChatInbox::passOn);
}

void ChatInbox::add(const QString& line) {
    m_waiting.append(line);
    if (m_waiting.size() > kMostWaiting)
        m_waiting.removeFirst();
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
    emit arrived(portion);
}
