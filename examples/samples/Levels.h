#pragma once

#include "Paint.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

/// @throws std::runtime_error if a file was not written.
void Expect(bool written, const std::string& path);

/// A channel as a whole number from 0 to @p most.
inline std::uint16_t Level(float channel, int most) {
    return std::uint16_t(std::clamp(channel, 0.0F, 1.0F) * float(most) + 0.5F);
}

/// A channel from 0 to 255.
inline unsigned char Byte(float channel) {
    return static_cast<unsigned char>(Level(channel, 255));
}

inline std::array<unsigned char, 3> Bytes(const Colour& colour) {
    return {Byte(colour.red), Byte(colour.green), Byte(colour.blue)};
}

/// Red, green and blue of all pixels, row by row.
std::vector<unsigned char> Triples(const Canvas& canvas);
