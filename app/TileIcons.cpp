#include "TileIcons.h"

std::shared_ptr<TileIcons> TileIcons::shared() {
    static std::weak_ptr<TileIcons> known;
    std::shared_ptr<TileIcons> icons = known.lock();
    if (!icons)
        known = icons = std::make_shared<TileIcons>();
    return icons;
}

const QIcon& TileIcons::icon(const QString& path) {
    const auto known = m_icons.constFind(path);
    return known != m_icons.constEnd() ? *known : *m_icons.insert(path, QIcon(path));
}
