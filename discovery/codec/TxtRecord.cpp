#include "TxtRecord.h"

#include <algorithm>

namespace txtrecord {

Keys parse(std::span<const unsigned char> record) {
    Keys keys;
    while (!record.empty()) {
        const std::size_t length = record.front();
        record = record.subspan(1);
        if (length > record.size())
            break;
        const auto entry = record.first(length);
        record = record.subspan(length);
        const auto equals = std::find(entry.begin(), entry.end(), '=');
        if (equals != entry.end())
            keys[std::string(entry.begin(), equals)] = std::string(equals + 1, entry.end());
    }
    return keys;
}

std::string build(const Keys& keys) {
    std::string record;
    for (const auto& [key, value] : keys) {
        const std::size_t length = key.size() + 1 + value.size();
        if (length > entryLimit || record.size() + 1 + length > recordLimit)
            continue;
        record += static_cast<char>(length);
        record.append(key).append(1, '=').append(value);
    }
    return record;
}

} // namespace txtrecord
