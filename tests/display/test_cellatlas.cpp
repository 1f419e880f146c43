#include "CellAtlas.h"
#include "ReferencePainter.h"
#include "ScreenCanvas.h"
#include "TestEnvironment.h"
#include "TextScreen.h"

#include <QImage>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>

#include <malloc.h>

namespace {

/// Bytes that were asked for and not given back, by Qt too.
std::atomic<std::size_t> inUse = 0;

} // namespace

void* operator new(std::size_t size) {
    void* const memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr)
        throw std::bad_alloc();
    inUse += malloc_usable_size(memory);
    return memory;
}
void operator delete(void* memory) noexcept {
    inUse -= malloc_usable_size(memory);
    std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
    operator delete(memory);
}
// A sanitizer would bring its own for these.
void* operator new[](std::size_t size) {
    return operator new(size);
}
void operator delete[](void* memory) noexcept {
    operator delete(memory);
}
void operator delete[](void* memory, std::size_t /*size*/) noexcept {
    operator delete(memory);
}

namespace {

const std::atomic<bool> never = false;

CellLook lookOf(const QSize& size) {
    TextScreen screen;
    screen.font = QFont(QStringLiteral("Arial"));
    screen.fitFont(size);
    return screen.look(size);
}

std::vector<CellCode> cellsOf(const ReferenceScreen& reference) {
    TextScreen screen;
    screen.text = QVector<char>(reference.text.begin(), reference.text.end());
    screen.attr = QVector<char>(reference.attr.begin(), reference.attr.end());
    return screen.cells();
}

QImage imageOf(const ScreenCanvas& canvas) {
    return QImage(reinterpret_cast<const uchar*>(canvas.pixels()), canvas.size().width(),
                  canvas.size().height(), QImage::Format_RGB32)
        .copy();
}

std::vector<QRgb> pixelsOf(const QSize& size) {
    return std::vector<QRgb>(static_cast<std::size_t>(size.width()) *
                             static_cast<std::size_t>(size.height()));
}

} // namespace

class TestCellAtlas : public QObject {
    Q_OBJECT

private slots:
    void aLookHasOneAtlas() {
        const auto atlas = CellAtlas::shared(lookOf({480, 240}));
        QCOMPARE(CellAtlas::shared(lookOf({480, 240})), atlas);
    }

    void looksDiffer_data() {
        QTest::addColumn<CellLook>("look");
        const CellLook look = lookOf({480, 240});
        const auto add = [&look](const char* name, auto change) {
            CellLook other = look;
            change(other);
            QTest::newRow(name) << other;
        };
        add("width", [](CellLook& other) { other.imageSize.setWidth(481); });
        add("letters", [](CellLook& other) { ++other.letterSize; });
        add("family", [](CellLook& other) { other.font = QFont(QStringLiteral("Courier")); });
        add("weight", [](CellLook& other) { other.font.setBold(true); });
        add("columns", [](CellLook& other) { other.columns = 20; });
        add("rows", [](CellLook& other) { other.rows = 4; });
        add("text colour", [](CellLook& other) {
            other.colors = ColorTables(Qt::black, other.colors.backgroundColor(),
                                       other.colors.highlightColor());
        });
        add("highlight", [](CellLook& other) {
            other.colors =
                ColorTables(other.colors.textColor(), other.colors.backgroundColor(), Qt::green);
        });
    }
    void looksDiffer() {
        QFETCH(const CellLook, look);
        const auto atlas = CellAtlas::shared(lookOf({480, 240}));
        QVERIFY(CellAtlas::shared(look) != atlas);
    }

    void anAtlasGoesWithItsLastUser() {
        std::weak_ptr<CellAtlas> atlas;
        {
            const auto user = CellAtlas::shared(lookOf({480, 240}));
            atlas = user;
            QVERIFY(!atlas.expired());
        }
        QVERIFY(atlas.expired());
    }

    void suitsCellsOfSomeSizeInOpaqueColours() {
        CellLook look = lookOf({160, 32});
        QVERIFY(CellAtlas::suits(look));
        look.imageSize = QSize(159, 32);
        QVERIFY(!CellAtlas::suits(look));
        look.imageSize = QSize(160, 31);
        QVERIFY(!CellAtlas::suits(look));
        look.imageSize = QSize(640, 32);
        QVERIFY(CellAtlas::suits(look));
        look.imageSize = QSize(641, 32);
        QVERIFY(!CellAtlas::suits(look));
        look.imageSize = QSize(160, 32);
        look.colors = ColorTables(QColor(0, 0, 0, 254), Qt::white, Qt::red);
        QVERIFY(!CellAtlas::suits(look));
    }

