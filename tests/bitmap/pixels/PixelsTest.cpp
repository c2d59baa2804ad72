#include "bitmap/pixels/Pixels.h"
#include "bitmap/pixels/Roads.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <string>
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

Byte Tinted(unsigned tint, Byte value, unsigned opacity) {
    return static_cast<Byte>((opacity * 256 / 255 * tint + value * (256 - opacity)) >> 8);
}

bool IsSet(const Byte* mask, std::size_t x) {
    return (mask[x / 8] >> (7 - x % 8) & 1) != 0;
}

bool Has(const Byte* pixel, std::uint32_t colour) {
    return pixel[0] == (colour & 0xFF) && pixel[1] == (colour >> 8 & 0xFF) && pixel[2] == (colour >> 16 & 0xFF);
}

void Put(Byte* pixel, std::uint32_t value) {
    for (int i = 0; i < 4; ++i)
        pixel[i] = static_cast<Byte>(value >> (8 * i));
}

void TintPixel(Byte* pixel, std::uint32_t tint, unsigned opacity) {
    for (int i = 0; i < 3; ++i)
        pixel[i] = Tinted(tint >> (8 * i) & 0xFF, pixel[i], opacity);
}

void Grey(Byte* pixel) {
    std::fill(pixel, pixel + 3, static_cast<Byte>((pixel[0] + pixel[1] + pixel[2]) / 9 + 128));
}

constexpr std::uint32_t kKey = 0x404140;
constexpr std::uint32_t kTint = 0xFF8003;

// A loop, and what it does to one pixel: `other` is the pixel of the second picture, or the row of its mask.
struct Loop {
    const char* name;
    std::size_t pixelBytes;
    bool masked;
    std::function<void(Picture& target, const Picture& other)> run;
    std::function<void(Byte* pixel, const Byte* other, std::size_t x)> define;
};

const std::vector<Loop>& Loops() {
    static const std::vector<Loop> loops = {
        {"shade 40 %", 4, false, [](Picture& p, const Picture&) { ShadeRows(p, kTint, 102); },
         [](Byte* pixel, const Byte*, std::size_t) { TintPixel(pixel, kTint, 102), pixel[3] = 0; }},
        {"shade 80 %", 4, false, [](Picture& p, const Picture&) { ShadeRows(p, kTint, 204); },
         [](Byte* pixel, const Byte*, std::size_t) { TintPixel(pixel, kTint, 204), pixel[3] = 0; }},
        {"shade masked 128", 4, true, [](Picture& p, const Picture& m) { ShadeRowsMasked(p, m, 0, kTint, 128); },
         [](Byte* pixel, const Byte* mask, std::size_t x) { IsSet(mask, x) ? TintPixel(pixel, kTint, 128) : void(); }},
        {"shade masked 129", 4, true, [](Picture& p, const Picture& m) { ShadeRowsMasked(p, m, 7, kTint, 129); },
         [](Byte* pixel, const Byte* mask, std::size_t x) { IsSet(mask, x) ? TintPixel(pixel, kTint, 129) : void(); }},
        {"combine 24", 3, false, [](Picture& p, const Picture& other) { CombineKey24(p, other, kKey | 0x7F000000); },
         [](Byte* pixel, const Byte* other, std::size_t) {
             Has(pixel, kKey) ? void(std::copy_n(other, 3, pixel)) : void();
         }},
        {"combine 32", 4, false, [](Picture& p, const Picture& other) { CombineKey32(p, other, kKey | 0x7F000000); },
         [](Byte* pixel, const Byte* other, std::size_t) {
             Has(pixel, kKey) ? void(std::copy_n(other, 4, pixel)) : void();
         }},
        {"grey 24", 3, false, [](Picture& p, const Picture&) { GreyOut24(p, kKey); },
         [](Byte* pixel, const Byte*, std::size_t) { Has(pixel, kKey) ? void() : Grey(pixel); }},
        {"grey 32", 4, false, [](Picture& p, const Picture&) { GreyOut32(p, kKey); },
         [](Byte* pixel, const Byte*, std::size_t) { Has(pixel, kKey) ? void() : Grey(pixel); }},
        {"grey 24, none kept", 3, false, [](Picture& p, const Picture&) { GreyOut24(p, kKey | 0x01000000); },
         [](Byte* pixel, const Byte*, std::size_t) { Grey(pixel); }},
        {"grey 32, none kept", 4, false, [](Picture& p, const Picture&) { GreyOut32(p, kKey | 0x40000000); },
         [](Byte* pixel, const Byte*, std::size_t) { Grey(pixel); }},
        {"or bit plane", 1, true, [](Picture& p, const Picture& mask) { OrBitPlane(p, mask, 0x84, false); },
         [](Byte* pixel, const Byte* mask, std::size_t x) { *pixel |= IsSet(mask, x) ? 0x84 : 0; }},
        {"or bit plane, inverted", 1, true, [](Picture& p, const Picture& mask) { OrBitPlane(p, mask, 0x08, true); },
         [](Byte* pixel, const Byte* mask, std::size_t x) { *pixel |= IsSet(mask, x) ? 0 : 0x08; }},
        {"key to alpha", 4, false, [](Picture& p, const Picture&) { KeyToAlpha(p, kKey | 0x7F000000); },
         [](Byte* pixel, const Byte*, std::size_t) { Has(pixel, kKey) ? Put(pixel, 0) : void(pixel[3] = 0xFF); }},
        {"key to overlay", 4, false, [](Picture& p, const Picture&) { KeyToOverlay(p, kKey | 0x7F000000, 0x7F7F3F01); },
         [](Byte* pixel, const Byte*, std::size_t) { Put(pixel, Has(pixel, kKey) ? 0x7F7F3F01 : 0); }},
    };
    return loops;
}

