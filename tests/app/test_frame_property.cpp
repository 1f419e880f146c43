#include "FakeLink.h"
#include "Frame.h"
#include "Loopback.h"
#include "Operator.h"
#include "SimulatorServer.h"
#include "TestEnvironment.h"

#include <QPointer>
#include <QSettings>

#include <map>
#include <random>

namespace {

constexpr int patience = 20000;

/// A link that counts as open from the start of an attempt, as a socket does.
class AttemptLink : public FakeLink {
    Q_OBJECT

public:
    using FakeLink::Connect;
    void Connect(std::string /*host*/, int /*interfaceIndex*/, int /*port*/) override {
        openSilently();
    }
};

class Dice {
public:
    explicit Dice(unsigned int seed) : m_random(seed) {}
    int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(m_random); }
    bool toss() { return upTo(1) == 1; }

private:
    std::mt19937 m_random;
};

/// Any number of tiles with links that a random person and random instruments work on.
class Scene {
public:
    explicit Scene(unsigned int seed) : m_dice(seed) {}

    QString step() {
        using Act = QString (Scene::*)();
        static constexpr std::array acts{
            &Scene::addTile,     &Scene::removeTile, &Scene::giveLink, &Scene::linkOpens,
            &Scene::linkCloses,  &Scene::disconnect, &Scene::click,    &Scene::click,
            &Scene::clickScreen, &Scene::wish,       &Scene::startAll, &Scene::stopAll,
            &Scene::linkFails,
        };
        const Act act = acts.at(static_cast<std::size_t>(m_dice.upTo(int(acts.size()) - 1)));
        return (this->*act)();
    }

    /// Types a key; true when exactly the instruments of the framed tiles have received it.
    bool holds() {
        std::map<ConnectionWidget*, std::size_t> before;
        for (auto* tile : tiles())
            before[tile] = sent(tile);
        std::vector<std::pair<QPointer<FakeLink>, std::size_t>> removed;
        for (const auto& link : m_removed)
            if (link)
                removed.emplace_back(link, link->sent.size());
        m_person.type(Qt::Key_X);
        for (auto* tile : tiles())
            if (sent(tile) != before[tile] + (isRed(*tile) ? 1 : 0) ||
                isRed(*tile) == isRaised(*tile))
                return false;
        for (const auto& [link, count] : removed)
            if (link && link->sent.size() != count)
                return false;
        return true;
    }

private:
    QList<ConnectionWidget*> tiles() { return m_person.window().findChildren<ConnectionWidget*>(); }
    ConnectionWidget* anyTile() {
        const auto all = tiles();
        return all.empty() ? nullptr : all[m_dice.upTo(int(all.size()) - 1)];
    }
    std::size_t sent(ConnectionWidget* tile) {
        const auto link = m_links[tile];
        return link ? link->sent.size() : 0;
    }

    QString addTile() {
        if (tiles().size() < 6)
            m_person.window().addEmptyConnection(m_dice.toss());
        return QStringLiteral("add");
    }
    QString removeTile() {
        if (auto* tile = anyTile()) {
            m_removed.push_back(m_links[tile]);
            m_links.erase(tile);
            m_person.window().removalRequest(tile);
        }
        return QStringLiteral("remove");
    }
    QString giveLink() {
        if (auto* tile = anyTile()) {
            m_removed.push_back(m_links[tile]);
            FakeLink* link = m_dice.toss() ? new AttemptLink : new FakeLink;
            tile->connectEther({}, QStringLiteral("unit"), link, "192.0.2.1", 0, 7100);
            m_links[tile] = link;
        }
        return QStringLiteral("give a link");
    }
    QString linkOpens() {
        if (auto* tile = anyTile(); tile && m_links[tile])
            m_links[tile]->open();
        return QStringLiteral("open");
    }
    QString linkCloses() {
        if (auto* tile = anyTile(); tile && m_links[tile])
            m_links[tile]->close();
        return QStringLiteral("close");
    }
    QString linkFails() {
        if (auto* tile = anyTile(); tile && m_links[tile])
            m_links[tile]->closeSilently();
        return QStringLiteral("fail");
    }
    QString disconnect() {
        if (auto* tile = anyTile(); tile && tile->IsConnected())
            tile->findChild<QToolButton*>(QStringLiteral("connectBtn"))->click();
        return QStringLiteral("disconnect");
    }
    QString click() {
        if (auto* tile = anyTile())
            QTest::mouseClick(tile->findChild<QLabel*>(QStringLiteral("nameLabel")),
                              m_dice.upTo(9) ? Qt::LeftButton : Qt::RightButton);
        return QStringLiteral("click");
    }
    QString clickScreen() {
        if (auto* tile = anyTile())
            QTest::mouseClick(tile->findChild<LCD7100*>(), Qt::LeftButton);
        return QStringLiteral("click the screen");
    }
    QString wish() {
        if (auto* tile = anyTile())
            tile->setSendState(m_dice.toss());
        return QStringLiteral("wish");
    }
    QString startAll() {
        m_person.window().startCommToAll();
        return QStringLiteral("start all");
    }
    QString stopAll() {
        m_person.window().stopCommToAll();
        return QStringLiteral("stop all");
    }

    Dice m_dice;
    Operator m_person;
    std::map<ConnectionWidget*, QPointer<FakeLink>> m_links;
    std::vector<QPointer<FakeLink>> m_removed;
};

/// The same over real sockets to simulated instruments.
class LiveScene {
public:
    explicit LiveScene(unsigned int seed) : m_dice(seed), m_server(settings()) {
        m_address = loopback::listenSomewhere([this](const QHostAddress& address) {
            return m_server.listen(address, loopback::instrumentPort);
        });
    }

