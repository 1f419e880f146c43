#include "ChatScene.h"
#include "TestEnvironment.h"

#include <QScreen>

namespace {

/// What a window of this size stores.
QByteArray saved() {
    QWidget window;
    window.setGeometry(60, 70, 500, 300);
    return window.saveGeometry();
}

} // namespace

/// Where the chat window is, when it comes and when it goes.
class ChatWindowPlaceTest : public QObject {
    Q_OBJECT

private slots:
    void init() { m_scene = std::make_unique<ChatScene>(); }
    void cleanup() { m_scene.reset(); }
    void draftSurvivesClosing_data();
    void draftSurvivesClosing();
    void incomingBringsTheWindowUp_data();
    void incomingBringsTheWindowUp();
    void incomingKeepsTheKeyboardInTheDraft();
    void firstSize();
    void damagedGeometry_data();
    void damagedGeometry();
    void smallestGeometryIsRestored();
    void geometryOffTheScreen();
    void geometryIsRestored();
    void geometryIsSavedOnlyOnClosing();
    void minimisedWindowKeepsTheGeometryBefore();
    void hiddenWindowSavesNothing();
    void escapeClosesLikeTheButton();

private:
    std::unique_ptr<ChatScene> m_scene;
};

void ChatWindowPlaceTest::draftSurvivesClosing_data() {
    QTest::addColumn<bool>("byOperator");
    QTest::newRow("opened again by the operator") << true;
    QTest::newRow("opened again by an instrument") << false;
}

void ChatWindowPlaceTest::draftSurvivesClosing() {
    QFETCH(bool, byOperator);
    m_scene->showActive();
    m_scene->type(QStringLiteral("half a "));
    m_scene->chat->close();
    m_scene->owner.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_scene->owner));
    if (byOperator) {
        m_scene->chat->show();
    } else {
        m_scene->chat->showWithoutKeyboard();
        m_scene->chat->incoming(QStringLiteral("interrupted"));
    }
    m_scene->showActive();
    m_scene->type(QStringLiteral("line"));
    QCOMPARE(m_scene->input()->currentText(), QStringLiteral("half a line"));
}

void ChatWindowPlaceTest::incomingBringsTheWindowUp_data() {
    QTest::addColumn<bool>("minimised");
    QTest::newRow("hidden") << false;
    QTest::newRow("minimised") << true;
}

void ChatWindowPlaceTest::incomingBringsTheWindowUp() {
    QFETCH(bool, minimised);
    if (minimised) {
        m_scene->chat->showMinimized();
    }
    m_scene->owner.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_scene->owner));
    m_scene->chat->showWithoutKeyboard();
    QVERIFY(m_scene->chat->isVisible());
    QVERIFY(!m_scene->chat->isMinimized());
    // The operator may want it with the keyboard next time.
    QVERIFY(!m_scene->chat->testAttribute(Qt::WA_ShowWithoutActivating));
    if (minimised) {
        QVERIFY(QTest::qWaitForWindowExposed(m_scene->chat.get()));
        QTRY_VERIFY(m_scene->owner.isActiveWindow());
    }
}

void ChatWindowPlaceTest::incomingKeepsTheKeyboardInTheDraft() {
    m_scene->showActive();
    m_scene->chat->showWithoutKeyboard();
    QCoreApplication::processEvents();
    QVERIFY(m_scene->chat->isActiveWindow());
    QCOMPARE(m_scene->chat->focusWidget(), m_scene->input());
}

void ChatWindowPlaceTest::firstSize() {
    QCOMPARE(m_scene->chat->size(), QSize(400, 200));
}

void ChatWindowPlaceTest::damagedGeometry_data() {
    QTest::addColumn<QVariant>("stored");
    QTest::newRow("nothing") << QVariant();
    QTest::newRow("no bytes") << QVariant(QByteArray());
    QTest::newRow("few bytes") << QVariant(QByteArray("\x01\xd9\xd0\xcb", 4));
    QTest::newRow("garbage") << QVariant(QByteArray(66, '\xff'));
    for (const int length : {8, 24, 40, 50, 65})
        QTest::addRow("cut off after %d bytes", length) << QVariant(saved().left(length));
    QTest::newRow("a number") << QVariant(7);
    QTest::newRow("a list") << QVariant(QStringList{QStringLiteral("a"), QStringLiteral("b")});
}

