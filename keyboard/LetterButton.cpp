#include "LetterButton.h"

#include <QMouseEvent>

#include <algorithm>

namespace {

/// Of a line of text: a target for a finger or a hurried mouse.
constexpr int kHeightInTenths = 25;

} // namespace

LetterButton::LetterButton(QWidget* parent) : QToolButton(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setFocusPolicy(Qt::TabFocus);
    // The right button presses a key as the left one does; it must not open a menu behind it.
    setContextMenuPolicy(Qt::PreventContextMenu);
    connect(this, &QAbstractButton::clicked, this, [this] {
        if (!m_mouseDown) {
            emit clicked(this);
        }
    });
}

void LetterButton::relabel(unsigned char state) {
    setText(label(state));
    setAccessibleName(spoken(state));
}

QSize LetterButton::sizeHint() const {
    QSize hint = QToolButton::sizeHint();
    const auto width = [this](const QString& text) {
        return fontMetrics().size(Qt::TextShowMnemonic, text).width();
    };
    const int shown = width(text());
    int widest = shown;
    constexpr std::array<unsigned char, 4> kStates{0, 1, 2, 3};
    for (const unsigned char state : kStates) {
        widest = std::max(widest, width(label(state)));
    }
    hint.rwidth() += widest - shown;
    hint.setHeight(std::max(hint.height(), kHeightInTenths * fontMetrics().height() / 10));
    return hint;
}

void LetterButton::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton || event->button() == Qt::RightButton) {
        emit clicked(this);
    }
    // Not forgotten for another button: the release of the left one is no press by keyboard.
    m_mouseDown = m_mouseDown || event->button() == Qt::LeftButton;
    QToolButton::mousePressEvent(event);
}

void LetterButton::mouseReleaseEvent(QMouseEvent* event) {
    QToolButton::mouseReleaseEvent(event);
    m_mouseDown = m_mouseDown && event->button() != Qt::LeftButton;
}

QString LetterButton::label(unsigned char state) const {
    return keyLabel(theCode(state));
}

QString LetterButton::spoken(unsigned char state) const {
    return spokenKey(theCode(state));
}
