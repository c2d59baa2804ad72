#include "platform/crt/PageFacts.h"

#include <algorithm>
#include <iterator>

namespace kel::platform {
namespace {

// What Wine answers for these pages.
constexpr PageFacts kFacts[] = {
    {857, {}, '?', 0xF8BB},
    {864, {}, '?', 0xF8BE},
    {874, {}, '?', 0xF8C1},
    {932, {0x81, 0x9F, 0xE0, 0xFC}, 0x30FB, 0xF8F0},
    {936, {0x81, 0xFE}, '?', 0},
    {949, {0x81, 0xFE}, '?', 0},
    {950, {0x81, 0xFE}, '?', 0},
    {1253, {}, '?', 0xF8F9},
    {1255, {}, '?', 0xF88D},
    {1257, {}, '?', 0xF8FC},
    {1361, {0x84, 0xD3, 0xD8, 0xDE, 0xE0, 0xF9}, '?', 0},
    {28593, {}, '?', 0xF7F5},
    {28596, {}, '?', 0xF7C8},
};

struct Correction {
    unsigned number;
    unsigned byte;
    WCHAR unit;
};

constexpr Correction kCorrections[] = {
    {864, 0x25, 0x0025},  {1026, 0x9D, 0x00B8},  {1026, 0xBC, 0x00AF},  {1255, 0xCA, 0x05BA},
    {1361, 0x5C, 0x005C}, {21866, 0xAE, 0x045E}, {21866, 0xBE, 0x040E},
};

} // namespace

PageFacts FactsOf(unsigned number) {
    const auto* found = std::find_if(std::begin(kFacts), std::end(kFacts),
                                     [&](const PageFacts& facts) { return facts.number == number; });
    return found == std::end(kFacts) ? PageFacts{number, {}, '?', 0} : *found;
}

WCHAR CorrectedUnit(unsigned number, unsigned byte, WCHAR otherwise) {
    for (const Correction& correction : kCorrections) {
        if (correction.number == number && correction.byte == byte)
            return correction.unit;
    }
    return otherwise;
}

} // namespace kel::platform
