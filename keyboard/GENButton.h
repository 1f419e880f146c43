#pragma once

#include "KELButton.h"

#include <array>

/// A key of the KELButton family whose code with a modifier has nothing to do with the one without.
class GENButton : public KELButton {
    Q_OBJECT

public:
    using KELButton::KELButton;

    void setCodes(unsigned char normal, unsigned char shiftPrefix, unsigned char shiftCode,
                  unsigned char metaPrefix, unsigned char metaCode, unsigned char shiftMetaPrefix,
                  unsigned char shiftMetaCode);

protected:
    void press(bool shift, bool meta) override;

private:
    struct PrefixedCode {
        unsigned char prefix = 0;
        unsigned char code = 0;
    };
    /// By modifier state: bit 0 Shift, bit 1 Meta.
    std::array<PrefixedCode, 4> m_codes;
};
