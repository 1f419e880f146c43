#include "GroupSettings.h"

#include "ColorTables.h"

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

} // namespace

QByteArray GroupSettings::defaultColors() {
    return ColorTables().toBytes();
}

GroupSettings GroupSettings::load(const QSettings& store) {
    GroupSettings settings;
    settings.geometry = store.value(geometryKey).toByteArray();
    settings.maxColumns = readInt(store, maxColumnsKey).value_or(settings.maxColumns);
    const int count = readInt(store, countKey).value_or(settings.count);
    if (count >= 0 && count <= maxCount)
        settings.count = count;
    if (const QByteArray colors = store.value(colorsKey).toByteArray(); ColorTables::areIn(colors))
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
