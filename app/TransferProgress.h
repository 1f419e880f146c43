#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>

/// How far a file transfer has come, out of what its link says, and that in words. Knows neither a
/// link nor a widget, and no clock: times are what the caller says they are, in milliseconds.
class TransferProgress {
    Q_DECLARE_TR_FUNCTIONS(TransferProgress)

public:
    enum class State { None, Waiting, Sending, Receiving, Ended };

    /// A file has been announced to the instrument, which is now to ask for it.
    void announce(const QString& name, qint64 size);
    /// The announced file will not be sent, for this reason.
    void giveUp(const QString& reason);
    /// Takes a status of the link: (1, total), (2, count of one block) or (0, result).
    void update(int status, int value, qint64 now);

    State state() const { return m_state; }
    /// Whether a file is on its way or about to be.
    bool isBusy() const { return m_state != State::None && m_state != State::Ended; }
    /// Share that is done, 0 to 100; -1 while that cannot be known.
    int percent() const;
    /// A number of bytes in words.
    static QString sizeText(qint64 bytes);
    /// What the operator is told: the same in a few wordings, the longest first. Plain text; empty
    /// while there is nothing to tell.
    QStringList wordings(qint64 now) const;

private:
    void begin(int total, qint64 now);
    void addBlock(int count);
    void end(int result);
    QString rateText(qint64 now) const;
    QString timeLeft(qint64 now) const;
    QStringList sendingWordings(qint64 now) const;

    State m_state = State::None;
    QString m_name;
    qint64 m_total = 0;
    qint64 m_done = 0;
    qint64 m_began = 0;
    bool m_lastBlockAccepted = false;
    bool m_announced = false;
    QStringList m_outcome;
};
