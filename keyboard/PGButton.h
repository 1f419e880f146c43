#pragma once

#include "KELButton.h"

/// A KELButton in the colours of a page key.
class PGButton : public KELButton {
    Q_OBJECT

public:
    using KELButton::KELButton;
};
