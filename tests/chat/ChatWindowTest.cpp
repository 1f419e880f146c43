#include "ChatScene.h"
#include "ChatText.h"
#include "TestEnvironment.h"

#include <QLineEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTime>
#include <QWheelEvent>

/// The chat window, worked as an operator works it.
class ChatWindowTest : public QObject {
    Q_OBJECT

private slots:
    void init() { m_scene = std::make_unique<ChatScene>(); }
    void cleanup() { m_scene.reset(); }
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
    void missingLinesAreNoted();
    void selectionKeepsItsColour();
    void transcriptCannotBeTypedInto();
    void historyIsBounded();
    void staysAtTheLineReadWhenTheOldestGo();
    void followsTheNewestLineWhenTheOldestGo();
    void followsTheNewestLine();
    void staysWhereTheOperatorReads();
    void draftSurvivesIncomingLines();
    void draftSurvivesTheWheel();
    void worksByKeyboard();
    void everyControlHasAName();
    void linesAreReadableOnDarkWindows();
    void longLinesDoNotWidenTheWindow();

private:
    std::unique_ptr<ChatScene> m_scene;
};

void ChatWindowTest::isAWindowOfItsOwn() {
    QCOMPARE(m_scene->chat->windowTitle(), QStringLiteral("Chat Window"));
    QVERIFY(m_scene->chat->windowFlags().testFlag(Qt::Window));
    QCOMPARE(m_scene->chat->parentWidget(), &m_scene->owner);
    QVERIFY(!m_scene->chat->isModal());
    QVERIFY(m_scene->input()->isEditable());
    QCOMPARE(m_scene->input()->insertPolicy(), QComboBox::InsertAtBottom);
    QCOMPARE(m_scene->sendButton()->text(), QStringLiteral("Send"));
    QCOMPARE(m_scene->sendButton()->sizePolicy(),
             QSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed));
    m_scene->showActive();
    QCOMPARE(m_scene->chat->focusWidget(), m_scene->input());
    QVERIFY(m_scene->input()->width() > m_scene->sendButton()->width());
    QVERIFY(m_scene->input()->geometry().right() < m_scene->sendButton()->geometry().left());
    QVERIFY(m_scene->input()->geometry().bottom() < m_scene->transcript()->geometry().top());
}

void ChatWindowTest::sends_data() {
    QTest::addColumn<QString>("text");
    QTest::newRow("words") << "hello North";
    QTest::newRow("nothing") << "";
    QTest::newRow("a space") << " ";
}

void ChatWindowTest::sends() {
    QFETCH(QString, text);
    QSignalSpy sent(m_scene->chat.get(), &ChatWindow::sendChat);
    m_scene->showActive();
    m_scene->type(text);
    QTest::mouseClick(m_scene->sendButton(), Qt::LeftButton);
    QCOMPARE(sent.size(), 1);
    QCOMPARE(sent.at(0).at(0).toString(), text);
    QCOMPARE(m_scene->unstamped(), QStringList{text});
    QCOMPARE(m_scene->colorOf(0), QColor(0, 0, 255));
    QCOMPARE(m_scene->input()->currentText(), QString());
    QCOMPARE(m_scene->input()->count(), 0);
}

void ChatWindowTest::sendsWithReturn() {
    QSignalSpy sent(m_scene->chat.get(), &ChatWindow::sendChat);
    m_scene->showActive();
    for (const auto key : {Qt::Key_Return, Qt::Key_Enter}) {
        m_scene->type(QStringLiteral("hello"));
        QTest::keyClick(m_scene->chat->focusWidget(), key);
    }
    QCOMPARE(sent.size(), 2);
    QCOMPARE(m_scene->unstamped(), (QStringList{QStringLiteral("hello"), QStringLiteral("hello")}));
    QCOMPARE(m_scene->input()->currentText(), QString());
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
    m_scene->showActive();
    for (const QString& line : typed) {
        m_scene->type(line);
        QTest::keyClick(m_scene->chat->focusWidget(), Qt::Key_Return);
    }
    QCOMPARE(m_scene->unstamped(), typed);
}

