#pragma once

/// @file
/// Threads, their priorities, semaphores and critical sections. Every call here may be made from any thread.
///
/// Handles of semaphores and threads can be waited for, duplicated and closed. A handle that is closed while a thread
/// waits on it leaves that wait as it is. Rights of these handles are not looked at.

#include <kelcore/platform/base.h>

/// @name Waiting
/// @{
#define INFINITE 0xFFFFFFFFu
#define WAIT_OBJECT_0 0u
#define WAIT_TIMEOUT 258u
#define WAIT_FAILED 0xFFFFFFFFu
/// @}

/// @name Priorities
/// @{
#define THREAD_PRIORITY_IDLE (-15)
#define THREAD_PRIORITY_LOWEST (-2)
#define THREAD_PRIORITY_BELOW_NORMAL (-1)
#define THREAD_PRIORITY_NORMAL 0
#define THREAD_PRIORITY_ABOVE_NORMAL 1
#define THREAD_PRIORITY_HIGHEST 2
#define THREAD_PRIORITY_TIME_CRITICAL 15
#define THREAD_PRIORITY_ERROR_RETURN 0x7FFFFFFF
/// @}

/// A lock that a thread may take again while it has it. The record stays where it was initialised; its content is the
/// layer's own.
typedef struct _RTL_CRITICAL_SECTION {
    void* Reserved[8];
} CRITICAL_SECTION, *PCRITICAL_SECTION, *LPCRITICAL_SECTION;

extern "C" {

/// Makes a semaphore that starts at @p initial and can count up to @p maximum. A success sets the last error to 0.
/// @param security null, or tells whether the handle is inheritable.
/// @param name must be null (else ERROR_NOT_SUPPORTED): there are no semaphores between processes.
/// @return null with ERROR_INVALID_PARAMETER unless 0 <= initial <= maximum and maximum > 0; ERROR_NOT_ENOUGH_MEMORY.
KELPLATFORM_API HANDLE WINAPI CreateSemaphoreA(LPSECURITY_ATTRIBUTES security, LONG initial, LONG maximum, LPCSTR name);

/// Raises the count by @p count and lets that many waits end.
/// @param previous null, or receives the count before; untouched on failure.
/// @return FALSE with ERROR_INVALID_PARAMETER if @p count is not positive, ERROR_TOO_MANY_POSTS if the count would pass
///         the maximum; the count is then unchanged. ERROR_INVALID_HANDLE for what is no semaphore.
KELPLATFORM_API BOOL WINAPI ReleaseSemaphore(HANDLE semaphore, LONG count, LONG* previous);

/// Waits until a semaphore's count is above 0, and lowers it by one, or until a thread has ended, which stays so.
/// @param milliseconds how long to wait at most: 0 only tries, INFINITE has no limit. Time goes on while the host
///        adjusts its clock.
/// @return WAIT_OBJECT_0, WAIT_TIMEOUT, or WAIT_FAILED with ERROR_INVALID_HANDLE for anything but the handle of a
///         semaphore or thread.
KELPLATFORM_API DWORD WINAPI WaitForSingleObject(HANDLE object, DWORD milliseconds);

/// Runs @p routine on a new thread, which ends when the routine returns. An exception must not leave it: the program
/// ends then.
///
/// The returned handle is the layer's own: it is closed when the thread ends, which may be at once. Until then it may
/// be duplicated; a copy outlives the thread and can be waited for.
/// @param stackSize in bytes; the thread gets the host's default when that is more, as for 0.
/// @return -1 with errno EINVAL (no routine) or EAGAIN and ERROR_NOT_ENOUGH_MEMORY (no more threads or memory).
KELPLATFORM_API std::uintptr_t _beginthread(void (*routine)(void*), unsigned stackSize, void* argument);

/// The stand-in for the calling thread's handle, for the two calls on priorities; closing it does nothing.
KELPLATFORM_API HANDLE WINAPI GetCurrentThread(void);

/// Sets how a thread stands against others when processors are scarce: one of the seven THREAD_PRIORITY_ levels. New
/// threads are normal, whoever makes them.
///
/// A level becomes a nice value of the host, relative to that of the process: 19 for idle, then +10, +5, 0, -5, -10,
/// and -15 for time critical. A level that the host does not let the user set is no error: it is kept as the thread's
/// level, and the thread runs on as before.
/// @return FALSE with ERROR_INVALID_PARAMETER for another level, ERROR_INVALID_HANDLE for what is no thread.
KELPLATFORM_API BOOL WINAPI SetThreadPriority(HANDLE thread, int priority);

/// The level that was set last.
/// @return THREAD_PRIORITY_ERROR_RETURN with ERROR_INVALID_HANDLE for what is no thread.
KELPLATFORM_API int WINAPI GetThreadPriority(HANDLE thread);

/// Lets other threads run: for 0 if any is ready, else for @p milliseconds at least; INFINITE never returns.
KELPLATFORM_API void WINAPI Sleep(DWORD milliseconds);

/// @name Critical sections
/// A section is initialised once before its use and deleted after it, by any thread. It is left as often as it was
/// entered, by the thread that entered it. None of these calls fails.
/// @{
KELPLATFORM_API void WINAPI InitializeCriticalSection(LPCRITICAL_SECTION section);
KELPLATFORM_API void WINAPI DeleteCriticalSection(LPCRITICAL_SECTION section);
KELPLATFORM_API void WINAPI EnterCriticalSection(LPCRITICAL_SECTION section);
/// @return FALSE when another thread is inside; never waits.
KELPLATFORM_API BOOL WINAPI TryEnterCriticalSection(LPCRITICAL_SECTION section);
KELPLATFORM_API void WINAPI LeaveCriticalSection(LPCRITICAL_SECTION section);
/// @}

} // extern "C"
