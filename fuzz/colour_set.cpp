#include "ColorTables.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// Whatever a settings store holds, it is read as three opaque colours, which are then kept.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray stored(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const ColorTables read = ColorTables::fromBytes(stored);
    for (const QColor& color : {read.textColor(), read.backgroundColor(), read.highlightColor()}) {
        if (!color.isValid() || color.alpha() != 255)
            std::abort();
    }
    const QByteArray bytes = read.toBytes();
    const ColorTables again = ColorTables::fromBytes(bytes);
    if (bytes.size() != 27 || again.foreground != read.foreground ||
        again.background != read.background || !ColorTables::areIn(bytes))
        std::abort();
    if (ColorTables::areIn(stored) && !ColorTables::areIn(stored.first(bytes.size())))
        std::abort();
    return 0;
}
