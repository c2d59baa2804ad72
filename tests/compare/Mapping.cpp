// Maps and draws by seeded mapping modes with Win32 calls alone and prints the results, so that two systems can be
// compared. usage: mapping_cases [COUNT [FIRST]] [--dump]
//
// A case is two lines: the mapping with some points, and one drawing or clipping call with the pixels it changes.

#include "tests/compare/Cases.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

using kel::compare::Random;
using kel::compare::Sheet;

constexpr int kDefaultCount = 4000;
constexpr int kWidth = 64;
constexpr int kHeight = 48;

std::string Text(const char* name, std::initializer_list<long long> values) {
    std::string text = name;
    for (const long long value : values)
        text += (text.back() == '(' || text.back() == ' ' ? "" : ",") + std::to_string(value);
    return text;
}

/// Every pixel another colour.
void Number(Sheet& sheet) {
    for (int i = 0; i < kWidth * kHeight; ++i)
        sheet.Pixels()[i] = static_cast<DWORD>(0x10101 + i * 5);
}

/// The box of what was drawn, and a sum of its colours.
std::string Changes(const Sheet& sheet, bool boxAlone) {
    GdiFlush();
    RECT box{kWidth, kHeight, 0, 0};
    DWORD sum = 2166136261u;
    for (LONG y = 0; y < kHeight; ++y)
        for (LONG x = 0; x < kWidth; ++x) {
            const DWORD pixel = sheet.At(x, y);
            sum = (sum ^ pixel) * 16777619u;
            if (pixel != 0)
                box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x + 1),
                       std::max(box.bottom, y + 1)};
        }
    return Text(" drawn(", {box.left, box.top, box.right, box.bottom}) + ") " + (boxAlone ? "" : std::to_string(sum));
}

std::string Change(Random& random, HDC dc) {
    // Wine evens the extents of MM_ISOTROPIC out again when an origin changes.
    const int kind = random.Between(0, GetMapMode(dc) == MM_ISOTROPIC ? 3 : 7);
    const int a = random.Between(-8, 8);
    const int b = random.Between(-8, 8);
    const int c = random.Between(-3, 3);
    const int d = random.Between(-3, 3);
    POINT point{99, 99};
    SIZE size{99, 99};
    switch (kind) {
    case 0:
        return Text("viewport(", {a, b, SetViewportExtEx(dc, a, b, &size), size.cx, size.cy}) + ") ";
    case 1:
        return Text("window(", {a, b, SetWindowExtEx(dc, a, b, &size), size.cx, size.cy}) + ") ";
    case 2:
        return Text("scaleViewport(", {a, c, b, d, ScaleViewportExtEx(dc, a, c, b, d, &size), size.cx, size.cy}) + ") ";
    case 3:
        return Text("scaleWindow(", {a, c, b, d, ScaleWindowExtEx(dc, a, c, b, d, &size), size.cx, size.cy}) + ") ";
    case 4:
        return Text("viewportOrigin(", {a, b, SetViewportOrgEx(dc, a * 4, b * 4, &point), point.x, point.y}) + ") ";
    case 5:
        return Text("windowOrigin(", {a, b, SetWindowOrgEx(dc, a, b, &point), point.x, point.y}) + ") ";
    case 6:
        return Text("moveViewport(", {a, b, OffsetViewportOrgEx(dc, a, b, &point), point.x, point.y}) + ") ";
    default:
        return Text("moveWindow(", {a, b, OffsetWindowOrgEx(dc, a, b, &point), point.x, point.y}) + ") ";
    }
}

/// Mostly of the last two modes, whose extents are the caller's.
std::string RandomMapping(Random& random, HDC dc) {
    const int mode = random.Below(3) == 0 ? random.Between(MM_MIN, MM_MAX) : random.Between(MM_ISOTROPIC, MM_MAX);
    std::string text = Text("mode(", {mode, SetMapMode(dc, mode)}) + ") ";
    SetViewportOrgEx(dc, random.Between(0, 1) * kWidth / 2, kHeight / 2, nullptr);
    if (mode >= MM_ISOTROPIC) {
        const int first = random.Between(1, 20);
        SetWindowExtEx(dc, first, random.Between(1, 20), nullptr);
        const int second = random.Between(-40, 40);
        SetViewportExtEx(dc, second, random.Between(-40, 40), nullptr);
    }
    for (int i = random.Between(0, 4); i > 0; --i)
        text += Change(random, dc);
    return text;
}

