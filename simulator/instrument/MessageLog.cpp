#include "MessageLog.h"

#include "CharacterSet.h"

namespace {

/// How much of `text` goes onto a line: up to its last space that fits, or as much as fits.
std::size_t lengthOfLine(std::string_view text, std::size_t room) {
    if (text.size() <= room)
        return text.size();
    const std::size_t space = text.rfind(' ', room);
    return space == std::string_view::npos || space == 0 ? room : space;
}

} // namespace

void MessageLog::add(std::string_view mark, std::string_view utf8) {
    // A longer message would only push its own beginning out again.
    constexpr std::size_t longest = capacity * lineLength;
    std::string lead = charset::fromUtf8(mark) + ' ';
    const std::size_t room = lineLength - lead.size();
    const std::string codes = charset::fromUtf8(utf8.substr(0, longest));
    std::string_view rest = codes;
    do {
        const std::size_t length = lengthOfLine(rest, room);
        m_lines.push_back(lead.append(rest.substr(0, length)));
        rest.remove_prefix(length);
        if (rest.starts_with(' '))
            rest.remove_prefix(1);
        lead.assign(lineLength - room, ' ');
    } while (!rest.empty());
    while (m_lines.size() > capacity)
        m_lines.pop_front();
}