void ChatWindowTest::sendsMarkupAndSpacesAsTyped() {
    QSignalSpy sent(m_scene->chat.get(), &ChatWindow::sendChat);
    m_scene->showActive();
    m_scene->type(QStringLiteral("  <b>a & b</b>"));
    m_scene->sendButton()->click();
    QCOMPARE(sent.at(0).at(0).toString(), QStringLiteral("  <b>a & b</b>"));
    QCOMPARE(m_scene->unstamped(), QStringList{QStringLiteral("  <b>a & b</b>")});
}

void ChatWindowTest::keepsLinesEnteredWithReturn() {
    m_scene->showActive();
    m_scene->type(QStringLiteral("first"));
    QTest::keyClick(m_scene->chat->focusWidget(), Qt::Key_Return);
    m_scene->type(QStringLiteral("second"));
    QTest::keyClick(m_scene->chat->focusWidget(), Qt::Key_Return);
    m_scene->type(QStringLiteral("clicked"));
    QTest::mouseClick(m_scene->sendButton(), Qt::LeftButton);
    QCOMPARE(m_scene->input()->count(), 2);
    QCOMPARE(m_scene->input()->itemText(0), QStringLiteral("first"));
    QCOMPARE(m_scene->input()->itemText(1), QStringLiteral("second"));
}

void ChatWindowTest::showsReceivedLines() {
    QSignalSpy sent(m_scene->chat.get(), &ChatWindow::sendChat);
    m_scene->chat->incoming(QStringLiteral("hello base"));
    m_scene->chat->sendLine();
    m_scene->chat->incoming(QString());
    QCOMPARE(m_scene->unstamped(),
             (QStringList{QStringLiteral("hello base"), QString(), QString()}));
    QCOMPARE(m_scene->colorOf(0), QColor(255, 0, 0));
    QCOMPARE(m_scene->colorOf(1), QColor(0, 0, 255));
    QCOMPARE(m_scene->colorOf(2), QColor(255, 0, 0));
    QCOMPARE(sent.size(), 1);
}

void ChatWindowTest::stampsTheLocalTime() {
    const QString before = QTime::currentTime().toString(QStringLiteral("hh:mm:ss"));
    m_scene->chat->incoming(QStringLiteral("x"));
    const QString after = QTime::currentTime().toString(QStringLiteral("hh:mm:ss"));
    const QString line = m_scene->lines().constFirst();
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
    m_scene->chat->incoming(text);
    QTEST(m_scene->unstamped().constFirst(), "shown");
    QCOMPARE(m_scene->transcript()->document()->blockCount(), 1);
}

void ChatWindowTest::missingLinesAreNoted() {
    m_scene->chat->incoming(QStringLiteral("before"));
    m_scene->chat->noteDropped(17);
    m_scene->chat->incoming(QStringLiteral("after"));
    QCOMPARE(m_scene->unstamped(),
             (QStringList{QStringLiteral("before"),
                          QStringLiteral("[Too many at once: 17 lines from instruments are not "
                                         "shown]"),
                          QStringLiteral("after")}));
    // Nobody has said it.
    QVERIFY(!m_scene->formatOf(1).hasProperty(QTextFormat::ForegroundBrush));
    QCOMPARE(m_scene->colorOf(2), QColor(255, 0, 0));
}

void ChatWindowTest::selectionKeepsItsColour() {
    m_scene->chat->sendLine();
    m_scene->transcript()->selectAll();
    m_scene->chat->incoming(QStringLiteral("x"));
    QCOMPARE(m_scene->colorOf(0), QColor(0, 0, 255));
    QCOMPARE(m_scene->colorOf(1), QColor(255, 0, 0));
    QVERIFY(m_scene->transcript()->textCursor().hasSelection());
}

