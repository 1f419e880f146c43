#include <QDir>
#include <QImage>
#include <QTransform>
#include <algorithm>
#include <cmath>

#include "ApplicationIcon.h"
#include "TestEnvironment.h"

/// The compiled-in images: all there under their names, and fit to be seen on any toolbar.
class ButtonImagesTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void collectionsHoldTheirOwn();
    void sizes_data();
    void sizes();
    void drawnOnTransparency_data() { sizes_data(); }
    void drawnOnTransparency();
    void standsOutFromTheToolbar_data();
    void standsOutFromTheToolbar();
    void connectAndDisconnectDifferInShape_data();
    void connectAndDisconnectDifferInShape();
    void arrowPointsItsWay_data();
    void arrowPointsItsWay();
    void applicationIconHasEverySize();
};

namespace {
const QStringList groupButtons{QStringLiteral("edit_add"),     QStringLiteral("g-key2"),
                               QStringLiteral("chatbubbles7"), QStringLiteral("Connect"),
                               QStringLiteral("Disconnect"),   QStringLiteral("button_cancel")};
const QStringList consoleButtons{QStringLiteral("UpArrow32"), QStringLiteral("DnArrow32"),
                                 QStringLiteral("LeftArrow32"), QStringLiteral("RightArrow32")};
const QList<int> iconSizes{16, 22, 24, 32, 48, 128, 256};

/// Premultiplied, as pixmaps are, so that comparing one with the other rounds nothing.
QImage load(const QString& name) {
    return QImage(QStringLiteral(":/buttons/images/%1.png").arg(name))
        .convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QStringList filesOf(const QStringList& names) {
    QStringList files;
    for (const QString& name : names) {
        files << name + QStringLiteral(".png") << name + QStringLiteral("@2x.png");
    }
    return files;
}

QStringList applicationIconFiles() {
    QStringList files{QStringLiteral("gx7100group.png")};
    for (const int size : iconSizes) {
        files << QStringLiteral("gx7100group-%1.png").arg(size);
    }
    return files;
}

QStringList sorted(QStringList list) {
    list.sort();
    return list;
}

QStringList filesNow() {
    return sorted(QDir(QStringLiteral(":/buttons/images")).entryList(QDir::Files));
}

/// Relative luminance of an sRGB colour, 0 (black) to 1 (white), as web accessibility defines it.
double luminance(QRgb colour) {
    const auto linear = [](int channel) {
        const double c = channel / 255.0;
        return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) +
           0.0722 * linear(qBlue(colour));
}

double contrast(QRgb a, QRgb b) {
    const auto [dark, light] = std::minmax({luminance(a), luminance(b)});
    return (light + 0.05) / (dark + 0.05);
}

/// Pixels of a row that are more ink than background.
int inkInRow(const QImage& image, int y) {
    int ink = 0;
    for (int x = 0; x < image.width(); ++x) {
        ink += qAlpha(image.pixel(x, y)) >= 128;
    }
    return ink;
}

int ink(const QImage& image) {
    int total = 0;
    for (int y = 0; y < image.height(); ++y) {
        total += inkInRow(image, y);
    }
    return total;
}
} // namespace

void ButtonImagesTest::initTestCase() {
    Q_INIT_RESOURCE(group);
    Q_INIT_RESOURCE(console);
}

void ButtonImagesTest::collectionsHoldTheirOwn() {
    const QStringList group = filesOf(groupButtons) + applicationIconFiles();
    const QStringList console = filesOf(consoleButtons);
    QCOMPARE(filesNow(), sorted(group + console));
    Q_CLEANUP_RESOURCE(console);
    QCOMPARE(filesNow(), sorted(group));
    Q_INIT_RESOURCE(console);
    Q_CLEANUP_RESOURCE(group);
    QCOMPARE(filesNow(), sorted(console));
    Q_INIT_RESOURCE(group);
}

void ButtonImagesTest::sizes_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("size");
    const auto add = [](const QString& name, int size) {
        QTest::newRow(qPrintable(name)) << name << size;
    };
    for (const QString& name : groupButtons) {
        add(name, 24);
        add(name + QStringLiteral("@2x"), 48);
    }
    for (const QString& name : consoleButtons) {
        add(name, 32);
        add(name + QStringLiteral("@2x"), 64);
    }
    add(QStringLiteral("gx7100group"), 64);
    for (const int size : iconSizes) {
        add(QStringLiteral("gx7100group-%1").arg(size), size);
    }
}

