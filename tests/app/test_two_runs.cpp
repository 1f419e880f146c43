#include "CaptureControl.h"
#include "ChatWindow.h"
#include "ColorEditWidget.h"
#include "GroupPrefs.h"
#include "LCDColorPicker.h"
#include "Operator.h"
#include "TestEnvironment.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFontDialog>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QSpinBox>
#include <QTemporaryDir>

#include <memory>

namespace {

const QByteArray defaultColors = QByteArray::fromHex("0000000300ff0000ff"
                                                     "0000000300ffe0e0e0"
                                                     "0000000300ffff0000");
const QByteArray chosenColors = QByteArray::fromHex("0000000300ff112233"
                                                    "0000000300ffe0e0e0"
                                                    "0000000300ffff0000");

const QString chosenFont = QStringLiteral("Liberation Mono");

template <typename Window>
Window* shown() {
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (auto* window = qobject_cast<Window*>(widget); window && window->isVisible())
            return window;
    return nullptr;
}

template <typename Child>
Child* in(const QWidget* window, const char* name) {
    return window->findChild<Child*>(QLatin1String(name));
}

void chooseInMenu(const QWidget& screen, const QString& text) {
    for (auto* action : screen.findChildren<QAction*>())
        if (action->text() == text)
            action->trigger();
}

/// Empty when the operator can work with the window.
QByteArray complaint(const QWidget* window) {
    if (window == nullptr)
        return "not there";
    const QSize least = window->minimumSizeHint().expandedTo(window->minimumSize());
    if (window->size().expandedTo(least) != window->size())
        return "too small";
    if (!window->screen()->availableGeometry().contains(window->geometry()))
        return "not on the screen";
    return {};
}

} // namespace

/// What the operator sets in one run is there in the next, and what a damaged store says in
/// neither. The runs have nothing in common but the file.
class TestTwoRuns : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { Q_INIT_RESOURCE(group); }
    void init() { startWith({}); }
    void cleanup() { m_person.reset(); }
    void colorsAndFontOfOneTileAreEveryTiles();
    void gridAndPlaces();
    void captureSettings();
    void aRunWithoutChangesChangesNothing();
    void damagedStore_data();
    void damagedStore();

private:
    QString file() const { return m_store->filePath(QStringLiteral("VESTRA/group7100.conf")); }

    /// A run with a store of its own, which holds this.
    void startWith(const QByteArray& content) {
        m_person.reset();
        m_store = std::make_unique<QTemporaryDir>();
        QDir(m_store->path()).mkdir(QStringLiteral("VESTRA"));
        QFile store(file());
        QVERIFY(store.open(QIODevice::WriteOnly) && store.write(content) == content.size());
        store.close();
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_store->path());
        m_person = std::make_unique<Operator>();
    }
    QByteArray quit() {
        m_person->window().close();
        m_person.reset();
        QFile store(file());
        return store.open(QIODevice::ReadOnly) ? store.readAll() : "no store";
    }
    void runAgain() { startWith(quit()); }

    QList<ConnectionWidget*> tiles() const {
        return m_person->window().findChildren<ConnectionWidget*>();
    }
    LCD7100& screen(int tile) const { return *tiles().at(tile)->findChild<LCD7100*>(); }

    void setColumns(int columns) const {
        const ModalDialog<GroupPrefs> dialog([columns](GroupPrefs& prefs) {
            in<QSpinBox>(&prefs, "spinBox")->setValue(columns);
            prefs.accept();
        });
        m_person->trigger(QStringLiteral("Preferences"));
        QVERIFY(dialog.answered());
    }

    std::unique_ptr<QTemporaryDir> m_store;
    std::unique_ptr<Operator> m_person;
};

void TestTwoRuns::colorsAndFontOfOneTileAreEveryTiles() {
    m_person->window().addEmptyConnection(true);
    chooseInMenu(screen(1), QStringLiteral("Edit Color..."));
    auto* picker = shown<LCDColorPicker>();
    QVERIFY(picker);
    {
        const ModalDialog<QColorDialog> dialog([](QColorDialog& colors) {
            colors.setCurrentColor(QColor(0x11, 0x22, 0x33));
            colors.accept();
        });
        QTest::mouseClick(in<ColorEditWidget>(picker, "sample1"), Qt::LeftButton);
        QVERIFY(dialog.answered());
    }
    in<QDialogButtonBox>(picker, "buttonBox")->button(QDialogButtonBox::Apply)->click();
    {
        const ModalDialog<QFontDialog> dialog([](QFontDialog& fonts) {
            fonts.setCurrentFont(QFont(chosenFont));
            fonts.accept();
        });
        chooseInMenu(screen(1), QStringLiteral("Edit Font..."));
        QVERIFY(dialog.answered());
    }
    for (const bool again : {false, true}) {
        if (again)
            runAgain();
        m_person->window().addEmptyConnection(false);
        QCOMPARE(tiles().size(), again ? 4 : 3);
        for (int i = 0; i < tiles().size(); ++i) {
            QCOMPARE(screen(i).getColors(), chosenColors);
            QCOMPARE(screen(i).getFontFamily(), chosenFont);
        }
    }
    chooseInMenu(screen(0), QStringLiteral("Edit Color..."));
    QCOMPARE(in<ColorEditWidget>(shown<LCDColorPicker>(), "sample1")->color(),
             QColor(0x11, 0x22, 0x33));
}

