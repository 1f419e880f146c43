#pragma once

#include <QAccessible>
#include <QList>

/// What the program announces to assistive technology, whether or not there is any: linked into a
/// test, it takes the place of the toolkit's own way out. GUI thread.
namespace announcements {

/// Everything since the last call.
int takeAll();
/// What was announced about one object since the last call; the rest is kept.
QList<QAccessible::Event> takeAbout(const QObject* object);

} // namespace announcements
