#include "PixelRows.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace {

/// Beyond this what std::memcpy() does before it copies no longer counts.
constexpr int widest = 64;

/// Two pieces of a length that the compiler knows, overlapping in the middle, make up any row that
/// is not shorter than one of them and not longer than both: quicker, for rows as short as a
/// letter's, than a call for each that has to find out how long they are.
template <int piece>
void fillInPieces(QRgb* line, qptrdiff stride, int width, int height, QRgb color) {
    std::array<QRgb, piece> pixels;
    pixels.fill(color);
    const int second = width - piece;
    for (; height > 0; --height, line += stride) {
        std::memcpy(line, pixels.data(), sizeof(pixels));
        std::memcpy(line + second, pixels.data(), sizeof(pixels));
    }
}

template <int piece>
void copyInPieces(QRgb* line, qptrdiff stride, const QRgb* source, int width, int height) {
    constexpr std::size_t bytes = piece * sizeof(QRgb);
    const int second = width - piece;
    for (; height > 0; --height, line += stride, source += width) {
        std::memcpy(line, source, bytes);
        std::memcpy(line + second, source + second, bytes);
    }
}

/// Calls `use` with the length of the pieces for rows of `width`, between 1 and `widest`.
template <int piece = widest / 2, typename Use>
void withPiece(int width, const Use& use) {
    if constexpr (piece > 1) {
        if (width <= piece)
            return withPiece<piece / 2>(width, use);
    }
    use(std::integral_constant<int, piece>());
}

} // namespace

void pixelrows::fill(QRgb* line, qptrdiff stride, int width, int height, QRgb color) {
    if (width > widest) {
        for (; height > 0; --height, line += stride)
            std::fill_n(line, width, color);
    } else if (width > 0) {
        withPiece(width,
                  [&](auto piece) { fillInPieces<piece>(line, stride, width, height, color); });
    }
}

void pixelrows::copy(QRgb* line, qptrdiff stride, const QRgb* source, int width, int height) {
    if (width > widest) {
        const std::size_t bytes = static_cast<std::size_t>(width) * sizeof(QRgb);
        for (; height > 0; --height, line += stride, source += width)
            std::memcpy(line, source, bytes);
    } else if (width > 0) {
        withPiece(width,
                  [&](auto piece) { copyInPieces<piece>(line, stride, source, width, height); });
    }
}
