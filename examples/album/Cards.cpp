#include "Cards.h"

#include <kelcore/text.h>

#include <algorithm>
#include <cmath>
#include <string>

namespace kelalbum {
namespace {

const XSize<double> kAsItIs(1.0, 1.0);

WideString Number(long long value) {
    return StdA2W(std::to_string(value));
}

WideString DetailsOf(const Picture& picture) {
    return Number(picture.size.cx) + u" \u00D7 "_w + Number(picture.size.cy) + u" \u00B7 "_w + Number(picture.depth) +
           u"-bit"_w;
}

/// Resamples a picture that is to be drawn at @p factor, below 1, of its size.
void Reduce(XPDib& picture, double factor) {
    const Size size = picture.GetDimension();
    const auto side = [factor](long pixels) { return std::max(1, static_cast<int>(std::lround(pixels * factor))); };
    if (factor < 1)
        picture.Resample(Size(side(size.cx), side(size.cy)));
}

// A picture fits across or down, whichever needs more, and covers by the other.
struct Factors {
    double fit, cover;

    Factors(const Size& picture, const Size& area) {
        const double across = double(area.cx) / picture.cx;
        const double down = double(area.cy) / picture.cy;
        fit = std::min(across, down);
        cover = std::max(across, down);
    }
};

void Prepare(XPDib& picture, const Size& area, IBitmap::BM_Mode mode) {
    const Rect target(0, 0, area.cx, area.cy);
    const Factors factors(picture.GetDimension(), area);
    switch (mode) {
    case IBitmap::BM_Fit:
        return Reduce(picture, factors.fit);
    case IBitmap::BM_Fill:
        return Reduce(picture, factors.cover);
    case IBitmap::BM_Tile:
        return Reduce(picture, factors.fit / 2); // at least twice side by side
    default:
        picture.Prescale(target, mode, kAsItIs, /*limit*/ mode == IBitmap::BM_Center ? 2.0 : 1.0);
    }
}

XPDib PictureFor(const Entry& entry, const Size& area, IBitmap::BM_Mode mode) {
    XPDib picture = mode == IBitmap::BM_Center ? entry.Whole() : entry.Thumbnail();
    try {
        if (!picture.IsEmpty())
            Prepare(picture, area, mode);
    } catch (const _com_error& error) {
        throw Failure{Shown(entry.name) +
                      ": cannot be resampled: " + SystemText(static_cast<unsigned long>(error.Error()))};
    }
    return picture;
}

} // namespace

Card MakeCard(const Entry& entry, const Size& area, IBitmap::BM_Mode mode) {
    return {PictureFor(entry, area, mode), entry.name, DetailsOf(*entry.picture)};
}

Card SameCard(const Card& first, const Entry& entry) {
    return {first.picture, entry.name, first.details + u" \u00B7 shared"_w};
}

} // namespace kelalbum
