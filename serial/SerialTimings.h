#pragma once

#include "XferTimeouts.h"

/// The clocks of a serial link; the defaults are the instrument's, tests have quicker ones.
struct SerialTimings {
    /// Longest sleep of an idle worker, milliseconds.
    int wakeUp = 200;
    XferTimeouts transfer;
};
