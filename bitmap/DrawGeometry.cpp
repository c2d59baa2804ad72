#include "bitmap/DrawGeometry.h"

#include "bitmap/Rectangles.h"

#include <algorithm>
#include <cmath>

namespace kel {

namespace {

// Beyond this, tiles of a pixel or two are asked for on a surface that nobody can have.
constexpr std::int64_t kMostTiles = std::int64_t{1} << 26;

// A rectangle on its way to whole pixels.
struct ExactRect {
    double left, top, right, bottom;
};

ExactRect Exact(const Rect& rect) {
    return {double(rect.left), double(rect.top), double(rect.right), double(rect.bottom)};
}

Rect OnPixels(const ExactRect& rect) {
    return Rect(Rounded(rect.left), Rounded(rect.top), Rounded(rect.right), Rounded(rect.bottom));
}

ExactRect Centred(double x, double y, double halfWidth, double halfHeight) {
    return {x - halfWidth, y - halfHeight, x + halfWidth, y + halfHeight};
}

// The largest rectangle of the aspect that fits, by the same bands on two sides.
ExactRect Shrunk(ExactRect rect, double aspect) {
    const double width = rect.right - rect.left;
    const double height = rect.bottom - rect.top;
    if (width / height > aspect) {
        const double band = (width - height * aspect) / 2;
        rect.left += band;
        rect.right -= band;
    } else {
        const double band = (height - width / aspect) / 2;
        rect.top += band;
        rect.bottom -= band;
    }
    return rect;
}

ExactRect Cropped(const Size& picture, double aspect) {
    const double width = picture.cx;
    const double height = picture.cy;
    if (aspect < width / height) {
        const double cut = (width - aspect * height) / 2;
        return {cut, 0, width - cut, height};
    }
    const double cut = (height - width / aspect) / 2;
    return {0, cut, width, height - cut};
}

BlitPair Center(XSize<double> scale, const Size& picture, const Rect& target) {
    const double width = std::trunc(std::min(picture.cx * scale.cx, double(WidthOf(target))));
    const double height = std::trunc(std::min(picture.cy * scale.cy, double(HeightOf(target))));
    const ExactRect whole = Exact(target);
    const double x = (whole.left + whole.right) / 2;
    const double y = (whole.top + whole.bottom) / 2;
    const ExactRect source = Centred(picture.cx / 2.0, picture.cy / 2.0, width / 2 / scale.cx, height / 2 / scale.cy);
    return {OnPixels(source), OnPixels(Centred(x, y, width / 2, height / 2))};
}

// The first edge, on a raster of steps from the start, from which the tile reaches behind the limit.
std::int64_t FirstEdge(std::int64_t start, std::int64_t limit, std::int64_t step) {
    return step > 0 ? (limit - start) / step * step + start : start;
}

std::int64_t Steps(std::int64_t first, std::int64_t end, std::int64_t step) {
    return (end - first + step - 1) / step;
}

} // namespace

bool HasPlace(XSize<double> scale, const Rect& target) {
    return scale.cx != 0.0 && scale.cy != 0.0 && WidthOf(target) >= 1 && HeightOf(target) >= 1;
}

BlitPair PlaceOnce(IBitmap::BM_Mode mode, XSize<double> scale, Size picture, const Rect& target) {
    const Rect whole = WholeOf(picture);
    const double pictureAspect = double(picture.cx) / picture.cy;
    const double targetAspect = double(WidthOf(target)) / double(HeightOf(target));
    switch (mode) {
    case IBitmap::BM_Fit:
        return {whole, OnPixels(Shrunk(Exact(target), pictureAspect * (scale.cx / scale.cy)))};
    case IBitmap::BM_Fill:
        return {OnPixels(Cropped(picture, targetAspect * (scale.cy / scale.cx))), target};
    case IBitmap::BM_Center:
        return Center(scale, picture, target);
    default:
        return {whole, target};
    }
}

Rect TileArea(const Rect& clip, const Rect& target) {
    return IsEmptyRect(clip) ? target : Intersection(clip, target);
}

Tiles::Tiles(XSize<double> scale, Size picture, const Rect& target, const Rect& area)
    : m_scale(scale), m_target(target), m_area(area), m_width(Rounded(picture.cx * scale.cx)),
      m_height(Rounded(picture.cy * scale.cy)), m_firstX(FirstEdge(target.left, area.left, m_width)), m_x(m_firstX),
      m_y(FirstEdge(target.top, area.top, m_height)) {
    if (!MayBeDrawn())
        m_y = area.bottom;
}

bool Tiles::MayBeDrawn() const {
    if (m_width < 1 || m_height < 1 || IsEmptyRect(m_area))
        return false;
    const std::int64_t columns = Steps(m_firstX, m_area.right, m_width);
    const std::int64_t rows = Steps(m_y, m_area.bottom, m_height);
    return columns <= kMostTiles / rows;
}

BlitPair Tiles::Current() const {
    const std::int64_t width = std::min(m_width, m_target.right - m_x);
    const std::int64_t height = std::min(m_height, m_target.bottom - m_y);
    const Rect source(0, 0, ToInt(double(width) / m_scale.cx), ToInt(double(height) / m_scale.cy));
    return {source, Rect(int(m_x), int(m_y), int(m_x + width), int(m_y + height))};
}

bool Tiles::Next(BlitPair& pair) {
    if (m_y >= m_area.bottom)
        return false;
    pair = Current();
    m_x += m_width;
    if (m_x >= m_area.right) {
        m_x = m_firstX;
        m_y += m_height;
    }
    return true;
}

} // namespace kel
