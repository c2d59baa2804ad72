#pragma once

#include "bench/support/Jobs.h"

#include <string>
#include <vector>

/// Text to draw and to measure, and those who do it.
namespace kel::bench {

constexpr int kPageWidth = 1024;
constexpr int kLineHeight = 16;
constexpr int kLines = 100; ///< of 100 characters each
constexpr int kPageHeight = kLines * kLineHeight;
constexpr int kTextHeight = 13; ///< of the em square
constexpr const char* kFace = "Liberation Sans";

std::vector<std::string> PageLines();

/// 1,000 characters.
std::string LongLine();

/// Draws the lines of a page, black on white, 32 bits a pixel.
struct PageDrawer {
    const char* who;
    Call (*make)();
};

/// Tells how much ink the long line takes in width.
struct InkMeter {
    const char* who;
    Call (*make)();
};

} // namespace kel::bench
