#pragma once

/// @file
/// What is done to one row of pixels of 8, 16, 24 or 32 bits. Each function has a road of vectors, taken where the
/// processor has them, and a plain one; their results are the same.

#include "platform/gdi/RasterJob.h"

#include <cstddef>

namespace kel::platform {

/// Picks pixels by the columns in @p columns.
/// @param bytes of a pixel: 1 to 4.
/// @param from a whole row, behind which nothing is read.
void PickPixels(std::uint8_t* to, const std::uint8_t* from, const int* columns, std::size_t count, int bytes);

/// Writes the low bytes of @p value @p count times.
void FillPixels(std::uint8_t* to, std::uint32_t value, std::size_t count, int bytes);

/// Applies a ternary operation to each byte of @p to. @p source and @p pattern may be null if it does not ask for them.
void CombineBytes(std::uint8_t* to, const std::uint8_t* source, const std::uint8_t* pattern, std::size_t count,
                  unsigned rop);

/// Copies pixels but for those of the colour @p key; of 32 bits the fourth byte is not compared.
/// @param bytes of a pixel: 3 or 4.
void CopyUnlessKey(std::uint8_t* to, const std::uint8_t* from, std::size_t count, int bytes, std::uint32_t key);

/// Blends pixels of 32 bits over others, as Blended does.
void BlendPixels(std::uint8_t* to, const std::uint8_t* from, std::size_t count, const BLENDFUNCTION& function);

/// From three bytes to four, the fourth 0, and back.
void Widen(std::uint8_t* to, const std::uint8_t* from, std::size_t count);
void Narrow(std::uint8_t* to, const std::uint8_t* from, std::size_t count);

} // namespace kel::platform
