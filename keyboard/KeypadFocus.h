#pragma once

#include <QObject>
#include <QPointer>

class QAbstractButton;
class QKeyEvent;
class QWidget;
class QWindow;

/// Where the computer keyboard's keys go while the palette is the active window.
///
/// What is typed is meant for the instruments, so it goes on to the window that the palette
/// belongs to, which handles it as if it had been typed there. A mouse click in the palette leaves
/// the keyboard with the window that had it. Only who walks into the palette with Tab works it with
/// the keyboard: then the arrow keys lead to the neighbouring key, Space and Enter press the key
/// that has the focus, and anything else is typed again and takes the focus off the keys.
class KeypadFocus : public QObject {
    Q_OBJECT

public:
    /// Watches `palette` and all its buttons, and lives as long as it.
    explicit KeypadFocus(QWidget* palette);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool keyPress(QAbstractButton* focused, QKeyEvent* event);
    void moveFrom(QAbstractButton* focused, Qt::ArrowType direction);
    void typeOn(QKeyEvent* event);
    void rememberTypedInto(QWindow* window);

    QWidget* m_palette;
    /// The window that had the keyboard before the palette.
    QPointer<QWindow> m_typedInto;
};
