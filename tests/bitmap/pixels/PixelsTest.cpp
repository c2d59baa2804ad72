#include "bitmap/pixels/Pixels.h"
#include "bitmap/pixels/Roads.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

using namespace kel::pixels;

// Has the loops take each road of this processor in turn.
template <class Check>
void OnEachRoad(Check check) {
    for (const Road* const road : {&kPortableRoad, Sse41Road(), Avx2Road()}) {
        if (road == nullptr)
            continue;
        CAPTURE(road->name);
        TakeRoad(road);
        check();
    }
    TakeRoad(nullptr);
}

// The place of rows in a block of memory that ends where the last of them ends.
struct Shape {
    std::size_t width;
    std::size_t rows;
    std::size_t padding;
    bool upward; // the stride is negative
};

struct Picture {
    Picture(const Shape& shape, std::size_t rowBytes, std::size_t before)
        : memory(before + shape.rows * (rowBytes + shape.padding) - shape.padding), width(shape.width),
          rows(shape.rows), first(before), stride(static_cast<std::ptrdiff_t>(rowBytes + shape.padding)) {
        if (!shape.upward)
            return;
        first += (rows - 1) * static_cast<std::size_t>(stride);
        stride = -stride;
    }

    operator Rows() { return {memory.data() + first, stride, width, rows}; }
    operator ConstRows() const { return {memory.data() + first, stride, width, rows}; }
    operator BitRows() const { return {memory.data() + first, stride}; }
    Byte* Row(std::size_t y) { return memory.data() + first + static_cast<std::ptrdiff_t>(y) * stride; }

    std::vector<Byte> memory;
    std::size_t width;
    std::size_t rows;
    std::size_t first;
    std::ptrdiff_t stride;
};

std::mt19937 random_(7);

// Bytes of few values, so that a colour is often there, also across pixels.
void FillWithFew(Picture& picture) {
    for (Byte& byte : picture.memory)
        byte = random_() % 8 == 0 ? static_cast<Byte>(random_()) : static_cast<Byte>(0x40 + random_() % 2);
}

// Runs of 0x00 and of 0xFF, and others.
void FillWithRuns(Picture& mask) {
    for (std::size_t at = 0; at < mask.memory.size();) {
        const unsigned kind = random_() % 3;
        for (std::size_t run = 1 + random_() % 20; run > 0 && at < mask.memory.size(); --run, ++at)
            mask.memory[at] = static_cast<Byte>(kind == 0 ? 0 : kind == 1 ? 0xFF : random_());
    }
}

bool IsSet(const Byte* mask, std::size_t x) {
    return (mask[x / 8] >> (7 - x % 8) & 1) != 0;
}

// Pixels of any depth as numbers, the first byte lowest.
std::uint32_t Get(const Byte* pixel, std::size_t bytes) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < bytes; ++i)
        value |= static_cast<std::uint32_t>(pixel[i]) << (8 * i);
    return value;
}

void Put(Byte* pixel, std::size_t bytes, std::uint32_t value) {
    for (std::size_t i = 0; i < bytes; ++i)
        pixel[i] = static_cast<Byte>(value >> (8 * i));
}

// The fourth byte stays.
std::uint32_t Tinted(std::uint32_t pixel, std::uint32_t tint, unsigned opacity) {
    std::uint32_t result = pixel & 0xFF000000;
    for (int shift = 0; shift < 24; shift += 8)
        result |=
            ((opacity * 256 / 255 * (tint >> shift & 0xFF) + (pixel >> shift & 0xFF) * (256 - opacity)) >> 8 & 0xFF)
            << shift;
    return result;
}

std::uint32_t Grey(std::uint32_t pixel) {
    const std::uint32_t sum = (pixel & 0xFF) + (pixel >> 8 & 0xFF) + (pixel >> 16 & 0xFF);
    return (pixel & 0xFF000000) | (sum / 9 + 128) * 0x010101;
}

constexpr std::uint32_t kKey = 0x404140;
constexpr std::uint32_t kSameKey = 0x7F000000 | kKey;
constexpr std::uint32_t kTint = 0xFF8003;
constexpr std::uint32_t kOverlay = 0x7F7F3F01;

bool HasKey(std::uint32_t pixel) {
    return (pixel & 0xFFFFFF) == kKey;
}

