#include "TileAccessible.h"

#include "ConnectionWidget.h"
#include "LCD7100.h"

TileAccessible::TileAccessible(ConnectionWidget* tile)
    : QAccessibleWidget(tile, QAccessible::Grouping) {}

QAccessibleInterface* TileAccessible::create(const QString& /*className*/, QObject* object) {
    auto* tile = qobject_cast<ConnectionWidget*>(object);
    return tile ? new TileAccessible(tile) : nullptr;
}

QString TileAccessible::name(const ConnectionWidget& tile) {
    const QString instrument = tile.nameText();
    return instrument.isEmpty() ? tr("Empty tile") : instrument;
}

QString TileAccessible::state(const ConnectionWidget& tile) {
    if (!tile.IsConnected())
        return tr("not connected, receives no keys");
    return tile.receivesKeys() ? tr("connected, receives keys") : tr("connected, receives no keys");
}

QString TileAccessible::text(QAccessible::Text kind) const {
    const auto& tile = *qobject_cast<const ConnectionWidget*>(widget());
    switch (kind) {
    case QAccessible::Name:
        return name(tile);
    case QAccessible::Description:
        // Without a connection the screen shows nothing of an instrument's.
        return tile.IsConnected() ? state(tile) + u'\n' + tile.screen().shownText() : state(tile);
    default:
        return QAccessibleWidget::text(kind);
    }
}
