#include "EveryWindow.h"
#include "HelpLinks.h"
#include "TestEnvironment.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QMenuBar>
#include <QRadioButton>
#include <QSet>
#include <QToolButton>

#include <algorithm>

namespace {

constexpr int patience = 60000;

/// Whether a widget is a part of a control, not one itself.
bool isPart(const QWidget* widget) {
    if (widget->isWindow() || widget->objectName().startsWith(QLatin1String("qt_")))
        return true;
    for (const QWidget* whole = widget; !whole->isWindow();) {
        whole = whole->parentWidget();
        if (qobject_cast<const QComboBox*>(whole) || qobject_cast<const QAbstractSpinBox*>(whole) ||
            qobject_cast<const QAbstractScrollArea*>(whole) || qobject_cast<const QMenuBar*>(whole))
            return true;
    }
    return false;
}

QList<QWidget*> controlsOf(QWidget& window) {
    QList<QWidget*> controls;
    if (window.focusPolicy() != Qt::NoFocus)
        controls.append(&window);
    for (QWidget* widget : window.findChildren<QWidget*>())
        if (widget->isVisibleTo(&window) && !isPart(widget) &&
            (widget->focusPolicy() != Qt::NoFocus || qobject_cast<QAbstractButton*>(widget)))
            controls.append(widget);
    return controls;
}

bool isUnchosen(const QWidget* control) {
    const auto* choice = qobject_cast<const QRadioButton*>(control);
    return choice && !choice->isChecked();
}

/// The controls that Tab is to visit: of radio buttons the chosen one, from which the arrow keys
/// lead to the others.
QSet<QWidget*> stopsOf(QWidget& window) {
    QSet<QWidget*> stops;
    for (QWidget* control : controlsOf(window))
        if (control != &window && control->isEnabled() && !isUnchosen(control) &&
            (control->focusPolicy() & Qt::TabFocus) != 0)
            stops.insert(control);
    return stops;
}

bool isInput(const QWidget* widget) {
    return qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QComboBox*>(widget) ||
           qobject_cast<const QAbstractSpinBox*>(widget);
}

bool hasLabel(const QWidget& window, const QWidget* input) {
    const auto labels = window.findChildren<QLabel*>();
    return std::ranges::any_of(labels,
                               [input](const QLabel* label) { return label->buddy() == input; });
}

QRect place(const QWidget& window, const QWidget* widget) {
    return {widget->mapTo(&window, QPoint()), widget->size()};
}

/// The input that stands behind a label in its row; nothing when something else does.
QWidget* inputBehind(QWidget& window, const QLabel* label) {
    const QRect before = place(window, label);
    QWidget* nearest = nullptr;
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        const QRect behind = place(window, widget);
        if (widget == label || !widget->isVisibleTo(&window) || isPart(widget) ||
            behind.left() < before.right() || before.center().y() < behind.top() ||
            before.center().y() > behind.bottom())
            continue;
        if (!nearest || behind.left() < place(window, nearest).left())
            nearest = widget;
    }
    return nearest && isInput(nearest) ? nearest : nullptr;
}

/// Whether the eye comes to `later` after `earlier`: in the same row further right, or lower. What
/// stands in boxes of its own is as far as the boxes are.
bool isReadLater(const QWidget* earlier, const QWidget* later) {
    const QWidget* common = earlier->parentWidget();
    while (!common->isAncestorOf(later))
        common = common->parentWidget();
    while (earlier->parentWidget() != common)
        earlier = earlier->parentWidget();
    while (later->parentWidget() != common)
        later = later->parentWidget();
    const QRect before = earlier->geometry();
    const QRect behind = later->geometry();
    const bool sameRow = behind.top() <= before.center().y() && before.top() <= behind.center().y();
    return sameRow ? behind.left() > before.right() : behind.top() > before.top();
}

QString describe(const QWidget* widget) {
    return QStringLiteral("%1 %2").arg(QLatin1String(widget->metaObject()->className()),
                                       widget->objectName());
}

void noteMnemonic(const QString& text, QStringList& mnemonics) {
    const QKeySequence key = QKeySequence::mnemonic(text);
    if (!key.isEmpty())
        mnemonics.append(key.toString());
}

} // namespace

/// What holds of every window: each control has a name, each label of an input leads to it, and who
/// has no mouse comes to all of them in the order in which they are read.
class TestEveryWindow : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        Q_INIT_RESOURCE(group);
        Q_INIT_RESOURCE(console);
        newsSource.clear();
    }
    void controlsHaveNames_data() { windows({}); }
    void controlsHaveNames();
    void buttonsOfIconsHaveToolTips_data() { windows({}); }
    void buttonsOfIconsHaveToolTips();
    void labelsLeadToTheirInputs_data() { windows({}); }
    void labelsLeadToTheirInputs();
    void mnemonicsAreUnique_data() { windows({}); }
    void mnemonicsAreUnique();
    void tabVisitsAllAsTheyAreRead_data() {
        // In the main window Tab is typed for the instruments, and the news are one text.
        windows({"group window", "file transfer", "news"});
    }
    void tabVisitsAllAsTheyAreRead();

