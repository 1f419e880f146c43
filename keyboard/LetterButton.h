#pragma once

#include "KeyCodes.h"

#include <QToolButton>

/// A key of the palette with one code for each modifier state, labelled with the character it
/// would send.
///
/// Emits clicked(LetterButton*) on the press of the left or the right mouse button, as a real key
/// acts when it goes down, and when it is worked in any other way (the computer keyboard, a screen
/// reader). Wide enough for its label in every state, so that nothing moves when labels change.
class LetterButton : public QToolButton {
    Q_OBJECT

public:
    explicit LetterButton(QWidget* parent = nullptr);

    void setCodes(const KeyCodes& codes) { m_codes = codes; }
    /// The code for a modifier state (bit 0 Shift, bit 1 Ctrl; higher bits do not count).
    unsigned short theCode(unsigned char state) const { return m_codes[state & 3U]; }

    /// Shows what the key means in a modifier state.
    virtual void relabel(unsigned char state);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

signals:
    void clicked(LetterButton* self);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

    /// The label for a modifier state.
    virtual QString label(unsigned char state) const;
    /// What a screen reader says for a modifier state.
    virtual QString spoken(unsigned char state) const;

private:
    KeyCodes m_codes{};
    bool m_mouseDown = false;
};
