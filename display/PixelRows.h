#pragma once

#include <QRgb>

#include <QtGlobal>

/// Rows of pixels of an image that lie one below the other. Pure functions; any thread.
namespace pixelrows {

/// Fills `height` rows of `width` pixels, the first of which begins at `line` and each further one
/// `stride` pixels after the one before.
void fill(QRgb* line, qptrdiff stride, int width, int height, QRgb color);

/// Copies rows that lie without a gap at `source`, which must not overlap them, to the same place.
void copy(QRgb* line, qptrdiff stride, const QRgb* source, int width, int height);

} // namespace pixelrows
