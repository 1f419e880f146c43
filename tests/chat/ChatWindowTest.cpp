#include "ChatWindow.h"
#include "ChatText.h"
#include "TestEnvironment.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSettings>
#include <QSignalSpy>
#include <QTextBlock>
#include <QTextEdit>
#include <QTime>
#include <QWheelEvent>

#include <memory>

/// The chat window, worked as an operator works it.
class ChatWindowTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void isAWindowOfItsOwn();
    void sends_data();
    void sends();
    void sendsWithReturn();
    void sendsWhatWasTyped_data();
    void sendsWhatWasTyped();
    void sendsMarkupAndSpacesAsTyped();
    void keepsLinesEnteredWithReturn();
    void showsReceivedLines();
    void stampsTheLocalTime();
    void receivedTextIsLiteral_data();
    void receivedTextIsLiteral();
    void selectionKeepsItsColour();
    void transcriptCannotBeTypedInto();
    void historyIsBounded();
    void followsTheNewestLine();
    void staysWhereTheOperatorReads();
    void draftSurvivesIncomingLines();
    void draftSurvivesClosing_data();
    void draftSurvivesClosing();
    void draftSurvivesTheWheel();
    void incomingBringsTheWindowUp_data();
    void incomingBringsTheWindowUp();
    void incomingKeepsTheKeyboardInTheDraft();
    void firstSize();
    void damagedGeometry_data();
    void damagedGeometry();
    void geometryIsRestored();
    void geometryIsSavedOnlyOnClosing();
    void minimisedWindowKeepsTheGeometryBefore();
    void hiddenWindowSavesNothing();
    void escapeClosesLikeTheButton();
    void worksByKeyboard();
    void everyControlHasAName();
    void linesAreReadableOnDarkWindows();
    void longLinesDoNotWidenTheWindow();

private:
    QComboBox* input() const { return m_chat->findChild<QComboBox*>(); }
    QPushButton* sendButton() const { return m_chat->findChild<QPushButton*>(); }
    QTextEdit* transcript() const { return m_chat->findChild<QTextEdit*>(); }
    QStringList lines() const { return transcript()->toPlainText().split(QLatin1Char('\n')); }
    /// The lines without the time stamps that they all must have.
    QStringList unstamped() const {
        static const QRegularExpression stamp(QStringLiteral("^[0-2]\\d:[0-5]\\d:[0-5]\\d "));
        QStringList texts;
        for (const QString& line : lines()) {
            texts.append(line.contains(stamp) ? line.mid(9) : QStringLiteral("no stamp: ") + line);
        }
        return texts;
    }
    QColor colorOf(int line) const {
        const QTextBlock block = transcript()->document()->findBlockByNumber(line);
        return block.begin().fragment().charFormat().foreground().color();
    }
    void showActive() const {
        m_chat->show();
        m_chat->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_chat.get()));
    }
    void type(const QString& text) const { QTest::keyClicks(m_chat->focusWidget(), text); }
    void reopen() {
        m_chat.reset();
        m_chat = std::make_unique<ChatWindow>(m_settings.get(), m_owner.get());
    }

    std::unique_ptr<QWidget> m_owner;
    std::unique_ptr<QSettings> m_settings;
    std::unique_ptr<ChatWindow> m_chat;
};

void ChatWindowTest::init() {
    m_owner = std::make_unique<QWidget>();
    m_owner->show();
    m_settings = std::make_unique<QSettings>(QStringLiteral("VESTRA"), QStringLiteral("group7100"));
    m_settings->clear();
    m_chat = std::make_unique<ChatWindow>(m_settings.get(), m_owner.get());
}

void ChatWindowTest::cleanup() {
    m_chat.reset();
    m_owner.reset();
}

void ChatWindowTest::isAWindowOfItsOwn() {
    QCOMPARE(m_chat->windowTitle(), QStringLiteral("Chat Window"));
    QVERIFY(m_chat->windowFlags().testFlag(Qt::Window));
    QCOMPARE(m_chat->parentWidget(), m_owner.get());
    QVERIFY(!m_chat->isModal());
    QVERIFY(input()->isEditable());
    QCOMPARE(input()->insertPolicy(), QComboBox::InsertAtBottom);
    QCOMPARE(sendButton()->text(), QStringLiteral("Send"));
    QCOMPARE(sendButton()->sizePolicy(), QSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed));
    showActive();
    QCOMPARE(m_chat->focusWidget(), input());
    QVERIFY(input()->width() > sendButton()->width());
    QVERIFY(input()->geometry().right() < sendButton()->geometry().left());
    QVERIFY(input()->geometry().bottom() < transcript()->geometry().top());
}

