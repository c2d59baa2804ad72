#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace kel::platform {

/// The picture of a character: how much of each pixel it covers, 0 to 255.
struct Glyph {
    int left = 0; ///< of the mask, from the point on the baseline where the character begins
    int top = 0;  ///< of the mask, below the baseline, so mostly negative
    int width = 0;
    int height = 0;
    int stride = 0;                     ///< bytes of a row: a multiple of 4, the rest is 0
    const std::uint8_t* mask = nullptr; ///< null if there is nothing to see
};

/// Glyphs of one font in one size, up to a number of bytes: when these are used up, it begins anew.
class GlyphCache {
public:
    const Glyph* Find(char32_t code) const {
        if (code > 0xFFFF) {
            const auto found = m_beyond.find(code);
            return found == m_beyond.end() ? nullptr : found->second.get();
        }
        const Page* page = m_pages[code >> 8].get();
        return page ? (*page)[code & 0xFF].get() : nullptr;
    }

    /// Takes a glyph with a copy of its mask, of @p stride bytes a row. Others may go. @throws std::bad_alloc
    const Glyph& Store(char32_t code, Glyph glyph, const std::vector<std::uint8_t>& mask);

private:
    /// A glyph and its mask.
    struct Kept : Glyph {
        std::vector<std::uint8_t> bytes;
    };
    using Page = std::array<std::unique_ptr<Kept>, 256>;

    static constexpr std::size_t kMostBytes = std::size_t{1} << 20;

    void Clear();

    std::array<std::unique_ptr<Page>, 256> m_pages;
    std::unordered_map<char32_t, std::unique_ptr<Kept>> m_beyond;
    std::size_t m_bytes = 0;
};

} // namespace kel::platform
