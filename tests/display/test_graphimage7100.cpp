#include "GraphImage7100.h"
#include "TestEnvironment.h"

#include <random>
#include <string>

using namespace std::string_literals;

namespace {

std::string packed(const GraphImage7100& image, const QRect& area) {
    QVector<char> out(3, 'x');
    image.toBits(out, area);
    return {out.begin(), out.end()};
}

void setBit(char& byte, int fromLeft) {
    byte = static_cast<char>(byte | (128 >> fromLeft));
}

/// 10 x 3 pixels: row 0 has its two outermost lit, row 1 none, row 2 every second one.
const std::string tenByThree = "\x80\x40\x00\x00\xAA\x80"s;

} // namespace

class TestGraphImage7100 : public QObject {
    Q_OBJECT

private slots:
    void pixelsAreWhereTheBitsSay() {
        const GraphImage7100 image(10, 3, tenByThree.data());
        QCOMPARE(image.size(), QSize(10, 3));
        QCOMPARE(image.format(), QImage::Format_Mono);
        for (int x = 0; x < 10; ++x) {
            QCOMPARE(image.pixelIndex(x, 0), x == 0 || x == 9 ? 1 : 0);
            QCOMPARE(image.pixelIndex(x, 1), 0);
            QCOMPARE(image.pixelIndex(x, 2), x % 2 == 0 ? 1 : 0);
        }
    }

    void theInstrumentsScreenTakes1920Bytes() {
        std::string bits(1920, '\0');
        bits[30 * 63 + 29] = '\x01';
        const GraphImage7100 image(240, 64, bits.data());
        QCOMPARE(image.pixelIndex(239, 63), 1);
        QCOMPARE(image.mySize(image.rect()), 1920);
        QCOMPARE(packed(image, image.rect()), bits);
    }

    void paddingBitsAreIgnoredAndComeBackClear() {
        const std::string dirty = "\xBF\x7F\x3F\x3F\xAA\xBF"s;
        const std::string clean = "\xBF\x40\x3F\x00\xAA\x80"s;
        const GraphImage7100 image(10, 3, dirty.data());
        QCOMPARE(packed(image, image.rect()), clean);
        QVERIFY(image == GraphImage7100(10, 3, clean.data()));
    }

    void everyWidthComesBack() {
        std::mt19937 random(1);
        for (int width = 1; width <= 33; ++width) {
            const int rowBytes = (width + 7) / 8;
            std::string bits(static_cast<std::size_t>(rowBytes) * 5, '\0');
            for (int y = 0; y < 5; ++y) {
                for (int x = 0; x < width; ++x) {
                    if (random() % 2 == 0)
                        setBit(
                            bits[static_cast<std::size_t>(y) * static_cast<std::size_t>(rowBytes) +
                                 static_cast<std::size_t>(x / 8)],
                            x % 8);
                }
            }
            const GraphImage7100 image(width, 5, bits.data());
            QVector<char> out;
            image.toBits(out);
            QCOMPARE(std::string(out.begin(), out.end()), bits);
            QCOMPARE(GraphImage7100::packedSize(width, 5), qsizetype(rowBytes) * 5);
        }
    }

    void bitsAreReadToTheLastByteOnly() {
        // Heap memory of just this length, so that a sanitizer sees a read beyond it.
        const QByteArray bits = QByteArray::fromStdString(tenByThree);
        const std::unique_ptr<char[]> exact(new char[6]);
        std::copy(bits.begin(), bits.end(), exact.get());
        QCOMPARE(GraphImage7100(10, 3, exact.get()).pixelIndex(8, 2), 1);
    }

