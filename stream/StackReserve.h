#pragma once

#include <kelcore/platform.h>

namespace kel {

/// Tells whether the calling thread's stack is nearly used up, so that recursion over foreign data can stop in time.
/// It remembers the last thread's stack: asking again from the same thread costs two comparisons.
class StackReserve {
public:
    /// @return whether less than the reserve (an eighth of the stack, at least 64 KiB) is left below this call.
    bool IsReached() {
        const auto here = reinterpret_cast<ULONG_PTR>(__builtin_frame_address(0));
        if (here - m_floor < m_span)
            return false;
        return IsReachedAt(here);
    }

private:
    bool IsReachedAt(ULONG_PTR here);

    // The part of the stack that may be used.
    ULONG_PTR m_floor = 0;
    ULONG_PTR m_span = 0;
};

} // namespace kel
