#include <kelcore/runtime/threads.h>

#include <cstdint>

namespace {

constexpr int kLevels[] = {
    THREAD_PRIORITY_ABOVE_NORMAL,  //
    THREAD_PRIORITY_BELOW_NORMAL,  //
    THREAD_PRIORITY_HIGHEST,       //
    THREAD_PRIORITY_IDLE,          //
    THREAD_PRIORITY_LOWEST,        //
    THREAD_PRIORITY_NORMAL,        //
    THREAD_PRIORITY_TIME_CRITICAL, //
};
static_assert(sizeof kLevels / sizeof *kLevels == Thread::TimeCritical + 1);

constexpr auto kNoThread = static_cast<std::uintptr_t>(-1);

bool Take(HANDLE token, DWORD timeout) {
    return WaitForSingleObject(token, timeout) == WAIT_OBJECT_0;
}

void PutBack(HANDLE token) {
    ReleaseSemaphore(token, /*count*/ 1, /*previous*/ nullptr);
}

} // namespace

Thread::Thread() : m_idle(CreateSemaphoreA(/*security*/ nullptr, /*initial*/ 1, /*maximum*/ 1, /*name*/ nullptr)) {}

Thread::~Thread() {
    const DWORD error = GetLastError();
    Take(m_idle, INFINITE);
    CloseHandle(m_idle);
    SetLastError(error);
}

bool Thread::start(Priority priority) {
    if (static_cast<unsigned>(priority) > TimeCritical || !Take(m_idle, 0))
        return false;
    const std::uintptr_t thread = _beginthread(&Run, /*stack size*/ 0, this);
    if (thread == kNoThread) {
        PutBack(m_idle);
        return false;
    }
    // The thread may have ended, and closed its handle, already: there is nothing left to set then.
    SetThreadPriority(reinterpret_cast<HANDLE>(thread), kLevels[priority]);
    return true;
}

bool Thread::waitForEnd(unsigned long timeout) const {
    const bool idle = Take(m_idle, static_cast<DWORD>(timeout));
    if (idle)
        PutBack(m_idle);
    return idle;
}

// Once the token is back, another thread may destroy the object: nothing of it is touched from then on.
void Thread::Run(void* thread) {
    Thread* const self = static_cast<Thread*>(thread);
    const HANDLE idle = self->m_idle;
    self->run();
    PutBack(idle);
}
