#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

/// One item of a screen update; the view points into the bundle's body.
struct BundleItem {
    char code = '\0';
    std::string_view data;
};

/// Walks the body of a "BNDL" packet item by item. Pure, any thread; the body must outlive it.
///
/// A damaged item ends the walk for good, and then the screen is not to be redrawn: a screen keeps
/// what the items before the damage drew until the next whole bundle.
class BundleWalk {
public:
    /// Bytes in front of an item's data: its code and its length.
    static constexpr std::size_t itemHeaderSize = 5;

    explicit BundleWalk(std::string_view body) : m_rest(body) {}

    /// The next item, or nothing at the end or at damage; atEnd() tells which.
    std::optional<BundleItem> next();

    /// Whether next() has met the orderly end of the bundle: fewer bytes left than the smallest
    /// item with data has. Only then is the screen to be redrawn.
    bool atEnd() const { return m_atEnd; }

private:
    std::string_view m_rest;
    bool m_atEnd = false;
    bool m_damaged = false;
};
