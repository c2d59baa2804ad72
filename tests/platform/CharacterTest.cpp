#include <doctest/doctest.h>
#include <kelcore/platform.h>

#include <climits>
#include <string>

TEST_CASE("code-page texts compare by unsigned bytes") {
    const unsigned char texts[][3] = {"a", "ab", "a\xFF"}; // in their order
    for (int i = 0; i < 9; ++i) {
        const int order = _mbscmp(texts[i / 3], texts[i % 3]);
        CHECK((order > 0) - (order < 0) == (i / 3 > i % 3) - (i / 3 < i % 3));
    }
}

TEST_CASE("64-bit integers become text and back") {
    const auto becomes = [](__int64 value, int radix, const std::string& text) {
        char narrow[72];
        WCHAR wide[72];
        CHECK(_i64toa(value, narrow, radix) == text);
        const std::basic_string<WCHAR> units = _i64tow(value, wide, radix);
        CHECK(std::string(units.begin(), units.end()) == text);
        CHECK((radix != 10 || _atoi64(narrow) == value));
    };
    becomes(0, 10, "0");
    becomes(-5, 16, "fffffffffffffffb");
    becomes(LLONG_MAX, 10, "9223372036854775807");
    becomes(LLONG_MIN, 10, "-9223372036854775808");
    becomes(-1, 2, std::string(64, '1'));
    CHECK((_atoi64(" \t-12x") == -12 && _atoi64("+7") == 7 && _atoi64("x") == 0));
    CHECK((_atoi64("99999999999999999999") == LLONG_MAX && _atoi64("-99999999999999999999") == LLONG_MIN));
}
