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

QString sizeText(qint64 bytes) {
    return QLocale().formattedDataSize(bytes, 1, QLocale::DataSizeTraditionalFormat);
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
    m_outcome = tr("%1 was not sent: %2").arg(m_name, reason);
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
    const bool sending = m_announced && (total == m_total || total != unknownTotal);
    m_state = sending ? State::Sending : State::Receiving;
    m_announced = m_announced && !sending;
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
    const QString what = sending ? tr("Sending %1").arg(m_name) : tr("Receiving");
    if (result != 0)
        m_outcome = QStringLiteral("%1: %2").arg(what, XferClass::ErrorText(result));
    else if (!sending)
        m_outcome = tr("Received %1").arg(sizeText(m_done));
    else if (m_lastBlockAccepted)
        m_outcome = tr("%1 was sent").arg(m_name);
    else
        // The transfer itself calls this a success, though the instrument never had the end.
        m_outcome = tr("%1: the instrument took only %2 of %3")
                        .arg(what, sizeText(m_done), sizeText(m_total));
}

int TransferProgress::percent() const {
    if (m_state != State::Sending || m_total <= 0)
        return -1;
    return static_cast<int>(std::min<qint64>(m_done * 100 / m_total, 100));
}

QString TransferProgress::text(qint64 now) const {
    switch (m_state) {
    case State::None:
        return {};
    case State::Waiting:
        return tr("%1: waiting for the instrument").arg(m_name);
    case State::Sending:
        return sendingText(now);
    case State::Receiving:
        return tr("Receiving: %1%2").arg(sizeText(m_done), rateText(now));
    case State::Ended:
        return m_outcome;
    }
    return {};
}

QString TransferProgress::rateText(qint64 now) const {
    if (m_done == 0 || now - m_began < firstRate)
        return {};
    return tr(", %1/s").arg(sizeText(m_done * millisecondsPerSecond / (now - m_began)));
}

QString TransferProgress::sendingText(qint64 now) const {
    // Without the name: in a narrow tile there is room for the figures only.
    QString text = tr("%1 of %2%3").arg(sizeText(m_done), sizeText(m_total), rateText(now));
    if (m_done == 0 || now - m_began < firstRate)
        return text;
    const qint64 seconds =
        (m_total - m_done) * (now - m_began) / m_done / millisecondsPerSecond + 1;
    if (seconds >= secondsPerMinute)
        text += tr(", %1:%2 left")
                    .arg(seconds / secondsPerMinute)
                    .arg(seconds % secondsPerMinute, 2, 10, QLatin1Char('0'));
    else
        text += tr(", %1 s left").arg(seconds);
    return text;
}
