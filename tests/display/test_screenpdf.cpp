#include "LCD7100.h"
#include "ScreenPdf.h"
#include "ShownLcd.h"
#include "TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <QMenu>
#include <QRegularExpression>
#include <QScreen>
#include <QSignalSpy>

#include <sys/resource.h>

#include <cmath>
#include <csignal>
#include <cstdio>
#include <limits>
#include <memory>
#include <random>

namespace {

/// What a command prints. Not by QProcess: the thread sanitizer takes its way of starting programs
/// for a fork of this one, after which no renderer may start its thread.
QByteArray outputOf(const QString& program, const QStringList& arguments) {
    QString command = program;
    for (QString argument : arguments)
        command += QStringLiteral(" '%1'").arg(argument.replace(u'\'', QStringLiteral("'\\''")));
    const auto close = [](FILE* pipe) { pclose(pipe); };
    const std::unique_ptr<FILE, decltype(close)> pipe(popen(QFile::encodeName(command), "r"));
    QFile output;
    if (!pipe || !output.open(pipe.get(), QIODevice::ReadOnly))
        return {};
    return output.readAll();
}

/// The size of the only page, in points; empty unless the file is a PDF with one page.
QSizeF pageSize(const QString& file) {
    const QString info = QString::fromUtf8(outputOf(QStringLiteral("pdfinfo"), {file}));
    static const QRegularExpression onePage(QStringLiteral("Pages: +1\n"));
    static const QRegularExpression size(QStringLiteral("Page size: +([0-9.]+) x ([0-9.]+) pts"));
    const auto match = size.match(info);
    if (!info.contains(onePage) || !match.hasMatch())
        return {};
    return {match.captured(1).toDouble(), match.captured(2).toDouble()};
}

/// The page at 96 pixels to the inch, without smoothing.
QImage rendered(const QString& file) {
    const QByteArray png = outputOf(
        QStringLiteral("pdftoppm"),
        {QStringLiteral("-r"), QStringLiteral("96"), QStringLiteral("-aa"), QStringLiteral("no"),
         QStringLiteral("-aaVector"), QStringLiteral("no"), QStringLiteral("-png"), file});
    return QImage::fromData(png).convertToFormat(QImage::Format_RGB32);
}

/// Letters of the page in reading order, without the gaps between the cells.
QString letters(const QString& file) {
    QString text = QString::fromUtf8(outputOf(
        QStringLiteral("pdftotext"), {QStringLiteral("-layout"), file, QStringLiteral("-")}));
    static const QRegularExpression space(QStringLiteral("\\s+"));
    return text.remove(space);
}

bool isNear(const QSizeF& points, const QSizeF& expected) {
    return std::abs(points.width() - expected.width()) <= 0.5 &&
           std::abs(points.height() - expected.height()) <= 0.5;
}

constexpr double pointsPerPixel = 72.0 / 96.0;

} // namespace

class TestScreenPdf : public QObject {
    Q_OBJECT

private slots:
    void init() { m_dir = std::make_unique<QTemporaryDir>(); }

    void imageSizes_data() {
        QTest::addColumn<double>("width");
        QTest::addColumn<double>("height");
        QTest::addColumn<QSize>("widget");
        QTest::addColumn<QSize>("size");
        const QSize widget(480, 240);
        const double infinity = std::numeric_limits<double>::infinity();
        const double nan = std::numeric_limits<double>::quiet_NaN();
        QTest::newRow("inches") << 3.0 << 1.0 << widget << QSize(288, 96);
        QTest::newRow("truncated") << 1.0 / 97 * 2 << 0.999 << widget << QSize(1, 95);
        QTest::newRow("none") << 0.0 << 0.0 << widget << widget;
        QTest::newRow("only one") << 3.0 << 0.0 << widget << widget;
        QTest::newRow("only the other") << 0.0 << 3.0 << widget << widget;
        QTest::newRow("negative") << -3.0 << -1.0 << widget << widget;
        QTest::newRow("not a number") << nan << 1.0 << widget << widget;
        QTest::newRow("infinite") << infinity << infinity << widget << widget;
        QTest::newRow("tiny") << 1e-9 << 1e-9 << widget << QSize(1, 1);
        QTest::newRow("huge") << 1e9 << 1e300 << widget << QSize(19200, 19200);
        QTest::newRow("no widget") << 0.0 << 0.0 << QSize(0, -1) << QSize(1, 1);
        QTest::newRow("huge widget")
            << 0.0 << 0.0 << QSize(INT_MAX, INT_MAX) << QSize(19200, 19200);
    }
    void imageSizes() {
        QFETCH(const double, width);
        QFETCH(const double, height);
        QFETCH(const QSize, widget);
        CaptureInfo info;
        info.width = width;
        info.height = height;
        QTEST(screenpdf::imageSize(info, 96, widget), "size");
    }

