#pragma once

#include <kelcore/bitmap.h>

/// Pictures for drawing with alpha per pixel, whose colours are premultiplied.
namespace kelalbum {

/// The soft shadow of a rectangle of that size: black, @p blur pixels wider on each side.
GDIBitmap MakeShadow(const Size& rectangle, int blur, double opacity);

/// Whether the picture has alpha: a depth of 32 and a fourth byte that is not 0.
bool HasAlpha(const IBitmap& picture);

/// A copy of a picture of depth 32 whose colours are multiplied with its alpha; an empty one if there is no memory.
GDIBitmap Premultiplied(const IBitmap& picture);

} // namespace kelalbum
