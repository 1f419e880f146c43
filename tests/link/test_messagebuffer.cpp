#include "MessageBuffer.h"
#include "TestEnvironment.h"

#include <QByteArray>
#include <QFile>
#include <QObject>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

using namespace std::string_literals;

namespace {

using Message = std::pair<std::string, std::string>;
using Messages = std::vector<Message>;

void feed(MessageBuffer& buffer, std::string_view bytes) {
    // A copy of exactly these bytes, so that a sanitizer sees any step beyond them.
    const std::vector<char> chunk(bytes.begin(), bytes.end());
    buffer.Add(chunk.data(), static_cast<unsigned int>(chunk.size()));
}

Messages drain(MessageBuffer& buffer) {
    Messages messages;
    Message next;
    while (buffer.NextMessage(next.first, next.second))
        messages.push_back(next);
    return messages;
}

/// The most address space that this process ever had, in KiB.
qint64 peakOfAddressSpace() {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmPeak:"))
            return line.mid(7).simplified().split(' ').first().toLongLong();
    }
    return -1;
}

/// All messages of a stream that arrives cut at the given places.
Messages parse(std::string_view stream, std::vector<std::size_t> cuts) {
    MessageBuffer buffer;
    cuts.push_back(stream.size());
    std::size_t from = 0;
    for (const std::size_t cut : cuts) {
        feed(buffer, stream.substr(from, cut - from));
        from = cut;
    }
    return drain(buffer);
}

} // namespace

Q_DECLARE_METATYPE(Messages)

class TestMessageBuffer : public QObject {
    Q_OBJECT

private:
    static void streams() {
        QTest::addColumn<std::string>("stream");
        QTest::addColumn<Messages>("expected");

        QTest::newRow("nothing") << ""s << Messages{};
        QTest::newRow("one frame") << "<D>\0\0\0\5hello"s << Messages{{"D", "hello"}};
        QTest::newRow("no payload") << "<D>\0\0\0\0"s << Messages{{"D", ""}};
        QTest::newRow("one byte") << "<D>\0\0\0\1x"s << Messages{{"D", "x"}};
        QTest::newRow("two frames")
            << "<D>\0\0\0\2ab<D>\0\0\0\3cde"s << Messages{{"D", "ab"}, {"D", "cde"}};
        QTest::newRow("empty frames in a row")
            << "<D>\0\0\0\0<D>\0\0\0\0<D>\0\0\0\0"s << Messages{{"D", ""}, {"D", ""}, {"D", ""}};
        QTest::newRow("stray bytes before") << "D>\0\0\r\n<D>\0\0\0\1x"s << Messages{{"D", "x"}};
        QTest::newRow("stray bytes between")
            << "<D>\0\0\0\1xyz>>\0<D>\0\0\0\1w"s << Messages{{"D", "x"}, {"D", "w"}};
        QTest::newRow("nothing but stray bytes") << "noise \0 noise >"s << Messages{};
        QTest::newRow("another tag")
            << "<X>\0\0\0\2no<D>\0\0\0\1y"s << Messages{{"X", "no"}, {"D", "y"}};
        QTest::newRow("a less-than in the tag") << "<<D>\0\0\0\1z"s << Messages{{"<D", "z"}};
        QTest::newRow("empty tag") << "<>\0\0\0\1z"s << Messages{{"", "z"}};
        QTest::newRow("long tag with any bytes")
            << "<a \0\xFF<< longer than a small string may be>\0\0\0\1z"s
            << Messages{{"a \0\xFF<< longer than a small string may be"s, "z"}};
        QTest::newRow("a frame inside a payload")
            << "<D>\0\0\0\x08<D>\0\0\0\1x"s << Messages{{"D", "<D>\0\0\0\1x"s}};
        QTest::newRow("brackets all over")
            << "<D>\0\0\0<"s + std::string(60, '<') << Messages{{"D", std::string(60, '<')}};
    }

private slots:
    void anySplit_data() { streams(); }
    void anySplit() {
        QFETCH(const std::string, stream);
        QFETCH(const Messages, expected);

        QCOMPARE(parse(stream, {}), expected);
        std::vector<std::size_t> everywhere;
        for (std::size_t first = 0; first <= stream.size(); ++first) {
            everywhere.push_back(first);
            QCOMPARE(parse(stream, {first}), expected);
            for (std::size_t second = first; second <= stream.size(); ++second)
                QCOMPARE(parse(stream, {first, second}), expected);
        }
        QCOMPARE(parse(stream, everywhere), expected);
    }

