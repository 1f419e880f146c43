#include "FixedLabelNonAscii.h"
#include "Keyboard.h"
#include "KeypadTable.h"
#include "TestEnvironment.h"

#include <QToolButton>

namespace {

QRect placeOf(const Keyboard& palette, const char* name) {
    const auto* const key = palette.findChild<QToolButton*>(QString::fromLatin1(name));
    return key ? QRect(key->mapTo(&palette, QPoint()), key->size()) : QRect();
}

/// Whether a key shows its whole label (and image), with at least a pixel of frame around it.
bool showsAll(const QToolButton& key) {
    QSize needed = key.fontMetrics().size(Qt::TextShowMnemonic, key.text());
    if (key.toolButtonStyle() == Qt::ToolButtonTextUnderIcon) {
        needed.rheight() += key.iconSize().height();
        needed.setWidth(std::max(needed.width(), key.iconSize().width()));
    }
    return needed.width() + 2 <= key.width() && needed.height() + 2 <= key.height();
}

/// By how many pixels the keys of a block differ in width or height.
int unevenness(const Keyboard& palette, const char* block) {
    QSize smallest(10000, 10000);
    QSize largest;
    const auto keys =
        palette.findChild<QWidget*>(QString::fromLatin1(block))->findChildren<LetterButton*>();
    for (const LetterButton* key : keys) {
        smallest = smallest.boundedTo(key->size());
        largest = largest.expandedTo(key->size());
    }
    return std::max(largest.width() - smallest.width(), largest.height() - smallest.height());
}

/// Puts the font back at the end of a test.
class ScaledText {
public:
    explicit ScaledText(double scale) : m_before(QApplication::font()) {
        QFont scaled = m_before;
        scaled.setPointSizeF(m_before.pointSizeF() * scale);
        QApplication::setFont(scaled);
    }
    ~ScaledText() { QApplication::setFont(m_before); }
    Q_DISABLE_COPY_MOVE(ScaledText)

private:
    QFont m_before;
};

const char* const kNumberRow[] = {"k_bar", "k_1", "k_2", "k_3", "k_4",     "k_5",     "k_6",
                                  "k_7",   "k_8", "k_9", "k_0", "k_minus", "k_equal", "k_delete"};
const char* const kTopRow[] = {"k_escape",
                               "k_q",
                               "k_w",
                               "k_e",
                               "k_r",
                               "k_t",
                               "k_y",
                               "k_u",
                               "k_i",
                               "k_o",
                               "k_p",
                               "k_leftBracket",
                               "k_rightBracket",
                               "k_enter"};
const char* const kHomeRow[] = {"ctrlKey", "k_a", "k_s", "k_d", "k_f",         "k_g",
                                "k_h",     "k_j", "k_k", "k_l", "k_semicolon", "k_apostrophe"};
const char* const kBottomRow[] = {"shiftKey", "k_z", "k_x", "k_c",     "k_v",
                                  "k_b",      "k_n", "k_m", "k_comma", "k_period"};
const char* const kFunctionRow[] = {"k_labels", "k_f1", "k_f2", "k_f3", "k_f4", "k_f5"};

} // namespace

/// How the palette is laid out, with the text at its usual size and enlarged.
class KeyboardLayoutTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { Q_INIT_RESOURCE(console); }
    void labelsFit_data();
    void labelsFit();
    void keysAreEven_data() { labelsFit_data(); }
    void keysAreEven();
    void nothingMovesWhenLabelsChange();
    void staysEvenWhenTheTextGrows();
    void staysEvenWhenEnlarged();
    void keysDoNotOverlap();
    void rowsReadLikeAKeyboard();
    void cursorKeysFormACross();
    void readsTheSameFromRightToLeft();
};

void KeyboardLayoutTest::labelsFit_data() {
    QTest::addColumn<double>("scale");
    QTest::newRow("small text") << 0.8;
    QTest::newRow("usual text") << 1.0;
    QTest::newRow("text at 120 %") << 1.2;
    QTest::newRow("text at 200 %") << 2.0;
}

void KeyboardLayoutTest::labelsFit() {
    QFETCH(double, scale);
    const ScaledText text(scale);
    Keyboard palette;
    palette.show();
    for (unsigned state = 0; state < 4; ++state) {
        palette.showModState(state & 1U, state & 2U);
        for (const QToolButton* key : palette.findChildren<QToolButton*>()) {
            QVERIFY2(showsAll(*key), qPrintable(key->objectName() + key->text()));
        }
    }
}

void KeyboardLayoutTest::keysAreEven() {
    QFETCH(double, scale);
    const ScaledText text(scale);
    Keyboard palette;
    palette.show();
    const QSize unit = placeOf(palette, "k_a").size();
    for (const KeypadRow& row : keypadTable()) {
        const QString name = QString::fromLatin1(row.key);
        const bool wide = name == QStringLiteral("k_space") || name == QStringLiteral("k_escape") ||
                          name == QStringLiteral("k_enter") || name == QStringLiteral("k_delete");
        const auto* const key = palette.findChild<LetterButton*>(name);
        if (!wide && !qobject_cast<const FixedLabelNonAscii*>(key)) {
            QCOMPARE(key->size(), unit);
        }
    }
    QCOMPARE(unevenness(palette, "navKeys"), 0);
    // As wide as the main block, which six keys need not divide.
    QVERIFY(unevenness(palette, "fctKeys") <= 1);
}

