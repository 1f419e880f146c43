// Rows of every width and height that matters, with nothing written beside them.

#include "PixelRows.h"
#include "TestEnvironment.h"

#include <numeric>
#include <vector>

namespace {

constexpr int widestRow = 133;
constexpr int mostRows = 4;
constexpr int border = 70;
constexpr int stride = widestRow + 2 * border;
constexpr QRgb untouched = 0xFFABCDEFU;
constexpr QRgb frameColor = 0xFF654321U;

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
            const int place = (y + 1) * stride + border + x;
            const QRgb pixel = pixels[static_cast<std::size_t>(place)];
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
            // No more than what is to be read: a sanitizer sees a step beyond.
            const std::vector<QRgb> frame(static_cast<std::size_t>(width), frameColor);
            for (int height = 0; height <= mostRows; ++height) {
                std::vector<QRgb> source(static_cast<std::size_t>(width * height));
                std::iota(source.begin(), source.end(), QRgb{0});
                for (int above = 0; above <= mostRows - height; ++above) {
                    const int below = mostRows - height - above;
                    std::vector<QRgb> pixels = canvas();
                    pixelrows::copy(corner(pixels), stride,
                                    {source.data(), width, height, frame.data(), above, below});
                    const auto expected = [=](int x, int y) {
                        const bool isInside = y >= above && y < above + height;
                        return isInside ? static_cast<QRgb>((y - above) * width + x) : frameColor;
                    };
                    QCOMPARE(difference(pixels, width, mostRows, expected), QString());
                }
            }
        }
    }

    void withoutAFrame() {
        for (int width = 0; width <= widestRow; ++width) {
            for (int height = 0; height <= mostRows; ++height) {
                const std::vector<QRgb> source(static_cast<std::size_t>(width * height), 7);
                std::vector<QRgb> pixels = canvas();
                pixelrows::copy(corner(pixels), stride,
                                {source.data(), width, height, nullptr, 0, 0});
                QCOMPARE(difference(pixels, width, height, [](int, int) { return QRgb{7}; }),
                         QString());
            }
        }
    }
};

int main(int argc, char** argv) {
    return runTest<TestPixelRows>(argc, argv);
}

#include "test_pixelrows.moc"
