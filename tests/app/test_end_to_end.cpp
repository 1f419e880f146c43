#include "Fault.h"
#include "Frame.h"
#include "Operator.h"
#include "RawInstrument.h"
#include "Reference.h"
#include "SimulatorServer.h"
#include "TestEnvironment.h"

#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>

namespace {

constexpr int patience = 20000;

/// Simulated instruments on an address of their own that change only when a key arrives.
class Instruments {
public:
    explicit Instruments(PageId page = PageId::Home, const std::vector<std::string>& faults = {})
        : m_server(settings(page, faults)) {
        listen();
    }

    QString address() const { return m_address.toString(); }
    SimulatorServer& server() { return m_server; }
    void comeBack() { QVERIFY(m_server.listen(m_address, loopback::instrumentPort)); }

private:
    static SimulatorSettings settings(PageId page, const std::vector<std::string>& faults) {
        SimulatorSettings settings;
        settings.instrument.name = "Unit 7";
        settings.instrument.page = page;
        settings.updatesPerSecond = 0;
        settings.faults = faults;
        return settings;
    }
    void listen() {
        m_address = loopback::listenSomewhere([this](const QHostAddress& address) {
            return m_server.listen(address, loopback::instrumentPort);
        });
    }

    SimulatorServer m_server;
    QHostAddress m_address;
};

} // namespace

class TestEndToEnd : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { Q_INIT_RESOURCE(group); }
    void init() { m_store.clear(); }
    void aKeyIsSeventeenBytes_data();
    void aKeyIsSeventeenBytes();
    void pagesReachTheTile_data();
    void pagesReachTheTile();
    void keysTurnPages();
    void aClickedSoftKeyIsSent();
    void nothingIsSentWithoutTheFrame();
    void onlyTheFramedOfTwoReceives();
    void broadcastReachesAll();
    void faultsDoNoHarm_data();
    void faultsDoNoHarm();
    void aGoneInstrumentComesBack();
    void aDroppedConnectionIsRemade();
    void quittingDisconnects();

private:
    QSettings m_store{QStringLiteral("VESTRA"), QStringLiteral("group7100")};
};

void TestEndToEnd::aKeyIsSeventeenBytes_data() {
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QByteArray>("bytes");

    const Qt::KeyboardModifiers none;
    const Qt::KeyboardModifiers shift(Qt::ShiftModifier);
    QTest::newRow("a") << Qt::Key_A << none
                       << QByteArray::fromHex("3c443e0000000a000000004b4559530061");
    QTest::newRow("F1") << Qt::Key_F1 << none
                        << QByteArray::fromHex("3c443e0000000a000000004b4559536000");
    QTest::newRow("Shift Return") << Qt::Key_Return << shift
                                  << QByteArray::fromHex("3c443e0000000a000000004b455953000a");
    QTest::newRow("Meta Return") << Qt::Key_Return << Qt::KeyboardModifiers(Qt::MetaModifier)
                                 << QByteArray::fromHex("3c443e0000000a000000004b4559530d02");
    QTest::newRow("Tab") << Qt::Key_Tab << none
                         << QByteArray::fromHex("3c443e0000000a000000004b4559530009");
}

void TestEndToEnd::aKeyIsSeventeenBytes() {
    QFETCH(const Qt::Key, key);
    QFETCH(const Qt::KeyboardModifiers, modifiers);
    QFETCH(const QByteArray, bytes);
    RawInstrument instrument;
    Operator person;
    person.connectTo(instrument.address(), 0);
    QTRY_VERIFY_WITH_TIMEOUT(instrument.isConnected(), patience);
    person.clickName(0);
    person.type(key, modifiers);
    QTRY_VERIFY_WITH_TIMEOUT(instrument.received().size() >= 17, patience);
    QCOMPARE(instrument.received(), bytes);
}

void TestEndToEnd::pagesReachTheTile_data() {
    QTest::addColumn<PageId>("page");

    QTest::newRow("home") << PageId::Home;
    QTest::newRow("text") << PageId::Text;
    QTest::newRow("graphics") << PageId::Graphics;
    QTest::newRow("keys") << PageId::Keys;
}

void TestEndToEnd::pagesReachTheTile() {
    QFETCH(const PageId, page);
    Instruments instruments(page);
    Operator person;
    person.connectTo(instruments.address(), -1, QStringLiteral("North"));
    QCOMPARE(person.tile(1).findChild<QLabel*>("nameLabel")->text(),
             QStringLiteral("North@") + instruments.address());
    QTRY_COMPARE_WITH_TIMEOUT(instruments.server().connectionCount(), 1, patience);
    Reference reference(instruments.server().screen(1), person.display(1).size());
    QTRY_COMPARE_WITH_TIMEOUT(person.display(1).grab().toImage(), reference.image(), patience);
}

