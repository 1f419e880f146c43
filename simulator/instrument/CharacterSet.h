#pragma once

#include <string>
#include <string_view>

/// The instrument's character set: code page 437's symbols, box pieces and blocks where the
/// display knows them, Latin-1 everywhere else. Pure functions; any thread.
namespace charset {

/// The instrument's codes for UTF-8 text. A control character becomes a space; what the instrument
/// cannot show, and every byte that is not UTF-8, becomes "?".
std::string fromUtf8(std::string_view text);

/// UTF-8 that looks like the instrument's codes, one character a code: for a terminal, and for
/// messages that leave the instrument.
std::string toUtf8(std::string_view codes);

} // namespace charset