void KeyboardLayoutTest::nothingMovesWhenLabelsChange() {
    Keyboard palette;
    palette.show();
    const auto places = [&palette] {
        QList<QRect> found{palette.geometry()};
        for (const QToolButton* key : palette.findChildren<QToolButton*>()) {
            found.append({key->mapTo(&palette, QPoint()), key->size()});
        }
        return found;
    };
    const QList<QRect> before = places();
    for (unsigned state = 0; state < 4; ++state) {
        palette.showModState(state & 1U, state & 2U);
        QCoreApplication::sendPostedEvents();
        QCOMPARE(places(), before);
    }
}

void KeyboardLayoutTest::staysEvenWhenTheTextGrows() {
    Keyboard palette;
    palette.show();
    const QSize before = placeOf(palette, "k_a").size();
    const ScaledText text(2.0);
    QTRY_VERIFY(placeOf(palette, "k_a").width() > before.width());
    QCoreApplication::sendPostedEvents();
    QCOMPARE(placeOf(palette, "k_z").size(), placeOf(palette, "k_1").size());
    for (const QToolButton* key : palette.findChildren<QToolButton*>()) {
        QVERIFY2(showsAll(*key), qPrintable(key->objectName()));
    }
}

void KeyboardLayoutTest::staysEvenWhenEnlarged() {
    Keyboard palette;
    palette.show();
    const QSize before = placeOf(palette, "k_a").size();
    palette.resize(palette.size() * 2);
    QTRY_VERIFY(placeOf(palette, "k_a").width() > before.width());
    QVERIFY(placeOf(palette, "k_a").height() > before.height());
    QVERIFY(placeOf(palette, "homeKey").width() > placeOf(palette, "k_a").width());
    // Pixels that do not divide evenly go to some of the columns.
    constexpr int kRounding = 2;
    const QSize unit = placeOf(palette, "k_a").size();
    for (const char* name : {"k_1", "k_0", "k_q", "k_p", "k_z", "k_period"}) {
        const QSize difference = placeOf(palette, name).size() - unit;
        QVERIFY2(std::abs(difference.width()) <= kRounding &&
                     std::abs(difference.height()) <= kRounding,
                 name);
    }
}

void KeyboardLayoutTest::keysDoNotOverlap() {
    Keyboard palette;
    palette.show();
    const auto keys = palette.findChildren<QToolButton*>();
    for (const QToolButton* key : keys) {
        const QRect place = placeOf(palette, key->objectName().toLatin1().constData());
        QVERIFY2(palette.rect().contains(place), qPrintable(key->objectName()));
        for (const QToolButton* other : keys) {
            const QRect otherPlace = placeOf(palette, other->objectName().toLatin1().constData());
            QVERIFY2(key == other || !place.intersects(otherPlace),
                     qPrintable(key->objectName() + other->objectName()));
        }
    }
}

void KeyboardLayoutTest::rowsReadLikeAKeyboard() {
    Keyboard palette;
    palette.show();
    const std::span<const char* const> rows[] = {kFunctionRow, kNumberRow, kTopRow, kHomeRow,
                                                 kBottomRow};
    int above = 0;
    for (const auto row : rows) {
        const int top = placeOf(palette, row.front()).top();
        QVERIFY(top >= above);
        above = placeOf(palette, row.front()).bottom() + 1;
        int right = 0;
        for (const char* name : row) {
            const QRect place = placeOf(palette, name);
            QVERIFY2(place.top() == top && place.left() >= right, name);
            right = place.right() + 1;
        }
    }
    QVERIFY(placeOf(palette, "k_space").top() >= above);
}

void KeyboardLayoutTest::cursorKeysFormACross() {
    Keyboard palette;
    palette.show();
    const QRect up = placeOf(palette, "upArrowKey");
    const QRect down = placeOf(palette, "dnArrowKey");
    const QRect left = placeOf(palette, "leftArrowKey");
    const QRect right = placeOf(palette, "rightArrowKey");
    QCOMPARE(up.center().x(), down.center().x());
    QCOMPARE(left.center().y(), right.center().y());
    QVERIFY(up.bottom() < left.top() && left.bottom() < down.top());
    QVERIFY(left.right() < up.left() && up.right() < right.left());
    QVERIFY(left.left() > placeOf(palette, "k_delete").right());
}

void KeyboardLayoutTest::readsTheSameFromRightToLeft() {
    QApplication::setLayoutDirection(Qt::RightToLeft);
    Keyboard palette;
    palette.show();
    const QRect q = placeOf(palette, "k_q");
    const QRect w = placeOf(palette, "k_w");
    QApplication::setLayoutDirection(Qt::LeftToRight);
    QVERIFY(q.right() < w.left());
}

int main(int argc, char** argv) {
    return runTest<KeyboardLayoutTest>(argc, argv);
}

#include "KeyboardLayoutTest.moc"
