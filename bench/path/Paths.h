#pragma once

#include "bench/support/Jobs.h"

#include <string>
#include <vector>

namespace kel::bench {

/// An existing name to be handled: a whole path, and its folder and name apart. All are in the host's form, absolute,
/// with '/' between the parts and an extension.
struct GivenPath {
    std::string whole;
    std::string folder;
    std::string name;
};

/// 1,000 paths, 2 to 6 folders deep.
const std::vector<GivenPath>& GivenPaths();

/// One who has a function of the path area. Its results are compared in the host's form.
struct PathFunction {
    const char* who;
    const char* work;
    Call (*make)();
};

/// The 1,000 paths in a contender's own form.
template <class Convert>
auto Converted(Convert convert) {
    std::vector<decltype(convert(GivenPaths().front()))> converted;
    for (const GivenPath& path : GivenPaths())
        converted.push_back(convert(path));
    return converted;
}

inline std::string YesOrNo(bool answer) {
    return answer ? "yes" : "no";
}

} // namespace kel::bench
