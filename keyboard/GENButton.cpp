#include "GENButton.h"

#include "KeyCodes.h"

void GENButton::setCodes(unsigned char normal, unsigned char shiftPrefix, unsigned char shiftCode,
                         unsigned char metaPrefix, unsigned char metaCode,
                         unsigned char shiftMetaPrefix, unsigned char shiftMetaCode) {
    m_codes = {{{0, normal},
                {shiftPrefix, shiftCode},
                {metaPrefix, metaCode},
                {shiftMetaPrefix, shiftMetaCode}}};
}

void GENButton::press(bool shift, bool meta) {
    const PrefixedCode& pressed = m_codes[modifierState(shift, meta)];
    emit MakeKey(pressed.prefix, pressed.code);
}
