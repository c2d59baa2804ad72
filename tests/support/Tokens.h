#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace kel::test {

/// A counting semaphore apart from the platform under test.
class Tokens {
public:
    void Put() {
        const std::lock_guard guard(m_mutex);
        ++m_count;
        m_put.notify_one();
    }
    void Take() {
        std::unique_lock lock(m_mutex);
        m_put.wait(lock, [this] { return m_count > 0; });
        --m_count;
    }
    /// @return false when none came in time.
    bool TakeWithin(std::chrono::milliseconds time) {
        std::unique_lock lock(m_mutex);
        return m_put.wait_for(lock, time, [this] { return m_count > 0; }) && m_count-- > 0;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_put;
    int m_count = 0;
};

} // namespace kel::test
