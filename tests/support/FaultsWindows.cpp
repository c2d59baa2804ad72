#include "tests/support/Faults.h"

namespace kel::test {

bool FaultsAvailable() {
    return false;
}

void ArmFault(int, DWORD, Fault) {}

bool DisarmFault() {
    return false;
}

const char* FaultedCall() {
    return "";
}

std::size_t OpenHandles() {
    return 0;
}

} // namespace kel::test
