#pragma once

#include <QList>
#include <QRect>

/// The key that an arrow pressed on key number `from` leads to: the nearest one on that side, one
/// in the same row or column before others. Returns `from` when there is none.
qsizetype nearestKey(const QList<QRect>& keys, qsizetype from, Qt::ArrowType direction);