void ChatWindowTest::sends_data() {
    QTest::addColumn<QString>("text");
    QTest::newRow("words") << "hello North";
    QTest::newRow("nothing") << "";
    QTest::newRow("a space") << " ";
}

void ChatWindowTest::sends() {
    QFETCH(QString, text);
    QSignalSpy sent(m_chat.get(), &ChatWindow::sendChat);
    showActive();
    type(text);
    QTest::mouseClick(sendButton(), Qt::LeftButton);
    QCOMPARE(sent.size(), 1);
    QCOMPARE(sent.at(0).at(0).toString(), text);
    QCOMPARE(unstamped(), QStringList{text});
    QCOMPARE(colorOf(0), QColor(0, 0, 255));
    QCOMPARE(input()->currentText(), QString());
    QCOMPARE(input()->count(), 0);
}

void ChatWindowTest::sendsWithReturn() {
    QSignalSpy sent(m_chat.get(), &ChatWindow::sendChat);
    showActive();
    for (const auto key : {Qt::Key_Return, Qt::Key_Enter}) {
        type(QStringLiteral("hello"));
        QTest::keyClick(m_chat->focusWidget(), key);
    }
    QCOMPARE(sent.size(), 2);
    QCOMPARE(unstamped(), (QStringList{QStringLiteral("hello"), QStringLiteral("hello")}));
    QCOMPARE(input()->currentText(), QString());
}

void ChatWindowTest::sendsWhatWasTyped_data() {
    QTest::addColumn<QStringList>("typed");
    QTest::newRow("start of an earlier line")
        << QStringList{QStringLiteral("okay, start"), QStringLiteral("ok")};
    QTest::newRow("earlier line in another case")
        << QStringList{QStringLiteral("stop"), QStringLiteral("STOP"), QStringLiteral("Stop")};
    QTest::newRow("earlier line in another case, after others")
        << QStringList{QStringLiteral("stop"), QStringLiteral("go"), QStringLiteral("STOP")};
    QTest::newRow("same line again")
        << QStringList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("a")};
}

void ChatWindowTest::sendsWhatWasTyped() {
    QFETCH(QStringList, typed);
    showActive();
    for (const QString& line : typed) {
        type(line);
        QTest::keyClick(m_chat->focusWidget(), Qt::Key_Return);
    }
    QCOMPARE(unstamped(), typed);
}

void ChatWindowTest::sendsMarkupAndSpacesAsTyped() {
    QSignalSpy sent(m_chat.get(), &ChatWindow::sendChat);
    showActive();
    type(QStringLiteral("  <b>a & b</b>"));
    sendButton()->click();
    QCOMPARE(sent.at(0).at(0).toString(), QStringLiteral("  <b>a & b</b>"));
    QCOMPARE(unstamped(), QStringList{QStringLiteral("  <b>a & b</b>")});
}

void ChatWindowTest::keepsLinesEnteredWithReturn() {
    showActive();
    type(QStringLiteral("first"));
    QTest::keyClick(m_chat->focusWidget(), Qt::Key_Return);
    type(QStringLiteral("second"));
    QTest::keyClick(m_chat->focusWidget(), Qt::Key_Return);
    type(QStringLiteral("clicked"));
    QTest::mouseClick(sendButton(), Qt::LeftButton);
    QCOMPARE(input()->count(), 2);
    QCOMPARE(input()->itemText(0), QStringLiteral("first"));
    QCOMPARE(input()->itemText(1), QStringLiteral("second"));
}

