#include "Endpoints.h"
#include "TestEnvironment.h"

#include <arpa/inet.h>
#include <cstring>
#include <functional>
#include <type_traits>

Q_DECLARE_METATYPE(Socket::Family)

namespace {

std::string messageOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const HostNotFound& error) {
        return std::string("HostNotFound ") + error.what();
    } catch (const SocketError& error) {
        return error.what();
    }
    return "nothing thrown";
}

} // namespace

class SocketAddressTest : public QObject {
    Q_OBJECT

private slots:
    void parses_data();
    void parses();
    void refuses_data();
    void refuses();
    void anyAddressOfAFamily_data();
    void anyAddressOfAFamily();
    void familiesAreThePlatformsNumbers();
    void anUnknownFamilyIsRefused_data();
    void anUnknownFamilyIsRefused();
    void anUnknownPlatformAddressIsRefused();
    void hostNamesAreNeverFound_data();
    void hostNamesAreNeverFound();
    void takesAPlatformIPv4Address();
    void takesAPlatformIPv6Address();
    void assigningAnAddressKeepsPortAndScope();
    void assigningAnAddressKeepsTheFlow();
    void assigningAPlatformAddressReplacesEverything();
    void portsAreSixteenBits_data();
    void portsAreSixteenBits();
    void scopeIsForIPv6Only();
    void wildcardKeepsPortAndScope();
    void linkLocal_data();
    void linkLocal();
    void isHandedToSocketCallsAsItIs();
};

void SocketAddressTest::parses_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("length");
    QTest::addColumn<QString>("presentation");

    QTest::newRow("IPv4") << "192.168.1.7" << 16 << "192.168.1.7";
    QTest::newRow("IPv4, all zero") << "0.0.0.0" << 16 << "0.0.0.0";
    QTest::newRow("IPv4, all ones") << "255.255.255.255" << 16 << "255.255.255.255";
    QTest::newRow("IPv4, two numbers") << "10.1" << 16 << "10.0.0.1";
    QTest::newRow("IPv4, three numbers") << "10.1.2" << 16 << "10.1.0.2";
    QTest::newRow("IPv4, one number") << "3232235783" << 16 << "192.168.1.7";
    QTest::newRow("IPv4, hexadecimal") << "0xC0.0xA8.1.7" << 16 << "192.168.1.7";
    QTest::newRow("IPv4, octal") << "0300.0250.1.7" << 16 << "192.168.1.7";
    QTest::newRow("IPv6") << "fe80::1" << 28 << "fe80::1";
    QTest::newRow("IPv6, any") << "::" << 28 << "::";
    QTest::newRow("IPv6, whole") << "2001:DB8:0:0:1:2:3:4" << 28 << "2001:db8::1:2:3:4";
    QTest::newRow("IPv6, IPv4 at its end") << "::ffff:192.168.1.7" << 28 << "::ffff:192.168.1.7";
    QTest::newRow("IPv6, longest") << "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff" << 28
                                   << "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff";
}

void SocketAddressTest::parses() {
    QFETCH(QString, text);
    QFETCH(int, length);
    QFETCH(QString, presentation);

    const SocketAddress made(text.toStdString());
    QCOMPARE(QString::fromStdString(made.Presentation()), presentation);
    QCOMPARE(static_cast<int>(made._SockLen()), length);
    QCOMPARE(made.Port(), 0);
    QCOMPARE(made.Scope(), 0U);

    // Into an object of the other family: what the text does not say stays.
    SocketAddress other = length == 16 ? ipv6({1, 2, 3}, 7100, 3) : ipv4({1, 2, 3, 4}, 7100);
    other.Presentation(text.toStdString());
    QCOMPARE(QString::fromStdString(other.Presentation()), presentation);
    QCOMPARE(other.Port(), 7100);
    // Nothing else of what was there before counts.
    SocketAddress sameAnew = made;
    sameAnew.Port(7100);
    QVERIFY(other == sameAnew);
}

