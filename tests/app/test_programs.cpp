#include "Desktop.h"
#include "RawInstrument.h"
#include "TestEnvironment.h"

#include <QSettings>

#ifndef GX_PROGRAM
#error "the build says where the programs are"
#endif

namespace {

constexpr int patience = 60000;

const QString mainTitle = QStringLiteral("GX7100Group 2.1");

int countOf(const QImage& image, QRgb color) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += image.pixel(x, y) == color ? 1 : 0;
    return count;
}

} // namespace

/// The programs as people run them: one process for the window, one for the instruments, an
/// operator at keyboard and mouse.
class TestPrograms : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void operatorDrivesASimulatedInstrument();
    void typedKeysAreLiteralBytes();
    void speaksTheLanguageOfItsUser();

private:
    void start(const QProcessEnvironment& environment);
    void connectTo(const QString& address);
    /// The frame of the first tile: about two lines of its width and two of its height.
    int redPixels() { return countOf(m_desktop.picture(m_window), qRgb(255, 0, 0)); }
    void clickBesideTheScreen();

    Desktop m_desktop;
    std::unique_ptr<Program> m_program;
    QString m_window;
};

void TestPrograms::init() {
    QVERIFY(m_desktop.isReady());
    QSettings(QStringLiteral("VESTRA"), QStringLiteral("group7100")).clear();
    start(m_desktop.environment());
}

void TestPrograms::start(const QProcessEnvironment& environment) {
    m_program = std::make_unique<Program>(QStringLiteral(GX_PROGRAM), QStringList(), environment);
    const auto isOpen = [this] {
        m_window = m_desktop.window(mainTitle);
        return !m_window.isEmpty();
    };
    QTRY_VERIFY_WITH_TIMEOUT(isOpen(), patience);
    m_desktop.activate(m_window);
}

void TestPrograms::cleanup() {
    m_program.reset();
}

void TestPrograms::connectTo(const QString& address) {
    const QSize size = m_desktop.picture(m_window).size();
    // The connect button is in the lower left corner of the only tile.
    m_desktop.click(m_window, 20, size.height() - 42);
    const QString title = QStringLiteral("Remake Connection");
    QTRY_VERIFY_WITH_TIMEOUT(!m_desktop.window(title).isEmpty(), patience);
    m_desktop.activate(m_desktop.window(title));
    m_desktop.press({"Tab", "Tab", "ctrl+a"});
    m_desktop.type(address);
    m_desktop.press({"Return"});
    QTRY_VERIFY_WITH_TIMEOUT(m_desktop.window(title).isEmpty(), patience);
    m_desktop.activate(m_window);
}

void TestPrograms::clickBesideTheScreen() {
    const QSize size = m_desktop.picture(m_window).size();
    const int before = redPixels();
    m_desktop.click(m_window, size.width() / 2, size.height() - 42);
    QTRY_VERIFY_WITH_TIMEOUT(redPixels() > before + 500, patience);
}

void TestPrograms::operatorDrivesASimulatedInstrument() {
    std::unique_ptr<Program> simulator;
    QString address;
    loopback::listenSomewhere([&](const QHostAddress& candidate) {
        address = candidate.toString();
        simulator = std::make_unique<Program>(QStringLiteral(GX_SIMULATOR),
                                              QStringList{"--listen", address, "--page", "entry"});
        return QTest::qWaitFor(
                   [&] {
                       return simulator->output().contains(QLatin1String("Listening")) ||
                              simulator->state() == QProcess::NotRunning;
                   },
                   patience) &&
               simulator->state() == QProcess::Running;
    });
    QVERIFY(simulator && simulator->state() == QProcess::Running);
    const QRgb blue = qRgb(0, 0, 255);
    connectTo(address);
    QTRY_VERIFY_WITH_TIMEOUT(simulator->output().contains(QLatin1String("Connected")), patience);
    clickBesideTheScreen();

    // Typed characters come back as ink.
    const int inkBefore = countOf(m_desktop.picture(m_window), blue);
    m_desktop.type(QStringLiteral("WWWWWWWWWWWWWWWW"));
    QTRY_VERIFY_WITH_TIMEOUT(countOf(m_desktop.picture(m_window), blue) != inkBefore, patience);

    simulator.reset();
    QTRY_VERIFY_WITH_TIMEOUT(redPixels() < 100, patience);

    // Nothing is connected any more, and quitting needs no answer.
    m_desktop.press({"ctrl+q"});
    QTRY_COMPARE_WITH_TIMEOUT(m_program->state(), QProcess::NotRunning, patience);
    QCOMPARE(m_program->exitStatus(), QProcess::NormalExit);
    QVERIFY2(m_program->exitCode() == 0, qPrintable(m_program->output()));
    const QSettings store(QStringLiteral("VESTRA"), QStringLiteral("group7100"));
    QCOMPARE(store.value("group/count").toInt(), 1);
}

void TestPrograms::typedKeysAreLiteralBytes() {
    RawInstrument instrument;
    connectTo(instrument.address());
    QTRY_VERIFY_WITH_TIMEOUT(instrument.isConnected(), patience);
    clickBesideTheScreen();
    m_desktop.press({"F1", "shift+Return", "space", "Tab", "super+Return", "Left", "a"});
    const QByteArray head = QByteArray::fromHex("3c443e0000000a000000004b455953");
    QByteArray expected;
    for (const char* code : {"6000", "000a", "0020", "0009", "0d02", "2500", "0061"})
        expected += head + QByteArray::fromHex(code);
    QTRY_COMPARE_WITH_TIMEOUT(instrument.received(), expected, patience);

    // Quitting asks; the default answer is to go.
    m_desktop.press({"ctrl+q"});
    QTRY_VERIFY_WITH_TIMEOUT(!m_desktop.window(QStringLiteral("GX7100Group")).isEmpty(), patience);
    QVERIFY(instrument.isConnected());
    m_desktop.activate(m_desktop.window(QStringLiteral("GX7100Group")));
    m_desktop.press({"Return"});
    QTRY_VERIFY_WITH_TIMEOUT(!instrument.isConnected(), patience);
    QTRY_COMPARE_WITH_TIMEOUT(m_program->state(), QProcess::NotRunning, patience);
    QCOMPARE(instrument.received(), expected);
}

void TestPrograms::speaksTheLanguageOfItsUser() {
    m_program.reset();
    QProcessEnvironment environment = m_desktop.environment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("de_DE.UTF-8"));
    start(environment);
    m_desktop.press({"ctrl+c"});
    QTRY_VERIFY_WITH_TIMEOUT(!m_desktop.window(QStringLiteral("Chat-Fenster")).isEmpty(), patience);
}

int main(int argc, char** argv) {
    return runTest<TestPrograms>(argc, argv);
}

#include "test_programs.moc"
