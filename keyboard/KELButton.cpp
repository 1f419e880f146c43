#include "KELButton.h"

#include "KeyCodes.h"

#include <QMouseEvent>

KELButton::KELButton(QWidget* parent) : QToolButton(parent) {
    // The last two rules lack their "rgba" and are kept so: correcting them would change how the
    // keys look.
    setStyleSheet(QStringLiteral(
        "KELButton { color: rgba(228, 0, 0, 100%); background-color: rgba(0, 0, 0, 0%) } "
        "FCTButton { color: rgba(192, 192, 192, 100%); background-color: rgba(228, 0, 0, 100%) }"
        "GENButton { color: rgba(192, 192, 192, 100%); background-color: (0, 0, 0, 0%)  }"
        "PGButton { color: rgba(192, 192, 192, 100%); background-color: (0, 0, 0, 0%)  }"));
}

void KELButton::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton || event->button() == Qt::RightButton) {
        press(event->modifiers().testFlag(Qt::ShiftModifier),
              event->modifiers().testFlag(Qt::MetaModifier));
    }
    QToolButton::mousePressEvent(event);
}

void KELButton::press(bool shift, bool meta) {
    emit MakeKey(m_code, modifierState(shift, meta));
}