    /// A message is there with its last byte: not before, and not only with the byte after it.
    void completion_data() {
        QTest::addColumn<std::string>("head");
        QTest::addColumn<std::size_t>("length");
        QTest::newRow("empty") << "<D>\0\0\0\0"s << std::size_t(0);
        QTest::newRow("one byte") << "<D>\0\0\0\1"s << std::size_t(1);
        QTest::newRow("255 bytes") << "<D>\0\0\0\xFF"s << std::size_t(255);
        QTest::newRow("256 bytes") << "<D>\0\0\1\0"s << std::size_t(256);
        QTest::newRow("65536 bytes") << "<D>\0\1\0\0"s << std::size_t(65'536);
        QTest::newRow("16777216 bytes") << "<D>\1\0\0\0"s << std::size_t(16'777'216);
    }
    void completion() {
        QFETCH(const std::string, head);
        QFETCH(const std::size_t, length);
        std::string payload;
        payload.resize(length, 'p');
        const std::string frame = head + payload;

        MessageBuffer buffer;
        feed(buffer, std::string_view(frame).substr(0, frame.size() - 1));
        QCOMPARE(drain(buffer), Messages{});
        feed(buffer, std::string_view(frame).substr(frame.size() - 1));
        QCOMPARE(drain(buffer), (Messages{{"D", payload}}));
    }

    void messagesAreKeptUntilTakenInOrder() {
        MessageBuffer buffer;
        feed(buffer, "<A>\0\0\0\1a<B>\0\0\0\1b"s);
        std::string tag = "old";
        std::string payload = "old";
        QVERIFY(buffer.NextMessage(tag, payload));
        QCOMPARE(tag, "A"s);
        QCOMPARE(payload, "a"s);
        feed(buffer, "<C>\0\0\0\1c"s);
        QCOMPARE(drain(buffer), (Messages{{"B", "b"}, {"C", "c"}}));

        tag = "kept";
        payload = "kept";
        QVERIFY(!buffer.NextMessage(tag, payload));
        QCOMPARE(tag, "kept"s);
        QCOMPARE(payload, "kept"s);
    }

    /// Memory of taken payloads serves those to come; nothing of what it held may show.
    void payloadsOfAllSizesOneAfterAnother() {
        MessageBuffer buffer;
        Message taken;
        for (int round = 0; round < 40; ++round) {
            Messages sent;
            for (const std::size_t size :
                 {65'537U, 1'025U, 65'536U, 0U, 1'024U, 1'023U, 65'535U, 1U, 15U, 16U, 2'048U}) {
                std::string payload;
                payload.resize(size, static_cast<char>('a' + round % 26));
                sent.emplace_back("D", payload);
                feed(buffer, "<D>"s + char(0) + char(size >> 16U) + char(size >> 8U & 0xFFU) +
                                 char(size & 0xFFU));
                feed(buffer, payload);
            }
            for (const Message& expected : sent) {
                QVERIFY(buffer.NextMessage(taken.first, taken.second));
                QVERIFY(taken == expected);
            }
            QVERIFY(!buffer.NextMessage(taken.first, taken.second));
        }
    }

    void addOfNothingDoesNothing() {
        MessageBuffer buffer;
        buffer.Add(nullptr, 0);
        feed(buffer, "<D>\0\0\0\1"s);
        buffer.Add(nullptr, 0);
        QCOMPARE(drain(buffer), Messages{});
        feed(buffer, "x"s);
        QCOMPARE(drain(buffer), (Messages{{"D", "x"}}));
    }

    /// A frame is never given up: what follows a tag that is not closed belongs to the tag.
    void aTagThatIsNeverClosed() {
        MessageBuffer buffer;
        feed(buffer, "<D\0\0\0\1x"s);
        for (int i = 0; i < 1000; ++i)
            feed(buffer, "<D\0\0\0\0"s);
        QCOMPARE(drain(buffer), Messages{});
        feed(buffer, ">\0\0\0\1y"s);
        const Messages messages = drain(buffer);
        QCOMPARE(messages.size(), std::size_t(1));
        QCOMPARE(messages[0].first.size(), std::size_t(6006));
        QCOMPARE(messages[0].second, "y"s);
    }

    /// A length is a claim: memory is spent on the bytes that came.
    void theLargestLengthTakesNoMemoryAhead() {
        const qint64 before = peakOfAddressSpace();
        QVERIFY(before > 0);
        MessageBuffer buffer;
        feed(buffer, "<D>\xFF\xFF\xFF\xFF"s);
        for (int i = 0; i < 10; ++i)
            feed(buffer, std::string(100'000, 'p'));
        QCOMPARE(drain(buffer), Messages{});
        const qint64 grown = peakOfAddressSpace() - before;
        QVERIFY2(grown < 1'000'000, QByteArray::number(grown).constData());
    }
};

int main(int argc, char** argv) {
    return runTest<TestMessageBuffer>(argc, argv);
}

#include "test_messagebuffer.moc"
