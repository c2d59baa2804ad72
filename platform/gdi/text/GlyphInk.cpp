#include "platform/gdi/text/GlyphInk.h"

#include "platform/gdi/PixelAccess.h"
#include "platform/gdi/Resolve.h"

#include <algorithm>
#include <cstring>

namespace kel::platform {
namespace {

constexpr int kHalfCovered = 128;

// x / 255, rounded, for x up to 255 * 255.
constexpr unsigned Divided255(unsigned x) {
    return (x + 128 + ((x + 128) >> 8)) >> 8;
}

unsigned Mixed(unsigned from, unsigned to, unsigned cover) {
    return Divided255(from * (255 - cover) + to * cover);
}

std::uint32_t Load32(const std::uint8_t* bytes) {
    std::uint32_t value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

// Vectors of the compiler's own: every processor that matters has 16 bytes at once.
using Bytes16 = std::uint8_t __attribute__((vector_size(16)));
using Words8 = std::uint16_t __attribute__((vector_size(16)));

Words8 Low(Bytes16 bytes) {
    return reinterpret_cast<Words8>(
        __builtin_shufflevector(bytes, Bytes16{}, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23));
}

Words8 High(Bytes16 bytes) {
    return reinterpret_cast<Words8>(
        __builtin_shufflevector(bytes, Bytes16{}, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15, 31));
}

Words8 Mixed(Words8 from, Words8 to, Words8 cover) {
    const Words8 sum = from * (255 - cover) + to * cover + 128;
    return (sum + (sum >> 8)) >> 8;
}

/// Four pixels of 32 bits whose cover is at @p mask.
void MixFour(std::uint8_t* pixels, std::uint32_t colour, std::uint32_t four) {
    Bytes16 from;
    std::memcpy(&from, pixels, sizeof from);
    using Pixels4 = std::uint32_t __attribute__((vector_size(16)));
    const auto to = reinterpret_cast<Bytes16>(Pixels4{colour, colour, colour, colour});
    const auto spread = reinterpret_cast<Bytes16>(Pixels4{four, 0, 0, 0});
    const Bytes16 cover = __builtin_shufflevector(spread, spread, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3);
    const auto low = reinterpret_cast<Bytes16>(Mixed(Low(from), Low(to), Low(cover)));
    const auto high = reinterpret_cast<Bytes16>(Mixed(High(from), High(to), High(cover)));
    const Bytes16 mixed = __builtin_shufflevector(low, high, 0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 22, 24, 26, 28, 30);
    std::memcpy(pixels, &mixed, sizeof mixed);
}

void MixBytes(std::uint8_t* pixel, std::uint32_t colour, unsigned cover, int bytes) {
    for (int i = 0; i < bytes; ++i)
        pixel[i] = static_cast<std::uint8_t>(Mixed(pixel[i], colour >> 8 * i & 0xFF, cover));
}

} // namespace

void GlyphInk::RowOf32(const GlyphInk& ink, std::uint8_t* row, int x, const std::uint8_t* mask, int count) {
    std::uint8_t* pixel = row + 4 * std::ptrdiff_t{x};
    for (; count >= 4; count -= 4, mask += 4, pixel += 16)
        if (const std::uint32_t four = Load32(mask))
            MixFour(pixel, ink.m_pixel, four);
    for (; count > 0; --count, ++mask, pixel += 4)
        MixBytes(pixel, ink.m_pixel, *mask, 4);
}

void GlyphInk::RowOf24(const GlyphInk& ink, std::uint8_t* row, int x, const std::uint8_t* mask, int count) {
    std::uint8_t* pixel = row + 3 * std::ptrdiff_t{x};
    for (; count > 0; --count, ++mask, pixel += 3)
        if (*mask != 0)
            MixBytes(pixel, ink.m_pixel, *mask, 3);
}

void GlyphInk::RowOf16(const GlyphInk& ink, std::uint8_t* row, int x, const std::uint8_t* mask, int count) {
    const int greenBits = ink.m_target.format == PixelFormat::Rgb565 ? 6 : 5;
    const unsigned greenMask = (1u << greenBits) - 1;
    std::uint8_t* place = row + 2 * std::ptrdiff_t{x};
    for (; count > 0; --count, ++mask, place += 2) {
        if (*mask == 0)
            continue;
        const unsigned from = place[0] | unsigned{place[1]} << 8;
        const unsigned blue = Mixed(from & 31, ink.m_pixel & 31, *mask);
        const unsigned green = Mixed(from >> 5 & greenMask, ink.m_pixel >> 5 & greenMask, *mask);
        const int redAt = 5 + greenBits;
        const unsigned red = Mixed(from >> redAt & 31, ink.m_pixel >> redAt & 31, *mask);
        const unsigned mixed = blue | green << 5 | red << redAt;
        place[0] = static_cast<std::uint8_t>(mixed);
        place[1] = static_cast<std::uint8_t>(mixed >> 8);
    }
}

void GlyphInk::RowOfTable(const GlyphInk& ink, std::uint8_t* row, int x, const std::uint8_t* mask, int count) {
    Surface line = ink.m_target;
    line.top = row;
    for (int i = 0; i < count; ++i)
        if (mask[i] >= kHalfCovered)
            WritePixel(line, x + i, 0, ink.m_pixel);
}

GlyphInk::GlyphInk(const Surface& target, COLORREF colour) : m_target(target), m_pixel(PixelFor(target, colour)) {
    m_row = IsIndexed(target.format)               ? RowOfTable
            : target.format == PixelFormat::Bgrx32 ? RowOf32
            : target.format == PixelFormat::Bgr24  ? RowOf24
                                                   : RowOf16;
}

void GlyphInk::Draw(const Glyph& glyph, int x, int y, const RECT& area) const {
    const int left = std::max(static_cast<int>(area.left), x);
    const int right = std::min(static_cast<int>(area.right), x + glyph.width);
    const int top = std::max(static_cast<int>(area.top), y);
    const int bottom = std::min(static_cast<int>(area.bottom), y + glyph.height);
    if (left >= right)
        return;
    const std::uint8_t* mask = glyph.mask + std::ptrdiff_t{top - y} * glyph.stride + (left - x);
    for (int row = top; row < bottom; ++row, mask += glyph.stride)
        m_row(*this, m_target.Row(row), left, mask, right - left);
}

} // namespace kel::platform
