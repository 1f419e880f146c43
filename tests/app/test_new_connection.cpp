#include "ConnectionWidget.h"
#include "LCD7100.h"
#include "ModalDialog.h"
#include "NewConnection.h"
#include "RawInstrument.h"
#include "TestEnvironment.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QScopeGuard>

#include <cerrno>
#include <dlfcn.h>
#include <sys/socket.h>

namespace {

constexpr int patience = 20000;

/// Whether connect() is refused, and how often it has been.
bool isRefusing = false;
int refusals = 0;

/// The dialog and what a test looks at.
struct Dialog {
    template <typename Widget>
    Widget* find(const char* name) {
        auto* child = widget.findChild<Widget*>(QLatin1String(name));
        Q_ASSERT(child);
        return child;
    }
    QComboBox* list() { return find<QComboBox>("etherList"); }
    QLineEdit* label() { return find<QLineEdit>("nameEdit"); }
    QRadioButton* ether() { return find<QRadioButton>("etherButton"); }
    QRadioButton* serial() { return find<QRadioButton>("serialButton"); }
    QDialogButtonBox* buttons() { return find<QDialogButtonBox>("buttonBox"); }

    NewConnection widget;
};

QString nameOf(const ConnectionWidget& tile) {
    return tile.findChild<QLabel*>(QStringLiteral("nameLabel"))->text();
}

} // namespace

/// Stands in front of the system's function of this name, so that attempts can be counted.
extern "C" int connect(int socket, const sockaddr* address, socklen_t length) {
    if (isRefusing && address->sa_family == AF_INET) {
        ++refusals;
        errno = ECONNREFUSED;
        return -1;
    }
    using Connect = int (*)(int, const sockaddr*, socklen_t);
    static const auto next = reinterpret_cast<Connect>(dlsym(RTLD_NEXT, "connect"));
    return next(socket, address, length);
}

class TestNewConnection : public QObject {
    Q_OBJECT

private slots:
    void form();
    void okIsAlwaysEnabled();
    void buttonsEndTheDialog();
    void remakingANetworkConnection();
    void remakingWithoutHost();
    void connectsToTheTypedAddress_data();
    void connectsToTheTypedAddress();
    void typedAddressSurvivesRemaking();
    void nothingChosen_data();
    void nothingChosen();
    void refusedTwiceIsToldOnce();
    void aRefusingInstrumentIsTriedTwice();
    void whatIsNoAddressIsTold();
};

