#include "LCD7100.h"

#include "LCDColorPicker.h"
#include "ScreenAccessible.h"
#include "ScreenPdf.h"
#include "ScreenText.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QCursor>
#include <QFontDialog>
#include <QFontInfo>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <QtMath>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr int blinkPeriodMs = 500;
/// How long a rendering waits for the window's first picture.
constexpr int firstPicturePatienceMs = 100;
/// Far above any instrument's; keeps what setSize() makes within memory.
constexpr int maxCells = 1024;
constexpr int maxGraphSide = 4096;

/// Puts `data` at the front of `cells` and 0 into the rest.
void fillCells(QVector<char>& cells, std::string_view data) {
    data = data.substr(0, static_cast<std::size_t>(cells.size()));
    char* to = cells.data();
    std::copy(data.begin(), data.end(), to);
    std::fill(to + data.size(), to + cells.size(), '\0');
}

/// Paints pixel for pixel, whatever the device's pixels are to a unit.
void paintUnscaled(QPainter& painter, const QPixmap& pixmap) {
    painter.save();
    const qreal ratio = painter.device()->devicePixelRatio();
    painter.scale(1 / ratio, 1 / ratio);
    painter.drawPixmap(0, 0, pixmap);
    painter.restore();
}

} // namespace

LCD7100::LCD7100(QWidget* parent)
    : QWidget(parent), m_blinkTimer(new QTimer(this)), m_menu(new QMenu(this)) {
    setFocusPolicy(Qt::StrongFocus);
    setDefaultColors();
    setSize(text_renderthread::defaultColumns, text_renderthread::defaultRows, 240, 64);

    QPalette unpainted = palette();
    unpainted.setColor(QPalette::Window, QColor(250, 250, 200));
    setPalette(unpainted);
    setAutoFillBackground(true);
    setMinimumSize(240, 120);

    setContextMenuPolicy(Qt::CustomContextMenu);
    addMenuEntry(tr("Edit Color..."), tr("Choose the colors of all screens"),
                 &LCD7100::showColorPicker);
    addMenuEntry(tr("Edit Font..."), tr("Choose the font of all screens"),
                 &LCD7100::showFontEditor);
    addMenuEntry(tr("Capture Control"), tr("Save what this screen shows"),
                 &LCD7100::showScreenCapture);
    connect(this, &QWidget::customContextMenuRequested, this, &LCD7100::contextMenu);

    connect(&m_renderer, &text_renderthread::renderedImage, this, &LCD7100::newTextReady);
    setFontFamily(QStringLiteral("Arial"));

    connect(m_blinkTimer, &QTimer::timeout, this, &LCD7100::blinkCursor);
    m_blinkTimer->start(blinkPeriodMs);
    QAccessible::installFactory(&ScreenAccessible::create);
}

void LCD7100::addMenuEntry(const QString& text, const QString& statusTip, void (LCD7100::*slot)()) {
    // Not a child of the menu, which is a window of its own: the status bar to tell is this one's.
    auto* action = new QAction(text, this);
    action->setStatusTip(statusTip);
    connect(action, &QAction::triggered, this, slot);
    m_menu->addAction(action);
}

void LCD7100::setSize(int columns, int rows, int pixelWidth, int pixelHeight) {
    m_columns = std::clamp(columns, 1, maxCells);
    m_rows = std::clamp(rows, 1, maxCells);
    m_attr.fill(0, qsizetype{m_columns} * m_rows);
    m_text.resize(m_attr.size());
    for (qsizetype i = 0; i < m_text.size(); ++i)
        m_text[i] = static_cast<char>(i % 256);
    m_renderer.setGrid(m_columns, m_rows);

    m_graphWidth = std::clamp(pixelWidth, 1, maxGraphSide);
    m_graphHeight = std::clamp(pixelHeight, 1, maxGraphSide);
    m_graphBits.fill(0, GraphImage7100::packedSize(m_graphWidth, m_graphHeight));
    m_graphIsPacked = false;
    // Most screens never show a picture; until one does there is none.
    m_graphColors = m_colors;
    m_graphWaits = true;
    m_graphics = QImage();
}

void LCD7100::setTextWait(const char* codes) {
    setTextWait(std::string_view(codes, static_cast<std::size_t>(m_text.size())));
}

void LCD7100::setTextWait(std::string_view codes) {
    fillCells(m_text, codes);
}

void LCD7100::setAttrWait(const char* attributes) {
    setAttrWait(std::string_view(attributes, static_cast<std::size_t>(m_attr.size())));
}

void LCD7100::setAttrWait(std::string_view attributes) {
    fillCells(m_attr, attributes);
}

void LCD7100::setCursorWait(int mode, int column, int row) {
    const LCDTextCursor cursor = {mode, column, row};
    if (cursor == m_cursor)
        return;
    m_cursorChange |= cursorRect();
    m_cursor = cursor;
    m_cursorChange |= cursorRect();
}

void LCD7100::redraw(bool force) {
    if (m_textMode)
        render(force);
}

