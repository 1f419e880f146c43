#pragma once

#include <QObject>
#include <QStringList>
#include <QTimer>

/// Keeps an instrument that writes without end from taking the program's time: a line is passed on
/// at once, those that come on its heels in portions, between which everything else has its turn.
///
/// Used by the group window for received chat. Emits arrived() with lines in the order they came.
/// Holds at most kMostWaiting lines; of more, only the newest are passed on.
class ChatInbox : public QObject {
    Q_OBJECT

public:
    /// The most lines that wait; as many as the transcript shows.
    static constexpr qsizetype kMostWaiting = 5000;
    /// The most lines passed on at once.
    static constexpr qsizetype kPortion = 50;

    explicit ChatInbox(QObject* parent);

    /// Takes a received line.
    void add(const QString& line);

signals:
    void arrived(const QStringList& lines);

private:
    void passOn();

    QStringList m_waiting;
    QTimer m_nextTurn;
};