void TestTwoRuns::gridAndPlaces() {
    setColumns(3);
    for (int i = 0; i < 4; ++i)
        m_person->window().addEmptyConnection(false);
    m_person->trigger(QStringLiteral("Chat"));
    shown<ChatWindow>()->setGeometry(30, 40, 420, 240);
    shown<ChatWindow>()->close();
    // The window follows its new layout 50 ms later, and then stays where it is put.
    bool followed = false;
    QTimer::singleShot(60, this, [&followed] { followed = true; });
    QTRY_VERIFY_WITH_TIMEOUT(followed, 20000);
    m_person->window().setGeometry(20, 50, 780, 540);
    const QRect place = m_person->window().geometry();

    runAgain();
    QCOMPARE(m_person->window().geometry(), place);
    QCOMPARE(tiles().size(), 5);
    const auto* grid = m_person->window().centralWidget()->findChild<QGridLayout*>();
    QCOMPARE(grid->itemAtPosition(0, 2)->widget(), tiles().at(2));
    QCOMPARE(grid->itemAtPosition(1, 0)->widget(), tiles().at(3));
    m_person->trigger(QStringLiteral("Chat"));
    QCOMPARE(shown<ChatWindow>()->geometry(), QRect(30, 40, 420, 240));
    const ModalDialog<GroupPrefs> dialog(
        [](GroupPrefs& prefs) { QCOMPARE(in<QSpinBox>(&prefs, "spinBox")->value(), 3); });
    m_person->trigger(QStringLiteral("Preferences"));
    QVERIFY(dialog.answered());
}

void TestTwoRuns::captureSettings() {
    const QTemporaryDir pictures;
    chooseInMenu(screen(0), QStringLiteral("Capture Control"));
    const auto* capture = shown<CaptureControl>();
    in<QLabel>(capture, "dirLabel")->setText(pictures.path() + u'/');
    in<QLineEdit>(capture, "nameEditg")->setText(QStringLiteral("Pump #"));
    in<QSpinBox>(capture, "incVal")->setValue(41);
    in<QCheckBox>(capture, "sizeBox")->setChecked(true);
    in<QLineEdit>(capture, "widthEdit")->setText(QStringLiteral("7.62"));
    in<QLineEdit>(capture, "heightEdit")->setText(QStringLiteral("2.54"));
    in<QComboBox>(capture, "unitsBox")->setCurrentIndex(1);
    in<QCheckBox>(capture, "borderCheck")->setChecked(true);
    in<QSpinBox>(capture, "borderBox")->setValue(12);
    in<QCheckBox>(capture, "cursorBox")->setChecked(true);
    in<QPushButton>(capture, "captureButton")->click();
    QVERIFY(QFile::exists(pictures.filePath(QStringLiteral("Pump 41.pdf"))));

    runAgain();
    chooseInMenu(screen(0), QStringLiteral("Capture Control"));
    capture = shown<CaptureControl>();
    QCOMPARE(in<QLabel>(capture, "dirLabel")->text(), pictures.path() + u'/');
    QCOMPARE(in<QLabel>(capture, "prevFile")->text(),
             pictures.filePath(QStringLiteral("Pump 41.pdf")));
    QCOMPARE(in<QLineEdit>(capture, "nameEditg")->text(), QStringLiteral("Pump #"));
    QVERIFY(in<QCheckBox>(capture, "incrementBox")->isChecked());
    QCOMPARE(in<QSpinBox>(capture, "incVal")->value(), 42);
    QVERIFY(in<QCheckBox>(capture, "sizeBox")->isChecked());
    QCOMPARE(in<QLineEdit>(capture, "widthEdit")->text(), QStringLiteral("7.62"));
    QCOMPARE(in<QLineEdit>(capture, "heightEdit")->text(), QStringLiteral("2.54"));
    QCOMPARE(in<QComboBox>(capture, "unitsBox")->currentText(), QStringLiteral("cm"));
    QVERIFY(in<QCheckBox>(capture, "borderCheck")->isChecked());
    QCOMPARE(in<QSpinBox>(capture, "borderBox")->value(), 12);
    QVERIFY(in<QCheckBox>(capture, "cursorBox")->isChecked());
    in<QPushButton>(capture, "captureButton")->click();
    QVERIFY(QFile::exists(pictures.filePath(QStringLiteral("Pump 42.pdf"))));
}