struct Origins {
    SIZE window{}, viewport{};
    POINT windowOrigin{}, viewportOrigin{};

    explicit Origins(HDC dc) {
        GetWindowExtEx(dc, &window);
        GetViewportExtEx(dc, &viewport);
        GetWindowOrgEx(dc, &windowOrigin);
        GetViewportOrgEx(dc, &viewportOrigin);
    }
};

std::string State(HDC dc) {
    const Origins o(dc);
    return Text("is ", {GetMapMode(dc), o.window.cx, o.window.cy, o.viewport.cx, o.viewport.cy, o.windowOrigin.x,
                        o.windowOrigin.y, o.viewportOrigin.x, o.viewportOrigin.y});
}

/// The mapping of one coordinate. What falls about halfway between two numbers is left out of the comparison: Wine
/// reckons with numbers that are not exact, and takes the one or the other.
struct Scale {
    long long from, multiplier, divisor, to;

    bool IsHalf(long long value) const {
        const long long rest = std::abs((value - from) * multiplier) % std::abs(divisor);
        return std::abs(2 * rest - std::abs(divisor)) * 64 <= std::abs(divisor);
    }
    Scale Back() const { return {to, divisor, multiplier, from}; }
};

std::pair<Scale, Scale> Scales(HDC dc) {
    const Origins o(dc);
    return {{o.windowOrigin.x, o.viewport.cx, o.window.cx, o.viewportOrigin.x},
            {o.windowOrigin.y, o.viewport.cy, o.window.cy, o.viewportOrigin.y}};
}

std::string Points(Random& random, HDC dc) {
    const auto [x, y] = Scales(dc);
    std::string text;
    for (int i = 0; i < 6; ++i) {
        const int range = i < 4 ? 50 : 3000;
        const int start = random.Between(-range, range);
        POINT device{start, start};
        POINT logical = device;
        LPtoDP(dc, &device, 1);
        DPtoLP(dc, &logical, 1);
        text += Text(" ", {start, x.IsHalf(start) ? 0 : device.x, y.IsHalf(start) ? 0 : device.y,
                           x.Back().IsHalf(start) ? 0 : logical.x, y.Back().IsHalf(start) ? 0 : logical.y});
    }
    return text;
}

/// A logical coordinate that mostly lies on the picture, and not between two pixels.
LONG LogicalCoordinate(Random& random, const Scale& scale, int size) {
    LONG result = 0;
    for (int tries = 0; tries < 8; ++tries) {
        const long long device = random.Between(-6, size + 6);
        result = static_cast<LONG>((device - scale.to) * scale.divisor / scale.multiplier + scale.from);
        if (!scale.IsHalf(result))
            return result;
    }
    return static_cast<LONG>(scale.from);
}

/// A rectangle in logical units; its edges may be in either order.
RECT LogicalRect(Random& random, HDC dc) {
    const auto [x, y] = Scales(dc);
    RECT rect;
    rect.left = LogicalCoordinate(random, x, kWidth);
    rect.top = LogicalCoordinate(random, y, kHeight);
    rect.right = LogicalCoordinate(random, x, kWidth);
    rect.bottom = LogicalCoordinate(random, y, kHeight);
    return rect;
}

HRGN LogicalRegion(Random& random, HDC dc) {
    const RECT first = LogicalRect(random, dc);
    const RECT second = LogicalRect(random, dc);
    const HRGN region = CreateRectRgnIndirect(&first);
    const HRGN other = CreateRectRgnIndirect(&second);
    CombineRgn(region, region, other, RGN_XOR);
    DeleteObject(other);
    return region;
}

