#include "ApplicationIcon.h"
#include "TestEnvironment.h"

/// What an operator at 200 % gets: the twin drawn for that scale, never the small one enlarged.
class HighDpiImagesTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void iconUsesTheTwin_data();
    void iconUsesTheTwin();
    void applicationIconIsSharp();
};

void HighDpiImagesTest::initTestCase() {
    Q_INIT_RESOURCE(group);
    Q_INIT_RESOURCE(console);
    QCOMPARE(qApp->devicePixelRatio(), 2.0);
}

void HighDpiImagesTest::iconUsesTheTwin_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("size");
    for (const char* name :
         {"edit_add", "g-key2", "chatbubbles7", "Connect", "Disconnect", "button_cancel"}) {
        QTest::newRow(name) << name << 24;
    }
    for (const char* name : {"UpArrow32", "DnArrow32", "LeftArrow32", "RightArrow32"}) {
        QTest::newRow(name) << name << 32;
    }
}

void HighDpiImagesTest::iconUsesTheTwin() {
    QFETCH(QString, name);
    QFETCH(int, size);
    const QString path = QStringLiteral(":/buttons/images/%1%2.png");
    const QPixmap shown = QIcon(path.arg(name, QString())).pixmap(QSize(size, size), 2.0);
    QCOMPARE(shown.size(), QSize(2 * size, 2 * size));
    QCOMPARE(shown.devicePixelRatio(), 2.0);

    QImage twin(path.arg(name, QStringLiteral("@2x")));
    twin.setDevicePixelRatio(2.0);
    QCOMPARE(shown.toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied),
             twin.convertToFormat(QImage::Format_ARGB32_Premultiplied));
}

void HighDpiImagesTest::applicationIconIsSharp() {
    for (const int size : {16, 24, 32, 64, 128}) {
        QCOMPARE(applicationIcon().pixmap(QSize(size, size), 2.0).size(),
                 QSize(2 * size, 2 * size));
    }
}

int main(int argc, char** argv) {
    qputenv("QT_SCALE_FACTOR", "2");
    return runTest<HighDpiImagesTest>(argc, argv);
}

#include "HighDpiImagesTest.moc"
