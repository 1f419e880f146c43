#pragma once

#include <optional>
#include <string_view>

/// What a "BNDL" packet does to a screen: of each kind of item the last one, for an item replaces
/// all that was there of its kind. However many items an instrument puts into a packet, the screen
/// is touched a few times. The views point into the packet's body. Pure, any thread.
struct ScreenUpdate {
    std::optional<std::string_view> text;
    std::optional<std::string_view> attributes;
    std::optional<std::string_view> cursor;
    std::optional<std::string_view> graphics;
    /// Whether characters are shown from now on, or graphics; nothing when that stays as it is.
    std::optional<bool> textMode;
    /// Whether the screen is to be redrawn: not after a damaged or unknown item, which ends the
    /// update, although what was before it counts.
    bool redraw = false;

    static ScreenUpdate of(std::string_view body);

private:
    bool add(char code, std::string_view data);
};
