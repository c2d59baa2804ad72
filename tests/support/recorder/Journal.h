#pragma once

#include "tests/support/recorder/Recorder.h"

#include <atomic>
#include <mutex>
#include <string>
#include <vector>

namespace kel::recorder {

/// What was called and what has been ordered: the recorder, and its controls' side of it.
class Journal final : public Recorder {
public:
    void Reset() override;
    std::string TakeLines() override;
    void Order(int position, int nth, HRESULT result) override;
    void OrderStatus(SHORT ordered) override { status = ordered; }
    void RefuseControls() override { refuses = true; }
    void SetHook(Hook hook, void* context) override;
    void BeSilent() override { silent = true; }
    int Controls() override { return alive; }
    int Sinks() override { return connected; }
    HRESULT Fire(toolkit::IControl* control, DISPID id, const VARIANT* arguments, UINT count) override;

    void Write(const std::string& line);
    /// Writes a call of an operation down. @return whether its result is ordered.
    bool Called(int control, int position, const std::string& arguments, HRESULT& result);
    int NextControl() { return ++m_controls; }

    std::atomic<bool> silent{false};
    std::atomic<bool> refuses{false};
    std::atomic<SHORT> status{kByMerit};
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
    std::atomic<Hook> m_hook{nullptr};
    std::atomic<void*> m_context{nullptr};
};

/// The module's journal.
Journal& TheJournal();

} // namespace kel::recorder
