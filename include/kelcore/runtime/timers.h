#pragma once

/// @file
/// Timers that call an object back.

#include <kelcore/export.h>
#include <kelcore/platform.h>

/// Who is called by a timer. The timer does not own it.
class KELCORE_API ITimerTarget {
public:
    /// The time has come. Runs on the system's timer thread, one callback after the other: guard what other threads use
    /// too, and be quick. No exception may leave it.
    /// @param id the timer, as KelSetTimer returned it.
    virtual void OnTimer(unsigned int id) = 0;

protected:
    ~ITimerTarget() = default;
};

/// Has @p target called once after @p delay milliseconds or, if @p periodic, every @p delay milliseconds
/// (`timeSetEvent`).
/// @param resolution how exact it has to be, in milliseconds; 0 for as exact as possible.
/// @param target must live until the timer has fired (once) or was killed.
/// @return the timer's identifier, 0 when the system refused.
KELCORE_API unsigned int KelSetTimer(unsigned int resolution, unsigned int delay, ITimerTarget* target, bool periodic);

/// Ends a timer (`timeKillEvent`); does nothing for an identifier that no timer has.
///
/// On Windows a callback that has begun may still be running when this returns, and one may begin. Off Windows neither
/// happens, unless the call comes from that very callback; do not hold a lock that the callback waits for.
KELCORE_API void KelKillTimer(unsigned int id);
