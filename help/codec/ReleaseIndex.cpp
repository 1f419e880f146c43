#include "ReleaseIndex.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace release_index {

namespace {

constexpr std::size_t fieldCount = 4;

/// Cuts the text up to `separator` off the front of `rest`.
std::string_view take(std::string_view& rest, char separator) {
    const std::size_t end = std::min(rest.find(separator), rest.size());
    const std::string_view part = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return part;
}

/// The first four fields of a record; nothing when there are fewer.
std::optional<std::array<std::string_view, fieldCount>> fields(std::string_view line) {
    std::array<std::string_view, fieldCount> found;
    std::size_t count = 0;
    while (!line.empty() && count < fieldCount) {
        const std::string_view part = take(line, '\t');
        if (!part.empty())
            found[count++] = part;
    }
    if (count < fieldCount)
        return std::nullopt;
    return found;
}

/// The number at the front of `text` whatever the user's locale: a decimal comma must not make
/// 2013.2 read as 2013.
double number(std::string_view text) {
    const std::size_t start = text.find_first_not_of(" \t\n\v\f\r");
    if (start == std::string_view::npos)
        return 0;
    text.remove_prefix(start);
    if (text.front() == '+' && !text.starts_with("+-"))
        text.remove_prefix(1);
    double value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

} // namespace

std::optional<Release> find(std::string_view index, std::string_view tag) {
    std::optional<Release> release;
    while (!index.empty()) {
        std::string_view line = take(index, '\n');
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        const auto record = fields(line);
        if (record && (*record)[0] == tag)
            release = Release{std::string((*record)[1]), std::string((*record)[3])};
    }
    return release;
}

Comparison compare(std::string_view running, std::string_view offered) {
    const double runningNumber = number(running);
    const double offeredNumber = number(offered);
    if (runningNumber == offeredNumber)
        return running == offered ? Comparison::Same : Comparison::Newer;
    return offeredNumber > runningNumber ? Comparison::Newer : Comparison::Older;
}

bool staysInFolder(std::string_view fileName) {
    if (fileName.empty() || fileName == "." || fileName == "..")
        return false;
    return std::none_of(fileName.begin(), fileName.end(), [](char c) {
        return c == '/' || c == '\\' || c == ':' || static_cast<unsigned char>(c) < ' ';
    });
}

} // namespace release_index
