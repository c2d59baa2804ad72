#include "Drawing.h"

#include <functional>
#include <vector>

namespace {

constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kGreen = RGB(0, 255, 0);
constexpr COLORREF kBlue = RGB(0, 0, 255);

/// A black picture to draw on with a red pen and a blue brush on a green background.
class Sheet {
public:
    Sheet(int width, int height)
        : m_section(DibInfo(width, -height, 32)), m_memory(m_section.handle), m_width(width), m_height(height) {
        Use(CreatePen(PS_SOLID, 0, kRed));
        Use(CreateSolidBrush(kBlue));
        SetBkColor(m_memory, kGreen);
    }
    ~Sheet() {
        for (const int stock : {BLACK_PEN, WHITE_BRUSH})
            SelectObject(m_memory, GetStockObject(stock));
        for (const HGDIOBJ object : m_objects)
            DeleteObject(object);
    }

    operator HDC() const { return m_memory; }

    /// Selects an object and keeps it.
    void Use(HGDIOBJ object) {
        m_objects.push_back(object);
        SelectObject(m_memory, object);
    }
    void UseNothing() {
        SelectObject(m_memory, GetStockObject(NULL_PEN));
        SelectObject(m_memory, GetStockObject(NULL_BRUSH));
    }

    /// Its rows: R, G, B for the colours, W for inverted pixels; trailing dots are left out.
    std::string Picture() const {
        GdiFlush();
        std::string picture;
        for (int y = 0; y < m_height; ++y) {
            std::string row;
            for (int x = 0; x < m_width; ++x)
                row += Letter(reinterpret_cast<const DWORD*>(m_section.bytes)[y * m_width + x] & 0xFFFFFF);
            row.erase(row.find_last_not_of('.') + 1);
            picture += row + "/";
        }
        picture.erase(picture.find_last_not_of('/') + 1);
        return picture;
    }

private:
    static char Letter(DWORD pixel) {
        switch (pixel) {
        case 0:
            return '.';
        case 0xFF0000:
            return 'R';
        case 0x00FF00:
            return 'G';
        case 0x0000FF:
            return 'B';
        case 0xFFFFFF:
            return 'W';
        default:
            return '?';
        }
    }

    const Section m_section;
    const MemoryContext m_memory;
    const int m_width;
    const int m_height;
    std::vector<HGDIOBJ> m_objects;
};

HPEN Extended(DWORD style, DWORD width, std::vector<DWORD> dashes = {}, UINT brushStyle = BS_SOLID) {
    const LOGBRUSH brush{brushStyle, kRed, HS_VERTICAL};
    return ExtCreatePen(style, width, &brush, static_cast<DWORD>(dashes.size()),
                        dashes.empty() ? nullptr : dashes.data());
}

void Line(const Sheet& sheet, int x, int y, int toX, int toY) {
    MoveToEx(sheet, x, y, nullptr);
    LineTo(sheet, toX, toY);
}

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
             SetROP2(s, R2_XORPEN);
             const POINT points[] = {{0, 0}, {4, 0}, {4, 2}, {2, 2}, {2, -1}};
             Polyline(s, points, 5);
         },
         "RR.RR/..R.R/..RRR"},
        {"several",
         [](Sheet& s) {
             const POINT points[] = {{0, 0}, {3, 0}, {0, 2}, {2, 2}, {2, 0}};
             const DWORD counts[] = {2, 3};
             PolyPolyline(s, points, counts, 2);
         },
         "RRR/..R/RRR"},
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
        return [=](Sheet& sheet) {
            sheet.Use(CreatePen(style, 1, kRed));
            SetBkMode(sheet, mode);
            Line(sheet, 0, 0, 30, 0);
        };
    };
    const auto extended = [](DWORD style, DWORD width, std::vector<DWORD> dashes) {
        return [=](Sheet& sheet) {
            sheet.Use(Extended(style, width, dashes));
            Line(sheet, 0, 1, 20, 1);
        };
    };
    const Case cases[] = {
        {"dash", styled(PS_DASH, TRANSPARENT), "RRRRRRRRRRRRRRRRRR......RRRRRR"},
        {"dot", styled(PS_DOT, OPAQUE), "RRRGGGRRRGGGRRRGGGRRRGGGRRRGGG"},
        {"dash dot", styled(PS_DASHDOT, TRANSPARENT), "RRRRRRRRR......RRR......RRRRRR"},
        {"dash dot dot", styled(PS_DASHDOTDOT, OPAQUE), "RRRRRRRRRGGGRRRGGGRRRGGGRRRRRR"},
        {"own units of three", extended(PS_COSMETIC | PS_USERSTYLE, 1, {2, 1}), "/RRRRRR...RRRRRR...RR"},
        {"every other", extended(PS_COSMETIC | PS_ALTERNATE, 1, {}), "/R.R.R.R.R.R.R.R.R.R"},
        {"wide dots", extended(PS_GEOMETRIC | PS_DOT | PS_ENDCAP_FLAT, 3, {}),
         "RRR...RRR...RRR...RR/RRR...RRR...RRR...RR/RRR...RRR...RRR...RR"},
        {"goes on around corners",
         [](Sheet& s) {
             s.Use(CreatePen(PS_DOT, 0, kRed));
             SetBkMode(s, TRANSPARENT);
             const POINT points[] = {{0, 0}, {4, 0}, {4, 3}};
             Polyline(s, points, 3);
         },
         "RRR//....R"},
        {"frame from the upper right",
         [](Sheet& s) {
             s.Use(CreatePen(PS_DOT, 0, kRed));
             SetBkMode(s, TRANSPARENT);
             Rectangle(s, 0, 0, 9, 3);
         },
         "RRR...RRR/.BBBBBBBR/..RRR...R"},
    };
    Check(cases, 30, 3);
}

