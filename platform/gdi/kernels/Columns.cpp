#include "platform/gdi/kernels/Columns.h"

#include <algorithm>
#include <utility>

namespace kel::platform {
namespace {

constexpr std::uint8_t kElsewhere = 0x80;

} // namespace

ColumnPlan::ColumnPlan(std::vector<int> columns, int bytes, int width)
    : m_columns(std::move(columns)), m_bytes(static_cast<std::size_t>(bytes)) {
    const std::size_t rowBytes = static_cast<std::size_t>(width) * m_bytes;
    const std::size_t targetBytes = m_columns.size() * m_bytes;
    if (targetBytes < kPieceBytes)
        return;
    const std::size_t steps = (targetBytes - kPieceBytes) / (PixelsOfStep() * m_bytes) + 1;
    m_pairs = steps / 2;
    for (m_pieces = 1; m_pieces <= 2; ++m_pieces)
        if (PlaceAll(rowBytes))
            return;
    m_pieces = 0;
}

bool ColumnPlan::PlaceAll(std::size_t rowBytes) {
    if (rowBytes < m_pieces * kPieceBytes)
        return false;
    m_windows.resize(2 * m_pairs);
    m_places.assign(2 * m_pairs * m_pieces * kPieceBytes, kElsewhere);
    for (std::size_t step = 0; step < 2 * m_pairs; ++step)
        if (!Place(step, rowBytes))
            return false;
    return true;
}

// The window begins with the lowest pixel, unless it then reached behind the row.
bool ColumnPlan::Place(std::size_t step, std::size_t rowBytes) {
    const std::size_t pixels = PixelsOfStep();
    const int* columns = m_columns.data() + step * pixels;
    const auto [lowest, highest] = std::minmax(columns[0], columns[pixels - 1]);
    const std::size_t window = std::min(static_cast<std::size_t>(lowest) * m_bytes, rowBytes - m_pieces * kPieceBytes);
    if ((static_cast<std::size_t>(highest) + 1) * m_bytes > window + m_pieces * kPieceBytes)
        return false;
    m_windows[step] = static_cast<std::uint32_t>(window);
    std::uint8_t* places = m_places.data() + (step / 2 * 2 * m_pieces + step % 2) * kPieceBytes;
    for (std::size_t i = 0; i < pixels * m_bytes; ++i) {
        const std::size_t at = static_cast<std::size_t>(columns[i / m_bytes]) * m_bytes + i % m_bytes - window;
        places[at / kPieceBytes * 2 * kPieceBytes + i] = static_cast<std::uint8_t>(at % kPieceBytes);
    }
    return true;
}

} // namespace kel::platform
