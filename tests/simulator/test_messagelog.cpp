// How messages are broken into the lines of the messages page.

#include "MessageLog.h"
#include "TestEnvironment.h"

#include <QStringList>

class TestMessageLog : public QObject {
    Q_OBJECT

private slots:
    void lines_data();
    void lines();
    void oldLinesGo();
};

namespace {

QStringList linesOf(const MessageLog& log) {
    QStringList lines;
    for (const std::string& line : log.lines())
        lines.append(QString::fromLatin1(line.data(), static_cast<qsizetype>(line.size())));
    return lines;
}

} // namespace

void TestMessageLog::lines_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("lines");
    const QString fits(34, 'x'); // behind the mark and its space
    QTest::newRow("empty") << "" << QStringList{"> "};
    QTest::newRow("short") << "hi" << QStringList{"> hi"};
    QTest::newRow("just fits") << fits << QStringList{"> " + fits};
    QTest::newRow("one too long") << fits + "x" << QStringList{"> " + fits, "  x"};
    QTest::newRow("two words") << fits + " y" << QStringList{"> " + fits, "  y"};
    QTest::newRow("broken between words")
        << "the pump on the north side needs a look"
        << QStringList{"> the pump on the north side needs a", "  look"};
    QTest::newRow("a space first") << " " + fits << QStringList{">  " + fits.left(33), "  x"};
    QTest::newRow("symbols count once")
        << QString(34, QChar(0x25C6)) << QStringList{"> " + QString(34, QChar(4))};
    QTest::newRow("a line feed is a space") << "a\nb" << QStringList{"> a b"};
}

void TestMessageLog::lines() {
    QFETCH(QString, text);
    MessageLog log;
    log.add(">", text.toStdString());
    QTEST(linesOf(log), "lines");
}

void TestMessageLog::oldLinesGo() {
    MessageLog log;
    for (int i = 0; i < 100; ++i)
        log.add(">", std::to_string(i));
    QCOMPARE(log.lines().size(), MessageLog::capacity);
    QCOMPARE(linesOf(log).last(), QString("> 99"));
    QCOMPARE(linesOf(log).first(), QString("> 68"));
    log.add("!", std::string(1000000, 'm'));
    QCOMPARE(log.lines().size(), MessageLog::capacity);
    log.clear();
    QVERIFY(log.lines().empty());
}

int main(int argc, char** argv) {
    return runTest<TestMessageLog>(argc, argv);
}

#include "test_messagelog.moc"
