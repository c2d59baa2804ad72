#include "Sheet.h"

#include <functional>
#include <vector>

namespace {

HPEN Extended(DWORD style, DWORD width, std::vector<DWORD> dashes = {}, UINT brushStyle = BS_SOLID) {
    const LOGBRUSH brush{brushStyle, kRed, HS_VERTICAL};
    return ExtCreatePen(style, width, &brush, static_cast<DWORD>(dashes.size()),
                        dashes.empty() ? nullptr : dashes.data());
}

void Line(HDC dc, int x, int y, int toX, int toY) {
    MoveToEx(dc, x, y, nullptr);
    LineTo(dc, toX, toY);
}

void Lines(HDC dc, const std::vector<POINT>& points) {
    Polyline(dc, points.data(), static_cast<int>(points.size()));
}

HBRUSH BrushIn(HDC dc) {
    return static_cast<HBRUSH>(GetCurrentObject(dc, OBJ_BRUSH));
}

const POINT kTwoLines[] = {{0, 0}, {3, 0}, {0, 2}, {2, 2}, {2, 0}};
const DWORD kTwoCounts[] = {2, 3};
const POINT kStar[] = {{0, 2}, {8, 2}, {1, 7}, {4, 0}, {7, 7}};
const POINT kSquare[] = {{0, 0}, {3, 0}, {3, 3}, {0, 3}};
const RECT kFrame{0, 0, 5, 3};
const RECT kFocus{0, 0, 5, 4};
const RECT kNothing{6, 0, 6, 3};

/// What is drawn, and the picture it makes.
struct Case {
    const char* name;
    std::function<void(Sheet&)> draw;
    const char* picture;
};

template <std::size_t count>
void Check(const Case (&cases)[count], int width, int height) {
    for (const auto& [name, draw, picture] : cases) {
        CAPTURE(std::string(name));
        Sheet sheet(width, height);
        draw(sheet);
        CHECK(sheet.Picture() == picture);
    }
}

} // namespace

TEST_CASE("lines pass the pixels they leave the diamonds of, but for the last one") {
    const Case cases[] = {
        {"right", [](Sheet& s) { Line(s, 1, 0, 4, 0); }, ".RRR"},
        {"left", [](Sheet& s) { Line(s, 4, 0, 1, 0); }, "..RRR"},
        {"no length", [](Sheet& s) { Line(s, 3, 1, 3, 1); }, ""},
        {"halves go up", [](Sheet& s) { Line(s, 0, 0, 4, 2); }, "RR/..RR"},
        {"and up again", [](Sheet& s) { Line(s, 4, 2, 0, 0); }, ".R/..RR/....R"},
        {"halves go left", [](Sheet& s) { Line(s, 2, 0, 0, 4); }, "..R/.R/.R/R"},
        {"from far away", [](Sheet& s) { Line(s, -1000000, 1, 1000000, 1); }, "/RRRRRRRRRRRR"},
        {"XOR meets itself",
         [](Sheet& s) {
             Lines(s.Rop(R2_XORPEN), {{0, 0}, {4, 0}, {4, 2}, {2, 2}, {2, -1}});
         },
         "RR.RR/..R.R/..RRR"},
        {"several", [](Sheet& s) { PolyPolyline(s, kTwoLines, kTwoCounts, 2); }, "RRR/..R/RRR"},
        {"mapped",
         [](Sheet& s) {
             SetMapMode(s, MM_ANISOTROPIC);
             SetViewportExtEx(s, 3, -1, nullptr);
             SetViewportOrgEx(s, 0, 2, nullptr);
             Line(s, 1, 0, 3, 0);
         },
         "//...RRRRRR"},
    };
    Check(cases, 12, 5);
}

