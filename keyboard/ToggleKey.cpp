#include "ToggleKey.h"

#include <QStyleOptionToolButton>

ToggleKey::ToggleKey(QWidget* parent) : QToolButton(parent) {
    setCheckable(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setFocusPolicy(Qt::TabFocus);
}

void ToggleKey::initStyleOption(QStyleOptionToolButton* option) const {
    QToolButton::initStyleOption(option);
    if (isChecked()) {
        // The palette is seldom the active window, and its state counts most then.
        const QPalette shown = palette();
        option->palette.setBrush(QPalette::Button,
                                 shown.brush(QPalette::Active, QPalette::Highlight));
        option->palette.setBrush(QPalette::ButtonText,
                                 shown.brush(QPalette::Active, QPalette::HighlightedText));
    }
}