void LCD7100::render(bool force) {
    // In pixels of the device, so that text is sharp on every display.
    m_renderer.updateTextAndAttr(devicePixels(), m_text, m_attr, force);
}

/// The pixels that the widget covers, those that it covers in part included.
QSize LCD7100::devicePixels() const {
    constexpr qreal roundingError = 1e-6;
    const QSizeF covered = QSizeF(size()) * devicePixelRatioF();
    return {qCeil(covered.width() - roundingError), qCeil(covered.height() - roundingError)};
}

void LCD7100::setFullGraphics(const char* bits) {
    setFullGraphics(std::string_view(bits, static_cast<std::size_t>(m_graphBits.size())));
}

void LCD7100::setFullGraphics(std::string_view bits) {
    QVector<char> packed(m_graphBits.size());
    fillCells(packed, bits);
    const bool isShown = m_graphIsPacked && packed == m_graphBits && m_graphColors == m_colors;
    if (isShown)
        return;
    m_graphBits.swap(packed);
    m_graphColors = m_colors;
    m_graphIsPacked = true;
    m_graphWaits = true;
    graphicsChanged();
}

void LCD7100::setFullGraphics(GraphImage7100 picture) {
    m_graphIsPacked = false;
    m_graphWaits = false;
    m_graphics = picture.toColor(m_colors.textColor(), m_colors.backgroundColor());
    graphicsChanged();
}

void LCD7100::graphicsChanged() {
    if (!m_textMode)
        update();
}

const QImage& LCD7100::graphics() {
    if (std::exchange(m_graphWaits, false)) {
        const GraphImage7100 picture(m_graphWidth, m_graphHeight, m_graphBits.constData());
        m_graphics = picture.toColor(m_graphColors.textColor(), m_graphColors.backgroundColor());
    }
    return m_graphics;
}

void LCD7100::clearDisplay() {
    setTextMode(true);
    m_text.fill(' ');
    m_attr.fill(0);
    setCursorWait(LCDTextCursor::Off, 1, 1);
    render(false);
}

void LCD7100::ShowMessage(const QString& text) {
    const qsizetype length = std::min(text.size(), m_text.size());
    for (qsizetype i = 0; i < length; ++i)
        m_text[i] = static_cast<char>(text.at(i).unicode() & 0xFF);
    render(false);
}

void LCD7100::setDefaultColors() {
    setColors(ColorTables::defaultText(), ColorTables::defaultBackground(),
              ColorTables::defaultHighlight());
}

QByteArray LCD7100::getColors() const {
    return m_colors.toBytes();
}

QColor LCD7100::backColor() const {
    return m_colors.backgroundColor();
}

QString LCD7100::getFontFamily() const {
    return font().family();
}

QString LCD7100::shownText() const {
    if (!m_textMode)
        return tr("The screen shows graphics");
    return screenText({m_text.constData(), static_cast<std::size_t>(m_text.size())}, m_columns);
}

void LCD7100::setTextMode(bool on) {
    if (on == m_textMode)
        return;
    m_textMode = on;
    update();
}

void LCD7100::setGraphicsMode(bool /*on*/) {}

void LCD7100::capture(CaptureInfo info) {
    screenpdf::write(info, size(), [this, &info](QPainter& painter, const QSize& image) {
        if (!m_textMode) {
            painter.drawImage(QRect(QPoint(0, 0), image), graphics());
            return;
        }
        m_renderer.drawNow(painter, image);
        if (info.showCursor)
            paintCursor(painter, image, m_cursor);
    });
}

void LCD7100::showColorPicker() {
    if (m_picker == nullptr)
        m_picker = new LCDColorPicker(this);
    m_picker->setColors(m_colors.textColor(), m_colors.backgroundColor(),
                        m_colors.highlightColor());
    m_picker->show();
    m_picker->raise();
    m_picker->activateWindow();
}

void LCD7100::showFontEditor() {
    // The dialog knows no family that is missing here. It gets the one that is seen in its place,
    // and the missing one stays the operator's choice unless another is chosen.
    QFont seen = font();
    seen.setFamily(QFontInfo(seen).family());
    bool accepted = false;
    QFont chosen = QFontDialog::getFont(&accepted, seen, this);
    if (QFontInfo(chosen).family() == QFontInfo(seen).family())
        chosen.setFamily(font().family());
    setFont(chosen);
    m_renderer.setFont(chosen);
    emit fontFamilyChanged(chosen.family());
}

void LCD7100::setColors(QColor text, QColor background, QColor highlight) {
    m_colors = ColorTables(text, background, highlight);
    m_renderer.setColors(text, background, highlight);
}

void LCD7100::setColorsFromDialog(QColor text, QColor background, QColor highlight) {
    setColors(text, background, highlight);
    emit colorChanged(getColors());
}

void LCD7100::setColors(QByteArray colors) {
    const ColorTables read = ColorTables::fromBytes(colors);
    setColors(read.textColor(), read.backgroundColor(), read.highlightColor());
}

