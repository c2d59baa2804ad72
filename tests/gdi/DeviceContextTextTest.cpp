#include "tests/gdi/Canvas.h"
#include "tests/support/Text.h"

#include <cwctype>
#include <functional>

namespace {

constexpr RECT kBox = {2, 3, 90, 40};
constexpr POINT kAt = {4, 5};
constexpr SIZE kSize = {60, 20};
const std::vector<INT> g_advances(64, 20);
int g_tabs[] = {30, 70};
constexpr UINT kLine = DT_SINGLELINE | DT_END_ELLIPSIS | DT_VCENTER;
constexpr UINT kOptions = ETO_OPAQUE | ETO_CLIPPED;

bool DrawState(HDC dc, const char* text, SIZE size, UINT flags) {
    return DrawStateA(dc, nullptr, nullptr, reinterpret_cast<LPARAM>(text), 0, kAt.x, kAt.y, size.cx, size.cy, flags) !=
           0;
}

// Each draws the text by the wrapper or by the narrow call itself; the results are the same, and the pictures.
const struct {
    const char* name;
    std::function<long(DC& dc, const WideString& text, RECT box)> byWrapper;
    std::function<long(HDC dc, const char* text, int count, RECT box)> byCall;
} kDrawings[] = {
    {"DrawText", [](DC& dc, auto& text, RECT box) { return dc.DrawTextA(text, box, kLine | DT_MODIFYSTRING); },
     [](HDC dc, auto text, int count, RECT box) { return DrawTextA(dc, text, count, &box, kLine); }},
    {"DrawText, measured",
     [](DC& dc, auto& text, RECT box) { return dc.DrawTextA(text, box, DT_CALCRECT) << 16 | box.right; },
     [](HDC dc, auto text, int count, RECT box) {
         return DrawTextA(dc, text, count, &box, DT_CALCRECT) << 16 | box.right;
     }},
    {"ExtTextOut",
     [](DC& dc, auto& text, RECT box) { return dc.ExtTextOutA(5, 6, kOptions, box, text, g_advances.data()); },
     [](HDC dc, auto text, int count, RECT box) {
         return ExtTextOutA(dc, 5, 6, kOptions, &box, text, static_cast<UINT>(count), g_advances.data());
     }},
    {"TabbedTextOut", [](DC& dc, auto& text, RECT) { return dc.TabbedTextOutA(1, 2, text, 2, g_tabs, 5); },
     [](HDC dc, auto text, int count, RECT) { return TabbedTextOutA(dc, 1, 2, text, count, 2, g_tabs, 5); }},
    {"GetTabbedTextExtent",
     [](DC& dc, auto& text, RECT) {
         const SIZE size = dc.GetTabbedTextExtentA(text, 1, g_tabs);
         return size.cy << 16 | size.cx;
     },
     [](HDC dc, auto text, int count, RECT) { return GetTabbedTextExtentA(dc, text, count, 1, g_tabs); }},
    {"DrawState", [](DC& dc, auto& text, RECT) { return dc.DrawStateA(kAt, {}, text, DSS_DISABLED, true, nullptr); },
     [](HDC dc, auto text, int, RECT) { return DrawState(dc, text, {}, DST_PREFIXTEXT | DSS_DISABLED); }},
    {"DrawState as it is",
     [](DC& dc, auto& text, RECT) { return dc.DrawStateA(kAt, kSize, text, DSS_NORMAL, false, nullptr); },
     [](HDC dc, auto text, int, RECT) { return DrawState(dc, text, kSize, DST_TEXT); }},
};

struct Page : Canvas {
    Page() : Canvas(120, 44), font(SelectObject(dc.m_hDC, arial.m_hFont)) { dc.FillSolidRect(0, 0, 120, 44, 0xFFFFFF); }
    ~Page() { SelectObject(dc.m_hDC, font); }
    Font arial{Arial(-14)};
    HGDIOBJ font;
};

int AdvanceOf(const ABC& abc) {
    return abc.abcA + static_cast<int>(abc.abcB) + abc.abcC;
}

ABC WidthsOf(HDC dc, unsigned short ch) {
    ABC abc = {};
    CHECK(GetCharABCWidthsW(dc, ch, ch, &abc));
    return iswspace(ch) ? ABC{0, static_cast<UINT>(AdvanceOf(abc)), 0} : abc;
}

} // namespace

TEST_CASE("wide texts are drawn and measured as the narrow calls do it with the converted texts") {
    for (const auto& text :
         {u"Ein l\u00E4ngerer &Text\tmit Tabulator"_w, u""_w, u"cut\0off"_w, u"\u65E5\u672C \u00E9"_w}) {
        CAPTURE(text);
        const std::string narrow = StdW2A(text);
        for (const auto& drawing : kDrawings) {
            CAPTURE(std::string(drawing.name));
            Page page, expected;
            const long result = drawing.byWrapper(page.dc, text, kBox);
            CHECK(result == drawing.byCall(expected.dc.m_hDC, narrow.c_str(), static_cast<int>(narrow.size()), kBox));
            CHECK(page.Pixels() == expected.Pixels());
        }
        Page page;
        SIZE size = {};
        const auto* const units = reinterpret_cast<const WCHAR*>(text.c_str());
        CHECK(GetTextExtentPoint32W(page.dc.m_hDC, units, static_cast<int>(text.size()), &size));
        CHECK(Text(page.dc.GetTextExtent(text)) == Text(size));
    }
}

TEST_CASE("the name of the face is read whole") {
    const Page page;
    char raw[LF_FACESIZE] = {};
    WideString face;
    CHECK(page.dc.GetTextFaceA(face) == GetTextFaceA(page.dc.m_hDC, sizeof raw, raw));
    CHECK((StdW2A(face) == raw && !face.empty()));
}

TEST_CASE("the ink of a text lies between its first and its last character's") {
    Page page;
    DC& dc = page.dc;
    CHECK((dc.GetExactTextWidth({}) == 0 && page.At(0, 0) == 0xFFFFFF));
    for (const auto& text : {u"f"_w, u" "_w, u"  "_w, u"jf"_w, u" j "_w, u"Waffel, j\u00E4h\tf"_w}) {
        CAPTURE(text);
        int width = 0;
        for (const unsigned short ch : text) {
            const ABC expected = WidthsOf(dc.m_hDC, ch);
            ABC abc = {};
            CHECK((dc.GetCharABCWidth(ch, abc) && abc == expected));
            width += AdvanceOf(abc);
        }
        width -= WidthsOf(dc.m_hDC, text.front()).abcA + WidthsOf(dc.m_hDC, text.back()).abcC;
        CHECK(dc.GetExactTextWidth(text) == width);
    }
}

TEST_CASE("a character's width is known whichever call fails") {
    Page page;
    const int advance = AdvanceOf(WidthsOf(page.dc.m_hDC, 'f'));
    kel::test::WithEachCallFailing(ERROR_NOT_ENOUGH_MEMORY, [&] {
        ABC abc = {1, 2, 3};
        CHECK((page.dc.GetCharABCWidth('f', abc) && AdvanceOf(abc) == advance));
    });
}
