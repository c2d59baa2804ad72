#pragma once

#include "bench/support/Jobs.h"

#include <string>
#include <vector>

namespace kel::bench {

/// What one line is formatted from with "%s %i %lf".
struct Line {
    std::string name;
    int number;
    double measure;
};

/// 1,000 of them.
const std::vector<Line>& GivenLines();

/// One who formats each line as a new wide string.
struct Formatter {
    const char* who;
    Call (*make)();
};

/// The lines with the names as @p convert makes them of narrow text.
template <class Convert>
auto LinesWith(Convert convert) {
    using Name = decltype(convert(std::string()));
    struct Own {
        Name name;
        int number;
        double measure;
    };
    std::vector<Own> lines;
    for (const Line& line : GivenLines())
        lines.push_back({convert(line.name), line.number, line.measure});
    return lines;
}

/// An ASCII text of any units as bytes.
template <class Text>
std::string AsciiOf(const Text& text) {
    std::string ascii;
    for (const auto unit : text)
        ascii += static_cast<char>(unit);
    return ascii;
}

} // namespace kel::bench
