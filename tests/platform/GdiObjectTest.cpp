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
    const WindowContext screen;
    const Section section(2, 2, 24);
    CHECK((GetObjectType(memory.dc) == OBJ_MEMDC && GetObjectType(screen.dc) == OBJ_DC));
    CHECK((GetObjectType(section.handle) == OBJ_BITMAP && GetObjectType(nullptr) == 0));
    const std::pair<HGDIOBJ, DWORD> rows[] = {{CreateSolidBrush(RGB(1, 2, 3)), OBJ_BRUSH},
                                              {CreatePen(PS_SOLID, 1, RGB(1, 2, 3)), OBJ_PEN},
                                              {CreateRectRgn(0, 0, 1, 1), OBJ_REGION}};
    for (const auto& [object, type] : rows) {
        CHECK((GetObjectType(object) == type && DeleteObject(object) && !DeleteObject(object)));
        CHECK((GetObjectType(object) == 0 && GetLastError() == ERROR_INVALID_HANDLE));
    }
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
    const Section unused(4, 4, 24);
    for (const HDC dc : {screen.dc, HDC(), static_cast<HDC>(Stale())})
        CHECK(SelectObject(dc, unused.handle) == nullptr);
    for (const HGDIOBJ object : {HGDIOBJ(), HGDIOBJ(one.dc), Stale(), GetStockObject(DEFAULT_PALETTE)})
        CHECK(SelectObject(one, object) == nullptr);
    CHECK(GetCurrentObject(one, OBJ_BRUSH) == GetStockObject(WHITE_BRUSH));
    CHECK(GetCurrentObject(one, OBJ_PEN) == GetStockObject(BLACK_PEN));
    CHECK(SelectObject(one, first) == section.handle);
    CHECK(SelectObject(other, section.handle) == first);
}

TEST_CASE("device-dependent bitmaps are selected when their depth is 1 or the screen's") {
    for (const UINT bits : {1u, 4u, 8u, 16u, 24u, 32u}) {
        CAPTURE(bits);
        const Owned bitmap(CreateBitmap(2, 2, 1, bits, nullptr));
        CHECK((SelectObject(MemoryContext(), bitmap) != nullptr) == (bits == 1 || bits == 32));
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
    for (const int index : {WHITE_BRUSH, NULL_BRUSH, BLACK_PEN, DEFAULT_PALETTE, DC_BRUSH}) {
        CAPTURE(index);
        const HGDIOBJ object = GetStockObject(index);
        const DWORD type = GetObjectType(object);
        CHECK((type != 0 && DeleteObject(object) && GetObjectType(object) == type && GetStockObject(index) == object));
    }
    for (const int index : {-1, 9, 1000})
        CHECK(GetStockObject(index) == nullptr);
    const HGDIOBJ bitmap = GetCurrentObject(MemoryContext(), OBJ_BITMAP);
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
    const Owned pen(CreatePen(PS_SOLID, 1, 0));
    const int whole = sizeof(BITMAP);
    const std::tuple<HGDIOBJ, int, int> rows[] = {
        {bitmap, 0, whole},
        {bitmap, whole - 1, 0},
        {section.handle, static_cast<int>(sizeof(DIBSECTION)) - 1, whole},
        {section.handle, 200, sizeof(DIBSECTION)},
        {brush, 5, 5},
        {pen, static_cast<int>(sizeof(LOGPEN)) - 1, 0},
        {Stale(), 100, 0},
    };
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
