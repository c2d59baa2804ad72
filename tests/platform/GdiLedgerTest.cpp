#include "Drawing.h"

#include <kelcore/platform/testing.h>

#include <vector>

TEST_CASE("the ledger counts and lists what is alive but for the stock objects") {
    const std::size_t before = kel::platform::GdiObjects();
    const std::string list = kel::platform::ListGdiObjects();
    GetStockObject(GRAY_BRUSH);
    const HBRUSH brush = CreateSolidBrush(RGB(1, 2, 3));
    const Section section(5, 3, 24);
    const MemoryContext memory(section.handle);
    SelectObject(memory, brush);
    CHECK(kel::platform::GdiObjects() == before + 3);
    const std::string longer = kel::platform::ListGdiObjects();
    CHECK(longer.find("bitmap 5 x 3 x 24 section, selected 1\n") != std::string::npos);
    CHECK(longer.find("brush style 0 colour 030201, selected 1\n") != std::string::npos);
    CHECK(longer.find("context memory\n") != std::string::npos);
    SelectObject(memory, GetStockObject(WHITE_BRUSH));
    DeleteObject(brush);
    DeleteDC(memory);
    DeleteObject(section.handle);
    CHECK(kel::platform::GdiObjects() == before);
    CHECK(kel::platform::ListGdiObjects() == list);
}

TEST_CASE("handles of deleted objects rest, and 65,520 objects are the most there are") {
    const HBRUSH gone = CreateSolidBrush(0);
    DeleteObject(gone);
    std::vector<HGDIOBJ> objects;
    while (const HGDIOBJ object = CreateSolidBrush(0))
        objects.push_back(object);
    CHECK(GetLastError() == ERROR_NOT_ENOUGH_MEMORY);
    CHECK(objects.size() > 65000);
    CHECK(GetObjectType(gone) == 0);
    for (const HGDIOBJ object : objects)
        DeleteObject(object);
    const HBRUSH again = CreateSolidBrush(0);
    CHECK(again != nullptr);
    DeleteObject(again);
}
