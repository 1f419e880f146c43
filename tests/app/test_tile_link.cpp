#include "Frame.h"
#include "ModalDialog.h"
#include "NewConnection.h"
#include "TestEnvironment.h"
#include "TileUnderTest.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPointer>
#include <QRadioButton>

class TestTileLink : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { Q_INIT_RESOURCE(group); }
    void connectEtherTakesTheLinkOver();
    void connectedAndDisconnected();
    void connectButtonDropsAnOpenLink();
    void connectButtonRemakesALostConnection();
    void connectButtonOfAnEmptyTile();
    void removalWhileTheDialogIsOpen();
    void anotherLinkReplacesTheFirst();
    void linkDiesWithTheTile();
    void linkMayBeReplacedInItsOwnSignal();
};

void TestTileLink::connectEtherTakesTheLinkOver() {
    const Tile tile;
    auto* link = new FakeLink;
    tile.widget->connectEther(QStringLiteral("North"), QStringLiteral("unit3"), link, "fe80::1", 4,
                              7100);
    QCOMPARE(link->calls, QStringList(QStringLiteral("Connect fe80::1 4 7100")));
    QCOMPARE(tile.name()->text(), QStringLiteral("North@unit3"));
    QVERIFY(!tile.widget->IsConnected());
    link->open();
    QVERIFY(tile.widget->IsConnected());
}

void TestTileLink::connectedAndDisconnected() {
    Tile tile;
    FakeLink* link = tile.give(Link::Closed);
    QVERIFY(shows(tile.connectButton(), connectIcon));
    link->open();
    QVERIFY(shows(tile.connectButton(), disconnectIcon));
    QVERIFY(tile.killButton()->isHidden());
    QVERIFY(isRaised(*tile.widget));
    tile.widget->setSendState(true);
    QVERIFY(isRed(*tile.widget));

    link->close();
    QVERIFY(shows(tile.connectButton(), connectIcon));
    QVERIFY(!tile.killButton()->isHidden());
    QVERIFY(isRaised(*tile.widget));
    // The link is kept, but it is another connection's keys that it would carry.
    link->open();
    QVERIFY(isRaised(*tile.widget));
    tile.widget->keyPressed(65);
    QVERIFY(link->sent.empty());
}

void TestTileLink::connectButtonDropsAnOpenLink() {
    Tile tile;
    QPointer<FakeLink> link = tile.give(Link::Open);
    tile.widget->setSendState(true);
    link->calls.clear();
    const ModalDialog<QDialog> dialog([](QDialog& unwanted) { unwanted.reject(); });
    tile.connectButton()->click();
    QVERIFY(!dialog.answered());
    QVERIFY(link);
    QCOMPARE(link->calls, QStringList(QStringLiteral("Disconnect")));
    QVERIFY(shows(tile.connectButton(), connectIcon));
    QVERIFY(isRaised(*tile.widget));
}

void TestTileLink::connectButtonRemakesALostConnection() {
    Tile tile;
    const QPointer<FakeLink> link =
        tile.give(Link::Open, QStringLiteral("North"), QStringLiteral("10.20.30.40"));
    link->close();
    bool linkWasGone = false;
    const ModalDialog<NewConnection> dialog([&](NewConnection& shown) {
        QCOMPARE(shown.windowTitle(), QStringLiteral("Remake Connection"));
        QCOMPARE(shown.findChild<QLineEdit*>("nameEdit")->text(), QStringLiteral("North"));
        QVERIFY(shown.findChild<QRadioButton*>("etherButton")->isChecked());
        QCOMPARE(shown.findChild<QComboBox*>("etherList")->currentText(),
                 QStringLiteral("10.20.30.40"));
        linkWasGone = link.isNull();
        shown.reject();
    });
    tile.connectButton()->click();
    QVERIFY(dialog.answered());
    QVERIFY(linkWasGone);
    // Cancelled: the tile is empty, with its name for the next time.
    QVERIFY(!tile.widget->IsConnected());
    QCOMPARE(tile.name()->text(), QStringLiteral("North@10.20.30.40"));
    QVERIFY(tile.widget->findChildren<QDialog*>().empty());
}

void TestTileLink::connectButtonOfAnEmptyTile() {
    const Tile tile;
    const ModalDialog<NewConnection> dialog([](NewConnection& shown) {
        QCOMPARE(shown.windowTitle(), QStringLiteral("Remake Connection"));
        QCOMPARE(shown.findChild<QLineEdit*>("nameEdit")->text(), QString());
        QVERIFY(shown.findChild<QRadioButton*>("etherButton")->isChecked());
        shown.reject();
    });
    tile.connectButton()->click();
    QVERIFY(dialog.answered());
    QCOMPARE(tile.name()->text(), QStringLiteral("TextLabel"));
}

void TestTileLink::removalWhileTheDialogIsOpen() {
    Tile tile;
    tile.give(Link::Closed);
    const ModalDialog<NewConnection> dialog([&](NewConnection& /*shown*/) { tile.widget.reset(); });
    tile.connectButton()->click();
    QVERIFY(dialog.answered());
    QVERIFY(!tile.widget);
}

void TestTileLink::anotherLinkReplacesTheFirst() {
    Tile tile;
    const QPointer<FakeLink> first = tile.give(Link::Open);
    tile.widget->setSendState(true);
    QVERIFY(isRed(*tile.widget));

    auto* second = new FakeLink;
    tile.widget->_connect(second);
    QVERIFY(isRaised(*tile.widget));
    QVERIFY(shows(tile.connectButton(), connectIcon));
    QTRY_VERIFY_WITH_TIMEOUT(first.isNull(), 10000);
    QVERIFY(second->calls.empty());
    second->open();
    QVERIFY(shows(tile.connectButton(), disconnectIcon));
    // Taken over once more, a link stays.
    tile.widget->_connect(second);
    QVERIFY(tile.widget->IsConnected());
    tile.widget->setSendState(true);
    tile.widget->keyPressed(65);
    QCOMPARE(second->sent.size(), std::size_t{1});
}

void TestTileLink::linkDiesWithTheTile() {
    Tile tile;
    const QPointer<FakeLink> link = tile.give(Link::Open);
    tile.widget.reset();
    QVERIFY(link.isNull());
}

void TestTileLink::linkMayBeReplacedInItsOwnSignal() {
    Tile tile;
    const QPointer<FakeLink> first = tile.give(Link::Open);
    connect(first, &FakeLink::disconnected, tile.widget.get(),
            [&tile] { tile.give(Link::Open, {}, QStringLiteral("second")); });
    first->close();
    QVERIFY(tile.widget->IsConnected());
    QCOMPARE(tile.name()->text(), QStringLiteral("second"));
    QTRY_VERIFY_WITH_TIMEOUT(first.isNull(), 10000);
}

int main(int argc, char** argv) {
    return runTest<TestTileLink>(argc, argv);
}

#include "test_tile_link.moc"
