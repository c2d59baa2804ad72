#pragma once

#include "Report.h"

#include <kelcore/file.h>

#include <functional>
#include <vector>

namespace kelalbum {

using namespace kelexamples;

/// A file that may be a picture.
struct Source {
    WideString path;
    unsigned long long bytes = 0;
    /// The first source with the same bytes, by its place in the list: its own place, or one before it.
    std::size_t same = 0;
};

/// Finds the files that @p paths name, and all files in the folders that they name and in the folders below; each
/// folder sorted by name. What cannot be read is told to @p leaveOut with the reason.
/// @param album the path of a file that is not meant.
std::vector<Source> FindSources(const std::vector<WideString>& paths, const WideString& album,
                                const std::function<void(const WideString& path, const std::string& reason)>& leaveOut);

} // namespace kelalbum
