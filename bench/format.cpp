#include "bench/support/Areas.h"
#include "bench/support/Random.h"
#include "bench/text/Lines.h"

#include <kelcore/text.h>

#include <algorithm>
#include <charconv>
#include <cwchar>
#include <cwctype>
#include <iterator>

namespace kel::bench {
namespace {

using Unit = unsigned short;

String Widen(const std::string& text) {
    return String(WideString(text.begin(), text.end()));
}

// ---- printf ----

Call Format() {
    const auto format = [pattern = u"%s %i %lf"_w](const auto& line) {
        String text;
        text.Format(pattern.c_str(), line.name.c_str(), line.number, line.measure);
        return text;
    };
    return ForEach(LinesWith(Widen), format, AsciiOf<String>);
}

// The C library's own, with its 32-bit characters.
Call FormatByC() {
    const auto widen = [](const std::string& text) { return std::wstring(text.begin(), text.end()); };
    const auto format = [](const auto& line) {
        wchar_t buffer[256];
        const int count =
            std::swprintf(buffer, std::size(buffer), L"%ls %i %lf", line.name.c_str(), line.number, line.measure);
        return std::wstring(buffer, static_cast<std::size_t>(count));
    };
    return ForEach(LinesWith(widen), format, AsciiOf<std::wstring>);
}

// Where the digits end, as many units behind @p units.
template <class... How>
Unit* PutNumber(Unit* units, How... how) {
    char digits[64];
    char* const end = std::to_chars(digits, std::end(digits), how...).ptr;
    return std::copy(+digits, end, units);
}

Call AppendParts() {
    const auto append = [](const auto& line) {
        Unit units[256];
        Unit* end = std::copy(line.name.begin(), line.name.end(), units);
        *end++ = ' ';
        end = PutNumber(end, line.number);
        *end++ = ' ';
        end = PutNumber(end, line.measure, std::chars_format::fixed, 6);
        return WideString(+units, end);
    };
    return ForEach(LinesWith(Widen), append, AsciiOf<WideString>);
}

const Enter<Formatter> formatters[] = {
    Enter<Formatter>({"kelcore", &Format}),
    Enter<Formatter>({"vswprintf", &FormatByC}),
    Enter<Formatter>({"limit-to_chars&append", &AppendParts}),
};

// ---- lines ----

// 2,000 lines, each ended by a carriage return and a line feed.
String ManyLines() {
    Random random(21);
    std::string text;
    for (int line = 0; line < 2000; ++line)
        text += random.Letters(20 + random.Below(60)) + "\r\n";
    return Widen(text);
}

constexpr int kFirst = 1000;
constexpr int kLast = 1009;

WideString PlainLines(const WideString& text) {
    auto begin = text.begin();
    for (int line = 0; line < kFirst; ++line)
        begin = std::find(begin, text.end(), Unit('\n')) + 1;
    auto end = std::find(begin, text.end(), Unit('\n'));
    for (int line = kFirst; line < kLast; ++line)
        end = std::find(end + 1, text.end(), Unit('\n'));
    return WideString(begin, end);
}

void AddLines() {
    AddJob("text", "kelcore", "GetLines", [] {
        return ForEach(
            std::vector<String>{ManyLines()}, [](const String& text) { return text.GetLines(kFirst, kLast); },
            AsciiOf<String>);
    });
    AddJob("text", "plain", "GetLines",
           [] { return ForEach(std::vector<WideString>{ManyLines()}, PlainLines, AsciiOf<WideString>); });
}

// ---- comparing ----

template <class Text>
using Pair = std::pair<Text, Text>;

std::string UpperHalf(std::string text) {
    for (std::size_t i = 0; i < text.size(); i += 2)
        text[i] = static_cast<char>(text[i] - 'a' + 'A');
    return text;
}

// 1,000 pairs that differ in the case of every other letter, and every third of them in its last one too.
template <class Text>
std::vector<Pair<Text>> Pairs() {
    Random random(22);
    std::vector<Pair<Text>> pairs;
    for (int i = 0; i < 1000; ++i) {
        const std::string left = random.Letters(24);
        std::string right = UpperHalf(left);
        if (i % 3 == 0)
            right.back() = 'z';
        pairs.emplace_back(Text(left.begin(), left.end()), Text(right.begin(), right.end()));
    }
    return pairs;
}

std::string Sign(int order) {
    return order < 0 ? "-" : order > 0 ? "+" : "0";
}

int ComparePlain(const Pair<WideString>& pair) {
    const Unit* left = pair.first.c_str();
    const Unit* right = pair.second.c_str();
    for (;; ++left, ++right) {
        const std::wint_t a = std::towlower(*left);
        const std::wint_t b = std::towlower(*right);
        if (a != b)
            return a < b ? -1 : 1;
        if (a == 0)
            return 0;
    }
}

void AddComparing() {
    AddJob("text", "kelcore", "CompareNoCase, 1000 x 24", [] {
        std::vector<Pair<String>> pairs;
        for (const Pair<WideString>& pair : Pairs<WideString>())
            pairs.emplace_back(pair.first, pair.second);
        return ForEach(
            std::move(pairs),
            [](const Pair<String>& pair) { return pair.first.CompareNoCase(pair.second.c_str(), -1); }, Sign);
    });
    AddJob("text", "plain", "CompareNoCase, 1000 x 24",
           [] { return ForEach(Pairs<WideString>(), ComparePlain, Sign); });
    AddJob("text", "wcscasecmp", "CompareNoCase, 1000 x 24", [] {
        return ForEach(
            Pairs<std::wstring>(),
            [](const Pair<std::wstring>& pair) { return wcscasecmp(pair.first.c_str(), pair.second.c_str()); }, Sign);
    });
}

// ---- removing ----

void AddRemoving() {
    AddJob("text", "kelcore", "copy & Remove", [] {
        const auto remove = [](const String& text) {
            String rest(text);
            rest.Remove('\r');
            return rest;
        };
        return ForEach(std::vector<String>{ManyLines()}, remove, AsciiOf<String>);
    });
    AddJob("text", "plain", "copy & Remove", [] {
        const auto remove = [](const WideString& text) {
            WideString rest(text);
            std::erase(rest, Unit('\r'));
            return rest;
        };
        return ForEach(std::vector<WideString>{ManyLines()}, remove, AsciiOf<WideString>);
    });
    AddJob("text", "limit-copy", "copy & Remove", []() -> Call {
        const Call copy = ForEach(
            std::vector<WideString>{ManyLines()}, [](const WideString& text) { return WideString(text); },
            AsciiOf<WideString>);
        return {copy.run};
    });
}

} // namespace

const std::vector<Line>& GivenLines() {
    static const std::vector<Line> lines = [] {
        Random random(20);
        std::vector<Line> made;
        for (int i = 0; i < 1000; ++i)
            made.push_back({random.Letters(8 + random.Below(9)), static_cast<int>(random.Below(1'000'000)),
                            random.Below(100'000'000) / 997.0});
        return made;
    }();
    return lines;
}

void AddFormatJobs() {
    for (const Formatter& formatter : Contenders<Formatter>())
        AddJob("text", formatter.who, "format 1000 lines", formatter.make);
    AddLines();
    AddComparing();
    AddRemoving();
}

} // namespace kel::bench
