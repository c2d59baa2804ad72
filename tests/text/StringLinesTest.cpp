#include "tests/support/Text.h"

#include <algorithm>
#include <climits>
#include <random>
#include <vector>

namespace {

std::vector<WideString> Split(const WideString& text) {
    std::vector<WideString> lines(1);
    for (const unsigned short unit : text) {
        if (unit == '\n')
            lines.emplace_back();
        else
            lines.back() += unit;
    }
    return lines;
}

WideString Join(const std::vector<WideString>& lines, std::size_t first, std::size_t end) {
    WideString text;
    for (std::size_t i = first; i < end; ++i)
        text += (i == first ? WideString() : WideString(1, '\n')) + lines[i];
    return text;
}

// The rules of GetLines over the list of lines instead of the text.
WideString ExpectedLines(const WideString& text, int first, int last) {
    const std::vector<WideString> lines = Split(text);
    const auto count = static_cast<long long>(lines.size());
    if (first <= 0 && last < 0)
        return text;
    if (first < 0)
        return Join(lines, static_cast<std::size_t>(std::max(count - std::max(last, 1), 0ll)), lines.size());
    const long long end = last < 0 ? count : std::min<long long>(count, last + 1ll);
    return Join(lines, static_cast<std::size_t>(first), static_cast<std::size_t>(end));
}

} // namespace

TEST_CASE("lines are taken from the front, from the back and to the end") {
    const String text = u"a\nbb\nccc"_w;
    struct {
        String text;
        int first, last;
        String lines;
    } const cases[] = {
        {text, 0, 0, u"a"_w},
        {text, 1, 1, u"bb"_w},
        {text, 1, -1, u"bb\nccc"_w},
        {text, 0, 1, u"a\nbb"_w},
        {text, 2, INT_MAX, u"ccc"_w},
        {text, 3, 5, u""_w},
        {text, 3, -1, u""_w},
        {text, INT_MAX, INT_MAX, u""_w},
        {text, 2, 1, u""_w},
        {text, -1, 2, u"bb\nccc"_w},
        {text, -1, 1, u"ccc"_w},
        {text, -7, 0, u"ccc"_w},
        {text, -1, INT_MAX, text},
        {text, 0, -1, text},
        {text, INT_MIN, INT_MIN, text},
        {u"a\r\nb"_w, 0, 0, u"a\r"_w},
        {u"a\n"_w, -1, 1, u""_w},
        {u"a\n"_w, 1, 1, u""_w},
        {u"\0\n\0\n"_w, 1, 1, u"\0"_w},
        {u"\n\n"_w, 0, 1, u"\n"_w},
        {u""_w, 0, 0, u""_w},
        {u""_w, -1, 0, u""_w},
    };
    for (const auto& row : cases) {
        CAPTURE(row.text);
        CAPTURE(row.first);
        CAPTURE(row.last);
        CHECK(row.text.GetLines(row.first, row.last) == row.lines);
    }
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
        CAPTURE(text);
        CAPTURE(first);
        CAPTURE(last);
        CHECK(text.GetLines(first, last) == ExpectedLines(text, first, last));
    }
}
