#include "ScreenPdf.h"

#include "WholeFile.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QPainter>
#include <QPdfWriter>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace {

constexpr int maxBorder = 10000;
constexpr double pointsPerInch = 72;

int pixels(double inches, int resolution) {
    const double limited = std::min<double>(inches, screenpdf::maxInches);
    return std::max(1, static_cast<int>(limited * resolution));
}

bool isLength(double inches) {
    return std::isfinite(inches) && inches > 0;
}

/// Pixels to the inch of the screen; the usual ones while there is none.
int screenResolution() {
    const QScreen* const screen = QGuiApplication::primaryScreen();
    return screen ? qRound(screen->logicalDotsPerInchY()) : 96;
}

/// The whole PDF; empty when it could not be made.
QByteArray document(const CaptureInfo& info, const QSize& widgetSize,
                    const std::function<void(QPainter&, const QSize&)>& paint) {
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    QPdfWriter printer(&file);
    printer.setResolution(screenResolution());

    const QSize image = screenpdf::imageSize(info, printer.resolution(), widgetSize);
    const double border = std::clamp(info.border, 0, maxBorder);
    const double points = pointsPerInch / printer.resolution();
    const QSizeF paper = (QSizeF(image) + QSizeF(2 * border, 2 * border)) * points;
    const double margin = border * points;
    printer.setPageLayout({QPageSize(paper, QPageSize::Point, QString(), QPageSize::ExactMatch),
                           QPageLayout::Portrait, QMarginsF(margin, margin, margin, margin),
                           QPageLayout::Point});

    QPainter painter;
    if (!painter.begin(&printer))
        return {};
    painter.setRenderHint(QPainter::LosslessImageRendering);
    painter.setClipRect(QRect(QPoint(0, 0), image));
    paint(painter, image);
    if (!painter.end())
        return {};
    const QByteArray& bytes = file.data();
    return bytes.trimmed().endsWith("%%EOF") ? bytes : QByteArray();
}

} // namespace

QSize screenpdf::imageSize(const CaptureInfo& info, int resolution, const QSize& widgetSize) {
    if (isLength(info.width) && isLength(info.height))
        return {pixels(info.width, resolution), pixels(info.height, resolution)};
    return widgetSize.expandedTo({1, 1}).boundedTo(
        {maxInches * resolution, maxInches * resolution});
}

bool screenpdf::write(const CaptureInfo& info, const QSize& widgetSize,
                      const std::function<void(QPainter&, const QSize&)>& paint) {
    const QByteArray bytes = document(info, widgetSize, paint);
    if (bytes.isEmpty())
        return false;
    return wholefile::write(info.fileName, bytes).isEmpty();
}
