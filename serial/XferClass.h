#pragma once

#include "XferHost.h"
#include "XferTimeouts.h"

#include <QObject>
#include <QString>

#include <cstddef>
#include <optional>
#include <vector>

/// One file transfer, in either direction, in numbered and checksummed blocks with a one-byte
/// reply after each.
///
/// A block is the start byte GS, its number and its length (data plus checksum) in two bytes each,
/// up to 1020 bytes of data and the CRC-16 over header and data, high byte first. Numbers start at
/// 1; a block without data ends the file. An object serves one transfer and blocks its thread until
/// that ends; the only way to end it early is through the host, which then answers `aborted`.
class XferClass : public QObject {
    Q_OBJECT

public:
    /// Data bytes in the largest block.
    static constexpr int maxData = 1020;
    /// Bytes that the numbers of the blocks reach for: the last number is the one that ends the
    /// file.
    static constexpr qint64 maxFileSize = qint64{maxData} * 0xFFFE;

    /// Results of a transfer.
    enum Error {
        NoError = 0,
        Timeout = -1,
        Aborted = -2,
        AbortedByPeer = -3,
        TooNoisy = -4,
        DroppedPacket = -5
    };

    /// `host` is not owned and must outlive the transfer.
    XferClass(XferHost* host, QObject* parent, XferTimeouts timeouts = {});

    /// Sends what Source() gives; the result is an Error. 0 is also the result when the other end
    /// has called a block short more often than it may: what it has is then not the whole file.
    int Send();
    /// Receives into Dest(); the result is an Error.
    int Receive();

    /// The result of the last operation in words; empty for success.
    QString ErrorText() const { return ErrorText(m_error); }
    /// A result in words.
    static QString ErrorText(int error);

    /// Writes the header of block number `block` with `count` data bytes into the buffer.
    void BuildHeader(short block, short count);
    /// The Error for a result of the host; 0 when it is no failure.
    static int ConvertError(short r);

    /// The next byte of the file to send, 0 to 255, or -1 at its end.
    virtual int Source() = 0;
    /// Stores one received byte; 0, or -1 when it cannot.
    virtual int Dest(char byte) = 0;

private:
    /// A received block, its data in the buffer.
    struct Block {
        unsigned int number;
        std::size_t dataSize;
        bool sound;
    };

    bool fail(int error);
    bool fail(int error, const char* text);
    bool sendByte(short byte);

    bool offerFile();
    short fillBlock();
    bool sendBlock(unsigned int number, short count);
    bool transmitBlock(unsigned int number, short count);
    std::optional<int> readReply();

    bool awaitEnquiry();
    bool awaitBlockStart();
    std::optional<int> readByte(long timeoutMs);
    std::optional<Block> readBlock();
    bool refuseDamagedBlock(int& failures);
    bool storeBlock(const Block& block);

    long m_packetTimeout;
    long m_characterTimeout;
    int m_error = NoError;
    std::vector<unsigned char> m_buffer;
    XferHost* m_host;
};