TEST_CASE("styled pens leave gaps, in the background colour unless that is transparent") {
    const auto styled = [](int style, int mode) {
        return [=](Sheet& s) { Line(s.Use(CreatePen(style, 1, kRed)).Back(mode), 0, 0, 30, 0); };
    };
    const auto extended = [](DWORD style, DWORD width, std::vector<DWORD> dashes = {}) {
        return [=](Sheet& s) { Line(s.Use(Extended(style, width, dashes)), 0, 1, 20, 1); };
    };
    const Case cases[] = {
        {"dash", styled(PS_DASH, TRANSPARENT), "RRRRRRRRRRRRRRRRRR......RRRRRR"},
        {"dot", styled(PS_DOT, OPAQUE), "RRRGGGRRRGGGRRRGGGRRRGGGRRRGGG"},
        {"dash dot", styled(PS_DASHDOT, TRANSPARENT), "RRRRRRRRR......RRR......RRRRRR"},
        {"dash dot dot", styled(PS_DASHDOTDOT, OPAQUE), "RRRRRRRRRGGGRRRGGGRRRGGGRRRRRR"},
        {"own units of three", extended(PS_COSMETIC | PS_USERSTYLE, 1, {2, 1}), "/RRRRRR...RRRRRR...RR"},
        {"every other", extended(PS_COSMETIC | PS_ALTERNATE, 1), "/R.R.R.R.R.R.R.R.R.R"},
        {"wide dots", extended(PS_GEOMETRIC | PS_DOT | PS_ENDCAP_FLAT, 3),
         "RRR...RRR...RRR...RR/RRR...RRR...RRR...RR/RRR...RRR...RRR...RR"},
        {"goes on around corners",
         [](Sheet& s) {
             Lines(s.Use(CreatePen(PS_DOT, 0, kRed)).Back(TRANSPARENT), {{0, 0}, {4, 0}, {4, 3}});
         },
         "RRR//....R"},
        {"frame from the upper right",
         [](Sheet& s) { Rectangle(s.Use(CreatePen(PS_DOT, 0, kRed)).Back(TRANSPARENT), 0, 0, 9, 3); },
         "RRR...RRR/.BBBBBBBR/..RRR...R"},
    };
    Check(cases, 30, 3);
}

TEST_CASE("wide pens have ends and corners") {
    const auto line = [](DWORD cap) {
        return [=](Sheet& s) { Line(s.Use(Extended(PS_GEOMETRIC | cap, 4)), 3, 2, 7, 2); };
    };
    const auto corner = [](DWORD join) {
        return [=](Sheet& s) {
            Lines(s.Use(Extended(PS_GEOMETRIC | PS_ENDCAP_FLAT | join, 2)), {{1, 4}, {1, 1}, {6, 1}});
        };
    };
    const auto hatched = Extended(PS_GEOMETRIC | PS_ENDCAP_FLAT, 2, {}, BS_HATCHED);
    const Case cases[] = {
        {"round", line(PS_ENDCAP_ROUND), "..RRRRRR/.RRRRRRRR/.RRRRRRRR/..RRRRRR"},
        {"square", line(PS_ENDCAP_SQUARE), ".RRRRRRRR/.RRRRRRRR/.RRRRRRRR/.RRRRRRRR"},
        {"flat", line(PS_ENDCAP_FLAT), "...RRRR/...RRRR/...RRRR/...RRRR"},
        {"mitred", corner(PS_JOIN_MITER), "RRRRRR/RRRRRR/RR/RR"},
        {"cut", corner(PS_JOIN_BEVEL), ".RRRRR/RRRRRR/RR/RR"},
        {"hatched", [=](Sheet& s) { Line(s.Use(hatched).Back(TRANSPARENT), 0, 1, 14, 1); },
         "....R.......R/....R.......R"},
        {"around", [](Sheet& s) { Rectangle(s.Use(CreatePen(PS_SOLID, 3, kRed)), 2, 1, 9, 5); },
         "..RRRRRRR/.RRRRRRRRR/.RRRRRRRRR/.RRRRRRRRR/.RRRRRRRRR"},
        {"inside", [](Sheet& s) { Rectangle(s.Use(CreatePen(PS_INSIDEFRAME, 2, kRed)), 1, 0, 8, 5); },
         ".RRRRRRR/.RRRRRRR/.RRBBBRR/.RRRRRRR/.RRRRRRR"},
    };
    Check(cases, 14, 5);
}

