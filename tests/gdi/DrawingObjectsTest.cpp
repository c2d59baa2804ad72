#include "tests/gdi/Kinds.h"
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

TEST_CASE_TEMPLATE("objects are equal by every byte of their descriptions that counts", Kind, Brushes, Pens, Fonts) {
    const auto plain = Kind::Describe(20);
    const typename Kind::Wrapper object(plain);
    for (std::size_t byte = 0; byte != sizeof plain; ++byte) {
        CAPTURE(byte);
        auto changed = plain;
        reinterpret_cast<char*>(&changed)[byte] ^= 'a' ^ 'A';
        CHECK((Kind::HandleOf(typename Kind::Wrapper(changed)) != Kind::HandleOf(object)) == Kind::Counts(byte));
    }
}

TEST_CASE_TEMPLATE("all null objects are one, which stays", Kind, Brushes, Pens) {
    typename Kind::Wrapper null(Kind::Null(1));
    const typename Kind::Wrapper other(Kind::Null(2));
    CHECK((Kind::HandleOf(null) == Kind::HandleOf(other) && Kind::HandleOf(null) == GetStockObject(Kind::kNullObject)));
    null.Destroy();
    CHECK(IsAlive(Kind::HandleOf(other)));
}

TEST_CASE("a font is made of its fields one by one, the face name cut to fit") {
    const LOGFONTA expected = {-20, 7, 900, 450, 700, 1, 0, 1, 2, 3, 4, 5, 6, "an endless name of 31 character"};
    Font font;
    CHECK(font.CreateFontA(u"an endless name of 31 characters of all"_w, -20, 7, 900, 450, 700, true, false, true, 2, 3,
                           4, 5, 6));
    CHECK(font.m_hFont == Font(expected).m_hFont);
    LOGFONTA endless = expected;
    endless.lfFaceName[LF_FACESIZE - 1] = 's';
    CHECK(font.m_hFont == Font(endless).m_hFont);
    CHECK(std::string(Told<LOGFONTA>(font.m_hFont).lfFaceName) == expected.lfFaceName);
}

TEST_CASE("points become logical units of the context") {
    const std::tuple<int, int, int, int> rows[] = {
        {100, 1, 1, -13}, {-100, 1, 1, -13}, {7, 1, 1, 0}, {100, 2, -1, -26}, {120, 1, 4, -4}};
    for (const auto& [tenths, window, viewport, height] : rows) {
        CAPTURE(tenths);
        CAPTURE(viewport);
        const DC dc(CreateCompatibleDC(nullptr), nullptr);
        Scale(dc.m_hDC, {window, window}, {viewport, viewport});
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
