#include "ApplicationIcon.h"
#include "FirstPaint.h"
#include "GroupWindow.h"
#include "Translations.h"
#include "TurnPacer.h"

#include <QApplication>

#ifdef Q_OS_LINUX
#include "FontsAhead.h"
#endif

int main(int argc, char** argv) {
#ifdef Q_OS_LINUX
    // Before anything asks for instruments: the daemon's library would greet us with a warning.
    qputenv("AVAHI_COMPAT_NOWARN", "1");
    const FontsAhead fonts;
#endif
    const QApplication application(argc, argv);
    Q_INIT_RESOURCE(group);
    Q_INIT_RESOURCE(console);
    // The desktop finds name and icon of a window by the name of its entry.
    QApplication::setDesktopFileName(QStringLiteral("com.vestra.GX7100Group"));
    const Translations translations;
    const TurnPacer pacer;
    GroupWindow window;
    // Eight drawings are unpacked for it.
    new FirstPaint(&window, [] { QApplication::setWindowIcon(applicationIcon()); });
    window.show();
    return QApplication::exec();
}