    void step() {
        ConnectionWidget* tile = anyTile();
        switch (m_dice.upTo(6)) {
        case 0:
            return add();
        case 1:
            return tile->IsConnected() ? dropByInstrument(tile) : kill(tile);
        case 2:
            return tile->IsConnected() ? disconnect(tile) : connectTile(tile);
        case 3:
            return m_person.window().startCommToAll();
        case 4:
            return m_dice.toss() ? m_person.window().stopCommToAll() : connectTile(tile);
        default:
            QTest::mouseClick(tile->findChild<QLabel*>(QStringLiteral("nameLabel")),
                              Qt::LeftButton);
        }
    }

    /// Types a key and waits for it where it must arrive; keys that arrive anywhere else show
    /// there no later than with the next one.
    void check() {
        const int key = Qt::Key_A + m_dice.upTo(25);
        for (const auto& [tile, connection] : m_connections)
            if (isRed(*tile))
                m_expected[connection].append(quint16(key - Qt::Key_A + 'a'));
        m_person.type(Qt::Key(key));
        for (const auto& [tile, connection] : m_connections)
            QTRY_COMPARE_WITH_TIMEOUT(m_server.keys(connection), m_expected[connection], patience);
        for (auto* tile : tiles())
            QVERIFY(m_connections.contains(tile) || isRaised(*tile));
    }
    /// Has every instrument receive a last key, so that nothing is still under way.
    void finish() {
        m_person.window().startCommToAll();
        check();
    }

private:
    static SimulatorSettings settings() {
        SimulatorSettings settings;
        settings.instrument.page = PageId::Keys;
        settings.updatesPerSecond = 0;
        return settings;
    }
    QList<ConnectionWidget*> tiles() { return m_person.window().findChildren<ConnectionWidget*>(); }
    ConnectionWidget* anyTile() {
        const auto all = tiles();
        return all[m_dice.upTo(int(all.size()) - 1)];
    }
    void add() {
        if (tiles().size() < 5)
            m_person.window().addEmptyConnection(true);
    }
    void kill(ConnectionWidget* tile) {
        if (tiles().size() > 1)
            tile->findChild<QToolButton*>(QStringLiteral("killBtn"))->click();
    }
    void connectTile(ConnectionWidget* tile) {
        if (tile->IsConnected())
            return;
        const ModalDialog<NewConnection> dialog([this](NewConnection& shown) {
            shown.findChild<QComboBox*>(QStringLiteral("etherList"))
                ->setEditText(m_address.toString());
            shown.accept();
        });
        tile->findChild<QToolButton*>(QStringLiteral("connectBtn"))->click();
        const auto isKnown = [this](int connection) { return m_expected.contains(connection); };
        const auto isNew = [&] {
            const auto open = m_server.connections();
            return !open.empty() && !isKnown(open.last());
        };
        QTRY_VERIFY_WITH_TIMEOUT(isNew(), patience);
        QTRY_VERIFY_WITH_TIMEOUT(
            tile->findChild<QToolButton*>(QStringLiteral("killBtn"))->isHidden(), patience);
        m_connections[tile] = m_server.connections().last();
        m_expected[m_connections[tile]] = {};
    }
    void disconnect(ConnectionWidget* tile) {
        const int connection = m_connections[tile];
        tile->findChild<QToolButton*>(QStringLiteral("connectBtn"))->click();
        QTRY_VERIFY_WITH_TIMEOUT(!m_server.connections().contains(connection), patience);
        QTRY_VERIFY_WITH_TIMEOUT(!tile->IsConnected(), patience);
        m_connections.erase(tile);
    }
    void dropByInstrument(ConnectionWidget* tile) {
        m_server.drop(m_connections[tile]);
        QTRY_VERIFY_WITH_TIMEOUT(!tile->IsConnected(), patience);
        m_connections.erase(tile);
    }

    Dice m_dice;
    SimulatorServer m_server;
    QHostAddress m_address;
    Operator m_person;
    std::map<ConnectionWidget*, int> m_connections;
    std::map<int, QList<quint16>> m_expected;
};

} // namespace

class TestFrameProperty : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { Q_INIT_RESOURCE(group); }
    void init() { QSettings(QStringLiteral("VESTRA"), QStringLiteral("group7100")).clear(); }
    void framedTilesReceive_data();
    void framedTilesReceive();
    void framedTilesReceiveOverSockets_data();
    void framedTilesReceiveOverSockets();
};

void TestFrameProperty::framedTilesReceive_data() {
    QTest::addColumn<unsigned int>("seed");
    for (unsigned int seed = 1; seed <= 60; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void TestFrameProperty::framedTilesReceive() {
    QFETCH(const unsigned int, seed);
    Scene scene(seed);
    QStringList steps;
    for (int i = 0; i < 80; ++i) {
        steps << scene.step();
        QVERIFY2(scene.holds(), qPrintable(steps.join(QStringLiteral(", "))));
        if (i % 10 == 0)
            QCoreApplication::processEvents();
    }
}

void TestFrameProperty::framedTilesReceiveOverSockets_data() {
    QTest::addColumn<unsigned int>("seed");
    for (unsigned int seed = 1; seed <= 12; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void TestFrameProperty::framedTilesReceiveOverSockets() {
    QFETCH(const unsigned int, seed);
    LiveScene scene(seed);
    for (int i = 0; i < 40 && !QTest::currentTestFailed(); ++i) {
        scene.step();
        scene.check();
    }
    scene.finish();
}

int main(int argc, char** argv) {
    return runTest<TestFrameProperty>(argc, argv);
}

#include "test_frame_property.moc"
