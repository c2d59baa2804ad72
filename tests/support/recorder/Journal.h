#pragma once

#include "tests/support/recorder/Recorder.h"

#include <atomic>
#include <mutex>
#include <string>
#include <vector>

namespace kel::recorder {

/// What was called and what has been ordered; the recorder's memory.
class Journal {
public:
    void Reset();
    std::string TakeLines();
    void Write(const std::string& line);

    /// Writes a call of an operation down. @return whether its result is ordered.
    bool Called(int control, int position, const std::string& arguments, HRESULT& result);

    void Order(int position, int nth, HRESULT result);
    int NextControl() { return ++m_controls; }

    std::atomic<bool> silent{false};
    std::atomic<bool> refuses{false};
    std::atomic<SHORT> status{Recorder::kByMerit};
    std::atomic<Hook> hook{nullptr};
    std::atomic<void*> context{nullptr};
    std::atomic<int> alive{0};
    std::atomic<int> connected{0};

private:
    struct Ordered {
        int position;
        int nth;
        HRESULT result;
        int calls;
    };

    std::mutex m_mutex;
    std::string m_lines;
    std::vector<Ordered> m_orders;
    std::atomic<int> m_controls{0};
};

/// The module's journal.
Journal& TheJournal();

} // namespace kel::recorder
