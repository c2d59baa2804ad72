// Makes and combines seeded regions with Win32 calls alone and prints what they hold, so that two systems can be
// compared. usage: region_cases [COUNT [FIRST]] [--dump]
//
// A case is two lines: what a region holds, and how the system cut it into rectangles.

#include "tests/compare/Cases.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace {

using kel::compare::Random;

constexpr int kDefaultCount = 4000;

std::string Text(const RECT& rect) {
    char text[64];
    std::snprintf(text, sizeof text, "(%d,%d,%d,%d)", static_cast<int>(rect.left), static_cast<int>(rect.top),
                  static_cast<int>(rect.right), static_cast<int>(rect.bottom));
    return text;
}

/// A region that is deleted at the end, and what it was made of.
class Made {
public:
    Made(HRGN handle, std::string name) : m_handle(handle), m_name(std::move(name)) {}
    Made(Made&& other) noexcept : m_handle(std::exchange(other.m_handle, nullptr)), m_name(std::move(other.m_name)) {}
    Made& operator=(Made&&) = delete;
    ~Made() { DeleteObject(m_handle); }

    HRGN Handle() const { return m_handle; }
    const std::string& Name() const { return m_name; }

private:
    HRGN m_handle;
    std::string m_name;
};

RECT RandomRect(Random& random) {
    RECT rect;
    rect.left = random.Between(-40, 80);
    rect.top = random.Between(-40, 80);
    rect.right = rect.left + random.Between(-30, 60);
    rect.bottom = rect.top + random.Between(-30, 60);
    return rect;
}

// Wine forgets the ends of ellipses that are far higher than wide.
RECT RoundRect(Random& random) {
    const int width = random.Between(6, 70);
    const int height = random.Between(2, std::min(70, 3 * (width - 1)));
    const int left = random.Between(-40, 60);
    const int top = random.Between(-40, 60);
    RECT rect{left, top, left + width, top + height};
    if (random.Below(4) == 0)
        std::swap(rect.left, rect.right);
    return rect;
}

std::vector<POINT> RandomPoints(Random& random, int count) {
    std::vector<POINT> points(static_cast<std::size_t>(count));
    for (POINT& point : points) {
        point.x = random.Between(-40, 100);
        point.y = random.Between(-40, 100);
    }
    return points;
}

Made Rectangle(Random& random) {
    const RECT rect = RandomRect(random);
    return {CreateRectRgnIndirect(&rect), "rectangle" + Text(rect)};
}

Made Elliptic(Random& random) {
    const RECT rect = RoundRect(random);
    return {CreateEllipticRgnIndirect(&rect), "ellipse" + Text(rect)};
}

Made Rounded(Random& random) {
    const RECT rect = RoundRect(random);
    const int width = random.Between(5, 50);
    const int height = random.Between(0, std::min(40, width));
    return {CreateRoundRectRgn(rect.left, rect.top, rect.right, rect.bottom, width, height),
            "rounded" + Text(rect) + std::to_string(width) + "x" + std::to_string(height)};
}

Made Polygonal(Random& random) {
    const int mode = random.Between(ALTERNATE, WINDING);
    const auto points = RandomPoints(random, random.Between(0, 9));
    const int count = static_cast<int>(points.size());
    return {CreatePolygonRgn(points.data(), count, mode),
            "polygon" + std::to_string(count) + (mode == WINDING ? "w" : "a")};
}

Made Polygons(Random& random) {
    const int mode = random.Between(ALTERNATE, WINDING);
    const INT counts[] = {random.Between(2, 5), random.Between(3, 6), random.Between(2, 4)};
    const auto points = RandomPoints(random, counts[0] + counts[1] + counts[2]);
    return {CreatePolyPolygonRgn(points.data(), counts, 3, mode),
            std::string("polygons") + (mode == WINDING ? "w" : "a")};
}

/// Quarters keep the products of coordinates exact.
XFORM RandomTransform(Random& random, bool slanted) {
    const auto quarters = [&] { return static_cast<float>(random.Between(-10, 10)) / 4; };
    XFORM transform{quarters(), 0, 0, quarters(), quarters() * 7, quarters() * 7};
    if (slanted) {
        transform.eM12 = quarters();
        transform.eM21 = quarters();
    }
    return transform;
}

Made FromData(Random& random) {
    RECT buffer[8] = {};
    const int count = random.Between(0, 6);
    for (int i = 0; i < count; ++i)
        buffer[i + 2] = RandomRect(random);
    const RGNDATAHEADER header{sizeof header, RDH_RECTANGLES, static_cast<DWORD>(count), 0, {0, 0, 100, 100}};
    std::memcpy(buffer, &header, sizeof header);
    const std::uint32_t kind = random.Below(3);
    const XFORM transform = RandomTransform(random, kind == 2);
    static const char* const kNames[] = {"data", "scaled", "slanted"};
    return {ExtCreateRegion(kind == 0 ? nullptr : &transform, static_cast<DWORD>(32 + 16 * count),
                            reinterpret_cast<const RGNDATA*>(buffer)),
            kNames[kind] + std::to_string(count)};
}

