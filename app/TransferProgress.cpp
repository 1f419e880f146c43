#include "TransferProgress.h"

#include "XferClass.h"

#include <QLocale>

#include <algorithm>

namespace {

/// What a link calls the total of a file that it receives, whose size nobody knows.
constexpr int unknownTotal = 1000;
/// Bytes of a received block that are not the file's.
constexpr int checksumSize = 2;
/// Milliseconds before a rate means anything.
constexpr qint64 firstRate = 500;
constexpr qint64 millisecondsPerSecond = 1000;
constexpr qint64 secondsPerMinute = 60;
constexpr qint64 minutesPerHour = 60;

/// "9 s", "3:11" or "3:41:20".
QString timeText(qint64 seconds) {
    if (seconds < secondsPerMinute)
        return TransferProgress::tr("%1 s").arg(seconds);
    const auto twoDigits = [](qint64 number) {
        return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
    };
    const qint64 minutes = seconds / secondsPerMinute;
    const QString last = QLatin1Char(':') + twoDigits(seconds % secondsPerMinute);
    if (minutes < minutesPerHour)
        return QString::number(minutes) + last;
    return QString::number(minutes / minutesPerHour) + QLatin1Char(':') +
           twoDigits(minutes % minutesPerHour) + last;
}

} // namespace

void TransferProgress::announce(const QString& name, qint64 size) {
    m_state = State::Waiting;
    m_name = name;
    m_total = size;
    m_announced = true;
}

void TransferProgress::giveUp(const QString& reason) {
    m_announced = false;
    m_state = State::Ended;
    m_outcome = QStringList{tr("%1 was not sent: %2").arg(m_name, reason), reason};
}

void TransferProgress::update(int status, int value, qint64 now) {
    if (status == 1)
        begin(value, now);
    else if (status == 2)
        addBlock(value);
    else if (status == 0)
        end(value);
}

void TransferProgress::begin(int total, qint64 now) {
    // A file of that very size is told from an unknown one by having been announced.
    const bool sending = total != unknownTotal || (m_announced && m_total == unknownTotal);
    m_state = sending ? State::Sending : State::Receiving;
    m_announced = m_announced && !sending;
    m_total = sending ? total : m_total;
    m_done = 0;
    m_began = now;
    m_lastBlockAccepted = false;
}

void TransferProgress::addBlock(int count) {
    if (m_state == State::Sending) {
        m_done += count;
        m_lastBlockAccepted = count == 0;
    } else if (m_state == State::Receiving) {
        m_done += std::max(count - checksumSize, 0);
    }
}

void TransferProgress::end(int result) {
    const bool sending = m_state == State::Sending;
    if (!sending && m_state != State::Receiving)
        return;
    m_state = m_announced ? State::Waiting : State::Ended;
    if (result != 0) {
        const QString error = XferClass::ErrorText(result);
        const QString what = sending ? tr("Sending %1").arg(m_name) : tr("Receiving");
        m_outcome = QStringList{QStringLiteral("%1: %2").arg(what, error), error};
    } else if (!sending) {
        m_outcome = QStringList{tr("Received %1").arg(sizeText(m_done)), sizeText(m_done)};
    } else if (m_lastBlockAccepted) {
        m_outcome = QStringList{tr("%1 was sent").arg(m_name), tr("Sent")};
    } else {
        // The transfer itself calls this a success, though the instrument never had the end.
        const QString parts = tr("only %1 of %2").arg(sizeText(m_done), sizeText(m_total));
        m_outcome = QStringList{tr("%1: %2 arrived").arg(m_name, parts), parts, tr("Not complete")};
    }
}

QString TransferProgress::sizeText(qint64 bytes) {
    return QLocale().formattedDataSize(bytes, 1, QLocale::DataSizeTraditionalFormat);
}

int TransferProgress::percent() const {
    if (m_state != State::Sending || m_total <= 0)
        return -1;
    return static_cast<int>(std::min<qint64>(m_done * 100 / m_total, 100));
}

QStringList TransferProgress::wordings(qint64 now) const {
    switch (m_state) {
    case State::None:
        return {};
    case State::Waiting:
        return {tr("%1: waiting for the instrument").arg(m_name), tr("Waiting")};
    case State::Sending:
        return sendingWordings(now);
    case State::Receiving: {
        const QString figures = sizeText(m_done) + rateText(now);
        return {tr("Receiving: %1").arg(figures), figures, sizeText(m_done)};
    }
    case State::Ended:
        return m_outcome;
    }
    return {};
}

/// Neither the rate nor what follows from it means anything in the first moments.
QString TransferProgress::rateText(qint64 now) const {
    if (m_done == 0 || now - m_began < firstRate)
        return {};
    return tr(", %1/s").arg(sizeText(m_done * millisecondsPerSecond / (now - m_began)));
}

QString TransferProgress::timeLeft(qint64 now) const {
    const qint64 milliseconds = (m_total - m_done) * (now - m_began) / m_done;
    return tr("%1 left").arg(timeText(milliseconds / millisecondsPerSecond + 1));
}

/// All without the name: that there is a file on its way the bar tells.
QStringList TransferProgress::sendingWordings(qint64 now) const {
    const QString done = sizeText(m_done);
    const QString rate = rateText(now);
    const QString ofTotal = tr("%1 of %2").arg(done, sizeText(m_total));
    if (rate.isEmpty())
        return {ofTotal, done};
    const QString left = timeLeft(now);
    const QString rest = rate + QStringLiteral(", ") + left;
    return {ofTotal + rest, done + rest, left};
}
