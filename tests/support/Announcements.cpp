#include "Announcements.h"

#include <utility>

namespace {

struct Announcement {
    QAccessible::Event event;
    const QObject* object;
};

QList<Announcement>& heard() {
    static QList<Announcement> list;
    return list;
}

} // namespace

// The toolkit's own hears nothing unless an assistive program runs.
void QAccessible::updateAccessibility(QAccessibleEvent* event) {
    heard().append({event->type(), event->object()});
}

namespace announcements {

int takeAll() {
    return static_cast<int>(std::exchange(heard(), {}).size());
}

QList<QAccessible::Event> takeAbout(const QObject* object) {
    QList<QAccessible::Event> events;
    for (const Announcement& each : std::as_const(heard()))
        if (each.object == object)
            events.append(each.event);
    heard().removeIf([object](const Announcement& each) { return each.object == object; });
    return events;
}

} // namespace announcements
