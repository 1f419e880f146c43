#include "ReferencePainter.h"
#include "TestEnvironment.h"
#include "TextScreen.h"

#include <QFontMetrics>
#include <QHash>
#include <QPainter>

#include <array>
#include <atomic>

namespace {

/// The lines of the box pieces, on five places in each direction: 0 the near edge, 1 and 3 the pair
/// of double lines, 2 the centre, 4 the far edge. "h1 0-3" is a horizontal line at place 1 from
/// place 0 to place 3.
const QHash<int, const char*> boxPieces = {
    {179, "v2 0-4"},
    {196, "h2 0-4"},
    {197, "v2 0-4, h2 0-4"},
    {191, "h2 0-2, v2 2-4"},
    {192, "v2 0-2, h2 2-4"},
    {193, "v2 0-2, h2 0-4"},
    {194, "v2 2-4, h2 0-4"},
    {195, "v2 0-4, h2 2-4"},
    {217, "v2 0-2, h2 0-2"},
    {218, "v2 2-4, h2 2-4"},
    {186, "v1 0-4, v3 0-4"},
    {205, "h1 0-4, h3 0-4"},
    {185, "v3 0-4, v1 0-1, h1 0-1, v1 3-4, h3 0-1"},
    {187, "h1 0-3, v3 1-4, h3 0-1, v1 3-4"},
    {188, "h3 0-3, v3 0-3, h1 0-1, v1 0-1"},
    {200, "h3 1-4, v1 0-3, h1 3-4, v3 0-1"},
    {201, "h1 1-4, v1 1-4, h3 3-4, v3 3-4"},
    {202, "h3 0-4, v1 0-1, h1 0-1, v3 0-1, h1 3-4"},
    {203, "h1 0-4, v1 3-4, h3 0-1, v3 3-4, h3 3-4"},
    {204, "v1 0-4, v3 0-1, h1 3-4, v3 3-4, h3 3-4"},
    {206, "v1 0-1, h1 0-1, v3 0-1, h1 3-4, v1 3-4, h3 0-1, v3 3-4, h3 3-4"},
};

const QHash<int, char16_t> symbols = {
    {4, 0x25C6},  {9, 0x25FE},  {16, 0x25B6},  {17, 0x25C2},  {24, 0x2191},
    {25, 0x2193}, {26, 0x2192}, {27, 0x2190},  {30, 0x25B2},  {31, 0x25BC},
    {127, 0x394}, {227, 0x3C0}, {230, 0x00B5}, {248, 0x00B0},
};

/// Where the five places are, in pixels of a cell.
struct Size {
    QSize screen;
    QSize cell;
    std::array<int, 5> x;
    std::array<int, 5> y;
    /// The left and the upper half, which reach an eighth of the cell's width beyond its centre.
    QSize half;
};

const Size small = {{480, 240}, {12, 30}, {0, 4, 6, 7, 11}, {0, 13, 15, 16, 29}, {8, 17}};
const Size large = {{960, 480}, {24, 60}, {0, 9, 12, 15, 23}, {0, 27, 30, 33, 59}, {15, 33}};

QImage boxPicture(const Size& size, const QString& lines, QRgb foreground, QRgb background) {
    QImage picture(size.cell, QImage::Format_RGB32);
    picture.fill(background);
    for (const QString& line : lines.split(QStringLiteral(", "))) {
        const auto place = [&line](int i) {
            return static_cast<std::size_t>(line[i].digitValue());
        };
        const bool horizontal = line[0] == u'h';
        const auto& along = horizontal ? size.x : size.y;
        const auto& across = horizontal ? size.y : size.x;
        for (int i = along[place(3)]; i <= along[place(5)]; ++i) {
            const int at = across[place(1)];
            picture.setPixel(horizontal ? QPoint(i, at) : QPoint(at, i), foreground);
        }
    }
    return picture;
}

/// Blocks, as the part of the cell that is lit.
QRect blockPart(int code, const Size& size) {
    const int w = size.cell.width();
    const int h = size.cell.height();
    switch (code) {
    case 219:
        return {0, 0, w, h};
    case 220:
        return {0, h / 2, w, h / 2};
    case 221:
        return {0, 0, size.half.width(), h};
    case 222:
        return {w / 2, 0, w / 2, h};
    case 223:
        return {0, 0, w, size.half.height()};
    default:
        return {};
    }
}

QImage blockPicture(const Size& size, int code, QRgb foreground, QRgb background) {
    QImage picture(size.cell, QImage::Format_RGB32);
    picture.fill(background);
    QPainter painter(&picture);
    painter.fillRect(blockPart(code, size), QColor(foreground));
    return picture;
}

QImage letterPicture(const Size& size, QChar letter, int pixelSize, QRgb foreground,
                     QRgb background) {
    QImage picture(size.cell, QImage::Format_RGB32);
    picture.fill(background);
    QPainter painter(&picture);
    QFont font(QStringLiteral("Arial"));
    font.setPixelSize(pixelSize);
    painter.setFont(font);
    painter.setPen(QColor(foreground));
    painter.drawText(picture.rect(), Qt::AlignCenter, letter);
    return picture;
}

constexpr QRgb text = 0xFF102030;
constexpr QRgb back = 0xFFE0F0D0;
constexpr QRgb highlight = 0xFFC04020;

struct Attribute {
    unsigned char value;
    QRgb foreground;
    QRgb background;
};

const std::array<Attribute, 7> attributes = {{
    {0, text, back},
    {1, back, text},
    {2, highlight, back},
    {3, back, highlight},
    {4, text, back},
    {128, text, back},
    {255, text, back},
}};

TextScreen blankScreen() {
    TextScreen screen;
    screen.text = QVector<char>(320, ' ');
    screen.attr = QVector<char>(320, 0);
    screen.font = QFont(QStringLiteral("Arial"));
    screen.colors = ColorTables(QColor(text), QColor(back), QColor(highlight));
    return screen;
}

QImage painted(TextScreen& screen, const QSize& size) {
    const std::atomic<bool> never = false;
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::green);
    screen.fitFont(size);
    QPainter painter(&image);
    screen.paintText(painter, size, never);
    return image;
}

