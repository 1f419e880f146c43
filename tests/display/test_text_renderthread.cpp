#include "ReferencePainter.h"
#include "TestEnvironment.h"
#include "text_renderthread.h"

#include <QPainter>

#include <memory>
#include <thread>

namespace {

constexpr int patienceMs = 60'000;
const QString sans = QStringLiteral("Liberation Sans");
const QString mono = QStringLiteral("Liberation Mono");

QVector<char> cells(const std::string& bytes) {
    return {bytes.begin(), bytes.end()};
}

void request(text_renderthread& renderer, const QSize& size, const ReferenceScreen& screen) {
    renderer.updateTextAndAttr(size, cells(screen.text), cells(screen.attr), false);
}

ReferenceScreen blocks() {
    ReferenceScreen screen;
    screen.text.assign(320, static_cast<char>(219));
    return screen;
}

bool isOneColour(const QImage& image) {
    QImage same(image.size(), image.format());
    same.fill(image.pixel(0, 0));
    return image == same;
}

/// Collects what a renderer delivers, by a queued connection as the screen widget has it.
class Deliveries : public QObject {
public:
    explicit Deliveries(text_renderthread& renderer) {
        connect(
            &renderer, &text_renderthread::renderedImage, this,
            [this](const QImage& image) { images << image; }, Qt::QueuedConnection);
    }

    QVector<QImage> images;
};

} // namespace

class TestTextRenderThread : public QObject {
    Q_OBJECT

private slots:
    void nothingRunsBeforeTheFirstRequest() {
        text_renderthread renderer;
        renderer.setFont(QFont(sans));
        renderer.setColors(Qt::black, Qt::white, Qt::green);
        renderer.setGrid(20, 4);
        QVERIFY(!renderer.isRunning());
    }

    void screensAreAsTheReferenceHasThem_data() {
        QTest::addColumn<QSize>("size");
        for (const QSize size :
             {QSize(240, 120), QSize(241, 121), QSize(480, 240), QSize(777, 333), QSize(1, 1)})
            QTest::addRow("%d x %d", size.width(), size.height()) << size;
    }
    void screensAreAsTheReferenceHasThem() {
        QFETCH(const QSize, size);
        text_renderthread renderer;
        const Deliveries got(renderer);
        ReferenceScreen screen = ReferencePainter::randomScreen(11);
        screen.family = sans;
        screen.textColor = QColor(10, 20, 30);
        screen.background = QColor(200, 250, 210);
        screen.highlight = QColor(250, 100, 50);
        renderer.setFont(QFont(sans));
        renderer.setColors(screen.textColor, screen.background, screen.highlight);
        request(renderer, size, screen);
        QTRY_COMPARE_WITH_TIMEOUT(got.images.size(), 1, patienceMs);
        QCOMPARE(got.images[0].format(), QImage::Format_RGB32);
        QCOMPARE(got.images[0], ReferencePainter::paint(screen, size));
    }

    void forceChangesNothing() {
        text_renderthread renderer;
        const Deliveries got(renderer);
        const ReferenceScreen screen = ReferencePainter::randomScreen(12);
        renderer.updateTextAndAttr(QSize(240, 120), cells(screen.text), cells(screen.attr), false);
        QTRY_COMPARE_WITH_TIMEOUT(got.images.size(), 1, patienceMs);
        renderer.updateTextAndAttr(QSize(240, 120), cells(screen.text), cells(screen.attr), true);
        QTRY_COMPARE_WITH_TIMEOUT(got.images.size(), 2, patienceMs);
        QCOMPARE(got.images[1], got.images[0]);
    }

    void settersRenderTheLastRequestAnew() {
        text_renderthread renderer;
        renderer.setFont(QFont(sans));
        const Deliveries got(renderer);
        ReferenceScreen screen = ReferencePainter::randomScreen(13);
        screen.family = sans;
        const QSize size(480, 240);
        request(renderer, size, screen);
        QTRY_COMPARE_WITH_TIMEOUT(got.images.size(), 1, patienceMs);

        renderer.setColors(Qt::black, Qt::yellow, Qt::green);
        screen.textColor = Qt::black;
        screen.background = Qt::yellow;
        screen.highlight = Qt::green;
        QTRY_COMPARE_WITH_TIMEOUT(got.images.size(), 2, patienceMs);
        QCOMPARE(got.images[1], ReferencePainter::paint(screen, size));

        renderer.setGrid(20, 16);
        screen.columns = 20;
        screen.rows = 16;
        QTRY_COMPARE_WITH_TIMEOUT(got.images.size(), 3, patienceMs);
        QCOMPARE(got.images[2], ReferencePainter::paint(screen, size));
    }