TEST_CASE("shapes are filled and outlined without their right and bottom edges") {
    const HGDIOBJ noPen = GetStockObject(NULL_PEN), noBrush = GetStockObject(NULL_BRUSH);
    const Case cases[] = {
        {"rectangle", [](Sheet& s) { Rectangle(s, 6, 4, 1, 0); }, ".RRRRR/.RBBBR/.RBBBR/.RRRRR"},
        {"rectangle without an inside", [](Sheet& s) { Rectangle(s, 1, 1, 3, 3); }, "/.RR/.RR"},
        {"no rectangle", [](Sheet& s) { Rectangle(s, 1, 1, 1, 5); }, ""},
        {"rectangle without pen", [&](Sheet& s) { Rectangle(s.Use(noPen), 1, 0, 5, 3); }, ".BBB/.BBB"},
        {"no pen, no brush", [&](Sheet& s) { Rectangle(s.Use(noPen).Use(noBrush), 1, 0, 5, 3); }, ""},
        {"ellipse without both", [&](Sheet& s) { Ellipse(s.Use(noPen).Use(noBrush), 0, 0, 8, 8); }, ""},
        {"ellipse", [](Sheet& s) { Ellipse(s, 0, 0, 8, 8); },
         "..RRRR/.RBBBBR/RBBBBBBR/RBBBBBBR/RBBBBBBR/RBBBBBBR/.RBBBBR/..RRRR"},
        {"round corners", [](Sheet& s) { RoundRect(s, 0, 0, 9, 6, 4, 4); },
         ".RRRRRRR/RBBBBBBBR/RBBBBBBBR/RBBBBBBBR/RBBBBBBBR/.RRRRRRR"},
        {"alternate", [&](Sheet& s) { Polygon(s.Use(noPen), kStar, 5); }, "/....B/BBBB.BBB/..B...B//..BB.BB/..B...B"},
        {"XOR over the inside", [](Sheet& s) { Polygon(s.Rop(R2_XORPEN), kSquare, 4); }, "MMMR/MBBR/MBBR/RRRR"},
    };
    Check(cases, 9, 8);
}

TEST_CASE("hatches leave the space between them alone where the background is transparent") {
    const auto hatched = [](int mode, int rasterMode) {
        return [=](Sheet& s) {
            s.Use(GetStockObject(NULL_PEN)).Use(CreateHatchBrush(HS_FDIAGONAL, kRed)).Back(mode).Rop(rasterMode);
            Rectangle(s, 0, 0, 9, 3);
            Rectangle(s, 4, 0, 9, 3);
        };
    };
    const Case cases[] = {
        {"opaque", hatched(OPAQUE, R2_COPYPEN), "RGGGGGGG/GRGGGGGG"},
        {"transparent", hatched(TRANSPARENT, R2_COPYPEN), "R/.R"},
        {"transparent and inverted", hatched(TRANSPARENT, R2_NOT), "W/.W"},
        {"filled",
         [](Sheet& s) {
             PatBlt(s.Use(CreateHatchBrush(HS_VERTICAL, kRed)).Back(TRANSPARENT), 0, 0, 9, 1, PATCOPY);
             const RECT rect{3, 1, 9, 2};
             FillRect(s, &rect, BrushIn(s));
         },
         "....R/....R"},
    };
    Check(cases, 9, 3);
}

TEST_CASE("frames take no notice of pen and mode") {
    const RECT inner{1, 0, 3, 2};
    const Case cases[] = {
        {"frame", [](Sheet& s) { CHECK(FrameRect(s.Rop(R2_BLACK), &kFrame, BrushIn(s))); }, "BBBBB/B...B/BBBBB"},
        {"no frame", [](Sheet& s) { CHECK(!FrameRect(s, &kNothing, BrushIn(s))); }, ""},
        {"focus", [](Sheet& s) { CHECK(DrawFocusRect(s, &kFocus)); }, "W.W.W//W...W/.W.W"},
        {"focus again", [](Sheet& s) { CHECK((DrawFocusRect(s, &kFocus) && DrawFocusRect(s, &kFocus))); }, ""},
        {"inverted", [&](Sheet& s) { CHECK(InvertRect(s, &inner)); }, ".WW/.WW"},
    };
    Check(cases, 9, 4);
}

TEST_CASE("edges are drawn in the system's colours and leave what they surround") {
    const Recoloured face(COLOR_BTNFACE, kBlue), shadow(COLOR_BTNSHADOW, kGreen), highlight(COLOR_BTNHIGHLIGHT, kWhite);
    const Recoloured dark(COLOR_3DDKSHADOW, kBlack), light(COLOR_3DLIGHT, kRed);
    const auto edge = [](UINT borders, UINT flags, const char* left = "0 0 6 5") {
        return [=](Sheet& sheet) {
            RECT rect{0, 0, 6, 5};
            CHECK(DrawEdge(sheet, &rect, borders, flags));
            CHECK(Text(rect) == left);
        };
    };
    const Case cases[] = {
        {"raised", edge(EDGE_RAISED, BF_RECT | BF_MIDDLE | BF_ADJUST, "2 2 4 3"), "RRRRR/RWWWG/RWBBG/RGGGG"},
        {"sunken", edge(EDGE_SUNKEN, BF_RECT), "GGGGGW/G...RW/G...RW/GRRRRW/WWWWWW"},
        {"etched", edge(EDGE_ETCHED, BF_TOPLEFT | BF_ADJUST, "2 2 6 5"), "GGGGGG/GWWWWW/GW/GW/GW"},
        {"soft", edge(BDR_RAISEDOUTER, BF_RECT | BF_SOFT), "WWWWW/W/W/W"},
        {"flat", edge(EDGE_RAISED, BF_BOTTOM | BF_FLAT), "///BBBBBB/GGGGGG"},
    };
    Check(cases, 8, 6);
}

