// The program's window with tiles that mirror instruments behind one port of this computer.
// usage: gx_bench_window PORT TILES COLUMNS
// Says "window ID X Y WIDTH HEIGHT" with the place of the last tile's screen once every tile is
// connected. Only that tile receives keys.

#include "ConnectGX7100Ethernet.h"
#include "ConnectionWidget.h"
#include "GroupWindow.h"
#include "HelpLinks.h"
#include "LCD7100.h"
#include "TurnPacer.h"

#include <QApplication>
#include <QSettings>
#include <QTimer>

#include <algorithm>
#include <cstdio>

namespace {

constexpr auto interval = std::chrono::milliseconds(10);

/// Once all are connected and every screen has its final place.
void announce(const GroupWindow& window, const QList<ConnectionWidget*>& tiles) {
    tiles.last()->setSendState(true);
    const LCD7100& screen = *tiles.last()->findChild<LCD7100*>();
    const QPoint place = screen.mapToGlobal(QPoint(0, 0));
    std::printf("window %llu %d %d %d %d\n", static_cast<unsigned long long>(window.winId()),
                place.x(), place.y(), screen.width(), screen.height());
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 4)
        return 2;
    const int port = arguments[1].toInt();
    const int count = arguments[2].toInt();
    {
        QSettings store(QStringLiteral("VESTRA"), QStringLiteral("group7100"));
        store.setValue(QStringLiteral("group/count"), count);
        store.setValue(QStringLiteral("group/maxcols"), arguments[3].toInt());
    }
    Q_INIT_RESOURCE(group);
    Q_INIT_RESOURCE(console);
    // A window that starts asks for news: here there is nobody to ask.
    newsSource.clear();

    const TurnPacer pacer;
    GroupWindow window;
    window.move(0, 0);
    window.show();
    const QList<ConnectionWidget*> tiles = window.findChildren<ConnectionWidget*>();
    // As small as its screens allow.
    QApplication::processEvents();
    window.resize(window.minimumSizeHint());
    int connected = 0;
    for (ConnectionWidget* tile : tiles) {
        auto* link = new ConnectGX7100Ethernet(tile, "Generic", "GX-7100");
        QObject::connect(link, &ConnectGX7100::connected, &window, [&] {
            if (++connected == tiles.size())
                QTimer::singleShot(interval, &window, [&] { announce(window, tiles); });
        });
        tile->connectEther(QString(), QStringLiteral("unit"), link, "127.0.0.1", 0, port);
    }
    return QApplication::exec();
}