// Of regions that stand out over the surface, or have several rectangles, Wine tells another kind and box.
std::string Clip(HDC dc) {
    RECT box{};
    return GetClipBox(dc, &box) == NULLREGION ? " clip none" : " clip some";
}

// Whether the clip region reaches over the surface: Wine takes what lies there for visible.
const char* Beyond(HDC dc) {
    RECT box{};
    const HRGN clip = CreateRectRgn(0, 0, 0, 0);
    const bool clipped = GetClipRgn(dc, clip) == 1 && GetRgnBox(clip, &box) != NULLREGION;
    DeleteObject(clip);
    return clipped && (box.left < 0 || box.top < 0 || box.right > kWidth || box.bottom > kHeight) ? " [beyond]" : "";
}

bool IsEmpty(HDC dc, const RECT& rect) {
    POINT corners[] = {{rect.left, rect.top}, {rect.right, rect.bottom}};
    LPtoDP(dc, corners, 2);
    return corners[0].x == corners[1].x || corners[0].y == corners[1].y;
}

std::string DrawRegion(Random& random, HDC dc, HBRUSH brush) {
    const HRGN region = LogicalRegion(random, dc);
    const int width = random.Between(1, 3);
    const int height = random.Between(1, 3);
    const int kind = random.Between(0, 3);
    SetROP2(dc, random.Between(R2_BLACK, R2_WHITE));
    const BOOL result = kind == 0   ? FillRgn(dc, region, brush)
                        : kind == 1 ? PaintRgn(dc, region)
                        : kind == 2 ? InvertRgn(dc, region)
                                    : FrameRgn(dc, region, brush, width, height);
    DeleteObject(region);
    return Text("region(", {kind, width, height, GetROP2(dc), result}) + ")";
}

std::string DrawClipped(Random& random, HDC dc, const RECT& rect) {
    std::string text = "clip(";
    for (int i = random.Between(1, 3); i > 0; --i) {
        const RECT part = i == 1 ? rect : LogicalRect(random, dc);
        // On Wine, moving no clip region and narrowing it by nothing have other results.
        const int kind = random.Between(IsEmpty(dc, part) ? 1 : 0, text.size() == 5 ? 2 : 3);
        const HRGN region = LogicalRegion(random, dc);
        const int mode = random.Between(RGN_AND, RGN_COPY);
        const int across = random.Between(-5, 5);
        const int result = kind == 0   ? IntersectClipRect(dc, part.left, part.top, part.right, part.bottom)
                           : kind == 1 ? ExcludeClipRect(dc, part.left, part.top, part.right, part.bottom)
                           : kind == 2 ? ExtSelectClipRgn(dc, region, mode)
                                       : OffsetClipRgn(dc, across, random.Between(-5, 5));
        DeleteObject(region);
        text += Text(" ", {kind, mode, result});
    }
    const RECT seen = LogicalRect(random, dc);
    text += Text(" ", {PtVisible(dc, seen.left, seen.top), RectVisible(dc, &seen)});
    const HRGN all = CreateRectRgn(-20000, -20000, 20000, 20000);
    InvertRgn(dc, all);
    DeleteObject(all);
    return text + ")" + Clip(dc) + Beyond(dc);
}

std::string DrawRect(Random& random, HDC dc, HBRUSH brush, const RECT& rect) {
    const int width = rect.right - rect.left;
    const int height = rect.bottom - rect.top;
    const int kind = random.Between(0, 4);
    SetBkColor(dc, 0x123456);
    const DWORD result = kind == 0   ? static_cast<DWORD>(FillRect(dc, &rect, brush) != 0)
                         : kind == 1 ? static_cast<DWORD>(PatBlt(dc, rect.left, rect.top, width, height, PATCOPY))
                         : kind == 2 ? static_cast<DWORD>(InvertRect(dc, &rect))
                         : kind == 3 ? static_cast<DWORD>(ExtTextOutA(dc, 0, 0, ETO_OPAQUE, &rect, "", 0, nullptr))
                                     : SetPixel(dc, rect.left, rect.top, 0x654321);
    // Wine answers the colour for points outside the surface, too.
    return Text("rectangle(", {kind, kind == 4 && !PtVisible(dc, rect.left, rect.top) ? 0 : result}) + ")";
}

