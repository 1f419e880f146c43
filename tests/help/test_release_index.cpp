#include "ReleaseIndex.h"
#include "TestEnvironment.h"

using release_index::Comparison;

class ReleaseIndexTest : public QObject {
    Q_OBJECT

private slots:
    void finds_data() {
        QTest::addColumn<QByteArray>("index");
        QTest::addColumn<QByteArray>("found");

        QTest::newRow("one record")
            << QByteArray("t\t2013.2\tx\ta.dmg\n") << QByteArray("2013.2|a.dmg");
        QTest::newRow("no line end") << QByteArray("t\t1\tx\ta.dmg") << QByteArray("1|a.dmg");
        QTest::newRow("dos line ends") << QByteArray("t\t1\tx\ta.dmg\r\n") << QByteArray("1|a.dmg");
        QTest::newRow("several tabs count as one")
            << QByteArray("\t\tt\t\t1\t\t\tx\ta.dmg\t\n") << QByteArray("1|a.dmg");
        QTest::newRow("more fields")
            << QByteArray("t\t1\tx\ta.dmg\tmore\n") << QByteArray("1|a.dmg");
        QTest::newRow("the last one counts")
            << QByteArray("t\t1\tx\ta.dmg\nt\t2\tx\tb.dmg\n") << QByteArray("2|b.dmg");
        QTest::newRow("other tags")
            << QByteArray("tt\t1\tx\ta.dmg\nT\t1\tx\ta\n t\t1\tx\ta\n") << QByteArray();
        QTest::newRow("three fields") << QByteArray("t\t1\tx\n") << QByteArray();
        QTest::newRow("one field") << QByteArray("t\n") << QByteArray();
        QTest::newRow("a short record after a whole one")
            << QByteArray("t\t1\tx\ta.dmg\nt\t2\n") << QByteArray("1|a.dmg");
        QTest::newRow("spaces are not tabs") << QByteArray("t 1 x a.dmg\n") << QByteArray();
        QTest::newRow("NUL bytes") << QByteArray("t\t1\tx\ta\0b\n", 10) << QByteArray("1|a\0b", 5);
        QTest::newRow("nothing") << QByteArray() << QByteArray();
        QTest::newRow("empty lines") << QByteArray("\n\n\t\t\n") << QByteArray();
    }

    void finds() {
        QFETCH(QByteArray, index);
        QFETCH(QByteArray, found);
        const auto release = release_index::find(index.toStdString(), "t");
        QCOMPARE(release.has_value(), !found.isEmpty());
        if (release)
            QCOMPARE(QByteArray::fromStdString(release->version + '|' + release->fileName), found);
    }

    void everyTruncationIsHarmless() {
        const std::string index = "u\t9\tx\tu.dmg\r\nt\t2013.2\tx\ta.dmg\r\n";
        const std::size_t whole = index.find("a.dmg") + 1;
        for (std::size_t size = 0; size <= index.size(); ++size)
            QCOMPARE(release_index::find(index.substr(0, size), "t").has_value(), size >= whole);
    }

    void compares_data() {
        QTest::addColumn<QByteArray>("running");
        QTest::addColumn<QByteArray>("offered");
        QTest::addColumn<int>("result");

        QTest::newRow("same") << QByteArray("2013.2") << QByteArray("2013.2") << 0;
        QTest::newRow("newer") << QByteArray("2013.2") << QByteArray("2013.3") << 1;
        QTest::newRow("older") << QByteArray("2013.2") << QByteArray("2013.1") << 2;
        QTest::newRow("equal numbers, other text")
            << QByteArray("2013.2") << QByteArray("2013.20") << 1;
        QTest::newRow("ten is less than two") << QByteArray("2013.2") << QByteArray("2013.10") << 2;
        QTest::newRow("trailing text") << QByteArray("2013.2") << QByteArray("2013.2b") << 1;
        QTest::newRow("leading space") << QByteArray("2013.2") << QByteArray(" 2013.2") << 1;
        QTest::newRow("plus") << QByteArray("1") << QByteArray("+2") << 1;
        QTest::newRow("not a number") << QByteArray("2013.2") << QByteArray("beta") << 2;
        QTest::newRow("neither a number") << QByteArray("alpha") << QByteArray("beta") << 1;
        QTest::newRow("empty") << QByteArray("") << QByteArray("") << 0;
    }

    void compares() {
        QFETCH(QByteArray, running);
        QFETCH(QByteArray, offered);
        QFETCH(int, result);
        QCOMPARE(
            static_cast<int>(release_index::compare(running.toStdString(), offered.toStdString())),
            result);
    }

    void aFileStaysInItsFolder_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<bool>("stays");

        QTest::newRow("plain") << QByteArray("GX7100Group-2.1.dmg") << true;
        QTest::newRow("spaces") << QByteArray("GX 7100 setup.exe") << true;
        QTest::newRow("dots within") << QByteArray("a..b") << true;
        QTest::newRow("hidden") << QByteArray(".profile.dmg") << true;
        QTest::newRow("empty") << QByteArray("") << false;
        QTest::newRow("this folder") << QByteArray(".") << false;
        QTest::newRow("the one above") << QByteArray("..") << false;
        QTest::newRow("up") << QByteArray("../a.dmg") << false;
        QTest::newRow("absolute") << QByteArray("/etc/passwd") << false;
        QTest::newRow("below") << QByteArray("a/b") << false;
        QTest::newRow("other separator") << QByteArray("..\\a.exe") << false;
        QTest::newRow("drive") << QByteArray("C:a.exe") << false;
        QTest::newRow("NUL") << QByteArray("a\0b", 3) << false;
        QTest::newRow("line feed") << QByteArray("a\nb") << false;
    }

    void aFileStaysInItsFolder() {
        QFETCH(QByteArray, name);
        QFETCH(bool, stays);
        QCOMPARE(release_index::staysInFolder(name.toStdString()), stays);
    }
};

int main(int argc, char** argv) {
    return runTest<ReleaseIndexTest>(argc, argv);
}

#include "test_release_index.moc"
