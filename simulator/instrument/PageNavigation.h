#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

/// The pages of an instrument, in the order in which the arrow keys go round.
enum class PageId { Home, Text, Entry, Graphics, Keys, Messages };

inline constexpr std::array allPages{PageId::Home,     PageId::Text, PageId::Entry,
                                     PageId::Graphics, PageId::Keys, PageId::Messages};

/// The page's name in lower case, as the command line takes it.
std::string_view pageName(PageId page);

/// The inverse of pageName(), or nothing.
std::optional<PageId> pageNamed(std::string_view name);

/// Where a key leads that the page itself has no use for; nothing when it leads nowhere.
///
/// Escape goes home. The soft keys of the home page open the others; on those, F3 and F4 turn to
/// the neighbours and F5 goes home. The arrows turn pages everywhere. Modifiers make no difference.
std::optional<PageId> pageAfterKey(PageId page, std::uint16_t code);
