#include "stream/StackReserve.h"

#include <algorithm>

// ThreadSanitizer keeps a stack of its own that holds 64 Ki calls, whatever the size of the thread's.
#if defined(__SANITIZE_THREAD__)
#define KELCORE_OTHER_STACK 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define KELCORE_OTHER_STACK 1
#endif
#endif

namespace {

constexpr ULONG_PTR kLeastReserve = 64 * 1024;

ULONG_PTR Reserve(ULONG_PTR size) {
#if defined(KELCORE_OTHER_STACK)
    return std::max(kLeastReserve, size - size / 8);
#else
    return std::max(kLeastReserve, size / 8);
#endif
}

} // namespace

bool kel::StackReserve::IsReachedAt(ULONG_PTR here) {
    ULONG_PTR low = 0;
    ULONG_PTR high = 0;
    GetCurrentThreadStackLimits(&low, &high);
    // A stack that the system does not know, a fiber's say, cannot be measured.
    if (here < low || here >= high)
        return false;
    m_floor = low + std::min(high - low, Reserve(high - low));
    m_span = high - m_floor;
    return here < m_floor;
}