void ChatWindowTest::showsReceivedLines() {
    QSignalSpy sent(m_chat.get(), &ChatWindow::sendChat);
    m_chat->incoming(QStringLiteral("hello base"));
    m_chat->sendLine();
    m_chat->incoming(QString());
    QCOMPARE(unstamped(), (QStringList{QStringLiteral("hello base"), QString(), QString()}));
    QCOMPARE(colorOf(0), QColor(255, 0, 0));
    QCOMPARE(colorOf(1), QColor(0, 0, 255));
    QCOMPARE(colorOf(2), QColor(255, 0, 0));
    QCOMPARE(sent.size(), 1);
}

void ChatWindowTest::stampsTheLocalTime() {
    const QString before = QTime::currentTime().toString(QStringLiteral("hh:mm:ss"));
    m_chat->incoming(QStringLiteral("x"));
    const QString after = QTime::currentTime().toString(QStringLiteral("hh:mm:ss"));
    const QString line = lines().constFirst();
    // Between the two, midnight allowed for.
    QVERIFY(before <= after ? (line >= before && line.left(8) <= after)
                            : (line >= before || line.left(8) <= after));
    QCOMPARE(line.mid(8), QStringLiteral(" x"));
}

void ChatWindowTest::receivedTextIsLiteral_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    QTest::newRow("bold") << "<b>bold</b>"
                          << "<b>bold</b>";
    QTest::newRow("document") << "<html><body>x</body></html>"
                              << "<html><body>x</body></html>";
    QTest::newRow("image") << "<img src=\"file:///etc/passwd\">"
                           << "<img src=\"file:///etc/passwd\">";
    QTest::newRow("entity") << "a &lt; b"
                            << "a &lt; b";
    QTest::newRow("spaces") << "  two  spaces  "
                            << "  two  spaces  ";
    QTest::newRow("control characters") << "\x1b[31m\x07"
                                        << "^[[31m^G";
}

void ChatWindowTest::receivedTextIsLiteral() {
    QFETCH(QString, text);
    m_chat->incoming(text);
    QTEST(unstamped().constFirst(), "shown");
    QCOMPARE(transcript()->document()->blockCount(), 1);
}

void ChatWindowTest::selectionKeepsItsColour() {
    m_chat->sendLine();
    transcript()->selectAll();
    m_chat->incoming(QStringLiteral("x"));
    QCOMPARE(colorOf(0), QColor(0, 0, 255));
    QCOMPARE(colorOf(1), QColor(255, 0, 0));
    QVERIFY(transcript()->textCursor().hasSelection());
}

void ChatWindowTest::transcriptCannotBeTypedInto() {
    m_chat->incoming(QStringLiteral("x"));
    showActive();
    transcript()->setFocus();
    QTest::keyClicks(transcript(), QStringLiteral("forged"));
    QTest::keyClick(transcript(), Qt::Key_Delete);
    QCOMPARE(unstamped(), QStringList{QStringLiteral("x")});
}

void ChatWindowTest::historyIsBounded() {
    constexpr int kOver = 10;
    for (int line = 0; line < ChatWindow::kMostLines + kOver; ++line) {
        m_chat->incoming(QString::number(line));
    }
    QCOMPARE(transcript()->document()->blockCount(), ChatWindow::kMostLines);
    QCOMPARE(unstamped().constFirst(), QString::number(kOver));
    QCOMPARE(unstamped().constLast(), QString::number(ChatWindow::kMostLines + kOver - 1));
    QVERIFY(!transcript()->document()->isUndoAvailable());
}

void ChatWindowTest::followsTheNewestLine() {
    constexpr int kMoreThanFits = 100;
    const auto atEnd = [this] {
        const QScrollBar* const bar = transcript()->verticalScrollBar();
        return bar->maximum() > 0 && bar->value() == bar->maximum();
    };
    // Received while hidden, and received while shown.
    for (int line = 0; line < kMoreThanFits; ++line) {
        m_chat->incoming(QString::number(line));
    }
    m_chat->show();
    QTRY_VERIFY(atEnd());
    m_chat->incoming(QStringLiteral("last"));
    QTRY_VERIFY(atEnd());
}

void ChatWindowTest::staysWhereTheOperatorReads() {
    constexpr int kMoreThanFits = 100;
    m_chat->show();
    for (int line = 0; line < kMoreThanFits; ++line) {
        m_chat->incoming(QString::number(line));
    }
    QScrollBar* const bar = transcript()->verticalScrollBar();
    QTRY_VERIFY(bar->maximum() > 0);
    bar->setValue(bar->maximum() / 2);
    const int reading = bar->value();
    m_chat->incoming(QStringLiteral("last"));
    QCoreApplication::processEvents();
    QCOMPARE(bar->value(), reading);
}

