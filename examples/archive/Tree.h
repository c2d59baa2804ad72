#pragma once

#include "Entries.h"

namespace kelarchive {

/// What is to be packed: the entries below the given paths, with names, times, attributes and the sources of contents.
struct Tree {
    Archive archive;
    unsigned long long folders = 0;
    /// Links that lead to a folder or nowhere, and devices: they are not followed.
    unsigned long long leftOut = 0;
};

/// Searches @p paths and fills @p tree, each folder sorted by name, so that the same files make the same archive
/// wherever the system lists them in another order.
/// @throws Failure if a path does not exist, is a drive root, or has the name of another one.
void Scan(Tree& tree, const std::vector<WideString>& paths);

} // namespace kelarchive