/// The pixels that can be reached from `from` without crossing a line, turned into `mark`.
void flood(QImage& image, QPoint from, QRgb mark) {
    const QRgb open = image.pixel(from);
    QVector<QPoint> todo{from};
    while (!todo.isEmpty()) {
        const QPoint p = todo.takeLast();
        if (!image.rect().contains(p) || image.pixel(p) != open)
            continue;
        image.setPixel(p, mark);
        for (const QPoint& step : {QPoint(1, 0), QPoint(-1, 0), QPoint(0, 1), QPoint(0, -1)})
            todo << p + step;
    }
}

void put(TextScreen& screen, int row, int column, const char* cells) {
    for (int i = 0; cells[i] != '\0'; ++i)
        screen.text[row * 40 + column + i] = cells[i];
}

} // namespace

/// What every code looks like in every attribute, by what does not depend on the font: where lines
/// and blocks are, pixel by pixel, and that letters are those of the right character.
class TestCells : public QObject {
    Q_OBJECT

private slots:
    void everyCodeInEveryAttribute_data() {
        QTest::addColumn<bool>("isLarge");
        QTest::addColumn<int>("code");
        for (const bool isLarge : {false, true}) {
            for (int code = 0; code < 256; ++code) {
                QTest::addRow("%s %d", isLarge ? "960 x 480" : "480 x 240", code)
                    << isLarge << code;
            }
        }
    }
    void everyCodeInEveryAttribute() {
        QFETCH(const bool, isLarge);
        QFETCH(const int, code);
        const Size& size = isLarge ? large : small;
        TextScreen screen = blankScreen();
        // Apart from each other, so that each has blank neighbours.
        const auto cellOf = [](std::size_t i) { return 40 * 3 + 2 + static_cast<int>(i) * 4; };
        for (std::size_t i = 0; i < attributes.size(); ++i) {
            screen.text[cellOf(i)] = static_cast<char>(code);
            screen.attr[cellOf(i)] = static_cast<char>(attributes[i].value);
        }
        QImage whole = painted(screen, size.screen);

        for (std::size_t i = 0; i < attributes.size(); ++i) {
            const QRect place(QPoint(cellOf(i) % 40 * size.cell.width(), 3 * size.cell.height()),
                              size.cell);
            const auto [value, foreground, background] = attributes[i];
            QImage expected;
            if (boxPieces.contains(code))
                expected =
                    boxPicture(size, QString::fromLatin1(boxPieces[code]), foreground, background);
            else if (code == 0 || code == 32 || (code >= 219 && code <= 223))
                expected = blockPicture(size, code, foreground, background);
            else
                expected =
                    letterPicture(size, symbols.contains(code) ? QChar(symbols[code]) : QChar(code),
                                  screen.sizing.pixelSize, foreground, background);
            QVERIFY2(whole.copy(place) == expected, qPrintable(QString::number(value)));
            QPainter(&whole).fillRect(place, QColor(back));
        }
        QImage blank(size.screen, QImage::Format_RGB32);
        blank.fill(back);
        QVERIFY2(whole == blank, "something was painted outside the cells");
    }