    void areas_data() {
        QTest::addColumn<QRect>("area");
        QTest::addColumn<QRect>("clamped");
        QTest::addColumn<std::string>("bits");

        QTest::newRow("whole") << QRect(0, 0, 10, 3) << QRect(0, 0, 10, 3) << tenByThree;
        QTest::newRow("inside") << QRect(1, 1, 8, 2) << QRect(1, 1, 8, 2) << "\x00\x55"s;
        QTest::newRow("one pixel") << QRect(9, 0, 1, 1) << QRect(9, 0, 1, 1) << "\x80"s;
        QTest::newRow("over the upper left") << QRect(-5, -5, 7, 6) << QRect(0, 0, 2, 1) << "\x80"s;
        QTest::newRow("over the lower right")
            << QRect(8, 2, 100, 100) << QRect(8, 2, 2, 1) << "\x80"s;
        QTest::newRow("all around") << QRect(-9, -9, 99, 99) << QRect(0, 0, 10, 3) << tenByThree;
        QTest::newRow("right < left: a single column")
            << QRect(QPoint(2, 0), QPoint(1, 2)) << QRect(2, 0, 1, 3) << "\x00\x00\x80"s;
        QTest::newRow("bottom < top: a single row")
            << QRect(QPoint(0, 2), QPoint(9, 0)) << QRect(0, 2, 10, 1) << "\xAA\x80"s;
        QTest::newRow("beyond the right") << QRect(50, 0, 5, 1) << QRect(9, 0, 1, 1) << "\x80"s;
        QTest::newRow("beyond below") << QRect(0, 50, 2, 5) << QRect(0, 2, 2, 1) << "\x80"s;
        QTest::newRow("before the left") << QRect(-50, 0, 5, 1) << QRect(0, 0, 1, 1) << "\x80"s;
        QTest::newRow("extreme") << QRect(QPoint(INT_MIN, INT_MIN), QPoint(INT_MAX, INT_MAX))
                                 << QRect(0, 0, 10, 3) << tenByThree;
    }
    void areas() {
        QFETCH(const QRect, area);
        QFETCH(const QRect, clamped);
        QFETCH(const std::string, bits);
        const GraphImage7100 image(10, 3, tenByThree.data());
        QCOMPARE(image.checkLimits(area), clamped);
        QCOMPARE(packed(image, area), bits);
        QCOMPARE(image.mySize(area), static_cast<int>(bits.size()));
    }

    void coloursLoseTheirAlpha() {
        const GraphImage7100 image(10, 3, tenByThree.data());
        const QImage colored = image.toColor(QColor(1, 2, 3, 4), QColor(250, 251, 252));
        QCOMPARE(colored.format(), QImage::Format_RGB32);
        QCOMPARE(colored.size(), QSize(10, 3));
        for (int y = 0; y < 3; ++y) {
            for (int x = 0; x < 10; ++x) {
                const QRgb expected =
                    image.pixelIndex(x, y) == 1 ? qRgb(1, 2, 3) : qRgb(250, 251, 252);
                QCOMPARE(colored.pixel(x, y), expected);
            }
        }
    }

    void noPixelsAreNoTrouble_data() {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        QTest::newRow("0 x 0") << 0 << 0;
        QTest::newRow("0 wide") << 0 << 5;
        QTest::newRow("0 high") << 5 << 0;
        QTest::newRow("negative") << -8 << -8;
        QTest::newRow("two negatives are not a size") << INT_MIN << INT_MIN;
    }
    void noPixelsAreNoTrouble() {
        QFETCH(const int, width);
        QFETCH(const int, height);
        const GraphImage7100 image(width, height, nullptr);
        QVERIFY(image.isNull());
        QCOMPARE(GraphImage7100::packedSize(width, height), 0);
        QCOMPARE(image.mySize(QRect(0, 0, 8, 8)), 0);
        QCOMPARE(packed(image, QRect(0, 0, 8, 8)), std::string());
        QVERIFY(image.toColor(Qt::red, Qt::blue).isNull());
    }
};

int main(int argc, char** argv) {
    return runTest<TestGraphImage7100>(argc, argv);
}

#include "test_graphimage7100.moc"
