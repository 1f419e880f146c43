#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// One look at the front of a byte stream of frames. The views point into the bytes looked at.
struct FrameScan {
    enum class Result {
        NeedMore, ///< no whole frame yet; `consumed` stray bytes in front of it can go
        Frame,    ///< a frame; it and what was in front of it take `consumed` bytes
        Refused,  ///< a frame that is longer than an instrument puts up with
    };

    Result result = Result::NeedMore;
    std::size_t consumed = 0;
    std::string_view tag;
    std::string_view payload;
};

/// Looks for a frame: "<", a tag, ">", a 4-byte big-endian length, the payload. Bytes in front of
/// the first "<" are skipped.
FrameScan scanFrame(std::string_view bytes);

/// Takes the frames out of what a peer sends that may mean harm: unlike the operator's program, an
/// instrument has little memory and gives up on a peer that announces more than it can hold.
class FrameReader {
public:
    static constexpr std::size_t longestTag = 64;
    static constexpr std::size_t longestPayload = std::size_t{1} << 20U;

    /// Feeds received bytes; they may split a frame anywhere.
    void add(std::string_view bytes);

    /// The next packet: the payload of a frame tagged "D". Frames with other tags are dropped.
    std::optional<std::string> nextPacket();

    /// Whether the peer has sent a frame that is refused; nothing more comes out then.
    bool hasRefused() const { return m_refused; }

private:
    std::string m_bytes;
    std::size_t m_read = 0; ///< bytes at the front of m_bytes that are done with
    bool m_refused = false;
};
