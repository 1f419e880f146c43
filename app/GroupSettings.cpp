#include "GroupSettings.h"

#include <QColor>
#include <QDataStream>
#include <QIODevice>
#include <QSettings>
#include <QVariant>

#include <optional>

namespace {

constexpr auto geometryKey = "group/geometry";
constexpr auto maxColumnsKey = "group/maxcols";
constexpr auto countKey = "group/count";
constexpr auto colorsKey = "group/colors";
constexpr auto fontKey = "group/font";

std::optional<int> readInt(const QSettings& store, const char* key) {
    bool readable = false;
    const int value = store.value(key).toString().toInt(&readable);
    return readable ? std::optional(value) : std::nullopt;
}

/// Whether the bytes are three QVariants of type unsigned int: a screen in a colour set that cannot
/// be read would be black on black.
bool isColorSet(const QByteArray& bytes) {
    QDataStream stream(bytes);
    for (int i = 0; i < 3; ++i) {
        qint32 type = 0;
        bool isNull = false;
        quint32 color = 0;
        stream >> type >> isNull >> color;
        if (stream.status() != QDataStream::Ok || type != QMetaType::UInt)
            return false;
    }
    return true;
}

} // namespace

QByteArray GroupSettings::defaultColors() {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    for (const QColor& color : {QColor(Qt::blue), QColor(224, 224, 224), QColor(Qt::red)})
        stream << QVariant(color.rgba());
    return bytes;
}

GroupSettings GroupSettings::load(const QSettings& store) {
    GroupSettings settings;
    settings.geometry = store.value(geometryKey).toByteArray();
    settings.maxColumns = readInt(store, maxColumnsKey).value_or(settings.maxColumns);
    const int count = readInt(store, countKey).value_or(settings.count);
    if (count >= 0 && count <= maxCount)
        settings.count = count;
    if (const QByteArray colors = store.value(colorsKey).toByteArray(); isColorSet(colors))
        settings.colors = colors;
    if (const QString family = store.value(fontKey).toString(); !family.isEmpty())
        settings.fontFamily = family;
    return settings;
}

void GroupSettings::save(QSettings& store) const {
    store.setValue(colorsKey, colors);
    store.setValue(fontKey, fontFamily);
    store.setValue(geometryKey, geometry);
    store.setValue(countKey, count);
    store.setValue(maxColumnsKey, maxColumns);
}
