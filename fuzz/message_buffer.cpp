#include "MessageBuffer.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using Messages = std::vector<std::pair<std::string, std::string>>;

void drain(MessageBuffer& buffer, Messages& messages) {
    std::string tag;
    std::string payload;
    while (buffer.NextMessage(tag, payload))
        messages.emplace_back(tag, payload);
}

/// Adds a copy of exactly these bytes, so that the sanitizer sees any step beyond them.
void add(MessageBuffer& buffer, std::string_view bytes) {
    const std::vector<char> chunk(bytes.begin(), bytes.end());
    buffer.Add(chunk.data(), static_cast<unsigned int>(chunk.size()));
}

/// The format once more, in the plainest way: what is complete in a stream that is all there.
Messages reference(std::string_view stream) {
    Messages messages;
    for (;;) {
        const std::size_t open = stream.find('<');
        const std::size_t close = open == stream.npos ? open : stream.find('>', open + 1);
        if (close == stream.npos || stream.size() - close < 5)
            return messages;
        std::size_t length = 0;
        for (std::size_t i = close + 1; i < close + 5; ++i)
            length = length * 256 + static_cast<unsigned char>(stream[i]);
        if (stream.size() - close - 5 < length)
            return messages;
        messages.emplace_back(stream.substr(open + 1, close - open - 1),
                              stream.substr(close + 5, length));
        stream.remove_prefix(close + 5 + length);
    }
}

void require(bool condition) {
    if (!condition)
        std::abort();
}

} // namespace

/// The first byte is the number of cuts, the bytes after it are the sizes of the pieces, and the
/// rest is the stream. It must give the same messages whole, in these pieces and byte by byte. A
/// length that took memory ahead of the bytes would end in libFuzzer's limit for a single malloc.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const std::size_t cuts = std::min<std::size_t>(data[0], size - 1);
    const std::string_view stream(reinterpret_cast<const char*>(data) + 1 + cuts, size - 1 - cuts);
    const Messages expected = reference(stream);

    Messages whole;
    MessageBuffer atOnce;
    add(atOnce, stream);
    drain(atOnce, whole);
    require(whole == expected);

    Messages pieces;
    MessageBuffer inPieces;
    std::string_view rest = stream;
    for (std::size_t i = 0; i < cuts; ++i) {
        const std::size_t piece = std::min<std::size_t>(data[1 + i], rest.size());
        add(inPieces, rest.substr(0, piece));
        rest.remove_prefix(piece);
        // Whether messages are taken at once or later makes no difference.
        if (i % 2 == 0)
            drain(inPieces, pieces);
    }
    add(inPieces, rest);
    drain(inPieces, pieces);
    require(pieces == expected);

    Messages bytes;
    MessageBuffer byteByByte;
    for (const char& byte : stream)
        byteByByte.Add(&byte, 1);
    drain(byteByByte, bytes);
    require(bytes == expected);
    return 0;
}
