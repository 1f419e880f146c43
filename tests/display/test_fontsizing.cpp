#include "FontSizing.h"
#include "TestEnvironment.h"

#include <QFontInfo>

class TestFontSizing : public QObject {
    Q_OBJECT

private slots:
    void lettersFitTheCell_data() {
        QTest::addColumn<qreal>("shape");
        QTest::addColumn<QSizeF>("cell");
        QTest::addColumn<int>("pixelSize");

        // Letters taller in shape than the cell: nine tenths of the cell's height.
        QTest::newRow("tall letters") << 3.0 << QSizeF(12, 30) << 27;
        QTest::newRow("tall letters, truncated") << 3.0 << QSizeF(12, 31) << 27;
        QTest::newRow("flat cell") << 1.2 << QSizeF(40, 20) << 18;
        // Wide letters: nine tenths of what is as high as the cell is wide.
        QTest::newRow("wide letters") << 1.0 << QSizeF(20, 50) << 18;
        QTest::newRow("wide letters, truncated") << 1.25 << QSizeF(12, 30) << 13;
        QTest::newRow("very wide letters") << 0.5 << QSizeF(20, 50) << 9;
        QTest::newRow("the very shape of the cell") << 2.0 << QSizeF(10, 20) << 18;
        QTest::newRow("fractional cell") << 1.0 << QSizeF(11.2, 30.7) << 10;
        QTest::newRow("never less than 1") << 1.2 << QSizeF(0.1, 0.1) << 1;
        QTest::newRow("never more than a font can be") << 1.2 << QSizeF(1e9, 1e9) << 4000;
    }
    void lettersFitTheCell() {
        QFETCH(const qreal, shape);
        QFETCH(const QSizeF, cell);
        QTEST(letterPixelSize(shape, cell), "pixelSize");
    }

    void shapeDependsOnTheFamilyAlone() {
        QFont font(QStringLiteral("Liberation Sans"));
        const qreal shape = letterShape(font);
        QVERIFY(shape > 0.9 && shape < 1.5);
        for (const int size : {1, 5, 7, 100, 300}) {
            font.setPixelSize(size);
            QCOMPARE(letterShape(font), shape);
            font.setPointSize(size);
            QCOMPARE(letterShape(font), shape);
        }
        // A narrow font has a taller "W".
        QVERIFY(letterShape(QFont(QStringLiteral("Liberation Sans Narrow"))) > shape);
        QVERIFY(letterShape(QFont(QStringLiteral("Liberation Mono"))) > shape);
    }

    void sizeIsChosenOnceForEachSizeOfTheScreen() {
        const QFont sans(QStringLiteral("Liberation Sans"));
        const QFont mono(QStringLiteral("Liberation Mono"));
        const QSize size(480, 240);
        const QSizeF cell(12, 30);

        const FontSizing first = FontSizing().fitted(sans, size, cell);
        QCOMPARE(first.screenSize, size);
        QCOMPARE(first.pixelSize, letterPixelSize(letterShape(sans), cell));
        const int monoSize = letterPixelSize(letterShape(mono), cell);
        QVERIFY(first.pixelSize != monoSize);

        const FontSizing kept = first.fitted(mono, size, cell);
        QCOMPARE(kept.pixelSize, first.pixelSize);
        const FontSizing other = kept.fitted(mono, QSize(960, 480), QSizeF(24, 60));
        QCOMPARE(other.pixelSize, letterPixelSize(letterShape(mono), QSizeF(24, 60)));
        QCOMPARE(other.fitted(mono, size, cell).pixelSize, monoSize);
    }

    void sizedFontsAreTheirOwn_data() {
        QTest::addColumn<QFont>("font");
        QFont font(QStringLiteral("Liberation Sans"));
        QTest::newRow("default size") << font;
        font.setPixelSize(20);
        QTest::newRow("the very pixel size") << font;
        font.setPointSizeF(1);
        QTest::newRow("1 point") << font;
        font.setBold(true);
        font.setItalic(true);
        QTest::newRow("bold italic") << font;
    }
    void sizedFontsAreTheirOwn() {
        QFETCH(const QFont, font);
        const QFont sized = sizedFont(font, 20);
        QCOMPARE(sized.pixelSize(), 20);
        QCOMPARE(sized.family(), font.family());
        QCOMPARE(sized.bold(), font.bold());
        QCOMPARE(sized.italic(), font.italic());
        QVERIFY(!sized.isCopyOf(font));
    }
};

int main(int argc, char** argv) {
    return runTest<TestFontSizing>(argc, argv);
}

#include "test_fontsizing.moc"
