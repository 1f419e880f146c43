// Rows of every width and height that matters, with nothing written beside them.

#include "PixelRows.h"
#include "TestEnvironment.h"

#include <vector>

namespace {

constexpr int widestRow = 133;
constexpr int mostRows = 4;
constexpr int border = 70;
constexpr int stride = widestRow + 2 * border;
constexpr QRgb untouched = 0xFFABCDEFU;

std::vector<QRgb> canvas() {
    return std::vector<QRgb>(std::size_t{stride} * (mostRows + 2), untouched);
}

QRgb* corner(std::vector<QRgb>& pixels) {
    return pixels.data() + stride + border;
}

/// The first pixel that is not as `expected` tells for its row and column, as text.
template <typename Expected>
QString difference(const std::vector<QRgb>& pixels, int width, int height, Expected expected) {
    for (int y = -1; y <= mostRows; ++y) {
        for (int x = -border; x < widestRow + border; ++x) {
            const bool inside = x >= 0 && x < width && y >= 0 && y < height;
            const QRgb pixel = pixels[static_cast<std::size_t>((y + 1) * stride + border + x)];
            if (pixel != (inside ? expected(x, y) : untouched))
                return QStringLiteral("%1 x %2: column %3, row %4")
                    .arg(width)
                    .arg(height)
                    .arg(x)
                    .arg(y);
        }
    }
    return {};
}

} // namespace

class TestPixelRows : public QObject {
    Q_OBJECT

private slots:
    void allOfThemAreFilled() {
        for (int width = 0; width <= widestRow; ++width) {
            for (int height = 0; height <= mostRows; ++height) {
                std::vector<QRgb> pixels = canvas();
                pixelrows::fill(corner(pixels), stride, width, height, 0xFF123456U);
                QCOMPARE(difference(pixels, width, height, [](int, int) { return 0xFF123456U; }),
                         QString());
            }
        }
    }

    void allOfThemAreCopied() {
        for (int width = 0; width <= widestRow; ++width) {
            for (int height = 0; height <= mostRows; ++height) {
                // No more than what is to be read: a sanitizer sees a step beyond.
                std::vector<QRgb> source(static_cast<std::size_t>(width * height));
                for (std::size_t i = 0; i < source.size(); ++i)
                    source[i] = static_cast<QRgb>(i);
                std::vector<QRgb> pixels = canvas();
                pixelrows::copy(corner(pixels), stride, source.data(), width, height);
                QCOMPARE(
                    difference(pixels, width, height,
                               [width](int x, int y) { return static_cast<QRgb>(y * width + x); }),
                    QString());
            }
        }
    }
};

int main(int argc, char** argv) {
    return runTest<TestPixelRows>(argc, argv);
}

#include "test_pixelrows.moc"
