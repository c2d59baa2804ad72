#pragma once

#include "bench/support/Jobs.h"

#include <string>
#include <vector>

namespace kel::bench {

/// One who looks up the texts 0 to 999 of the translation that bench/module/texts.cmake makes; KELCORE_BENCH_MODULES is
/// the folder it lies in. Each result is a new string.
struct Catalogue {
    const char* who;
    Call (*make)();
};

/// The numbers of the texts, in an order that no cache foresees.
std::vector<unsigned> TextNumbers();

/// The name of a text where texts go by their names: its form in the untranslated program.
inline std::string TextName(unsigned number) {
    return "text number " + std::to_string(number) + " of the program, in its own language";
}

} // namespace kel::bench
