#include "CaptureControl.h"
#include "TestEnvironment.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QSpinBox>
#include <QTimer>

#include <functional>
#include <memory>

namespace {

/// The dialog with its controls by name, and what it emitted.
class Dialog {
public:
    explicit Dialog(QSettings* settings = nullptr) : control(settings, nullptr) {
        QObject::connect(&control, &CaptureControl::capture, &control,
                         [this](const CaptureInfo& info) { captures << info; });
        directory()->setText(QStringLiteral("/shots/"));
    }

    template <typename Widget>
    Widget* find(const char* name) const {
        return control.findChild<Widget*>(QString::fromLatin1(name));
    }
    QLabel* directory() const { return find<QLabel>("dirLabel"); }
    QLabel* previous() const { return find<QLabel>("prevFile"); }
    QLineEdit* name() const { return find<QLineEdit>("nameEditg"); }
    QLineEdit* width() const { return find<QLineEdit>("widthEdit"); }
    QLineEdit* height() const { return find<QLineEdit>("heightEdit"); }
    QCheckBox* increment() const { return find<QCheckBox>("incrementBox"); }
    QCheckBox* sized() const { return find<QCheckBox>("sizeBox"); }
    QCheckBox* bordered() const { return find<QCheckBox>("borderCheck"); }
    QCheckBox* cursor() const { return find<QCheckBox>("cursorBox"); }
    QSpinBox* counter() const { return find<QSpinBox>("incVal"); }
    QSpinBox* border() const { return find<QSpinBox>("borderBox"); }
    QComboBox* units() const { return find<QComboBox>("unitsBox"); }

    CaptureInfo captured() {
        captures.clear();
        find<QPushButton>("captureButton")->click();
        return captures.size() == 1 ? captures[0] : CaptureInfo();
    }

    CaptureControl control;
    QVector<CaptureInfo> captures;
};

std::unique_ptr<QSettings> freshSettings() {
    auto settings =
        std::make_unique<QSettings>(QStringLiteral("VESTRA"), QStringLiteral("group7100"));
    settings->clear();
    return settings;
}

} // namespace

class TestCaptureControl : public QObject {
    Q_OBJECT

private slots:
    void theFormIsAsTold() {
        const CaptureControl control(nullptr, nullptr);
        QCOMPARE(control.windowTitle(), QStringLiteral("Capture LCD display to .PDF file"));
        QVERIFY(control.windowFlags().testFlag(Qt::Window));
        QVERIFY(!control.isModal());
        const Dialog dialog;
        QCOMPARE(control.findChild<QLabel*>(QStringLiteral("dirLabel"))->text(),
                 QDir::toNativeSeparators(QDir::homePath() + u'/'));
        QCOMPARE(dialog.name()->text(), QStringLiteral("7100Screen_#.pdf"));
        QCOMPARE(dialog.increment()->text(), QStringLiteral("Replace # with increment value"));
        QVERIFY(dialog.increment()->isChecked());
        QCOMPARE(dialog.counter()->minimum(), 0);
        QCOMPARE(dialog.counter()->maximum(), 999);
        QCOMPARE(dialog.counter()->value(), 0);
        QCOMPARE(dialog.previous()->text(), QStringLiteral("<none>"));
        QCOMPARE(dialog.sized()->text(), QStringLiteral("Image width:"));
        QVERIFY(!dialog.sized()->isChecked());
        QCOMPARE(dialog.width()->text(), QStringLiteral("3"));
        QCOMPARE(dialog.height()->text(), QStringLiteral("1"));
        QCOMPARE(dialog.units()->count(), 2);
        QCOMPARE(dialog.units()->itemText(0), QStringLiteral("inches"));
        QCOMPARE(dialog.units()->itemText(1), QStringLiteral("cm"));
        QCOMPARE(dialog.units()->currentIndex(), 0);
        QCOMPARE(dialog.bordered()->text(), QStringLiteral("Border:"));
        QVERIFY(!dialog.bordered()->isChecked());
        QCOMPARE(dialog.cursor()->text(), QStringLiteral("Show Cursor"));
        QVERIFY(!dialog.cursor()->isChecked());
        QCOMPARE(dialog.find<QPushButton>("captureButton")->text(), QStringLiteral("Capture"));
        QCOMPARE(dialog.find<QPushButton>("browseButton")->text(), QStringLiteral("..."));
    }

