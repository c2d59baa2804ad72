#include "bench/pixels/Painter.h"

#include <libyuv.h>

#include <cstring>
#include <memory>
#include <vector>

namespace {

using namespace kel::bench;
using Runner = std::function<void()>;

// Towards a row of the solid colour. It rounds, and half and half has a kernel of its own.
Runner Tint(Canvas& canvas) {
    const auto solid = std::make_shared<std::vector<std::uint32_t>>(kWidth, kTint);
    return [&canvas, solid] {
        libyuv::ARGBInterpolate(canvas.target, canvas.Stride(), reinterpret_cast<const std::uint8_t*>(solid->data()), 0,
                                canvas.target, canvas.Stride(), kWidth, kHeight, canvas.opacity);
    };
}

// Weighs the channels and keeps no colour.
Runner GreyOut(Canvas& canvas) {
    return [&canvas] {
        libyuv::ARGBGrayTo(canvas.target, canvas.Stride(), canvas.target, canvas.Stride(), kWidth, kHeight);
    };
}

Runner Fill(Canvas& canvas) {
    return [&canvas] { libyuv::ARGBRect(canvas.target, canvas.Stride(), 0, 0, kWidth, kHeight, 0x5A5A5A5A); };
}

const Enter<Painter> entered[] = {
    Enter<Painter>{{"libyuv", "tint 32", false, &Tint}},
    Enter<Painter>{{"libyuv", "grey-out 32", false, &GreyOut}},
    Enter<Painter>{{"libyuv", "fill 32", true, &Fill}},
};

} // namespace
