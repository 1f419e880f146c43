#include "XferClass.h"

#include "TCrc16.h"

#include <string_view>

namespace {

constexpr int enq = 5;
constexpr int ack = 6;
constexpr int blockStart = 29;

constexpr int handshakeAttempts = 5;
constexpr int retriesPerBlock = 5;
constexpr std::size_t bufferSize = 1024;
constexpr std::size_t headerLength = 4;
constexpr std::size_t checksumLength = 2;
constexpr std::size_t maxLength = XferClass::maxData + checksumLength;
constexpr unsigned short initialCrc = 0xFFFF;

static_assert(headerLength + XferClass::maxData == bufferSize);

enum Reply {
    blockAccepted = 0,
    checksumError = 1,
    receiverAborts = 2,
    shortBlock = 3,
    outOfSequence = 4
};

} // namespace

XferClass::XferClass(XferHost* host, QObject* parent, XferTimeouts timeouts)
    : QObject(parent), m_packetTimeout(timeouts.packet), m_characterTimeout(timeouts.character),
      m_buffer(bufferSize), m_host(host) {}

QString XferClass::ErrorText(int error) {
    switch (error) {
    case NoError:
        return {};
    case Timeout:
        return tr("Timeout");
    case Aborted:
    case AbortedByPeer:
        return tr("Abort");
    case TooNoisy:
        return tr("Too Noisy");
    case DroppedPacket:
        return tr("Dropped Packet");
    default:
        // Exactly this, without the number and in every language: operators and their notes know
        // the text as it stands.
        return QStringLiteral("ERROR @1");
    }
}

int XferClass::ConvertError(short r) {
    switch (r) {
    case XferHost::aborted:
        return Aborted;
    case XferHost::timedOut:
        return Timeout;
    default:
        return NoError;
    }
}

void XferClass::BuildHeader(short block, short count) {
    const auto number = static_cast<unsigned int>(block);
    const auto length = static_cast<unsigned int>(count) + checksumLength;
    m_buffer[0] = static_cast<unsigned char>(number >> 8U);
    m_buffer[1] = static_cast<unsigned char>(number);
    m_buffer[2] = static_cast<unsigned char>(length >> 8U);
    m_buffer[3] = static_cast<unsigned char>(length);
}

/// Always false, so that a step can end with `return fail(...)`.
bool XferClass::fail(int error) {
    m_error = error;
    return false;
}

bool XferClass::fail(int error, const char* text) {
    m_host->ReportError(text);
    return fail(error);
}

bool XferClass::sendByte(short byte) {
    const int error = ConvertError(static_cast<short>(m_host->SendChar(byte, m_packetTimeout)));
    return error == NoError || fail(error);
}

int XferClass::Send() {
    m_error = NoError;
    if (!offerFile())
        return m_error;
    for (unsigned int number = 1;; ++number) {
        const short count = fillBlock();
        if (!sendBlock(number, count) || count == 0)
            return m_error;
    }
}

/// ENQ until ACK.
bool XferClass::offerFile() {
    if (!sendByte(enq))
        return false;
    for (int attempts = 0;;) {
        switch (m_host->GetChar(m_characterTimeout)) {
        case ack:
            return true;
        case XferHost::aborted:
            return fail(Aborted);
        case XferHost::timedOut:
            if (++attempts > handshakeAttempts)
                return fail(Timeout);
            if (!sendByte(enq))
                return false;
            break;
        default:
            break;
        }
    }
}

/// Puts the next bytes of the file after the header; their number, 0 at the file's end.
short XferClass::fillBlock() {
    short count = 0;
    while (count < maxData) {
        const int byte = Source();
        if (byte < 0)
            break;
        m_buffer[headerLength + static_cast<std::size_t>(count)] = static_cast<unsigned char>(byte);
        ++count;
    }
    return count;
}

/// Sends one block until it is accepted.
bool XferClass::sendBlock(unsigned int number, short count) {
    for (int retries = 0;;) {
        if (!transmitBlock(number, count))
            return false;
        const std::optional<int> reply = readReply();
        if (!reply)
            return false;
        switch (*reply) {
        case blockAccepted:
            m_host->ReportProgress(static_cast<int>(number), count);
            return true;
        case checksumError:
            if (++retries > retriesPerBlock)
                return fail(TooNoisy, "Too many failures");
            m_host->ReportError("Transmission problem - retrying");
            break;
        case shortBlock:
            // On purpose no error: the caller is told that all went well.
            if (++retries > retriesPerBlock)
                return fail(NoError, "Short count");
            break;
        case receiverAborts:
            return fail(AbortedByPeer, "GX-7100 aborted transmission.");
        default:
            return fail(DroppedPacket, "GX-7100 reports a dropped packet.");
        }
    }
}

