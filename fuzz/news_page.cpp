#include "NewsPage.h"

#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string page(reinterpret_cast<const char*>(data), size);
    // Harmless words in front change nothing, and what was too much stays too much.
    const bool quick = news_page::isQuickToLayOut(page);
    if (news_page::isQuickToLayOut("GX-7100 <br> news " + page) != quick)
        std::abort();
    if (!quick && news_page::isQuickToLayOut(page + "<p>more"))
        std::abort();
    return 0;
}