    void controlsAreFromTopToBottom() {
        Dialog dialog;
        dialog.control.show();
        int below = -1;
        for (const char* name : {"dirLabel", "nameEditg", "incrementBox", "prevFile", "sizeBox",
                                 "borderCheck", "cursorBox", "captureButton"}) {
            const int y = dialog.find<QWidget>(name)->geometry().center().y();
            QVERIFY2(y > below, name);
            below = y;
        }
    }

    void everyControlCanBeReachedAndNamed() {
        Dialog dialog;
        dialog.control.show();
        for (const char* name :
             {"browseButton", "nameEditg", "incrementBox", "incVal", "sizeBox", "widthEdit",
              "heightEdit", "unitsBox", "borderCheck", "borderBox", "cursorBox", "captureButton"}) {
            auto* widget = dialog.find<QWidget>(name);
            QVERIFY2((widget->focusPolicy() & Qt::TabFocus) != 0, name);
            bool named = !widget->accessibleName().isEmpty() ||
                         qobject_cast<QAbstractButton*>(widget) != nullptr;
            for (const QLabel* label : dialog.control.findChildren<QLabel*>())
                named = named || label->buddy() == widget;
            QVERIFY2(named, name);
        }
    }

    void theCounterNamesFilesAndAdvances() {
        Dialog dialog;
        dialog.counter()->setValue(5);
        QCOMPARE(dialog.captured().fileName, QStringLiteral("/shots/7100Screen_5.pdf"));
        QCOMPARE(dialog.counter()->value(), 6);
        QCOMPARE(dialog.previous()->text(), QStringLiteral("/shots/7100Screen_5.pdf"));
        QCOMPARE(dialog.captured().fileName, QStringLiteral("/shots/7100Screen_6.pdf"));
        QCOMPARE(dialog.counter()->value(), 7);
        QCOMPARE(dialog.previous()->text(), QStringLiteral("/shots/7100Screen_6.pdf"));
    }

    void theCounterAdvancesWithoutAPlaceForIt() {
        Dialog dialog;
        dialog.name()->setText(QStringLiteral("screen.PDF"));
        QCOMPARE(dialog.captured().fileName, QStringLiteral("/shots/screen.PDF.pdf"));
        QCOMPARE(dialog.counter()->value(), 1);
    }

    void withoutIncrementNothingIsReplaced() {
        Dialog dialog;
        dialog.increment()->setChecked(false);
        dialog.counter()->setValue(5);
        QCOMPARE(dialog.captured().fileName, QStringLiteral("/shots/7100Screen_#.pdf"));
        QCOMPARE(dialog.counter()->value(), 5);
    }

    void theCounterStaysAtItsEnd() {
        Dialog dialog;
        dialog.counter()->setValue(999);
        QCOMPARE(dialog.captured().fileName, QStringLiteral("/shots/7100Screen_999.pdf"));
        QCOMPARE(dialog.counter()->value(), 999);
    }

    void sizes_data() {
        QTest::addColumn<bool>("sized");
        QTest::addColumn<QString>("width");
        QTest::addColumn<QString>("height");
        QTest::addColumn<int>("units");
        QTest::addColumn<double>("inchesWide");
        QTest::addColumn<double>("inchesHigh");
        QTest::newRow("inches") << true << "3"
                                << "1" << 0 << 3.0 << 1.0;
        QTest::newRow("cm") << true << "7.62"
                            << "2.54" << 1 << 3.0 << 1.0;
        QTest::newRow("off") << false << "3"
                             << "1" << 0 << 0.0 << 0.0;
        QTest::newRow("fraction") << true << "0.5"
                                  << ".25" << 0 << 0.5 << 0.25;
        QTest::newRow("spaces") << true << " 2 "
                                << "1 " << 0 << 2.0 << 1.0;
        QTest::newRow("unreadable") << true << "three"
                                    << "" << 0 << 0.0 << 0.0;
        QTest::newRow("half readable") << true << "3x"
                                       << "1" << 0 << 0.0 << 1.0;
        QTest::newRow("no lengths") << true << "-3"
                                    << "nan" << 0 << 0.0 << 0.0;
        QTest::newRow("infinite") << true << "inf"
                                  << "1e999" << 1 << 0.0 << 0.0;
    }
    void sizes() {
        QFETCH(const bool, sized);
        QFETCH(const QString, width);
        QFETCH(const QString, height);
        QFETCH(const int, units);
        Dialog dialog;
        dialog.sized()->setChecked(sized);
        dialog.width()->setText(width);
        dialog.height()->setText(height);
        dialog.units()->setCurrentIndex(units);
        const CaptureInfo info = dialog.captured();
        QTEST(info.width, "inchesWide");
        QTEST(info.height, "inchesHigh");
    }

