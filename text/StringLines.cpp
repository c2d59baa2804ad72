#include <kelcore/text.h>

#include "text/UnitScan.h"

#include <algorithm>

namespace {

constexpr unsigned short kLineFeed = '\n';

struct Units {
    const unsigned short* begin;
    const unsigned short* end;
};

Units LastLines(Units text, int count) {
    const auto nth = static_cast<std::size_t>(std::max(count, 1));
    const unsigned short* feed = kel::UnitScan::FindNthLast(text.begin, text.end, kLineFeed, nth);
    return {feed == nullptr ? text.begin : feed + 1, text.end};
}

// The text from line @p first on; empty when there is no such line.
Units SkipLines(Units text, int first) {
    if (first <= 0)
        return text;
    const auto nth = static_cast<std::size_t>(first);
    const unsigned short* feed = kel::UnitScan::FindNth(text.begin, text.end, kLineFeed, nth);
    return {feed == text.end ? text.end : feed + 1, text.end};
}

// The text up to the end of its line number @p count, counted from 0.
Units TakeLines(Units text, int count) {
    const auto nth = static_cast<std::size_t>(count) + 1;
    return {text.begin, kel::UnitScan::FindNth(text.begin, text.end, kLineFeed, nth)};
}

Units SelectLines(Units text, int first, int last) {
    if (first <= 0 && last < 0)
        return text;
    if (first < 0)
        return LastLines(text, last);
    if (last < 0)
        return SkipLines(text, first);
    if (first > last)
        return {text.end, text.end};
    return TakeLines(SkipLines(text, first), last - first);
}

} // namespace

String String::GetLines(int first, int last) const {
    return GetLines(data(), static_cast<int>(size()), first, last);
}

String String::GetLines(const unsigned short* text, int length, int first, int last) {
    const Units lines = SelectLines({text, text + length}, first, last);
    return String(lines.begin, static_cast<unsigned int>(lines.end - lines.begin));
}
