#include "PaintWatch.h"
#include "ShownLcd.h"
#include "TestEnvironment.h"
#include "text_renderthread.h"

#include <QDir>
#include <QHBoxLayout>

#include <memory>

namespace {

/// The last pixel. It is repainted each time, which tells that all else has been painted too.
QRect marker(const QWidget& widget) {
    return {widget.rect().bottomRight(), QSize(1, 1)};
}

/// How many threads render.
int renderingThreads() {
    int count = 0;
    const QDir tasks(QStringLiteral("/proc/self/task"));
    for (const QString& task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile name(tasks.filePath(task + QStringLiteral("/comm")));
        count += name.open(QIODevice::ReadOnly) && name.readAll().startsWith("text_render") ? 1 : 0;
    }
    return count;
}

/// Counts the renderings that arrive, shown or not.
class Arrivals : public QObject {
public:
    Arrivals() { qApp->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool isArrival = event->type() == QEvent::MetaCall &&
                               qobject_cast<text_renderthread*>(watched) != nullptr;
        count += isArrival ? 1 : 0;
        return false;
    }

    int count = 0;
};

/// A screen of whole cells, 12 x 30 each, and what is painted of it.
class WatchedLcd {
public:
    WatchedLcd() : watch(shown.lcd) {
        // The first painting asks for a rendering, too.
        arrived = QTest::qWaitFor([this] { return arrivals.count > 0; }, patienceMs);
        shown.reference.text.assign(320, 'x');
        tell();
        // The last rendering asked for is the last to come, and the window has its place by now.
        arrived = shown.shows() && QTest::qWaitForWindowExposed(&shown.lcd, patienceMs);
        forgetPictures();
        painted();
    }

    /// Looking at a screen paints it, too.
    void forgetPictures() { watch.regions.clear(); }

    /// Has the reference screen rendered and waits for the rendering.
    void tell() {
        const int before = arrivals.count;
        shown.set(ReferenceScreen(shown.reference));
        shown.lcd.redraw(false);
        arrived = QTest::qWaitFor([&] { return arrivals.count > before; }, patienceMs);
    }

    /// The area painted since the last time, and the marker.
    QRegion painted() {
        shown.lcd.update(marker(shown.lcd));
        const auto isPainted = [this] {
            return !watch.regions.isEmpty() && watch.regions.last().contains(marker(shown.lcd));
        };
        if (!arrived || !QTest::qWaitFor(isPainted, patienceMs))
            return {};
        QRegion all;
        for (const QRegion& region : std::exchange(watch.regions, {}))
            all |= region;
        return all;
    }

    QRegion with(const QRegion& area) const { return area | marker(shown.lcd); }
    QRegion nothing() const { return with({}); }
    QRegion everything() const { return shown.lcd.rect(); }

    ShownLcd shown;
    Arrivals arrivals;
    PaintWatch watch;
    bool arrived = false;
};

std::string bitsOf(char byte) {
    return std::string(1920, byte);
}

} // namespace

/// What is painted, and what is left alone.
class TestLCD7100Repaints : public QObject {
    Q_OBJECT

private slots:
    /// What a rendering takes, the fonts above all, would be taken from the window's first picture.
    void nothingIsRenderedBeforeTheFirstPicture() {
        // Those of other tests end a little later than they are waited for.
        QTRY_COMPARE_WITH_TIMEOUT(renderingThreads(), 0, patienceMs);
        LCD7100 early;
        early.resize(480, 240);
        early.show();
        QCOMPARE(renderingThreads(), 0);
        QTRY_COMPARE_WITH_TIMEOUT(renderingThreads(), 1, patienceMs);
    }

    /// It must be whole at once when somebody wants to see it.
    void aScreenThatNobodySeesIsRenderedAllTheSame() {
        LCD7100 hidden;
        Arrivals arrivals;
        QResizeEvent resized(QSize(480, 240), QSize());
        QCoreApplication::sendEvent(&hidden, &resized);
        QTRY_VERIFY_WITH_TIMEOUT(arrivals.count > 0, patienceMs);
    }

    /// Graphics are not painted before the first text is.
    void graphicsFromTheStartWaitForText() {
        QTRY_COMPARE_WITH_TIMEOUT(renderingThreads(), 0, patienceMs);
        LCD7100 screen;
        Arrivals arrivals;
        screen.resize(480, 240);
        screen.setTextMode(false);
        screen.show();
        QVERIFY(QTest::qWaitForWindowExposed(&screen, patienceMs));
        QCOMPARE(renderingThreads(), 0);
        screen.setTextMode(true);
        screen.redraw(false);
        QTRY_VERIFY_WITH_TIMEOUT(arrivals.count > 0, patienceMs);
    }

    void anUnchangedScreenRepaintsNothing() {
        WatchedLcd lcd;
        lcd.tell();
        QCOMPARE(lcd.painted(), lcd.nothing());
        lcd.tell();
        lcd.tell();
        QCOMPARE(lcd.painted(), lcd.nothing());
    }

