#pragma once

#include <QByteArray>
#include <QColor>

#include <array>

/// The colours of a screen: for each cell attribute the colour of what is drawn and the colour
/// behind it, all made from three colours that the operator chooses. A value; any thread.
struct ColorTables {
    /// Normal, inverse, highlight, inverse highlight.
    static constexpr std::size_t attributeCount = 4;

    std::array<QColor, attributeCount> foreground;
    std::array<QColor, attributeCount> background;

    ColorTables() : ColorTables(defaultText(), defaultBackground(), defaultHighlight()) {}
    ColorTables(const QColor& text, const QColor& background, const QColor& highlight);

    static QColor defaultText() { return Qt::blue; }
    static QColor defaultBackground() { return {224, 224, 224}; }
    static QColor defaultHighlight() { return Qt::red; }

    QColor textColor() const { return foreground[0]; }
    QColor backgroundColor() const { return background[0]; }
    QColor highlightColor() const { return foreground[2]; }

    /// The 27 bytes under which the three colours are stored and spread to other screens.
    QByteArray toBytes() const;

    /// Whether the bytes hold three colours as toBytes() writes them, whatever comes after; a
    /// screen in colours read from other bytes may be black on black.
    static bool areIn(const QByteArray& bytes);

    /// Reads what toBytes() made; colours come back opaque. Anything missing or damaged counts as
    /// the value 0, so that colour is black.
    static ColorTables fromBytes(const QByteArray& bytes);

    friend bool operator==(const ColorTables&, const ColorTables&) = default;
};
