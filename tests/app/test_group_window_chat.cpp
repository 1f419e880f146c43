#include "ChatInbox.h"
#include "ChatWindow.h"
#include "Operator.h"
#include "RawInstrument.h"
#include "SimulatorServer.h"
#include "TestEnvironment.h"

#include <QAction>
#include <QComboBox>
#include <QSettings>
#include <QSignalSpy>
#include <QTextBlock>
#include <QTextEdit>
#include <QTimer>
#include <QToolBar>

#include <memory>

namespace {

constexpr int kPatience = 60000;

} // namespace

/// Chat in the window, between the operator and instruments at the other end of a real socket.
class TestGroupWindowChat : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup() { m_person.reset(); }
    void action();
    void isMadeOnce();
    void sentLineIsOnePacket_data();
    void sentLineIsOnePacket();
    void receivedLineOpensTheWindow();
    void receivedLineIsLiteral();
    void senderIsNotShown();
    void linesLostInAFloodAreNoted();
    void bothWaysWithSimulatedInstruments();
    void minimisedWindowComesBack();
    void geometryIsStoredOnClosing();
    void closingTheWindowEndsTheProgram();

private:
    GroupWindow& window() const { return m_person->window(); }
    /// Connects the first tile to an instrument and clicks its frame red.
    void connectFirstTile(const RawInstrument& instrument) {
        m_person->connectTo(instrument.address(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(instrument.isConnected() && m_person->tile(0).IsConnected(),
                                 kPatience);
        m_person->clickName(0);
    }
    ChatWindow* chat() const { return window().findChild<ChatWindow*>(); }
    QComboBox* input() const { return chat()->findChild<QComboBox*>(); }
    QTextDocument* transcript() const { return chat()->findChild<QTextEdit*>()->document(); }
    /// A line of the transcript without its time stamp.
    QString line(int number) const { return transcript()->findBlockByNumber(number).text().mid(9); }
    QColor colorOf(int number) const {
        const QTextBlock block = transcript()->findBlockByNumber(number);
        return block.begin().fragment().charFormat().foreground().color();
    }
    QAction* chatAction() const {
        for (QAction* candidate : window().findChildren<QAction*>())
            if (candidate->text() == QStringLiteral("Chat"))
                return candidate;
        return nullptr;
    }
    void send(const QString& text) const {
        QTest::keyClicks(input(), text);
        QTest::keyClick(input(), Qt::Key_Return);
    }

    QSettings m_store{QStringLiteral("VESTRA"), QStringLiteral("group7100")};
    std::unique_ptr<Operator> m_person;
};

void TestGroupWindowChat::initTestCase() {
    Q_INIT_RESOURCE(group);
}

void TestGroupWindowChat::init() {
    m_store.clear();
    m_store.setValue(QStringLiteral("group/count"), 2);
    m_person = std::make_unique<Operator>();
}

void TestGroupWindowChat::action() {
    QVERIFY(!chat());
    const QAction* const found = chatAction();
    QVERIFY(found);
    QCOMPARE(found->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_C));
    QCOMPARE(found->statusTip(), QStringLiteral("Show chat window"));
    QVERIFY(!found->icon().pixmap(32).isNull());
    QVERIFY(window().findChild<QToolBar*>()->actions().contains(found));
}

void TestGroupWindowChat::isMadeOnce() {
    m_person->trigger(QStringLiteral("Chat"));
    QVERIFY(chat()->isVisible());
    QCOMPARE(chat()->parentWidget(), &window());
    QVERIFY(QTest::qWaitForWindowActive(chat()));
    chat()->close();
    m_person->trigger(QStringLiteral("Chat"));
    QVERIFY(QTest::qWaitForWindowActive(chat()));
    window().incomingChat({}, QStringLiteral("x"));
    QCOMPARE(window().findChildren<ChatWindow*>().size(), 1);
    QSignalSpy packets(&window(), &GroupWindow::signalFor7100);
    chat()->sendLine();
    QCOMPARE(packets.size(), 1);
}

void TestGroupWindowChat::sentLineIsOnePacket_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("words") << "hi there"
                           << QByteArray("3c443e"
                                         "00000010"
                                         "00000000"
                                         "43484154"
                                         "6869207468657265");
    QTest::newRow("nothing") << ""
                             << QByteArray("3c443e"
                                           "00000008"
                                           "00000000"
                                           "43484154");
}

void TestGroupWindowChat::sentLineIsOnePacket() {
    QFETCH(const QString, text);
    QFETCH(const QByteArray, bytes);
    RawInstrument instrument;
    connectFirstTile(instrument);
    m_person->trigger(QStringLiteral("Chat"));
    send(text);
    QTRY_COMPARE_WITH_TIMEOUT(instrument.received().toHex(), bytes, kPatience);
}

