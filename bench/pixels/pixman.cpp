#include "bench/pixels/Painter.h"

#include <pixman.h>

#include <memory>
#include <vector>

namespace {

using namespace kel::bench;
using Runner = std::function<void()>;
using Image = std::shared_ptr<pixman_image_t>;

Image Owned(pixman_image_t* image) {
    return Image(image, &pixman_image_unref);
}

Image TargetOf(const Canvas& canvas) {
    return Owned(pixman_image_create_bits(PIXMAN_x8r8g8b8, kWidth, kHeight,
                                          reinterpret_cast<std::uint32_t*>(canvas.target), canvas.Stride()));
}

// The tint, premultiplied by its opacity.
Image Solid(int opacity) {
    const auto channel = [opacity](std::uint32_t value) {
        return static_cast<std::uint16_t>(value * 257 * opacity / 255);
    };
    const pixman_color_t colour = {channel(kTint >> 16 & 0xFF), channel(kTint >> 8 & 0xFF), channel(kTint & 0xFF),
                                   channel(0xFF)};
    return Owned(pixman_image_create_solid_fill(&colour));
}

Runner Tint(Canvas& canvas) {
    const Image target = TargetOf(canvas);
    const Image solid = Solid(canvas.opacity);
    return [=] {
        pixman_image_composite32(PIXMAN_OP_OVER, solid.get(), nullptr, target.get(), 0, 0, 0, 0, 0, 0, kWidth, kHeight);
    };
}

// A mask of one bit has its first pixel in the lowest bit here.
struct Mask {
    explicit Mask(const unsigned char* bits) : bytes(bits, bits + kPixels / 8) {
        for (unsigned char& byte : bytes)
            for (unsigned value = byte, i = 0; i < 8; ++i, value >>= 1)
                byte = static_cast<unsigned char>(byte << 1 | (value & 1));
        image = Owned(pixman_image_create_bits(PIXMAN_a1, kWidth, kHeight,
                                               reinterpret_cast<std::uint32_t*>(bytes.data()), kWidth / 8));
    }
    std::vector<unsigned char> bytes;
    Image image;
};

Runner TintMasked(Canvas& canvas) {
    const Image target = TargetOf(canvas);
    const Image solid = Solid(canvas.opacity);
    const auto mask = std::make_shared<Mask>(canvas.mask);
    return [=] {
        pixman_image_composite32(PIXMAN_OP_OVER, solid.get(), mask->image.get(), target.get(), 0, 0, 0, 0, 0, 0, kWidth,
                                 kHeight);
    };
}

Runner Fill(Canvas& canvas) {
    return [&canvas] {
        pixman_fill(reinterpret_cast<std::uint32_t*>(canvas.target), kWidth, 32, 0, 0, kWidth, kHeight, 0x5A5A5A5A);
    };
}

const Enter<Painter> entered[] = {
    Enter<Painter>{{"pixman", "tint 32", false, &Tint}},
    Enter<Painter>{{"pixman", "masked tint 32", false, &TintMasked}},
    Enter<Painter>{{"pixman", "fill 32", true, &Fill}},
};

} // namespace
