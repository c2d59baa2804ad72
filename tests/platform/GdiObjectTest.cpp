#include "Drawing.h"

#include <thread>
#include <vector>

namespace {

/// A handle whose object was deleted.
HGDIOBJ Stale() {
    const HGDIOBJ brush = CreateSolidBrush(RGB(1, 2, 3));
    DeleteObject(brush);
    return brush;
}

} // namespace

TEST_CASE("a handle names its kind of object until it is deleted") {
    const MemoryContext memory;
    const HDC screen = GetDC(nullptr);
    const Section section(2, 2, 24);
    const HBRUSH brush = CreateSolidBrush(RGB(1, 2, 3));
    const HPEN pen = CreatePen(PS_SOLID, 1, RGB(1, 2, 3));
    const HRGN region = CreateRectRgn(0, 0, 1, 1);
    const std::pair<HGDIOBJ, DWORD> rows[] = {
        {memory.dc, OBJ_MEMDC}, {screen, OBJ_DC}, {section.handle, OBJ_BITMAP},
        {brush, OBJ_BRUSH},     {pen, OBJ_PEN},   {region, OBJ_REGION},
        {Stale(), 0},           {nullptr, 0},     {GetStockObject(DEFAULT_PALETTE), OBJ_PAL},
    };
    for (const auto& [object, type] : rows) {
        CAPTURE(type);
        CHECK(GetObjectType(object) == type);
    }
    for (const HGDIOBJ object : std::initializer_list<HGDIOBJ>{brush, pen, region}) {
        CHECK((DeleteObject(object) && GetObjectType(object) == 0 && GetLastError() == ERROR_INVALID_HANDLE));
        CHECK(!DeleteObject(object));
    }
    CHECK(!DeleteObject(nullptr));
    CHECK(ReleaseDC(nullptr, screen) == 1);
}

TEST_CASE("selecting gives the object before, and refuses what does not fit") {
    const MemoryContext one, other;
    const Section section(4, 4, 24);
    const HGDIOBJ first = SelectObject(one, section.handle);
    CHECK(first != nullptr);
    CHECK(first == GetCurrentObject(other, OBJ_BITMAP)); // fresh contexts share one bitmap of one pixel
    CHECK(SelectObject(one, section.handle) == section.handle);
    CHECK(SelectObject(other, section.handle) == nullptr); // in one context at a time
    const WindowContext screen;
    const Section free(4, 4, 24);
    for (const HDC dc : {screen.dc, HDC(), static_cast<HDC>(Stale())})
        CHECK(SelectObject(dc, free.handle) == nullptr);
    for (const HGDIOBJ object : {HGDIOBJ(), HGDIOBJ(one.dc), Stale(), GetStockObject(DEFAULT_PALETTE)})
        CHECK(SelectObject(one, object) == nullptr);
    const std::pair<UINT, HGDIOBJ> current[] = {{OBJ_BITMAP, section.handle},
                                                {OBJ_BRUSH, GetStockObject(WHITE_BRUSH)},
                                                {OBJ_PEN, GetStockObject(BLACK_PEN)},
                                                {OBJ_PAL, GetStockObject(DEFAULT_PALETTE)},
                                                {OBJ_REGION, nullptr}};
    for (const auto& [type, object] : current)
        CHECK((GetCurrentObject(one, type) == object && GetCurrentObject(nullptr, type) == nullptr));
    CHECK(SelectObject(one, first) == section.handle);
    CHECK(SelectObject(other, section.handle) == first);
}

TEST_CASE("device-dependent bitmaps are selected when their depth is 1 or the screen's") {
    const MemoryContext memory;
    for (const UINT bits : {1u, 4u, 8u, 16u, 24u, 32u}) {
        CAPTURE(bits);
        const HBITMAP bitmap = CreateBitmap(2, 2, 1, bits, nullptr);
        const HGDIOBJ before = SelectObject(memory, bitmap);
        CHECK((before != nullptr) == (bits == 1 || bits == 32));
        if (before)
            SelectObject(memory, before);
        CHECK(DeleteObject(bitmap));
    }
}

TEST_CASE("an object that is deleted while selected goes when it is deselected everywhere") {
    const MemoryContext one, other;
    const HBRUSH brush = CreateSolidBrush(RGB(1, 2, 3));
    const HGDIOBJ white = SelectObject(one, brush);
    SelectObject(other, brush);
    CHECK((DeleteObject(brush) && DeleteObject(brush)));
    CHECK((SelectObject(one, white) == brush && GetObjectType(brush) == OBJ_BRUSH));
    CHECK((SelectObject(other, white) == brush && GetObjectType(brush) == 0 && !DeleteObject(brush)));
    // A context that goes deselects what is in it.
    const HBITMAP bitmap = CreateBitmap(1, 1, 1, 32, nullptr);
    {
        const MemoryContext brief(bitmap);
        CHECK((DeleteObject(bitmap) && GetObjectType(bitmap) == OBJ_BITMAP));
    }
    CHECK(GetObjectType(bitmap) == 0);
}

