#include "CanvasPool.h"
#include "TestEnvironment.h"

#include <set>

namespace {

CellLook lookOf(const QSize& size) {
    CellLook look;
    look.font = QFont(QStringLiteral("Arial"));
    look.letterSize = 8;
    look.imageSize = size;
    look.columns = 40;
    look.rows = 8;
    return look;
}

class CanvasPoolTest : public QObject {
    Q_OBJECT

private slots:
    void oneForEachLook() {
        const auto pool = CanvasPool::shared(lookOf({240, 120}));
        QVERIFY(CanvasPool::shared(lookOf({240, 120})) == pool);
        QVERIFY(CanvasPool::shared(lookOf({241, 120})) != pool);
        CellLook bold = lookOf({240, 120});
        bold.font.setBold(true);
        QVERIFY(CanvasPool::shared(bold) != pool);
    }

    void aFewScreensEachGetTheirOwnBack() {
        const auto pool = CanvasPool::shared(lookOf({240, 120}));
        const std::array<char, 16> owners{};
        std::array<const QRgb*, 16> pixels{};
        for (std::size_t i = 0; i < owners.size(); ++i) {
            pool->join(&owners[i]);
            auto canvas = pool->take(&owners[i]);
            pixels[i] = canvas->pixels();
            pool->give(&owners[i], std::move(canvas));
        }
        QCOMPARE(pool->spares(), owners.size());
        for (std::size_t i = 0; i < owners.size(); ++i) {
            auto canvas = pool->take(&owners[i]);
            QCOMPARE(canvas->pixels(), pixels[i]);
            pool->give(&owners[i], std::move(canvas));
        }
    }

    void spares_data() {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("most");

        QTest::newRow("least") << QSize(1, 1) << 24;
        QTest::newRow("240 x 120") << QSize(240, 120) << 24;
        QTest::newRow("a row less than 16 MiB / 24") << QSize(1024, 170) << 24;
        QTest::newRow("a row more than 16 MiB / 24") << QSize(1024, 171) << 23;
        QTest::newRow("960 x 480") << QSize(960, 480) << 9;
        QTest::newRow("1920 x 960") << QSize(1920, 960) << 2;
        QTest::newRow("16 MiB") << QSize(2048, 2048) << 1;
        QTest::newRow("more than 16 MiB") << QSize(2049, 2048) << 1;
    }

    void spares() {
        QFETCH(const QSize, size);
        QFETCH(const int, most);
        const auto pool = CanvasPool::shared(lookOf(size));
        const std::array<char, 64> owners{};
        for (const char& owner : owners) {
            pool->join(&owner);
            pool->give(&owner, std::make_unique<ScreenCanvas>(size));
        }
        QCOMPARE(pool->spares(), static_cast<std::size_t>(most));
        // It is the newest that are kept.
        pool->leave(&owners.back());
        QCOMPARE(pool->spares(), static_cast<std::size_t>(most - 1));
        pool->leave(&owners.front());
        QCOMPARE(pool->spares(), static_cast<std::size_t>(most - 1));
    }

    void manyScreensShareThem() {
        const QSize size(240, 120);
        const auto pool = CanvasPool::shared(lookOf(size));
        const std::array<char, 65> owners{};
        const char& newcomer = owners.back();
        std::set<const QRgb*> kept;
        const auto give = [&](const char& owner) {
            auto canvas = std::make_unique<ScreenCanvas>(size);
            pool->join(&owner);
            kept.insert(canvas->pixels());
            pool->give(&owner, std::move(canvas));
        };
        for (std::size_t i = 0; i < 16; ++i)
            give(owners[i]);
        QVERIFY(!kept.contains(pool->take(&newcomer)->pixels()));
        give(owners[16]);
        const auto taken = pool->take(&newcomer);
        QVERIFY(kept.contains(taken->pixels()));
        QCOMPARE(pool->spares(), std::size_t{16});
        // It was the last one that was given.
        pool->leave(&owners[16]);
        QCOMPARE(pool->spares(), std::size_t{16});
    }

    void anImageKeepsThePool() {
        std::weak_ptr<CanvasPool> seen;
        QImage image;
        const char owner = 0;
        {
            const auto pool = CanvasPool::shared(lookOf({240, 120}));
            seen = pool;
            pool->join(&owner);
            image = pool->lend(&owner, pool->take(&owner));
        }
        QVERIFY(!seen.expired());
        QCOMPARE(seen.lock()->spares(), std::size_t{0});
        const std::shared_ptr<CanvasPool> pool = seen.lock();
        image = {};
        QCOMPARE(pool->spares(), std::size_t{1});
    }

    void whatComesBackLaterIsDropped() {
        const auto pool = CanvasPool::shared(lookOf({240, 120}));
        const char owner = 0;
        pool->join(&owner);
        QImage image = pool->lend(&owner, pool->take(&owner));
        pool->leave(&owner);
        image = {};
        QCOMPARE(pool->spares(), std::size_t{0});
    }

    void theLastImageEndsThePool() {
        std::weak_ptr<CanvasPool> seen;
        const char owner = 0;
        {
            const auto pool = CanvasPool::shared(lookOf({240, 120}));
            seen = pool;
            const QImage image = pool->lend(&owner, pool->take(&owner));
        }
        QVERIFY(seen.expired());
    }
};

} // namespace

int main(int argc, char** argv) {
    return runTest<CanvasPoolTest>(argc, argv);
}

#include "test_canvaspool.moc"
