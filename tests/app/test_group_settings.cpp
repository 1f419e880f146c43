#include "GroupSettings.h"
#include "TestEnvironment.h"

#include <QFile>
#include <QSettings>

#include <limits>

namespace {

const QByteArray defaultColors = QByteArray::fromHex("0000000300ff0000ff"
                                                     "0000000300ffe0e0e0"
                                                     "0000000300ffff0000");
const QByteArray otherColors = QByteArray::fromHex("0000000300ff112233"
                                                   "0000000300ff445566"
                                                   "0000000300ff778899");

} // namespace

class TestGroupSettings : public QObject {
    Q_OBJECT

private slots:
    void init() { m_store.clear(); }
    void defaultsWithoutStoredValues();
    void roundTrip();
    void keysAndFormatsInTheStore();
    void columns_data();
    void columns();
    void count_data();
    void count();
    void colors_data();
    void colors();
    void font_data();
    void font();

private:
    QSettings m_store{QStringLiteral("VESTRA"), QStringLiteral("group7100")};
};

void TestGroupSettings::defaultsWithoutStoredValues() {
    const GroupSettings settings = GroupSettings::load(m_store);
    QCOMPARE(settings.geometry, QByteArray());
    QCOMPARE(settings.maxColumns, 2);
    QCOMPARE(settings.count, 1);
    QCOMPARE(settings.colors, defaultColors);
    QCOMPARE(settings.fontFamily, QStringLiteral("Arial"));
}

void TestGroupSettings::roundTrip() {
    const GroupSettings written{.geometry = QByteArray("\x01\x00\xff", 3),
                                .maxColumns = 3,
                                .count = 5,
                                .colors = otherColors,
                                .fontFamily = QStringLiteral("Courier New")};
    written.save(m_store);
    m_store.sync();

    const QSettings again(QStringLiteral("VESTRA"), QStringLiteral("group7100"));
    const GroupSettings read = GroupSettings::load(again);
    QCOMPARE(read.geometry, written.geometry);
    QCOMPARE(read.maxColumns, 3);
    QCOMPARE(read.count, 5);
    QCOMPARE(read.colors, otherColors);
    QCOMPARE(read.fontFamily, QStringLiteral("Courier New"));
}

void TestGroupSettings::keysAndFormatsInTheStore() {
    GroupSettings{.geometry = "geometry", .maxColumns = 4, .count = 7}.save(m_store);
    auto keys = m_store.allKeys();
    keys.sort();
    QCOMPARE(keys, QStringList({QStringLiteral("group/colors"), QStringLiteral("group/count"),
                                QStringLiteral("group/font"), QStringLiteral("group/geometry"),
                                QStringLiteral("group/maxcols")}));
    QCOMPARE(m_store.value("group/geometry").toByteArray(), QByteArray("geometry"));
    QCOMPARE(m_store.value("group/maxcols").toInt(), 4);
    QCOMPARE(m_store.value("group/count").toInt(), 7);
    QCOMPARE(m_store.value("group/colors").toByteArray(), defaultColors);
    QCOMPARE(m_store.value("group/font").toString(), QStringLiteral("Arial"));
}

void TestGroupSettings::columns_data() {
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<int>("maxColumns");

    QTest::newRow("1") << QVariant(1) << 1;
    QTest::newRow("as text") << QVariant("4") << 4;
    QTest::newRow("beyond what the preferences offer") << QVariant(7) << 7;
    QTest::newRow("negative") << QVariant(-3) << -3;
    QTest::newRow("words") << QVariant("many") << 2;
    QTest::newRow("empty") << QVariant("") << 2;
    QTest::newRow("list") << QVariant(QStringList({"1", "2"})) << 2;
    QTest::newRow("bytes") << QVariant(QByteArray("\x00\x01", 2)) << 2;
    QTest::newRow("beyond an int") << QVariant("99999999999") << 2;
}

void TestGroupSettings::columns() {
    QFETCH(const QVariant, stored);
    QFETCH(const int, maxColumns);
    m_store.setValue("group/maxcols", stored);
    QCOMPARE(GroupSettings::load(m_store).maxColumns, maxColumns);
}

void TestGroupSettings::count_data() {
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<int>("count");

    QTest::newRow("none") << QVariant(0) << 0;
    QTest::newRow("one") << QVariant(1) << 1;
    QTest::newRow("most") << QVariant(256) << 256;
    QTest::newRow("one too many") << QVariant(257) << 1;
    QTest::newRow("negative") << QVariant(-1) << 1;
    QTest::newRow("a hundred thousand") << QVariant(100000) << 1;
    QTest::newRow("largest int") << QVariant(std::numeric_limits<int>::max()) << 1;
    QTest::newRow("words") << QVariant("many") << 1;
    QTest::newRow("list") << QVariant(QStringList({"3", "4"})) << 1;
}

void TestGroupSettings::count() {
    QFETCH(const QVariant, stored);
    QFETCH(const int, count);
    m_store.setValue("group/count", stored);
    QCOMPARE(GroupSettings::load(m_store).count, count);
}

void TestGroupSettings::colors_data() {
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<QByteArray>("colors");

    QTest::newRow("three colours") << QVariant(otherColors) << otherColors;
    QTest::newRow("transparent ones") << QVariant(QByteArray::fromHex("000000030000000000"
                                                                      "000000030000000000"
                                                                      "000000030000000000"))
                                      << QByteArray::fromHex("000000030000000000"
                                                             "000000030000000000"
                                                             "000000030000000000");
    QTest::newRow("empty") << QVariant(QByteArray()) << defaultColors;
    for (qsizetype length : {1, 8, 9, 18, 26})
        QTest::addRow("cut off after %d bytes", int(length))
            << QVariant(otherColors.left(length)) << defaultColors;
    QTest::newRow("noise") << QVariant(QByteArray(27, '\xff')) << defaultColors;
    QTest::newRow("number") << QVariant(12) << defaultColors;
    QTest::newRow("list") << QVariant(QStringList({"a", "b"})) << defaultColors;
}

void TestGroupSettings::colors() {
    QFETCH(const QVariant, stored);
    QFETCH(const QByteArray, colors);
    m_store.setValue("group/colors", stored);
    QCOMPARE(GroupSettings::load(m_store).colors, colors);
}

void TestGroupSettings::font_data() {
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<QString>("family");

    QTest::newRow("family") << QVariant("Courier New") << QStringLiteral("Courier New");
    QTest::newRow("empty") << QVariant("") << QStringLiteral("Arial");
    QTest::newRow("list") << QVariant(QStringList({"a", "b"})) << QStringLiteral("Arial");
}

void TestGroupSettings::font() {
    QFETCH(const QVariant, stored);
    QFETCH(const QString, family);
    m_store.setValue("group/font", stored);
    QCOMPARE(GroupSettings::load(m_store).fontFamily, family);
}

int main(int argc, char** argv) {
    return runTest<TestGroupSettings>(argc, argv);
}

#include "test_group_settings.moc"
