#pragma once

#include <cstddef>
#include <cstdint>

/// @file
/// The loops over pixel memory. Each takes the quickest road that the processor has; every road gives the same bytes.
///
/// What all share:
/// - A colour is a pixel value: blue in bits 0-7, green in bits 8-15, red in bits 16-23. A pixel of 24 bits is these
///   three bytes, one of 32 bits has a fourth. Bits 24-31 of a colour count only where that is said.
/// - A row is read and written from its first byte to the last byte of its last pixel, never outside: padding and
///   neighbours are neither read nor touched. Inside, a byte that keeps its value may be written again.
/// - A width or a number of rows of 0 is allowed and does nothing. Memory needs no alignment.
/// - Nothing is allocated, nothing fails, and nothing is shared between threads.
namespace kel::pixels {

using Byte = unsigned char;

/// A rectangle of pixel memory.
template <class T>
struct RowsOf {
    T* first;              ///< The first byte of the first pixel.
    std::ptrdiff_t stride; ///< Bytes from a row to the next; may be negative.
    std::size_t width;     ///< Pixels in a row.
    std::size_t rows;
};

using Rows = RowsOf<Byte>;
using ConstRows = RowsOf<const Byte>;

/// A 1-bit picture; pixel x is bit `7 - x % 8` of byte `x / 8`. It has as many rows as the pixels it governs.
struct BitRows {
    const Byte* first;
    std::ptrdiff_t stride;
};

/// The colour that no pixel has, for @ref GreyOut24 and @ref GreyOut32.
constexpr std::uint32_t kNoColour = 0xFFFFFFFF;

/// Tints 32-bit pixels: each channel c becomes `(A * C + c * (256 - opacity)) >> 8`, with C the channel of @p tint and
/// `A = opacity * 256 / 255`, truncated. The fourth byte becomes 0.
void ShadeRows(const Rows& rows, std::uint32_t tint, Byte opacity);

/// Tints the 32-bit pixels whose mask bit is 1, as @ref ShadeRows does; their fourth byte stays. @p rows and @p mask
/// begin at pixel 0 of their rows; the pixels from @p left, rounded down to a multiple of 8, to the width are governed,
/// the ones before are neither read nor written, nor are their mask bytes.
void ShadeRowsMasked(const Rows& rows, const BitRows& mask, std::size_t left, std::uint32_t tint, Byte opacity);

/// Copies the pixels of @p source over those of @p target that have the colour @p key; a copied pixel of 32 bits brings
/// its fourth byte. @p source has the width and rows of @p target; it is @p target's memory or does not overlap it.
void CombineKey24(const Rows& target, const ConstRows& source, std::uint32_t key);
void CombineKey32(const Rows& target, const ConstRows& source, std::uint32_t key);

/// Makes all three channels of each pixel `(blue + green + red) / 9 + 128`, truncated, unless the pixel has the colour
/// @p keep, whose bits 24-31 count: with any of them set, no pixel has it. A fourth byte stays.
void GreyOut24(const Rows& rows, std::uint32_t keep);
void GreyOut32(const Rows& rows, std::uint32_t keep);

/// @return whether a pixel has the colour; a fourth byte is ignored. Reading ends soon after the first that has it.
bool Contains24(const ConstRows& rows, std::uint32_t colour);
bool Contains32(const ConstRows& rows, std::uint32_t colour);

/// Complements @p count bytes.
void Complement(void* bytes, std::size_t count);

/// Sets @p count bytes.
void Fill(void* bytes, std::size_t count, Byte value);

/// ORs @p bits into each 8-bit pixel whose mask bit is 1, or 0 when @p invert.
void OrBitPlane(const Rows& rows, const BitRows& mask, Byte bits, bool invert);

/// Makes 32-bit pixels of the colour @p key 0 and the fourth byte of all others 0xFF.
void KeyToAlpha(const Rows& rows, std::uint32_t key);

/// Makes 32-bit pixels of the colour @p key the 32-bit value @p overlay and all others 0.
void KeyToOverlay(const Rows& rows, std::uint32_t key, std::uint32_t overlay);

} // namespace kel::pixels
