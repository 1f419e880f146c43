#include "PayloadPool.h"
#include "TestEnvironment.h"

#include <QObject>

#include <string>
#include <vector>

namespace {

class PayloadPoolTest : public QObject {
    Q_OBJECT

private slots:
    void whatIsKept_data() {
        QTest::addColumn<std::size_t>("capacity");
        QTest::addColumn<std::size_t>("wanted");
        QTest::addColumn<bool>("isReused");
        QTest::newRow("an ordinary payload") << std::size_t{2048} << std::size_t{2048} << true;
        QTest::newRow("the largest") << PayloadPool::maxSize << std::size_t{2048} << true;
        QTest::newRow("too large") << PayloadPool::maxSize + 1 << std::size_t{2048} << false;
        QTest::newRow("too small to be worth it")
            << std::size_t{1023} << std::size_t{2048} << false;
        QTest::newRow("for a small payload") << std::size_t{2048} << std::size_t{1023} << false;
    }
    void whatIsKept() {
        QFETCH(const std::size_t, capacity);
        QFETCH(const std::size_t, wanted);
        QFETCH(const bool, isReused);
        std::string payload;
        payload.reserve(capacity);
        QCOMPARE(payload.capacity(), capacity);
        payload = "old";
        const char* const memory = payload.data();
        PayloadPool pool;
        pool.keep(payload);
        const std::string next = pool.take(wanted);
        QCOMPARE(next, std::string());
        QCOMPARE(next.data() == memory, isReused);
    }

    void noMoreThanABurst() {
        PayloadPool pool;
        std::vector<std::string> payloads(PayloadPool::maxCount + 1, std::string(2048, 'x'));
        for (std::string& payload : payloads)
            pool.keep(payload);
        for (std::size_t i = 0; i < PayloadPool::maxCount; ++i)
            QVERIFY(pool.take(2048).capacity() >= 2048);
        QVERIFY(pool.take(2048).capacity() < 2048);
    }
};

} // namespace

int main(int argc, char** argv) {
    return runTest<PayloadPoolTest>(argc, argv);
}

#include "test_payloadpool.moc"
