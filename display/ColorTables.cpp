#include "ColorTables.h"

#include "PlainVariants.h"

#include <QDataStream>
#include <QIODevice>

ColorTables::ColorTables(const QColor& text, const QColor& back, const QColor& highlight)
    : foreground{text, back, highlight, back}, background{back, text, back, highlight} {}

QByteArray ColorTables::toBytes() const {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    for (const QColor& color : {textColor(), backgroundColor(), highlightColor()})
        stream << QVariant(color.rgba());
    return bytes;
}

ColorTables ColorTables::fromBytes(const QByteArray& bytes) {
    PlainVariants variants(bytes);
    const auto nextColor = [&variants] { return QColor::fromRgb(variants.next().toUInt()); };
    const QColor text = nextColor();
    const QColor back = nextColor();
    const QColor highlight = nextColor();
    return {text, back, highlight};
}
