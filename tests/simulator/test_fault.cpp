// What each fault makes of a packet, byte by byte.

#include "Fault.h"
#include "TestEnvironment.h"

#include <QList>

class TestFault : public QObject {
    Q_OBJECT

private slots:
    void writes_data();
    void writes();
    void endings_data();
    void endings();
    void everyFaultHasANameAndALine();
    void noSuchFault();
    void noStrayByteOpensAFrame();
    void oversizedLengthsTakeTurns();
    void unknownTagsTakeTurns();
    void unknownTypesTakeTurns();
};

namespace {

const QByteArray chat = QByteArrayLiteral("\0\0\0\0CHAThi");
/// A bundle with a text item of two bytes and a cursor.
const QByteArray bundle = QByteArrayLiteral("\0\0\0\0BNDLT\0\0\0\x02xyR\0\0\0\x03\x01\x02\x03");

QList<QByteArray> toList(const Delivery& delivery) {
    QList<QByteArray> list;
    for (const std::string& write : delivery.writes)
        list.append(QByteArray::fromStdString(write));
    return list;
}

FaultChain chainOf(const QStringList& names) {
    FaultChain chain;
    for (const QString& name : names)
        chain.add(faultKindNamed(name.toStdString())->make());
    return chain;
}

QList<QByteArray> bytesOf(const QByteArray& bytes) {
    QList<QByteArray> list;
    for (const char byte : bytes)
        list.append(QByteArray(1, byte));
    return list;
}

} // namespace

void TestFault::writes_data() {
    QTest::addColumn<QStringList>("faults");
    QTest::addColumn<QByteArray>("packet");
    QTest::addColumn<QList<QByteArray>>("writes");
    using List = QList<QByteArray>;
    const QByteArray chatFrame = QByteArrayLiteral("<D>\0\0\0\x0A\0\0\0\0CHAThi");
    const QByteArray bundleFrame =
        QByteArrayLiteral("<D>\0\0\0\x17\0\0\0\0BNDLT\0\0\0\x02xyR\0\0\0\x03\x01\x02\x03");
    const QByteArray stray = QByteArrayLiteral("\r\n\0D>\xFF");
    const QByteArray otherTag = QByteArrayLiteral("<X>\0\0\0\x13\0\0\0\0CHATunknown tag");
    const QByteArray otherType = QByteArrayLiteral("<D>\0\0\0\x14\0\0\0\0ZZZZunknown type");

    QTest::newRow("none") << QStringList() << chat << List{chatFrame};
    QTest::newRow("single-bytes") << QStringList{"single-bytes"} << chat << bytesOf(chatFrame);
    QTest::newRow("stray-bytes") << QStringList{"stray-bytes"} << chat << List{stray, chatFrame};
    QTest::newRow("unknown-tags") << QStringList{"unknown-tags"} << chat
                                  << List{otherTag, chatFrame};
    QTest::newRow("unknown-types")
        << QStringList{"unknown-types"} << bundle << List{otherType, bundleFrame};
    QTest::newRow("truncated-items")
        << QStringList{"truncated-items"} << bundle
        << List{QByteArrayLiteral("<D>\0\0\0\x15\0\0\0\0BNDLT\0\0\0\x02xyR\0\0\0\x03\x01"),
                bundleFrame};
    QTest::newRow("truncated-items leaves chat")
        << QStringList{"truncated-items"} << chat << List{chatFrame};
    QTest::newRow("oversized-items")
        << QStringList{"oversized-items"} << bundle
        << List{QByteArrayLiteral("<D>\0\0\0\x17\0\0\0\0BNDLT\0\0\0\x0BxyR\0\0\0\x03\x01\x02\x03"),
                bundleFrame};
    QTest::newRow("oversized-items leaves chat")
        << QStringList{"oversized-items"} << chat << List{chatFrame};
    QTest::newRow("half-frame lets the first pass")
        << QStringList{"half-frame"} << chat << List{chatFrame};
    QTest::newRow("abrupt-close lets the first pass")
        << QStringList{"abrupt-close"} << chat << List{chatFrame};
    QTest::newRow("together") << QStringList{"single-bytes", "unknown-types", "stray-bytes"} << chat
                              << bytesOf(stray + otherType + stray + chatFrame);
}