TEST_CASE("stock objects are always there") {
    for (const int index : {WHITE_BRUSH, BLACK_BRUSH, NULL_BRUSH, BLACK_PEN, NULL_PEN, DEFAULT_PALETTE, DC_BRUSH}) {
        CAPTURE(index);
        const HGDIOBJ object = GetStockObject(index);
        const DWORD type = GetObjectType(object);
        CHECK((type != 0 && DeleteObject(object) && GetObjectType(object) == type));
        CHECK(GetStockObject(index) == object);
    }
    for (const int index : {-1, 9, 1000})
        CHECK(GetStockObject(index) == nullptr);
    const MemoryContext memory;
    const HGDIOBJ bitmap = GetCurrentObject(memory, OBJ_BITMAP);
    CHECK((DeleteObject(bitmap) && GetObjectType(bitmap) == OBJ_BITMAP));
}

TEST_CASE("brushes tell what they were made from") {
    const Owned bitmap(CreateBitmap(8, 8, 1, 1, nullptr));
    const std::pair<LOGBRUSH, bool> rows[] = {
        {{BS_SOLID, RGB(1, 2, 3), 0}, true},
        {{BS_HATCHED, RGB(1, 2, 3), HS_CROSS}, true},
        {{BS_HATCHED, RGB(1, 2, 3), 99}, false},
        {{BS_PATTERN, 0, reinterpret_cast<ULONG_PTR>(bitmap.handle)}, true},
        {{BS_PATTERN, 0, 0}, false},
        {{77, 0, 0}, false},
        {{BS_NULL, 0, 0}, true},
    };
    for (const auto& [wanted, made] : rows) {
        CAPTURE(wanted.lbStyle);
        const Owned brush(CreateBrushIndirect(&wanted));
        CHECK((brush != nullptr) == made);
        LOGBRUSH told{};
        if (made && GetObjectA(brush, sizeof told, &told) == sizeof told)
            CHECK(Hex(&told, sizeof told) == Hex(&wanted, sizeof wanted));
    }
    // What draws nothing is one object.
    const LOGBRUSH hollow{BS_NULL, 1, 2};
    CHECK(CreateBrushIndirect(&hollow) == GetStockObject(NULL_BRUSH));
}

TEST_CASE("descriptions need room") {
    const Owned bitmap(CreateBitmap(5, 3, 1, 32, nullptr));
    const Section section(5, 3, 24);
    const Owned brush(CreateSolidBrush(0));
    const HGDIOBJ palette = GetStockObject(DEFAULT_PALETTE);
    const int whole = sizeof(BITMAP);
    const std::tuple<HGDIOBJ, int, int> rows[] = {
        {bitmap, 0, whole},   {bitmap, whole - 1, 0},
        {bitmap, 200, whole}, {section.handle, static_cast<int>(sizeof(DIBSECTION)) - 1, whole},
        {palette, 0, 2},      {section.handle, 200, sizeof(DIBSECTION)},
        {palette, 100, 2},    {brush, 0, sizeof(LOGBRUSH)},
        {Stale(), 100, 0},    {brush, 5, 5}};
    // A size of 0 is a query without room.
    for (const auto& [object, size, result] : rows) {
        CAPTURE(size);
        CAPTURE(result);
        char room[200];
        CHECK(GetObjectA(object, size, size == 0 ? nullptr : room) == result);
    }
}

TEST_CASE("threads make, select and delete objects side by side") {
    const HBRUSH shared = CreateSolidBrush(RGB(1, 2, 3));
    const Owned pixel(CreateBitmap(1, 1, 1, 1, nullptr));
    std::vector<int> failures(4);
    const auto work = [&](int* failed) {
        for (int i = 0; i < 500; ++i) {
            const MemoryContext memory;
            const HBRUSH own = CreatePatternBrush(pixel);
            const HGDIOBJ white = SelectObject(memory, own);
            *failed += white != GetStockObject(WHITE_BRUSH) || SelectObject(memory, shared) != own ||
                       !DeleteObject(own) || GetObjectType(own) != 0 || SaveDC(memory) != 1;
        }
    };
    std::vector<std::thread> threads;
    for (int& failed : failures)
        threads.emplace_back(work, &failed);
    for (std::thread& thread : threads)
        thread.join();
    CHECK(failures == std::vector<int>(4));
    CHECK((DeleteObject(shared) && GetObjectType(shared) == 0));
}

TEST_CASE("each call on objects can be made to fail") {
    kel::test::WithEachCallFailing(ERROR_NOT_ENOUGH_MEMORY, [] {
        const Owned brush(CreateSolidBrush(RGB(1, 2, 3)));
        const Owned bitmap(CreateBitmap(3, 3, 1, 1, nullptr));
        if (std::string(kel::test::FaultedCall()) == "CreateBitmap")
            CHECK(bitmap == nullptr);
        const Owned pattern(CreatePatternBrush(bitmap));
        const MemoryContext dc(bitmap);
        SaveDC(dc);
        IntersectClipRect(dc, 0, 0, 1, 1);
        SelectObject(dc, brush);
        RestoreDC(dc, -1);
    });
}
