#include "ScreenAccessible.h"

#include "LCD7100.h"

ScreenAccessible::ScreenAccessible(LCD7100* screen)
    : QAccessibleWidget(screen, QAccessible::Graphic) {}

QAccessibleInterface* ScreenAccessible::create(const QString& /*className*/, QObject* object) {
    auto* screen = qobject_cast<LCD7100*>(object);
    return screen ? new ScreenAccessible(screen) : nullptr;
}

QString ScreenAccessible::text(QAccessible::Text kind) const {
    if (kind != QAccessible::Description)
        return QAccessibleWidget::text(kind);
    return qobject_cast<LCD7100*>(widget())->shownText();
}
