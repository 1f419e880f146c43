#pragma once

#include <QObject>

class QAbstractButton;
class QKeyEvent;
class QWidget;
class QWindow;

/// Where the computer keyboard's keys go while the palette is used.
///
/// The palette is a window that does not accept the keyboard: a click in it leaves that with the
/// window that has it. Only takeKeyboard() makes it the active window, until another one is. Then
/// Tab walks the keys, the arrow keys lead from the key that has the focus to its neighbours, and
/// Space and Enter press it. Anything else is meant for the instruments: it takes the focus off the
/// keys and goes on to the window that the palette belongs to, as if it had been typed there.
class KeypadFocus : public QObject {
    Q_OBJECT

public:
    /// Watches `palette` and all its buttons, and lives as long as it.
    explicit KeypadFocus(QWidget* palette);

    /// Gives the keyboard to the palette, which must be visible.
    void takeKeyboard();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void keyboardMoved(const QWindow* focused);
    bool keyPress(QAbstractButton* focused, QKeyEvent* event);
    void moveFrom(QAbstractButton* focused, Qt::ArrowType direction);
    void typeOn(QKeyEvent* event);

    QWidget* m_palette;
    bool m_hasKeyboard = false;
};
