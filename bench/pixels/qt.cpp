#include "bench/pixels/Painter.h"

#include <QImage>
#include <QPainter>

#include <algorithm>

namespace {

using namespace kel::bench;
using Runner = std::function<void()>;

QImage ImageOf(const Canvas& canvas) {
    return QImage(canvas.target, kWidth, kHeight, canvas.Stride(), QImage::Format_RGB32);
}

// In bands so low that they are not shared out to other threads, which are not timed.
void FillBands(QImage& image, QPainter::CompositionMode mode, const QColor& colour) {
    constexpr int kBand = 64;
    QPainter painter(&image);
    painter.setCompositionMode(mode);
    for (int y = 0; y < kHeight; y += kBand)
        painter.fillRect(0, y, kWidth, std::min(kBand, kHeight - y), colour);
}

Runner Tint(Canvas& canvas) {
    QColor colour = QColor::fromRgb(kTint);
    colour.setAlpha(canvas.opacity);
    return
        [colour, image = ImageOf(canvas)]() mutable { FillBands(image, QPainter::CompositionMode_SourceOver, colour); };
}

Runner Fill(Canvas& canvas) {
    return [image = ImageOf(canvas)]() mutable { image.fill(0x5A5A5A5AU); };
}

Runner Invert(Canvas& canvas) {
    return [image = ImageOf(canvas)]() mutable { image.invertPixels(QImage::InvertRgba); };
}

Runner Share(Canvas& canvas) {
    return [image = ImageOf(canvas)] {
        const QImage copy(image);
        benchmark::DoNotOptimize(&copy);
    };
}

Runner Detach(Canvas& canvas) {
    return [image = ImageOf(canvas)] {
        QImage copy(image);
        benchmark::DoNotOptimize(copy.bits());
    };
}

const Enter<Painter> entered[] = {
    Enter<Painter>{{"qt", "tint 32", false, &Tint}},     Enter<Painter>{{"qt", "fill 32", false, &Fill}},
    Enter<Painter>{{"qt", "invert 32", false, &Invert}}, Enter<Painter>{{"qt", "share 32", true, &Share}},
    Enter<Painter>{{"qt", "detach 32", true, &Detach}},
};

} // namespace
