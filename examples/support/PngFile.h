#pragma once

#include <kelcore/bitmap/interfaces.h>
#include <kelcore/widestring.h>

/// What the fourth byte of 32-bit pixels means.
enum class PngAlpha {
    Ignored,
    Straight, ///< opacity, unless it is 0 in all pixels
};

/// The bytes of a PNG file (ISO/IEC 15948) with the pixels of a picture as they are: up to depth 8 with its colour
/// table. Empty for a picture of another depth than 1, 4, 8, 24 or 32, and when there is no memory.
NarrowString EncodePng(const IBitmap& picture, PngAlpha alpha = PngAlpha::Ignored);

/// Writes a picture's PNG file, which takes the place of an older file when it is whole.
/// @throws kelexamples::Failure
void WritePng(const IBitmap& picture, const WideString& path);