void CheckLoop(const Loop& loop, const Shape& shape) {
    Picture before(shape, shape.width * loop.pixelBytes, random_() % 5);
    Picture other(shape, loop.masked ? (shape.width + 7) / 8 : shape.width * loop.pixelBytes, random_() % 5);
    FillWithFew(before);
    loop.masked ? FillWithRuns(other) : FillWithFew(other);
    Picture expected = before;
    for (std::size_t y = 0; y < shape.rows; ++y)
        for (std::size_t x = 0; x < shape.width; ++x)
            loop.define(expected.Row(y) + x * loop.pixelBytes, other.Row(y) + (loop.masked ? 0 : x * loop.pixelBytes),
                        x);
    OnEachRoad([&] {
        Picture picture = before;
        loop.run(picture, other);
        const auto wrong = std::mismatch(picture.memory.begin(), picture.memory.end(), expected.memory.begin()).first;
        CAPTURE(wrong - picture.memory.begin());
        REQUIRE(wrong == picture.memory.end());
    });
}

} // namespace

TEST_CASE("every road does to each pixel what is defined, and nothing to the bytes around") {
    std::vector<std::size_t> widths = {127, 128, 129, 193, 255, 300, 641};
    for (std::size_t width = 0; width < 100; ++width)
        widths.push_back(width);
    for (const Loop& loop : Loops()) {
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
    for (unsigned value = 0; value < 256; ++value)
        Put(before.memory.data() + 4 * value, value * 0x01000100 | (value ^ 0x55) << 16 | (255 - value));
    Picture mask({256, 1, 0, false}, 32, 0);
    std::fill(mask.memory.begin(), mask.memory.end(), Byte{0xFF});
    for (unsigned opacity = 0; opacity < 256; ++opacity)
        for (unsigned tint = 0; tint < 256; ++tint) {
            const std::uint32_t colour = tint | (tint ^ 0xFF) << 8 | ((tint + 77) & 0xFF) << 16;
            Picture kept = before;
            for (std::size_t x = 0; x < 256; ++x)
                TintPixel(kept.Row(0) + 4 * x, colour, opacity);
            Picture cleared = kept;
            for (std::size_t x = 0; x < 256; ++x)
                cleared.memory[4 * x + 3] = 0;
            OnEachRoad([&] {
                Picture plain = before;
                ShadeRows(plain, colour, static_cast<Byte>(opacity));
                Picture masked = before;
                ShadeRowsMasked(masked, mask, 0, colour, static_cast<Byte>(opacity));
                if (plain.memory != cleared.memory || masked.memory != kept.memory)
                    FAIL("opacity ", opacity, ", tint ", tint);
            });
        }
}

TEST_CASE("a masked tint begins at the clip's left edge rounded down to a whole mask byte") {
    for (std::size_t left = 0; left < 40; ++left)
        for (const std::size_t width : {left, left + 1, left + 5, left + 31, left + 90}) {
            Picture before({width, 3, 4, true}, 4 * width, 3);
            Picture mask({width, 3, 3, false}, (width + 7) / 8, 1);
            FillWithFew(before);
            FillWithRuns(mask);
            Picture expected = before;
            for (std::size_t y = 0; y < 3; ++y)
                for (std::size_t x = left / 8 * 8; x < width; ++x)
                    if (IsSet(mask.Row(y), x))
                        TintPixel(expected.Row(y) + 4 * x, kTint, 77);
            OnEachRoad([&] {
                CAPTURE(left);
                CAPTURE(width);
                Picture picture = before;
                ShadeRowsMasked(picture, mask, left, kTint, 77);
                REQUIRE(picture.memory == expected.memory);
            });
        }
}

TEST_CASE("greys of all sums of channels are truncated alike") {
    for (const std::size_t pixelBytes : {3u, 4u}) {
        Picture before({766, 1, 0, false}, 766 * pixelBytes, 0);
        for (unsigned sum = 0; sum < 766; ++sum)
            for (unsigned channel = 0, left = sum; channel < 3; left -= std::min(left, 255u), ++channel)
                before.Row(0)[sum * pixelBytes + channel] = static_cast<Byte>(std::min(left, 255u));
        OnEachRoad([&] {
            Picture picture = before;
            (pixelBytes == 3 ? GreyOut24 : GreyOut32)(picture, kNoColour);
            for (unsigned sum = 0; sum < 766; ++sum) {
                CAPTURE(sum);
                REQUIRE(Has(picture.Row(0) + sum * pixelBytes, (sum / 9 + 128) * 0x010101));
            }
        });
    }
}

TEST_CASE("a colour is found wherever a pixel has it, and nowhere else") {
    constexpr std::uint32_t kColour = 0x414243;
    for (const std::size_t pixelBytes : {3u, 4u})
        for (std::size_t width = 0; width < 150; width += 1 + width / 16) {
            const std::size_t rowBytes = width * pixelBytes;
            Picture picture({width, 2, 5, width % 2 != 0}, rowBytes, 2);
            // Behind each row, and across two pixels, the colour does not count.
            for (std::size_t at = 0; at + 3 <= rowBytes + 5; ++at) {
                std::fill(picture.memory.begin(), picture.memory.end(), Byte{0x42});
                Byte* const lower = picture.memory.data() + 2;
                for (int i = 0; i < 3; ++i)
                    lower[at + static_cast<std::size_t>(i)] = static_cast<Byte>(kColour >> (8 * i));
                const bool there = at % pixelBytes == 0 && at < rowBytes;
                OnEachRoad([&] {
                    CAPTURE(width);
                    CAPTURE(at);
                    REQUIRE((pixelBytes == 3 ? Contains24 : Contains32)(picture, kColour | 0xFF000000) == there);
                });
            }
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
