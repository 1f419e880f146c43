#pragma once

#include "XferHost.h"

#include <QByteArray>
#include <QList>
#include <QStringList>

#include <deque>

/// The other end of a file transfer, played from a script: what each read gives, and a record of
/// everything that the transfer did. Once the script is through, every read times out.
class ScriptedHost : public XferHost {
public:
    /// What is read next: bytes 0 to 255, XferHost::timedOut, XferHost::aborted.
    void willRead(const QList<int>& results) {
        m_reads.insert(m_reads.end(), results.begin(), results.end());
    }
    /// Bytes that are read next.
    void willRead(const QByteArray& bytes) {
        for (const char byte : bytes)
            m_reads.push_back(static_cast<unsigned char>(byte));
    }
    /// The write with this index, counted from 0 over bytes and strings, and all later ones fail.
    void writesFailFrom(int index, int result) {
        m_firstFailure = index;
        m_failure = result;
    }

    /// Reads of the script that were not done.
    int readsLeft() const { return static_cast<int>(m_reads.size()); }
    /// All that was sent.
    const QByteArray& sent() const { return m_sent; }
    /// One entry a write, in hexadecimal.
    const QStringList& writes() const { return m_writes; }
    /// The texts reported.
    const QStringList& texts() const { return m_texts; }
    /// One entry a report: "block:count".
    const QStringList& progress() const { return m_progress; }
    /// The time-out that each read allowed, milliseconds.
    const QList<long>& readTimeouts() const { return m_readTimeouts; }
    /// The time-out that each write of one byte allowed, milliseconds.
    const QList<long>& writeTimeouts() const { return m_writeTimeouts; }

    int GetChar(long timeoutMs) override {
        m_readTimeouts.append(timeoutMs);
        if (m_reads.empty())
            return timedOut;
        const int result = m_reads.front();
        m_reads.pop_front();
        return result;
    }
    int SendChar(short c, long timeoutMs) override {
        m_writeTimeouts.append(timeoutMs);
        return write(QByteArray(1, static_cast<char>(c)));
    }
    int SendString(const std::string& bytes) override {
        return write(QByteArray::fromStdString(bytes));
    }
    void ReportError(const std::string& text) override {
        m_texts.append(QString::fromStdString(text));
    }
    void ReportProgress(int block, int count) override {
        m_progress.append(QStringLiteral("%1:%2").arg(block).arg(count));
    }

private:
    int write(const QByteArray& bytes) {
        const int index = m_count++;
        if (m_failure != 0 && index >= m_firstFailure)
            return m_failure;
        m_sent += bytes;
        m_writes += QString::fromLatin1(bytes.toHex());
        return 0;
    }

    std::deque<int> m_reads;
    int m_count = 0;
    int m_firstFailure = 0;
    int m_failure = 0;
    QByteArray m_sent;
    QStringList m_writes;
    QStringList m_texts;
    QStringList m_progress;
    QList<long> m_readTimeouts;
    QList<long> m_writeTimeouts;
};
