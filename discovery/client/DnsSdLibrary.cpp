#include "DnsSdLibrary.h"

#include <QtGlobal>

#ifdef Q_OS_LINUX

#include <QByteArray>
#include <avahi-common/malloc.h>
#include <cstdlib>

namespace {

// When the daemon goes, the library calls the first reply function that an operation has, and looks
// for it where only some operations have written. What was never written has to be zero.
void* zeroed(std::size_t size) {
    return std::calloc(1, size);
}

} // namespace

void prepareDnsSdLibrary() {
    static const AvahiAllocator allocator{zeroed, std::free, std::realloc, std::calloc};
    avahi_set_allocator(&allocator);
    // Without it a warning that helps nobody goes to stderr.
    if (!qEnvironmentVariableIsSet("AVAHI_COMPAT_NOWARN"))
        qputenv("AVAHI_COMPAT_NOWARN", "1");
}

#else

void prepareDnsSdLibrary() {}

#endif
