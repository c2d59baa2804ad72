#pragma once

#include "bench/pictures/Photograph.h"
#include "bench/support/Jobs.h"

#include <cstddef>
#include <span>
#include <vector>

namespace kel::bench {

/// A picture file in memory.
using FileBytes = std::vector<unsigned char>;

/// Where a file is decoded to, as packed bitmaps have it: blue, green, red, rows from the bottom that are padded to a
/// multiple of 4 bytes.
struct Rows {
    int width, height;
    unsigned char* memory;

    std::size_t RowBytes() const { return (static_cast<std::size_t>(width) * 3 + 3) / 4 * 4; }
    std::size_t Bytes() const { return RowBytes() * static_cast<std::size_t>(height); }
    /// Row @p y, counted from the top.
    unsigned char* Row(int y) const { return memory + RowBytes() * static_cast<std::size_t>(height - 1 - y); }
};

/// A kind of picture file, made and read by the library that defines it.
struct PictureFile {
    const char* who;
    const char* kind;
    bool isRefused; ///< as a file; it can be loaded from memory only
    FileBytes (*encode)(const Photograph& photograph);
    void (*decode)(std::span<const unsigned char> file, const Rows& rows);
};

} // namespace kel::bench
