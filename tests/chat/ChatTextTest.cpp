#include "ChatText.h"
#include "TestEnvironment.h"

/// What becomes of a chat line before it is shown.
class ChatTextTest : public QObject {
    Q_OBJECT

private slots:
    void isShown_data();
    void isShown();
    void isBounded_data();
    void isBounded();
    void isCutBetweenCharacters_data();
    void isCutBetweenCharacters();
    void neverStructuresTheDocument();
};

void ChatTextTest::isShown_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    QTest::newRow("nothing") << ""
                             << "";
    QTest::newRow("words") << "level 3.2 m"
                           << "level 3.2 m";
    QTest::newRow("markup") << "<b>x</b> &amp; <img src='a'>"
                            << "<b>x</b> &amp; <img src='a'>";
    QTest::newRow("spaces") << "  a  b  "
                            << "  a  b  ";
    QTest::newRow("tab") << "a\tb"
                         << "a\tb";
    QTest::newRow("line feed") << "a\nb" << QString::fromUtf16(u"a\u2028b");
    QTest::newRow("carriage return") << "a\rb" << QString::fromUtf16(u"a\u2028b");
    QTest::newRow("both") << "a\r\nb" << QString::fromUtf16(u"a\u2028b");
    QTest::newRow("paragraph") << QString::fromUtf16(u"a\u2029b")
                               << QString::fromUtf16(u"a\u2028b");
    QTest::newRow("bell") << "a\x07z"
                          << "a^Gz";
    QTest::newRow("escape sequence") << "\x1b[2J"
                                     << "^[[2J";
    QTest::newRow("null") << QString(QChar(0)) << "^@";
    QTest::newRow("last control code") << "\x1f"
                                       << "^_";
    QTest::newRow("delete") << "\x7f"
                            << "^?";
    QTest::newRow("tilde, before delete") << "~"
                                          << "~";
    QTest::newRow("high control code") << QString(QChar(0x9B)) << QString(QChar(0xFFFD));
    QTest::newRow("direction override")
        << QString::fromUtf16(u"a\u202Eb\u2066c") << QString::fromUtf16(u"a\uFFFDb\uFFFDc");
    QTest::newRow("other languages")
        << QString::fromUtf16(u"Größe שלום 日本") << QString::fromUtf16(u"Größe שלום 日本");
    QTest::newRow("beyond the basic plane")
        << QString::fromUtf16(u"\U0001F600") << QString::fromUtf16(u"\U0001F600");
}

void ChatTextTest::isShown() {
    QFETCH(QString, text);
    QTEST(displayableChat(text), "shown");
}

void ChatTextTest::isBounded_data() {
    QTest::addColumn<qsizetype>("length");
    QTest::addColumn<QString>("end");
    QTest::newRow("one short") << kLongestChatLine - 1 << "xx";
    QTest::newRow("full") << kLongestChatLine << "xx";
    QTest::newRow("one over") << kLongestChatLine + 1 << QString::fromUtf16(u"x\u2026");
    QTest::newRow("a million") << qsizetype(1000000) << QString::fromUtf16(u"x\u2026");
}

void ChatTextTest::isBounded() {
    QFETCH(qsizetype, length);
    QFETCH(QString, end);
    const QString shown = displayableChat(QString(length, QLatin1Char('x')));
    QVERIFY(shown.endsWith(end));
    QCOMPARE(shown.size(), std::min(length, kLongestChatLine + 1));
}

void ChatTextTest::isCutBetweenCharacters_data() {
    QTest::addColumn<qsizetype>("letters");
    QTest::addColumn<QString>("end");
    const QString face = QString::fromUtf16(u"\U0001F600");
    const QString ellipsis = QString::fromUtf16(u"\u2026");
    QTest::newRow("fits with a letter to spare") << kLongestChatLine - 3 << "x" + face;
    QTest::newRow("fits") << kLongestChatLine - 2 << "x" + face;
    QTest::newRow("half of it fits") << kLongestChatLine - 1 << "x" + ellipsis;
    QTest::newRow("comes after") << kLongestChatLine << "x" + ellipsis;
}

void ChatTextTest::isCutBetweenCharacters() {
    QFETCH(qsizetype, letters);
    QFETCH(QString, end);
    const QString face = QString::fromUtf16(u"\U0001F600");
    const QString shown = displayableChat(QString(letters, QLatin1Char('x')) + face);
    QCOMPARE(shown.right(end.size()), end);
    QVERIFY(shown.isValidUtf16());
    QVERIFY(shown.size() <= kLongestChatLine + 1);
}

void ChatTextTest::neverStructuresTheDocument() {
    // What a text document takes for ends of paragraphs and frames, or for an image.
    for (const char16_t mark : u"\u000A\u000D\u2029\uFDD0\uFDD1\uFFFC\uFFFE\uFFFF") {
        QVERIFY2(!displayableChat(QString(QChar(mark))).contains(QChar(mark)),
                 qPrintable(QString::number(mark, 16)));
    }
}

int main(int argc, char** argv) {
    return runTest<ChatTextTest>(argc, argv);
}

#include "ChatTextTest.moc"