void TestGroupWindowChat::receivedLineOpensTheWindow() {
    RawInstrument instrument;
    connectFirstTile(instrument);
    instrument.send(QByteArray::fromHex("3c443e"
                                        "0000000d"
                                        "00000000"
                                        "43484154") +
                    "hello");
    QTRY_VERIFY_WITH_TIMEOUT(chat(), kPatience);
    QVERIFY(chat()->isVisible());
    QCOMPARE(line(0), QStringLiteral("hello"));
    QCOMPARE(colorOf(0), QColor(255, 0, 0));
    chat()->close();
    instrument.send(QByteArray::fromHex("3c443e"
                                        "0000000d"
                                        "00000000"
                                        "43484154") +
                    "again");
    QTRY_COMPARE_WITH_TIMEOUT(line(1), QStringLiteral("again"), kPatience);
    QVERIFY(chat()->isVisible());
}

void TestGroupWindowChat::receivedLineIsLiteral() {
    RawInstrument instrument;
    connectFirstTile(instrument);
    instrument.send(QByteArray::fromHex("3c443e"
                                        "00000015"
                                        "00000000"
                                        "43484154") +
                    "<b>bold</b>\x1b[");
    QTRY_VERIFY_WITH_TIMEOUT(chat(), kPatience);
    QCOMPARE(line(0), QStringLiteral("<b>bold</b>^[["));
}

void TestGroupWindowChat::senderIsNotShown() {
    window().incomingChat(QStringLiteral("North@unit3"), QStringLiteral("hello"));
    QVERIFY(!transcript()->toPlainText().contains(QStringLiteral("North")));
    QCOMPARE(line(0), QStringLiteral("hello"));
}

void TestGroupWindowChat::linesLostInAFloodAreNoted() {
    constexpr int lost = 3;
    const auto sent = static_cast<int>(ChatInbox::kMostWaiting) + 1 + lost;
    for (int i = 0; i < sent; ++i)
        window().incomingChat({}, QString::number(i));
    const auto shown = [this] { return transcript()->blockCount(); };
    QTRY_COMPARE_WITH_TIMEOUT(shown(), static_cast<int>(ChatInbox::kMostWaiting) + 2, kPatience);
    QCOMPARE(line(0), QStringLiteral("0"));
    QVERIFY2(line(1).contains(QStringLiteral(" 3 lines")), qPrintable(line(1)));
    QCOMPARE(line(2), QString::number(1 + lost));
    QCOMPARE(line(shown() - 1), QString::number(sent - 1));
}

void TestGroupWindowChat::bothWaysWithSimulatedInstruments() {
    SimulatorServer instruments({});
    const QHostAddress address =
        loopback::listenSomewhere([&instruments](const QHostAddress& candidate) {
            return instruments.listen(candidate, loopback::instrumentPort);
        });
    QSignalSpy packets(&instruments, &SimulatorServer::packetReceived);
    for (int i = 0; i < 2; ++i) {
        m_person->connectTo(address.toString(), i);
        QTRY_COMPARE_WITH_TIMEOUT(instruments.connectionCount(), i + 1, kPatience);
        QTRY_VERIFY_WITH_TIMEOUT(m_person->tile(i).IsConnected(), kPatience);
    }

    // Whoever speaks is heard, whether or not its tile receives keys.
    instruments.sendChat(2, "tank is low");
    QTRY_VERIFY_WITH_TIMEOUT(chat(), kPatience);
    QCOMPARE(line(0), QStringLiteral("tank is low"));

    // Only an instrument whose tile receives keys hears the operator; this one echoes.
    m_person->clickName(0);
    send(QStringLiteral("fill it"));
    QCOMPARE(line(1), QStringLiteral("fill it"));
    QCOMPARE(colorOf(1), QColor(0, 0, 255));
    QTRY_COMPARE_WITH_TIMEOUT(line(2), QStringLiteral("Unit 1: fill it"), kPatience);
    QCOMPARE(colorOf(2), QColor(255, 0, 0));
    QCOMPARE(packets.size(), 1);
    QCOMPARE(packets[0][0].toInt(), 1);
}

void TestGroupWindowChat::minimisedWindowComesBack() {
    m_person->trigger(QStringLiteral("Chat"));
    chat()->showMinimized();
    m_person->trigger(QStringLiteral("Chat"));
    QVERIFY(!chat()->isMinimized());
    chat()->showMinimized();
    window().incomingChat({}, QStringLiteral("x"));
    QVERIFY(!chat()->isMinimized());
}

void TestGroupWindowChat::geometryIsStoredOnClosing() {
    m_person->trigger(QStringLiteral("Chat"));
    QVERIFY(!m_store.contains(QStringLiteral("chat/geometry")));
    chat()->setGeometry(50, 60, 500, 250);
    chat()->close();
    m_person = std::make_unique<Operator>();
    QVERIFY(m_store.contains(QStringLiteral("chat/geometry")));
    m_person->trigger(QStringLiteral("Chat"));
    QCOMPARE(chat()->geometry(), QRect(50, 60, 500, 250));
}

void TestGroupWindowChat::closingTheWindowEndsTheProgram() {
    m_person->trigger(QStringLiteral("Chat"));
    // In a loop as in the real program: only there the last window's end counts.
    QTimer::singleShot(0, &window(), &QWidget::close);
    QTimer::singleShot(kPatience, qApp, [] { QCoreApplication::exit(1); });
    QCOMPARE(QCoreApplication::exec(), 0);
}

int main(int argc, char** argv) {
    return runTest<TestGroupWindowChat>(argc, argv);
}

#include "test_group_window_chat.moc"
