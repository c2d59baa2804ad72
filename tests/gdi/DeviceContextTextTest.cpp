#include "tests/gdi/Canvas.h"
#include "tests/support/Faults.h"
#include "tests/support/Text.h"

#include <cwctype>

namespace {

constexpr RECT kBox = {2, 3, 90, 40};
const INT kAdvances[] = {20, 20, 20, 20, 20, 20, 20, 20, 20, 20, 20, 20};
int g_tabs[] = {30, 70};

// Each draws the text by the wrapper or by the narrow call itself; the results are the same, and the pictures.
const struct {
    const char* name;
    long (*draw)(DC& dc, const WideString& text);
    long (*expected)(HDC dc, const std::string& text);
} kDrawings[] = {
    {"DrawText",
     [](DC& dc, const WideString& text) {
         RECT box = kBox;
         return long{dc.DrawTextA(text, box, DT_SINGLELINE | DT_END_ELLIPSIS | DT_MODIFYSTRING | DT_VCENTER)};
     },
     [](HDC dc, const std::string& text) {
         RECT box = kBox;
         return long{DrawTextA(dc, text.c_str(), static_cast<int>(text.size()), &box,
                               DT_SINGLELINE | DT_END_ELLIPSIS | DT_VCENTER)};
     }},
    {"DrawText, measured",
     [](DC& dc, const WideString& text) {
         RECT box = kBox;
         dc.DrawTextA(text, box, DT_CALCRECT);
         return long{box.right};
     },
     [](HDC dc, const std::string& text) {
         RECT box = kBox;
         DrawTextA(dc, text.c_str(), static_cast<int>(text.size()), &box, DT_CALCRECT);
         return long{box.right};
     }},
    {"ExtTextOut",
     [](DC& dc, const WideString& text) {
         return long{dc.ExtTextOutA(5, 6, ETO_OPAQUE | ETO_CLIPPED, kBox, text, nullptr)};
     },
     [](HDC dc, const std::string& text) {
         return long{ExtTextOutA(dc, 5, 6, ETO_OPAQUE | ETO_CLIPPED, &kBox, text.c_str(),
                                 static_cast<UINT>(text.size()), nullptr)};
     }},
    {"ExtTextOut with advances",
     [](DC& dc, const WideString& text) { return long{dc.ExtTextOutA(5, 6, 0, kBox, text.substr(0, 4), kAdvances)}; },
     [](HDC dc, const std::string& text) {
         const std::string start = StdW2A(StdA2W(text).substr(0, 4));
         return long{ExtTextOutA(dc, 5, 6, 0, &kBox, start.c_str(), static_cast<UINT>(start.size()), kAdvances)};
     }},
    {"TabbedTextOut", [](DC& dc, const WideString& text) { return dc.TabbedTextOutA(1, 2, text, 2, g_tabs, 5); },
     [](HDC dc, const std::string& text) {
         return long{TabbedTextOutA(dc, 1, 2, text.c_str(), static_cast<int>(text.size()), 2, g_tabs, 5)};
     }},
    {"GetTabbedTextExtent",
     [](DC& dc, const WideString& text) {
         const SIZE size = dc.GetTabbedTextExtentA(text, 1, g_tabs);
         return long{size.cy << 16 | size.cx};
     },
     [](HDC dc, const std::string& text) {
         return static_cast<long>(GetTabbedTextExtentA(dc, text.c_str(), static_cast<int>(text.size()), 1, g_tabs));
     }},
    {"DrawState",
     [](DC& dc, const WideString& text) {
         return long{dc.DrawStateA({4, 5}, {}, text, DSS_DISABLED, true, nullptr)};
     },
     [](HDC dc, const std::string& text) {
         return long{DrawStateA(dc, nullptr, nullptr, reinterpret_cast<LPARAM>(text.c_str()), 0, 4, 5, 0, 0,
                                DST_PREFIXTEXT | DSS_DISABLED) != 0};
     }},
    {"DrawState as it is",
     [](DC& dc, const WideString& text) {
         return long{dc.DrawStateA({4, 5}, {60, 20}, text, DSS_NORMAL, false, nullptr)};
     },
     [](HDC dc, const std::string& text) {
         return long{
             DrawStateA(dc, nullptr, nullptr, reinterpret_cast<LPARAM>(text.c_str()), 0, 4, 5, 60, 20, DST_TEXT) != 0};
     }},
};

struct Page : Canvas {
    Page() : Canvas(120, 44), font(SelectObject(dc.m_hDC, arial.m_hFont)) { dc.FillSolidRect(0, 0, 120, 44, 0xFFFFFF); }
    ~Page() { SelectObject(dc.m_hDC, font); }
    Font arial{LOGFONTA{-14, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, "Arial"}};
    HGDIOBJ font;
};

ABC WidthsOf(HDC dc, unsigned short ch) {
    ABC abc = {};
    CHECK(GetCharABCWidthsW(dc, ch, ch, &abc));
    return iswspace(ch) ? ABC{0, abc.abcA + abc.abcB + abc.abcC, 0} : abc;
}

} // namespace

TEST_CASE("wide texts are drawn and measured as the narrow calls do it with the converted texts") {
    for (const auto& text :
         {u"Ein l\u00E4ngerer &Text\tmit Tabulator"_w, u""_w, u"cut\0off"_w, u"\u65E5\u672C \u00E9"_w}) {
        for (const auto& drawing : kDrawings) {
            CAPTURE(text);
            const std::string name = drawing.name;
            CAPTURE(name);
            Page page, expected;
            const long result = drawing.draw(page.dc, text);
            CHECK(result == drawing.expected(expected.dc.m_hDC, StdW2A(text)));
            CHECK(page.Pixels() == expected.Pixels());
        }
        Page page;
        SIZE size = {};
        const auto* const units = reinterpret_cast<const WCHAR*>(text.c_str());
        CHECK(GetTextExtentPoint32W(page.dc.m_hDC, units, static_cast<int>(text.size()), &size));
        CHECK((page.dc.GetTextExtent(text).cx == size.cx && page.dc.GetTextExtent(text).cy == size.cy));
    }
}

TEST_CASE("the name of the face is read whole") {
    Page page;
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
            ABC expected = WidthsOf(dc.m_hDC, ch), abc = {};
            CHECK((dc.GetCharABCWidth(ch, abc) && abc.abcA == expected.abcA && abc.abcB == expected.abcB &&
                   abc.abcC == expected.abcC));
            width += abc.abcA + static_cast<int>(abc.abcB) + abc.abcC;
        }
        width -= WidthsOf(dc.m_hDC, text.front()).abcA + WidthsOf(dc.m_hDC, text.back()).abcC;
        CHECK(dc.GetExactTextWidth(text) == width);
    }
}

TEST_CASE("a character's width is known whichever call fails") {
    Page page;
    const ABC whole = WidthsOf(page.dc.m_hDC, 'f');
    const int advance = whole.abcA + static_cast<int>(whole.abcB) + whole.abcC;
    kel::test::WithEachCallFailing(ERROR_NOT_ENOUGH_MEMORY, [&] {
        ABC abc = {1, 2, 3};
        CHECK(page.dc.GetCharABCWidth('f', abc));
        CHECK(abc.abcA + static_cast<int>(abc.abcB) + abc.abcC == advance);
    });
}