    void oneCellRepaintsOneCell() {
        WatchedLcd lcd;
        lcd.shown.reference.text[40 * 2 + 5] = 'y';
        lcd.tell();
        QCOMPARE(lcd.painted(), lcd.with(QRect(60, 60, 12, 30)));
        QCOMPARE(lcd.shown.picture(), lcd.shown.expected());
        lcd.forgetPictures();
        lcd.shown.reference.attr[40 * 2 + 5] = 1;
        lcd.tell();
        QCOMPARE(lcd.painted(), lcd.with(QRect(60, 60, 12, 30)));
    }

    void eachRowRepaintsWhatIsChangedInIt() {
        WatchedLcd lcd;
        lcd.shown.reference.text[40 * 2 + 5] = 'y';
        lcd.shown.reference.text[40 * 2 + 8] = 'y';
        lcd.shown.reference.text[40 * 5 + 39] = 'y';
        lcd.tell();
        QCOMPARE(lcd.painted(), lcd.with(QRegion(60, 60, 48, 30) + QRegion(468, 150, 12, 30)));
    }

    void anotherColourRepaintsEverything() {
        WatchedLcd lcd;
        const int before = lcd.arrivals.count;
        lcd.shown.lcd.setColors(Qt::black, Qt::white, Qt::green);
        QTRY_VERIFY_WITH_TIMEOUT(lcd.arrivals.count > before, patienceMs);
        QCOMPARE(lcd.painted(), lcd.everything());
    }

    void anotherSizeRepaintsEverything() {
        WatchedLcd lcd;
        const int before = lcd.arrivals.count;
        lcd.shown.lcd.resize(484, 244);
        QTRY_VERIFY_WITH_TIMEOUT(lcd.arrivals.count > before, patienceMs);
        QCOMPARE(lcd.painted(), lcd.everything());
    }

    void whatIsRenderedForAnotherSizeIsShownWhole() {
        WatchedLcd lcd;
        QImage foreign(lcd.shown.lcd.size() / 2, QImage::Format_RGB32);
        foreign.fill(Qt::green);
        lcd.shown.lcd.newTextReady(foreign);
        QCOMPARE(lcd.painted(), lcd.everything());
        // And so is one of the right size that comes from elsewhere.
        QImage other(lcd.shown.lcd.size(), QImage::Format_RGB32);
        other.fill(Qt::red);
        lcd.shown.lcd.newTextReady(other);
        QCOMPARE(lcd.painted(), lcd.everything());
        QCOMPARE(lcd.shown.picture(), other);
        lcd.forgetPictures();
        // What comes next is compared with nothing known.
        lcd.shown.reference.text[0] = 'y';
        lcd.tell();
        QCOMPARE(lcd.painted(), lcd.everything());
        QCOMPARE(lcd.shown.picture(), lcd.shown.expected());
    }

    void aMovedCursorRepaintsBothItsPlaces() {
        WatchedLcd lcd;
        LCD7100& screen = lcd.shown.lcd;
        const auto place = [&screen](int column, int row) {
            return cursorArea(screen.size(), 40, 8, {LCDTextCursor::Block, column, row})
                .toAlignedRect();
        };
        screen.setCursorWait(LCDTextCursor::Block, 3, 2);
        QCOMPARE(lcd.painted(), lcd.nothing());
        lcd.tell();
        QCOMPARE(lcd.painted(), lcd.with(place(3, 2)));
        screen.setCursorWait(LCDTextCursor::Block, 3, 2);
        lcd.tell();
        QCOMPARE(lcd.painted(), lcd.nothing());
        screen.setCursorWait(LCDTextCursor::Block, 10, 5);
        lcd.tell();
        QCOMPARE(lcd.painted(), lcd.with(QRegion(place(3, 2)) + place(10, 5)));
        screen.setCursorWait(LCDTextCursor::Off, 10, 5);
        lcd.tell();
        QCOMPARE(lcd.painted(), lcd.with(place(10, 5)));
    }

    void blinkingRepaintsTheCursorOnly() {
        WatchedLcd lcd;
        LCD7100& screen = lcd.shown.lcd;
        screen.setCursorWait(LCDTextCursor::Underline, 3, 2);
        lcd.tell();
        lcd.painted();
        const QRect cursor =
            cursorArea(screen.size(), 40, 8, {LCDTextCursor::Underline, 3, 2}).toAlignedRect();
        for (int i = 0; i < 2; ++i) {
            screen.blinkCursor();
            QCOMPARE(lcd.painted(), lcd.with(cursor));
        }
        // A cursor that moved since is repainted where it was, too.
        screen.setCursorWait(LCDTextCursor::Underline, 30, 7);
        screen.blinkCursor();
        const QRect moved =
            cursorArea(screen.size(), 40, 8, {LCDTextCursor::Underline, 30, 7}).toAlignedRect();
        QCOMPARE(lcd.painted(), lcd.with(QRegion(cursor) + moved));
        screen.blinkCursor();
        QCOMPARE(lcd.painted(), lcd.with(moved));
        screen.setCursorWait(LCDTextCursor::Off, 30, 7);
        screen.blinkCursor();
        QCOMPARE(lcd.painted(), lcd.nothing());
    }

