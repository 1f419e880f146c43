#include "CanvasPool.h"
#include "ReferencePainter.h"
#include "ScreenRenderer.h"
#include "TestEnvironment.h"

#include <QPainter>

#include <memory>
#include <random>
#include <set>
#include <thread>

namespace {

const std::atomic<bool> never = false;
const QString arial = QStringLiteral("Arial");
const QString mono = QStringLiteral("DejaVu Sans Mono");

TextScreen screenOf(const ReferenceScreen& reference, const QSize& size) {
    TextScreen screen;
    screen.text = QVector<char>(reference.text.begin(), reference.text.end());
    screen.attr = QVector<char>(reference.attr.begin(), reference.attr.end());
    screen.columns = reference.columns;
    screen.rows = reference.rows;
    screen.font = QFont(reference.family);
    screen.colors = ColorTables(reference.textColor, reference.background, reference.highlight);
    screen.fitFont(size);
    return screen;
}

QImage rendered(ScreenRenderer& renderer, const ReferenceScreen& reference, const QSize& size) {
    return renderer.render(screenOf(reference, size), size, never).image;
}

std::shared_ptr<CanvasPool> poolOf(const ReferenceScreen& reference, const QSize& size) {
    return CanvasPool::shared(CellAtlas::shared(screenOf(reference, size).look(size))->look());
}

/// What a painter makes of a screen, cell by cell.
QImage painted(const TextScreen& screen, const QSize& size) {
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    screen.paintText(painter, size, never);
    return image;
}

QColor randomColor(std::mt19937& random) {
    return QColor::fromRgb(0xFF000000U | (random() & 0xFFFFFFU));
}

/// Changes up to `most` cells, a third of them into blanks or lines.
void change(ReferenceScreen& screen, std::mt19937& random, unsigned most) {
    static const std::string lines(" \0\xB3\xC4\xC5\xBA\xCD\xCE\xDB\xDC", 10);
    for (auto left = 1 + random() % most; left > 0; --left) {
        const std::size_t cell = random() % screen.text.size();
        screen.text[cell] =
            random() % 3 == 0 ? lines[random() % lines.size()] : static_cast<char>(random() & 0xFF);
        if (random() % 3 == 0)
            screen.attr[cell] = static_cast<char>(random() % 4);
    }
}

/// Pixels that differ though they are said not to.
int missed(const QImage& before, const QImage& after, const QRegion& changed) {
    int count = 0;
    for (int y = 0; y < after.height(); ++y) {
        for (int x = 0; x < after.width(); ++x)
            count += before.pixel(x, y) != after.pixel(x, y) && !changed.contains(QPoint(x, y));
    }
    return count;
}

ReferenceScreen blankScreen() {
    ReferenceScreen screen;
    screen.text.assign(320, ' ');
    screen.attr.assign(320, '\0');
    return screen;
}

} // namespace

/// That what is put together from cells painted before is, pixel by pixel, what painting gives.
class TestScreenRenderer : public QObject {
    Q_OBJECT

private slots:
    void everyCodeAtManySizes_data() {
        QTest::addColumn<QString>("family");
        QTest::addColumn<QSize>("size");
        // On displays of 1, 1.25 and 2 pixels to the unit, and odd ones.
        for (const QString& family : {arial, mono, QStringLiteral("Liberation Serif")}) {
            for (const QSize size :
                 {QSize(240, 120), QSize(300, 150), QSize(480, 240),  QSize(241, 121),
                  QSize(302, 152), QSize(482, 242), QSize(250, 125),  QSize(313, 157),
                  QSize(500, 250), QSize(352, 177), QSize(555, 999),  QSize(640, 200),
                  QSize(960, 480), QSize(961, 479), QSize(1920, 960), QSize(1919, 959),
                  QSize(160, 32),  QSize(159, 31),  QSize(39, 7),     QSize(1, 1),
                  QSize(2000, 40)})
                QTest::addRow("%s %d x %d", qPrintable(family), size.width(), size.height())
                    << family << size;
        }
    }
    void everyCodeAtManySizes() {
        QFETCH(const QString, family);
        QFETCH(const QSize, size);
        ScreenRenderer renderer;
        ReferenceScreen screen;
        screen.family = family;
        for (int attribute = 0; attribute < 4; ++attribute) {
            // All codes, and those that reach beyond their cells beside each other once more.
            screen.text.clear();
            for (int i = 0; i < 320; ++i)
                screen.text += static_cast<char>(i < 256 ? i : 160 + i % 64);
            screen.attr.assign(320, static_cast<char>(attribute));
            QCOMPARE(rendered(renderer, screen, size), ReferencePainter::paint(screen, size));
        }
    }

