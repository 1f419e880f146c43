#include "ColorTables.h"

#include "PlainVariants.h"

#include <QDataStream>
#include <QIODevice>

#include <algorithm>

namespace {

/// Text, background and highlight; an invalid variant for each that is missing or damaged.
std::array<QVariant, 3> read(const QByteArray& bytes) {
    PlainVariants variants(bytes);
    // In the order in which they are written.
    return {variants.next(), variants.next(), variants.next()};
}

} // namespace

ColorTables::ColorTables(const QColor& text, const QColor& back, const QColor& highlight)
    : foreground{text, back, highlight, back}, background{back, text, back, highlight} {}

QByteArray ColorTables::toBytes() const {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    for (const QColor& color : {textColor(), backgroundColor(), highlightColor()})
        stream << QVariant(color.rgba());
    return bytes;
}

bool ColorTables::areIn(const QByteArray& bytes) {
    const auto isColor = [](const QVariant& value) { return value.typeId() == QMetaType::UInt; };
    return std::ranges::all_of(read(bytes), isColor);
}

ColorTables ColorTables::fromBytes(const QByteArray& bytes) {
    const auto [text, back, highlight] = read(bytes);
    return {QColor::fromRgb(text.toUInt()), QColor::fromRgb(back.toUInt()),
            QColor::fromRgb(highlight.toUInt())};
}
