#include "bitmap/DrawGeometry.h"
#include "bitmap/ImageRecord.h"
#include "bitmap/PlatformDrawing.h"
#include "bitmap/Rectangles.h"

namespace {

// A byte of opacity: the low 8 bits of the truncated value.
unsigned char OpacityByte(double opacity) {
    return static_cast<unsigned char>(kel::ToInt(opacity * 255.0));
}

} // namespace

bool GDIBitmap::Draw(HDC dc, const Rect& target, BM_Mode mode, XSize<double> scale) const {
    if (m_pImage->bits)
        return InternalDraw(DibSrc(m_pImage->info, m_pImage->bits, SRCCOPY), dc, target, mode, scale);
    return InternalDraw(HBitmapSrc(m_pImage->handle, SRCCOPY), dc, target, mode, scale);
}

bool GDIBitmap::Draw(HDC dc, const Rect& target, const Rect& source, unsigned long rop) const {
    if (m_pImage->bits)
        return DibSrc(m_pImage->info, m_pImage->bits, rop).Blt(dc, source, target);
    return HBitmapSrc(m_pImage->handle, rop).Blt(dc, source, target);
}

bool GDIBitmap::TransparentDraw(HDC dc, const Rect& target, unsigned long color, BM_Mode mode,
                                XSize<double> scale) const {
    // Drawing nothing asks nothing of the system.
    if (!kel::HasPlace(scale, target))
        return true;
    return m_pImage->FollowTable() && InternalDraw(TransparentSrc(m_pImage->handle, color), dc, target, mode, scale);
}

bool GDIBitmap::TransparentDraw(HDC dc, const Rect& target, const Rect& source, unsigned long color) const {
    return m_pImage->FollowTable() && TransparentSrc(m_pImage->handle, color).Blt(dc, source, target);
}

bool GDIBitmap::AlphaDraw(HDC dc, const Rect& target, double opacity, bool perPixel, BM_Mode mode,
                          XSize<double> scale) const {
    if (!kel::HasPlace(scale, target))
        return true;
    const AlphaSrc blend(m_pImage->handle, perPixel, OpacityByte(opacity));
    return m_pImage->FollowTable() && InternalDraw(blend, dc, target, mode, scale);
}

bool GDIBitmap::AlphaDraw(HDC dc, const Rect& target, const Rect& source, double opacity, bool perPixel) const {
    const AlphaSrc blend(m_pImage->handle, perPixel, OpacityByte(opacity));
    return m_pImage->FollowTable() && blend.Blt(dc, source, target);
}

bool GDIBitmap::CreateBitmap(const IBitmap& source, const Size& size, int bits, BM_Mode mode, XSize<double> scale,
                             unsigned long background) {
    const bool hasTable = bits >= 1 && bits <= 15;
    if (hasTable && bits != source.GetBitsPerPixel())
        return false;
    GDIBitmap drawn;
    if (!drawn.CreateBitmap(size, bits))
        return false;
    Image& image = *drawn.m_pImage;
    if (hasTable && !image.CopyTable(source))
        return false;
    const Rect whole = kel::WholeOf(size);
    kel::MemoryContext context;
    if (!context.Select(image.handle) || !image.FollowTable(context.Get()))
        return false;
    const bool leavesBands = mode == BM_Fit || mode == BM_Center;
    if (leavesBands && !kel::FillOpaque(context.Get(), whole, background))
        return false;
    const bool done = hasTable ? DrawByHandle(source, context.Get(), whole, mode, scale)
                               : source.Draw(context.Get(), whole, mode, scale);
    context.End();
    if (done)
        Share(&image);
    return done;
}

// Between bitmaps with one colour table a copy keeps the indices.
bool GDIBitmap::DrawByHandle(const IBitmap& source, HDC dc, const Rect& target, BM_Mode mode, XSize<double> scale) {
    GDIBitmap copy;
    if (!copy.AssignBitmap(source) || !copy.m_pImage->FollowTable())
        return false;
    return copy.InternalDraw(HBitmapSrc(copy.m_pImage->handle, SRCCOPY), dc, target, mode, scale);
}