    void randomScreensOneAfterTheOther_data() {
        QTest::addColumn<unsigned>("seed");
        for (unsigned seed = 1; seed <= 12; ++seed)
            QTest::addRow("%u", seed) << seed;
    }
    void randomScreensOneAfterTheOther() {
        QFETCH(const unsigned, seed);
        std::mt19937 random(seed);
        const QStringList families = {arial, mono, QStringLiteral("Liberation Serif"),
                                      QStringLiteral("Liberation Mono"),
                                      QStringLiteral("DejaVu Sans")};
        ScreenRenderer renderer;
        for (int i = 0; i < 8; ++i) {
            const QSize size(static_cast<int>(160 + random() % 500),
                             static_cast<int>(32 + random() % 300));
            ReferenceScreen screen =
                ReferencePainter::randomScreen(static_cast<unsigned>(random()));
            screen.family = families[static_cast<qsizetype>(random() % 5)];
            screen.textColor = randomColor(random);
            screen.background = randomColor(random);
            screen.highlight = randomColor(random);
            QImage before;
            for (int step = 0; step < 5; ++step) {
                const auto [image, changed] = renderer.render(screenOf(screen, size), size, never);
                QCOMPARE(image, ReferencePainter::paint(screen, size));
                QCOMPARE(image.format(), QImage::Format_RGB32);
                if (step > 0)
                    QCOMPARE(missed(before, image, changed), 0);
                before = image;
                change(screen, random, step % 2 == 0 ? 3 : 100);
            }
        }
    }

    void slantedAndHeavyLettersReachIntoTheirNeighbours_data() {
        QTest::addColumn<QString>("family");
        QTest::addColumn<QSize>("size");
        for (const QString& family : {mono, QStringLiteral("Liberation Mono")}) {
            for (const QSize size : {QSize(480, 240), QSize(250, 125), QSize(961, 479)})
                QTest::addRow("%s %d", qPrintable(family), size.width()) << family << size;
        }
    }
    void slantedAndHeavyLettersReachIntoTheirNeighbours() {
        QFETCH(const QString, family);
        QFETCH(const QSize, size);
        std::mt19937 random(7);
        ReferenceScreen cells = ReferencePainter::randomScreen(70);
        for (char& code : cells.text)
            code = "AWj_\xD1 m&"[random() % 8];
        ScreenRenderer renderer;
        TextScreen screen = screenOf(cells, size);
        screen.font.setItalic(true);
        screen.font.setBold(true);
        screen.sizing = {};
        screen.fitFont(size);
        for (int step = 0; step < 10; ++step) {
            QCOMPARE(renderer.render(screen, size, never).image, painted(screen, size));
            const auto cell = static_cast<qsizetype>(random() % 320);
            screen.text[cell] = "AWj_\xD1 m&"[random() % 8];
        }
    }

