#pragma once

#include "toolkit/codecs/Codec.h"

#include <memory>

#include <tiffio.h>

namespace kel::toolkit {

struct CloseTiff {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};

/// A TIFF file in memory, read by libtiff where it lies; the library's complaints stay within. The file must outlive
/// it.
using Tiff = std::unique_ptr<TIFF, CloseTiff>;

struct TiffSource {
    Bytes file;
    std::size_t at = 0;
};

/// Opens the first picture. @param most bytes that the library may allocate at once.
/// @return an empty object for a damaged file.
Tiff OpenTiff(TiffSource& source, std::uint64_t most);

} // namespace kel::toolkit
