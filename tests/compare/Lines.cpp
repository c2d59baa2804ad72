// Draws seeded lines, shapes, fills, frames and paths with Win32 calls alone and prints a line and a checksum for each,
// so that two systems can be compared. usage: line_cases [COUNT [FIRST]] [--dump]

#include "tests/compare/Cases.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>
#include <utility>

namespace {

using kel::compare::Random;
using kel::compare::Sheet;

constexpr int kDefaultCount = 4000;
constexpr int kWidth = 60;
constexpr int kHeight = 44;

void Stripe(Random& random, Sheet& sheet) {
    const DWORD colours[] = {random.Colour(), random.Colour()};
    for (int i = 0; i < kWidth * kHeight; ++i)
        sheet.Pixels()[i] = colours[i % kWidth / 7 % 2];
}

DWORD Checksum(const Sheet& sheet) {
    GdiFlush();
    DWORD sum = 0x811C9DC5;
    for (int i = 0; i < kWidth * kHeight; ++i)
        sum = (sum ^ (sheet.Pixels()[i] & 0xFFFFFF)) * 0x01000193 + (sum >> 15);
    return sum;
}

void Dump(const Sheet& sheet) {
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
            std::printf("%06X%s", static_cast<unsigned>(sheet.At(x, y)), x == kWidth - 1 ? "\n" : " ");
}

POINT RandomPoint(Random& random) {
    const int beyond = random.Below(4) == 0 ? 30 : 0;
    const int x = random.Between(-beyond, kWidth + beyond);
    return {x, random.Between(-beyond, kHeight + beyond)};
}

std::string Text(const POINT* points, int count) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += " " + std::to_string(points[i].x) + "," + std::to_string(points[i].y);
    return text;
}

/// The same colours on every system.
void SetColours() {
    const INT indices[] = {COLOR_BTNFACE, COLOR_BTNSHADOW, COLOR_BTNHIGHLIGHT, COLOR_3DDKSHADOW,
                           COLOR_3DLIGHT, COLOR_WINDOW,    COLOR_WINDOWFRAME};
    const COLORREF colours[] = {0xC0C0C0, 0x808080, 0xFFFFFF, 0x101010, 0xDFDFDF, 0xF0F0F0, 0x202020};
    SetSysColors(static_cast<int>(std::size(indices)), indices, colours);
}

/// A pen of a pixel; @p wide: also such as may become wider, and wide ones. @return its name.
std::string ChoosePen(Random& random, HDC dc, bool wide) {
    static const DWORD own[] = {5, 2, 1, 2};
    const COLORREF colour = random.Colour();
    const LOGBRUSH brush = {BS_SOLID, colour, 0};
    const int style = random.Between(PS_SOLID, PS_INSIDEFRAME);
    const std::uint32_t kind = random.Below(wide ? 8 : 6);
    if (kind < 4) {
        SelectObject(dc, CreatePen(kind < 2 ? PS_SOLID : style, wide ? random.Between(0, 1) : 0, colour));
        return kind < 2 ? "pen0" : "pen" + std::to_string(style);
    }
    if (kind == 4) {
        SelectObject(dc, ExtCreatePen(PS_COSMETIC | PS_USERSTYLE, 1, &brush, 4, own));
        return "penUser";
    }
    if (kind == 5) {
        SelectObject(dc, ExtCreatePen(PS_COSMETIC | PS_ALTERNATE, 1, &brush, 0, nullptr));
        return "penAlternate";
    }
    const int width = random.Between(2, 7);
    SelectObject(dc, CreatePen(kind == 6 ? PS_SOLID : PS_INSIDEFRAME, width, colour));
    return (kind == 6 ? "wide" : "inside") + std::to_string(width);
}

