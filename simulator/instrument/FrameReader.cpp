#include "FrameReader.h"

#include "Packet.h"

#include <algorithm>

FrameScan scanFrame(std::string_view bytes) {
    using Result = FrameScan::Result;
    constexpr std::size_t lengthSize = 4;
    const std::size_t open = std::min(bytes.find('<'), bytes.size());
    const std::string_view frame = bytes.substr(open);
    const std::size_t close = frame.substr(0, FrameReader::longestTag + 2).find('>');
    if (close == std::string_view::npos) {
        const bool tooLong = frame.size() >= FrameReader::longestTag + 2;
        return {tooLong ? Result::Refused : Result::NeedMore, open, {}, {}};
    }
    const std::size_t start = close + 1 + lengthSize;
    if (frame.size() < start)
        return {Result::NeedMore, open, {}, {}};
    const std::size_t length = packet::unsignedFromBytes(frame.substr(close + 1, lengthSize));
    if (length > FrameReader::longestPayload)
        return {Result::Refused, open, {}, {}};
    if (frame.size() - start < length)
        return {Result::NeedMore, open, {}, {}};
    return {Result::Frame, open + start + length, frame.substr(1, close - 1),
            frame.substr(start, length)};
}

void FrameReader::add(std::string_view bytes) {
    if (m_refused)
        return;
    m_bytes.erase(0, m_read);
    m_read = 0;
    m_bytes += bytes;
}

std::optional<std::string> FrameReader::nextPacket() {
    while (!m_refused) {
        const FrameScan scan = scanFrame(std::string_view(m_bytes).substr(m_read));
        m_read += scan.consumed;
        if (scan.result == FrameScan::Result::NeedMore)
            break;
        if (scan.result == FrameScan::Result::Refused) {
            m_refused = true;
            m_bytes = {};
            m_read = 0;
        } else if (scan.tag == "D") {
            return std::string(scan.payload);
        }
    }
    return std::nullopt;
}
