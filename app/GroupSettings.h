#pragma once

#include <QByteArray>
#include <QString>

class QSettings;

/// What the group window keeps from one run to the next. A value that is missing or damaged in the
/// store is replaced by its default, so that the program always starts. GUI thread.
struct GroupSettings {
    /// Tiles that a damaged store may ask for at most; more is taken for damage.
    static constexpr int maxCount = 256;

    /// The window's saveGeometry(); empty when there is none.
    QByteArray geometry;
    /// Columns of the grid at most.
    int maxColumns = 2;
    /// Number of tiles.
    int count = 1;
    /// The screens' colour set.
    QByteArray colors = defaultColors();
    /// The screens' font family.
    QString fontFamily = QStringLiteral("Arial");

    static GroupSettings load(const QSettings& store);
    void save(QSettings& store) const;

    /// Blue text on light grey, highlights in red.
    static QByteArray defaultColors();
};
