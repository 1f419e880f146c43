#pragma once

#include <QRgb>

#include <QtGlobal>

/// Rows of pixels of an image that lie one below the other. Pure functions; any thread.
namespace pixelrows {

/// Fills `height` rows of `width` pixels, the first of which begins at `line` and each further one
/// `stride` pixels after the one before.
void fill(QRgb* line, qptrdiff stride, int width, int height, QRgb color);

/// Rows of `width` pixels without a gap, and another row that is to be above and below them.
struct Framed {
    const QRgb* pixels;
    int width;
    int height;
    const QRgb* frame;
    /// How often it is there.
    int above;
    int below;
};

/// Copies rows, which must not overlap what they are copied from; the first to `line`, and each
/// further one `stride` pixels after the one before.
void copy(QRgb* line, qptrdiff stride, const Framed& rows);

} // namespace pixelrows
