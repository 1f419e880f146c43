#include "BundleWalk.h"

#include "Packet.h"

#include <cstdint>

std::optional<BundleItem> BundleWalk::next() {
    // One byte more than an item header: an empty item in the last place counts as trailing bytes.
    if (m_rest.size() < itemHeaderSize + 1) {
        m_atEnd = !m_damaged;
        return std::nullopt;
    }
    // 64 bits: a length near 4 GiB must not wrap into something that seems to fit.
    const std::uint64_t length = packet::unsignedFromBytes(m_rest.substr(1, 4));
    if (length + itemHeaderSize - 1 >= m_rest.size()) {
        m_damaged = true;
        m_rest = {};
        return std::nullopt;
    }
    const BundleItem item{m_rest[0], m_rest.substr(itemHeaderSize, length)};
    m_rest.remove_prefix(itemHeaderSize + length);
    return item;
}
