#include "bitmap/ImageRecord.h"
#include "bitmap/PlatformDrawing.h"
#include "bitmap/Rectangles.h"
#include "bitmap/pixels/Pixels.h"

#include <algorithm>
#include <cmath>

namespace {

using kel::pixels::Byte;
using kel::pixels::Rows;

const XSize<double> kUnscaled(1.0, 1.0);

Rows RowsOf(const BitmapBase& picture, void* bits) {
    return {static_cast<Byte*>(bits), picture.GetScanlineSize(), picture.GetWidth(), picture.GetHeight()};
}

} // namespace

bool GDIBitmap::SetStyleDisabled(unsigned long keep) {
    if (IsEmpty())
        return true;
    const int depth = GetBitsPerPixel();
    if (depth < 24)
        return false;
    void* const bits = LockSurfaceModify();
    if (!bits)
        return false;
    const unsigned int kept = keep > 0xFFFFFF ? kel::pixels::kNoColour : DibRGB(keep);
    (depth == 24 ? kel::pixels::GreyOut24 : kel::pixels::GreyOut32)(RowsOf(*this, bits), kept);
    UnlockSurface();
    return true;
}

namespace {

// How a prescaled picture is rendered; growth is that of its area.
struct Rendering {
    double growth;
    Size size;
    IBitmap::BM_Mode mode;
    XSize<double> scale;
};

Rendering RenderExact(double width, double height, const Size& source, IBitmap::BM_Mode mode, XSize<double> scale) {
    const double area = double(source.cx) * source.cy;
    return {width * height / area, Size(kel::Rounded(width), kel::Rounded(height)), mode, scale};
}

// The growth is counted in whole numbers; areas need all 64 bits.
Rendering RenderWhole(const Rect& target, const Size& source, IBitmap::BM_Mode mode, XSize<double> scale) {
    const auto width = static_cast<std::uint64_t>(kel::WidthOf(target));
    const auto height = static_cast<std::uint64_t>(kel::HeightOf(target));
    const std::uint64_t growth = width * height / static_cast<std::uint64_t>(std::int64_t{source.cx} * source.cy);
    return {double(growth), Size(int(width), int(height)), mode, scale};
}

Rendering PlanRendering(const Size& source, const Rect& target, IBitmap::BM_Mode mode, XSize<double> scale) {
    const double width = source.cx * scale.cx;
    const double height = source.cy * scale.cy;
    const double targetWidth = double(kel::WidthOf(target));
    const double targetHeight = double(kel::HeightOf(target));
    if (mode == IBitmap::BM_Stretch || mode == IBitmap::BM_Fill)
        return RenderWhole(target, source, mode, scale);
    if (mode == IBitmap::BM_Fit) {
        const bool wider = width / height > targetWidth / targetHeight;
        const double factor = wider ? targetWidth / width : targetHeight / height;
        return RenderExact(factor * width, factor * height, source, IBitmap::BM_Stretch, kUnscaled);
    }
    return RenderExact(std::min(width, targetWidth), std::min(height, targetHeight), source, mode, scale);
}

bool CanBePrescaled(const IBitmap& source, const Rect& target, IBitmap::BM_Mode mode, XSize<double> scale) {
    return !source.IsEmpty() && kel::WidthOf(target) > 0 && kel::HeightOf(target) > 0 && scale.cx > 0.0 &&
           scale.cy > 0.0 && mode >= IBitmap::BM_Stretch && mode <= IBitmap::BM_Tile;
}

} // namespace

GDIBitmap GDIBitmap::CreatePrescaledBmp(const IBitmap& source, const Rect& target, int bits, BM_Mode mode,
                                        XSize<double> scale, double limit) {
    GDIBitmap rendered;
    if (!CanBePrescaled(source, target, mode, scale))
        return rendered;
    const Rendering plan = PlanRendering(source.GetDimension(), target, mode, scale);
    if (plan.growth < limit)
        rendered.CreateBitmap(source, plan.size, bits, plan.mode, plan.scale, /*background*/ 0);
    return rendered;
}

GDIBitmap GDIBitmap::CreatePrescaledBmp(const IBitmap& source, const Rect& target, BM_Mode mode, XSize<double> scale,
                                        double limit) {
    return CreatePrescaledBmp(source, target, source.GetBitsPerPixel(), mode, scale, limit);
}