/// Where a side of the source begins that lies inside of it; a negative one reaches downwards.
int Inside(Random& random, int size, int bound) {
    const int start = random.Between(0, bound - std::abs(size));
    return size < 0 ? start - size - 1 : start;
}

std::string DrawPicture(Random& random, HDC dc, const Sheet& source, const RECT& rect) {
    const int width = rect.right - rect.left;
    const int height = rect.bottom - rect.top;
    const int kind =
        std::abs(width) > kWidth || std::abs(height) > kHeight ? random.Between(1, 4) : random.Between(0, 5);
    const int fromWidth = kind > 0 ? random.Between(1, kWidth) : width;
    const int fromHeight = kind == 0 ? height : kind == 2 ? kHeight : random.Between(1, kHeight);
    const int x = Inside(random, fromWidth, kWidth);
    const int y = Inside(random, fromHeight, kHeight);
    const HDC from = source.Dc();
    const int result =
        kind == 0   ? BitBlt(dc, rect.left, rect.top, width, height, from, x, y, SRCCOPY)
        : kind == 1 ? StretchBlt(dc, rect.left, rect.top, width, height, from, x, y, fromWidth, fromHeight, SRCCOPY)
        : kind == 2 ? StretchDIBits(dc, rect.left, rect.top, width, height, x, 0, fromWidth, fromHeight,
                                    source.Pixels(), source.Info(), DIB_RGB_COLORS, SRCCOPY)
        : kind == 3
            ? TransparentBlt(dc, rect.left, rect.top, width, height, from, x, y, fromWidth, fromHeight, 0x010101)
        : kind == 4 ? AlphaBlend(dc, rect.left, rect.top, width, height, from, x, y, fromWidth, fromHeight,
                                 {AC_SRC_OVER, 0, 255, 0})
                    : SetDIBitsToDevice(dc, rect.left, rect.top, 20, 10, 0, 0, 0, kHeight, source.Pixels(),
                                        source.Info(), DIB_RGB_COLORS);
    return Text("picture(", {kind, x, y, fromWidth, fromHeight, result}) + ")";
}

std::string Draw(Random& random, HDC dc, const Sheet& source, HBRUSH brush) {
    const RECT rect = LogicalRect(random, dc);
    const std::string area = Text(" at ", {rect.left, rect.top, rect.right, rect.bottom});
    switch (random.Below(4)) {
    case 0:
        return DrawRegion(random, dc, brush);
    case 1:
        return DrawClipped(random, dc, rect);
    case 2:
        return DrawPicture(random, dc, source, rect) + area;
    default:
        return DrawRect(random, dc, brush, rect) + area;
    }
}

void Run(int number, bool dump) {
    Random random(static_cast<std::uint32_t>(number));
    Sheet target(kWidth, kHeight);
    Sheet source(kWidth, kHeight);
    Number(source);
    const std::string mapping = RandomMapping(random, target.Dc());
    const std::string state = State(target.Dc());
    std::printf("%d %s%s%s\n", number, mapping.c_str(), state.c_str(), Points(random, target.Dc()).c_str());
    const HBRUSH brush = CreateSolidBrush(0xFFEEDD);
    SetStretchBltMode(target.Dc(), COLORONCOLOR);
    const std::string drawn = Draw(random, target.Dc(), source, brush);
    DeleteObject(brush);
    // Wine's TransparentBlt drops other pixels than StretchBlt.
    const bool boxAlone = drawn.compare(0, 10, "picture(3,") == 0;
    std::printf("%d %s %s%s\n", number, drawn.c_str(), state.c_str(), Changes(target, boxAlone).c_str());
    for (int y = 0; dump && y < kHeight; ++y, std::printf("\n"))
        for (int x = 0; x < kWidth; ++x)
            std::printf("%c", target.At(x, y) ? '#' : '.');
}

} // namespace

int main(int argc, char** argv) {
    return kel::compare::RunCases(argc, argv, kDefaultCount, Run);
}
