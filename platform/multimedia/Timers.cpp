#include "platform/kernel/Faults.h"
#include "platform/kernel/ThreadObject.h"

#include <kelcore/platform/threads.h>
#include <kelcore/platform/timers.h>

#include <pthread.h>
#include <signal.h>

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <new>
#include <set>
#include <system_error>
#include <thread>

namespace kel::platform {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr UINT kShortestDelay = 1;
constexpr UINT kLongestDelay = 1'000'000;
constexpr UINT kKnownFlags = TIME_PERIODIC | TIME_KILL_SYNCHRONOUS;

struct Timer {
    Clock::time_point due;
    milliseconds period; // 0 for one call only
    LPTIMECALLBACK callback;
    DWORD_PTR user;
};

/// Holds signals off the threads that are started in its scope: handlers of the program run on the program's threads.
class SignalsHeld {
public:
    SignalsHeld() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &m_before);
    }
    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;
    ~SignalsHeld() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }

private:
    sigset_t m_before;
};

/// All timers of the process and the thread that calls them back, which is there while there are timers.
class TimerTable {
public:
    // Never destroyed: its thread may outlive the static objects.
    static TimerTable& Get() {
        static TimerTable& table = *new TimerTable;
        return table;
    }

    /// @throws std::bad_alloc, std::system_error; nothing is set then.
    UINT Set(const Timer& timer) {
        const std::lock_guard guard(m_mutex);
        const UINT id = FreshId();
        m_timers.emplace(id, timer);
        try {
            m_queue.emplace(timer.due, id);
            NeedThread();
        } catch (...) {
            Remove(m_timers.find(id));
            throw;
        }
        return id;
    }

    /// @return false if there is no such timer.
    bool Kill(UINT id) {
        std::unique_lock lock(m_mutex);
        const auto timer = m_timers.find(id);
        const bool found = timer != m_timers.end();
        if (found)
            Remove(timer);
        if (m_timers.empty())
            m_changed.notify_one();
        if (std::this_thread::get_id() != m_thread)
            m_returned.wait(lock, [&] { return id == 0 || m_running != id; });
        return found;
    }

private:
    using Timers = std::map<UINT, Timer>;

    // Counts up, so that a number comes again after 2^32 others only.
    UINT FreshId() {
        do
            ++m_lastId;
        while (m_lastId == 0 || m_timers.count(m_lastId) != 0);
        return m_lastId;
    }

    void Remove(Timers::iterator timer) {
        m_queue.erase({timer->second.due, timer->first});
        m_timers.erase(timer);
    }

    void NeedThread() {
        if (m_hasThread)
            return m_changed.notify_one();
        const SignalsHeld held;
        std::thread(&TimerTable::Run, this).detach();
        m_hasThread = true;
    }

    void Run() noexcept {
        RunAtPriority(THREAD_PRIORITY_TIME_CRITICAL);
        std::unique_lock lock(m_mutex);
        m_thread = std::this_thread::get_id();
        while (!m_timers.empty())
            WaitOrCall(lock);
        m_thread = {};
        m_hasThread = false;
    }

    void WaitOrCall(std::unique_lock<std::mutex>& lock) {
        const Clock::time_point due = m_queue.begin()->first;
        if (Clock::now() < due)
            m_changed.wait_until(lock, due);
        else
            Call(lock, TakeFirst());
    }

    // A periodic timer's next time follows from the last one, not from now: it never drifts. Between callbacks every
    // timer is in the queue.
    Timers::iterator TakeFirst() {
        auto place = m_queue.extract(m_queue.begin());
        const auto timer = m_timers.find(place.value().second);
        if (timer->second.period.count() == 0)
            return timer;
        place.value().first = timer->second.due += timer->second.period;
        m_queue.insert(std::move(place));
        return timer;
    }

    void Call(std::unique_lock<std::mutex>& lock, Timers::iterator entry) {
        const UINT id = entry->first;
        const Timer timer = entry->second;
        m_running = id;
        lock.unlock();
        timer.callback(id, /*message*/ 0, timer.user, /*reserved*/ 0, /*reserved*/ 0);
        lock.lock();
        m_running = 0;
        if (timer.period.count() == 0)
            m_timers.erase(id); // unless it was killed meanwhile
        m_returned.notify_all();
    }

    std::mutex m_mutex; // guards what follows
    std::condition_variable m_changed;
    std::condition_variable m_returned; // a callback has
    Timers m_timers;
    std::set<std::pair<Clock::time_point, UINT>> m_queue; // the identifiers by their next times
    UINT m_lastId = 0;
    UINT m_running = 0; // whose callback runs
    bool m_hasThread = false;
    std::thread::id m_thread;
};

UINT SetTimer(const Timer& timer) try { return TimerTable::Get().Set(timer); } catch (const std::bad_alloc&) {
    return 0;
} catch (const std::system_error&) {
    return 0;
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

MMRESULT WINAPI timeSetEvent(UINT delay, UINT, LPTIMECALLBACK callback, DWORD_PTR user, UINT flags) {
    if (CallFails("timeSetEvent") || delay < kShortestDelay || delay > kLongestDelay || !callback ||
        flags & ~kKnownFlags)
        return 0;
    const milliseconds period(flags & TIME_PERIODIC ? delay : 0);
    return SetTimer({Clock::now() + milliseconds(delay), period, callback, user});
}

// Ending a timer is done before an injected failure is reported, see CallFails.
MMRESULT WINAPI timeKillEvent(UINT id) {
    const bool fails = CallFails("timeKillEvent");
    return TimerTable::Get().Kill(id) && !fails ? TIMERR_NOERROR : TIMERR_NOCANDO;
}