    void aNewFontKeepsTheLettersSizeUntilTheScreensSizeChanges() {
        text_renderthread renderer;
        renderer.setFont(QFont(sans));
        const Deliveries got(renderer);
        ReferenceScreen screen = ReferencePainter::randomScreen(14);
        const QSize size(480, 240);
        const QSize other(960, 480);
        const int sansSize = ReferencePainter::pixelSize(sans, size);
        QVERIFY(sansSize != ReferencePainter::pixelSize(mono, size));

        request(renderer, size, screen);
        QTRY_COMPARE_WITH_TIMEOUT(got.images.size(), 1, patienceMs);
        renderer.setFont(QFont(mono, 72));
        QTRY_COMPARE_WITH_TIMEOUT(got.images.size(), 2, patienceMs);
        screen.family = mono;
        QCOMPARE(got.images[1], ReferencePainter::paint(screen, size, sansSize));

        request(renderer, size, screen);
        QTRY_COMPARE_WITH_TIMEOUT(got.images.size(), 3, patienceMs);
        QCOMPARE(got.images[2], got.images[1]);

        request(renderer, other, screen);
        QTRY_COMPARE_WITH_TIMEOUT(got.images.size(), 4, patienceMs);
        QCOMPARE(got.images[3], ReferencePainter::paint(screen, other));
        request(renderer, size, screen);
        QTRY_COMPARE_WITH_TIMEOUT(got.images.size(), 5, patienceMs);
        QCOMPARE(got.images[4], ReferencePainter::paint(screen, size));
    }

    void aFontSetBeforeTheFirstPaintingIsSizedByIt() {
        text_renderthread renderer;
        const Deliveries got(renderer);
        renderer.setFont(QFont(sans));
        renderer.setFont(QFont(mono));
        ReferenceScreen screen = ReferencePainter::randomScreen(15);
        screen.family = mono;
        request(renderer, QSize(480, 240), screen);
        QTRY_COMPARE_WITH_TIMEOUT(got.images.size(), 1, patienceMs);
        QCOMPARE(got.images[0], ReferencePainter::paint(screen, QSize(480, 240)));
    }

    void drawingNowTakesTheLastCellsAndTheFontAndColoursOfNow() {
        text_renderthread renderer;
        renderer.setFont(QFont(sans));
        const Deliveries got(renderer);
        ReferenceScreen screen = ReferencePainter::randomScreen(16);
        request(renderer, QSize(240, 120), screen);
        QTRY_COMPARE_WITH_TIMEOUT(got.images.size(), 1, patienceMs);

        renderer.setFont(QFont(mono));
        renderer.setColors(Qt::black, Qt::white, Qt::cyan);
        screen.family = mono;
        screen.textColor = Qt::black;
        screen.background = Qt::white;
        screen.highlight = Qt::cyan;
        QImage now(640, 200, QImage::Format_RGB32);
        QPainter painter(&now);
        renderer.drawNow(painter, now.size());
        painter.end();
        QCOMPARE(now, ReferencePainter::paint(screen, now.size()));
    }

    void drawingNowBeforeAnythingElseIsBlank() {
        text_renderthread renderer;
        QImage now(640, 200, QImage::Format_RGB32);
        now.fill(Qt::green);
        QPainter painter(&now);
        renderer.drawNow(painter, QSize(0, 0));
        renderer.drawNow(painter, QSize(-1, -1));
        QCOMPARE(now.pixel(0, 0), qRgb(0, 255, 0));
        renderer.drawNow(painter, now.size());
        painter.end();
        QVERIFY(isOneColour(now));
        QCOMPARE(now.pixel(0, 0), qRgb(224, 224, 224));
    }

    void emptySizesDeliverNothing_data() {
        QTest::addColumn<QSize>("size");
        QTest::newRow("0 x 0") << QSize(0, 0);
        QTest::newRow("invalid") << QSize(-1, -1);
        QTest::newRow("no width") << QSize(0, 100);
        QTest::newRow("no height") << QSize(100, 0);
        QTest::newRow("negative") << QSize(-100, 100);
    }
    void emptySizesDeliverNothing() {
        QFETCH(const QSize, size);
        text_renderthread renderer;
        const Deliveries got(renderer);
        const ReferenceScreen screen = ReferencePainter::randomScreen(17);
        request(renderer, size, screen);
        request(renderer, QSize(240, 120), screen);
        QTRY_VERIFY_WITH_TIMEOUT(!got.images.isEmpty(), patienceMs);
        QCOMPARE(got.images[0].size(), QSize(240, 120));
    }

