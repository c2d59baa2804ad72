#include "platform/gdi/PixelCopy.h"

#include "platform/gdi/Colours.h"
#include "platform/gdi/PixelAccess.h"

#include <algorithm>
#include <cstring>

namespace kel::platform {
namespace {

bool SameTable(const Surface& a, const Surface& b) {
    if (!a.table || !b.table)
        return a.table == b.table;
    return a.tableSize == b.tableSize && std::equal(a.table, a.table + a.tableSize, b.table, [](auto left, auto right) {
               return ColourOf(left) == ColourOf(right);
           });
}

bool SameColours(const Surface& a, const Surface& b) {
    return a.format == b.format && (!IsIndexed(a.format) || SameTable(a, b));
}

void CopySame(const Surface& to, const Surface& from, int width, int height) {
    const int bits = BitsPerPixel(to.format);
    const auto bytes = static_cast<std::size_t>(std::int64_t{width} * bits / 8);
    const int rest = bits < 8 ? static_cast<int>(bytes) * (8 / bits) : width; // pixels of a byte that both share
    for (int y = 0; y < height; ++y) {
        std::memmove(to.Row(y), from.Row(y), bytes);
        for (int x = rest; x < width; ++x)
            WritePixel(to, x, y, ReadPixel(from, x, y));
    }
}

/// Remembers the last pixel: neighbours are often alike, and the nearest entry of a table takes long to find.
class Converter {
public:
    Converter(const Surface& to, const Surface& from) : m_to(to), m_from(from), m_result(Find(0)) {}

    std::uint32_t operator()(std::uint32_t value) {
        if (value != m_value) {
            m_value = value;
            m_result = Find(value);
        }
        return m_result;
    }

private:
    std::uint32_t Find(std::uint32_t value) const { return PixelOfColour(m_to, ColourOfPixel(m_from, value)); }

    const Surface& m_to;
    const Surface& m_from;
    std::uint32_t m_value = 0;
    std::uint32_t m_result;
};

} // namespace

Surface RowsOf(const Surface& surface, int y, int count) {
    Surface rows = surface;
    rows.top = surface.Row(y);
    rows.height = count;
    return rows;
}

void CopyPixels(const Surface& to, const Surface& from) {
    const int width = std::min(to.width, from.width);
    const int height = std::min(to.height, from.height);
    if (SameColours(to, from))
        return CopySame(to, from, width, height);
    Converter convert(to, from);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            WritePixel(to, x, y, convert(ReadPixel(from, x, y)));
}

} // namespace kel::platform