void LCD7100::setFontFamily(QString family) {
    const QFont chosen(family);
    setFont(chosen);
    m_renderer.setFont(chosen);
}

void LCD7100::contextMenu(QPoint /*position*/) {
    m_menu->popup(QCursor::pos());
}

void LCD7100::showMenuOnScreen() {
    m_menu->popup(mapToGlobal(rect().center()));
    m_menu->setActiveAction(m_menu->actions().constFirst());
}

bool LCD7100::event(QEvent* event) {
    // The mouse may be anywhere when it is the keyboard that asks.
    if (event->type() == QEvent::ContextMenu &&
        static_cast<QContextMenuEvent*>(event)->reason() == QContextMenuEvent::Keyboard) {
        showMenuOnScreen();
        return true;
    }
    return QWidget::event(event);
}

void LCD7100::blinkCursor() {
    if (!m_textMode || m_cursor.mode == LCDTextCursor::Off)
        return;
    m_cursorShown = !m_cursorShown;
    update(std::exchange(m_cursorChange, QRegion()) | cursorRect());
}

QRect LCD7100::cursorRect() const {
    return cursorArea(size(), m_columns, m_rows, m_cursor).toAlignedRect();
}

void LCD7100::newTextReady(QImage image) {
    const qint64 keyBefore = std::exchange(m_textKey, image.cacheKey());
    const auto difference = m_renderer.difference(keyBefore, m_textKey);
    const bool isFirst = m_textPixmap.isNull();
    // Shared with the image: its pixels are copied for the first time when they are painted.
    m_textPixmap = QPixmap::fromImage(std::move(image));
    // Whatever is beneath is covered from now on.
    setAttribute(Qt::WA_OpaquePaintEvent);
    if (!m_textMode && !isFirst)
        return;
    if (!isFirst && difference && isRenderedForNow())
        updatePixels(*difference);
    else
        update();
    update(std::exchange(m_cursorChange, QRegion()));
}

/// Whether what was rendered last is for the size that the widget has.
bool LCD7100::isRenderedForNow() const {
    return m_textPixmap.size() == devicePixels();
}

/// Repaints pixels of the device.
void LCD7100::updatePixels(const QRegion& pixels) {
    const qreal ratio = devicePixelRatioF();
    // A pixel of the device may be shared with the neighbours of its unit.
    const int margin = ratio == std::floor(ratio) ? 0 : 1;
    QRegion units;
    for (const QRect& part : pixels) {
        const QRectF exact(QPointF(part.topLeft()) / ratio, QSizeF(part.size()) / ratio);
        units |= exact.toAlignedRect().adjusted(-margin, -margin, margin, margin);
    }
    update(units);
}

void LCD7100::paintEvent(QPaintEvent* /*event*/) {
    if (!std::exchange(m_isSeen, true))
        QMetaObject::invokeMethod(this, &LCD7100::renderWhatWaits, Qt::QueuedConnection);
    if (m_textPixmap.isNull())
        return;
    QPainter painter(this);
    if (!m_textMode) {
        painter.drawImage(rect(), graphics());
        return;
    }
    if (isRenderedForNow())
        paintUnscaled(painter, m_textPixmap);
    else
        painter.drawPixmap(rect(), m_textPixmap);
    if (m_cursorShown)
        paintCursor(painter, size(), m_cursor);
}

void LCD7100::paintCursor(QPainter& painter, const QSize& size, const LCDTextCursor& cursor) const {
    painter.fillRect(cursorArea(size, m_columns, m_rows, cursor), Qt::darkGray);
}

void LCD7100::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (m_isSeen) {
        redraw(true);
    } else if (m_textMode) {
        // The window's first picture waits for nothing, not even for fonts that renderings need.
        // One that opens where nobody sees it is painted much later, and then is to be whole at
        // once.
        m_renderWaits = true;
        QTimer::singleShot(firstPicturePatienceMs, this, &LCD7100::renderWhatWaits);
    }
}

void LCD7100::renderWhatWaits() {
    if (std::exchange(m_renderWaits, false))
        render(true);
}

void LCD7100::mousePressEvent(QMouseEvent* event) {
    const bool clicked = event->button() == Qt::LeftButton || event->button() == Qt::RightButton;
    const QPoint position = event->position().toPoint();
    const int key = softKeyAt(size(), position.x(), position.y());
    if (clicked && key >= 0) {
        const Qt::KeyboardModifiers held = event->modifiers();
        const int modifiers =
            (held & Qt::ShiftModifier ? 1 : 0) | (held & Qt::MetaModifier ? 2 : 0);
        emit MakeKey(static_cast<unsigned char>(key), static_cast<unsigned char>(modifiers));
    }
    QWidget::mousePressEvent(event);
}

void LCD7100::focusInEvent(QFocusEvent* event) {
    emit drawFocusRing(true);
    QWidget::focusInEvent(event);
}

void LCD7100::focusOutEvent(QFocusEvent* event) {
    emit drawFocusRing(false);
    QWidget::focusOutEvent(event);
}