    void aDecimalCommaIsReadWhereItIsUsed() {
        QLocale::setDefault(QLocale(QLocale::German));
        Dialog dialog;
        dialog.sized()->setChecked(true);
        dialog.width()->setText(QStringLiteral("2,5"));
        dialog.height()->setText(QStringLiteral("1.5"));
        const CaptureInfo info = dialog.captured();
        QLocale::setDefault(QLocale::c());
        QCOMPARE(info.width, 2.5);
        QCOMPARE(info.height, 1.5);
    }

    void borderAndCursorCountWhenChecked() {
        Dialog dialog;
        dialog.border()->setValue(7);
        QCOMPARE(dialog.captured().border, 0);
        dialog.bordered()->setChecked(true);
        QCOMPARE(dialog.captured().border, 7);
        QVERIFY(!dialog.captured().showCursor);
        dialog.cursor()->setChecked(true);
        QVERIFY(dialog.captured().showCursor);
    }

    void browsing_data() {
        QTest::addColumn<bool>("accepted");
        QTest::newRow("accepted") << true;
        QTest::newRow("cancelled") << false;
    }
    void browsing() {
        QFETCH(const bool, accepted);
        const QTemporaryDir start;
        QVERIFY(QDir(start.path()).mkdir(QStringLiteral("shots")));
        Dialog dialog;
        dialog.directory()->setText(start.path() + u'/');
        QString title;
        QString opened;
        QStringList filters;
        QFileDialog::FileMode mode = QFileDialog::AnyFile;
        QTimer::singleShot(0, this, [&] {
            auto* files = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            QVERIFY(files != nullptr);
            title = files->windowTitle();
            opened = files->directory().path();
            filters = files->nameFilters();
            mode = files->fileMode();
            files->selectFile(start.filePath(QStringLiteral("shots")));
            // As the buttons do it: accept() of a file dialog is its own.
            accepted ? static_cast<void>(
                           QMetaObject::invokeMethod(files, "accept", Qt::DirectConnection))
                     : files->reject();
        });
        dialog.find<QPushButton>("browseButton")->click();
        QCOMPARE(title, QStringLiteral("Pick destination directory for .pdf screen shots"));
        QCOMPARE(opened, start.path());
        QCOMPARE(filters, QStringList({QStringLiteral("PDF files (*.pdf)"),
                                       QStringLiteral("All files (*)")}));
        QCOMPARE(mode, QFileDialog::Directory);
        QCOMPARE(dialog.directory()->text(),
                 QDir::toNativeSeparators(accepted ? start.filePath(QStringLiteral("shots/"))
                                                   : start.path() + u'/'));
    }