    void absurdSizesAreMadeBearable_data() {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QSize>("rendered");
        QTest::newRow("longest side") << QSize(16384, 16) << QSize(16384, 16);
        QTest::newRow("too wide") << QSize(32768, 64) << QSize(16384, 32);
        QTest::newRow("too high") << QSize(64, 32768) << QSize(32, 16384);
        QTest::newRow("a line") << QSize(INT_MAX, 1) << QSize(16384, 1);
        QTest::newRow("too many pixels") << QSize(11586, 11586) << QSize(5792, 5792);
        QTest::newRow("everything") << QSize(INT_MAX, INT_MAX) << QSize(5792, 5792);
    }
    void absurdSizesAreMadeBearable() {
        QFETCH(const QSize, size);
        text_renderthread renderer;
        const Deliveries got(renderer);
        request(renderer, size, blocks());
        QTRY_COMPARE_WITH_TIMEOUT(got.images.size(), 1, patienceMs);
        QTEST(got.images[0].size(), "rendered");
        QVERIFY(isOneColour(got.images[0]));
    }

    void gridsAreAtLeastOneCell_data() {
        QTest::addColumn<int>("columns");
        QTest::addColumn<int>("rows");
        QTest::newRow("0 x 0") << 0 << 0;
        QTest::newRow("negative") << -40 << -8;
    }
    void gridsAreAtLeastOneCell() {
        QFETCH(const int, columns);
        QFETCH(const int, rows);
        text_renderthread renderer(columns, rows);
        const Deliveries got(renderer);
        request(renderer, QSize(60, 30), blocks());
        QTRY_COMPARE_WITH_TIMEOUT(got.images.size(), 1, patienceMs);
        QVERIFY(isOneColour(got.images[0]));
        renderer.setGrid(columns, rows);
        QTRY_COMPARE_WITH_TIMEOUT(got.images.size(), 2, patienceMs);
        QVERIFY(isOneColour(got.images[1]));
    }

    void aBurstDeliversCompletePassesAndTheNewestLast() {
        text_renderthread renderer;
        renderer.setFont(QFont(sans));
        const Deliveries got(renderer);
        ReferenceScreen screen = ReferencePainter::randomScreen(18);
        screen.family = sans;
        for (int i = 0; i < 100; ++i)
            request(renderer, QSize(300 + i, 150), screen);
        QTRY_VERIFY_WITH_TIMEOUT(!got.images.isEmpty() && got.images.last().width() == 399,
                                 patienceMs);
        int width = 0;
        for (const QImage& image : got.images) {
            QVERIFY2(image.width() >= width, "an older screen came after a newer one");
            width = image.width();
            QCOMPARE(image, ReferencePainter::paint(screen, image.size()));
        }
    }

    void aPassCutShortDeliversNothing() {
        text_renderthread renderer;
        Deliveries got(renderer);
        // Screens that take a while, each asked for while the one before may still be painted, and
        // each in a colour of its own, so that no memory used before passes for painted.
        constexpr int requests = 60;
        for (int i = 1; i <= requests; ++i) {
            renderer.setColors(QColor::fromRgb(static_cast<QRgb>(i)), Qt::white, Qt::red);
            request(renderer, QSize(3000, 1500), blocks());
            QTest::qWait(i % 6);
            for (const QImage& image : got.images)
                QVERIFY2(isOneColour(image), "a screen was delivered that was not complete");
            if (i < requests)
                got.images.clear();
        }
        const QRgb newest = 0xFF000000U | static_cast<QRgb>(requests);
        QTRY_VERIFY_WITH_TIMEOUT(!got.images.isEmpty() && got.images.last().pixel(0, 0) == newest,
                                 patienceMs);
        QVERIFY(isOneColour(got.images.last()));
    }

