#include "tests/support/Text.h"

#include <climits>
#include <random>
#include <stdexcept>
#include <tuple>
#include <unordered_set>

namespace {

static_assert(sizeof(String) == sizeof(WideString), "a String adds no data");
static_assert(std::is_nothrow_move_constructible_v<String> && !std::is_polymorphic_v<String>);

} // namespace

TEST_CASE("a String is built from every source and gives its text back") {
    const unsigned short units[] = {'a', 0, 'b', 0};
    CHECK(String() == u""_w);
    CHECK(String(units) == u"a"_w);
    CHECK(String(units, 3) == u"a\0b"_w);
    CHECK(String(units[0]) == u"a"_w);
    CHECK(String(WideString(units, 3)).size() == 3);
    CHECK(String(std::string("abc")) == u"abc"_w);
    CHECK(static_cast<std::string>(u"ab\0cd"_w) == "ab");
    String text = u"old"_w;
    CHECK((text = units) == u"a"_w);
    CHECK((text = std::string("narrow")) == u"narrow"_w);
    CHECK((text = static_cast<const unsigned short*>(text) + 3) == u"row"_w);
    CHECK((text = 'A') == u"A"_w);

    for (const int value : {0, -42, INT_MAX, INT_MIN})
        CHECK(static_cast<std::string>(String(value)) == std::to_string(value));
    CHECK(String(-1e15) == u"-1000000000000000.000000"_w);
    text << 7;
    CHECK((text << 1.25) == u"A71.250000"_w);
}

TEST_CASE("every integer type subscripts a String, and texts compare and hash by all their units") {
    String text = u"ab\0c"_w;
    const String& constant = text;
    CHECK((text[0] == 'a' && text[3l] == 'c'));
    CHECK((constant[1u] == 'b' && constant[std::size_t(3)] == 'c' && constant[static_cast<signed char>(4)] == 0));
    text[static_cast<short>(2)] = 'X';
    CHECK(text == u"abXc"_w);
    CHECK(u"ab"_w < u"ab\0"_w);
    const std::unordered_set<String> set = {u"a\0x"_w, u"a\0y"_w, u"a\0x"_w};
    CHECK((set.size() == 2 && set.count(u"a\0y"_w) == 1));
}

TEST_CASE("concatenation takes whole texts and pointers up to their NUL") {
    const String left = u"a\0b"_w;
    const unsigned short tail[] = {'t', 0, 'x'};
    const unsigned short unit = 'u', nul = 0;
    CHECK(left + left == u"a\0ba\0b"_w);
    CHECK(left + tail == u"a\0bt"_w);
    CHECK(tail + left == u"ta\0b"_w);
    CHECK(left + nul == u"a\0b\0"_w);
    CHECK(unit + left == u"ua\0b"_w);
    CHECK(left + WideString(u"w\0"_w) == u"a\0bw\0"_w);
    CHECK(WideString(u"w\0"_w) + left == u"w\0a\0b"_w);
    WideString plain = u"p"_w; // two of these are none of our business
    CHECK(plain + plain == u"pp"_w);
    CHECK(WideString() + plain == u"p"_w);
}

TEST_CASE("cutting clamps its counts; a cut tail ends at its first NUL") {
    const std::tuple<String, int, String, String> cases[] = {
        {u"hello"_w, 2, u"he"_w, u"lo"_w},
        {u"hello"_w, 0, u""_w, u""_w},
        {u"hello"_w, -3, u""_w, u""_w},
        {u"hello"_w, 5, u"hello"_w, u"hello"_w},
        {u"hello"_w, INT_MAX, u"hello"_w, u"hello"_w},
        {u"a\0bc\0d"_w, 4, u"a\0bc"_w, u"bc"_w},
        {u"a\0bc\0d"_w, 5, u"a\0bc\0"_w, u""_w},
        {u"a\0b"_w, 3, u"a\0b"_w, u"a\0b"_w},
    };
    for (const auto& [text, count, left, right] : cases)
        CHECK_MESSAGE((text.Left(count) == left && text.Right(count) == right), text, " ", count);
}

TEST_CASE("comparing without case sees texts up to their NUL and counts units") {
    const std::tuple<String, String, int, int> cases[] = {
        {u"Hello"_w, u"hELLO"_w, -1, 0}, {u"Hello"_w, u"HELP"_w, 3, 0}, {u"Hello"_w, u"HELP"_w, -1, -1},
        {u"b"_w, u"A"_w, INT_MIN, 1},    {u"a"_w, u"b"_w, 0, 0},        {u"a\0x"_w, u"A\0y"_w, 3, 0},
        {u"_"_w, u"a"_w, -1, -1},        {u"a"_w, u"A"_w, INT_MAX, 0},  {u"\x4E00"_w, u"\x4E01"_w, 1, -1}};
    for (const auto& [own, other, count, result] : cases) {
        INFO(own, " ", other);
        const int compared = own.CompareNoCase(other, count);
        CHECK((compared > 0) - (compared < 0) == result);
    }
}

TEST_CASE("case mapping cuts the text at its first NUL") {
    String upper = u"abC1[\0z"_w, lower = upper;
    upper.ToUpper();
    lower.ToLower();
    CHECK((upper == u"ABC1["_w && lower == u"abc1["_w));
}

TEST_CASE("Insert puts copies of a unit in place or refuses and changes nothing") {
    String text = u"abc"_w;
    text.Insert(1, 'x', 2);
    text.Insert(5, 'y', 1);
    text.Insert(6, 'z', 0);
    for (const int at : {7, -1})
        CHECK_THROWS_AS(text.Insert(at, 'z', 0), std::out_of_range);
    CHECK_THROWS_AS(text.Insert(0, 'z', -1), std::length_error);
    CHECK(text == u"axxbcy"_w);
}

TEST_CASE("Remove takes out every occurrence and tells where the last one was") {
    const auto check = [](String text, unsigned short unit) {
        CAPTURE(text);
        String expected = text;
        int last = -1;
        for (auto at = expected.find(unit); at != String::npos; at = expected.find(unit)) {
            expected.erase(at, 1);
            last = static_cast<int>(at);
        }
        CHECK(text.Remove(unit) == last);
        CHECK(text == expected);
    };
    check(u"a\0b\0"_w, 0);
    std::mt19937 random(20240607);
    for (int round = 0; round != 600; ++round) {
        String text(WideString(random() % 200, 'a'));
        const unsigned distance = 1u << (random() % 9);
        for (auto& unit : text)
            unit = static_cast<unsigned short>(random() % distance == 0 ? 'x' : 'a' + random() % 20);
        check(text, 'x');
    }
}