TEST_CASE("wide pens have ends and corners") {
    const auto line = [](DWORD cap) {
        return [=](Sheet& sheet) {
            sheet.Use(Extended(PS_GEOMETRIC | cap, 4));
            Line(sheet, 3, 2, 7, 2);
        };
    };
    const auto corner = [](DWORD join) {
        return [=](Sheet& sheet) {
            sheet.Use(Extended(PS_GEOMETRIC | PS_ENDCAP_FLAT | join, 2));
            const POINT points[] = {{1, 4}, {1, 1}, {6, 1}};
            Polyline(sheet, points, 3);
        };
    };
    const Case cases[] = {
        {"round", line(PS_ENDCAP_ROUND), "..RRRRRR/.RRRRRRRR/.RRRRRRRR/..RRRRRR"},
        {"square", line(PS_ENDCAP_SQUARE), ".RRRRRRRR/.RRRRRRRR/.RRRRRRRR/.RRRRRRRR"},
        {"flat", line(PS_ENDCAP_FLAT), "...RRRR/...RRRR/...RRRR/...RRRR"},
        {"mitred", corner(PS_JOIN_MITER), "RRRRRR/RRRRRR/RR/RR"},
        {"cut", corner(PS_JOIN_BEVEL), ".RRRRR/RRRRRR/RR/RR"},
        {"hatched",
         [](Sheet& s) {
             SetBkMode(s, TRANSPARENT);
             s.Use(Extended(PS_GEOMETRIC | PS_ENDCAP_FLAT, 2, {}, BS_HATCHED));
             Line(s, 0, 1, 14, 1);
         },
         "....R.......R/....R.......R"},
        {"around",
         [](Sheet& s) {
             s.Use(CreatePen(PS_SOLID, 3, kRed));
             Rectangle(s, 2, 1, 9, 5);
         },
         "..RRRRRRR/.RRRRRRRRR/.RRRRRRRRR/.RRRRRRRRR/.RRRRRRRRR"},
        {"inside",
         [](Sheet& s) {
             s.Use(CreatePen(PS_INSIDEFRAME, 2, kRed));
             Rectangle(s, 1, 0, 8, 5);
         },
         ".RRRRRRR/.RRRRRRR/.RRBBBRR/.RRRRRRR/.RRRRRRR"},
    };
    Check(cases, 14, 5);
}

