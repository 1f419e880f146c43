#pragma once

#include <QObject>
#include <QStringList>
#include <QTimer>

/// Keeps an instrument that writes without end from taking the program's time: a line is passed on
/// at once, those that come on its heels in portions, between which everything else has its turn.
///
/// Used by the group window for received chat. Emits arrived() with lines in the order they came.
/// Holds at most kMostWaiting lines, none longer than is shown of it; of more, only the newest are
/// passed on, and dropped() says where and how many are missing.
class ChatInbox : public QObject {
    Q_OBJECT

public:
    /// The most lines that wait; fewer than the transcript holds, so that what is said of those
    /// that are missing is still there when the last of these has been shown.
    static constexpr qsizetype kMostWaiting = 4000;
    /// The most lines passed on at once.
    static constexpr qsizetype kPortion = 50;

    explicit ChatInbox(QObject* parent);

    /// Takes a received line.
    void add(const QString& line);

signals:
    void arrived(const QStringList& lines);
    /// `count` lines that came before the next ones are lost.
    void dropped(int count);

private:
    void passOn();

    QStringList m_waiting;
    int m_dropped = 0;
    QTimer m_nextTurn;
};
