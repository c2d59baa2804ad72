#include "imaging/Blocks.h"
#include "imaging/ToolkitControl.h"

// The pixels of a locked block follow header and colour table.

bool XPDib::Draw(HDC dc, const Rect& target, BM_Mode mode, XSize<double> scale) const {
    if (IsEmpty())
        return false;
    const kel::LockedBlock block(kel::PictureOf(m_pRef->control));
    if (!block.Bytes())
        return false;
    const BITMAPINFOHEADER& header = block.Dib()->bmiHeader;
    const DibSrc source(block.Dib(), block.Bytes() + header.biSize + CalculateTableSize(&header), SRCCOPY);
    return InternalDraw(source, dc, target, mode, scale);
}

bool XPDib::Draw(HDC dc, const Rect& target, const Rect& source, unsigned long rop) const {
    if (IsEmpty())
        return false;
    const kel::LockedBlock block(kel::PictureOf(m_pRef->control));
    if (!block.Bytes())
        return false;
    const BITMAPINFOHEADER& header = block.Dib()->bmiHeader;
    return DibSrc(block.Dib(), block.Bytes() + header.biSize + CalculateTableSize(&header), rop)
        .Blt(dc, source, target);
}
