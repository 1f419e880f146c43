#include "FontsAhead.h"

#include <fontconfig/fontconfig.h>

#include <system_error>

FontsAhead::FontsAhead() {
    try {
        m_thread = std::thread([] { FcInit(); });
    } catch (const std::system_error&) {
        // Without a thread Qt does it by itself, a little later.
    }
}

FontsAhead::~FontsAhead() {
    if (m_thread.joinable())
        m_thread.join();
}