private:
    void windows(const QStringList& without) {
        QTest::addColumn<int>("index");
        const auto all = everyWindow(&m_settings);
        for (int i = 0; i < all.size(); ++i)
            if (!without.contains(QLatin1String(all[i].name)))
                QTest::newRow(all[i].name) << i;
    }
    std::unique_ptr<ShownWindow> open() {
        QFETCH(const int, index);
        auto shown = everyWindow(&m_settings)[index].make();
        shown->widget().show();
        return shown;
    }

    QSettings m_settings{QStringLiteral("VESTRA"), QStringLiteral("group7100")};
};

void TestEveryWindow::controlsHaveNames() {
    const auto shown = open();
    const auto controls = controlsOf(shown->widget());
    QVERIFY(!controls.empty());
    for (QWidget* control : controls) {
        const auto* interface = QAccessible::queryAccessibleInterface(control);
        QVERIFY2(interface, qPrintable(describe(control)));
        const QString name = interface->text(QAccessible::Name);
        QVERIFY2(!name.trimmed().isEmpty(), qPrintable(describe(control)));
        // What is in an input must not have to serve as its name.
        if (isInput(control))
            QVERIFY2(!control->accessibleName().isEmpty() || hasLabel(shown->widget(), control),
                     qPrintable(describe(control)));
    }
}

void TestEveryWindow::buttonsOfIconsHaveToolTips() {
    const auto shown = open();
    for (auto* button : shown->widget().findChildren<QToolButton*>())
        if (button->isVisibleTo(&shown->widget()) && !isPart(button) && !button->icon().isNull())
            QVERIFY2(!button->toolTip().isEmpty(), qPrintable(describe(button)));
}

void TestEveryWindow::labelsLeadToTheirInputs() {
    const auto shown = open();
    for (const auto* label : shown->widget().findChildren<QLabel*>()) {
        QWidget* input =
            label->isVisibleTo(&shown->widget()) ? inputBehind(shown->widget(), label) : nullptr;
        if (input)
            QVERIFY2(label->buddy() == input, qPrintable(describe(label) + describe(input)));
    }
}

void TestEveryWindow::mnemonicsAreUnique() {
    const auto shown = open();
    QStringList mnemonics;
    for (const auto* label : shown->widget().findChildren<QLabel*>())
        if (label->buddy())
            noteMnemonic(label->text(), mnemonics);
    for (const auto* button : shown->widget().findChildren<QAbstractButton*>())
        if (button->isVisibleTo(&shown->widget()))
            noteMnemonic(button->text(), mnemonics);
    for (const auto* box : shown->widget().findChildren<QGroupBox*>())
        noteMnemonic(box->title(), mnemonics);
    for (const auto* bar : shown->widget().findChildren<QMenuBar*>())
        for (const auto* action : bar->actions())
            noteMnemonic(action->text(), mnemonics);
    const qsizetype all = mnemonics.size();
    mnemonics.removeDuplicates();
    QCOMPARE(mnemonics.size(), all);
}

void TestEveryWindow::tabVisitsAllAsTheyAreRead() {
    const auto shown = open();
    QWidget& window = shown->widget();
    if (auto* keypad = qobject_cast<Keyboard*>(&window))
        keypad->takeKeyboard();
    else
        window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window, patience));
    const QSet<QWidget*> expected = stopsOf(window);
    QVERIFY(!expected.empty());
    // From whatever has the focus first round to the one that is read first.
    QList<QWidget*> walk;
    for (qsizetype i = 0; i < expected.size(); ++i) {
        QTest::keyClick(window.windowHandle(), Qt::Key_Tab);
        QVERIFY(QApplication::focusWidget());
        walk.append(QApplication::focusWidget());
    }
    for (const QWidget* stop : expected)
        QVERIFY2(walk.contains(stop), qPrintable(describe(stop)));
    qsizetype turns = 0;
    for (qsizetype i = 0; i < walk.size(); ++i) {
        const QWidget* next = walk[(i + 1) % walk.size()];
        if (walk.size() > 1 && !isReadLater(walk[i], next))
            ++turns;
    }
    // Only from the last to the first.
    QVERIFY2(turns <= 1, qPrintable([&walk] {
                 QStringList names;
                 for (const QWidget* stop : walk)
                     names += describe(stop);
                 return names.join(u'\n');
             }()));
    // And back.
    QTest::keyClick(window.windowHandle(), Qt::Key_Backtab, Qt::ShiftModifier);
    if (walk.size() > 1)
        QCOMPARE(QApplication::focusWidget(), walk[walk.size() - 2]);
}

int main(int argc, char** argv) {
    return runTest<TestEveryWindow>(argc, argv);
}

#include "test_every_window.moc"