void ButtonImagesTest::sizes() {
    QFETCH(QString, name);
    QFETCH(int, size);
    QCOMPARE(load(name).size(), QSize(size, size));
}

void ButtonImagesTest::drawnOnTransparency() {
    QFETCH(QString, name);
    QFETCH(int, size);
    QVERIFY(QImage(QStringLiteral(":/buttons/images/%1.png").arg(name)).hasAlphaChannel());
    const QImage image = load(name);
    QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
    const double covered = double(ink(image)) / (size * size);
    QVERIFY2(covered > 0.2 && covered < 0.8, qPrintable(QString::number(covered)));
}

void ButtonImagesTest::standsOutFromTheToolbar_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QRgb>("toolbar");
    for (const QString& name : groupButtons + consoleButtons) {
        for (const QRgb toolbar : {0xfff0f0f0U, 0xffffffffU, 0xff2b2b2bU, 0xff000000U}) {
            QTest::addRow("%s on %06x", qPrintable(name), toolbar & 0xffffffU) << name << toolbar;
        }
    }
}

void ButtonImagesTest::standsOutFromTheToolbar() {
    QFETCH(QString, name);
    QFETCH(QRgb, toolbar);
    // The contrast that accessibility guidelines ask of anything one has to recognise.
    constexpr double required = 3.0;
    const QImage image = load(name);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb colour = image.pixel(x, y);
            if (qAlpha(colour) == 255) {
                QVERIFY2(contrast(colour, toolbar) >= required,
                         qPrintable(QString::number(contrast(colour, toolbar))));
            }
        }
    }
}

void ButtonImagesTest::connectAndDisconnectDifferInShape_data() {
    QTest::addColumn<int>("size");
    for (const int size : {16, 24, 48}) {
        QTest::addRow("%d", size) << size;
    }
}

void ButtonImagesTest::connectAndDisconnectDifferInShape() {
    QFETCH(int, size);
    const auto mask = [size](const char* name) {
        return load(QLatin1String(name))
            .scaled(size, size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    };
    const QImage a = mask("Connect@2x");
    const QImage b = mask("Disconnect@2x");
    int either = 0;
    int onlyOne = 0;
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            const bool inA = qAlpha(a.pixel(x, y)) >= 128;
            const bool inB = qAlpha(b.pixel(x, y)) >= 128;
            either += inA || inB;
            onlyOne += inA != inB;
        }
    }
    QVERIFY2(onlyOne * 2 > either, qPrintable(QStringLiteral("%1/%2").arg(onlyOne).arg(either)));
}

void ButtonImagesTest::arrowPointsItsWay_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("degreesToUp");
    QTest::newRow("up") << "UpArrow32" << 0;
    QTest::newRow("left") << "LeftArrow32" << 90;
    QTest::newRow("down") << "DnArrow32" << 180;
    QTest::newRow("right") << "RightArrow32" << 270;
}

void ButtonImagesTest::arrowPointsItsWay() {
    QFETCH(QString, name);
    QFETCH(int, degreesToUp);
    const QImage arrow = load(name).transformed(QTransform().rotate(degreesToUp));
    int firstRow = 0;
    while (inkInRow(arrow, firstRow) == 0) {
        ++firstRow;
    }
    const int tip = inkInRow(arrow, firstRow);
    const int head = inkInRow(arrow, arrow.height() / 2 - 2);
    const int shaft = inkInRow(arrow, arrow.height() * 3 / 4);
    QVERIFY2(tip < shaft && shaft < head,
             qPrintable(QStringLiteral("%1 %2 %3").arg(tip).arg(shaft).arg(head)));
}

void ButtonImagesTest::applicationIconHasEverySize() {
    const QIcon icon = applicationIcon();
    for (const int size : iconSizes + QList<int>{64}) {
        QVERIFY(icon.availableSizes().contains(QSize(size, size)));
        const QString name =
            size == 64 ? QStringLiteral("gx7100group") : QStringLiteral("gx7100group-%1").arg(size);
        QCOMPARE(icon.pixmap(size).toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied),
                 load(name));
    }
    QCOMPARE(icon.availableSizes().size(), iconSizes.size() + 1);
}

int main(int argc, char** argv) {
    return runTest<ButtonImagesTest>(argc, argv);
}

#include "ButtonImagesTest.moc"