void TestEndToEnd::keysTurnPages() {
    Instruments instruments(PageId::Text);
    Operator person;
    person.connectTo(instruments.address(), 0);
    QTRY_COMPARE_WITH_TIMEOUT(instruments.server().connectionCount(), 1, patience);
    const InstrumentScreen first = instruments.server().screen(1);
    QTRY_VERIFY_WITH_TIMEOUT(person.tile(0).IsConnected(), patience);
    person.clickName(0);
    person.type(Qt::Key_Left);
    QTRY_VERIFY_WITH_TIMEOUT(instruments.server().screen(1) != first, patience);
    Reference reference(instruments.server().screen(1), person.display(0).size());
    QTRY_COMPARE_WITH_TIMEOUT(person.display(0).grab().toImage(), reference.image(), patience);
}

void TestEndToEnd::aClickedSoftKeyIsSent() {
    RawInstrument instrument;
    Operator person;
    person.connectTo(instrument.address(), 0);
    QTRY_VERIFY_WITH_TIMEOUT(instrument.isConnected(), patience);
    person.clickName(0);
    LCD7100& display = person.display(0);
    QTest::mouseClick(&display, Qt::LeftButton, Qt::NoModifier,
                      QPoint(display.width() / 2, display.height() - 2));
    QTRY_VERIFY_WITH_TIMEOUT(instrument.received().size() >= 17, patience);
    QCOMPARE(instrument.received(), QByteArray::fromHex("3c443e0000000a000000004b4559536200"));
    QVERIFY(isRed(person.tile(0)));
}

void TestEndToEnd::nothingIsSentWithoutTheFrame() {
    RawInstrument instrument;
    Operator person;
    person.connectTo(instrument.address(), 0);
    QTRY_VERIFY_WITH_TIMEOUT(instrument.isConnected(), patience);
    person.type(Qt::Key_A);
    person.clickName(0);
    person.clickName(0);
    person.type(Qt::Key_B);
    person.clickName(0);
    person.type(Qt::Key_C);
    // What had been sent before would have arrived before.
    QTRY_VERIFY_WITH_TIMEOUT(instrument.received().size() >= 17, patience);
    QCOMPARE(instrument.received(), QByteArray::fromHex("3c443e0000000a000000004b4559530063"));
}

void TestEndToEnd::onlyTheFramedOfTwoReceives() {
    Instruments instruments(PageId::Keys);
    Operator person;
    person.connectTo(instruments.address(), 0);
    QTRY_COMPARE_WITH_TIMEOUT(instruments.server().connectionCount(), 1, patience);
    person.connectTo(instruments.address(), -1);
    QTRY_COMPARE_WITH_TIMEOUT(instruments.server().connectionCount(), 2, patience);
    QTRY_VERIFY_WITH_TIMEOUT(person.tile(1).IsConnected(), patience);
    person.clickName(1);
    QVERIFY(!isRed(person.tile(0)));
    QVERIFY(isRed(person.tile(1)));
    person.type(Qt::Key_X);
    QTRY_COMPARE_WITH_TIMEOUT(instruments.server().keys(2), QList<quint16>({'x'}), patience);

    person.clickName(1);
    person.clickName(0);
    person.type(Qt::Key_Y);
    QTRY_COMPARE_WITH_TIMEOUT(instruments.server().keys(1), QList<quint16>({'y'}), patience);
    QCOMPARE(instruments.server().keys(2), QList<quint16>({'x'}));
}

void TestEndToEnd::broadcastReachesAll() {
    m_store.setValue("group/count", 3);
    Instruments instruments(PageId::Keys);
    Operator person;
    for (const int tile : {0, 1}) {
        person.connectTo(instruments.address(), tile);
        QTRY_COMPARE_WITH_TIMEOUT(instruments.server().connectionCount(), tile + 1, patience);
        QTRY_VERIFY_WITH_TIMEOUT(person.tile(tile).IsConnected(), patience);
    }
    emit person.tile(2).startCommToAll();
    person.type(Qt::Key_F1);
    for (const int connection : {1, 2})
        QTRY_COMPARE_WITH_TIMEOUT(instruments.server().keys(connection), QList<quint16>({0x6000}),
                                  patience);
    QVERIFY(!isRed(person.tile(2)));
}

void TestEndToEnd::faultsDoNoHarm_data() {
    QTest::addColumn<std::string>("fault");

    for (const auto& kind : faultKinds())
        QTest::newRow(std::string(kind.name).c_str()) << std::string(kind.name);
}

