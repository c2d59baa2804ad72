#include "tests/support/Text.h"

#include <algorithm>
#include <climits>
#include <random>
#include <tuple>
#include <vector>

namespace {

// The rules of GetLines over the list of lines instead of the text.
WideString ExpectedLines(const WideString& text, int first, int last) {
    if (first <= 0 && last < 0)
        return text;
    std::vector<WideString> lines(1);
    for (const unsigned short unit : text) {
        if (unit == '\n')
            lines.emplace_back();
        else
            lines.back() += unit;
    }
    const auto count = static_cast<long long>(lines.size());
    const long long begin = first < 0 ? std::max(count - std::max(last, 1), 0ll) : first;
    const long long end = first < 0 || last < 0 ? count : std::min<long long>(count, last + 1ll);
    WideString joined;
    for (long long i = begin; i < end; ++i)
        joined.append(i == begin ? 0 : 1, '\n').append(lines[static_cast<std::size_t>(i)]);
    return joined;
}

} // namespace

TEST_CASE("lines are taken from the front, from the back and to the end") {
    const String text = u"a\nbb\nccc"_w;
    const std::tuple<String, int, int, String> cases[] = {
        {text, 1, 1, u"bb"_w},        {text, 1, -1, u"bb\nccc"_w},    {text, 0, 1, u"a\nbb"_w},
        {text, 2, INT_MAX, u"ccc"_w}, {text, 3, -1, u""_w},           {text, INT_MAX, INT_MAX, u""_w},
        {text, 2, 1, u""_w},          {text, -1, 2, u"bb\nccc"_w},    {text, -7, 0, u"ccc"_w},
        {text, -1, INT_MAX, text},    {text, INT_MIN, INT_MIN, text}, {u"a\r\nb"_w, 0, 0, u"a\r"_w},
        {u"a\n"_w, -1, 1, u""_w},     {u"\0\n\0\n"_w, 1, 1, u"\0"_w}, {u""_w, -1, 0, u""_w},
    };
    for (const auto& [given, first, last, lines] : cases)
        CHECK_MESSAGE(given.GetLines(first, last) == lines, given, " ", first, " ", last);
    CHECK(String::GetLines(text.data(), 4, 1, 9) == u"bb"_w);
}

TEST_CASE("GetLines agrees with a list of lines on random texts") {
    std::mt19937 random(77001);
    const auto pick = [&random] { return static_cast<int>(random() % 14) - 4; };
    for (int round = 0; round != 1500; ++round) {
        String text(WideString(random() % 150, 'a'));
        const unsigned distance = 1u << (random() % 7);
        for (auto& unit : text)
            unit = static_cast<unsigned short>(random() % distance == 0 ? '\n' : 'a' + random() % 20);
        const int first = pick();
        const int last = pick();
        CHECK_MESSAGE(text.GetLines(first, last) == ExpectedLines(text, first, last), text, " ", first, " ", last);
    }
}
