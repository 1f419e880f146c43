#include "ByteArrayXfer.h"
#include "xfer_host.h"

/// The input is what the instrument sends. Whatever it is, the transfer ends with one of its
/// results, has stored exactly the blocks it accepted, and has accepted none above its size.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzXferHost host(data, size);
    QByteArray received;
    ByteArrayXfer transfer(&host, nullptr);
    const int result = transfer.Receive(&received);
    if (result > 0 || result < XferClass::DroppedPacket)
        std::abort();
    qsizetype accepted = 0;
    for (const int length : host.counts) {
        if (length <= 2 || length > XferClass::maxData + 2)
            std::abort();
        accepted += length - 2;
    }
    if (accepted != received.size() || static_cast<std::size_t>(accepted) > size)
        std::abort();
    if (result == 0 && (host.sent.empty() || host.sent.back() != '\0'))
        std::abort();
    return 0;
}
