#pragma once

/// @file
/// Worker threads.

#include <kelcore/export.h>
#include <kelcore/platform.h>

/// A worker that runs one job at a time on a thread of its own and can be waited for.
///
///     class Loader : public Thread {
///     public:
///         ~Loader() override { waitForEnd(INFINITE); }
///         void run() override { … }
///     };
///
/// A running job holds the worker's idle token, a semaphore of count 1. start and waitForEnd may be called from any
/// thread. In run() itself start answers false and waitForEnd cannot succeed.
///
/// The destructor of this class waits for a running job; but by then the derived class is gone. A derived class whose
/// job may still run when it is destroyed therefore waits in its own destructor, as above.
///
/// Nothing here throws. A worker whose semaphore could not be made never starts.
class KELCORE_API Thread {
public:
    /// How the job's thread stands against others, see SetThreadPriority.
    enum Priority {
        AboveNormal,
        BelowNormal,
        Highest,
        Idle,
        Lowest,
        Normal,
        TimeCritical,
    };

    /// Makes an idle worker (`CreateSemaphoreA`).
    Thread();
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;
    /// Waits for a running job, without limit, then closes the semaphore. Leaves the last error alone.
    virtual ~Thread();

    /// The job. It runs on the new thread; no exception may leave it.
    virtual void run() = 0;

    /// Runs run() on a new thread (`_beginthread`, default stack) with @p priority (`SetThreadPriority`, whose failure
    /// does not count).
    /// @return false, and nothing is started, if @p priority is none of the above, a job is running, another thread
    ///         is in waitForEnd at this very moment, or no thread could be made.
    bool start(Priority priority);

    /// Waits until no job is running.
    /// @param timeout in milliseconds; 0 only asks, 0xFFFFFFFF waits without limit.
    /// @return false if a job was still running after that time.
    bool waitForEnd(unsigned long timeout) const;

private:
    static void Run(void* thread);

    HANDLE m_idle;
};
