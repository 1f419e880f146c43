#include "HostProgram.h"

#include <QTest>

namespace {

/// Generous: only a program that will never be ready needs this long.
constexpr int limit = 60000;

} // namespace

HostProgram::HostProgram(Host host) {
    if (host == Host::Other)
        m_prefix = qEnvironmentVariable("GX_OTHER_HOST").split(' ', Qt::SkipEmptyParts);
}

HostProgram::~HostProgram() {
    stop();
}

bool HostProgram::isOnOneOfTwo() {
    return qEnvironmentVariableIsSet("GX_OTHER_HOST");
}

void HostProgram::awaitQuiet() {
    const auto isQuiet = [] {
        QProcess cache;
        cache.start("avahi-browse", {"--parsable", "--cache", "_gx7100._tcp"});
        return cache.waitForFinished(limit) && cache.exitCode() == 0 &&
               cache.readAllStandardOutput().isEmpty();
    };
    QTRY_VERIFY_WITH_TIMEOUT(isQuiet(), limit);
}

void HostProgram::start(const QString& program, const QStringList& arguments, QStringList lines) {
    QStringList command = m_prefix + QStringList{program} + arguments;
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.start(command.takeFirst(), command);
    while (!lines.isEmpty()) {
        QVERIFY2(m_process.canReadLine() || m_process.waitForReadyRead(limit),
                 qPrintable(lines.first()));
        while (m_process.canReadLine())
            lines.removeOne(QString::fromUtf8(m_process.readLine()).trimmed());
    }
}

QString HostProgram::readLine(const QString& start) {
    QString line;
    const auto isThere = [this, &start, &line] {
        while (!line.startsWith(start) && m_process.canReadLine())
            line = QString::fromUtf8(m_process.readLine()).trimmed();
        return line.startsWith(start);
    };
    // Not by waiting for the process: what it is to do may depend on this program's event loop.
    [&isThere] { QTRY_VERIFY_WITH_TIMEOUT(isThere(), limit); }();
    return line;
}

void HostProgram::announce(const QStringList& names, const QStringList& arguments) {
    QStringList given = arguments;
    QStringList lines;
    for (const QString& name : names) {
        given += {"--announce", name};
        lines += "Announced: " + name;
    }
    start(QStringLiteral(GX_SIMULATOR), given, lines);
}

void HostProgram::stop() {
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate();
    QVERIFY(m_process.waitForFinished(limit));
}
