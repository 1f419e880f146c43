#include "TestEnvironment.h"
#include "TileIcons.h"

namespace {

const QString connectPath = QStringLiteral(":/buttons/images/Connect.png");

} // namespace

class TileIconsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { Q_INIT_RESOURCE(group); }

    void eachPictureIsUnpackedOnce() {
        const auto first = TileIcons::shared();
        const auto second = TileIcons::shared();
        QCOMPARE(second->icon(connectPath).cacheKey(), first->icon(connectPath).cacheKey());
        QVERIFY(!first->icon(connectPath).pixmap(16).isNull());
        const QString other = QStringLiteral(":/buttons/images/Disconnect.png");
        QVERIFY(first->icon(other).cacheKey() != first->icon(connectPath).cacheKey());
    }

    void theyGoWithTheLastTile() {
        std::weak_ptr<TileIcons> seen;
        {
            const auto tile = TileIcons::shared();
            seen = tile;
            QVERIFY(TileIcons::shared() == tile);
        }
        QVERIFY(seen.expired());
    }
};

int main(int argc, char** argv) {
    return runTest<TileIconsTest>(argc, argv);
}

#include "test_tile_icons.moc"