    void theDifferenceOfTwoDeliveriesIsKnown() {
        text_renderthread renderer;
        renderer.setFont(QFont(sans));
        QImage last;
        int deliveries = 0;
        int missed = 0;
        bool isKnown = true;
        connect(&renderer, &text_renderthread::renderedImage, this, [&](const QImage& image) {
            const auto difference = renderer.difference(last.cacheKey(), image.cacheKey());
            isKnown = isKnown && (deliveries == 0 || difference.has_value());
            isKnown = isKnown && !renderer.difference(last.cacheKey(), 0).has_value();
            for (int y = 0; deliveries > 0 && difference && y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x)
                    missed += image.pixel(x, y) != last.pixel(x, y) &&
                              !difference->contains(QPoint(x, y));
            }
            last = image;
            ++deliveries;
        });
        // Some are delivered one by one, some are replaced before they are, some are cut short.
        ReferenceScreen screen = ReferencePainter::randomScreen(19);
        const QSize size(250, 125);
        request(renderer, size, screen);
        QTRY_COMPARE_WITH_TIMEOUT(deliveries, 1, patienceMs);
        for (unsigned i = 0; i < 300; ++i) {
            screen.text[(i * 37) % 320] = static_cast<char>(i);
            request(renderer, size, screen);
            if (i % 5 == 0)
                QCoreApplication::processEvents();
            else if (i % 7 == 0)
                QTest::qWait(1);
            else if (i % 3 == 0)
                std::this_thread::yield();
        }
        const QImage expected = ReferencePainter::paint(screen, size);
        QTRY_VERIFY_WITH_TIMEOUT(last == expected, patienceMs);
        QVERIFY(isKnown);
        QCOMPARE(missed, 0);
        QVERIFY(deliveries > 1);

        // Nothing new: the same image again, and no difference.
        const qint64 key = last.cacheKey();
        const int before = deliveries;
        request(renderer, size, screen);
        QTRY_VERIFY_WITH_TIMEOUT(deliveries > before, patienceMs);
        QCOMPARE(last.cacheKey(), key);
        QVERIFY(renderer.difference(key, key)->isEmpty());
    }

    void theThreadSleepsWhenAllIsDone() {
        text_renderthread renderer;
        const Deliveries got(renderer);
        request(renderer, QSize(240, 120), blocks());
        QTRY_COMPARE_WITH_TIMEOUT(got.images.size(), 1, patienceMs);
        // The rendering that the second request brings is the next one: none came between.
        request(renderer, QSize(241, 120), blocks());
        QTRY_COMPARE_WITH_TIMEOUT(got.images.size(), 2, patienceMs);
        QCOMPARE(got.images[1].width(), 241);
        QVERIFY(renderer.isRunning());
    }

    void theEndWaitsForTheThread_data() {
        QTest::addColumn<int>("pauseMs");
        QTest::newRow("at once") << 0;
        QTest::newRow("a little later") << 1;
        QTest::newRow("later") << 5;
    }
    void theEndWaitsForTheThread() {
        QFETCH(const int, pauseMs);
        for (int i = 0; i < 50; ++i) {
            // Qt ends the program when a thread's object goes before the thread does.
            auto renderer = std::make_unique<text_renderthread>();
            const Deliveries got(*renderer);
            request(*renderer, QSize(2000, 1000), blocks());
            QTest::qWait(pauseMs);
            renderer.reset();
            QCoreApplication::processEvents();
            for (const QImage& image : got.images)
                QVERIFY(isOneColour(image));
        }
    }

    void theEndWhileTheThreadSleeps() {
        auto renderer = std::make_unique<text_renderthread>();
        const Deliveries got(*renderer);
        request(*renderer, QSize(24, 12), blocks());
        QTRY_COMPARE_WITH_TIMEOUT(got.images.size(), 1, patienceMs);
        renderer.reset();
        QCOMPARE(got.images.size(), 1);
    }

    /// Meant for the thread sanitizer above all.
    void everythingMayChangeWhileTheThreadPaints() {
        text_renderthread renderer;
        const Deliveries got(renderer);
        ReferenceScreen screen;
        QImage now(240, 120, QImage::Format_RGB32);
        for (unsigned i = 0; i < 200; ++i) {
            screen = ReferencePainter::randomScreen(i);
            request(renderer, QSize(240 + static_cast<int>(i), 120), screen);
            renderer.setFont(QFont(i % 2 == 0 ? sans : mono));
            if (i % 3 == 0)
                renderer.setColors(QColor::fromRgb(i), Qt::white, Qt::red);
            QPainter painter(&now);
            renderer.drawNow(painter, now.size());
            if (i % 7 == 0)
                QCoreApplication::processEvents();
        }
        renderer.setColors(Qt::blue, Qt::white, Qt::red);
        renderer.setFont(QFont(mono));
        request(renderer, QSize(500, 200), screen);
        screen.background = Qt::white;
        screen.family = mono;
        const QImage expected = ReferencePainter::paint(screen, QSize(500, 200));
        QTRY_VERIFY_WITH_TIMEOUT(!got.images.isEmpty() && got.images.last() == expected,
                                 patienceMs);
    }
};

int main(int argc, char** argv) {
    return runTest<TestTextRenderThread>(argc, argv);
}

#include "test_text_renderthread.moc"