    void theSettingsComeBack() {
        const auto settings = freshSettings();
        QByteArray params;
        {
            Dialog dialog(settings.get());
            dialog.sized()->setChecked(true);
            dialog.width()->setText(QStringLiteral("8"));
            dialog.height()->setText(QStringLiteral("4"));
            dialog.units()->setCurrentIndex(1);
            dialog.bordered()->setChecked(true);
            dialog.border()->setValue(9);
            dialog.cursor()->setChecked(true);
            dialog.counter()->setValue(77);
            dialog.name()->setText(QStringLiteral("unit3_#"));
            QCOMPARE(dialog.captured().fileName, QStringLiteral("/shots/unit3_77.pdf"));
            dialog.control.show();
            dialog.control.resize(600, 300);
            dialog.control.close();
            params = settings->value(settings_capcon_params).toByteArray();
            QCOMPARE(params, dialog.control.getParams());
        }
        settings->sync();
        QSettings another(QStringLiteral("VESTRA"), QStringLiteral("group7100"));
        CaptureControl next(&another, nullptr);
        QCOMPARE(next.getParams(), params);
        QCOMPARE(next.width(), 600);
        QCOMPARE(next.findChild<QSpinBox*>(QStringLiteral("incVal"))->value(), 78);
        QCOMPARE(next.findChild<QLabel*>(QStringLiteral("prevFile"))->text(),
                 QStringLiteral("/shots/unit3_77.pdf"));
        QCOMPARE(next.findChild<QLabel*>(QStringLiteral("dirLabel"))->text(),
                 QStringLiteral("/shots/"));
    }

    void everyWayOfClosingStores_data() {
        QTest::addColumn<bool>("byKey");
        QTest::newRow("the window is closed") << false;
        QTest::newRow("Escape") << true;
    }
    void everyWayOfClosingStores() {
        QFETCH(const bool, byKey);
        const auto settings = freshSettings();
        Dialog dialog(settings.get());
        dialog.control.show();
        QVERIFY(!settings->contains(settings_capcon_params));
        if (byKey)
            QTest::keyClick(&dialog.control, Qt::Key_Escape);
        else
            dialog.control.close();
        QVERIFY(!dialog.control.isVisible());
        QVERIFY(settings->contains(settings_capcon_params));
        QVERIFY(settings->contains(settings_capcon_geometry));
    }

    void geometryIsStoredOnlyWhileItCanBeSeen() {
        const auto settings = freshSettings();
        Dialog dialog(settings.get());
        dialog.control.saveLocation();
        QVERIFY(settings->contains(QStringLiteral("capcon/params")));
        QVERIFY(!settings->contains(QStringLiteral("capcon/geometry")));
        dialog.control.showMinimized();
        dialog.control.saveLocation();
        QVERIFY(!settings->contains(QStringLiteral("capcon/geometry")));
        dialog.control.showNormal();
        dialog.control.saveLocation();
        QVERIFY(settings->contains(QStringLiteral("capcon/geometry")));
    }

    void withoutSettingsNothingIsStored() {
        Dialog dialog;
        dialog.control.show();
        dialog.control.saveLocation();
        dialog.control.close();
        QVERIFY(!dialog.control.isVisible());
    }

    void anOldRecordLeavesTheNewerControls() {
        Dialog dialog;
        dialog.border()->setValue(3);
        dialog.control.setParams(QByteArray::fromHex("000000020000000001"
                                                     "000000010001"
                                                     "0000000a00000000020035"
                                                     "0000000a00000000020036"
                                                     "000000010001"
                                                     "0000000a00000000020070"
                                                     "000000010000"
                                                     "00000002000000001e"
                                                     "0000000a0000000002006e"
                                                     "0000000a0000000002002f"));
        QVERIFY(dialog.sized()->isChecked());
        QCOMPARE(dialog.height()->text(), QStringLiteral("5"));
        QCOMPARE(dialog.width()->text(), QStringLiteral("6"));
        QVERIFY(dialog.cursor()->isChecked());
        QCOMPARE(dialog.previous()->text(), QStringLiteral("p"));
        QVERIFY(!dialog.increment()->isChecked());
        QCOMPARE(dialog.counter()->value(), 30);
        QCOMPARE(dialog.name()->text(), QStringLiteral("n"));
        QCOMPARE(dialog.directory()->text(), QStringLiteral("/"));
        QCOMPARE(dialog.border()->value(), 3);
        QVERIFY(!dialog.bordered()->isChecked());
        QCOMPARE(dialog.units()->currentIndex(), 0);
    }

