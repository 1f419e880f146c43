#include "Frame.h"
#include "TestEnvironment.h"
#include "TileUnderTest.h"

using namespace std::string_literals;

class TestTileKeys : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { Q_INIT_RESOURCE(group); }
    void sendStateAndFrame_data();
    void sendStateAndFrame();
    void storedSendStateTakesEffectOnConnection();
    void attemptUnderWayShowsItsFrame();
    void frameDoesNotColourItsContent();
    void frameIsPainted();
    void keys_data();
    void keys();
    void displayKeys_data();
    void displayKeys();
    void softKeyOnTheDisplay();
    void packetsAreSentWhole();
    void clicks_data();
    void clicks();
};

void TestTileKeys::sendStateAndFrame_data() {
    QTest::addColumn<Link>("link");
    QTest::addColumn<bool>("red");

    QTest::newRow("no link") << Link::None << false;
    QTest::newRow("closed link") << Link::Closed << false;
    QTest::newRow("open link") << Link::Open << true;
}

void TestTileKeys::sendStateAndFrame() {
    QFETCH(const Link, link);
    QFETCH(const bool, red);
    Tile tile;
    tile.give(link);
    tile.widget->setSendState(true);
    QCOMPARE(isRed(*tile.widget), red);
    QCOMPARE(isRaised(*tile.widget), !red);
    tile.widget->setSendState(false);
    QVERIFY(isRaised(*tile.widget));
}

void TestTileKeys::storedSendStateTakesEffectOnConnection() {
    Tile tile;
    tile.widget->setSendState(true);
    FakeLink* link = tile.give(Link::Closed);
    tile.widget->keyPressed(65);
    QVERIFY(isRaised(*tile.widget));
    QVERIFY(link->sent.empty());

    link->open();
    QVERIFY(isRed(*tile.widget));
    tile.widget->keyPressed(65);
    QCOMPARE(link->sent.size(), std::size_t{1});
}

void TestTileKeys::attemptUnderWayShowsItsFrame() {
    Tile tile;
    tile.widget->setSendState(true);
    auto* link = new FakeLink;
    link->openSilently();
    tile.widget->connectEther({}, {}, link, "192.0.2.1", 0, 7100);
    // What is typed now reaches the instrument once the attempt succeeds.
    QVERIFY(isRed(*tile.widget));
    tile.widget->keyPressed(65);
    QCOMPARE(link->sent.size(), std::size_t{1});
}

void TestTileKeys::frameDoesNotColourItsContent() {
    Tile tile;
    tile.give(Link::Open, QStringLiteral("North"), QStringLiteral("unit3"));
    tile.widget->resize(300, 200);
    const QImage before = tile.widget->grab().toImage();
    tile.widget->setSendState(true);
    const QImage after = tile.widget->grab().toImage();
    const QRect label = tile.name()->geometry();
    QVERIFY(label.width() > 100);
    QCOMPARE(after.copy(label), before.copy(label));
}

