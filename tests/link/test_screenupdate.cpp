#include "ScreenUpdate.h"
#include "TestEnvironment.h"

#include <QObject>

#include <optional>
#include <string>
#include <string_view>

using namespace std::string_literals;

namespace {

/// "-" for nothing, "=" and the data otherwise.
std::string shown(const std::optional<std::string_view>& data) {
    return data ? std::string("=").append(*data) : "-";
}

std::string shown(const ScreenUpdate& update) {
    const std::string mode = !update.textMode ? "" : *update.textMode ? " text" : " graphics";
    return std::string("T") + shown(update.text) + " A" + shown(update.attributes) + " R" +
           shown(update.cursor) + " G" + shown(update.graphics) + mode +
           (update.redraw ? " redraw" : "");
}

class ScreenUpdateTest : public QObject {
    Q_OBJECT

private slots:
    void updates_data() {
        QTest::addColumn<std::string>("body");
        QTest::addColumn<std::string>("update");
        QTest::newRow("empty") << ""s
                               << "T- A- R- G- redraw"s;
        QTest::newRow("text") << "T\0\0\0\1t"s
                              << "T=t A- R- G- text redraw"s;
        QTest::newRow("everything") << "T\0\0\0\1tA\0\0\0\1aR\0\0\0\1rC\0\0\0\1c"s
                                    << "T=t A=a R=r G- text redraw"s;
        QTest::newRow("the last of each kind")
            << "T\0\0\0\1tA\0\0\0\1aR\0\0\0\1rT\0\0\0\1uA\0\0\0\1bR\0\0\0\1s"s
            << "T=u A=b R=s G- text redraw"s;
        QTest::newRow("graphics after text") << "T\0\0\0\1tG\0\0\0\1g"s
                                             << "T=t A- R- G=g graphics redraw"s;
        QTest::newRow("text after graphics") << "G\0\0\0\1gT\0\0\0\1t"s
                                             << "T=t A- R- G=g text redraw"s;
        QTest::newRow("the last of both") << "G\0\0\0\1gT\0\0\0\1tG\0\0\0\1hA\0\0\0\1a"s
                                          << "T=t A=a R- G=h graphics redraw"s;
        QTest::newRow("an empty item replaces too") << "T\0\0\0\1tT\0\0\0\0C\0\0\0\1c"s
                                                    << "T= A- R- G- text redraw"s;
        QTest::newRow("nothing that is shown") << "C\0\0\0\1c"s
                                               << "T- A- R- G- redraw"s;
        QTest::newRow("unknown in front") << "?\0\0\0\1xT\0\0\0\1t"s
                                          << "T- A- R- G-"s;
        QTest::newRow("unknown between") << "T\0\0\0\1t?\0\0\0\1xT\0\0\0\1u"s
                                         << "T=t A- R- G- text"s;
        QTest::newRow("unknown last") << "T\0\0\0\1tt\0\0\0\1x"s
                                      << "T=t A- R- G- text"s;
        QTest::newRow("damaged last") << "T\0\0\0\1tT\0\0\0\2u"s
                                      << "T=t A- R- G- text"s;
        QTest::newRow("strays") << "T\0\0\0\1tT\0\0\0\0"s
                                << "T=t A- R- G- text redraw"s;
    }
    void updates() {
        QFETCH(const std::string, body);
        QFETCH(const std::string, update);
        QCOMPARE(shown(ScreenUpdate::of(body)), update);
    }
};

} // namespace

int main(int argc, char** argv) {
    return runTest<ScreenUpdateTest>(argc, argv);
}

#include "test_screenupdate.moc"
