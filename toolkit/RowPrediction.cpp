#include "toolkit/RowPrediction.h"

#include <algorithm>

namespace kel::toolkit {

void PredictRow(BYTE* left, const BYTE* row, const BYTE* previous, std::size_t count, std::size_t step) {
    const std::size_t first = std::min(step, count);
    for (std::size_t i = 0; i < first; ++i)
        left[i] = static_cast<BYTE>(row[i] - (previous ? previous[i] : 0));
    if (!previous) {
        for (std::size_t i = first; i < count; ++i)
            left[i] = static_cast<BYTE>(row[i] - row[i - step]);
        return;
    }
    for (std::size_t i = first; i < count; ++i)
        left[i] = static_cast<BYTE>(row[i] - row[i - step] - previous[i] + previous[i - step]);
}

void RestoreRow(BYTE* row, const BYTE* previous, std::size_t count, std::size_t step) {
    for (std::size_t i = step; i < count; ++i)
        row[i] = static_cast<BYTE>(row[i] + row[i - step]);
    if (!previous)
        return;
    for (std::size_t i = 0; i < count; ++i)
        row[i] = static_cast<BYTE>(row[i] + previous[i]);
}

} // namespace kel::toolkit
