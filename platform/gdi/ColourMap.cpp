#include "platform/gdi/ColourMap.h"

#include "platform/gdi/Colours.h"

#include <algorithm>

namespace kel::platform {
namespace {

bool SameTables(const Surface& a, const Surface& b) {
    if (!a.table || !b.table)
        return a.table == b.table;
    return a.table == b.table ||
           (a.tableSize == b.tableSize &&
            std::equal(a.table, a.table + a.tableSize, b.table,
                       [](const RGBQUAD& left, const RGBQUAD& right) { return ColourOf(left) == ColourOf(right); }));
}

bool SameColours(const Surface& a, const Surface& b) {
    return a.format == b.format && (!IsIndexed(a.format) || SameTables(a, b));
}

} // namespace

ColourMap::ColourMap(const Surface& target, const Surface& source, const MonoColours& mono)
    : m_target(target), m_source(source), m_mono(mono) {
    if (SameColours(target, source))
        return;
    m_kind = IsIndexed(source.format) ? Kind::Table : Kind::Convert;
    if (m_kind != Kind::Table)
        return;
    m_known = std::make_shared<Known>();
    for (std::size_t i = 0; i < std::size_t{1} << BitsPerPixel(source.format); ++i)
        m_known->results[i] = Converted(static_cast<std::uint32_t>(i));
}

std::uint32_t ColourMap::Converted(std::uint32_t value) const {
    if (m_target.format == PixelFormat::Mono && !m_target.table && !m_mono.nearest)
        return value == PixelOfColour(m_source, m_mono.sourceBack);
    const bool isMono = m_source.format == PixelFormat::Mono && !m_source.table;
    const COLORREF colour = isMono ? (value ? m_mono.back : m_mono.text) : ColourOfPixel(m_source, value);
    const bool byCell = m_target.format == PixelFormat::Indexed8 && !IsIndexed(m_source.format);
    return PixelOfColour(m_target, byCell ? CellOf(colour) : colour);
}

// Pictures have few colours near each other, and the nearest entry of a table takes long to find.
std::uint32_t ColourMap::Remembered(std::uint32_t value) const {
    if (!m_known)
        m_known = std::make_shared<Known>();
    const std::size_t slot = value * 0x9E3779B1u >> 24;
    if (!m_known->filled[slot] || m_known->values[slot] != value) {
        m_known->values[slot] = value;
        m_known->results[slot] = Converted(value);
        m_known->filled[slot] = true;
    }
    return m_known->results[slot];
}

} // namespace kel::platform
