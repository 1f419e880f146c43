#include "FirstPaint.h"
#include "TestEnvironment.h"

#include <QWidget>

#include <memory>

namespace {

constexpr int patienceMs = 60'000;

class FirstPaintTest : public QObject {
    Q_OBJECT

private slots:
    void comesOnceAndAfterThePicture() {
        class Picture : public QWidget {
        public:
            int paintings = 0;

        protected:
            void paintEvent(QPaintEvent* /*event*/) override { ++paintings; }
        };
        Picture picture;
        int calls = 0;
        int paintingsBefore = -1;
        new FirstPaint(&picture, [&] {
            ++calls;
            paintingsBefore = picture.paintings;
        });
        QCoreApplication::processEvents();
        QCOMPARE(calls, 0);

        picture.show();
        QTRY_COMPARE_WITH_TIMEOUT(calls, 1, patienceMs);
        QVERIFY(paintingsBefore > 0);

        const int seen = picture.paintings;
        picture.update();
        QTRY_VERIFY_WITH_TIMEOUT(picture.paintings > seen, patienceMs);
        QCoreApplication::processEvents();
        QCOMPARE(calls, 1);
        QVERIFY(picture.findChildren<FirstPaint*>().isEmpty());
    }

    void doesNotComeInThePainting() {
        QWidget picture;
        picture.resize(20, 20);
        int calls = 0;
        new FirstPaint(&picture, [&] { ++calls; });
        picture.grab();
        QCOMPARE(calls, 0);
        QCoreApplication::processEvents();
        QCOMPARE(calls, 1);
    }

    void severalPaintingsCallOnce() {
        QWidget picture;
        picture.resize(20, 20);
        int calls = 0;
        new FirstPaint(&picture, [&] { ++calls; });
        picture.grab();
        picture.grab();
        QCoreApplication::processEvents();
        QCOMPARE(calls, 1);
    }

    /// A window may open as an icon, or on another desktop.
    void comesWithoutAPictureInTheEnd() {
        QWidget never;
        int calls = 0;
        new FirstPaint(&never, [&] { ++calls; });
        QTRY_COMPARE_WITH_TIMEOUT(calls, 1, patienceMs);
    }

    void goesWithItsWidget() {
        int calls = 0;
        {
            QWidget picture;
            picture.resize(20, 20);
            new FirstPaint(&picture, [&] { ++calls; });
            picture.grab();
        }
        QCoreApplication::processEvents();
        QCOMPARE(calls, 0);
    }
};

} // namespace

int main(int argc, char** argv) {
    return runTest<FirstPaintTest>(argc, argv);
}

#include "test_first_paint.moc"
