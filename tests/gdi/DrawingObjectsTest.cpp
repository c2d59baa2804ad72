#include "tests/gdi/Kinds.h"
#include "tests/support/Faults.h"
#include "tests/support/Text.h"

#include <algorithm>
#include <array>
#include <map>
#include <random>
#include <set>

namespace {

bool IsAlive(HGDIOBJ object) {
    return GetObjectType(object) != 0;
}

} // namespace

TEST_CASE_TEMPLATE("there is one object for each description in use, whatever its owners do", Kind, Brushes, Pens,
                   Fonts) {
    enum { None = -1, FromOutside = 99 };
    const std::size_t before = kel::test::OpenHandles();
    const auto foreign = Kind::Foreign(FromOutside);
    {
        std::mt19937 random(1);
        std::array<typename Kind::Wrapper, 12> owners;
        std::array<int, 12> numbers;
        numbers.fill(None);
        std::set<HGDIOBJ> seen;
        for (int step = 0; step != 3000; ++step) {
            CAPTURE(step);
            const std::size_t one = random() % owners.size(), other = random() % owners.size();
            switch (random() % 5) {
            case 0:
                CHECK(Kind::Create(owners[one], numbers[one] = static_cast<int>(random() % 8 + 1)));
                break;
            case 1: // also to itself
                owners[one] = owners[other];
                numbers[one] = numbers[other];
                break;
            case 2: {
                const typename Kind::Wrapper copy(owners[one]);
                CHECK(Kind::HandleOf(copy) == Kind::HandleOf(owners[one]));
                break;
            }
            case 3:
                CHECK(owners[one].Attach(foreign));
                numbers[one] = FromOutside;
                break;
            default:
                owners[one].Destroy();
                numbers[one] = None;
            }
            std::map<int, HGDIOBJ> used;
            for (std::size_t i = 0; i != owners.size(); ++i) {
                const auto handle = Kind::HandleOf(owners[i]);
                CHECK((handle == nullptr ? None : Kind::NumberOf(handle)) == numbers[i]);
                if (handle != nullptr)
                    CHECK(used.emplace(numbers[i], handle).first->second == handle);
                if (handle != nullptr && handle != foreign)
                    seen.insert(handle);
            }
            used.erase(FromOutside);
            CHECK(std::count_if(seen.begin(), seen.end(), IsAlive) == static_cast<int>(used.size()));
        }
    }
    CHECK(Kind::NumberOf(foreign) == FromOutside);
    CHECK(DeleteObject(foreign));
    CHECK(kel::test::OpenHandles() == before);
}

TEST_CASE_TEMPLATE("an object that cannot be made is not held, and the next request tries again", Kind, Brushes, Pens,
                   Fonts) {
    kel::test::WithEachCallFailing(ERROR_NOT_ENOUGH_MEMORY, [] {
        typename Kind::Wrapper wrapper;
        CHECK_FALSE(wrapper.Attach(nullptr));
        Kind::Create(wrapper, 1);
        const bool made = Kind::Create(wrapper, 2);
        const std::string call = kel::test::FaultedCall();
        CHECK((made || call.find("Create") == 0));
        CHECK((Kind::HandleOf(wrapper) != nullptr) == made);
        if (kel::test::FaultIsOver())
            CHECK((Kind::Create(wrapper, 2) && Kind::NumberOf(Kind::HandleOf(wrapper)) == 2));
    });
}

TEST_CASE("brushes are equal by style, colour and hatch") {
    const std::pair<LOGBRUSH, bool> rows[] = {{{BS_SOLID, 0xFF, 0}, true},
                                              {{BS_SOLID, 0x1FF, 0}, false},
                                              {{BS_SOLID, 0xFF, HS_CROSS}, false},
                                              {{BS_HATCHED, 0xFF, 0}, false}};
    const Brush red(0xFFUL);
    for (const auto& [description, same] : rows)
        CHECK((Brush(description).m_hBrush == red.m_hBrush) == same);
}

TEST_CASE("pens are equal by style, colour and horizontal width") {
    const std::pair<LOGPEN, bool> rows[] = {{{PS_DOT, {2, 0}, 0xFF}, true},
                                            {{PS_DOT, {2, 7}, 0xFF}, true},
                                            {{PS_DOT, {3, 0}, 0xFF}, false},
                                            {{PS_DASH, {2, 0}, 0xFF}, false},
                                            {{PS_DOT, {2, 0}, 0xFE}, false}};
    const Pen pen(PS_DOT, 2, 0xFF);
    for (const auto& [description, same] : rows)
        CHECK((Pen(description).m_hPen == pen.m_hPen) == same);
}

