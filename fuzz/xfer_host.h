#pragma once

#include "XferHost.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

/// The instrument at the other end of a fuzzed transfer: its bytes are the input. 0xFE makes the
/// next byte special: 0 a time-out, 1 an abort, anything else that byte itself. At the end of the
/// input every read times out, so each transfer ends.
class FuzzXferHost : public XferHost {
public:
    FuzzXferHost(const std::uint8_t* data, std::size_t size) : m_next(data), m_end(data + size) {}

    int GetChar(long /*timeoutMs*/) override {
        if (m_next == m_end)
            return timedOut;
        const int byte = *m_next++;
        if (byte != escape || m_next == m_end)
            return byte;
        const int special = *m_next++;
        return special == 0 ? timedOut : special == 1 ? aborted : special;
    }
    int SendChar(short c, long /*timeoutMs*/) override {
        sent += static_cast<char>(c);
        return 0;
    }
    int SendString(const std::string& bytes) override {
        sent += bytes;
        return 0;
    }
    void ReportError(const std::string& text) override {
        if (text.empty())
            std::abort();
    }
    void ReportProgress(int block, int count) override {
        if (block != static_cast<int>(counts.size()) + 1)
            std::abort();
        counts.push_back(count);
    }

    std::string sent;
    std::vector<int> counts;

private:
    static constexpr int escape = 0xFE;
    const std::uint8_t* m_next;
    const std::uint8_t* m_end;
};
