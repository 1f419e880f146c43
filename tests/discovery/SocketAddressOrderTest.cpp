#include "Endpoints.h"
#include "TestEnvironment.h"

#include <QRandomGenerator>
#include <arpa/inet.h>
#include <set>
#include <vector>

/// Addresses as keys of ordered sets.
class SocketAddressOrderTest : public QObject {
    Q_OBJECT

private slots:
    void order_data();
    void order();
    void orderIsStrictAndWeakOverRandomAddresses();
    void differentPortsAndScopesAreDifferentKeys();
};

void SocketAddressOrderTest::order_data() {
    QTest::addColumn<int>("lowIndex");

    QTest::newRow("0") << 0;
    for (int i = 1; i < 14; ++i)
        QTest::addRow("%d", i) << i;
}

void SocketAddressOrderTest::order() {
    // Ascending; every neighbour differs from the one before in one thing.
    const sockaddr_in6 flow = platformIPv6(80, htonl(1), "::", 0);
    const std::vector<SocketAddress> ascending = {
        ipv4({0, 0, 0, 0}, 0),
        ipv4({0, 0, 0, 1}, 0),
        ipv4({10, 0, 0, 1}, 80),   // port before address ...
        ipv4({10, 0, 0, 200}, 80), // (bytes are unsigned)
        ipv4({10, 0, 200, 1}, 80), // (the first byte counts most)
        ipv4({9, 0, 0, 1}, 255),   // ... as one big-endian number
        ipv4({9, 0, 0, 1}, 256),   //
        ipv4({1, 0, 0, 1}, 1024),  //
        ipv4({255, 255, 255, 255}, 65535),
        ipv6({}, 0, 0),             // IPv4 first, whatever the bytes
        ipv6({}, 80, 0x01000000),   // the scope in memory order:
        ipv6({}, 80, 1),            // the low byte of this machine's number comes first
        ipv6({0, 1}, 80, 0),        // the address before the scope
        SocketAddress(asAny(flow)), // flow information before both
        ipv6({}, 81, 0),
    };
    QFETCH(int, lowIndex);
    if (Q_BYTE_ORDER != Q_LITTLE_ENDIAN && lowIndex == 10)
        return; // there the memory order of these two scopes is the other one
    const SocketAddress& low = ascending[static_cast<std::size_t>(lowIndex)];
    QVERIFY(!(low < low));
    QVERIFY(low == low);
    for (std::size_t i = static_cast<std::size_t>(lowIndex) + 1; i < ascending.size(); ++i) {
        QVERIFY2(low < ascending[i], qPrintable(QString::number(i)));
        QVERIFY(!(ascending[i] < low));
        QVERIFY(low != ascending[i]);
        QVERIFY(!(low == ascending[i]));
    }
}

void SocketAddressOrderTest::orderIsStrictAndWeakOverRandomAddresses() {
    QRandomGenerator random(7100);
    const auto few = [&random](int values) { return random.bounded(values); };
    std::vector<SocketAddress> all;
    for (int i = 0; i < 120; ++i) {
        // From few values, so that there are equal ones and ones that differ in one field only.
        const auto byte = [&few] { return static_cast<unsigned char>(few(2) * 255); };
        const int port = few(3) * 255;
        if (few(2) == 0)
            all.push_back(ipv4({byte(), byte(), 0, 1}, port));
        else
            all.push_back(ipv6({byte(), byte(), 0, 1}, port, static_cast<unsigned int>(few(2))));
    }
    for (const auto& a : all) {
        QVERIFY(!(a < a));
        for (const auto& b : all) {
            QVERIFY(!((a < b) && (b < a)));
            QCOMPARE(a == b, !(a < b) && !(b < a));
            QCOMPARE(a != b, !(a == b));
            for (const auto& c : all) {
                if (a < b && b < c)
                    QVERIFY(a < c);
                if (a == b && b == c)
                    QVERIFY(a == c);
            }
        }
    }
    const std::set<SocketAddress> sorted(all.begin(), all.end());
    QVERIFY(sorted.size() < all.size());
    for (const auto& each : all)
        QCOMPARE(sorted.count(each), 1U);
}

void SocketAddressOrderTest::differentPortsAndScopesAreDifferentKeys() {
    const std::set<SocketAddress> keys = {ipv4({1, 2, 3, 4}, 1), ipv4({1, 2, 3, 4}, 2),
                                          ipv4({1, 2, 3, 4}, 1), ipv6({0xFE, 0x80}, 1, 2),
                                          ipv6({0xFE, 0x80}, 1, 3)};
    QCOMPARE(keys.size(), 4U);
}

int main(int argc, char** argv) {
    return runTest<SocketAddressOrderTest>(argc, argv);
}

#include "SocketAddressOrderTest.moc"
