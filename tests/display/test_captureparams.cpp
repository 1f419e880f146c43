#include "CaptureParams.h"
#include "TestEnvironment.h"

#include <QVector>

namespace {

/// A record's values one by one, as they are stored: the type, a null flag, the value.
const QVector<QByteArray> version3 = {
    "00000002 00 00000003",                  // version 3
    "00000001 00 01",                        // image width: checked
    "0000000a 00 00000006 0031002e0035",     // height "1.5"
    "0000000a 00 00000002 0034",             // width "4"
    "00000001 00 01",                        // show cursor
    "0000000a 00 00000008 002f0061002f0062", // previous file "/a/b"
    "00000001 00 00",                        // increment: not checked
    "00000002 00 0000002a",                  // counter 42
    "0000000a 00 00000006 00780023002e",     // file name "x#."
    "0000000a 00 00000006 002f0061002f",     // directory "/a/"
    "00000002 00 0000000c",                  // border 12
    "00000001 00 01",                        // border: checked
    "00000002 00 00000001",                  // units: cm
};

QByteArray record(QVector<QByteArray> values) {
    QByteArray bytes;
    for (const QByteArray& value : values)
        bytes += QByteArray::fromHex(value);
    return bytes;
}

QByteArray recordOfVersion(const char* version, qsizetype fields) {
    QVector<QByteArray> values = version3.mid(0, fields + 1);
    values[0] = QByteArray("00000002 00 ") + version;
    return record(values);
}

/// What the first fields of the record above say.
CaptureParams expected(qsizetype fields) {
    CaptureParams params;
    if (fields > 0)
        params.sizeChecked = true;
    if (fields > 1)
        params.height = QStringLiteral("1.5");
    if (fields > 2)
        params.width = QStringLiteral("4");
    if (fields > 3)
        params.cursorChecked = true;
    if (fields > 4)
        params.previousFile = QStringLiteral("/a/b");
    if (fields > 5)
        params.incrementChecked = false;
    if (fields > 6)
        params.counter = 42;
    if (fields > 7)
        params.fileName = QStringLiteral("x#.");
    if (fields > 8)
        params.directory = QStringLiteral("/a/");
    if (fields > 9)
        params.border = 12;
    if (fields > 10)
        params.borderChecked = true;
    if (fields > 11)
        params.units = 1;
    return params;
}

} // namespace

class TestCaptureParams : public QObject {
    Q_OBJECT

private slots:
    void versionsAreRead_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<CaptureParams>("params");
        QTest::newRow("version 1") << recordOfVersion("00000001", 9) << expected(9);
        QTest::newRow("version 2") << recordOfVersion("00000002", 10) << expected(10);
        QTest::newRow("version 3") << record(version3) << expected(12);
        QTest::newRow("version 1 ends where it ends")
            << recordOfVersion("00000001", 12) << expected(9);
        QTest::newRow("version 2 ends where it ends")
            << recordOfVersion("00000002", 12) << expected(10);
        QTest::newRow("a later version")
            << recordOfVersion("00000009", 12) + "more" << expected(12);
        QTest::newRow("version 0") << recordOfVersion("00000000", 12) << CaptureParams();
        QTest::newRow("version -1") << recordOfVersion("ffffffff", 12) << CaptureParams();
        QTest::newRow("empty") << QByteArray() << CaptureParams();
        QTest::newRow("noise") << QByteArray("no record at all") << CaptureParams();
    }
    void versionsAreRead() {
        QFETCH(const QByteArray, bytes);
        QFETCH(const CaptureParams, params);
        QVERIFY(CaptureParams::fromBytes(bytes) == params);
    }

    void oneRecordIsWritten() { QCOMPARE(expected(12).toBytes(), record(version3)); }

    void whatWasNotSaidIsWrittenAsNothing() {
        QCOMPARE(CaptureParams().toBytes(),
                 record({"00000002 00 00000003", "00000001 00 00", "0000000a 00 ffffffff",
                         "0000000a 00 ffffffff", "00000001 00 00", "0000000a 00 ffffffff",
                         "00000001 00 00", "00000002 00 00000000", "0000000a 00 ffffffff",
                         "0000000a 00 ffffffff", "00000002 00 00000000", "00000001 00 00",
                         "00000002 00 00000000"}));
    }

    void everyTruncationIsReadAsFarAsItIsWhole() {
        const QByteArray whole = record(version3);
        qsizetype fields = 0;
        qsizetype end = QByteArray::fromHex(version3[0]).size();
        for (qsizetype length = 0; length <= whole.size(); ++length) {
            while (fields < 12 &&
                   length >= end + QByteArray::fromHex(version3[fields + 1]).size()) {
                ++fields;
                end += QByteArray::fromHex(version3[fields]).size();
            }
            // Heap memory of just this length, so that a sanitizer sees a read beyond it.
            QByteArray part(whole.constData(), length);
            part.squeeze();
            QVERIFY2(CaptureParams::fromBytes(part) == expected(fields),
                     qPrintable(QString::number(length)));
        }
        QCOMPARE(fields, 12);
    }

    void damageEndsTheRecord_data() {
        QTest::addColumn<QByteArray>("field");
        QTest::newRow("unknown type") << QByteArray("00000400 00 00");
        QTest::newRow("list") << QByteArray("00000009 00 ffffffff");
        QTest::newRow("image") << QByteArray("00001006 00 00000001 89504e47");
        QTest::newRow("text of 4 GiB") << QByteArray("0000000a 00 fffffffe 0031");
        QTest::newRow("text of an odd length") << QByteArray("0000000a 00 00000003 003100");
    }
    void damageEndsTheRecord() {
        QFETCH(const QByteArray, field);
        QVector<QByteArray> values = version3;
        values[3] = field;
        QVERIFY(CaptureParams::fromBytes(record(values)) == expected(2));
    }

    void otherTypesCountAsWhatTheyMean() {
        QVector<QByteArray> values = version3;
        values[1] = "00000002 00 00000001";          // a number as a truth value
        values[2] = "00000002 00 00000007";          // a number as text
        values[7] = "0000000a 00 00000004 00340032"; // text as a number
        CaptureParams params = expected(12);
        params.height = QStringLiteral("7");
        QVERIFY(CaptureParams::fromBytes(record(values)) == params);
    }

    void longTextsAreCut() {
        QVector<QByteArray> values = version3;
        values[8] = "0000000a 00 00030d40" + QByteArray("0061").repeated(100'000);
        const CaptureParams params = CaptureParams::fromBytes(record(values));
        QCOMPARE(params.fileName.value_or(QString()), QString(4096, u'a'));
        QCOMPARE(params.units.value_or(0), 1);
    }
};

int main(int argc, char** argv) {
    return runTest<TestCaptureParams>(argc, argv);
}

#include "test_captureparams.moc"
