#pragma once

#include "ConnectionWidget.h"
#include "GroupWindow.h"
#include "HelpLinks.h"
#include "LCD7100.h"
#include "ModalDialog.h"
#include "NewConnection.h"

#include <QAction>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QToolButton>

#include <memory>

/// The real window and the hands of the person in front of it.
class Operator {
public:
    Operator() {
        // A window that starts asks for news: here there is nobody to ask.
        newsSource.clear();
        m_window = std::make_unique<GroupWindow>();
        m_window->show();
    }

    GroupWindow& window() { return *m_window; }
    bool hasWindow() const { return m_window != nullptr; }
    void quit() { m_window.reset(); }

    /// The tile that stands in the grid's place of this index, two in a row.
    ConnectionWidget& tile(int index) const {
        const auto* grid = m_window->centralWidget()->findChild<QGridLayout*>();
        return *qobject_cast<ConnectionWidget*>(
            grid->itemAtPosition(index / 2, index % 2)->widget());
    }
    LCD7100& display(int index) const { return *tile(index).findChild<LCD7100*>(); }

    /// Connects a tile by its connect button, or makes a new one for it when `index` is negative.
    void connectTo(const QString& address, int index, const QString& label = {}) {
        const ModalDialog<NewConnection> dialog([&](NewConnection& shown) {
            shown.findChild<QLineEdit*>(QStringLiteral("nameEdit"))->setText(label);
            shown.findChild<QComboBox*>(QStringLiteral("etherList"))->setEditText(address);
            shown.accept();
        });
        if (index < 0)
            trigger(QStringLiteral("Add connection"));
        else
            pressConnect(index);
    }
    void pressConnect(int index) const { button(index, "connectBtn")->click(); }
    void pressKill(int index) const { button(index, "killBtn")->click(); }
    void clickName(int index) const {
        QTest::mouseClick(tile(index).findChild<QLabel*>(QStringLiteral("nameLabel")),
                          Qt::LeftButton);
    }
    void type(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(m_window.get(), key, modifiers);
    }
    void trigger(const QString& text) const {
        for (auto* action : m_window->findChildren<QAction*>())
            if (action->text() == text)
                action->trigger();
    }

private:
    QToolButton* button(int index, const char* name) const {
        return tile(index).findChild<QToolButton*>(QLatin1String(name));
    }

    std::unique_ptr<GroupWindow> m_window;
};
