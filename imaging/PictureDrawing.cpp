#include "imaging/LockedPicture.h"

bool XPDib::Draw(HDC dc, const Rect& target, BM_Mode mode, XSize<double> scale) const {
    if (IsEmpty())
        return false;
    const kel::LockedPicture picture(m_pRef->control);
    return picture.Bytes() &&
           InternalDraw(DibSrc(picture.Dib(), kel::PixelsOf(picture.Dib()), SRCCOPY), dc, target, mode, scale);
}

bool XPDib::Draw(HDC dc, const Rect& target, const Rect& source, unsigned long rop) const {
    if (IsEmpty())
        return false;
    const kel::LockedPicture picture(m_pRef->control);
    return picture.Bytes() && DibSrc(picture.Dib(), kel::PixelsOf(picture.Dib()), rop).Blt(dc, source, target);
}
