#include "NewsPage.h"
#include "TestEnvironment.h"

namespace {

QByteArray nested(const QByteArray& element, int depth) {
    return element.repeated(depth);
}

} // namespace

class NewsPageTest : public QObject {
    Q_OBJECT

private slots:
    void tellsWhatIsQuickToLayOut_data() {
        QTest::addColumn<QByteArray>("page");
        QTest::addColumn<bool>("quick");

        const QByteArray table = "<table><tr><td>";
        QTest::newRow("nothing") << QByteArray() << true;
        QTest::newRow("text") << QByteArray("GX-7100 serial numbers from 10000000 on") << true;
        QTest::newRow("a page") << QByteArray("<!DOCTYPE html><html><head><title>GX-7100</title>"
                                              "<style>p{color:#123456;margin:12px}</style></head>"
                                              "<body bgcolor=\"#ffffff\"><p>One<p>Two<br>"
                                              "<a href='https://x.example/?id=123456789'>x</a>"
                                              "<table width=\"100%\" border=1><tr><td>a</td></tr>"
                                              "</table></body></html>")
                                << true;
        QTest::newRow("many paragraphs") << nested("<p>x<li>y<br>", 5000) << true;
        QTest::newRow("many tables after each other")
            << nested("<table><tr><td>x</td></tr></table>", 500) << true;
        QTest::newRow("many elements after each other") << nested("<div>x</div>", 500) << true;
        QTest::newRow("eight tables in each other") << nested(table, 8) << true;
        QTest::newRow("nine tables in each other") << nested(table, 9) << false;
        QTest::newRow("in large letters") << nested("<TABLE><TR><TD>", 9) << false;
        QTest::newRow("with attributes") << nested("<table\tborder=1><td>", 9) << false;
        QTest::newRow("200 elements in each other") << nested("<div>", 200) << true;
        QTest::newRow("201 elements in each other") << nested("<div>", 201) << false;
        QTest::newRow("ends in a comment end nothing")
            << nested(table + "<!-- </table> -->", 9) << false;
        QTest::newRow("ends in quotes end nothing")
            << nested(table + "<p title='</table>'>", 9) << false;
        QTest::newRow("a comment opens nothing")
            << QByteArray("<!-- " + nested(table, 9) + " -->") << true;
        QTest::newRow("five figures") << QByteArray("<table border=99999>") << true;
        QTest::newRow("six figures") << QByteArray("<table border=100000>") << false;
        QTest::newRow("six figures behind a quoted bracket")
            << QByteArray("<table title=\">\" border=100000>") << false;
        QTest::newRow("six figures in a style")
            << QByteArray("<style>table{border:100000px}</style>") << false;
        QTest::newRow("a color of six figures") << QByteArray("<font color=#123456>") << true;
        QTest::newRow("more than a color") << QByteArray("<hr color=#12 size=1000000>") << false;
        QTest::newRow("never ending brackets") << QByteArray(4 << 20, '<') << true;
        QTest::newRow("never ending quote")
            << QByteArray("<p title=\"" + nested("<p>", 99999)) << true;
    }

    void tellsWhatIsQuickToLayOut() {
        QFETCH(QByteArray, page);
        QFETCH(bool, quick);
        QCOMPARE(news_page::isQuickToLayOut(page.toStdString()), quick);
    }

    void everyTruncationIsHarmless() {
        const std::string page = "<!-- x --><table border='1'><td style=\"width:123456\">x</table>";
        const std::size_t number = page.find("123456") + 6;
        for (std::size_t size = 0; size <= page.size(); ++size)
            QCOMPARE(news_page::isQuickToLayOut(page.substr(0, size)), size < number);
    }
};

int main(int argc, char** argv) {
    return runTest<NewsPageTest>(argc, argv);
}

#include "test_news_page.moc"
