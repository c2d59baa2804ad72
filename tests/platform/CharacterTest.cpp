#include <doctest/doctest.h>
#include <kelcore/platform.h>

#include <climits>
#include <string>

namespace {

using Units = std::basic_string<WCHAR>;

Units Wide(const std::u16string& text) {
    return {text.begin(), text.end()};
}

int Sign(int value) {
    return (value > 0) - (value < 0);
}

} // namespace

TEST_CASE("texts compare without case, letters after the underscore") {
    struct Row {
        std::u16string left;
        std::u16string right;
        int order;
        size_t count;
        int orderOfCount;
    };
    const Row rows[] = {
        {u"", u"", 0, 5, 0},           {u"a", u"", 1, 0, 0},
        {u"Hello", u"hELLO", 0, 3, 0}, {u"Hello", u"HELP", -1, 3, 0},
        {u"abc", u"ABD", -1, 2, 0},    {u"abc", u"ABD", -1, 3, -1},
        {u"A", u"_", 1, 1, 1},         {u"Z", u"[", 1, 1, 1},
        {u"ab", u"abc", -1, 9, -1},    {u"\uFFFF", u"\uE000", 1, 1, 1},
    };
    for (const Row& row : rows) {
        const Units left = Wide(row.left);
        const Units right = Wide(row.right);
        CAPTURE(std::string(left.begin(), left.end()));
        CAPTURE(std::string(right.begin(), right.end()));
        CHECK(Sign(_wcsicmp(left.c_str(), right.c_str())) == row.order);
        CHECK(Sign(_wcsicmp(right.c_str(), left.c_str())) == -row.order);
        CHECK(Sign(_wcsnicmp(left.c_str(), right.c_str(), row.count)) == row.orderOfCount);
    }
}

TEST_CASE("code-page texts compare by unsigned bytes") {
    const auto compare = [](const char* left, const char* right) {
        return Sign(
            _mbscmp(reinterpret_cast<const unsigned char*>(left), reinterpret_cast<const unsigned char*>(right)));
    };
    CHECK(compare("a\xFF", "ab") == 1);
    CHECK(compare("a", "ab") == -1);
    CHECK(compare("B", "a") == -1);
    CHECK(compare("a", "a") == 0);
}

TEST_CASE("64-bit integers become text and back") {
    struct Row {
        __int64 value;
        int radix;
        const char* text;
    };
    const Row rows[] = {
        {0, 10, "0"},
        {-5, 10, "-5"},
        {-5, 16, "fffffffffffffffb"},
        {35, 36, "z"},
        {5, 2, "101"},
        {LLONG_MAX, 10, "9223372036854775807"},
        {LLONG_MIN, 10, "-9223372036854775808"},
        {-1, 2, "1111111111111111111111111111111111111111111111111111111111111111"},
    };
    for (const Row& row : rows) {
        char narrow[72];
        WCHAR wide[72];
        CHECK(std::string(_i64toa(row.value, narrow, row.radix)) == row.text);
        const Units units = _i64tow(row.value, wide, row.radix);
        CHECK(std::string(units.begin(), units.end()) == row.text);
        if (row.radix == 10)
            CHECK(_atoi64(row.text) == row.value);
    }
    CHECK(_atoi64(" \t-12x") == -12);
    CHECK(_atoi64("+7") == 7);
    CHECK(_atoi64("x") == 0);
    CHECK(_atoi64("99999999999999999999") == LLONG_MAX);
    CHECK(_atoi64("-99999999999999999999") == LLONG_MIN);
}

TEST_CASE("units are classified and mapped one by one") {
    CHECK((iswalpha('a') && iswalpha('Z') && !iswalpha('1') && !iswalpha('_')));
    CHECK_FALSE(iswalpha(0xD800));
    CHECK_FALSE(iswalpha(0xDFFF));
    CHECK((iswspace(' ') && iswspace('\t') && !iswspace('a')));
    CHECK((towlower('A') == 'a' && towupper('z') == 'Z' && towlower('[') == '[' && towupper(0xD83D) == 0xD83D));
}
