#include "ColorTables.h"
#include "TestEnvironment.h"

namespace {

QByteArray bytes(const char* hex) {
    return QByteArray::fromHex(hex);
}

} // namespace

class TestColorTables : public QObject {
    Q_OBJECT

private slots:
    void eachAttributeHasItsColours_data() {
        QTest::addColumn<std::size_t>("attribute");
        QTest::addColumn<QColor>("foreground");
        QTest::addColumn<QColor>("background");
        QTest::newRow("normal") << std::size_t{0} << QColor(1, 1, 1) << QColor(2, 2, 2);
        QTest::newRow("inverse") << std::size_t{1} << QColor(2, 2, 2) << QColor(1, 1, 1);
        QTest::newRow("highlight") << std::size_t{2} << QColor(3, 3, 3) << QColor(2, 2, 2);
        QTest::newRow("inverse highlight") << std::size_t{3} << QColor(2, 2, 2) << QColor(3, 3, 3);
    }
    void eachAttributeHasItsColours() {
        QFETCH(const std::size_t, attribute);
        const ColorTables tables(QColor(1, 1, 1), QColor(2, 2, 2), QColor(3, 3, 3));
        QTEST(tables.foreground.at(attribute), "foreground");
        QTEST(tables.background.at(attribute), "background");
    }

    void threeColoursAre27Bytes_data() {
        QTest::addColumn<ColorTables>("tables");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("defaults") << ColorTables()
                                  << bytes("0000000300ff0000ff 0000000300ffe0e0e0 "
                                           "0000000300ffff0000");
        QTest::newRow("alpha in the top byte")
            << ColorTables(QColor(1, 2, 3, 4), QColor(0, 0, 0, 0), QColor(255, 255, 255, 128))
            << bytes("000000030004010203 000000030000000000 000000030080ffffff");
        QTest::newRow("no colour is black") << ColorTables(QColor(), QColor(), QColor())
                                            << bytes("0000000300ff000000 0000000300ff000000 "
                                                     "0000000300ff000000");
    }
    void threeColoursAre27Bytes() {
        QFETCH(const ColorTables, tables);
        QTEST(tables.toBytes(), "expected");
        QCOMPARE(tables.toBytes().size(), 27);
    }

    void bytesAreRead_data() {
        QTest::addColumn<QByteArray>("stored");
        QTest::addColumn<QColor>("text");
        QTest::addColumn<QColor>("background");
        QTest::addColumn<QColor>("highlight");
        const QColor black(0, 0, 0);

        QTest::newRow("defaults") << bytes("0000000300ff0000ff 0000000300ffe0e0e0 "
                                           "0000000300ffff0000")
                                  << QColor(0, 0, 255) << QColor(224, 224, 224)
                                  << QColor(255, 0, 0);
        QTest::newRow("alpha becomes opaque")
            << bytes("000000030004010203 000000030000000001 000000030080ffffff") << QColor(1, 2, 3)
            << QColor(0, 0, 1) << QColor(255, 255, 255);
        QTest::newRow("other numbers count")
            << bytes("000000020000000007 00000004000000000000000008 000000010001")
            << QColor(0, 0, 7) << QColor(0, 0, 8) << QColor(0, 0, 1);
        QTest::newRow("text is a number")
            << bytes("0000000a000000000400310032 000000030000000009 "
                     "00000003000000000a")
            << QColor(0, 0, 12) << QColor(0, 0, 9) << QColor(0, 0, 10);
        QTest::newRow("null values are 0")
            << bytes("000000030100000000 000000030000000001 000000030000000002") << black
            << QColor(0, 0, 1) << QColor(0, 0, 2);
        QTest::newRow("more than needed") << bytes("000000030000000001 000000030000000002 "
                                                   "000000030000000003 ffff")
                                          << QColor(0, 0, 1) << QColor(0, 0, 2) << QColor(0, 0, 3);
        QTest::newRow("empty") << QByteArray() << black << black << black;
        QTest::newRow("noise") << QByteArray("not a colour set at all, whatever it is") << black
                               << black << black;
        QTest::newRow("a type that nobody stored ends it")
            << bytes("000000030000000001 0000000900ffffffff 000000030000000003") << QColor(0, 0, 1)
            << black << black;
    }
    void bytesAreRead() {
        QFETCH(const QByteArray, stored);
        const ColorTables read = ColorTables::fromBytes(stored);
        QTEST(read.textColor(), "text");
        QTEST(read.backgroundColor(), "background");
        QTEST(read.highlightColor(), "highlight");
    }

    void everyTruncationIsBlackFromThereOn() {
        const QByteArray whole = bytes("0000000300ff000001 0000000300ff000002 0000000300ff000003");
        for (int length = 0; length <= 27; ++length) {
            const ColorTables read = ColorTables::fromBytes(whole.left(length));
            QCOMPARE(read.textColor(), QColor(0, 0, length >= 9 ? 1 : 0));
            QCOMPARE(read.backgroundColor(), QColor(0, 0, length >= 18 ? 2 : 0));
            QCOMPARE(read.highlightColor(), QColor(0, 0, length >= 27 ? 3 : 0));
        }
    }

    void wholeSetsAreKnown() {
        const QByteArray whole = ColorTables().toBytes();
        QVERIFY(ColorTables::areIn(whole));
        QVERIFY(ColorTables::areIn(whole + "more"));
        QVERIFY(ColorTables::areIn(ColorTables(QColor(), QColor(), QColor()).toBytes()));
        for (qsizetype length = 0; length < whole.size(); ++length)
            QVERIFY2(!ColorTables::areIn(whole.left(length)), qPrintable(QString::number(length)));
        // Numbers of another type are read, but nobody has written them.
        for (const qsizetype type : {3, 12, 21}) {
            QByteArray other = whole;
            other[type] = QMetaType::Int;
            QVERIFY2(!ColorTables::areIn(other), qPrintable(QString::number(type)));
        }
    }

    void listsWithinListsDoNotExhaustTheStack() {
        // Each level of a list of one list costs 9 bytes here and a few calls in a trusting reader.
        const QByteArray level = bytes("000000090000000001");
        const ColorTables read = ColorTables::fromBytes(level.repeated(1'000'000));
        QCOMPARE(read.textColor(), QColor(0, 0, 0));
    }
};

int main(int argc, char** argv) {
    return runTest<TestColorTables>(argc, argv);
}

#include "test_colortables.moc"
