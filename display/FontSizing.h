#pragma once

#include <QFont>
#include <QSize>

/// Which size of letters was chosen for which size of screen: choosing again is needed only when
/// the screen's size changes, whatever happens to the font meanwhile. A value; any thread.
struct FontSizing {
    QSize screenSize{-1, -1};
    int pixelSize = 0;

    /// The sizing for a screen of `size` with cells of `cell`: this one when it was made for that
    /// size, otherwise a new one by the shape of the font's "W".
    FontSizing fitted(const QFont& font, const QSize& size, const QSizeF& cell) const;
};

/// Height through width of the font's "W", measured in letters large enough for the answer to
/// depend on the family alone.
qreal letterShape(const QFont& font);

/// The pixel size of letters, at least 1, for cells of `cell`: nine tenths of what fits, by the
/// cell's height where the letters are the taller shape of the two, else by its width.
int letterPixelSize(qreal shape, const QSizeF& cell);

/// `font` in letters of `pixelSize`, sharing no data with it: a font that paints belongs to the
/// thread that paints.
QFont sizedFont(const QFont& font, int pixelSize);
