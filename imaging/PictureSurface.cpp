#include "imaging/LockedPicture.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace {

constexpr int kHeaderBytes = sizeof(BITMAPINFOHEADER);
static_assert(kHeaderBytes == 40);

LONG Magnitude(LONG height) {
    return height == std::numeric_limits<LONG>::min() ? std::numeric_limits<LONG>::max() : std::abs(height);
}

} // namespace

Size kel::SizeOfPicture(toolkit::IControl* control) {
    const LockedPicture picture(control);
    const BITMAPINFOHEADER* const header = picture.Header();
    return header ? Size(header->biWidth, Magnitude(header->biHeight)) : Size();
}

Size XPDib::GetDimension() const {
    return kel::SizeOfPicture(m_pRef->control);
}

int XPDib::GetBitsPerPixel() const {
    const kel::LockedPicture picture(m_pRef->control);
    const BITMAPINFOHEADER* const header = picture.Header();
    return header ? header->biBitCount : 0;
}

void* XPDib::GetDibClone() const {
    return IsEmpty() ? nullptr : kel::AskToolkit(m_pRef->control, kel::toolkit::CopyDibHandle);
}

// The block stays locked until UnlockSurface.
const void* XPDib::LockSurface() const {
    if (IsEmpty())
        return nullptr;
    auto* const dib = static_cast<BITMAPINFO*>(GlobalLock(kel::PictureOf(m_pRef->control)));
    return dib ? kel::PixelsOf(dib) : nullptr;
}

void* XPDib::LockSurfaceModify() {
    Detach();
    return const_cast<void*>(LockSurface());
}

void XPDib::UnlockSurface() const {
    if (!IsEmpty())
        GlobalUnlock(kel::PictureOf(m_pRef->control));
}

bool XPDib::HasPalette() const {
    return GetNumPaletteEntries() > 0;
}

int XPDib::GetNumPaletteEntries() const {
    if (IsEmpty())
        return 0;
    const kel::LockedPicture picture(m_pRef->control);
    const BITMAPINFOHEADER* const header = picture.Header();
    return header ? CalculateTableSize(header) / static_cast<int>(sizeof(RGBQUAD)) : 0;
}

// The table is taken to follow a header of 40 bytes, whatever the header says of its size.
const RGBQUAD* XPDib::LockPalette() const {
    if (IsEmpty())
        return nullptr;
    const auto* const dib = static_cast<const char*>(GlobalLock(kel::PictureOf(m_pRef->control)));
    return dib ? reinterpret_cast<const RGBQUAD*>(dib + kHeaderBytes) : nullptr;
}

RGBQUAD* XPDib::LockPaletteModify() {
    Detach();
    return const_cast<RGBQUAD*>(LockPalette());
}

void XPDib::UnlockPalette() const {
    UnlockSurface();
}

bool XPDib::ClearSurface(unsigned char value) {
    void* const surface = LockSurfaceModify();
    if (!surface)
        return false;
    const auto rows = static_cast<std::size_t>(GetDimension().cy);
    std::memset(surface, value, rows * static_cast<std::size_t>(GetScanlineSize()));
    UnlockSurface();
    return true;
}
