#include "TestEnvironment.h"

#include <QDir>
#include <QFile>

TestEnvironment::TestEnvironment() {
    const QDir root(m_root.path());
    const auto give = [&root](const char* variable, const QString& folder) {
        root.mkpath(folder);
        qputenv(variable, QFile::encodeName(root.filePath(folder)));
    };
    give("XDG_CONFIG_HOME", QStringLiteral("config"));
    give("XDG_CACHE_HOME", QStringLiteral("cache"));
    give("XDG_DATA_HOME", QStringLiteral("data"));
    give("XDG_RUNTIME_DIR", QStringLiteral("runtime"));
    give("HOME", QStringLiteral("home"));
    // Qt complains when others may enter the runtime directory.
    QFile::setPermissions(root.filePath(QStringLiteral("runtime")),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("AVAHI_COMPAT_NOWARN", "1");
    // Texts and numbers are compared as they are written, whatever language the developer speaks.
    qputenv("LC_ALL", "C.UTF-8");
    qunsetenv("LANGUAGE");
}
