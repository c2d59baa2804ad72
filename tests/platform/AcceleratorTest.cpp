#include "Workplace.h"

#include "tests/support/Faults.h"

#include <vector>

namespace {

const char* const kTexts = KELCORE_TEST_MODULES "/texts.dll";

std::string RowsOf(HACCEL table, int most) {
    std::vector<ACCEL> rows(static_cast<std::size_t>(most), ACCEL{});
    const int count = CopyAcceleratorTableA(table, rows.data(), most);
    std::string text;
    for (int i = 0; i < count; ++i)
        text += std::to_string(rows[i].fVirt) + " " + std::to_string(rows[i].key) + " " + std::to_string(rows[i].cmd) +
                "; ";
    return text;
}

} // namespace

TEST_CASE("a table is loaded from a module, copied out and destroyed") {
    const HMODULE module = LoadLibraryA(kTexts);
    REQUIRE(module != nullptr);
    const HACCEL table = LoadAcceleratorsA(module, MAKEINTRESOURCEA(1));
    const HACCEL second = LoadAcceleratorsA(module, MAKEINTRESOURCEA(1));
    const HACCEL single = LoadAcceleratorsA(module, "#2");
    CHECK(table != second);
    CHECK(ErrorOf(LoadAcceleratorsA(module, MAKEINTRESOURCEA(9)) != nullptr) == ERROR_RESOURCE_NAME_NOT_FOUND);
    if (kOnLayer)
        CHECK(ErrorOf(LoadAcceleratorsA(module, MAKEINTRESOURCEA(3)) != nullptr) == ERROR_INVALID_DATA);
    CHECK(FreeLibrary(module));

    CHECK(CopyAcceleratorTableA(table, nullptr, 0) == 3);
    CHECK(RowsOf(table, 9) == "9 65 100; 31 112 101; 16 98 102; ");
    CHECK(RowsOf(table, 2) == "9 65 100; 31 112 101; ");
    CHECK(RowsOf(single, 9) == "0 120 65535; ");
    for (const HACCEL each : {table, second, single})
        CHECK(DestroyAcceleratorTable(each));
    CHECK(DestroyAcceleratorTable(table) == FALSE);
    CHECK(CopyAcceleratorTableA(table, nullptr, 0) == 0);
    CHECK(DestroyAcceleratorTable(nullptr) == FALSE);
    if (kOnLayer)
        CHECK(GetLastError() == ERROR_INVALID_ACCEL_HANDLE);
}

TEST_CASE("a table is made of rows") {
    ACCEL rows[] = {{FVIRTKEY | FALT, 'K', 7}, {0, 'z', 8}};
    const HACCEL table = CreateAcceleratorTableA(rows, 2);
    CHECK(RowsOf(table, 2) == "17 75 7; 0 122 8; ");
    CHECK(ErrorOf(CloseHandle(reinterpret_cast<HANDLE>(table))) == ERROR_INVALID_HANDLE);
    CHECK(DestroyAcceleratorTable(table));
    for (const int count : {0, -1})
        CHECK(ErrorOf(CreateAcceleratorTableA(rows, count) != nullptr) == ERROR_INVALID_PARAMETER);
}

TEST_CASE("tables that are not destroyed are seen") {
    ACCEL row = {0, 'a', 1};
    const std::size_t before = kel::test::OpenHandles();
    const HACCEL table = CreateAcceleratorTableA(&row, 1);
    CHECK(kel::test::OpenHandles() == before + (kel::test::FaultsAvailable() ? 1 : 0));
    CHECK(DestroyAcceleratorTable(table));
    CHECK(kel::test::OpenHandles() == before);
}
