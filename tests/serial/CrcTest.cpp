#include "TCrc16.h"
#include "TCrc32.h"
#include "TestEnvironment.h"

/// Both checksums against the published catalogues, and the table-driven step against the
/// definition of a CRC: one bit at a time.
class CrcTest : public QObject {
    Q_OBJECT

private slots:
    void crc16_data();
    void crc16();
    void crc16_follows_the_definition_for_every_byte();
    void crc16_over_its_own_check_leaves_nothing();
    void crc32_data();
    void crc32();
    void crc32_follows_the_definition_for_every_byte();
};

namespace {

constexpr unsigned int bitwise16(unsigned int crc, unsigned char byte) {
    crc ^= static_cast<unsigned int>(byte) << 8U;
    for (int bit = 0; bit < 8; ++bit)
        crc = ((crc << 1U) ^ ((crc & 0x8000U) != 0 ? 0x1021U : 0U)) & 0xFFFFU;
    return crc;
}

constexpr std::uint32_t bitwise32(std::uint32_t crc, unsigned char byte) {
    crc ^= byte;
    for (int bit = 0; bit < 8; ++bit)
        crc = (crc >> 1U) ^ ((crc & 1U) != 0 ? 0xEDB88320U : 0U);
    return crc;
}

} // namespace

void CrcTest::crc16_data() {
    QTest::addColumn<unsigned int>("init");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<unsigned int>("crc");

    // The check values of the catalogue of parametrised CRC algorithms for this polynomial,
    // unreflected: one for each published initial value.
    QTest::newRow("CRC-16/IBM-3740") << 0xFFFFU << QByteArray("123456789") << 0x29B1U;
    QTest::newRow("CRC-16/XMODEM") << 0U << QByteArray("123456789") << 0x31C3U;
    QTest::newRow("CRC-16/SPI-FUJITSU") << 0x1D0FU << QByteArray("123456789") << 0xE5CCU;
    QTest::newRow("nothing") << 0xFFFFU << QByteArray() << 0xFFFFU;
    QTest::newRow("one letter") << 0xFFFFU << QByteArray("A") << 0xB915U;
    QTest::newRow("zeros count") << 0xFFFFU << QByteArray(4, '\0') << 0x84C0U;
    QTest::newRow("the header of an empty first block")
        << 0xFFFFU << QByteArray::fromHex("00010002") << 0x93B2U;
}

void CrcTest::crc16() {
    QFETCH(const unsigned int, init);
    QFETCH(const QByteArray, bytes);
    QFETCH(const unsigned int, crc);

    TCrc16 whole(static_cast<unsigned short>(init));
    whole.Add(std::string_view(bytes.data(), static_cast<std::size_t>(bytes.size())));
    QCOMPARE(whole.Value(), crc);

    TCrc16 single(static_cast<unsigned short>(init));
    for (const char byte : bytes)
        single.Add(static_cast<unsigned char>(byte));
    QCOMPARE(single.Value(), crc);
}

void CrcTest::crc16_follows_the_definition_for_every_byte() {
    for (unsigned int start : {0x0000U, 0x0001U, 0x8000U, 0xFFFFU, 0x1D0FU, 0xA55AU}) {
        for (unsigned int byte = 0; byte < 256; ++byte) {
            TCrc16 crc(static_cast<unsigned short>(start));
            crc.Add(static_cast<unsigned char>(byte));
            QCOMPARE(crc.Value(), bitwise16(start, static_cast<unsigned char>(byte)));
        }
    }
}

void CrcTest::crc16_over_its_own_check_leaves_nothing() {
    TCrc16 crc(0xFFFF);
    crc.Add("123456789\x29\xB1");
    QCOMPARE(crc.Value(), 0);
}

void CrcTest::crc32_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<unsigned int>("inverted");

    QTest::newRow("CRC-32/ISO-HDLC") << QByteArray("123456789") << 0xCBF43926U;
    QTest::newRow("nothing") << QByteArray() << 0U;
    QTest::newRow("abc") << QByteArray("abc") << 0x352441C2U;
    QTest::newRow("a sentence") << QByteArray("The quick brown fox jumps over the lazy dog")
                                << 0x414FA339U;
    QTest::newRow("zeros count") << QByteArray(4, '\0') << 0x2144DF1CU;
}

void CrcTest::crc32() {
    QFETCH(const QByteArray, bytes);
    QFETCH(const unsigned int, inverted);

    TCrc32 crc(0xFFFFFFFF);
    crc.Add(std::string_view(bytes.data(), static_cast<std::size_t>(bytes.size())));
    QCOMPARE(~crc.Value(), inverted);
}

void CrcTest::crc32_follows_the_definition_for_every_byte() {
    for (std::uint32_t start : {0x00000000U, 0x00000001U, 0x80000000U, 0xFFFFFFFFU, 0x5AA51234U}) {
        for (unsigned int byte = 0; byte < 256; ++byte) {
            TCrc32 crc(start);
            crc.Add(static_cast<unsigned char>(byte));
            QCOMPARE(crc.Value(), bitwise32(start, static_cast<unsigned char>(byte)));
        }
    }
}

int main(int argc, char** argv) {
    return runTest<CrcTest>(argc, argv);
}

#include "CrcTest.moc"