    void cellsArePaintedOnce() {
        const QSize size(480, 240);
        CellAtlas atlas(lookOf(size));
        std::vector<QRgb> pixels = pixelsOf(size);
        CellAtlas::Index first = CellAtlas::none;
        {
            CellAtlas::Session session(atlas, pixels.data());
            QVERIFY(!session.hasPainted());
            first = session.alone(5, 3, {'A', 0});
            QVERIFY(session.hasPainted());
        }
        CellAtlas::Session session(atlas, pixels.data());
        QCOMPARE(session.alone(5, 3, {'A', 0}), first);
        // Whole pixels away it is the same cell.
        QCOMPARE(session.alone(17, 6, {'A', 0}), first);
        QVERIFY(!session.hasPainted());
        QVERIFY(session.alone(5, 3, {'A', 1}) != first);
        QVERIFY(session.alone(5, 3, {'B', 0}) != first);
        QVERIFY(session.alone(0, 3, {'A', 0}) != first);
    }

    void entriesAreCutToTheRowsOfTheInk() {
        const QSize size(480, 240);
        CellAtlas atlas(lookOf(size));
        std::vector<QRgb> pixels = pixelsOf(size);
        CellAtlas::Session session(atlas, pixels.data());
        const auto entry = [&session](unsigned char code, unsigned char color) {
            return session.entry(session.alone(5, 3, {code, color}));
        };
        QVERIFY(entry(' ', 0).kept.isEmpty());
        QCOMPARE(*entry(' ', 1).blank, qRgb(0, 0, 255));
        QCOMPARE(entry(219, 0).kept, QRect(0, 0, 12, 30));
        QCOMPARE(*entry(219, 0).blank, qRgb(224, 224, 224));
        QCOMPARE(*entry(219, 0).pixels, qRgb(0, 0, 255));
        // Ink in one column, in the middle of those that letters take.
        QCOMPARE(entry(179, 2).kept, QRect(2, 0, 8, 30));
        const QRgb* const line = entry(179, 2).pixels;
        for (int column = 0; column < 8; ++column)
            QCOMPARE(line[column], column == 4 ? qRgb(255, 0, 0) : *entry(179, 2).blank);
        // And in a few rows only.
        QCOMPARE(entry(196, 0).kept.height(), 1);
    }

    void reachIsSeen() {
        // Cells of 6.25 x 15.625: some lines begin a pixel before the pixels of their cell.
        const QSize size(250, 125);
        CellAtlas atlas(lookOf(size));
        std::vector<QRgb> pixels = pixelsOf(size);
        CellAtlas::Session session(atlas, pixels.data());
        const auto reach = [&session](int column, int row, unsigned char code) {
            return int{session.entry(session.alone(column, row, {code, 0})).reach};
        };
        QCOMPARE(reach(4, 0, 196), 0);
        QCOMPARE(reach(0, 0, 197), 0);
        QVERIFY(!session.anyReach());
        // From 12.5, which is pixel 13 for the background and 12 for the line.
        QCOMPARE(reach(2, 0, 196), int{PreparedCell::Left});
        // From 62.5.
        QCOMPARE(reach(4, 4, 179), int{PreparedCell::Up});
        QVERIFY(session.anyReach());
    }

