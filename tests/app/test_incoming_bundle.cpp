#include "ConnectionWidget.h"
#include "LCD7100.h"
#include "TestEnvironment.h"

#include <QElapsedTimer>

#include <functional>
#include <memory>
#include <string>

using namespace std::string_literals;

namespace {

constexpr int patience = 20000;
constexpr std::size_t cells = 320;
constexpr std::size_t graphicsBytes = 1920;

/// A "BNDL" packet with this body.
std::string bundle(const std::string& body) {
    return "\0\0\0\0BNDL"s + body;
}

/// A screen full of one character.
std::string fullOf(char code) {
    return "T\0\0\1\x40"s + std::string(cells, code);
}

/// Whether a display of 240 x 120 pixels shows the same character everywhere, and not a space.
bool isFull(const QImage& image) {
    const QSize cell(6, 15);
    const QImage first = image.copy(QRect(QPoint(0, 0), cell));
    for (int y = 0; y < image.height(); y += cell.height())
        for (int x = 0; x < image.width(); x += cell.width())
            if (image.copy(QRect(QPoint(x, y), cell)) != first)
                return false;
    QImage blank = first;
    blank.fill(first.pixelColor(0, 0));
    return first != blank;
}

/// A tile on screen, showing a screen full of "A".
struct Tile {
    Tile() {
        widget.show();
        // However high the row of buttons is here, the display is to have whole cells.
        display().setFixedSize(240, 120);
        widget.incomingPacket(bundle(fullOf('A')));
        QTRY_VERIFY_WITH_TIMEOUT(isFull(image()), patience);
    }
    LCD7100& display() { return *widget.findChild<LCD7100*>(); }
    QImage image() { return display().grab().toImage(); }

    ConnectionWidget widget;
};

/// A display that is told directly; it starts full of "A" too.
class Reference {
public:
    Reference() {
        display.resize(240, 120);
        display.show();
        display.setTextWait(std::string(cells, 'A'));
        display.redraw(false);
        QTRY_VERIFY_WITH_TIMEOUT(isFull(image()), patience);
    }
    QImage image() { return display.grab().toImage(); }

    LCD7100 display;
};

using Steps = std::function<void(LCD7100&)>;

Steps text(const std::string& codes) {
    return [codes](LCD7100& display) {
        display.setTextWait(codes);
        display.redraw(false);
    };
}

Steps attributed(const std::string& codes, const std::string& attributes) {
    return [codes, attributes](LCD7100& display) {
        display.setTextWait(codes);
        display.setAttrWait(attributes);
        display.redraw(false);
    };
}

Steps graphics(const std::string& bits) {
    return [bits](LCD7100& display) {
        display.setTextMode(false);
        display.setFullGraphics(bits);
    };
}

} // namespace

Q_DECLARE_METATYPE(Steps)
Q_DECLARE_METATYPE(std::string)

class TestIncomingBundle : public QObject {
    Q_OBJECT

private slots:
    void redrawn_data();
    void redrawn();
    void notRedrawn_data();
    void notRedrawn();
    void emptyBundleRedraws();
    void countlessPicturesCostLittle();
    void cursor_data();
    void cursor();
    void cursorOutsideTheScreen();
};

void TestIncomingBundle::redrawn_data() {
    QTest::addColumn<std::string>("body");
    QTest::addColumn<Steps>("expected");

    const std::string full = std::string(cells, 'B');
    const std::string five = "Hello" + std::string(cells - 5, '\0');
    QTest::newRow("text") << fullOf('B') << text(full);
    QTest::newRow("short text, stray bytes") << "T\0\0\0\5Helloxyz"s << text(five);
    QTest::newRow("short text, five stray bytes") << "T\0\0\0\5HelloT\0\0\0\0"s << text(five);
    QTest::newRow("no text at all") << "T\0\0\0\0C\0\0\0\1x"s << text(std::string(cells, '\0'));
    QTest::newRow("long text") << "T\0\0\1\x44"s + full + "rest" << text(full);
    QTest::newRow("zero bytes are cells")
        << "T\0\0\0\5A\0B\0C"s << text("A\0B\0C"s + std::string(cells - 5, '\0'));
    QTest::newRow("the last of two texts") << fullOf('C') + fullOf('B') << text(full);
    QTest::newRow("C is accepted") << "C\0\0\0\2??"s + fullOf('B') << text(full);
    QTest::newRow("attributes") << "A\0\0\0\4\1\2\3\0"s + fullOf('B')
                                << attributed(full, "\1\2\3"s);
    QTest::newRow("attributes alone")
        << "A\0\0\0\1\1"s << attributed(std::string(cells, 'A'), "\1"s);
    QTest::newRow("graphics") << "G\0\0\7\x80"s + std::string(graphicsBytes, '\x55')
                              << graphics(std::string(graphicsBytes, '\x55'));
    QTest::newRow("short graphics") << "G\0\0\0\3\xff\x0f\xff"s << graphics("\xff\x0f\xff"s);
    QTest::newRow("graphics before an unknown item")
        << "G\0\0\0\3\xff\x0f\xffX\0\0\0\1x"s << graphics("\xff\x0f\xff"s);
    QTest::newRow("back to text") << "G\0\0\0\1\xff"s + fullOf('B') << text(full);
}

void TestIncomingBundle::redrawn() {
    QFETCH(const std::string, body);
    QFETCH(const Steps, expected);
    Tile tile;
    QCOMPARE(tile.display().size(), QSize(240, 120));
    const QImage before = tile.image();
    Reference reference;
    QCOMPARE(reference.image(), before);
    expected(reference.display);
    QTRY_VERIFY_WITH_TIMEOUT(reference.image() != before, patience);

    tile.widget.incomingPacket(bundle(body));
    QTRY_COMPARE_WITH_TIMEOUT(tile.image(), reference.image(), patience);
}