    void renderingsBehindGraphicsRepaintNothing() {
        WatchedLcd lcd;
        lcd.shown.lcd.setTextMode(false);
        QCOMPARE(lcd.painted(), lcd.everything());
        const int before = lcd.arrivals.count;
        lcd.shown.lcd.setColors(Qt::black, Qt::white, Qt::green);
        QTRY_VERIFY_WITH_TIMEOUT(lcd.arrivals.count > before, patienceMs);
        QCOMPARE(lcd.painted(), lcd.nothing());
    }

    void graphicsRepaintWhenTheyChange() {
        WatchedLcd lcd;
        LCD7100& screen = lcd.shown.lcd;
        screen.setFullGraphics(bitsOf('\x0F').data());
        QCOMPARE(lcd.painted(), lcd.nothing());
        screen.setTextMode(false);
        QCOMPARE(lcd.painted(), lcd.everything());
        screen.setFullGraphics(bitsOf('\x0F').data());
        QCOMPARE(lcd.painted(), lcd.nothing());
        screen.setFullGraphics(bitsOf('\x10').data());
        QCOMPARE(lcd.painted(), lcd.everything());
        screen.setFullGraphics(GraphImage7100(240, 64, bitsOf('\x11').data()));
        QCOMPARE(lcd.painted(), lcd.everything());
        // The packed picture is not what is shown any more.
        screen.setFullGraphics(bitsOf('\x10').data());
        QCOMPARE(lcd.painted(), lcd.everything());
    }

    void graphicsInNewColoursRepaint() {
        WatchedLcd lcd;
        LCD7100& screen = lcd.shown.lcd;
        screen.setTextMode(false);
        screen.setFullGraphics(bitsOf('\x0F').data());
        lcd.painted();
        screen.setColors(Qt::black, Qt::white, Qt::green);
        screen.setFullGraphics(bitsOf('\x0F').data());
        QCOMPARE(lcd.painted(), lcd.everything());
    }

    void theFirstRenderingShowsGraphicsThatWait() {
        ShownLcd shown;
        shown.lcd.setTextMode(false);
        PaintWatch watch(shown.lcd);
        QTRY_VERIFY_WITH_TIMEOUT(shown.picture().pixel(0, 0) == qRgb(224, 224, 224), patienceMs);
        QTRY_VERIFY_WITH_TIMEOUT(!watch.regions.isEmpty() &&
                                     watch.regions.last() == QRegion(shown.lcd.rect()),
                                 patienceMs);
    }

    void oneTileRepaintsItselfOnly() {
        QWidget window;
        auto* row = new QHBoxLayout(&window);
        std::vector<LCD7100*> lcds;
        std::vector<std::unique_ptr<PaintWatch>> watches;
        for (int i = 0; i < 3; ++i) {
            lcds.push_back(new LCD7100(&window));
            lcds.back()->findChild<QTimer*>()->stop();
            row->addWidget(lcds.back());
            watches.push_back(std::make_unique<PaintWatch>(*lcds.back()));
        }
        PaintWatch windowWatch(window);
        const std::string blank(320, ' ');
        Arrivals arrivals;
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window, patienceMs));
        for (LCD7100* lcd : lcds) {
            lcd->setTextWait(blank.data());
            lcd->redraw(false);
        }
        const auto picture = [](LCD7100* lcd) { return lcd->grab().toImage(); };
        QTRY_VERIFY_WITH_TIMEOUT(picture(lcds[0]) == picture(lcds[1]) &&
                                     picture(lcds[1]) == picture(lcds[2]) &&
                                     picture(lcds[0]).pixel(0, 0) == qRgb(224, 224, 224),
                                 patienceMs);
        QVERIFY(QTest::qWaitFor([&] { return arrivals.count >= 3; }, patienceMs));
        lcds[0]->update(marker(*lcds[0]));
        QTRY_VERIFY_WITH_TIMEOUT(watches[0]->regions.contains(QRegion(marker(*lcds[0]))),
                                 patienceMs);
        for (const auto& watch : watches)
            watch->regions.clear();
        windowWatch.regions.clear();

        lcds[1]->setTextWait(std::string(320, 'x').data());
        lcds[1]->redraw(false);
        QTRY_VERIFY_WITH_TIMEOUT(!watches[1]->regions.isEmpty(), patienceMs);
        QVERIFY(watches[0]->regions.isEmpty());
        QVERIFY(watches[2]->regions.isEmpty());
        QVERIFY(windowWatch.regions.isEmpty());
    }

    void whatIsDeliveredIsNotCopied() {
        WatchedLcd lcd;
        QImage delivered(lcd.shown.lcd.size(), QImage::Format_RGB32);
        delivered.fill(Qt::red);
        QVERIFY(delivered.isDetached());
        lcd.shown.lcd.newTextReady(delivered);
        // The widget has the same pixels.
        QVERIFY(!delivered.isDetached());
        lcd.shown.lcd.newTextReady(QImage(2, 2, QImage::Format_RGB32));
        QVERIFY(delivered.isDetached());
    }
};

int main(int argc, char** argv) {
    return runTest<TestLCD7100Repaints>(argc, argv);
}

#include "test_lcd7100_repaints.moc"
