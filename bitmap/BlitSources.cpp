#include "bitmap/PlatformDrawing.h"
#include "bitmap/Rectangles.h"

#include <kelcore/bitmap/gdibitmap.h>

namespace {

int Width(const Rect& rect) {
    return static_cast<int>(kel::WidthOf(rect));
}

int Height(const Rect& rect) {
    return static_cast<int>(kel::HeightOf(rect));
}

// A rectangle's place with its left top corner at the origin.
Rect AtOrigin(const Rect& rect) {
    return Rect(0, 0, Width(rect), Height(rect));
}

} // namespace

BitmapBase::DibSrc::DibSrc(const BITMAPINFO* header, const void* bits, unsigned long rop)
    : m_pInfo(header), m_pBits(bits), m_dwRop(rop) {}

bool BitmapBase::DibSrc::Blt(HDC dc, const Rect& source, const Rect& target) const {
    if (!m_pInfo || !m_pBits || !dc)
        return false;
    const std::int64_t height = m_pInfo->bmiHeader.biHeight;
    const int firstLine = static_cast<int>(height > 0 ? height - source.bottom : source.top);
    SetStretchBltMode(dc, COLORONCOLOR);
    const int lines =
        StretchDIBits(dc, target.left, target.top, Width(target), Height(target), source.left, firstLine, Width(source),
                      Height(source), m_pBits, m_pInfo, DIB_RGB_COLORS, static_cast<DWORD>(m_dwRop));
    return static_cast<DWORD>(lines) != GDI_ERROR;
}

GDIBitmap::HBitmapSrc::HBitmapSrc(HBITMAP bitmap, unsigned long rop) : m_hBitmap(bitmap), m_dwRop(rop) {}

bool GDIBitmap::HBitmapSrc::Blt(HDC dc, const Rect& source, const Rect& target) const {
    if (!m_hBitmap || !dc)
        return false;
    kel::MemoryContext from;
    if (!from.Select(m_hBitmap))
        return false;
    SetStretchBltMode(dc, COLORONCOLOR);
    return StretchBlt(dc, target.left, target.top, Width(target), Height(target), from.Get(), source.left, source.top,
                      Width(source), Height(source), static_cast<DWORD>(m_dwRop)) == 1;
}

GDIBitmap::TransparentSrc::TransparentSrc(HBITMAP bitmap, unsigned long color) : m_hBitmap(bitmap), m_dwColor(color) {}

namespace {

// The 95 family's transparent blit is known to leak resources. Instead the background is cut out with a mask, the
// picture with the inverted mask, and the two are laid over each other in a copy of the target, so that nothing
// flickers.
bool BlendByMasks(HDC dc, HBITMAP bitmap, const Rect& source, const Rect& target, unsigned long color) {
    GDIBitmap cut;
    const Rect from = AtOrigin(source);
    const Rect to = AtOrigin(target);
    kel::MemoryContext copy(dc);
    const HBITMAP surface = CreateCompatibleBitmap(dc, to.right, to.bottom);
    copy.Select(surface);
    BitBlt(copy.Get(), 0, 0, to.right, to.bottom, dc, target.left, target.top, SRCCOPY);
    cut = GDIBitmap(bitmap, source);
    const GDIBitmap mask = cut.CreateMaskBmp(color);
    GDIBitmap inverted = mask;
    inverted.Invert();
    mask.Draw(copy.Get(), to, from, SRCAND);
    {
        kel::MemoryContext picture(dc);
        picture.Select(cut.GetHandle());
        inverted.Draw(picture.Get(), from, from, SRCAND);
    }
    cut.Draw(copy.Get(), to, from, SRCPAINT);
    BitBlt(dc, target.left, target.top, to.right, to.bottom, copy.Get(), 0, 0, SRCCOPY);
    copy.End();
    DeleteObject(surface);
    return true;
}

} // namespace

bool GDIBitmap::TransparentSrc::Blt(HDC dc, const Rect& source, const Rect& target) const {
    if (!m_hBitmap || !dc)
        return false;
    if (kel::Is95Family())
        return BlendByMasks(dc, m_hBitmap, source, target, m_dwColor);
    kel::MemoryContext from;
    if (!from.Select(m_hBitmap))
        return false;
    return TransparentBlt(dc, target.left, target.top, Width(target), Height(target), from.Get(), source.left,
                          source.top, Width(source), Height(source), static_cast<UINT>(m_dwColor)) == 1;
}

GDIBitmap::AlphaSrc::AlphaSrc(HBITMAP bitmap, bool perPixel, unsigned char opacity)
    : m_hBitmap(bitmap), m_bPerPixel(perPixel), m_byOpacity(opacity) {}

namespace {

bool Blend(HDC dc, HDC from, const Rect& source, const Rect& target, const BLENDFUNCTION& function) {
    return AlphaBlend(dc, target.left, target.top, Width(target), Height(target), from, source.left, source.top,
                      Width(source), Height(source), function) != FALSE;
}

// On the 95 family the target's last column and row are left alone.
bool BlendClipped(HDC dc, HDC from, const Rect& source, const Rect& target, const BLENDFUNCTION& function) {
    const int saved = SaveDC(dc);
    IntersectClipRect(dc, target.left, target.top, target.right - 1, target.bottom - 1);
    const bool done = Blend(dc, from, source, target, function);
    RestoreDC(dc, saved);
    return done;
}

// On the 95 family a part that is not stretched is blended from a bitmap of its own.
bool NeedsCut(const Rect& source, const Rect& target) {
    return (source.left != 0 || source.top != 0) && Width(source) == Width(target) && Height(source) == Height(target);
}

} // namespace

bool GDIBitmap::AlphaSrc::Blt(HDC dc, const Rect& source, const Rect& target) const {
    if (!m_hBitmap || !dc)
        return false;
    const bool is95 = kel::Is95Family();
    if (is95 && (Width(source) <= 1 || Height(source) <= 1))
        return false;
    // Outlives the context into which its bitmap is selected.
    GDIBitmap cut;
    kel::MemoryContext from;
    if (!from.Get())
        return false;
    const bool cuts = is95 && NeedsCut(source, target);
    if (cuts)
        cut = GDIBitmap(m_hBitmap, source);
    if (!from.Select(cuts ? cut.GetHandle() : m_hBitmap))
        return false;
    const BLENDFUNCTION function = {AC_SRC_OVER, 0, m_byOpacity, BYTE(m_bPerPixel ? AC_SRC_ALPHA : 0)};
    return (is95 ? BlendClipped : Blend)(dc, from.Get(), cuts ? AtOrigin(source) : source, target, function);
}