void TestIncomingBundle::notRedrawn_data() {
    QTest::addColumn<std::string>("body");
    QTest::addColumn<bool>("applied");

    const std::string text = fullOf('B');
    QTest::newRow("item one byte too long") << text + "C\0\0\0\2?"s << true;
    QTest::newRow("item far too long") << text + "C\xff\xff\xff\xff?"s << true;
    QTest::newRow("unknown item") << text + "X\0\0\0\1?"s << true;
    QTest::newRow("lower case is unknown") << text + "t\0\0\0\1?"s << true;
    QTest::newRow("NUL is unknown") << text + "\0\0\0\0\1?"s << true;
    QTest::newRow("unknown item first") << "X\0\0\0\1?"s + text << false;
    QTest::newRow("text one byte too long") << "T\0\0\1\x41"s + std::string(cells, 'B') << false;
    QTest::newRow("text far too long") << "T\xff\xff\xff\xff"s + std::string(cells, 'B') << false;
    QTest::newRow("just too long to wrap")
        << "T\xff\xff\xff\xfb"s + std::string(cells, 'B') << false;
}

void TestIncomingBundle::notRedrawn() {
    QFETCH(const std::string, body);
    QFETCH(const bool, applied);
    Tile tile;
    Tile other;
    const QImage before = tile.image();
    QCOMPARE(other.image(), before);
    tile.widget.incomingPacket(bundle(body));

    // By the time another tile has been redrawn twice, this one would have been.
    other.widget.incomingPacket(bundle(fullOf('C')));
    QTRY_VERIFY_WITH_TIMEOUT(other.image() != before, patience);
    other.widget.incomingPacket(bundle(fullOf('A')));
    QTRY_COMPARE_WITH_TIMEOUT(other.image(), before, patience);
    QCOMPARE(tile.image(), before);

    // What was taken in before the damage shows with the next redraw.
    tile.widget.incomingPacket(bundle({}));
    other.widget.incomingPacket(bundle(applied ? fullOf('B') : std::string()));
    QTRY_COMPARE_WITH_TIMEOUT(tile.image() != before, applied, patience);
    QTRY_COMPARE_WITH_TIMEOUT(tile.image(), other.image(), patience);
}

void TestIncomingBundle::emptyBundleRedraws() {
    Tile tile;
    Tile other;
    other.widget.incomingPacket(bundle(fullOf('B')));
    QTRY_VERIFY_WITH_TIMEOUT(tile.image() != other.image(), patience);
    tile.display().setTextWait(std::string(cells, 'B'));
    tile.widget.incomingPacket(bundle({}));
    QTRY_COMPARE_WITH_TIMEOUT(tile.image(), other.image(), patience);
}

void TestIncomingBundle::countlessPicturesCostLittle() {
    Tile tile;
    std::string body;
    for (int i = 0; i < 1000000; ++i)
        body += "G\0\0\0\0"s;
    body += "G\0\0\0\3\xff\x0f\xff"s;
    QElapsedTimer timer;
    timer.start();
    tile.widget.incomingPacket(bundle(body));
    // A thousand times what it takes, and a fraction of what unpacking each picture would.
    QVERIFY(timer.elapsed() < 30000);

    Reference reference;
    graphics("\xff\x0f\xff"s)(reference.display);
    QCOMPARE(tile.image(), reference.image());
}

void TestIncomingBundle::cursor_data() {
    QTest::addColumn<std::string>("item");
    QTest::addColumn<QPoint>("cell");
    QTest::addColumn<bool>("block");

    QTest::newRow("block") << "R\0\0\0\3\2\1\1"s << QPoint(0, 0) << true;
    QTest::newRow("block in the last cell") << "R\0\0\0\3\2\x28\x08"s << QPoint(39, 7) << true;
    QTest::newRow("underline") << "R\0\0\0\3\1\5\4"s << QPoint(4, 3) << false;
    QTest::newRow("long item") << "R\0\0\0\5\2\5\4??"s << QPoint(4, 3) << true;
}

void TestIncomingBundle::cursor() {
    QFETCH(const std::string, item);
    QFETCH(const QPoint, cell);
    QFETCH(const bool, block);
    Tile tile;
    tile.widget.incomingPacket(bundle(item + fullOf(' ')));
    const double width = (tile.display().width() - 4) / 40.0;
    const double height = (tile.display().height() - 4) / 8.0;
    const QPoint middle(int((cell.x() + 0.5) * width + 2), int((cell.y() + 0.5) * height + 2));
    const QPoint foot(middle.x(), int((cell.y() + 1) * height + 1));
    const QColor gray(Qt::darkGray);
    // It blinks.
    QTRY_COMPARE_WITH_TIMEOUT(tile.image().pixelColor(foot), gray, patience);
    QCOMPARE(tile.image().pixelColor(middle) == gray, block);
}

void TestIncomingBundle::cursorOutsideTheScreen() {
    Tile tile;
    for (const std::string& item : {"R\0\0\0\3\2\xff\x80"s, "R\0\0\0\3\x80\x7f\x7f"s,
                                    "R\0\0\0\2\2\1"s, "R\0\0\0\1\2"s, "R\0\0\0\0"s}) {
        tile.widget.incomingPacket(bundle(item + fullOf('B')));
        QVERIFY(!tile.image().isNull());
    }
}

int main(int argc, char** argv) {
    return runTest<TestIncomingBundle>(argc, argv);
}

#include "test_incoming_bundle.moc"
