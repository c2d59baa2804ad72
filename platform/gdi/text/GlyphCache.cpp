#include "platform/gdi/text/GlyphCache.h"

namespace kel::platform {

void GlyphCache::Clear() {
    for (auto& page : m_pages)
        page.reset();
    m_beyond.clear();
    m_bytes = 0;
}

const Glyph& GlyphCache::Store(char32_t code, Glyph glyph, const std::vector<std::uint8_t>& mask) {
    if (m_bytes > kMostBytes)
        Clear();
    auto kept = std::make_unique<Kept>();
    static_cast<Glyph&>(*kept) = glyph;
    kept->bytes = mask;
    kept->mask = mask.empty() ? nullptr : kept->bytes.data();
    m_bytes += sizeof(Kept) + mask.size();
    if (code > 0xFFFF)
        return *(m_beyond[code] = std::move(kept));
    auto& page = m_pages[code >> 8];
    if (!page) {
        page = std::make_unique<Page>();
        m_bytes += sizeof(Page);
    }
    return *((*page)[code & 0xFF] = std::move(kept));
}

} // namespace kel::platform
