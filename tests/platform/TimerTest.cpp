#include "Workplace.h"

#include "tests/support/Threads.h"
#include "tests/support/Tokens.h"

#include <atomic>
#include <chrono>
#include <deque>
#include <memory>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

// What a callback meets: counts, and does what the test asks on the timer thread.
struct Target {
    std::atomic<int> calls{0};
    std::atomic<bool> inside{false};
    kel::test::Tokens called;
    UINT timer = 0;
    UINT kills = 0; // a timer for the callback to kill; its own with kOwn
    std::vector<MMRESULT> results;
    std::vector<Clock::time_point> times;
    std::chrono::milliseconds firstTakes{0};

    static constexpr UINT kOwn = ~0u;

    static void CALLBACK Call(UINT id, UINT, DWORD_PTR user, DWORD_PTR, DWORD_PTR) {
        Target& target = *reinterpret_cast<Target*>(user);
        target.inside = true;
        target.times.push_back(Clock::now());
        const UINT killed = target.kills == kOwn ? id : target.kills;
        for (int i = 0; i < 2 && killed != 0; ++i)
            target.results.push_back(timeKillEvent(killed));
        if (target.calls++ == 0 && target.firstTakes.count() != 0)
            Sleep(static_cast<DWORD>(target.firstTakes.count()));
        target.inside = false;
        target.called.Put();
    }

    // The timer thread may still be on its way out of the callback that was waited for.
    ~Target() {
        if (timer != 0)
            timeKillEvent(timer);
    }

    // Kills that wait are asked for by name: Windows does not wait otherwise.
    UINT Set(UINT delay, UINT flags, UINT kill = TIME_KILL_SYNCHRONOUS) {
        timer = timeSetEvent(delay, 0, &Call, reinterpret_cast<DWORD_PTR>(this), flags | kill);
        return timer;
    }
    void Await(int count) {
        for (int i = 0; i < count; ++i)
            called.Take();
    }
};

// Waits until every timer due by then has been served.
void LetTimersPass(UINT delay) {
    Target other;
    REQUIRE(other.Set(delay, TIME_ONESHOT) != 0);
    other.Await(1);
}

// Whether a callback that lasts for five periods delays none of those that follow the missed ones.
bool CatchesUp() {
    Target target;
    target.firstTakes = std::chrono::milliseconds(100);
    const Clock::time_point begin = Clock::now();
    const UINT timer = target.Set(20, TIME_PERIODIC);
    target.Await(12);
    timeKillEvent(timer);
    for (int i = 0; i < 12; ++i)
        CHECK(target.times[i] - begin >= std::chrono::milliseconds(20 * (i + 1) - 3));
    return target.times[11] - begin < std::chrono::milliseconds(20 * 12 + 40);
}

} // namespace

TEST_CASE("timers refuse what cannot be") {
    Target target;
    for (const UINT delay : {0u, 1'000'001u, 0xFFFFFFFFu})
        CHECK(target.Set(delay, TIME_ONESHOT) == 0);
    CHECK((!kOnLayer || target.Set(10, /*event, not function*/ 0x10) == 0));
    const UINT first = target.Set(60'000, TIME_PERIODIC);
    CHECK(timeKillEvent(first) == TIMERR_NOERROR);
    CHECK(target.Set(60'000, TIME_PERIODIC) != first);
}

TEST_CASE("a periodic timer is never early, does not drift and makes up for missed periods") {
    int tries = 0;
    while (!CatchesUp())
        REQUIRE(++tries < 10); // a busy machine may be late now and then
}

TEST_CASE("nothing of a killed timer runs on, and its data may go") {
    for (int i = 0; i < 100; ++i) {
        auto target = std::make_unique<Target>();
        target->firstTakes = std::chrono::milliseconds(i % 2);
        const UINT timer = target->Set(1, TIME_PERIODIC);
        while (!target->inside && target->calls < 3)
            Sleep(0);
        CHECK(timeKillEvent(timer) == TIMERR_NOERROR);
        CHECK_FALSE(target->inside);
        CHECK(kel::test::ExtraThreads() <= 1);
    }
    CHECK(kel::test::ExtraThreadsEnd()); // that of the timers goes with the last of them
}

TEST_CASE("a callback may kill its own timer and others, and one that fired once is gone") {
    for (const UINT flags : {TIME_ONESHOT, TIME_PERIODIC}) {
        // The referee would wait for ever in its own callback, so those kills do not wait, and the data stays.
        static std::deque<Target> kept;
        Target &own = kept.emplace_back(), &other = kept.emplace_back(), &killer = kept.emplace_back();
        own.kills = Target::kOwn;
        REQUIRE(own.Set(1, flags, 0) != 0);
        own.Await(1);
        killer.kills = other.Set(100, flags, 0);
        REQUIRE(killer.Set(1, TIME_ONESHOT, 0) != 0);
        killer.Await(1);
        LetTimersPass(110);
        CHECK((own.calls == 1 && other.calls == 0 && killer.calls == 1));
        CHECK(timeKillEvent(killer.timer) == TIMERR_NOCANDO);
        for (const Target* target : {&own, &killer})
            CHECK(target->results == std::vector<MMRESULT>{TIMERR_NOERROR, TIMERR_NOCANDO});
    }
}
