#include "bench/pixels/Painter.h"
#include "bench/support/Areas.h"
#include "bench/support/Random.h"

#include <kelcore/bitmap.h>

#include <cstdlib>
#include <cstring>
#include <map>
#include <stdexcept>

namespace kel::bench {
namespace {

using Runner = std::function<void()>;
using Byte = unsigned char;

constexpr Rect kWhole(0, 0, kWidth, kHeight);
constexpr unsigned long kFill = 0x0080FF; // kOverlay at half opacity

void Require(bool done) {
    if (!done)
        throw std::runtime_error("the member has failed");
}

Runner AlphaShade(Canvas& c) {
    const unsigned long tint = BitmapBase::DibRGB(kTint);
    return [&c, tint] {
        Require(c.targetPicture->AlphaShadeBitmap(kWhole, tint, static_cast<Byte>(c.opacity), c.maskPicture));
    };
}
Runner Combine(Canvas& c) {
    return [&c] { Require(c.targetPicture->CombineBitmap(*c.sourcePicture, kKey)); };
}
Runner Disable(Canvas& c) {
    return [&c] { Require(c.targetPicture->SetStyleDisabled(kKey)); };
}
Runner Find(Canvas& c) {
    return [&c] { c.found = c.sourcePicture->ContainsColor(kAbsent); };
}
Runner Invert(Canvas& c) {
    return [&c] { Require(c.targetPicture->Invert()); };
}
Runner Clear(Canvas& c) {
    return [&c] { Require(c.targetPicture->ClearSurface(0x5A)); };
}
Runner CombinePlane(Canvas& c) {
    return [&c] { Require(c.targetPicture->Combine1BitTo8Bit(*c.maskPicture, 3, false)); };
}
Runner SetTransparence(Canvas& c) {
    return [&c] { Require(c.targetPicture->SetAlphaTransparence(kKey, 1.0)); };
}
Runner SetChannel(Canvas& c) {
    return [&c] { Require(c.targetPicture->SetAlphaChannel(kWhole, kKey, kFill, 0.5)); };
}
Runner Copy(Canvas& c) {
    return [&c] {
        const GDIBitmap copy(*c.targetPicture);
        benchmark::DoNotOptimize(&copy);
    };
}
Runner Detach(Canvas& c) {
    return [&c] {
        GDIBitmap copy(*c.targetPicture);
        Require(copy.LockSurfaceModify() != c.target);
    };
}

const Enter<Painter> entered[] = {
    Enter<Painter>{{"kelcore", "tint 32", true, &AlphaShade}},
    Enter<Painter>{{"kelcore", "masked tint 32", true, &AlphaShade}},
    Enter<Painter>{{"kelcore", "colour-key 32", true, &Combine}},
    Enter<Painter>{{"kelcore", "colour-key 24", true, &Combine}},
    Enter<Painter>{{"kelcore", "grey-out 32", true, &Disable}},
    Enter<Painter>{{"kelcore", "grey-out 24", true, &Disable}},
    Enter<Painter>{{"kelcore", "find a colour 32", true, &Find}},
    Enter<Painter>{{"kelcore", "find a colour 24", true, &Find}},
    Enter<Painter>{{"kelcore", "invert 32", true, &Invert}},
    Enter<Painter>{{"kelcore", "fill 32", true, &Clear}},
    Enter<Painter>{{"kelcore", "or bit plane 8", true, &CombinePlane}},
    Enter<Painter>{{"kelcore", "key to alpha 32", true, &SetTransparence}},
    Enter<Painter>{{"kelcore", "key to overlay 32", true, &SetChannel}},
    Enter<Painter>{{"kelcore", "share 32", true, &Copy}},
    Enter<Painter>{{"kelcore", "detach 32", true, &Detach}},
};

enum class MaskOf { none, ones, disc, random };
enum class Limit { pass, copy, read, fill, share, copyToNew };

struct Work {
    const char* name; // kelcore's member
    const char* kind;
    std::size_t pixelBytes;
    Limit limit;
    int opacity = 0;
    MaskOf mask = MaskOf::none;
    bool restore = false; // the work done once leaves less to do
};

const Work kWorks[] = {
    {"AlphaShadeBitmap 40%", "tint 32", 4, Limit::pass, 102},
    {"AlphaShadeBitmap 50%", "tint 32", 4, Limit::pass, 128},
    {"AlphaShadeBitmap 40%, mask of ones", "masked tint 32", 4, Limit::pass, 102, MaskOf::ones},
    {"AlphaShadeBitmap 40%, mask of a disc", "masked tint 32", 4, Limit::pass, 102, MaskOf::disc},
    {"AlphaShadeBitmap 40%, random mask", "masked tint 32", 4, Limit::pass, 102, MaskOf::random},
    {"CombineBitmap 32", "colour-key 32", 4, Limit::copy, 0, MaskOf::none, true},
    {"CombineBitmap 24", "colour-key 24", 3, Limit::copy, 0, MaskOf::none, true},
    {"SetStyleDisabled 32", "grey-out 32", 4, Limit::pass},
    {"SetStyleDisabled 24", "grey-out 24", 3, Limit::pass},
    {"ContainsColor 32", "find a colour 32", 4, Limit::read},
    {"ContainsColor 24", "find a colour 24", 3, Limit::read},
    {"Invert 32", "invert 32", 4, Limit::pass},
    {"ClearSurface 32", "fill 32", 4, Limit::fill},
    {"Combine1BitTo8Bit", "or bit plane 8", 1, Limit::pass, 0, MaskOf::random},
    {"SetAlphaTransparence", "key to alpha 32", 4, Limit::pass, 0, MaskOf::none, true},
    {"SetAlphaChannel", "key to overlay 32", 4, Limit::pass, 0, MaskOf::none, true},
    {"copy of a GDIBitmap", "share 32", 4, Limit::share},
    {"Detach 32", "detach 32", 4, Limit::copyToNew},
};

bool InDisc(std::size_t x, std::size_t y) {
    const auto dx = static_cast<double>(x) - kWidth / 2.0;
    const auto dy = static_cast<double>(y) - kHeight / 2.0;
    return dx * dx + dy * dy < 400.0 * 400.0;
}

// Kept for good.
GDIBitmap& NewPicture(std::size_t bits) {
    auto* const picture = new GDIBitmap;
    Require(picture->CreateBitmap(Size(kWidth, kHeight), static_cast<int>(bits)));
    return *picture;
}

Byte* BytesOf(GDIBitmap& picture) {
    return static_cast<Byte*>(picture.LockSurfaceModify());
}

// Bytes below 0x80, so that kKey and kAbsent are nowhere but where they are put.
GDIBitmap& RandomPicture(std::size_t pixelBytes, std::uint64_t seed) {
    GDIBitmap& picture = NewPicture(8 * pixelBytes);
    Byte* const bytes = BytesOf(picture);
    Random random(seed);
    for (std::size_t i = 0; i < pixelBytes * kPixels; ++i)
        bytes[i] = static_cast<Byte>(random.Below(0x80));
    return picture;
}

// Random pixels.
const GDIBitmap& Pattern(std::size_t pixelBytes) {
    static std::map<std::size_t, const GDIBitmap*> pictures;
    const GDIBitmap*& picture = pictures[pixelBytes];
    if (picture == nullptr)
        picture = &RandomPicture(pixelBytes, 51);
    return *picture;
}

// Other random pixels with a disc of the key colour.
const Byte* WithDisc(std::size_t pixelBytes) {
    static std::map<std::size_t, const Byte*> pictures;
    const Byte*& picture = pictures[pixelBytes];
    if (picture != nullptr)
        return picture;
    Byte* const fresh = BytesOf(RandomPicture(pixelBytes, 53));
    for (std::size_t i = 0; pixelBytes >= 3 && i < kPixels; ++i)
        if (InDisc(i % kWidth, i / kWidth))
            std::memcpy(fresh + pixelBytes * i, &kKey, 3);
    return picture = fresh;
}

const GDIBitmap& NewMask(MaskOf kind) {
    GDIBitmap& mask = NewPicture(1);
    Byte* const bytes = BytesOf(mask);
    Random random(52);
    for (std::size_t i = 0; i < kPixels; ++i) {
        const bool set =
            kind == MaskOf::disc ? InDisc(i % kWidth, i / kWidth) : kind == MaskOf::ones || random.Below(2) == 0;
        bytes[i / 8] |= static_cast<Byte>(set ? 0x80 >> i % 8 : 0);
    }
    return mask;
}

const Byte* BytesOf(const GDIBitmap& picture) {
    return static_cast<const Byte*>(picture.LockSurface());
}

Canvas NewCanvas(const Work& work) {
    GDIBitmap& target = NewPicture(8 * work.pixelBytes);
    const GDIBitmap& source = Pattern(work.pixelBytes);
    const GDIBitmap* const mask = work.mask == MaskOf::none ? nullptr : &NewMask(work.mask);
    return {BytesOf(target), BytesOf(source), mask ? BytesOf(*mask) : nullptr,
            work.pixelBytes, work.opacity,    false,
            &target,         &source,         mask};
}

// One canvas for all who do the work.
Canvas& CanvasOf(const Work& work) {
    static std::map<const Work*, Canvas> canvases;
    Canvas& canvas = canvases[&work];
    if (canvas.target == nullptr)
        canvas = NewCanvas(work);
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

// The copy is used, so that none of it can be left out.
void CopyToNew(const Byte* bytes, std::size_t count) {
    const std::unique_ptr<Byte[]> copy(new Byte[count]);
    benchmark::DoNotOptimize(std::memcpy(copy.get(), bytes, count));
    benchmark::ClobberMemory();
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
    case Limit::share:
        return [shared = std::make_shared<int>()] { benchmark::DoNotOptimize(std::shared_ptr<int>(shared)); };
    case Limit::copyToNew:
        return [=] { CopyToNew(target, bytes); };
    default:
        return [=] { std::memset(target, 0x5A, bytes); };
    }
}

void AddLimit(const Work& work) {
    const char* const names[] = {"limit-pass in place", "limit-memcpy",     "limit-memchr",
                                 "limit-memset",        "limit-shared_ptr", "limit-new & memcpy"};
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
