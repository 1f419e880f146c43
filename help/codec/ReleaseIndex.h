#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The index of released installers: plain text, one record a line, fields separated by tabs,
/// empty fields dropped. Pure functions over bytes; any thread.
namespace release_index {

/// What one record offers.
struct Release {
    std::string version;
    std::string fileName;

    bool operator==(const Release&) const = default;
};

/// The last record whose first field is exactly `tag`; nothing when there is none. A record for the
/// tag that lacks a field is passed over.
std::optional<Release> find(std::string_view index, std::string_view tag);

/// How an offered version relates to the running one.
enum class Comparison { Same = 0, Newer = 1, Older = 2 };

/// Compares two versions as decimal numbers, so that 2013.10 is older than 2013.2. Numbers that are
/// equal but written differently count as newer. Text that is no number counts as 0.
Comparison compare(std::string_view running, std::string_view offered);

/// Whether a file of this name stays in the folder it is put into on every platform.
bool staysInFolder(std::string_view fileName);

} // namespace release_index
