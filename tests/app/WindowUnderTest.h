#pragma once

#include "ConnectionWidget.h"
#include "FakeLink.h"
#include "GroupWindow.h"

#include <QAction>
#include <QGridLayout>
#include <QLabel>
#include <QStatusBar>

#include <memory>

/// The window and what a test looks at.
struct Window {
    QGridLayout* grid() const {
        return widget->centralWidget()->findChild<QGridLayout*>("gridLayout");
    }
    ConnectionWidget* tile(int row, int column) const {
        const auto* item = grid()->itemAtPosition(row, column);
        return item ? qobject_cast<ConnectionWidget*>(item->widget()) : nullptr;
    }
    QList<ConnectionWidget*> tiles() const { return widget->findChildren<ConnectionWidget*>(); }
    static FakeLink* connectTile(ConnectionWidget* tile) {
        auto* link = new FakeLink;
        tile->connectEther({}, QStringLiteral("unit"), link, "192.0.2.1", 0, 7100);
        link->open();
        link->calls.clear();
        return link;
    }
    QString modifierText() const {
        const auto* label = widget->statusBar()->findChild<QLabel*>();
        return label ? label->text() : QStringLiteral("no label");
    }
    QAction* action(const QString& text) const {
        for (auto* action : widget->findChildren<QAction*>())
            if (action->text() == text)
                return action;
        return nullptr;
    }

    std::unique_ptr<GroupWindow> widget = std::make_unique<GroupWindow>();
};
