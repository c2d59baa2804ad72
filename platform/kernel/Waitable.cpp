#include "platform/kernel/Waitable.h"

#include "platform/kernel/Faults.h"

#include <kelcore/platform/threads.h>

#include <chrono>

namespace kel::platform {
namespace {

/// A pinned object that can be waited for; empty, with the last error set, for every other handle.
class PinnedWaitable : public PinnedObject {
public:
    explicit PinnedWaitable(HANDLE handle) : PinnedObject(handle) {
        if (m_slot && !CanBeWaitedFor(m_slot->object->Kind()))
            Reject();
    }

    Waitable* operator->() const { return static_cast<Waitable*>(m_slot->object.get()); }

private:
    static bool CanBeWaitedFor(ObjectKind kind) { return kind == ObjectKind::Semaphore || kind == ObjectKind::Thread; }
};

} // namespace

bool Waitable::Wait(DWORD milliseconds) {
    std::unique_lock lock(m_mutex);
    const auto take = [this] { return Take(); };
    if (milliseconds == 0)
        return Take();
    if (milliseconds != INFINITE)
        return m_signalled.wait_for(lock, std::chrono::milliseconds(milliseconds), take);
    m_signalled.wait(lock, take);
    return true;
}

} // namespace kel::platform

using namespace kel::platform;

DWORD WINAPI WaitForSingleObject(HANDLE object, DWORD milliseconds) {
    if (CallFails("WaitForSingleObject"))
        return WAIT_FAILED;
    const PinnedWaitable waitable(object);
    if (!waitable)
        return WAIT_FAILED;
    return waitable->Wait(milliseconds) ? WAIT_OBJECT_0 : WAIT_TIMEOUT;
}