void ChatWindowTest::draftSurvivesIncomingLines() {
    showActive();
    type(QStringLiteral("half a "));
    m_chat->showWithoutKeyboard();
    m_chat->incoming(QStringLiteral("interrupted"));
    type(QStringLiteral("line"));
    QCOMPARE(input()->currentText(), QStringLiteral("half a line"));
}

void ChatWindowTest::draftSurvivesClosing_data() {
    QTest::addColumn<bool>("byOperator");
    QTest::newRow("opened again by the operator") << true;
    QTest::newRow("opened again by an instrument") << false;
}

void ChatWindowTest::draftSurvivesClosing() {
    QFETCH(bool, byOperator);
    showActive();
    type(QStringLiteral("half a "));
    m_chat->close();
    m_owner->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_owner.get()));
    if (byOperator) {
        m_chat->show();
    } else {
        m_chat->showWithoutKeyboard();
        m_chat->incoming(QStringLiteral("interrupted"));
    }
    showActive();
    type(QStringLiteral("line"));
    QCOMPARE(input()->currentText(), QStringLiteral("half a line"));
}

void ChatWindowTest::draftSurvivesTheWheel() {
    showActive();
    for (const auto& line : {QStringLiteral("one"), QStringLiteral("two")}) {
        type(line);
        QTest::keyClick(m_chat->focusWidget(), Qt::Key_Return);
    }
    type(QStringLiteral("draft"));
    const QPointF middle = input()->rect().center();
    QWheelEvent turn(middle, input()->mapToGlobal(middle), QPoint(), QPoint(0, 120), Qt::NoButton,
                     Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(input(), &turn);
    QCOMPARE(input()->currentText(), QStringLiteral("draft"));
}

void ChatWindowTest::incomingBringsTheWindowUp_data() {
    QTest::addColumn<bool>("minimised");
    QTest::newRow("hidden") << false;
    QTest::newRow("minimised") << true;
}

void ChatWindowTest::incomingBringsTheWindowUp() {
    QFETCH(bool, minimised);
    if (minimised) {
        m_chat->showMinimized();
    }
    m_owner->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_owner.get()));
    m_chat->showWithoutKeyboard();
    QVERIFY(m_chat->isVisible());
    QVERIFY(!m_chat->isMinimized());
    // The operator may want it with the keyboard next time.
    QVERIFY(!m_chat->testAttribute(Qt::WA_ShowWithoutActivating));
    if (minimised) {
        QVERIFY(QTest::qWaitForWindowExposed(m_chat.get()));
        QTRY_VERIFY(m_owner->isActiveWindow());
    }
}

void ChatWindowTest::incomingKeepsTheKeyboardInTheDraft() {
    showActive();
    m_chat->showWithoutKeyboard();
    QCoreApplication::processEvents();
    QVERIFY(m_chat->isActiveWindow());
    QCOMPARE(m_chat->focusWidget(), input());
}

void ChatWindowTest::firstSize() {
    QCOMPARE(m_chat->size(), QSize(400, 200));
}

void ChatWindowTest::damagedGeometry_data() {
    QTest::addColumn<QVariant>("stored");
    QTest::newRow("nothing") << QVariant();
    QTest::newRow("no bytes") << QVariant(QByteArray());
    QTest::newRow("few bytes") << QVariant(QByteArray("\x01\xd9\xd0\xcb", 4));
    QTest::newRow("garbage") << QVariant(QByteArray(66, '\xff'));
    QTest::newRow("a number") << QVariant(7);
    QTest::newRow("a list") << QVariant(QStringList{QStringLiteral("a"), QStringLiteral("b")});
}

void ChatWindowTest::damagedGeometry() {
    QFETCH(QVariant, stored);
    m_settings->setValue(QStringLiteral("chat/geometry"), stored);
    reopen();
    QCOMPARE(m_chat->size(), QSize(400, 200));
}

