#pragma once

#include "LetterButton.h"

/// A key that is no character (cursor, screen and function keys): its label never changes.
class FixedLabelNonAscii : public LetterButton {
    Q_OBJECT

public:
    using LetterButton::LetterButton;

    void relabel(unsigned char state) override;

protected:
    QString label(unsigned char state) const override;
};
