#include "tests/support/Faults.h"

#include <kelcore/platform/testing.h>

namespace kel::test {

bool FaultsAvailable() {
    return true;
}

void ArmFault(int nth, DWORD error, Fault kind) {
    platform::ArmFault(nth, error, kind == Fault::Fail ? platform::Fault::Fail : platform::Fault::Short);
}

bool DisarmFault() {
    return platform::DisarmFault();
}

const char* FaultedCall() {
    return platform::FaultedCall();
}

std::size_t OpenHandles() {
    return platform::OpenHandles() + platform::GdiObjects() + platform::GlobalBlocks() + platform::OpenWindows() +
           platform::ImageLists();
}

} // namespace kel::test
