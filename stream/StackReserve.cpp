#include "stream/StackReserve.h"

#include <algorithm>

namespace {

constexpr ULONG_PTR kLeastReserve = 64 * 1024;

} // namespace

bool kel::StackReserve::IsReachedAt(ULONG_PTR here) {
    ULONG_PTR low = 0;
    ULONG_PTR high = 0;
    GetCurrentThreadStackLimits(&low, &high);
    // A stack that the system does not know, a fiber's say, cannot be measured.
    if (here < low || here >= high)
        return false;
    const ULONG_PTR reserve = std::min(high - low, std::max(kLeastReserve, (high - low) / 8));
    m_floor = low + reserve;
    m_span = high - m_floor;
    return here < m_floor;
}