    void otherGrids_data() {
        QTest::addColumn<int>("columns");
        QTest::addColumn<int>("rows");
        QTest::newRow("80 x 25") << 80 << 25;
        QTest::newRow("1 x 1") << 1 << 1;
        QTest::newRow("1 x 20") << 1 << 20;
        QTest::newRow("20 x 1") << 20 << 1;
    }
    void otherGrids() {
        QFETCH(const int, columns);
        QFETCH(const int, rows);
        std::mt19937 random(3);
        ReferenceScreen screen = ReferencePainter::randomScreen(5, columns * rows);
        screen.columns = columns;
        screen.rows = rows;
        ScreenRenderer renderer;
        for (int step = 0; step < 4; ++step) {
            QCOMPARE(rendered(renderer, screen, QSize(900, 501)),
                     ReferencePainter::paint(screen, QSize(900, 501)));
            change(screen, random, 4);
        }
    }

    void oneRendererForEverything() {
        ScreenRenderer renderer;
        ReferenceScreen screen = ReferencePainter::randomScreen(9);
        const auto isRight = [&](const QSize& size) {
            return rendered(renderer, screen, size) == ReferencePainter::paint(screen, size);
        };
        QVERIFY(isRight({480, 240}));
        screen.family = mono;
        QVERIFY(isRight({480, 240}));
        screen.highlight = Qt::green;
        QVERIFY(isRight({480, 240}));
        QVERIFY(isRight({240, 480}));
        // Too small for cells to be kept, and back.
        QVERIFY(isRight({100, 20}));
        QVERIFY(isRight({240, 480}));
    }

    void missingCellsCountAs0() {
        const QSize size(480, 240);
        ScreenRenderer renderer;
        for (const int length : {0, 1, 39, 40, 319, 320, 321}) {
            ReferenceScreen screen;
            screen.text.assign(static_cast<std::size_t>(length), 'x');
            screen.attr.assign(static_cast<std::size_t>(length / 2), '\2');
            QCOMPARE(rendered(renderer, screen, size), ReferencePainter::paint(screen, size));
        }
    }

    void colorsFinerThanPixels() {
        const QSize size(480, 240);
        ScreenRenderer renderer;
        ReferenceScreen screen = ReferencePainter::randomScreen(10);
        screen.textColor = QColor::fromHslF(0.123F, 0.456F, 0.321F);
        screen.background = QColor::fromRgba64(0x12F0, 0xABFF, 0x7F81);
        screen.highlight = QColor::fromHsvF(0.9F, 0.77F, 0.55F);
        QCOMPARE(rendered(renderer, screen, size), ReferencePainter::paint(screen, size));
    }

    void coloursToBeSeenThroughAreAsPainted() {
        const QSize size(480, 240);
        ScreenRenderer renderer;
        TextScreen screen = screenOf(blankScreen(), size);
        screen.colors = ColorTables(QColor(255, 0, 0, 100), Qt::white, Qt::blue);
        screen.text.fill('x');
        screen.attr[3] = 2;
        QCOMPARE(renderer.render(screen, size, never).image, painted(screen, size));
    }

    void whatChangedIsOneCell() {
        const QSize size(480, 240);
        ScreenRenderer renderer;
        ReferenceScreen screen = blankScreen();
        QCOMPARE(renderer.render(screenOf(screen, size), size, never).changed,
                 QRegion(0, 0, 480, 240));
        screen.text[40 * 2 + 5] = 'x';
        QCOMPARE(renderer.render(screenOf(screen, size), size, never).changed,
                 QRegion(60, 60, 12, 30));
        screen.attr[40 * 2 + 5] = 3;
        QCOMPARE(renderer.render(screenOf(screen, size), size, never).changed,
                 QRegion(60, 60, 12, 30));
        screen.text[40 * 2 + 7] = 'y';
        screen.text[40 * 2 + 5] = 'z';
        screen.text[40 * 4 + 39] = 'z';
        QCOMPARE(renderer.render(screenOf(screen, size), size, never).changed,
                 QRegion(60, 60, 36, 30) + QRegion(468, 120, 12, 30));
    }

