#include "bench/pixels/Drawer.h"

#include <pixman.h>

#include <memory>

namespace {

using namespace kel::bench;
using Image = std::shared_ptr<pixman_image_t>;

enum class Alpha { none, used };

Image Owned(pixman_image_t* image) {
    return Image(image, &pixman_image_unref);
}

Image ImageOf(const Byte* pixels, int width, int height, std::size_t bytes, Alpha alpha = Alpha::none) {
    const pixman_format_code_t deep = alpha == Alpha::used ? PIXMAN_a8r8g8b8 : PIXMAN_x8r8g8b8;
    return Owned(pixman_image_create_bits(bytes == 4 ? deep : PIXMAN_r8g8b8, width, height,
                                          reinterpret_cast<std::uint32_t*>(const_cast<Byte*>(pixels)),
                                          width * static_cast<int>(bytes)));
}

Drawing Composed(const Scene& scene, pixman_op_t operation, const Image& source, const Image& mask = nullptr) {
    const Image target = ImageOf(scene.target, scene.toWidth, scene.toHeight, scene.targetBytes);
    const auto run = [=, &scene] {
        pixman_image_composite32(operation, source.get(), mask.get(), target.get(), 0, 0, 0, 0, 0, 0, scene.toWidth,
                                 scene.toHeight);
    };
    return {run, scene.target};
}

Image SourceOf(const Scene& scene, Alpha alpha = Alpha::none) {
    return ImageOf(scene.source, scene.width, scene.height, scene.sourceBytes, alpha);
}

Drawing Stretch(const Scene& scene) {
    const Image source = SourceOf(scene);
    pixman_transform_t transform;
    pixman_transform_init_scale(&transform, pixman_double_to_fixed(double(scene.width) / scene.toWidth),
                                pixman_double_to_fixed(double(scene.height) / scene.toHeight));
    pixman_image_set_transform(source.get(), &transform);
    pixman_image_set_filter(source.get(), PIXMAN_FILTER_NEAREST, nullptr, 0);
    return Composed(scene, PIXMAN_OP_SRC, source);
}

Drawing Blend(const Scene& scene) {
    const pixman_color_t share = {0, 0, 0, static_cast<std::uint16_t>(scene.opacity * 257)};
    return Composed(scene, PIXMAN_OP_OVER, SourceOf(scene), Owned(pixman_image_create_solid_fill(&share)));
}

Drawing Over(const Scene& scene) {
    return Composed(scene, PIXMAN_OP_OVER, SourceOf(scene, Alpha::used));
}

Drawing Tile(const Scene& scene) {
    const Image source = SourceOf(scene, Alpha::used);
    pixman_image_set_repeat(source.get(), PIXMAN_REPEAT_NORMAL);
    Drawing drawing = Composed(scene, PIXMAN_OP_SRC, source);
    return drawing;
}

const Enter<Drawer> entered[] = {
    Enter<Drawer>{{"pixman", "stretch", 0, &Stretch}},
    Enter<Drawer>{{"pixman", "blend", 0, &Blend}},
    Enter<Drawer>{{"pixman", "over", 0, &Over}},
    Enter<Drawer>{{"pixman", "tile", 0, &Tile}},
};

} // namespace