void ChatWindowTest::geometryIsRestored() {
    m_chat->show();
    m_chat->setGeometry(60, 70, 500, 300);
    m_chat->close();
    QVERIFY(!m_chat->isVisible());
    m_settings->sync();
    m_settings = std::make_unique<QSettings>(QStringLiteral("VESTRA"), QStringLiteral("group7100"));
    QCOMPARE(m_settings->value(QStringLiteral("chat/geometry")).typeId(),
             int(QMetaType::QByteArray));
    reopen();
    QCOMPARE(m_chat->geometry(), QRect(60, 70, 500, 300));
}

void ChatWindowTest::geometryIsSavedOnlyOnClosing() {
    m_chat->show();
    m_chat->resize(500, 300);
    m_chat->hide();
    m_chat->show();
    reopen();
    QVERIFY(!m_settings->contains(QStringLiteral("chat/geometry")));
}

void ChatWindowTest::minimisedWindowKeepsTheGeometryBefore() {
    m_chat->show();
    m_chat->setGeometry(60, 70, 500, 300);
    m_chat->close();
    m_chat->show();
    m_chat->setGeometry(10, 20, 600, 400);
    m_chat->showMinimized();
    m_chat->close();
    reopen();
    QCOMPARE(m_chat->geometry(), QRect(60, 70, 500, 300));
}

void ChatWindowTest::hiddenWindowSavesNothing() {
    m_chat->saveLocation();
    QVERIFY(!m_settings->contains(QStringLiteral("chat/geometry")));
}

void ChatWindowTest::escapeClosesLikeTheButton() {
    showActive();
    type(QStringLiteral("draft"));
    QTest::keyClick(m_chat->focusWidget(), Qt::Key_Escape);
    QVERIFY(!m_chat->isVisible());
    QVERIFY(m_settings->contains(QStringLiteral("chat/geometry")));
    QCOMPARE(input()->currentText(), QStringLiteral("draft"));
}

void ChatWindowTest::worksByKeyboard() {
    QSignalSpy sent(m_chat.get(), &ChatWindow::sendChat);
    showActive();
    type(QStringLiteral("typed"));
    const QList<QWidget*> order{sendButton(), transcript(), input()};
    for (const QWidget* next : order) {
        QTest::keyClick(m_chat->focusWidget(), Qt::Key_Tab);
        QCOMPARE(m_chat->focusWidget(), next);
    }
    QTest::keyClick(m_chat->focusWidget(), Qt::Key_Tab);
    QTest::keyClick(m_chat->focusWidget(), Qt::Key_Space);
    QCOMPARE(sent.size(), 1);
    QCOMPARE(sent.at(0).at(0).toString(), QStringLiteral("typed"));
}

void ChatWindowTest::everyControlHasAName() {
    QVERIFY(!input()->accessibleName().isEmpty());
    QVERIFY(!transcript()->accessibleName().isEmpty());
    QVERIFY(!sendButton()->text().isEmpty());
}

void ChatWindowTest::linesAreReadableOnDarkWindows() {
    const auto ground = [this] {
        return transcript()->viewport()->palette().color(QPalette::Base).lightness();
    };
    QVERIFY(ground() > 200);
    QPalette dark;
    dark.setColor(QPalette::Base, Qt::black);
    dark.setColor(QPalette::Text, Qt::white);
    const QPalette before = QApplication::palette();
    QApplication::setPalette(dark);
    QTRY_COMPARE(m_chat->palette().color(QPalette::Base), QColor(Qt::black));
    QTRY_VERIFY(ground() > 200);
    reopen();
    QVERIFY(ground() > 200);
    QApplication::setPalette(before);
}

void ChatWindowTest::longLinesDoNotWidenTheWindow() {
    showActive();
    const int before = m_chat->minimumSizeHint().width();
    input()->addItem(QString(kLongestChatLine, QLatin1Char('x')));
    m_chat->incoming(QString(kLongestChatLine, QLatin1Char('x')));
    QCOMPARE(m_chat->minimumSizeHint().width(), before);
    QCOMPARE(m_chat->size(), QSize(400, 200));
    QCOMPARE(transcript()->horizontalScrollBar()->maximum(), 0);
}

int main(int argc, char** argv) {
    return runTest<ChatWindowTest>(argc, argv);
}

#include "ChatWindowTest.moc"
