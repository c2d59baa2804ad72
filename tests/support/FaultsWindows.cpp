#include "tests/support/Faults.h"

namespace kel::test {

bool FaultsAvailable() {
    return false;
}

bool RunsOnWine() {
    return GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr;
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