TEST_CASE("shapes are filled and outlined without their right and bottom edges") {
    const POINT star[] = {{0, 2}, {8, 2}, {1, 7}, {4, 0}, {7, 7}};
    const Case cases[] = {
        {"rectangle", [](Sheet& s) { Rectangle(s, 6, 4, 1, 0); }, ".RRRRR/.RBBBR/.RBBBR/.RRRRR"},
        {"rectangle without an inside", [](Sheet& s) { Rectangle(s, 1, 1, 3, 3); }, "/.RR/.RR"},
        {"no rectangle", [](Sheet& s) { Rectangle(s, 1, 1, 1, 5); }, ""},
        {"rectangle without pen",
         [](Sheet& s) {
             SelectObject(s, GetStockObject(NULL_PEN));
             Rectangle(s, 1, 0, 5, 3);
         },
         ".BBB/.BBB"},
        {"nothing at all",
         [](Sheet& s) {
             s.UseNothing();
             Rectangle(s, 1, 0, 5, 3);
             Ellipse(s, 0, 0, 8, 8);
         },
         ""},
        {"ellipse", [](Sheet& s) { Ellipse(s, 0, 0, 8, 8); },
         "..RRRR/.RBBBBR/RBBBBBBR/RBBBBBBR/RBBBBBBR/RBBBBBBR/.RBBBBR/..RRRR"},
        {"round corners", [](Sheet& s) { RoundRect(s, 0, 0, 9, 6, 4, 4); },
         ".RRRRRRR/RBBBBBBBR/RBBBBBBBR/RBBBBBBBR/RBBBBBBBR/.RRRRRRR"},
        {"alternate",
         [&](Sheet& s) {
             SelectObject(s, GetStockObject(NULL_PEN));
             Polygon(s, star, 5);
         },
         "/....B/BBBB.BBB/..B...B//..BB.BB/..B...B"},
        {"XOR over the inside",
         [](Sheet& s) {
             SetROP2(s, R2_XORPEN);
             const POINT square[] = {{0, 0}, {3, 0}, {3, 3}, {0, 3}};
             Polygon(s, square, 4);
         },
         "???R/?BBR/?BBR/RRRR"},
    };
    Check(cases, 9, 8);
}

TEST_CASE("hatches leave the space between them alone where the background is transparent") {
    const auto hatched = [](int mode, int rasterMode) {
        return [=](Sheet& sheet) {
            SelectObject(sheet, GetStockObject(NULL_PEN));
            sheet.Use(CreateHatchBrush(HS_FDIAGONAL, kRed));
            SetBkMode(sheet, mode);
            SetROP2(sheet, rasterMode);
            Rectangle(sheet, 0, 0, 9, 3);
            Rectangle(sheet, 4, 0, 9, 3);
        };
    };
    const Case cases[] = {
        {"opaque", hatched(OPAQUE, R2_COPYPEN), "RGGGGGGG/GRGGGGGG"},
        {"transparent", hatched(TRANSPARENT, R2_COPYPEN), "R/.R"},
        {"transparent and inverted", hatched(TRANSPARENT, R2_NOT), "W/.W"},
        {"filled",
         [](Sheet& s) {
             s.Use(CreateHatchBrush(HS_VERTICAL, kRed));
             SetBkMode(s, TRANSPARENT);
             PatBlt(s, 0, 0, 9, 1, PATCOPY);
             const RECT rect{3, 1, 9, 2};
             FillRect(s, &rect, static_cast<HBRUSH>(GetCurrentObject(s, OBJ_BRUSH)));
         },
         "....R/....R"},
    };
    Check(cases, 9, 3);
}

