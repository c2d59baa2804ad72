#pragma once

/// @file
/// How the pixels of a stretched row are picked, made ready once for all rows.

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace kel::platform {

/// Columns of a source row, one for each target pixel, and how vectors pick them: sixteen bytes of the target at a time
/// from one or two pieces of sixteen bytes of the source.
class ColumnPlan {
public:
    /// Where pieces begin, in bytes of the source row, and for each target byte its place in the piece; 0x80 where it
    /// is in the other one or in none.
    struct Piece {
        std::array<std::uint8_t, 16> places;
        std::uint32_t from;
    };

    ColumnPlan() = default;

    /// @param columns rising or falling.
    /// @param bytes of a pixel: 1 to 4.
    /// @param width of the source row, behind which nothing is read.
    ColumnPlan(std::vector<int> columns, int bytes, int width);

    bool IsEmpty() const { return m_columns.empty(); }
    const std::vector<int>& Columns() const { return m_columns; }
    std::size_t Bytes() const { return m_bytes; }

    /// Pieces of each step: 1 or 2; 0 if the columns are too far apart.
    int PiecesOfStep() const { return m_piecesOfStep; }

    /// Target pixels of each step.
    std::size_t PixelsOfStep() const { return 16 / m_bytes; }

    /// Steps that write no byte behind the row; pixels that are left are picked singly.
    std::size_t Steps() const { return m_steps; }

    /// Those of the first step, of the second, and so on.
    const Piece* Pieces() const { return m_pieces.data(); }

private:
    bool Cut(std::size_t step, std::size_t rowBytes, int pieces);
    bool CutAll(std::size_t rowBytes, int pieces);

    std::vector<int> m_columns;
    std::size_t m_bytes = 1;
    std::size_t m_steps = 0;
    int m_piecesOfStep = 0;
    std::vector<Piece> m_pieces;
};

} // namespace kel::platform
