#include "bitmap/pixels/Pixels.h"
#include "bench/pixels/Painter.h"
#include "bench/support/Areas.h"
#include "bench/support/Random.h"

#include <cstdlib>
#include <cstring>
#include <map>

namespace kel::bench {
namespace {

using Runner = std::function<void()>;
using pixels::BitRows;
using pixels::Byte;
using pixels::ConstRows;
using pixels::Rows;

Rows Target(const Canvas& canvas) {
    return {canvas.target, canvas.Stride(), kWidth, kHeight};
}
ConstRows Source(const Canvas& canvas) {
    return {canvas.source, canvas.Stride(), kWidth, kHeight};
}
BitRows Mask(const Canvas& canvas) {
    return {canvas.mask, kWidth / 8};
}

Runner Tint(Canvas& c) {
    return [&c] { pixels::ShadeRows(Target(c), kTint, static_cast<Byte>(c.opacity)); };
}
Runner TintMasked(Canvas& c) {
    return [&c] { pixels::ShadeRowsMasked(Target(c), Mask(c), 0, kTint, static_cast<Byte>(c.opacity)); };
}
Runner CombineKey(Canvas& c) {
    return [&c] { (c.pixelBytes == 3 ? pixels::CombineKey24 : pixels::CombineKey32)(Target(c), Source(c), kKey); };
}
Runner GreyOut(Canvas& c) {
    return [&c] { (c.pixelBytes == 3 ? pixels::GreyOut24 : pixels::GreyOut32)(Target(c), kKey); };
}
Runner Find(Canvas& c) {
    return [&c] { c.found = (c.pixelBytes == 3 ? pixels::Contains24 : pixels::Contains32)(Source(c), kAbsent); };
}
Runner Invert(Canvas& c) {
    return [&c] { pixels::Complement(c.target, c.Bytes()); };
}
Runner Fill(Canvas& c) {
    return [&c] { pixels::Fill(c.target, c.Bytes(), 0x5A); };
}
Runner OrBitPlane(Canvas& c) {
    return [&c] { pixels::OrBitPlane(Target(c), Mask(c), 0x08, false); };
}
Runner KeyToAlpha(Canvas& c) {
    return [&c] { pixels::KeyToAlpha(Target(c), kKey); };
}
Runner KeyToOverlay(Canvas& c) {
    return [&c] { pixels::KeyToOverlay(Target(c), kKey, kOverlay); };
}

const Enter<Painter> entered[] = {
    Enter<Painter>{{"kelcore", "tint 32", true, &Tint}},
    Enter<Painter>{{"kelcore", "masked tint 32", true, &TintMasked}},
    Enter<Painter>{{"kelcore", "colour-key 32", true, &CombineKey}},
    Enter<Painter>{{"kelcore", "colour-key 24", true, &CombineKey}},
    Enter<Painter>{{"kelcore", "grey-out 32", true, &GreyOut}},
    Enter<Painter>{{"kelcore", "grey-out 24", true, &GreyOut}},
    Enter<Painter>{{"kelcore", "find a colour 32", true, &Find}},
    Enter<Painter>{{"kelcore", "find a colour 24", true, &Find}},
    Enter<Painter>{{"kelcore", "invert 32", true, &Invert}},
    Enter<Painter>{{"kelcore", "fill 32", true, &Fill}},
    Enter<Painter>{{"kelcore", "or bit plane 8", true, &OrBitPlane}},
    Enter<Painter>{{"kelcore", "key to alpha 32", true, &KeyToAlpha}},
    Enter<Painter>{{"kelcore", "key to overlay 32", true, &KeyToOverlay}},
};

enum class MaskOf { none, ones, disc, random };
enum class Limit { pass, copy, read, fill };

struct Work {
    const char* name;
    const char* kind;
    std::size_t pixelBytes;
    Limit limit;
    int opacity = 0;
    MaskOf mask = MaskOf::none;
    bool restore = false; // the work done once leaves less to do
};

const Work kWorks[] = {
    {"tint 40% 32", "tint 32", 4, Limit::pass, 102},
    {"tint 50% 32", "tint 32", 4, Limit::pass, 128},
    {"tint 40%, mask of ones 32", "masked tint 32", 4, Limit::pass, 102, MaskOf::ones},
    {"tint 40%, mask of a disc 32", "masked tint 32", 4, Limit::pass, 102, MaskOf::disc},
    {"tint 40%, random mask 32", "masked tint 32", 4, Limit::pass, 102, MaskOf::random},
    {"colour-key 32", "colour-key 32", 4, Limit::copy, 0, MaskOf::none, true},
    {"colour-key 24", "colour-key 24", 3, Limit::copy, 0, MaskOf::none, true},
    {"grey-out 32", "grey-out 32", 4, Limit::pass},
    {"grey-out 24", "grey-out 24", 3, Limit::pass},
    {"find a colour 32", "find a colour 32", 4, Limit::read},
    {"find a colour 24", "find a colour 24", 3, Limit::read},
    {"invert 32", "invert 32", 4, Limit::pass},
    {"fill 32", "fill 32", 4, Limit::fill},
    {"or bit plane 8", "or bit plane 8", 1, Limit::pass, 0, MaskOf::random},
    {"key to alpha 32", "key to alpha 32", 4, Limit::pass, 0, MaskOf::none, true},
    {"key to overlay 32", "key to overlay 32", 4, Limit::pass, 0, MaskOf::none, true},
};

bool InDisc(std::size_t x, std::size_t y) {
    const auto dx = static_cast<double>(x) - kWidth / 2.0;
    const auto dy = static_cast<double>(y) - kHeight / 2.0;
    return dx * dx + dy * dy < 400.0 * 400.0;
}

// Pictures begin at a page, as the system's do.
Byte* NewPicture(std::size_t bytes) {
    constexpr std::size_t kPage = 4096;
    void* const memory = std::aligned_alloc(kPage, (bytes + kPage - 1) / kPage * kPage);
    if (memory == nullptr)
        throw std::bad_alloc();
    std::memset(memory, 0, bytes);
    return static_cast<Byte*>(memory);
}

// Bytes below 0x80, so that kKey and kAbsent are nowhere but where they are put.
const Byte* RandomPicture(std::uint64_t seed) {
    Byte* const picture = NewPicture(4 * kPixels);
    Random random(seed);
    for (std::size_t i = 0; i < 4 * kPixels; ++i)
        picture[i] = static_cast<Byte>(random.Below(0x80));
    return picture;
}

const Byte* Pattern() {
    static const Byte* const pattern = RandomPicture(51);
    return pattern;
}

// Random pixels with a disc of the key colour; kept for all works of the depth.
const Byte* WithDisc(std::size_t pixelBytes) {
    static std::map<std::size_t, const Byte*> pictures;
    const Byte*& picture = pictures[pixelBytes];
    if (picture != nullptr)
        return picture;
    Byte* const fresh = NewPicture(pixelBytes * kPixels);
    std::memcpy(fresh, Pattern() + 4096, pixelBytes * kPixels - 4096);
    for (std::size_t i = 0; pixelBytes >= 3 && i < kPixels; ++i)
        if (InDisc(i % kWidth, i / kWidth))
            std::memcpy(fresh + pixelBytes * i, &kKey, 3);
    return picture = fresh;
}

const Byte* NewMask(MaskOf kind) {
    if (kind == MaskOf::none)
        return nullptr;
    Byte* const mask = NewPicture(kPixels / 8);
    Random random(52);
    for (std::size_t i = 0; i < kPixels; ++i) {
        const bool set =
            kind == MaskOf::disc ? InDisc(i % kWidth, i / kWidth) : kind == MaskOf::ones || random.Below(2) == 0;
        mask[i / 8] |= static_cast<Byte>(set ? 0x80 >> i % 8 : 0);
    }
    return mask;
}

// One canvas for all who do the work.
Canvas& CanvasOf(const Work& work) {
    static std::map<const Work*, Canvas> canvases;
    Canvas& canvas = canvases[&work];
    if (canvas.target == nullptr)
        canvas = {
            NewPicture(work.pixelBytes * kPixels), Pattern(), NewMask(work.mask), work.pixelBytes, work.opacity, false};
    return canvas;
}

void Restore(const Canvas& canvas) {
    std::memcpy(canvas.target, WithDisc(canvas.pixelBytes), canvas.Bytes());
}

std::string ResultOf(const Canvas& canvas) {
    return std::string(reinterpret_cast<const char*>(canvas.target), canvas.Bytes()) + (canvas.found ? "yes" : "no");
}

Runner Timed(const Runner& run) {
    return [run] {
        run();
        benchmark::ClobberMemory();
    };
}

Runner Clearing(const Work& work, const Canvas& canvas) {
    return work.restore ? Runner([&canvas] { Restore(canvas); }) : nullptr;
}

Call CallOf(const Painter& painter, const Work& work) {
    Canvas& canvas = CanvasOf(work);
    const Runner run = painter.prepare(canvas);
    const auto result = [&canvas, run] {
        Restore(canvas);
        run();
        const std::string bytes = ResultOf(canvas);
        Restore(canvas);
        return bytes;
    };
    return {Timed(run), painter.exact ? std::function<std::string()>(result) : nullptr, Clearing(work, canvas)};
}

// The least that any work in place must do, as wide as the processor can.
__attribute__((target("avx2"))) void PassInPlace(Byte* bytes, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        bytes[i] ^= 0x5A;
}

Runner LimitRun(const Canvas& canvas, Limit limit) {
    Byte* const target = canvas.target;
    const Byte* const source = canvas.source;
    const std::size_t bytes = canvas.Bytes();
    switch (limit) {
    case Limit::pass:
        return [=] { PassInPlace(target, bytes); };
    case Limit::copy:
        return [=] { std::memcpy(target, source, bytes); };
    case Limit::read:
        return [=] { benchmark::DoNotOptimize(std::memchr(source, 0xFF, bytes)); };
    default:
        return [=] { std::memset(target, 0x5A, bytes); };
    }
}

void AddLimit(const Work& work) {
    const char* const names[] = {"limit-pass in place", "limit-memcpy", "limit-memchr", "limit-memset"};
    AddJob("pixels", names[static_cast<int>(work.limit)], work.name, [&work] {
        const Canvas& canvas = CanvasOf(work);
        return Call{Timed(LimitRun(canvas, work.limit)), nullptr, Clearing(work, canvas)};
    });
}

} // namespace

void AddPixelJobs() {
    for (const Work& work : kWorks) {
        for (const Painter& painter : Contenders<Painter>())
            if (std::strcmp(painter.kind, work.kind) == 0)
                AddJob("pixels", painter.who, work.name, [=, &work] { return CallOf(painter, work); });
        AddLimit(work);
    }
}

} // namespace kel::bench
