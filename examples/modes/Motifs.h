#pragma once

#include <kelcore/bitmap.h>

/// The colour that stands for "no picture here".
constexpr unsigned long kKey = 0x00FF00FF;

/// A landscape under a rainbow, 128 x 84 pixels, whose white frame shows where it is cropped.
GDIBitmap Landscape();

/// A ring in all hues on the key colour, 84 x 84 pixels.
GDIBitmap Ring();
