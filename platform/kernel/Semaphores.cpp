#include "platform/kernel/Faults.h"
#include "platform/kernel/LastError.h"
#include "platform/kernel/Waitable.h"

#include <kelcore/platform/threads.h>

#include <new>

namespace kel::platform {
namespace {

class Semaphore final : public Waitable {
public:
    static constexpr ObjectKind kKind = ObjectKind::Semaphore;

    Semaphore(LONG initial, LONG maximum) : Waitable(kKind), m_count(initial), m_maximum(maximum) {}

    bool Release(LONG count, LONG* previous) {
        const std::lock_guard guard(m_mutex);
        if (count > m_maximum - m_count)
            return Fail(ERROR_TOO_MANY_POSTS);
        if (previous)
            *previous = m_count;
        m_count += count;
        count == 1 ? m_signalled.notify_one() : m_signalled.notify_all();
        return true;
    }

private:
    bool Take() override { return m_count > 0 && m_count-- > 0; }

    LONG m_count;
    const LONG m_maximum;
};

HANDLE OpenSemaphore(LONG initial, LONG maximum, bool inherit) {
    try {
        return OpenHandle(std::make_shared<Semaphore>(initial, maximum), /*access*/ 0, inherit);
    } catch (const std::bad_alloc&) {
        Fail(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
}

bool ReleaseOf(HANDLE handle, LONG count, LONG* previous) {
    const Pinned<Semaphore> semaphore(handle);
    if (!semaphore)
        return false;
    return count > 0 ? semaphore->Release(count, previous) : Fail(ERROR_INVALID_PARAMETER);
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

HANDLE WINAPI CreateSemaphoreA(LPSECURITY_ATTRIBUTES security, LONG initial, LONG maximum, LPCSTR name) {
    if (CallFails("CreateSemaphoreA"))
        return nullptr;
    const bool possible = maximum > 0 && 0 <= initial && initial <= maximum;
    if (!possible || name) {
        Fail(possible ? ERROR_NOT_SUPPORTED : ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    const HANDLE handle = OpenSemaphore(initial, maximum, security && security->bInheritHandle);
    if (handle)
        SetLastError(ERROR_SUCCESS);
    return handle;
}

// Releasing is done before an injected failure is reported, see CallFails.
BOOL WINAPI ReleaseSemaphore(HANDLE semaphore, LONG count, LONG* previous) {
    const bool fails = CallFails("ReleaseSemaphore");
    const DWORD fault = GetLastError();
    const bool released = ReleaseOf(semaphore, count, previous);
    return fails ? Fail(fault) : released;
}
