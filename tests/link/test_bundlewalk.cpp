#include "BundleWalk.h"
#include "TestEnvironment.h"

#include <QObject>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

using namespace std::string_literals;
using namespace std::string_view_literals;

namespace {

using Items = std::vector<std::pair<char, std::string>>;

/// What a screen would see of a bundle.
struct Outcome {
    Items items;
    bool redraw = false;
};

Outcome walked(const std::string& body) {
    // A copy of exactly these bytes, so that a sanitizer sees any step beyond them.
    const std::vector<char> bytes(body.begin(), body.end());
    BundleWalk walk(std::string_view(bytes.data(), bytes.size()));
    Outcome outcome;
    while (const auto item = walk.next())
        outcome.items.emplace_back(item->code, std::string(item->data));
    outcome.redraw = walk.atEnd();
    return outcome;
}

} // namespace

Q_DECLARE_METATYPE(Items)

class TestBundleWalk : public QObject {
    Q_OBJECT

private slots:
    void bundles_data() {
        QTest::addColumn<std::string>("body");
        QTest::addColumn<Items>("items");
        QTest::addColumn<bool>("redraw");

        QTest::newRow("empty") << ""s << Items{} << true;
        QTest::newRow("one item") << "T\0\0\0\5hello"s << Items{{'T', "hello"}} << true;
        QTest::newRow("all codes, in order")
            << "T\0\0\0\1tA\0\0\0\1aR\0\0\0\3\1\2\3C\0\0\0\1cG\0\0\0\2\0\xFF"s
            << Items{{'T', "t"}, {'A', "a"}, {'R', "\1\2\3"}, {'C', "c"}, {'G', "\0\xFF"s}} << true;
        QTest::newRow("unknown code") << "?\0\0\0\1x"s << Items{{'?', "x"}} << true;

        QTest::newRow("1 stray byte") << "T\0\0\0\5helloA"s << Items{{'T', "hello"}} << true;
        QTest::newRow("3 stray bytes") << "T\0\0\0\5hello\1\2\3"s << Items{{'T', "hello"}} << true;
        QTest::newRow("5 stray bytes")
            << "T\0\0\0\5helloA\xFF\xFF\xFF\xFF"s << Items{{'T', "hello"}} << true;
        QTest::newRow("6 stray bytes")
            << "T\0\0\0\5helloA\xFF\xFF\xFF\xFF\1"s << Items{{'T', "hello"}} << false;

        QTest::newRow("an empty item last is a stray") << "T\0\0\0\0"s << Items{} << true;
        QTest::newRow("an empty item in front")
            << "T\0\0\0\0A\0\0\0\1a"s << Items{{'T', ""}, {'A', "a"}} << true;
        QTest::newRow("an empty item before strays") << "T\0\0\0\0?"s << Items{{'T', ""}} << true;

        QTest::newRow("one byte short") << "T\0\0\0\6hello"s << Items{} << false;
        QTest::newRow("the last of two is short")
            << "T\0\0\0\1tA\0\0\0\3ab"s << Items{{'T', "t"}} << false;
        QTest::newRow("nothing after damage") << "T\0\0\0\x20hello"
                                                 "A\0\0\0\1a"s
                                              << Items{} << false;
        QTest::newRow("length 2^31") << "T\x80\0\0\0x"s << Items{} << false;
        // In 32 bits these would wrap to a length that seems to fit.
        QTest::newRow("length 2^32 - 1") << "T\xFF\xFF\xFF\xFFx"s << Items{} << false;
        QTest::newRow("length 2^32 - 4") << "T\xFF\xFF\xFF\xFCx"s << Items{} << false;
        QTest::newRow("length 2^32 - 5") << "T\xFF\xFF\xFF\xFBxxxxxxxx"s << Items{} << false;
        QTest::newRow("length 2^32 - 6") << "T\xFF\xFF\xFF\xFAxxxxxxxx"s << Items{} << false;
    }
    void bundles() {
        QFETCH(const std::string, body);
        QFETCH(const Items, items);
        QFETCH(const bool, redraw);
        const Outcome outcome = walked(body);
        QCOMPARE(outcome.items, items);
        QCOMPARE(outcome.redraw, redraw);
    }

    /// Cut anywhere: whole items are seen, a redraw only where the cut leaves less than an item.
    void everyTruncation() {
        const std::string body = "T\0\0\0\4textA\0\0\0\2abR\0\0\0\3\1\2\3"s;
        const Items all{{'T', "text"}, {'A', "ab"}, {'R', "\1\2\3"}};
        const std::vector<std::size_t> ends{0, 9, 16, 24};
        for (std::size_t size = 0; size <= body.size(); ++size) {
            std::size_t whole = 0;
            while (whole + 1 < ends.size() && ends[whole + 1] <= size)
                ++whole;
            const Outcome outcome = walked(body.substr(0, size));
            QCOMPARE(outcome.items, Items(all.begin(), all.begin() + std::ptrdiff_t(whole)));
            QCOMPARE(outcome.redraw, size - ends[whole] < 6);
        }
    }

    /// A reader that meets a code it does not know stops, and then there is nothing to redraw.
    void aWalkGivenUpIsNotAtItsEnd() {
        BundleWalk walk("T\0\0\0\1t?\0\0\0\1xA\0\0\0\1a"sv);
        QCOMPARE(walk.next()->code, 'T');
        QVERIFY(!walk.atEnd());
        QCOMPARE(walk.next()->code, '?');
        QVERIFY(!walk.atEnd());
    }

    void damageIsForGood() {
        BundleWalk walk("T\0\0\0\x09t"sv);
        for (int i = 0; i < 3; ++i) {
            QVERIFY(!walk.next());
            QVERIFY(!walk.atEnd());
        }
    }

    void theEndIsForGood() {
        BundleWalk walk("T\0\0\0\1t"sv);
        QVERIFY(walk.next());
        QVERIFY(!walk.atEnd());
        for (int i = 0; i < 3; ++i) {
            QVERIFY(!walk.next());
            QVERIFY(walk.atEnd());
        }
    }

    void dataPointsIntoTheBody() {
        const std::string body = "T\0\0\0\4text"s;
        BundleWalk walk(body);
        const auto item = walk.next();
        QVERIFY(item);
        QCOMPARE(static_cast<const void*>(item->data.data()),
                 static_cast<const void*>(body.data() + 5));
    }
};

int main(int argc, char** argv) {
    return runTest<TestBundleWalk>(argc, argv);
}

#include "test_bundlewalk.moc"
