#include "tests/support/Text.h"

#include <climits>
#include <random>
#include <stdexcept>
#include <unordered_set>

namespace {

static_assert(sizeof(String) == sizeof(WideString), "a String adds no data");
static_assert(std::is_nothrow_move_constructible_v<String> && !std::is_polymorphic_v<String>);

const String kHello = u"hello"_w;
constexpr unsigned short kNul = 0;

} // namespace

TEST_CASE("a String is built from every source and gives its text back") {
    const unsigned short units[] = {'a', 0, 'b', 0};
    CHECK(String() == u""_w);
    CHECK(String(units) == u"a"_w);
    CHECK(String(units, 3) == u"a\0b"_w);
    CHECK(String(units[0]) == u"a"_w);
    CHECK(String(WideString(units, 3)).size() == 3);
    CHECK(String(std::string("abc")) == u"abc"_w);
    CHECK(String(std::string()).empty());
    CHECK(static_cast<std::string>(u"abc"_w) == "abc");
    CHECK(static_cast<std::string>(u"ab\0cd"_w) == "ab");
    String text = u"old"_w;
    CHECK((text = units) == u"a"_w);
    CHECK((text = std::string("narrow")) == u"narrow"_w);
    CHECK((text = static_cast<const unsigned short*>(text) + 3) == u"row"_w);
    CHECK((text = 'A') == u"A"_w);
    const String copy = text;
    text += u"B"_w;
    CHECK(copy == u"A"_w);
}

TEST_CASE("numbers are appended in decimal") {
    struct {
        int value;
        const char* text;
    } const cases[] = {{0, "0"}, {7, "7"}, {-42, "-42"}, {INT_MAX, "2147483647"}, {INT_MIN, "-2147483648"}};
    for (const auto& [value, expected] : cases)
        CHECK(static_cast<std::string>(String(value)) == expected);
    CHECK(String(0.5) == u"0.500000"_w);
    CHECK(String(-1e15) == u"-1000000000000000.000000"_w);
    String text = u"x"_w;
    text << 7;
    CHECK((text << 1.25) == u"x71.250000"_w);
}

TEST_CASE("every integer type subscripts a String, and texts compare and hash by all their units") {
    String text = u"ab\0c"_w;
    const String& constant = text;
    CHECK(text[0] == 'a');
    CHECK(constant[1u] == 'b');
    CHECK(text[3l] == 'c');
    CHECK(constant[std::size_t(3)] == 'c');
    CHECK(constant[static_cast<signed char>(4)] == 0);
    text[static_cast<short>(2)] = 'X';
    CHECK(text == u"abXc"_w);

    CHECK(u"ab"_w < u"ab\0"_w);
    CHECK(u"a\0x"_w != u"a\0y"_w);
    const std::unordered_set<String> set = {u"a\0x"_w, u"a\0y"_w, u"a\0x"_w};
    CHECK(set.size() == 2);
    CHECK(set.count(u"a\0y"_w) == 1);
}

TEST_CASE("concatenation takes whole texts and pointers up to their NUL") {
    const String left = u"a\0b"_w;
    const WideString wide = u"w\0"_w;
    const unsigned short tail[] = {'t', 0, 'x'};
    const unsigned short unit = 'u';
    CHECK(left + left == u"a\0ba\0b"_w);
    CHECK(left + tail == u"a\0bt"_w);
    CHECK(tail + left == u"ta\0b"_w);
    CHECK(left + unit == u"a\0bu"_w);
    CHECK(unit + left == u"ua\0b"_w);
    CHECK(left + kNul == u"a\0b\0"_w);
    CHECK(left + wide == u"a\0bw\0"_w);
    CHECK(WideString(wide) + left == u"w\0a\0b"_w);
}

TEST_CASE("cutting clamps its counts; a cut tail ends at its first NUL") {
    struct {
        String text;
        int count;
        String left, right;
    } const cases[] = {
        {kHello, 2, u"he"_w, u"lo"_w},
        {kHello, 0, u""_w, u""_w},
        {kHello, -3, u""_w, u""_w},
        {kHello, 4, u"hell"_w, u"ello"_w},
        {kHello, 5, kHello, kHello},
        {kHello, INT_MAX, kHello, kHello},
        {u"a\0bc\0d"_w, 4, u"a\0bc"_w, u"bc"_w},
        {u"a\0bc\0d"_w, 5, u"a\0bc\0"_w, u""_w},
        {u"a\0b"_w, 3, u"a\0b"_w, u"a\0b"_w},
        {u""_w, 1, u""_w, u""_w},
    };
    for (const auto& row : cases) {
        CAPTURE(row.text);
        CAPTURE(row.count);
        CHECK(row.text.Left(row.count) == row.left);
        CHECK(row.text.Right(row.count) == row.right);
    }
}

