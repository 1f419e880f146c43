#include "BoxRows.h"
#include "FakeDnsSd.h"
#include "TestEnvironment.h"

#include <iostream>
#include <sstream>

/// Anybody on the network can announce anything: from the library's replies to the list's rows.
class HostileServicesTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void names_data();
    void names();
    void txtRecords_data();
    void txtRecords();
    void hostTargets_data() { names_data(); }
    void hostTargets();
    void aFloodOfNames();
    void namesThatLookTheSame();

private:
    /// Has an instrument announced, resolved and its address found.
    void announce(const std::string& name, const std::string& txt = {},
                  const std::string& host = "inst.local.");

    std::unique_ptr<FakeDnsSd> m_library;
    std::unique_ptr<BonjourBox> m_box;
    DNSServiceRef m_browse = nullptr;
};

void HostileServicesTest::init() {
    m_library = std::make_unique<FakeDnsSd>();
    m_box = std::make_unique<BonjourBox>();
    m_box->start("_gx7100._tcp", "local.");
    m_library->nextCall(&m_browse);
    m_box->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_box.get()));
}

void HostileServicesTest::cleanup() {
    m_box.reset();
    QCOMPARE(m_library->running(), 0);
    QVERIFY(m_library->misuses().empty());
    m_library.reset();
}

void HostileServicesTest::announce(const std::string& name, const std::string& txt,
                                   const std::string& host) {
    DNSServiceRef ref = nullptr;
    m_library->replyToBrowse(m_browse, kDNSServiceFlagsAdd, name);
    m_library->deliver();
    QCOMPARE(m_library->nextCall(&ref), "resolve 3 " + name + " _gx7100._tcp local.");
    m_library->replyToResolve(ref, 0, txt, host);
    m_library->deliver();
    QCOMPARE(m_library->nextCall(&ref), "query 3 " + host + " 1 1");
    m_library->replyToQuery(ref, 0, 1, std::string("\x0A\x00\x00\x01", 4));
    QCOMPARE(m_library->nextCall(&ref), "query 3 " + host + " 28 1");
    m_library->replyWithFailure(ref, kDNSServiceErr_NoSuchRecord);
    m_library->deliver();
    QCOMPARE(m_library->running(), 1);
}

void HostileServicesTest::names_data() {
    QTest::addColumn<QByteArray>("name");

    QTest::newRow("none") << QByteArray("");
    QTest::newRow("a space") << QByteArray(" ");
    QTest::newRow("markup") << QByteArray("<b>unit</b><img src='file:///etc/passwd'>");
    QTest::newRow("an entity") << QByteArray("a&amp;b &lt;");
    QTest::newRow("a mnemonic") << QByteArray("R&D && more");
    QTest::newRow("line ends") << QByteArray("unit\n1\r\n2");
    QTest::newRow("many line ends") << QByteArray(63, '\n');
    QTest::newRow("control characters") << QByteArray("\x01\x07\x08\x1B[31m\x7F\t");
    QTest::newRow("right to left") << QByteArray("\xE2\x80\xAE"
                                                 "1tinu\xE2\x80\xAC");
    QTest::newRow("63 bytes of one-byte characters") << QByteArray(63, 'W');
    QTest::newRow("63 bytes of three-byte characters") << QByteArray("\xE6\xB8\xAC").repeated(21);
    QTest::newRow("63 bytes cut inside a character")
        << QByteArray("x") + QByteArray("\xF0\x9F\x93\x9F").repeated(15) + QByteArray("\xF0\x9F");
    QTest::newRow("63 marks on one letter") << "e" + QByteArray("\xCC\x81").repeated(31);
    QTest::newRow("not UTF-8") << QByteArray("\xFF\xFE\x80\xC0");
    QTest::newRow("an address") << QByteArray("192.168.1.9");
    QTest::newRow("the last row's label") << QByteArray("Other...");
    QTest::newRow("longer than any name may be") << QByteArray(100000, 'x');
    QTest::newRow("a format") << QByteArray("%s%n%1%2");
}

