#include "PlatformTag.h"

#include <QOperatingSystemVersion>

QString platformTag() {
#if defined(Q_OS_MACOS)
    const bool old = QOperatingSystemVersion::current() <
                     QOperatingSystemVersion(QOperatingSystemVersion::MacOS, 10, 7);
    return old ? QStringLiteral("apps_mac") : QStringLiteral("apps_mac64");
#elif defined(Q_OS_WIN)
    return QStringLiteral("apps_win64");
#else
    return QStringLiteral("apps_linux64");
#endif
}
