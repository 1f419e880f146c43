#pragma once

#include <QString>
#include <Qt>

#include <optional>

/// The computer keyboard's keys as instrument key codes. Pure; any thread.
namespace keymap {

/// The modifier value in the low byte of a special key's code: 1 for Shift, plus 2 for Meta (the
/// Control key on macOS).
unsigned short modifierBits(Qt::KeyboardModifiers modifiers);

/// The code of a pressed key, or nothing when the instrument has no such key. `text` is what the
/// key would type.
std::optional<unsigned short> codeFor(int key, Qt::KeyboardModifiers modifiers,
                                      const QString& text);

} // namespace keymap