TEST_CASE("comparing without case sees texts up to their NUL and counts units") {
    const auto sign = [](int value) { return (value > 0) - (value < 0); };
    struct {
        String own, other;
        int count, result;
    } const cases[] = {
        {u"Hello"_w, u"hELLO"_w, -1, 0}, {u"Hello"_w, u"HELP"_w, 3, 0},    {u"Hello"_w, u"HELP"_w, -1, -1},
        {u"b"_w, u"A"_w, INT_MIN, 1},    {u"a"_w, u"b"_w, 0, 0},           {u"a\0x"_w, u"A\0y"_w, 3, 0},
        {u"ab"_w, u"A"_w, -1, 1},        {u"_"_w, u"a"_w, -1, -1},         {u"a"_w, u"A"_w, INT_MAX, 0},
        {u"a"_w, u"ab"_w, 2, -1},        {u"\x4E00"_w, u"\x4E01"_w, 1, -1}};
    for (const auto& row : cases) {
        CAPTURE(row.own);
        CAPTURE(row.other);
        CHECK(sign(row.own.CompareNoCase(row.other, row.count)) == row.result);
    }
}

TEST_CASE("case mapping cuts the text at its first NUL") {
    String text = u"abC1[\0z"_w;
    text.ToUpper();
    CHECK(text == u"ABC1["_w);
    text += u"\0Z"_w;
    text.ToLower();
    CHECK(text == u"abc1["_w);
}

TEST_CASE("Insert puts copies of a unit in place or refuses and changes nothing") {
    String text = u"abc"_w;
    text.Insert(1, 'x', 2);
    CHECK(text == u"axxbc"_w);
    text.Insert(5, 'y', 1);
    text.Insert(6, 'z', 0);
    CHECK(text == u"axxbcy"_w);
    CHECK_THROWS_AS(text.Insert(7, 'z', 1), std::out_of_range);
    CHECK_THROWS_AS(text.Insert(7, 'z', 0), std::out_of_range);
    CHECK_THROWS_AS(text.Insert(-1, 'z', 1), std::out_of_range);
    CHECK_THROWS_AS(text.Insert(0, 'z', -1), std::length_error);
    CHECK(text == u"axxbcy"_w);
}

TEST_CASE("Remove takes out every occurrence and tells where the last one was") {
    struct {
        String text;
        unsigned short unit;
        String left;
        int result;
    } const cases[] = {{u"abcabc"_w, 'b', u"acac"_w, 3}, {u"abc"_w, 'x', u"abc"_w, -1}, {u"x"_w, 'x', u""_w, 0},
                       {u"xx"_w, 'x', u""_w, 0},         {u"abx"_w, 'x', u"ab"_w, 2},   {u"a\0b\0"_w, 0, u"ab"_w, 2},
                       {u""_w, 'x', u""_w, -1}};
    for (const auto& row : cases) {
        CAPTURE(row.text);
        String text = row.text;
        CHECK(text.Remove(row.unit) == row.result);
        CHECK(text == row.left);
    }
}

TEST_CASE("Remove agrees with removing one by one on random texts of every density") {
    std::mt19937 random(20240607);
    for (int round = 0; round != 600; ++round) {
        CAPTURE(round);
        String text(WideString(random() % 200, 'a'));
        const unsigned distance = 1u << (random() % 9);
        for (auto& unit : text)
            unit = static_cast<unsigned short>(random() % distance == 0 ? 'x' : 'a' + random() % 20);
        String expected = text;
        int last = -1;
        for (auto at = expected.find('x'); at != String::npos; at = expected.find('x')) {
            expected.erase(at, 1);
            last = static_cast<int>(at);
        }
        CHECK(text.Remove('x') == last);
        CHECK(text == expected);
    }
}
