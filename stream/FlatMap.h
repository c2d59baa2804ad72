#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kel {

inline std::uint64_t FlatMapBits(const void* key) {
    return reinterpret_cast<std::uintptr_t>(key);
}

inline std::uint64_t FlatMapBits(std::uint32_t key) {
    return key;
}

/// An open-addressing hash map for the tables of the object streams: keys are addresses or numbers, never null or 0;
/// entries are only
/// ever added; null and 0 may be looked up. Kept half empty, it needs little more than one memory access a look-up,
/// where an ordered map needs one for each level.
template <class Key, class Value>
class FlatMap {
public:
    /// @return the value of @p key, null if there is none. Valid until the next Add.
    Value* Find(Key key) {
        if (m_slots.empty())
            return nullptr;
        Slot& slot = SlotOf(key);
        return key != Key{} && slot.key == key ? &slot.value : nullptr;
    }

    /// Enters a value under a key that is not present.
    /// @throws std::bad_alloc; the map is then unchanged.
    Value& Add(Key key, const Value& value) {
        if (2 * (m_size + 1) > m_slots.size())
            Grow();
        Slot& slot = SlotOf(key);
        slot = {key, value};
        ++m_size;
        return slot.value;
    }

    template <class Visitor>
    void ForEach(Visitor visit) {
        for (Slot& slot : m_slots)
            if (slot.key != Key{})
                visit(slot.value);
    }

private:
    struct Slot {
        Key key;
        Value value;
    };

    static constexpr std::size_t kFirstSize = 16;

    // Where the key is, or where it would go. Multiplying by 2^64 over the golden ratio spreads addresses that lie at
    // even distances; the high bits of the product are the good ones.
    Slot& SlotOf(Key key) {
        const std::size_t mask = m_slots.size() - 1;
        std::size_t at = static_cast<std::size_t>((FlatMapBits(key) * 0x9E3779B97F4A7C15u) >> m_shift);
        while (m_slots[at].key != key && m_slots[at].key != Key{})
            at = (at + 1) & mask;
        return m_slots[at];
    }

    void Grow() {
        std::vector<Slot> old(m_slots.empty() ? kFirstSize : 2 * m_slots.size());
        old.swap(m_slots);
        m_shift = 64;
        for (std::size_t size = m_slots.size(); size > 1; size /= 2)
            --m_shift;
        for (const Slot& slot : old)
            if (slot.key != Key{})
                SlotOf(slot.key) = slot;
    }

    std::vector<Slot> m_slots;
    std::size_t m_size = 0;
    unsigned m_shift = 64;
};

} // namespace kel