void TestNewConnection::form() {
    Dialog dialog;
    QCOMPARE(dialog.widget.windowTitle(), QStringLiteral("New Connection"));
    QCOMPARE(dialog.find<QLabel>("label")->text(), QStringLiteral("Screen Label"));
    QCOMPARE(dialog.ether()->text(), QStringLiteral("Ethernet"));
    QCOMPARE(dialog.serial()->text(), QStringLiteral("RS-232"));
    QVERIFY(dialog.ether()->isChecked());
    QVERIFY(dialog.list()->isEditable());
    QVERIFY(!dialog.find<QComboBox>("serialPorts")->isEditable());
    QCOMPARE(dialog.label()->text(), QString());
    QCOMPARE(dialog.buttons()->standardButtons(), QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
}

void TestNewConnection::okIsAlwaysEnabled() {
    Dialog dialog;
    const auto* ok = dialog.buttons()->button(QDialogButtonBox::Ok);
    QVERIFY(ok->isEnabled());
    dialog.list()->setEditText({});
    QVERIFY(ok->isEnabled());
    dialog.list()->setEditText(QStringLiteral("no address"));
    QVERIFY(ok->isEnabled());
}

void TestNewConnection::buttonsEndTheDialog() {
    for (const auto button : {QDialogButtonBox::Ok, QDialogButtonBox::Cancel}) {
        Dialog dialog;
        dialog.widget.show();
        dialog.buttons()->button(button)->click();
        QVERIFY(!dialog.widget.isVisible());
        QCOMPARE(dialog.widget.result(),
                 button == QDialogButtonBox::Ok ? int(QDialog::Accepted) : int(QDialog::Rejected));
    }
}

void TestNewConnection::remakingANetworkConnection() {
    Dialog dialog;
    dialog.widget.setFor(false, QStringLiteral("North"), QStringLiteral("unit3"));
    QCOMPARE(dialog.widget.windowTitle(), QStringLiteral("Remake Connection"));
    QVERIFY(dialog.ether()->isChecked());
    QCOMPARE(dialog.label()->text(), QStringLiteral("North"));
    QCOMPARE(dialog.list()->currentText(), QStringLiteral("unit3"));
}

void TestNewConnection::remakingWithoutHost() {
    Dialog dialog;
    const QString offered = dialog.list()->currentText();
    dialog.widget.setFor(false, {}, {});
    QCOMPARE(dialog.widget.windowTitle(), QStringLiteral("Remake Connection"));
    QCOMPARE(dialog.list()->currentText(), offered);
}

void TestNewConnection::connectsToTheTypedAddress_data() {
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("before");

    QTest::newRow("with a label") << QStringLiteral("North") << QStringLiteral("North@");
    QTest::newRow("without") << QString() << QString();
}

void TestNewConnection::connectsToTheTypedAddress() {
    QFETCH(const QString, label);
    QFETCH(const QString, before);
    RawInstrument instrument;
    ConnectionWidget tile;
    Dialog dialog;
    dialog.label()->setText(label);
    dialog.list()->setEditText(instrument.address());
    dialog.widget.makeConnection(&tile);
    QCOMPARE(nameOf(tile), before + instrument.address());
    QTRY_VERIFY_WITH_TIMEOUT(instrument.isConnected(), patience);
    QVERIFY(tile.IsConnected());

    // The second request never leaves the queue.
    tile.Disconnect();
    QTRY_VERIFY_WITH_TIMEOUT(!instrument.isConnected(), patience);
    QVERIFY(!tile.IsConnected());
    QCOMPARE(instrument.connectionsMade(), 1);
}

void TestNewConnection::typedAddressSurvivesRemaking() {
    RawInstrument instrument;
    ConnectionWidget tile;
    Dialog dialog;
    dialog.widget.setFor(false, QStringLiteral("North"), instrument.address());
    dialog.widget.makeConnection(&tile);
    QTRY_VERIFY_WITH_TIMEOUT(instrument.isConnected(), patience);
    QCOMPARE(nameOf(tile), QStringLiteral("North@") + instrument.address());
}

void TestNewConnection::nothingChosen_data() {
    QTest::addColumn<bool>("untouched");
    QTest::addColumn<QString>("typed");

    QTest::newRow("last row as it was") << true << QString();
    QTest::newRow("text deleted") << false << QString();
}

void TestNewConnection::nothingChosen() {
    QFETCH(const bool, untouched);
    QFETCH(const QString, typed);
    ConnectionWidget tile;
    Dialog dialog;
    if (!untouched)
        dialog.list()->setEditText(typed);
    const ModalDialog<QDialog> box([](QDialog& unwanted) { unwanted.reject(); });
    dialog.label()->setText(QStringLiteral("North"));
    dialog.widget.makeConnection(&tile);
    QVERIFY(!tile.IsConnected());
    QCOMPARE(nameOf(tile), QStringLiteral("TextLabel"));
    QCoreApplication::processEvents();
    QVERIFY(!box.answered());
    // Nor does it have a link to send by.
    tile.setSendState(true);
    QCOMPARE(tile.frameShape(), QFrame::Panel);
}

void TestNewConnection::refusedTwiceIsToldOnce() {
    RawInstrument instrument;
    instrument.stopListening();
    ConnectionWidget tile;
    Dialog dialog;
    dialog.list()->setEditText(instrument.address());
    int boxes = 0;
    QString title;
    const ModalDialog<QMessageBox> box([&](QMessageBox& shown) {
        ++boxes;
        title = shown.windowTitle();
        shown.accept();
    });
    dialog.widget.makeConnection(&tile);
    QTRY_VERIFY_WITH_TIMEOUT(box.answered(), patience);
    QTRY_VERIFY_WITH_TIMEOUT(!tile.IsConnected(), patience);
    QCOMPARE(boxes, 1);
    QCOMPARE(title, QStringLiteral("Connect GX-7100"));
    QCOMPARE(nameOf(tile), instrument.address());
}

void TestNewConnection::aRefusingInstrumentIsTriedTwice() {
    const QString address = loopback::someAddress().toString();
    isRefusing = true;
    const auto listenAgain = qScopeGuard([] { isRefusing = false; });

    // A socket may have reasons of its own to ask more than once for one attempt.
    refusals = 0;
    QTcpSocket once;
    once.connectToHost(address, loopback::instrumentPort);
    QTRY_COMPARE_WITH_TIMEOUT(once.error(), QAbstractSocket::ConnectionRefusedError, patience);
    const int forOneAttempt = refusals;
    QVERIFY(forOneAttempt > 0);

    refusals = 0;
    ConnectionWidget tile;
    Dialog dialog;
    dialog.list()->setEditText(address);
    const ModalDialog<QMessageBox> box([](QMessageBox& shown) { shown.accept(); });
    dialog.widget.makeConnection(&tile);
    QTRY_VERIFY_WITH_TIMEOUT(box.answered(), patience);
    QCOMPARE(refusals, 2 * forOneAttempt);
}

void TestNewConnection::whatIsNoAddressIsTold() {
    ConnectionWidget tile;
    Dialog dialog;
    dialog.list()->setEditText(QStringLiteral("<b>no address</b>"));
    QString title;
    const ModalDialog<QMessageBox> box([&](QMessageBox& shown) {
        title = shown.windowTitle();
        shown.accept();
    });
    dialog.widget.makeConnection(&tile);
    QTRY_VERIFY_WITH_TIMEOUT(box.answered(), patience);
    QTRY_VERIFY_WITH_TIMEOUT(!tile.IsConnected(), patience);
    QCOMPARE(title, QStringLiteral("Connect GX-7100"));
}

int main(int argc, char** argv) {
    return runTest<TestNewConnection>(argc, argv);
}

#include "test_new_connection.moc"