void ChatWindowTest::transcriptCannotBeTypedInto() {
    m_scene->chat->incoming(QStringLiteral("x"));
    m_scene->showActive();
    m_scene->transcript()->setFocus();
    QTest::keyClicks(m_scene->transcript(), QStringLiteral("forged"));
    QTest::keyClick(m_scene->transcript(), Qt::Key_Delete);
    QCOMPARE(m_scene->unstamped(), QStringList{QStringLiteral("x")});
}

void ChatWindowTest::historyIsBounded() {
    auto say = [this, next = 0](int lines) mutable {
        for (const int last = next + lines; next < last; ++next)
            m_scene->chat->incoming(QString::number(next));
    };
    say(ChatWindow::kMostLines);
    QCOMPARE(m_scene->lines().size(), ChatWindow::kMostLines);
    QCOMPARE(m_scene->unstamped().constFirst(), QStringLiteral("0"));

    say(1);
    constexpr int oldest = ChatWindow::kForgottenAtOnce;
    QStringList kept;
    for (int i = oldest; i <= ChatWindow::kMostLines; ++i)
        kept.append(QString::number(i));
    QCOMPARE(m_scene->unstamped(), kept);
    QCOMPARE(m_scene->colorOf(0), QColor(255, 0, 0));

    say(2 * ChatWindow::kMostLines);
    QVERIFY(m_scene->lines().size() <= ChatWindow::kMostLines);
    QCOMPARE(m_scene->unstamped().constLast(), QString::number(3 * ChatWindow::kMostLines));
    QVERIFY(!m_scene->transcript()->document()->isUndoAvailable());
}

void ChatWindowTest::staysAtTheLineReadWhenTheOldestGo() {
    m_scene->chat->show();
    for (int i = 0; i < ChatWindow::kMostLines; ++i)
        m_scene->chat->incoming(QString::number(i));
    QScrollBar* const bar = m_scene->transcript()->verticalScrollBar();
    QTRY_VERIFY(bar->maximum() > 0);
    bar->setValue(bar->maximum() / 2);
    const auto lineAtTheTop = [this] {
        return m_scene->transcript()->cursorForPosition({}).block().text();
    };
    const QString reading = lineAtTheTop();
    m_scene->chat->incoming(QStringLiteral("one too many"));
    QCoreApplication::processEvents();
    QCOMPARE(m_scene->lines().size(), ChatWindow::kMostLines + 1 - ChatWindow::kForgottenAtOnce);
    QCOMPARE(lineAtTheTop(), reading);
}

void ChatWindowTest::followsTheNewestLineWhenTheOldestGo() {
    m_scene->chat->show();
    for (int i = 0; i <= ChatWindow::kMostLines; ++i)
        m_scene->chat->incoming(QString::number(i));
    const QScrollBar* const bar = m_scene->transcript()->verticalScrollBar();
    QTRY_VERIFY(bar->maximum() > 0 && bar->value() == bar->maximum());
    m_scene->chat->incoming(QStringLiteral("last"));
    QTRY_COMPARE(bar->value(), bar->maximum());
}

void ChatWindowTest::followsTheNewestLine() {
    constexpr int kMoreThanFits = 100;
    const auto atEnd = [this] {
        const QScrollBar* const bar = m_scene->transcript()->verticalScrollBar();
        return bar->maximum() > 0 && bar->value() == bar->maximum();
    };
    // Received while hidden, and received while shown.
    for (int line = 0; line < kMoreThanFits; ++line) {
        m_scene->chat->incoming(QString::number(line));
    }
    m_scene->chat->show();
    QTRY_VERIFY(atEnd());
    m_scene->chat->incoming(QStringLiteral("last"));
    QTRY_VERIFY(atEnd());
}

void ChatWindowTest::staysWhereTheOperatorReads() {
    constexpr int kMoreThanFits = 100;
    m_scene->chat->show();
    for (int line = 0; line < kMoreThanFits; ++line) {
        m_scene->chat->incoming(QString::number(line));
    }
    QScrollBar* const bar = m_scene->transcript()->verticalScrollBar();
    QTRY_VERIFY(bar->maximum() > 0);
    bar->setValue(bar->maximum() / 2);
    const int reading = bar->value();
    m_scene->chat->incoming(QStringLiteral("last"));
    QCoreApplication::processEvents();
    QCOMPARE(bar->value(), reading);
}

