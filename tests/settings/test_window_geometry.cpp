#include "TestEnvironment.h"
#include "WindowGeometry.h"

#include <QDialog>
#include <QLabel>
#include <QScreen>
#include <QVBoxLayout>
#include <QVariant>
#include <QtEndian>

#include <limits>
#include <memory>
#include <random>

namespace {

constexpr QSize first{400, 200};
constexpr QSize least{240, 120};
constexpr QRect somewhere{60, 70, 500, 300};

constexpr qint32 farAway = std::numeric_limits<qint32>::max();

/// Where the rectangles of the frame, of the window unmaximised and of the window itself begin in
/// the stored bytes; each is left, top, right, bottom.
constexpr qsizetype rectangles[] = {8, 24, 50};
constexpr qsizetype screenNumber = 40;
constexpr qsizetype maximized = 44;

std::unique_ptr<QDialog> makeWindow() {
    auto window = std::make_unique<QDialog>();
    auto* content = new QLabel(window.get());
    content->setMinimumSize(least);
    auto* layout = new QVBoxLayout(window.get());
    layout->setContentsMargins({});
    layout->addWidget(content);
    return window;
}

QByteArray saved(const QRect& geometry) {
    const auto window = makeWindow();
    window->setGeometry(geometry);
    window->show();
    return window->saveGeometry();
}

void put(QByteArray& bytes, qsizetype at, qint32 value) {
    qToBigEndian(value, bytes.data() + at);
}

QByteArray withRectangle(QByteArray bytes, qint32 left, qint32 top, qint32 right, qint32 bottom) {
    for (const qsizetype at : rectangles) {
        put(bytes, at, left);
        put(bytes, at + 4, top);
        put(bytes, at + 8, right);
        put(bytes, at + 12, bottom);
    }
    return bytes;
}

QByteArray withNumber(QByteArray bytes, qsizetype at, qint32 value) {
    put(bytes, at, value);
    return bytes;
}

/// Empty when the operator can work with the window, otherwise what is wrong with it.
QByteArray complaint(const QWidget& window) {
    const QRect is = window.geometry();
    const QByteArray where = QStringLiteral("%1,%2 %3 x %4")
                                 .arg(is.x())
                                 .arg(is.y())
                                 .arg(is.width())
                                 .arg(is.height())
                                 .toLatin1();
    const QRect available = window.screen()->availableGeometry();
    if (is.size().expandedTo(least) != is.size())
        return "too small: " + where;
    if (!available.contains(is))
        return "not on the screen: " + where;
    return {};
}

QByteArray complaintAfter(const QVariant& stored) {
    const auto window = makeWindow();
    if (!windowgeometry::restore(*window, stored))
        window->resize(first);
    window->show();
    return complaint(*window);
}

} // namespace

/// The fewest wishes an operator has of a window: it is there, and as large as its content needs.
class TestWindowGeometry : public QObject {
    Q_OBJECT

private slots:
    void comesBack_data();
    void comesBack();
    void unusable_data();
    void unusable();
    void everyTruncation();
    void longerThanStored();
    void damaged_data();
    void damaged();
    void randomDamage();
    void maximizedComesBackMaximized();
    void maximizedOffTheScreenComesBackOnIt();
};

void TestWindowGeometry::comesBack_data() {
    QTest::addColumn<QRect>("geometry");
    QTest::newRow("somewhere") << somewhere;
    QTest::newRow("at its first size") << QRect(QPoint(60, 70), first);
    QTest::newRow("at its smallest") << QRect(QPoint(60, 70), least);
}

void TestWindowGeometry::comesBack() {
    QFETCH(const QRect, geometry);
    const auto window = makeWindow();
    QVERIFY(windowgeometry::restore(*window, saved(geometry)));
    QCOMPARE(window->geometry(), geometry);
    window->show();
    QCOMPARE(window->geometry(), geometry);
}

void TestWindowGeometry::unusable_data() {
    QTest::addColumn<QVariant>("stored");
    QTest::newRow("nothing") << QVariant();
    QTest::newRow("no bytes") << QVariant(QByteArray());
    QTest::newRow("zeros") << QVariant(QByteArray(66, '\0'));
    QTest::newRow("noise") << QVariant(QByteArray(66, '\xff'));
    QTest::newRow("number") << QVariant(100000);
    QTest::newRow("negative number") << QVariant(-7);
    QTest::newRow("text") << QVariant(QStringLiteral("large"));
    QTest::newRow("list") << QVariant(QStringList{QStringLiteral("1"), QStringLiteral("2")});
    QTest::newRow("map") << QVariant(QVariantMap{{QStringLiteral("a"), 1}});
    QTest::newRow("rectangle") << QVariant(somewhere);
}

