#pragma once

#include "CaptureInfo.h"

#include <QSize>

#include <functional>

class QPainter;

/// Saving a picture of a screen as a PDF file of one page. GUI thread.
namespace screenpdf {

/// Longest side of a page, in inches: what readers of such files take.
constexpr int maxInches = 200;

/// The size of the picture in pixels of the printer: what `info` asks for in inches, else the
/// widget's; at least one pixel and at most a page.
QSize imageSize(const CaptureInfo& info, int resolution, const QSize& widgetSize);

/// Writes the file that `info` names. `paint` gets the painter and the size of the picture, and
/// whatever it paints beyond that is cut off. Returns false, and leaves what was there before,
/// when the file cannot be written.
bool write(const CaptureInfo& info, const QSize& widgetSize,
           const std::function<void(QPainter&, const QSize&)>& paint);

} // namespace screenpdf