void SocketAddressTest::refuses_data() {
    QTest::addColumn<std::string>("text");

    QTest::newRow("nothing") << std::string();
    QTest::newRow("a name") << std::string("unit3");
    QTest::newRow("a name that exists") << std::string("localhost");
    QTest::newRow("five numbers") << std::string("1.2.3.4.5");
    QTest::newRow("too large a number") << std::string("1.2.3.256");
    QTest::newRow("a number missing") << std::string("1..2.3");
    QTest::newRow("a NUL behind an address") << std::string("1.2.3.4\0x", 9);
    QTest::newRow("IPv4 with a port") << std::string("1.2.3.4:7100");
    QTest::newRow("IPv6 with a scope") << std::string("fe80::1%en0");
    QTest::newRow("IPv6 with a scope number") << std::string("fe80::1%2");
    QTest::newRow("IPv6 in brackets") << std::string("[fe80::1]");
    QTest::newRow("a colon") << std::string(":");
    QTest::newRow("nine groups") << std::string("1:2:3:4:5:6:7:8:9");
    QTest::newRow("a group of five digits") << std::string("fe80::12345");
    QTest::newRow("a NUL behind an IPv6 address") << std::string("fe80::1\0x", 9);
    QTest::newRow("a long text") << std::string(100000, '1');
    QTest::newRow("a long text of colons") << std::string(100000, ':');
}

void SocketAddressTest::refuses() {
    QFETCH(std::string, text);
    // A message is read as a C string: it ends where the text has a NUL.
    const std::string expected = "SocketAddress: illegal address " + std::string(text.c_str());

    QCOMPARE(messageOf([&] { const SocketAddress made(text); }), expected);
    for (const SocketAddress& before : {ipv4({1, 2, 3, 4}, 7100), ipv6({0xFE, 0x80}, 7100, 3)}) {
        SocketAddress address = before;
        QCOMPARE(messageOf([&] { address.Presentation(text); }), expected);
        QVERIFY(address == before);
    }
}

void SocketAddressTest::anyAddressOfAFamily_data() {
    QTest::addColumn<Socket::Family>("family");
    QTest::addColumn<QString>("presentation");
    QTest::addColumn<int>("length");

    QTest::newRow("IPv4") << Socket::IPv4 << "0.0.0.0" << 16;
    QTest::newRow("IPv6") << Socket::IPv6 << "::" << 28;
}

void SocketAddressTest::anyAddressOfAFamily() {
    QFETCH(Socket::Family, family);
    QFETCH(QString, presentation);
    QFETCH(int, length);

    const SocketAddress any(family);
    QCOMPARE(QString::fromStdString(any.Presentation()), presentation);
    QCOMPARE(any.Port(), 0);
    QCOMPARE(any.Scope(), 0U);
    QCOMPARE(static_cast<int>(any._SockLen()), length);
    QVERIFY(!any.IsLinkLocal());
}

void SocketAddressTest::familiesAreThePlatformsNumbers() {
    QCOMPARE(static_cast<int>(Socket::IPv4), AF_INET);
    QCOMPARE(static_cast<int>(Socket::IPv6), AF_INET6);
}

void SocketAddressTest::anUnknownFamilyIsRefused_data() {
    QTest::addColumn<int>("number");

    QTest::newRow("none") << AF_UNSPEC;
    QTest::newRow("local") << AF_UNIX;
    QTest::newRow("negative") << -1;
    QTest::newRow("IPv4 in its low 16 bits") << 0x10000 + AF_INET;
}

void SocketAddressTest::anUnknownFamilyIsRefused() {
    QFETCH(int, number);
    QCOMPARE(messageOf([&] { const SocketAddress made(static_cast<Socket::Family>(number)); }),
             std::string("SocketAddress: unknown socket family"));
}

void SocketAddressTest::anUnknownPlatformAddressIsRefused() {
    sockaddr unknown{};
    unknown.sa_family = AF_UNIX;
    QCOMPARE(messageOf([&] { const SocketAddress made(unknown); }),
             std::string("SocketAddress: unknown socket family"));

    const SocketAddress before = ipv6({0xFE, 0x80}, 7100, 3);
    SocketAddress address = before;
    QCOMPARE(messageOf([&] { address.Assign(unknown); }),
             std::string("SocketAddress: unknown socket family"));
    QVERIFY(address == before);
}

void SocketAddressTest::hostNamesAreNeverFound_data() {
    QTest::addColumn<QString>("host");
    QTest::addColumn<int>("family");

    QTest::newRow("a name that exists") << "localhost" << AF_INET;
    QTest::newRow("a name that does not") << "no.such.host.invalid" << AF_INET6;
    QTest::newRow("an address") << "127.0.0.1" << AF_INET;
    QTest::newRow("nothing") << "" << AF_INET;
    QTest::newRow("an unknown family") << "localhost" << AF_UNIX;
}