Made Any(Random& random) {
    switch (random.Below(7)) {
    case 0:
        return Elliptic(random);
    case 1:
        return Rounded(random);
    case 2:
        return Polygonal(random);
    case 3:
        return Polygons(random);
    case 4:
        return FromData(random);
    default:
        return Rectangle(random);
    }
}

Made Combined(Random& random, int depth) {
    static const char* const kModes[] = {"", "and", "or", "xor", "without", "copy"};
    Made first = depth > 1 && random.Below(2) == 0 ? Combined(random, depth - 1) : Any(random);
    const Made second = Any(random);
    const int mode = random.Between(RGN_AND, RGN_COPY);
    const HRGN result = random.Below(3) == 0 ? first.Handle() : CreateRectRgn(0, 0, 0, 0);
    CombineRgn(result, first.Handle(), second.Handle(), mode);
    std::string name = "(" + first.Name() + " " + kModes[mode] + " " + second.Name() + ")";
    if (result != first.Handle())
        return {result, std::move(name)};
    const int right = random.Between(-50, 50);
    OffsetRgn(result, right, random.Between(-50, 50));
    const HRGN copy = CreateRectRgn(0, 0, 1, 1);
    CombineRgn(copy, result, nullptr, RGN_COPY);
    return {copy, "moved" + std::move(name)};
}

constexpr DWORD kSumStart = 2166136261u;

void AddTo(DWORD& sum, LONG value) {
    sum = (sum ^ static_cast<DWORD>(value)) * 16777619u;
}

std::vector<RECT> RectanglesOf(HRGN region) {
    const DWORD size = GetRegionData(region, 0, nullptr);
    std::vector<RECT> buffer(size / sizeof(RECT));
    GetRegionData(region, size, reinterpret_cast<RGNDATA*>(buffer.data()));
    return {buffer.begin() + 2, buffer.end()};
}

using Row = std::vector<std::pair<LONG, LONG>>;

/// The spans of each row that the rectangles cover: the same for every way to cut the region.
std::vector<Row> RowsOf(const std::vector<RECT>& rectangles, LONG top, LONG bottom) {
    std::vector<Row> rows(static_cast<std::size_t>(std::max<LONG>(bottom - top, 0)));
    for (const RECT& rect : rectangles)
        for (LONG y = rect.top; y < rect.bottom && rect.left < rect.right; ++y) {
            Row& row = rows[static_cast<std::size_t>(y - top)];
            if (!row.empty() && row.back().second == rect.left)
                row.back().second = rect.right;
            else
                row.emplace_back(rect.left, rect.right);
        }
    return rows;
}

DWORD Sum(const std::vector<RECT>& rectangles) {
    DWORD sum = kSumStart;
    for (const RECT& rect : rectangles)
        for (const LONG edge : {rect.left, rect.top, rect.right, rect.bottom})
            AddTo(sum, edge);
    return sum;
}

std::string Pixels(const std::vector<RECT>& rectangles) {
    LONG top = 1000;
    LONG bottom = -1000;
    for (const RECT& rect : rectangles)
        if (rect.left < rect.right) {
            top = std::min(top, rect.top);
            bottom = std::max(bottom, rect.bottom);
        }
    DWORD sum = kSumStart;
    long long pixels = 0;
    LONG y = top;
    for (const Row& row : RowsOf(rectangles, top, bottom)) {
        for (const auto& [left, right] : row) {
            pixels += right - left;
            for (const LONG value : {y, left, right})
                AddTo(sum, value);
        }
        ++y;
    }
    char text[64];
    std::snprintf(text, sizeof text, " %lld pixels %08X", pixels, static_cast<unsigned>(sum));
    return text;
}

std::string Hits(Random& random, HRGN region) {
    std::string hits = " ";
    for (int i = 0; i < 12; ++i) {
        const int x = random.Between(-50, 130);
        const int y = random.Between(-50, 130);
        const RECT rect{x, y, x + random.Between(1, 20), y - random.Between(1, 20)};
        hits += static_cast<char>('0' + PtInRegion(region, x, y) + 2 * RectInRegion(region, &rect));
    }
    return hits;
}

void Run(int number, bool dump) {
    Random random(static_cast<std::uint32_t>(number));
    const Made region = Combined(random, 3);
    const auto rectangles = RectanglesOf(region.Handle());
    RECT box{};
    const int kind = GetRgnBox(region.Handle(), &box);
    std::printf("%d holds %s %s%s%s\n", number, region.Name().c_str(), Text(box).c_str(), Pixels(rectangles).c_str(),
                Hits(random, region.Handle()).c_str());
    std::printf("%d cut %s %d %u %08X\n", number, region.Name().c_str(), kind, static_cast<unsigned>(rectangles.size()),
                static_cast<unsigned>(Sum(rectangles)));
    for (const RECT& rect : rectangles)
        if (dump)
            std::printf("  %s\n", Text(rect).c_str());
}

} // namespace

int main(int argc, char** argv) {
    return kel::compare::RunCases(argc, argv, kDefaultCount, Run);
}
