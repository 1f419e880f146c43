#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>

/// The last keys that an instrument received, numbered from the first one on.
class KeyLog {
public:
    /// Keys that are kept; older ones go.
    static constexpr std::size_t capacity = 16;

    struct Key {
        std::uint64_t number = 0;
        std::uint16_t code = 0;
        bool operator==(const Key&) const = default;
    };

    void add(std::uint16_t code) {
        m_keys.push_back({++m_count, code});
        if (m_keys.size() > capacity)
            m_keys.pop_front();
    }

    /// Forgets the keys; the numbering goes on.
    void clear() { m_keys.clear(); }

    /// The latest last.
    const std::deque<Key>& keys() const { return m_keys; }

    /// How many were ever received.
    std::uint64_t count() const { return m_count; }

private:
    std::deque<Key> m_keys;
    std::uint64_t m_count = 0;
};