    void memoryIsBounded_data() {
        QTest::addColumn<QSize>("size");
        QTest::newRow("small") << QSize(250, 125);
        QTest::newRow("large") << QSize(641, 321);
        // Cells of 4264 pixels, two of which are a little more than a block.
        QTest::newRow("larger") << QSize(1641, 825);
    }
    void memoryIsBounded() {
        QFETCH(const QSize, size);
        const auto atlas = CellAtlas::shared(lookOf(size));
        ScreenCanvas canvas(size);
        const std::size_t image = pixelsOf(size).size() * sizeof(QRgb);
        // What one screen adds at most: all its pixels twice, what is left over of blocks, and what
        // finds each cell.
        const std::size_t more = 2 * image + 2 * image / 15 + 65536 + std::size_t{320} * 512;
        // Crosses ink all of their cells and reach into others.
        ReferenceScreen crosses;
        crosses.text.assign(320, static_cast<char>(197));
        crosses.attr.assign(320, '\0');
        int forgotten = 0;
        quint64 epoch = canvas.shown().epoch;
        for (unsigned seed = 0; seed < 2000 && forgotten < 3; ++seed) {
            const bool isNearlyFull = atlas->held() > atlas->limit() * 9 / 10;
            const ReferenceScreen screen =
                isNearlyFull && seed % 2 == 0 ? crosses : ReferencePainter::randomScreen(seed);
            const std::size_t before = std::min(atlas->held(), atlas->limit());
            QVERIFY(canvas.paint(atlas, cellsOf(screen), never));
            if (seed % 16 == 0)
                QCOMPARE(imageOf(canvas), ReferencePainter::paint(screen, size));
            QVERIFY2(atlas->held() <= before + more, qPrintable(QString::number(atlas->held())));
            if (canvas.shown().epoch != epoch) {
                ++forgotten;
                // This screen, and the table of pages.
                QVERIFY(atlas->held() <= more + 65536);
            }
            epoch = canvas.shown().epoch;
        }
        QCOMPARE(forgotten, 3);
    }

    void whatIsToldIsHeld_data() {
        QTest::addColumn<QSize>("size");
        QTest::newRow("small") << QSize(240, 120);
        QTest::newRow("small, fractional") << QSize(250, 125);
        QTest::newRow("large") << QSize(960, 480);
        QTest::newRow("large, fractional") << QSize(961, 479);
    }
    void whatIsToldIsHeld() {
        QFETCH(const QSize, size);
        std::size_t real = 0;
        std::size_t told = 0;
        // The first time fills what Qt keeps of letters.
        for (int time = 0; time < 2; ++time) {
            const std::size_t before = inUse;
            const auto atlas = std::make_shared<CellAtlas>(lookOf(size));
            for (unsigned seed = 0; seed < 6; ++seed) {
                ScreenCanvas canvas(size);
                QVERIFY(canvas.paint(atlas, cellsOf(ReferencePainter::randomScreen(seed)), never));
            }
            real = inUse - before;
            told = atlas->held();
        }
        const QByteArray both = QByteArray::number(real) + " " + QByteArray::number(told);
        QVERIFY2(real <= told + told / 50, both.constData());
        QVERIFY2(told <= real + real / 4, both.constData());
    }

    void theLimitIsFourImagesOrTwoMegabytes() {
        QCOMPARE(CellAtlas(lookOf({240, 120})).limit(), std::size_t{2097152});
        QCOMPARE(CellAtlas(lookOf({1920, 960})).limit(), std::size_t{29491200});
    }

    void linesReachAcrossCornersOfFlatCells_data() {
        QTest::addColumn<QSize>("size");
        QTest::newRow("small") << QSize(575, 34);
        QTest::newRow("large") << QSize(2300, 122);
    }
    void linesReachAcrossCornersOfFlatCells() {
        QFETCH(const QSize, size);
        const auto atlas = CellAtlas::shared(lookOf(size));
        ScreenCanvas canvas(size);
        // The first of them has nobody to the right of it.
        for (const std::size_t place : {279U, 247U, 167U, 120U}) {
            for (int code = 200; code <= 206; ++code) {
                ReferenceScreen screen;
                screen.text.assign(320, ' ');
                screen.attr.assign(320, '\0');
                screen.text[place] = static_cast<char>(code);
                QVERIFY(canvas.paint(atlas, cellsOf(screen), never));
                QCOMPARE(imageOf(canvas), ReferencePainter::paint(screen, size));
            }
        }
    }

    void changedAreaOfWhatCannotBeCompared() {
        const QSize size(480, 240);
        const auto atlas = CellAtlas::shared(lookOf(size));
        ScreenCanvas canvas(size);
        const QRegion whole(0, 0, 480, 240);
        QVERIFY(canvas.paint(atlas, cellsOf(ReferencePainter::randomScreen(1)), never));
        QCOMPARE(changedArea({}, canvas.shown()), whole);
        QVERIFY(changedArea(canvas.shown(), canvas.shown()).isEmpty());
        ScreenCanvas::Shown later = canvas.shown();
        ++later.epoch;
        QCOMPARE(changedArea(canvas.shown(), later), whole);
        QVERIFY(changedArea(canvas.shown(), {}).isEmpty());
    }
};

int main(int argc, char** argv) {
    return runTest<TestCellAtlas>(argc, argv);
}

#include "test_cellatlas.moc"