void ChatWindowTest::draftSurvivesIncomingLines() {
    m_scene->showActive();
    m_scene->type(QStringLiteral("half a "));
    m_scene->chat->showWithoutKeyboard();
    m_scene->chat->incoming(QStringLiteral("interrupted"));
    m_scene->type(QStringLiteral("line"));
    QCOMPARE(m_scene->input()->currentText(), QStringLiteral("half a line"));
}

void ChatWindowTest::draftSurvivesTheWheel() {
    m_scene->showActive();
    for (const auto& line : {QStringLiteral("one"), QStringLiteral("two")}) {
        m_scene->type(line);
        QTest::keyClick(m_scene->chat->focusWidget(), Qt::Key_Return);
    }
    m_scene->type(QStringLiteral("draft"));
    const QPointF middle = m_scene->input()->rect().center();
    QWheelEvent turn(middle, m_scene->input()->mapToGlobal(middle), QPoint(), QPoint(0, 120),
                     Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(m_scene->input(), &turn);
    QCOMPARE(m_scene->input()->currentText(), QStringLiteral("draft"));
}

void ChatWindowTest::worksByKeyboard() {
    QSignalSpy sent(m_scene->chat.get(), &ChatWindow::sendChat);
    m_scene->showActive();
    m_scene->type(QStringLiteral("typed"));
    const QList<QWidget*> order{m_scene->sendButton(), m_scene->transcript(), m_scene->input()};
    for (const QWidget* next : order) {
        QTest::keyClick(m_scene->chat->focusWidget(), Qt::Key_Tab);
        QCOMPARE(m_scene->chat->focusWidget(), next);
    }
    QTest::keyClick(m_scene->chat->focusWidget(), Qt::Key_Tab);
    QTest::keyClick(m_scene->chat->focusWidget(), Qt::Key_Space);
    QCOMPARE(sent.size(), 1);
    QCOMPARE(sent.at(0).at(0).toString(), QStringLiteral("typed"));
}

void ChatWindowTest::everyControlHasAName() {
    QVERIFY(!m_scene->input()->accessibleName().isEmpty());
    QVERIFY(!m_scene->transcript()->accessibleName().isEmpty());
    QVERIFY(!m_scene->sendButton()->text().isEmpty());
}

void ChatWindowTest::linesAreReadableOnDarkWindows() {
    const auto ground = [this] {
        return m_scene->transcript()->viewport()->palette().color(QPalette::Base).lightness();
    };
    QVERIFY(ground() > 200);
    QPalette dark;
    dark.setColor(QPalette::Base, Qt::black);
    dark.setColor(QPalette::Text, Qt::white);
    const QPalette before = QApplication::palette();
    QApplication::setPalette(dark);
    QTRY_COMPARE(m_scene->chat->palette().color(QPalette::Base), QColor(Qt::black));
    QTRY_VERIFY(ground() > 200);
    m_scene->reopen();
    QVERIFY(ground() > 200);
    QApplication::setPalette(before);
}

void ChatWindowTest::longLinesDoNotWidenTheWindow() {
    m_scene->showActive();
    const int before = m_scene->chat->minimumSizeHint().width();
    m_scene->input()->addItem(QString(kLongestChatLine, QLatin1Char('x')));
    m_scene->chat->incoming(QString(kLongestChatLine, QLatin1Char('x')));
    QCOMPARE(m_scene->chat->minimumSizeHint().width(), before);
    QCOMPARE(m_scene->chat->size(), QSize(400, 200));
    QCOMPARE(m_scene->transcript()->horizontalScrollBar()->maximum(), 0);
}

int main(int argc, char** argv) {
    return runTest<ChatWindowTest>(argc, argv);
}

#include "ChatWindowTest.moc"
