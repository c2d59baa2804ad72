#pragma once

/// @file
/// Rectangles, sizes and pairs of factors.

#include <kelcore/platform.h>

/// A rectangle with the fields of the system's RECT, `left`, `top`, `right` and `bottom`; the latter two lie outside.
/// It goes wherever a RECT goes.
struct Rect : tagRECT {
    /// (0, 0, 0, 0).
    constexpr Rect() : tagRECT() {}
    constexpr Rect(int l, int t, int r, int b) : tagRECT() {
        left = l;
        top = t;
        right = r;
        bottom = b;
    }
    constexpr Rect(const tagRECT& rect) : tagRECT(rect) {}
};

/// Width `cx` and height `cy`, the fields of the system's SIZE.
struct Size : tagSIZE {
    /// (0, 0).
    constexpr Size() : tagSIZE() {}
    constexpr Size(int width, int height) : tagSIZE() {
        cx = width;
        cy = height;
    }
    constexpr Size(const tagSIZE& size) : tagSIZE(size) {}
};

static_assert(sizeof(Rect) == 16 && sizeof(Size) == 8, "the layout of the system's structures");

/// A horizontal and a vertical value, as a rule the factors by which a picture is scaled: (1.0, 1.0) draws pixel for
/// pixel.
template <class T>
struct XSize {
    T cx; ///< horizontal
    T cy; ///< vertical

    constexpr XSize() : cx(), cy() {}
    constexpr XSize(T horizontal, T vertical) : cx(horizontal), cy(vertical) {}
};
