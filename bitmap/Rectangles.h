#pragma once

#include <kelcore/bitmap/geometry.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

/// @file
/// Arithmetic of rectangles and of pixels counted in doubles. No value overflows.
namespace kel {

/// Width in 64 bits: the edges may lie further apart than 32 bits tell.
constexpr std::int64_t WidthOf(const tagRECT& rect) {
    return std::int64_t{rect.right} - rect.left;
}

constexpr std::int64_t HeightOf(const tagRECT& rect) {
    return std::int64_t{rect.bottom} - rect.top;
}

constexpr bool IsEmptyRect(const tagRECT& rect) {
    return rect.right <= rect.left || rect.bottom <= rect.top;
}

constexpr Rect WholeOf(const Size& size) {
    return Rect(0, 0, size.cx, size.cy);
}

/// What both have in common; (0, 0, 0, 0) for nothing.
constexpr Rect Intersection(const Rect& a, const Rect& b) {
    const Rect common(std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                      std::min(a.bottom, b.bottom));
    return IsEmptyRect(a) || IsEmptyRect(b) || IsEmptyRect(common) ? Rect() : common;
}

/// The nearest int within its range, 0 for a value that is no number.
inline int ToInt(double whole) {
    constexpr double kLeast = std::numeric_limits<int>::min();
    constexpr double kMost = std::numeric_limits<int>::max();
    return std::isnan(whole) ? 0 : static_cast<int>(std::clamp(whole, kLeast, kMost));
}

/// Rounded, halves up.
inline int Rounded(double value) {
    return ToInt(std::floor(value + 0.5));
}

} // namespace kel