    void symbolsAndLettersAreThere_data() {
        QTest::addColumn<int>("code");
        for (int code = 33; code < 256; ++code) {
            // The control characters of Latin-1, its no-break space and its soft hyphen look as
            // the font likes.
            const bool asTheFontLikes = (code >= 128 && code <= 160) || code == 173;
            if (!asTheFontLikes)
                QTest::addRow("%d", code) << code;
        }
        for (const int code : symbols.keys()) {
            if (code < 33)
                QTest::addRow("%d", code) << code;
        }
    }
    void symbolsAndLettersAreThere() {
        QFETCH(const int, code);
        TextScreen screen = blankScreen();
        screen.text[5] = static_cast<char>(code);
        const QImage cell = painted(screen, small.screen).copy(QRect(QPoint(60, 0), small.cell));
        QImage blank(small.cell, QImage::Format_RGB32);
        blank.fill(back);
        QVERIFY(cell != blank);
    }

    void symbolsDifferFromEachOther() {
        QVector<QImage> seen;
        for (const int code : symbols.keys()) {
            TextScreen screen = blankScreen();
            screen.text[5] = static_cast<char>(code);
            const QImage cell =
                painted(screen, large.screen).copy(QRect(QPoint(120, 0), large.cell));
            QVERIFY2(!seen.contains(cell), qPrintable(QString::number(code)));
            seen << cell;
        }
    }

    void inverseBlockIsBackground() {
        TextScreen screen = blankScreen();
        screen.text[0] = static_cast<char>(219);
        screen.attr[0] = 1;
        const QImage image = painted(screen, small.screen);
        QCOMPARE(image.pixel(0, 0), back);
        QCOMPARE(image.pixel(11, 29), back);
    }

    void framesAreClosed_data() {
        QTest::addColumn<bool>("isDouble");
        QTest::addColumn<QSize>("size");
        for (const bool isDouble : {false, true}) {
            for (const QSize size :
                 {QSize(240, 120), QSize(241, 121), QSize(247, 133), QSize(253, 150),
                  QSize(270, 123), QSize(299, 187), QSize(333, 177), QSize(401, 240),
                  QSize(480, 240), QSize(517, 391), QSize(640, 200), QSize(777, 399),
                  QSize(961, 479), QSize(1000, 999), QSize(1920, 960)})
                QTest::addRow("%s %d x %d", isDouble ? "double" : "single", size.width(),
                              size.height())
                    << isDouble << size;
        }
    }
    void framesAreClosed() {
        QFETCH(const bool, isDouble);
        QFETCH(const QSize, size);
        TextScreen screen = blankScreen();
        screen.attr.fill(0);
        // A window of four panes, from cell (2, 1) to cell (10, 7).
        if (isDouble) {
            put(screen, 1, 2, "\xC9\xCD\xCD\xCD\xCB\xCD\xCD\xCD\xBB");
            put(screen, 4, 2, "\xCC\xCD\xCD\xCD\xCE\xCD\xCD\xCD\xB9");
            put(screen, 7, 2, "\xC8\xCD\xCD\xCD\xCA\xCD\xCD\xCD\xBC");
        } else {
            // Code 180 is no box piece; the right edge does without a branch.
            put(screen, 1, 2, "\xDA\xC4\xC4\xC4\xC2\xC4\xC4\xC4\xBF");
            put(screen, 4, 2, "\xC3\xC4\xC4\xC4\xC5\xC4\xC4\xC4\xC5");
            put(screen, 7, 2, "\xC0\xC4\xC4\xC4\xC1\xC4\xC4\xC4\xD9");
        }
        for (const int row : {2, 3, 5, 6}) {
            for (const int column : {2, 6, 10})
                screen.text[row * 40 + column] = static_cast<char>(isDouble ? 186 : 179);
        }
        QImage image = painted(screen, size);

        const auto centre = [&size](int column, int row) {
            return QPoint(static_cast<int>((column + 0.5) * size.width() / 40),
                          static_cast<int>((row + 0.5) * size.height() / 8));
        };
        const std::array<QPoint, 5> regions = {centre(0, 0), centre(4, 2), centre(8, 2),
                                               centre(4, 6), centre(8, 6)};
        for (std::size_t i = 0; i < regions.size(); ++i) {
            QVERIFY2(image.pixel(regions[i]) == back,
                     qPrintable(QStringLiteral("region %1 runs into another").arg(i)));
            flood(image, regions[i], qRgb(0, 0, static_cast<int>(100 + i)));
        }
    }

