#include "NearestKey.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <tuple>

namespace {

/// `key` turned so that `direction` points right; only distances count afterwards.
QRect turned(const QRect& key, Qt::ArrowType direction) {
    switch (direction) {
    case Qt::LeftArrow:
        return {-key.x() - key.width(), key.y(), key.width(), key.height()};
    case Qt::DownArrow:
        return {key.y(), key.x(), key.height(), key.width()};
    case Qt::UpArrow:
        return {-key.y() - key.height(), key.x(), key.height(), key.width()};
    default:
        return key;
    }
}

} // namespace

qsizetype nearestKey(const QList<QRect>& keys, qsizetype from, Qt::ArrowType direction) {
    // Ordered by: the way ahead with a sidestep counted fourfold, then by how far off the middle.
    using Distance = std::tuple<int, int>;
    constexpr int kSidestep = 4;
    const QRect here = turned(keys.at(from), direction);
    qsizetype nearest = from;
    Distance best(std::numeric_limits<int>::max(), 0);
    for (qsizetype i = 0; i < keys.size(); ++i) {
        const QRect there = turned(keys.at(i), direction);
        const int ahead = there.left() - here.right();
        if (ahead <= 0) {
            continue;
        }
        const int aside = std::max({0, there.top() - here.bottom(), here.top() - there.bottom()});
        const Distance distance(ahead + kSidestep * aside,
                                std::abs(there.center().y() - here.center().y()));
        if (distance < best) {
            best = distance;
            nearest = i;
        }
    }
    return nearest;
}
