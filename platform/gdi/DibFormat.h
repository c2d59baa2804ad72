#pragma once

/// @file
/// DIBs as callers describe them, checked.

#include "platform/gdi/DeviceContext.h"

namespace kel::platform {

/// A DIB's description, taken apart.
struct DibFormat {
    int width = 0;
    int height = 0; ///< positive
    bool topDown = false;
    bool bitFields = false;
    PixelFormat format = PixelFormat::Bgrx32;
    std::int64_t rowBytes = 0;
    std::vector<RGBQUAD> table; ///< of an indexed format, with all entries that the caller gave

    /// The pixels at @p bits, all rows of them.
    Surface At(const void* bits) const;
};

/// Reads a BITMAPINFO. @param context resolves DIB_PAL_COLORS; may be null otherwise.
/// @return false with ERROR_INVALID_PARAMETER for what this layer has no pixels for: no size, another number of planes,
///         depth, compression or masks, or pixels of 2^31 bytes and more. @throws std::bad_alloc
bool ReadDibFormat(const BITMAPINFO& info, UINT usage, const DeviceContext* context, DibFormat& format);

/// The same without the colour table, which stays empty.
bool ReadDibHeader(const BITMAPINFOHEADER& header, UINT usage, DibFormat& format);

/// Where the colour table of @p header begins.
const void* AfterHeader(const BITMAPINFOHEADER& header);

} // namespace kel::platform
