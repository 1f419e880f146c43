#include "FontsAhead.h"

#include <fontconfig/fontconfig.h>

#include <QByteArray>

#include <clocale>
#include <sys/resource.h>
#include <system_error>

namespace {

constexpr int lowestPriority = 19;

/// Qt reads this variable and removes it while fontconfig looks at others, all of which would move
/// up by one under its eyes. None has to when it is the last.
void moveStartupIdToTheEnd() {
    constexpr const char* name = "DESKTOP_STARTUP_ID";
    if (!qEnvironmentVariableIsSet(name))
        return;
    const QByteArray id = qgetenv(name);
    qunsetenv(name);
    qputenv(name, id);
}

} // namespace

FontsAhead::FontsAhead() {
    // As Qt is going to do; but numbers in fontconfig's files are read as the locale has them, and
    // it must not change meanwhile.
    std::setlocale(LC_ALL, "");
    moveStartupIdToTheEnd();
    try {
        m_thread = std::thread([] {
            // With two processors it would keep the display server waiting, on which everything
            // else waits. A thread's own on Linux, whatever the name says.
            setpriority(PRIO_PROCESS, 0, lowestPriority);
            FcInit();
        });
    } catch (const std::system_error&) {
        // Without a thread Qt does it by itself, a little later.
    }
}

FontsAhead::~FontsAhead() {
    if (m_thread.joinable())
        m_thread.join();
}
