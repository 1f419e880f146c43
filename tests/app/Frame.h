#pragma once

#include <QFrame>
#include <QPalette>

/// Whether a tile looks like one that receives keys: a box with a red line.
inline bool isRed(const QFrame& tile) {
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
        if (tile.palette().brush(group, QPalette::WindowText) != QBrush(Qt::red))
            return false;
    return tile.frameShape() == QFrame::Box && tile.frameShadow() == QFrame::Plain &&
           tile.lineWidth() == 2;
}

/// Whether a tile looks like one that does not.
inline bool isRaised(const QFrame& tile) {
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
        if (tile.palette().brush(group, QPalette::WindowText) != QBrush(Qt::black))
            return false;
    return tile.frameShape() == QFrame::Panel && tile.frameShadow() == QFrame::Raised &&
           tile.lineWidth() == 2;
}