HBRUSH RandomBrush(Random& random, std::string& name) {
    const std::uint32_t kind = random.Below(4);
    if (kind == 0)
        return name = " null", static_cast<HBRUSH>(GetStockObject(NULL_BRUSH));
    if (kind == 1)
        return name = " solid", CreateSolidBrush(random.Colour());
    if (kind == 2) {
        const int hatch = random.Between(HS_HORIZONTAL, HS_DIAGCROSS);
        return name = " hatch" + std::to_string(hatch), CreateHatchBrush(hatch, random.Colour());
    }
    return name = " pattern", kel::compare::PatternBrush(random);
}

/// Colours, modes, origins, a clip region, a mapping. @return what is out of the ordinary.
std::string ChooseState(Random& random, HDC dc) {
    std::string name;
    SetTextColor(dc, random.Colour());
    SetBkColor(dc, random.Colour());
    const int origin = random.Between(-9, 9);
    SetBrushOrgEx(dc, origin, random.Between(-9, 9), nullptr);
    if (random.Below(2) == 0)
        name += SetBkMode(dc, TRANSPARENT) ? " transparent" : "";
    if (random.Below(3) == 0) {
        const int mode = random.Between(R2_BLACK, R2_WHITE);
        SetROP2(dc, mode);
        name += " r2=" + std::to_string(mode);
    }
    if (random.Below(4) == 0) {
        const int left = random.Between(0, 30);
        const int top = random.Between(0, 20);
        IntersectClipRect(dc, left, top, left + random.Between(5, 30), top + random.Between(5, 24));
        ExcludeClipRect(dc, left + 4, top + 3, left + 9, top + 11);
        name += " clipped";
    }
    return name;
}

/// Mapping modes for what draws along the axes.
std::string ChooseMapping(Random& random, HDC dc) {
    if (random.Below(4) != 0)
        return {};
    SetMapMode(dc, MM_ANISOTROPIC);
    SetWindowExtEx(dc, 4, 4, nullptr);
    const int x = random.Between(2, 6);
    const int y = random.Between(2, 6);
    SetViewportExtEx(dc, x, y, nullptr);
    return " scaled" + std::to_string(x) + "/" + std::to_string(y);
}

void Finish(HDC dc) {
    DeleteObject(SelectObject(dc, GetStockObject(BLACK_PEN)));
    DeleteObject(SelectObject(dc, GetStockObject(WHITE_BRUSH)));
}

std::string Lines(Random& random, HDC dc) {
    POINT points[6];
    const int count = random.Between(2, 6);
    for (int i = 0; i < count; ++i)
        points[i] = RandomPoint(random);
    std::string name = ChoosePen(random, dc, /*wide*/ false) + Text(points, count);
    if (random.Below(2) == 0) {
        const BOOL done = Polyline(dc, points, count);
        return "Polyline " + name + (done ? "" : " failed");
    }
    MoveToEx(dc, points[0].x, points[0].y, nullptr);
    for (int i = 1; i < count; ++i)
        LineTo(dc, points[i].x, points[i].y);
    POINT end = {};
    GetCurrentPositionEx(dc, &end);
    return "LineTo " + name + " ends" + Text(&end, 1);
}

std::string Straight(Random& random, HDC dc) {
    const std::string pen = ChoosePen(random, dc, /*wide*/ true) + ChooseMapping(random, dc);
    POINT points[2] = {RandomPoint(random), RandomPoint(random)};
    (random.Below(2) == 0 ? points[1].x = points[0].x : points[1].y = points[0].y);
    MoveToEx(dc, points[0].x, points[0].y, nullptr);
    LineTo(dc, points[1].x, points[1].y);
    return "Straight " + pen + Text(points, 2);
}

/// In pixels.
SIZE SizeBetween(HDC dc, POINT first, POINT last) {
    POINT points[] = {first, last};
    LPtoDP(dc, points, 2);
    return {std::abs(points[1].x - points[0].x), std::abs(points[1].y - points[0].y)};
}

/// Where the two sides of an outline meet.
const char* Thinness(const SIZE& size, int width) {
    return size.cx <= width || size.cy <= width ? " thin" : "";
}