void TestEndToEnd::faultsDoNoHarm() {
    QFETCH(const std::string, fault);
    Instruments instruments(PageId::Text, {fault});
    Operator person;
    person.connectTo(instruments.address(), 0);
    QTRY_COMPARE_WITH_TIMEOUT(instruments.server().connectionCount(), 1, patience);
    Reference reference(instruments.server().screen(1), person.display(0).size());
    QTRY_COMPARE_WITH_TIMEOUT(person.display(0).grab().toImage(), reference.image(), patience);
    QVERIFY(person.tile(0).IsConnected());
    person.clickName(0);
    QSignalSpy keys(&instruments.server(), &SimulatorServer::keyReceived);
    person.type(Qt::Key_K);
    QTRY_COMPARE_WITH_TIMEOUT(keys.size(), 1, patience);
    QCOMPARE(keys[0][1].toInt(), int('k'));
    if (fault == "abrupt-close") {
        QTRY_VERIFY_WITH_TIMEOUT(!person.tile(0).IsConnected(), patience);
        QVERIFY(isRaised(person.tile(0)));
    }
}

void TestEndToEnd::aGoneInstrumentComesBack() {
    Instruments instruments(PageId::Text);
    Operator person;
    person.connectTo(instruments.address(), 0, QStringLiteral("North"));
    QTRY_COMPARE_WITH_TIMEOUT(instruments.server().connectionCount(), 1, patience);
    const InstrumentScreen screen = instruments.server().screen(1);
    Reference shown(screen, person.display(0).size());
    QTRY_COMPARE_WITH_TIMEOUT(person.display(0).grab().toImage(), shown.image(), patience);
    person.clickName(0);
    QVERIFY(isRed(person.tile(0)));

    const ModalDialog<QMessageBox> box([](QMessageBox& told) { told.accept(); });
    instruments.server().stop();
    QTRY_VERIFY_WITH_TIMEOUT(!person.tile(0).IsConnected(), patience);
    QTRY_VERIFY_WITH_TIMEOUT(isRaised(person.tile(0)), patience);
    Reference cleared(InstrumentScreen(), person.display(0).size());
    QTRY_COMPARE_WITH_TIMEOUT(person.display(0).grab().toImage(), cleared.image(), patience);
    person.type(Qt::Key_A);

    instruments.comeBack();
    const ModalDialog<NewConnection> dialog([&](NewConnection& remake) {
        QCOMPARE(remake.findChild<QLineEdit*>("nameEdit")->text(), QStringLiteral("North"));
        remake.accept();
    });
    person.pressConnect(0);
    QVERIFY(dialog.answered());
    QTRY_COMPARE_WITH_TIMEOUT(instruments.server().connectionCount(), 1, patience);
    QTRY_COMPARE_WITH_TIMEOUT(person.display(0).grab().toImage(), shown.image(), patience);
    QVERIFY(isRaised(person.tile(0)));
    person.clickName(0);
    person.type(Qt::Key_B);
    QTRY_COMPARE_WITH_TIMEOUT(instruments.server().keys(2), QList<quint16>({'b'}), patience);
}

void TestEndToEnd::aDroppedConnectionIsRemade() {
    RawInstrument instrument;
    Operator person;
    person.connectTo(instrument.address(), 0);
    QTRY_VERIFY_WITH_TIMEOUT(instrument.isConnected(), patience);
    person.pressConnect(0);
    QTRY_VERIFY_WITH_TIMEOUT(!instrument.isConnected(), patience);
    QVERIFY(!person.tile(0).IsConnected());
    QCOMPARE(instrument.connectionsMade(), 1);

    const ModalDialog<NewConnection> dialog([](NewConnection& remake) { remake.accept(); });
    person.pressConnect(0);
    QTRY_COMPARE_WITH_TIMEOUT(instrument.connectionsMade(), 2, patience);
    QTRY_VERIFY_WITH_TIMEOUT(instrument.isConnected(), patience);
}

void TestEndToEnd::quittingDisconnects() {
    RawInstrument instrument;
    Operator person;
    person.connectTo(instrument.address(), 0);
    QTRY_VERIFY_WITH_TIMEOUT(instrument.isConnected(), patience);
    {
        const ModalDialog<QMessageBox> question([](QMessageBox& shown) { shown.reject(); });
        person.trigger(QStringLiteral("Quit"));
        QVERIFY(question.answered());
        QVERIFY(person.window().isVisible());
    }
    person.clickName(0);
    person.type(Qt::Key_A);
    QTRY_VERIFY_WITH_TIMEOUT(instrument.received().size() >= 17, patience);

    const ModalDialog<QMessageBox> question(
        [](QMessageBox& shown) { shown.button(QMessageBox::Yes)->click(); });
    person.trigger(QStringLiteral("Quit"));
    QVERIFY(!person.window().isVisible());
    person.quit();
    QTRY_VERIFY_WITH_TIMEOUT(!instrument.isConnected(), patience);
    QCOMPARE(m_store.value("group/count").toInt(), 1);
}

int main(int argc, char** argv) {
    return runTest<TestEndToEnd>(argc, argv);
}

#include "test_end_to_end.moc"
