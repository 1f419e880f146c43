#include "Desktop.h"

#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QTest>

namespace {

constexpr int patience = 30000;

} // namespace

Program::Program(const QString& path, const QStringList& arguments,
                 const QProcessEnvironment& environment) {
    setProcessEnvironment(environment);
    setProcessChannelMode(QProcess::MergedChannels);
    start(path, arguments);
}

Program::~Program() {
    if (state() == QProcess::NotRunning)
        return;
    terminate();
    if (!waitForFinished(patience))
        kill();
    waitForFinished(patience);
}

QString Program::output() {
    m_output += QString::fromUtf8(readAll());
    return m_output;
}

Desktop::Desktop() {
    // Prints the number of the free display that it has taken. Without -noreset it starts over when
    // its last client leaves, and a client that comes in that moment is turned away.
    m_server = std::make_unique<Program>(
        QStringLiteral("Xvfb"), QStringList{"-displayfd", "1", "-screen", "0", "1280x1000x24",
                                            "-nolisten", "tcp", "-noreset"});
    // Its complaints may stand on lines before and after.
    const QRegularExpression lineOfDigits(QStringLiteral("^([0-9]+)\\n"),
                                          QRegularExpression::MultilineOption);
    QString number;
    const auto hasNumber = [&] {
        number = lineOfDigits.match(m_server->output()).captured(1);
        return !number.isEmpty();
    };
    if (!QTest::qWaitFor(hasNumber, patience))
        return;
    m_display = QLatin1Char(':') + number;
    const QString manager = QStringLiteral(GX_WINDOW_MANAGER);
    m_manager = std::make_unique<Program>(manager, QStringList{"run"}, environment());
    const auto isManaged = [&] { return run(manager, {"ready"}).contains("yes"); };
    if (!QTest::qWaitFor(isManaged, patience))
        m_display.clear();
}

QProcessEnvironment Desktop::environment() const {
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DISPLAY"), m_display);
    for (const char* variable : {"QT_QPA_PLATFORM", "WAYLAND_DISPLAY", "QT_SCALE_FACTOR"})
        environment.remove(QLatin1String(variable));
    return environment;
}

QString Desktop::window(const QString& title) const {
    const auto found =
        run(QStringLiteral("xdotool"),
            {"search", "--onlyvisible", "--name", QLatin1Char('^') + title + QLatin1Char('$')});
    return QString::fromUtf8(found).section(QLatin1Char('\n'), 0, 0);
}

void Desktop::activate(const QString& window) const {
    run(QStringLiteral("xdotool"), {"windowactivate", "--sync", window});
}

void Desktop::press(const QStringList& keys) const {
    run(QStringLiteral("xdotool"), QStringList(QStringLiteral("key")) + keys);
}

void Desktop::type(const QString& text) const {
    run(QStringLiteral("xdotool"), {"type", text});
}

void Desktop::click(const QString& window, int x, int y) const {
    run(QStringLiteral("xdotool"),
        {"mousemove", "--window", window, QString::number(x), QString::number(y), "click", "1"});
}

QImage Desktop::picture(const QString& window) const {
    return QImage::fromData(run(QStringLiteral("import"), {"-silent", "-window", window, "png:-"}),
                            "PNG");
}

QByteArray Desktop::run(const QString& tool, const QStringList& arguments) const {
    QProcess process;
    process.setProcessEnvironment(environment());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(tool, arguments);
    // What is waited for may be answered by this very program.
    if (!QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, patience))
        return {};
    return process.readAllStandardOutput();
}