void HostileServicesTest::names() {
    QFETCH(QByteArray, name);
    announce(name.toStdString());

    // One row, to the letter, and the address is that of the instrument.
    QCOMPARE(m_box->count(), 3);
    QCOMPARE(m_box->itemText(0), QString::fromUtf8(name));
    QCOMPARE(m_box->currentIndex(), 0);
    QCOMPARE(askedFor(*m_box).section(' ', 0, 1), QStringLiteral("10.0.0.1 0"));
    QVERIFY(!m_box->itemData(0, Qt::ToolTipRole).isValid());
    m_box->setDefault(QString::fromUtf8(name));
    QCOMPARE(m_box->currentIndex(), 0);

    m_box->showPopup();
    QVERIFY(!m_box->grab().isNull());
    m_box->hidePopup();

    m_library->replyToBrowse(m_browse, 0, name.toStdString());
    m_library->deliver();
    QCOMPARE(m_box->count(), 2);
}

void HostileServicesTest::txtRecords_data() {
    QTest::addColumn<std::string>("record");
    QTest::addColumn<int>("keys");

    const auto bytes = [](const char* text, std::size_t size) { return std::string(text, size); };
    QTest::newRow("none") << std::string() << 0;
    QTest::newRow("one zero length") << bytes("\x00", 1) << 0;
    QTest::newRow("64 KiB of zero lengths") << std::string(65535, '\0') << 0;
    QTest::newRow("a length past the end") << bytes("\xFFk=v", 4) << 0;
    QTest::newRow("a good entry before a length past the end") << bytes("\x03k=v\x09k2=v", 9) << 1;
    QTest::newRow("no =") << bytes("\x03key\x04key2", 9) << 0;
    QTest::newRow("a key repeated") << bytes("\x03k=1\x03k=2\x03k=3", 12) << 1;
    QTest::newRow("an empty key") << bytes("\x02=1\x01=", 5) << 1;
    QTest::newRow("NUL in key and value") << bytes("\x05k\0=\0v", 6) << 1;
    std::string large;
    for (int i = 0; large.size() + 9 <= 65535; ++i)
        large.append("\x08").append(std::to_string(10000 + i)).append("=<>");
    QTest::newRow("64 KiB of different keys") << large << 7281;
}

void HostileServicesTest::txtRecords() {
    QFETCH(std::string, record);
    QFETCH(int, keys);
    announce("unit1", record);
    QCOMPARE(m_box->currentText(), QStringLiteral("unit1"));
    QCOMPARE(m_box->_GetSelectedInstInfo()->txt.size(), static_cast<std::size_t>(keys));
}

void HostileServicesTest::hostTargets() {
    QFETCH(QByteArray, name);
    announce("unit1", {}, name.toStdString());
    QCOMPARE(m_box->itemText(0), QStringLiteral("unit1"));
    QCOMPARE(m_box->itemData(0, Qt::UserRole).toString(), QString::fromUtf8(name));
    std::string host;
    QCOMPARE(m_box->getHost(host), !name.isEmpty());
}

void HostileServicesTest::aFloodOfNames() {
    // In one go, and more than there are slots: what does not fit is reported, not kept.
    std::ostringstream output;
    std::streambuf* const before = std::cout.rdbuf(output.rdbuf());
    for (int i = 0; i < 1000; ++i)
        m_library->replyToBrowse(m_browse, kDNSServiceFlagsAdd, "unit" + std::to_string(i));
    m_library->deliver();
    std::cout.rdbuf(before);
    QCOMPARE(m_library->running(), 100);
    const std::string line = "ERROR: Error browsing: Out of resources\n";
    QCOMPARE(output.str().size(), line.size() * 901);
    QVERIFY(output.str().starts_with(line));
    QCOMPARE(textsOf(*m_box), (QStringList{"---", "Other..."}));
    QCOMPARE(askedFor(*m_box), QStringLiteral("Other... 0 7100"));
}

void HostileServicesTest::namesThatLookTheSame() {
    // Different bytes that read as the same text: two instruments all the same.
    announce("\xFFunit");
    announce("\xFEunit");
    QCOMPARE(m_box->count(), 4);
    QCOMPARE(m_box->itemText(0), m_box->itemText(1));
    QVERIFY(m_box->_GetSelectedInstInfo() == nullptr);
    m_library->replyToBrowse(m_browse, 0, "\xFEunit");
    m_library->deliver();
    QCOMPARE(m_box->count(), 3);
}

int main(int argc, char** argv) {
    return runTest<HostileServicesTest>(argc, argv);
}

#include "HostileServicesTest.moc"
