#include "bitmap/Rectangles.h"
#include "bitmap/pixels/Pixels.h"

#include <kelcore/bitmap/gdibitmap.h>

#include <utility>

namespace {

using kel::pixels::Byte;
using kel::pixels::ConstRows;
using kel::pixels::Rows;

bool HaveSameSize(const IBitmap& a, const IBitmap& b) {
    return a.GetWidth() == b.GetWidth() && a.GetHeight() == b.GetHeight();
}

// Unlocks a picture, at the latest when a call on it or on another one throws. Unlocking may throw, too; only the first
// exception is told.
class Locked {
public:
    Locked(const IBitmap& picture, const void* bits) : m_picture(bits ? &picture : nullptr) {}
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;
    ~Locked() {
        try {
            Unlock();
        } catch (...) { // NOLINT(bugprone-empty-catch)
        }
    }

    void Unlock() {
        if (const IBitmap* const picture = std::exchange(m_picture, nullptr))
            picture->UnlockSurface();
    }

private:
    const IBitmap* m_picture;
};

// All rows of a picture whose memory is locked, in memory order.
Rows AllRows(const IBitmap& picture, void* bits) {
    return {static_cast<Byte*>(bits), picture.GetScanlineSize(), picture.GetWidth(), picture.GetHeight()};
}

// The pixels of an area, rows counted from the top, from the column @p left on.
Rows RowsOfArea(const Rows& all, const Rect& area, int left) {
    const std::ptrdiff_t lowest = static_cast<std::ptrdiff_t>(all.rows) - area.bottom;
    return {all.first + lowest * all.stride + std::ptrdiff_t{4} * left, all.stride,
            static_cast<std::size_t>(area.right - left), static_cast<std::size_t>(kel::HeightOf(area))};
}

bool IsFittingMask(const IBitmap& mask, const IBitmap& picture) {
    return !mask.IsEmpty() && HaveSameSize(mask, picture) && mask.GetBitsPerPixel() == 1;
}

bool CombineSameFormat(IBitmap& picture, const IBitmap& other, std::uint32_t key) {
    const void* const from = other.LockSurface();
    if (!from)
        return false;
    Locked lockedSource(other, from);
    void* const to = picture.LockSurfaceModify();
    if (!to)
        return false;
    Locked lockedTarget(picture, to);
    const Rows target = AllRows(picture, to);
    const ConstRows source = {static_cast<const Byte*>(from), target.stride, target.width, target.rows};
    const bool wide = picture.GetBitsPerPixel() == 32;
    (wide ? kel::pixels::CombineKey32 : kel::pixels::CombineKey24)(target, source, key);
    lockedSource.Unlock();
    lockedTarget.Unlock();
    return true;
}

bool ShadeMasked(const Rows& all, const Rect& area, const IBitmap& mask, std::uint32_t tint, Byte alpha) {
    const std::ptrdiff_t stride = mask.GetScanlineSize();
    const void* const bits = mask.LockSurface();
    if (!bits)
        return false;
    Locked locked(mask, bits);
    const std::ptrdiff_t lowest = static_cast<std::ptrdiff_t>(all.rows) - area.bottom;
    const kel::pixels::BitRows rows = {static_cast<const Byte*>(bits) + lowest * stride, stride};
    kel::pixels::ShadeRowsMasked(RowsOfArea(all, area, 0), rows, static_cast<std::size_t>(area.left), tint, alpha);
    locked.Unlock();
    return true;
}

} // namespace

bool BitmapBase::CombineBitmap(const IBitmap& other, unsigned long key) {
    const int depth = GetBitsPerPixel();
    if (depth != 24 && depth != 32)
        return false;
    const bool sameFormat = HaveSameSize(*this, other) && other.GetBitsPerPixel() == depth;
    GDIBitmap placed;
    if (!sameFormat && !placed.CreateBitmap(other, GetDimension(), depth, BM_Center, XSize<double>(1.0, 1.0), 0))
        return false;
    const IBitmap& source = sameFormat ? other : placed;
    return Detach() && CombineSameFormat(*this, source, DibRGB(key));
}

bool BitmapBase::AlphaShadeBitmap(const Rect& area, unsigned long tint, unsigned char alpha, const IBitmap* mask) {
    if (alpha == 0)
        return true;
    const Rect clip = kel::Intersection(area, kel::WholeOf(GetDimension()));
    if (IsEmpty() || GetBitsPerPixel() != 32 || (mask && !IsFittingMask(*mask, *this)))
        return false;
    const int stride = GetScanlineSize();
    void* const bits = LockSurfaceModify();
    if (!bits)
        return false;
    Locked locked(*this, bits);
    const Rows all = {static_cast<Byte*>(bits), stride, GetWidth(), GetHeight()};
    bool shaded = true;
    if (mask)
        shaded = ShadeMasked(all, clip, *mask, DibRGB(tint), alpha);
    else
        kel::pixels::ShadeRows(RowsOfArea(all, clip, clip.left), DibRGB(tint), alpha);
    locked.Unlock();
    return shaded;
}

bool BitmapBase::Combine1BitTo8Bit(const IBitmap& mask, int bit, bool invert) {
    if (!HaveSameSize(mask, *this) || mask.GetBitsPerPixel() != 1 || GetBitsPerPixel() != 8 || bit < 0 || bit > 7)
        return false;
    const void* const from = mask.LockSurface();
    if (!from)
        return false;
    Locked lockedMask(mask, from);
    void* const to = LockSurfaceModify();
    if (!to)
        return false;
    Locked locked(*this, to);
    const kel::pixels::BitRows bits = {static_cast<const Byte*>(from), mask.GetScanlineSize()};
    kel::pixels::OrBitPlane(AllRows(*this, to), bits, static_cast<Byte>(1 << bit), invert);
    locked.Unlock();
    lockedMask.Unlock();
    return true;
}