TEST_CASE("pens tell what they are") {
    const std::tuple<HPEN, DWORD, UINT, LONG> pens[] = {
        {CreatePen(PS_SOLID, 3, kRed), OBJ_PEN, PS_SOLID, 3},
        {CreatePen(PS_DASH, -3, kRed), OBJ_PEN, PS_DASH, 3},
        {CreatePen(99, 1, kRed), OBJ_PEN, PS_SOLID, 1},
        {Extended(PS_GEOMETRIC | PS_ENDCAP_FLAT, 5), OBJ_EXTPEN, PS_GEOMETRIC | PS_ENDCAP_FLAT, 5},
        {Extended(PS_COSMETIC | PS_USERSTYLE, 1, {4, 7}), OBJ_EXTPEN, PS_USERSTYLE, 1},
    };
    for (const auto& [pen, type, style, width] : pens) {
        CAPTURE(style);
        CHECK(GetObjectType(pen) == type);
        union {
            LOGPEN plain;
            EXTLOGPEN extended;
            BYTE room[64];
        } told;
        const int size = GetObjectA(pen, sizeof told, &told);
        CHECK((GetObjectA(pen, 0, nullptr) == size && GetObjectA(pen, size - 1, &told) == 0));
        CHECK((type == OBJ_PEN ? told.plain.lopnStyle : told.extended.elpPenStyle) == style);
        CHECK((type == OBJ_PEN ? told.plain.lopnWidth.x : static_cast<LONG>(told.extended.elpWidth)) == width);
        CHECK((type == OBJ_PEN ? told.plain.lopnColor : told.extended.elpColor) == kRed);
        DeleteObject(pen);
    }
    // What draws nothing is one object.
    CHECK(CreatePen(PS_NULL, 4, kRed) == GetStockObject(NULL_PEN));
    CHECK(Extended(PS_GEOMETRIC | PS_NULL, 3) == GetStockObject(NULL_PEN));
    // What does not go together.
    const HPEN refused[] = {Extended(PS_COSMETIC, 2),
                            Extended(PS_GEOMETRIC | PS_ALTERNATE, 2),
                            Extended(PS_COSMETIC | PS_INSIDEFRAME, 1),
                            Extended(PS_COSMETIC | PS_USERSTYLE, 1),
                            Extended(PS_COSMETIC, 1, {1, 2}),
                            Extended(PS_COSMETIC, 1, {}, BS_HATCHED)};
    for (const HPEN pen : refused)
        CHECK(pen == nullptr);
}

TEST_CASE("a DIB is a pattern, too") {
    struct {
        BITMAPINFOHEADER header;
        DWORD pixels[4];
    } dib{DibInfo(2, -2, 32).header, {0xFF0000, 0x0000FF, 0x00FF00, 0}};
    Sheet sheet(6, 3);
    sheet.Use(CreateDIBPatternBrushPt(&dib, DIB_RGB_COLORS));
    SetBrushOrgEx(sheet, 1, 0, nullptr);
    PatBlt(sheet, 0, 0, 5, 3, PATCOPY);
    CHECK(sheet.Picture() == "BRBRB/.G.G/BRBRB");
    CHECK(CreateDIBPatternBrushPt(nullptr, DIB_RGB_COLORS) == nullptr);
}

TEST_CASE("calls that cannot draw say so") {
    const POINT point{1, 1};
    const DWORD one = 1;
    const Sheet sheet(4, 4);
    CHECK(!(LineTo(nullptr, 1, 1) || Rectangle(nullptr, 0, 0, 2, 2)));
    CHECK(GetLastError() == ERROR_INVALID_HANDLE);
    CHECK(!(Polyline(sheet, &point, 1) || Polygon(sheet, &point, 1) || PolyPolyline(sheet, &point, &one, 1) ||
            PolyBezier(sheet, &point, 1)));
    CHECK(sheet.Picture().empty());
    kel::test::WithEachCallFailing(ERROR_NOT_ENOUGH_MEMORY, [] {
        const Owned pen(CreatePen(PS_SOLID, 1, kRed));
        const Owned brush(CreateHatchBrush(HS_CROSS, kRed));
        CHECK((pen && brush) == !*kel::test::FaultedCall());
    });
}
