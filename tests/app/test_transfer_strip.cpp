// The parts of the strip that shows a file transfer, as pixels.

#include "FittingLabel.h"
#include "SlimProgressBar.h"
#include "TestEnvironment.h"

class TestTransferStrip : public QObject {
    Q_OBJECT

private slots:
    void aLabelWantsRoomButNeedsNone();
    void aLabelShowsTheLongestThatFits();
    void aLabelIsDrawnLikeAnyOther();
    void theBarIsAsFullAsItsValue_data();
    void theBarIsAsFullAsItsValue();
    void aBusyBarMoves_data();
    void aBusyBarMoves();
    void aBusyBarIsNeverFull();
};

namespace {

/// The columns of the bar, from the first to the last, that are in the colour of progress.
QString columns(SlimProgressBar& bar) {
    const QImage image = bar.grab().toImage();
    const QRgb full = bar.palette().color(QPalette::Highlight).rgb();
    QString result;
    for (int x = 1; x < image.width() - 1; ++x)
        result += image.pixel(x, image.height() / 2) == full ? '#' : '.';
    return result;
}

void prepare(SlimProgressBar& bar, int maximum) {
    bar.setRange(0, maximum);
    bar.resize(102, 5);
}

} // namespace

void TestTransferStrip::aLabelWantsRoomButNeedsNone() {
    FittingLabel label;
    label.setWordings({QString(100, 'w'), "w"});
    QVERIFY(label.sizeHint().width() >= label.fontMetrics().horizontalAdvance(label.text()));
    QCOMPARE(label.minimumSizeHint().width(), 0);
    QCOMPARE(label.minimumSizeHint().height(), label.sizeHint().height());
}

void TestTransferStrip::aLabelShowsTheLongestThatFits() {
    FittingLabel label;
    QCOMPARE(label.shown(100), QString());
    label.setText("North@ttyUSB0");
    QCOMPARE(label.shown(1000), QString("North@ttyUSB0"));
    const int narrow = label.fontMetrics().horizontalAdvance("North@ttyU");
    QVERIFY(label.shown(narrow).startsWith("Nor") && label.shown(narrow).endsWith("B0"));
    const QStringList wordings{"the first of all", "the second", "last"};
    label.setWordings(wordings);
    QCOMPARE(label.text(), wordings.first());
    for (const QString& wording : wordings) {
        const int width = label.fontMetrics().horizontalAdvance(wording);
        QCOMPARE(label.shown(width), wording);
        QVERIFY(label.shown(width - 1) != wording);
    }
    const int small = label.fontMetrics().horizontalAdvance("last") - 1;
    QCOMPARE(label.shown(small), label.fontMetrics().elidedText("last", Qt::ElideMiddle, small));
}

void TestTransferStrip::aLabelIsDrawnLikeAnyOther() {
    FittingLabel label;
    label.setWordings({"first middle last", "last"});
    QLabel plain("first middle last");
    for (const char* text : {"first middle last", "last"}) {
        plain.setText(text);
        plain.resize(plain.sizeHint());
        label.resize(plain.size());
        QCOMPARE(label.grab().toImage(), plain.grab().toImage());
    }
}

void TestTransferStrip::theBarIsAsFullAsItsValue_data() {
    QTest::addColumn<int>("value");
    for (const int value : {0, 1, 37, 99, 100})
        QTest::addRow("%d", value) << value;
}

void TestTransferStrip::theBarIsAsFullAsItsValue() {
    QFETCH(const int, value);
    SlimProgressBar bar;
    prepare(bar, 100);
    bar.setValue(value);
    QCOMPARE(columns(bar), QString(value, '#') + QString(100 - value, '.'));
    bar.setLayoutDirection(Qt::RightToLeft);
    QCOMPARE(columns(bar), QString(100 - value, '.') + QString(value, '#'));
}

void TestTransferStrip::aBusyBarMoves_data() {
    QTest::addColumn<int>("time");
    QTest::addColumn<int>("position");
    QTest::newRow("start") << 0 << 0;
    QTest::newRow("half-way") << 750 << 500;
    QTest::newRow("there") << 1500 << 1000;
    QTest::newRow("half-way back") << 2250 << 500;
    QTest::newRow("back") << 3000 << 0;
    QTest::newRow("again") << 3750 << 500;
}

void TestTransferStrip::aBusyBarMoves() {
    QFETCH(const int, time);
    QFETCH(const int, position);
    QCOMPARE(SlimProgressBar::busyPosition(time), position);
}

void TestTransferStrip::aBusyBarIsNeverFull() {
    SlimProgressBar bar;
    prepare(bar, 0);
    bar.show();
    const QString first = columns(bar);
    QCOMPARE(first.count('#'), 25);
    // It moves by itself.
    QTRY_VERIFY_WITH_TIMEOUT(columns(bar) != first, 20000);
    QCOMPARE(columns(bar).count('#'), 25);
}

int main(int argc, char** argv) {
    return runTest<TestTransferStrip>(argc, argv);
}

#include "test_transfer_strip.moc"
