#pragma once

/// @file
/// What is done to one row of pixels of 8, 16, 24 or 32 bits. There are two roads, a plain one and one of vectors;
/// their results are the same. Rows of one call are the same row or do not overlap.

#include "platform/gdi/kernels/Columns.h"

namespace kel::platform {

struct RowRoad {
    /// Picks the pixels of the plan's columns.
    void (*pick)(std::uint8_t* to, const std::uint8_t* from, const ColumnPlan& plan);

    /// Writes the low bytes of @p value @p count times. @param bytes of a pixel: 1 to 4.
    void (*fill)(std::uint8_t* to, std::uint32_t value, std::size_t count, int bytes);

    /// Copies bytes that nobody is about to read, so that they need not go through the caches. Other threads see them
    /// in no order before settle is called.
    void (*stream)(std::uint8_t* to, const std::uint8_t* from, std::size_t count);
    void (*settle)();

    /// Applies a ternary operation to each byte of @p to. @p source and @p pattern may be null if it does not ask for
    /// them.
    void (*combine)(std::uint8_t* to, const std::uint8_t* source, const std::uint8_t* pattern, std::size_t count,
                    unsigned rop);

    /// Copies pixels of 24 or 32 bits but for those of the colour @p key; a fourth byte is not compared.
    void (*copyUnless24)(std::uint8_t* to, const std::uint8_t* from, std::size_t count, std::uint32_t key);
    void (*copyUnless32)(std::uint8_t* to, const std::uint8_t* from, std::size_t count, std::uint32_t key);

    /// Weighs bytes with others, as Blended does without alpha of the source. @param opacity of @p from.
    void (*weigh)(std::uint8_t* to, const std::uint8_t* from, std::size_t count, unsigned opacity);

    /// Lays pixels of 32 bits over others, as Blended does with alpha of the source.
    void (*lay)(std::uint8_t* to, const std::uint8_t* from, std::size_t count, unsigned opacity);

    /// From three bytes a pixel to four, the fourth 0, and back.
    void (*widen)(std::uint8_t* to, const std::uint8_t* from, std::size_t count);
    void (*narrow)(std::uint8_t* to, const std::uint8_t* from, std::size_t count);
};

/// The road that every processor has.
extern const RowRoad kPlainRows;

/// The road for processors with AVX2; no other may take it.
extern const RowRoad kAvx2Rows;

/// The quicker road of those that this processor has.
const RowRoad& FastRows();

/// Repeats the first @p period bytes of @p to until @p count are written.
void RepeatBytes(std::uint8_t* to, std::size_t period, std::size_t count);

} // namespace kel::platform
