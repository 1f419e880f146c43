#pragma once

#include "CaptureInfo.h"
#include "ColorTables.h"
#include "GraphImage7100.h"
#include "LCDGeometry.h"
#include "text_renderthread.h"

#include <QImage>
#include <QPixmap>
#include <QRegion>
#include <QVector>
#include <QWidget>

#include <string_view>

class LCDColorPicker;
class QMenu;
class QTimer;

/// The live copy of one instrument's screen: a grid of characters with attributes and a cursor, or
/// a one-bit graphics picture, at whatever size the widget has.
///
/// The tile that owns it takes screen updates apart and calls the operations below; what ends in
/// "Wait" shows with the next redraw(). Characters are drawn by a thread of this widget's own, and
/// until its first image is there nothing is painted. The widget knows nothing of links: soft keys
/// that are clicked leave it by MakeKey(). GUI thread only.
class LCD7100 : public QWidget {
    Q_OBJECT

public:
    explicit LCD7100(QWidget* parent = nullptr);

    /// The size of the screen in cells and of its graphics in pixels. Shows character code i in
    /// cell i until characters arrive, and graphics without a lit pixel.
    void setSize(int columns, int rows, int pixelWidth, int pixelHeight);

    /// One character code for each cell, row by row. The pointer must reach columns x rows bytes;
    /// of a view that is shorter the missing cells count as 0.
    void setTextWait(const char* codes);
    void setTextWait(std::string_view codes);
    /// One attribute for each cell, 0 to 3 as ColorTables has them; lengths as with setTextWait().
    void setAttrWait(const char* attributes);
    void setAttrWait(std::string_view attributes);
    /// The cursor, as LCDTextCursor has it.
    void setCursorWait(int mode, int column, int row);

    /// Has the characters rendered; nothing while graphics are shown. `force` changes nothing.
    void redraw(bool force);

    /// The graphics picture, packed as GraphImage7100 has it, in the colours of now, shown at once
    /// in graphics mode. Of a view that is too short the missing pixels are not lit.
    void setFullGraphics(const char* bits);
    void setFullGraphics(std::string_view bits);
    void setFullGraphics(GraphImage7100 picture);

    /// An empty character screen without a cursor.
    void clearDisplay();

    /// Writes `text` over the cells from the first on, as far as they go, and renders.
    void ShowMessage(const QString& text);

    void setDefaultColors();

    /// The three colours as ColorTables::toBytes() has them.
    QByteArray getColors() const;
    QColor backColor() const;
    QString getFontFamily() const;

    /// What the screen shows, in words: its characters, or that it shows graphics.
    QString shownText() const;

signals:
    /// The operator wants to save what the screen shows.
    void showScreenCapture();
    /// A soft key was clicked: 96 to 100 for F1 to F5; modifiers: bit 0 Shift, bit 1 Meta.
    void MakeKey(unsigned char key, unsigned char modifiers);
    /// The widget got (true) or lost the keyboard focus.
    void drawFocusRing(bool on);
    /// The operator chose other colours for this screen.
    void colorChanged(QByteArray colors);
    /// The operator chose another font for this screen.
    void fontFamilyChanged(QString family);

public slots:
    /// Shows the characters (true) or the graphics; both are kept.
    void setTextMode(bool on);
    /// Has no effect: the mode follows from setTextMode() alone.
    void setGraphicsMode(bool on);
    /// Saves what the screen shows as a PDF file. A file that cannot be written is not written, and
    /// nobody is told.
    void capture(CaptureInfo info);
    /// Shows the dialog in which the operator chooses colours.
    void showColorPicker();
    /// Lets the operator choose a font.
    void showFontEditor();
    /// The colours of characters from now on; graphics keep theirs until the next picture.
    void setColors(QColor text, QColor background, QColor highlight);
    /// setColors() as a choice of the operator's: emits colorChanged().
    void setColorsFromDialog(QColor text, QColor background, QColor highlight);
    /// setColors() from what getColors() made.
    void setColors(QByteArray colors);
    void setFontFamily(QString family);
    /// Opens the context menu where the mouse is.
    void contextMenu(QPoint position);
    /// Opens the context menu on the screen, for who has no mouse.
    void showMenuOnScreen();
    void blinkCursor();
    /// Takes a finished rendering of the characters.
    void newTextReady(QImage image);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void addMenuEntry(const QString& text, const QString& statusTip, void (LCD7100::*slot)());
    void paintCursor(QPainter& painter, const QSize& size, const LCDTextCursor& cursor) const;
    QRect cursorRect() const;
    void render(bool force);
    void renderWhatWaits();
    QSize devicePixels() const;
    void updatePixels(const QRegion& pixels);
    bool isRenderedForNow() const;
    const QImage& graphics();
    void graphicsChanged();

    bool m_textMode = true;
    int m_columns = 0;
    int m_rows = 0;
    int m_graphHeight = 0;
    int m_graphWidth = 0;
    LCDTextCursor m_cursor;
    bool m_cursorShown = true;
    /// Whether the widget has been painted, if only with its background.
    bool m_isSeen = false;
    bool m_renderWaits = false;
    text_renderthread m_renderer;
    QVector<char> m_text;
    QVector<char> m_attr;
    /// The last picture, unpacked by graphics() when there is somebody to see it: an instrument can
    /// send pictures much faster than they can be unpacked.
    QVector<char> m_graphBits;
    ColorTables m_graphColors;
    /// Whether m_graphBits is what is to be seen.
    bool m_graphIsPacked = false;
    bool m_graphWaits = false;
    QImage m_graphics;
    ColorTables m_colors;
    QPixmap m_textPixmap;
    /// QImage::cacheKey() of what the pixmap was made from.
    qint64 m_textKey = 0;
    /// Where a cursor is, or was, that has changed since it could be seen.
    QRegion m_cursorChange;
    QTimer* m_blinkTimer;
    QMenu* m_menu;
    LCDColorPicker* m_picker = nullptr;
};
