#pragma once

#include <QRectF>
#include <QSize>

/// The text cursor of a screen. Column and row count from 1; they come from the instrument and may
/// be anything.
struct LCDTextCursor {
    enum Mode { Off = 0, Underline = 1, Block = 2 };

    int mode = Off;
    int column = 1;
    int row = 1;

    friend bool operator==(const LCDTextCursor&, const LCDTextCursor&) = default;
};

/// Where the cursor is painted on a screen of `size` with that many cells; what lies off the
/// screen is left out, and nothing is left of a cursor that is not painted. The cells of the cursor
/// have an inset of 2 pixels that those of the text do not have, so that it sits slightly off them.
/// That is how it is meant to look.
QRectF cursorArea(const QSize& size, int columns, int rows, const LCDTextCursor& cursor);

/// The key of a click at (`x`, `y`) on a screen of `size`: 96 to 100 for F1 to F5, whose labels the
/// instrument shows side by side in the bottom quarter; -1 above it.
int softKeyAt(const QSize& size, int x, int y);