void SocketAddressTest::hostNamesAreNeverFound() {
    QFETCH(QString, host);
    QFETCH(int, family);
    const auto asked = static_cast<Socket::Family>(family);
    const std::string expected = "HostNotFound SocketAddress: " + host.toStdString() + " not found";

    QCOMPARE(messageOf([&] { const SocketAddress made(host.toStdString(), asked); }), expected);

    const SocketAddress before = ipv4({1, 2, 3, 4}, 7100);
    SocketAddress address = before;
    QCOMPARE(messageOf([&] { address.Name(host.toStdString(), asked); }), expected);
    QVERIFY(address == before);
    static_assert(std::is_base_of_v<SocketError, HostNotFound>);
    static_assert(std::is_base_of_v<std::runtime_error, SocketError>);
}

void SocketAddressTest::takesAPlatformIPv4Address() {
    sockaddr_in given;
    std::memset(&given, 0xA5, sizeof given); // also the padding, which must not count
    given.sin_family = AF_INET;
    given.sin_port = htons(7100);
    inet_pton(AF_INET, "192.168.1.7", &given.sin_addr);

    const SocketAddress made(reinterpret_cast<const sockaddr&>(given));
    QCOMPARE(made.Presentation(), std::string("192.168.1.7"));
    QCOMPARE(made.Port(), 7100);
    QCOMPARE(made.Scope(), 0U);
    QVERIFY(made == ipv4({192, 168, 1, 7}, 7100));
}

void SocketAddressTest::takesAPlatformIPv6Address() {
    const sockaddr_in6 given = platformIPv6(7100, 0, "fe80::7", 3);

    const SocketAddress made(asAny(given));
    QCOMPARE(made.Presentation(), std::string("fe80::7"));
    QCOMPARE(made.Port(), 7100);
    QCOMPARE(made.Scope(), 3U);
    QVERIFY(made == ipv6({0xFE, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 7}, 7100, 3));
}

void SocketAddressTest::assigningAnAddressKeepsPortAndScope() {
    SocketAddress address = ipv6({0xFE, 0x80}, 7100, 3);
    in6_addr other6;
    inet_pton(AF_INET6, "fe80::9", &other6);
    address.Assign(other6);
    QCOMPARE(address.Presentation(), std::string("fe80::9"));
    QCOMPARE(address.Port(), 7100);
    QCOMPARE(address.Scope(), 3U);

    in_addr other4;
    inet_pton(AF_INET, "10.0.0.9", &other4);
    address.Assign(other4);
    QCOMPARE(address.Presentation(), std::string("10.0.0.9"));
    QCOMPARE(address.Port(), 7100);
    QCOMPARE(address.Scope(), 0U);
    QVERIFY(address == ipv4({10, 0, 0, 9}, 7100));

    address.Assign(other6);
    QCOMPARE(address.Scope(), 3U);
    QVERIFY(address == ipv6({0xFE, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 9}, 7100, 3));
}

void SocketAddressTest::assigningAnAddressKeepsTheFlow() {
    SocketAddress address(asAny(platformIPv6(7100, htonl(5), "fe80::7", 3)));
    in6_addr other;
    inet_pton(AF_INET6, "fe80::9", &other);
    address.Assign(other);
    QVERIFY(address == SocketAddress(asAny(platformIPv6(7100, htonl(5), "fe80::9", 3))));
}

void SocketAddressTest::assigningAPlatformAddressReplacesEverything() {
    SocketAddress address = ipv6({0xFE, 0x80}, 7100, 3);
    sockaddr_in given{};
    given.sin_family = AF_INET;
    inet_pton(AF_INET, "10.0.0.9", &given.sin_addr);
    address.Assign(reinterpret_cast<const sockaddr&>(given));
    QVERIFY(address == ipv4({10, 0, 0, 9}, 0));
}

