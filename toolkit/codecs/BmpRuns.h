#pragma once

#include "toolkit/codecs/Codec.h"

namespace kel::toolkit {

/// Reads the run-length encoded pixels of a bitmap file into a picture of 4 or 8 bits whose pixels are zero; what the
/// runs leave out stays so. @return false for runs that end early or go on above the picture.
bool ReadBmpRuns(Bytes runs, const DibLock& dib);

} // namespace kel::toolkit
