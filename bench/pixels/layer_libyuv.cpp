#include "bench/pixels/Drawer.h"

#include <libyuv.h>
#include <libyuv/scale_rgb.h>

namespace {

using namespace kel::bench;

int SourceRow(const Scene& s) {
    return static_cast<int>(s.SourceRow());
}

int TargetRow(const Scene& s) {
    return static_cast<int>(s.TargetRow());
}

void Stretch32(const Scene& s) {
    libyuv::ARGBScale(s.source, SourceRow(s), s.width, s.height, s.target, TargetRow(s), s.toWidth, s.toHeight,
                      libyuv::kFilterNone);
}

void Stretch24(const Scene& s) {
    libyuv::RGBScale(s.source, SourceRow(s), s.width, s.height, s.target, TargetRow(s), s.toWidth, s.toHeight,
                     libyuv::kFilterNone);
}

void Blend(const Scene& s) {
    libyuv::ARGBInterpolate(s.target, TargetRow(s), s.source, SourceRow(s), s.target, TargetRow(s), s.width, s.height,
                            s.opacity);
}

// The result is opaque.
void Over(const Scene& s) {
    libyuv::ARGBBlend(s.source, SourceRow(s), s.target, TargetRow(s), s.target, TargetRow(s), s.width, s.height);
}

template <class Draw>
Drawing Prepared(const Scene& scene, Draw draw) {
    return {[=, &scene] { draw(scene); }, scene.target};
}

const Enter<Drawer> entered[] = {
    Enter<Drawer>{{"libyuv", "stretch", 4, [](const Scene& s) { return Prepared(s, Stretch32); }}},
    Enter<Drawer>{{"libyuv", "stretch", 3, [](const Scene& s) { return Prepared(s, Stretch24); }}},
    Enter<Drawer>{{"libyuv", "blend", 4, [](const Scene& s) { return Prepared(s, Blend); }}},
    Enter<Drawer>{{"libyuv", "over", 4, [](const Scene& s) { return Prepared(s, Over); }}},
};

} // namespace
