// What a reader gets who is slower than the renderings come: the newest, and all that has changed
// since the one before.

#include "NewestRendering.h"
#include "TestEnvironment.h"

namespace {

/// Renderings of one row of pixels, which differ from the one before in one of them.
ScreenRenderer::Rendering rendering(int number) {
    QImage image(16, 1, QImage::Format_RGB32);
    image.fill(static_cast<uint>(number));
    return {image, QRect(number, 0, 1, 1)};
}

QRegion pixels(const QList<int>& numbers) {
    QRegion region;
    for (const int number : numbers)
        region |= QRect(number, 0, 1, 1);
    return region;
}

} // namespace

class TestNewestRendering : public QObject {
    Q_OBJECT

private slots:
    void readers_data() {
        // p puts the next rendering, s skips it, c is one cut short, t takes.
        QTest::addColumn<QString>("story");
        QTest::addColumn<int>("number");
        QTest::addColumn<QList<int>>("changed");
        QTest::newRow("at once") << "p" << 1 << QList<int>{1};
        QTest::newRow("one of two") << "pp" << 2 << QList<int>{1, 2};
        QTest::newRow("the second") << "ptp" << 2 << QList<int>{2};
        QTest::newRow("after a skipped one") << "ptsp" << 3 << QList<int>{2, 3};
        QTest::newRow("before a skipped one") << "ps" << 1 << QList<int>{1};
        QTest::newRow("skipped before the one before was taken") << "pstp" << 3 << QList<int>{2, 3};
        QTest::newRow("skipped between two") << "psp" << 3 << QList<int>{1, 2, 3};
        QTest::newRow("skipped at first") << "ssp" << 3 << QList<int>{1, 2, 3};
        QTest::newRow("skipped twice") << "pstsp" << 4 << QList<int>{2, 3, 4};
        QTest::newRow("cut short") << "pctp" << 2 << QList<int>{2};
        QTest::newRow("taken in vain") << "pttsttp" << 3 << QList<int>{2, 3};
    }
    void readers() {
        QFETCH(const QString, story);
        QFETCH(const int, number);
        QFETCH(const QList<int>, changed);
        NewestRendering newest;
        int last = 0;
        for (const QChar step : story) {
            if (step == u'p')
                newest.put(rendering(++last));
            else if (step == u's')
                newest.skip(rendering(++last));
            else if (step == u'c')
                newest.skip({});
            else
                newest.take();
        }
        const ScreenRenderer::Rendering taken = newest.take();
        QCOMPARE(taken.image, rendering(number).image);
        QCOMPARE(taken.changed, pixels(changed));
        QVERIFY(newest.take().image.isNull());
    }

    void nothing() {
        NewestRendering newest;
        QVERIFY(newest.take().image.isNull());
        newest.skip(rendering(1));
        QVERIFY(newest.take().image.isNull());
    }
};

int main(int argc, char** argv) {
    return runTest<TestNewestRendering>(argc, argv);
}

#include "test_newestrendering.moc"
