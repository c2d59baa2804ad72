#include "platform/kernel/Faults.h"

#include "platform/kernel/LastError.h"

#include <atomic>
#include <string_view>

namespace kel::platform {
namespace {

// Calls until the fault; 0 while none is armed. The rest is written before it is set and read after it was met.
std::atomic<int> g_callsToFault{0};
std::atomic<DWORD> g_error{0};
std::atomic<Fault> g_kind{Fault::Fail};
std::atomic<const char*> g_faultedCall{""};

// A short transfer met by this thread's transfer call, from its CallFails to its TransferLimit.
thread_local bool t_short = false;

bool IsTransfer(std::string_view name) {
    return name == "ReadFile" || name == "WriteFile";
}

bool CountsDownToFault() {
    int calls = g_callsToFault.load(std::memory_order_acquire);
    while (calls > 0)
        if (g_callsToFault.compare_exchange_weak(calls, calls - 1, std::memory_order_acq_rel))
            return calls == 1;
    return false;
}

bool MeetFault(const char* name) {
    if (!CountsDownToFault())
        return false;
    g_faultedCall.store(name, std::memory_order_release);
    if (g_kind.load(std::memory_order_relaxed) == Fault::Short) {
        t_short = IsTransfer(name);
        return false;
    }
    Fail(g_error.load(std::memory_order_relaxed));
    return true;
}

} // namespace

bool CallFails(const char* name) {
    return g_callsToFault.load(std::memory_order_relaxed) > 0 && MeetFault(name);
}

DWORD TransferLimit(DWORD count) {
    if (!t_short)
        return count;
    t_short = false;
    return count / 2;
}

void ArmFault(int nth, DWORD error, Fault kind) {
    g_callsToFault.store(0, std::memory_order_relaxed);
    g_faultedCall.store("", std::memory_order_relaxed);
    g_error.store(error, std::memory_order_relaxed);
    g_kind.store(kind, std::memory_order_relaxed);
    g_callsToFault.store(nth, std::memory_order_release);
}

bool DisarmFault() {
    g_callsToFault.store(0, std::memory_order_relaxed);
    return *FaultedCall() != '\0';
}

const char* FaultedCall() {
    return g_faultedCall.load(std::memory_order_acquire);
}

} // namespace kel::platform
