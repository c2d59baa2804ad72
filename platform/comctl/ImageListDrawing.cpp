#include "platform/comctl/ImageList.h"

#include "platform/kernel/LastError.h"
#include "platform/user/SystemColours.h"

#include <kelcore/platform/shapes.h>

#include <algorithm>
#include <cstdint>

namespace kel::platform {
namespace {

constexpr DWORD kMaskOut = 0x00220326; // takes out of the target what is set in the source

struct BrushDeleter {
    void operator()(HBRUSH brush) const { DeleteObject(brush); }
};
using OwnedBrush = std::unique_ptr<HBRUSH__, BrushDeleter>;

/// What is drawn, with everything looked up.
struct Job {
    const ImageList& list;
    HDC dc;
    POINT to;
    SIZE size;
    POINT from;          ///< in the strips
    COLORREF background; ///< a colour or CLR_NONE
    COLORREF blend;      ///< a colour or CLR_NONE
    BYTE share;          ///< of the blend colour, of 255
    UINT style;
    DWORD operation;
    bool alpha;

    bool IsMasked() const { return list.HasMasks() && !alpha; }
};

/// Black and white as the colours of a context, in which masks are drawn.
class MaskColours {
public:
    explicit MaskColours(HDC dc)
        : m_dc(dc), m_text(SetTextColor(dc, RGB(0, 0, 0))), m_back(SetBkColor(dc, RGB(255, 255, 255))) {}
    MaskColours(const MaskColours&) = delete;
    MaskColours& operator=(const MaskColours&) = delete;
    ~MaskColours() {
        if (m_text != CLR_INVALID)
            SetTextColor(m_dc, m_text);
        if (m_back != CLR_INVALID)
            SetBkColor(m_dc, m_back);
    }
    bool Ready() const { return m_text != CLR_INVALID && m_back != CLR_INVALID; }

private:
    const HDC m_dc;
    const COLORREF m_text;
    const COLORREF m_back;
};

bool DrawStrip(const Job& job, HBITMAP strip, DWORD operation) {
    const BitmapContext source(strip);
    const MaskColours colours(job.dc);
    return source.Ready() &&
           BitBlt(job.dc, job.to.x, job.to.y, job.size.cx, job.size.cy, source.Dc(), job.from.x, job.from.y, operation);
}

bool Fill(HDC dc, POINT at, SIZE size, COLORREF colour) {
    const OwnedBrush brush(CreateSolidBrush(colour));
    const RECT box{at.x, at.y, at.x + size.cx, at.y + size.cy};
    return brush && FillRect(dc, &box, brush.get());
}

bool BlendOver(HDC dc, POINT at, SIZE size, HDC source, BYTE share, BYTE format = 0) {
    const BLENDFUNCTION function{AC_SRC_OVER, 0, share, format};
    return AlphaBlend(dc, at.x, at.y, size.cx, size.cy, source, 0, 0, size.cx, size.cy, function);
}

// Mixes a colour into a picture that is in a context.
bool MixIn(const BitmapContext& picture, const Job& job) {
    if (job.share == 0 || job.blend == CLR_NONE)
        return true;
    const OwnedBitmap plain = MakeSection(job.size, 32);
    const BitmapContext colour(plain.get());
    return colour.Ready() && Fill(colour.Dc(), {0, 0}, job.size, job.blend) &&
           BlendOver(picture.Dc(), {0, 0}, job.size, colour.Dc(), job.share);
}

/// A copy of the image of 32 bits, blended; what its mask hides is black.
struct Picture {
    void* bits = nullptr;
    OwnedBitmap bitmap;
    BitmapContext context;

    explicit Picture(SIZE size) : bitmap(MakeSection(size, 32, &bits)), context(bitmap.get()) {}

    bool Take(const Job& job) {
        const BitmapContext images(job.list.Images());
        return context.Ready() && images.Ready() &&
               BitBlt(context.Dc(), 0, 0, job.size.cx, job.size.cy, images.Dc(), job.from.x, job.from.y, SRCCOPY);
    }

