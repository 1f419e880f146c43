#include "ByteArrayXfer.h"
#include "xfer_host.h"

/// The first two bytes say how large the file is, the rest is what the instrument answers.
/// Whatever that is, the transfer ends with one of its results and no more than the file is called
/// accepted.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2)
        return 0;
    QByteArray file(data[0] * 256 + data[1], 'f');
    FuzzXferHost host(data + 2, size - 2);
    ByteArrayXfer transfer(&host, nullptr);
    const int result = transfer.Send(&file);
    if (result > 0 || result < XferClass::DroppedPacket)
        std::abort();
    qsizetype accepted = 0;
    for (const int count : host.counts) {
        if (count > XferClass::maxData || accepted > file.size())
            std::abort();
        accepted += count;
    }
    const bool ended = !host.counts.empty() && host.counts.back() == 0;
    if (ended && (accepted != file.size() || result != 0))
        std::abort();
    if (host.sent.empty() || host.sent.front() != '\x05')
        std::abort();
    return 0;
}
