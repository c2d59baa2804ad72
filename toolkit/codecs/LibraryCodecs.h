#pragma once

#include "toolkit/codecs/Codec.h"

/// @file
/// The kinds of picture files that are decoded by third-party libraries.
///
/// Transparency that a file declares makes a picture of 32 bits with straight alpha; 16-bit samples are reduced to 8;
/// colour profiles and gamma are not applied. Tables have all the entries that a depth allows, black behind those of
/// the file, so that every pixel names a colour.
namespace kel::toolkit {

/// JPEG, by libjpeg-turbo: 8 bits for greys, 24 for colours; CMYK and YCCK are converted.
extern const Codec kJpegCodec;
/// PNG, by libpng: 1, 4 (2 in the file), 8 bits with palettes and for greys, 24, 32. A file that is cut anywhere or has
/// a wrong checksum in a chunk that matters is damaged.
extern const Codec kPngCodec;
/// TIFF and BigTIFF, the first picture, by libtiff: 1, 4 (2 in the file), 8 bits with palettes and for greys, 24, 32;
/// CMYK and all else that the library can make RGB of is converted.
extern const Codec kTiffCodec;
/// WebP, by libwebp: 24 bits, 32 with alpha; the first picture of an animation on its canvas.
extern const Codec kWebPCodec;
/// GIF, by giflib: the first picture, 1, 4 or 8 bits. With a transparent colour, or smaller than its canvas: 32 bits.
extern const Codec kGifCodec;

} // namespace kel::toolkit
