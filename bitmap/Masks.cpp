#include "bitmap/ImageRecord.h"
#include "bitmap/PlatformDrawing.h"
#include "bitmap/Rectangles.h"
#include "bitmap/pixels/Pixels.h"

namespace {

// A monochrome bitmap of the device, deleted unless it is taken.
class MonoBitmap {
public:
    MonoBitmap() = default;
    MonoBitmap(const MonoBitmap&) = delete;
    MonoBitmap& operator=(const MonoBitmap&) = delete;
    ~MonoBitmap() {
        if (m_bitmap)
            DeleteObject(m_bitmap);
    }

    HBITMAP Make(const Size& size) {
        m_bitmap = CreateBitmap(size.cx, size.cy, /*planes*/ 1, /*bits*/ 1, /*pixels*/ nullptr);
        return m_bitmap;
    }
    HBITMAP Get() const { return m_bitmap; }
    HBITMAP Take() {
        const HBITMAP bitmap = m_bitmap;
        m_bitmap = nullptr;
        return bitmap;
    }

private:
    HBITMAP m_bitmap = nullptr;
};

// The source as the masking blit takes it. The 95 family cannot stretch and match colours in one blit.
bool WorkingCopy(GDIBitmap& copy, const IBitmap& source, const Size& size) {
    const Size own = source.GetDimension();
    if (!kel::Is95Family() || (own.cx == size.cx && own.cy == size.cy))
        return copy.AssignBitmap(source);
    return copy.CreateBitmap(source, size, source.GetBitsPerPixel(), IBitmap::BM_Stretch, XSize<double>(1.0, 1.0), 0);
}

// From colours to black and white the system makes white what has the source's background colour, and nothing else.
bool BlitMask(HDC to, const Size& size, HDC from, const Size& own, unsigned long transparent) {
    SetBkColor(from, static_cast<COLORREF>(transparent));
    return StretchBlt(to, 0, 0, size.cx, size.cy, from, 0, 0, own.cx, own.cy, SRCCOPY) != FALSE;
}

} // namespace

GDIBitmap GDIBitmap::CreateMaskBmp(const IBitmap& source, const Size& size, unsigned long transparent,
                                   bool keepDeviceMask) {
    GDIBitmap mask;
    if (source.IsEmpty() || !mask.CreateBitmap(size, 1))
        return GDIBitmap();
    // They outlive the contexts into which they are selected.
    GDIBitmap copy;
    MonoBitmap mono;
    kel::MemoryContext from;
    kel::MemoryContext to;
    if (!from.Get() || !to.Get() || !WorkingCopy(copy, source, size) || !mono.Make(size) ||
        !from.Select(copy.m_pImage->handle) || !to.Select(mono.Get()) || !copy.m_pImage->FollowTable(from.Get()) ||
        !BlitMask(to.Get(), size, from.Get(), copy.GetDimension(), transparent))
        return GDIBitmap();
    if (keepDeviceMask)
        mask.m_pImage->ReplaceHandle(mono.Take());
    else if (!mask.m_pImage->FetchFrom(to.Get(), mono.Get()))
        return GDIBitmap();
    return mask;
}

GDIBitmap GDIBitmap::CreateMaskBmp(unsigned long transparent) const {
    return CreateMaskBmp(*this, GetDimension(), transparent, /*keepDeviceMask*/ false);
}

namespace {

bool InvertOnDevice(HBITMAP bitmap) {
    BITMAP description = {};
    kel::MemoryContext context;
    if (!kel::Describe(bitmap, description) || !context.Select(bitmap))
        return false;
    const Rect whole(0, 0, description.bmWidth, description.bmHeight);
    return InvertRect(context.Get(), &whole) != FALSE;
}

} // namespace

bool GDIBitmap::Invert() {
    if (IsEmpty() || !Detach())
        return false;
    if (!m_pImage->bits)
        return InvertOnDevice(m_pImage->handle);
    kel::pixels::Complement(m_pImage->bits, m_pImage->PixelBytes());
    return true;
}
