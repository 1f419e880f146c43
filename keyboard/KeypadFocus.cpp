#include "KeypadFocus.h"

#include "NearestKey.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QWidget>
#include <QWindow>

#include <utility>

namespace {

Qt::ArrowType arrowOf(int key) {
    switch (key) {
    case Qt::Key_Left:
        return Qt::LeftArrow;
    case Qt::Key_Right:
        return Qt::RightArrow;
    case Qt::Key_Up:
        return Qt::UpArrow;
    case Qt::Key_Down:
        return Qt::DownArrow;
    default:
        return Qt::NoArrow;
    }
}

bool isModifier(int key) {
    return key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Meta ||
           key == Qt::Key_Alt || key == Qt::Key_AltGr;
}

bool walksThePalette(const QKeyEvent& event) {
    return (event.key() == Qt::Key_Tab || event.key() == Qt::Key_Backtab) &&
           !(event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
}

bool pressesAKey(int key) {
    return key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter;
}

} // namespace

KeypadFocus::KeypadFocus(QWidget* palette) : QObject(palette), m_palette(palette) {
    // A window without a focus of its own would give it to its first key when it is activated.
    palette->setFocusPolicy(Qt::StrongFocus);
    palette->setFocus();
    palette->installEventFilter(this);
    const auto buttons = palette->findChildren<QAbstractButton*>();
    for (QAbstractButton* button : buttons) {
        button->installEventFilter(this);
    }
    palette->setWindowFlag(Qt::WindowDoesNotAcceptFocus);
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &KeypadFocus::keyboardMoved);
}

void KeypadFocus::takeKeyboard() {
    // The widget's own flag stays: changing that would hide the window.
    m_palette->windowHandle()->setFlag(Qt::WindowDoesNotAcceptFocus, false);
    m_palette->activateWindow();
}

void KeypadFocus::keyboardMoved(const QWindow* focused) {
    // Not left to events of the palette: many styles count it as active while its owner is.
    QWindow* const window = m_palette->windowHandle();
    const bool had = std::exchange(m_hasKeyboard, window && window == focused);
    if (had && !m_hasKeyboard && window) {
        window->setFlag(Qt::WindowDoesNotAcceptFocus);
    }
}

bool KeypadFocus::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress:
        return keyPress(qobject_cast<QAbstractButton*>(watched), static_cast<QKeyEvent*>(event));
    case QEvent::KeyRelease:
        typeOn(static_cast<QKeyEvent*>(event));
        return true;
    default:
        return QObject::eventFilter(watched, event);
    }
}

bool KeypadFocus::keyPress(QAbstractButton* focused, QKeyEvent* event) {
    const int key = event->key();
    if (walksThePalette(*event)) {
        return false;
    }
    if (focused && arrowOf(key) != Qt::NoArrow) {
        moveFrom(focused, arrowOf(key));
        return true;
    }
    if (focused && pressesAKey(key)) {
        if (!event->isAutoRepeat()) {
            focused->click();
        }
        return true;
    }
    if (!isModifier(key)) {
        m_palette->setFocus();
    }
    typeOn(event);
    return true;
}

void KeypadFocus::moveFrom(QAbstractButton* focused, Qt::ArrowType direction) {
    QList<QAbstractButton*> buttons = m_palette->findChildren<QAbstractButton*>();
    buttons.removeIf([](const QAbstractButton* button) { return !button->isVisible(); });
    QList<QRect> places;
    for (const QAbstractButton* button : std::as_const(buttons)) {
        places.append({button->mapTo(m_palette, QPoint()), button->size()});
    }
    buttons.at(nearestKey(places, buttons.indexOf(focused), direction))
        ->setFocus(Qt::TabFocusReason);
}

void KeypadFocus::typeOn(QKeyEvent* event) {
    if (QWidget* const owner = m_palette->parentWidget()) {
        QCoreApplication::sendEvent(owner->window(), event);
    }
}
