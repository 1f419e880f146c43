#include "TileMenu.h"

#include "ConnectionWidget.h"
#include "TileAccessible.h"

#include <QAbstractButton>
#include <QActionGroup>
#include <QApplication>

namespace {

/// The width of a name in a menu, in average characters: a host may call itself anything.
constexpr int nameWidth = 40;
/// More of them would not be seen however narrow they are.
constexpr qsizetype mostCharacters = 160;

constexpr qsizetype lastDigit = 9;

/// A name as the text of an entry: without a mnemonic, a shortcut or further lines.
QString asEntry(const QString& name, const QFontMetrics& metrics) {
    const QString line = metrics.elidedText(name.left(mostCharacters).simplified(), Qt::ElideMiddle,
                                            nameWidth * metrics.averageCharWidth());
    return QString(line).replace(u'&', QStringLiteral("&&"));
}

} // namespace

TileMenu::TileMenu(const QList<ConnectionWidget*>& tiles, QWidget* window)
    : QMenu(tr("Tiles"), window), m_tiles(&tiles),
      m_next(command(tr("Next tile"), tr("Go on to the next tile"), Qt::Key_F6)),
      m_previous(
          command(tr("Previous tile"), tr("Go back to the previous tile"), Qt::SHIFT | Qt::Key_F6)),
      m_send(command(tr("Send keys to this tile"), tr("Turn the red frame of this tile on or off"),
                     Qt::Key_F8)),
      m_screenMenu(command(tr("Menu of this screen"), tr("Colors, font and capture"),
                           Qt::SHIFT | Qt::Key_F10)),
      m_tileEntries(new QActionGroup(this)) {
    // Held down, it would leave the frame as chance has it.
    m_send->setAutoRepeat(false);
    m_send->setCheckable(true);
    connect(m_next, &QAction::triggered, this, [this] { step(1); });
    connect(m_previous, &QAction::triggered, this, [this] { step(-1); });
    connect(m_send, &QAction::triggered, this, &TileMenu::toggleSendState);
    connect(m_screenMenu, &QAction::triggered, this, &TileMenu::showScreenMenu);
    connect(this, &QMenu::aboutToShow, this, &TileMenu::fill);
    // The entry may be without effect; its key must be ready for the next tile.
    connect(this, &QMenu::aboutToHide, this, [this] { m_send->setEnabled(true); });
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget* /*before*/, QWidget* focused) { followFocus(focused); });
    addActions({m_next, m_previous});
    addSeparator();
    addActions({m_send, m_screenMenu});
}

QAction* TileMenu::command(const QString& text, const QString& statusTip,
                           const QKeySequence& shortcut) {
    auto* action = new QAction(text, parentWidget());
    action->setShortcut(shortcut);
    action->setStatusTip(statusTip);
    parentWidget()->addAction(action);
    return action;
}

ConnectionWidget* TileMenu::current() const {
    if (m_tiles->contains(m_current))
        return m_current;
    return m_tiles->isEmpty() ? nullptr : m_tiles->constFirst();
}

void TileMenu::showScreenMenu() {
    if (ConnectionWidget* tile = current())
        tile->showScreenMenu();
}

void TileMenu::followFocus(QWidget* focused) {
    for (; focused; focused = focused->parentWidget())
        if (auto* tile = qobject_cast<ConnectionWidget*>(focused))
            m_current = tile;
}

void TileMenu::makeCurrent(ConnectionWidget* tile) {
    m_current = tile;
    tile->setFocus(Qt::ShortcutFocusReason);
}

void TileMenu::step(qsizetype by) {
    const qsizetype tiles = m_tiles->size();
    if (tiles == 0)
        return;
    const qsizetype to = (m_tiles->indexOf(current()) + by + tiles) % tiles;
    makeCurrent(m_tiles->at(to));
}

void TileMenu::toggleSendState() {
    if (ConnectionWidget* tile = current())
        tile->toggleSendState();
}

void TileMenu::fill() {
    // Those before stay: what is taken out of a menu loses its connections to it.
    const qsizetype lasting = actions().indexOf(m_screenMenu) + 1;
    for (QAction* entry : actions().sliced(lasting)) {
        removeAction(entry);
        if (entry->parent() == this)
            delete entry;
    }
    ConnectionWidget* tile = current();
    m_send->setChecked(tile && tile->receivesKeys());
    m_send->setEnabled(tile && tile->IsConnected());
    if (!tile)
        return;
    addButtons(tile);
    addSeparator();
    addActions(tile->menuEntries());
    addSeparator();
    addTiles();
}

/// What a tile has buttons for just now.
void TileMenu::addButtons(ConnectionWidget* tile) {
    for (QAbstractButton* button : tile->findChildren<QAbstractButton*>()) {
        if (!button->isVisibleTo(tile) || !button->isEnabled())
            continue;
        const QString tip = button->toolTip().isEmpty() ? button->text() : button->toolTip();
        addAction(tip, button, &QAbstractButton::click);
    }
}

void TileMenu::addTiles() {
    for (qsizetype i = 0; i < m_tiles->size(); ++i) {
        ConnectionWidget* tile = m_tiles->at(i);
        const QString number =
            (i < lastDigit ? QStringLiteral("&%1") : QStringLiteral("%1")).arg(i + 1);
        QAction* entry =
            addAction(tr("%1 %2 (%3)", "number, name and state of a tile")
                          .arg(number, asEntry(TileAccessible::name(*tile), fontMetrics()),
                               TileAccessible::state(*tile)),
                      tile, [this, tile] { makeCurrent(tile); });
        entry->setActionGroup(m_tileEntries);
        entry->setCheckable(true);
        entry->setChecked(tile == current());
    }
}
