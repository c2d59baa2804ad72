#include <doctest/doctest.h>
#include <kelcore/platform.h>

#include <string>

namespace {

std::string Text(const RECT& rect) {
    return std::to_string(rect.left) + " " + std::to_string(rect.top) + " " + std::to_string(rect.right) + " " +
           std::to_string(rect.bottom);
}

} // namespace

TEST_CASE("rectangles meet, join and lose a part") {
    const char* const kEmpty = "0 0 0 0";
    const RECT ten{0, 0, 10, 10};
    const struct {
        RECT a, b;
        const char *common, *both, *rest;
    } rows[] = {
        {ten, {5, 5, 15, 15}, "5 5 10 10", "0 0 15 15", "0 0 10 10"},
        {ten, {10, 0, 20, 10}, kEmpty, "0 0 20 10", "0 0 10 10"},
        {ten, {9, 9, 1, 1}, kEmpty, "0 0 10 10", "0 0 10 10"},
        {{3, 3, 3, 9}, ten, kEmpty, "0 0 10 10", kEmpty},
        {{3, 3, 3, 9}, {9, 9, 1, 1}, kEmpty, kEmpty, kEmpty},
        {ten, {-1, -1, 5, 20}, "0 0 5 10", "-1 -1 10 20", "5 0 10 10"},
        {ten, {5, -1, 20, 20}, "5 0 10 10", "0 -1 20 20", "0 0 5 10"},
        {ten, {3, -1, 5, 20}, "3 0 5 10", "0 -1 10 20", "0 0 10 10"},
        {ten, {-1, -1, 20, 4}, "0 0 10 4", "-1 -1 20 10", "0 4 10 10"},
        {ten, {-1, 6, 20, 14}, "0 6 10 10", "-1 0 20 14", "0 0 10 6"},
        {ten, {-1, -1, 20, 20}, "0 0 10 10", "-1 -1 20 20", kEmpty},
    };
    for (const auto& row : rows) {
        CAPTURE(Text(row.a) + " and " + Text(row.b));
        RECT out{1, 2, 3, 4};
        CHECK(IntersectRect(&out, &row.a, &row.b) == (row.common != kEmpty));
        CHECK(Text(out) == row.common);
        CHECK(UnionRect(&out, &row.a, &row.b) == (row.both != kEmpty));
        CHECK(Text(out) == row.both);
        CHECK(SubtractRect(&out, &row.a, &row.b) == (row.rest != kEmpty));
        CHECK(Text(out) == row.rest);
        RECT self = row.a;
        IntersectRect(&self, &self, &row.b);
        CHECK(Text(self) == row.common);
    }
}

TEST_CASE("rectangles move, grow and contain points") {
    const RECT ten{0, 0, 10, 10};
    RECT rect;
    CHECK((SetRect(&rect, 1, 2, 3, 4) && OffsetRect(&rect, 10, -10) && InflateRect(&rect, -5, 2)));
    CHECK(Text(rect) == "16 -10 8 -4");
    CHECK((IsRectEmpty(&rect) && !IsRectEmpty(&ten)));
    rect = {0x7FFFFFFF, 0, 0x7FFFFFFF, 1};
    CHECK(OffsetRect(&rect, 1, -1));
    CHECK(Text(rect) == "-2147483648 -1 -2147483648 0");
    CHECK((CopyRect(&rect, &ten) && EqualRect(&rect, &ten)));
    CHECK((PtInRect(&ten, POINT{0, 9}) && !PtInRect(&ten, POINT{10, 9}) && !PtInRect(&ten, POINT{0, -1})));
    CHECK((SetRectEmpty(&rect) && !EqualRect(&rect, &ten)));
}

TEST_CASE("null rectangles are refused") {
    const RECT ten{0, 0, 10, 10};
    RECT rect{1, 2, 3, 4};
    CHECK(!(IntersectRect(nullptr, &ten, &ten) || IntersectRect(&rect, nullptr, &ten) || CopyRect(&rect, nullptr)));
    CHECK(Text(rect) == "1 2 3 4");
    CHECK(!(OffsetRect(nullptr, 1, 1) || PtInRect(nullptr, POINT{0, 0})));
    CHECK(IsRectEmpty(nullptr));
}
