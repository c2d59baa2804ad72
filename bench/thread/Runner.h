#pragma once

#include "bench/support/Jobs.h"

#include <atomic>
#include <stdexcept>
#include <string>

namespace kel::bench {

/// One who runs jobs on threads of their own.
struct Runner {
    const char* who;
    Call (*make)();
};

/// The job: counts itself.
void CountJob();
int JobsDone();

/// Runs one job by @p start, which starts it and waits for its end; the result is how many jobs that made.
template <class Start>
Call Jobs(Start start) {
    const auto result = [start] {
        const int before = JobsDone();
        if (!start())
            throw std::runtime_error("no thread");
        return std::to_string(JobsDone() - before);
    };
    return {[start] { benchmark::DoNotOptimize(start()); }, result};
}

} // namespace kel::bench
