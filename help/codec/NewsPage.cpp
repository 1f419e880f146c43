#include "NewsPage.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string>

namespace news_page {

namespace {

constexpr int maxTableDepth = 8;
constexpr int maxDepth = 200;
constexpr std::size_t maxDigits = 5;

/// Elements that need no end: they do not count as being open.
constexpr std::array<std::string_view, 12> selfEnding = {"p",  "li", "tr", "td",  "th",   "dt",
                                                         "dd", "br", "hr", "img", "meta", "link"};
/// Elements whose long numbers are parts of addresses, and never measures of consequence.
constexpr std::array<std::string_view, 4> addresses = {"a", "img", "link", "meta"};

bool isOneOf(const auto& names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isSpace(char c) {
    return std::isspace(static_cast<unsigned char>(c)) != 0;
}

/// Whether a number too long for any measure stands in `text`; colours ("#000000") are none.
bool hasLongNumber(std::string_view text) {
    std::size_t digits = 0;
    bool isColor = false;
    for (const char c : text) {
        digits = isDigit(c) ? digits + 1 : 0;
        if (digits == 0)
            isColor = c == '#';
        if (digits > maxDigits && !isColor)
            return true;
    }
    return false;
}

/// The element's name in small letters; empty for comments, declarations and stray brackets.
std::string elementName(std::string_view tag) {
    std::string name;
    for (const char c : tag) {
        if (std::isalnum(static_cast<unsigned char>(c)) == 0)
            break;
        name += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return name;
}

/// How deep elements stand in each other.
class Depth {
public:
    void open(std::string_view name) {
        if (name.empty() || isOneOf(selfEnding, name))
            return;
        ++m_elements;
        m_tables += name == "table" ? 1 : 0;
    }
    void close(std::string_view name) {
        if (name.empty() || isOneOf(selfEnding, name))
            return;
        m_elements = std::max(m_elements - 1, 0);
        m_tables = std::max(m_tables - (name == "table" ? 1 : 0), 0);
    }
    bool isTooDeep() const { return m_elements > maxDepth || m_tables > maxTableDepth; }

private:
    int m_elements = 0;
    int m_tables = 0;
};

/// Cuts a comment, or an element up to its ">" outside quotes, off the front of `rest`, which
/// starts after "<".
std::string_view takeTag(std::string_view& rest) {
    std::size_t end = 0;
    if (rest.starts_with("!--")) {
        end = std::min(rest.find("-->"), rest.size());
    } else {
        char quote = 0;
        char before = ' ';
        for (; end < rest.size() && (quote != 0 || rest[end] != '>'); ++end) {
            const char c = rest[end];
            if (quote != 0)
                quote = c == quote ? '\0' : quote;
            else if ((c == '"' || c == '\'') && (before == '=' || isSpace(before)))
                quote = c;
            before = c;
        }
    }
    const std::string_view tag = rest.substr(0, end);
    rest.remove_prefix(end);
    return tag;
}

} // namespace

bool isQuickToLayOut(std::string_view html) {
    Depth depth;
    bool inStyle = false;
    while (!html.empty()) {
        const std::size_t start = std::min(html.find('<'), html.size());
        if (inStyle && hasLongNumber(html.substr(0, start)))
            return false;
        html.remove_prefix(std::min(start + 1, html.size()));
        const std::string_view tag = takeTag(html);
        const bool closing = tag.starts_with('/');
        const std::string name = elementName(tag.substr(closing ? 1 : 0));
        closing ? depth.close(name) : depth.open(name);
        inStyle = name == "style" && !closing;
        const bool measures = !name.empty() && !isOneOf(addresses, name);
        if (depth.isTooDeep() || (measures && hasLongNumber(tag)))
            return false;
    }
    return true;
}

} // namespace news_page