TEST_CASE_TEMPLATE("all null objects are one, which stays", Kind, Brushes, Pens) {
    typename Kind::Wrapper null(Kind::Null(1));
    const typename Kind::Wrapper other(Kind::Null(2));
    CHECK((Kind::HandleOf(null) == Kind::HandleOf(other) && Kind::HandleOf(null) == GetStockObject(Kind::kNullObject)));
    null.Destroy();
    CHECK(IsAlive(Kind::HandleOf(other)));
}

TEST_CASE("fonts are equal by every field and by the face name up to its end, with case") {
    const LOGFONTA plain = Fonts::Describe(20);
    const Font font(plain);
    auto differs = [&](std::size_t byte, char bits) {
        LOGFONTA changed = plain;
        reinterpret_cast<char*>(&changed)[byte] ^= bits;
        return Font(changed).m_hFont != font.m_hFont;
    };
    for (std::size_t byte = 0; byte != offsetof(LOGFONTA, lfFaceName); ++byte) {
        CAPTURE(byte);
        CHECK(differs(byte, 1));
    }
    const std::size_t name = offsetof(LOGFONTA, lfFaceName);
    CHECK((differs(name, 'a' ^ 'A') && differs(name + 5, 'x') && !differs(name + 6, 'x')));

    LOGFONTA endless = plain;
    std::fill(std::begin(endless.lfFaceName), std::end(endless.lfFaceName), 'x');
    const Font cut(endless);
    CHECK(std::string(Told<LOGFONTA>(cut.m_hFont).lfFaceName) == std::string(31, 'x'));
    Font same;
    CHECK(
        same.CreateFontA(WideString(40, 'x'), 20, 0, 0, 0, FW_BOLD, false, false, false, DEFAULT_CHARSET, 0, 0, 0, 0));
    CHECK(same.m_hFont == cut.m_hFont);
}

TEST_CASE("a font is made of its fields one by one") {
    Font font;
    REQUIRE(font.CreateFontA(u"Arial"_w, -20, 7, 900, 450, 700, true, false, true, 2, 3, 4, 5, 6));
    const LOGFONTA made = Told<LOGFONTA>(font.m_hFont),
                   expected = {-20, 7, 900, 450, 700, 1, 0, 1, 2, 3, 4, 5, 6, "Arial"};
    CHECK(std::equal(&made.lfFaceName[0], &made.lfFaceName[6], expected.lfFaceName));
    CHECK(std::equal(reinterpret_cast<const char*>(&made), made.lfFaceName, reinterpret_cast<const char*>(&expected)));
}

TEST_CASE("points become logical units of the context") {
    const std::tuple<int, int, int, int> rows[] = {{100, 1, 1, -13},  {120, 1, 1, -16}, {-100, 1, 1, -13},
                                                   {0, 1, 1, 0},      {7, 1, 1, 0},     {100, 200, 100, -26},
                                                   {100, 2, -1, -26}, {120, 1, 4, -4}};
    for (const auto& [tenths, window, viewport, height] : rows) {
        CAPTURE(tenths);
        CAPTURE(viewport);
        const DC dc(CreateCompatibleDC(nullptr), nullptr);
        SetMapMode(dc.m_hDC, MM_ANISOTROPIC);
        SetWindowExtEx(dc.m_hDC, window, window, nullptr);
        SetViewportExtEx(dc.m_hDC, viewport, viewport, nullptr);
        SetViewportOrgEx(dc.m_hDC, 40, 50, nullptr);
        Font font, again;
        REQUIRE(font.CreatePointFont(tenths, u"Arial"_w, dc.m_hDC));
        const LOGFONTA made = Told<LOGFONTA>(font.m_hFont);
        CHECK((made.lfHeight == height && made.lfCharSet == DEFAULT_CHARSET && made.lfWeight == 0));
        LOGFONTA points = made;
        points.lfHeight = tenths;
        CHECK((again.CreatePointFontIndirect(points, dc.m_hDC) && again.m_hFont == font.m_hFont));
    }
    kel::test::WithEachCallFailing(ERROR_NOT_ENOUGH_MEMORY, [] {
        Font font;
        const bool made = font.CreatePointFont(100, u"Arial"_w, nullptr);
        CHECK((made || kel::test::HasCallFailed()));
        CHECK((font.m_hFont != nullptr) == made);
        if (made && kel::test::FaultIsOver())
            CHECK(Told<LOGFONTA>(font.m_hFont).lfHeight == -13);
        CHECK_FALSE(font.CreatePointFont(100, u"Arial"_w, reinterpret_cast<HDC>(0x1234)));
        CHECK(font.m_hFont == nullptr);
    });
}
