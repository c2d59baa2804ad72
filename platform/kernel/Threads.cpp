#include "platform/kernel/Faults.h"
#include "platform/kernel/LastError.h"
#include "platform/kernel/ThreadObject.h"

#include <kelcore/platform/threads.h>

#include <pthread.h>
#include <unistd.h>

#include <chrono>
#include <new>
#include <thread>

namespace kel::platform {
namespace {

constexpr std::uintptr_t kNoThread = static_cast<std::uintptr_t>(-1);

struct Start {
    std::shared_ptr<ThreadObject> thread;
    HANDLE handle;
    void (*routine)(void*);
    void* argument;
};

// A handle that its receiver has closed, though it was not his, may name another object by now.
void CloseOwnHandle(const Start& start) {
    PinnedObject pinned(start.handle);
    if (pinned && pinned.Shared() == start.thread)
        pinned.CloseHandle();
}

// An exception that leaves the routine ends the program here.
void* RunRoutine(void* argument) noexcept {
    const std::unique_ptr<const Start> start(static_cast<Start*>(argument));
    start->thread->Begin(start->thread);
    start->routine(start->argument);
    start->thread->End();
    CloseOwnHandle(*start);
    return nullptr;
}

// The attributes of a thread that nobody joins, with the host's default stack or @p stackSize if that is more.
class Attributes {
public:
    explicit Attributes(std::size_t stackSize) {
        pthread_attr_init(&m_attributes);
        pthread_attr_setdetachstate(&m_attributes, PTHREAD_CREATE_DETACHED);
        if (stackSize > 0)
            RaiseStackSize(stackSize);
    }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;
    ~Attributes() { pthread_attr_destroy(&m_attributes); }

    const pthread_attr_t* Get() const { return &m_attributes; }

private:
    void RaiseStackSize(std::size_t stackSize) {
        const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        std::size_t least = 0;
        pthread_attr_getstacksize(&m_attributes, &least);
        if (stackSize > least)
            pthread_attr_setstacksize(&m_attributes, (stackSize + page - 1) / page * page);
    }

    pthread_attr_t m_attributes;
};

// @return null when memory or threads are short.
HANDLE StartThread(void (*routine)(void*), std::size_t stackSize, void* argument) try {
    const auto thread = std::make_shared<ThreadObject>();
    auto start = std::make_unique<Start>(Start{thread, nullptr, routine, argument});
    // Closed by the thread, at a moment nobody can foretell: no handle for anybody to count.
    const HANDLE handle = start->handle = OpenUncountedHandle(thread, /*access*/ 0, /*inherit*/ false);
    pthread_t number;
    if (handle && pthread_create(&number, Attributes(stackSize).Get(), &RunRoutine, start.get()) == 0) {
        static_cast<void>(start.release());
        return handle;
    }
    CloseOwnHandle(*start);
    return nullptr;
} catch (const std::bad_alloc&) {
    return nullptr;
}

bool IsLevel(int priority) {
    return (THREAD_PRIORITY_LOWEST <= priority && priority <= THREAD_PRIORITY_HIGHEST) ||
           priority == THREAD_PRIORITY_IDLE || priority == THREAD_PRIORITY_TIME_CRITICAL;
}

// @return null with the last error set for what is no thread.
std::shared_ptr<ThreadObject> ThreadOf(HANDLE handle) try {
    if (handle == GetCurrentThread())
        return ThreadObject::Current();
    const Pinned<ThreadObject> thread(handle);
    return thread ? thread.Hold() : nullptr;
} catch (const std::bad_alloc&) {
    Fail(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

std::uintptr_t _beginthread(void (*routine)(void*), unsigned stackSize, void* argument) {
    const bool fails = CallFails("_beginthread");
    if (!fails && !routine) {
        errno = EINVAL;
        return kNoThread;
    }
    const HANDLE handle = fails ? nullptr : StartThread(routine, stackSize, argument);
    if (handle)
        return reinterpret_cast<std::uintptr_t>(handle);
    if (!fails)
        Fail(ERROR_NOT_ENOUGH_MEMORY);
    errno = EAGAIN;
    return kNoThread;
}

HANDLE WINAPI GetCurrentThread(void) {
    return reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(-2));
}

BOOL WINAPI SetThreadPriority(HANDLE thread, int priority) {
    if (CallFails("SetThreadPriority"))
        return FALSE;
    const auto object = ThreadOf(thread);
    if (!object)
        return FALSE;
    if (!IsLevel(priority))
        return Fail(ERROR_INVALID_PARAMETER);
    object->SetLevel(priority);
    return TRUE;
}

int WINAPI GetThreadPriority(HANDLE thread) {
    if (CallFails("GetThreadPriority"))
        return THREAD_PRIORITY_ERROR_RETURN;
    const auto object = ThreadOf(thread);
    return object ? object->Level() : THREAD_PRIORITY_ERROR_RETURN;
}

void WINAPI Sleep(DWORD milliseconds) {
    if (milliseconds == 0)
        return std::this_thread::yield();
    for (;;) {
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
        if (milliseconds != INFINITE)
            return;
    }
}
