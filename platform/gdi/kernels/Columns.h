#pragma once

/// @file
/// How the pixels of a stretched row are picked, made ready once for all rows.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kel::platform {

/// Columns of a source row, one for each target pixel, and how vectors pick them: for sixteen bytes of the target a
/// window of the source, of one piece of sixteen bytes or of two, and each byte's place in one of them. Two such steps
/// make a pair.
class ColumnPlan {
public:
    static constexpr std::size_t kPieceBytes = 16;

    ColumnPlan() = default;

    /// @param columns rising or falling.
    /// @param bytes of a pixel: 1 to 4.
    /// @param width of the source row, behind which nothing is read.
    ColumnPlan(std::vector<int> columns, int bytes, int width);

    bool IsEmpty() const { return m_columns.empty(); }
    const std::vector<int>& Columns() const { return m_columns; }
    std::size_t Bytes() const { return m_bytes; }

    /// Pieces of a window: 1 or 2; 0 if the columns are too far apart, or too few.
    std::size_t Pieces() const { return m_pieces; }

    /// Target pixels of a step.
    std::size_t PixelsOfStep() const { return kPieceBytes / m_bytes; }

    /// Pairs of steps, none of which writes a byte behind the row; pixels that are left are picked singly.
    std::size_t Pairs() const { return m_pairs; }

    /// Where the window of each step begins, in bytes of the source row.
    const std::uint32_t* Windows() const { return m_windows.data(); }

    /// For each pair the places in the first pieces of both steps, then those in the second pieces; 0x80 for a byte
    /// that is not there.
    const std::uint8_t* Places() const { return m_places.data(); }

private:
    bool PlaceAll(std::size_t rowBytes);
    bool Place(std::size_t step, std::size_t rowBytes);

    std::vector<int> m_columns;
    std::size_t m_bytes = 1;
    std::size_t m_pairs = 0;
    std::size_t m_pieces = 0;
    std::vector<std::uint32_t> m_windows;
    std::vector<std::uint8_t> m_places;
};

} // namespace kel::platform
