#include "ConnectionWidget.h"
#include "Frame.h"
#include "ModalDialog.h"
#include "NewConnection.h"
#include "PtyLine.h"
#include "TestEnvironment.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSerialPortInfo>
#include <QSignalSpy>
#include <QToolButton>

namespace {

constexpr int patience = 20000;

/// The dialog and what a test looks at.
struct Dialog {
    QComboBox* ports() { return widget.findChild<QComboBox*>(QStringLiteral("serialPorts")); }
    QComboBox* list() { return widget.findChild<QComboBox*>(QStringLiteral("etherList")); }
    QLineEdit* label() { return widget.findChild<QLineEdit*>(QStringLiteral("nameEdit")); }
    QRadioButton* serial() {
        return widget.findChild<QRadioButton*>(QStringLiteral("serialButton"));
    }
    QRadioButton* ether() { return widget.findChild<QRadioButton*>(QStringLiteral("etherButton")); }

    NewConnection widget;
};

/// Connects a tile to a line by way of the dialog.
void connectTile(ConnectionWidget& tile, const QString& label, const QString& port) {
    Dialog dialog;
    dialog.ports()->addItem(port);
    dialog.widget.setFor(true, label, port);
    dialog.widget.makeConnection(&tile);
}

} // namespace

class TestSerialConnection : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { Q_INIT_RESOURCE(group); }
    void portsAreListed();
    void remaking_data();
    void remaking();
    void choosingMeansTheKind();
    void keysGoDownTheLine();
    void messagesComeUpTheLine();
    void disconnectingEndsTheFrameAtOnce();
    void aGoneLineIsRemade();
    void aPortThatDoesNotOpen();
};

void TestSerialConnection::portsAreListed() {
    Dialog dialog;
    QStringList expected;
    for (const auto& port : QSerialPortInfo::availablePorts())
        expected << port.portName();
    QStringList listed;
    for (int i = 0; i < dialog.ports()->count(); ++i)
        listed << dialog.ports()->itemText(i);
    QCOMPARE(listed, expected);
    QVERIFY(!dialog.ports()->isEditable());
    QVERIFY(dialog.ether()->isChecked());
}

void TestSerialConnection::remaking_data() {
    QTest::addColumn<QString>("host");
    QTest::addColumn<QString>("current");

    QTest::newRow("first") << "portA"
                           << "portA";
    QTest::newRow("second") << "portB"
                            << "portB";
    QTest::newRow("gone") << "portC"
                          << "portA";
    QTest::newRow("other case") << "PORTB"
                                << "portA";
    QTest::newRow("part of a name") << "ortB"
                                    << "portA";
}

void TestSerialConnection::remaking() {
    QFETCH(const QString, host);
    QFETCH(const QString, current);
    Dialog dialog;
    dialog.ports()->clear();
    dialog.ports()->addItems({QStringLiteral("portA"), QStringLiteral("portB")});
    const QString offered = dialog.list()->currentText();
    dialog.widget.setFor(true, QStringLiteral("North"), host);
    QCOMPARE(dialog.widget.windowTitle(), QStringLiteral("Remake Connection"));
    QVERIFY(dialog.serial()->isChecked());
    QVERIFY(!dialog.ether()->isChecked());
    QCOMPARE(dialog.label()->text(), QStringLiteral("North"));
    QCOMPARE(dialog.ports()->currentText(), current);
    QCOMPARE(dialog.list()->currentText(), offered);
}

void TestSerialConnection::choosingMeansTheKind() {
    Dialog dialog;
    dialog.ports()->addItem(QStringLiteral("portA"));
    emit dialog.ports()->activated(0);
    QVERIFY(dialog.serial()->isChecked());
    QTest::keyClick(dialog.list()->lineEdit(), Qt::Key_1);
    QVERIFY(dialog.ether()->isChecked());
    emit dialog.ports()->activated(0);
    emit dialog.list()->activated(0);
    QVERIFY(dialog.ether()->isChecked());
}

void TestSerialConnection::keysGoDownTheLine() {
    PtyLine line;
    ConnectionWidget tile;
    connectTile(tile, QStringLiteral("North"), line.portName());
    QVERIFY(tile.IsConnected());
    QCOMPARE(tile.findChild<QLabel*>("nameLabel")->text(),
             QStringLiteral("North@") + line.portName());
    QVERIFY(tile.findChild<QToolButton*>("killBtn")->isHidden());
    line.clear();
    tile.keyPressed(0x6000);
    tile.setSendState(true);
    QVERIFY(isRed(tile));
    tile.keyPressed(0x6201);
    QTRY_VERIFY_WITH_TIMEOUT(line.received().contains(QByteArray::fromHex("4b00026201")), patience);
    QVERIFY(!line.received().contains(QByteArray::fromHex("4b00026000")));
}

void TestSerialConnection::messagesComeUpTheLine() {
    PtyLine line;
    ConnectionWidget tile;
    connectTile(tile, {}, line.portName());
    QSignalSpy chat(&tile, &ConnectionWidget::incomingChat);
    line.write(QByteArray::fromHex("4d0a0003") + "abc");
    QTRY_COMPARE_WITH_TIMEOUT(chat.size(), 1, patience);
    QCOMPARE(chat[0][0].toString(), line.portName());
    QCOMPARE(chat[0][1].toString(), QStringLiteral("abc"));
}

void TestSerialConnection::disconnectingEndsTheFrameAtOnce() {
    PtyLine line;
    ConnectionWidget tile;
    connectTile(tile, {}, line.portName());
    tile.setSendState(true);
    tile.Disconnect();
    QVERIFY(!tile.IsConnected());
    QVERIFY(isRaised(tile));
    QTRY_VERIFY_WITH_TIMEOUT(!tile.findChild<QToolButton*>("killBtn")->isHidden(), patience);
}

void TestSerialConnection::aGoneLineIsRemade() {
    PtyLine line;
    ConnectionWidget tile;
    connectTile(tile, QStringLiteral("North"), line.portName());
    tile.setSendState(true);
    line.unplug();
    QTRY_VERIFY_WITH_TIMEOUT(!tile.IsConnected(), patience);
    QTRY_VERIFY_WITH_TIMEOUT(isRaised(tile), patience);
    QTRY_VERIFY_WITH_TIMEOUT(!tile.findChild<QToolButton*>("killBtn")->isHidden(), patience);
    const ModalDialog<NewConnection> dialog([](NewConnection& shown) {
        QVERIFY(shown.findChild<QRadioButton*>("serialButton")->isChecked());
        QCOMPARE(shown.findChild<QLineEdit*>("nameEdit")->text(), QStringLiteral("North"));
        shown.reject();
    });
    tile.findChild<QToolButton*>("connectBtn")->click();
    QVERIFY(dialog.answered());
}

void TestSerialConnection::aPortThatDoesNotOpen() {
    ConnectionWidget tile;
    tile.setSendState(true);
    connectTile(tile, {}, QStringLiteral("/nonexistent/port"));
    QVERIFY(!tile.IsConnected());
    QVERIFY(isRaised(tile));
    QVERIFY(!tile.findChild<QToolButton*>("killBtn")->isHidden());
    QCOMPARE(tile.findChild<QLabel*>("nameLabel")->text(), QStringLiteral("/nonexistent/port"));
}

int main(int argc, char** argv) {
    return runTest<TestSerialConnection>(argc, argv);
}

#include "test_serial_connection.moc"