void TestTileKeys::frameIsPainted() {
    Tile tile;
    tile.give(Link::Open);
    tile.widget->resize(300, 200);
    const QRgb red = QColor(Qt::red).rgb();
    QVERIFY(tile.widget->grab().toImage().pixel(0, 100) != red);
    tile.widget->setSendState(true);
    const QImage image = tile.widget->grab().toImage();
    for (const QPoint point : {QPoint(0, 0), QPoint(1, 100), QPoint(298, 100), QPoint(299, 199),
                               QPoint(150, 1), QPoint(150, 198)})
        QCOMPARE(image.pixel(point), red);
    // Nothing covers the frame.
    for (const auto* child : tile.widget->findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
        if (!child->isWindow() && !child->isHidden())
            QVERIFY(tile.widget->rect().adjusted(2, 2, -2, -2).contains(child->geometry()));
}

void TestTileKeys::keys_data() {
    QTest::addColumn<int>("code");
    QTest::addColumn<QByteArray>("frame");

    const QByteArray head = QByteArray::fromHex("3c443e0000000a00000000") + "KEYS";
    QTest::newRow("0") << 0 << head + QByteArray::fromHex("0000");
    QTest::newRow("a") << 0x61 << head + QByteArray::fromHex("0061");
    QTest::newRow("F1") << 0x6000 << head + QByteArray::fromHex("6000");
    QTest::newRow("group 1, key 0x41") << 0x0141 << head + QByteArray::fromHex("0141");
    QTest::newRow("largest") << 0xFFFF << head + QByteArray::fromHex("ffff");
}

void TestTileKeys::keys() {
    QFETCH(const int, code);
    QFETCH(const QByteArray, frame);
    Tile tile;
    FakeLink* link = tile.give(Link::Open);
    tile.widget->keyPressed(static_cast<unsigned short>(code));
    QVERIFY(link->sent.empty());

    tile.widget->setSendState(true);
    tile.widget->keyPressed(static_cast<unsigned short>(code));
    QCOMPARE(link->sent.size(), std::size_t{1});
    QCOMPARE(QByteArray::fromStdString(link->sent[0]), frame);
    QCOMPARE(frame.size(), 17);

    tile.widget->setSendState(false);
    tile.widget->keyPressed(static_cast<unsigned short>(code));
    QCOMPARE(link->sent.size(), std::size_t{1});
}

void TestTileKeys::displayKeys_data() {
    QTest::addColumn<int>("group");
    QTest::addColumn<int>("key");
    QTest::addColumn<QByteArray>("code");

    QTest::newRow("0 0") << 0 << 0 << QByteArray::fromHex("0000");
    QTest::newRow("1 0x41") << 1 << 0x41 << QByteArray::fromHex("0141");
    QTest::newRow("F5 with both") << 100 << 3 << QByteArray::fromHex("6403");
    QTest::newRow("largest") << 255 << 255 << QByteArray::fromHex("ffff");
}

void TestTileKeys::displayKeys() {
    QFETCH(const int, group);
    QFETCH(const int, key);
    QFETCH(const QByteArray, code);
    Tile tile;
    FakeLink* link = tile.give(Link::Open);
    tile.widget->setSendState(true);
    tile.widget->displayKey(static_cast<unsigned char>(group), static_cast<unsigned char>(key));
    QCOMPARE(link->sent.size(), std::size_t{1});
    QCOMPARE(QByteArray::fromStdString(link->sent[0]).right(2), code);
}

void TestTileKeys::softKeyOnTheDisplay() {
    Tile tile;
    FakeLink* link = tile.give(Link::Open);
    tile.widget->resize(300, 200);
    tile.widget->grab();
    const QPoint lastBand(tile.display()->width() - 3, tile.display()->height() - 3);
    QTest::mouseClick(tile.display(), Qt::LeftButton, Qt::ShiftModifier, lastBand);
    QVERIFY(link->sent.empty());
    tile.widget->setSendState(true);
    QTest::mouseClick(tile.display(), Qt::LeftButton, Qt::ShiftModifier, lastBand);
    QCOMPARE(link->sent.size(), std::size_t{1});
    QCOMPARE(QByteArray::fromStdString(link->sent[0]).right(2), QByteArray::fromHex("6401"));
    // The click on the display has not switched the frame.
    QVERIFY(isRed(*tile.widget));
}

void TestTileKeys::packetsAreSentWhole() {
    Tile tile;
    FakeLink* link = tile.give(Link::Open);
    tile.widget->signalFor7100("\0\0\0\0CHAThello"s);
    QVERIFY(link->sent.empty());
    tile.widget->setSendState(true);
    tile.widget->signalFor7100("\0\0\0\0CHAThello"s);
    QCOMPARE(link->sent.size(), std::size_t{1});
    QCOMPARE(link->sent[0], "<D>\0\0\0\x0d\0\0\0\0CHAThello"s);
}

void TestTileKeys::clicks_data() {
    QTest::addColumn<Link>("link");
    QTest::addColumn<QString>("target");
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::addColumn<bool>("toggles");

    const auto left = Qt::LeftButton;
    QTest::newRow("frame") << Link::Open << QString() << left << true;
    QTest::newRow("name") << Link::Open << "nameLabel" << left << true;
    QTest::newRow("display") << Link::Open << "theDisplay" << left << false;
    QTest::newRow("frame, right") << Link::Open << QString() << Qt::RightButton << false;
    QTest::newRow("name, right") << Link::Open << "nameLabel" << Qt::RightButton << false;
    QTest::newRow("name, middle") << Link::Open << "nameLabel" << Qt::MiddleButton << false;
    QTest::newRow("display, right") << Link::Open << "theDisplay" << Qt::RightButton << false;
    QTest::newRow("frame, closed") << Link::Closed << QString() << left << false;
    QTest::newRow("name, closed") << Link::Closed << "nameLabel" << left << false;
    QTest::newRow("name, no link") << Link::None << "nameLabel" << left << false;
}

void TestTileKeys::clicks() {
    QFETCH(const Link, link);
    QFETCH(const QString, target);
    QFETCH(const Qt::MouseButton, button);
    QFETCH(const bool, toggles);
    Tile tile;
    FakeLink* itsLink = tile.give(link, {}, QStringLiteral("unit3"));
    tile.widget->resize(300, 200);
    tile.widget->show();
    QWidget* clicked =
        target.isEmpty() ? tile.widget.get() : tile.find<QWidget>(qPrintable(target));
    const QPoint position = target.isEmpty() ? QPoint(1, 0) : clicked->rect().center();

    QTest::mouseClick(clicked, button, Qt::NoModifier, position);
    QCOMPARE(isRed(*tile.widget), toggles);
    if (itsLink && link == Link::Closed) {
        // The click has not been remembered either.
        itsLink->open();
        QVERIFY(isRaised(*tile.widget));
        return;
    }
    QTest::mouseClick(clicked, button, Qt::NoModifier, position);
    QVERIFY(isRaised(*tile.widget));
}

int main(int argc, char** argv) {
    return runTest<TestTileKeys>(argc, argv);
}

#include "test_tile_keys.moc"
