#pragma once

#include "InstrumentScreen.h"
#include "SoftKeys.h"

#include <cstdint>
#include <string>
#include <string_view>

/// One page of an instrument: draws itself onto a fresh screen and takes the keys that mean
/// something to it. The instrument owns it, adds the soft-key labels and turns the pages.
class InstrumentPage {
public:
    /// What a page makes of a key.
    struct KeyOutcome {
        bool taken = false; ///< false: the key is left to turn pages
        std::string chat;   ///< UTF-8 to send to the operator, unless empty
    };

    InstrumentPage() = default;
    InstrumentPage(const InstrumentPage&) = delete;
    InstrumentPage& operator=(const InstrumentPage&) = delete;
    virtual ~InstrumentPage() = default;

    /// Whether the page changes by itself as time goes by.
    virtual bool isLive() const { return false; }

    virtual softkeys::Labels softKeyLabels() const = 0;

    virtual void draw(InstrumentScreen& screen) const = 0;

    virtual KeyOutcome applyKey(std::uint16_t code);

protected:
    /// The bar across row 1: whose screen this is, and a note at its right end. UTF-8.
    static void drawTitle(InstrumentScreen& screen, std::string_view name, std::string_view note);
};
