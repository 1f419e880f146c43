#pragma once

#include <QList>
#include <QMenu>
#include <QPointer>

class ConnectionWidget;
class QActionGroup;

/// The menu by which an operator without a mouse works the tiles: everything that can be clicked on
/// a tile, for the tile whose screen had the keyboard focus last.
///
/// Its shortcuts are keys that no instrument has, and it has no letter of its own in the menu bar:
/// whatever is typed for the instruments still reaches them. GUI thread.
class TileMenu : public QMenu {
    Q_OBJECT

public:
    /// `tiles` are the window's, in the order of the grid; not owned, and alive for as long as the
    /// menu is used.
    TileMenu(const QList<ConnectionWidget*>& tiles, QWidget* window);

    /// The tile that the entries act on; nothing when there is no tile.
    ConnectionWidget* current() const;
    /// Has the entries act on `tile`, and gives it the keyboard focus.
    void makeCurrent(ConnectionWidget* tile);

public slots:
    /// Opens the menu of the current tile's screen.
    void showScreenMenu();

private:
    QAction* command(const QString& text, const QString& statusTip, const QKeySequence& shortcut);
    void followFocus(QWidget* focused);
    void step(qsizetype by);
    void toggleSendState();
    void fill();
    void addButtons(ConnectionWidget* tile);
    void addTiles();

    const QList<ConnectionWidget*>* m_tiles;
    QPointer<ConnectionWidget> m_current;
    QAction* m_next;
    QAction* m_previous;
    QAction* m_send;
    QAction* m_screenMenu;
    QActionGroup* m_tileEntries;
};
