#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <unordered_map>

namespace kel::platform {

/// The three parts of an advance width, in pixels. Aligned so that every compiler reads it at once without help.
struct alignas(std::uint64_t) GlyphWidths {
    std::int16_t before = 0;
    std::uint16_t box = 0;
    std::int16_t behind = 0;
    bool known = false;

    int Advance() const { return before + box + behind; }
};
static_assert(sizeof(GlyphWidths) == 8 && std::atomic<GlyphWidths>::is_always_lock_free);

/// The widths of characters, as far as somebody has asked. Reading takes no lock; entries stay for good.
class WidthTable {
public:
    WidthTable() = default;
    WidthTable(const WidthTable&) = delete;
    WidthTable& operator=(const WidthTable&) = delete;
    ~WidthTable() {
        for (auto& page : m_pages)
            delete page.load();
    }

    /// @return widths that are not known if nobody has stored them.
    GlyphWidths Find(char32_t code) const {
        if (code > 0xFFFF)
            return FindBeyond(code);
        const Page* page = m_pages[code >> 8].load(std::memory_order_acquire);
        return page ? (*page)[code & 0xFF].load(std::memory_order_relaxed) : GlyphWidths{};
    }

    /// @throws std::bad_alloc
    void Store(char32_t code, GlyphWidths widths) {
        std::lock_guard guard(m_mutex);
        if (code > 0xFFFF) {
            m_beyond[code] = widths;
            return;
        }
        std::atomic<Page*>& place = m_pages[code >> 8];
        if (!place.load(std::memory_order_relaxed))
            place.store(new Page{}, std::memory_order_release);
        (*place.load(std::memory_order_relaxed))[code & 0xFF].store(widths, std::memory_order_relaxed);
    }

private:
    using Page = std::array<std::atomic<GlyphWidths>, 256>;

    GlyphWidths FindBeyond(char32_t code) const {
        std::lock_guard guard(m_mutex);
        const auto found = m_beyond.find(code);
        return found == m_beyond.end() ? GlyphWidths{} : found->second;
    }

    std::array<std::atomic<Page*>, 256> m_pages{};
    mutable std::mutex m_mutex; // of writing, and of what follows
    std::unordered_map<char32_t, GlyphWidths> m_beyond;
};

} // namespace kel::platform
