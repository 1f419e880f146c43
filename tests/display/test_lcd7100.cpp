#include "PaintWatch.h"
#include "ShownLcd.h"
#include "TestEnvironment.h"

#include <climits>

namespace {

const QRgb unpainted = qRgb(250, 250, 200);
const QRgb cursorGrey = qRgb(128, 128, 128);

std::string oneLitPixel(int x, int y) {
    std::string bits(1920, '\0');
    bits[static_cast<std::size_t>(y) * 30 + static_cast<std::size_t>(x / 8)] =
        static_cast<char>(128 >> (x % 8));
    return bits;
}

QImage graphicsPicture(const QSize& size, const std::string& bits, QColor on, QColor off) {
    QImage picture(size, QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.drawImage(picture.rect(), GraphImage7100(240, 64, bits.data()).toColor(on, off));
    return picture;
}

} // namespace

/// What the screen widget shows.
class TestLCD7100 : public QObject {
    Q_OBJECT

private slots:
    void isMadeAsTold() {
        const LCD7100 lcd;
        QCOMPARE(lcd.focusPolicy(), Qt::StrongFocus);
        QCOMPARE(lcd.minimumSize(), QSize(240, 120));
        QCOMPARE(lcd.contextMenuPolicy(), Qt::CustomContextMenu);
        QCOMPARE(lcd.palette().color(QPalette::Window), QColor(250, 250, 200));
        QVERIFY(lcd.autoFillBackground());
        QCOMPARE(lcd.getFontFamily(), QStringLiteral("Arial"));
        QCOMPARE(lcd.backColor(), QColor(224, 224, 224));
        const auto* timer = lcd.findChild<QTimer*>();
        QVERIFY(timer != nullptr && timer->isActive());
        QCOMPARE(timer->interval(), 500);
    }

    void nothingIsPaintedBeforeTheFirstRendering() {
        ShownLcd shown;
        QImage bare(shown.lcd.size(), QImage::Format_RGB32);
        bare.fill(unpainted);
        shown.lcd.setCursorWait(LCDTextCursor::Block, 1, 1);
        QCOMPARE(shown.picture(), bare);
        shown.lcd.setFullGraphics(oneLitPixel(0, 0).data());
        shown.lcd.setTextMode(false);
        QCOMPARE(shown.picture(), bare);
        // Characters are rendered even while graphics are shown; then graphics are painted too.
        shown.lcd.setTextMode(true);
        shown.lcd.setCursorWait(LCDTextCursor::Off, 1, 1);
        QVERIFY(shown.shows());
    }

    void theCharacterSetShowsAtFirst() {
        ShownLcd shown;
        QVERIFY(shown.shows());
    }

    void waitOperationsShowWithRedraw() {
        ShownLcd shown;
        QVERIFY(shown.shows());
        const QImage before = shown.picture();
        shown.set(ReferencePainter::randomScreen(1));
        QCOMPARE(shown.picture(), before);
        shown.lcd.redraw(false);
        QVERIFY(shown.shows());
    }

    void shortDataCountsAs0_data() {
        QTest::addColumn<int>("length");
        for (const int length : {0, 1, 160, 319, 320, 321, 1000})
            QTest::addRow("%d", length) << length;
    }
    void shortDataCountsAs0() {
        QFETCH(const int, length);
        ShownLcd shown;
        shown.lcd.setTextWait(std::string(320, 'X').data());
        shown.lcd.setAttrWait(std::string(320, '\2').data());
        // Heap memory of just this length, so that a sanitizer sees a read beyond it.
        const auto size = static_cast<std::size_t>(length);
        const auto codes = std::make_unique<char[]>(size);
        const auto attributes = std::make_unique<char[]>(size);
        std::fill_n(codes.get(), size, 'a');
        std::fill_n(attributes.get(), size, '\1');
        shown.lcd.setTextWait(std::string_view(codes.get(), size));
        shown.lcd.setAttrWait(std::string_view(attributes.get(), size));
        shown.reference.text.assign(size, 'a');
        shown.reference.attr.assign(size, '\1');
        shown.lcd.redraw(false);
        QVERIFY(shown.shows());
    }

    void zerosAreDataToo() {
        ShownLcd shown;
        std::string codes(320, 'a');
        codes[0] = '\0';
        codes[100] = '\0';
        std::string attributes(320, '\0');
        attributes[319] = '\1';
        shown.reference.text = codes;
        shown.reference.attr = attributes;
        shown.lcd.setTextWait(codes.data());
        shown.lcd.setAttrWait(attributes.data());
        shown.lcd.redraw(false);
        QVERIFY(shown.shows());
    }

