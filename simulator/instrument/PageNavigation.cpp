#include "PageNavigation.h"

#include "InstrumentKeys.h"

#include <algorithm>
#include <cstddef>

namespace {

constexpr std::array<std::string_view, allPages.size()> names{"home",     "text", "entry",
                                                              "graphics", "keys", "messages"};

PageId neighbour(PageId page, std::size_t steps) {
    return allPages.at((static_cast<std::size_t>(page) + steps) % allPages.size());
}

constexpr std::size_t forward = 1;
constexpr std::size_t back = allPages.size() - 1;

} // namespace

std::string_view pageName(PageId page) {
    return names.at(static_cast<std::size_t>(page));
}

std::optional<PageId> pageNamed(std::string_view name) {
    const auto* found = std::ranges::find(names, name);
    if (found == names.end())
        return std::nullopt;
    return allPages.at(static_cast<std::size_t>(found - names.begin()));
}

std::optional<PageId> pageAfterKey(PageId page, std::uint16_t code) {
    using instrumentkey::Group;
    if (code == instrumentkey::escape)
        return PageId::Home;
    const bool home = page == PageId::Home;
    switch (instrumentkey::groupOf(code)) {
    case Group::Escape:
        return PageId::Home;
    case Group::Left:
    case Group::Up:
        return neighbour(page, back);
    case Group::Right:
    case Group::Down:
        return neighbour(page, forward);
    case Group::F1:
        return home ? std::optional(PageId::Text) : std::nullopt;
    case Group::F2:
        return home ? std::optional(PageId::Entry) : std::nullopt;
    case Group::F3:
        return home ? PageId::Graphics : neighbour(page, back);
    case Group::F4:
        return home ? PageId::Keys : neighbour(page, forward);
    case Group::F5:
        return home ? PageId::Messages : PageId::Home;
    default:
        return std::nullopt;
    }
}