void TestWindowGeometry::unusable() {
    QFETCH(const QVariant, stored);
    const auto window = makeWindow();
    window->resize(first);
    QVERIFY(!windowgeometry::restore(*window, stored));
    QCOMPARE(window->size(), first);
}

void TestWindowGeometry::everyTruncation() {
    const QByteArray whole = saved(somewhere);
    for (qsizetype length = 0; length < whole.size(); ++length) {
        const auto window = makeWindow();
        window->resize(first);
        QVERIFY(!windowgeometry::restore(*window, whole.left(length)));
        QCOMPARE(window->size(), first);
    }
}

void TestWindowGeometry::longerThanStored() {
    const auto window = makeWindow();
    window->resize(first);
    QVERIFY(!windowgeometry::restore(*window, saved(somewhere) + '\0'));
    QCOMPARE(window->size(), first);
}

void TestWindowGeometry::damaged_data() {
    QTest::addColumn<QByteArray>("stored");
    const QByteArray whole = saved(somewhere);
    QTest::newRow("left of the screen") << withRectangle(whole, -9000, 70, -8500, 370);
    QTest::newRow("above the screen") << withRectangle(whole, 60, -9000, 560, -8700);
    QTest::newRow("right of the screen") << withRectangle(whole, 9000, 70, 9500, 370);
    QTest::newRow("below the screen") << withRectangle(whole, 60, 9000, 560, 9300);
    QTest::newRow("half beyond the left edge") << withRectangle(whole, -250, 70, 249, 369);
    QTest::newRow("larger than the screen") << withRectangle(whole, 0, 0, 20000, 20000);
    QTest::newRow("as large as a number") << withRectangle(whole, 0, 0, farAway, farAway);
    QTest::newRow("around everything")
        << withRectangle(whole, -farAway, -farAway, farAway, farAway);
    QTest::newRow("one pixel") << withRectangle(whole, 60, 70, 60, 70);
    QTest::newRow("nothing") << withRectangle(whole, 60, 70, 59, 69);
    QTest::newRow("inside out") << withRectangle(whole, 560, 370, 60, 70);
    QTest::newRow("a screen that is gone") << withNumber(whole, screenNumber, 3);
    QTest::newRow("a screen that never was") << withNumber(whole, screenNumber, -1);
    QTest::newRow("the last of many screens") << withNumber(whole, screenNumber, farAway);
    QTest::newRow("no mark") << withNumber(whole, 0, 0);
    QTest::newRow("a version to come") << withNumber(whole, 4, 0x7FFF'7FFF);
    QTest::newRow("version 0") << withNumber(whole, 4, 0);
    QTest::newRow("no width of the screen") << withNumber(whole, 46, 0);
}

void TestWindowGeometry::damaged() {
    QFETCH(const QByteArray, stored);
    QCOMPARE(complaintAfter(stored), QByteArray());
}

void TestWindowGeometry::randomDamage() {
    constexpr int rounds = 2000;
    const QByteArray whole = saved(somewhere);
    std::mt19937 chance(7100); // NOLINT(cert-msc51-cpp): the same damage every time
    for (int i = 0; i < rounds; ++i) {
        QByteArray bytes = whole;
        for (auto changes = 1 + chance() % 8; changes > 0; --changes)
            bytes[static_cast<qsizetype>(8 + chance() % 58)] = static_cast<char>(chance());
        bytes[maximized] = static_cast<char>(i % 2);
        const QByteArray wrong = complaintAfter(bytes);
        QVERIFY2(wrong.isEmpty(), wrong + bytes.toHex());
    }
}

void TestWindowGeometry::maximizedComesBackMaximized() {
    QByteArray stored = saved(somewhere);
    stored[maximized] = 1;
    const auto window = makeWindow();
    QVERIFY(windowgeometry::restore(*window, stored));
    window->show();
    QVERIFY(window->isMaximized());
    QCOMPARE(complaint(*window), QByteArray());
    window->showNormal();
    QCOMPARE(window->geometry(), somewhere);
}

void TestWindowGeometry::maximizedOffTheScreenComesBackOnIt() {
    QByteArray stored = withRectangle(saved(somewhere), -9000, -9000, farAway, farAway);
    stored[maximized] = 1;
    const auto window = makeWindow();
    QVERIFY(windowgeometry::restore(*window, stored));
    window->show();
    QVERIFY(window->isMaximized());
    window->showNormal();
    QCOMPARE(complaint(*window), QByteArray());
}

int main(int argc, char** argv) {
    return runTest<TestWindowGeometry>(argc, argv);
}

#include "test_window_geometry.moc"
