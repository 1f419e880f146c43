#pragma once

#include "KELButton.h"

/// A KELButton in the colours of a function key.
class FCTButton : public KELButton {
    Q_OBJECT

public:
    using KELButton::KELButton;
};
