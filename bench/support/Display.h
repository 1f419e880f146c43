#pragma once

#include "Process.h"

#include <cstdint>
#include <memory>
#include <string>
#include <xcb/xcb.h>

/// An X display without a screen, and eyes and hands for it.
class Display {
public:
    Display(int width, int height);

    /// "DISPLAY=...", for the programs that are to show their windows here.
    std::string variable() const { return "DISPLAY=" + m_name; }

    /// The colour of one pixel of what an operator would see.
    std::uint32_t pixel(int x, int y) const;
    /// Forgets the windows that have appeared so far.
    void forgetWindows() const;
    /// Until another window appears, or a minute has passed. Asks for nothing meanwhile: what the
    /// display has to do for an onlooker, a program that starts has to wait for.
    void waitForWindow() const;
    /// Until the pixel has a colour other than `color`; looks every tenth of a millisecond. The
    /// time at which it had, or infinity after a minute.
    double waitForChange(int x, int y, std::uint32_t color) const;

    /// Gives a window the keyboard.
    void focus(std::uint32_t window) const;
    /// Presses and releases the key "a", and returns the time just before.
    double pressKey() const;

private:
    struct Disconnector {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    std::unique_ptr<Process> m_server;
    std::string m_name;
    std::unique_ptr<xcb_connection_t, Disconnector> m_connection;
    xcb_window_t m_root = 0;
};