    void damagedSettingsLeaveSaneValues_data() {
        QTest::addColumn<QVariant>("params");
        QTest::addColumn<QVariant>("geometry");
        QTest::newRow("wrong types") << QVariant(42) << QVariant(QStringList{"a", "b"});
        QTest::newRow("noise") << QVariant(QByteArray("noise")) << QVariant(QByteArray("noise"));
        QTest::newRow("empty") << QVariant(QByteArray()) << QVariant(QByteArray());
    }
    void damagedSettingsLeaveSaneValues() {
        QFETCH(const QVariant, params);
        QFETCH(const QVariant, geometry);
        const auto settings = freshSettings();
        settings->setValue(settings_capcon_params, params);
        settings->setValue(settings_capcon_geometry, geometry);
        const CaptureControl control(settings.get(), nullptr);
        QCOMPARE(control.getParams(), CaptureControl(nullptr, nullptr).getParams());
    }

    void damagedGeometry_data() {
        QTest::addColumn<QByteArray>("stored");
        QTest::addColumn<bool>("whole");
        Dialog other;
        other.control.setGeometry(60, 70, 700, 400);
        const QByteArray whole = other.control.saveGeometry();
        for (qsizetype length = 0; length < whole.size(); ++length)
            QTest::addRow("cut off after %d bytes", int(length)) << whole.left(length) << false;
        QTest::newRow("whole") << whole << true;
        other.control.setGeometry(-9000, 9000, 700, 400);
        QTest::newRow("off the screen") << other.control.saveGeometry() << true;
    }
    void damagedGeometry() {
        QFETCH(const QByteArray, stored);
        QFETCH(const bool, whole);
        Dialog fresh;
        fresh.control.show();
        const auto settings = freshSettings();
        settings->setValue(settings_capcon_geometry, stored);
        Dialog dialog(settings.get());
        dialog.control.show();
        QCOMPARE(dialog.control.size(), whole ? QSize(700, 400) : fresh.control.size());
        QVERIFY(dialog.control.screen()->availableGeometry().contains(dialog.control.geometry()));
    }

    void aStoredDirectoryIsAPlaceOnTheDisk_data() {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("taken");
        QTest::newRow("empty") << QString() << QStringLiteral("/shots/");
        QTest::newRow("relative") << QStringLiteral("rel/") << QStringLiteral("/shots/");
        QTest::newRow("no separator") << QStringLiteral("/a") << QStringLiteral("/a/");
        QTest::newRow("as it was") << QStringLiteral("/a/") << QStringLiteral("/a/");
    }
    void aStoredDirectoryIsAPlaceOnTheDisk() {
        QFETCH(const QString, stored);
        QFETCH(const QString, taken);
        Dialog before;
        before.directory()->setText(stored);
        Dialog dialog;
        dialog.directory()->setText(QStringLiteral("/shots/"));
        dialog.control.setParams(before.control.getParams());
        QCOMPARE(dialog.directory()->text(), taken);
    }

    void numbersOutOfRangeAreClamped() {
        Dialog dialog;
        dialog.control.setParams(QByteArray::fromHex("000000020000000003"
                                                     "000000010000"
                                                     "0000000a0000000000"
                                                     "0000000a0000000000"
                                                     "000000010000"
                                                     "0000000a0000000000"
                                                     "000000010000"
                                                     "00000002007fffffff"
                                                     "0000000a0000000000"
                                                     "0000000a0000000000"
                                                     "000000020080000000"
                                                     "000000010000"
                                                     "000000020000000007"));
        QCOMPARE(dialog.counter()->value(), 999);
        QCOMPARE(dialog.border()->value(), 0);
        QCOMPARE(dialog.units()->currentIndex(), 0);
    }

    void pathsAreNeverMarkup() {
        Dialog dialog;
        const QString path = QStringLiteral("/a/<b>bold</b>/") + QString(500, u'x');
        dialog.control.show();
        const int width = dialog.control.width();
        dialog.directory()->setText(path);
        dialog.previous()->setText(path);
        QCOMPARE(dialog.directory()->textFormat(), Qt::PlainText);
        QCOMPARE(dialog.previous()->textFormat(), Qt::PlainText);
        dialog.control.adjustSize();
        QCOMPARE(dialog.control.width(), width);
        QCOMPARE(dialog.directory()->text(), path);
    }
};

int main(int argc, char** argv) {
    return runTest<TestCaptureControl>(argc, argv);
}

#include "test_capturecontrol.moc"
