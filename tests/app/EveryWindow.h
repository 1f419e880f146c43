#pragma once

#include "CaptureControl.h"
#include "ChatWindow.h"
#include "GroupPrefs.h"
#include "Keyboard.h"
#include "LCD7100.h"
#include "LCDColorPicker.h"
#include "NewConnection.h"
#include "NewsBrowser.h"
#include "TransferPanel.h"
#include "UpdateWindow.h"
#include "WindowUnderTest.h"

#include <QAbstractButton>
#include <QSettings>

#include <functional>
#include <memory>

/// A window of the program as it stands before the operator, with what it needs to exist.
class ShownWindow {
public:
    virtual ~ShownWindow() = default;
    virtual QWidget& widget() = 0;
};

/// One that needs nothing but what its constructor takes.
template <typename Widget>
class Shown : public ShownWindow {
public:
    template <typename... Arguments>
    explicit Shown(Arguments&&... arguments) : m_widget(std::forward<Arguments>(arguments)...) {}
    QWidget& widget() override { return m_widget; }

private:
    Widget m_widget;
};

/// The colours of a screen.
class ShownPicker : public ShownWindow {
public:
    QWidget& widget() override {
        m_screen.showColorPicker();
        return *m_screen.findChild<LCDColorPicker*>();
    }

private:
    LCD7100 m_screen;
};

/// The main window with a tile that is connected and one that is not.
class ShownGroup : public ShownWindow {
public:
    ShownGroup() {
        m_window.widget->addEmptyConnection(false);
        m_link = Window::connectTile(m_window.tiles().constLast());
    }
    QWidget& widget() override { return *m_window.widget; }

private:
    Window m_window;
    FakeLink* m_link = nullptr;
};

/// The strip of a file transfer, with all that it can ever show.
class ShownStrip : public ShownWindow {
public:
    ShownStrip() {
        for (auto* button : m_strip.findChildren<QAbstractButton*>())
            button->show();
    }
    QWidget& widget() override { return m_strip; }

private:
    TransferPanel m_strip;
};

struct NamedWindow {
    const char* name;
    std::function<std::unique_ptr<ShownWindow>()> make;
};

/// Every window and dialog that is the program's own. `settings` must outlive them.
inline QList<NamedWindow> everyWindow(QSettings* settings) {
    const auto plain = []<typename Widget>(Shown<Widget>* shown) {
        return std::unique_ptr<ShownWindow>(shown);
    };
    return {
        {"group window", [] { return std::make_unique<ShownGroup>(); }},
        {"new connection", [=] { return plain(new Shown<NewConnection>); }},
        {"preferences", [=] { return plain(new Shown<GroupPrefs>); }},
        {"capture", [=] { return plain(new Shown<CaptureControl>(settings, nullptr)); }},
        {"colors", [] { return std::make_unique<ShownPicker>(); }},
        {"chat", [=] { return plain(new Shown<ChatWindow>(settings, nullptr)); }},
        {"keypad", [=] { return plain(new Shown<Keyboard>(nullptr)); }},
        {"update",
         [=] {
             return plain(
                 new Shown<UpdateWindow>(QStringLiteral("ftp://"), QString(), QString(), nullptr));
         }},
        {"file transfer", [] { return std::make_unique<ShownStrip>(); }},
        {"news", [=] { return plain(new Shown<NewsBrowser>); }},
    };
}