const char* Narrowness(const SIZE& size) {
    const auto sides = std::minmax(size.cx, size.cy);
    return sides.first < 6 || sides.second > 3 * sides.first ? " narrow" : "";
}

// Round shapes have whole pixels in every scale, and their corners in order: Wine rounds their size apart from their
// place.
void ToPixels(POINT* corners) {
    for (int i = 0; i < 2; ++i)
        corners[i] = {corners[i].x & ~3, corners[i].y & ~3};
    if (corners[0].x > corners[1].x)
        std::swap(corners[0].x, corners[1].x);
    if (corners[0].y > corners[1].y)
        std::swap(corners[0].y, corners[1].y);
}

std::string Shapes(Random& random, HDC dc) {
    std::string brush;
    SelectObject(dc, RandomBrush(random, brush));
    const std::uint32_t kind = random.Below(3);
    std::string name = ChoosePen(random, dc, /*wide*/ kind == 0) + brush + ChooseMapping(random, dc);
    POINT points[] = {RandomPoint(random), RandomPoint(random), {random.Between(3, 24), random.Between(3, 24)}};
    if (kind != 0)
        ToPixels(points);
    const SIZE size = SizeBetween(dc, points[0], points[1]);
    const SIZE corner = SizeBetween(dc, {}, points[2]);
    const auto [left, top] = points[0];
    const auto [right, bottom] = points[1];
    if (kind == 0) {
        name += Thinness(size, name[0] == 'i' ? 12 : 1);
        Rectangle(dc, left, top, right, bottom);
    } else if (kind == 1) {
        name += Narrowness(size);
        Ellipse(dc, left, top, right, bottom);
    } else {
        name += Narrowness({std::min(size.cx, corner.cx), std::min(size.cy, corner.cy)});
        RoundRect(dc, left, top, right, bottom, points[2].x, points[2].y);
    }
    static const char* const names[] = {"Rectangle ", "Ellipse ", "RoundRect "};
    return names[kind] + name + Text(points, 3);
}

std::string Polygons(Random& random, HDC dc) {
    std::string brush;
    SelectObject(dc, RandomBrush(random, brush));
    std::string name = ChoosePen(random, dc, /*wide*/ false) + brush;
    if (random.Below(2) == 0) {
        SetPolyFillMode(dc, WINDING);
        name += " winding";
    }
    POINT points[8];
    for (POINT& point : points)
        point = RandomPoint(random);
    if (random.Below(2) == 0) {
        const int count = random.Between(2, 8);
        Polygon(dc, points, count);
        return "Polygon " + name + Text(points, count);
    }
    const int counts[] = {random.Between(2, 4), random.Between(2, 4)};
    PolyPolygon(dc, points, counts, 2);
    return "PolyPolygon " + name + " " + std::to_string(counts[0]) + "+" + std::to_string(counts[1]) + Text(points, 8);
}

std::string Frames(Random& random, HDC dc) {
    std::string brush;
    const HBRUSH handle = RandomBrush(random, brush);
    std::string name = brush + ChooseMapping(random, dc);
    const POINT points[] = {RandomPoint(random), RandomPoint(random)};
    name += Thinness(SizeBetween(dc, points[0], points[1]), 1);
    const RECT rect = {points[0].x, points[0].y, points[1].x, points[1].y};
    static const char* const names[] = {"FillRect", "FrameRect", "InvertRect", "DrawFocusRect", "PatBlt"};
    const std::uint32_t kind = random.Below(5);
    int result = 0;
    if (kind == 0)
        result = FillRect(dc, &rect, handle) != 0;
    else if (kind == 1)
        result = FrameRect(dc, &rect, handle) != 0;
    else if (kind == 2)
        result = InvertRect(dc, &rect) != 0;
    else if (kind == 3)
        result = DrawFocusRect(dc, &rect) != 0;
    else {
        SelectObject(dc, handle);
        result = PatBlt(dc, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top, PATINVERT) != 0;
        SelectObject(dc, GetStockObject(WHITE_BRUSH));
    }
    DeleteObject(handle);
    return names[kind] + name + Text(points, 2) + " = " + std::to_string(result);
}

