#pragma once

#include "CellLook.h"

#include <QMutex>

#include <memory>
#include <vector>

/// Finds the one `Thing` of each look, which lives as long as somebody has it. `Thing` is made from
/// a look and tells it by look(). Any thread.
template <class Thing>
class SharedByLook {
public:
    std::shared_ptr<Thing> find(const CellLook& look) {
        const QMutexLocker lock(&m_mutex);
        std::erase_if(m_known, [](const auto& thing) { return thing.expired(); });
        for (const auto& known : m_known) {
            auto thing = known.lock();
            if (thing && thing->look() == look)
                return thing;
        }
        auto made = std::make_shared<Thing>(look);
        m_known.push_back(made);
        return made;
    }

private:
    QMutex m_mutex;
    std::vector<std::weak_ptr<Thing>> m_known;
};
