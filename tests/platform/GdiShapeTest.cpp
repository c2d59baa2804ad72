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

/// What is drawn, and the picture it makes.
struct Case {
    const char* name;
    std::function<void(Sheet&)> draw;
    const char* picture;
};

void Check(std::initializer_list<Case> cases) {
    for (const auto& [name, draw, picture] : cases) {
        CAPTURE(std::string(name));
        Sheet sheet(30, 8);
        draw(sheet);
        CHECK(sheet.Picture() == picture);
    }
}

} // namespace

TEST_CASE("lines pass the pixels they leave the diamonds of, but for the last one") {
    Check({
        {"left", [](Sheet& s) { Line(s, 4, 0, 1, 0); }, "..RRR"},
        {"no length", [](Sheet& s) { Line(s, 3, 1, 3, 1); }, ""},
        {"halves go up", [](Sheet& s) { Line(s, 0, 0, 4, 2); }, "RR/..RR"},
        {"and up again", [](Sheet& s) { Line(s, 4, 2, 0, 0); }, ".R/..RR/....R"},
        {"halves go left", [](Sheet& s) { Line(s, 2, 0, 0, 4); }, "..R/.R/.R/R"},
        {"from far away", [](Sheet& s) { Line(s, 1, -1000000, 1, 1000000); }, ".R/.R/.R/.R/.R/.R/.R/.R"},
        {"XOR meets itself",
         [](Sheet& s) {
             Lines(s.Rop(R2_XORPEN), {{0, 0}, {4, 0}, {4, 2}, {2, 2}, {2, -1}});
         },
         "RR.RR/..R.R/..RRR"},
        {"several", [](Sheet& s) { PolyPolyline(s, kTwoLines, kTwoCounts, 2); }, "RRR/..R/RRR"},
    });
}

TEST_CASE("styled pens leave gaps, in the background colour unless that is transparent") {
    const auto styled = [](int style, int mode) {
        return [=](Sheet& s) { Line(s.Use(CreatePen(style, 1, kRed)).Back(mode), 0, 0, 30, 0); };
    };
    const auto extended = [](DWORD style, DWORD width, std::vector<DWORD> dashes = {}) {
        return [=](Sheet& s) { Line(s.Use(Extended(style, width, dashes)), 0, 1, 20, 1); };
    };
    Check({
        {"dash", styled(PS_DASH, TRANSPARENT), "RRRRRRRRRRRRRRRRRR......RRRRRR"},
        {"dash dot", styled(PS_DASHDOT, TRANSPARENT), "RRRRRRRRR......RRR......RRRRRR"},
        {"dash dot dot", styled(PS_DASHDOTDOT, OPAQUE), "RRRRRRRRRGGGRRRGGGRRRGGGRRRRRR"},
        {"own units of three", extended(PS_COSMETIC | PS_USERSTYLE, 1, {2, 1}), "/RRRRRR...RRRRRR...RR"},
        {"every other", extended(PS_COSMETIC | PS_ALTERNATE, 1), "/R.R.R.R.R.R.R.R.R.R"},
        {"wide dots", extended(PS_GEOMETRIC | PS_DOT | PS_ENDCAP_FLAT, 3),
         "RRR...RRR...RRR...RR/RRR...RRR...RRR...RR/RRR...RRR...RRR...RR"},
        {"goes on around corners, from the upper right",
         [](Sheet& s) { Rectangle(s.Use(CreatePen(PS_DOT, 0, kRed)).Back(TRANSPARENT), 0, 0, 9, 3); },
         "RRR...RRR/.BBBBBBBR/..RRR...R"},
    });
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
    Check({
        {"round", line(PS_ENDCAP_ROUND), "..RRRRRR/.RRRRRRRR/.RRRRRRRR/..RRRRRR"},
        {"square", line(PS_ENDCAP_SQUARE), ".RRRRRRRR/.RRRRRRRR/.RRRRRRRR/.RRRRRRRR"},
        {"flat", line(PS_ENDCAP_FLAT), "...RRRR/...RRRR/...RRRR/...RRRR"},
        {"mitred", corner(PS_JOIN_MITER), "RRRRRR/RRRRRR/RR/RR"},
        {"cut", corner(PS_JOIN_BEVEL), ".RRRRR/RRRRRR/RR/RR"},
        {"hatched", [=](Sheet& s) { Line(s.Use(hatched).Back(TRANSPARENT), 0, 1, 14, 1); },
         "....R.......R/....R.......R"},
        {"around", [](Sheet& s) { Rectangle(s.Use(CreatePen(PS_SOLID, 3, kRed)), 2, 1, 9, 5); },
         "..RRRRRRR/.RRRRRRRRR/.RRRRRRRRR/.RRRRRRRRR/.RRRRRRRRR/..RRRRRRR"},
        {"inside", [](Sheet& s) { Rectangle(s.Use(CreatePen(PS_INSIDEFRAME, 2, kRed)), 1, 0, 8, 5); },
         ".RRRRRRR/.RRRRRRR/.RRBBBRR/.RRRRRRR/.RRRRRRR"},
    });
}

