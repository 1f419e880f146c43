#pragma once

#include <string_view>

/// What a news page may ask of the window that shows it. Pure function over bytes; any thread.
namespace news_page {

/// Whether a page is free of what would keep a rich text layout busy for seconds or for ever:
/// tables in tables in tables (each level doubles the work), thousands of elements in each other,
/// measures in millions. Pages that people write are.
bool isQuickToLayOut(std::string_view html);

} // namespace news_page
