#pragma once

#include <map>
#include <span>
#include <string>

/// The TXT record of a service: entries of a length byte and that many bytes, most of them
/// "key=value". Pure functions over bytes; any thread.
namespace txtrecord {

using Keys = std::map<std::string, std::string>;

/// The most that one length byte can say.
inline constexpr std::size_t entryLimit = 255;
/// The most that a record's 16-bit length can say.
inline constexpr std::size_t recordLimit = 65535;

/// The keys in a received record. Empty entries and entries without "=" are passed over, a later
/// entry replaces an earlier one of the same key, and an entry that claims more bytes than there
/// are ends the walk. Keys and values are the bytes received, whatever they are.
Keys parse(std::span<const unsigned char> record);

/// The record for `keys`, in key order. An entry that does not fit in entryLimit, or no longer in
/// recordLimit, is left out: half a value would be a wrong one.
std::string build(const Keys& keys);

} // namespace txtrecord