TEST_CASE("shapes are filled and outlined without their right and bottom edges") {
    const HGDIOBJ noPen = GetStockObject(NULL_PEN), noBrush = GetStockObject(NULL_BRUSH);
    const auto hatched = [&](int mode, int rasterMode) {
        return [=](Sheet& s) {
            s.Use(noPen).Use(CreateHatchBrush(HS_FDIAGONAL, kRed)).Back(mode).Rop(rasterMode);
            Rectangle(s, 0, 0, 9, 3);
            Rectangle(s, 4, 0, 9, 3);
        };
    };
    Check({
        {"rectangle", [](Sheet& s) { Rectangle(s, 6, 4, 1, 0); }, ".RRRRR/.RBBBR/.RBBBR/.RRRRR"},
        {"no rectangle", [](Sheet& s) { Rectangle(s, 1, 1, 1, 5); }, ""},
        {"rectangle without pen", [&](Sheet& s) { Rectangle(s.Use(noPen), 1, 0, 5, 3); }, ".BBB/.BBB"},
        {"ellipse without both", [&](Sheet& s) { Ellipse(s.Use(noPen).Use(noBrush), 0, 0, 8, 8); }, ""},
        {"ellipse", [](Sheet& s) { Ellipse(s, 0, 0, 8, 8); },
         "..RRRR/.RBBBBR/RBBBBBBR/RBBBBBBR/RBBBBBBR/RBBBBBBR/.RBBBBR/..RRRR"},
        {"round corners", [](Sheet& s) { RoundRect(s, 0, 0, 9, 6, 4, 4); },
         ".RRRRRRR/RBBBBBBBR/RBBBBBBBR/RBBBBBBBR/RBBBBBBBR/.RRRRRRR"},
        {"alternate", [&](Sheet& s) { Polygon(s.Use(noPen), kStar, 5); }, "/....B/BBBB.BBB/..B...B//..BB.BB/..B...B"},
        {"XOR over the inside", [](Sheet& s) { Polygon(s.Rop(R2_XORPEN), kSquare, 4); }, "MMMR/MBBR/MBBR/RRRR"},
        {"opaque hatch", hatched(OPAQUE, R2_COPYPEN), "RGGGGGGG/GRGGGGGG"},
        {"transparent hatch", hatched(TRANSPARENT, R2_COPYPEN), "R/.R"},
        {"transparent and inverted", hatched(TRANSPARENT, R2_NOT), "W/.W"},
        {"filled with a hatch",
         [](Sheet& s) {
             PatBlt(s.Use(CreateHatchBrush(HS_VERTICAL, kRed)).Back(TRANSPARENT), 0, 0, 9, 1, PATCOPY);
             const RECT rect{3, 1, 9, 2};
             FillRect(s, &rect, BrushIn(s));
         },
         "....R/....R"},
    });
}

TEST_CASE("frames take no notice of pen and mode") {
    Check({
        {"frame", [](Sheet& s) { CHECK(FrameRect(s.Rop(R2_BLACK), &kFrame, BrushIn(s))); }, "BBBBB/B...B/BBBBB"},
        {"focus", [](Sheet& s) { CHECK(DrawFocusRect(s, &kFrame)); }, "W.W.W//W.W.W"},
        {"focus again", [](Sheet& s) { CHECK((DrawFocusRect(s, &kFrame) && DrawFocusRect(s, &kFrame))); }, ""},
        {"inverted", [](Sheet& s) { CHECK(InvertRect(s, &kFrame)); }, "WWWWW/WWWWW/WWWWW"},
    });
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
    Check({
        {"raised", edge(EDGE_RAISED, BF_RECT | BF_MIDDLE | BF_ADJUST, "2 2 4 3"), "RRRRR/RWWWG/RWBBG/RGGGG"},
        {"sunken", edge(EDGE_SUNKEN, BF_RECT), "GGGGGW/G...RW/G...RW/GRRRRW/WWWWWW"},
        {"etched", edge(EDGE_ETCHED, BF_TOPLEFT | BF_ADJUST, "2 2 6 5"), "GGGGGG/GWWWWW/GW/GW/GW"},
        {"soft", edge(BDR_RAISEDOUTER, BF_RECT | BF_SOFT), "WWWWW/W/W/W"},
        {"flat", edge(EDGE_RAISED, BF_BOTTOM | BF_FLAT), "///BBBBBB/GGGGGG"},
    });
}

TEST_CASE("pens tell what they are") {
    const Owned plain(CreatePen(PS_DASH, -3, kRed));
    const LOGPEN told = Told<LOGPEN>(plain);
    CHECK((told.lopnStyle == PS_DASH && told.lopnWidth.x == 3 && told.lopnColor == kRed));
    const std::tuple<HPEN, DWORD, DWORD> extended[] = {
        {Extended(PS_GEOMETRIC | PS_ENDCAP_FLAT, 5), PS_GEOMETRIC | PS_ENDCAP_FLAT, 5},
        {Extended(PS_COSMETIC | PS_USERSTYLE, 1, {4, 7}), PS_COSMETIC | PS_USERSTYLE, 1}};
    for (const auto& [pen, style, width] : extended) {
        struct {
            EXTLOGPEN pen;
            DWORD dashes[2];
        } description{};
        CHECK((GetObjectType(pen) == OBJ_EXTPEN && GetObjectA(pen, sizeof description, &description) != 0));
        CHECK((description.pen.elpPenStyle == style && description.pen.elpWidth == width));
        CHECK(description.pen.elpColor == kRed);
        DeleteObject(pen);
    }
    // What draws nothing is one object.
    CHECK(CreatePen(PS_NULL, 4, kRed) == GetStockObject(NULL_PEN));
    CHECK(Extended(PS_GEOMETRIC | PS_NULL, 3) == GetStockObject(NULL_PEN));
    // What does not go together.
    for (const HPEN pen : {Extended(PS_COSMETIC, 2), Extended(PS_GEOMETRIC | PS_ALTERNATE, 2),
                           Extended(PS_COSMETIC | PS_USERSTYLE, 1), Extended(PS_COSMETIC, 1, {}, BS_HATCHED)})
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
