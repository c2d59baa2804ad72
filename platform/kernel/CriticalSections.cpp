#include <kelcore/platform/threads.h>

#include <pthread.h>

#include <new>

namespace {

static_assert(sizeof(pthread_mutex_t) <= sizeof(CRITICAL_SECTION) &&
                  alignof(pthread_mutex_t) <= alignof(CRITICAL_SECTION),
              "the host's lock lies in the record, so that initialising needs no memory and cannot fail");

pthread_mutex_t* LockOf(LPCRITICAL_SECTION section) {
    return std::launder(reinterpret_cast<pthread_mutex_t*>(section));
}

} // namespace

void WINAPI InitializeCriticalSection(LPCRITICAL_SECTION section) {
    pthread_mutexattr_t recursive;
    pthread_mutexattr_init(&recursive);
    pthread_mutexattr_settype(&recursive, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(new (section) pthread_mutex_t, &recursive);
    pthread_mutexattr_destroy(&recursive);
}

void WINAPI DeleteCriticalSection(LPCRITICAL_SECTION section) {
    pthread_mutex_destroy(LockOf(section));
}

void WINAPI EnterCriticalSection(LPCRITICAL_SECTION section) {
    pthread_mutex_lock(LockOf(section));
}

BOOL WINAPI TryEnterCriticalSection(LPCRITICAL_SECTION section) {
    return pthread_mutex_trylock(LockOf(section)) == 0;
}

void WINAPI LeaveCriticalSection(LPCRITICAL_SECTION section) {
    pthread_mutex_unlock(LockOf(section));
}
