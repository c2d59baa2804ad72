#include "toolkit/effects/Rework.h"

#include <algorithm>
#include <array>
#include <new>

namespace kel::toolkit::effects {
namespace {

/// The colours of all values that an indexed pixel can have.
std::array<RGBQUAD, 256> ColoursOf(const DibLock& picture) {
    std::array<RGBQUAD, 256> colours = {};
    std::copy_n(picture.Colours().begin(), std::min(picture.Colours().size(), colours.size()), colours.begin());
    return colours;
}

bool IsGrey(const DibLock& picture) {
    return picture.Layout().depth <= 8 && std::ranges::all_of(picture.Colours(), [](const RGBQUAD& colour) {
               return colour.rgbBlue == colour.rgbGreen && colour.rgbGreen == colour.rgbRed;
           });
}

/// Whether the picture is one of 8 bits whose pixels are their greys.
bool IsGreyInOrder(const DibLock& picture) {
    if (picture.Layout().depth != 8 || picture.Layout().colours != 256 || !IsGrey(picture))
        return false;
    for (std::size_t n = 0; n < 256; ++n)
        if (picture.Colours()[n].rgbBlue != n)
            return false;
    return true;
}

bool IsWide(const DibLock& picture) {
    return picture.Layout().depth >= 24 || IsGreyInOrder(picture);
}

void PutGreys(const DibLock& picture) {
    for (std::size_t n = 0; n < picture.Colours().size(); ++n) {
        const auto grey = static_cast<BYTE>(n);
        picture.Colours()[n] = {grey, grey, grey, 0};
    }
}

// 5 bits a channel; all ones become all ones.
std::uint32_t Colour24(std::uint32_t pixel) {
    const auto wide = [pixel](int from) { return (pixel >> from & 31) << 3 | (pixel >> from & 31) >> 2; };
    return wide(0) | wide(5) << 8 | wide(10) << 16;
}

/// What each pixel of one picture is in another: `convert(pixel)`.
template <class From, class To, class Convert>
void ConvertPixels(const DibLock& from, const DibLock& to, From, To, Convert convert) {
    for (int y = 0; y < from.Layout().height; ++y)
        for (int x = 0; x < from.Layout().width; ++x)
            To::Store(to.Row(y), x, convert(From::Load(from.Row(y), x)));
}

void WidenTrueColour(const DibLock& from, const DibLock& to) {
    if (from.Layout().depth == 16)
        ConvertPixels(from, to, WholePixels<2>(), WholePixels<3>(), Colour24);
    else
        std::ranges::copy(from.Pixels(), to.Pixels().begin());
}

void WidenIndexed(const DibLock& from, const DibLock& to) {
    const std::array<RGBQUAD, 256> colours = ColoursOf(from);
    const auto convert = [&colours](std::uint32_t pixel) {
        std::uint32_t colour;
        std::memcpy(&colour, &colours[pixel], sizeof colour);
        return colour;
    };
    WithPixels(from.Layout().depth, [&](auto pixels) {
        if (to.Layout().depth == 8)
            ConvertPixels(from, to, pixels, WholePixels<1>(), convert);
        else
            ConvertPixels(from, to, pixels, WholePixels<3>(), convert);
    });
}

/// A picture in place of another: the same order of rows, the same dots per metre.
PackedDib MakeLike(const PackedDib& model, std::int64_t width, std::int64_t height, int depth, std::size_t colours) {
    std::optional<DibLayout> layout = LayoutOf(width, height, depth, colours);
    if (!layout)
        return {};
    layout->topDown = model.Layout().topDown;
    PackedDib made = PackedDib::Make(*layout);
    const DibLock from(model), to(made);
    if (!from || !to)
        return {};
    to.Header().biXPelsPerMeter = from.Header().biXPelsPerMeter;
    to.Header().biYPelsPerMeter = from.Header().biYPelsPerMeter;
    if (depth == 8)
        PutGreys(to);
    return made;
}

/// Has the new picture take the old one's place when `make` has written it from @p source, which may be the old one.
HRESULT Replace(PackedDib& picture, const PackedDib& source, PackedDib made, const Maker& make) {
    {
        const DibLock from(source), to(made);
        if (!from || !to)
            return E_OUTOFMEMORY;
        make(from, to);
    }
    picture = std::move(made);
    return S_OK;
}

HRESULT RemakeWide(PackedDib& picture, const PackedDib& wide, std::int64_t width, std::int64_t height,
                   const Maker& make) {
    return Replace(picture, wide, MakeLike(wide, width, height, wide.Layout().depth, 0), make);
}

bool IsWide(const PackedDib& picture) {
    const DibLock lock(picture);
    return lock && IsWide(lock);
}

} // namespace

PackedDib Widened(const PackedDib& picture) {
    const DibLock from(picture);
    if (!from)
        return {};
    const DibLayout& layout = from.Layout();
    PackedDib wide =
        MakeLike(picture, layout.width, layout.height, IsGrey(from) ? 8 : std::max(layout.depth, 24), /*colours*/ 0);
    const DibLock to(wide);
    if (!to)
        return {};
    if (layout.depth <= 8)
        WidenIndexed(from, to);
    else
        WidenTrueColour(from, to);
    return wide;
}

HRESULT Remake(PackedDib& picture, std::int64_t width, std::int64_t height, const Maker& make) try {
    if (IsWide(picture))
        return RemakeWide(picture, picture, width, height, make);
    const PackedDib wide = Widened(picture);
    return RemakeWide(picture, wide, width, height, make);
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

HRESULT Move(PackedDib& picture, std::int64_t width, std::int64_t height, const Maker& make) {
    const int depth = picture.Layout().depth;
    const std::size_t colours = depth <= 8 ? picture.Layout().colours : 0;
    return Replace(picture, picture, MakeLike(picture, width, height, depth, colours),
                   [&](const DibLock& from, const DibLock& to) {
                       std::ranges::copy(from.Colours().first(colours), to.Colours().begin());
                       make(from, to);
                   });
}

} // namespace kel::toolkit::effects
