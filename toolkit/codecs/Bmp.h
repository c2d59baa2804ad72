#pragma once

#include "toolkit/codecs/Codec.h"

namespace kel::toolkit {

/// Bitmap files of Windows and OS/2: 1, 2, 4, 8, 16, 24 and 32 bits a pixel, with masks, run-length encoded, from the
/// bottom and from the top.
extern const Codec kBmpCodec;

} // namespace kel::toolkit
