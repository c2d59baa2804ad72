#include "bitmap/pixels/Pixels.h"
#include "bitmap/pixels/Roads.h"

#include <atomic>
#include <cstring>

namespace kel::pixels {
namespace {

constexpr std::uint32_t kColour = 0x00FFFFFF;

std::atomic<const Road*> taken = nullptr;

const Road& QuickestRoad() {
    if (const Road* const wide = Avx2Road())
        return *wide;
    const Road* const narrow = Sse41Road();
    return narrow != nullptr ? *narrow : kPortableRoad;
}

const Road& CurrentRoad() {
    static const Road& quickest = QuickestRoad();
    const Road* const road = taken.load(std::memory_order_relaxed);
    return road != nullptr ? *road : quickest;
}

template <class T>
T* RowAt(T* first, std::ptrdiff_t stride, std::size_t row) {
    return first + static_cast<std::ptrdiff_t>(row) * stride;
}

template <class T>
bool Contiguous(const RowsOf<T>& rows, std::size_t pixelBytes) {
    return rows.stride == static_cast<std::ptrdiff_t>(rows.width * pixelBytes);
}

// Rows without padding are one long row: the ends of rows, which take other roads than the middle, are met once.
template <class T>
RowsOf<T> Joined(const RowsOf<T>& rows) {
    return {rows.first, 0, rows.width * rows.rows, 1};
}

template <class T, class Run>
void ForEachRow(const RowsOf<T>& rows, std::size_t pixelBytes, Run run) {
    const RowsOf<T> all = Contiguous(rows, pixelBytes) ? Joined(rows) : rows;
    for (std::size_t row = 0; row < all.rows; ++row)
        run(RowAt(all.first, all.stride, row), all.width);
}

template <class Run>
void ForEachPair(const Rows& target, const ConstRows& source, std::size_t pixelBytes, Run run) {
    const bool join = Contiguous(target, pixelBytes) && Contiguous(source, pixelBytes);
    const Rows to = join ? Joined(target) : target;
    const ConstRows from = join ? Joined(source) : source;
    for (std::size_t row = 0; row < to.rows; ++row)
        run(RowAt(to.first, to.stride, row), RowAt(from.first, from.stride, row), to.width);
}

// Whole bytes of bits, row after row, are one long row, too.
template <class Run>
void ForEachMasked(const Rows& rows, const BitRows& mask, std::size_t pixelBytes, Run run) {
    const bool join = Contiguous(rows, pixelBytes) && mask.stride * 8 == static_cast<std::ptrdiff_t>(rows.width);
    const Rows all = join ? Joined(rows) : rows;
    for (std::size_t row = 0; row < all.rows; ++row)
        run(RowAt(all.first, all.stride, row), RowAt(mask.first, mask.stride, row), all.width);
}

template <class Run>
bool AnyRow(const ConstRows& rows, std::size_t pixelBytes, Run run) {
    bool found = false;
    ForEachRow(rows, pixelBytes, [&](const Byte* row, std::size_t width) { found = found || run(row, width); });
    return found;
}

Tint TintOf(std::uint32_t colour, Byte opacity) {
    const unsigned share = opacity * 256U / 255U;
    const auto shares = [=](int channel) { return static_cast<std::uint16_t>(share * (colour >> 8 * channel & 0xFF)); };
    return {{shares(0), shares(1), shares(2)}, static_cast<std::uint16_t>(256 - opacity)};
}

} // namespace

void TakeRoad(const Road* road) {
    taken.store(road, std::memory_order_relaxed);
}

void ShadeRows(const Rows& rows, std::uint32_t tint, Byte opacity) {
    const auto shade = CurrentRoad().shade;
    const Tint shares = TintOf(tint, opacity);
    ForEachRow(rows, 4, [&](Byte* row, std::size_t width) { shade(row, width, shares); });
}

void ShadeRowsMasked(const Rows& rows, const BitRows& mask, std::size_t left, std::uint32_t tint, Byte opacity) {
    const auto shade = CurrentRoad().shadeMasked;
    const Tint shares = TintOf(tint, opacity);
    const std::size_t start = left / 8 * 8;
    if (start >= rows.width)
        return;
    const Rows governed = {rows.first + 4 * start, rows.stride, rows.width - start, rows.rows};
    ForEachMasked(governed, {mask.first + start / 8, mask.stride}, 4,
                  [&](Byte* row, const Byte* bits, std::size_t width) { shade(row, bits, width, shares); });
}

void CombineKey24(const Rows& target, const ConstRows& source, std::uint32_t key) {
    const auto combine = CurrentRoad().combineKey24;
    ForEachPair(target, source, 3,
                [&](Byte* to, const Byte* from, std::size_t width) { combine(to, from, width, key & kColour); });
}

void CombineKey32(const Rows& target, const ConstRows& source, std::uint32_t key) {
    const auto combine = CurrentRoad().combineKey32;
    ForEachPair(target, source, 4,
                [&](Byte* to, const Byte* from, std::size_t width) { combine(to, from, width, key & kColour); });
}

void GreyOut24(const Rows& rows, std::uint32_t keep) {
    const auto greyOut = CurrentRoad().greyOut24;
    ForEachRow(rows, 3, [&](Byte* row, std::size_t width) { greyOut(row, width, keep); });
}

void GreyOut32(const Rows& rows, std::uint32_t keep) {
    const auto greyOut = CurrentRoad().greyOut32;
    ForEachRow(rows, 4, [&](Byte* row, std::size_t width) { greyOut(row, width, keep); });
}

bool Contains24(const ConstRows& rows, std::uint32_t colour) {
    const auto contains = CurrentRoad().contains24;
    return AnyRow(rows, 3, [&](const Byte* row, std::size_t width) { return contains(row, width, colour & kColour); });
}

bool Contains32(const ConstRows& rows, std::uint32_t colour) {
    const auto contains = CurrentRoad().contains32;
    return AnyRow(rows, 4, [&](const Byte* row, std::size_t width) { return contains(row, width, colour & kColour); });
}

void Complement(void* bytes, std::size_t count) {
    CurrentRoad().complement(static_cast<Byte*>(bytes), count);
}

void Fill(void* bytes, std::size_t count, Byte value) {
    if (count > 0)
        std::memset(bytes, value, count);
}

void OrBitPlane(const Rows& rows, const BitRows& mask, Byte bits, bool invert) {
    const auto combine = CurrentRoad().orBitPlane;
    ForEachMasked(rows, mask, 1,
                  [&](Byte* row, const Byte* set, std::size_t width) { combine(row, set, width, bits, invert); });
}

void KeyToAlpha(const Rows& rows, std::uint32_t key) {
    const auto set = CurrentRoad().keyToAlpha;
    ForEachRow(rows, 4, [&](Byte* row, std::size_t width) { set(row, width, key & kColour); });
}

void KeyToOverlay(const Rows& rows, std::uint32_t key, std::uint32_t overlay) {
    const auto set = CurrentRoad().keyToOverlay;
    ForEachRow(rows, 4, [&](Byte* row, std::size_t width) { set(row, width, key & kColour, overlay); });
}

} // namespace kel::pixels
