#pragma once

#include "tests/bitmap/Pictures.h"
#include "tests/platform/Drawing.h"

constexpr unsigned long kKey = 0xFF00FF;

/// A context that draws on a picture.
struct Canvas {
    explicit Canvas(const GDIBitmap& paper = Painted({20, 12}, 32, 0x334455)) : before(paper) {}
    const GDIBitmap before;
    GDIBitmap picture = before;
    const MemoryContext dc{picture.GetHandle(true)};
};

/// Checks that nothing has changed outside the target; inside, @p check gets column and row counted from its left top,
/// the pixel that was there and the one that is.
template <class Check>
void CheckTarget(const Canvas& canvas, const Rect& target, Check check) {
    CheckPixels(canvas.picture, [&](int x, int y) {
        const unsigned long was = canvas.before.GetPixel(x, y);
        const bool inside = x >= target.left && x < target.right && y >= target.top && y < target.bottom;
        const unsigned long shown = canvas.picture.GetPixel(x, y);
        return !inside ? was : check(x - target.left, y - target.top, was, shown) ? shown : ~shown;
    });
}

/// For CheckTarget: @p picture from a point on, enlarged, but for the key.
inline auto ShownFrom(const IBitmap& picture, int left, int top, int factor) {
    return [&picture, left, top, factor](int x, int y, unsigned long under, unsigned long shown) {
        const unsigned long own = picture.GetPixel(left + x / factor, top + y / factor);
        return shown == (own == kKey ? under : own);
    };
}