void TestTwoRuns::aRunWithoutChangesChangesNothing() {
    startWith("[group]\nmaxcols=4\ncount=2\n");
    m_person->window().setGeometry(60, 70, 600, 400);
    chooseInMenu(screen(0), QStringLiteral("Capture Control"));
    const QByteArray stored = quit();
    QVERIFY(stored.contains("maxcols=4"));
    QVERIFY(stored.contains("capcon"));
    startWith(stored);
    QCOMPARE(quit(), stored);
}

void TestTwoRuns::damagedStore_data() {
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("tiles");

    const auto all = [](const QByteArray& value) {
        return "[group]\ngeometry=" + value + "\nmaxcols=" + value + "\ncount=" + value +
               "\ncolors=" + value + "\nfont=" + value + "\n[chat]\ngeometry=" + value +
               "\n[capcon]\ngeometry=" + value + "\nparams=" + value + '\n';
    };
    QTest::newRow("nothing") << QByteArray() << 1;
    QTest::newRow("values without a value") << all("") << 1;
    QTest::newRow("large numbers") << all("100000") << 1;
    QTest::newRow("negative numbers") << all("-100000") << 1;
    QTest::newRow("numbers beyond numbers") << all("99999999999999999999") << 1;
    QTest::newRow("words") << all("\"tall and wide\"") << 1;
    QTest::newRow("lists") << all("1, 2, 3") << 1;
    QTest::newRow("short arrays") << all("@ByteArray(\\0\\0\\0)") << 1;
    QTest::newRow("long arrays") << all("@ByteArray(" + QByteArray("x").repeated(100000) + ')')
                                 << 1;
    QTest::newRow("invalid values") << all("@Invalid()") << 1;
    QTest::newRow("rectangles") << all("@Rect(0 0 -5 100000)") << 1;
    QTest::newRow("variants cut off") << all("@Variant(\\0\\0\\0\\x9\\0\\xff\\xff)") << 1;
    QTest::newRow("fewer than no columns") << QByteArray("[group]\nmaxcols=-3\ncount=4\n") << 4;
    QTest::newRow("no columns") << QByteArray("[group]\nmaxcols=0\ncount=4\n") << 4;
    QTest::newRow("more columns than tiles")
        << QByteArray("[group]\nmaxcols=100000\ncount=3\n") << 3;
    QTest::newRow("fewer than no tiles") << QByteArray("[group]\ncount=-1\n") << 1;
    QTest::newRow("a hundred thousand tiles") << QByteArray("[group]\ncount=100000\n") << 1;
    QTest::newRow("no store at all") << QByteArray(100000, '\xff') << 1;
    QTest::newRow("zeros") << QByteArray(4096, '\0') << 1;
    QTest::newRow("section not closed") << QByteArray("[group\ncount=3\n[[[[") << 3;
}

void TestTwoRuns::damagedStore() {
    QFETCH(const QByteArray, content);
    QFETCH(const int, tiles);
    startWith(content);
    QCOMPARE(this->tiles().size(), tiles);
    QCOMPARE(complaint(&m_person->window()), QByteArray());
    QCOMPARE(screen(0).getColors(), defaultColors);
    QVERIFY(!screen(0).getFontFamily().isEmpty());
    m_person->trigger(QStringLiteral("Chat"));
    QCOMPARE(complaint(shown<ChatWindow>()), QByteArray());
    QCOMPARE(shown<ChatWindow>()->size(), QSize(400, 200));
    chooseInMenu(screen(0), QStringLiteral("Capture Control"));
    QCOMPARE(complaint(shown<CaptureControl>()), QByteArray());
    QCOMPARE(in<QLineEdit>(shown<CaptureControl>(), "nameEditg")->text(),
             QStringLiteral("7100Screen_#.pdf"));
    const ModalDialog<GroupPrefs> dialog([](GroupPrefs& prefs) {
        QVERIFY(prefs.maxCols() >= 1 && prefs.maxCols() <= 4);
        prefs.accept();
    });
    m_person->trigger(QStringLiteral("Preferences"));
    QVERIFY(dialog.answered());

    // And the next run has nothing to put up with.
    const QByteArray mended = quit();
    startWith(mended);
    QCOMPARE(this->tiles().size(), tiles);
    QCOMPARE(complaint(&m_person->window()), QByteArray());
    QVERIFY(mended.contains("count=" + QByteArray::number(tiles)));
}

int main(int argc, char** argv) {
    return runTest<TestTwoRuns>(argc, argv);
}

#include "test_two_runs.moc"
