#include "platform/gdi/kernels/Columns.h"

#include <algorithm>
#include <utility>

namespace kel::platform {
namespace {

constexpr std::size_t kPieceBytes = 16;
constexpr std::uint8_t kElsewhere = 0x80;

ColumnPlan::Piece PieceAt(std::size_t from) {
    ColumnPlan::Piece piece;
    piece.places.fill(kElsewhere);
    piece.from = static_cast<std::uint32_t>(from);
    return piece;
}

// False if the piece does not hold the whole pixel.
bool Place(ColumnPlan::Piece& piece, std::size_t pixel, std::size_t bytes, std::size_t to) {
    if (pixel < piece.from || pixel + bytes > piece.from + kPieceBytes)
        return false;
    for (std::size_t i = 0; i < bytes; ++i)
        piece.places[to + i] = static_cast<std::uint8_t>(pixel - piece.from + i);
    return true;
}

} // namespace

ColumnPlan::ColumnPlan(std::vector<int> columns, int bytes, int width)
    : m_columns(std::move(columns)), m_bytes(static_cast<std::size_t>(bytes)) {
    const std::size_t rowBytes = static_cast<std::size_t>(width) * m_bytes;
    const std::size_t targetBytes = m_columns.size() * m_bytes;
    if (rowBytes < kPieceBytes || targetBytes < kPieceBytes)
        return;
    m_steps = (targetBytes - kPieceBytes) / (PixelsOfStep() * m_bytes) + 1;
    for (int pieces = 1; pieces <= 2 && m_piecesOfStep == 0; ++pieces)
        if (CutAll(rowBytes, pieces))
            m_piecesOfStep = pieces;
}

bool ColumnPlan::CutAll(std::size_t rowBytes, int pieces) {
    m_pieces.clear();
    m_pieces.reserve(m_steps * static_cast<std::size_t>(pieces));
    for (std::size_t step = 0; step < m_steps; ++step)
        if (!Cut(step, rowBytes, pieces))
            return false;
    return true;
}

// The first piece begins with the lowest pixel; of two the second one ends with the highest.
bool ColumnPlan::Cut(std::size_t step, std::size_t rowBytes, int pieces) {
    const int* columns = m_columns.data() + step * PixelsOfStep();
    const auto ends = std::minmax(columns[0], columns[PixelsOfStep() - 1]);
    const std::size_t lowest = static_cast<std::size_t>(ends.first) * m_bytes;
    const std::size_t behind = (static_cast<std::size_t>(ends.second) + 1) * m_bytes;
    Piece first = PieceAt(std::min(lowest, rowBytes - kPieceBytes));
    Piece second = PieceAt(std::max(behind, kPieceBytes) - kPieceBytes);
    for (std::size_t i = 0; i < PixelsOfStep(); ++i) {
        const std::size_t pixel = static_cast<std::size_t>(columns[i]) * m_bytes;
        if (!Place(first, pixel, m_bytes, i * m_bytes) && (pieces == 1 || !Place(second, pixel, m_bytes, i * m_bytes)))
            return false;
    }
    m_pieces.push_back(first);
    if (pieces == 2)
        m_pieces.push_back(second);
    return true;
}

} // namespace kel::platform
