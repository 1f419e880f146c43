#include "ConnectionWidget.h"
#include "FakeLink.h"
#include "Frame.h"
#include "LCD7100.h"
#include "ModalDialog.h"
#include "NewConnection.h"
#include "TestEnvironment.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QRadioButton>
#include <QSignalSpy>
#include <QToolButton>

#include <memory>

using namespace std::string_literals;

namespace {

constexpr auto connectIcon = ":/buttons/images/Connect.png";
constexpr auto disconnectIcon = ":/buttons/images/Disconnect.png";
constexpr auto killIcon = ":/buttons/images/button_cancel.png";

enum class Link { None, Closed, Open };

/// A tile and what a test looks at.
struct Tile {
    Tile() { widget->resize(widget->minimumSize()); }

    FakeLink* give(Link state, const QString& label = {}, const QString& host = {}) {
        if (state == Link::None)
            return nullptr;
        auto* link = new FakeLink;
        widget->connectEther(label, host, link, "192.0.2.1", 0, 7100);
        if (state == Link::Open)
            link->open();
        return link;
    }
    template <typename Widget>
    Widget* find(const char* name) const {
        auto* child = widget->findChild<Widget*>(QLatin1String(name));
        Q_ASSERT(child);
        return child;
    }
    QToolButton* connectButton() const { return find<QToolButton>("connectBtn"); }
    QToolButton* killButton() const { return find<QToolButton>("killBtn"); }
    QLabel* name() const { return find<QLabel>("nameLabel"); }
    LCD7100* display() const { return find<LCD7100>("theDisplay"); }

    std::unique_ptr<ConnectionWidget> widget = std::make_unique<ConnectionWidget>();
};

bool shows(const QToolButton* button, const char* icon) {
    const QSize size(24, 24);
    const QImage expected = QIcon(QLatin1String(icon)).pixmap(size).toImage();
    return !expected.isNull() && button->icon().pixmap(size).toImage() == expected;
}

} // namespace

Q_DECLARE_METATYPE(Link)

class TestConnectionWidget : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { Q_INIT_RESOURCE(group); }
    void emptyTile();
    void buttonsNeverTakeTheFocus();
    void connectEtherTakesTheLinkOver();
    void nameText_data();
    void nameText();
    void namesArePlainText();
    void connectedAndDisconnected();
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
    void incomingChat_data();
    void incomingChat();
    void otherPacketsAreIgnored_data();
    void otherPacketsAreIgnored();
    void contextMenuBroadcasts();
    void displayChangesAreForwarded();
    void killButtonAsksToBeRemoved();
    void connectButtonDropsAnOpenLink();
    void connectButtonRemakesALostConnection();
    void connectButtonOfAnEmptyTile();
    void removalWhileTheDialogIsOpen();
    void anotherLinkReplacesTheFirst();
    void linkDiesWithTheTile();
    void linkMayBeReplacedInItsOwnSignal();
};

void TestConnectionWidget::emptyTile() {
    const Tile tile;
    QCOMPARE(tile.connectButton()->text(), QStringLiteral("Connect"));
    QVERIFY(shows(tile.connectButton(), connectIcon));
    QVERIFY(shows(tile.killButton(), killIcon));
    QVERIFY(!tile.killButton()->isHidden());
    QCOMPARE(tile.name()->text(), QStringLiteral("TextLabel"));
    QCOMPARE(tile.widget->minimumWidth(), tile.display()->minimumWidth() + 4);
    QCOMPARE(tile.widget->minimumHeight(), tile.display()->minimumHeight() + 32);
    QCOMPARE(tile.widget->contextMenuPolicy(), Qt::CustomContextMenu);
    QVERIFY(isRaised(*tile.widget));
    QVERIFY(!tile.widget->IsConnected());
    // Neither has anything to act on.
    tile.widget->Disconnect();
    tile.widget->keyPressed(65);
    QVERIFY(qobject_cast<QGridLayout*>(tile.widget->layout()));
}

void TestConnectionWidget::buttonsNeverTakeTheFocus() {
    const Tile tile;
    QCOMPARE(tile.connectButton()->focusPolicy(), Qt::NoFocus);
    QCOMPARE(tile.killButton()->focusPolicy(), Qt::NoFocus);
}

