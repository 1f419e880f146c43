#include <QDir>
#include <QDirIterator>
#include <QImage>
#include <QProcess>

#include "TestEnvironment.h"

/// The committed PNG files are what the committed SVG sources render to, no more and no fewer.
class RenderedImagesTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void committedIsWhatRenders_data();
    void committedIsWhatRenders();
    void nothingElseIsCommitted();

private:
    static QStringList pngsBelow(const QString& root);

    QTemporaryDir m_rendered;
};

namespace {
const auto sourceRoot = QStringLiteral(GX_SOURCE_DIR);

// Renderers of other versions round edges a little differently; nobody sees this much.
constexpr int widestDifference = 24;

int differenceOf(QRgb a, QRgb b) {
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                     std::abs(qBlue(a) - qBlue(b)), std::abs(qAlpha(a) - qAlpha(b))});
}
} // namespace

QStringList RenderedImagesTest::pngsBelow(const QString& root) {
    QStringList found;
    for (const char* folder : {"resources/images", "packaging/icons"}) {
        QDirIterator files(root + u'/' + QLatin1String(folder), {QStringLiteral("*.png")},
                           QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            found << QDir(root).relativeFilePath(files.next());
        }
    }
    found.sort();
    return found;
}

void RenderedImagesTest::initTestCase() {
    QProcess render;
    render.setProcessChannelMode(QProcess::ForwardedChannels);
    render.start(sourceRoot + QStringLiteral("/resources/render.sh"), {m_rendered.path()});
    QVERIFY(render.waitForFinished(120'000));
    QCOMPARE(render.exitStatus(), QProcess::NormalExit);
    QCOMPARE(render.exitCode(), 0);
}

void RenderedImagesTest::committedIsWhatRenders_data() {
    QTest::addColumn<QString>("file");
    for (const QString& file : pngsBelow(m_rendered.path())) {
        QTest::newRow(qPrintable(file)) << file;
    }
}

void RenderedImagesTest::committedIsWhatRenders() {
    QFETCH(QString, file);
    const auto load = [&file](const QString& root) {
        return QImage(root + u'/' + file).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    };
    const QImage committed = load(sourceRoot);
    const QImage rendered = load(m_rendered.path());
    QVERIFY(!rendered.isNull());
    QCOMPARE(committed.size(), rendered.size());
    for (int y = 0; y < rendered.height(); ++y) {
        for (int x = 0; x < rendered.width(); ++x) {
            // QImage::pixel would undo the premultiplication and blow up faint edges.
            const auto at = [x, y](const QImage& image) {
                return reinterpret_cast<const QRgb*>(image.constScanLine(y))[x];
            };
            QVERIFY2(
                differenceOf(at(committed), at(rendered)) <= widestDifference,
                qPrintable(QStringLiteral("at %1, %2: run resources/render.sh").arg(x).arg(y)));
        }
    }
}

void RenderedImagesTest::nothingElseIsCommitted() {
    QCOMPARE(pngsBelow(sourceRoot), pngsBelow(m_rendered.path()));
}

int main(int argc, char** argv) {
    return runTest<RenderedImagesTest>(argc, argv);
}

#include "RenderedImagesTest.moc"