// Depth 0 makes the next picture one in the display's own format again.
int GDIBitmap::WorkingDepth() const {
    return m_pImage->screenCompatible ? 0 : GetBitsPerPixel();
}

bool GDIBitmap::Prescale(const Rect& target, BM_Mode mode, XSize<double> scale, double limit) {
    const GDIBitmap rendered = CreatePrescaledBmp(*this, target, WorkingDepth(), mode, scale, limit);
    if (rendered.IsEmpty())
        return false;
    Share(rendered.m_pImage);
    return true;
}

bool GDIBitmap::Resize(const Size& size) {
    return CreateBitmap(*this, size, WorkingDepth(), BM_Stretch, kUnscaled, /*background*/ 0);
}

bool GDIBitmap::Crop(const Rect& part) {
    if (IsEmpty())
        return true;
    const Rect kept = kel::Intersection(part, kel::WholeOf(GetDimension()));
    const Size size(static_cast<int>(kel::WidthOf(kept)), static_cast<int>(kel::HeightOf(kept)));
    GDIBitmap cropped;
    cropped.CreateBitmap(size, WorkingDepth());
    const Image& image = *cropped.m_pImage;
    kel::MemoryContext context;
    bool done = context.Select(image.handle);
    if (done && image.HasBitmapTable())
        done = cropped.m_pImage->CopyTable(*this) && image.FollowTable(context.Get());
    done = done && Draw(context.Get(), kel::WholeOf(size), kept, SRCCOPY);
    context.End();
    Share(cropped.m_pImage);
    return done;
}

bool GDIBitmap::ClearSurface(unsigned char value) {
    if (IsEmpty() || !m_pImage->bits || !Detach())
        return false;
    kel::pixels::Fill(m_pImage->bits, m_pImage->PixelBytes(), value);
    return true;
}

bool GDIBitmap::ExtClearSurface(unsigned long color) {
    return ExtClearSurface(color, kel::WholeOf(GetDimension()));
}

bool GDIBitmap::ExtClearSurface(unsigned long color, const Rect& area) {
    if (IsEmpty() || !Detach())
        return false;
    kel::MemoryContext context;
    return context.Select(m_pImage->handle) && m_pImage->FollowTable(context.Get()) &&
           kel::FillOpaque(context.Get(), area, color);
}

bool GDIBitmap::CanWriteAlpha() {
    return GetBitsPerPixel() == 32 && !IsEmpty() && m_pImage->bits && Detach();
}

bool GDIBitmap::SetAlphaTransparence(unsigned long color, double) {
    if (!CanWriteAlpha())
        return false;
    kel::pixels::KeyToAlpha(RowsOf(*this, m_pImage->bits), DibRGB(color));
    return true;
}

namespace {

// A pixel of that opacity, its channels multiplied with it.
std::uint32_t Premultiplied(unsigned long color, double opacity) {
    const auto alpha = static_cast<std::uint32_t>(kel::ToInt(opacity * 255.0));
    const std::uint32_t bgr = BitmapBase::DibRGB(color);
    std::uint32_t pixel = alpha << 24;
    for (int shift = 0; shift < 24; shift += 8)
        pixel |= ((bgr >> shift & 0xFF) * alpha / 255 & 0xFF) << shift;
    return pixel;
}

} // namespace

bool GDIBitmap::SetAlphaChannel(const Rect& area, unsigned long key, unsigned long fill, double opacity) {
    if (!CanWriteAlpha())
        return false;
    const Rect clip = kel::Intersection(area, kel::WholeOf(GetDimension()));
    Rows rows = RowsOf(*this, m_pImage->bits);
    rows.first += (static_cast<std::ptrdiff_t>(rows.rows) - clip.bottom) * rows.stride + std::ptrdiff_t{4} * clip.left;
    rows.width = static_cast<std::size_t>(kel::WidthOf(clip));
    rows.rows = static_cast<std::size_t>(kel::HeightOf(clip));
    kel::pixels::KeyToOverlay(rows, DibRGB(key), Premultiplied(fill, opacity));
    return true;
}
