#include "Sheet.h"

#include <algorithm>
#include <cmath>

namespace {

/// The closed path as text: a letter for the kind of each point, the point, and a bar where a figure is closed.
std::string Told(HDC dc) {
    POINT points[64];
    BYTE kinds[64];
    const int count = GetPath(dc, points, kinds, 64);
    std::string text;
    for (int i = 0; i < count; ++i) {
        const int kind = kinds[i] & ~PT_CLOSEFIGURE;
        text += kinds[i] == PT_MOVETO ? " m" : kind == PT_LINETO ? " l" : kind == PT_BEZIERTO ? " c" : " ?";
        text += std::to_string(points[i].x) + "," + std::to_string(points[i].y);
        text += kinds[i] != PT_MOVETO && kinds[i] & PT_CLOSEFIGURE ? "|" : "";
    }
    return text;
}

const POINT kPoints[] = {{5, 20}, {12, 5}, {20, 20}, {1, 1}, {2, 2}};
const INT kCounts[] = {3, 2};

} // namespace

TEST_CASE("drawing adds figures to an open path") {
    const Sheet sheet(32, 32);
    const std::pair<void (*)(HDC), const char*> cases[] = {
        {[](HDC dc) { Rectangle(dc, 2, 2, 20, 14); }, " m19,2 l2,2 l2,13 l19,13|"},
        {[](HDC dc) { Rectangle(dc, 2, 2, 2, 14); }, ""},
        {[](HDC dc) { PolyPolygon(dc, kPoints, kCounts, 2); }, " m5,20 l12,5 l20,20| m1,1 l2,2|"},
        {[](HDC dc) {
             MoveToEx(dc, 3, 4, nullptr);
             LineTo(dc, 5, 6);
             LineTo(dc, 9, 6);
             CloseFigure(dc);
             LineTo(dc, 7, 7);
         },
         " m3,4 l5,6 l9,6| m9,6 l7,7"},
        {[](HDC dc) {
             MoveToEx(dc, 0, 0, nullptr);
             PolyBezierTo(dc, kPoints, 3);
             PolylineTo(dc, kPoints + 3, 2);
         },
         " m0,0 c5,20 c12,5 c20,20 l1,1 l2,2"},
    };
    for (const auto& [draw, path] : cases) {
        CAPTURE(std::string(path));
        REQUIRE(BeginPath(sheet));
        draw(sheet);
        REQUIRE(EndPath(sheet));
        CHECK(Told(sheet) == path);
        CHECK(GetPath(sheet, nullptr, nullptr, 0) == std::count(path, path + std::strlen(path), ','));
    }
    CHECK(sheet.Picture().empty());
    POINT point;
    BYTE kind;
    CHECK((GetPath(sheet, &point, &kind, 1) == -1 && GetLastError() == ERROR_INVALID_PARAMETER));
}

TEST_CASE("a path is filled, drawn or made a region, and gone") {
    const std::pair<BOOL(WINAPI*)(HDC), const char*> cases[] = {
        {FillPath, "BBBB/BBBB/BBBB/BBBB"},
        {StrokePath, "RRRRR/R...R/R...R/R...R"},
        {StrokeAndFillPath, "RRRRR/RBBBR/RBBBR/RBBBR"},
    };
    for (const auto& [use, picture] : cases) {
        CAPTURE(std::string(picture));
        const Sheet sheet(6, 4);
        BeginPath(sheet);
        CHECK(!use(sheet)); // not while it is open
        Rectangle(sheet, 0, 0, 5, 6);
        EndPath(sheet);
        CHECK((use(sheet) && !use(sheet)));
        CHECK(sheet.Picture() == picture);
    }
    const MemoryContext memory;
    for (const int mode : {ALTERNATE, WINDING}) {
        CAPTURE(mode);
        SetPolyFillMode(memory, mode);
        BeginPath(memory);
        Rectangle(memory, 0, 0, 11, 11);
        Rectangle(memory, 3, 3, 8, 8);
        EndPath(memory);
        const Owned region(PathToRegion(memory));
        CHECK((PtInRegion(region, 9, 9) && !PtInRegion(region, 10, 10)));
        CHECK(PtInRegion(region, 5, 5) == (mode == WINDING));
    }
}

TEST_CASE("curves become lines that stay by them") {
    const MemoryContext memory;
    BeginPath(memory);
    Ellipse(memory, 0, 0, 201, 101);
    EndPath(memory);
    REQUIRE(FlattenPath(memory));
    POINT points[256];
    BYTE kinds[256];
    const int count = GetPath(memory, points, kinds, 256);
    REQUIRE((count > 16 && kinds[count - 1] == (PT_LINETO | PT_CLOSEFIGURE)));
    for (int i = 1; i < count; ++i) {
        const double x = (points[i].x - 100) / 100.0;
        const double y = (points[i].y - 50) / 50.0;
        CHECK(((kinds[i] & ~PT_CLOSEFIGURE) == PT_LINETO && std::abs(x * x + y * y - 1) < 0.06));
    }
}

TEST_CASE("without a path there is nothing to complete") {
    const MemoryContext memory;
    BOOL(WINAPI* const calls[])(HDC) = {EndPath, CloseFigure, FillPath, StrokePath, StrokeAndFillPath, FlattenPath};
    for (const auto call : calls) {
        SetLastError(0);
        CHECK((!call(memory) && GetLastError() == ERROR_CAN_NOT_COMPLETE && !call(nullptr)));
    }
    CHECK((PathToRegion(memory) == nullptr && GetPath(memory, nullptr, nullptr, 0) == -1));
    // States put aside have paths of their own.
    BeginPath(memory);
    LineTo(memory, 4, 4);
    EndPath(memory);
    SaveDC(memory);
    CHECK((AbortPath(memory) && Told(memory).empty()));
    RestoreDC(memory, -1);
    CHECK(Told(memory) == " m0,0 l4,4");
}