TEST_CASE("frames take no notice of pen and mode") {
    const Case cases[] = {
        {"frame",
         [](Sheet& s) {
             SetROP2(s, R2_BLACK);
             const RECT rect{0, 0, 5, 3};
             CHECK(FrameRect(s, &rect, static_cast<HBRUSH>(GetCurrentObject(s, OBJ_BRUSH))));
             const RECT empty{6, 0, 6, 3};
             CHECK(!FrameRect(s, &empty, static_cast<HBRUSH>(GetCurrentObject(s, OBJ_BRUSH))));
         },
         "BBBBB/B...B/BBBBB"},
        {"focus",
         [](Sheet& s) {
             const RECT rect{0, 0, 5, 4};
             CHECK(DrawFocusRect(s, &rect));
         },
         "W.W.W//W...W/.W.W"},
        {"focus again",
         [](Sheet& s) {
             const RECT rect{0, 0, 5, 4};
             CHECK((DrawFocusRect(s, &rect) && DrawFocusRect(s, &rect)));
         },
         ""},
        {"inverted",
         [](Sheet& s) {
             const RECT rect{1, 0, 3, 2};
             CHECK(InvertRect(s, &rect));
         },
         ".WW/.WW"},
    };
    Check(cases, 9, 4);
}

TEST_CASE("edges are drawn in the system's colours and leave what they surround") {
    const INT indices[] = {COLOR_BTNFACE, COLOR_BTNSHADOW, COLOR_BTNHIGHLIGHT, COLOR_3DDKSHADOW, COLOR_3DLIGHT};
    COLORREF before[5];
    for (int i = 0; i < 5; ++i)
        before[i] = GetSysColor(indices[i]);
    const COLORREF colours[] = {kBlue, kGreen, RGB(255, 255, 255), RGB(0, 0, 0), kRed};
    REQUIRE(SetSysColors(5, indices, colours));
    const auto edge = [](UINT borders, UINT flags, RECT left) {
        return [=](Sheet& sheet) {
            RECT rect{0, 0, 6, 5};
            CHECK(DrawEdge(sheet, &rect, borders, flags));
            CHECK(EqualRect(&rect, &left));
        };
    };
    const Case cases[] = {
        {"raised", edge(EDGE_RAISED, BF_RECT | BF_MIDDLE | BF_ADJUST, {2, 2, 4, 3}), "RRRRR/RWWWG/RWBBG/RGGGG"},
        {"sunken", edge(EDGE_SUNKEN, BF_RECT, {0, 0, 6, 5}), "GGGGGW/G...RW/G...RW/GRRRRW/WWWWWW"},
        {"etched", edge(EDGE_ETCHED, BF_TOPLEFT | BF_ADJUST, {2, 2, 6, 5}), "GGGGGG/GWWWWW/GW/GW/GW"},
        {"soft", edge(BDR_RAISEDOUTER, BF_RECT | BF_SOFT, {0, 0, 6, 5}), "WWWWW/W/W/W"},
        {"flat", edge(EDGE_RAISED, BF_BOTTOM | BF_FLAT, {0, 0, 6, 5}), "///BBBBBB/GGGGGG"},
    };
    Check(cases, 8, 6);
    REQUIRE(SetSysColors(5, indices, before));
}

TEST_CASE("pens and brushes tell what they are") {
    const struct {
        HPEN pen;
        DWORD type;
        UINT style;
        LONG width;
    } pens[] = {
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
        CHECK((type == OBJ_PEN || told.extended.elpColor == kRed));
        DeleteObject(pen);
    }
    // What draws nothing is one object.
    const LOGBRUSH hollow{BS_NULL, 1, 2};
    CHECK(CreatePen(PS_NULL, 4, kRed) == GetStockObject(NULL_PEN));
    CHECK(Extended(PS_GEOMETRIC | PS_NULL, 3) == GetStockObject(NULL_PEN));
    CHECK(CreateBrushIndirect(&hollow) == GetStockObject(NULL_BRUSH));
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
        const HPEN pen = CreatePen(PS_SOLID, 1, kRed);
        const HBRUSH brush = CreateHatchBrush(HS_CROSS, kRed);
        CHECK((pen && brush) == !*kel::test::FaultedCall());
        DeleteObject(pen);
        DeleteObject(brush);
    });
}