    void aCellPaintsNothingOutsideOnceItsNeighboursArePainted_data() {
        QTest::addColumn<QSize>("size");
        QTest::newRow("whole cells") << QSize(480, 240);
        QTest::newRow("fractional cells") << QSize(491, 250);
    }
    void aCellPaintsNothingOutsideOnceItsNeighboursArePainted() {
        QFETCH(const QSize, size);
        TextScreen blank = blankScreen();
        const QImage without = painted(blank, size);
        TextScreen screen = blankScreen();
        screen.text[40 * 3 + 18] = static_cast<char>(219);
        const QImage with = painted(screen, size);
        const QRectF cell(18.0 * size.width() / 40, 3.0 * size.height() / 8, size.width() / 40.0,
                          size.height() / 8.0);
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x) {
                const bool inside = cell.contains(QPointF(x + 0.5, y + 0.5));
                QCOMPARE(with.pixel(x, y), inside ? text : back);
                QCOMPARE(without.pixel(x, y), back);
            }
        }
    }

    void paintingStopsAtTheNextCell() {
        TextScreen screen = blankScreen();
        screen.text.fill(static_cast<char>(219));
        const std::atomic<bool> restart = true;
        QImage image(small.screen, QImage::Format_RGB32);
        image.fill(Qt::green);
        const QImage untouched = image.copy();
        screen.fitFont(small.screen);
        QPainter painter(&image);
        screen.paintText(painter, small.screen, restart);
        painter.end();
        QVERIFY(image == untouched);
    }

    void missingCellsCountAs0() {
        for (const int length : {0, 1, 39, 40, 319, 320, 321}) {
            TextScreen screen = blankScreen();
            screen.text = QVector<char>(length, static_cast<char>(219));
            screen.attr = QVector<char>(length / 2, 2);
            const QImage image = painted(screen, small.screen);
            for (int cell = 0; cell < 320; ++cell) {
                const QRgb expected = cell >= length ? back : cell < length / 2 ? highlight : text;
                QCOMPARE(image.pixel(cell % 40 * 12 + 6, cell / 40 * 30 + 15), expected);
            }
        }
    }

    void wholeScreensAreAsTheReferenceHasThem_data() {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QString>("family");
        const QStringList families = {QStringLiteral("Arial"), QStringLiteral("DejaVu Sans Mono"),
                                      QStringLiteral("Liberation Serif")};
        for (const QString& family : families) {
            for (const QSize size :
                 {QSize(240, 120), QSize(241, 121), QSize(333, 177), QSize(480, 240),
                  QSize(555, 999), QSize(960, 480), QSize(961, 479), QSize(1920, 960), QSize(39, 7),
                  QSize(1, 1), QSize(2000, 3), QSize(3, 900)})
                QTest::addRow("%s %d x %d", qPrintable(family), size.width(), size.height())
                    << size << family;
        }
    }
    void wholeScreensAreAsTheReferenceHasThem() {
        QFETCH(const QSize, size);
        QFETCH(const QString, family);
        for (unsigned seed = 1; seed <= 2; ++seed) {
            ReferenceScreen reference = ReferencePainter::randomScreen(seed);
            reference.family = family;
            TextScreen screen;
            screen.text = QVector<char>(reference.text.begin(), reference.text.end());
            screen.attr = QVector<char>(reference.attr.begin(), reference.attr.end());
            screen.font = QFont(family);
            QCOMPARE(painted(screen, size), ReferencePainter::paint(reference, size));
        }
    }

    void otherGridsAreAsTheReferenceHasThem() {
        ReferenceScreen reference = ReferencePainter::randomScreen(5, 80 * 25);
        reference.columns = 80;
        reference.rows = 25;
        TextScreen screen;
        screen.text = QVector<char>(reference.text.begin(), reference.text.end());
        screen.attr = QVector<char>(reference.attr.begin(), reference.attr.end());
        screen.columns = 80;
        screen.rows = 25;
        screen.font = QFont(reference.family);
        QCOMPARE(painted(screen, QSize(900, 500)),
                 ReferencePainter::paint(reference, QSize(900, 500)));
    }
};

int main(int argc, char** argv) {
    return runTest<TestCells>(argc, argv);
}

#include "test_cells.moc"
