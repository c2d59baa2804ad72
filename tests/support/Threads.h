#pragma once

#include <thread>
#include <vector>

namespace kel::test {

/// Threads of this process beside those it began with, 0 where nobody counts them.
int ExtraThreads();

/// Waits until there are none, for ten seconds at most: a thread is still seen for a moment after its last work.
/// @return whether that came to be; true where nobody counts.
bool ExtraThreadsEnd();

/// Does @p work on as many threads as @p count at once, each with its number, and waits for all of them.
template <class Work>
void OnThreads(int count, const Work& work) {
    std::vector<std::thread> threads;
    for (int number = 0; number < count; ++number)
        threads.emplace_back([&work, number] { work(number); });
    for (std::thread& thread : threads)
        thread.join();
}

/// The nice value of the calling thread; @p otherwise where there are none or the user may not set them freely.
int NiceValueOr(int otherwise);

} // namespace kel::test
