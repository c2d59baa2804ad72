// The obvious loops, left to the compiler to vectorise for AVX2.

#include "bench/pixels/Drawer.h"

#include <cstring>
#include <vector>

#define KELCORE_PLAIN __attribute__((target("avx2")))

namespace {

using namespace kel::bench;

template <std::size_t bytes>
KELCORE_PLAIN void StretchPixels(const Scene& s) {
    std::vector<int> columns(static_cast<std::size_t>(s.toWidth));
    for (int x = 0; x < s.toWidth; ++x)
        columns[static_cast<std::size_t>(x)] = x * s.width / s.toWidth;
    Byte* to = s.target;
    for (int y = 0; y < s.toHeight; ++y) {
        const Byte* from = s.source + s.SourceRow() * static_cast<std::size_t>(y * s.height / s.toHeight);
        for (int x = 0; x < s.toWidth; ++x, to += bytes)
            std::memcpy(to, from + bytes * static_cast<std::size_t>(columns[static_cast<std::size_t>(x)]), bytes);
    }
}

KELCORE_PLAIN void BlendBytes(Byte* to, const Byte* from, std::size_t count, unsigned opacity) {
    for (std::size_t i = 0; i < count; ++i)
        to[i] = static_cast<Byte>((from[i] * opacity + to[i] * (255 - opacity) + 127) / 255);
}

// Blue and red side by side, and green and alpha: both halves divided by 255 at once.
KELCORE_PLAIN inline std::uint32_t Weighed(std::uint32_t halves, std::uint32_t share) {
    const std::uint32_t product = halves * share + 0x800080;
    return (product + (product >> 8 & 0xFF00FF)) >> 8 & 0xFF00FF;
}

KELCORE_PLAIN void Over32(std::uint32_t* to, const std::uint32_t* from) {
    for (std::size_t i = 0; i < kPixels; ++i) {
        const std::uint32_t rest = 255 - (from[i] >> 24);
        to[i] = from[i] + (Weighed(to[i] & 0xFF00FF, rest) | Weighed(to[i] >> 8 & 0xFF00FF, rest) << 8);
    }
}

KELCORE_PLAIN void Over24(Byte* to, const Byte* from) {
    for (std::size_t i = 0; i < kPixels; ++i, to += 3, from += 4)
        for (std::size_t k = 0; k < 3; ++k)
            to[k] = static_cast<Byte>(from[k] + (to[k] * (255U - from[3]) + 127) / 255);
}

KELCORE_PLAIN void Keyed32(std::uint32_t* to, const std::uint32_t* from) {
    for (std::size_t i = 0; i < kPixels; ++i)
        to[i] = (from[i] & 0xFFFFFF) == kKey ? to[i] : from[i];
}

KELCORE_PLAIN void Keyed24(Byte* to, const Byte* from) {
    for (std::size_t i = 0; i < kPixels; ++i, to += 3, from += 3) {
        const bool has = (from[0] | from[1] << 8 | from[2] << 16) == static_cast<int>(kKey);
        for (std::size_t k = 0; k < 3; ++k)
            to[k] = has ? to[k] : from[k];
    }
}

void Tile(const Scene& s) {
    for (int y = 0; y < s.toHeight; ++y)
        for (int x = 0; x < s.toWidth; x += s.width)
            std::memcpy(s.target + s.TargetRow() * static_cast<std::size_t>(y) +
                            s.targetBytes * static_cast<std::size_t>(x),
                        s.source + s.SourceRow() * static_cast<std::size_t>(y % s.height), s.SourceRow());
}

std::uint32_t* TargetWords(const Scene& s) {
    return reinterpret_cast<std::uint32_t*>(s.target);
}

const std::uint32_t* SourceWords(const Scene& s) {
    return reinterpret_cast<const std::uint32_t*>(s.source);
}

template <class Draw>
Drawing Prepared(const Scene& scene, Draw draw) {
    return {[=, &scene] { draw(scene); }, scene.target};
}

const Enter<Drawer> entered[] = {
    Enter<Drawer>{{"plain", "stretch", 4, [](const Scene& s) { return Prepared(s, StretchPixels<4>); }}},
    Enter<Drawer>{{"plain", "stretch", 3, [](const Scene& s) { return Prepared(s, StretchPixels<3>); }}},
    Enter<Drawer>{{"plain", "blend", 0,
                   [](const Scene& s) {
                       const auto draw = [](const Scene& scene) {
                           BlendBytes(scene.target, scene.source, scene.Result(), unsigned(scene.opacity));
                       };
                       return Prepared(s, draw);
                   }}},
    Enter<Drawer>{{"plain", "over", 4,
                   [](const Scene& s) {
                       return Prepared(s, [](const Scene& scene) { Over32(TargetWords(scene), SourceWords(scene)); });
                   }}},
    Enter<Drawer>{
        {"plain", "over", 3,
         [](const Scene& s) { return Prepared(s, [](const Scene& scene) { Over24(scene.target, scene.source); }); }}},
    Enter<Drawer>{{"plain", "transparent", 4,
                   [](const Scene& s) {
                       return Prepared(s, [](const Scene& scene) { Keyed32(TargetWords(scene), SourceWords(scene)); });
                   }}},
    Enter<Drawer>{
        {"plain", "transparent", 3,
         [](const Scene& s) { return Prepared(s, [](const Scene& scene) { Keyed24(scene.target, scene.source); }); }}},
    Enter<Drawer>{{"plain", "tile", 0, [](const Scene& s) { return Prepared(s, Tile); }}},
};

} // namespace
