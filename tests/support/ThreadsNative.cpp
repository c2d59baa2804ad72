#include "tests/support/Threads.h"

#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <iterator>
#include <thread>

namespace kel::test {
namespace {

int CountThreads() {
    return static_cast<int>(std::distance(std::filesystem::directory_iterator("/proc/self/task"), {}));
}

// The main thread and, from the first other one on, the one that watches for races.
#if defined(__SANITIZE_THREAD__)
constexpr int kOwnThreads = 2;
#else
constexpr int kOwnThreads = 1;
#endif

} // namespace

int ExtraThreads() {
    return CountThreads() - kOwnThreads;
}

bool ExtraThreadsEnd() {
    using namespace std::chrono;
    const auto end = steady_clock::now() + seconds(10);
    while (ExtraThreads() > 0 && steady_clock::now() < end)
        std::this_thread::yield();
    return ExtraThreads() <= 0;
}

int NiceValueOr(int otherwise) {
    return geteuid() == 0 ? getpriority(PRIO_PROCESS, static_cast<id_t>(gettid())) : otherwise;
}

} // namespace kel::test