    void anUnchangedScreenIsTheSameImage() {
        const QSize size(480, 240);
        ScreenRenderer renderer;
        const ReferenceScreen screen = ReferencePainter::randomScreen(20);
        const auto first = renderer.render(screenOf(screen, size), size, never);
        const auto second = renderer.render(screenOf(screen, size), size, never);
        QCOMPARE(second.image.cacheKey(), first.image.cacheKey());
        QVERIFY(second.changed.isEmpty());
        // The same pixels of other codes and attributes: nothing to repaint either.
        ReferenceScreen blank = blankScreen();
        renderer.render(screenOf(blank, size), size, never);
        blank.attr.assign(320, '\4');
        QVERIFY(renderer.render(screenOf(blank, size), size, never).changed.isEmpty());
    }

    void imagesAreNeverWrittenToAgain() {
        const QSize size(241, 121);
        std::mt19937 random(4);
        ScreenRenderer renderer;
        ReferenceScreen screen = ReferencePainter::randomScreen(21);
        QVector<QImage> images;
        QVector<QImage> expected;
        for (int i = 0; i < 20; ++i) {
            images << rendered(renderer, screen, size);
            expected << ReferencePainter::paint(screen, size);
            change(screen, random, 20);
            // Some are dropped while others are still looked at.
            if (i % 3 == 2)
                images[i - 1] = expected[i - 1];
        }
        QCOMPARE(images, expected);
    }

    void writingToAnImageIsWritingToACopy() {
        const QSize size(480, 240);
        ScreenRenderer renderer;
        ReferenceScreen screen = ReferencePainter::randomScreen(22);
        // The last image, which the renderer has as well, and one that nobody else has any more.
        QImage before;
        for (int i = 0; i < 12; ++i) {
            QImage image = rendered(renderer, screen, size);
            before.fill(Qt::yellow);
            before = image;
            image.fill(Qt::green);
            // Letters seen before: those that are new have all painted anew.
            screen.text[5] = "abc"[i % 3];
        }
        before = {};
        QCOMPARE(rendered(renderer, screen, size), ReferencePainter::paint(screen, size));
    }

    void twoImagesTakeTurns() {
        const QSize size(480, 240);
        ScreenRenderer renderer;
        ReferenceScreen screen = ReferencePainter::randomScreen(23);
        std::set<const uchar*> pixels;
        QImage shown;
        for (int i = 0; i < 50; ++i) {
            screen.text[100] = static_cast<char>(i);
            shown = rendered(renderer, screen, size);
            pixels.insert(shown.constBits());
        }
        QCOMPARE(pixels.size(), std::size_t{2});
    }

    void imagesOutliveTheirRenderer() {
        const QSize size(480, 240);
        const ReferenceScreen screen = ReferencePainter::randomScreen(24);
        auto renderer = std::make_unique<ScreenRenderer>();
        const QImage image = rendered(*renderer, screen, size);
        renderer.reset();
        QCOMPARE(image, ReferencePainter::paint(screen, size));
    }

    void aRenderingCutShortIsNone() {
        const std::atomic<bool> restart = true;
        ScreenRenderer renderer;
        for (const QSize size : {QSize(480, 240), QSize(39, 7)}) {
            ReferenceScreen screen = ReferencePainter::randomScreen(25);
            QVERIFY(renderer.render(screenOf(screen, size), size, restart).image.isNull());
            QCOMPARE(rendered(renderer, screen, size), ReferencePainter::paint(screen, size));
            screen.text[7] = 'X';
            QVERIFY(renderer.render(screenOf(screen, size), size, restart).image.isNull());
            QCOMPARE(rendered(renderer, screen, size), ReferencePainter::paint(screen, size));
        }
    }