std::string Edges(Random& random, HDC dc) {
    const POINT points[] = {{random.Between(0, 30), random.Between(0, 20)},
                            {random.Between(32, 70), random.Between(22, 50)}};
    RECT rect = {points[0].x, points[0].y, points[1].x, points[1].y};
    const UINT edge = random.Below(16);
    const UINT flags = random.Below(16) | (random.Below(2) ? BF_MIDDLE : 0) | (random.Below(2) ? BF_ADJUST : 0) |
                       (random.Below(3) == 0 ? BF_SOFT : 0) | (random.Below(4) == 0 ? BF_FLAT : 0) |
                       (random.Below(4) == 0 ? BF_MONO : 0);
    const BOOL done = DrawEdge(dc, &rect, edge, flags);
    char text[96];
    std::snprintf(text, sizeof text, "DrawEdge %X %X = %d (%d,%d,%d,%d)", static_cast<unsigned>(edge),
                  static_cast<unsigned>(flags), done, static_cast<int>(rect.left), static_cast<int>(rect.top),
                  static_cast<int>(rect.right), static_cast<int>(rect.bottom));
    return text + Text(points, 2);
}

/// Adds straight figures to a path and uses it.
std::string Paths(Random& random, HDC dc) {
    std::string brush;
    SelectObject(dc, RandomBrush(random, brush));
    std::string name = ChoosePen(random, dc, /*wide*/ false) + brush;
    BeginPath(dc);
    for (int i = random.Between(1, 3); i > 0; --i) {
        const POINT points[] = {RandomPoint(random), RandomPoint(random), RandomPoint(random)};
        const std::uint32_t kind = random.Below(4);
        if (kind == 0) {
            Rectangle(dc, points[0].x, points[0].y, points[1].x, points[1].y);
        } else if (kind == 1) {
            Polygon(dc, points, 3);
        } else {
            MoveToEx(dc, points[0].x, points[0].y, nullptr);
            PolylineTo(dc, points + 1, 2);
            if (kind == 2)
                CloseFigure(dc);
        }
        name += " " + std::to_string(kind) + Text(points, 3);
    }
    EndPath(dc);
    const int count = GetPath(dc, nullptr, nullptr, 0);
    static const char* const names[] = {"FillPath ", "StrokePath ", "StrokeAndFillPath ", "PathToRegion "};
    BOOL(WINAPI* const uses[])(HDC) = {FillPath, StrokePath, StrokeAndFillPath};
    const std::uint32_t use = random.Below(4);
    if (use < std::size(uses)) {
        uses[use](dc);
    } else {
        const HRGN region = PathToRegion(dc);
        PaintRgn(dc, region);
        DeleteObject(region);
    }
    return names[use] + name + " of " + std::to_string(count);
}

void Run(int number, bool dump) {
    Random random(static_cast<std::uint32_t>(number) + 50000);
    Sheet sheet(kWidth, kHeight);
    Stripe(random, sheet);
    const std::string state = ChooseState(random, sheet.Dc());
    static constexpr std::string (*kKinds[])(Random&, HDC) = {Lines,    Lines,  Straight, Shapes, Shapes,
                                                              Polygons, Frames, Edges,    Paths};
    const std::string name = kKinds[random.Below(std::size(kKinds))](random, sheet.Dc());
    Finish(sheet.Dc());
    std::printf("%d %s%s %08X\n", number, name.c_str(), state.c_str(), static_cast<unsigned>(Checksum(sheet)));
    if (dump)
        Dump(sheet);
}

} // namespace

int main(int argc, char** argv) {
    SetColours();
    return kel::compare::RunCases(argc, argv, kDefaultCount, Run);
}
