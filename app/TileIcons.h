#pragma once

#include <QHash>
#include <QIcon>

#include <memory>

/// The pictures of the tiles' buttons, unpacked once for all tiles. GUI thread.
class TileIcons {
public:
    /// Those that all tiles use; they exist as long as one of them holds this.
    static std::shared_ptr<TileIcons> shared();

    /// The picture with that path among the resources.
    const QIcon& icon(const QString& path);

private:
    QHash<QString, QIcon> m_icons;
};