void ChatWindowPlaceTest::damagedGeometry() {
    QFETCH(QVariant, stored);
    m_scene->settings.setValue(QStringLiteral("chat/geometry"), stored);
    m_scene->reopen();
    QCOMPARE(m_scene->chat->size(), QSize(400, 200));
}

void ChatWindowPlaceTest::smallestGeometryIsRestored() {
    m_scene->chat->show();
    const QRect smallest(QPoint(60, 70), m_scene->chat->minimumSizeHint());
    QVERIFY(smallest.width() < 400 && smallest.height() < 200);
    m_scene->chat->setGeometry(smallest);
    m_scene->chat->close();
    m_scene->reopen();
    m_scene->chat->show();
    QCOMPARE(m_scene->chat->geometry(), smallest);
}

void ChatWindowPlaceTest::geometryOffTheScreen() {
    QWidget elsewhere;
    elsewhere.setGeometry(9000, 9000, 500, 300);
    m_scene->settings.setValue(QStringLiteral("chat/geometry"), elsewhere.saveGeometry());
    m_scene->reopen();
    m_scene->chat->show();
    QVERIFY(m_scene->chat->screen()->availableGeometry().contains(m_scene->chat->geometry()));
    QCOMPARE(m_scene->chat->size(), QSize(500, 300));
}

void ChatWindowPlaceTest::geometryIsRestored() {
    m_scene->chat->show();
    m_scene->chat->setGeometry(60, 70, 500, 300);
    m_scene->chat->close();
    QVERIFY(!m_scene->chat->isVisible());
    m_scene->settings.sync();
    const QSettings stored(QStringLiteral("VESTRA"), QStringLiteral("group7100"));
    QCOMPARE(stored.value(QStringLiteral("chat/geometry")).typeId(), int(QMetaType::QByteArray));
    m_scene->reopen();
    QCOMPARE(m_scene->chat->geometry(), QRect(60, 70, 500, 300));
}

void ChatWindowPlaceTest::geometryIsSavedOnlyOnClosing() {
    m_scene->chat->show();
    m_scene->chat->resize(500, 300);
    m_scene->chat->hide();
    m_scene->chat->show();
    m_scene->reopen();
    QVERIFY(!m_scene->settings.contains(QStringLiteral("chat/geometry")));
}

void ChatWindowPlaceTest::minimisedWindowKeepsTheGeometryBefore() {
    m_scene->chat->show();
    m_scene->chat->setGeometry(60, 70, 500, 300);
    m_scene->chat->close();
    m_scene->chat->show();
    m_scene->chat->setGeometry(10, 20, 600, 400);
    m_scene->chat->showMinimized();
    m_scene->chat->close();
    m_scene->reopen();
    QCOMPARE(m_scene->chat->geometry(), QRect(60, 70, 500, 300));
}

void ChatWindowPlaceTest::hiddenWindowSavesNothing() {
    m_scene->chat->saveLocation();
    QVERIFY(!m_scene->settings.contains(QStringLiteral("chat/geometry")));
}

void ChatWindowPlaceTest::escapeClosesLikeTheButton() {
    m_scene->showActive();
    m_scene->type(QStringLiteral("draft"));
    QTest::keyClick(m_scene->chat->focusWidget(), Qt::Key_Escape);
    QVERIFY(!m_scene->chat->isVisible());
    QVERIFY(m_scene->settings.contains(QStringLiteral("chat/geometry")));
    QCOMPARE(m_scene->input()->currentText(), QStringLiteral("draft"));
}

int main(int argc, char** argv) {
    return runTest<ChatWindowPlaceTest>(argc, argv);
}

#include "ChatWindowPlaceTest.moc"
