#pragma once

#include "KeyCodes.h"

#include <QList>
#include <QStringList>
#include <QWidget>

#include <memory>

class FlexLabel;
class KeypadFocus;
class LetterButton;
class Ui_Keyboard;

/// The keypad palette: an on-screen copy of the instrument's keypad, in a window of its own that
/// stays above its parent.
///
/// Emits keyPressed(unsigned short) with the code of every key clicked. It knows nothing of
/// instruments; its parent sends the codes, and handles what is typed while the palette has the
/// keyboard (see KeypadFocus). Its Shift and Ctrl stay down until clicked again or until
/// showModState() mirrors those of the computer keyboard.
class Keyboard : public QWidget {
    Q_OBJECT

public:
    explicit Keyboard(QWidget* parent = nullptr);
    ~Keyboard() override;

    /// Shows these states of Shift and Ctrl, and what the keys then mean.
    void showModState(bool shift, bool ctrl);
    /// Labels every key for the present state of Shift and Ctrl.
    void relabelKeys();
    /// Gives the computer's keyboard to the visible palette, whose keys can then be walked with
    /// Tab.
    void takeKeyboard();
    /// Shows or hides the cursor and screen keys.
    void showNavKeys(bool show);
    /// Shows or hides the function keys.
    void showFctKeys(bool show);

public slots:
    void keyPressed(LetterButton* key);

signals:
    void keyPressed(unsigned short code);

private:
    void activate(LetterButton* key, unsigned char letter, unsigned char ctrlCode);
    void activate(LetterButton* key, const KeyCodes& codes);
    void activate(FlexLabel* key, const KeyCodes& codes, const QStringList& labels);
    unsigned char state() const;
    void fitWindow();

    std::unique_ptr<Ui_Keyboard> m_ui;
    QList<LetterButton*> m_keys;
    KeypadFocus* m_focus;
};
