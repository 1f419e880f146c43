#include "PixelRows.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace {

/// Pixels that any processor with vectors moves at once.
constexpr qptrdiff piece = 4;

/// Beyond this many pieces what std::memcpy() does before it copies no longer counts.
constexpr int mostPieces = 16;
constexpr int anyNumber = 0;

using Piece = std::array<QRgb, piece>;

/// Pieces, the last of which may overlap the one before, make up any row that is not shorter than
/// one. With their number known to the compiler that is quicker, for rows as short as a letter's,
/// than a call for each that has to find out how long they are.
template <int pieces>
void fillRow(QRgb* line, int width, const Piece& pixels) {
    if constexpr (pieces == anyNumber) {
        std::fill_n(line, width, pixels[0]);
    } else {
        for (qptrdiff i = 0; i < pieces - 1; ++i)
            std::memcpy(line + i * piece, pixels.data(), sizeof(Piece));
        std::memcpy(line + (width - piece), pixels.data(), sizeof(Piece));
    }
}

template <int pieces>
void copyRow(QRgb* line, const QRgb* source, int width) {
    if constexpr (pieces == anyNumber) {
        std::copy_n(source, width, line);
    } else {
        for (qptrdiff i = 0; i < pieces - 1; ++i)
            std::memcpy(line + i * piece, source + i * piece, sizeof(Piece));
        std::memcpy(line + (width - piece), source + (width - piece), sizeof(Piece));
    }
}

/// All three parts in one loop: how many rows each of them has cannot be foreseen, and each end
/// that comes unexpected costs a processor as much as several rows do.
template <int pieces>
void copyRows(QRgb* line, qptrdiff stride, const pixelrows::Framed& rows) {
    const auto height = static_cast<unsigned>(rows.height);
    const int width = rows.width;
    const int end = rows.height + rows.below;
    const QRgb* next = rows.pixels;
    for (int y = -rows.above; y < end; ++y, line += stride) {
        const bool isInside = static_cast<unsigned>(y) < height;
        copyRow<pieces>(line, isInside ? next : rows.frame, width);
        next += isInside ? width : 0;
    }
}

/// Calls `use` with the number of pieces that a row of `width` consists of.
template <int pieces = mostPieces, typename Use>
void withPieces(int width, const Use& use) {
    if constexpr (pieces == mostPieces) {
        if (width < piece || width > mostPieces * piece)
            return use(std::integral_constant<int, anyNumber>());
    }
    if constexpr (pieces > 1) {
        if (width <= (pieces - 1) * piece)
            return withPieces<pieces - 1>(width, use);
    }
    use(std::integral_constant<int, pieces>());
}

} // namespace

void pixelrows::fill(QRgb* line, qptrdiff stride, int width, int height, QRgb color) {
    Piece pixels;
    pixels.fill(color);
    withPieces(width, [&](auto pieces) {
        for (int y = 0; y < height; ++y, line += stride)
            fillRow<pieces>(line, width, pixels);
    });
}

void pixelrows::copy(QRgb* line, qptrdiff stride, const Framed& rows) {
    withPieces(rows.width, [&](auto pieces) { copyRows<pieces>(line, stride, rows); });
}
