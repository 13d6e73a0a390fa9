#pragma once

#include "Store/Relation.h"

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace quillorn {

/// Values by row key, in one flat table: several times faster to fill and to ask than a map of nodes. Rows come mostly
/// in the order of their keys, so neighbours stay together. Holds nothing under 0, which is no row's key, and forgets
/// nothing.
template <class Value>
class KeyMap {
  public:
    /// Null when there is none. Valid until the next insertion.
    Value* find(RowKey key) {
        if (key == 0 || m_slots.empty())
            return nullptr;
        Slot& slot = slotFor(key);
        return slot.key == key ? &slot.value : nullptr;
    }
    const Value* find(RowKey key) const { return const_cast<KeyMap*>(this)->find(key); }
    bool contains(RowKey key) const { return find(key) != nullptr; }

    /// The value of that key, made if need be. Valid until the next insertion.
    Value& operator[](RowKey key) {
        if (2 * (m_size + 1) > m_slots.size())
            reserve(m_size + 1);
        Slot& slot = slotFor(key);
        if (slot.key == 0) {
            slot.key = key;
            ++m_size;
        }
        return slot.value;
    }

    /// Makes room for that many keys.
    void reserve(std::size_t count) {
        std::size_t capacity = m_slots.empty() ? smallest : m_slots.size();
        while (capacity < 2 * count)
            capacity *= 2;
        if (capacity == m_slots.size())
            return;
        const std::vector<Slot> old = std::exchange(m_slots, std::vector<Slot>(capacity));
        for (const Slot& slot : old)
            if (slot.key != 0)
                slotFor(slot.key) = slot;
    }

    std::size_t size() const { return m_size; }

  private:
    struct Slot {
        RowKey key = 0;
        Value value{};
    };
    static constexpr std::size_t smallest = 16;

    /// The slot of that key, or the free one where it belongs.
    Slot& slotFor(RowKey key) {
        // Blocks of neighbours are scattered by their number (2^64 over the golden ratio), so that keys in steps don't
        // all meet.
        const auto number = static_cast<std::uint64_t>(key);
        const std::uint64_t block = (number >> 4) * 0x9E3779B97F4A7C15u;
        auto place = static_cast<std::size_t>((block >> 32 << 4) + (number & 15));
        const std::size_t mask = m_slots.size() - 1;
        for (place &= mask; m_slots[place].key != 0 && m_slots[place].key != key;)
            place = (place + 1) & mask;
        return m_slots[place];
    }

    std::vector<Slot> m_slots; // a power of two of them, at most half of them taken
    std::size_t m_size = 0;
};

} // namespace quillorn
