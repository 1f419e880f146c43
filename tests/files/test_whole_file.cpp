#include "FileSizeLimit.h"
#include "TestEnvironment.h"
#include "WholeFile.h"

#include <QDir>
#include <QFile>

class TestWholeFile : public QObject {
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }
    void whatIsWrittenIsThere_data();
    void whatIsWrittenIsThere();
    void aFullDiskLeavesWhatWasThere_data();
    void aFullDiskLeavesWhatWasThere();
    void aFullDiskLeavesNothingElse();
    void withoutAFolderItSaysWhy();

private:
    QString path() const { return m_folder->filePath(QStringLiteral("file")); }
    QByteArray contents() const {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
    }
    QStringList files() const { return QDir(m_folder->path()).entryList(QDir::Files); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestWholeFile::whatIsWrittenIsThere_data() {
    QTest::addColumn<int>("size");
    // Around the size up to which a file keeps in memory what is written to it.
    for (const int size : {0, 1, 16383, 16384, 16385, 1000000})
        QTest::addRow("%d", size) << size;
}

void TestWholeFile::whatIsWrittenIsThere() {
    QFETCH(const int, size);
    QCOMPARE(wholefile::write(path(), "older"), QString());
    const QByteArray newer(size, '\0');
    QCOMPARE(wholefile::write(path(), newer), QString());
    QCOMPARE(contents(), newer);
    QCOMPARE(files().size(), 1);
}

void TestWholeFile::aFullDiskLeavesWhatWasThere_data() {
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("room");
    for (const int size : {5, 3000, 16384, 16385, 100000})
        for (const int room : {0, 1, size - 1})
            QTest::addRow("%d of %d", room, size) << size << room;
}

void TestWholeFile::aFullDiskLeavesWhatWasThere() {
    QFETCH(const int, size);
    QFETCH(const int, room);
    QCOMPARE(wholefile::write(path(), "older"), QString());
    {
        const FileSizeLimit limit(static_cast<rlim_t>(room));
        QVERIFY(!wholefile::write(path(), QByteArray(size, 'x')).isEmpty());
    }
    QCOMPARE(contents(), QByteArray("older"));
    QCOMPARE(files().size(), 1);
}

void TestWholeFile::aFullDiskLeavesNothingElse() {
    const FileSizeLimit limit(10);
    QVERIFY(!wholefile::write(path(), QByteArray(11, 'x')).isEmpty());
    QVERIFY(files().isEmpty());
}

void TestWholeFile::withoutAFolderItSaysWhy() {
    QVERIFY(!wholefile::write(m_folder->filePath("none/file"), "x").isEmpty());
}

int main(int argc, char** argv) {
    return runTest<TestWholeFile>(argc, argv);
}

#include "test_whole_file.moc"