// A loop, and what it makes of a pixel, given that of the second picture, or 1 or 0 as the mask has it. Pixels before
// the first are none of its business.
struct Loop {
    const char* name;
    std::size_t pixelBytes;
    bool masked;
    void (*run)(Picture& target, const Picture& other);
    std::uint32_t (*define)(std::uint32_t pixel, std::uint32_t other);
    std::size_t first = 0;
};

using P = Picture;
using U = std::uint32_t;

const Loop kLoops[] = {
    {"shade", 4, false, [](P& p, const P&) { ShadeRows(p, kTint, 102); },
     [](U p, U) -> U { return Tinted(p, kTint, 102) & 0xFFFFFF; }},
    {"shade masked", 4, true, [](P& p, const P& mask) { ShadeRowsMasked(p, mask, 7, kTint, 129); },
     [](U p, U set) { return set ? Tinted(p, kTint, 129) : p; }},
    {"shade masked from within a mask byte on", 4, true,
     [](P& p, const P& mask) { ShadeRowsMasked(p, mask, 13, kTint, 77); },
     [](U p, U set) { return set ? Tinted(p, kTint, 77) : p; }, 8},
    {"shade masked from the end of a mask byte on", 4, true,
     [](P& p, const P& mask) { ShadeRowsMasked(p, mask, 39, kTint, 77); },
     [](U p, U set) { return set ? Tinted(p, kTint, 77) : p; }, 32},
    {"combine 24", 3, false, [](P& p, const P& other) { CombineKey24(p, other, kSameKey); },
     [](U p, U other) { return HasKey(p) ? other : p; }},
    {"combine 32", 4, false, [](P& p, const P& other) { CombineKey32(p, other, kSameKey); },
     [](U p, U other) { return HasKey(p) ? other : p; }},
    {"grey 24", 3, false, [](P& p, const P&) { GreyOut24(p, kKey); }, [](U p, U) { return HasKey(p) ? p : Grey(p); }},
    {"grey 32", 4, false, [](P& p, const P&) { GreyOut32(p, kKey); }, [](U p, U) { return HasKey(p) ? p : Grey(p); }},
    {"or", 1, true, [](P& p, const P& m) { OrBitPlane(p, m, 0x84, false); }, [](U p, U set) { return p | set * 0x84; }},
    {"or inverted", 1, true, [](P& p, const P& m) { OrBitPlane(p, m, 8, true); },
     [](U p, U set) { return p | (set ^ 1) * 8; }},
    {"key to alpha", 4, false, [](P& p, const P&) { KeyToAlpha(p, kSameKey); },
     [](U p, U) { return HasKey(p) ? 0 : p | 0xFF000000; }},
    {"key to overlay", 4, false, [](P& p, const P&) { KeyToOverlay(p, kSameKey, kOverlay); },
     [](U p, U) { return HasKey(p) ? kOverlay : 0; }},
};

// Checks on each road that @p run makes the expected of a picture, around its rows, too.
template <class Run>
void CheckOnEachRoad(const Picture& before, const Picture& expected, Run run) {
    OnEachRoad([&] {
        Picture picture = before;
        run(picture);
        const auto wrong = std::mismatch(picture.memory.begin(), picture.memory.end(), expected.memory.begin()).first;
        CAPTURE(wrong - picture.memory.begin());
        REQUIRE(wrong == picture.memory.end());
    });
}

void CheckLoop(const Loop& loop, const Shape& shape) {
    const std::size_t bytes = loop.pixelBytes;
    Picture before(shape, shape.width * bytes, random_() % 5);
    Picture other(shape, loop.masked ? (shape.width + 7) / 8 : shape.width * bytes, random_() % 5);
    FillWithFew(before);
    loop.masked ? FillWithRuns(other) : FillWithFew(other);
    Picture expected = before;
    for (std::size_t y = 0; y < shape.rows; ++y)
        for (std::size_t x = loop.first; x < shape.width; ++x) {
            Byte* const pixel = expected.Row(y) + x * bytes;
            const U second = loop.masked ? IsSet(other.Row(y), x) : Get(other.Row(y) + x * bytes, bytes);
            Put(pixel, bytes, loop.define(Get(pixel, bytes), second));
        }
    CheckOnEachRoad(before, expected, [&](Picture& picture) { loop.run(picture, other); });
}

} // namespace

