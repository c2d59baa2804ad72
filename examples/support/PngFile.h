#pragma once

#include <kelcore/bitmap/interfaces.h>
#include <kelcore/widestring.h>

/// The bytes of a PNG file (ISO/IEC 15948) that shows a picture of depth 24 or 32, uncompressed inside. Empty for
/// another picture.
NarrowString EncodePng(const IBitmap& picture);
