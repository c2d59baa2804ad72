#include "tests/support/Faults.h"
#include "tests/support/Threads.h"
#include "tests/support/Tokens.h"

#include <kelcore/runtime/threads.h>

#include <atomic>
#include <functional>
#include <string_view>

namespace {

// Runs a function as its job.
class Worker final : public Thread {
public:
    explicit Worker(std::function<void()> job) : m_job(std::move(job)) {}
    ~Worker() override { waitForEnd(INFINITE); }
    void run() override { m_job(); }

private:
    std::function<void()> m_job;
};

} // namespace

TEST_CASE("a worker runs one job at a time, and only with a priority there is") {
    kel::test::Tokens mayEnd;
    int runs = 0;
    bool inJob = true;
    Worker worker([&] {
        ++runs;
        inJob = worker.start(Thread::Normal) || worker.waitForEnd(0) || worker.waitForEnd(5);
        mayEnd.Take();
    });
    CHECK_FALSE(worker.start(static_cast<Thread::Priority>(7)));
    for (int run = 1; run <= 2; ++run) {
        CHECK((worker.waitForEnd(0) && worker.start(Thread::Normal) && !worker.start(Thread::Normal)));
        CHECK((!worker.waitForEnd(0) && !worker.waitForEnd(10)));
        mayEnd.Put();
        CHECK(worker.waitForEnd(0xFFFFFFFF));
        CHECK((runs == run && !inJob));
    }
}

TEST_CASE("a job runs at the priority it was started with") {
    const int levels[] = {1, -1, 2, -15, -2, 0, 15};
    for (int priority = Thread::AboveNormal; priority <= Thread::TimeCritical; ++priority) {
        kel::test::Tokens started;
        Worker worker([&] {
            started.Take();
            CHECK(GetThreadPriority(GetCurrentThread()) == levels[priority]);
        });
        CHECK(worker.start(static_cast<Thread::Priority>(priority)));
        started.Put();
    }
}

TEST_CASE("destroying a worker waits for its job and leaves the last error alone") {
    // No wait of its own: that of the base is meant. What the job touches outlives the worker.
    static std::atomic<bool> ended;
    static kel::test::Tokens running;
    struct Slow final : Thread {
        void run() override {
            running.Put();
            Sleep(20);
            ended = true;
        }
    };
    {
        Slow worker;
        REQUIRE(worker.start(Thread::Normal));
        running.Take();
        SetLastError(777);
    }
    CHECK(ended);
    CHECK(GetLastError() == 777);
}

TEST_CASE("a worker takes each failing call for what it is") {
    const auto faulted = [](std::string_view call) { return kel::test::FaultedCall() == call; };
    kel::test::WithEachCallFailing(ERROR_NOT_ENOUGH_MEMORY, [&] {
        std::atomic<int> runs{0};
        Worker worker([&] { ++runs; });
        const bool started = worker.start(Thread::Highest);
        const bool made = !faulted("CreateSemaphoreA");
        const bool notTried = faulted("WaitForSingleObject");
        CHECK(started == (made && !notTried && !faulted("_beginthread")));
        while (started && runs == 0)
            std::this_thread::yield();
        const bool ended = worker.waitForEnd(INFINITE);
        CHECK(ended == (made && (notTried || !faulted("WaitForSingleObject"))));
        CHECK(runs == started);
    });
}

TEST_CASE("several threads may start one worker and wait for it, and thousands of starts leave no thread") {
    const std::size_t handles = kel::test::OpenHandles();
    std::atomic<int> runs{0}, inside{0}, most{0}, starts{0};
    {
        Worker worker([&] {
            most = std::max<int>(most, ++inside);
            ++runs;
            --inside;
        });
        kel::test::OnThreads(4, [&](int) {
            for (int turn = 0; turn < 2500; ++turn) {
                starts += worker.start(Thread::Normal);
                CHECK_UNARY(worker.waitForEnd(INFINITE));
            }
        });
    }
    CHECK((runs == starts && runs > 0 && most == 1));
    CHECK(kel::test::ExtraThreadsEnd());
    CHECK(kel::test::OpenHandles() == handles);
}
