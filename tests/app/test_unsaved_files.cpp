// Files that came from an instrument and are not saved yet are not lost without being asked about.

#include "ConnectGX7100Serial.h"
#include "HelpLinks.h"
#include "ModalDialog.h"
#include "TestEnvironment.h"
#include "WindowUnderTest.h"

#include <QMessageBox>
#include <QPushButton>
#include <QToolButton>

namespace {

/// A tile to which an instrument called `label` has sent a file before its line went.
void receiveFile(ConnectionWidget* tile, const QString& label) {
    auto* link = new ConnectGX7100Serial(tile);
    tile->connectSerial(label, link, QStringLiteral("/dev/none"));
    emit link->signalFrom(std::string("\0\0\0\0FXFRcontents", 16));
}

void answer(QMessageBox& box, const QString& names, QMessageBox::StandardButton choice) {
    QCOMPARE(box.text(), QStringLiteral("Files that have arrived are not saved yet:\n%1\n"
                                        "Throw them away?")
                             .arg(names));
    QCOMPARE(box.textFormat(), Qt::PlainText);
    QCOMPARE(box.defaultButton(), box.button(QMessageBox::Cancel));
    box.button(choice)->click();
}

} // namespace

class TestUnsavedFiles : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        Q_INIT_RESOURCE(group);
        newsSource.clear();
    }
    void init() { QSettings("VESTRA", "group7100").setValue("group/count", 3); }
    void quitting_data() { choices(); }
    void quitting();
    void removingATile_data() { choices(); }
    void removingATile();
    void theQuestionComesBeforeTheLinesAreDropped();
    void savedOrThrownAwayNothingIsAsked();

private:
    static void choices() {
        QTest::addColumn<QMessageBox::StandardButton>("choice");
        QTest::newRow("thrown away") << QMessageBox::Discard;
        QTest::newRow("kept") << QMessageBox::Cancel;
    }
};

void TestUnsavedFiles::quitting() {
    QFETCH(const QMessageBox::StandardButton, choice);
    const Window window;
    window.widget->show();
    receiveFile(window.tile(0, 0), QStringLiteral("<b>North"));
    receiveFile(window.tile(1, 0), QString());
    const ModalDialog<QMessageBox> box([choice](QMessageBox& shown) {
        answer(shown, QStringLiteral("<b>North@/dev/none\n/dev/none"), choice);
    });
    QCOMPARE(window.widget->close(), choice == QMessageBox::Discard);
    QVERIFY(box.answered());
    QVERIFY(window.tile(0, 0)->hasUnsavedFiles());
}

void TestUnsavedFiles::removingATile() {
    QFETCH(const QMessageBox::StandardButton, choice);
    const Window window;
    window.widget->show();
    receiveFile(window.tile(0, 0), QStringLiteral("North"));
    receiveFile(window.tile(0, 1), QStringLiteral("South"));
    const ModalDialog<QMessageBox> box(
        [choice](QMessageBox& shown) { answer(shown, QStringLiteral("South@/dev/none"), choice); });
    window.tile(0, 1)->suicide();
    QVERIFY(box.answered());
    QCOMPARE(window.grid()->count(), choice == QMessageBox::Discard ? 2 : 3);
}

void TestUnsavedFiles::theQuestionComesBeforeTheLinesAreDropped() {
    const Window window;
    window.widget->show();
    receiveFile(window.tile(0, 0), QStringLiteral("North"));
    const FakeLink* link = Window::connectTile(window.tile(0, 1));
    const ModalDialog<QMessageBox> box([](QMessageBox& shown) {
        answer(shown, QStringLiteral("North@/dev/none"), QMessageBox::Cancel);
    });
    QVERIFY(!window.widget->close());
    QVERIFY(box.answered());
    QVERIFY(link->calls.empty());
}

void TestUnsavedFiles::savedOrThrownAwayNothingIsAsked() {
    const Window window;
    window.widget->show();
    receiveFile(window.tile(0, 0), QStringLiteral("North"));
    window.tile(0, 0)->findChild<QToolButton*>(QStringLiteral("cancelBtn"))->click();
    QVERIFY(!window.tile(0, 0)->hasUnsavedFiles());
    const ModalDialog<QMessageBox> box([](QMessageBox& unwanted) { unwanted.reject(); });
    window.tile(0, 0)->suicide();
    QVERIFY(window.widget->close());
    QVERIFY(!box.answered());
}

int main(int argc, char** argv) {
    return runTest<TestUnsavedFiles>(argc, argv);
}

#include "test_unsaved_files.moc"
