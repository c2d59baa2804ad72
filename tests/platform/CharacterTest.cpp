#include <doctest/doctest.h>
#include <kelcore/platform.h>

#include <climits>
#include <string>

namespace {

using Units = std::basic_string<WCHAR>;

int Sign(int value) {
    return (value > 0) - (value < 0);
}

} // namespace

TEST_CASE("texts compare without case, letters after the underscore") {
    const auto compares = [](const std::u16string& first, const std::u16string& second, int order, std::size_t count,
                             int orderOfCount) {
        const Units left(first.begin(), first.end()), right(second.begin(), second.end());
        INFO(std::string(left.begin(), left.end()), " ", std::string(right.begin(), right.end()));
        CHECK(Sign(_wcsicmp(left.c_str(), right.c_str())) == order);
        CHECK(Sign(_wcsicmp(right.c_str(), left.c_str())) == -order);
        CHECK(Sign(_wcsnicmp(left.c_str(), right.c_str(), count)) == orderOfCount);
    };
    compares(u"a", u"", 1, 0, 0);
    compares(u"Hello", u"HELP", -1, 3, 0);
    compares(u"A", u"_", 1, 1, 1);
    compares(u"ab", u"abc", -1, 9, -1);
    compares(u"\uFFFF", u"\uE000", 1, 1, 1);
}

TEST_CASE("code-page texts compare by unsigned bytes") {
    const unsigned char texts[][3] = {"a", "ab", "a\xFF"}; // in their order
    for (int i = 0; i < 9; ++i)
        CHECK(Sign(_mbscmp(texts[i / 3], texts[i % 3])) == Sign(i / 3 - i % 3));
}

TEST_CASE("64-bit integers become text and back") {
    const auto becomes = [](__int64 value, int radix, const char* text) {
        char narrow[72];
        WCHAR wide[72];
        CHECK(std::string(_i64toa(value, narrow, radix)) == text);
        const Units units = _i64tow(value, wide, radix);
        CHECK(std::string(units.begin(), units.end()) == text);
        CHECK((radix != 10 || _atoi64(text) == value));
    };
    becomes(0, 10, "0");
    becomes(-5, 16, "fffffffffffffffb");
    becomes(LLONG_MAX, 10, "9223372036854775807");
    becomes(LLONG_MIN, 10, "-9223372036854775808");
    CHECK((_atoi64(" \t-12x") == -12 && _atoi64("+7") == 7 && _atoi64("x") == 0));
    CHECK((_atoi64("99999999999999999999") == LLONG_MAX && _atoi64("-99999999999999999999") == LLONG_MIN));
}
