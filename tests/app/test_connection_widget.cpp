#include "Frame.h"
#include "TestEnvironment.h"
#include "TileUnderTest.h"

#include <QGridLayout>
#include <QMenu>
#include <QSignalSpy>

using namespace std::string_literals;

class TestConnectionWidget : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { Q_INIT_RESOURCE(group); }
    void emptyTile();
    void buttonsNeverTakeTheFocus();
    void nameText_data();
    void nameText();
    void theStripHasRoomForItsLetters_data();
    void theStripHasRoomForItsLetters();
    void namesArePlainText();
    void incomingChat_data();
    void incomingChat();
    void otherPacketsAreIgnored_data();
    void otherPacketsAreIgnored();
    void contextMenuBroadcasts();
    void displayChangesAreForwarded();
    void killButtonAsksToBeRemoved();
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

void TestConnectionWidget::theStripHasRoomForItsLetters_data() {
    QTest::addColumn<int>("percent");
    for (const int percent : {100, 120, 200, 300})
        QTest::addRow("%d %%", percent) << percent;
}

void TestConnectionWidget::theStripHasRoomForItsLetters() {
    QFETCH(const int, percent);
    Tile tile;
    tile.give(Link::Open, QStringLiteral("Tank"), QStringLiteral("unit3"));
    tile.widget->show();
    QFont font = tile.widget->font();
    font.setPointSizeF(font.pointSizeF() * percent / 100);
    tile.widget->setFont(font);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    tile.widget->resize(tile.widget->minimumSize());
    const QLabel* name = tile.name();
    QVERIFY(name->height() >= name->fontMetrics().height());
    QVERIFY(name->geometry().top() > tile.display()->geometry().bottom());
    QVERIFY(tile.widget->contentsRect().contains(name->geometry()));
    QVERIFY(tile.display()->height() >= tile.display()->minimumHeight());
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

int main(int argc, char** argv) {
    return runTest<TestConnectionWidget>(argc, argv);
}

#include "test_connection_widget.moc"
