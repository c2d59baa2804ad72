#pragma once

/// @file
/// Multimedia timers: callbacks at set times, on one thread of the layer, which exists while there are timers.

#include <kelcore/platform/base.h>

typedef UINT MMRESULT;

/// @param id what timeSetEvent returned.
/// @param message, reserved1, reserved2 0.
/// @param user as given to timeSetEvent.
typedef void(CALLBACK* LPTIMECALLBACK)(UINT id, UINT message, DWORD_PTR user, DWORD_PTR reserved1, DWORD_PTR reserved2);

#define TIMERR_NOERROR 0
#define TIMERR_NOCANDO 97

/// @name Kinds of timers
/// @{
#define TIME_ONESHOT 0x0000
#define TIME_PERIODIC 0x0001
#define TIME_CALLBACK_FUNCTION 0x0000
#define TIME_KILL_SYNCHRONOUS 0x0100 ///< how timeKillEvent always is here
/// @}

extern "C" {

/// Has @p callback called once after @p delay milliseconds, or every @p delay milliseconds.
///
/// Callbacks run one after the other. The times of a periodic timer are multiples of the delay after its start, however
/// late its callbacks are: those that could not run in time follow each other until they have caught up. No exception
/// must leave a callback.
/// @param delay 1 to 1,000,000.
/// @param resolution how exact it has to be, in milliseconds; timers are as exact as the host can make them.
/// @param flags TIME_ONESHOT or TIME_PERIODIC; TIME_CALLBACK_FUNCTION; TIME_KILL_SYNCHRONOUS.
/// @return the timer's identifier, never 0 and not that of an earlier timer for a long time. 0 for another delay or
///         flag, for no callback, and when memory or threads are short.
KELPLATFORM_API MMRESULT WINAPI timeSetEvent(UINT delay, UINT resolution, LPTIMECALLBACK callback, DWORD_PTR user,
                                             UINT flags);

/// Ends a timer. When this returns, its callback neither runs nor will run, unless the call comes from that callback
/// itself; so a caller must not hold a lock that the callback waits for.
/// @return TIMERR_NOERROR; TIMERR_NOCANDO if there is no such timer (any more): a one-shot timer is gone when its
///         callback has returned.
KELPLATFORM_API MMRESULT WINAPI timeKillEvent(UINT id);

} // extern "C"
