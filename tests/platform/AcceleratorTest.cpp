#include "Workplace.h"

#include "tests/support/Faults.h"

namespace {

std::string RowsOf(HACCEL table) {
    ACCEL rows[3];
    std::string text;
    for (int i = 0, count = CopyAcceleratorTableA(table, rows, 3); i < count; ++i)
        for (const WORD part : {WORD{rows[i].fVirt}, rows[i].key, rows[i].cmd})
            text += std::to_string(part) + " ";
    return text;
}

} // namespace

TEST_CASE("a table is loaded from a module, copied out and destroyed") {
    const HMODULE module = LoadLibraryA(KELCORE_TEST_MODULES "/texts.dll");
    const HACCEL table = LoadAcceleratorsA(module, MAKEINTRESOURCEA(1));
    const HACCEL single = LoadAcceleratorsA(module, "#2");
    CHECK(ErrorOf(LoadAcceleratorsA(module, MAKEINTRESOURCEA(9)) != nullptr) == ERROR_RESOURCE_NAME_NOT_FOUND);
    if (kOnLayer)
        CHECK(ErrorOf(LoadAcceleratorsA(module, MAKEINTRESOURCEA(3)) != nullptr) == ERROR_INVALID_DATA);
    CHECK(FreeLibrary(module));
    CHECK(CopyAcceleratorTableA(table, nullptr, 0) == 3);
    CHECK(RowsOf(table) == "9 65 100 31 112 101 16 98 102 ");
    CHECK(RowsOf(single) == "0 120 65535 ");
    for (const HACCEL each : {table, single})
        CHECK(DestroyAcceleratorTable(each));
    CHECK(DestroyAcceleratorTable(table) == FALSE);
    CHECK((!kOnLayer || GetLastError() == ERROR_INVALID_ACCEL_HANDLE));
    CHECK(CopyAcceleratorTableA(table, nullptr, 0) == 0);
}

TEST_CASE("a table is made of rows, and seen until it is destroyed") {
    ACCEL rows[] = {{FVIRTKEY | FALT, 'K', 7}, {0, 'z', 8}};
    const std::size_t before = kel::test::OpenHandles();
    const HACCEL table = CreateAcceleratorTableA(rows, 2);
    CHECK(kel::test::OpenHandles() == before + (kel::test::FaultsAvailable() ? 1 : 0));
    CHECK(RowsOf(table) == "17 75 7 0 122 8 ");
    CHECK(ErrorOf(CloseHandle(reinterpret_cast<HANDLE>(table))) == ERROR_INVALID_HANDLE);
    CHECK(DestroyAcceleratorTable(table));
    CHECK(kel::test::OpenHandles() == before);
    CHECK(ErrorOf(CreateAcceleratorTableA(rows, 0) != nullptr) == ERROR_INVALID_PARAMETER);
}