    void resizingRendersAnew() {
        ShownLcd shown;
        shown.set(ReferencePainter::randomScreen(2));
        for (const QSize size : {QSize(241, 121), QSize(960, 480), QSize(333, 222)}) {
            shown.lcd.resize(size);
            QVERIFY(shown.shows());
        }
    }

    void theOldRenderingIsScaledUntilTheNewOneIsThere() {
        ShownLcd shown;
        QVERIFY(shown.shows());
        const QImage rendered = shown.picture();
        shown.lcd.resize(720, 300);
        QImage scaled(720, 300, QImage::Format_RGB32);
        QPainter painter(&scaled);
        painter.drawPixmap(scaled.rect(), QPixmap::fromImage(rendered));
        painter.end();
        // Renderings arrive by the event loop, which does not run in between.
        QCOMPARE(shown.picture(), scaled);
        QVERIFY(shown.shows());
    }

    void clearing() {
        ShownLcd shown;
        shown.set(ReferencePainter::randomScreen(3));
        shown.lcd.setCursorWait(LCDTextCursor::Block, 3, 3);
        shown.lcd.setTextMode(false);
        shown.lcd.clearDisplay();
        shown.reference.text.assign(320, ' ');
        shown.reference.attr.assign(320, '\0');
        QVERIFY(shown.shows());
    }