void TestConnectionWidget::connectEtherTakesTheLinkOver() {
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

void TestConnectionWidget::nameText_data() {
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("host");
    QTest::addColumn<QString>("text");

    QTest::newRow("label and host") << "North"
                                    << "unit3"
                                    << "North@unit3";
    QTest::newRow("no label") << ""
                              << "unit3"
                              << "unit3";
    QTest::newRow("no host") << "North"
                             << ""
                             << "North@";
    QTest::newRow("blank label") << " "
                                 << "unit3"
                                 << " @unit3";
    QTest::newRow("beyond ASCII") << QString::fromUtf8("Høyde") << "10.0.0.5"
                                  << QString::fromUtf8("Høyde@10.0.0.5");
}

void TestConnectionWidget::nameText() {
    QFETCH(const QString, label);
    QFETCH(const QString, host);
    QFETCH(const QString, text);
    Tile tile;
    tile.give(Link::Open, label, host);
    QCOMPARE(tile.name()->text(), text);

    QSignalSpy chat(tile.widget.get(), &ConnectionWidget::incomingChat);
    tile.widget->incomingPacket("\0\0\0\0CHATx"s);
    QCOMPARE(chat.size(), 1);
    QCOMPARE(chat[0][0].toString(), text);
}

void TestConnectionWidget::namesArePlainText() {
    Tile tile;
    const QString hostile = QStringLiteral("<b>x</b>\n\n\n\n<img src='y'>").repeated(50);
    const int height = tile.widget->minimumSizeHint().height();
    const int width = tile.widget->minimumSizeHint().width();
    tile.give(Link::Closed, {}, hostile);
    QCOMPARE(tile.name()->textFormat(), Qt::PlainText);
    QVERIFY(tile.name()->toolTip().contains(QStringLiteral("&lt;b&gt;")));
    // However long, a name does not make the tile larger.
    QCOMPARE(tile.widget->minimumSizeHint(), QSize(width, height));
}

void TestConnectionWidget::connectedAndDisconnected() {
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

void TestConnectionWidget::sendStateAndFrame_data() {
    QTest::addColumn<Link>("link");
    QTest::addColumn<bool>("red");

    QTest::newRow("no link") << Link::None << false;
    QTest::newRow("closed link") << Link::Closed << false;
    QTest::newRow("open link") << Link::Open << true;
}

void TestConnectionWidget::sendStateAndFrame() {
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

void TestConnectionWidget::storedSendStateTakesEffectOnConnection() {
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

void TestConnectionWidget::attemptUnderWayShowsItsFrame() {
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

void TestConnectionWidget::frameDoesNotColourItsContent() {
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

void TestConnectionWidget::frameIsPainted() {
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

void TestConnectionWidget::keys_data() {
    QTest::addColumn<int>("code");
    QTest::addColumn<QByteArray>("frame");

    const QByteArray head = QByteArray::fromHex("3c443e0000000a00000000") + "KEYS";
    QTest::newRow("0") << 0 << head + QByteArray::fromHex("0000");
    QTest::newRow("a") << 0x61 << head + QByteArray::fromHex("0061");
    QTest::newRow("F1") << 0x6000 << head + QByteArray::fromHex("6000");
    QTest::newRow("group 1, key 0x41") << 0x0141 << head + QByteArray::fromHex("0141");
    QTest::newRow("largest") << 0xFFFF << head + QByteArray::fromHex("ffff");
}

void TestConnectionWidget::keys() {
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

void TestConnectionWidget::displayKeys_data() {
    QTest::addColumn<int>("group");
    QTest::addColumn<int>("key");
    QTest::addColumn<QByteArray>("code");

    QTest::newRow("0 0") << 0 << 0 << QByteArray::fromHex("0000");
    QTest::newRow("1 0x41") << 1 << 0x41 << QByteArray::fromHex("0141");
    QTest::newRow("F5 with both") << 100 << 3 << QByteArray::fromHex("6403");
    QTest::newRow("largest") << 255 << 255 << QByteArray::fromHex("ffff");
}

void TestConnectionWidget::displayKeys() {
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

void TestConnectionWidget::softKeyOnTheDisplay() {
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

void TestConnectionWidget::packetsAreSentWhole() {
    Tile tile;
    FakeLink* link = tile.give(Link::Open);
    tile.widget->signalFor7100("\0\0\0\0CHAThello"s);
    QVERIFY(link->sent.empty());
    tile.widget->setSendState(true);
    tile.widget->signalFor7100("\0\0\0\0CHAThello"s);
    QCOMPARE(link->sent.size(), std::size_t{1});
    QCOMPARE(link->sent[0], "<D>\0\0\0\x0d\0\0\0\0CHAThello"s);
}

void TestConnectionWidget::clicks_data() {
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

void TestConnectionWidget::clicks() {
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

void TestConnectionWidget::incomingChat_data() {
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("text");

    QTest::newRow("text") << QByteArray("hello") << "hello";
    QTest::newRow("empty") << QByteArray() << "";
    QTest::newRow("up to NUL") << QByteArray("one\0two", 7) << "one";
    QTest::newRow("NUL first") << QByteArray("\0two", 4) << "";
    QTest::newRow("a byte is a character") << QByteArray("\xe9\xff") << QString::fromUtf8("éÿ");
    QTest::newRow("markup") << QByteArray("<b>x</b>") << "<b>x</b>";
    QTest::newRow("a megabyte") << QByteArray(1 << 20, 'x') << QString(1 << 20, u'x');
}

void TestConnectionWidget::incomingChat() {
    QFETCH(const QByteArray, body);
    QFETCH(const QString, text);
    Tile tile;
    FakeLink* link = tile.give(Link::Open, QStringLiteral("North"), QStringLiteral("unit3"));
    QSignalSpy chat(tile.widget.get(), &ConnectionWidget::incomingChat);
    emit link->signalFrom("\1\2\3\4CHAT" + body.toStdString());
    QCOMPARE(chat.size(), 1);
    QCOMPARE(chat[0][0].toString(), QStringLiteral("North@unit3"));
    QCOMPARE(chat[0][1].toString(), text);
}

void TestConnectionWidget::otherPacketsAreIgnored_data() {
    QTest::addColumn<QByteArray>("packet");

    const QByteArray chat("\0\0\0\0CHAT", 8);
    for (qsizetype length = 0; length < chat.size(); ++length)
        QTest::addRow("%d bytes", int(length)) << chat.left(length);
    for (const char* type : {"FXFR", "SOFT", "VARS", "KEYS", "COMI", "FXTO", "chat", "XXXX"})
        QTest::newRow(type) << QByteArray(4, '\0') + type + "Tbody";
}

void TestConnectionWidget::otherPacketsAreIgnored() {
    QFETCH(const QByteArray, packet);
    Tile tile;
    FakeLink* link = tile.give(Link::Open);
    tile.widget->setSendState(true);
    QSignalSpy chat(tile.widget.get(), &ConnectionWidget::incomingChat);
    tile.widget->incomingPacket(packet.toStdString());
    QVERIFY(chat.empty());
    QVERIFY(link->sent.empty());
    QVERIFY(isRed(*tile.widget));
}

void TestConnectionWidget::contextMenuBroadcasts() {
    const Tile tile;
    auto* menu = tile.widget->findChild<QMenu*>(QString(), Qt::FindDirectChildrenOnly);
    QVERIFY(menu);
    const auto actions = menu->actions();
    QCOMPARE(actions.size(), 2);
    QCOMPARE(actions[0]->text(), QStringLiteral("Open kbd comm to all"));
    QCOMPARE(actions[1]->text(), QStringLiteral("Close kbd comm to all"));

    QSignalSpy start(tile.widget.get(), &ConnectionWidget::startCommToAll);
    QSignalSpy stop(tile.widget.get(), &ConnectionWidget::stopCommToAll);
    actions[0]->trigger();
    QCOMPARE(start.size(), 1);
    QCOMPARE(stop.size(), 0);
    actions[1]->trigger();
    QCOMPARE(start.size(), 1);
    QCOMPARE(stop.size(), 1);

    QVERIFY(!menu->isVisible());
    emit tile.widget->customContextMenuRequested(QPoint(1, 1));
    QVERIFY(menu->isVisible());
    menu->close();
}

void TestConnectionWidget::displayChangesAreForwarded() {
    const Tile tile;
    QSignalSpy colors(tile.widget.get(), &ConnectionWidget::colorChanged);
    QSignalSpy families(tile.widget.get(), &ConnectionWidget::fontFamilyChanged);
    tile.display()->setColorsFromDialog(Qt::green, Qt::black, Qt::white);
    QCOMPARE(colors.size(), 1);
    QCOMPARE(colors[0][0].toByteArray(), QByteArray::fromHex("0000000300ff00ff00"
                                                             "0000000300ff000000"
                                                             "0000000300ffffffff"));
    emit tile.display()->fontFamilyChanged(QStringLiteral("Courier"));
    QCOMPARE(families.size(), 1);
    QCOMPARE(families[0][0].toString(), QStringLiteral("Courier"));

    // What comes from outside goes to the display and is not sent back.
    tile.widget->setColor(QByteArray::fromHex("0000000300ff010203"
                                              "0000000300ff040506"
                                              "0000000300ff070809"));
    tile.widget->setFontFamily(QStringLiteral("Helvetica"));
    QCOMPARE(tile.display()->backColor(), QColor(4, 5, 6));
    QCOMPARE(tile.display()->getFontFamily(), QStringLiteral("Helvetica"));
    QCOMPARE(colors.size(), 1);
    QCOMPARE(families.size(), 1);
}

void TestConnectionWidget::killButtonAsksToBeRemoved() {
    const Tile tile;
    QSignalSpy kills(tile.widget.get(), &ConnectionWidget::killMe);
    tile.killButton()->click();
    QCOMPARE(kills.size(), 1);
    QCOMPARE(kills[0][0].value<ConnectionWidget*>(), tile.widget.get());
}

void TestConnectionWidget::connectButtonDropsAnOpenLink() {
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

void TestConnectionWidget::connectButtonRemakesALostConnection() {
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

void TestConnectionWidget::connectButtonOfAnEmptyTile() {
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

void TestConnectionWidget::removalWhileTheDialogIsOpen() {
    Tile tile;
    tile.give(Link::Closed);
    const ModalDialog<NewConnection> dialog([&](NewConnection& /*shown*/) { tile.widget.reset(); });
    tile.connectButton()->click();
    QVERIFY(dialog.answered());
    QVERIFY(!tile.widget);
}

void TestConnectionWidget::anotherLinkReplacesTheFirst() {
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

void TestConnectionWidget::linkDiesWithTheTile() {
    Tile tile;
    const QPointer<FakeLink> link = tile.give(Link::Open);
    tile.widget.reset();
    QVERIFY(link.isNull());
}

void TestConnectionWidget::linkMayBeReplacedInItsOwnSignal() {
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
    return runTest<TestConnectionWidget>(argc, argv);
}

#include "test_connection_widget.moc"
