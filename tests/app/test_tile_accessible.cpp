#include "Announcements.h"
#include "TestEnvironment.h"
#include "TileUnderTest.h"

#include <QAccessible>

using namespace std::string_literals;

namespace {

/// A screen update whose text is `line` and blanks.
std::string screenUpdate(const std::string& line) {
    const std::string text = line + std::string(320 - line.size(), ' ');
    return "\0\0\0\0BNDLT\0\0\x01\x40"s + text;
}

std::string graphicsUpdate() {
    std::string update = "\0\0\0\0BNDLG\0\0\x07\x80"s;
    update.append(1920, '\x55');
    return update;
}

QString read(QWidget* widget, QAccessible::Text kind) {
    return QAccessible::queryAccessibleInterface(widget)->text(kind);
}

} // namespace

/// A tile for an operator who cannot see it.
class TestTileAccessible : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { Q_INIT_RESOURCE(group); }
    void nameAndState_data();
    void nameAndState();
    void theScreensText();
    void theScreenSaysHowItsTileStands();
    void buttonsSayWhatTheyDo();
    void changesAreAnnounced();
    void screenUpdatesAreNotAnnounced();
};

void TestTileAccessible::nameAndState_data() {
    QTest::addColumn<Link>("link");
    QTest::addColumn<bool>("sends");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("host");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("state");

    const QString offline = QStringLiteral("not connected, receives no keys");
    QTest::newRow("empty") << Link::None << false << ""
                           << ""
                           << "Empty tile" << offline;
    QTest::newRow("empty, but told to send") << Link::None << true << ""
                                             << ""
                                             << "Empty tile" << offline;
    QTest::newRow("closed") << Link::Closed << true << "North"
                            << "unit3"
                            << "North@unit3" << offline;
    QTest::newRow("open") << Link::Open << false << ""
                          << "unit3"
                          << "unit3"
                          << "connected, receives no keys";
    QTest::newRow("open, sending") << Link::Open << true << "North"
                                   << "unit3"
                                   << "North@unit3"
                                   << "connected, receives keys";
    QTest::newRow("markup is read as it is") << Link::Open << false << ""
                                             << "<b>x</b>"
                                             << "<b>x</b>"
                                             << "connected, receives no keys";
}

void TestTileAccessible::nameAndState() {
    QFETCH(const Link, link);
    QFETCH(const bool, sends);
    QFETCH(const QString, label);
    QFETCH(const QString, host);
    QFETCH(const QString, name);
    QFETCH(const QString, state);
    Tile tile;
    tile.give(link, label, host);
    tile.widget->setSendState(sends);
    auto* interface = QAccessible::queryAccessibleInterface(tile.widget.get());
    QCOMPARE(interface->role(), QAccessible::Grouping);
    QCOMPARE(interface->text(QAccessible::Name), name);
    QCOMPARE(interface->text(QAccessible::Description).section(u'\n', 0, 0), state);
    // Its parts are found through it.
    QVERIFY(interface->indexOfChild(QAccessible::queryAccessibleInterface(tile.display())) >= 0);
}

void TestTileAccessible::theScreensText() {
    Tile tile;
    FakeLink* link = tile.give(Link::Open, {}, QStringLiteral("unit3"));
    const QString state = QStringLiteral("connected, receives no keys\n");
    const auto description = [&tile] { return read(tile.widget.get(), QAccessible::Description); };
    tile.widget->incomingPacket(screenUpdate("Depth 12.5"));
    QCOMPARE(description(), state + QStringLiteral("Depth 12.5"));
    tile.widget->incomingPacket(screenUpdate("Depth 13.0"));
    QCOMPARE(description(), state + QStringLiteral("Depth 13.0"));
    tile.widget->incomingPacket(graphicsUpdate());
    QCOMPARE(description(), state + QStringLiteral("The screen shows graphics"));
    link->close();
    QCOMPARE(description(), QStringLiteral("not connected, receives no keys"));
}

void TestTileAccessible::theScreenSaysHowItsTileStands() {
    Tile tile;
    const auto name = [&tile] { return read(tile.display(), QAccessible::Name); };
    QCOMPARE(name(), QStringLiteral("Empty tile, not connected, receives no keys"));
    FakeLink* link = tile.give(Link::Open, QStringLiteral("North"), QStringLiteral("unit3"));
    QCOMPARE(name(), QStringLiteral("North@unit3, connected, receives no keys"));
    tile.widget->toggleSendState();
    QCOMPARE(name(), QStringLiteral("North@unit3, connected, receives keys"));
    tile.widget->incomingPacket(screenUpdate("Depth 12.5"));
    QCOMPARE(read(tile.display(), QAccessible::Description), QStringLiteral("Depth 12.5"));
    link->close();
    QCOMPARE(name(), QStringLiteral("North@unit3, not connected, receives no keys"));
}

void TestTileAccessible::buttonsSayWhatTheyDo() {
    Tile tile;
    QCOMPARE(read(tile.connectButton(), QAccessible::Name), QStringLiteral("Connect"));
    QCOMPARE(read(tile.killButton(), QAccessible::Name), QStringLiteral("Remove"));
    FakeLink* link = tile.give(Link::Open);
    QCOMPARE(read(tile.connectButton(), QAccessible::Name), QStringLiteral("Disconnect"));
    QCOMPARE(tile.connectButton()->text(), QStringLiteral("Connect"));
    link->close();
    QCOMPARE(read(tile.connectButton(), QAccessible::Name), QStringLiteral("Connect"));
}

void TestTileAccessible::changesAreAnnounced() {
    Tile tile;
    tile.widget->show();
    auto* link = new FakeLink;
    announcements::takeAll();
    using Events = QList<QAccessible::Event>;
    const Events change{QAccessible::DescriptionChanged};
    const auto onTile = [&] { return announcements::takeAbout(tile.widget.get()); };
    const auto onScreen = [&] { return announcements::takeAbout(tile.display()); };

    tile.widget->connectEther({}, QStringLiteral("unit3"), link, "192.0.2.1", 0, 7100);
    QCOMPARE(onTile(), (Events{QAccessible::DescriptionChanged, QAccessible::NameChanged}));
    QVERIFY(onScreen().contains(QAccessible::NameChanged));
    link->open();
    QCOMPARE(onTile(), change);
    QVERIFY(onScreen().contains(QAccessible::NameChanged));
    tile.widget->setSendState(true);
    QCOMPARE(onTile(), change);
    QVERIFY(onScreen().contains(QAccessible::NameChanged));
    // What is so already is not said again.
    tile.widget->setSendState(true);
    QCOMPARE(onTile(), Events());
    QCOMPARE(onScreen(), Events());
    tile.widget->setSendState(false);
    QCOMPARE(onTile(), change);
    link->close();
    QCOMPARE(onTile(), change);
}

void TestTileAccessible::screenUpdatesAreNotAnnounced() {
    Tile tile;
    tile.widget->show();
    FakeLink* link = tile.give(Link::Open, {}, QStringLiteral("unit3"));
    announcements::takeAll();
    for (int i = 0; i < 100; ++i) {
        emit link->signalFrom(screenUpdate(std::to_string(i)));
        emit link->signalFrom(graphicsUpdate());
    }
    QCOMPARE(announcements::takeAll(), 0);
}

int main(int argc, char** argv) {
    return runTest<TestTileAccessible>(argc, argv);
}

#include "test_tile_accessible.moc"
