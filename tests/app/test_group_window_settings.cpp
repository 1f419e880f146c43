#include "HelpLinks.h"
#include "LCD7100.h"
#include "TestEnvironment.h"
#include "WindowUnderTest.h"

#include <QFile>
#include <QScreen>
#include <QSettings>

namespace {

const QByteArray defaultColors = QByteArray::fromHex("0000000300ff0000ff"
                                                     "0000000300ffe0e0e0"
                                                     "0000000300ffff0000");

const QByteArray otherColors = QByteArray::fromHex("0000000300ff112233"
                                                   "0000000300ff445566"
                                                   "0000000300ff778899");

} // namespace

class TestGroupWindowSettings : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        Q_INIT_RESOURCE(group);
        // A window that starts asks for news: here there is nobody to ask.
        newsSource.clear();
    }
    void init() { m_store.clear(); }
    void damagedStore_data();
    void damagedStore();
    void geometryIsRestored();
    void damagedGeometry_data();
    void damagedGeometry();
    void colorsAndFontSpread();
    void settingsAreWrittenOnClosing();
    void settingsAreNotWrittenBefore();

private:
    QSettings m_store{QStringLiteral("VESTRA"), QStringLiteral("group7100")};
};

void TestGroupWindowSettings::damagedStore_data() {
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("tiles");

    for (const QVariant& value :
         {QVariant(100000), QVariant(-7), QVariant("many"), QVariant(QByteArray("\0\xff", 2)),
          QVariant(QStringList({"1", "2"})), QVariant(QVariantMap{{"a", 1}})})
        for (const char* key :
             {"group/count", "group/maxcols", "group/geometry", "group/colors", "group/font"})
            QTest::addRow("%s %s", key,
                          qPrintable(value.toString() + QLatin1String(value.typeName())))
                << key << value << 1;
    QTest::newRow("no tiles") << "group/count" << QVariant(0) << 0;
}

void TestGroupWindowSettings::damagedStore() {
    QFETCH(const QString, key);
    QFETCH(const QVariant, value);
    QFETCH(const int, tiles);
    m_store.setValue(key, value);
    const Window window;
    window.widget->show();
    QCOMPARE(window.tiles().size(), tiles);
    // Whatever was stored as the number of columns, more tiles find a place.
    for (int i = 0; i < 4; ++i)
        window.widget->addEmptyConnection(true);
    window.widget->rebuild();
    QCOMPARE(window.grid()->count(), tiles + 4);
}

void TestGroupWindowSettings::geometryIsRestored() {
    QRect geometry;
    {
        const Window window;
        window.widget->setGeometry(60, 70, 611, 433);
        window.widget->show();
        geometry = window.widget->geometry();
        QVERIFY(window.widget->close());
    }
    const Window again;
    again.widget->show();
    QCOMPARE(again.widget->geometry(), geometry);
}

void TestGroupWindowSettings::damagedGeometry_data() {
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<QSize>("size");
    QWidget other;
    other.setGeometry(60, 70, 611, 433);
    const QByteArray whole = other.saveGeometry();
    for (qsizetype length = 0; length < whole.size(); ++length)
        QTest::addRow("cut off after %d bytes", int(length))
            << whole.left(length) << QSize(450, 180);
    other.setGeometry(-9000, 9000, 611, 433);
    QTest::newRow("off the screen") << other.saveGeometry() << QSize(611, 433);
}

void TestGroupWindowSettings::damagedGeometry() {
    QFETCH(const QByteArray, stored);
    QFETCH(const QSize, size);
    m_store.setValue("group/geometry", stored);
    const Window window;
    window.widget->show();
    QCOMPARE(window.widget->size(), size.expandedTo(window.widget->minimumSizeHint()));
    QVERIFY(window.widget->screen()->availableGeometry().contains(window.widget->geometry()));
}

void TestGroupWindowSettings::colorsAndFontSpread() {
    m_store.setValue("group/count", 2);
    const Window window;
    emit window.tile(0, 0)->colorChanged(otherColors);
    emit window.tile(0, 0)->fontFamilyChanged(QStringLiteral("Courier"));
    window.widget->addEmptyConnection(true);
    for (auto* tile : window.tiles()) {
        QCOMPARE(tile->findChild<LCD7100*>()->getColors(), otherColors);
        QCOMPARE(tile->findChild<LCD7100*>()->getFontFamily(), QStringLiteral("Courier"));
    }
    QVERIFY(window.widget->close());
    QCOMPARE(m_store.value("group/colors").toByteArray(), otherColors);
    QCOMPARE(m_store.value("group/font").toString(), QStringLiteral("Courier"));
}

void TestGroupWindowSettings::settingsAreWrittenOnClosing() {
    const Window window;
    window.widget->show();
    window.widget->addEmptyConnection(true);
    window.widget->addEmptyConnection(true);
    QVERIFY(window.widget->close());
    m_store.sync();
    QCOMPARE(m_store.value("group/count").toInt(), 3);
    QCOMPARE(m_store.value("group/maxcols").toInt(), 2);
    QCOMPARE(m_store.value("group/colors").toByteArray(), defaultColors);
    QCOMPARE(m_store.value("group/font").toString(), QStringLiteral("Arial"));
    QVERIFY(!m_store.value("group/geometry").toByteArray().isEmpty());
    QVERIFY(QFile::exists(m_store.fileName()));
}

void TestGroupWindowSettings::settingsAreNotWrittenBefore() {
    {
        const Window window;
        window.widget->show();
        window.widget->addEmptyConnection(true);
        emit window.tile(0, 0)->colorChanged(otherColors);
    }
    QVERIFY(m_store.allKeys().empty());
}

int main(int argc, char** argv) {
    return runTest<TestGroupWindowSettings>(argc, argv);
}

#include "test_group_window_settings.moc"
