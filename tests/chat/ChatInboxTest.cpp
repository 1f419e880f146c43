#include "ChatInbox.h"
#include "ChatText.h"
#include "TestEnvironment.h"

#include <algorithm>

class ChatInboxTest : public QObject {
    Q_OBJECT

private slots:
    void aLineIsPassedOnAtOnce();
    void linesOnItsHeelsComeInPortionsAndInOrder();
    void onlyTheNewestOfTooManyArePassedOn();
    void whatIsLostIsToldWhereItIsMissing();
    void nothingIsToldLostThatIsNot();
    void waitingLinesAreBounded();
    void linesMayComeInWhileOthersArePassedOn();
};

void ChatInboxTest::aLineIsPassedOnAtOnce() {
    ChatInbox inbox(nullptr);
    QList<QStringList> portions;
    connect(&inbox, &ChatInbox::arrived, this,
            [&portions](const QStringList& lines) { portions.append(lines); });
    inbox.add(QStringLiteral("a"));
    QCOMPARE(portions, QList<QStringList>{{QStringLiteral("a")}});
    // Once everything else has had its turn, the next line is again the first.
    QTRY_VERIFY_WITH_TIMEOUT((inbox.add(QStringLiteral("b")), portions.size() >= 2), 60000);
}

void ChatInboxTest::linesOnItsHeelsComeInPortionsAndInOrder() {
    ChatInbox inbox(nullptr);
    QStringList seen;
    qsizetype longest = 0;
    connect(&inbox, &ChatInbox::arrived, this, [&](const QStringList& lines) {
        seen += lines;
        longest = std::max(longest, lines.size());
    });
    QStringList sent;
    for (int i = 0; i < 180; ++i) {
        sent.append(QString::number(i));
        inbox.add(sent.last());
    }
    QCOMPARE(seen.size(), 1);
    QTRY_COMPARE_WITH_TIMEOUT(seen, sent, 60000);
    QCOMPARE(longest, ChatInbox::kPortion);
}

void ChatInboxTest::onlyTheNewestOfTooManyArePassedOn() {
    ChatInbox inbox(nullptr);
    QStringList seen;
    connect(&inbox, &ChatInbox::arrived, this,
            [&seen](const QStringList& lines) { seen += lines; });
    constexpr int sent = 20000;
    for (int i = 0; i < sent; ++i)
        inbox.add(QString::number(i));
    QTRY_VERIFY_WITH_TIMEOUT(seen.last() == QString::number(sent - 1), 60000);
    QCOMPARE(seen.size(), ChatInbox::kMostWaiting + 1);
    QCOMPARE(seen.at(0), QStringLiteral("0"));
    QCOMPARE(seen.at(1), QString::number(sent - ChatInbox::kMostWaiting));
}

void ChatInboxTest::whatIsLostIsToldWhereItIsMissing() {
    ChatInbox inbox(nullptr);
    QStringList seen;
    connect(&inbox, &ChatInbox::arrived, this,
            [&seen](const QStringList& lines) { seen += lines; });
    connect(&inbox, &ChatInbox::dropped, this,
            [&seen](int count) { seen += QStringLiteral("%1 lost").arg(count); });
    // The first is passed on at once, as many as can wait do, and seven are too many.
    constexpr int lost = 7;
    const auto sent = static_cast<int>(ChatInbox::kMostWaiting) + 1 + lost;
    for (int i = 0; i < sent; ++i)
        inbox.add(QString::number(i));
    QTRY_VERIFY_WITH_TIMEOUT(seen.last() == QString::number(sent - 1), 60000);
    QCOMPARE(seen.size(), ChatInbox::kMostWaiting + 2);
    QCOMPARE(seen.at(0), QStringLiteral("0"));
    QCOMPARE(seen.at(1), QStringLiteral("7 lost"));
    QCOMPARE(seen.at(2), QStringLiteral("8"));
    QCOMPARE(seen.filter(QStringLiteral("lost")).size(), 1);
}

void ChatInboxTest::nothingIsToldLostThatIsNot() {
    ChatInbox inbox(nullptr);
    QStringList seen;
    int told = 0;
    connect(&inbox, &ChatInbox::arrived, this,
            [&seen](const QStringList& lines) { seen += lines; });
    connect(&inbox, &ChatInbox::dropped, this, [&told] { ++told; });
    for (qsizetype i = 0; i < ChatInbox::kMostWaiting + 1; ++i)
        inbox.add(QString::number(i));
    QTRY_COMPARE_WITH_TIMEOUT(seen.size(), ChatInbox::kMostWaiting + 1, 60000);
    QCOMPARE(told, 0);
}

void ChatInboxTest::waitingLinesAreBounded() {
    ChatInbox inbox(nullptr);
    QStringList seen;
    connect(&inbox, &ChatInbox::arrived, this,
            [&seen](const QStringList& lines) { seen += lines; });
    for (const qsizetype length : {kLongestChatLine, kLongestChatLine + 1, qsizetype{1000000}})
        inbox.add(QString(length, QLatin1Char('x')));
    QTRY_COMPARE_WITH_TIMEOUT(seen.size(), 3, 60000);
    QCOMPARE(seen[0].size(), kLongestChatLine);
    QCOMPARE(seen[1].size(), kLongestChatLine + 1);
    QCOMPARE(seen[2].size(), kLongestChatLine + 1);
}

void ChatInboxTest::linesMayComeInWhileOthersArePassedOn() {
    ChatInbox inbox(nullptr);
    QStringList seen;
    connect(&inbox, &ChatInbox::arrived, this, [&](const QStringList& lines) {
        seen += lines;
        if (seen.size() < 3)
            inbox.add(QStringLiteral("more"));
    });
    inbox.add(QStringLiteral("first"));
    const QStringList all{QStringLiteral("first"), QStringLiteral("more"), QStringLiteral("more")};
    QTRY_COMPARE_WITH_TIMEOUT(seen, all, 60000);
}

int main(int argc, char** argv) {
    return runTest<ChatInboxTest>(argc, argv);
}

#include "ChatInboxTest.moc"