    void messages_data() {
        QTest::addColumn<QString>("message");
        QTest::addColumn<std::string>("cells");
        QTest::newRow("empty") << QString() << std::string();
        QTest::newRow("short") << QStringLiteral("No carrier") << std::string("No carrier");
        QTest::newRow("low bytes")
            << QStringLiteral("\u0141\u2501\u00E9") << std::string("A\x01\xE9");
        QTest::newRow("to the last cell") << QString(320, u'm') << std::string(320, 'm');
        QTest::newRow("and beyond") << QString(100'000, u'm') << std::string(320, 'm');
    }
    void messages() {
        QFETCH(const QString, message);
        QFETCH(const std::string, cells);
        ShownLcd shown;
        shown.set(ReferencePainter::randomScreen(4));
        shown.lcd.ShowMessage(message);
        shown.reference.text.replace(0, cells.size(), cells);
        QVERIFY(shown.shows());
    }

    void otherSizesShowTheCharacterSet() {
        ShownLcd shown;
        shown.lcd.setSize(20, 4, 128, 32);
        shown.lcd.redraw(false);
        shown.reference.columns = 20;
        shown.reference.rows = 4;
        QVERIFY(shown.shows());

        shown.lcd.setFullGraphics(std::string_view("\xFF", 1));
        shown.lcd.setTextMode(false);
        const QImage picture = shown.picture();
        QCOMPARE(picture.pixel(0, 0), qRgb(0, 0, 255));
        // Eight pixels of 128 lit, in one row of 32.
        QCOMPARE(picture.pixel(480 * 8 / 128 - 1, 7), qRgb(0, 0, 255));
        QCOMPARE(picture.pixel(480 * 8 / 128, 0), qRgb(224, 224, 224));
        QCOMPARE(picture.pixel(0, 8), qRgb(224, 224, 224));
    }

    void absurdSizesAreSafe_data() {
        QTest::addColumn<int>("side");
        QTest::newRow("0") << 0;
        QTest::newRow("negative") << -7;
        QTest::newRow("smallest") << INT_MIN;
        QTest::newRow("largest") << INT_MAX;
    }
    void absurdSizesAreSafe() {
        QFETCH(const int, side);
        LCD7100 lcd;
        lcd.setSize(side, side, side, side);
        lcd.setTextWait(std::string_view("abc"));
        lcd.setAttrWait(std::string_view("\1"));
        lcd.setFullGraphics(std::string_view("\xFF"));
        lcd.setCursorWait(LCDTextCursor::Block, side, side);
        lcd.ShowMessage(QStringLiteral("message"));
        QVERIFY(!lcd.grab().isNull());
    }

    void graphicsCoverTheWidget() {
        ShownLcd shown;
        QVERIFY(shown.shows());
        // Before any picture: nothing lit.
        shown.lcd.setTextMode(false);
        QCOMPARE(shown.picture(), graphicsPicture(QSize(480, 240), std::string(1920, '\0'),
                                                  Qt::blue, QColor(224, 224, 224)));
        const std::string bits = oneLitPixel(239, 63);
        PaintWatch watch(shown.lcd);
        shown.lcd.setFullGraphics(bits.data());
        QTRY_VERIFY_WITH_TIMEOUT(!watch.regions.isEmpty(), patienceMs);
        const QImage picture = shown.picture();
        QCOMPARE(picture, graphicsPicture(QSize(480, 240), bits, Qt::blue, QColor(224, 224, 224)));
        QCOMPARE(picture.pixel(479, 239), qRgb(0, 0, 255));
        QCOMPARE(picture.pixel(478, 236), qRgb(0, 0, 255));
        QCOMPARE(picture.pixel(477, 239), qRgb(224, 224, 224));
    }

    void shortGraphicsAreNotLit_data() {
        QTest::addColumn<int>("length");
        for (const int length : {0, 1, 30, 1919, 1920, 1921, 5000})
            QTest::addRow("%d", length) << length;
    }
    void shortGraphicsAreNotLit() {
        QFETCH(const int, length);
        ShownLcd shown;
        QVERIFY(shown.shows());
        shown.lcd.setTextMode(false);
        shown.lcd.setFullGraphics(std::string(1920, '\xFF').data());
        const auto size = static_cast<std::size_t>(length);
        const auto bits = std::make_unique<char[]>(size);
        std::fill_n(bits.get(), size, '\xFF');
        shown.lcd.setFullGraphics(std::string_view(bits.get(), size));
        std::string whole(std::min<std::size_t>(size, 1920), '\xFF');
        whole.resize(1920, '\0');
        QCOMPARE(shown.picture(),
                 graphicsPicture(QSize(480, 240), whole, Qt::blue, QColor(224, 224, 224)));
    }

    void graphicsKeepTheirColoursUntilTheNextPicture() {
        ShownLcd shown;
        QVERIFY(shown.shows());
        const std::string bits = oneLitPixel(100, 30);
        shown.lcd.setTextMode(false);
        shown.lcd.setFullGraphics(bits.data());
        const QImage before = shown.picture();
        shown.lcd.setColors(QColor(1, 2, 3), QColor(200, 210, 220), QColor(9, 9, 9));
        QCOMPARE(shown.picture(), before);
        shown.lcd.setFullGraphics(GraphImage7100(240, 64, bits.data()));
        QCOMPARE(shown.picture(),
                 graphicsPicture(QSize(480, 240), bits, QColor(1, 2, 3), QColor(200, 210, 220)));
    }

    void graphicsHaveTheColoursOfTheirArrival() {
        ShownLcd shown;
        QVERIFY(shown.shows());
        const std::string bits = oneLitPixel(100, 30);
        shown.lcd.setTextMode(false);
        shown.lcd.setFullGraphics(bits.data());
        // Before it has been painted for the first time.
        shown.lcd.setColors(QColor(1, 2, 3), QColor(200, 210, 220), QColor(9, 9, 9));
        QCOMPARE(shown.picture(),
                 graphicsPicture(QSize(480, 240), bits, Qt::blue, QColor(224, 224, 224)));
    }

    void theLatestGraphicsAreShown() {
        ShownLcd shown;
        QVERIFY(shown.shows());
        const std::string bits = oneLitPixel(100, 30);
        const std::string blank(1920, '\0');
        const auto picture = [](const std::string& lit) {
            return graphicsPicture(QSize(480, 240), lit, Qt::blue, QColor(224, 224, 224));
        };
        shown.lcd.setTextMode(false);
        shown.lcd.setFullGraphics(blank.data());
        shown.lcd.setFullGraphics(GraphImage7100(240, 64, bits.data()));
        QCOMPARE(shown.picture(), picture(bits));
        shown.lcd.setFullGraphics(bits.data());
        shown.lcd.setSize(40, 8, 240, 64);
        QCOMPARE(shown.picture(), picture(blank));
    }

    void bothModesKeepTheirPictures() {
        ShownLcd shown;
        shown.set(ReferencePainter::randomScreen(5));
        shown.lcd.redraw(false);
        QVERIFY(shown.shows());
        const std::string bits = oneLitPixel(7, 7);
        shown.lcd.setFullGraphics(bits.data());
        QCOMPARE(shown.picture(), shown.expected());
        shown.lcd.setTextMode(false);
        QCOMPARE(shown.picture(),
                 graphicsPicture(QSize(480, 240), bits, Qt::blue, QColor(224, 224, 224)));
        // No redraw in between: what was rendered last shows again at once.
        shown.lcd.setTextMode(true);
        QCOMPARE(shown.picture(), shown.expected());
    }

    void redrawRendersInTextModeOnly() {
        ShownLcd shown;
        QVERIFY(shown.shows());
        const QImage before = shown.picture();
        shown.lcd.setTextMode(false);
        shown.set(ReferencePainter::randomScreen(6));
        shown.lcd.redraw(true);
        shown.lcd.resize(500, 250);
        shown.lcd.resize(480, 240);
        shown.lcd.setTextMode(true);
        QCOMPARE(shown.picture(), before);
        shown.lcd.redraw(false);
        QVERIFY(shown.shows());
    }

    void onlyAChangeOfModeRepaints() {
        ShownLcd shown;
        QVERIFY(shown.shows());
        QCoreApplication::processEvents();
        PaintWatch watch(shown.lcd);
        shown.lcd.setTextMode(true);
        shown.lcd.setGraphicsMode(true);
        shown.lcd.setGraphicsMode(false);
        QCoreApplication::processEvents();
        QVERIFY(watch.regions.isEmpty());
        shown.lcd.setTextMode(false);
        QTRY_VERIFY_WITH_TIMEOUT(!watch.regions.isEmpty(), patienceMs);
    }

    void graphicsModeSlotHasNoEffect() {
        ShownLcd shown;
        QVERIFY(shown.shows());
        shown.lcd.setGraphicsMode(true);
        QCOMPARE(shown.picture(), shown.expected());
    }

    void cursorsArePaintedOverTheText_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<int>("column");
        QTest::addColumn<int>("row");
        QTest::addColumn<QRect>("area");
        // 484 x 244: cells of 12 x 30 within the inset of 2.
        QTest::newRow("off") << 0 << 3 << 2 << QRect();
        QTest::newRow("underline") << 1 << 3 << 2 << QRect(26, 60, 12, 2);
        QTest::newRow("block") << 2 << 3 << 2 << QRect(26, 32, 12, 30);
        QTest::newRow("mode 3") << 3 << 3 << 2 << QRect();
        QTest::newRow("last cell") << 2 << 40 << 8 << QRect(470, 212, 12, 30);
        QTest::newRow("underline in the last cell") << 1 << 40 << 8 << QRect(470, 240, 12, 2);
        QTest::newRow("column 0, row 0") << 2 << 0 << 0 << QRect(0, 0, 2, 2);
        QTest::newRow("outside") << 2 << 42 << 9 << QRect();
        QTest::newRow("huge") << 2 << INT_MAX << INT_MIN << QRect();
    }
    void cursorsArePaintedOverTheText() {
        QFETCH(const int, mode);
        QFETCH(const int, column);
        QFETCH(const int, row);
        QFETCH(const QRect, area);
        ShownLcd shown(QSize(484, 244));
        QVERIFY(shown.shows());
        shown.lcd.setCursorWait(mode, column, row);
        QImage expected = shown.expected();
        QPainter(&expected).fillRect(area, QColor(cursorGrey));
        QCOMPARE(shown.picture(), expected);
        shown.lcd.setTextMode(false);
        QCOMPARE(shown.picture(), graphicsPicture(QSize(484, 244), std::string(1920, '\0'),
                                                  Qt::blue, QColor(224, 224, 224)));
    }

