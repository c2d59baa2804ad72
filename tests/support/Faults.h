#pragma once

#include <doctest/doctest.h>
#include <kelcore/platform.h>

#include <cstddef>

/// Failing platform calls for tests of both targets. Only the platform layer can be made to fail: elsewhere bodies run
/// once, unharmed, and a line says so.
namespace kel::test {

bool FaultsAvailable();

enum class Fault { Fail, ShortTransfer };

/// Arms the fault for the platform call number @p nth from now on. Available or not, see testing.h of the layer.
void ArmFault(int nth, DWORD error, Fault kind = Fault::Fail);

/// @return whether a call met the fault.
bool DisarmFault();

/// The call that met it, "" for none.
const char* FaultedCall();

/// Whether a call has met it.
inline bool HasCallFailed() {
    return *FaultedCall() != 0;
}

/// Whether no call will meet the fault any more: what a body looks at by system calls, it looks at then.
inline bool FaultIsOver() {
    return !FaultsAvailable() || HasCallFailed();
}

/// Handles and views that are open, drawing objects and global blocks that are alive; 0 where nobody counts them.
std::size_t OpenHandles();

/// Runs @p body with its 1st, 2nd, … platform call meeting a fault, until it runs without meeting one, and checks after
/// each round that it has let go of all handles. The body checks what its subject promises; FaultedCall() is still
/// empty while no call has failed.
template <class Body>
void WithEachCallFailing(DWORD error, Body body, Fault kind = Fault::Fail) {
    constexpr int kMost = 10000;
    if (!FaultsAvailable())
        MESSAGE("platform calls cannot be made to fail here");
    const std::size_t handles = OpenHandles();
    for (int nth = 1;; ++nth) {
        REQUIRE(nth < kMost);
        ArmFault(nth, error, kind);
        body();
        const bool met = DisarmFault();
        CAPTURE(nth);
        CAPTURE(FaultedCall());
        CHECK(OpenHandles() == handles);
        if (!met)
            return;
    }
}

} // namespace kel::test
