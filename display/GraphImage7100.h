#pragma once

#include <QColor>
#include <QImage>
#include <QVector>

/// The graphics screen of an instrument: an image of one bit a pixel, index 1 being a lit pixel,
/// and its conversions. A value; any thread.
///
/// A packed bitmap has its rows from the top, each beginning on a fresh byte, and in a row eight
/// pixels to a byte, the leftmost in the highest bit; a set bit is a lit pixel.
class GraphImage7100 : public QImage {
public:
    /// Unpacks a bitmap, which must have packedSize(width, height) bytes. Null when a side is not
    /// positive.
    GraphImage7100(int width, int height, const char* bits);

    GraphImage7100(const GraphImage7100&) = default;
    GraphImage7100(GraphImage7100&&) = default;
    GraphImage7100& operator=(const GraphImage7100&) = default;
    GraphImage7100& operator=(GraphImage7100&&) = default;
    ~GraphImage7100() override = default;

    /// Bytes of a packed bitmap: 0 when a side is not positive.
    static qsizetype packedSize(int width, int height);

    /// The image in 32-bit colours; alpha is left out.
    QImage toColor(QColor on, QColor off) const;

    /// `area` clamped into the image; a part of at least one pixel is left of any area.
    QRect checkLimits(const QRect& area) const;

    /// Packs the part of `area` within the image, as checkLimits() clamps it, into `out`.
    void toBits(QVector<char>& out, const QRect& area) const;
    /// Packs the whole image into `out`.
    void toBits(QVector<char>& out) const;

    /// Bytes that toBits() makes of `area`.
    int mySize(const QRect& area) const;
};
