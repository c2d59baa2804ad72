#include "bench/pixels/Drawer.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <memory>

namespace {

using namespace kel::bench;
using Mode = QPainter::CompositionMode;

QImage ImageOf(const Byte* pixels, int width, int height, QImage::Format format) {
    return QImage(const_cast<Byte*>(pixels), width, height, 4 * width, format);
}

// In bands so low that they are not shared out to other threads, which are not timed.
template <class Draw>
void InBands(QImage& target, Mode mode, Draw draw) {
    constexpr int kBand = kTile;
    QPainter painter(&target);
    painter.setCompositionMode(mode);
    for (int y = 0; y < kHeight; y += kBand)
        draw(painter, QRect(0, y, kWidth, std::min(kBand, kHeight - y)));
}

Drawing Draw(const Scene& scene, QImage::Format format, Mode mode) {
    const QImage source = ImageOf(scene.source, scene.width, scene.height, format);
    const double opacity = scene.opacity / 255.0;
    const auto draw = [=](QPainter& painter, const QRect& band) {
        painter.setOpacity(opacity);
        painter.drawImage(band, source, band);
    };
    return {[=, target = ImageOf(scene.target, scene.toWidth, scene.toHeight, QImage::Format_RGB32)]() mutable {
                InBands(target, mode, draw);
            },
            scene.target};
}

Drawing Blend(const Scene& scene) {
    return Draw(scene, QImage::Format_RGB32, QPainter::CompositionMode_SourceOver);
}

Drawing Over(const Scene& scene) {
    return Draw(scene, QImage::Format_ARGB32_Premultiplied, QPainter::CompositionMode_SourceOver);
}

const Enter<Drawer> entered[] = {
    Enter<Drawer>{{"qt", "blend", 4, &Blend}},
    Enter<Drawer>{{"qt", "over", 4, &Over}},
};

} // namespace
