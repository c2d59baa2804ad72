#pragma once

#include "bench/pixels/Painter.h"

#include <string_view>

namespace kel::bench {

using Byte = unsigned char;

constexpr int kTile = 64; // both sides of the picture that tiles are made of

/// What is drawn on what. Rows follow each other without gaps, the top row first; pixels are blue, green, red, and in
/// 32 bits alpha, by which the colours are multiplied already.
struct Scene {
    const Byte* source;
    int width; ///< of the source
    int height;
    std::size_t sourceBytes; ///< of a pixel
    Byte* target;
    int toWidth;
    int toHeight;
    std::size_t targetBytes;
    int opacity; ///< of 255

    std::size_t SourceRow() const { return static_cast<std::size_t>(width) * sourceBytes; }
    std::size_t TargetRow() const { return static_cast<std::size_t>(toWidth) * targetBytes; }
    std::size_t Result() const { return TargetRow() * static_cast<std::size_t>(toHeight); }
};

/// Work that is made ready: what is timed, and the pixels that it leaves.
struct Drawing {
    std::function<void()> run;
    const Byte* pixels;
};

/// One who does a kind of work: "tile" stands for all works whose name begins so.
struct Drawer {
    const char* who;
    std::string_view kind;
    std::size_t bytes; ///< of a target's pixel that it can do; 0: all
    Drawing (*prepare)(const Scene& scene);
};

} // namespace kel::bench