    void cursorsBlink() {
        ShownLcd shown(QSize(484, 244));
        QVERIFY(shown.shows());
        shown.lcd.setCursorWait(LCDTextCursor::Block, 3, 2);
        const QImage without = shown.expected();
        const QImage with = shown.picture();
        QVERIFY(with != without);
        QCoreApplication::processEvents();

        PaintWatch watch(shown.lcd);
        shown.lcd.blinkCursor();
        QTRY_COMPARE_WITH_TIMEOUT(watch.regions.size(), 1, patienceMs);
        QCOMPARE(watch.regions[0].boundingRect(), QRect(26, 32, 12, 30));
        QCOMPARE(shown.picture(), without);
        shown.lcd.blinkCursor();
        QCOMPARE(shown.picture(), with);
    }

    void theTimerBlinks() {
        ShownLcd shown;
        QVERIFY(shown.shows());
        shown.lcd.setCursorWait(LCDTextCursor::Block, 3, 2);
        const QImage with = shown.picture();
        shown.timer()->start(1);
        QTRY_VERIFY_WITH_TIMEOUT(shown.picture() == shown.expected(), patienceMs);
        QTRY_VERIFY_WITH_TIMEOUT(shown.picture() == with, patienceMs);
    }

    void noCursorNoBlinking() {
        ShownLcd shown;
        QVERIFY(shown.shows());
        shown.lcd.blinkCursor();
        // Had the phase changed, the cursor would not show now.
        shown.lcd.setCursorWait(LCDTextCursor::Block, 1, 1);
        QVERIFY(shown.picture() != shown.expected());
        shown.lcd.setTextMode(false);
        shown.lcd.blinkCursor();
        shown.lcd.setTextMode(true);
        QVERIFY(shown.picture() != shown.expected());
    }
};

int main(int argc, char** argv) {
    return runTest<TestLCD7100>(argc, argv);
}

#include "test_lcd7100.moc"
