#include "tests/support/recorder/Journal.h"

#include "tests/support/recorder/Control.h"

#include <iterator>
#include <utility>

namespace kel::recorder {

void Journal::Reset() {
    const std::lock_guard guard(m_mutex);
    m_lines.clear();
    m_orders.clear();
    m_controls = 0;
    silent = refuses = false;
    status = kByMerit;
    m_hook = nullptr;
}

std::string Journal::TakeLines() {
    const std::lock_guard guard(m_mutex);
    return std::exchange(m_lines, std::string());
}

void Journal::Order(int position, int nth, HRESULT result) {
    const std::lock_guard guard(m_mutex);
    m_orders.push_back({position, nth, result, /*calls*/ 0});
}

void Journal::SetHook(Hook hook, void* context) {
    m_context = context;
    m_hook = hook;
}

HRESULT Journal::Fire(toolkit::IControl* control, DISPID id, const VARIANT* arguments, UINT count) {
    std::vector<VARIANT> lastFirst(std::reverse_iterator(arguments + count), std::reverse_iterator(arguments));
    DISPPARAMS parameters = {lastFirst.data(), nullptr, count, 0};
    return Control::From(control).sink->Invoke(id, IID_NULL, /*language*/ 0, DISPATCH_METHOD, &parameters, nullptr,
                                               nullptr, nullptr);
}

void Journal::Write(const std::string& line) {
    if (silent)
        return;
    const std::lock_guard guard(m_mutex);
    m_lines += line + '\n';
}

bool Journal::Called(int control, int position, const std::string& arguments, HRESULT& result) {
    if (const Hook now = m_hook)
        now(m_context, position);
    if (silent)
        return false;
    Write(std::to_string(control) + ": " + std::to_string(position) + arguments);
    const std::lock_guard guard(m_mutex);
    for (Ordered& order : m_orders) {
        if (order.position != kAnyPosition && order.position != position)
            continue;
        ++order.calls;
        if (order.nth != 0 && order.nth != order.calls)
            continue;
        result = order.result;
        return true;
    }
    return false;
}

Journal& TheJournal() {
    static Journal& journal = *new Journal; // never destroyed: controls live on after main
    return journal;
}

} // namespace kel::recorder
