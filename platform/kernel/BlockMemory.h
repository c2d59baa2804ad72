#pragma once

#include <cstddef>
#include <memory>

/// @file
/// The memory of global blocks.
namespace kel::platform {

/// Gives a block's memory back: large ones are kept for the next one of about that size.
struct BlockRelease {
    std::size_t bytes = 0; ///< as they were allocated

    void operator()(void* memory) const;
};
using BlockMemory = std::unique_ptr<void, BlockRelease>;

/// @return at least one byte, aligned for any type.
/// @throws std::bad_alloc
/// Neither this nor BlockRelease may run on two threads at once.
BlockMemory AllocateBlock(std::size_t bytes, bool zeroed);

} // namespace kel::platform
