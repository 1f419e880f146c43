#include "CaptureName.h"
#include "TestEnvironment.h"

class TestCaptureName : public QObject {
    Q_OBJECT

private slots:
    void files_data() {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<std::optional<int>>("counter");
        QTest::addColumn<QString>("path");
        using Counter = std::optional<int>;
        const Counter none;

        QTest::newRow("default") << "7100Screen_#.pdf" << Counter(5) << "/shots/7100Screen_5.pdf";
        QTest::newRow("next") << "7100Screen_#.pdf" << Counter(6) << "/shots/7100Screen_6.pdf";
        QTest::newRow("0") << "#.pdf" << Counter(0) << "/shots/0.pdf";
        QTest::newRow("three digits") << "a#.pdf" << Counter(999) << "/shots/a999.pdf";
        QTest::newRow("every #") << "#a#b##.pdf" << Counter(12) << "/shots/12a12b1212.pdf";
        QTest::newRow("no #") << "screen.pdf" << Counter(7) << "/shots/screen.pdf";
        QTest::newRow("no counter") << "7100Screen_#.pdf" << none << "/shots/7100Screen_#.pdf";
        QTest::newRow("no suffix") << "screen#" << Counter(1) << "/shots/screen1.pdf";
        QTest::newRow("suffix in capitals") << "screen.PDF" << none << "/shots/screen.PDF.pdf";
        QTest::newRow("suffix in the middle") << "a.pdf.b" << none << "/shots/a.pdf.b.pdf";
        QTest::newRow("suffix without a dot") << "apdf" << none << "/shots/apdf.pdf";
        QTest::newRow("suffix made by the counter") << "a.pd#" << Counter(1) << "/shots/a.pd1.pdf";
        QTest::newRow("empty") << "" << Counter(3) << "/shots/.pdf";
        QTest::newRow("spaces stay") << " a # " << Counter(3) << "/shots/ a 3 .pdf";
    }
    void files() {
        QFETCH(const QString, pattern);
        QFETCH(const std::optional<int>, counter);
        QTEST((CaptureName{QStringLiteral("/shots/"), pattern, counter}.filePath()), "path");
    }

    void theDirectoryIsTakenAsItStands() {
        QCOMPARE((CaptureName{QStringLiteral("C:\\shots\\"), QStringLiteral("a"), {}}.filePath()),
                 QStringLiteral("C:\\shots\\a.pdf"));
        QCOMPARE((CaptureName{QStringLiteral("shots"), QStringLiteral("a"), {}}.filePath()),
                 QStringLiteral("shotsa.pdf"));
        QCOMPARE((CaptureName{QStringLiteral("/run#/"), QStringLiteral("#"), 4}.filePath()),
                 QStringLiteral("/run#/4.pdf"));
    }
};

int main(int argc, char** argv) {
    return runTest<TestCaptureName>(argc, argv);
}

#include "test_capturename.moc"