    bool MaskOut(const Job& job) {
        const BitmapContext masks(job.list.Masks());
        return masks.Ready() &&
               BitBlt(context.Dc(), 0, 0, job.size.cx, job.size.cy, masks.Dc(), job.from.x, job.from.y, kMaskOut);
    }
};

bool DrawMasked(const Job& job) {
    Picture picture(job.size);
    return picture.Take(job) && MixIn(picture.context, job) && picture.MaskOut(job) &&
           DrawStrip(job, job.list.Masks(), SRCAND) &&
           BitBlt(job.dc, job.to.x, job.to.y, job.size.cx, job.size.cy, picture.context.Dc(), 0, 0, SRCPAINT);
}

bool DrawWhole(const Job& job) {
    Picture picture(job.size);
    return picture.Take(job) && MixIn(picture.context, job) &&
           BitBlt(job.dc, job.to.x, job.to.y, job.size.cx, job.size.cy, picture.context.Dc(), 0, 0, SRCCOPY);
}

std::uint32_t Premultiplied(std::uint32_t pixel) {
    const std::uint32_t alpha = pixel >> 24;
    std::uint32_t result = alpha << 24;
    for (const int shift : {0, 8, 16})
        result |= ((pixel >> shift & 0xFF) * alpha + 127) / 255 << shift;
    return result;
}

// The colour is mixed in first; it says nothing of alpha, which is taken from the image again.
bool DrawAlpha(const Job& job) {
    Picture picture(job.size);
    Picture original(job.size);
    if (!picture.Take(job) || !original.Take(job) || !MixIn(picture.context, job))
        return false;
    auto* const pixels = static_cast<std::uint32_t*>(picture.bits);
    const auto* const alphas = static_cast<const std::uint32_t*>(original.bits);
    const std::ptrdiff_t count = std::ptrdiff_t{job.size.cx} * job.size.cy;
    for (std::ptrdiff_t i = 0; i < count; ++i)
        pixels[i] = Premultiplied((pixels[i] & 0xFFFFFF) | (alphas[i] & 0xFF000000));
    return BlendOver(job.dc, job.to, job.size, picture.context.Dc(), 255, AC_SRC_ALPHA);
}

bool DrawPlain(const Job& job) {
    if (job.background != CLR_NONE && (job.IsMasked() || job.alpha) && !Fill(job.dc, job.to, job.size, job.background))
        return false;
    return job.alpha ? DrawAlpha(job) : job.IsMasked() ? DrawMasked(job) : DrawWhole(job);
}

// Half of the image and half of what is there: drawn on a copy of it, which is blended over it.
bool DrawThrough(const Job& job) {
    const OwnedBitmap copy = MakeSection(job.size, 32);
    const BitmapContext under(copy.get());
    if (!under.Ready() || !BitBlt(under.Dc(), 0, 0, job.size.cx, job.size.cy, job.dc, job.to.x, job.to.y, SRCCOPY))
        return false;
    Job onCopy = job;
    onCopy.dc = under.Dc();
    onCopy.to = {0, 0};
    return DrawPlain(onCopy) && BlendOver(job.dc, job.to, job.size, under.Dc(), static_cast<BYTE>(255 - job.share));
}

bool Run(const Job& job) {
    if (job.style & ILD_MASK && job.list.HasMasks())
        return DrawStrip(job, job.list.Masks(), SRCCOPY);
    if (job.style & (ILD_ROP | ILD_IMAGE))
        return DrawStrip(job, job.list.Images(), job.style & ILD_ROP ? job.operation : SRCCOPY);
    return job.share != 0 && job.blend == CLR_NONE ? DrawThrough(job) : DrawPlain(job);
}

COLORREF Background(const ImageList& list, const IMAGELISTDRAWPARAMS& wanted) {
    if (wanted.fStyle & ILD_TRANSPARENT)
        return CLR_NONE;
    return wanted.rgbBk == CLR_DEFAULT ? list.background : wanted.rgbBk;
}

BYTE Share(UINT style) {
    return style & ILD_BLEND50 ? 128 : style & ILD_BLEND25 ? 64 : 0;
}

Job Resolve(const ImageList& list, const IMAGELISTDRAWPARAMS& wanted) {
    const SIZE left{list.Size().cx - wanted.xBitmap, list.Size().cy - wanted.yBitmap};
    const SIZE size{wanted.cx > 0 ? std::min<LONG>(wanted.cx, left.cx) : left.cx,
                    wanted.cy > 0 ? std::min<LONG>(wanted.cy, left.cy) : left.cy};
    return {list,
            wanted.hdcDst,
            {wanted.x, wanted.y},
            size,
            {list.Left(wanted.i) + wanted.xBitmap, wanted.yBitmap},
            Background(list, wanted),
            wanted.rgbFg == CLR_DEFAULT ? SystemColour(COLOR_HIGHLIGHT) : wanted.rgbFg,
            Share(wanted.fStyle),
            wanted.fStyle,
            wanted.dwRop,
            list.HasAlpha(wanted.i)};
}

// @return the image of the overlay that is asked for, -1 for none.
int Overlay(const ImageList& list, UINT style) {
    const int image = list.overlays[(style & ILD_OVERLAYMASK) >> 8];
    return list.Has(image) ? image : -1;
}

} // namespace

bool Draw(const ImageList& list, const IMAGELISTDRAWPARAMS& wanted) {
    if (wanted.xBitmap < 0 || wanted.yBitmap < 0 || wanted.xBitmap >= list.Size().cx ||
        wanted.yBitmap >= list.Size().cy)
        return Fail(ERROR_INVALID_PARAMETER);
    if (!Run(Resolve(list, wanted)))
        return false;
    const int overlay = Overlay(list, wanted.fStyle);
    if (overlay < 0)
        return true;
    IMAGELISTDRAWPARAMS above = wanted;
    above.i = overlay;
    above.fStyle = ILD_TRANSPARENT;
    return Run(Resolve(list, above));
}

} // namespace kel::platform
