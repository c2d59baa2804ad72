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
using Pixels4 = std::uint32_t __attribute__((vector_size(16)));

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

/// Four pixels of 32 bits whose cover is in the bytes of @p four.
void MixFour(std::uint8_t* pixels, std::uint32_t colour, std::uint32_t four) {
    Bytes16 from;
    std::memcpy(&from, pixels, sizeof from);
    const auto to = reinterpret_cast<Bytes16>(Pixels4{colour, colour, colour, colour});
    // Spread in steps that are one instruction each: a word for each cover, two words, four.
    const Words8 single = Low(reinterpret_cast<Bytes16>(Pixels4{four, 0, 0, 0}));
    const auto twice = reinterpret_cast<Pixels4>(__builtin_shufflevector(single, single, 0, 8, 1, 9, 2, 10, 3, 11));
    const auto lowCover = reinterpret_cast<Words8>(__builtin_shufflevector(twice, twice, 0, 0, 1, 1));
    const auto highCover = reinterpret_cast<Words8>(__builtin_shufflevector(twice, twice, 2, 2, 3, 3));
    const auto low = reinterpret_cast<Bytes16>(Mixed(Low(from), Low(to), lowCover));
    const auto high = reinterpret_cast<Bytes16>(Mixed(High(from), High(to), highCover));
    const Bytes16 mixed = __builtin_shufflevector(low, high, 0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 22, 24, 26, 28, 30);
    std::memcpy(pixels, &mixed, sizeof mixed);
}

/// Up to three of them.
void MixFew(std::uint8_t* pixels, std::uint32_t colour, const std::uint8_t* mask, int count) {
    std::uint32_t cover = 0;
    for (int i = 0; i < count; ++i)
        cover |= std::uint32_t{mask[i]} << 8 * i;
    if (cover == 0)
        return;
    std::uint8_t room[16] = {};
    const auto copy = [count](std::uint8_t* to, const std::uint8_t* from) {
        if (count & 2)
            std::memcpy(to, from, 8);
        if (count & 1)
            std::memcpy(to + 4 * (count & 2), from + 4 * (count & 2), 4);
    };
    copy(room, pixels);
    MixFour(room, colour, cover);
    copy(pixels, room);
}

void MixBytes(std::uint8_t* pixel, std::uint32_t colour, unsigned cover, int bytes) {
    for (int i = 0; i < bytes; ++i)
        pixel[i] = static_cast<std::uint8_t>(Mixed(pixel[i], colour >> 8 * i & 0xFF, cover));
}

/// A row of a mask on a row of pixels, by format.
struct Row32 {
    static void Draw(const Surface&, std::uint32_t ink, std::uint8_t* row, int x, const std::uint8_t* mask, int count) {
        std::uint8_t* pixel = row + 4 * std::ptrdiff_t{x};
        for (; count >= 4; count -= 4, mask += 4, pixel += 16)
            if (const std::uint32_t four = Load32(mask))
                MixFour(pixel, ink, four);
        if (count > 0)
            MixFew(pixel, ink, mask, count);
    }
};

struct Row24 {
    static void Draw(const Surface&, std::uint32_t ink, std::uint8_t* row, int x, const std::uint8_t* mask, int count) {
        std::uint8_t* pixel = row + 3 * std::ptrdiff_t{x};
        for (; count > 0; --count, ++mask, pixel += 3)
            if (*mask != 0)
                MixBytes(pixel, ink, *mask, 3);
    }
};

template <int GreenBits>
struct Row16 {
    static unsigned MixedBits(unsigned from, unsigned ink, int at, int bits, unsigned cover) {
        const unsigned mask = (1u << bits) - 1;
        return Mixed(from >> at & mask, ink >> at & mask, cover) << at;
    }
    static void Draw(const Surface&, std::uint32_t ink, std::uint8_t* row, int x, const std::uint8_t* mask, int count) {
        std::uint8_t* place = row + 2 * std::ptrdiff_t{x};
        for (; count > 0; --count, ++mask, place += 2) {
            if (*mask == 0)
                continue;
            const unsigned from = place[0] | unsigned{place[1]} << 8;
            const unsigned mixed = MixedBits(from, ink, 0, 5, *mask) | MixedBits(from, ink, 5, GreenBits, *mask) |
                                   MixedBits(from, ink, 5 + GreenBits, 5, *mask);
            place[0] = static_cast<std::uint8_t>(mixed);
            place[1] = static_cast<std::uint8_t>(mixed >> 8);
        }
    }
};

struct RowOfTable {
    static void Draw(const Surface& target, std::uint32_t ink, std::uint8_t* row, int x, const std::uint8_t* mask,
                     int count) {
        Surface line = target;
        line.top = row;
        for (int i = 0; i < count; ++i)
            if (mask[i] >= kHalfCovered)
                WritePixel(line, x + i, 0, ink);
    }
};

template <class Row>
void DrawRows(const Surface& target, std::uint32_t ink, const MaskPart& part) {
    const std::uint8_t* mask = part.mask;
    for (int y = part.top; y < part.bottom; ++y, mask += part.stride)
        Row::Draw(target, ink, target.Row(y), part.left, mask, part.right - part.left);
}

} // namespace

GlyphInk::GlyphInk(const Surface& target, COLORREF colour) : m_target(target), m_pixel(PixelFor(target, colour)) {
    m_draw = IsIndexed(target.format)               ? DrawRows<RowOfTable>
             : target.format == PixelFormat::Bgrx32 ? DrawRows<Row32>
             : target.format == PixelFormat::Bgr24  ? DrawRows<Row24>
             : target.format == PixelFormat::Rgb565 ? DrawRows<Row16<6>>
                                                    : DrawRows<Row16<5>>;
}

void GlyphInk::Draw(const Glyph& glyph, int x, int y, const RECT& area) const {
    MaskPart part;
    part.left = std::max(static_cast<int>(area.left), x);
    part.right = std::min(static_cast<int>(area.right), x + glyph.width);
    part.top = std::max(static_cast<int>(area.top), y);
    part.bottom = std::min(static_cast<int>(area.bottom), y + glyph.height);
    if (part.left >= part.right || part.top >= part.bottom)
        return;
    part.stride = glyph.stride;
    part.mask = glyph.mask + std::ptrdiff_t{part.top - y} * glyph.stride + (part.left - x);
    m_draw(m_target, m_pixel, part);
}

} // namespace kel::platform