void TestFault::writes() {
    QFETCH(QStringList, faults);
    QFETCH(QByteArray, packet);
    FaultChain chain = chainOf(faults);
    const Delivery delivery = chain.deliver(packet.toStdString());
    QTEST(toList(delivery), "writes");
    QVERIFY(delivery.ending == Delivery::Ending::CarryOn);
}

void TestFault::endings_data() {
    QTest::addColumn<QStringList>("faults");
    QTest::addColumn<bool>("reset");
    QTest::addColumn<QByteArray>("second");
    const QByteArray half = QByteArrayLiteral("<D>\0\0\0\x0A\0");
    QTest::newRow("half-frame") << QStringList{"half-frame"} << false << half;
    QTest::newRow("abrupt-close") << QStringList{"abrupt-close"} << true << half;
    const QByteArray stray = QByteArrayLiteral("\r\n\0D>\xFF");
    QTest::newRow("after stray bytes")
        << QStringList{"stray-bytes", "abrupt-close"} << true << stray + half;
    QTest::newRow("before stray bytes")
        << QStringList{"abrupt-close", "stray-bytes"} << true << stray + half;
    QTest::newRow("before single bytes")
        << QStringList{"single-bytes", "half-frame"} << false << half;
}

void TestFault::endings() {
    QFETCH(QStringList, faults);
    QFETCH(bool, reset);
    FaultChain chain = chainOf(faults);
    QVERIFY(chain.deliver(chat.toStdString()).ending == Delivery::Ending::CarryOn);
    const Delivery second = chain.deliver(chat.toStdString());
    QTEST(toList(second).join(), "second");
    QVERIFY(second.ending == (reset ? Delivery::Ending::Reset : Delivery::Ending::FallSilent));
}

void TestFault::everyFaultHasANameAndALine() {
    const QStringList names{"single-bytes",    "stray-bytes",     "unknown-tags", "unknown-types",
                            "truncated-items", "oversized-items", "half-frame",   "abrupt-close"};
    QStringList listed;
    for (const FaultKind& kind : faultKinds()) {
        listed.append(QString::fromUtf8(kind.name));
        QVERIFY(!QString::fromUtf8(kind.description).isEmpty());
    }
    QCOMPARE(listed, names);
}

void TestFault::noSuchFault() {
    QVERIFY(faultKindNamed("") == nullptr);
    QVERIFY(faultKindNamed("half") == nullptr);
    QVERIFY(faultKindNamed("Half-Frame") == nullptr);
}

void TestFault::noStrayByteOpensAFrame() {
    FaultChain chain = chainOf({"stray-bytes"});
    for (int i = 0; i < 20; ++i) {
        const QList<QByteArray> writes = toList(chain.deliver(chat.toStdString()));
        QVERIFY(!writes.first().isEmpty() && !writes.first().contains('<'));
    }
}

void TestFault::oversizedLengthsTakeTurns() {
    FaultChain chain = chainOf({"oversized-items"});
    QList<QByteArray> lengths;
    for (int i = 0; i < 4; ++i)
        lengths.append(toList(chain.deliver(bundle.toStdString())).first().sliced(16, 4));
    QCOMPARE(lengths, (QList<QByteArray>{
                          QByteArrayLiteral("\0\0\0\x0B"), QByteArrayLiteral("\x80\0\0\0"),
                          QByteArrayLiteral("\xFF\xFF\xFF\xFF"), QByteArrayLiteral("\0\0\0\x0B")}));
}

void TestFault::unknownTagsTakeTurns() {
    FaultChain chain = chainOf({"unknown-tags"});
    QList<QByteArray> tags;
    for (int i = 0; i < 5; ++i) {
        const QByteArray frame = toList(chain.deliver(chat.toStdString())).first();
        tags.append(frame.first(frame.indexOf('>') + 1));
    }
    QCOMPARE(tags, (QList<QByteArray>{"<X>", "<>", "<<D>", "<DD>", "<X>"}));
}

void TestFault::unknownTypesTakeTurns() {
    FaultChain chain = chainOf({"unknown-types"});
    QList<QByteArray> types;
    for (int i = 0; i < 6; ++i)
        types.append(toList(chain.deliver(chat.toStdString())).first().sliced(11, 4));
    QCOMPARE(types, (QList<QByteArray>{"ZZZZ", "bndl", "SOFT", "VARS", "FXFR", "ZZZZ"}));
}

int main(int argc, char** argv) {
    return runTest<TestFault>(argc, argv);
}

#include "test_fault.moc"