    void pages_data() {
        QTest::addColumn<QSize>("widget");
        QTest::addColumn<double>("width");
        QTest::addColumn<double>("height");
        QTest::addColumn<int>("border");
        QTest::addColumn<QSizeF>("pixels");
        QTest::newRow("the widget's size")
            << QSize(480, 240) << 0.0 << 0.0 << 0 << QSizeF(480, 240);
        QTest::newRow("with a border") << QSize(480, 240) << 0.0 << 0.0 << 10 << QSizeF(500, 260);
        QTest::newRow("odd") << QSize(333, 221) << 0.0 << 0.0 << 7 << QSizeF(347, 235);
        QTest::newRow("inches") << QSize(480, 240) << 3.0 << 1.0 << 0 << QSizeF(288, 96);
        QTest::newRow("higher than wide") << QSize(480, 240) << 1.0 << 3.0 << 5 << QSizeF(106, 298);
        QTest::newRow("centimetres: 7.62 x 2.54")
            << QSize(480, 240) << 7.62 / 2.54 << 2.54 / 2.54 << 12 << QSizeF(312, 120);
    }
    void pages() {
        QFETCH(const QSize, widget);
        QFETCH(const double, width);
        QFETCH(const double, height);
        QFETCH(const int, border);
        QFETCH(const QSizeF, pixels);
        ShownLcd shown(widget);
        QVERIFY(shown.shows());
        for (const bool text : {true, false}) {
            shown.lcd.setTextMode(text);
            shown.lcd.capture({path(), width, height, false, border});
            QVERIFY(isNear(pageSize(path()), pixels * pointsPerPixel));
        }
    }

    void pagesHaveTheScreensResolution() {
        const double pointsPerPixelHere =
            72.0 / QGuiApplication::primaryScreen()->logicalDotsPerInchY();
        ShownLcd shown(QSize(480, 240));
        QVERIFY(shown.shows());
        shown.lcd.capture({path(), 0, 0, false, 10});
        QVERIFY(isNear(pageSize(path()), QSizeF(500, 260) * pointsPerPixelHere));
        shown.lcd.capture({path(), 3, 1, false, 0});
        QVERIFY(isNear(pageSize(path()), QSizeF(3 * 72, 72)));
    }

    void pagesHaveAnotherScreensResolution() {
        const QByteArray output =
            outputOf(QStringLiteral("env"),
                     {QStringLiteral("QT_FONT_DPI=72"), QCoreApplication::applicationFilePath(),
                      QStringLiteral("pagesHaveTheScreensResolution")});
        QVERIFY2(output.contains("PASS   : TestScreenPdf::pagesHaveTheScreensResolution()"),
                 output.constData());
    }

    void textIsRealText() {
        ShownLcd shown;
        ReferenceScreen screen;
        screen.text.assign(320, ' ');
        screen.attr.assign(320, '\0');
        const std::string message = "Pressure 12.5 bar";
        screen.text.replace(40, message.size(), message);
        screen.text.replace(80, 3, "\xE3\xE6\x18");
        screen.attr.replace(40, message.size(), message.size(), '\3');
        shown.set(screen);
        shown.lcd.redraw(false);
        QVERIFY(shown.shows());
        shown.lcd.capture({path(), 0, 0, false, 0});
        QCOMPARE(letters(path()), QStringLiteral("Pressure12.5bar\u03C0\u00B5\u2191"));
    }

