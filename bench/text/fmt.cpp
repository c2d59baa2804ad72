#include "bench/text/Lines.h"

#include <fmt/printf.h>
#include <fmt/xchar.h>

namespace {

using namespace kel::bench;

std::wstring Widen(const std::string& text) {
    return std::wstring(text.begin(), text.end());
}

Call Make() {
    return ForEach(
        LinesWith(Widen),
        [](const auto& line) { return fmt::sprintf(L"%s %i %lf", line.name, line.number, line.measure); },
        AsciiOf<std::wstring>);
}

const Enter<Formatter> entered{{"fmt", &Make}};

} // namespace
