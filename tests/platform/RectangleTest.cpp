#include "Drawing.h"

TEST_CASE("rectangles meet, join and lose a part") {
    BOOL(WINAPI* const calls[])(LPRECT, const RECT*, const RECT*) = {IntersectRect, UnionRect, SubtractRect};
    const char* const kEmpty = "0 0 0 0";
    const RECT ten{0, 0, 10, 10};
    const struct {
        RECT a, b;
        const char* results[3];
    } rows[] = {
        {ten, {5, 5, 15, 15}, {"5 5 10 10", "0 0 15 15", "0 0 10 10"}},
        {ten, {9, 9, 1, 1}, {kEmpty, "0 0 10 10", "0 0 10 10"}},
        {{3, 3, 3, 9}, ten, {kEmpty, "0 0 10 10", kEmpty}},
        {ten, {-1, -1, 5, 20}, {"0 0 5 10", "-1 -1 10 20", "5 0 10 10"}},
        {ten, {3, -1, 5, 20}, {"3 0 5 10", "0 -1 10 20", "0 0 10 10"}},
        {ten, {-1, 6, 20, 14}, {"0 6 10 10", "-1 0 20 14", "0 0 10 6"}},
        {ten, {-1, -1, 20, 20}, {"0 0 10 10", "-1 -1 20 20", kEmpty}},
    };
    for (const auto& [a, b, results] : rows) {
        for (int i = 0; i < 3; ++i) {
            CAPTURE(Text(a) + " and " + Text(b));
            CAPTURE(i);
            RECT out{1, 2, 3, 4};
            CHECK(calls[i](&out, &a, &b) == (results[i] != kEmpty));
            CHECK(Text(out) == results[i]);
            RECT self = a;
            calls[i](&self, &self, &b);
            CHECK(Text(self) == results[i]);
        }
    }
}

TEST_CASE("rectangles move, grow and contain points, and null ones are refused") {
    const RECT ten{0, 0, 10, 10};
    RECT rect{0x7FFFFFFF, 0, 0x7FFFFFFF, 1};
    CHECK((OffsetRect(&rect, 1, -1) && Text(rect) == "-2147483648 -1 -2147483648 0"));
    rect = {1, 2, 3, 4};
    CHECK((InflateRect(&rect, -5, 2) && Text(rect) == "6 0 -2 6" && IsRectEmpty(&rect)));
    CHECK((PtInRect(&ten, POINT{0, 9}) && !PtInRect(&ten, POINT{10, 9}) && !PtInRect(&ten, POINT{0, -1})));
    CHECK(!(IntersectRect(nullptr, &ten, &ten) || IntersectRect(&rect, nullptr, &ten) || CopyRect(&rect, nullptr)));
    CHECK(!(OffsetRect(nullptr, 1, 1) || PtInRect(nullptr, POINT{0, 0})));
}
