#include "tests/support/Faults.h"
#include "tests/support/Threads.h"
#include "tests/support/Tokens.h"

#include <kelcore/runtime/timers.h>

#include <atomic>

namespace {

struct Target final : ITimerTarget {
    void OnTimer(unsigned int timer) override {
        id = timer;
        called.Put();
    }
    std::atomic<unsigned int> id{0};
    kel::test::Tokens called;
};

} // namespace

TEST_CASE("a timer calls its target once or again and again, by its delay") {
    static Target target; // on Windows a callback may still be under way when a timer is killed
    const auto calls = [](unsigned int resolution, unsigned int delay, bool periodic) {
        const unsigned int timer = KelSetTimer(resolution, delay, &target, periodic);
        REQUIRE(timer != 0);
        for (int i = 0; i < (periodic ? 5 : 1); ++i)
            target.called.Take();
        CHECK(target.id == timer);
        CHECK(target.called.TakeWithin(std::chrono::milliseconds(20)) == periodic);
        KelKillTimer(timer);
        KelKillTimer(timer);
    };
    calls(0, 1, false);
    calls(1000, 2, true);
    CHECK(KelSetTimer(10, 0, &target, false) == 0);
    kel::test::WithEachCallFailing(ERROR_NOT_ENOUGH_MEMORY, [] {
        const unsigned int timer = KelSetTimer(0, 60'000, &target, false);
        CHECK((timer == 0) == (kel::test::FaultedCall() == std::string_view("timeSetEvent")));
        KelKillTimer(timer);
    });
}

TEST_CASE("ten thousand timers set and killed by four threads leave no thread") {
    static Target target;
    kel::test::OnThreads(4, [](int) {
        for (unsigned int turn = 0; turn < 2'500; ++turn) {
            const unsigned int timer = KelSetTimer(0, 1 + turn % 3, &target, turn % 2 != 0);
            CHECK_UNARY(timer != 0);
            KelKillTimer(timer);
        }
    });
    CHECK(kel::test::ExtraThreadsEnd());
}