TEST_CASE("every road does to each pixel what is defined, and nothing to the bytes around") {
    std::vector<std::size_t> widths = {127, 128, 129, 193, 255, 300, 641};
    for (std::size_t width = 0; width < 100; ++width)
        widths.push_back(width);
    for (const Loop& loop : kLoops) {
        CAPTURE(loop.name);
        for (const std::size_t width : widths) {
            CAPTURE(width);
            CheckLoop(loop, {width, 1 + width % 5, 0, false});
            CheckLoop(loop, {width, 1 + width % 4, 1 + width % 7, width % 2 != 0});
        }
    }
}

TEST_CASE("every road tints every channel value by every tint at every opacity") {
    Picture before({256, 1, 0, false}, 1024, 0);
    for (U value = 0; value < 256; ++value)
        Put(before.Row(0) + 4 * value, 4, value * 0x01000100 | (value ^ 0x55) << 16 | (255 - value));
    Picture mask({256, 1, 0, false}, 32, 0);
    std::fill(mask.memory.begin(), mask.memory.end(), Byte{0xFF});
    for (unsigned opacity = 0; opacity < 256; ++opacity)
        for (U tint = 0; tint < 256; ++tint) {
            const U colour = tint | (tint ^ 0xFF) << 8 | ((tint + 77) & 0xFF) << 16;
            Picture kept = before;
            Picture cleared = before;
            for (std::size_t at = 0; at < 1024; at += 4) {
                const U tinted = Tinted(Get(before.Row(0) + at, 4), colour, opacity);
                Put(kept.Row(0) + at, 4, tinted);
                Put(cleared.Row(0) + at, 4, tinted & 0xFFFFFF);
            }
            CAPTURE(opacity);
            CAPTURE(tint);
            const auto shown = static_cast<Byte>(opacity);
            CheckOnEachRoad(before, cleared, [&](Picture& picture) { ShadeRows(picture, colour, shown); });
            CheckOnEachRoad(before, kept, [&](Picture& picture) { ShadeRowsMasked(picture, mask, 0, colour, shown); });
        }
}

TEST_CASE("greys of all sums of channels are truncated alike") {
    for (const std::size_t bytes : {3u, 4u}) {
        Picture before({766, 1, 0, false}, 766 * bytes, 0), expected = before;
        for (U sum = 0; sum < 766; ++sum) {
            Put(before.Row(0) + sum * bytes, bytes, sum / 3 | (sum + 1) / 3 << 8 | (sum + 2) / 3 << 16);
            Put(expected.Row(0) + sum * bytes, bytes, (sum / 9 + 128) * 0x010101);
        }
        CheckOnEachRoad(before, expected,
                        [&](Picture& picture) { (bytes == 3 ? GreyOut24 : GreyOut32)(picture, kNoColour); });
    }
}

TEST_CASE("a colour is found wherever a pixel has it, and neither behind a row nor across two pixels") {
    constexpr U kColour = 0x414243;
    for (const std::size_t bytes : {3u, 4u})
        for (std::size_t width = 0; width < 150; width += 1 + width / 16)
            for (std::size_t at = 0; at < width * bytes + 3; ++at) {
                Picture picture({width, 2, 5, width % 2 != 0}, width * bytes, 2);
                std::fill(picture.memory.begin(), picture.memory.end(), Byte{0x42});
                Put(picture.memory.data() + 2 + at, 3, kColour);
                const bool there = at % bytes == 0 && at < width * bytes;
                OnEachRoad([&] {
                    CAPTURE(width);
                    CAPTURE(at);
                    REQUIRE((bytes == 3 ? Contains24 : Contains32)(picture, kColour | 0xFF000000) == there);
                });
            }
}

TEST_CASE("complementing and filling reach exactly the bytes asked for") {
    for (const std::size_t count : {0u, 1u, 15u, 16u, 33u, 127u, 128u, 129u, 300u})
        OnEachRoad([&] {
            std::vector<Byte> bytes(count + 2, 0x35);
            Complement(bytes.data() + 1, count);
            CHECK(std::count(bytes.begin(), bytes.end(), 0xCA) == static_cast<std::ptrdiff_t>(count));
            Fill(bytes.data() + 1, count, 7);
            CHECK(std::count(bytes.begin(), bytes.end(), 7) == static_cast<std::ptrdiff_t>(count));
            CHECK(bytes.front() + bytes.back() == 0x6A);
        });
}