    void renderingsCutShortAnywhereLeaveNothingBehind() {
        std::atomic<bool> restart = false;
        std::atomic<bool> isDone = false;
        std::thread interrupter([&] {
            while (!isDone) {
                restart = !restart;
                std::this_thread::yield();
            }
        });
        std::mt19937 random(6);
        ScreenRenderer renderer;
        ReferenceScreen screen = ReferencePainter::randomScreen(26);
        screen.family = mono;
        bool allRight = true;
        for (int i = 0; i < 60; ++i) {
            const QSize size = i / 20 % 2 == 0 ? QSize(250, 125) : QSize(333, 177);
            const QImage image = renderer.render(screenOf(screen, size), size, restart).image;
            allRight =
                allRight && (image.isNull() || image == ReferencePainter::paint(screen, size));
            change(screen, random, 40);
        }
        isDone = true;
        interrupter.join();
        QVERIFY(allRight);
        QCOMPARE(rendered(renderer, screen, QSize(333, 177)),
                 ReferencePainter::paint(screen, QSize(333, 177)));
    }

    /// With many renderers most are handed what was another's image.
    void manyRenderersShareSpares() {
        const QSize size(241, 121);
        constexpr std::size_t count = 40;
        std::mt19937 random(6);
        std::vector<ScreenRenderer> renderers(count);
        std::vector<ReferenceScreen> screens;
        for (unsigned i = 0; i < count; ++i)
            screens.push_back(ReferencePainter::randomScreen(50 + i));
        std::vector<QImage> shown(count);
        std::vector<QImage> expected(count);
        for (int round = 0; round < 4; ++round) {
            for (std::size_t i = 0; i < count; ++i) {
                const auto rendering = renderers[i].render(screenOf(screens[i], size), size, never);
                if (!shown[i].isNull())
                    QCOMPARE(missed(shown[i], rendering.image, rendering.changed), 0);
                shown[i] = rendering.image;
                expected[i] = ReferencePainter::paint(screens[i], size);
                change(screens[i], random, 20);
            }
            QVERIFY(shown == expected);
        }
        const auto pool = poolOf(screens[0], size);
        QVERIFY(pool->spares() > 0);
        QVERIFY(pool->spares() <= CanvasPool::maxSpares);
    }

    void renderersTakeTheirSparesWithThem() {
        const QSize size(242, 121);
        ReferenceScreen screen = ReferencePainter::randomScreen(60);
        ScreenRenderer stays;
        QImage shown = rendered(stays, screen, size);
        for (int i = 0; i < 40; ++i) {
            ScreenRenderer goes;
            QImage seen = rendered(goes, screen, size);
            screen.text[3] = static_cast<char>('a' + i % 26);
            seen = rendered(goes, screen, size);
        }
        QCOMPARE(poolOf(screen, size)->spares(), std::size_t{0});
        shown = rendered(stays, screen, size);
        shown = {};
        screen.text[3] = '!';
        shown = rendered(stays, screen, size);
        QCOMPARE(poolOf(screen, size)->spares(), std::size_t{1});
        // And when they are to look differently.
        const auto before = poolOf(screen, size);
        rendered(stays, screen, size + QSize(1, 0));
        shown = {};
        QCOMPARE(before->spares(), std::size_t{0});
    }

    /// Meant for the thread sanitizer above all: cells of one look are shared.
    void renderersInManyThreadsAgree() {
        const QSize size(333, 177);
        std::vector<ReferenceScreen> screens;
        std::vector<QImage> expected;
        for (unsigned i = 0; i < 12; ++i) {
            screens.push_back(ReferencePainter::randomScreen(30 + i % 8));
            expected.push_back(ReferencePainter::paint(screens.back(), size));
        }
        std::atomic<int> wrong = 0;
        std::vector<std::thread> threads;
        for (std::size_t t = 0; t < 4; ++t) {
            threads.emplace_back([&, t] {
                ScreenRenderer renderer;
                for (std::size_t i = 0; i < screens.size(); ++i) {
                    const std::size_t which = (i * (t + 1)) % screens.size();
                    wrong += rendered(renderer, screens[which], size) != expected[which];
                }
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        QCOMPARE(wrong.load(), 0);
    }
};

int main(int argc, char** argv) {
    return runTest<TestScreenRenderer>(argc, argv);
}

#include "test_screenrenderer.moc"
