#pragma once

#include <kelcore/platform/base.h>

#include <vector>

namespace kel::platform {

/// The section of a PE file that holds its resources, as it would lie in memory; empty if there is none.
struct ResourceSection {
    std::vector<char> bytes;
    std::uint32_t address = 0; ///< of the first byte, relative to the image
    std::uint32_t root = 0;    ///< where in the bytes the tree begins
};

enum class PeResult {
    Read,    ///< with or without resources
    NoImage, ///< no PE file
    Cut,     ///< a PE file that ends early, or contradicts itself
};

/// Copies the resource section of a PE32 or PE32+ file, for any machine. A copy, because a file that someone cuts would
/// take the pages of a mapping away under its readers. Only bytes that are there are allocated for.
/// @param descriptor a plain file, open for reading; its position stays.
/// @throws std::bad_alloc
PeResult ReadResourceSection(int descriptor, ResourceSection& section);

} // namespace kel::platform