    void cellsLookAsOnTheTile_data() {
        QTest::addColumn<int>("border");
        QTest::newRow("no border") << 0;
        QTest::newRow("border") << 12;
    }
    void cellsLookAsOnTheTile() {
        QFETCH(const int, border);
        ShownLcd shown;
        ReferenceScreen screen;
        std::mt19937 random(3);
        for (int i = 0; i < 320; ++i) {
            screen.text += random() % 2 == 0 ? ' ' : '\xDB';
            screen.attr += static_cast<char>(random() % 4);
        }
        shown.set(screen);
        shown.lcd.redraw(false);
        QVERIFY(shown.shows());
        const QImage tile = shown.picture();
        shown.lcd.capture({path(), 0, 0, false, border});
        const QImage page = rendered(path());
        QCOMPARE(page.size(), QSize(480 + 2 * border, 240 + 2 * border));
        for (int cell = 0; cell < 320; ++cell) {
            const QPoint centre(cell % 40 * 12 + 6, cell / 40 * 30 + 15);
            QCOMPARE(page.pixel(centre + QPoint(border, border)), tile.pixel(centre));
        }
        if (border == 0)
            return;
        // Nothing of the picture lies in the border, on any side.
        for (int i = 0; i < border - 1; ++i) {
            QCOMPARE(page.pixel(i, page.height() / 2), qRgb(255, 255, 255));
            QCOMPARE(page.pixel(page.width() - 1 - i, page.height() / 2), qRgb(255, 255, 255));
            QCOMPARE(page.pixel(page.width() / 2, i), qRgb(255, 255, 255));
            QCOMPARE(page.pixel(page.width() / 2, page.height() - 1 - i), qRgb(255, 255, 255));
        }
    }

    void lettersStandWhereTheyStandOnTheTile_data() {
        QTest::addColumn<char>("attribute");
        QTest::newRow("normal") << '\0';
        QTest::newRow("inverse") << '\1';
    }
    void lettersStandWhereTheyStandOnTheTile() {
        QFETCH(const char, attribute);
        ShownLcd shown;
        ReferenceScreen screen;
        std::mt19937 random(5);
        for (int i = 0; i < 320; ++i)
            screen.text += static_cast<char>(random() % 2 == 0 ? ' ' : '!' + random() % 94);
        screen.attr.assign(320, attribute);
        shown.set(screen);
        shown.lcd.redraw(false);
        QVERIFY(shown.shows());
        const QImage tile = shown.picture();
        shown.lcd.capture({path(), 0, 0, false, 0});
        const QImage page = rendered(path());
        const QRgb ground = attribute == '\0' ? qRgb(224, 224, 224) : qRgb(0, 0, 255);
        for (int cell = 0; cell < 320; ++cell) {
            // Wide letters reach beyond their cells, none beyond the middle of the next one.
            const QRect middle(2 + static_cast<int>(cell % 40 * 11.9) + 4, 4 + cell / 40 * 59 / 2,
                               5, 26);
            const auto isInked = [&middle, ground](const QImage& image) {
                for (int y = middle.top(); y <= middle.bottom(); ++y)
                    for (int x = middle.left(); x <= middle.right(); ++x)
                        if (image.pixel(x, y) != ground)
                            return true;
                return false;
            };
            const char letter = screen.text[static_cast<std::size_t>(cell)];
            QVERIFY2(isInked(tile) == (letter != ' '), qPrintable(QString(QLatin1Char(letter))));
            QVERIFY2(isInked(page) == (letter != ' '), qPrintable(QString(QLatin1Char(letter))));
        }
    }

    void theCursorIsThereWhenWanted_data() {
        QTest::addColumn<bool>("wanted");
        QTest::addColumn<bool>("phase");
        QTest::newRow("wanted") << true << true;
        QTest::newRow("wanted, whatever the phase") << true << false;
        QTest::newRow("not wanted") << false << true;
    }
    void theCursorIsThereWhenWanted() {
        QFETCH(const bool, wanted);
        QFETCH(const bool, phase);
        ShownLcd shown;
        shown.lcd.clearDisplay();
        shown.reference.text.assign(320, ' ');
        QVERIFY(shown.shows());
        shown.lcd.setCursorWait(LCDTextCursor::Block, 20, 4);
        if (!phase)
            shown.lcd.blinkCursor();
        shown.lcd.capture({path(), 5, 2.5, wanted, 0});
        const QImage page = rendered(path());
        // 480 x 240: the cell from (228.1, 90.5) to (240, 120), 2 pixels of inset included.
        QCOMPARE(page.pixel(235, 105), wanted ? qRgb(128, 128, 128) : qRgb(224, 224, 224));
        QCOMPARE(page.pixel(225, 105), qRgb(224, 224, 224));
        QCOMPARE(page.pixel(245, 105), qRgb(224, 224, 224));
    }