void SocketAddressTest::portsAreSixteenBits_data() {
    QTest::addColumn<int>("given");
    QTest::addColumn<int>("kept");
    QTest::addColumn<QByteArray>("stored");

    QTest::newRow("0") << 0 << 0 << QByteArray("\x00\x00", 2);
    QTest::newRow("1") << 1 << 1 << QByteArray("\x00\x01", 2);
    QTest::newRow("7100") << 7100 << 7100 << QByteArray("\x1B\xBC", 2);
    QTest::newRow("65534") << 65534 << 65534 << QByteArray("\xFF\xFE", 2);
    QTest::newRow("65535") << 65535 << 65535 << QByteArray("\xFF\xFF", 2);
    QTest::newRow("65536") << 65536 << 0 << QByteArray("\x00\x00", 2);
}

void SocketAddressTest::portsAreSixteenBits() {
    QFETCH(int, given);
    QFETCH(int, kept);
    QFETCH(QByteArray, stored);
    for (const SocketAddress& before : {ipv4({1, 2, 3, 4}, 1), ipv6({1, 2, 3, 4}, 1, 3)}) {
        SocketAddress address = before;
        address.Port(given);
        QCOMPARE(address.Port(), kept);
        QCOMPARE(QByteArray(reinterpret_cast<const char*>(address._SockAddr()) + 2, 2), stored);
    }
}

void SocketAddressTest::scopeIsForIPv6Only() {
    SocketAddress six = ipv6({0xFE, 0x80}, 0, 0);
    six.Scope(0xFFFFFFFFU);
    QCOMPARE(six.Scope(), 0xFFFFFFFFU);

    const SocketAddress before = ipv4({1, 2, 3, 4}, 0);
    SocketAddress four = before;
    four.Scope(3);
    QCOMPARE(four.Scope(), 0U);
    QVERIFY(four == before);
}

void SocketAddressTest::wildcardKeepsPortAndScope() {
    SocketAddress four = ipv4({1, 2, 3, 4}, 7100);
    four.Wildcard();
    QVERIFY(four == ipv4({0, 0, 0, 0}, 7100));
    SocketAddress six = ipv6({1, 2, 3, 4}, 7100, 3);
    six.Wildcard();
    QVERIFY(six == ipv6({}, 7100, 3));
}

void SocketAddressTest::linkLocal_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isLinkLocal");

    QTest::newRow("169.254.0.1") << "169.254.0.1" << true;
    QTest::newRow("169.254.255.255") << "169.254.255.255" << true;
    QTest::newRow("169.253.255.255") << "169.253.255.255" << false;
    QTest::newRow("169.255.0.0") << "169.255.0.0" << false;
    QTest::newRow("168.254.0.1") << "168.254.0.1" << false;
    QTest::newRow("254.169.0.1") << "254.169.0.1" << false;
    QTest::newRow("fe80::1") << "fe80::1" << true;
    QTest::newRow("fe80:ffff::1") << "fe80:ffff::1" << true;
    QTest::newRow("fe81::1") << "fe81::1" << false;
    QTest::newRow("fe90::1") << "fe90::1" << false;
    QTest::newRow("febf::1") << "febf::1" << false;
    QTest::newRow("fec0::1") << "fec0::1" << false;
    QTest::newRow("ff80::1") << "ff80::1" << false;
    QTest::newRow("::ffff:169.254.0.1") << "::ffff:169.254.0.1" << false;
}

void SocketAddressTest::linkLocal() {
    QFETCH(QString, text);
    QFETCH(bool, isLinkLocal);
    QCOMPARE(SocketAddress(text.toStdString()).IsLinkLocal(), isLinkLocal);
}

void SocketAddressTest::isHandedToSocketCallsAsItIs() {
    for (const std::string text : {"127.0.0.1", "::1"}) {
        const SocketAddress own(text);
        const int descriptor = ::socket(own._SockAddr()->sa_family, SOCK_DGRAM, 0);
        QVERIFY(descriptor >= 0);
        QCOMPARE(::bind(descriptor, own._SockAddr(), own._SockLen()), 0);
        sockaddr_in6 bound{};
        socklen_t length = sizeof bound;
        QCOMPARE(::getsockname(descriptor, reinterpret_cast<sockaddr*>(&bound), &length), 0);
        QCOMPARE(length, own._SockLen());
        const SocketAddress read(asAny(bound));
        QCOMPARE(read.Presentation(), text);
        QVERIFY(read.Port() > 0);
        ::close(descriptor);
    }
}

int main(int argc, char** argv) {
    return runTest<SocketAddressTest>(argc, argv);
}

#include "SocketAddressTest.moc"