bool XferClass::transmitBlock(unsigned int number, short count) {
    if (!sendByte(blockStart))
        return false;
    BuildHeader(static_cast<short>(number), count);
    std::string bytes(reinterpret_cast<const char*>(m_buffer.data()),
                      headerLength + static_cast<std::size_t>(count));
    TCrc16 crc(initialCrc);
    crc.Add(bytes);
    bytes += static_cast<char>(crc.Value() >> 8U);
    bytes += static_cast<char>(crc.Value() & 0xFFU);
    const int error = ConvertError(static_cast<short>(m_host->SendString(bytes)));
    return error == NoError || fail(error);
}

/// The next byte that is a reply, or nothing when the transfer has failed.
std::optional<int> XferClass::readReply() {
    for (;;) {
        const int byte = m_host->GetChar(m_packetTimeout);
        if (byte == XferHost::aborted) {
            fail(Aborted, "Aborted");
            return std::nullopt;
        }
        if (byte == XferHost::timedOut) {
            fail(Timeout, "GX-7100 not responding");
            return std::nullopt;
        }
        if (byte <= outOfSequence)
            return byte;
        m_host->ReportError("Lost Data");
    }
}

int XferClass::Receive() {
    m_error = NoError;
    if (!awaitEnquiry() || !sendByte(ack))
        return m_error;
    // Not wrapped to 16 bits like the numbers on the wire: that bounds what is received.
    unsigned int expected = 0;
    int failures = 0;
    for (;;) {
        if (!awaitBlockStart())
            return m_error;
        const std::optional<Block> block = readBlock();
        if (!block)
            return m_error;
        if (!block->sound) {
            if (!refuseDamagedBlock(failures))
                return m_error;
            continue;
        }
        if (block->number != ++expected) {
            m_host->SendChar(outOfSequence, m_packetTimeout);
            fail(DroppedPacket, "Packet dropped");
            return m_error;
        }
        m_host->SendChar(blockAccepted, m_packetTimeout);
        if (block->dataSize == 0 || !storeBlock(*block))
            return m_error;
    }
}

bool XferClass::awaitEnquiry() {
    for (int timeouts = 0;;) {
        switch (m_host->GetChar(m_packetTimeout)) {
        case enq:
            return true;
        case XferHost::aborted:
            return fail(AbortedByPeer, "GX-7100 aborted");
        case XferHost::timedOut:
            if (++timeouts > handshakeAttempts)
                return fail(Timeout, "Timed out waiting for GX-7100");
            break;
        default:
            break;
        }
    }
}

bool XferClass::awaitBlockStart() {
    for (;;) {
        const std::optional<int> byte = readByte(m_packetTimeout);
        if (!byte)
            return false;
        if (*byte == blockStart)
            return true;
    }
}

/// One byte of a file on its way in, or nothing when the transfer has failed.
std::optional<int> XferClass::readByte(long timeoutMs) {
    const int byte = m_host->GetChar(timeoutMs);
    if (byte == XferHost::aborted) {
        fail(AbortedByPeer, "Abort");
        return std::nullopt;
    }
    if (byte == XferHost::timedOut) {
        fail(Timeout, "Timeout");
        return std::nullopt;
    }
    return byte;
}

std::optional<XferClass::Block> XferClass::readBlock() {
    TCrc16 crc(initialCrc);
    unsigned int header = 0;
    for (std::size_t i = 0; i < headerLength; ++i) {
        const std::optional<int> byte = readByte(m_packetTimeout);
        if (!byte)
            return std::nullopt;
        crc.Add(static_cast<unsigned char>(*byte));
        header = (header << 8U) | static_cast<unsigned int>(*byte);
    }
    const std::size_t length = header & 0xFFFFU;
    // A length that no sound block has is read to its end all the same, to keep in step, but it
    // goes nowhere.
    for (std::size_t i = 0; i < length; ++i) {
        const std::optional<int> byte = readByte(m_characterTimeout);
        if (!byte)
            return std::nullopt;
        crc.Add(static_cast<unsigned char>(*byte));
        if (i < maxLength)
            m_buffer[i] = static_cast<unsigned char>(*byte);
    }
    if (length < checksumLength || length > maxLength || crc.Value() != 0)
        return Block{0, 0, false};
    return Block{header >> 16U, length - checksumLength, true};
}

bool XferClass::refuseDamagedBlock(int& failures) {
    m_host->SendChar(checksumError, m_packetTimeout);
    m_host->ReportError("Checksum error");
    return ++failures <= retriesPerBlock || fail(TooNoisy);
}

bool XferClass::storeBlock(const Block& block) {
    for (std::size_t i = 0; i < block.dataSize; ++i) {
        if (Dest(static_cast<char>(m_buffer[i])) != 0) {
            m_host->SendChar(receiverAborts, m_packetTimeout);
            return fail(AbortedByPeer, "Write failure to dest");
        }
    }
    m_host->ReportProgress(static_cast<int>(block.number),
                           static_cast<int>(block.dataSize + checksumLength));
    return true;
}