    void graphicsAreSavedWithoutLoss() {
        ShownLcd shown;
        QVERIFY(shown.shows());
        std::string bits(1920, '\0');
        std::mt19937 random(4);
        for (char& byte : bits)
            byte = static_cast<char>(random());
        shown.lcd.setFullGraphics(bits.data());
        shown.lcd.setCursorWait(LCDTextCursor::Block, 1, 1);
        shown.lcd.setTextMode(false);
        shown.lcd.capture({path(), 10, 2560.0 / 960, true, 0});
        const QImage page = rendered(path());
        QCOMPARE(page.size(), QSize(960, 256));
        const GraphImage7100 picture(240, 64, bits.data());
        for (int y = 0; y < 64; ++y) {
            for (int x = 0; x < 240; ++x) {
                const QRgb expected =
                    picture.pixelIndex(x, y) == 1 ? qRgb(0, 0, 255) : qRgb(224, 224, 224);
                QCOMPARE(page.pixel(x * 4 + 2, y * 4 + 2), expected);
            }
        }
    }

    void anOlderFileIsReplaced() {
        QFile old(path());
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write("older");
        old.close();
        ShownLcd shown;
        QVERIFY(shown.shows());
        shown.lcd.capture({path(), 0, 0, false, 0});
        QVERIFY(!pageSize(path()).isEmpty());
        QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files).size(), 1);
    }

    void whatCannotBeWrittenIsNot_data() {
        QTest::addColumn<QString>("file");
        QTest::newRow("no such directory") << QStringLiteral("none/screen.pdf");
        QTest::newRow("a directory") << QStringLiteral(".");
        QTest::newRow("a file for a directory") << QStringLiteral("older.pdf/screen.pdf");
    }
    void whatCannotBeWrittenIsNot() {
        QFETCH(const QString, file);
        QFile old(m_dir->filePath(QStringLiteral("older.pdf")));
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.close();
        LCD7100 lcd;
        lcd.capture({m_dir->filePath(file), 0, 0, false, 0});
        QCOMPARE(QDir(m_dir->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList{QStringLiteral("older.pdf")});
        QVERIFY(!screenpdf::write({m_dir->filePath(file), 0, 0, false, 0}, QSize(10, 10),
                                  [](QPainter&, const QSize&) {}));
    }

    void aFullDiskLeavesWhatWasThere_data() {
        QTest::addColumn<int>("limit");
        for (const int limit : {0, 1, 100, 1000})
            QTest::addRow("%d bytes", limit) << limit;
    }
    void aFullDiskLeavesWhatWasThere() {
        QFETCH(const int, limit);
        QFile old(path());
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write("older");
        old.close();
        ShownLcd shown;
        QVERIFY(shown.shows());

        const auto handler = std::signal(SIGXFSZ, SIG_IGN);
        rlimit before{};
        getrlimit(RLIMIT_FSIZE, &before);
        rlimit full = before;
        full.rlim_cur = static_cast<rlim_t>(limit);
        setrlimit(RLIMIT_FSIZE, &full);
        const bool written = screenpdf::write(
            {path(), 0, 0, false, 0}, QSize(480, 240), [](QPainter& painter, const QSize& size) {
                painter.drawText(QRect(QPoint(), size), QStringLiteral("text"));
            });
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, handler);

        QVERIFY(!written);
        QVERIFY(old.open(QIODevice::ReadOnly));
        QCOMPARE(old.readAll(), QByteArray("older"));
        QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files).size(), 1);
    }

    void absurdRequestsAreSafe_data() {
        QTest::addColumn<double>("side");
        QTest::addColumn<int>("border");
        QTest::newRow("huge") << 1e300 << INT_MAX;
        QTest::newRow("tiny") << 1e-300 << INT_MIN;
        QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << 0;
    }
    void absurdRequestsAreSafe() {
        QFETCH(const double, side);
        QFETCH(const int, border);
        ShownLcd shown;
        shown.lcd.setCursorWait(LCDTextCursor::Block, INT_MAX, INT_MIN);
        QVERIFY(shown.shows());
        shown.lcd.capture({path(), side, side, true, border});
        QVERIFY(!pageSize(path()).isEmpty());
    }

    void theMenuAsksForIt() {
        LCD7100 lcd;
        QSignalSpy asked(&lcd, &LCD7100::showScreenCapture);
        const auto* menu = lcd.findChild<QMenu*>();
        QCOMPARE(menu->actions().at(2)->text(), QStringLiteral("Capture Control"));
        menu->actions().at(2)->trigger();
        QCOMPARE(asked.size(), 1);
    }

private:
    QString path() const { return m_dir->filePath(QStringLiteral("screen.pdf")); }

    std::unique_ptr<QTemporaryDir> m_dir;
};

int main(int argc, char** argv) {
    return runTest<TestScreenPdf>(argc, argv);
}

#include "test_screenpdf.moc"
