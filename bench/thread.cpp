#include "bench/support/Areas.h"
#include "bench/thread/Runner.h"

#include <kelcore/runtime/threads.h>

#include <thread>

#include <pthread.h>

namespace kel::bench {
namespace {

class Job final : public Thread {
public:
    ~Job() override { waitForEnd(INFINITE); }
    void run() override { CountJob(); }
};

// One object for all jobs, as it is meant to be used.
Call StartAndWait() {
    const auto job = std::make_shared<Job>();
    return Jobs([job] { return job->start(Thread::Normal) && job->waitForEnd(INFINITE); });
}

Call StartAndJoin() {
    return Jobs([] {
        std::thread(&CountJob).join();
        return true;
    });
}

// What any thread costs: the host's own two calls.
Call CreateAndJoin() {
    return Jobs([] {
        const auto run = [](void*) -> void* {
            CountJob();
            return nullptr;
        };
        pthread_t thread;
        return pthread_create(&thread, nullptr, run, nullptr) == 0 && pthread_join(thread, nullptr) == 0;
    });
}

const Enter<Runner> entered[] = {
    Enter<Runner>({"kelcore", &StartAndWait}),
    Enter<Runner>({"std", &StartAndJoin}),
    Enter<Runner>({"limit-pthread", &CreateAndJoin}),
};

std::atomic<int> g_jobs{0};

} // namespace

void CountJob() {
    g_jobs.fetch_add(1, std::memory_order_relaxed);
}

int JobsDone() {
    return g_jobs.load();
}

void AddThreadJobs() {
    for (const Runner& runner : Contenders<Runner>())
        AddJob("thread", runner.who, "start and wait", runner.make, Clock::Wall);
}

} // namespace kel::bench
