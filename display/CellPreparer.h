#pragma once

#include "CellCode.h"
#include "CellGrid.h"
#include "CellLook.h"
#include "PreparedCell.h"

#include <QImage>
#include <QPainter>

#include <array>
#include <optional>

/// Paints single cells, each at its true place on an image of the true size, so that every
/// rounding is as on a whole screen, and cuts them out. Belongs to the thread that made it, since
/// fonts do; a short-lived tool.
///
/// Letters may reach half a cell's width beyond their cell. No font is known whose letters reach
/// further though they take no more room than a cell; those that take more are clipped.
class CellPreparer {
public:
    /// The later neighbours of a cell that may reach into it, as far as they are to be painted.
    struct Neighbours {
        std::optional<CellCode> right;
        std::optional<CellCode> downLeft;
        std::optional<CellCode> down;
        std::optional<CellCode> downRight;
    };

    /// Paints on `pixels`, those of a whole image, whatever they show. They and `grid` must outlive
    /// it. All colours of the look must be opaque.
    CellPreparer(const CellLook& look, const CellGrid& grid, QRgb* pixels);

    /// The cell among neighbours that do not reach into it.
    PreparedCell alone(int column, int row, CellCode cell);

    /// The cell with what its neighbours paint into it.
    PreparedCell among(int column, int row, CellCode cell, const Neighbours& neighbours);

private:
    void paint(int column, int row, CellCode cell);
    void fill(const QRect& area, QRgb pixel);
    bool isFilled(const QRect& area, QRgb pixel) const;
    PreparedCell cutOut(int column, int row, CellCode cell) const;

    QRgb* line(int y) { return m_pixels + qptrdiff{y} * m_grid.imageSize().width(); }
    const QRgb* line(int y) const { return m_pixels + qptrdiff{y} * m_grid.imageSize().width(); }

    const CellGrid& m_grid;
    ColorTables m_colors;
    QRgb* m_pixels;
    QImage m_image;
    QPainter m_painter;
    std::array<QRgb, ColorTables::attributeCount> m_backgrounds{};
};
