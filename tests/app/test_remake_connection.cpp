#include "BoxRows.h"
#include "ConnectionWidget.h"
#include "FakeDnsSd.h"
#include "LCD7100.h"
#include "ModalDialog.h"
#include "NewConnection.h"
#include "RawInstrument.h"
#include "TestEnvironment.h"

#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>

namespace {

constexpr int patience = 20000;

QString nameOf(const ConnectionWidget& tile) {
    return tile.findChild<QLabel*>(QStringLiteral("nameLabel"))->text();
}

} // namespace

/// The dialog that remakes a tile's connection, while discovery tells it one thing or another.
class TestRemakeConnection : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void theInstrumentIsAwaitedByName();
    void noOtherIsOfferedInItsStead();
    void theInstrumentFoundIsConnectedTo();
    void anotherCanBePicked();
    void whatIsNotThereIsNotConnectedTo_data();
    void whatIsNotThereIsNotConnectedTo();
    void aTypedAddressIsOfferedAgain_data();
    void aTypedAddressIsOfferedAgain();
    void aTypedAddressOutlastsInstruments();
    void theNameTypedByHandIsTaken();

private:
    void remake(const QString& host);
    BonjourBox& box() { return *m_dialog->findChild<BonjourBox*>(QStringLiteral("etherList")); }

    std::unique_ptr<FakeDnsSd> m_library;
    std::unique_ptr<NewConnection> m_dialog;
};

void TestRemakeConnection::init() {
    m_library = std::make_unique<FakeDnsSd>();
}

void TestRemakeConnection::cleanup() {
    m_dialog.reset();
    QCOMPARE(m_library->running(), 0);
    m_library.reset();
}

void TestRemakeConnection::remake(const QString& host) {
    m_dialog = std::make_unique<NewConnection>();
    m_dialog->setFor(false, QStringLiteral("North"), host);
}

void TestRemakeConnection::theInstrumentIsAwaitedByName() {
    remake("unit3");
    QCOMPARE(box().currentText(), QStringLiteral("unit3"));
    found(box(), "unit3", "10.0.0.3");
    QCOMPARE(box().currentIndex(), 0);
    QCOMPARE(textsOf(box()), (QStringList{"unit3", "---", "Other..."}));
    withdrawn(box(), "unit3");
    QCOMPARE(textsOf(box()), (QStringList{"---", "Other..."}));
    QCOMPARE(box().currentText(), QStringLiteral("Other..."));
}

void TestRemakeConnection::noOtherIsOfferedInItsStead() {
    remake("unit3");
    found(box(), "another", "10.0.0.2");
    QCOMPARE(box().currentText(), QStringLiteral("unit3"));
    found(box(), "unit3", "10.0.0.3");
    QCOMPARE(box().currentIndex(), 1);
    QCOMPARE(textsOf(box()), (QStringList{"another", "unit3", "---", "Other..."}));
}

void TestRemakeConnection::theInstrumentFoundIsConnectedTo() {
    RawInstrument instrument;
    ConnectionWidget tile;
    remake("unit3");
    found(box(), "unit3", instrument.address().toStdString());
    m_dialog->makeConnection(&tile);
    QTRY_VERIFY_WITH_TIMEOUT(instrument.isConnected(), patience);
    QCOMPARE(nameOf(tile), QStringLiteral("North@unit3"));
}

void TestRemakeConnection::anotherCanBePicked() {
    RawInstrument instrument;
    ConnectionWidget tile;
    remake("unit3");
    found(box(), "another", instrument.address().toStdString());
    box().setCurrentIndex(0);
    m_dialog->makeConnection(&tile);
    QTRY_VERIFY_WITH_TIMEOUT(instrument.isConnected(), patience);
    QCOMPARE(nameOf(tile), QStringLiteral("North@another"));
}

void TestRemakeConnection::whatIsNotThereIsNotConnectedTo_data() {
    QTest::addColumn<QString>("host");
    QTest::addColumn<QStringList>("others");

    QTest::newRow("nothing is there") << "unit3" << QStringList();
    QTest::newRow("another is there") << "unit3" << QStringList{"another"};
    QTest::newRow("named by a number") << "7100" << QStringList{"another"};
    QTest::newRow("named with a point") << "unit.3" << QStringList{"another"};
    QTest::newRow("named almost like an address") << "10.0.0.3.1" << QStringList{"another"};
}

void TestRemakeConnection::whatIsNotThereIsNotConnectedTo() {
    QFETCH(const QString, host);
    QFETCH(const QStringList, others);
    ConnectionWidget tile;
    remake(host);
    for (const QString& other : others)
        found(box(), other.toStdString(), "127.0.0.1");
    const ModalDialog<QDialog> unwanted([](QDialog& shown) { shown.reject(); });
    m_dialog->makeConnection(&tile);
    QCoreApplication::processEvents();
    QVERIFY(!unwanted.answered());
    QVERIFY(!tile.IsConnected());
    QCOMPARE(nameOf(tile), QStringLiteral("TextLabel"));
    // Nor does it have a link to send by.
    tile.setSendState(true);
    QCOMPARE(tile.frameShape(), QFrame::Panel);
}

void TestRemakeConnection::aTypedAddressIsOfferedAgain_data() {
    QTest::addColumn<QString>("host");

    QTest::newRow("IPv4") << "10.0.0.5";
    QTest::newRow("shortened") << "10.5";
    QTest::newRow("IPv6") << "fe80::1";
    QTest::newRow("IPv6 with a scope") << "fe80::1%lo";
}

void TestRemakeConnection::aTypedAddressIsOfferedAgain() {
    QFETCH(const QString, host);
    remake(host);
    found(box(), "another", "10.0.0.2");
    QCOMPARE(box().currentText(), host);
    QCOMPARE(askedFor(box()), host + " 0 7100");
}

void TestRemakeConnection::aTypedAddressOutlastsInstruments() {
    RawInstrument instrument;
    ConnectionWidget tile;
    remake(instrument.address());
    found(box(), "another", "10.0.0.2");
    withdrawn(box(), "another");
    m_dialog->makeConnection(&tile);
    QTRY_VERIFY_WITH_TIMEOUT(instrument.isConnected(), patience);
    QCOMPARE(nameOf(tile), "North@" + instrument.address());
}

void TestRemakeConnection::theNameTypedByHandIsTaken() {
    ConnectionWidget tile;
    remake("unit3");
    box().lineEdit()->selectAll();
    QTest::keyClicks(box().lineEdit(), "unit3");
    found(box(), "another", "10.0.0.2");
    const ModalDialog<QMessageBox> refusal([](QMessageBox& shown) { shown.accept(); });
    m_dialog->makeConnection(&tile);
    QTRY_VERIFY_WITH_TIMEOUT(refusal.answered(), patience);
    QTRY_VERIFY_WITH_TIMEOUT(!tile.IsConnected(), patience);
}

int main(int argc, char** argv) {
    return runTest<TestRemakeConnection>(argc, argv);
}

#include "test_remake_connection.moc"
