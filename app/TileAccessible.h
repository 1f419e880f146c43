#pragma once

#include <QAccessibleWidget>
#include <QCoreApplication>

class ConnectionWidget;

/// A tile as assistive technology sees it: its name is the instrument; its description says whether
/// that is connected, whether it receives keys and what its screen shows. All of it is put together
/// when somebody asks. GUI thread.
class TileAccessible : public QAccessibleWidget {
    Q_DECLARE_TR_FUNCTIONS(TileAccessible)

public:
    explicit TileAccessible(ConnectionWidget* tile);

    /// The factory for QAccessible::installFactory(); nothing for other classes than
    /// ConnectionWidget.
    static QAccessibleInterface* create(const QString& className, QObject* object);

    /// The instrument of a tile; never empty.
    static QString name(const ConnectionWidget& tile);
    /// Whether it is connected and whether it receives keys.
    static QString state(const ConnectionWidget& tile);

    QString text(QAccessible::Text kind) const override;
};
