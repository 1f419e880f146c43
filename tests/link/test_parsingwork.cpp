// What the parsers do for hostile input is counted, not timed: the bytes that they ask the
// allocator for and the pieces that they hand out. Twice the input may cost twice the work.

#include "BundleWalk.h"
#include "LTermBuffer.h"
#include "MessageBuffer.h"
#include "Packet.h"
#include "TestEnvironment.h"
#include "TxtRecord.h"

#include <QObject>

#include <cstdlib>
#include <functional>
#include <new>
#include <span>
#include <string>

namespace {

/// Bytes that this thread has asked for.
thread_local std::size_t allocated = 0;

} // namespace

void* operator new(std::size_t size) {
    allocated += size;
    if (void* memory = std::malloc(size == 0 ? 1 : size))
        return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

namespace {

using Parse = std::function<void(const std::string&)>;
using Make = std::function<std::string(std::size_t)>;

/// As a link does when each byte comes alone: any of them may have completed something.
template <typename Parser, typename Take>
void addSingly(Parser& parser, const std::string& bytes, Take take) {
    for (const char byte : bytes) {
        parser.Add(&byte, 1);
        while (take()) {
        }
    }
}

void networkSingly(const std::string& bytes) {
    MessageBuffer buffer;
    std::string tag;
    std::string payload;
    addSingly(buffer, bytes, [&] { return buffer.NextMessage(tag, payload); });
}

void serialSingly(const std::string& bytes) {
    LTermBuffer buffer;
    unsigned char type = 0;
    std::string payload;
    addSingly(buffer, bytes, [&] { return buffer.nextItem(type, payload); });
}

void bundle(const std::string& bytes) {
    BundleWalk walk(bytes);
    while (walk.next()) {
    }
}

void txtRecord(const std::string& bytes) {
    txtrecord::parse(std::span(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()));
}

std::string repeated(const std::string& piece, std::size_t size) {
    std::string bytes;
    bytes.reserve(size + piece.size());
    while (bytes.size() < size)
        bytes += piece;
    return bytes;
}

Make repeats(const std::string& piece) {
    return [piece](std::size_t size) { return repeated(piece, size); };
}

/// Keys "a" to "p" in turn, four letters each, so that no two are the same.
std::string txtEntries(std::size_t size) {
    std::string bytes;
    for (unsigned entry = 0; bytes.size() < size; ++entry) {
        bytes += '\6';
        for (unsigned i = 0; i < 4; ++i)
            bytes += static_cast<char>('a' + (entry >> (4 * i)) % 16);
        bytes += "=v";
    }
    return bytes;
}

class ParsingWorkTest : public QObject {
    Q_OBJECT

private slots:
    void twiceTheInputTwiceTheWork_data() {
        QTest::addColumn<Parse>("parse");
        QTest::addColumn<Make>("make");
        QTest::addColumn<std::size_t>("size");
        constexpr std::size_t large = 1U << 20U;
        QTest::newRow("one frame, byte by byte")
            << Parse(networkSingly)
            << Make([](std::size_t size) { return packet::bundle("<D>", std::string(size, 'x')); })
            << large;
        QTest::newRow("a tag without an end, byte by byte")
            << Parse(networkSingly)
            << Make([](std::size_t size) { return '<' + std::string(size, '<'); }) << large;
        QTest::newRow("no frame at all") << Parse(networkSingly) << repeats(">") << large;
        QTest::newRow("empty frames")
            << Parse(networkSingly) << repeats(std::string("<>\0\0\0\0", 6)) << large;
        QTest::newRow("typed frames of a byte")
            << Parse(serialSingly) << repeats(std::string("T\n\0\1x", 5)) << large;
        QTest::newRow("typed frames, byte by byte")
            << Parse(serialSingly) << repeats("T\n\xFF\xFF" + std::string(65535, 'x')) << large;
        QTest::newRow("file transfer bytes")
            << Parse(serialSingly) << repeats(std::string("X\n\0\1L", 5)) << large;
        QTest::newRow("type letters without a frame")
            << Parse(serialSingly) << repeats("A") << large;
        QTest::newRow("a bundle of empty items")
            << Parse(bundle) << repeats(std::string("C\0\0\0\0", 5)) << large;
        QTest::newRow("keys of a TXT record")
            << Parse(txtRecord) << Make(txtEntries) << std::size_t{30'000};
        QTest::newRow("empty entries of a TXT record")
            << Parse(txtRecord) << repeats(std::string(1, '\0')) << std::size_t{30'000};
    }
    void twiceTheInputTwiceTheWork() {
        QFETCH(const Parse, parse);
        QFETCH(const Make, make);
        QFETCH(const std::size_t, size);
        const std::size_t once = bytesFor(parse, make(size));
        const std::size_t twice = bytesFor(parse, make(2 * size));
        // A container that grows by doubling may have to grow once more.
        constexpr std::size_t step = 4096;
        QVERIFY2(twice <= 3 * once + step,
                 qPrintable(QStringLiteral("%1, then %2").arg(once).arg(twice)));
    }

    void aFrameByteByByteMovesEachByteAFewTimes() {
        constexpr std::size_t size = 64U << 20U;
        const std::string frame = packet::bundle("<D>", std::string(size, 'x'));
        QVERIFY(bytesFor(networkSingly, frame) < 5 * size);
    }

    void aWalkAsksForNoMemory() {
        const std::string items = repeated(std::string("C\0\0\0\0", 5), 1U << 20U);
        QCOMPARE(bytesFor(bundle, items), std::size_t{0});
    }

private:
    static std::size_t bytesFor(const Parse& parse, const std::string& bytes) {
        const std::size_t before = allocated;
        parse(bytes);
        return allocated - before;
    }
};

} // namespace

int main(int argc, char** argv) {
    return runTest<ParsingWorkTest>(argc, argv);
}

#include "test_parsingwork.moc"
